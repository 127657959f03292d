// Platform services: what the system asks of the operating system and of the user interface.
//
// One Platform of references is passed down to whatever needs it; there are no singletons.
// Implementations: posix/ and win32/ for the product, fakes in the tests.
//
// Paths are UTF-8 text built with JoinPath; an implementation converts them to the platform's own
// form (wide on Windows) at its edge.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/DialogModel.h"

namespace railwright::support {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

// folder + separator + name; no separator is added when folder is empty or already ends in one.
std::string JoinPath(std::string_view folder, std::string_view name);

class FileSystem {
public:
    virtual ~FileSystem() = default;

    // Creates the folder and any missing parents; true when it exists afterwards.
    virtual bool CreateFolder(const std::string& path) = 0;
    // Deletes a file; a failure is ignored.
    virtual void DeleteFile(const std::string& path) noexcept = 0;
    // Copies a file, overwriting the target; false when the copy failed.
    [[nodiscard]] virtual bool CopyFile(const std::string& from, const std::string& to) = 0;
    virtual bool FileExists(const std::string& path) = 0;
    virtual bool FolderExists(const std::string& path) = 0;
    // The names (not paths) of the files in `folder` matching `pattern` with * and ?, compared
    // without regard to case, sorted by name.
    virtual std::vector<std::string> ListFiles(const std::string& folder,
                                               std::string_view pattern) = 0;
    // The names of the sub-folders of `folder`, sorted by name.
    virtual std::vector<std::string> ListFolders(const std::string& folder) = 0;
    // Writes the file from scratch as 8-bit text; false when it could not be written.
    [[nodiscard]] virtual bool WriteFile(const std::string& path, std::string_view bytes) = 0;
    // The whole file, or nothing when it cannot be read.
    virtual std::optional<std::string> ReadFile(const std::string& path) = 0;
    // The short form of a path for an external tool's command line; empty when the path does
    // not exist.
    virtual std::string ShortPath(const std::string& path) = 0;
};

// The platform's code for a process that has not ended yet.
inline constexpr int32_t kStillActive = 259;

enum class WindowStyle : int32_t {
    Hidden = 0,
    NormalFocus = 1,
    MinimizedFocus = 2,
    MaximizedFocus = 3,
    NormalNoFocus = 4,
    MinimizedNoFocus = 6,
};

// How run-and-wait passes the time between two looks at a running tool. The plug-in sleeps the
// whole poll interval, as it always has; the command wakes as soon as the tool ends, the
// interval being only the longest time between two looks at the user's side.
enum class ExitWait { Sleep, WakeOnExit };

class ProcessHandle {
public:
    virtual ~ProcessHandle() = default;
    // The exit code, kStillActive while the process runs; empty when it cannot be read.
    virtual std::optional<int32_t> ExitCode() = 0;
    // Blocks until the process ends or `longest` has passed, whichever comes first, and returns
    // true; returns false at once when this handle does not wait (ExitWait::Sleep), and the
    // caller sleeps instead.
    virtual bool AwaitExit(std::chrono::milliseconds longest) {
        (void)longest;
        return false;
    }
};

class Processes {
public:
    virtual ~Processes() = default;

    // Starts a command line (Windows quoting rules; no shell); the task id, or empty when the
    // program could not be started.
    virtual std::optional<int32_t> Launch(std::string_view commandLine, WindowStyle style) = 0;
    // Opens a started process for querying its exit code; null when it cannot be opened.
    virtual std::unique_ptr<ProcessHandle> Open(int32_t taskId) = 0;
    virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

// The per-user settings store: text values by (application name, section, key).
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    virtual std::string GetSetting(const std::string& application, const std::string& section,
                                   const std::string& key, const std::string& defaultValue) = 0;
    virtual void SaveSetting(const std::string& application, const std::string& section,
                             const std::string& key, const std::string& value) = 0;
};

class SystemInfo {
public:
    virtual ~SystemInfo() = default;

    // The user's documents folder, without a trailing separator.
    virtual std::string DocumentsFolder() = 0;
    // True on systems that restrict writing to program folders.
    virtual bool RestrictsProgramFolders() = 0;
    // The face name of the system's message font; empty when there is none.
    virtual std::string MessageFontName() = 0;
    // A newly created default font object's name and size.
    virtual Font DefaultFont() = 0;
};

enum class MessageIcon { None, Information, Exclamation, Critical, Question };
enum class MessageButtons { Ok, YesNo };
enum class MessageAnswer { Ok, Yes, No };

struct ScreenSize {
    int32_t width = 0;
    int32_t height = 0;
};

// Every message box is captioned "Railwright".
inline constexpr std::string_view kMessageCaption = "Railwright";

class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual MessageAnswer ShowMessage(std::string_view text, MessageIcon icon,
                                      MessageButtons buttons) = 0;
    // Shows the dialog (loading it first) and returns when it has been unloaded.
    virtual void ShowModal(DialogModel& dialog) = 0;
    virtual void Repaint(DialogModel& dialog) = 0;
    // Handles pending window messages while a long task runs.
    virtual void PumpMessages() = 0;
    virtual ScreenSize Screen() = 0;
    // Reports progress of a long task of many items (item `done` of `total`, `item` naming the
    // one now being worked on); a front end may show it or not.
    virtual void Progress(std::string_view task, int done, int total, std::string_view item) {
        (void)task, (void)done, (void)total, (void)item;
    }
    // Says why an operation failed (the step, the file or folder, the fault), beside the message
    // box that reports the failure in the system's own words; a front end may show it or not.
    virtual void Explain(std::string_view why) { (void)why; }
};

struct Platform {
    FileSystem& files;
    Processes& processes;
    SettingsStore& settings;
    SystemInfo& system;
    UserInterface& ui;
};

}  // namespace railwright::support
