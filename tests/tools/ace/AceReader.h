// A strict reader of ACE textures for the tests: it reads what the simulators read (both
// containers, structured and DXT1 data, every mip level) and refuses, by throwing
// std::runtime_error, anything our encoder must never write: a wrong signature or size, a
// scanline table that is not exactly the scanlines in order, a level length that does not match
// its blocks, bytes left over at the end.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace railwright::ace::testing {

struct AceChannelEntry {
    uint64_t bits = 0;
    uint64_t type = 0;
    bool operator==(const AceChannelEntry&) const = default;
};

struct AceLevel {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> rgba;    // decoded, rows from the top; alpha 255 without alpha or mask
    bool storedAsBlocks = false;  // DXT1 blocks rather than scanlines
};

struct AceContents {
    bool compressed = false;
    std::vector<uint8_t> body;  // everything after the signature, inflated
    int32_t flags = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t surfaceFormat = 0;
    std::string creator;
    std::vector<AceChannelEntry> channels;
    std::vector<AceLevel> levels;
};

AceContents ReadAce(std::span<const uint8_t> file);

// Decodes one 8-byte DXT1 block into 4×4 RGBA pixels, rows from the top.
std::vector<uint8_t> DecodeDxt1Block(const uint8_t* block);

}  // namespace railwright::ace::testing
