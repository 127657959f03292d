#include "support/posix/PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <filesystem>

#include "support/SupportingFunctions.h"
#include "support/posix/Environment.h"

namespace railwright::support::posix {
namespace {

char UpperAscii(char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

// The length of the UTF-8 sequence starting at `text[at]`, never past the end; a stray byte
// counts as one character.
size_t CharacterLength(std::string_view text, size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    size_t length = 1;
    if (lead >= 0xF0) {
        length = 4;
    } else if (lead >= 0xE0) {
        length = 3;
    } else if (lead >= 0xC0) {
        length = 2;
    }
    return std::min(length, text.size() - at);
}

bool LessByName(const std::string& a, const std::string& b) {
    const auto upperLess = [](char x, char y) {
        return static_cast<unsigned char>(UpperAscii(x)) <
               static_cast<unsigned char>(UpperAscii(y));
    };
    if (std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), upperLess)) {
        return true;
    }
    if (std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(), upperLess)) {
        return false;
    }
    return a < b;
}

enum class EntryKind { File, Folder };

// The names in `folder` of the given kind (symbolic links followed), sorted by name.
template <typename Accept>
std::vector<std::string> ListEntries(const std::string& folder, EntryKind kind, Accept accept) {
    std::vector<std::string> names;
    DIR* directory = opendir(folder.empty() ? "." : folder.c_str());
    if (directory == nullptr) {
        return names;
    }
    const int folderDescriptor = dirfd(directory);
    while (const dirent* entry = readdir(directory)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == ".." || !accept(name)) {
            continue;
        }
        struct stat status {};
        if (fstatat(folderDescriptor, entry->d_name, &status, 0) != 0) {
            continue;  // a dangling link or an entry that vanished meanwhile
        }
        const bool wanted =
            kind == EntryKind::File ? S_ISREG(status.st_mode) : S_ISDIR(status.st_mode);
        if (wanted) {
            names.emplace_back(name);
        }
    }
    closedir(directory);
    std::sort(names.begin(), names.end(), LessByName);
    return names;
}

// True when a Windows command line could not carry the path unquoted, or a tool could misread it.
bool NeedsAlias(std::string_view path) {
    if (path.empty()) {
        return true;
    }
    return std::any_of(path.begin(), path.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F || c == ' ' || c == '"' || c == '\\';
    });
}

std::string HashName(std::string_view text) {
    uint64_t hash = 14695981039346656037ULL;  // 64-bit FNV-1a
    for (char c : text) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 1099511628211ULL;
    }
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string name(16, '0');
    for (size_t i = name.size(); i-- > 0;) {
        name[i] = kDigits[hash & 0xF];
        hash >>= 4;
    }
    return name;
}

std::string DefaultAliasFolder() {
    const std::string leaf = "railwright-short-" + std::to_string(getuid());
    const std::optional<std::string> temp = ProcessEnvironment()("TMPDIR");
    if (temp && !temp->empty() && !NeedsAlias(*temp)) {
        return JoinPath(*temp, leaf);
    }
    return JoinPath("/tmp", leaf);
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

}  // namespace

bool MatchesWildcard(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*") {
        pattern = "*";
    }
    size_t n = 0;
    size_t p = 0;
    // Where the last * was seen and where the name stood then, for backtracking.
    size_t starPattern = std::string_view::npos;
    size_t starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starPattern = p++;
            starName = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            n += CharacterLength(name, n);
        } else if (p < pattern.size() && UpperAscii(pattern[p]) == UpperAscii(name[n])) {
            ++p;
            ++n;
        } else if (starPattern != std::string_view::npos) {
            p = starPattern + 1;
            starName += CharacterLength(name, starName);
            n = starName;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

bool ReplaceFile(const std::string& path, std::string_view bytes) {
    static std::atomic<uint64_t> counter{0};
    const size_t slash = path.rfind('/');
    const std::string folder =
        slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    // A short name of our own beside the target: a long target name leaves no room for a suffix.
    std::string temporary;
    int descriptor = -1;
    for (int attempt = 0; attempt < 100 && descriptor < 0; ++attempt) {
        temporary = folder + ".railwright-" + std::to_string(getpid()) + "-" +
                    std::to_string(counter++) + ".tmp";
        descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST) {
            return false;
        }
    }
    if (descriptor < 0) {
        return false;
    }
    const bool written = WriteAll(descriptor, bytes) && fsync(descriptor) == 0;
    const bool closed = close(descriptor) == 0;
    if (!written || !closed || rename(temporary.c_str(), path.c_str()) != 0) {
        unlink(temporary.c_str());
        return false;
    }
    return true;
}

