#include "support/ModalStack.h"

#include <nlohmann/json.hpp>

namespace railwright::support {
namespace {

using nlohmann::json;

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// "the frame "fraWheels" 2 around "txtWheels"" or ""txtWheels"": the control that stops a user.
std::string Obstacle(const Control& outer, const Control& target, const std::string& name) {
    if (&outer == &target) {
        return Quoted(name);
    }
    std::string what = "the frame " + Quoted(outer.Name());
    if (outer.Index() >= 0) {
        what += " " + std::to_string(outer.Index());
    }
    return what + " around " + Quoted(name);
}

const char* KindName(ControlKind kind) {
    switch (kind) {
        case ControlKind::Label:
            return "label";
        case ControlKind::TextBox:
            return "textBox";
        case ControlKind::CheckBox:
            return "checkBox";
        case ControlKind::OptionButton:
            return "optionButton";
        case ControlKind::ComboBox:
            return "comboBox";
        case ControlKind::CommandButton:
            return "commandButton";
        case ControlKind::Frame:
            return "frame";
        case ControlKind::View:
            break;
    }
    return "view";
}

}  // namespace

std::string_view IconName(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Information:
            return "information";
        case MessageIcon::Exclamation:
            return "exclamation";
        case MessageIcon::Critical:
            return "critical";
        case MessageIcon::Question:
            return "question";
        case MessageIcon::None:
            break;
    }
    return "none";
}

namespace {

json FontState(const Font& font) { return {{"name", font.name}, {"size", font.size}}; }

bool Fits(MessageAnswer answer, MessageButtons buttons) {
    return buttons == MessageButtons::YesNo ? answer != MessageAnswer::Ok
                                            : answer == MessageAnswer::Ok;
}

}  // namespace

std::string UserEvent::Describe() const {
    switch (kind) {
        case UserEventKind::Pick:
            if (const auto* name = std::get_if<std::string>(&group)) {
                return "pick " + Quoted(*name);
            }
            return "pick " + std::to_string(std::get<int32_t>(group));
        case UserEventKind::Answer:
            return answer == MessageAnswer::Yes  ? "answer \"Yes\""
                   : answer == MessageAnswer::No ? "answer \"No\""
                                                 : "answer \"OK\"";
        case UserEventKind::Click:
        case UserEventKind::Select:
        case UserEventKind::Type: {
            static const char* const kNames[] = {"click", "select", "type"};
            std::string described =
                std::string(kNames[static_cast<int>(kind)]) + " " + Quoted(control);
            if (index) {
                described += " " + std::to_string(*index);
            }
            if (kind != UserEventKind::Click) {
                described += " " + Quoted(text);
            }
            return described;
        }
    }
    return {};
}

const DialogModel* ModalStack::TopDialog() const {
    return dialogs_.empty() ? nullptr : dialogs_.back();
}

const Question* ModalStack::WaitingQuestion() const {
    return !entries_.empty() && entries_.back().question ? &*entries_.back().question : nullptr;
}

DialogModel* ModalStack::MutableTopDialog() { return dialogs_.empty() ? nullptr : dialogs_.back(); }

std::optional<Refusal> ModalStack::Dispatch(const UserEvent& event) {
    if (const Question* question = WaitingQuestion()) {
        if (event.kind != UserEventKind::Answer) {
            return Refusal{"a message box is waiting for an answer: " + Quoted(question->text)};
        }
        if (answer_) {
            return Refusal{"the message box has been answered"};
        }
        if (!Fits(event.answer, question->buttons)) {
            return Refusal{question->buttons == MessageButtons::YesNo
                               ? "the message box takes \"Yes\" or \"No\""
                               : "the message box takes only \"OK\""};
        }
        answer_ = event.answer;
        ++base_;
        return std::nullopt;
    }
    if (event.kind == UserEventKind::Answer) {
        return Refusal{"no message box is waiting for an answer"};
    }
    DialogModel* dialog = MutableTopDialog();
    if (dialog == nullptr || !dialog->IsLoaded()) {
        return Refusal{"no dialog is shown"};
    }
    return DispatchToDialog(*dialog, event);
}

std::optional<Refusal> ModalStack::DispatchToDialog(DialogModel& dialog, const UserEvent& event) {
    if (event.kind == UserEventKind::Pick) {
        // The view is the top dialog's; a dialog shown over the wizard keeps it out of reach.
        bool hasView = false;
        for (const Control* control : std::as_const(dialog).Controls()) {
            hasView = hasView || (control->Kind() == ControlKind::View && control->Reachable());
        }
        if (!picker_ || !hasView) {
            return Refusal{"there is no view to pick in"};
        }
        if (std::string error = picker_(event.group); !error.empty()) {
            return Refusal{std::move(error)};
        }
        return std::nullopt;
    }
    const int index = event.index.value_or(-1);
    Control* control = dialog.Find(event.control, index);
    if (control == nullptr) {
        if (event.index && !dialog.IsArray(event.control) && dialog.Find(event.control)) {
            return Refusal{dialog.Name() + "'s " + Quoted(event.control) +
                           " is not a control array"};
        }
        if (!event.index && dialog.IsArray(event.control)) {
            return Refusal{Quoted(event.control) + " is a control array: give an \"index\""};
        }
        return Refusal{dialog.Name() + " has no control " + Quoted(event.control) +
                       (event.index ? " with index " + std::to_string(*event.index)
                                    : std::string{})};
    }
    // A user can reach only what is shown and enabled, frames around it included.
    for (const Control* outer = control; outer != nullptr; outer = outer->Container()) {
        if (!outer->Visible()) {
            return Refusal{Obstacle(*outer, *control, event.control) + " is hidden"};
        }
        if (!outer->Enabled()) {
            return Refusal{Obstacle(*outer, *control, event.control) + " is disabled"};
        }
    }
    switch (event.kind) {
        case UserEventKind::Click:
            dialog.Click(*control);
            break;
        case UserEventKind::Select:
            if (control->Kind() != ControlKind::ComboBox) {
                return Refusal{Quoted(event.control) + " is not a list"};
            }
            if (!dialog.Select(*control, event.text)) {
                return Refusal{Quoted(event.control) + " has no entry " + Quoted(event.text)};
            }
            break;
        case UserEventKind::Type:
            if (control->Kind() != ControlKind::TextBox) {
                return Refusal{Quoted(event.control) + " is not a text box"};
            }
            dialog.Type(*control, event.text);
            break;
        case UserEventKind::Pick:
        case UserEventKind::Answer:
            break;
    }
    return std::nullopt;
}

