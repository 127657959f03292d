#include "support/posix/PosixProcesses.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <thread>
#include <vector>

#include "support/CommandLine.h"
#include "support/posix/PosixFileSystem.h"

extern char** environ;

namespace railwright::support::posix {
namespace {

bool IsExecutableFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

std::string SearchPath() {
    if (const char* path = std::getenv("PATH")) {
        return path;
    }
    const size_t size = confstr(_CS_PATH, nullptr, 0);
    std::string fallback(size, '\0');
    if (size == 0 || confstr(_CS_PATH, fallback.data(), size) == 0) {
        return "/bin:/usr/bin";
    }
    fallback.resize(size - 1);
    return fallback;
}

// How a reaped child ended, in the form a Windows exit code takes: its exit status, or 128 plus
// the signal that killed it, as shells report it.
int32_t ExitCodeOf(int status) {
    if (WIFEXITED(status)) {
        return WEXITSTATUS(status);
    }
    if (WIFSIGNALED(status)) {
        return 128 + WTERMSIG(status);
    }
    return kStillActive;
}

// A descriptor that becomes readable when the process ends (Linux 5.3 and later); -1 where
// there is none.
int OpenProcessDescriptor(pid_t processId) {
#ifdef SYS_pidfd_open
    return static_cast<int>(syscall(SYS_pidfd_open, processId, 0));
#else
    (void)processId;
    return -1;
#endif
}

class PosixProcessHandle : public ProcessHandle {
public:
    PosixProcessHandle(pid_t processId, std::shared_ptr<EndedChildren> ended, ExitWait wait)
        : processId_(processId), ended_(std::move(ended)), wait_(wait) {}
    ~PosixProcessHandle() override {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    PosixProcessHandle(const PosixProcessHandle&) = delete;
    PosixProcessHandle& operator=(const PosixProcessHandle&) = delete;

    bool AwaitExit(std::chrono::milliseconds longest) override {
        if (wait_ != ExitWait::WakeOnExit) {
            return false;
        }
        if (exitCode_) {
            return true;
        }
        const auto deadline = std::chrono::steady_clock::now() + longest;
        if (descriptor_ == -1 && !ended_->Find(processId_)) {
            descriptor_ = OpenProcessDescriptor(processId_);
            if (descriptor_ < 0) {
                descriptor_ = -2;  // none to be had: look at the child in short steps
            }
        }
        while (true) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0) {
                return true;
            }
            if (descriptor_ >= 0) {
                pollfd ready{descriptor_, POLLIN, 0};
                const int polled = poll(&ready, 1, static_cast<int>(left.count()));
                if (polled != 0 && !(polled < 0 && errno == EINTR)) {
                    return true;  // ended (or the descriptor failed: the caller looks anyway)
                }
                continue;
            }
            // Without a descriptor: a look every millisecond, doubling up to the time left.
            if (ExitCode() != kStillActive) {
                return true;
            }
            step_ = std::min(std::max(step_ * 2, std::chrono::milliseconds(1)), left);
            std::this_thread::sleep_for(step_);
        }
    }

    std::optional<int32_t> ExitCode() override {
        if (exitCode_) {
            return exitCode_;
        }
        int status = 0;
        pid_t reaped = 0;
        do {
            reaped = waitpid(processId_, &status, WNOHANG);
        } while (reaped < 0 && errno == EINTR);
        if (reaped == 0) {
            return kStillActive;
        }
        if (reaped == processId_) {
            const int32_t code = ExitCodeOf(status);
            if (code == kStillActive) {
                return code;
            }
            ended_->Record(processId_, code);
            exitCode_ = code;
            return exitCode_;
        }
        // Not our child, or reaped through another handle.
        exitCode_ = ended_->Find(processId_);
        return exitCode_;
    }

private:
    pid_t processId_;
    std::shared_ptr<EndedChildren> ended_;
    ExitWait wait_;
    std::optional<int32_t> exitCode_;
    int descriptor_ = -1;  // the pidfd once opened; -2 when there is none
    std::chrono::milliseconds step_{0};
};

// Spawn attributes that give the child the default handling of every signal and no blocked
// signals, whatever this process ignores or blocks.
class SpawnAttributes {
public:
    SpawnAttributes() {
        ready_ = posix_spawnattr_init(&attributes_) == 0;
        if (!ready_) {
            return;
        }
        sigset_t all;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        sigset_t none;
        sigemptyset(&none);
        ready_ = posix_spawnattr_setsigdefault(&attributes_, &all) == 0 &&
                 posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
                 posix_spawnattr_setflags(&attributes_,
                                          POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK) == 0;
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    const posix_spawnattr_t* Get() const { return ready_ ? &attributes_ : nullptr; }

private:
    posix_spawnattr_t attributes_{};
    bool ready_ = false;
};

}  // namespace

void EndedChildren::Record(int32_t processId, int32_t exitCode) {
    std::lock_guard lock(mutex_);
    exitCodes_[processId] = exitCode;
}

void EndedChildren::Forget(int32_t processId) {
    std::lock_guard lock(mutex_);
    exitCodes_.erase(processId);
}

std::optional<int32_t> EndedChildren::Find(int32_t processId) const {
    std::lock_guard lock(mutex_);
    const auto found = exitCodes_.find(processId);
    if (found == exitCodes_.end()) {
        return std::nullopt;
    }
    return found->second;
}

std::string FindProgram(const std::string& program) {
    if (program.empty()) {
        return {};
    }
    if (program.find('/') != std::string::npos) {
        // Named by its path, as the tools are: found without regard to case, as on Windows.
        const std::string file = FindFileIgnoringCase(program);
        return !file.empty() && IsExecutableFile(file) ? file : std::string();
    }
    const std::string path = SearchPath();
    size_t start = 0;
    while (true) {
        const size_t end = path.find(':', start);
        const std::string folder =
            path.substr(start, end == std::string::npos ? std::string::npos : end - start);
        const std::string candidate = folder.empty() ? program : folder + "/" + program;
        if (IsExecutableFile(candidate)) {
            return candidate;
        }
        if (end == std::string::npos) {
            return {};
        }
        start = end + 1;
    }
}

PosixProcesses::PosixProcesses(ExitWait wait)
    : wait_(wait), ended_(std::make_shared<EndedChildren>()) {}

std::optional<int32_t> PosixProcesses::Launch(std::string_view commandLine, WindowStyle) {
    std::vector<std::string> arguments = SplitCommandLine(commandLine);
    if (arguments.empty()) {
        return std::nullopt;
    }
    std::string program = FindProgram(arguments.front());
    if (program.empty()) {
        return std::nullopt;
    }
    if (program.find('/') == std::string::npos) {
        program = "./" + program;  // found through an empty $PATH entry
    }
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const SpawnAttributes attributes;
    pid_t processId = 0;
    if (posix_spawn(&processId, program.c_str(), nullptr, attributes.Get(), argv.data(), environ) !=
        0) {
        return std::nullopt;
    }
    // A new child may reuse the id of one reaped long ago.
    ended_->Forget(processId);
    return static_cast<int32_t>(processId);
}

std::unique_ptr<ProcessHandle> PosixProcesses::Open(int32_t taskId) {
    if (taskId <= 0) {
        return nullptr;
    }
    const bool exists = ended_->Find(taskId).has_value() || kill(taskId, 0) == 0 || errno == EPERM;
    if (!exists) {
        return nullptr;
    }
    return std::make_unique<PosixProcessHandle>(taskId, ended_, wait_);
}

void PosixProcesses::Sleep(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace railwright::support::posix
