// Models nobody here made, exported to MSTS as scenery by the command: every texture the shape
// names is written as .ace, whatever the image's form (PNG, JPEG, in the .glb, colour only).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "cli/Command.h"
#include "document/shape/ShapeReader.h"
#include "support/posix/TempFolder.h"
#include "support/SupportingFunctions.h"

namespace railwright::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kScenery = R"({ "events": [
  { "click": "chkMSTS" }, { "click": "cmdNext" },
  { "select": "cboProjectType", "text": "Scenery" },
  { "select": "cboProjectSubType", "text": "Building" }, { "click": "cmdNext" },
  { "type": "txtProjectTitle", "text": "Corpus model" },
  { "type": "txtProjectName", "text": "CorpusModel" },
  { "click": "optSteps", "index": 3 }, { "select": "cboRoute", "text": "TESTROUTE" },
  { "click": "optSteps", "index": 4 }, { "pick": 1 },
  { "click": "optSteps", "index": 6 }, { "click": "cmdFinish" } ] })";

TEST(CorpusExport, EveryTextureTheShapeNamesIsWritten) {
    const struct {
        const char* folder;
        const char* model;
    } models[] = {
        {"box_textured/glTF", "BoxTextured.gltf"},
        {"box_textured/glTF-Binary", "BoxTextured.glb"},
        {"alpha_blend_mode_test", "AlphaBlendModeTest.glb"},
        {"clearcoat_test", "ClearCoatTest.gltf"},
        {"texture_transform_test", "TextureTransformTest.gltf"},
        {"simple_skin", "simple_skin.gltf"},
        {"animated_morph_cube", "AnimatedMorphCube.gltf"},
        {"quaternius_train/gltf", "Locomotive_Front.gltf"},
        {"quaternius_train/gltf", "CargoTrain_Wagon.gltf"},
    };
    for (const auto& test : models) {
        SCOPED_TRACE(test.model);
        testing::TempFolder folder;
        const fs::path root(folder.Path());
        fs::copy(fs::path(RAILWRIGHT_SOURCE_DIR) / ".." / "shared" / "corpus" / test.folder,
                 root / "model", fs::copy_options::recursive);
        for (const auto& entry : fs::recursive_directory_iterator(root / "model")) {
            fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add);
        }
        fs::create_directories(root / "msts" / "ROUTES" / "TESTROUTE");
        fs::create_directories(root / "documents");
        testing::PutFile((root / "msts" / "train.exe").string(), "stand-in");
        testing::PutFile((root / "script.json").string(), kScenery);
        std::ostringstream out;
        std::ostringstream err;
        const int status = RunCommand(
            {"railwright", "apply", (root / "model" / test.model).string(), "--script",
             (root / "script.json").string(), "--msts", (root / "msts").string(), "--documents",
             (root / "documents").string(), "--settings", (root / "settings.ini").string(),
             "--tools", RAILWRIGHT_TOOLS_BIN_DIR, "--output", (root / "saved.gltf").string(),
             "--no-cache", "--quiet"},
            {out, err, false, RAILWRIGHT_TOOLS_BIN_DIR});
        ASSERT_EQ(status, kExitSuccess) << err.str();

        const fs::path route = root / "documents" / "ROUTES" / "TESTROUTE";
        const auto shape = document::shape::testing::ReadShapeFile(
            testing::GetFile((route / "Shapes" / "corpusmodel.s").string()));
        ASSERT_EQ(shape.error, "");
        size_t triangles = 0;
        for (const auto& level : shape.levels) {
            triangles += level.triangles;
        }
        EXPECT_GT(triangles, 0u);
        std::vector<std::string> written;
        for (const auto& entry : fs::directory_iterator(route / "Textures")) {
            written.push_back(support::ToLower(entry.path().filename().string()));
        }
        ASSERT_FALSE(shape.images.empty());
        for (const std::string& image : shape.images) {
            EXPECT_NE(std::find(written.begin(), written.end(), support::ToLower(image)),
                      written.end())
                << image << " was not written";
        }
    }
}

}  // namespace
}  // namespace railwright::cli
