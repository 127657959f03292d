#include "tools/ace/TestImages.h"

#include <algorithm>

namespace railwright::ace::testing {
namespace {

void PutLittleEndian(std::string& out, uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>((value >> (8 * i)) & 0xFF);
    }
}

std::string TgaHeader(uint8_t imageType, int32_t width, int32_t height, uint8_t bits,
                      uint8_t descriptor) {
    std::string header;
    header += '\0';  // no image id
    header += '\0';  // no colour map
    header += static_cast<char>(imageType);
    PutLittleEndian(header, 0, 5);  // colour map: first entry, length, entry size
    PutLittleEndian(header, 0, 4);  // x and y origin
    PutLittleEndian(header, static_cast<uint32_t>(width), 2);
    PutLittleEndian(header, static_cast<uint32_t>(height), 2);
    header += static_cast<char>(bits);
    header += static_cast<char>(descriptor);
    return header;
}

// One pixel as TGA stores it: blue, green, red, then alpha for 32 bits.
std::string TgaPixel(const uint8_t* rgba, int bitsPerPixel) {
    std::string pixel = {static_cast<char>(rgba[2]), static_cast<char>(rgba[1]),
                         static_cast<char>(rgba[0])};
    if (bitsPerPixel == 32) {
        pixel += static_cast<char>(rgba[3]);
    }
    return pixel;
}

// Packets of at most 128 pixels: a run of equal pixels as one, the rest as raw stretches.
std::string RunLengthEncode(const std::vector<std::string>& pixels) {
    std::string out;
    size_t i = 0;
    while (i < pixels.size()) {
        size_t run = 1;
        while (i + run < pixels.size() && run < 128 && pixels[i + run] == pixels[i]) {
            ++run;
        }
        if (run >= 2) {
            out += static_cast<char>(0x80 | (run - 1));
            out += pixels[i];
            i += run;
            continue;
        }
        size_t raw = 1;
        while (i + raw < pixels.size() && raw < 128 &&
               (i + raw + 1 >= pixels.size() || pixels[i + raw] != pixels[i + raw + 1])) {
            ++raw;
        }
        out += static_cast<char>(raw - 1);
        for (size_t k = 0; k < raw; ++k) {
            out += pixels[i + k];
        }
        i += raw;
    }
    return out;
}

}  // namespace

Picture Gradient(int32_t width, int32_t height) {
    Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            uint8_t* pixel = picture.rgba.data() + (static_cast<size_t>(y) * width + x) * 4;
            pixel[0] = static_cast<uint8_t>(x * 255 / std::max(width - 1, 1));
            pixel[1] = static_cast<uint8_t>(y * 255 / std::max(height - 1, 1));
            pixel[2] = static_cast<uint8_t>((x * 7 + y * 13) % 256);
            pixel[3] = static_cast<uint8_t>(x * 255 / std::max(width - 1, 1));
        }
    }
    return picture;
}

Picture Stripes(int32_t width, int32_t height) {
    Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            uint8_t* pixel = picture.rgba.data() + (static_cast<size_t>(y) * width + x) * 4;
            pixel[0] = static_cast<uint8_t>((x / 4) * 40);
            pixel[1] = static_cast<uint8_t>(y * 20);
            pixel[2] = static_cast<uint8_t>(x % 8 == 7 ? 200 : 10);  // a lone pixel now and then
            pixel[3] = 255;
        }
    }
    return picture;
}

Picture Smooth(int32_t width, int32_t height) {
    Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
    const int32_t radius = std::min(width, height) / 2;
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            uint8_t* pixel = picture.rgba.data() + (static_cast<size_t>(y) * width + x) * 4;
            const int32_t t = x + y;
            const int32_t span = std::max(width + height - 2, 1);
            pixel[0] = static_cast<uint8_t>(40 + t * 160 / span);
            pixel[1] = static_cast<uint8_t>(220 - t * 180 / span);
            pixel[2] = static_cast<uint8_t>(60 + t * 120 / span);
            const int32_t dx = 2 * x + 1 - width;
            const int32_t dy = 2 * y + 1 - height;
            pixel[3] = dx * dx + dy * dy <= 4 * radius * radius ? 255 : 0;
        }
    }
    return picture;
}

Picture Opaque(Picture picture) {
    for (size_t i = 3; i < picture.rgba.size(); i += 4) {
        picture.rgba[i] = 255;
    }
    return picture;
}

