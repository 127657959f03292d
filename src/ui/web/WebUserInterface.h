// The front end of `railwright wizard`: the dialog models on a thread of their own, handing their
// state to the page's requests and taking the page's events, one at a time.
//
// Two kinds of thread meet here:
//   - the dialogs' thread runs the plug-in (ShowModal, ShowMessage, Progress...) and blocks in
//     NextEvent until the page sends an event or goes away;
//   - the server's threads call Post, WaitForState and Close on behalf of the page.
// The dialogs are read only on their own thread: every state the page sees is a JSON text
// composed there (the modal stack's state, see support/ModalStack.h, and what the run adds) and
// published under the lock. Its "sequence" grows with every publication:
//
//   { "sequence": 7,
//     "phase": "wizard",          wizard, exporting (the wizard has closed) or done
//     "revision": 41, "stack": [...],                  the modal stack's state
//     "messages": [ { "text": "...", "icon": "question", "answer": "Yes" } ],  every box so far
//     "progress": { "task": "...", "done": 1, "total": 3, "item": "body.tga" },   or null
//     ... and the members of the snapshot and of the outcome, see Snapshot and Finish }
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "support/ModalStack.h"

namespace railwright::ui::web {

class WebUserInterface : public support::ModalUserInterface {
public:
    // Members added to every state, taken on the dialogs' thread (for the command: the model's
    // groups as identification renames and moves them).
    using Snapshot = std::function<nlohmann::json()>;

    // echo: where every message box is written as the event script writes it, or null.
    explicit WebUserInterface(Snapshot snapshot = {}, std::ostream* echo = nullptr);

    // --- the server's side (any thread) ---

    struct PostResult {
        std::optional<std::string> refusal;  // why the event was not applied
        std::string state;                   // the state after it
    };
    // Hands the event to the dialogs and waits until they have applied or refused it.
    PostResult Post(const support::UserEvent& event);
    // The state once its sequence is past `after`, or the present one when `timeout` passes
    // first (or the run has ended).
    std::string WaitForState(uint64_t after, std::chrono::milliseconds timeout);
    std::string CurrentState() const;
    // The page has gone away: waits end (see ModalUserInterface) and later events are refused.
    void Close();
    bool IsClosed() const;
    // Whether a state of the "done" phase has been handed to the page.
    bool DoneDelivered() const;

    // --- the dialogs' side ---

    // The run is over: publishes the "done" phase with the outcome's members added to the state.
    void Finish(const nlohmann::json& outcome);

    void Repaint(support::DialogModel&) override {}
    void PumpMessages() override {}
    support::ScreenSize Screen() override { return {1920, 1080}; }
    void Progress(std::string_view task, int done, int total, std::string_view item) override;

protected:
    std::optional<support::UserEvent> NextEvent(const support::ModalStack& stack) override;
    void Refused(const support::UserEvent& event, const support::Refusal& refusal) override;
    void Answered(const support::Question& question, support::MessageAnswer answer) override;
    void Closed(const support::DialogModel& dialog) override;

private:
    struct Pending {
        support::UserEvent event;
        bool done = false;
        std::optional<std::string> refusal;
    };
    enum class Phase { Wizard, Exporting, Done };

    // Composes the state on the dialogs' thread; `leaving` is a dialog about to leave the stack.
    nlohmann::json Compose(const support::DialogModel* leaving);
    // Stores the state and wakes the waiting requests; the lock is held.
    void PublishLocked(nlohmann::json state);
    // The event in flight was applied (or refused); the lock is held.
    void CompleteLocked(std::optional<std::string> refusal);

    Snapshot snapshot_;
    std::ostream* echo_;
    // Touched only on the dialogs' thread.
    nlohmann::json messages_ = nlohmann::json::array();
    nlohmann::json progress_;
    nlohmann::json outcome_;
    Phase phase_ = Phase::Wizard;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    uint64_t sequence_ = 0;
    std::string state_;
    std::deque<std::shared_ptr<Pending>> queue_;
    std::shared_ptr<Pending> inFlight_;
    bool closed_ = false;
    bool done_ = false;
    mutable bool doneDelivered_ = false;
};

}  // namespace railwright::ui::web
