// acecomp.exe run as the exporters run it on a finished texture: FILE twice, in place.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/posix/TempFolder.h"
#include "tools/ace/AceReader.h"
#include "tools/ace/TestImages.h"
#include "tools/ace/ToolRunner.h"

namespace railwright::ace::testing {
namespace {

using railwright::testing::PutFile;
using railwright::testing::TempFolder;

class AceCompTest : public ::testing::Test {
  protected:
    // A plain texture made by MakeACE with the given switches.
    void MakeTexture(const std::string& switches) {
        const std::string source = folder_ / "source.tga";
        PutFile(source, EncodeTga(Smooth(16, 16), {32}));
        const ToolRun run = RunTool(MakeAceCommandLine(source, texture_, switches));
        ASSERT_EQ(run.exitCode, 0) << run.errors;
    }

    TempFolder folder_;
    std::string texture_ = folder_ / "texture.ace";
};

TEST_F(AceCompTest, CompressesInPlaceKeepingTheBody) {
    for (const char* switches : {"", " -trans", " -dxt", " -trans -dxt"}) {
        SCOPED_TRACE(switches);
        MakeTexture(switches);
        const std::vector<uint8_t> plain = FileBytes(texture_);
        const ToolRun run = RunTool(AceCompCommandLine(texture_));
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        const std::vector<uint8_t> compressed = FileBytes(texture_);
        const AceContents ace = ReadAce(compressed);
        EXPECT_TRUE(ace.compressed);
        EXPECT_EQ(ace.body, std::vector<uint8_t>(plain.begin() + 16, plain.end()));
        EXPECT_LT(compressed.size(), plain.size());
    }
}

TEST_F(AceCompTest, LeavesACompressedTextureAsItIs) {
    MakeTexture(" -zlib");
    const std::vector<uint8_t> before = FileBytes(texture_);
    const ToolRun run = RunTool(AceCompCommandLine(texture_));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(FileBytes(texture_), before);
}

}  // namespace
}  // namespace railwright::ace::testing
