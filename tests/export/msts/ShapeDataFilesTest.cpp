// The shape data and REF files against golden files written by hand, and on disk.
#include "export/msts/ShapeDataFiles.h"

#include <gtest/gtest.h>

#include "export/ExportFixture.h"
#include "export/GoldenFile.h"
#include "host/scene/Scene.h"

namespace railwright::exportmsts {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;
using ::railwright::testing::GetFile;
using ::railwright::testing::MatchesGolden;
using ::railwright::testing::PutFile;
using ::railwright::testing::ReadGolden;

using namespace ::railwright::testing::stored;

// A depot: its body spans -1 0 -5 to 1 3 5; a placeholder above it stays out of the box; two
// collision boxes, one around the body and one around a shed whose group sits at 1.5 0 2.
Scene Depot() {
    return SceneBuilder()
        .Group("Main")
        .Box({-1, 0, -5}, {1, 3, 5}, "depot.tga")
        .Group("RailwrightPlaceholder-Lamp", "Main")
        .At(0, 8, 0)
        .Box({-0.5f, -0.5f, -0.5f}, {0.5f, 0.5f, 0.5f})
        .CollisionBox({{0, 1.5f, 0}, {0, 0, 0}, {-1, 0, -5, 1, 3, 5}})
        .CollisionBox({{2, 0.5f, 3}, {1.5f, 0, 2}, {1.5f, 0, 2, 2.5f, 1, 4}})
        .Build();
}

int32_t MainIndex(const Scene& scene) {
    for (int32_t i = 0; i < scene.scripting->GroupCount(); ++i) {
        if (scene.scripting->Group(i)->Name() == "Main") {
            return i;
        }
    }
    return -1;
}

TEST(ShapeDataFile, SceneryHasItsBoxWithoutPlaceholdersAndItsCollisionBoxes) {
    const Scene scene = Depot();
    EXPECT_TRUE(
        MatchesGolden(ShapeDataFileText(*scene.scripting, "Depot", kScenery, MainIndex(scene)),
                      "msts/scenery.sd"));
}

TEST(ShapeDataFile, ARailNetworkObjectHasNoBoxAndAnEmptyComplex) {
    const Scene scene = SceneBuilder().Group("Main").Box({-4, 0, -1}, {4, 7, 1}, "g.tga").Build();
    EXPECT_TRUE(MatchesGolden(
        ShapeDataFileText(*scene.scripting, "Signal Gantry", kRailNetwork, MainIndex(scene)),
        "msts/rail_network.sd"));
}

TEST(ShapeDataFile, ARailVehicleHasItsBox) {
    const Scene scene = SceneBuilder().Group("Main").Box({-1.5f, 0, -10}, {1.5f, 4, 10}).Build();
    const std::string text = ShapeDataFileText(*scene.scripting, "Loco", kRailVehicle, 1);
    EXPECT_NE(text.find("\r\n    ESD_Bounding_Box ( -1.5 0 -10 1.5 4 10 )\r\n"), std::string::npos);
}

TEST(RefFile, NamesItsClassByTypeAndItsShapeByTheRefName) {
    EXPECT_TRUE(
        MatchesGolden(RefFileText("~Depot", kScenery, "A small depot."), "msts/scenery_tilde.ref"));
    EXPECT_TRUE(
        MatchesGolden(RefFileText("Signal Gantry", kRailNetwork, "A gantry \u20AC over two tracks"),
                      "msts/rail_network.ref"));
}

TEST(ShapeDataAndRefFiles, AreWrittenFromScratchInUnicode) {
    ::railwright::testing::ExportPlatform env;
    ::railwright::testing::FakeTools tools(env.temp / "tools");
    const std::string route = env.temp / "ROUTES/MY ROUTE";
    std::filesystem::create_directories(route + "/Shapes");
    PutFile(route + "/Shapes/depot.sd", "an older file, longer than the new one will be........");
    const Scene scene = Depot();

    WriteShapeDataFile(env.platform, tools.Folder(), *scene.scripting, "Depot", kScenery,
                       MainIndex(scene), route + "/Shapes");
    WriteRefFile(env.platform, tools.Folder(), "~Depot", kScenery, "A small depot.", route);

    EXPECT_EQ(GetFile(route + "/Shapes/depot.sd"),
              ::railwright::testing::Utf16(ReadGolden("msts/scenery.sd")));
    EXPECT_EQ(GetFile(route + "/~depot.ref"),
              ::railwright::testing::Utf16(ReadGolden("msts/scenery_tilde.ref")));
    EXPECT_TRUE(env.ui.Messages().empty());
}

TEST(ShapeDataAndRefFiles, AFolderThatIsMissingRaisesAFileError) {
    ::railwright::testing::ExportPlatform env;
    ::railwright::testing::FakeTools tools(env.temp / "tools");
    EXPECT_THROW(WriteRefFile(env.platform, tools.Folder(), "Depot", kScenery, "d",
                              env.temp / "no such route"),
                 support::RunTimeError);
}

}  // namespace
}  // namespace railwright::exportmsts
