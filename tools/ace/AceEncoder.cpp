#include "ace/AceEncoder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "ace/AceFormat.h"
#include "ace/Dxt1.h"
#include "ace/MipChain.h"

namespace railwright::ace {
namespace {

constexpr std::string_view kCreator = "Railwright";

struct Channel {
    uint64_t bits;
    ChannelType type;
};

std::vector<Channel> ChannelsFor(AlphaChannel alpha) {
    std::vector<Channel> channels = {
        {8, ChannelType::Red}, {8, ChannelType::Green}, {8, ChannelType::Blue}};
    if (alpha == AlphaChannel::Mask) {
        channels.push_back({1, ChannelType::Mask});
    } else if (alpha == AlphaChannel::Alpha) {
        channels.push_back({8, ChannelType::Alpha});
    }
    return channels;
}

SurfaceFormat SurfaceFormatFor(AceData data, AlphaChannel alpha) {
    if (data == AceData::Dxt1) {
        return SurfaceFormat::Dxt1;
    }
    switch (alpha) {
        case AlphaChannel::Mask:
            return SurfaceFormat::Argb1555;
        case AlphaChannel::Alpha:
            return SurfaceFormat::Argb4444;
        case AlphaChannel::None:
            break;
    }
    return SurfaceFormat::Rgb565;
}

uint64_t ScanlineSize(int32_t width, AlphaChannel alpha) {
    const uint64_t pixels = static_cast<uint64_t>(width);
    uint64_t size = 3 * pixels;
    if (alpha == AlphaChannel::Mask) {
        size += (pixels + 7) / 8;
    } else if (alpha == AlphaChannel::Alpha) {
        size += pixels;
    }
    return size;
}

bool StoredAsBlocks(const Image& level) {
    return level.width >= 4 && level.height >= 4;
}

// Fills a buffer sized beforehand; the sizes are checked once, up front.
class BodyWriter {
  public:
    explicit BodyWriter(std::vector<uint8_t>& body) : out_(body.data()) {}

    void PutInt32(int32_t value) { PutLittleEndian(static_cast<uint32_t>(value), 4); }
    void PutUint64(uint64_t value) { PutLittleEndian(value, 8); }
    void PutZeros(size_t count) {
        std::memset(out_, 0, count);
        out_ += count;
    }
    void PutText(std::string_view text, size_t fieldSize) {
        const size_t length = std::min(text.size(), fieldSize);
        std::memcpy(out_, text.data(), length);
        out_ += length;
        PutZeros(fieldSize - length);
    }
    uint8_t* Cursor() { return out_; }
    void Advance(size_t count) { out_ += count; }

    // One scanline: red, green, blue, then the alpha channel chosen.
    void PutScanline(const Image& level, int32_t y, AlphaChannel alpha) {
        const uint8_t* row = level.Pixel(0, y);
        const size_t width = static_cast<size_t>(level.width);
        for (size_t channel = 0; channel < 3; ++channel) {
            for (size_t x = 0; x < width; ++x) {
                out_[x] = row[x * 4 + channel];
            }
            out_ += width;
        }
        if (alpha == AlphaChannel::Alpha) {
            for (size_t x = 0; x < width; ++x) {
                out_[x] = row[x * 4 + 3];
            }
            out_ += width;
        } else if (alpha == AlphaChannel::Mask) {
            const size_t maskBytes = (width + 7) / 8;
            std::memset(out_, 0, maskBytes);
            for (size_t x = 0; x < width; ++x) {
                if (row[x * 4 + 3] >= kOpaqueFrom) {
                    out_[x / 8] = static_cast<uint8_t>(out_[x / 8] | (0x80u >> (x % 8)));
                }
            }
            out_ += maskBytes;
        }
    }

  private:
    void PutLittleEndian(uint64_t value, size_t bytes) {
        for (size_t i = 0; i < bytes; ++i) {
            *out_++ = static_cast<uint8_t>(value >> (8 * i));
        }
    }

