// What the fuzz targets share: a scratch folder of their own for the files an input becomes.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace railwright::fuzz {

// A folder under $TMPDIR (or /tmp) for one fuzz process, made on first use and kept for the run:
// each input overwrites the files of the one before.
inline const std::filesystem::path& ScratchFolder() {
    static const std::filesystem::path folder = [] {
        std::filesystem::path made = std::filesystem::temp_directory_path() /
                                     ("railwright-fuzz-" + std::to_string(::getpid()));
        std::filesystem::create_directories(made);
        return made;
    }();
    return folder;
}

inline void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string_view AsText(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace railwright::fuzz
