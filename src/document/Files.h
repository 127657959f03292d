// Reading and writing whole files; replacing a file without ever leaving it half-written.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "support/WholeFile.h"

namespace railwright::document {

using support::ReadWholeFile;
// Writes the file from scratch; false when it could not be written completely.
[[nodiscard]] bool WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);

// Reads the check's verdict on a file just written: empty when it is sound, else the fault.
using WrittenFileCheck = std::function<std::string(const std::filesystem::path& written)>;

// Writes `bytes` to a temporary file beside `target`, has `check` examine it, then renames it
// over `target`. On any failure the temporary file is removed, `target` is as it was, and the
// fault is returned; empty on success.
[[nodiscard]] std::string WriteReplacing(const std::filesystem::path& target,
                                         std::string_view bytes, const WrittenFileCheck& check);

// The temporary file that WriteReplacing writes for `target`.
std::filesystem::path TemporaryFileFor(const std::filesystem::path& target);

}  // namespace railwright::document
