// Child processes on a POSIX system: a Windows-style command line started without a shell, and
// exit codes read by polling; with ExitWait::WakeOnExit a handle also waits for its child's end
// (on a pidfd where the kernel has them).
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "support/Platform.h"

namespace railwright::support::posix {

// Exit codes of children that have been reaped, shared by the launcher and its handles: once a
// child is reaped only this record remembers how it ended.
class EndedChildren {
public:
    void Record(int32_t processId, int32_t exitCode);
    void Forget(int32_t processId);
    std::optional<int32_t> Find(int32_t processId) const;

private:
    mutable std::mutex mutex_;
    std::map<int32_t, int32_t> exitCodes_;
};

class PosixProcesses : public Processes {
public:
    explicit PosixProcesses(ExitWait wait = ExitWait::Sleep);

    // Splits the command line with the Windows rules (SplitCommandLine) and starts the program
    // directly: a name without "/" is looked up in $PATH. The program must be an executable
    // regular file; this is checked before the start, so that a missing program gives no task
    // even where the C library reports a failed start only through exit status 127. The window
    // style means nothing here and is ignored. The child gets the default handling of every
    // signal and an empty signal mask. The task id is the process id.
    std::optional<int32_t> Launch(std::string_view commandLine, WindowStyle style) override;
    // A handle for a child of this process (running or ended), or one whose exit code cannot be
    // read for any other process that exists; null when there is no such process. With
    // ExitWait::WakeOnExit the handle's AwaitExit returns as soon as its child has ended.
    std::unique_ptr<ProcessHandle> Open(int32_t taskId) override;
    void Sleep(std::chrono::milliseconds duration) override;

private:
    ExitWait wait_;
    std::shared_ptr<EndedChildren> ended_;
};

// The executable file that a program name names: when it holds "/", the file of that path found
// without regard to case (FindFileIgnoringCase); otherwise the first match along $PATH (an empty
// entry meaning the current folder). Empty when there is no executable regular file.
std::string FindProgram(const std::string& program);

}  // namespace railwright::support::posix
