#include "tools/ace/AceReader.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace railwright::ace::testing {
namespace {

constexpr uint64_t kMaskType = 2;
constexpr uint64_t kRedType = 3;
constexpr uint64_t kAlphaType = 6;
constexpr int32_t kMipMapsFlag = 0x01;
constexpr int32_t kRawDataFlag = 0x10;
constexpr int32_t kDxt1Format = 0x12;

[[noreturn]] void Refuse(const std::string& fault) {
    throw std::runtime_error("bad ACE file: " + fault);
}

// Reads little-endian numbers from a byte range, refusing to run past its end.
class Cursor {
  public:
    explicit Cursor(std::span<const uint8_t> bytes) : bytes_(bytes) {}

    size_t Position() const { return position_; }
    void Seek(size_t position) {
        if (position > bytes_.size()) {
            Refuse("seek to " + std::to_string(position) + " past the end " +
                   std::to_string(bytes_.size()));
        }
        position_ = position;
    }
    std::span<const uint8_t> Take(size_t count) {
        if (count > bytes_.size() - position_) {
            Refuse("cut short at " + std::to_string(position_) + " (wanted " +
                   std::to_string(count) + " bytes)");
        }
        const std::span<const uint8_t> taken = bytes_.subspan(position_, count);
        position_ += count;
        return taken;
    }
    uint64_t Number(size_t size) {
        const std::span<const uint8_t> bytes = Take(size);
        uint64_t value = 0;
        for (size_t i = 0; i < size; ++i) {
            value |= static_cast<uint64_t>(bytes[i]) << (8 * i);
        }
        return value;
    }
    int32_t Int32() { return static_cast<int32_t>(static_cast<uint32_t>(Number(4))); }
    uint64_t Uint64() { return Number(8); }
    bool AtEnd() const { return position_ == bytes_.size(); }

