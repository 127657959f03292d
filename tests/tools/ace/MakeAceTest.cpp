// MakeACE.exe run as the exporters run it, its output read back with a reader of our own.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/posix/TempFolder.h"
#include "tools/ace/AceReader.h"
#include "tools/ace/PixelChecks.h"
#include "tools/ace/TestImages.h"
#include "tools/ace/ToolRunner.h"

namespace railwright::ace::testing {
namespace {

using railwright::testing::PutFile;
using railwright::testing::TempFolder;

constexpr int32_t kMipMaps = 0x01;
constexpr int32_t kRawData = 0x10;
constexpr int32_t kRgb565 = 0x0E;
constexpr int32_t kArgb1555 = 0x10;
constexpr int32_t kArgb4444 = 0x11;
constexpr int32_t kDxt1 = 0x12;

const AceChannelEntry kRed{8, 3};
const AceChannelEntry kGreen{8, 4};
const AceChannelEntry kBlue{8, 5};
const AceChannelEntry kMask{1, 2};
const AceChannelEntry kAlpha{8, 6};
const std::vector<AceChannelEntry> kRgbChannels = {kRed, kGreen, kBlue};

std::vector<int32_t> LevelSides(const AceContents& ace) {
    std::vector<int32_t> sides;
    for (const AceLevel& level : ace.levels) {
        sides.push_back(level.width);
        sides.push_back(level.height);
    }
    return sides;
}

// One conversion per test, in a fresh folder; the output goes to a folder whose name has a
// blank, as a user's may, which the quoted OUT must carry.
class AceMakeAceTest : public ::testing::Test {
  protected:
    void SetUp() override { std::filesystem::create_directory(outputFolder_); }

    std::string Source(const std::string& name, const std::string& bytes) {
        const std::string path = folder_ / name;
        PutFile(path, bytes);
        return path;
    }

    AceContents Convert(const std::string& name, const std::string& bytes,
                        const std::string& switches) {
        const ToolRun run = RunTool(MakeAceCommandLine(Source(name, bytes), output_, switches));
        EXPECT_TRUE(run.started);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        lastErrors_ = run.errors;
        return ReadAce(FileBytes(output_));
    }

