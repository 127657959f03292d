// One application of the plug-in per kind of project, from the host's call to the files on disk:
// the wizard opens on stored settings and is finished, and the product's export drivers run over
// a stand-in MSTS installation and RailWorks folder, with the real MakeACE, acecomp and txt2uni
// and recording stand-ins for the RailWorks and Rail Simulator converters.
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "export/ExportFixture.h"
#include "export/msts/FakeMstsTree.h"
#include "host/scene/Scene.h"
#include "plugin/ProductExports.h"
#include "plugin/Railwright.h"
#include "tools/ace/TestImages.h"

namespace railwright::plugin {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;
using ::railwright::testing::FileTree;
using ::railwright::testing::GetFile;
using ::railwright::testing::PutFile;
using ::railwright::testing::ShownMessages;
using ::railwright::testing::Utf16;
using ::railwright::testing::Wide;
using Strings = std::vector<std::string>;

// Project types and the settings an application reads.
using namespace ::railwright::testing::stored;
constexpr size_t kMsts = 37;
constexpr size_t kRailSimulator = 38;
constexpr size_t kRailWorks = 44;

struct Project {
    int32_t type = kRailVehicle;
    int32_t subType = 0;
    std::string name;
    std::string last;  // the operating procedures, or the route
    std::vector<size_t> simulators = {kMsts};
};

class EndToEndTest : public ::testing::Test {
  protected:
    EndToEndTest() {
        namespace images = ::railwright::ace::testing;
        std::filesystem::create_directories(modelFolder);
        PutFile(modelFolder + "/body.tga", images::EncodeTga(images::Gradient(16, 16), {}));
        std::filesystem::create_directories(railWorks);
        // The ACE programs we ship take the place of the stand-ins.
        for (const char* tool : {"MakeACE.exe", "acecomp.exe"}) {
            std::filesystem::copy_file(std::string(RAILWRIGHT_TOOLS_BIN_DIR) + "/" + tool,
                                       tools.Path(tool),
                                       std::filesystem::copy_options::overwrite_existing);
        }
        scene.application->SetSimulators({mstsProgram, railWorks + "/"});
        scene.application->SetToolsFolder(tools.Folder());
        scene.application->SetModelFolder(modelFolder);
        scene.application->SetDocumentsFolder(env.temp / "Documents");
        const auto write = [](const std::string& file, const std::string& text) {
            std::ofstream out(file, std::ios::binary);
            out << text;
            return out.good();
        };
        scene.application->SetExporterBehaviour(
            {[write](host::SceneGroup& group, const std::string& file,
                     const host::ShapeExportOptions&) {
                 return write(file, "shape of " + group.Name());
             },
             [write](const std::string& file) { return write(file, "igs"); },
             [write](const std::string& file) { return write(file, "ia"); }});
    }

    // Applies the plug-in to the model with the project stored in it and Finish clicked; the
    // files written since, relative to the temp folder, and the boxes shown.
    Strings Apply(const Project& project) {
        std::vector<int32_t> longs(46, 0);
        longs[0] = project.type;
        longs[32] = project.subType;
        longs[33] = 818;
        // Shape, shape data, vehicle or REF files, textures, sounds and cab view; no drive wheel
        // animation and no default custom fields.
        for (const size_t option : {1, 2, 3, 4, 25, 26}) {
            longs[option] = 2;
        }
        longs[29] = 1;
        longs[45] = 1;
        for (const size_t simulator : project.simulators) {
            longs[simulator] = 1;
        }
        std::vector<float> singles(6, 0.0f);
        std::string text = "A title|" + project.name + "||A description|||" + project.last;

        const std::set<std::string> before = Files();
        auto parsed = ui::script::ParseEventScript(R"({ "events": [ { "click": "cmdFinish" } ] })");
        ui::script::ScriptedUserInterface ui(*parsed.script);
        support::Platform platform{env.files, env.processes, env.settings, env.system, ui};
        ProductExports exports(platform);
        Railwright plugin(platform, *scene.viewer, exports);
        EXPECT_TRUE(
            plugin.Plugin_Apply(scene.scripting, scene.hostContext, 0, singles, longs, text));
        EXPECT_TRUE(ui.Faults().empty()) << ui.Faults().front();
        messages = ShownMessages(ui);

        Strings written;
        for (const std::string& file : Files()) {
            if (!before.contains(file)) {
                written.push_back(file);
            }
        }
        return written;
    }

    // Every file under the temp folder but the tools' and the short-path aliases.
    std::set<std::string> Files() const {
        std::set<std::string> files;
        for (const std::string& file : FileTree(env.temp.Path())) {
            if (!file.starts_with("tools/") && !file.starts_with("aliases/")) {
                files.insert(file);
            }
        }
        return files;
    }

