#include "tools/ace/ToolRunner.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/posix/PosixProcesses.h"

namespace railwright::ace::testing {

std::string ToolsFolder() {
    return std::string(RAILWRIGHT_TOOLS_BIN_DIR) + "/";
}

ToolRun RunTool(const std::string& commandLine) {
    ToolRun run;
    char errorsPath[] = "/tmp/railwright-tool-stderr-XXXXXX";
    const int errorsFile = mkstemp(errorsPath);
    if (errorsFile < 0) {
        return run;
    }
    // The child inherits standard error as it is when it starts: point it at the file for the
    // moment of the launch only.
    std::fflush(stderr);
    const int savedErrors = dup(STDERR_FILENO);
    dup2(errorsFile, STDERR_FILENO);
    support::posix::PosixProcesses processes;
    const std::optional<int32_t> task = processes.Launch(commandLine, support::WindowStyle::Hidden);
    dup2(savedErrors, STDERR_FILENO);
    close(savedErrors);
    close(errorsFile);

    if (task) {
        run.started = true;
        const std::unique_ptr<support::ProcessHandle> handle = processes.Open(*task);
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (handle && std::chrono::steady_clock::now() < giveUp) {
            const std::optional<int32_t> code = handle->ExitCode();
            if (!code) {
                break;
            }
            if (*code != support::kStillActive) {
                run.exitCode = *code;
                break;
            }
            processes.Sleep(std::chrono::milliseconds(5));
        }
    }
    std::ifstream errors(errorsPath, std::ios::binary);
    run.errors.assign(std::istreambuf_iterator<char>(errors), {});
    unlink(errorsPath);
    return run;
}

std::string MakeAceCommandLine(const std::string& input, const std::string& output,
                               const std::string& switches) {
    return ToolsFolder() + "MakeACE.exe " + input + " \"" + output + "\"" + switches;
}

std::string AceCompCommandLine(const std::string& file) {
    return ToolsFolder() + "acecomp.exe " + file + " " + file;
}

std::vector<uint8_t> FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> FolderEntries(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace railwright::ace::testing