    uint8_t* out_;
};

void PutHeader(BodyWriter& writer, const Image& image, int32_t flags, SurfaceFormat format,
               const std::vector<Channel>& channels) {
    writer.PutInt32(kBodyVersion);
    writer.PutInt32(flags);
    writer.PutInt32(image.width);
    writer.PutInt32(image.height);
    writer.PutInt32(static_cast<int32_t>(format));
    writer.PutInt32(static_cast<int32_t>(channels.size()));
    writer.PutZeros(kCreatorOffset - 24);
    writer.PutText(kCreator, kCreatorSize);
    writer.PutZeros(kBodyHeaderSize - kCreatorOffset - kCreatorSize);
    for (const Channel& channel : channels) {
        writer.PutUint64(channel.bits);
        writer.PutUint64(static_cast<uint64_t>(channel.type));
    }
}

Fault TooLarge() {
    return Fault{"is too large for an ACE file"};
}

constexpr uint64_t kLargestBody = static_cast<uint64_t>(std::numeric_limits<int32_t>::max());

Result<std::vector<uint8_t>> EncodeStructured(const std::vector<const Image*>& levels,
                                              int32_t flags, AlphaChannel alpha) {
    const std::vector<Channel> channels = ChannelsFor(alpha);
    uint64_t scanlines = 0;
    uint64_t dataSize = 0;
    for (const Image* level : levels) {
        scanlines += static_cast<uint64_t>(level->height);
        dataSize += ScanlineSize(level->width, alpha) * static_cast<uint64_t>(level->height);
    }
    const uint64_t dataStart =
        kBodyHeaderSize + kChannelEntrySize * channels.size() + 4 * scanlines;
    if (dataStart + dataSize > kLargestBody) {
        return TooLarge();
    }

    std::vector<uint8_t> body(static_cast<size_t>(dataStart + dataSize));
    BodyWriter writer(body);
    PutHeader(writer, *levels.front(), flags, SurfaceFormatFor(AceData::Structured, alpha),
              channels);
    uint64_t offset = dataStart;
    for (const Image* level : levels) {
        const uint64_t scanlineSize = ScanlineSize(level->width, alpha);
        for (int32_t y = 0; y < level->height; ++y) {
            writer.PutInt32(static_cast<int32_t>(offset));
            offset += scanlineSize;
        }
    }
    for (const Image* level : levels) {
        for (int32_t y = 0; y < level->height; ++y) {
            writer.PutScanline(*level, y, alpha);
        }
    }
    return body;
}

uint64_t RawLevelSize(const Image& level, AlphaChannel alpha) {
    if (StoredAsBlocks(level)) {
        return 4 + Dxt1Size(level.width, level.height);
    }
    return ScanlineSize(level.width, alpha) * static_cast<uint64_t>(level.height);
}

Result<std::vector<uint8_t>> EncodeDxt1Body(const std::vector<const Image*>& levels, int32_t flags,
                                            AlphaChannel alpha) {
    const Image& top = *levels.front();
    const std::vector<Channel> channels = ChannelsFor(alpha);
    const uint64_t dataStart = kBodyHeaderSize + kChannelEntrySize * channels.size() +
                               4 * static_cast<uint64_t>(levels.size());
    uint64_t dataSize = 0;
    for (const Image* level : levels) {
        dataSize += RawLevelSize(*level, alpha);
    }
    if (dataStart + dataSize > kLargestBody) {
        return TooLarge();
    }

    std::vector<uint8_t> body(static_cast<size_t>(dataStart + dataSize));
    BodyWriter writer(body);
    PutHeader(writer, top, flags | kRawData, SurfaceFormat::Dxt1, channels);
    uint64_t offset = dataStart;
    for (const Image* level : levels) {
        writer.PutInt32(static_cast<int32_t>(offset));
        offset += RawLevelSize(*level, alpha);
    }
    const Dxt1Alpha blockAlpha =
        alpha == AlphaChannel::Mask ? Dxt1Alpha::PunchThrough : Dxt1Alpha::Opaque;
    for (const Image* level : levels) {
        if (StoredAsBlocks(*level)) {
            const std::vector<uint8_t> blocks = EncodeDxt1(*level, blockAlpha);
            writer.PutInt32(static_cast<int32_t>(blocks.size()));
            std::memcpy(writer.Cursor(), blocks.data(), blocks.size());
            writer.Advance(blocks.size());
        } else {
            for (int32_t y = 0; y < level->height; ++y) {
                writer.PutScanline(*level, y, alpha);
            }
        }
    }
    return body;
}

}  // namespace

AlphaChannel ChooseAlphaChannel(const Image& image, const AceOptions& options) {
    if (options.transparencyMask) {
        return AlphaChannel::Mask;
    }
    if (image.hasAlpha && options.data == AceData::Structured) {
        return AlphaChannel::Alpha;
    }
    return AlphaChannel::None;
}

Result<std::vector<uint8_t>> EncodeAceBody(const Image& image, const AceOptions& options) {
    if (image.width <= 0 || image.height <= 0 ||
        image.rgba.size() != static_cast<size_t>(image.width) * image.height * 4) {
        return Fault{"holds no picture"};
    }
    if (options.data == AceData::Dxt1 && (image.width % 4 != 0 || image.height % 4 != 0)) {
        return Fault{"is " + std::to_string(image.width) + "x" + std::to_string(image.height) +
                     " pixels; DXT1 needs a width and a height that are multiples of 4"};
    }
    std::vector<Image> below;
    int32_t flags = 0;
    if (TakesMipMaps(image)) {
        below = MipLevelsBelow(image);
        flags |= kMipMaps;
    }
    std::vector<const Image*> levels = {&image};
    for (const Image& level : below) {
        levels.push_back(&level);
    }

    const AlphaChannel alpha = ChooseAlphaChannel(image, options);
    if (options.data == AceData::Dxt1) {
        return EncodeDxt1Body(levels, flags, alpha);
    }
    return EncodeStructured(levels, flags, alpha);
}

}  // namespace railwright::ace
