#include "ace/FileAccess.h"

#include <fstream>
#include <random>
#include <system_error>

namespace railwright::ace {
namespace {

namespace fs = std::filesystem;

// A suffix that keeps two writers of the same target from sharing a temporary file.
std::string RandomTag() {
    std::random_device device;
    const uint32_t value = device();
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string tag;
    for (int shift = 28; shift >= 0; shift -= 4) {
        tag += kDigits[(value >> shift) & 0xFu];
    }
    return tag;
}

// Moves `from` over `to`; where the platform refuses to rename over an existing file, the old
// file is removed first.
std::error_code MoveOver(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (!error) {
        return error;
    }
    std::error_code ignored;
    if (!fs::is_regular_file(to, ignored)) {
        return error;
    }
    fs::remove(to, ignored);
    fs::rename(from, to, error);
    return error;
}

}  // namespace

Result<std::vector<uint8_t>> ReadWholeFile(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status)) {
        return Fault{"no such file"};
    }
    if (fs::is_directory(status)) {
        return Fault{"is a folder, not a file"};
    }
    std::ifstream in(file, std::ios::binary | std::ios::ate);
    if (!in) {
        return Fault{"cannot be opened for reading"};
    }
    const std::streamoff size = in.tellg();
    if (size < 0) {
        return Fault{"cannot be read"};
    }
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    in.seekg(0);
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!in) {
        return Fault{"cannot be read"};
    }
    return bytes;
}

std::string WriteFileReplacing(const fs::path& target, std::span<const uint8_t> bytes) {
    std::error_code error;
    if (fs::is_directory(target, error)) {
        return "is a folder, not a file";
    }
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error)) {
        return "cannot be written: its folder does not exist";
    }

    fs::path temporary = target;
    std::string suffix = ".";
    suffix += RandomTag();
    suffix += ".part";
    temporary += suffix;
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) {
            return "cannot be written: the folder does not allow a new file";
        }
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) {
            fs::remove(temporary, error);
            return "cannot be written: writing failed (is the disk full?)";
        }
    }
    const std::error_code moveError = MoveOver(temporary, target);
    if (moveError) {
        fs::remove(temporary, error);
        return "cannot be replaced: " + moveError.message();
    }
    return {};
}

std::string DisplayName(const fs::path& path) {
    try {
        const std::u8string text = path.u8string();
        return std::string(text.begin(), text.end());
    } catch (const std::exception&) {
        return "(a name that cannot be shown)";
    }
}

}  // namespace railwright::ace
