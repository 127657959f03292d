#include "support/WholeFile.h"

#include <fstream>

namespace railwright::support {

std::optional<std::string> ReadWholeFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    std::string bytes;
    // The size is a hint only: a file may change while it is read, and some report none.
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (!error) {
        bytes.reserve(static_cast<size_t>(size));
    }
    char buffer[65536];
    while (stream.read(buffer, sizeof buffer) || stream.gcount() > 0) {
        bytes.append(buffer, static_cast<size_t>(stream.gcount()));
    }
    if (stream.bad()) {
        return std::nullopt;
    }
    return bytes;
}

}  // namespace railwright::support
