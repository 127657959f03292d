// DXT1 (BC1) block compression.
//
// The data is 8 bytes per 4×4 block, blocks row by row from the top left. A block holds two
// colours in RGB 5:6:5 (16 bits each, little-endian) and then 32 bits of 2-bit indices, pixel
// (x, y) of the block at bits 2·(4y + x). With colour 0 greater than colour 1 the indices choose
// among the two colours and the two colours a third and two thirds between them; otherwise among
// the two colours, their mean and transparent black.
#pragma once

#include <cstdint>
#include <vector>

#include "ace/Image.h"

namespace railwright::ace {

enum class Dxt1Alpha {
    Opaque,        // alpha is ignored; every block uses four colours
    PunchThrough,  // a pixel with alpha below kOpaqueFrom becomes transparent black
};

// Blocks that reach past the image's right or bottom edge repeat its last column or row. Large
// images are encoded on all cores.
std::vector<uint8_t> EncodeDxt1(const Image& image, Dxt1Alpha alpha);

inline size_t Dxt1Size(int32_t width, int32_t height) {
    return static_cast<size_t>((width + 3) / 4) * static_cast<size_t>((height + 3) / 4) * 8;
}

}  // namespace railwright::ace
