// Dialog models: the dialogs' state and behaviour in plain C++, known to no toolkit.
//
// A dialog model owns its controls; a subclass declares each control as a member reference named
// as the control is named (txtMass, chkMSTS, optSteps...) and attaches its event handlers to them.
// A front end (Win32 dialogs, the web page, the event script) reaches a dialog model only through
// the modal stack (support/ModalStack.h): it reads the controls through const access and hands
// the user's actions to ModalStack::Dispatch, which applies the reachability rules and calls
// Click, Select and Type. It holds no rule of its own.
//
// Every change of a control's or of the dialog's state raises the dialog's Revision(), so that a
// front end can tell whether it has to show the state anew.
//
// Events follow the conventions the dialogs were designed with: changing a check box's or option
// button's value, or a combo box's selection, runs its click handler whether the user or the code
// made the change; changing a text box's text runs its change handler; leaving a text box runs its
// leave handler (where the input rules live).
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace railwright::support {

struct Font {
    std::string name;
    double size = 0;  // points
    bool operator==(const Font&) const = default;
};

enum class ControlKind {
    Label,
    TextBox,
    CheckBox,
    OptionButton,
    ComboBox,
    CommandButton,
    Frame,
    View,  // the embedded 3D view; it has no font
};

class DialogModel;

class Control {
public:
    Control(DialogModel& owner, ControlKind kind, std::string name, int index);

    ControlKind Kind() const { return kind_; }
    const std::string& Name() const { return name_; }
    // The element number within a control array, or -1 for a control of its own.
    int Index() const { return index_; }

    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);

    // A text box's text; a combo box's text is its selected entry.
    const std::string& Text() const { return text_; }
    void SetText(std::string text);

    // Check box: 0 cleared, 1 checked. Option button: 0 or 1; setting 1 clears the other
    // elements of its array.
    int32_t Value() const { return value_; }
    void SetValue(int32_t value);

    bool Visible() const { return visible_; }
    void SetVisible(bool visible);
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    // The hint shown when the pointer rests on the control.
    const std::string& ToolTipText() const { return toolTipText_; }
    void SetToolTipText(std::string text);

    // The frame that holds the control, or null for one placed on the form itself. A control
    // can be used only while it and every frame around it are visible and enabled.
    const Control* Container() const { return container_; }
    void SetContainer(Control& frame);
    bool Reachable() const;

    // The control's place in the order the Tab key visits the controls (lowest first); by default
    // the order in which the dialog added them. Labels and frames take no focus: the order passes
    // them by.
    int TabIndex() const { return tabIndex_; }
    void SetTabIndex(int tabIndex);

    // Position within the container and size, in pixels.
    int32_t Left() const { return left_; }
    int32_t Top() const { return top_; }
    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    void Move(int32_t left, int32_t top);
    void Resize(int32_t width, int32_t height);
    // Both at once.
    void Place(int32_t left, int32_t top, int32_t width, int32_t height) {
        Move(left, top);
        Resize(width, height);
    }

    // Empty for controls without a font (the view).
    const std::optional<Font>& GetFont() const { return font_; }
    void SetFont(Font font);

    // Combo box entries and the selected index (-1: none).
    const std::vector<std::string>& List() const { return list_; }
    void Clear();
    void AddItem(std::string item);
    int ListIndex() const { return listIndex_; }
    void SetListIndex(int index);
    // The index of the entry with exactly this text, or -1.
    int FindItem(std::string_view text) const;

    std::function<void()> onClick;
    std::function<void()> onChange;
    std::function<void()> onLeave;

private:
    friend class DialogModel;
    DialogModel& owner_;
    ControlKind kind_;
    std::string name_;
    int index_;
    std::string caption_;
    std::string toolTipText_;
    Control* container_ = nullptr;
    int tabIndex_ = 0;
    int32_t left_ = 0;
    int32_t top_ = 0;
    int32_t width_ = 0;
    int32_t height_ = 0;
    std::string text_;
    int32_t value_ = 0;
    bool visible_ = true;
    bool enabled_ = true;
    std::optional<Font> font_;
    std::vector<std::string> list_;
    int listIndex_ = -1;
};

// The elements of a control array, by index.
class ControlArray {
public:
    Control& operator[](size_t index) const { return *elements_.at(index); }
    size_t size() const { return elements_.size(); }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }

private:
    friend class DialogModel;
    std::vector<Control*> elements_;
};

class DialogModel {
public:
    explicit DialogModel(std::string name);
    virtual ~DialogModel() = default;
    DialogModel(const DialogModel&) = delete;
    DialogModel& operator=(const DialogModel&) = delete;

    const std::string& Name() const { return name_; }

    // The title bar's text.
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);

    // The form's own font.
    const Font& FormFont() const { return formFont_; }
    void SetFormFont(Font font);

    // The buttons that Enter and Escape press, or null. A front end forwards the key as a click on
    // the button, so that the button's own rules (reachable, enabled) apply.
    const Control* DefaultButton() const { return defaultButton_; }
    const Control* CancelButton() const { return cancelButton_; }
    void SetDefaultButton(Control& button);
    void SetCancelButton(Control& button);

    // Grows with every change of the dialog's or any of its controls' state.
    uint64_t Revision() const { return revision_; }

    // Loading runs OnLoad once; unloading runs OnUnload and closes the dialog. A dialog shown
    // modally stays up until it is unloaded.
    bool IsLoaded() const { return loaded_; }
    void Load();
    void Unload();

    // Every control, in the order they were added.
    std::vector<Control*> Controls();
    std::vector<const Control*> Controls() const;
    // The control of that name (and array index, -1 for none), or null.
    Control* Find(std::string_view name, int index = -1);
    const Control* Find(std::string_view name, int index = -1) const;
    bool IsArray(std::string_view name) const;

    // A user's actions, as a front end forwards them.
    void Click(Control& control);
    // Chooses the combo entry with this text; false when the list has no such entry.
    [[nodiscard]] bool Select(Control& control, std::string_view entry);
    void Type(Control& control, std::string text);
    void Leave(Control& control);

    // The window position on the screen and the size of its client area, in pixels.
    int32_t Left() const { return left_; }
    int32_t Top() const { return top_; }
    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    void Move(int32_t left, int32_t top);
    void Resize(int32_t width, int32_t height);

protected:
    Control& Add(ControlKind kind, std::string name, std::string caption = {});
    ControlArray AddArray(ControlKind kind, const std::string& name, int count);

    virtual void OnLoad() {}
    virtual void OnUnload() {}

private:
    friend class Control;
    void ClearOtherOptions(Control& chosen);
    void Changed() { ++revision_; }

    std::string name_;
    std::string caption_;
    Font formFont_;
    std::deque<Control> controls_;
    const Control* defaultButton_ = nullptr;
    const Control* cancelButton_ = nullptr;
    bool loaded_ = false;
    int32_t left_ = 0;
    int32_t top_ = 0;
    int32_t width_ = 0;
    int32_t height_ = 0;
    uint64_t revision_ = 0;
};

}  // namespace railwright::support
