#include "support/win32/Win32Services.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <shlobj.h>
#include <shlwapi.h>
// The file system interface's member names are also the names of Windows macros.
#undef DeleteFile
#undef CopyFile

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/WholeFile.h"

namespace railwright::support::win32 {
namespace {

std::filesystem::path ToPath(const std::string& path) { return std::filesystem::path(Widen(path)); }

// Wildcard match of * and ? without regard to case, by the system's own rule.
bool Matches(const std::wstring& name, const std::wstring& pattern) {
    return PathMatchSpecW(name.c_str(), pattern.c_str()) != FALSE;
}

std::vector<std::string> List(const std::string& folder, bool folders, std::string_view pattern) {
    std::vector<std::string> names;
    std::error_code error;
    const std::wstring widePattern = Widen(pattern);
    for (const auto& entry : std::filesystem::directory_iterator(ToPath(folder), error)) {
        if (entry.is_directory(error) != folders) {
            continue;
        }
        const std::wstring name = entry.path().filename().wstring();
        if (folders || Matches(name, widePattern)) {
            names.push_back(Narrow(name));
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Win32ProcessHandle : public ProcessHandle {
public:
    Win32ProcessHandle(HANDLE process, ExitWait wait) : process_(process), wait_(wait) {}
    ~Win32ProcessHandle() override { CloseHandle(process_); }
    Win32ProcessHandle(const Win32ProcessHandle&) = delete;
    Win32ProcessHandle& operator=(const Win32ProcessHandle&) = delete;

    std::optional<int32_t> ExitCode() override {
        DWORD code = 0;
        if (!GetExitCodeProcess(process_, &code)) {
            return std::nullopt;
        }
        return static_cast<int32_t>(code);
    }

    // Wakes when the process ends, and also when a message arrives for this thread's windows,
    // so that the caller's keep-alive pump answers at once.
    bool AwaitExit(std::chrono::milliseconds longest) override {
        if (wait_ != ExitWait::WakeOnExit) {
            return false;
        }
        MsgWaitForMultipleObjects(1, &process_, FALSE, static_cast<DWORD>(longest.count()),
                                  QS_ALLINPUT);
        return true;
    }

private:
    HANDLE process_;
    ExitWait wait_;
};

HKEY OpenSettingsKey(const std::string& application, const std::string& section, bool create) {
    const std::wstring path = L"Software\\" + Widen(application) + L"\\" + Widen(section);
    HKEY key = nullptr;
    const LSTATUS status =
        create ? RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE,
                                 nullptr, &key, nullptr)
               : RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key);
    return status == ERROR_SUCCESS ? key : nullptr;
}

}  // namespace

bool Win32FileSystem::CreateFolder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(ToPath(path), error);
    return std::filesystem::is_directory(ToPath(path), error);
}

void Win32FileSystem::DeleteFile(const std::string& path) noexcept {
    ::DeleteFileW(Widen(path).c_str());
}

bool Win32FileSystem::CopyFile(const std::string& from, const std::string& to) {
    return CopyFileW(Widen(from).c_str(), Widen(to).c_str(), FALSE) != FALSE;
}

bool Win32FileSystem::FileExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(ToPath(path), error);
}

bool Win32FileSystem::FolderExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(ToPath(path), error);
}

std::vector<std::string> Win32FileSystem::ListFiles(const std::string& folder,
                                                    std::string_view pattern) {
    return List(folder, false, pattern);
}

std::vector<std::string> Win32FileSystem::ListFolders(const std::string& folder) {
    return List(folder, true, {});
}

bool Win32FileSystem::WriteFile(const std::string& path, std::string_view bytes) {
    // Written beside the target and moved into place, so that a failure leaves no half file.
    const std::wstring target = Widen(path);
    const std::wstring temporary = target + L".railwright-tmp";
    {
        std::ofstream out(std::filesystem::path(temporary), std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!out.flush()) {
            out.close();
            DeleteFileW(temporary.c_str());
            return false;
        }
    }
    if (!MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(temporary.c_str());
        return false;
    }
    return true;
}

std::optional<std::string> Win32FileSystem::ReadFile(const std::string& path) {
    return support::ReadWholeFile(ToPath(path));
}