PosixFileSystem::PosixFileSystem(std::string aliasRoot)
    : aliasRoot_(aliasRoot.empty() ? DefaultAliasFolder() : std::move(aliasRoot)) {}

bool PosixFileSystem::CreateFolder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return FolderExists(path);
}

void PosixFileSystem::DeleteFile(const std::string& path) noexcept {
    unlink(path.c_str());
}

bool PosixFileSystem::CopyFile(const std::string& from, const std::string& to) {
    std::error_code error;
    return std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing,
                                      error) &&
           !error;
}

bool PosixFileSystem::FileExists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool PosixFileSystem::FolderExists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> PosixFileSystem::ListFiles(const std::string& folder,
                                                    std::string_view pattern) {
    return ListEntries(folder, EntryKind::File,
                       [pattern](std::string_view name) { return MatchesWildcard(name, pattern); });
}

std::vector<std::string> PosixFileSystem::ListFolders(const std::string& folder) {
    return ListEntries(folder, EntryKind::Folder, [](std::string_view) { return true; });
}

bool PosixFileSystem::WriteFile(const std::string& path, std::string_view bytes) {
    return ReplaceFile(path, bytes);
}

std::optional<std::string> PosixFileSystem::ReadFile(const std::string& path) {
    return ReadWholeFile(path);
}

std::string FindFileIgnoringCase(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        return path;
    }
    const size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const std::string_view leaf =
        slash == std::string::npos ? std::string_view(path) : std::string_view(path).substr(slash + 1);
    const std::vector<std::string> found =
        ListEntries(folder, EntryKind::File,
                    [leaf](std::string_view name) { return EqualsIgnoreCase(name, leaf); });
    if (found.empty()) {
        return {};
    }
    return slash == std::string::npos ? found.front() : folder + found.front();
}

std::string PosixFileSystem::ShortPath(const std::string& path) {
    struct stat status {};
    if (path.empty() || stat(path.c_str(), &status) != 0) {
        return {};
    }
    if (!NeedsAlias(path)) {
        return path;
    }
    std::error_code error;
    std::string absolute = std::filesystem::absolute(path, error).string();
    if (error) {
        return path;
    }
    while (absolute.size() > 1 && absolute.back() == '/') {
        absolute.pop_back();
    }
    const std::string aliasFolder = AliasFolder();
    if (aliasFolder.empty()) {
        return path;
    }
    const size_t slash = absolute.rfind('/');
    const std::string folder = slash == 0 ? std::string("/") : absolute.substr(0, slash);
    const std::string name = absolute.substr(slash + 1);
    if (!NeedsAlias(name)) {
        const std::string link = JoinPath(aliasFolder, HashName(folder));
        return MakeLink(link, folder) ? JoinPath(link, name) : path;
    }
    std::string link = JoinPath(aliasFolder, HashName(absolute));
    if (const size_t dot = name.rfind('.'); dot != std::string::npos && dot + 1 < name.size()) {
        const std::string extension = name.substr(dot + 1);
        if (!NeedsAlias(extension)) {
            link += "." + extension;
        }
    }
    return MakeLink(link, absolute) ? link : path;
}

std::string PosixFileSystem::AliasFolder() {
    if (mkdir(aliasRoot_.c_str(), 0700) != 0 && errno != EEXIST) {
        return {};
    }
    // Another user could have made the folder first in a shared temp folder: use it only when it
    // is a real folder of ours that nobody else can enter.
    struct stat status {};
    if (lstat(aliasRoot_.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != getuid()) {
        return {};
    }
    if ((status.st_mode & 077) != 0 && chmod(aliasRoot_.c_str(), 0700) != 0) {
        return {};
    }
    return aliasRoot_;
}

bool PosixFileSystem::MakeLink(const std::string& linkPath, const std::string& target) {
    std::string current(4096, '\0');
    const ssize_t length = readlink(linkPath.c_str(), current.data(), current.size());
    if (length >= 0 && static_cast<size_t>(length) == target.size() &&
        current.compare(0, target.size(), target) == 0) {
        return true;
    }
    // Made under a name of its own and renamed into place, so that a reader of the old link never
    // sees no link at all.
    const std::string fresh = linkPath + ".new-" + std::to_string(getpid());
    unlink(fresh.c_str());
    if (symlink(target.c_str(), fresh.c_str()) != 0) {
        return false;
    }
    if (rename(fresh.c_str(), linkPath.c_str()) != 0) {
        unlink(fresh.c_str());
        return false;
    }
    return true;
}

}  // namespace railwright::support::posix
