// Test stand-ins for the platform services that do not touch the disk or start programs.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "support/Platform.h"

namespace railwright::testing {

// For code that must not touch files: every operation fails.
class NoFileSystem : public support::FileSystem {
public:
    bool CreateFolder(const std::string&) override { return false; }
    void DeleteFile(const std::string&) noexcept override {}
    bool CopyFile(const std::string&, const std::string&) override { return false; }
    bool FileExists(const std::string&) override { return false; }
    bool FolderExists(const std::string&) override { return false; }
    std::vector<std::string> ListFiles(const std::string&, std::string_view) override { return {}; }
    std::vector<std::string> ListFolders(const std::string&) override { return {}; }
    bool WriteFile(const std::string&, std::string_view) override { return false; }
    std::optional<std::string> ReadFile(const std::string&) override { return std::nullopt; }
    std::string ShortPath(const std::string&) override { return {}; }
};

class MemorySettingsStore : public support::SettingsStore {
public:
    std::string GetSetting(const std::string& application, const std::string& section,
                           const std::string& key, const std::string& defaultValue) override {
        const auto found = values.find({application, section, key});
        return found == values.end() ? defaultValue : found->second;
    }
    void SaveSetting(const std::string& application, const std::string& section,
                     const std::string& key, const std::string& value) override {
        values[{application, section, key}] = value;
    }

    std::map<std::tuple<std::string, std::string, std::string>, std::string> values;
};

class FakeSystemInfo : public support::SystemInfo {
public:
    std::string DocumentsFolder() override { return documentsFolder; }
    bool RestrictsProgramFolders() override { return restrictsProgramFolders; }
    std::string MessageFontName() override { return messageFontName; }
    support::Font DefaultFont() override { return defaultFont; }

    std::string documentsFolder = "/home/user/Documents";
    bool restrictsProgramFolders = false;
    std::string messageFontName = "Segoe UI";
    support::Font defaultFont{"MS Sans Serif", 8.25};
};

// Processes that run nothing: each launch is recorded and reports the scripted exit codes.
class FakeProcesses : public support::Processes {
public:
    std::optional<int32_t> Launch(std::string_view commandLine, support::WindowStyle) override {
        launched.emplace_back(commandLine);
        if (!launchSucceeds) {
            return std::nullopt;
        }
        return nextTaskId++;
    }
    std::unique_ptr<support::ProcessHandle> Open(int32_t) override {
        if (!openSucceeds) {
            return nullptr;
        }
        return std::make_unique<Handle>(*this);
    }
    void Sleep(std::chrono::milliseconds duration) override { sleeps.push_back(duration); }

    // Each read of an exit code takes the next of these; the last one repeats.
    std::vector<int32_t> exitCodes{0};
    bool launchSucceeds = true;
    bool openSucceeds = true;
    int32_t nextTaskId = 4242;
    std::vector<std::string> launched;
    std::vector<std::chrono::milliseconds> sleeps;

private:
    class Handle : public support::ProcessHandle {
    public:
        explicit Handle(FakeProcesses& owner) : owner_(owner) {}
        std::optional<int32_t> ExitCode() override {
            const size_t read = reads_++;
            return owner_.exitCodes[std::min(read, owner_.exitCodes.size() - 1)];
        }

    private:
        FakeProcesses& owner_;
        size_t reads_ = 0;
    };
};

}  // namespace railwright::testing
