// The MSTS export driver over a stand-in MSTS installation, with stand-in conversion programs and
// the real txt2uni: the folders and files it leaves, the boxes it shows, and how it fails.
#include "export/msts/MstsExport.h"

#include <gtest/gtest.h>

#include <fstream>

#include "export/ExportFixture.h"
#include "export/msts/FakeMstsTree.h"
#include "host/scene/Scene.h"

namespace railwright::exportmsts {
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

const std::string kFailed =
    "Railwright: critical: The export of your MSTS project failed. Please let us know on the "
    "problem reports forum at https://forum.railwright.org/problem-reports";

std::string ExportedTo(const std::string& folder) {
    return "Railwright: information: Your MSTS project has been exported to: \"" + folder + "\"";
}

// A model with its "Main" group (named as given) and a placeholder without texture.
Scene Model(const std::string& mainName = "Main", const std::string& texture = "body.tga") {
    return SceneBuilder()
        .Group(mainName)
        .Box({-1.5f, 0, -10}, {1.5f, 4, 10}, texture)
        .Group("RailwrightPlaceholder-HeadOut", mainName)
        .At(0, 3, 8)
        .Box({-0.1f, -0.1f, -0.1f}, {0.1f, 0.1f, 0.1f})
        .Build();
}

class MstsExportTest : public ::testing::Test {
  protected:
    MstsExportTest() {
        std::filesystem::create_directories(modelFolder);
        PutFile(modelFolder + "/body.tga", "picture");
        Prepare(scene);
    }

    // Wires the host of `model` to the installation, the tools and a shape writer that writes
    // the group's name and how many shapes it has written so far, noting the options it got.
    void Prepare(Scene& model) {
        model.application->SetSimulators({mstsProgram, ""});
        model.application->SetToolsFolder(tools.Folder());
        model.application->SetModelFolder(modelFolder);
        model.application->SetDocumentsFolder(env.temp / "Documents");
        model.application->SetExporterBehaviour(
            {[this](host::SceneGroup& group, const std::string& file,
                    const host::ShapeExportOptions& options) {
                 shapeOptions.push_back(options);
                 std::ofstream out(file, std::ios::binary);
                 out << "shape of " << group.Name() << " #" << ++shapesWritten;
                 return out.good();
             },
             {},
             {}});
    }

    // The longs of a project of this type and sub-type with every MSTS option checked.
    static std::vector<int32_t> Longs(int32_t type, int32_t subType) {
        std::vector<int32_t> longs(46, 0);
        longs[0] = type;
        for (const size_t checked : {1, 2, 3, 4, 25, 26}) {
            longs[checked] = 2;
        }
        longs[32] = subType;
        longs[33] = 818;
        return longs;
    }

    // Exports `scene` on the fixture's platform, or on `other` to see its boxes apart.
    bool Export(const std::string& name, const std::string& route = "", bool toDocuments = false,
                ::railwright::testing::ExportPlatform* other = nullptr) {
        const MstsExportInputs inputs{
            *scene.scripting,  *scene.model, *scene.application, "The title", name,
            "The description", route,        "The procedures",   singles,     longs,
            toDocuments};
        return ExportToMsts((other != nullptr ? *other : env).platform, inputs);
    }