    // Applies the project and expects exactly `files` written under `folder` of the MSTS
    // installation, and the box naming it.
    void ExpectMstsFiles(const Project& project, const std::string& folder, const Strings& files) {
        Strings expected;
        for (const std::string& file : files) {
            expected.push_back("MSTS/" + folder + "/" + file);
        }
        EXPECT_EQ(Apply(project), expected);
        EXPECT_EQ(messages, Strings{MstsExported(env.temp / ("MSTS/" + folder))});
    }

    static std::string MstsExported(const std::string& folder) {
        return "Railwright: information: Your MSTS project has been exported to: \"" + folder +
               "\"";
    }

    ::railwright::testing::ExportPlatform env;
    ::railwright::testing::FakeTools tools{env.temp / "tools"};
    std::string mstsProgram =
        ::railwright::testing::BuildMstsTree(env.temp / "MSTS", {"RIVERSIDE"});
    std::string railWorks = env.temp / "RailWorks";
    std::string modelFolder = env.temp / "model";
    Scene scene = SceneBuilder()
                      .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
                      .Group("Main")
                      .Box({-1.5f, 0.5f, -10}, {1.5f, 4, 10}, "body.tga")
                      .Group("Wheels11", "Main")
                      .At(0, 0.5f, 6)
                      .Box({-0.7f, -0.5f, -0.5f}, {0.7f, 0.5f, 0.5f}, "body.tga")
                      .CollisionBox({{0, 2, 0}, {0, 0, 0}, {-1.5f, 0, -10, 1.5f, 4, 10}})
                      .Build();
    Strings messages;
};

TEST_F(EndToEndTest, ADieselEngine) {
    ExpectMstsFiles({kRailVehicle, 0, "Class 66", "Start it."}, "TRAINS/TRAINSET/CLASS 66",
                    {"CABVIEW/DASH9CAB.ACE", "CABVIEW/class 66.cvf", "SOUND/class 66cab.sms",
                     "SOUND/class 66eng.sms", "SOUND/horn.wav", "body.ACE", "class 66.eng",
                     "class 66.s", "class 66.sd"});
    const std::string folder = env.temp / "MSTS/TRAINS/TRAINSET/CLASS 66/";
    const std::string engine = GetFile(folder + "class 66.eng");
    EXPECT_TRUE(engine.starts_with(Utf16("SIMISA@@@@@@@@@@JINX0D0t______\r\n")));
    EXPECT_NE(engine.find(Wide("    Type ( Diesel )")), std::string::npos);
    EXPECT_NE(engine.find(Wide("Start it.")), std::string::npos);
    // A texture from the model's TGA file.
    EXPECT_TRUE(GetFile(folder + "body.ACE").starts_with("SIMISA@"));
}

TEST_F(EndToEndTest, ASteamEngine) {
    ExpectMstsFiles({kRailVehicle, 4, "Flyer", "Fire it."}, "TRAINS/TRAINSET/FLYER",
                    {"CABVIEW/SCOTCAB.ACE", "CABVIEW/flyer.cvf", "CABVIEW/gauges.ace",
                     "SOUND/SteamChuff.WAV", "SOUND/flyercab.sms", "SOUND/flyereng.sms",
                     "SOUND/whistle.wav", "body.ACE", "flyer.eng", "flyer.s", "flyer.sd"});
    EXPECT_EQ(GetFile(env.temp / "MSTS/TRAINS/TRAINSET/FLYER/CABVIEW/flyer.cvf"), "scotsman.cvf");
}

TEST_F(EndToEndTest, AnElectricEngineAndTheCars) {
    ExpectMstsFiles(
        {kRailVehicle, 1, "Sprinter", ""}, "TRAINS/TRAINSET/SPRINTER",
        {"CABVIEW/ACELACAB.ACE", "CABVIEW/sprinter.cvf", "SOUND/pan.wav", "SOUND/sprintercab.sms",
         "SOUND/sprintereng.sms", "body.ACE", "sprinter.eng", "sprinter.s", "sprinter.sd"});
    ExpectMstsFiles({kRailVehicle, 2, "Hopper", ""}, "TRAINS/TRAINSET/HOPPER",
                    {"CABVIEW/ACELACAB.ACE", "SOUND/pan.wav", "body.ACE", "hopper.s", "hopper.sd",
                     "hopper.wag"});
    ExpectMstsFiles({kRailVehicle, 3, "Coach", ""}, "TRAINS/TRAINSET/COACH",
                    {"body.ACE", "coach.s", "coach.sd", "coach.wag"});
    const std::string trainset = env.temp / "MSTS/TRAINS/TRAINSET/";
    EXPECT_NE(GetFile(trainset + "SPRINTER/sprinter.eng").find(Wide("    Type ( Electric )")),
              std::string::npos);
    EXPECT_NE(GetFile(trainset + "HOPPER/hopper.wag").find(Wide("    Type ( Freight )")),
              std::string::npos);
}

TEST_F(EndToEndTest, SceneryOnARoute) {
    ExpectMstsFiles(
        {kScenery, 0, "Water Tower", "RIVERSIDE"}, "ROUTES/RIVERSIDE",
        {"Shapes/water tower.s", "Shapes/water tower.sd", "Textures/body.ACE", "water tower.ref"});
    const std::string route = env.temp / "MSTS/ROUTES/RIVERSIDE/";
    EXPECT_EQ(GetFile(route + "water tower.ref"),
              Utf16("Static (\r\n"
                    "    Class       ( \"Polyforge Scenery\" )\r\n"
                    "    Description ( \"A description\" )\r\n"
                    "    FileName    ( \"water tower.s\" )\r\n"
                    ")\r\n"));
    EXPECT_NE(GetFile(route + "Shapes/water tower.sd")
                  .find(Wide("    ESD_Bounding_Box ( -1.5 0 -10 1.5 4 10 )\r\n"
                             "    ESD_Complex (1\r\n")),
              std::string::npos);
}

TEST_F(EndToEndTest, ARailNetworkObject) {
    ExpectMstsFiles({kRailNetwork, 2, "Signal Gantry", "RIVERSIDE"}, "ROUTES/RIVERSIDE",
                    {"Shapes/signal gantry.s", "Shapes/signal gantry.sd", "Textures/body.ACE",
                     "signal gantry.ref"});
    const std::string route = env.temp / "MSTS/ROUTES/RIVERSIDE/";
    EXPECT_NE(GetFile(route + "signal gantry.ref").find(Wide("( \"Polyforge Structures\" )")),
              std::string::npos);
    EXPECT_EQ(GetFile(route + "Shapes/signal gantry.sd").find(Wide("ESD_Bounding_Box")),
              std::string::npos);
}

TEST_F(EndToEndTest, ARailWorksVehicle) {
    const Strings written = Apply({kRailVehicle, 2, "Hopper", "", {kRailWorks}});
    const std::string folder =
        "RailWorks/Source/Developer/Addon/RailVehicles/Freight/Hopper/Default/Wagon/";
    EXPECT_EQ(written,
              (Strings{folder + "Hopper.ia", folder + "Hopper.igs", folder + "Textures/body.ACE"}));
    EXPECT_EQ(messages, Strings{"Railwright: information: Your RailWorks project has been "
                                "exported to: \"" +
                                env.temp / folder + "\""});
    EXPECT_EQ(tools.ToolsRun(), Strings{"RWAceTool.exe"});
}

TEST_F(EndToEndTest, RailSimulatorScenery) {
    const Strings written = Apply({kScenery, 1, "Oak", "", {kRailSimulator}});
    const std::string folder = "RailWorks/Source/Developer/Addon/Scenery/Vegetation/";
    EXPECT_EQ(written,
              (Strings{folder + "Oak.ia", folder + "Oak.igs", folder + "Textures/body.ACE"}));
    EXPECT_EQ(messages, Strings{"Railwright: information: Your Rail Simulator project has been "
                                "exported to: \"" +
                                env.temp / folder + "\""});
    EXPECT_EQ(tools.ToolsRun(), Strings{"ToAce.exe"});
}

TEST_F(EndToEndTest, EveryChosenSimulatorInTurnAndAFailedMstsExportSkipsTheOthers) {
    const Project both{kRailVehicle, 3, "Coach", "", {kMsts, kRailSimulator, kRailWorks}};
    Strings written = Apply(both);
    // Rail Simulator and RailWorks share their source tree: the second overwrites the first.
    EXPECT_EQ(written.size(), 4u + 3u);
    EXPECT_EQ(messages.size(), 3u);

    std::filesystem::remove_all(railWorks + "/Source");
    scene.application->SetExportShapeResult(false);
    written = Apply({kRailVehicle, 3, "Coach Two", "", {kMsts, kRailSimulator, kRailWorks}});
    EXPECT_EQ(written, Strings{"MSTS/TRAINS/TRAINSET/COACH TWO/body.ACE"});
    EXPECT_EQ(messages, Strings{"Railwright: critical: The export of your MSTS project failed. "
                                "Please let us know on the problem reports forum at "
                                "https://forum.railwright.org/problem-reports"});
    EXPECT_FALSE(std::filesystem::exists(railWorks + "/Source"));
}

TEST_F(EndToEndTest, ApplyingTwiceExportsAgainOverTheSameFiles) {
    const Project diesel{kRailVehicle, 0, "Class 66", ""};
    const Strings first = Apply(diesel);
    const std::string shapeData = env.temp / "MSTS/TRAINS/TRAINSET/CLASS 66/class 66.sd";
    const std::string written = GetFile(shapeData);
    PutFile(shapeData, "edited");
    EXPECT_TRUE(Apply(diesel).empty());
    EXPECT_EQ(messages, Strings{MstsExported(env.temp / "MSTS/TRAINS/TRAINSET/CLASS 66")});
    EXPECT_EQ(GetFile(shapeData), written);
    EXPECT_EQ(first.size(), 9u);
}

}  // namespace
}  // namespace railwright::plugin
