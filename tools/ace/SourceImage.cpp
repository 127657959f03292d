#include "ace/SourceImage.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "ace/FileAccess.h"

// The decoder is compiled into this file alone, with internal linkage, so that another part of
// the program may carry its own copy without a clash.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_TGA
#define STBI_ONLY_BMP
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#define STBI_MAX_DIMENSIONS 16384
#include <stb/stb_image.h>

namespace railwright::ace {
namespace {

static_assert(STBI_MAX_DIMENSIONS == kMaxImageSide);

enum class SourceFormat { Tga, Bmp };

uint16_t ReadUint16(std::span<const uint8_t> bytes, size_t at) {
    return static_cast<uint16_t>(bytes[at] | bytes[at + 1] << 8);
}

uint32_t ReadUint32(std::span<const uint8_t> bytes, size_t at) {
    return static_cast<uint32_t>(bytes[at]) | static_cast<uint32_t>(bytes[at + 1]) << 8 |
           static_cast<uint32_t>(bytes[at + 2]) << 16 | static_cast<uint32_t>(bytes[at + 3]) << 24;
}

// TGA header fields (18 bytes): id length, colour-map type, image type, colour-map first entry
// (2), length (2) and entry size (1), x and y origin (2 each), width, height, pixel depth and the
// image descriptor (bits 0-3 alpha bits, bit 4 right to left, bit 5 top first).
constexpr size_t kTgaHeaderSize = 18;
constexpr size_t kTgaImageType = 2;
constexpr size_t kTgaColourMapType = 1;
constexpr size_t kTgaColourMapEntryBits = 7;
constexpr size_t kTgaPixelDepth = 16;
constexpr size_t kTgaDescriptor = 17;
constexpr uint8_t kTgaRightToLeft = 0x10;

// BMP: "BM", then at 14 the size of the info header, whose compression field is at 30 when the
// header is not the old 12-byte form.
constexpr size_t kBmpInfoHeaderSize = 14;
constexpr size_t kBmpCompression = 30;
constexpr uint32_t kBmpRle8 = 1;
constexpr uint32_t kBmpRle4 = 2;
constexpr uint32_t kBmpJpeg = 4;
constexpr uint32_t kBmpPng = 5;

// Whether the file holds every pixel its header promises. The decoder would fill a missing tail
// with black without a word, so a cut file is caught here.
bool TgaDataComplete(std::span<const uint8_t> bytes, bool colourMapped) {
    const uint64_t bytesPerPixel = (bytes[kTgaPixelDepth] + 7u) / 8u;
    const uint64_t colourMapBytes =
        colourMapped ? ReadUint16(bytes, 5) * ((bytes[kTgaColourMapEntryBits] + 7u) / 8u) : 0;
    const uint64_t pixels = static_cast<uint64_t>(ReadUint16(bytes, 12)) * ReadUint16(bytes, 14);
    uint64_t position = kTgaHeaderSize + bytes[0] + colourMapBytes;
    const uint64_t size = bytes.size();
    if (bytes[kTgaImageType] < 8) {
        return position + pixels * bytesPerPixel <= size;
    }
    // Run-length packets: a count byte (top bit set: one pixel repeated), then the pixels.
    for (uint64_t covered = 0; covered < pixels;) {
        if (position >= size) {
            return false;
        }
        const uint8_t packet = bytes[static_cast<size_t>(position++)];
        const uint64_t count = (packet & 0x7Fu) + 1u;
        position += (packet & 0x80u) ? bytesPerPixel : count * bytesPerPixel;
        covered += count;
    }
    return position <= size;
}

// Whether the file holds all rows its header promises (uncompressed and bit-field BMP).
bool BmpDataComplete(std::span<const uint8_t> bytes) {
    const uint32_t headerSize = ReadUint32(bytes, kBmpInfoHeaderSize);
    uint64_t width = 0;
    uint64_t height = 0;
    uint64_t bitsPerPixel = 0;
    if (headerSize == 12) {
        width = ReadUint16(bytes, 18);
        height = ReadUint16(bytes, 20);
        bitsPerPixel = ReadUint16(bytes, 24);
    } else {
        const int32_t signedHeight = static_cast<int32_t>(ReadUint32(bytes, 22));
        width = static_cast<uint32_t>(std::abs(static_cast<int32_t>(ReadUint32(bytes, 18))));
        height = signedHeight == INT32_MIN ? 0 : static_cast<uint32_t>(std::abs(signedHeight));
        bitsPerPixel = ReadUint16(bytes, 28);
    }
    const uint64_t rowSize = (width * bitsPerPixel + 31) / 32 * 4;
    return ReadUint32(bytes, 10) + rowSize * height <= bytes.size();
}

Result<SourceFormat> CheckTga(std::span<const uint8_t> bytes) {
    const uint8_t imageType = bytes[kTgaImageType];
    const uint8_t colourMapType = bytes[kTgaColourMapType];
    const bool colourMapped = imageType == 1 || imageType == 9;
    const bool trueColour = imageType == 2 || imageType == 10;
    const bool grey = imageType == 3 || imageType == 11;
    if (!(colourMapped || trueColour || grey) || colourMapType > 1 ||
        (colourMapped && colourMapType != 1)) {
        return Fault{"is neither a TGA nor a BMP image"};
    }
    const uint8_t colourBits = colourMapped ? bytes[kTgaColourMapEntryBits] : bytes[kTgaPixelDepth];
    if (!grey && (colourBits == 15 || colourBits == 16)) {
        return Fault{
            "is a 16-bit TGA, whose alpha bit would be lost; save it with 24 or 32 bits "
            "per pixel"};
    }
    if (!TgaDataComplete(bytes, colourMapped)) {
        return Fault{"is a TGA image cut short"};
    }
    return SourceFormat::Tga;
}

Result<SourceFormat> CheckBmp(std::span<const uint8_t> bytes) {
    if (bytes.size() < kBmpCompression + 4) {
        return Fault{"is a BMP image cut short"};
    }
    // The old 12-byte info header has no compression field.
    const uint32_t compression =
        ReadUint32(bytes, kBmpInfoHeaderSize) == 12 ? 0 : ReadUint32(bytes, kBmpCompression);
    if (compression == kBmpRle8 || compression == kBmpRle4) {
        return Fault{
            "is a run-length compressed BMP, which is not supported; save it "
            "uncompressed"};
    }
    if (compression == kBmpJpeg || compression == kBmpPng) {
        return Fault{"is a BMP holding JPEG or PNG data, which is not supported"};
    }
    if (!BmpDataComplete(bytes)) {
        return Fault{"is a BMP image cut short"};
    }
    return SourceFormat::Bmp;
}

Result<SourceFormat> Classify(std::span<const uint8_t> bytes) {
    if (bytes.size() >= 2 && bytes[0] == 'B' && bytes[1] == 'M') {
        return CheckBmp(bytes);
    }
    if (bytes.size() < kTgaHeaderSize) {
        return Fault{"is too short to be a TGA or BMP image"};
    }
    return CheckTga(bytes);
}

void MirrorRows(Image& image) {
    for (int32_t y = 0; y < image.height; ++y) {
        for (int32_t left = 0, right = image.width - 1; left < right; ++left, --right) {
            std::swap_ranges(image.Pixel(left, y), image.Pixel(left, y) + 4, image.Pixel(right, y));
        }
    }
}

bool AlphaEverywhere(const Image& image, uint8_t value) {
    for (size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != value) {
            return false;
        }
    }
    return true;
}

void MakeOpaque(Image& image) {
    for (size_t i = 3; i < image.rgba.size(); i += 4) {
        image.rgba[i] = 255;
    }
    image.hasAlpha = false;
}

}  // namespace

