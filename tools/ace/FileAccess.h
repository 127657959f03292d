// Whole-file reads and writes for the ACE tools.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "ace/Result.h"

namespace railwright::ace {

// The file's bytes; a fault when it does not exist, is a folder or cannot be read.
Result<std::vector<uint8_t>> ReadWholeFile(const std::filesystem::path& file);

// Writes `bytes` to a new file beside `target` and then moves it over `target`, so that `target`
// is either its old self or complete, never half written. The temporary file is removed again
// when anything fails. Returns an empty text on success, otherwise the fault.
[[nodiscard]] std::string WriteFileReplacing(const std::filesystem::path& target,
                                             std::span<const uint8_t> bytes);

// A path as UTF-8 text, for messages.
std::string DisplayName(const std::filesystem::path& path);

}  // namespace railwright::ace
