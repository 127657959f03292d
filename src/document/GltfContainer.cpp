#include "document/GltfContainer.h"

#include <cstdint>
#include <limits>

#include "support/JsonNesting.h"

namespace railwright::document {

namespace {

constexpr uint32_t kGlbMagic = 0x46546C67;   // "glTF"
constexpr uint32_t kChunkJson = 0x4E4F534A;  // "JSON"
constexpr uint32_t kChunkBin = 0x004E4942;   // "BIN\0"
constexpr size_t kHeaderSize = 12;
constexpr size_t kChunkHeaderSize = 8;

uint32_t ReadUint32(std::string_view bytes, size_t offset) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) {
        value |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
    }
    return value;
}

void AppendUint32(std::string& bytes, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) {
        bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
    }
}

size_t PaddedTo4(size_t size) {
    return (size + 3) / 4 * 4;
}

}  // namespace

bool LooksLikeGlb(std::string_view file) {
    return file.size() >= 4 && ReadUint32(file, 0) == kGlbMagic;
}

std::string SplitGlb(std::string_view file, GlbChunks& chunks) {
    if (file.size() < kHeaderSize) {
        return "the binary glTF header is cut short (" + std::to_string(file.size()) + " bytes).";
    }
    if (ReadUint32(file, 0) != kGlbMagic) {
        return "the file does not start with the binary glTF magic \"glTF\".";
    }
    if (const uint32_t version = ReadUint32(file, 4); version != 2) {
        return "binary glTF version " + std::to_string(version) + " is not supported (only 2).";
    }
    if (const uint32_t length = ReadUint32(file, 8); length > file.size()) {
        return "the binary glTF header gives a length of " + std::to_string(length) +
               " bytes, but the file holds only " + std::to_string(file.size()) + ".";
    } else {
        file = file.substr(0, length);  // bytes after the stated length belong to no chunk
    }
    chunks.container = file;

    size_t offset = kHeaderSize;
    bool sawJson = false;
    size_t otherStart = 0;
    for (int index = 0; offset < file.size(); ++index) {
        if (file.size() - offset < kChunkHeaderSize) {
            return "chunk " + std::to_string(index) + " of the binary glTF has a cut-short header.";
        }
        const uint32_t length = ReadUint32(file, offset);
        const uint32_t type = ReadUint32(file, offset + 4);
        const size_t dataStart = offset + kChunkHeaderSize;
        if (length > file.size() - dataStart) {
            return "chunk " + std::to_string(index) + " of the binary glTF claims " +
                   std::to_string(length) + " bytes, more than the file holds.";
        }
        const std::string_view data = file.substr(dataStart, length);
        if (index == 0) {
            if (type != kChunkJson) {
                return "the first chunk of the binary glTF is not its JSON chunk.";
            }
            chunks.json = data;
            sawJson = true;
        } else if (type == kChunkJson) {
            return "the binary glTF holds more than one JSON chunk.";
        } else if (type == kChunkBin) {
            if (index != 1) {
                return "the BIN chunk of the binary glTF is not its second chunk.";
            }
            chunks.bin = data;
        } else if (otherStart == 0) {
            otherStart = offset;
        }
        offset = dataStart + length;
    }
    if (!sawJson) {
        return "the binary glTF holds no JSON chunk.";
    }
    chunks.otherChunks = otherStart == 0 ? std::string_view() : file.substr(otherStart);
    return {};
}

std::optional<std::string> JoinGlb(std::string_view json, const std::string* bin,
                                   std::string_view otherChunks) {
    const size_t jsonPadded = PaddedTo4(json.size());
    const size_t binPadded = bin ? PaddedTo4(bin->size()) : 0;
    const size_t total = kHeaderSize + kChunkHeaderSize + jsonPadded +
                         (bin ? kChunkHeaderSize + binPadded : 0) + otherChunks.size();
    if (total > std::numeric_limits<uint32_t>::max()) {
        return std::nullopt;
    }
    std::string file;
    file.reserve(total);
    AppendUint32(file, kGlbMagic);
    AppendUint32(file, 2);
    AppendUint32(file, static_cast<uint32_t>(total));
    AppendUint32(file, static_cast<uint32_t>(jsonPadded));
    AppendUint32(file, kChunkJson);
    file += json;
    file.append(jsonPadded - json.size(), ' ');
    if (bin) {
        AppendUint32(file, static_cast<uint32_t>(binPadded));
        AppendUint32(file, kChunkBin);
        file += *bin;
        file.append(binPadded - bin->size(), '\0');
    }
    file += otherChunks;
    return file;
}

std::string JsonNestingFault(std::string_view json) {
    if (support::JsonNestingDepth(json) > static_cast<size_t>(kMaxJsonDepth)) {
        return "its JSON nests objects and arrays more than " + std::to_string(kMaxJsonDepth) +
               " deep.";
    }
    return {};
}

}  // namespace railwright::document
