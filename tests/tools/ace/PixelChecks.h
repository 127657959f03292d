// Comparisons of decoded ACE levels with the pictures they came from, reporting the first pixel
// that differs rather than two walls of numbers.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tools/ace/AceReader.h"
#include "tools/ace/TestImages.h"

namespace railwright::ace::testing {

// Each channel (alpha included) within `tolerance`, and the mean error over all colour channels
// at most `meanTolerance`.
inline ::testing::AssertionResult PixelsNear(const AceLevel& level, const Picture& picture,
                                             int tolerance, double meanTolerance) {
    if (level.width != picture.width || level.height != picture.height) {
        return ::testing::AssertionFailure()
               << "level is " << level.width << "x" << level.height << ", picture " << picture.width
               << "x" << picture.height;
    }
    double errorSum = 0;
    for (int32_t y = 0; y < level.height; ++y) {
        for (int32_t x = 0; x < level.width; ++x) {
            const uint8_t* expected = picture.Pixel(x, y);
            const uint8_t* actual =
                level.rgba.data() + (static_cast<size_t>(y) * level.width + x) * 4;
            for (int c = 0; c < 4; ++c) {
                const int error = std::abs(expected[c] - actual[c]);
                if (c < 3) {
                    errorSum += error;
                }
                if (error > tolerance) {
                    return ::testing::AssertionFailure()
                           << "pixel (" << x << ", " << y << ") channel " << c << ": expected "
                           << int{expected[c]} << ", got " << int{actual[c]};
                }
            }
        }
    }
    const double mean = errorSum / (3.0 * level.width * level.height);
    if (mean > meanTolerance) {
        return ::testing::AssertionFailure() << "mean error " << mean;
    }
    return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult SamePixels(const AceLevel& level, const Picture& picture) {
    return PixelsNear(level, picture, 0, 0.0);
}

// The picture as a 1-bit mask keeps it: alpha 255 from 128 up, otherwise 0.
inline Picture Masked(Picture picture) {
    for (size_t i = 3; i < picture.rgba.size(); i += 4) {
        picture.rgba[i] = picture.rgba[i] >= 128 ? 255 : 0;
    }
    return picture;
}

// Half the size, each pixel the rounded mean of the 2×2 it covers (no alpha weighting: for
// opaque pictures).
inline Picture Halved(const Picture& picture) {
    Picture half{std::max(picture.width / 2, 1), std::max(picture.height / 2, 1), {}};
    half.rgba.resize(static_cast<size_t>(half.width) * half.height * 4);
    for (int32_t y = 0; y < half.height; ++y) {
        for (int32_t x = 0; x < half.width; ++x) {
            // A side of 1 stays 1: its pixel counts twice.
            const int32_t right = std::min(2 * x + 1, picture.width - 1);
            const int32_t below = std::min(2 * y + 1, picture.height - 1);
            for (size_t c = 0; c < 4; ++c) {
                const int sum = picture.Pixel(2 * x, 2 * y)[c] + picture.Pixel(right, 2 * y)[c] +
                                picture.Pixel(2 * x, below)[c] + picture.Pixel(right, below)[c];
                half.rgba[(static_cast<size_t>(y) * half.width + x) * 4 + c] =
                    static_cast<uint8_t>((sum + 2) / 4);
            }
        }
    }
    return half;
}

// How far DXT1 may stray on a picture whose colours lie on a line: a block's four colours split
// its range in three, so no pixel is more than a sixth of the range from one of them, plus the
// rounding of the end colours to 5 and 6 bits.
inline int Dxt1Tolerance(const Picture& picture) {
    int widest = 0;
    for (int32_t blockY = 0; blockY < picture.height; blockY += 4) {
        for (int32_t blockX = 0; blockX < picture.width; blockX += 4) {
            for (size_t c = 0; c < 3; ++c) {
                int low = 255;
                int high = 0;
                for (int32_t y = blockY; y < std::min(blockY + 4, picture.height); ++y) {
                    for (int32_t x = blockX; x < std::min(blockX + 4, picture.width); ++x) {
                        low = std::min<int>(low, picture.Pixel(x, y)[c]);
                        high = std::max<int>(high, picture.Pixel(x, y)[c]);
                    }
                }
                widest = std::max(widest, high - low);
            }
        }
    }
    return widest / 6 + 8;
}

}  // namespace railwright::ace::testing