std::string EncodeTga(const Picture& picture, const TgaLayout& layout) {
    uint8_t descriptor = layout.bitsPerPixel == 32 ? 8 : 0;  // alpha bits
    if (layout.origin != TgaOrigin::BottomLeft) {
        descriptor |= 0x20;
    }
    if (layout.origin == TgaOrigin::TopRight) {
        descriptor |= 0x10;
    }
    std::vector<std::string> pixels;
    for (int32_t row = 0; row < picture.height; ++row) {
        const int32_t y = layout.origin == TgaOrigin::BottomLeft ? picture.height - 1 - row : row;
        for (int32_t column = 0; column < picture.width; ++column) {
            const int32_t x =
                layout.origin == TgaOrigin::TopRight ? picture.width - 1 - column : column;
            pixels.push_back(TgaPixel(picture.Pixel(x, y), layout.bitsPerPixel));
        }
    }
    std::string file = TgaHeader(layout.runLength ? 10 : 2, picture.width, picture.height,
                                 static_cast<uint8_t>(layout.bitsPerPixel), descriptor);
    if (layout.runLength) {
        file += RunLengthEncode(pixels);
    } else {
        for (const std::string& pixel : pixels) {
            file += pixel;
        }
    }
    return file;
}

std::string EncodeBmp(const Picture& picture) {
    const uint32_t rowSize = (static_cast<uint32_t>(picture.width) * 3 + 3) / 4 * 4;
    const uint32_t dataSize = rowSize * static_cast<uint32_t>(picture.height);
    std::string file = "BM";
    PutLittleEndian(file, 54 + dataSize, 4);
    PutLittleEndian(file, 0, 4);
    PutLittleEndian(file, 54, 4);  // where the pixels start
    PutLittleEndian(file, 40, 4);  // info header size
    PutLittleEndian(file, static_cast<uint32_t>(picture.width), 4);
    PutLittleEndian(file, static_cast<uint32_t>(picture.height), 4);  // positive: bottom first
    PutLittleEndian(file, 1, 2);                                      // planes
    PutLittleEndian(file, 24, 2);                                     // bits per pixel
    PutLittleEndian(file, 0, 4);                                      // no compression
    PutLittleEndian(file, dataSize, 4);
    PutLittleEndian(file, 2835, 4);
    PutLittleEndian(file, 2835, 4);
    PutLittleEndian(file, 0, 4);
    PutLittleEndian(file, 0, 4);
    for (int32_t y = picture.height - 1; y >= 0; --y) {
        std::string row;
        for (int32_t x = 0; x < picture.width; ++x) {
            row += TgaPixel(picture.Pixel(x, y), 24);  // BMP keeps the same blue-green-red order
        }
        row.resize(rowSize, '\0');
        file += row;
    }
    return file;
}

std::string Encode16BitTga(int32_t width, int32_t height) {
    std::string file = TgaHeader(2, width, height, 16, 0x21);
    for (int32_t i = 0; i < width * height; ++i) {
        PutLittleEndian(file, 0x8000u | static_cast<uint32_t>(i * 37 % 0x7FFF), 2);
    }
    return file;
}

std::string EncodeRunLengthBmp(int32_t width, int32_t height) {
    std::string pixels;
    for (int32_t y = 0; y < height; ++y) {
        pixels += static_cast<char>(width);  // one run of the whole row in colour 1
        pixels += '\1';
        pixels += std::string("\0\0", 2);  // end of line
    }
    pixels += std::string("\0\1", 2);  // end of bitmap
    const uint32_t paletteSize = 256 * 4;
    const uint32_t dataStart = 54 + paletteSize;
    std::string file = "BM";
    PutLittleEndian(file, dataStart + static_cast<uint32_t>(pixels.size()), 4);
    PutLittleEndian(file, 0, 4);
    PutLittleEndian(file, dataStart, 4);
    PutLittleEndian(file, 40, 4);
    PutLittleEndian(file, static_cast<uint32_t>(width), 4);
    PutLittleEndian(file, static_cast<uint32_t>(height), 4);
    PutLittleEndian(file, 1, 2);
    PutLittleEndian(file, 8, 2);
    PutLittleEndian(file, 1, 4);  // run-length compressed, 8 bits
    PutLittleEndian(file, static_cast<uint32_t>(pixels.size()), 4);
    PutLittleEndian(file, 2835, 4);
    PutLittleEndian(file, 2835, 4);
    PutLittleEndian(file, 256, 4);
    PutLittleEndian(file, 0, 4);
    for (uint32_t i = 0; i < 256; ++i) {
        PutLittleEndian(file, i * 0x010101u, 4);
    }
    return file + pixels;
}

}  // namespace railwright::ace::testing
