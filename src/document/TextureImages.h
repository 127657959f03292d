// Pictures of a model's textures in memory: decoding the image files glTF allows (PNG and JPEG),
// plus the TGA and BMP files the modeller itself names, and writing a picture as a TGA file.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace railwright::document {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;  // 4 bytes a pixel, top row first
    bool hasAlpha = false;      // some pixel is not fully opaque
};

struct [[nodiscard]] DecodedPicture {
    Picture picture;
    std::string error;  // empty on success; otherwise why the bytes are not a picture
};

// Decodes a PNG, JPEG, TGA or BMP file's bytes.
DecodedPicture DecodePicture(std::string_view bytes);

// A colour as glTF gives it: linear red, green, blue and alpha from 0 to 1.
using LinearColour = std::array<float, 4>;

bool IsWhite(const LinearColour& colour);

// Multiplies `factor` into every pixel as a renderer of the model would: the colour channels
// of the picture are sRGB-encoded, so they are multiplied in linear light; alpha directly.
void MultiplyColour(Picture& picture, const LinearColour& factor);

// A `side` x `side` picture of one colour.
Picture PlainPicture(const LinearColour& colour, int side);

// The picture as an uncompressed TGA file: 32-bit with its alpha when it has alpha, 24-bit
// otherwise; rows stored top first.
std::string EncodeTga(const Picture& picture);

}  // namespace railwright::document
