#include "export/common/Windows1252.h"

#include <array>
#include <optional>

namespace railwright::exportcommon {
namespace {

// Bytes 0x80 to 0x9F; the rest of the code page is Latin-1 (the byte is the character).
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 0x80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 0x88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 0x90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 0x98
};

std::optional<uint8_t> EncodeCharacter(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        return static_cast<uint8_t>(character);
    }
    for (size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == character) {
            return static_cast<uint8_t>(0x80 + i);
        }
    }
    return std::nullopt;
}

// Decodes one UTF-8 sequence at `text[position]`, advancing `position` past it; empty for a
// malformed sequence, after which `position` has moved past its first byte only.
std::optional<char32_t> DecodeUtf8(std::string_view text, size_t& position) {
    const auto lead = static_cast<uint8_t>(text[position++]);
    if (lead < 0x80) {
        return lead;
    }
    size_t length = 0;
    char32_t character = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 1;
        character = lead & 0x1Fu;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 2;
        character = lead & 0x0Fu;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 3;
        character = lead & 0x07u;
    } else {
        return std::nullopt;
    }
    if (position + length > text.size()) {
        return std::nullopt;
    }
    for (size_t i = 0; i < length; ++i) {
        const auto next = static_cast<uint8_t>(text[position + i]);
        if ((next & 0xC0) != 0x80) {
            return std::nullopt;
        }
        character = (character << 6) | (next & 0x3Fu);
    }
    constexpr std::array<char32_t, 4> kSmallest = {0, 0x80, 0x800, 0x10000};
    if (character < kSmallest[length] || character > 0x10FFFF ||
        (character >= 0xD800 && character <= 0xDFFF)) {
        return std::nullopt;  // an overlong form, a surrogate or beyond Unicode
    }
    position += length;
    return character;
}

}  // namespace

std::string ToWindows1252(std::string_view utf8) {
    std::string bytes;
    bytes.reserve(utf8.size());
    size_t position = 0;
    while (position < utf8.size()) {
        const std::optional<char32_t> character = DecodeUtf8(utf8, position);
        const std::optional<uint8_t> byte =
            character ? EncodeCharacter(*character) : std::optional<uint8_t>();
        bytes += byte ? static_cast<char>(*byte) : kUnmappableCharacter;
    }
    return bytes;
}

char16_t FromWindows1252(uint8_t byte) {
    if (byte >= 0x80 && byte < 0xA0) {
        return kHighControls[byte - 0x80u];
    }
    return byte;
}

std::string ToUtf16LittleEndian(std::string_view bytes) {
    // One table lookup per byte: the two little-endian bytes of each character.
    std::array<std::array<char, 2>, 256> units{};
    for (size_t byte = 0; byte < units.size(); ++byte) {
        const char16_t unit = FromWindows1252(static_cast<uint8_t>(byte));
        units[byte] = {static_cast<char>(unit & 0xFFu), static_cast<char>(unit >> 8)};
    }
    std::string wide(2 + 2 * bytes.size(), '\0');
    wide[0] = '\xFF';
    wide[1] = '\xFE';
    char* out = wide.data() + 2;
    for (const char byte : bytes) {
        const std::array<char, 2>& unit = units[static_cast<uint8_t>(byte)];
        out[0] = unit[0];
        out[1] = unit[1];
        out += 2;
    }
    return wide;
}

}  // namespace railwright::exportcommon
