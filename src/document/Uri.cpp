#include "document/Uri.h"

#include <cstdint>

#include "support/Utf8Paths.h"

namespace railwright::document {

namespace {

int HexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

bool IsAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The bytes a path segment holds without encoding (RFC 3986 unreserved and sub-delimiters, and
// "@"); ":" is left out so that a first segment is never read as a scheme.
bool KeptInPath(unsigned char c) {
    if (IsAsciiLetter(static_cast<char>(c)) || (c >= '0' && c <= '9')) {
        return true;
    }
    constexpr std::string_view kKept = "-._~!$&'()*+,;=@/";
    return kKept.find(static_cast<char>(c)) != std::string_view::npos;
}

}  // namespace

bool IsDataUri(std::string_view uri) {
    return uri.substr(0, 5) == "data:";
}

bool HasScheme(std::string_view uri) {
    const size_t colon = uri.find(':');
    if (colon == std::string_view::npos || colon < 2 || !IsAsciiLetter(uri[0])) {
        return false;
    }
    for (size_t i = 1; i < colon; ++i) {
        const char c = uri[i];
        if (!IsAsciiLetter(c) && !(c >= '0' && c <= '9') && c != '+' && c != '-' && c != '.') {
            return false;
        }
    }
    return true;
}

bool IsRelativeReference(std::string_view uri) {
    if (uri.empty() || IsDataUri(uri) || HasScheme(uri)) {
        return false;
    }
    if (uri[0] == '/' || uri[0] == '\\') {
        return false;
    }
    // A Windows drive ("C:/textures/a.png") is an absolute path too.
    return !(uri.size() >= 2 && IsAsciiLetter(uri[0]) && uri[1] == ':');
}

std::string PercentDecode(std::string_view uri) {
    std::string decoded;
    decoded.reserve(uri.size());
    for (size_t i = 0; i < uri.size(); ++i) {
        if (uri[i] == '%' && i + 2 < uri.size() && HexValue(uri[i + 1]) >= 0 &&
            HexValue(uri[i + 2]) >= 0) {
            decoded += static_cast<char>(HexValue(uri[i + 1]) * 16 + HexValue(uri[i + 2]));
            i += 2;
        } else {
            decoded += uri[i];
        }
    }
    return decoded;
}

std::string PercentEncodePath(std::string_view path) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(path.size());
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (KeptInPath(byte)) {
            encoded += c;
        } else {
            encoded += '%';
            encoded += kHex[byte >> 4];
            encoded += kHex[byte & 0x0F];
        }
    }
    return encoded;
}

std::string ResolveReference(const std::filesystem::path& folder, std::string_view uri) {
    return support::Utf8FromPath(
        (folder / support::PathFromUtf8(PercentDecode(uri))).lexically_normal());
}

std::optional<std::string> RebaseReference(std::string_view uri,
                                           const std::filesystem::path& fromFolder,
                                           const std::filesystem::path& toFolder) {
    const std::filesystem::path target =
        (fromFolder / support::PathFromUtf8(PercentDecode(uri))).lexically_normal();
    const std::filesystem::path relative = target.lexically_relative(toFolder);
    if (relative.empty()) {
        return std::nullopt;
    }
    const std::u8string generic = relative.generic_u8string();
    return PercentEncodePath(std::string(generic.begin(), generic.end()));
}

std::string Base64Encode(std::string_view bytes) {
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    encoded.reserve((bytes.size() + 2) / 3 * 4);
    size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3) {
        const uint32_t triple = static_cast<uint32_t>(static_cast<unsigned char>(bytes[i])) << 16 |
                                static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 1]))
                                    << 8 |
                                static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 2]));
        encoded += kAlphabet[(triple >> 18) & 63];
        encoded += kAlphabet[(triple >> 12) & 63];
        encoded += kAlphabet[(triple >> 6) & 63];
        encoded += kAlphabet[triple & 63];
    }
    const size_t rest = bytes.size() - i;
    if (rest > 0) {
        uint32_t triple = static_cast<uint32_t>(static_cast<unsigned char>(bytes[i])) << 16;
        if (rest == 2) {
            triple |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
        }
        encoded += kAlphabet[(triple >> 18) & 63];
        encoded += kAlphabet[(triple >> 12) & 63];
        encoded += rest == 2 ? kAlphabet[(triple >> 6) & 63] : '=';
        encoded += '=';
    }
    return encoded;
}

}  // namespace railwright::document
