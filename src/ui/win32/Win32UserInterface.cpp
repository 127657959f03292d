#include "ui/win32/Win32UserInterface.h"

#include <algorithm>

#include "support/win32/Win32Services.h"
#include "ui/script/ScriptedUserInterface.h"
#include "ui/win32/DialogWindow.h"

namespace railwright::ui::win32 {
namespace {

using support::DialogModel;
using support::MessageAnswer;
using support::MessageButtons;
using support::MessageIcon;
using support::win32::Widen;

UINT IconStyle(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Information:
            return MB_ICONINFORMATION;
        case MessageIcon::Exclamation:
            return MB_ICONEXCLAMATION;
        case MessageIcon::Critical:
            return MB_ICONSTOP;
        case MessageIcon::Question:
            return MB_ICONQUESTION;
        case MessageIcon::None:
            break;
    }
    return 0;
}

}  // namespace

Win32UserInterface::Win32UserInterface(std::ostream* echo)
    : echo_(echo), resources_(std::make_unique<WindowResources>()) {}

Win32UserInterface::~Win32UserInterface() {
    while (!windows_.empty()) {
        Destroy(windows_.back()->Model());
    }
}

void Win32UserInterface::SetViewGroups(std::function<std::vector<ViewGroup>()> groups) {
    groupSource_ = std::move(groups);
}

void Win32UserInterface::RefreshViewGroups() {
    if (!groupSource_) {
        return;
    }
    try {
        viewGroups_ = groupSource_();
    } catch (...) {
        // A host that cannot list its groups leaves the list as it was.
    }
}

