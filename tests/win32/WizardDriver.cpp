// wizard-driver: drives the wizard's real windows in another process as a person would, following
// an event script.
//
//   wizard-driver SCRIPT -- PROGRAM [ARGUMENTS...]
//
// Starts the program (normally `railwright.exe apply MODEL ...` without --script), finds its
// dialog windows and controls by the names the front end gives them (the window properties
// "Railwright.Dialog", "Railwright.Control", "Railwright.Index"), and for each event of the
// script: presses the button (the BN_CLICKED it sends), chooses the combo entry (CB_SETCURSEL and the
// CBN_SELCHANGE a person's choice sends), types the text and leaves the box (WM_SETTEXT,
// WM_KILLFOCUS), or chooses the group in the view's list. Message boxes are answered as they come:
// Yes/No boxes with the script's answers in order, OK boxes with OK. After each action it waits
// until the front end waits for the person again ("Railwright.Idle"), so the actions never race
// the dialogs.
//
// Exit status: the program's, or 3 when the windows could not be driven (a control that is
// missing, hidden or disabled, a window that never settles), with the reason on standard error.
#include <windows.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/win32/Win32Services.h"
#include "ui/script/EventScript.h"

namespace {

using railwright::support::UserEvent;
using railwright::support::UserEventKind;
using railwright::support::win32::Narrow;
using railwright::support::win32::Widen;

constexpr int kDriverFailed = 3;
constexpr auto kSettleTimeout = std::chrono::seconds(20);
constexpr auto kPoll = std::chrono::milliseconds(5);

class DriveError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::wstring ClassOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

uintptr_t Property(HWND window, const wchar_t* name) {
    return reinterpret_cast<uintptr_t>(GetPropW(window, name));
}

// The visible top-level windows of one process.
std::vector<HWND> WindowsOf(DWORD process) {
    struct Search {
        DWORD process;
        std::vector<HWND> found;
    } search{process, {}};
    EnumWindows(
        [](HWND window, LPARAM data) -> BOOL {
            auto* searching = reinterpret_cast<Search*>(data);
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner == searching->process && IsWindowVisible(window)) {
                searching->found.push_back(window);
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

class Driver {
public:
    Driver(railwright::ui::script::EventScript script, PROCESS_INFORMATION process)
        : script_(std::move(script)), process_(process) {}

    int Run() {
        for (const UserEvent& event : script_.events) {
            Settle(event);
            if (!opened_) {
                opened_ = true;
                std::cerr << "wizard-driver: the wizard waited for the person after "
                          << Milliseconds() << " ms\n";
            }
            Act(event);
        }
        // After the last event: the boxes of the exports, until the program ends. A script that
        // stops short of Finish leaves the wizard waiting (for a screenshot, say): say so once.
        bool waiting = false;
        while (!Ended()) {
            HWND top = TopDialog();
            if (HWND box = MessageBox()) {
                Answer(box);
            } else if (!waiting && top != nullptr &&
                       Property(top, L"Railwright.Idle") == handedOver_ + 1) {
                waiting = true;
                std::cerr << "wizard-driver: the script has ended; the wizard waits\n";
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        DWORD code = 0;
        GetExitCodeProcess(process_.hProcess, &code);
        if (nextAnswer_ != script_.answers.size()) {
            std::cerr << "wizard-driver: " << script_.answers.size() - nextAnswer_
                      << " answer(s) of the script were not asked for\n";
        }
        return static_cast<int>(code);
    }

    long long Milliseconds() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::steady_clock::now() - started_)
            .count();
    }

private:
    bool Ended() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_OBJECT_0; }

    // A message box of the program: a dialog window captioned "Railwright" with a static text.
    HWND MessageBox() const {
        for (HWND window : WindowsOf(process_.dwProcessId)) {
            if (ClassOf(window) == L"#32770" && GetDlgItem(window, 0xFFFF) != nullptr) {
                return window;
            }
        }
        return nullptr;
    }

    // The dialog on top: the one of our windows that is enabled.
    HWND TopDialog() const {
        for (HWND window : WindowsOf(process_.dwProcessId)) {
            if (ClassOf(window) == L"RailwrightDialog" && IsWindowEnabled(window)) {
                return window;
            }
        }
        return nullptr;
    }

    // Waits until the program waits for the person: its top dialog is marked idle after every
    // action handed over so far, or a message box is up. Boxes that come meanwhile are answered.
    void Settle(const UserEvent& next) {
        const auto deadline = std::chrono::steady_clock::now() + kSettleTimeout;
        for (;;) {
            if (Ended()) {
                throw DriveError("the program ended before " + next.Describe());
            }
            if (HWND box = MessageBox(); box != nullptr && Idle(GetWindow(box, GW_OWNER))) {
                Answer(box);
                continue;
            }
            HWND top = TopDialog();
            if (top != nullptr && Property(top, L"Railwright.Idle") == handedOver_ + 1 &&
                MessageBox() == nullptr) {
                return;
            }
            if (std::chrono::steady_clock::now() > deadline) {
                throw DriveError("the wizard did not wait for " + next.Describe() +
                                 " within 20 s (" + std::to_string(handedOver_) +
                                 " action(s) made, the wizard waits after " +
                                 std::to_string(top ? Property(top, L"Railwright.Idle") - 1 : 0) +
                                 (MessageBox() ? "; a message box is up)" : ")"));
            }
            std::this_thread::sleep_for(kPoll);
        }
    }

    // A box's owner is marked idle once the box waits; a box without an owner (shown while no
    // dialog is up) is taken as waiting once it is visible.
    bool Idle(HWND owner) const {
        return owner == nullptr || Property(owner, L"Railwright.Idle") == handedOver_ + 1;
    }

    void Answer(HWND box) {
        const std::wstring text = TextOf(GetDlgItem(box, 0xFFFF));
        int button = IDOK;
        if (GetDlgItem(box, IDYES) != nullptr) {
            if (nextAnswer_ >= script_.answers.size()) {
                throw DriveError("a question has no answer in the script: \"" + Narrow(text) + "\"");
            }
            button = script_.answers[nextAnswer_++] == railwright::ui::script::Answer::Yes
                         ? IDYES
                         : IDNO;
        }
        std::cerr << "wizard-driver: answered \"" << Narrow(text) << "\"\n";
        ++handedOver_;
        SendMessageW(GetDlgItem(box, button), BM_CLICK, 0, 0);
        // The box is gone before anything else is looked at.
        const auto deadline = std::chrono::steady_clock::now() + kSettleTimeout;
        while (IsWindow(box) && IsWindowVisible(box) && !Ended()) {
            if (std::chrono::steady_clock::now() > deadline) {
                throw DriveError("the box \"" + Narrow(text) + "\" did not close");
            }
            std::this_thread::sleep_for(kPoll);
        }
    }

    HWND Control(HWND dialog, const UserEvent& event) const {
        const ATOM name = GlobalFindAtomW(Widen(event.control).c_str());
        struct Search {
            ATOM name;
            uintptr_t index;
            HWND found = nullptr;
        } search{name, static_cast<uintptr_t>(event.index.value_or(-1) + 1)};
        if (name != 0) {
            EnumChildWindows(
                dialog,
                [](HWND window, LPARAM data) -> BOOL {
                    auto* searching = reinterpret_cast<Search*>(data);
                    if (Property(window, L"Railwright.Control") == searching->name &&
                        Property(window, L"Railwright.Index") == searching->index) {
                        searching->found = window;
                        return FALSE;
                    }
                    return TRUE;
                },
                reinterpret_cast<LPARAM>(&search));
        }
        if (search.found == nullptr) {
            throw DriveError("no window for " + event.Describe());
        }
        if (!IsWindowVisible(search.found) || !IsWindowEnabled(search.found)) {
            throw DriveError(event.Describe() + ": the control is hidden or disabled");
        }
        return search.found;
    }

    HWND View(HWND dialog) const {
        UserEvent view;
        view.control = "Viewer";
        return Control(dialog, view);
    }

    void Notify(HWND control, int code) {
        SendMessageW(GetParent(control), WM_COMMAND,
                     MAKEWPARAM(GetDlgCtrlID(control), static_cast<WORD>(code)),
                     reinterpret_cast<LPARAM>(control));
    }

    void Act(const UserEvent& event) {
        HWND dialog = TopDialog();
        if (dialog == nullptr) {
            throw DriveError("no dialog is shown for " + event.Describe());
        }
        ++handedOver_;
        switch (event.kind) {
            case UserEventKind::Click:
                // What a button tells its window when it is pressed. (BM_CLICK sent from another
                // process presses nothing under Wine's null display driver: the button never
                // gets the capture of an inactive window.)
                Notify(Control(dialog, event), BN_CLICKED);
                break;
            case UserEventKind::Select: {
                HWND combo = Control(dialog, event);
                const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
                LRESULT chosen = -1;
                for (LRESULT entry = 0; entry < count && chosen < 0; ++entry) {
                    std::wstring text(static_cast<size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, entry, 0)) + 1, L'\0');
                    text.resize(static_cast<size_t>(SendMessageW(combo, CB_GETLBTEXT, entry, reinterpret_cast<LPARAM>(text.data()))));
                    chosen = Narrow(text) == event.text ? entry : -1;
                }
                if (chosen < 0) {
                    throw DriveError(event.Describe() + ": the list has no such entry");
                }
                SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
                Notify(combo, CBN_SELCHANGE);
                break;
            }
            case UserEventKind::Type: {
                HWND box = Control(dialog, event);
                SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Widen(event.text).c_str()));
                SendMessageW(box, WM_KILLFOCUS, 0, 0);
                break;
            }
            case UserEventKind::Pick: {
                HWND list = View(dialog);
                LRESULT chosen = -1;
                if (const auto* index = std::get_if<int32_t>(&event.group)) {
                    chosen = *index;
                } else {
                    const std::wstring name = Widen(std::get<std::string>(event.group));
                    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
                    for (LRESULT entry = 0; entry < count && chosen < 0; ++entry) {
                        std::wstring text(static_cast<size_t>(SendMessageW(list, LB_GETTEXTLEN, entry, 0)) + 1, L'\0');
                        text.resize(static_cast<size_t>(SendMessageW(list, LB_GETTEXT, entry, reinterpret_cast<LPARAM>(text.data()))));
                        // Entries are indented by their depth.
                        chosen = text.substr(text.find_first_not_of(L' ')) == name ? entry : -1;
                    }
                }
                if (chosen < 0 || chosen >= SendMessageW(list, LB_GETCOUNT, 0, 0)) {
                    throw DriveError(event.Describe() + ": the view lists no such group");
                }
                SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
                Notify(list, LBN_SELCHANGE);
                break;
            }
            case UserEventKind::Answer:
                break;
        }
    }

    railwright::ui::script::EventScript script_;
    PROCESS_INFORMATION process_;
    size_t nextAnswer_ = 0;
    uintptr_t handedOver_ = 0;
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
    bool opened_ = false;
};

