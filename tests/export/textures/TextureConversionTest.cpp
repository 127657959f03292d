// Texture conversion through stand-in programs that record their arguments, so that every
// command line is checked as the program receives it, and through the real MakeACE.
#include "export/textures/TextureConversion.h"

#include <gtest/gtest.h>

#include "export/ExportFixture.h"
#include "tools/ace/TestImages.h"

namespace railwright::exporttextures {
namespace {

using ::railwright::testing::FakeTools;
using ::railwright::testing::GetFile;
using ::railwright::testing::PutFile;
using ::railwright::testing::SameFile;
using ::railwright::testing::ShownMessages;
using Strings = std::vector<std::string>;

class TextureConversionTest : public ::testing::Test {
  protected:
    TextureConversionTest() {
        std::filesystem::create_directories(modelFolder + "/textures");
        std::filesystem::create_directories(targetFolder);
        for (const char* texture : {"body.tga", "body.bmp", "body.png", "textures/roof.tga"}) {
            PutFile(modelFolder + "/" + texture, "picture");
        }
    }

    ConversionSettings Settings(TextureTarget target, int32_t compression = kUncompressed) {
        return {tools.Folder(), modelFolder, targetFolder, compression, target};
    }

    // Converts one texture; the boxes shown.
    Strings Convert(const TextureEntry& texture, const ConversionSettings& settings) {
        ConvertTexture(env.platform, texture, settings);
        return ShownMessages(env.ui);
    }