support::ScreenSize Win32UserInterface::Screen() {
    return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

void Win32UserInterface::Repaint(DialogModel& dialog) {
    for (const auto& window : windows_) {
        if (&window->Model() == &dialog) {
            window->Sync(false);
            UpdateWindow(window->Handle());
        }
    }
}

void Win32UserInterface::PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            // Leave it for the host's own loop.
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        HWND top = windows_.empty() ? nullptr : windows_.back()->Handle();
        if (top == nullptr || !IsDialogMessageW(top, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void Win32UserInterface::Post(const DialogModel& dialog, support::UserEvent event) {
    pending_.emplace_back(&dialog, std::move(event));
}

void Win32UserInterface::RequestClose(const DialogModel& dialog) {
    if (!windows_.empty() && &windows_.back()->Model() == &dialog) {
        closeRequested_ = &dialog;
    }
}

void Win32UserInterface::MarkIdle() {
    for (const auto& window : windows_) {
        window->SetIdleMark(handedOver_ + 1);
    }
}

void Win32UserInterface::Reconcile(const support::ModalStack& stack, bool create) {
    std::vector<const DialogModel*> dialogs;
    for (const support::ModalStack::Entry& entry : stack.Entries()) {
        if (entry.dialog != nullptr) {
            dialogs.push_back(entry.dialog);
        }
    }
    // Windows whose dialog has left the stack (or been unloaded) go, innermost first.
    for (size_t kept = 0; kept < windows_.size(); ++kept) {
        if (kept >= dialogs.size() || &windows_[kept]->Model() != dialogs[kept] ||
            !dialogs[kept]->IsLoaded()) {
            while (windows_.size() > kept) {
                Destroy(windows_.back()->Model());
            }
            break;
        }
    }
    // Identification renames and moves groups: the view's list is read again every time.
    RefreshViewGroups();
    for (const auto& window : windows_) {
        window->Sync(forceSync_);
    }
    forceSync_ = false;
    for (size_t next = windows_.size(); create && next < dialogs.size(); ++next) {
        const DialogModel& dialog = *dialogs[next];
        if (!dialog.IsLoaded()) {
            break;
        }
        HWND owner = windows_.empty() ? nullptr : windows_.back()->Handle();
        auto window = std::make_unique<DialogWindow>(dialog, owner, *this, *resources_);
        if (window->Handle() == nullptr) {
            break;
        }
        window->Sync(true);
        window->Show();
        windows_.push_back(std::move(window));
    }
}

void Win32UserInterface::Destroy(const DialogModel& dialog) {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [&dialog](const auto& window) { return &window->Model() == &dialog; });
    if (found == windows_.end()) {
        return;
    }
    windows_.erase(found);
    if (closeRequested_ == &dialog) {
        closeRequested_ = nullptr;
    }
}

MessageAnswer Win32UserInterface::Ask(const support::Question& question) {
    HWND owner = nullptr;
    if (!windows_.empty() && IsWindowEnabled(windows_.back()->Handle())) {
        owner = windows_.back()->Handle();
    }
    const UINT style = IconStyle(question.icon) |
                       (question.buttons == MessageButtons::YesNo ? MB_YESNO : MB_OK) |
                       (owner == nullptr ? MB_TASKMODAL : MB_APPLMODAL) | MB_SETFOREGROUND;
    int pressed = 0;
    {
        ActivationScope scope(*resources_);
        pressed = MessageBoxW(owner, Widen(question.text).c_str(),
                              Widen(support::kMessageCaption).c_str(), style);
    }
    switch (pressed) {
        case IDYES:
            return MessageAnswer::Yes;
        case IDNO:
            return MessageAnswer::No;
        case IDOK:
            return MessageAnswer::Ok;
        default:
            // No box could be shown: the safe answer.
            return question.buttons == MessageButtons::YesNo ? MessageAnswer::No
                                                             : MessageAnswer::Ok;
    }
}

std::optional<support::UserEvent> Win32UserInterface::NextEvent(const support::ModalStack& stack) {
    if (quit_) {
        return std::nullopt;
    }
    const support::Question* question = stack.WaitingQuestion();
    // A box shown while a dialog loads comes before the dialog's window, as it would for a form.
    Reconcile(stack, question == nullptr);
    if (question != nullptr) {
        support::UserEvent answer;
        answer.kind = support::UserEventKind::Answer;
        answer.answer = Ask(*question);
        ++handedOver_;
        return answer;
    }
    const DialogModel* top = stack.TopDialog();
    for (;;) {
        while (!pending_.empty()) {
            auto [dialog, event] = std::move(pending_.front());
            pending_.pop_front();
            // An action on a window that is no longer on top could not have been made.
            if (dialog == top) {
                ++handedOver_;
                return event;
            }
        }
        if (closeRequested_ != nullptr) {
            closeRequested_ = nullptr;
            ++handedOver_;
            return std::nullopt;
        }
        MSG message;
        if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            // A message sent from elsewhere may have been handled meanwhile.
            if (!pending_.empty() || closeRequested_ != nullptr) {
                continue;
            }
            MarkIdle();
            WaitMessage();
            continue;
        }
        if (message.message == WM_QUIT) {
            // The host is closing: the dialogs close as by their close boxes; the host's loop
            // gets the message back.
            quit_ = true;
            PostQuitMessage(static_cast<int>(message.wParam));
            return std::nullopt;
        }
        HWND topWindow = windows_.empty() ? nullptr : windows_.back()->Handle();
        if (topWindow == nullptr || !IsDialogMessageW(topWindow, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void Win32UserInterface::Refused(const support::UserEvent& event,
                                 const support::Refusal& refusal) {
    (void)event, (void)refusal;
    // The windows showed something the model does not hold (a text typed into a box that the
    // rules then refused): show the model's state again.
    forceSync_ = true;
    MessageBeep(MB_ICONEXCLAMATION);
}

void Win32UserInterface::Answered(const support::Question& question, MessageAnswer answer) {
    (void)answer;
    if (echo_ != nullptr) {
        *echo_ << script::EchoLine(question.text, question.icon) << '\n' << std::flush;
    }
}

void Win32UserInterface::Closed(const DialogModel& dialog) { Destroy(dialog); }

}  // namespace railwright::ui::win32
