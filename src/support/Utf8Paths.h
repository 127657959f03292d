// Paths as the system keeps them (UTF-8 text) and as the file system takes them (wide on
// Windows). Every layer that opens files by name goes through these two, so that a name outside
// ASCII reaches the same file on every platform.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace railwright::support {

// A UTF-8 path as the file system's path.
std::filesystem::path PathFromUtf8(std::string_view utf8);
// The path as UTF-8 text.
std::string Utf8FromPath(const std::filesystem::path& path);

}  // namespace railwright::support
