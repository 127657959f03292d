// Pictures made in code and written as TGA and BMP files byte by byte, the way painting programs
// lay them out, so that the ACE tools read real files of every layout they accept or refuse.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace railwright::ace::testing {

// Pixel (x, y) counted from the top left; four bytes each: red, green, blue, alpha.
struct Picture {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> rgba;

    const uint8_t* Pixel(int32_t x, int32_t y) const {
        return rgba.data() + (static_cast<size_t>(y) * width + x) * 4;
    }
};

// Every pixel different from its neighbours and the rows told apart, so that a flipped, shifted
// or mirrored picture cannot pass for the original; alpha sweeps from 0 to 255 across each row.
Picture Gradient(int32_t width, int32_t height);

// Runs of equal pixels four wide, so that a run-length encoding has runs to make.
Picture Stripes(int32_t width, int32_t height);

// A slope from the top left to the bottom right whose colours all lie on one straight line
// through colour space, which is what a DXT1 block can follow; alpha is opaque inside the centred
// circle touching the edges and transparent outside it.
Picture Smooth(int32_t width, int32_t height);

// The picture with every alpha at 255, as a file without alpha gives it back.
Picture Opaque(Picture picture);

enum class TgaOrigin { BottomLeft, TopLeft, TopRight };

struct TgaLayout {
    int bitsPerPixel = 24;  // 24 or 32
    TgaOrigin origin = TgaOrigin::BottomLeft;
    bool runLength = false;
};

std::string EncodeTga(const Picture& picture, const TgaLayout& layout);

// A 24-bit BMP, rows from the bottom, each padded to a multiple of four bytes.
std::string EncodeBmp(const Picture& picture);

// Files the tools must refuse: a 16-bit (5-5-5 plus one alpha bit) TGA and a run-length
// compressed 8-bit BMP, both otherwise well formed.
std::string Encode16BitTga(int32_t width, int32_t height);
std::string EncodeRunLengthBmp(int32_t width, int32_t height);

}  // namespace railwright::ace::testing