  private:
    std::span<const uint8_t> bytes_;
    size_t position_ = 0;
};

bool StartsWith(std::span<const uint8_t> bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

std::vector<uint8_t> Inflate(std::span<const uint8_t> file) {
    Cursor cursor(file);
    cursor.Take(8);
    const uint32_t size = static_cast<uint32_t>(cursor.Number(4));
    if (!StartsWith(cursor.Take(4), "@@@@")) {
        Refuse("compressed signature without \"@@@@\"");
    }
    const std::span<const uint8_t> stream = file.subspan(16);
    if (stream.size() < 2 || ((stream[0] | stream[1] << 8) & 0x20FF) != 0x0078) {
        Refuse("the compressed data does not begin with a zlib header");
    }
    std::vector<uint8_t> body(size);
    uLongf inflated = size;
    uLong consumed = static_cast<uLong>(stream.size());
    const int status = uncompress2(body.data(), &inflated, stream.data(), &consumed);
    if (status != Z_OK) {
        Refuse("the zlib stream does not inflate to the declared size (" + std::to_string(status) +
               ")");
    }
    if (inflated != size || consumed != stream.size()) {
        Refuse("declared size " + std::to_string(size) + ", inflated " + std::to_string(inflated) +
               ", stream bytes left " + std::to_string(stream.size() - consumed));
    }
    return body;
}

size_t ScanlineSize(int32_t width, const std::vector<AceChannelEntry>& channels) {
    size_t size = 0;
    for (const AceChannelEntry& channel : channels) {
        size +=
            channel.bits == 1 ? (static_cast<size_t>(width) + 7) / 8 : static_cast<size_t>(width);
    }
    return size;
}

// One scanline into RGBA, channel after channel in header order.
void ReadScanline(Cursor& cursor, const std::vector<AceChannelEntry>& channels, AceLevel& level,
                  int32_t y) {
    const bool hasAlpha =
        std::any_of(channels.begin(), channels.end(),
                    [](const AceChannelEntry& c) { return c.type == kAlphaType; });
    uint8_t* row = level.rgba.data() + static_cast<size_t>(y) * level.width * 4;
    for (const AceChannelEntry& channel : channels) {
        if (channel.bits == 1) {
            const std::span<const uint8_t> bits =
                cursor.Take((static_cast<size_t>(level.width) + 7) / 8);
            if (!hasAlpha) {
                for (int32_t x = 0; x < level.width; ++x) {
                    const bool set = (bits[static_cast<size_t>(x) / 8] >> (7 - x % 8)) & 1;
                    row[x * 4 + 3] = set ? 255 : 0;
                }
            }
            continue;
        }
        const std::span<const uint8_t> bytes = cursor.Take(static_cast<size_t>(level.width));
        const size_t component = channel.type == kAlphaType ? 3 : channel.type - kRedType;
        for (int32_t x = 0; x < level.width; ++x) {
            row[x * 4 + component] = bytes[static_cast<size_t>(x)];
        }
    }
}

AceLevel EmptyLevel(int32_t width, int32_t height) {
    AceLevel level;
    level.width = width;
    level.height = height;
    level.rgba.assign(static_cast<size_t>(width) * height * 4, 0);
    for (size_t i = 3; i < level.rgba.size(); i += 4) {
        level.rgba[i] = 255;
    }
    return level;
}

void ReadStructured(Cursor& cursor, AceContents& ace, const std::vector<int32_t>& sides) {
    size_t scanlines = 0;
    for (size_t i = 0; i < sides.size(); i += 2) {
        scanlines += static_cast<size_t>(sides[i + 1]);
    }
    std::vector<int32_t> offsets(scanlines);
    for (int32_t& offset : offsets) {
        offset = cursor.Int32();
    }
    size_t expected = cursor.Position();
    size_t next = 0;
    for (size_t i = 0; i < sides.size(); i += 2) {
        AceLevel level = EmptyLevel(sides[i], sides[i + 1]);
        const size_t scanlineSize = ScanlineSize(level.width, ace.channels);
        for (int32_t y = 0; y < level.height; ++y, ++next) {
            if (offsets[next] < 0 || static_cast<size_t>(offsets[next]) != expected) {
                Refuse("scanline " + std::to_string(next) + " at " + std::to_string(offsets[next]) +
                       ", expected " + std::to_string(expected));
            }
            cursor.Seek(static_cast<size_t>(offsets[next]));
            ReadScanline(cursor, ace.channels, level, y);
            expected += scanlineSize;
        }
        ace.levels.push_back(std::move(level));
    }
}

void ReadDxt1(Cursor& cursor, AceContents& ace, const std::vector<int32_t>& sides) {
    if (ace.surfaceFormat != kDxt1Format) {
        Refuse("raw data in surface format " + std::to_string(ace.surfaceFormat));
    }
    if (std::any_of(ace.channels.begin(), ace.channels.end(),
                    [](const AceChannelEntry& c) { return c.type == kAlphaType; })) {
        Refuse("DXT1 with an 8-bit alpha channel");
    }
    const bool hasMask = std::any_of(ace.channels.begin(), ace.channels.end(),
                                     [](const AceChannelEntry& c) { return c.type == kMaskType; });
    std::vector<int32_t> offsets(sides.size() / 2);
    for (int32_t& offset : offsets) {
        offset = cursor.Int32();
    }
    for (size_t i = 0; i < sides.size(); i += 2) {
        if (static_cast<size_t>(offsets[i / 2]) != cursor.Position()) {
            Refuse("level " + std::to_string(i / 2) + " at " + std::to_string(offsets[i / 2]) +
                   ", expected " + std::to_string(cursor.Position()));
        }
        AceLevel level = EmptyLevel(sides[i], sides[i + 1]);
        if (level.width >= 4 && level.height >= 4) {
            level.storedAsBlocks = true;
            const int32_t across = (level.width + 3) / 4;
            const int32_t down = (level.height + 3) / 4;
            const int32_t length = cursor.Int32();
            if (length != across * down * 8) {
                Refuse("level " + std::to_string(i / 2) + " length " + std::to_string(length));
            }
            for (int32_t blockY = 0; blockY < down; ++blockY) {
                for (int32_t blockX = 0; blockX < across; ++blockX) {
                    const std::vector<uint8_t> pixels = DecodeDxt1Block(cursor.Take(8).data());
                    for (int32_t y = 0; y < 4 && blockY * 4 + y < level.height; ++y) {
                        for (int32_t x = 0; x < 4 && blockX * 4 + x < level.width; ++x) {
                            std::copy_n(pixels.data() + (y * 4 + x) * 4, 4,
                                        level.rgba.data() +
                                            ((static_cast<size_t>(blockY) * 4 + y) * level.width +
                                             blockX * 4 + x) *
                                                4);
                        }
                    }
                }
            }
            if (!hasMask) {
                for (size_t a = 3; a < level.rgba.size(); a += 4) {
                    if (level.rgba[a] != 255) {
                        Refuse("a transparent DXT1 pixel without a mask channel");
                    }
                }
            }
        } else {
            for (int32_t y = 0; y < level.height; ++y) {
                ReadScanline(cursor, ace.channels, level, y);
            }
        }
        ace.levels.push_back(std::move(level));
    }
}

}  // namespace

std::vector<uint8_t> DecodeDxt1Block(const uint8_t* block) {
    const uint16_t colour0 = static_cast<uint16_t>(block[0] | block[1] << 8);
    const uint16_t colour1 = static_cast<uint16_t>(block[2] | block[3] << 8);
    const auto expand = [](uint16_t colour) {
        const int r = (colour >> 11) & 0x1F;
        const int g = (colour >> 5) & 0x3F;
        const int b = colour & 0x1F;
        return std::array<int, 4>{(r << 3) | (r >> 2), (g << 2) | (g >> 4), (b << 3) | (b >> 2),
                                  255};
    };
    std::array<std::array<int, 4>, 4> palette{expand(colour0), expand(colour1), {}, {}};
    for (size_t c = 0; c < 3; ++c) {
        if (colour0 > colour1) {
            palette[2][c] = (2 * palette[0][c] + palette[1][c]) / 3;
            palette[3][c] = (palette[0][c] + 2 * palette[1][c]) / 3;
        } else {
            palette[2][c] = (palette[0][c] + palette[1][c]) / 2;
            palette[3][c] = 0;
        }
    }
    palette[2][3] = 255;
    palette[3][3] = colour0 > colour1 ? 255 : 0;
    const uint32_t indices =
        static_cast<uint32_t>(block[4]) | static_cast<uint32_t>(block[5]) << 8 |
        static_cast<uint32_t>(block[6]) << 16 | static_cast<uint32_t>(block[7]) << 24;
    std::vector<uint8_t> pixels(64);
    for (size_t pixel = 0; pixel < 16; ++pixel) {
        const auto& colour = palette[(indices >> (2 * pixel)) & 3];
        for (size_t c = 0; c < 4; ++c) {
            pixels[pixel * 4 + c] = static_cast<uint8_t>(colour[c]);
        }
    }
    return pixels;
}

AceContents ReadAce(std::span<const uint8_t> file) {
    AceContents ace;
    if (StartsWith(file, "SIMISA@F")) {
        ace.compressed = true;
        ace.body = Inflate(file);
    } else if (StartsWith(file, "SIMISA@@@@@@@@@@")) {
        ace.body.assign(file.begin() + 16, file.end());
    } else {
        Refuse("no SIMISA signature");
    }

    Cursor cursor(ace.body);
    if (cursor.Int32() != 1) {
        Refuse("the body does not begin with 1");
    }
    ace.flags = cursor.Int32();
    ace.width = cursor.Int32();
    ace.height = cursor.Int32();
    ace.surfaceFormat = cursor.Int32();
    const int32_t channelCount = cursor.Int32();
    const std::span<const uint8_t> rest = cursor.Take(128);
    const auto creator = rest.subspan(20, 64);
    ace.creator.assign(creator.begin(), std::find(creator.begin(), creator.end(), 0));
    if ((ace.flags & ~(kMipMapsFlag | kRawDataFlag)) != 0) {
        Refuse("unknown flags " + std::to_string(ace.flags));
    }
    if (ace.width <= 0 || ace.height <= 0 || channelCount <= 0 || channelCount > 8) {
        Refuse("impossible size or channel count");
    }
    for (int32_t i = 0; i < channelCount; ++i) {
        AceChannelEntry channel;
        channel.bits = cursor.Uint64();
        channel.type = cursor.Uint64();
        if ((channel.bits != 1 && channel.bits != 8) || channel.type < kMaskType ||
            channel.type > kAlphaType) {
            Refuse("channel " + std::to_string(i) + " of " + std::to_string(channel.bits) +
                   " bits, type " + std::to_string(channel.type));
        }
        ace.channels.push_back(channel);
    }

    std::vector<int32_t> sides = {ace.width, ace.height};
    if (ace.flags & kMipMapsFlag) {
        if (ace.width != ace.height || (ace.width & (ace.width - 1)) != 0) {
            Refuse("mip-maps on a picture that is not a square power of two");
        }
        for (int32_t side = ace.width / 2; side >= 1; side /= 2) {
            sides.push_back(side);
            sides.push_back(side);
        }
    }
    if (ace.flags & kRawDataFlag) {
        ReadDxt1(cursor, ace, sides);
    } else {
        ReadStructured(cursor, ace, sides);
    }
    if (!cursor.AtEnd()) {
        Refuse(std::to_string(ace.body.size() - cursor.Position()) + " bytes after the data");
    }
    return ace;
}

}  // namespace railwright::ace::testing