    ::railwright::testing::ExportPlatform env;
    // Blanks in both folders: IN reaches the programs in its short form, OUT in double quotes.
    std::string modelFolder = env.temp / "my model";
    std::string targetFolder = env.temp / "out folder";
    FakeTools tools{env.temp / "tools"};
};

TEST_F(TextureConversionTest, MakeAceGetsItsSwitchesFromTheAlphaKindAndCompression) {
    struct Case {
        const char* texture;
        const char* alpha;
        int32_t compression;
        bool compressorPresent;
        Strings switches;
    };
    const Case cases[] = {
        {"body.bmp", "None", kUncompressed, true, {}},
        {"body.tga", "None", kUncompressed, true, {"-zlib"}},  // a TGA always gets -zlib
        {"body.bmp", "None", kLosslessCompression, true, {"-zlib"}},
        {"body.bmp", "None", kLossyCompression, false, {"-dxt"}},
        {"body.bmp", "None", kLossyCompression, true, {}},
        {"body.tga", "Translucency", kLossyCompression, true, {"-zlib"}},
        {"body.tga", "Transparency", kUncompressed, true, {"-trans"}},
        {"body.bmp", "TRANSPARENCY", kLosslessCompression, true, {"-trans", "-zlib"}},
        {"body.bmp", "transparency", kLossyCompression, false, {"-trans", "-dxt"}},
        {"body.bmp", "Transparency", kLossyCompression, true, {"-trans"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.texture) + " " + c.alpha + " " + std::to_string(c.compression) +
                     (c.compressorPresent ? " acecomp" : ""));
        ::railwright::testing::ExportPlatform run;
        FakeTools caseTools(run.temp / "tools");
        if (!c.compressorPresent) {
            caseTools.Remove("acecomp.exe");
        }
        ConversionSettings settings = Settings(TextureTarget::Msts, c.compression);
        settings.toolsFolder = caseTools.Folder();
        ConvertTexture(run.platform, {c.texture, false, c.alpha}, settings);
        EXPECT_TRUE(run.ui.Messages().empty()) << ShownMessages(run.ui).front();

        const std::vector<FakeTools::Call> calls = caseTools.Calls();
        ASSERT_FALSE(calls.empty());
        const Strings& argv = calls[0].argv;
        const std::string output = targetFolder + "/body.ACE";
        ASSERT_EQ(argv.size(), 3 + c.switches.size());
        EXPECT_EQ(argv[0], caseTools.Path("MakeACE.exe"));
        EXPECT_TRUE(SameFile(argv[1], modelFolder + "/" + c.texture));
        EXPECT_EQ(argv[1].find(' '), std::string::npos);
        EXPECT_EQ(argv[2], output);
        EXPECT_EQ(Strings(argv.begin() + 3, argv.end()), c.switches);

        // Lossy conversion with acecomp at hand finishes with acecomp, in place.
        const bool compressed = c.compression == kLossyCompression && c.compressorPresent;
        ASSERT_EQ(calls.size(), compressed ? 2u : 1u);
        EXPECT_EQ(GetFile(output), compressed ? "MakeACE.exe\nacecomp.exe\n" : "MakeACE.exe\n");
        if (compressed) {
            const Strings& acecomp = calls[1].argv;
            ASSERT_EQ(acecomp.size(), 3u);
            EXPECT_EQ(acecomp[0], caseTools.Path("acecomp.exe"));
            EXPECT_TRUE(SameFile(acecomp[1], output));
            EXPECT_EQ(acecomp[2], acecomp[1]);
        }
    }
}

TEST_F(TextureConversionTest, ToAceGetsItsFormatSwitchesBeforeTheOutputAndTheInput) {
    struct Case {
        const char* alpha;
        int32_t compression;
        Strings switches;
    };
    const Case cases[] = {
        {"Translucency", kUncompressed, {"/ZIP=0", "/FMT=RGBA"}},
        {"Translucency", kLosslessCompression, {"/FMT=RGBA"}},
        {"Translucency", kLossyCompression, {"/FMT=DXT5"}},
        {"Transparency", kUncompressed, {"/ZIP=0", "/FMT=RGBA"}},
        {"TRANSPARENCY", kLosslessCompression, {"/FMT=RGBA"}},
        {"Transparency", kLossyCompression, {"/FMT=DXT1"}},
        {"None", kUncompressed, {"/ZIP=0", "/FMT=RGB"}},
        {"Opaque", kLosslessCompression, {"/FMT=RGB"}},
        {"None", kLossyCompression, {"/FMT=DXT1"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.alpha) + " " + std::to_string(c.compression));
        ConvertTexture(env.platform, {"textures/roof.tga", false, c.alpha},
                       Settings(TextureTarget::RailSimulator, c.compression));
        const Strings argv = tools.Calls().back().argv;
        ASSERT_EQ(argv.size(), 3 + c.switches.size());
        EXPECT_EQ(argv[0], tools.Path("ToAce.exe"));
        EXPECT_EQ(Strings(argv.begin() + 1, argv.end() - 2), c.switches);
        EXPECT_EQ(argv[argv.size() - 2], "/OUT=" + targetFolder + "/roof.ACE");
        EXPECT_TRUE(SameFile(argv.back(), modelFolder + "/textures/roof.tga"));
    }
    EXPECT_TRUE(env.ui.Messages().empty());
}

TEST_F(TextureConversionTest, RwAceToolLeavesTheCompressionToItselfUnlessUncompressed) {
    for (const int32_t compression : {kUncompressed, kLosslessCompression, kLossyCompression}) {
        ConvertTexture(env.platform, {"body.png", false, "None"},
                       Settings(TextureTarget::RailWorks, compression));
        const Strings argv = tools.Calls().back().argv;
        Strings expected = {tools.Path("RWAceTool.exe"), argv[1], "-o", targetFolder + "/body.ACE"};
        if (compression == kUncompressed) {
            expected.push_back("-noCompress");
        }
        EXPECT_EQ(argv, expected) << compression;
        EXPECT_TRUE(SameFile(argv[1], modelFolder + "/body.png"));
    }
    EXPECT_TRUE(env.ui.Messages().empty());
}

TEST(TextureCommandLines, AreBuiltPieceByPieceAsTheProgramsExpectThem) {
    const TextureJob job{"/tex/BODY~1.TGA", "/my out/body.ACE", "Transparency",
                         kLosslessCompression};
    EXPECT_EQ(MakeAceCommandLine("/tools/", job, "body.tga", false),
              "/tools/MakeACE.exe /tex/BODY~1.TGA \"/my out/body.ACE\" -trans -zlib");
    EXPECT_EQ(ToAceCommandLine("/tools/", job),
              "/tools/ToAce.exe /FMT=RGBA /OUT=\"/my out/body.ACE\" \"/tex/BODY~1.TGA\"");
    // RWAceTool alone has its own path quoted.
    EXPECT_EQ(RwAceToolCommandLine("/my tools/", {job.inputShort, job.outputFile, "None", 0}),
              "\"/my tools/RWAceTool.exe\" \"/tex/BODY~1.TGA\" -o \"/my out/body.ACE\" "
              "-noCompress");
    EXPECT_EQ(AceCompCommandLine("/tools/", "/out/BODY~1.ACE"),
              "/tools/acecomp.exe /out/BODY~1.ACE /out/BODY~1.ACE");
}

TEST_F(TextureConversionTest, FindsTheTextureAsNamedOrBesideTheModel) {
    PutFile(env.temp / "elsewhere.tga", "picture");
    const struct {
        std::string name;
        std::string found;
    } cases[] = {
        {"body.tga", modelFolder + "/body.tga"},
        {"textures/roof.tga", modelFolder + "/textures/roof.tga"},
        {env.temp / "elsewhere.tga", env.temp / "elsewhere.tga"},
        // Moved since the model named it: found beside the model.
        {"/no/such/folder/body.bmp", modelFolder + "/body.bmp"},
        {"C:\\Models\\body.tga", modelFolder + "/body.tga"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(LocateTexture(env.files, modelFolder, c.name), c.found) << c.name;
    }
    EXPECT_EQ(LocateTexture(env.files, modelFolder, "missing.tga"), std::nullopt);
}

TEST_F(TextureConversionTest, EachTextureThatCannotBeConvertedIsReportedByItself) {
    const std::string mstsRefusal =
        "\". It may be in a format not permitted by Microsoft Train Simulator.";
    const std::string railSimulatorRefusal =
        "\". It may be in a format not permitted by Rail Simulator.";
    const TextureList textures = {
        {"missing.tga", false, "None"},
        {"body.png", false, "None"},
        {"body.bmp", false, "None"},
        {"body.tga", false, "None"},
    };
    tools.Fail("MakeACE.exe");
    ConvertTextures(env.platform, {textures[0], textures[1], textures[2]},
                    Settings(TextureTarget::Msts));
    tools.Remove("ToAce.exe");
    ConvertTexture(env.platform, textures[3], Settings(TextureTarget::RailSimulator));
    tools.Fail("RWAceTool.exe");
    ConvertTexture(env.platform, textures[3], Settings(TextureTarget::RailWorks));
    EXPECT_EQ(
        ShownMessages(env.ui),
        (Strings{
            "Railwright: critical: Unable to find texture \"missing.tga\". To ensure "
            "it is found please move it to the same location as your PFG file.",
            "Railwright: exclamation: Unable to convert texture \"body.png\". Only TGA "
            "files and BMP files are supported.",
            "Railwright: exclamation: Unable to convert texture \"body.bmp" + mstsRefusal,
            "Railwright: exclamation: Unable to convert texture \"body.tga" + railSimulatorRefusal,
            "Railwright: exclamation: Unable to convert texture \"body.tga" +
                railSimulatorRefusal}));
    // Only the texture MakeACE may take reached it; ToAce could not be started.
    EXPECT_EQ(tools.ToolsRun(), (Strings{"MakeACE.exe", "RWAceTool.exe"}));
    EXPECT_TRUE(::railwright::testing::FileTree(targetFolder).empty());
}

TEST_F(TextureConversionTest, AProgramThatLeavesNoOutputHasFailed) {
    // acecomp reports success but the file it was to compress is gone.
    ConversionSettings settings = Settings(TextureTarget::Msts, kLossyCompression);
    PutFile(tools.Path("acecomp.exe"), "#!/bin/sh\nrm -f \"$2\"\n");
    ConvertTexture(env.platform, {"body.bmp", false, "None"}, settings);
    EXPECT_EQ(ShownMessages(env.ui),
              Strings{"Railwright: exclamation: Unable to convert texture \"body.bmp\". It may be "
                      "in a format not permitted by Microsoft Train Simulator."});
}

TEST_F(TextureConversionTest, ToolsAreFoundAndRunWhateverTheCaseOfTheirNames) {
    std::filesystem::rename(tools.Path("acecomp.exe"), tools.Path("ACECOMP.EXE"));
    std::filesystem::rename(tools.Path("MakeACE.exe"), tools.Path("makeace.exe"));
    EXPECT_TRUE(Convert({"body.bmp", false, "None"}, Settings(TextureTarget::Msts, kLossyCompression))
                    .empty());
    EXPECT_EQ(tools.ToolsRun(), (Strings{"makeace.exe", "ACECOMP.EXE"}));
    EXPECT_EQ(GetFile(targetFolder + "/body.ACE"), "makeace.exe\nACECOMP.EXE\n");
}

TEST_F(TextureConversionTest, OtherSimulatorsAreNotConvertedYet) {
    const struct {
        TextureTarget target;
        const char* name;
    } cases[] = {{TextureTarget::Trainz, "Trainz"},
                 {TextureTarget::Rail3D, "Rail3D"},
                 {TextureTarget::Bve, "BVE"},
                 {TextureTarget::Msts2, "Microsoft Train Simulator 2"}};
    Strings expected;
    for (const auto& c : cases) {
        ConvertTexture(env.platform, {"body.tga", false, "None"}, Settings(c.target));
        expected.push_back(std::string("Railwright: exclamation: Texture conversion not currently "
                                       "supported for ") +
                           c.name + ".");
    }
    EXPECT_EQ(ShownMessages(env.ui), expected);
    EXPECT_TRUE(tools.Calls().empty());
}

// The real MakeACE, started by the command line the export builds.
TEST_F(TextureConversionTest, TheRealMakeAceConvertsATgaAndRefusesAFormatItCannotRead) {
    // MakeACE is started by an unquoted path: a tools folder without blanks.
    const std::string realTools = env.temp / "realtools";
    std::filesystem::create_directories(realTools);
    std::filesystem::copy_file(std::string(RAILWRIGHT_TOOLS_BIN_DIR) + "/MakeACE.exe",
                               realTools + "/MakeACE.exe");
    namespace images = ::railwright::ace::testing;
    PutFile(modelFolder + "/good.tga", images::EncodeTga(images::Gradient(8, 8), {}));
    PutFile(modelFolder + "/bad.tga", images::Encode16BitTga(8, 8));
    ConversionSettings settings = Settings(TextureTarget::Msts);
    settings.toolsFolder = realTools + "/";
    ConvertTextures(env.platform, {{"good.tga", false, "None"}, {"bad.tga", false, "None"}},
                    settings);
    EXPECT_EQ(ShownMessages(env.ui),
              Strings{"Railwright: exclamation: Unable to convert texture \"bad.tga\". It may be "
                      "in a format not permitted by Microsoft Train Simulator."});
    EXPECT_EQ(::railwright::testing::FileTree(targetFolder), Strings{"good.ACE"});
    EXPECT_EQ(GetFile(targetFolder + "/good.ACE").substr(0, 6), "SIMISA");
}

}  // namespace
}  // namespace railwright::exporttextures
