#include "support/DialogModel.h"

#include <utility>

namespace railwright::support {

Control::Control(DialogModel& owner, ControlKind kind, std::string name, int index)
    : owner_(owner), kind_(kind), name_(std::move(name)), index_(index) {
    if (kind != ControlKind::View) {
        font_ = Font{};
    }
}

void Control::SetCaption(std::string caption) {
    if (caption != caption_) {
        caption_ = std::move(caption);
        owner_.Changed();
    }
}

void Control::SetText(std::string text) {
    if (text == text_) {
        return;
    }
    text_ = std::move(text);
    owner_.Changed();
    if (onChange) {
        onChange();
    }
}

void Control::SetValue(int32_t value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    owner_.Changed();
    if (kind_ == ControlKind::OptionButton && value != 0) {
        owner_.ClearOtherOptions(*this);
    }
    if (onClick) {
        onClick();
    }
}

void Control::SetVisible(bool visible) {
    if (visible != visible_) {
        visible_ = visible;
        owner_.Changed();
    }
}

void Control::SetEnabled(bool enabled) {
    if (enabled != enabled_) {
        enabled_ = enabled;
        owner_.Changed();
    }
}

void Control::SetToolTipText(std::string text) {
    if (text != toolTipText_) {
        toolTipText_ = std::move(text);
        owner_.Changed();
    }
}

void Control::SetContainer(Control& frame) {
    container_ = &frame;
    owner_.Changed();
}

void Control::SetTabIndex(int tabIndex) {
    tabIndex_ = tabIndex;
    owner_.Changed();
}

void Control::Move(int32_t left, int32_t top) {
    if (left != left_ || top != top_) {
        left_ = left;
        top_ = top;
        owner_.Changed();
    }
}

void Control::Resize(int32_t width, int32_t height) {
    if (width != width_ || height != height_) {
        width_ = width;
        height_ = height;
        owner_.Changed();
    }
}

bool Control::Reachable() const {
    for (const Control* control = this; control != nullptr; control = control->container_) {
        if (!control->visible_ || !control->enabled_) {
            return false;
        }
    }
    return true;
}

void Control::SetFont(Font font) {
    if (font_ && *font_ != font) {
        font_ = std::move(font);
        owner_.Changed();
    }
}

void Control::Clear() {
    list_.clear();
    listIndex_ = -1;
    text_.clear();
    owner_.Changed();
}

void Control::AddItem(std::string item) {
    list_.push_back(std::move(item));
    owner_.Changed();
}

void Control::SetListIndex(int index) {
    if (index < -1 || index >= static_cast<int>(list_.size()) || index == listIndex_) {
        return;
    }
    listIndex_ = index;
    owner_.Changed();
    text_ = index < 0 ? std::string{} : list_[static_cast<size_t>(index)];
    if (onClick) {
        onClick();
    }
}

int Control::FindItem(std::string_view text) const {
    for (size_t i = 0; i < list_.size(); ++i) {
        if (list_[i] == text) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

DialogModel::DialogModel(std::string name) : name_(std::move(name)) {}

void DialogModel::SetCaption(std::string caption) {
    if (caption != caption_) {
        caption_ = std::move(caption);
        Changed();
    }
}

void DialogModel::SetFormFont(Font font) {
    if (font != formFont_) {
        formFont_ = std::move(font);
        Changed();
    }
}

void DialogModel::SetDefaultButton(Control& button) {
    if (defaultButton_ != &button) {
        defaultButton_ = &button;
        Changed();
    }
}

void DialogModel::SetCancelButton(Control& button) {
    if (cancelButton_ != &button) {
        cancelButton_ = &button;
        Changed();
    }
}

void DialogModel::Load() {
    if (loaded_) {
        return;
    }
    loaded_ = true;
    Changed();
    OnLoad();
}

void DialogModel::Unload() {
    if (!loaded_) {
        return;
    }
    OnUnload();
    loaded_ = false;
    Changed();
}

std::vector<Control*> DialogModel::Controls() {
    std::vector<Control*> all;
    all.reserve(controls_.size());
    for (Control& control : controls_) {
        all.push_back(&control);
    }
    return all;
}

std::vector<const Control*> DialogModel::Controls() const {
    std::vector<const Control*> all;
    all.reserve(controls_.size());
    for (const Control& control : controls_) {
        all.push_back(&control);
    }
    return all;
}

Control* DialogModel::Find(std::string_view name, int index) {
    return const_cast<Control*>(std::as_const(*this).Find(name, index));
}

const Control* DialogModel::Find(std::string_view name, int index) const {
    for (const Control& control : controls_) {
        if (control.Name() == name && control.Index() == index) {
            return &control;
        }
    }
    return nullptr;
}

bool DialogModel::IsArray(std::string_view name) const {
    for (const Control& control : controls_) {
        if (control.Name() == name) {
            return control.Index() >= 0;
        }
    }
    return false;
}

void DialogModel::Click(Control& control) {
    switch (control.Kind()) {
        case ControlKind::CheckBox:
            control.SetValue(control.Value() == 0 ? 1 : 0);
            break;
        case ControlKind::OptionButton:
            // A click on an option already set still reports the click.
            if (control.Value() != 0) {
                if (control.onClick) {
                    control.onClick();
                }
            } else {
                control.SetValue(1);
            }
            break;
        default:
            if (control.onClick) {
                control.onClick();
            }
            break;
    }
}

bool DialogModel::Select(Control& control, std::string_view entry) {
    const int index = control.FindItem(entry);
    if (index < 0) {
        return false;
    }
    control.SetListIndex(index);
    return true;
}

void DialogModel::Type(Control& control, std::string text) {
    control.SetText(std::move(text));
    Leave(control);
}

void DialogModel::Leave(Control& control) {
    if (control.onLeave) {
        control.onLeave();
    }
}

void DialogModel::Move(int32_t left, int32_t top) {
    if (left != left_ || top != top_) {
        left_ = left;
        top_ = top;
        Changed();
    }
}

void DialogModel::Resize(int32_t width, int32_t height) {
    if (width != width_ || height != height_) {
        width_ = width;
        height_ = height;
        Changed();
    }
}

Control& DialogModel::Add(ControlKind kind, std::string name, std::string caption) {
    Control& control = controls_.emplace_back(*this, kind, std::move(name), -1);
    control.tabIndex_ = static_cast<int>(controls_.size()) - 1;
    control.SetCaption(std::move(caption));
    return control;
}

ControlArray DialogModel::AddArray(ControlKind kind, const std::string& name, int count) {
    ControlArray array;
    for (int i = 0; i < count; ++i) {
        Control& element = controls_.emplace_back(*this, kind, name, i);
        element.tabIndex_ = static_cast<int>(controls_.size()) - 1;
        array.elements_.push_back(&element);
    }
    return array;
}

void DialogModel::ClearOtherOptions(Control& chosen) {
    if (chosen.Index() < 0) {
        return;
    }
    for (Control& control : controls_) {
        if (&control != &chosen && control.Name() == chosen.Name()) {
            control.value_ = 0;
        }
    }
}

}  // namespace railwright::support
