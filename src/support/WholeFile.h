// Reading a file whole, for every layer that reads files outside the platform services: the
// model document, the command's script, the POSIX and Win32 file systems.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace railwright::support {

// The bytes of a regular file; nothing when it is missing, not a regular file or cannot be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);

}  // namespace railwright::support
