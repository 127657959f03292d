// txt2uni FILE: rewrites an 8-bit text file (Windows-1252) in place as UTF-16LE with a byte order
// mark, keeping its line ends. This is the form in which the simulator reads its text files.
//
// The new text goes to a temporary file beside FILE, which then replaces FILE, so an interrupted
// run leaves FILE as it was. A file that already begins with the UTF-16LE byte order mark is left
// as it is, so running the tool twice does no harm. When FILE is a symbolic link, the file it
// points at is rewritten.
//
// Exit status: 0 on success; 1 when FILE cannot be read, written or replaced; 2 for bad usage.
// Every failure is reported on standard error, naming the file and the fault.
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include "export/common/Windows1252.h"

namespace {

namespace fs = std::filesystem;

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

int Fail(const fs::path& file, const std::string& fault) {
    std::cerr << "txt2uni: \"" << file.string() << "\": " << fault << "\n";
    return kExitFailure;
}

bool StartsWithByteOrderMark(const std::string& bytes) {
    return bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
           static_cast<unsigned char>(bytes[1]) == 0xFE;
}

// Moves `from` over `to`; where the platform refuses to rename over an existing file, the old
// file is removed first.
bool Replace(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (!error) {
        return true;
    }
    fs::remove(to, error);
    fs::rename(from, to, error);
    return !error;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "txt2uni: usage: txt2uni FILE\n";
        return kExitUsage;
    }
    const fs::path given = argv[1];
    std::error_code error;
    if (!fs::is_regular_file(given, error)) {
        return Fail(given, fs::exists(given, error) ? "is not a file" : "no such file");
    }
    // A short name may be a link to the file (POSIX has no 8.3 names); the file itself is
    // rewritten, not the link.
    fs::path file = given;
    if (fs::is_symlink(given, error)) {
        file = fs::canonical(given, error);
        if (error) {
            return Fail(given, "cannot be resolved: " + error.message());
        }
    }

    std::string bytes;
    {
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            return Fail(file, "cannot be opened for reading");
        }
        bytes.resize(static_cast<size_t>(fs::file_size(file, error)));
        in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (error || in.gcount() != static_cast<std::streamsize>(bytes.size())) {
            return Fail(file, "cannot be read");
        }
    }
    if (StartsWithByteOrderMark(bytes)) {
        return 0;
    }

    fs::path temporary = file;
    temporary += ".txt2uni-new";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        const std::string wide = railwright::exportcommon::ToUtf16LittleEndian(bytes);
        out.write(wide.data(), static_cast<std::streamsize>(wide.size()));
        out.close();
        if (!out) {
            fs::remove(temporary, error);
            return Fail(file, "cannot write \"" + temporary.string() + "\"");
        }
    }
    if (!Replace(temporary, file)) {
        fs::remove(temporary, error);
        return Fail(file, "cannot be replaced");
    }
    return 0;
}