    TempFolder folder_;
    std::string outputFolder_ = folder_ / "textures out";
    std::string output_ = outputFolder_ + "/texture.ace";
    std::string lastErrors_;
};

TEST_F(AceMakeAceTest, EveryTgaLayoutGivesThePictureTopFirst) {
    const Picture picture = Stripes(8, 8);
    struct Case {
        const char* name;
        TgaLayout layout;
    };
    const Case cases[] = {
        {"bottom-left", {24, TgaOrigin::BottomLeft, false}},
        {"top-left", {24, TgaOrigin::TopLeft, false}},
        {"top-right", {24, TgaOrigin::TopRight, false}},
        {"run-length bottom-left", {24, TgaOrigin::BottomLeft, true}},
        {"run-length top-left", {24, TgaOrigin::TopLeft, true}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const AceContents ace = Convert("stripes.tga", EncodeTga(picture, c.layout), "");
        EXPECT_FALSE(ace.compressed);
        EXPECT_EQ(ace.flags, kMipMaps);
        EXPECT_EQ(ace.surfaceFormat, kRgb565);
        EXPECT_EQ(ace.channels, kRgbChannels);
        EXPECT_EQ(LevelSides(ace), (std::vector<int32_t>{8, 8, 4, 4, 2, 2, 1, 1}));
        EXPECT_TRUE(SamePixels(ace.levels.front(), picture));
    }
}

TEST_F(AceMakeAceTest, EachMipLevelIsTheMeanOfTheOneAbove) {
    const Picture picture = Opaque(Gradient(16, 16));
    const AceContents ace = Convert("gradient.tga", EncodeTga(picture, {}), "");
    ASSERT_EQ(ace.levels.size(), 5u);
    Picture expected = picture;
    for (const AceLevel& level : ace.levels) {
        SCOPED_TRACE(level.width);
        EXPECT_TRUE(SamePixels(level, expected));
        expected = Halved(expected);
    }
}

TEST_F(AceMakeAceTest, OnlySquarePowersOfTwoGetMipMaps) {
    struct Case {
        int32_t width;
        int32_t height;
    };
    for (const Case c : {Case{6, 3}, Case{16, 8}, Case{12, 12}, Case{1, 1}}) {
        SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height));
        // 24-bit BMP rows are padded to four bytes: 6 and 12 pixels test the padding.
        const Picture picture = Opaque(Gradient(c.width, c.height));
        const AceContents ace = Convert("picture.bmp", EncodeBmp(picture), "");
        const bool square = c.width == c.height && (c.width & (c.width - 1)) == 0;
        EXPECT_EQ(ace.flags, square ? kMipMaps : 0);
        EXPECT_EQ(ace.width, c.width);
        EXPECT_EQ(ace.height, c.height);
        EXPECT_EQ(ace.levels.size(), 1u);
        EXPECT_EQ(ace.channels, kRgbChannels);
        EXPECT_TRUE(SamePixels(ace.levels.front(), picture));
    }
}

TEST_F(AceMakeAceTest, AlphaIsKeptAsAnEightBitChannel) {
    const Picture picture = Gradient(8, 8);
    const AceContents ace = Convert("alpha.tga", EncodeTga(picture, {32}), "");
    EXPECT_EQ(ace.surfaceFormat, kArgb4444);
    EXPECT_EQ(ace.channels, (std::vector<AceChannelEntry>{kRed, kGreen, kBlue, kAlpha}));
    EXPECT_TRUE(SamePixels(ace.levels.front(), picture));
}

TEST_F(AceMakeAceTest, TransKeepsAOneBitMask) {
    // 12 pixels a row: the mask's second byte is half used.
    const Picture wide = Gradient(12, 3);
    AceContents ace = Convert("wide.tga", EncodeTga(wide, {32, TgaOrigin::TopLeft}), " -trans");
    EXPECT_EQ(ace.surfaceFormat, kArgb1555);
    EXPECT_EQ(ace.channels, (std::vector<AceChannelEntry>{kRed, kGreen, kBlue, kMask}));
    EXPECT_TRUE(SamePixels(ace.levels.front(), Masked(wide)));

    const Picture square = Gradient(16, 16);
    ace = Convert("square.tga", EncodeTga(square, {32}), " -trans");
    EXPECT_EQ(ace.flags, kMipMaps);
    EXPECT_EQ(ace.levels.size(), 5u);
    EXPECT_TRUE(SamePixels(ace.levels.front(), Masked(square)));
}

TEST_F(AceMakeAceTest, TransOnAPictureWithoutAlphaGivesAnOpaqueMask) {
    const Picture picture = Opaque(Gradient(8, 8));
    const AceContents ace = Convert("opaque.bmp", EncodeBmp(picture), " -trans");
    EXPECT_EQ(ace.channels, (std::vector<AceChannelEntry>{kRed, kGreen, kBlue, kMask}));
    EXPECT_TRUE(SamePixels(ace.levels.front(), picture));  // every mask bit set
}

TEST_F(AceMakeAceTest, TransparentPixelsDoNotDarkenTheMipMaps) {
    // One opaque red pixel among three transparent black ones.
    const Picture picture{2, 2, {255, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}};
    const AceContents ace = Convert("speck.tga", EncodeTga(picture, {32}), "");
    ASSERT_EQ(ace.levels.size(), 2u);
    const Picture expected{1, 1, {255, 0, 0, 64}};
    EXPECT_TRUE(SamePixels(ace.levels.back(), expected));
}

TEST_F(AceMakeAceTest, ZlibWritesTheSameBodyCompressed) {
    const std::string source = EncodeTga(Gradient(16, 16), {32});
    const AceContents plain = Convert("alpha.tga", source, " -trans");
    const AceContents compressed = Convert("alpha.tga", source, " -trans -zlib");
    EXPECT_FALSE(plain.compressed);
    EXPECT_TRUE(compressed.compressed);
    EXPECT_EQ(compressed.body, plain.body);
    const std::vector<uint8_t> file = FileBytes(output_);
    ASSERT_GT(file.size(), 18u);
    EXPECT_EQ(file[16], 0x78);  // zlib, deflate, the default level
    EXPECT_EQ(file[17], 0x9C);
}

TEST_F(AceMakeAceTest, DxtBlocksDecodeNearTheSourceAtEveryLevel) {
    const Picture picture = Opaque(Smooth(32, 32));
    const AceContents ace = Convert("smooth.tga", EncodeTga(picture, {}), " -dxt");
    EXPECT_EQ(ace.flags, kMipMaps | kRawData);
    EXPECT_EQ(ace.surfaceFormat, kDxt1);
    EXPECT_EQ(ace.channels, kRgbChannels);
    ASSERT_EQ(ace.levels.size(), 6u);
    Picture expected = picture;
    for (const AceLevel& level : ace.levels) {
        SCOPED_TRACE(level.width);
        if (level.storedAsBlocks) {
            const int tolerance = Dxt1Tolerance(expected);
            EXPECT_TRUE(PixelsNear(level, expected, tolerance, tolerance / 2.0));
        } else {
            EXPECT_TRUE(SamePixels(level, expected));  // 2×2 and 1×1 are plain scanlines
        }
        expected = Halved(expected);
    }
    EXPECT_TRUE(ace.levels[3].storedAsBlocks);  // 4×4
    EXPECT_FALSE(ace.levels[4].storedAsBlocks);
}

TEST_F(AceMakeAceTest, DxtWithTransMakesTransparentBlackWhereTheMaskIsClear) {
    const Picture picture = Smooth(32, 32);
    const AceContents ace =
        Convert("disc.tga", EncodeTga(picture, {32, TgaOrigin::TopLeft}), " -trans -dxt");
    EXPECT_EQ(ace.channels, (std::vector<AceChannelEntry>{kRed, kGreen, kBlue, kMask}));
    const AceLevel& top = ace.levels.front();
    size_t transparent = 0;
    for (int32_t y = 0; y < top.height; ++y) {
        for (int32_t x = 0; x < top.width; ++x) {
            const uint8_t* decoded = top.rgba.data() + (static_cast<size_t>(y) * top.width + x) * 4;
            const bool opaque = picture.Pixel(x, y)[3] >= 128;
            ASSERT_EQ(decoded[3], opaque ? 255 : 0) << "(" << x << ", " << y << ")";
            if (!opaque) {
                ++transparent;
                EXPECT_EQ(decoded[0] + decoded[1] + decoded[2], 0);
            }
        }
    }
    EXPECT_GT(transparent, 100u);  // the corners outside the disc
    // Where the mask is set the colours stay close, though blocks at the rim have three colours.
    Picture opaqueOnly = Masked(picture);
    for (size_t i = 0; i < opaqueOnly.rgba.size(); i += 4) {
        if (opaqueOnly.rgba[i + 3] == 0) {
            std::fill_n(opaqueOnly.rgba.begin() + static_cast<std::ptrdiff_t>(i), 3, 0);
        }
    }
    EXPECT_TRUE(PixelsNear(top, opaqueOnly, 24, 4.0));
}

TEST_F(AceMakeAceTest, DxtWithoutTransDropsTheAlphaWithANote) {
    const AceContents ace = Convert("alpha.tga", EncodeTga(Smooth(8, 8), {32}), " -dxt");
    EXPECT_EQ(ace.channels, kRgbChannels);  // the reader also refuses transparent pixels here
    EXPECT_NE(lastErrors_.find("alpha"), std::string::npos) << lastErrors_;
}

TEST_F(AceMakeAceTest, SwitchesIgnoreCase) {
    const AceContents ace = Convert("alpha.tga", EncodeTga(Gradient(8, 8), {32}), " -TRANS -Zlib");
    EXPECT_TRUE(ace.compressed);
    EXPECT_EQ(ace.channels.back(), kMask);
}

TEST_F(AceMakeAceTest, ReplacesAnOlderOutputAndLeavesNothingElse) {
    PutFile(output_, "an older texture");
    const AceContents ace = Convert("picture.bmp", EncodeBmp(Opaque(Gradient(4, 4))), "");
    EXPECT_EQ(ace.width, 4);
    EXPECT_EQ(FolderEntries(outputFolder_), std::vector<std::string>{"texture.ace"});
}

}  // namespace
}  // namespace railwright::ace::testing
