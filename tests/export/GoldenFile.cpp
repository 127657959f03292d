#include "export/GoldenFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace railwright::testing {
namespace {

std::string GoldenPath(const std::string& name) {
    return std::string(RAILWRIGHT_SOURCE_DIR) + "/tests/golden/" + name;
}

// Lines split after each line feed, so that every line keeps its own ending.
std::vector<std::string_view> SplitKeepingEnds(std::string_view text) {
    std::vector<std::string_view> lines;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = text.find('\n', start);
        const size_t next = end == std::string_view::npos ? text.size() : end + 1;
        lines.push_back(text.substr(start, next - start));
        start = next;
    }
    return lines;
}

std::string Visible(std::string_view line) {
    std::string shown = "\"";
    for (const char c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r') {
            shown += "\\r";
        } else if (c == '\n') {
            shown += "\\n";
        } else if (c == '\t') {
            shown += "\\t";
        } else if (byte < 0x20 || byte >= 0x7F) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", byte);
            shown += hex;
        } else {
            shown += c;
        }
    }
    return shown + "\"";
}

void KeepActual(std::string_view actual, const std::string& name) {
    const std::filesystem::path path =
        std::filesystem::path(RAILWRIGHT_TEST_HELPERS_DIR) / "golden-actual" / name;
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream out(path, std::ios::binary);
    out.write(actual.data(), static_cast<std::streamsize>(actual.size()));
}

}  // namespace

std::string ReadGolden(const std::string& name) {
    std::ifstream in(GoldenPath(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

::testing::AssertionResult MatchesGolden(std::string_view actual, const std::string& name) {
    const std::string path = GoldenPath(name);
    if (!std::filesystem::is_regular_file(path)) {
        KeepActual(actual, name);
        return ::testing::AssertionFailure() << "golden file " << path << " is missing";
    }
    const std::string expected = ReadGolden(name);
    if (actual == expected) {
        return ::testing::AssertionSuccess();
    }
    KeepActual(actual, name);
    const std::vector<std::string_view> expectedLines = SplitKeepingEnds(expected);
    const std::vector<std::string_view> actualLines = SplitKeepingEnds(actual);
    size_t line = 0;
    while (line < expectedLines.size() && line < actualLines.size() &&
           expectedLines[line] == actualLines[line]) {
        ++line;
    }
    const auto shown = [line](const std::vector<std::string_view>& lines) {
        return line < lines.size() ? Visible(lines[line]) : std::string("<end of file>");
    };
    return ::testing::AssertionFailure()
           << path << " differs at line " << line + 1 << "\n  expected: " << shown(expectedLines)
           << "\n  actual:   " << shown(actualLines) << "\n  the whole output is in "
           << RAILWRIGHT_TEST_HELPERS_DIR << "/golden-actual/" << name;
}

}  // namespace railwright::testing
