// The decoded picture that the ACE encoder works on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace railwright::ace {

// Rows from the top, left to right, four bytes per pixel: red, green, blue, alpha. An image
// whose source had no alpha channel holds 255 in every alpha byte.
struct Image {
    int32_t width = 0;
    int32_t height = 0;
    bool hasAlpha = false;  // the source carried an alpha channel
    std::vector<uint8_t> rgba;

    size_t Offset(int32_t x, int32_t y) const {
        return (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4;
    }
    uint8_t* Pixel(int32_t x, int32_t y) { return rgba.data() + Offset(x, y); }
    const uint8_t* Pixel(int32_t x, int32_t y) const { return rgba.data() + Offset(x, y); }
};

// The alpha value from which a pixel counts as opaque in a 1-bit mask or a DXT1 block.
inline constexpr uint8_t kOpaqueFrom = 128;

}  // namespace railwright::ace
