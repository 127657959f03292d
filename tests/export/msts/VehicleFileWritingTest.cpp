// The writers on disk: the file in the vehicle folder, converted to Unicode by the real txt2uni.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "export/GoldenFile.h"
#include "export/msts/VehicleFiles.h"
#include "export/msts/VehicleScene.h"
#include "support/Fakes.h"
#include "support/SupportingFunctions.h"
#include "support/posix/PosixFileSystem.h"
#include "support/posix/PosixProcesses.h"
#include "support/posix/TempFolder.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::exportmsts {
namespace {

using ::railwright::testing::GetFile;
using ::railwright::testing::PutFile;
using ::railwright::testing::TempFolder;

// The folder that holds the txt2uni the build made.
std::string ToolsFolder() {
    return std::filesystem::path(RAILWRIGHT_TXT2UNI).parent_path().string() + "/";
}

// The golden text as txt2uni writes it. The golden files used here hold ASCII and the euro sign.
std::string AsUtf16(const std::string& windows1252) {
    std::string bytes = "\xFF\xFE";
    for (const char c : windows1252) {
        if (c == '\x80') {
            bytes += "\xAC\x20";
            continue;
        }
        EXPECT_LT(static_cast<unsigned char>(c), 0x80) << "a byte this helper does not widen";
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

class VehicleFileWritingTest : public ::testing::Test {
  protected:
    VehicleFileWritingTest() {
        std::filesystem::create_directories(vehicleFolder);
        singles = settings.Singles();
        longs = settings.Longs();
    }

    VehicleFileInputs Inputs() {
        return {*scene.scripting,
                "My Loco",
                vehicleFolder,
                testing::MainIndex(*scene.scripting),
                singles,
                longs,
                "Flyer \u20AC \u2192 ok",
                "A fast engine.",
                "Open the regulator.\r\nWatch the water."};
    }

    TempFolder temp;
    support::posix::PosixFileSystem files{temp / "aliases"};
    support::posix::PosixProcesses processes;
    ::railwright::testing::MemorySettingsStore settingsStore;
    ::railwright::testing::FakeSystemInfo system;
    ui::script::ScriptedUserInterface ui{ui::script::EventScript{}};
    support::Platform platform{files, processes, settingsStore, system, ui};

    // The project of the steam_set.eng golden file, in a folder whose name needs quoting.
    std::string vehicleFolder = temp / "TRAINS/TRAINSET/MY LOCO";
    host::scene::Scene scene = testing::BuildVehicleScene(
        {.frontWheels = "",
         .driveWheels = true,
         .lights = {{host::LightKind::Ordinary, 1, 0.05f, 0.5f, {0, 3.5f, 10.25f}, {0, 0, 1}}}});
    testing::VehicleSettings settings{.subType = 4,
                                      .massTonnes = 120.5f,
                                      .velocityKmh = 160,
                                      .wheelRadii = {0, 0, 0.625f},
                                      .wheelCounts = {0, 6, 2},
                                      .coupling = 1,
                                      .tenderRequired = 1,
                                      .viewPoint = 1,
                                      .intakePoints = 1};
    std::vector<float> singles;
    std::vector<int32_t> longs;
};

TEST_F(VehicleFileWritingTest, WritesTheFileAndConvertsItToUnicode) {
    const std::string file = vehicleFolder + "/my loco.eng";
    PutFile(file, "an older file that must go");

    WriteSteamEngineFile(platform, ToolsFolder(), Inputs());

    EXPECT_EQ(GetFile(file), AsUtf16(::railwright::testing::ReadGolden("msts/steam_set.eng")));
    EXPECT_TRUE(ui.Messages().empty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(vehicleFolder), {}), 1);
}

TEST_F(VehicleFileWritingTest, LeavesThe8BitFileWhenTheToolCannotBeStarted) {
    std::filesystem::create_directories(temp / "empty tools");
    try {
        WriteSteamEngineFile(platform, temp / "empty tools/", Inputs());
        ADD_FAILURE() << "no error for a missing txt2uni";
    } catch (const support::RunTimeError& error) {
        EXPECT_EQ(error.Number(), support::kErrorFileNotFound);
    }
    EXPECT_TRUE(::railwright::testing::MatchesGolden(GetFile(vehicleFolder + "/my loco.eng"),
                                                     "msts/steam_set.eng"));
}

TEST_F(VehicleFileWritingTest, RaisesAFileErrorWhenTheFolderIsMissing) {
    vehicleFolder = temp / "no such folder";
    try {
        WriteWagonFile(platform, ToolsFolder(), Inputs());
        ADD_FAILURE() << "no error for a missing vehicle folder";
    } catch (const support::RunTimeError& error) {
        EXPECT_EQ(error.Number(), support::kErrorPathFileAccess);
        EXPECT_NE(std::string(error.what()).find("my loco.wag"), std::string::npos);
    }
}

}  // namespace
}  // namespace railwright::exportmsts
