// The ACE texture file, as the simulators read it. All numbers are little-endian.
//
// File:
//   "SIMISA@@@@@@@@@@" followed by the body, or
//   "SIMISA@F", uint32 size of the body, "@@@@", then the body as a zlib stream.
// Body:
//   int32 1, int32 flags, int32 width, int32 height, int32 surface format, int32 channel count,
//   128 bytes of which we fill only a creator text (int32 0, 16 bytes, 64-byte creator, 44 bytes),
//   then per channel uint64 bits (1 or 8) and uint64 type.
//   Structured data (flag kRawData clear): an int32 offset for every scanline of every level,
//   counted from the start of the body; each scanline holds, channel after channel in header
//   order, `width` bytes for an 8-bit channel or ceil(width / 8) bytes for a 1-bit one (first
//   pixel in the top bit).
//   Raw data (flag kRawData): an int32 offset for every level; a level of at least 4×4 pixels is
//   an int32 byte count and the compressed data, a smaller level is stored as structured
//   scanlines (readers re-use the 4×4 level for those).
// With kMipMaps the image is a square whose side is a power of two, and the levels go from the
// full size down to 1×1.
#pragma once

#include <cstdint>
#include <string_view>

namespace railwright::ace {

inline constexpr std::string_view kPlainSignature = "SIMISA@@@@@@@@@@";
inline constexpr std::string_view kCompressedSignature = "SIMISA@F";
inline constexpr std::string_view kCompressedPadding = "@@@@";
inline constexpr size_t kSignatureSize = 16;  // either form, the compressed one with its size

inline constexpr int32_t kBodyVersion = 1;
inline constexpr size_t kBodyHeaderSize = 152;  // up to the channel table
inline constexpr size_t kChannelEntrySize = 16;
inline constexpr size_t kCreatorOffset = 44;  // within the body header
inline constexpr size_t kCreatorSize = 64;

enum AceFlags : int32_t {
    kMipMaps = 0x01,
    kRawData = 0x10,
};

// The surface format names the GPU format the data is meant for; readers look at it only for
// raw data. Structured files name the 16-bit format fitting their channels.
enum class SurfaceFormat : int32_t {
    Rgb565 = 0x0E,
    Argb1555 = 0x10,
    Argb4444 = 0x11,
    Dxt1 = 0x12,
};

enum class ChannelType : uint64_t {
    Mask = 2,
    Red = 3,
    Green = 4,
    Blue = 5,
    Alpha = 6,
};

}  // namespace railwright::ace
