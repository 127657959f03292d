// A user interface driven by an event script: the headless front end of the railwright command
// and of the scenario tests.
//
// The script's events go, one after the other, to the top of the modal stack: the dialog shown
// (or a dialog it shows in turn) until it is unloaded; when the events run out first, the dialog
// is closed by its close box. Yes/No boxes take the script's answers in order; an OK box needs
// none. Every box is recorded and, when an echo stream is given, written to it as one line,
// "Railwright: <icon>: <text>", with carriage returns and line feeds written as \r and \n.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "support/ModalStack.h"
#include "support/Platform.h"
#include "ui/script/EventScript.h"

namespace railwright::ui::script {

struct ShownMessage {
    std::string text;
    support::MessageIcon icon = support::MessageIcon::None;
    support::MessageButtons buttons = support::MessageButtons::Ok;
    support::MessageAnswer answer = support::MessageAnswer::Ok;
    bool operator==(const ShownMessage&) const = default;
};

// The one-line echo of a message box.
std::string EchoLine(std::string_view text, support::MessageIcon icon);

class ScriptedUserInterface : public support::ModalUserInterface {
public:
    explicit ScriptedUserInterface(EventScript script, std::ostream* echo = nullptr);

    void Repaint(support::DialogModel&) override { ++repaints_; }
    void PumpMessages() override { ++pumps_; }
    support::ScreenSize Screen() override { return {1024, 768}; }

    const std::vector<ShownMessage>& Messages() const { return messages_; }
    // Faults of the script: an event the dialogs refused (naming something that does not exist
    // or that a user could not reach), a question without an answer. Replay stops at the first
    // refused event.
    const std::vector<std::string>& Faults() const { return faults_; }
    size_t EventsLeft() const { return script_.events.size() - next_; }
    size_t AnswersLeft() const { return script_.answers.size() - nextAnswer_; }
    int Repaints() const { return repaints_; }

protected:
    std::optional<support::UserEvent> NextEvent(const support::ModalStack& stack) override;
    void Refused(const support::UserEvent& event, const support::Refusal& refusal) override;
    void Answered(const support::Question& question, support::MessageAnswer answer) override;

private:
    EventScript script_;
    std::ostream* echo_;
    size_t next_ = 0;
    size_t nextAnswer_ = 0;
    bool stopped_ = false;
    std::vector<ShownMessage> messages_;
    std::vector<std::string> faults_;
    int repaints_ = 0;
    int pumps_ = 0;
};

}  // namespace railwright::ui::script
