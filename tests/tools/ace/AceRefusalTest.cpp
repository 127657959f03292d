// What the ACE tools refuse: each refusal exits non-zero, names the file at fault and why, and
// writes nothing: no output, no leftover temporary file, an older output untouched.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/posix/TempFolder.h"
#include "tools/ace/TestImages.h"
#include "tools/ace/ToolRunner.h"

namespace railwright::ace::testing {
namespace {

using railwright::testing::GetFile;
using railwright::testing::PutFile;
using railwright::testing::TempFolder;

struct Refusal {
    const char* name;
    std::string sourceName;  // empty: no source file is written
    std::string sourceBytes;
    std::string switches;
    int32_t exitCode;
    const char* fault;         // a phrase the message must hold
    bool faultIsTheOutput;     // the message names the output rather than the input
    bool outputFolderMissing;  // OUT lies in a folder that does not exist
};

std::string CutShort(std::string bytes, size_t keep) {
    bytes.resize(keep);
    return bytes;
}

std::vector<Refusal> MakeAceRefusals() {
    const std::string tga = EncodeTga(Gradient(8, 8), {24});
    const std::string runLengthTga = EncodeTga(Stripes(8, 8), {24, TgaOrigin::BottomLeft, true});
    const std::string bmp = EncodeBmp(Opaque(Gradient(8, 8)));
    return {
        {"missing input", "", "", "", 1, "no such file", false, false},
        {"16-bit TGA", "sixteen.tga", Encode16BitTga(8, 8), "", 1, "16-bit", false, false},
        {"run-length BMP", "rle.bmp", EncodeRunLengthBmp(8, 8), "", 1, "run-length", false, false},
        {"not a picture", "notes.tga", "these are not pixels at all", "", 1,
         "neither a TGA nor a BMP", false, false},
        {"TGA cut short", "cut.tga", CutShort(tga, tga.size() - 5), "", 1, "cut short", false,
         false},
        {"run-length TGA cut short", "cut.tga", CutShort(runLengthTga, runLengthTga.size() - 2), "",
         1, "cut short", false, false},
        {"BMP cut short", "cut.bmp", CutShort(bmp, bmp.size() - 1), "", 1, "cut short", false,
         false},
        {"DXT1 of 6x6", "six.tga", EncodeTga(Opaque(Gradient(6, 6)), {}), " -dxt", 1,
         "multiples of 4", false, false},
        {"output folder missing", "fine.tga", tga, "", 1, "folder does not exist", true, true},
        {"unknown switch", "fine.tga", tga, " -fast", 2, "unknown option \"-fast\"", false, false},
    };
}

TEST(AceRefusalTest, MakeAceRefusesAndWritesNothing) {
    for (const Refusal& refusal : MakeAceRefusals()) {
        SCOPED_TRACE(refusal.name);
        TempFolder folder;
        const std::string input =
            folder / (refusal.sourceName.empty() ? "absent.tga" : refusal.sourceName);
        if (!refusal.sourceName.empty()) {
            PutFile(input, refusal.sourceBytes);
        }
        const std::string outputFolder = folder / (refusal.outputFolderMissing ? "gone" : "out");
        if (!refusal.outputFolderMissing) {
            std::filesystem::create_directory(outputFolder);
        }
        const std::string output = outputFolder + "/texture.ace";

        const ToolRun run = RunTool(MakeAceCommandLine(input, output, refusal.switches));
        ASSERT_TRUE(run.started);
        EXPECT_EQ(run.exitCode, refusal.exitCode) << run.errors;
        EXPECT_NE(run.errors.find(refusal.fault), std::string::npos) << run.errors;
        if (refusal.exitCode == 1) {
            const std::string named = refusal.faultIsTheOutput ? output : input;
            EXPECT_NE(run.errors.find("\"" + named + "\""), std::string::npos) << run.errors;
        }
        EXPECT_FALSE(std::filesystem::exists(output));
        if (!refusal.outputFolderMissing) {
            EXPECT_TRUE(FolderEntries(outputFolder).empty());
        }
    }
}

TEST(AceRefusalTest, AFailedConversionKeepsTheOlderOutput) {
    TempFolder folder;
    const std::string input = folder / "sixteen.tga";
    const std::string output = folder / "texture.ace";
    PutFile(input, Encode16BitTga(4, 4));
    PutFile(output, "the older texture");
    const ToolRun run = RunTool(MakeAceCommandLine(input, output, ""));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(GetFile(output), "the older texture");
    EXPECT_EQ(FolderEntries(folder.Path()),
              (std::vector<std::string>{"sixteen.tga", "texture.ace"}));
}

TEST(AceRefusalTest, MakeAceWantsAnInputAndAnOutput) {
    TempFolder folder;
    const ToolRun run = RunTool(ToolsFolder() + "MakeACE.exe " + (folder / "only.tga"));
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("usage"), std::string::npos) << run.errors;
}

TEST(AceRefusalTest, AceCompRefusesWhatIsNoAceFile) {
    struct Case {
        const char* name;
        std::string bytes;  // empty: the file does not exist
        const char* fault;
    };
    std::string damaged = "SIMISA@@@@@@@@@@";
    damaged += std::string("\1\0\0\0\0\0\0\0\4\0\0\0\4\0\0\0\x0E\0\0\0\x63\0\0\0", 24);
    damaged += std::string(128, '\0');
    const Case cases[] = {
        {"missing", "", "no such file"},
        {"a TGA", EncodeTga(Gradient(4, 4), {}), "not an ACE file"},
        {"header cut short", std::string("SIMISA@@@@@@@@@@\1\0\0\0", 20), "cut short"},
        {"99 channels", damaged, "channel table"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TempFolder folder;
        const std::string file = folder / "texture.ace";
        if (!c.bytes.empty()) {
            PutFile(file, c.bytes);
        }
        const ToolRun run = RunTool(AceCompCommandLine(file));
        ASSERT_TRUE(run.started);
        EXPECT_EQ(run.exitCode, 1) << run.errors;
        EXPECT_NE(run.errors.find("\"" + file + "\""), std::string::npos) << run.errors;
        EXPECT_NE(run.errors.find(c.fault), std::string::npos) << run.errors;
        EXPECT_EQ(GetFile(file), c.bytes);
        EXPECT_LE(FolderEntries(folder.Path()).size(), 1u);
    }
}

}  // namespace
}  // namespace railwright::ace::testing
