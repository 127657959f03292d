#include "ace/AceContainer.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "ace/AceFormat.h"

namespace railwright::ace {
namespace {

bool StartsWith(std::span<const uint8_t> bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

int32_t ReadInt32(std::span<const uint8_t> bytes, size_t at) {
    return static_cast<int32_t>(
        static_cast<uint32_t>(bytes[at]) | static_cast<uint32_t>(bytes[at + 1]) << 8 |
        static_cast<uint32_t>(bytes[at + 2]) << 16 | static_cast<uint32_t>(bytes[at + 3]) << 24);
}

uint64_t ReadUint64(std::span<const uint8_t> bytes, size_t at) {
    uint64_t value = 0;
    for (size_t i = 0; i < 8; ++i) {
        value |= static_cast<uint64_t>(bytes[at + i]) << (8 * i);
    }
    return value;
}

}  // namespace

std::vector<uint8_t> WrapPlain(std::span<const uint8_t> body) {
    std::vector<uint8_t> file(kSignatureSize + body.size());
    std::memcpy(file.data(), kPlainSignature.data(), kSignatureSize);
    if (!body.empty()) {
        std::memcpy(file.data() + kSignatureSize, body.data(), body.size());
    }
    return file;
}

Result<std::vector<uint8_t>> WrapCompressed(std::span<const uint8_t> body) {
    if (body.size() > 0x7FFFFFFFu) {
        return Fault{"is too large to compress"};
    }
    const uLong bodySize = static_cast<uLong>(body.size());
    uLongf streamSize = compressBound(bodySize);
    std::vector<uint8_t> file(kSignatureSize + streamSize);
    if (compress2(file.data() + kSignatureSize, &streamSize, body.data(), bodySize,
                  Z_DEFAULT_COMPRESSION) != Z_OK) {
        return Fault{"could not be compressed"};
    }
    file.resize(kSignatureSize + streamSize);
    std::memcpy(file.data(), kCompressedSignature.data(), kCompressedSignature.size());
    for (size_t i = 0; i < 4; ++i) {
        file[kCompressedSignature.size() + i] = static_cast<uint8_t>(bodySize >> (8 * i));
    }
    std::memcpy(file.data() + kCompressedSignature.size() + 4, kCompressedPadding.data(),
                kCompressedPadding.size());
    return file;
}

Result<Container> IdentifyContainer(std::span<const uint8_t> file) {
    if (StartsWith(file, kPlainSignature)) {
        return Container::Plain;
    }
    if (StartsWith(file, kCompressedSignature) && file.size() >= kSignatureSize &&
        StartsWith(file.subspan(kCompressedSignature.size() + 4), kCompressedPadding)) {
        return Container::Compressed;
    }
    return Fault{"is not an ACE file (it does not begin with \"SIMISA@\")"};
}

std::string CheckBodyHeader(std::span<const uint8_t> body) {
    if (body.size() < kBodyHeaderSize) {
        return "is an ACE file cut short in its header";
    }
    if (ReadInt32(body, 0) != kBodyVersion) {
        return "is an ACE file of an unknown version";
    }
    const int32_t width = ReadInt32(body, 8);
    const int32_t height = ReadInt32(body, 12);
    const int32_t channels = ReadInt32(body, 20);
    if (width <= 0 || height <= 0) {
        return "is an ACE file without a picture (its size is not positive)";
    }
    if (channels <= 0 || channels > 8 ||
        body.size() < kBodyHeaderSize + kChannelEntrySize * static_cast<size_t>(channels)) {
        return "is an ACE file with a damaged channel table";
    }
    for (size_t i = 0; i < static_cast<size_t>(channels); ++i) {
        const size_t entry = kBodyHeaderSize + kChannelEntrySize * i;
        const uint64_t bits = ReadUint64(body, entry);
        const uint64_t type = ReadUint64(body, entry + 8);
        if ((bits != 1 && bits != 8) || type < static_cast<uint64_t>(ChannelType::Mask) ||
            type > static_cast<uint64_t>(ChannelType::Alpha)) {
            return "is an ACE file with a damaged channel table";
        }
    }
    return {};
}

}  // namespace railwright::ace
