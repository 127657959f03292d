// The pieces of the engine and wagon files that the golden files do not pin down on their own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "export/msts/EffectsAndLights.h"
#include "export/msts/VehicleScene.h"
#include "export/msts/VehicleTemplates.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

// The lines of a built text, without their CR LF ends.
std::vector<std::string> LinesOf(const MstsTextFile& file) {
    std::vector<std::string> lines;
    const std::string& bytes = file.Bytes();
    size_t start = 0;
    while (start < bytes.size()) {
        const size_t end = bytes.find("\r\n", start);
        EXPECT_NE(end, std::string::npos) << "a line without CR LF";
        if (end == std::string::npos) {
            break;
        }
        lines.push_back(bytes.substr(start, end - start));
        start = end + 2;
    }
    return lines;
}

struct TextBlockCase {
    std::string text;
    std::vector<std::string> quotedLines;
};

TEST(WriteTextBlock, QuotesEachLineEndingAtACarriageReturnAndDropsLineFeeds) {
    const std::vector<TextBlockCase> cases = {
        {"", {"        \" \\n\""}},
        {"Fast\r\nSlow", {"        \"Fast\\n\"+", "        \"Slow\\n\""}},
        {"Fast\r\n", {"        \"Fast\\n\"+", "        \" \\n\""}},
        // A bare line feed does not end a line; a bare carriage return does.
        {"one\ntwo\rthree", {"        \"onetwo\\n\"+", "        \"three\\n\""}},
        {"\r\n\r\n", {"        \"\\n\"+", "        \"\\n\"+", "        \" \\n\""}},
        // Quotes in the text are written as they are.
        {"say \"hi\"", {"        \"say \"hi\"\\n\""}},
    };
    host::scene::Scene scene = host::scene::Scene::Create();
    for (const TextBlockCase& textCase : cases) {
        MstsTextFile file(*scene.scripting);
        WriteTextBlock(file, "Description", textCase.text);
        std::vector<std::string> expected = {"    Description ("};
        expected.insert(expected.end(), textCase.quotedLines.begin(), textCase.quotedLines.end());
        expected.push_back("    )");
        EXPECT_EQ(LinesOf(file), expected) << "text: " << textCase.text;
    }
}

TEST(IsPlaceholderFor, NeverMatchesNotEvenTheExactPlaceholderName) {
    for (const char* role : {"Stack", "HeadOut", "FuelDiesel", "PassengerCabinHeadPos", "X"}) {
        const std::string name = "RailwrightPlaceholder-" + std::string(role);
        EXPECT_FALSE(IsPlaceholderFor(name, role)) << name;
        EXPECT_FALSE(IsPlaceholderFor(support::ToUpper(name), role)) << name;
        EXPECT_FALSE(IsPlaceholderFor(name + "1", role)) << name;
        EXPECT_FALSE(IsPlaceholderFor(name.substr(0, std::string(role).size() + 15), role));
    }
}

TEST(EffectsSections, AreBareSkeletonsWhateverPlaceholdersTheModelHolds) {
    host::scene::Scene scene = testing::BuildVehicleScene({});
    MstsTextFile steam(*scene.scripting);
    WriteSteamEffects(steam);
    EXPECT_EQ(LinesOf(steam),
              (std::vector<std::string>{"    Effects", "    (", "        SteamSpecialEffects",
                                        "        (", "        )", "    )"}));
    MstsTextFile diesel(*scene.scripting);
    WriteDieselEffects(diesel);
    EXPECT_EQ(LinesOf(diesel),
              (std::vector<std::string>{"    Effects", "    (", "        DieselSpecialEffects",
                                        "        (", "        )", "    )"}));
}

TEST(LightColourText, WritesEachChannelAsTwoLowerCaseHexDigits) {
    const auto colour = [](float red, float green, float blue) {
        return LightColourText({host::LightKind::Ordinary, red, green, blue, {}, {}});
    };
    EXPECT_EQ(colour(0, 0, 0), "000000");
    EXPECT_EQ(colour(1, 1, 1), "ffffff");
    EXPECT_EQ(colour(0.05f, 0.04f, 0.2f), "0d0a33");  // 12.75, 10.2, 51: to the nearest
    EXPECT_EQ(colour(0.5f, 0.25f, 0.75f), "8040bf");  // 127.5 goes to 128, the even one
    EXPECT_EQ(colour(-1, 2, 0.0019f), "00ff00");      // kept within a byte
}

TEST(VehicleFileText, ReportsSettingsArraysThatAreTooShort) {
    host::scene::Scene scene = testing::BuildVehicleScene({});
    const std::vector<float> singles(6, 0.0f);
    const std::vector<int32_t> longs(30, 0);  // index 32, the sub-type, is missing
    const VehicleFileInputs inputs{
        *scene.scripting, "Van", "/trains", 1, singles, longs, "", "", ""};
    try {
        (void)VehicleFileText(VehicleFileKind::Wagon, inputs);
        ADD_FAILURE() << "no error for a short settings array";
    } catch (const support::RunTimeError& error) {
        EXPECT_EQ(error.Number(), support::kErrorSubscriptOutOfRange);
    }
}

TEST(VehicleFileName, IsTheLowerCaseProjectNameInTheVehicleFolder) {
    host::scene::Scene scene = host::scene::Scene::Create();
    const std::vector<float> singles(6, 0.0f);
    const std::vector<int32_t> longs(46, 0);
    const VehicleFileInputs inputs{*scene.scripting,
                                   "My Loco",
                                   "/msts/TRAINS/TRAINSET/MY LOCO",
                                   0,
                                   singles,
                                   longs,
                                   "",
                                   "",
                                   ""};
    EXPECT_EQ(VehicleFileName(VehicleFileKind::SteamEngine, inputs),
              support::JoinPath("/msts/TRAINS/TRAINSET/MY LOCO", "my loco.eng"));
    EXPECT_EQ(VehicleFileName(VehicleFileKind::Wagon, inputs),
              support::JoinPath("/msts/TRAINS/TRAINSET/MY LOCO", "my loco.wag"));
}

}  // namespace
}  // namespace railwright::exportmsts
