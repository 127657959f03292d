#include "support/posix/PosixSystemInfo.h"

#include <optional>
#include <string_view>

#include "support/posix/PosixFileSystem.h"

namespace railwright::support::posix {
namespace {

std::string WithoutTrailingSlash(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

// The folder that a user-dirs.dirs line gives XDG_DOCUMENTS_DIR, read as the shell reads the
// file's one permitted form: NAME="$HOME/relative" or NAME="/absolute", with backslash escapes.
std::optional<std::string> DocumentsEntry(std::string_view line, const std::string& home) {
    constexpr std::string_view kName = "XDG_DOCUMENTS_DIR=";
    const size_t start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos || line.substr(start, kName.size()) != kName) {
        return std::nullopt;
    }
    line.remove_prefix(start + kName.size());
    if (line.empty() || line.front() != '"') {
        return std::nullopt;
    }
    std::string value;
    bool closed = false;
    for (size_t i = 1; i < line.size(); ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            value += line[++i];
        } else if (line[i] == '"') {
            closed = true;
            break;
        } else {
            value += line[i];
        }
    }
    if (!closed) {
        return std::nullopt;
    }
    constexpr std::string_view kHome = "$HOME";
    if (value.compare(0, kHome.size(), kHome) == 0 &&
        (value.size() == kHome.size() || value[kHome.size()] == '/')) {
        return home + value.substr(kHome.size());
    }
    if (!value.empty() && value.front() == '/') {
        return value;
    }
    return std::nullopt;
}

}  // namespace

PosixSystemInfo::PosixSystemInfo(EnvironmentLookup environment)
    : environment_(std::move(environment)) {}

std::string PosixSystemInfo::DocumentsFolder() {
    if (std::optional<std::string> documents = environment_("XDG_DOCUMENTS_DIR");
        documents && !documents->empty()) {
        return WithoutTrailingSlash(*documents);
    }
    const std::string home = HomeFolder(environment_);
    std::string configFolder = JoinPath(home, ".config");
    if (std::optional<std::string> configHome = environment_("XDG_CONFIG_HOME");
        configHome && !configHome->empty() && configHome->front() == '/') {
        configFolder = *configHome;
    }
    std::optional<std::string> found;
    if (std::optional<std::string> text = ReadWholeFile(JoinPath(configFolder, "user-dirs.dirs"))) {
        std::string_view rest = *text;
        while (!rest.empty()) {
            const size_t end = rest.find('\n');
            // Like the shell, the last assignment wins.
            if (std::optional<std::string> entry = DocumentsEntry(rest.substr(0, end), home)) {
                found = std::move(entry);
            }
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
    }
    return WithoutTrailingSlash(found ? *found : JoinPath(home, "Documents"));
}

}  // namespace railwright::support::posix
