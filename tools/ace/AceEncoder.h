// Encoding a picture as the body of an ACE file (AceFormat.h), the work behind MakeACE.
#pragma once

#include <cstdint>
#include <vector>

#include "ace/Image.h"
#include "ace/Result.h"

namespace railwright::ace {

enum class AceData {
    Structured,  // 8-bit colour channels, scanline by scanline
    Dxt1,        // DXT1 blocks
};

enum class AlphaChannel {
    None,
    Mask,   // 1 bit: opaque from kOpaqueFrom
    Alpha,  // 8 bits, as the source has it
};

struct AceOptions {
    bool transparencyMask = false;  // keep the alpha as a 1-bit mask
    AceData data = AceData::Structured;
};

// What the file keeps of the alpha: the mask when asked for (an image without alpha gets a mask
// that is opaque everywhere); otherwise the source's alpha in full, except in DXT1, which can
// hold no more than one bit and so keeps none.
AlphaChannel ChooseAlphaChannel(const Image& image, const AceOptions& options);

// The body of the ACE file: mip-maps for a square whose side is a power of two, a single level
// otherwise. DXT1 needs a width and height that are multiples of 4; anything else is a fault, as
// is a body that would not fit the format's 32-bit offsets.
Result<std::vector<uint8_t>> EncodeAceBody(const Image& image, const AceOptions& options);

}  // namespace railwright::ace