Result<Image> DecodeSourceImage(std::span<const uint8_t> bytes) {
    const Result<SourceFormat> format = Classify(bytes);
    if (!format) {
        return Fault{format.FaultText()};
    }
    if (bytes.size() > static_cast<size_t>(INT32_MAX)) {
        return Fault{"is too large"};
    }

    int width = 0;
    int height = 0;
    int channelsInFile = 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(bytes.data(), static_cast<int>(bytes.size()), &width, &height,
                              &channelsInFile, 4),
        stbi_image_free);
    if (!pixels) {
        const std::string reason = stbi_failure_reason() ? stbi_failure_reason() : "unknown";
        if (reason == "too large") {
            return Fault{"is larger than " + std::to_string(kMaxImageSide) + " pixels on a side"};
        }
        return Fault{std::string("cannot be decoded (") +
                     (format.Value() == SourceFormat::Tga ? "TGA" : "BMP") + ": " + reason + ")"};
    }

    Image image;
    image.width = width;
    image.height = height;
    image.hasAlpha = channelsInFile == 2 || channelsInFile == 4;
    image.rgba.assign(pixels.get(), pixels.get() + static_cast<size_t>(width) * height * 4);

    if (format.Value() == SourceFormat::Tga) {
        if (bytes[kTgaDescriptor] & kTgaRightToLeft) {
            MirrorRows(image);
        }
        // Some writers fill the fourth byte of a 32-bit TGA with zeros and mean no alpha at all;
        // taken literally the picture would be invisible.
        if (image.hasAlpha && AlphaEverywhere(image, 0)) {
            MakeOpaque(image);
        }
    } else if (image.hasAlpha && AlphaEverywhere(image, 255)) {
        // The fourth byte of a 32-bit BMP is mostly padding; it counts only when it varies.
        image.hasAlpha = false;
    }
    return image;
}

Result<Image> ReadSourceImage(const std::filesystem::path& file) {
    const Result<std::vector<uint8_t>> bytes = ReadWholeFile(file);
    if (!bytes) {
        return Fault{bytes.FaultText()};
    }
    return DecodeSourceImage(bytes.Value());
}

}  // namespace railwright::ace
