#include "ui/web/WebUserInterface.h"

#include "ui/script/ScriptedUserInterface.h"

namespace railwright::ui::web {
namespace {

using nlohmann::json;

const char* PhaseName(int phase) {
    static const char* const kNames[] = {"wizard", "exporting", "done"};
    return kNames[phase];
}

const char* AnswerName(support::MessageAnswer answer) {
    switch (answer) {
        case support::MessageAnswer::Yes:
            return "Yes";
        case support::MessageAnswer::No:
            return "No";
        case support::MessageAnswer::Ok:
            break;
    }
    return "OK";
}

}  // namespace

WebUserInterface::WebUserInterface(Snapshot snapshot, std::ostream* echo)
    : snapshot_(std::move(snapshot)), echo_(echo) {
    json state = Compose(nullptr);
    std::lock_guard lock(mutex_);
    PublishLocked(std::move(state));
}

json WebUserInterface::Compose(const support::DialogModel* leaving) {
    json state = Modals().State();
    // A dialog that is closing is shown no more; when it was the last, the wizard is over.
    if (leaving != nullptr && !state["stack"].empty()) {
        state["stack"].erase(state["stack"].end() - 1);
        if (state["stack"].empty() && phase_ == Phase::Wizard) {
            phase_ = Phase::Exporting;
        }
    }
    state["phase"] = PhaseName(static_cast<int>(phase_));
    state["messages"] = messages_;
    state["progress"] = progress_;
    if (snapshot_) {
        const json added = snapshot_();
        for (const auto& [key, value] : added.items()) {
            state[key] = value;
        }
    }
    for (auto& [key, value] : outcome_.items()) {
        state[key] = value;
    }
    return state;
}

void WebUserInterface::PublishLocked(json state) {
    state["sequence"] = ++sequence_;
    state_ = state.dump();
    changed_.notify_all();
}

void WebUserInterface::CompleteLocked(std::optional<std::string> refusal) {
    if (inFlight_) {
        inFlight_->done = true;
        inFlight_->refusal = std::move(refusal);
        inFlight_.reset();
        changed_.notify_all();
    }
}

WebUserInterface::PostResult WebUserInterface::Post(const support::UserEvent& event) {
    auto pending = std::make_shared<Pending>();
    pending->event = event;
    std::unique_lock lock(mutex_);
    if (closed_ || done_) {
        return {"the wizard is closed", state_};
    }
    queue_.push_back(pending);
    changed_.notify_all();
    changed_.wait(lock, [&] { return pending->done; });
    return {pending->refusal, state_};
}

std::string WebUserInterface::WaitForState(uint64_t after, std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, timeout, [&] { return sequence_ > after || closed_; });
    doneDelivered_ = doneDelivered_ || done_;
    return state_;
}

std::string WebUserInterface::CurrentState() const {
    std::lock_guard lock(mutex_);
    doneDelivered_ = doneDelivered_ || done_;
    return state_;
}

void WebUserInterface::Close() {
    std::lock_guard lock(mutex_);
    closed_ = true;
    // Events not yet taken will never be: they end as refused.
    for (const std::shared_ptr<Pending>& pending : queue_) {
        pending->done = true;
        pending->refusal = "the wizard is closed";
    }
    queue_.clear();
    changed_.notify_all();
}

bool WebUserInterface::IsClosed() const {
    std::lock_guard lock(mutex_);
    return closed_;
}

bool WebUserInterface::DoneDelivered() const {
    std::lock_guard lock(mutex_);
    return doneDelivered_;
}

void WebUserInterface::Finish(const json& outcome) {
    phase_ = Phase::Done;
    progress_ = nullptr;
    outcome_ = outcome;
    json state = Compose(nullptr);
    std::lock_guard lock(mutex_);
    CompleteLocked(std::nullopt);
    done_ = true;
    for (const std::shared_ptr<Pending>& pending : queue_) {
        pending->done = true;
        pending->refusal = "the wizard is closed";
    }
    queue_.clear();
    PublishLocked(std::move(state));
}

void WebUserInterface::Progress(std::string_view task, int done, int total, std::string_view item) {
    progress_ = {{"task", task}, {"done", done}, {"total", total}, {"item", item}};
    json state = Compose(nullptr);
    std::lock_guard lock(mutex_);
    PublishLocked(std::move(state));
}

std::optional<support::UserEvent> WebUserInterface::NextEvent(const support::ModalStack&) {
    json state = Compose(nullptr);
    std::unique_lock lock(mutex_);
    PublishLocked(std::move(state));
    CompleteLocked(std::nullopt);
    changed_.wait(lock, [&] { return !queue_.empty() || closed_; });
    if (queue_.empty()) {
        return std::nullopt;
    }
    inFlight_ = queue_.front();
    queue_.pop_front();
    return inFlight_->event;
}

void WebUserInterface::Refused(const support::UserEvent&, const support::Refusal& refusal) {
    std::lock_guard lock(mutex_);
    CompleteLocked(refusal.reason);
}

void WebUserInterface::Answered(const support::Question& question, support::MessageAnswer answer) {
    if (echo_ != nullptr) {
        *echo_ << script::EchoLine(question.text, question.icon) << '\n' << std::flush;
    }
    messages_.push_back({{"text", question.text},
                         {"icon", support::IconName(question.icon)},
                         {"buttons", question.buttons == support::MessageButtons::YesNo ? "yesNo"
                                                                                       : "ok"},
                         {"answer", AnswerName(answer)}});
    json state = Compose(nullptr);
    std::lock_guard lock(mutex_);
    PublishLocked(std::move(state));
    CompleteLocked(std::nullopt);
}

void WebUserInterface::Closed(const support::DialogModel& dialog) {
    json state = Compose(&dialog);
    std::lock_guard lock(mutex_);
    PublishLocked(std::move(state));
    CompleteLocked(std::nullopt);
}

}  // namespace railwright::ui::web
