#include "ui/script/ScriptedUserInterface.h"

namespace railwright::ui::script {

std::string EchoLine(std::string_view text, support::MessageIcon icon) {
    std::string line = std::string(support::kMessageCaption) + ": ";
    line += support::IconName(icon);
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

std::optional<support::UserEvent> ScriptedUserInterface::NextEvent(
    const support::ModalStack& stack) {
    support::UserEvent event;
    if (const support::Question* question = stack.WaitingQuestion()) {
        event.kind = support::UserEventKind::Answer;
        if (question->buttons != support::MessageButtons::YesNo) {
            event.answer = support::MessageAnswer::Ok;
        } else if (nextAnswer_ < script_.answers.size()) {
            event.answer = script_.answers[nextAnswer_++] == Answer::Yes
                               ? support::MessageAnswer::Yes
                               : support::MessageAnswer::No;
        } else {
            faults_.push_back("the script has no answer for the question \"" + question->text +
                              "\"");
            event.answer = support::MessageAnswer::No;
        }
        return event;
    }
    if (stopped_ || next_ >= script_.events.size()) {
        return std::nullopt;
    }
    return script_.events[next_++];
}

void ScriptedUserInterface::Refused(const support::UserEvent& event,
                                    const support::Refusal& refusal) {
    faults_.push_back("event " + std::to_string(next_) + " (" + event.Describe() +
                      "): " + refusal.reason);
    stopped_ = true;
}

void ScriptedUserInterface::Answered(const support::Question& question,
                                     support::MessageAnswer answer) {
    if (echo_ != nullptr) {
        *echo_ << EchoLine(question.text, question.icon) << '\n' << std::flush;
    }
    messages_.push_back({question.text, question.icon, question.buttons, answer});
}

}  // namespace railwright::ui::script
