// Reading the pictures MakeACE accepts: TGA and BMP.
//
// Accepted: TGA true-colour (24 and 32 bits), grey (8 bits, 16 bits grey with alpha) and
// colour-mapped with 24- or 32-bit colours, plain or run-length compressed, rows stored from the
// bottom or from the top (and right to left); BMP with 1 to 32 bits per pixel, uncompressed or
// with bit-field masks.
//
// Refused with a fault that says so: 15- and 16-bit TGA colours (their one alpha bit would be
// lost), run-length compressed BMP, BMP holding JPEG or PNG data, and images wider or higher than
// kMaxImageSide pixels.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "ace/Image.h"
#include "ace/Result.h"

namespace railwright::ace {

inline constexpr int32_t kMaxImageSide = 16384;

// Decodes a TGA or BMP file's bytes. The format is told by the content, not by a file name.
Result<Image> DecodeSourceImage(std::span<const uint8_t> bytes);

// Reads and decodes a TGA or BMP file.
Result<Image> ReadSourceImage(const std::filesystem::path& file);

}  // namespace railwright::ace
