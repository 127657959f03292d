#include "ace/MipChain.h"

#include <algorithm>
#include <cstdint>

namespace railwright::ace {
namespace {

bool IsPowerOfTwo(int32_t value) {
    return value > 0 && (value & (value - 1)) == 0;
}

uint8_t RoundedMean(uint32_t sum, uint32_t count) {
    return static_cast<uint8_t>((sum + count / 2) / count);
}

}  // namespace

bool TakesMipMaps(const Image& image) {
    return image.width == image.height && IsPowerOfTwo(image.width);
}

Image HalveImage(const Image& image) {
    Image half;
    half.width = std::max(image.width / 2, 1);
    half.height = std::max(image.height / 2, 1);
    half.hasAlpha = image.hasAlpha;
    half.rgba.resize(static_cast<size_t>(half.width) * half.height * 4);

    const int32_t stepX = image.width > 1 ? 1 : 0;
    const int32_t stepY = image.height > 1 ? 1 : 0;
    for (int32_t y = 0; y < half.height; ++y) {
        const int32_t top = 2 * y * stepY;
        for (int32_t x = 0; x < half.width; ++x) {
            const int32_t left = 2 * x * stepX;
            const uint8_t* covered[4] = {image.Pixel(left, top), image.Pixel(left + stepX, top),
                                         image.Pixel(left, top + stepY),
                                         image.Pixel(left + stepX, top + stepY)};
            uint8_t* out = half.Pixel(x, y);
            uint32_t alphaSum = 0;
            for (const uint8_t* pixel : covered) {
                alphaSum += pixel[3];
            }
            out[3] = RoundedMean(alphaSum, 4);
            for (int channel = 0; channel < 3; ++channel) {
                if (image.hasAlpha && alphaSum > 0) {
                    uint32_t weighted = 0;
                    for (const uint8_t* pixel : covered) {
                        weighted += static_cast<uint32_t>(pixel[channel]) * pixel[3];
                    }
                    out[channel] = RoundedMean(weighted, alphaSum);
                } else {
                    uint32_t sum = 0;
                    for (const uint8_t* pixel : covered) {
                        sum += pixel[channel];
                    }
                    out[channel] = RoundedMean(sum, 4);
                }
            }
        }
    }
    return half;
}

std::vector<Image> MipLevelsBelow(const Image& top) {
    std::vector<Image> levels;
    size_t count = 0;
    for (int32_t side = std::max(top.width, top.height); side > 1; side /= 2) {
        ++count;
    }
    levels.reserve(count);  // `previous` points into the vector: it must never reallocate
    const Image* previous = &top;
    while (previous->width > 1 || previous->height > 1) {
        levels.push_back(HalveImage(*previous));
        previous = &levels.back();
    }
    return levels;
}

}  // namespace railwright::ace
