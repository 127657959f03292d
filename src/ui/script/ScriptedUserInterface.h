// A user interface driven by an event script: the headless front end of the railwright command
// and of the scenario tests.
//
// ShowModal replays the script's events against the dialog shown (and against any dialog it shows
// in turn, innermost first) until the dialog is unloaded; when the events run out first, the
// dialog is closed by its close box. Yes/No boxes take the script's answers in order. Every box is
// recorded and, when an echo stream is given, written to it as one line,
// "Railwright: <icon>: <text>", with carriage returns and line feeds written as \r and \n.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

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

class ScriptedUserInterface : public support::UserInterface {
public:
    // Selects a group in the viewer and reports the pick; returns an error text, empty on success.
    using Picker = std::function<std::string(const std::variant<std::string, int32_t>& group)>;

    explicit ScriptedUserInterface(EventScript script, std::ostream* echo = nullptr);

    void SetPicker(Picker picker) { picker_ = std::move(picker); }

    support::MessageAnswer ShowMessage(std::string_view text, support::MessageIcon icon,
                                       support::MessageButtons buttons) override;
    void ShowModal(support::DialogModel& dialog) override;
    void Repaint(support::DialogModel&) override { ++repaints_; }
    void PumpMessages() override { ++pumps_; }
    support::ScreenSize Screen() override { return {1024, 768}; }

    const std::vector<ShownMessage>& Messages() const { return messages_; }
    // Faults of the script: an event naming something that does not exist or that a user could
    // not reach (hidden or disabled, itself or a frame around it), a question without an answer.
    // Replay stops at the first fault of an event.
    const std::vector<std::string>& Faults() const { return faults_; }
    size_t EventsLeft() const { return script_.events.size() - next_; }
    size_t AnswersLeft() const { return script_.answers.size() - nextAnswer_; }
    int Repaints() const { return repaints_; }

private:
    // Runs one event against the dialog; an error text when the event cannot be run.
    std::string Run(const ScriptEvent& event, support::DialogModel& dialog);

    EventScript script_;
    std::ostream* echo_;
    Picker picker_;
    size_t next_ = 0;
    size_t nextAnswer_ = 0;
    bool stopped_ = false;
    std::vector<ShownMessage> messages_;
    std::vector<std::string> faults_;
    int repaints_ = 0;
    int pumps_ = 0;
};

}  // namespace railwright::ui::script
