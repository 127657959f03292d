// The 8-bit code page of the MSTS text files (Windows-1252) and its conversion to and from the
// system's UTF-8 text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace railwright::exportcommon {

// The character written for text that Windows-1252 cannot hold.
inline constexpr char kUnmappableCharacter = '?';

// UTF-8 text as Windows-1252 bytes. A character outside the code page, and every byte of a
// malformed UTF-8 sequence, becomes one kUnmappableCharacter.
std::string ToWindows1252(std::string_view utf8);

// The Unicode character (always in the Basic Multilingual Plane) of one Windows-1252 byte. The
// five bytes that the code page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for the C1
// control characters of the same value, both ways, as the Windows conversion treats them.
char16_t FromWindows1252(uint8_t byte);

// Windows-1252 text as UTF-16LE with its byte order mark, the form in which the simulator reads
// its text files: two bytes for every byte of `bytes`, line ends kept.
std::string ToUtf16LittleEndian(std::string_view bytes);

}  // namespace railwright::exportcommon
