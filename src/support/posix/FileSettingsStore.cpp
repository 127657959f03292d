#include "support/posix/FileSettingsStore.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "support/SupportingFunctions.h"
#include "support/posix/PosixFileSystem.h"

namespace railwright::support::posix {
namespace {

struct Entry {
    std::string key;
    std::string value;
};

struct Section {
    std::string application;
    std::string section;
    std::vector<Entry> entries;
};

enum class Escaping { Name, Value };

bool NeedsEscape(char c, Escaping escaping) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F || c == '%') {
        return true;
    }
    if (escaping == Escaping::Value) {
        return false;
    }
    return c == '\\' || c == '[' || c == ']' || c == '=' || c == ';' || c == '#';
}

std::string Escape(std::string_view text, Escaping escaping) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string escaped;
    for (char c : text) {
        if (NeedsEscape(c, escaping)) {
            const auto byte = static_cast<unsigned char>(c);
            escaped += '%';
            escaped += kDigits[byte >> 4];
            escaped += kDigits[byte & 0xF];
        } else {
            escaped += c;
        }
    }
    return escaped;
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

// The text with its escapes read; empty when an escape is incomplete or not hexadecimal.
std::optional<std::string> Unescape(std::string_view text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            plain += text[i];
            continue;
        }
        if (i + 2 >= text.size()) {
            return std::nullopt;
        }
        const int high = HexValue(text[i + 1]);
        const int low = HexValue(text[i + 2]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        plain += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return plain;
}

Section* FindSection(std::vector<Section>& sections, std::string_view application,
                     std::string_view section) {
    for (Section& candidate : sections) {
        if (EqualsIgnoreCase(candidate.application, application) &&
            EqualsIgnoreCase(candidate.section, section)) {
            return &candidate;
        }
    }
    return nullptr;
}

void SetEntry(Section& section, std::string key, std::string value) {
    for (Entry& entry : section.entries) {
        if (EqualsIgnoreCase(entry.key, key)) {
            entry.value = std::move(value);
            return;
        }
    }
    section.entries.push_back({std::move(key), std::move(value)});
}

// The readable part of a settings file; sections met twice are merged, the later value of a key
// winning.
std::vector<Section> Parse(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") {
        text.remove_prefix(3);  // a byte-order mark left by an editor
    }
    std::vector<Section> sections;
    Section* current = nullptr;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (line.empty() || line.front() == ';' || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            current = nullptr;
            const size_t separator = line.find('\\');
            if (line.back() != ']' || separator == std::string_view::npos) {
                continue;
            }
            const std::optional<std::string> application = Unescape(line.substr(1, separator - 1));
            const std::optional<std::string> section =
                Unescape(line.substr(separator + 1, line.size() - separator - 2));
            if (!application || !section) {
                continue;
            }
            current = FindSection(sections, *application, *section);
            if (current == nullptr) {
                current = &sections.emplace_back(Section{*application, *section, {}});
            }
            continue;
        }
        const size_t equals = line.find('=');
        if (current == nullptr || equals == std::string_view::npos) {
            continue;
        }
        std::optional<std::string> key = Unescape(line.substr(0, equals));
        std::optional<std::string> value = Unescape(line.substr(equals + 1));
        if (key && value) {
            SetEntry(*current, std::move(*key), std::move(*value));
        }
    }
    return sections;
}

std::string Serialize(const std::vector<Section>& sections) {
    std::string text;
    for (const Section& section : sections) {
        if (!text.empty()) {
            text += '\n';
        }
        text += '[' + Escape(section.application, Escaping::Name) + '\\' +
                Escape(section.section, Escaping::Name) + "]\n";
        for (const Entry& entry : section.entries) {
            text += Escape(entry.key, Escaping::Name) + '=' + Escape(entry.value, Escaping::Value) +
                    '\n';
        }
    }
    return text;
}

}  // namespace

std::string DefaultSettingsPath(const EnvironmentLookup& environment) {
    std::string configFolder;
    if (std::optional<std::string> configHome = environment("XDG_CONFIG_HOME");
        configHome && !configHome->empty() && configHome->front() == '/') {
        configFolder = *configHome;
    } else {
        configFolder = JoinPath(HomeFolder(environment), ".config");
    }
    return JoinPath(JoinPath(configFolder, "railwright"), "settings.ini");
}

FileSettingsStore::FileSettingsStore(std::string path) : path_(std::move(path)) {}

std::string FileSettingsStore::GetSetting(const std::string& application,
                                          const std::string& section, const std::string& key,
                                          const std::string& defaultValue) {
    const std::optional<std::string> text = ReadWholeFile(path_);
    if (!text) {
        return defaultValue;
    }
    std::vector<Section> sections = Parse(*text);
    if (const Section* found = FindSection(sections, application, section)) {
        for (const Entry& entry : found->entries) {
            if (EqualsIgnoreCase(entry.key, key)) {
                return entry.value;
            }
        }
    }
    return defaultValue;
}

void FileSettingsStore::SaveSetting(const std::string& application, const std::string& section,
                                    const std::string& key, const std::string& value) {
    const std::filesystem::path folder = std::filesystem::path(path_).parent_path();
    std::error_code error;
    if (!folder.empty() && !std::filesystem::create_directories(folder, error) && error) {
        return;
    }
    std::vector<Section> sections = Parse(ReadWholeFile(path_).value_or(std::string()));
    Section* target = FindSection(sections, application, section);
    if (target == nullptr) {
        target = &sections.emplace_back(Section{application, section, {}});
    }
    SetEntry(*target, key, value);
    (void)ReplaceFile(path_, Serialize(sections));
}

}  // namespace railwright::support::posix
