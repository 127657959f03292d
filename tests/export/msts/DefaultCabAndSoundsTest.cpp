// The rail vehicle step over a stand-in MSTS installation: which default train lends which files,
// under which names, and which writer runs.
#include "export/msts/DefaultCabAndSounds.h"

#include <gtest/gtest.h>

#include "export/ExportFixture.h"
#include "export/msts/FakeMstsTree.h"
#include "export/msts/VehicleScene.h"

namespace railwright::exportmsts {
namespace {

using ::railwright::testing::FileTree;
using ::railwright::testing::GetFile;
using ::railwright::testing::PutFile;
using Strings = std::vector<std::string>;

constexpr size_t kSoundLong = 25;
constexpr size_t kCabViewLong = 26;
constexpr int32_t kChecked = 2;
constexpr int32_t kUnchecked = 1;

class DefaultCabAndSoundsTest : public ::testing::Test {
  protected:
    DefaultCabAndSoundsTest() {
        ::railwright::testing::BuildMstsTree(msts);
        std::filesystem::create_directories(vehicleFolder);
    }

    // Runs the step for a project named Flyer of this sub-type.
    void Export(int32_t subType, int32_t sounds = kChecked, int32_t cabView = kChecked) {
        singles = testing::VehicleSettings{}.Singles();
        longs = testing::VehicleSettings{.subType = subType}.Longs();
        longs[kSoundLong] = sounds;
        longs[kCabViewLong] = cabView;
        const VehicleFileInputs inputs{
            *scene.scripting, "Flyer", vehicleFolder, testing::MainIndex(*scene.scripting),
            singles,          longs,   "Flyer",       "A fast engine.",
            "Drive it."};
        ExportVehicleFiles(env.platform, tools.Folder(), msts + "/", inputs);
    }

    // The vehicle file as the writer wrote it before txt2uni widened it.
    std::string VehicleFile(const std::string& name) {
        std::string narrow;
        const std::string wide = GetFile(vehicleFolder + "/" + name);
        for (size_t i = 2; i < wide.size(); i += 2) {
            narrow += wide[i];
        }
        return narrow;
    }

    ::railwright::testing::ExportPlatform env;
    ::railwright::testing::FakeTools tools{env.temp / "tools"};
    std::string msts = env.temp / "MSTS";
    std::string vehicleFolder = env.temp / "out/TRAINS/TRAINSET/FLYER";
    host::scene::Scene scene = testing::BuildVehicleScene({});
    std::vector<float> singles;
    std::vector<int32_t> longs;
};

TEST_F(DefaultCabAndSoundsTest, ASteamEngineBorrowsTheScotsmansCabAndSoundsUnderItsName) {
    Export(4);
    EXPECT_EQ(FileTree(vehicleFolder),
              (Strings{"CABVIEW/SCOTCAB.ACE", "CABVIEW/flyer.cvf", "CABVIEW/gauges.ace",
                       "SOUND/SteamChuff.WAV", "SOUND/flyercab.sms", "SOUND/flyereng.sms",
                       "SOUND/whistle.wav", "flyer.eng"}));
    EXPECT_EQ(GetFile(vehicleFolder + "/CABVIEW/flyer.cvf"), "scotsman.cvf");
    EXPECT_EQ(GetFile(vehicleFolder + "/SOUND/flyercab.sms"), "fscotcab.sms");
    EXPECT_EQ(GetFile(vehicleFolder + "/SOUND/flyereng.sms"), "fscoteng.sms");
    EXPECT_EQ(GetFile(vehicleFolder + "/CABVIEW/gauges.ace"), "gauges.ace");
    const std::string engine = VehicleFile("flyer.eng");
    for (const char* copy : {"flyer.cvf", "flyercab.sms", "flyereng.sms"}) {
        EXPECT_NE(engine.find(copy), std::string::npos) << copy;
    }
    EXPECT_TRUE(env.ui.Messages().empty());
}

TEST_F(DefaultCabAndSoundsTest, EachSubTypeGetsItsTrainsFilesAndItsWriter) {
    struct Case {
        int32_t subType;
        int32_t sounds;
        int32_t cabView;
        Strings tree;
        const char* type;  // the writer's own Type line
    };
    const Case cases[] = {
        {0,
         kUnchecked,
         kChecked,
         {"CABVIEW/DASH9CAB.ACE", "CABVIEW/flyer.cvf", "flyer.eng"},
         "Diesel"},
        {1,
         kChecked,
         kUnchecked,
         {"SOUND/flyercab.sms", "SOUND/flyereng.sms", "SOUND/pan.wav", "flyer.eng"},
         "Electric"},
        // Wagons get the default train's textures and waves, but no cab view or sound sets.
        {2, kChecked, kChecked, {"CABVIEW/ACELACAB.ACE", "SOUND/pan.wav", "flyer.wag"}, "Freight"},
        {3, kChecked, kChecked, {"flyer.wag"}, "Carriage"},
        // A tank engine reaches the wagon writer with the Scotsman's textures and waves.
        {5,
         kChecked,
         kChecked,
         {"CABVIEW/SCOTCAB.ACE", "CABVIEW/gauges.ace", "SOUND/SteamChuff.WAV", "SOUND/whistle.wav",
          "flyer.wag"},
         "Tender"},
        {6, kUnchecked, kUnchecked, {"flyer.wag"}, "Tender"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.subType);
        std::filesystem::remove_all(vehicleFolder);
        std::filesystem::create_directories(vehicleFolder);
        Export(c.subType, c.sounds, c.cabView);
        EXPECT_EQ(FileTree(vehicleFolder), c.tree);
        EXPECT_NE(VehicleFile(c.tree.back()).find("\r\n    Type ( " + std::string(c.type) + " )"),
                  std::string::npos);
    }
}

TEST_F(DefaultCabAndSoundsTest, AMissingDefaultTrainEndsTheStepBeforeTheWriter) {
    std::filesystem::remove_all(msts + "/TRAINS/TRAINSET/DASH9");
    EXPECT_THROW(Export(0), support::RunTimeError);
    EXPECT_EQ(FileTree(vehicleFolder), Strings{});
}

TEST_F(DefaultCabAndSoundsTest, AMissingSourceFileKeepsWhatWasCopiedBeforeIt) {
    std::filesystem::remove(msts + "/TRAINS/TRAINSET/ACELA/SOUND/acelaeng.sms");
    try {
        Export(1);
        ADD_FAILURE() << "no error for a missing sound";
    } catch (const support::RunTimeError& error) {
        EXPECT_EQ(error.Number(), support::kErrorFileNotFound);
        EXPECT_NE(std::string(error.what()).find("acelaeng.sms"), std::string::npos);
    }
    EXPECT_EQ(FileTree(vehicleFolder), (Strings{"CABVIEW/ACELACAB.ACE", "CABVIEW/flyer.cvf",
                                                "SOUND/flyercab.sms", "SOUND/pan.wav"}));
}

TEST_F(DefaultCabAndSoundsTest, RunningAgainOverwritesTheCopies) {
    Export(4);
    PutFile(vehicleFolder + "/CABVIEW/flyer.cvf", "edited");
    PutFile(vehicleFolder + "/SOUND/whistle.wav", "edited");
    Export(4);
    EXPECT_EQ(GetFile(vehicleFolder + "/CABVIEW/flyer.cvf"), "scotsman.cvf");
    EXPECT_EQ(GetFile(vehicleFolder + "/SOUND/whistle.wav"), "whistle.wav");
    EXPECT_EQ(FileTree(vehicleFolder).size(), 8u);
}

}  // namespace
}  // namespace railwright::exportmsts
