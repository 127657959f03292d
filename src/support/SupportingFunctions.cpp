#include "support/SupportingFunctions.h"

#include <algorithm>
#include <cctype>

namespace railwright::support {
namespace {

constexpr std::chrono::milliseconds kPollInterval{50};

char UpperChar(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

}  // namespace

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != kPathSeparator) {
        path += kPathSeparator;
    }
    path += name;
    return path;
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), UpperChar);
    return upper;
}

std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    });
    return lower;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return UpperChar(x) == UpperChar(y);
           });
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

bool EndsWithIgnoreCase(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() &&
           EqualsIgnoreCase(text.substr(text.size() - suffix.size()), suffix);
}

std::string MstsFolder(host::HostContext& context, const std::string& currentFolder) {
    return MstsFolder(*context.Application(), currentFolder);
}

std::string MstsFolder(host::Application& application, const std::string& currentFolder) {
    const std::string applicationName = application.RegistryName();
    const std::string mainFile =
        application.CreateSimulatorLocator()->FindMSTS(currentFolder, applicationName);
    // The locator reports the program file with Windows separators wherever the host runs; the
    // folder is everything up to and including the last separator.
    const size_t last = mainFile.find_last_of(std::string_view("\\/"));
    if (last == std::string::npos) {
        return {};
    }
    return mainFile.substr(0, last + 1);
}

std::string RailWorksFolder(host::HostContext& context, intptr_t ownerWindow) {
    return RailWorksFolder(*context.Application(), ownerWindow);
}

std::string RailWorksFolder(host::Application& application, intptr_t ownerWindow) {
    const std::string applicationName = application.RegistryName();
    return application.CreateSimulatorLocator()->FindRailWorks(ownerWindow, applicationName);
}

std::string ShortPath(FileSystem& files, const std::string& longPath) {
    return files.ShortPath(longPath);
}

SplitName SplitExtension(std::string_view fileName) {
    for (size_t i = fileName.size(); i-- > 0;) {
        if (fileName[i] == '\\' || fileName[i] == '/') {
            break;
        }
        if (fileName[i] == '.') {
            return {std::string(fileName.substr(0, i)), std::string(fileName.substr(i + 1))};
        }
    }
    return {std::string(fileName), {}};
}

RunResult RunAndWait(Platform& platform, std::string_view commandLine, bool keepAlive,
                     WindowStyle style, DialogModel* form) {
    RunResult result;
    const std::optional<int32_t> taskId = platform.processes.Launch(commandLine, style);
    if (!taskId) {
        return result;
    }
    result.started = true;
    result.taskId = *taskId;
    std::unique_ptr<ProcessHandle> process = platform.processes.Open(*taskId);
    if (form != nullptr) {
        platform.ui.Repaint(*form);
    }
    do {
        if (process == nullptr || !process->AwaitExit(kPollInterval)) {
            platform.processes.Sleep(kPollInterval);
        }
        if (keepAlive) {
            platform.ui.PumpMessages();
        }
        result.exitCode = process ? process->ExitCode() : std::nullopt;
    } while (result.exitCode == kStillActive);
    return result;
}

bool MstsCompressorPresent(host::HostContext& context, FileSystem& files) {
    const std::string folder = MstsFolder(context, {});
    if (folder.empty()) {
        return false;
    }
    for (const std::string& name : files.ListFiles(folder, "acecomp.exe")) {
        if (EqualsIgnoreCase(name, "acecomp.exe")) {
            return true;
        }
    }
    return false;
}

std::string TopLevelAncestorName(host::Scripting& scripting, host::SceneGroup& group) {
    std::shared_ptr<host::SceneGroup> root = scripting.RootGroup();
    std::shared_ptr<host::SceneGroup> current;
    std::shared_ptr<host::SceneGroup> parent = group.Parent();
    if (!parent || parent->IsSameGroup(*root)) {
        return group.Name();
    }
    current = parent;
    while (true) {
        parent = current->Parent();
        if (!parent || parent->IsSameGroup(*root)) {
            return current->Name();
        }
        current = parent;
    }
}

}  // namespace railwright::support
