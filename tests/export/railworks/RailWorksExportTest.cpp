// The RailWorks and Rail Simulator export over temp folders, with stand-in converters.
#include "export/railworks/RailWorksExport.h"

#include <gtest/gtest.h>

#include <fstream>

#include "export/ExportFixture.h"
#include "host/scene/Scene.h"

namespace railwright::exportrailworks {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;
using ::railwright::testing::FakeTools;
using ::railwright::testing::FileTree;
using ::railwright::testing::GetFile;
using ::railwright::testing::PutFile;
using ::railwright::testing::ShownMessages;
using Strings = std::vector<std::string>;

using namespace ::railwright::testing::stored;

TEST(ProjectFolder, FollowsTheProjectTypeAndSubType) {
    struct Case {
        int32_t type;
        int32_t subType;
        bool animated;
        Strings folder;
    };
    const Case cases[] = {
        {kRailVehicle, 0, false, {"RailVehicles", "Diesel", "T1", "Default", "Engine"}},
        {kRailVehicle, 1, false, {"RailVehicles", "Electric", "T1", "Default", "Engine"}},
        {kRailVehicle, 2, false, {"RailVehicles", "Freight", "T1", "Default", "Wagon"}},
        {kRailVehicle, 3, false, {"RailVehicles", "Passenger", "T1", "Default", "Coach"}},
        {kRailVehicle, 4, false, {"RailVehicles", "Steam", "T1", "Default", "Engine"}},
        {kRailVehicle, 5, true, {"RailVehicles", "Steam", "T1", "Default", "Engine"}},
        // A tender is filed with the steam engines.
        {kRailVehicle, 6, false, {"RailVehicles", "Steam", "T1", "Default", "Engine"}},
        {kRailNetwork, 0, false, {"RailNetwork", "Bridges"}},
        {kRailNetwork, 1, false, {"RailNetwork", "Buffers"}},
        {kRailNetwork, 2, true, {"RailNetwork", "Signals"}},
        {kRailNetwork, 3, false, {"RailNetwork", "Track"}},
        {kRailNetwork, 4, false, {"RailNetwork", "Tunnels"}},
        {kRailNetwork, -1, false, {"RailNetwork", "Tunnels"}},
        {kScenery, 0, false, {"Scenery", "Buildings"}},
        {kScenery, 1, false, {"Scenery", "Vegetation"}},
        {kScenery, 2, false, {"Scenery", "Vehicles"}},
        {kScenery, 3, false, {"Scenery", "Buildings"}},
        {kScenery, 1, true, {"Scenery", "Animated"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ProjectFolder(c.type, c.subType, c.animated, "T1"), c.folder)
            << c.type << " " << c.subType << " " << c.animated;
    }
}

class RailWorksExportTest : public ::testing::Test {
  protected:
    RailWorksExportTest() {
        std::filesystem::create_directories(modelFolder);
        PutFile(modelFolder + "/body.tga", "picture");
        std::filesystem::create_directories(installation);
        Prepare(scene);
    }

    void Prepare(Scene& model) {
        model.application->SetSimulators({"", installation + "/"});
        model.application->SetToolsFolder(tools.Folder());
        model.application->SetModelFolder(modelFolder);
        model.application->SetDocumentsFolder(env.temp / "Documents");
        const auto writer = [this](const std::string& file) {
            std::ofstream out(file, std::ios::binary);
            out << "interchange #" << ++filesWritten;
            return out.good();
        };
        model.application->SetExporterBehaviour({{}, writer, writer});
    }

    static std::vector<int32_t> Longs(int32_t type, int32_t subType) {
        std::vector<int32_t> longs(46, 0);
        longs[0] = type;
        longs[1] = 2;
        longs[4] = 2;
        longs[32] = subType;
        return longs;
    }

    bool Export(const std::string& name, bool railWorks = true, bool toDocuments = false) {
        return ExportRailWorks(env.platform, {*scene.scripting, *scene.model, *scene.application,
                                              name, longs, toDocuments, railWorks});
    }

    ::railwright::testing::ExportPlatform env;
    FakeTools tools{env.temp / "tools"};
    std::string installation = env.temp / "RailWorks";
    std::string modelFolder = env.temp / "model";
    Scene scene = SceneBuilder().Group("Main").Box({-1, 0, -5}, {1, 3, 5}, "body.tga").Build();
    std::vector<int32_t> longs = Longs(kRailVehicle, 5);
    int filesWritten = 0;
};

TEST_F(RailWorksExportTest, ATankEngineLandsWithTheSteamEnginesOfTheSourceTree) {
    ASSERT_TRUE(Export("T1"));
    const std::string folder =
        installation + "/Source/Developer/Addon/RailVehicles/Steam/T1/Default/Engine/";
    EXPECT_EQ(ShownMessages(env.ui),
              Strings{"Railwright: information: Your RailWorks project has been exported to: \"" +
                      folder + "\""});
    EXPECT_EQ(FileTree(folder), (Strings{"T1.ia", "T1.igs", "Textures/body.ACE"}));
    EXPECT_EQ(scene.application->ExportCalls(),
              (Strings{"ExportIGS " + folder + "T1.igs", "ExportIA " + folder + "T1.ia"}));
    EXPECT_EQ(tools.ToolsRun(), Strings{"RWAceTool.exe"});
    EXPECT_EQ(GetFile(folder + "Textures/body.ACE"), "RWAceTool.exe\n");
}

TEST_F(RailWorksExportTest, RailSimulatorInTheDocumentsFolderUsesToAce) {
    longs = Longs(kScenery, 2);
    ASSERT_TRUE(Export("Bus Stop", false, true));
    const std::string folder =
        env.temp / "Documents/Rail Simulator/Source/Developer/Addon/Scenery/Vehicles/";
    EXPECT_EQ(ShownMessages(env.ui),
              Strings{"Railwright: information: Your Rail Simulator project has been exported "
                      "to: \"" +
                      folder + "\""});
    EXPECT_EQ(FileTree(folder), (Strings{"Bus Stop.ia", "Bus Stop.igs", "Textures/body.ACE"}));
    EXPECT_EQ(tools.ToolsRun(), Strings{"ToAce.exe"});
    EXPECT_FALSE(std::filesystem::exists(installation + "/Source"));
}

TEST_F(RailWorksExportTest, AnyGroupWithTwoKeysMakesSceneryAnimated) {
    longs = Longs(kScenery, 1);
    scene = SceneBuilder()
                .Group("Main")
                .Box({-1, 0, -5}, {1, 3, 5}, "body.tga")
                .Group("Sail", "Main")
                .Key(1, {0, 0, 0}, {0, 0, 0})
                .Key(2, {0, 0, 0}, {0, 0, 1})
                .Build();
    Prepare(scene);
    ASSERT_TRUE(Export("Windmill"));
    EXPECT_TRUE(std::filesystem::exists(installation +
                                        "/Source/Developer/Addon/Scenery/Animated/Windmill.igs"));
}

TEST_F(RailWorksExportTest, WithoutCreateShapeOnlyTheFoldersAndTexturesAreMade) {
    longs[1] = 1;
    ASSERT_TRUE(Export("T1"));
    const std::string folder =
        installation + "/Source/Developer/Addon/RailVehicles/Steam/T1/Default/Engine/";
    EXPECT_EQ(FileTree(folder), Strings{"Textures/body.ACE"});
    EXPECT_TRUE(scene.application->ExportCalls().empty());
}

TEST_F(RailWorksExportTest, EachFailingStepIsReportedThroughTheHostAndEndsTheExport) {
    const std::string failed =
        "Railwright: critical: The export of your RailWorks project failed. Please let us know "
        "on the problem reports forum at https://forum.railwright.org/problem-reports";
    const std::string number = std::to_string(host::kHostErrorFailed);
    const std::string folder =
        installation + "/Source/Developer/Addon/RailVehicles/Steam/T1/Default/Engine/";
    struct Case {
        std::function<void(Scene&)> failure;
        std::string report;
        Strings exportCalls;
    };
    const Case cases[] = {
        {[](Scene& model) { model.failures->FailOperation("Application.ToolsFolder"); },
         "pConvertTextures error: " + number + "-Application.ToolsFolder failed.",
         {}},
        {[](Scene& model) { model.application->SetExportIgsResult(false); },
         "CIE_ExportIGS error: " + number + "-Unable to write \"" + folder + "T1.igs\"",
         {"ExportIGS " + folder + "T1.igs"}},
        {[](Scene& model) { model.failures->FailOperation("Exporter.ExportIA"); },
         "CIE_ExportIA error: " + number + "-Exporter.ExportIA failed.",
         {"ExportIGS " + folder + "T1.igs"}},
    };
    for (const Case& c : cases) {
        ::railwright::testing::ExportPlatform run;
        Scene model = SceneBuilder().Group("Main").Box({-1, 0, -5}, {1, 3, 5}, "body.tga").Build();
        Prepare(model);
        c.failure(model);
        EXPECT_FALSE(ExportRailWorks(run.platform, {*model.scripting, *model.model,
                                                    *model.application, "T1", longs, false, true}));
        EXPECT_EQ(ShownMessages(run.ui),
                  (Strings{"Railwright: critical: " + c.report + " (#" + number + ")", failed}));
        EXPECT_EQ(model.application->ExportCalls(), c.exportCalls);
    }
}

TEST_F(RailWorksExportTest, NoMainGroupOrUntexturedShapesStopBeforeAnyFile) {
    scene = SceneBuilder().Group("Body").Box({-1, 0, -5}, {1, 3, 5}, "body.tga").Build();
    Prepare(scene);
    EXPECT_FALSE(Export("T1"));
    scene = SceneBuilder().Group("main").Box({-1, 0, -5}, {1, 3, 5}).Build();
    Prepare(scene);
    EXPECT_FALSE(Export("T1"));
    EXPECT_EQ(ShownMessages(env.ui),
              (Strings{"Railwright: exclamation: No \"Main\" group found. Unable to export "
                       "project. Re-run the wizard to identify your \"Main\" group.",
                       "Railwright: critical: Shape \"main\" contains untextured faces. Rail "
                       "Simulator and Microsoft Train Simulator requires that all faces be "
                       "textured.",
                       "Railwright: critical: The export of your RailWorks project failed due to "
                       "shapes not being fully textured. Microsoft Train Simulator requires "
                       "objects to be fully textured."}));
    // The folders are made before the checks; nothing is written into them.
    EXPECT_EQ(FileTree(installation), Strings{});
    EXPECT_TRUE(std::filesystem::is_directory(
        installation + "/Source/Developer/Addon/RailVehicles/Steam/T1/Default/Engine/Textures"));
}

TEST_F(RailWorksExportTest, WithoutTheSimulatorNothingIsMade) {
    scene.application->SetSimulators({"", ""});
    EXPECT_FALSE(Export("T1"));
    EXPECT_EQ(ShownMessages(env.ui).size(), 1u);
    EXPECT_TRUE(scene.application->ExportCalls().empty());
}

TEST_F(RailWorksExportTest, ExportingTwiceOverwritesTheInterchangeFiles) {
    ASSERT_TRUE(Export("T1"));
    ASSERT_TRUE(Export("T1"));
    const std::string folder =
        installation + "/Source/Developer/Addon/RailVehicles/Steam/T1/Default/Engine/";
    EXPECT_EQ(GetFile(folder + "T1.igs"), "interchange #3");
    EXPECT_EQ(GetFile(folder + "T1.ia"), "interchange #4");
    EXPECT_EQ(FileTree(folder).size(), 3u);
    EXPECT_EQ(ShownMessages(env.ui).size(), 2u);
}

}  // namespace
}  // namespace railwright::exportrailworks