// The revision is base_ plus the revisions of the dialogs on the stack. Every push, pop and
// answer raises base_, and a popped dialog's revision moves into base_, so that the sum never
// falls back to a value it had before.
uint64_t ModalStack::Revision() const {
    uint64_t revision = base_;
    for (const DialogModel* dialog : dialogs_) {
        revision += dialog->Revision();
    }
    return revision;
}

void ModalStack::PushDialog(DialogModel& dialog) {
    entries_.push_back({&dialog, std::nullopt});
    dialogs_.push_back(&dialog);
    ++base_;
}

void ModalStack::PopDialog() {
    base_ += dialogs_.back()->Revision() + 1;
    dialogs_.pop_back();
    entries_.pop_back();
}

void ModalStack::PushQuestion(Question question) {
    entries_.push_back({nullptr, std::move(question)});
    answer_.reset();
    ++base_;
}

void ModalStack::PopQuestion() {
    entries_.pop_back();
    answer_.reset();
    ++base_;
}

json ModalStack::State() const {
    json stack = json::array();
    for (const Entry& entry : entries_) {
        if (entry.question) {
            stack.push_back({{"kind", "question"},
                             {"caption", kMessageCaption},
                             {"text", entry.question->text},
                             {"icon", IconName(entry.question->icon)},
                             {"buttons", entry.question->buttons == MessageButtons::YesNo
                                             ? "yesNo"
                                             : "ok"}});
        } else {
            stack.push_back(DialogState(*entry.dialog));
        }
    }
    return {{"revision", Revision()}, {"stack", std::move(stack)}};
}

json DialogState(const DialogModel& dialog) {
    const std::vector<const Control*> controls = dialog.Controls();
    const auto idOf = [&controls](const Control* control) -> json {
        for (size_t id = 0; id < controls.size(); ++id) {
            if (controls[id] == control) {
                return id;
            }
        }
        return nullptr;
    };
    json list = json::array();
    for (size_t id = 0; id < controls.size(); ++id) {
        const Control& control = *controls[id];
        list.push_back({
            {"id", id},
            {"name", control.Name()},
            {"index", control.Index()},
            {"kind", KindName(control.Kind())},
            {"caption", control.Caption()},
            {"text", control.Text()},
            {"value", control.Value()},
            {"list", control.List()},
            {"listIndex", control.ListIndex()},
            {"visible", control.Visible()},
            {"enabled", control.Enabled()},
            {"container", idOf(control.Container())},
            {"left", control.Left()},
            {"top", control.Top()},
            {"width", control.Width()},
            {"height", control.Height()},
            {"font", control.GetFont() ? FontState(*control.GetFont()) : json(nullptr)},
            {"toolTip", control.ToolTipText()},
            {"tabIndex", control.TabIndex()},
        });
    }
    return {{"kind", "dialog"},
            {"name", dialog.Name()},
            {"caption", dialog.Caption()},
            {"left", dialog.Left()},
            {"top", dialog.Top()},
            {"width", dialog.Width()},
            {"height", dialog.Height()},
            {"font", FontState(dialog.FormFont())},
            {"defaultButton", idOf(dialog.DefaultButton())},
            {"cancelButton", idOf(dialog.CancelButton())},
            {"controls", std::move(list)}};
}

MessageAnswer ModalUserInterface::ShowMessage(std::string_view text, MessageIcon icon,
                                              MessageButtons buttons) {
    const Question question{std::string(text), icon, buttons};
    stack_.PushQuestion(question);
    // The question leaves the stack however the wait ends.
    struct Pop {
        ModalStack& stack;
        ~Pop() { stack.PopQuestion(); }
    };
    std::optional<MessageAnswer> answer;
    {
        Pop pop{stack_};
        while (!stack_.answer_) {
            const std::optional<UserEvent> event = NextEvent(stack_);
            if (!event) {
                // The front end has gone: the safe answer.
                stack_.answer_ =
                    buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Ok;
                break;
            }
            if (const std::optional<Refusal> refusal = stack_.Dispatch(*event)) {
                Refused(*event, *refusal);
            }
        }
        answer = stack_.answer_;
    }
    Answered(question, *answer);
    return *answer;
}

void ModalUserInterface::ShowModal(DialogModel& dialog) {
    stack_.PushDialog(dialog);
    // The dialog leaves the stack however the show ends.
    struct Pop {
        ModalStack& stack;
        ~Pop() { stack.PopDialog(); }
    } pop{stack_};
    dialog.Load();
    while (dialog.IsLoaded()) {
        const std::optional<UserEvent> event = NextEvent(stack_);
        if (!event) {
            // The front end has gone, or has nothing more to say: the close box.
            dialog.Unload();
            break;
        }
        if (const std::optional<Refusal> refusal = stack_.Dispatch(*event)) {
            Refused(*event, *refusal);
        }
    }
    Closed(dialog);
}

}  // namespace railwright::support