    ::railwright::testing::ExportPlatform env;
    FakeTools tools{env.temp / "tools"};
    std::string msts = env.temp / "MSTS";
    std::string mstsProgram = ::railwright::testing::BuildMstsTree(msts, {"RIVERSIDE"});
    std::string modelFolder = env.temp / "model";
    Scene scene = Model();
    std::vector<float> singles = std::vector<float>(6, 0.0f);
    std::vector<int32_t> longs = Longs(kRailVehicle, 0);
    int shapesWritten = 0;
    std::vector<host::ShapeExportOptions> shapeOptions;
};

TEST_F(MstsExportTest, ARailVehicleLandsInItsTrainsetFolderWithEveryFile) {
    ASSERT_TRUE(Export("Class 47"));
    const std::string folder = msts + "/TRAINS/TRAINSET/CLASS 47";
    EXPECT_EQ(ShownMessages(env.ui), Strings{ExportedTo(folder)});
    EXPECT_EQ(FileTree(folder),
              (Strings{"CABVIEW/DASH9CAB.ACE", "CABVIEW/class 47.cvf", "SOUND/class 47cab.sms",
                       "SOUND/class 47eng.sms", "SOUND/horn.wav", "body.ACE", "class 47.eng",
                       "class 47.s", "class 47.sd"}));
    EXPECT_EQ(scene.application->ExportCalls(),
              Strings{"ExportShape Main " + folder + "/class 47.s"});
    EXPECT_EQ(tools.ToolsRun(), Strings{"MakeACE.exe"});
    // The shape data names the shape and measures the body alone.
    const std::string shapeData = GetFile(folder + "/class 47.sd");
    EXPECT_NE(shapeData.find(::railwright::testing::Wide("shape ( class 47.s\r\n")),
              std::string::npos);
    EXPECT_NE(shapeData.find(::railwright::testing::Wide("( -1.5 0 -10 1.5 4 10 )")),
              std::string::npos);
}

TEST_F(MstsExportTest, HandsTheDistanceLevelsAndTheSubObjectsChoiceToTheShapeExporter) {
    longs[30] = 3;
    longs[31] = 1;
    ASSERT_TRUE(Export("Loco"));
    longs[30] = 2;
    longs[31] = 2;  // only 1 retains them
    ASSERT_TRUE(Export("Loco"));
    EXPECT_EQ(shapeOptions, (std::vector<host::ShapeExportOptions>{{3, true}, {2, false}}));
}

TEST_F(MstsExportTest, AProjectNamedLikeItsRouteGetsATildeRefFile) {
    longs = Longs(kRailNetwork, 2);
    ASSERT_TRUE(Export("riverSIDE", "Riverside"));
    const std::string route = msts + "/ROUTES/RIVERSIDE";
    EXPECT_EQ(ShownMessages(env.ui),
              (Strings{"Railwright: information: The project name you selected is the same as "
                       "your route name. The created REF file will be proceeded with a '~' so "
                       "as to not overwrite the route's REF file.",
                       ExportedTo(route)}));
    EXPECT_EQ(FileTree(route), (Strings{"Shapes/riverside.s", "Shapes/riverside.sd",
                                        "Textures/body.ACE", "~riverside.ref"}));
    EXPECT_NE(GetFile(route + "/~riverside.ref")
                  .find(::railwright::testing::Wide("FileName    ( \"~riverside.s\" )")),
              std::string::npos);
}

TEST_F(MstsExportTest, FindsMainWhateverItsCaseAndStopsWithoutIt) {
    scene = Model("mAIN");
    Prepare(scene);
    EXPECT_TRUE(Export("Loco"));
    EXPECT_EQ(scene.application->ExportCalls().size(), 1u);

    ::railwright::testing::ExportPlatform other;
    scene = Model("Body");
    Prepare(scene);
    const std::string folder = msts + "/TRAINS/TRAINSET/OTHER";
    EXPECT_FALSE(Export("Other", "", false, &other));
    EXPECT_EQ(ShownMessages(other.ui),
              Strings{"Railwright: exclamation: No \"Main\" group found. Unable to export "
                      "project. Re-run the wizard to identify your \"Main\" group."});
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    EXPECT_EQ(FileTree(folder), Strings{});
}

TEST_F(MstsExportTest, AnUntexturedShapeStopsTheExportBeforeAnyFile) {
    scene = Model("Main", "");
    Prepare(scene);
    EXPECT_FALSE(Export("Loco"));
    EXPECT_EQ(ShownMessages(env.ui),
              (Strings{"Railwright: critical: Shape \"Main\" contains untextured faces. Rail "
                       "Simulator and Microsoft Train Simulator requires that all faces be "
                       "textured.",
                       "Railwright: critical: The export of your MSTS project failed due to "
                       "shapes not being fully textured. Microsoft Train Simulator requires "
                       "objects to be fully textured."}));
    EXPECT_EQ(FileTree(msts + "/TRAINS/TRAINSET/LOCO"), Strings{});
    EXPECT_TRUE(scene.application->ExportCalls().empty());
}

TEST_F(MstsExportTest, WritesOnlyWhatTheOptionsAsk) {
    for (const size_t option : {1, 2, 3, 4}) {
        longs[option] = 1;
    }
    ASSERT_TRUE(Export("Loco"));
    EXPECT_EQ(FileTree(msts + "/TRAINS/TRAINSET/LOCO"), Strings{});
    EXPECT_TRUE(scene.application->ExportCalls().empty());
    EXPECT_TRUE(tools.Calls().empty());
    EXPECT_EQ(ShownMessages(env.ui), Strings{ExportedTo(msts + "/TRAINS/TRAINSET/LOCO")});
}

TEST_F(MstsExportTest, AShapeTheHostCannotExportSkipsTheLaterFiles) {
    for (const bool hostError : {false, true}) {
        ::railwright::testing::ExportPlatform run;
        scene = Model();
        Prepare(scene);
        if (hostError) {
            scene.failures->FailOperation("Exporter.ExportShape");
        } else {
            scene.application->SetExportShapeResult(false);
        }
        EXPECT_FALSE(Export("Loco", "", false, &run));
        EXPECT_EQ(ShownMessages(run.ui), Strings{kFailed});
        // The textures converted before stay.
        EXPECT_EQ(FileTree(msts + "/TRAINS/TRAINSET/LOCO"), Strings{"body.ACE"});
    }
}

TEST_F(MstsExportTest, AMissingDefaultTrainFailsTheExportAndKeepsTheFilesBeforeIt) {
    std::filesystem::remove_all(msts + "/TRAINS/TRAINSET/DASH9");
    EXPECT_FALSE(Export("Loco"));
    EXPECT_EQ(ShownMessages(env.ui), Strings{kFailed});
    EXPECT_EQ(FileTree(msts + "/TRAINS/TRAINSET/LOCO"), (Strings{"body.ACE", "loco.s", "loco.sd"}));
}

TEST_F(MstsExportTest, AFolderThatCannotBeCreatedFailsTheExport) {
    longs = Longs(kScenery, 0);
    PutFile(msts + "/ROUTES/BLOCKED", "a file where the route folder should be");
    EXPECT_FALSE(Export("Shed", "Blocked"));
    EXPECT_EQ(ShownMessages(env.ui),
              (Strings{"Railwright: exclamation: Unable to convert texture \"body.tga\". It may "
                       "be in a format not permitted by Microsoft Train Simulator.",
                       kFailed}));
    EXPECT_EQ(GetFile(msts + "/ROUTES/BLOCKED"), "a file where the route folder should be");
}

TEST_F(MstsExportTest, AMissingToolIsReportedOnItsOwnTerms) {
    // Without MakeACE the textures are reported one by one and the export goes on.
    tools.Remove("MakeACE.exe");
    EXPECT_TRUE(Export("Loco"));
    EXPECT_EQ(ShownMessages(env.ui).size(), 2u);
    // Without txt2uni the text files cannot be finished: the export fails after the shape data.
    ::railwright::testing::ExportPlatform run;
    tools.Remove("txt2uni.exe");
    EXPECT_FALSE(Export("Loco Two", "", false, &run));
    EXPECT_EQ(ShownMessages(run.ui).back(), kFailed);
    EXPECT_EQ(FileTree(msts + "/TRAINS/TRAINSET/LOCO TWO"), (Strings{"loco two.s", "loco two.sd"}));
}

TEST_F(MstsExportTest, WithoutMstsNothingIsWritten) {
    scene.application->SetSimulators({"", ""});
    EXPECT_FALSE(Export("Loco"));
    EXPECT_EQ(ShownMessages(env.ui), Strings{kFailed});
    EXPECT_TRUE(scene.application->ExportCalls().empty());
}

TEST_F(MstsExportTest, ExportsToTheDocumentsFolderWithTheInstallationsCabAndSounds) {
    longs[32] = 4;
    ASSERT_TRUE(Export("Flyer", "", true));
    const std::string folder = env.temp / "Documents/TRAINS/TRAINSET/FLYER";
    EXPECT_EQ(ShownMessages(env.ui), Strings{ExportedTo(folder)});
    EXPECT_EQ(GetFile(folder + "/CABVIEW/flyer.cvf"), "scotsman.cvf");
    EXPECT_EQ(FileTree(folder).size(), 11u);
    EXPECT_EQ(FileTree(msts + "/TRAINS/TRAINSET/FLYER"), Strings{});
}

TEST_F(MstsExportTest, ExportingTwiceReusesTheFoldersAndOverwritesTheFiles) {
    ASSERT_TRUE(Export("Loco"));
    const std::string folder = msts + "/TRAINS/TRAINSET/LOCO";
    const std::string engine = GetFile(folder + "/loco.eng");
    PutFile(folder + "/loco.sd", "edited");
    ASSERT_TRUE(Export("Loco"));
    EXPECT_EQ(ShownMessages(env.ui), (Strings{ExportedTo(folder), ExportedTo(folder)}));
    EXPECT_EQ(GetFile(folder + "/loco.s"), "shape of Main #2");
    EXPECT_EQ(GetFile(folder + "/loco.eng"), engine);
    EXPECT_NE(GetFile(folder + "/loco.sd"), "edited");
    EXPECT_EQ(FileTree(folder).size(), 9u);
}

}  // namespace
}  // namespace railwright::exportmsts
