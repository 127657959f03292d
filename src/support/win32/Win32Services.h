// The platform services on Windows: files and folders with wide paths, programs started with
// CreateProcessW and polled with GetExitCodeProcess (and, for the command, waited for), the per-user settings store in the registry,
// and the system queries.
#pragma once

#include "support/Platform.h"

namespace railwright::support::win32 {

class Win32FileSystem : public FileSystem {
public:
    bool CreateFolder(const std::string& path) override;
    void DeleteFile(const std::string& path) noexcept override;
    bool CopyFile(const std::string& from, const std::string& to) override;
    bool FileExists(const std::string& path) override;
    bool FolderExists(const std::string& path) override;
    std::vector<std::string> ListFiles(const std::string& folder,
                                       std::string_view pattern) override;
    std::vector<std::string> ListFolders(const std::string& folder) override;
    bool WriteFile(const std::string& path, std::string_view bytes) override;
    std::optional<std::string> ReadFile(const std::string& path) override;
    // GetShortPathNameW; the 8.3 form keeps tools that read 8-bit command lines working with
    // names outside the code page.
    std::string ShortPath(const std::string& path) override;
};

class Win32Processes : public Processes {
public:
    // ExitWait::Sleep for the plug-in: handles opened with the query right alone (access mask
    // 1024), polled. ExitWait::WakeOnExit for the command: handles that also wait for the end
    // with MsgWaitForMultipleObjects.
    explicit Win32Processes(ExitWait wait = ExitWait::Sleep) : wait_(wait) {}

    std::optional<int32_t> Launch(std::string_view commandLine, WindowStyle style) override;
    std::unique_ptr<ProcessHandle> Open(int32_t taskId) override;
    void Sleep(std::chrono::milliseconds duration) override;

private:
    ExitWait wait_;
};

// Values under HKEY_CURRENT_USER\Software\<application>\<section>, as strings.
class RegistrySettingsStore : public SettingsStore {
public:
    std::string GetSetting(const std::string& application, const std::string& section,
                           const std::string& key, const std::string& defaultValue) override;
    void SaveSetting(const std::string& application, const std::string& section,
                     const std::string& key, const std::string& value) override;
};

class Win32SystemInfo : public SystemInfo {
public:
    std::string DocumentsFolder() override;
    // Windows Vista and later restrict writing to program folders.
    bool RestrictsProgramFolders() override;
    std::string MessageFontName() override;
    Font DefaultFont() override;
};

// UTF-8 and UTF-16 conversions at the edge of the Windows API.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view text);

}  // namespace railwright::support::win32
