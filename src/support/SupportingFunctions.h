// modSupportingFunctions: stateless helpers shared by the whole system, and the shared error
// reporter that turns an error caught at a procedure's boundary into a message box.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::support {

// A run-time error raised by the system's own code (a subscript out of range, a file that cannot
// be written...), reported like a host error.
class RunTimeError : public std::runtime_error {
public:
    RunTimeError(int32_t number, const std::string& description)
        : std::runtime_error(description), number_(number) {}
    int32_t Number() const { return number_; }

private:
    int32_t number_;
};

inline constexpr int32_t kErrorOutOfMemory = 7;
inline constexpr int32_t kErrorSubscriptOutOfRange = 9;
inline constexpr int32_t kErrorInternal = 51;
inline constexpr int32_t kErrorFileNotFound = 53;
inline constexpr int32_t kErrorPathFileAccess = 75;
inline constexpr int32_t kErrorCancelledDialog = 32755;

struct ErrorInfo {
    int32_t number = 0;
    std::string description;
};

// The maker's problem reports forum, named at the end of the failure messages.
inline constexpr std::string_view kForumAddress = "https://forum.railwright.org/problem-reports";

// The start of a placeholder group's name: the part identification names its marker groups so,
// and the exporters pass over or look for groups by it (ignoring case).
inline constexpr std::string_view kPlaceholderPrefix = "RailwrightPlaceholder-";

// The error being handled; call only inside a catch block.
ErrorInfo CurrentError();

// The reporter's text for an error; empty when no message is shown (a cancelled dialog).
std::string ErrorMessage(const ErrorInfo& error);

// Shows the error's message with the critical icon, or nothing for a cancelled dialog.
void ReportError(UserInterface& ui, const ErrorInfo& error);

// Reports the error being handled; call only inside a catch block.
void ReportCurrentError(UserInterface& ui);

// The folder of MSTS, ending in the path separator, or empty when it is not installed.
std::string MstsFolder(host::HostContext& context, const std::string& currentFolder);

// The same, asked of the application itself.
std::string MstsFolder(host::Application& application, const std::string& currentFolder);

// The RailWorks / Rail Simulator folder as the locator reports it, or empty.
std::string RailWorksFolder(host::HostContext& context, intptr_t ownerWindow);
std::string RailWorksFolder(host::Application& application, intptr_t ownerWindow);

// The short form of a path; empty when it does not exist.
std::string ShortPath(FileSystem& files, const std::string& longPath);

struct SplitName {
    std::string baseName;
    std::string extension;  // without the dot; empty when there is none
    bool operator==(const SplitName&) const = default;
};
SplitName SplitExtension(std::string_view fileName);

struct RunResult {
    int32_t taskId = 0;
    bool started = false;
    std::optional<int32_t> exitCode;  // the last code read, when it could be read
};

// Starts a command line and waits for it by polling every 50 ms; no time-out. With keepAlive the
// user interface's messages are handled between polls; `form`, when given, is repainted once.
// Where the process handle waits for the end (ExitWait::WakeOnExit), a poll follows as soon as
// the process has ended, and 50 ms is only the longest time between two polls.
RunResult RunAndWait(Platform& platform, std::string_view commandLine, bool keepAlive,
                     WindowStyle style, DialogModel* form);

// True when "acecomp.exe" exists in the MSTS folder.
bool MstsCompressorPresent(host::HostContext& context, FileSystem& files);

// The name of the group directly under the root on the path from `group` upwards.
std::string TopLevelAncestorName(host::Scripting& scripting, host::SceneGroup& group);

// Text helpers used throughout.
std::string ToUpper(std::string_view text);
// ASCII letters only, as ToUpper: file names built from a project name must agree everywhere.
std::string ToLower(std::string_view text);
bool EqualsIgnoreCase(std::string_view a, std::string_view b);
bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix);
bool EndsWithIgnoreCase(std::string_view text, std::string_view suffix);

}  // namespace railwright::support
