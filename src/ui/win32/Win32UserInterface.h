// The Windows front end of the dialog models: every dialog on the modal stack is one real window
// whose controls are made from the dialog model, and every message box is a MessageBoxW.
//
// The windows hold no rule of the dialogs. After every event the front end compares each shown
// dialog's revision with the one it last showed and, when it moved, brings every control in step
// with the model: position and size (pixels at 96 dpi, scaled to the screen's), caption, text,
// list, value, visibility and enabled state (a control is shown and usable only while every frame
// around it is), font (FontWiz's fonts as real HFONTs) and tooltip. What the person does is handed
// to the modal stack as the event script's events:
//
//   a button, check box or option button pressed      click (the model toggles and sets values)
//   a combo entry chosen                              select, with the entry's text
//   a text box edited and then left                   type, with the whole text
//   a group chosen in the view's list                 pick, by its index in Scripting.Group order
//   Enter / Escape                                    click on the default / cancel button
//   the close box                                     the dialog is closed as by its close box
//
// The wizard is shown with no owner: while it is up the thread's other top-level windows (the
// host's) are disabled, as a modal form does. A dialog shown over it (frmWarn) is owned by the
// window below it, which is disabled meanwhile. Windows are placed where the dialog model puts
// them; frmWarn, which keeps no position, is centred on its owner.
//
// The view: the list of the model's groups stands in for the host's view control. Choosing a
// group is a pick, handed to the stack's picker.
//
// For programs that drive the windows from outside (accessibility and test tools), each window
// carries properties: "Railwright.Dialog" on a dialog's window and "Railwright.Control" on each
// control hold a global atom of the dialog's or control's name, "Railwright.Index" the control's
// index in its array plus one (0: not an array), and "Railwright.Idle", on every dialog window,
// one more than the number of events the front end had handed to the dialogs when it last waited
// for the person (in its own loop or in a message box's).
//
// Every window procedure is a noexcept barrier: nothing unwinds into the system's code.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/ModalStack.h"
#include "support/Platform.h"

namespace railwright::ui::win32 {

class DialogWindow;
class WindowResources;

// A group as the view's list shows it, in Scripting.Group order.
struct ViewGroup {
    std::string name;
    int depth = 0;  // 0: the root group
    bool operator==(const ViewGroup&) const = default;
};

class Win32UserInterface final : public support::ModalUserInterface {
public:
    // Every message box is also written to `echo` as the event script writes it, when given.
    explicit Win32UserInterface(std::ostream* echo = nullptr);
    ~Win32UserInterface() override;
    Win32UserInterface(const Win32UserInterface&) = delete;
    Win32UserInterface& operator=(const Win32UserInterface&) = delete;

    // The groups of the view's list; asked again after every event.
    void SetViewGroups(std::function<std::vector<ViewGroup>()> groups);

    void Repaint(support::DialogModel& dialog) override;
    void PumpMessages() override;
    support::ScreenSize Screen() override;

    // Called by the windows: what the person did, and the close box.
    void Post(const support::DialogModel& dialog, support::UserEvent event);
    void RequestClose(const support::DialogModel& dialog);
    // Marks every dialog window as waiting for the person (see "Railwright.Idle").
    void MarkIdle();
    const std::vector<ViewGroup>& ViewGroups() const { return viewGroups_; }

protected:
    std::optional<support::UserEvent> NextEvent(const support::ModalStack& stack) override;
    void Refused(const support::UserEvent& event, const support::Refusal& refusal) override;
    void Answered(const support::Question& question, support::MessageAnswer answer) override;
    void Closed(const support::DialogModel& dialog) override;

private:
    // Makes the windows match the dialogs on the stack; new windows only when `create`.
    void Reconcile(const support::ModalStack& stack, bool create);
    void Destroy(const support::DialogModel& dialog);
    support::MessageAnswer Ask(const support::Question& question);
    void RefreshViewGroups();

    std::ostream* echo_;
    std::unique_ptr<WindowResources> resources_;
    std::vector<std::unique_ptr<DialogWindow>> windows_;  // outermost first
    std::deque<std::pair<const support::DialogModel*, support::UserEvent>> pending_;
    const support::DialogModel* closeRequested_ = nullptr;
    std::function<std::vector<ViewGroup>()> groupSource_;
    std::vector<ViewGroup> viewGroups_;
    uint64_t handedOver_ = 0;
    bool forceSync_ = false;
    bool quit_ = false;  // the thread's loop was asked to end
};

}  // namespace railwright::ui::win32
