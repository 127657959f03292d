#include "document/TextureImages.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <memory>

// The decoder is compiled into this file alone, with internal linkage, so that the ACE tools'
// own copy does not clash with it.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_TGA
#define STBI_ONLY_BMP
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#define STBI_MAX_DIMENSIONS 16384
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-compare"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wdouble-promotion"
#endif
#include <stb/stb_image.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace railwright::document {

namespace {

// TGA header (18 bytes): id length, colour-map type, image type 2 (uncompressed true colour),
// the colour-map fields, x and y origin, width, height, bits a pixel, and the descriptor (bits
// 0-3 the alpha bits, bit 5 set: the first row is the top one). Pixels follow as B, G, R (, A).
constexpr size_t kTgaHeaderSize = 18;
constexpr uint8_t kTgaTrueColour = 2;
constexpr uint8_t kTgaTopFirst = 0x20;

float SrgbToLinear(float value) {
    return value <= 0.04045f ? value / 12.92f : std::pow((value + 0.055f) / 1.055f, 2.4f);
}

float LinearToSrgb(float value) {
    return value <= 0.0031308f ? value * 12.92f : 1.055f * std::pow(value, 1.0f / 2.4f) - 0.055f;
}

uint8_t ToByte(float value) {
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
}

// The 256 sRGB byte values in linear light, and the way back through a table fine enough that
// every byte survives the round trip.
struct SrgbTables {
    static constexpr int kEncodeSteps = 4096;
    std::array<float, 256> toLinear{};
    std::array<uint8_t, kEncodeSteps + 1> toSrgb{};

    SrgbTables() {
        for (size_t i = 0; i < toLinear.size(); ++i) {
            toLinear[i] = SrgbToLinear(static_cast<float>(i) / 255.0f);
        }
        for (size_t i = 0; i < toSrgb.size(); ++i) {
            toSrgb[i] = ToByte(LinearToSrgb(static_cast<float>(i) / kEncodeSteps));
        }
    }

    uint8_t Encode(float linear) const {
        const float clamped = std::clamp(linear, 0.0f, 1.0f);
        // Near black the curve is steep: compute it there rather than trust the table.
        if (clamped < 0.01f) {
            return ToByte(LinearToSrgb(clamped));
        }
        return toSrgb[static_cast<size_t>(std::lround(clamped * kEncodeSteps))];
    }
};

const SrgbTables& Tables() {
    static const SrgbTables tables;
    return tables;
}

bool AnyTranslucentPixel(const Picture& picture) {
    for (size_t i = 3; i < picture.rgba.size(); i += 4) {
        if (picture.rgba[i] != 255) {
            return true;
        }
    }
    return false;
}

}  // namespace

DecodedPicture DecodePicture(std::string_view bytes) {
    if (bytes.size() > static_cast<size_t>(INT_MAX)) {
        return {{}, "it is too large"};
    }
    int width = 0;
    int height = 0;
    int channels = 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                              static_cast<int>(bytes.size()), &width, &height, &channels, 4),
        stbi_image_free);
    if (!pixels) {
        const char* reason = stbi_failure_reason();
        return {{}, std::string("it cannot be decoded (") + (reason ? reason : "unknown") + ")"};
    }
    DecodedPicture decoded;
    Picture& picture = decoded.picture;
    picture.width = width;
    picture.height = height;
    picture.rgba.assign(pixels.get(), pixels.get() + static_cast<size_t>(width) * height * 4);
    picture.hasAlpha = (channels == 2 || channels == 4) && AnyTranslucentPixel(picture);
    return decoded;
}

bool IsWhite(const LinearColour& colour) {
    return std::all_of(colour.begin(), colour.end(), [](float value) { return value >= 1.0f; });
}

void MultiplyColour(Picture& picture, const LinearColour& factor) {
    const SrgbTables& tables = Tables();
    for (size_t i = 0; i + 3 < picture.rgba.size(); i += 4) {
        for (size_t c = 0; c < 3; ++c) {
            picture.rgba[i + c] = tables.Encode(tables.toLinear[picture.rgba[i + c]] * factor[c]);
        }
        picture.rgba[i + 3] = ToByte(static_cast<float>(picture.rgba[i + 3]) / 255.0f * factor[3]);
    }
    picture.hasAlpha = AnyTranslucentPixel(picture);
}

Picture PlainPicture(const LinearColour& colour, int side) {
    const SrgbTables& tables = Tables();
    const std::array<uint8_t, 4> pixel = {tables.Encode(colour[0]), tables.Encode(colour[1]),
                                          tables.Encode(colour[2]), ToByte(colour[3])};
    Picture picture;
    picture.width = picture.height = side;
    for (int i = 0; i < side * side; ++i) {
        picture.rgba.insert(picture.rgba.end(), pixel.begin(), pixel.end());
    }
    picture.hasAlpha = pixel[3] != 255;
    return picture;
}

std::string EncodeTga(const Picture& picture) {
    const size_t depth = picture.hasAlpha ? 4 : 3;
    const size_t pixels = static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height);
    std::string file(kTgaHeaderSize + pixels * depth, '\0');
    file[2] = static_cast<char>(kTgaTrueColour);
    file[12] = static_cast<char>(picture.width & 0xFF);
    file[13] = static_cast<char>(picture.width >> 8);
    file[14] = static_cast<char>(picture.height & 0xFF);
    file[15] = static_cast<char>(picture.height >> 8);
    file[16] = static_cast<char>(depth * 8);
    file[17] = static_cast<char>(kTgaTopFirst | (picture.hasAlpha ? 8 : 0));
    char* out = file.data() + kTgaHeaderSize;
    const uint8_t* in = picture.rgba.data();
    for (size_t i = 0; i < pixels; ++i, in += 4) {
        *out++ = static_cast<char>(in[2]);
        *out++ = static_cast<char>(in[1]);
        *out++ = static_cast<char>(in[0]);
        if (depth == 4) {
            *out++ = static_cast<char>(in[3]);
        }
    }
    return file;
}

}  // namespace railwright::document