// Windows quoting of one argument.
std::wstring Quoted(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos) {
        return argument;
    }
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        quoted.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(backslashes * 2, L'\\');
    return quoted + L"\"";
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 4 || std::wstring(argv[2]) != L"--") {
        std::cerr << "usage: wizard-driver SCRIPT -- PROGRAM [ARGUMENTS...]\n";
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    const std::string json((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    railwright::ui::script::ParseResult parsed = railwright::ui::script::ParseEventScript(json);
    if (!in || !parsed.script) {
        std::cerr << "wizard-driver: the script \"" << Narrow(argv[1]) << "\" is not usable: "
                  << parsed.error << '\n';
        return 2;
    }
    std::wstring commandLine;
    for (int i = 3; i < argc; ++i) {
        commandLine += (i > 3 ? L" " : L"") + Quoted(argv[i]);
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &process)) {
        std::cerr << "wizard-driver: cannot start " << Narrow(commandLine) << " (error "
                  << GetLastError() << ")\n";
        return kDriverFailed;
    }
    Driver driver(std::move(*parsed.script), process);
    try {
        const int status = driver.Run();
        std::cerr << "wizard-driver: the program ended with " << status << " after "
                  << driver.Milliseconds() << " ms\n";
        return status;
    } catch (const DriveError& error) {
        std::cerr << "wizard-driver: " << error.what() << '\n';
        TerminateProcess(process.hProcess, kDriverFailed);
        return kDriverFailed;
    }
}