std::string Win32FileSystem::ShortPath(const std::string& path) {
    const std::wstring wide = Widen(path);
    const DWORD size = GetShortPathNameW(wide.c_str(), nullptr, 0);
    if (size == 0) {
        return {};
    }
    std::wstring shortPath(size, L'\0');
    const DWORD length = GetShortPathNameW(wide.c_str(), shortPath.data(), size);
    if (length == 0 || length >= size) {
        return {};
    }
    shortPath.resize(length);
    return Narrow(shortPath);
}

std::optional<int32_t> Win32Processes::Launch(std::string_view commandLine, WindowStyle style) {
    std::wstring line = Widen(commandLine);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = static_cast<WORD>(style);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return std::nullopt;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int32_t>(process.dwProcessId);
}

std::unique_ptr<ProcessHandle> Win32Processes::Open(int32_t taskId) {
    // The plug-in asks for the query right alone; waiting on the handle needs SYNCHRONIZE too.
    const DWORD access = wait_ == ExitWait::WakeOnExit
                             ? PROCESS_QUERY_INFORMATION | SYNCHRONIZE
                             : PROCESS_QUERY_INFORMATION;
    HANDLE process = OpenProcess(access, FALSE, static_cast<DWORD>(taskId));
    if (process == nullptr) {
        return nullptr;
    }
    return std::make_unique<Win32ProcessHandle>(process, wait_);
}

void Win32Processes::Sleep(std::chrono::milliseconds duration) {
    ::Sleep(static_cast<DWORD>(duration.count()));
}

std::string RegistrySettingsStore::GetSetting(const std::string& application,
                                              const std::string& section, const std::string& key,
                                              const std::string& defaultValue) {
    HKEY handle = OpenSettingsKey(application, section, false);
    if (handle == nullptr) {
        return defaultValue;
    }
    const std::wstring name = Widen(key);
    DWORD type = 0;
    DWORD bytes = 0;
    std::string value = defaultValue;
    if (RegQueryValueExW(handle, name.c_str(), nullptr, &type, nullptr, &bytes) == ERROR_SUCCESS &&
        type == REG_SZ) {
        std::wstring wide(bytes / sizeof(wchar_t) + 1, L'\0');
        if (RegQueryValueExW(handle, name.c_str(), nullptr, nullptr,
                             reinterpret_cast<BYTE*>(wide.data()), &bytes) == ERROR_SUCCESS) {
            wide.resize(wcsnlen(wide.c_str(), wide.size()));
            value = Narrow(wide);
        }
    }
    RegCloseKey(handle);
    return value;
}

void RegistrySettingsStore::SaveSetting(const std::string& application, const std::string& section,
                                        const std::string& key, const std::string& value) {
    HKEY handle = OpenSettingsKey(application, section, true);
    if (handle == nullptr) {
        return;
    }
    const std::wstring wide = Widen(value);
    RegSetValueExW(handle, Widen(key).c_str(), 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(wide.c_str()),
                   static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(handle);
}

std::string Win32SystemInfo::DocumentsFolder() {
    PWSTR path = nullptr;
    std::string folder;
    if (SHGetKnownFolderPath(FOLDERID_Documents, 0, nullptr, &path) == S_OK) {
        folder = Narrow(path);
    }
    CoTaskMemFree(path);
    return folder;
}

bool Win32SystemInfo::RestrictsProgramFolders() {
    // Folder virtualisation and restricted program folders came with version 6.
    using RtlGetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOW*);
    HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    if (ntdll == nullptr) {
        return true;
    }
    auto getVersion = reinterpret_cast<RtlGetVersionFunction>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion")));
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    if (getVersion == nullptr || getVersion(&version) != 0) {
        return true;
    }
    return version.dwMajorVersion >= 6;
}

std::string Win32SystemInfo::MessageFontName() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0)) {
        return {};
    }
    return Narrow(metrics.lfMessageFont.lfFaceName);
}

Font Win32SystemInfo::DefaultFont() { return {"MS Sans Serif", 8.25}; }

std::wstring Widen(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         nullptr, 0);
    std::wstring wide(static_cast<size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), size);
    return wide;
}

std::string Narrow(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                        size, nullptr, nullptr);
    return narrow;
}

}  // namespace railwright::support::win32
