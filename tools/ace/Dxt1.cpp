#include "ace/Dxt1.h"

#include <algorithm>
#include <array>
#include <cstring>  // the block encoder below needs memcpy
#include <system_error>
#include <thread>

#define STB_DXT_IMPLEMENTATION
#define STB_DXT_STATIC
#include <stb/stb_dxt.h>

namespace railwright::ace {
namespace {

using Block = std::array<uint8_t, 64>;  // 4×4 pixels, RGBA, rows from the top

// Images with at least this many blocks are worth sharing among threads.
constexpr size_t kBlocksPerThreadAtLeast = 4096;

Block GatherBlock(const Image& image, int32_t blockX, int32_t blockY) {
    Block block{};
    for (int32_t y = 0; y < 4; ++y) {
        const int32_t sourceY = std::min(blockY * 4 + y, image.height - 1);
        for (int32_t x = 0; x < 4; ++x) {
            const int32_t sourceX = std::min(blockX * 4 + x, image.width - 1);
            std::copy_n(image.Pixel(sourceX, sourceY), 4, block.data() + (4 * y + x) * 4);
        }
    }
    return block;
}

std::array<int32_t, 3> Expand565(uint16_t colour) {
    const int32_t red = (colour >> 11) & 0x1F;
    const int32_t green = (colour >> 5) & 0x3F;
    const int32_t blue = colour & 0x1F;
    return {(red << 3) | (red >> 2), (green << 2) | (green >> 4), (blue << 3) | (blue >> 2)};
}

int32_t SquaredDistance(const uint8_t* pixel, const std::array<int32_t, 3>& colour) {
    int32_t sum = 0;
    for (int channel = 0; channel < 3; ++channel) {
        const int32_t difference = pixel[channel] - colour[static_cast<size_t>(channel)];
        sum += difference * difference;
    }
    return sum;
}

void WriteBlock(uint8_t* out, uint16_t colour0, uint16_t colour1, uint32_t indices) {
    out[0] = static_cast<uint8_t>(colour0);
    out[1] = static_cast<uint8_t>(colour0 >> 8);
    out[2] = static_cast<uint8_t>(colour1);
    out[3] = static_cast<uint8_t>(colour1 >> 8);
    for (int i = 0; i < 4; ++i) {
        out[4 + i] = static_cast<uint8_t>(indices >> (8 * i));
    }
}

void EncodeOpaqueBlock(Block block, uint8_t* out) {
    // The encoder wants one constant alpha in a colour-only block.
    for (size_t i = 3; i < block.size(); i += 4) {
        block[i] = 255;
    }
    stb_compress_dxt_block(out, block.data(), 0, STB_DXT_NORMAL);
}

// A block with transparent pixels: the three-colour mode, its endpoints fitted to the opaque
// pixels alone.
void EncodePunchThroughBlock(const Block& block, uint8_t* out) {
    const auto isOpaque = [&](size_t pixel) { return block[pixel * 4 + 3] >= kOpaqueFrom; };
    size_t firstOpaque = 0;
    while (firstOpaque < 16 && !isOpaque(firstOpaque)) {
        ++firstOpaque;
    }
    if (firstOpaque == 16) {
        WriteBlock(out, 0, 0, 0xFFFFFFFFu);
        return;
    }

    Block filled = block;
    for (size_t pixel = 0; pixel < 16; ++pixel) {
        if (!isOpaque(pixel)) {
            std::copy_n(block.data() + firstOpaque * 4, 4, filled.data() + pixel * 4);
        }
    }
    uint8_t fitted[8];
    EncodeOpaqueBlock(filled, fitted);
    const uint16_t endpointA = static_cast<uint16_t>(fitted[0] | fitted[1] << 8);
    const uint16_t endpointB = static_cast<uint16_t>(fitted[2] | fitted[3] << 8);
    // Colour 0 not above colour 1 is what selects the mode with transparency.
    const uint16_t colour0 = std::min(endpointA, endpointB);
    const uint16_t colour1 = std::max(endpointA, endpointB);

    const std::array<int32_t, 3> first = Expand565(colour0);
    const std::array<int32_t, 3> second = Expand565(colour1);
    std::array<std::array<int32_t, 3>, 3> palette{first, second, {}};
    for (size_t channel = 0; channel < 3; ++channel) {
        palette[2][channel] = (first[channel] + second[channel]) / 2;
    }

    uint32_t indices = 0;
    for (size_t pixel = 0; pixel < 16; ++pixel) {
        uint32_t index = 3;
        if (isOpaque(pixel)) {
            index = 0;
            int32_t best = SquaredDistance(block.data() + pixel * 4, palette[0]);
            for (uint32_t candidate = 1; candidate < 3; ++candidate) {
                const int32_t distance =
                    SquaredDistance(block.data() + pixel * 4, palette[candidate]);
                if (distance < best) {
                    best = distance;
                    index = candidate;
                }
            }
        }
        indices |= index << (2 * pixel);
    }
    WriteBlock(out, colour0, colour1, indices);
}

bool HasTransparentPixel(const Block& block) {
    for (size_t i = 3; i < block.size(); i += 4) {
        if (block[i] < kOpaqueFrom) {
            return true;
        }
    }
    return false;
}

void EncodeBlockRows(const Image& image, Dxt1Alpha alpha, int32_t firstRow, int32_t endRow,
                     uint8_t* out) {
    const int32_t blocksAcross = (image.width + 3) / 4;
    for (int32_t blockY = firstRow; blockY < endRow; ++blockY) {
        for (int32_t blockX = 0; blockX < blocksAcross; ++blockX) {
            const Block block = GatherBlock(image, blockX, blockY);
            uint8_t* target = out + (static_cast<size_t>(blockY) * blocksAcross + blockX) * 8;
            if (alpha == Dxt1Alpha::PunchThrough && HasTransparentPixel(block)) {
                EncodePunchThroughBlock(block, target);
            } else {
                EncodeOpaqueBlock(block, target);
            }
        }
    }
}

}  // namespace

std::vector<uint8_t> EncodeDxt1(const Image& image, Dxt1Alpha alpha) {
    std::vector<uint8_t> data(Dxt1Size(image.width, image.height));
    const int32_t blockRows = (image.height + 3) / 4;
    const size_t blocks = data.size() / 8;

    const size_t cores = std::max(1u, std::thread::hardware_concurrency());
    const size_t threads =
        std::min({cores, blocks / kBlocksPerThreadAtLeast + 1, static_cast<size_t>(blockRows)});
    if (threads <= 1) {
        EncodeBlockRows(image, alpha, 0, blockRows, data.data());
        return data;
    }
    // Each thread takes its own band of block rows and writes only that band's bytes; the last
    // band, and any band no thread could be started for, is done by this thread.
    std::vector<std::thread> workers;
    const int32_t rowsEach =
        static_cast<int32_t>((static_cast<size_t>(blockRows) + threads - 1) / threads);
    int32_t first = 0;
    for (; first + rowsEach < blockRows; first += rowsEach) {
        try {
            workers.emplace_back(EncodeBlockRows, std::cref(image), alpha, first, first + rowsEach,
                                 data.data());
        } catch (const std::system_error&) {
            break;
        }
    }
    EncodeBlockRows(image, alpha, first, blockRows, data.data());
    for (std::thread& worker : workers) {
        worker.join();
    }
    return data;
}

}  // namespace railwright::ace
