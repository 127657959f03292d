#include "ui/script/ScriptedUserInterface.h"

namespace railwright::ui::script {
namespace {

std::string_view IconName(support::MessageIcon icon) {
    switch (icon) {
        case support::MessageIcon::Information:
            return "information";
        case support::MessageIcon::Exclamation:
            return "exclamation";
        case support::MessageIcon::Critical:
            return "critical";
        case support::MessageIcon::Question:
            return "question";
        case support::MessageIcon::None:
            break;
    }
    return "none";
}

}  // namespace

std::string EchoLine(std::string_view text, support::MessageIcon icon) {
    std::string line = std::string(support::kMessageCaption) + ": ";
    line += IconName(icon);
    line += ": ";
    for (const char c : text) {
        if (c == '\r') {
            line += "\\r";
        } else if (c == '\n') {
            line += "\\n";
        } else {
            line += c;
        }
    }
    return line;
}

ScriptedUserInterface::ScriptedUserInterface(EventScript script, std::ostream* echo)
    : script_(std::move(script)), echo_(echo) {}

support::MessageAnswer ScriptedUserInterface::ShowMessage(std::string_view text,
                                                          support::MessageIcon icon,
                                                          support::MessageButtons buttons) {
    if (echo_ != nullptr) {
        *echo_ << EchoLine(text, icon) << '\n' << std::flush;
    }
    support::MessageAnswer answer = support::MessageAnswer::Ok;
    if (buttons == support::MessageButtons::YesNo) {
        if (nextAnswer_ < script_.answers.size()) {
            answer = script_.answers[nextAnswer_++] == Answer::Yes ? support::MessageAnswer::Yes
                                                                   : support::MessageAnswer::No;
        } else {
            faults_.push_back("the script has no answer for the question \"" + std::string(text) +
                              "\"");
            answer = support::MessageAnswer::No;
        }
    }
    messages_.push_back({std::string(text), icon, buttons, answer});
    return answer;
}

void ScriptedUserInterface::ShowModal(support::DialogModel& dialog) {
    dialog.Load();
    while (dialog.IsLoaded() && !stopped_ && next_ < script_.events.size()) {
        const size_t position = next_++;
        const ScriptEvent& event = script_.events[position];
        if (const std::string error = Run(event, dialog); !error.empty()) {
            faults_.push_back("event " + std::to_string(position + 1) + " (" + event.Describe() +
                              "): " + error);
            stopped_ = true;
        }
    }
    // Out of events (or stopped by a fault): the user closes the window.
    dialog.Unload();
}

std::string ScriptedUserInterface::Run(const ScriptEvent& event, support::DialogModel& dialog) {
    if (event.kind == EventKind::Pick) {
        if (!picker_) {
            return "there is no view to pick in";
        }
        return picker_(event.group);
    }
    support::Control* control = dialog.Find(event.control, event.index.value_or(-1));
    if (control == nullptr) {
        if (event.index && !dialog.IsArray(event.control) && dialog.Find(event.control)) {
            return dialog.Name() + "'s \"" + event.control + "\" is not a control array";
        }
        if (!event.index && dialog.IsArray(event.control)) {
            return "\"" + event.control + "\" is a control array: give an \"index\"";
        }
        return dialog.Name() + " has no control \"" + event.control + "\"" +
               (event.index ? " with index " + std::to_string(*event.index) : std::string{});
    }
    // A user can reach only what is shown and enabled, frames around it included.
    for (const support::Control* outer = control; outer != nullptr; outer = outer->Container()) {
        const std::string what = outer == control ? "\"" + event.control + "\""
                                                  : "the frame \"" + outer->Name() + "\"" +
                                                        (outer->Index() >= 0
                                                             ? " " + std::to_string(outer->Index())
                                                             : std::string{}) +
                                                        " around \"" + event.control + "\"";
        if (!outer->Visible()) {
            return what + " is hidden";
        }
        if (!outer->Enabled()) {
            return what + " is disabled";
        }
    }
    switch (event.kind) {
        case EventKind::Click:
            dialog.Click(*control);
            break;
        case EventKind::Select:
            if (control->Kind() != support::ControlKind::ComboBox) {
                return "\"" + event.control + "\" is not a list";
            }
            if (!dialog.Select(*control, event.text)) {
                return "\"" + event.control + "\" has no entry \"" + event.text + "\"";
            }
            break;
        case EventKind::Type:
            if (control->Kind() != support::ControlKind::TextBox) {
                return "\"" + event.control + "\" is not a text box";
            }
            dialog.Type(*control, event.text);
            break;
        case EventKind::Pick:
            break;
    }
    return {};
}

}  // namespace railwright::ui::script
