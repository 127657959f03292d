// Saving: what the system changes through the host interfaces reaches the file and reads back;
// everything else of the user's file stays; a failed save leaves the file as it was.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "document/DocumentTesting.h"
#include "host/scene/SceneExpect.h"

namespace railwright::document {
namespace {

using host::scene::testing::ExpectNear;
using Json = nlohmann::ordered_json;
using testing::MustLoad;
using testing::ReadBytes;
using testing::ScratchFolder;

Json ReadJson(const std::filesystem::path& file) {
    const std::string bytes = ReadBytes(file);
    if (bytes.rfind("glTF", 0) == 0) {
        uint32_t length = 0;
        for (size_t i = 0; i < 4; ++i) {
            length |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[12 + i])) << (8 * i);
        }
        return Json::parse(bytes.substr(20, length));
    }
    return Json::parse(bytes);
}

// Removes our extras key everywhere, and extras objects that held only it.
void WithoutOurExtras(Json& json) {
    if (json.is_object()) {
        if (json.contains("extras") && json["extras"].is_object()) {
            json["extras"].erase("railwright");
            if (json["extras"].empty()) {
                json.erase("extras");
            }
        }
        for (auto& [key, value] : json.items()) {
            WithoutOurExtras(value);
        }
    } else if (json.is_array()) {
        for (Json& value : json) {
            WithoutOurExtras(value);
        }
    }
}

// What the wizard does to a model, through the host interfaces only: renames, a move, custom
// fields on groups and materials, drive-wheel keys, the settings values.
struct WizardEdits {
    std::string renamed;  // old name
    std::string newName;
    std::string moved;  // a group moved under `under`, keeping its world place
    std::string under;
    std::string keyed;  // a group given eight keys turning it about X
};

const std::vector<float> kSingles{12.5f, 0, 100, 0.1f, 0.45f, 0};
const std::string kSettingsText = "Class 20|class20||A diesel|||Start the engine";

std::vector<int32_t> Longs() {
    std::vector<int32_t> longs(46, 0);
    longs[0] = 1;
    longs[33] = 818;
    longs[37] = 1;
    longs[45] = -2147483647 - 1;
    return longs;
}

void ApplyEdits(Document& document, const WizardEdits& edits) {
    host::scene::Scene& scene = document.Scene();
    host::Scripting& scripting = *scene.scripting;
    host::SceneGraph& graph = *scripting.RootGroup()->SceneGraph();
    const int32_t msts = graph.AddGroupField("MSTS");
    const int32_t txAlpha = graph.AddMaterialField("Tx Alpha");
    graph.AddMaterialField("Alpha Pr");

    scene.GroupNamed(edits.renamed)->SetName(edits.newName);
    scene.GroupNamed(edits.newName)->SetCustomField(msts, "Main");
    scene.GroupNamed(edits.moved)->MoveTo(*scene.GroupNamed(edits.under));
    host::SceneGroup& keyed = *scene.GroupNamed(edits.keyed);
    host::SceneGroup& parent = *keyed.Parent();
    const host::Vector3 origin = keyed.GetPosition(parent, host::kCurrentPose);
    for (int step = 1; step <= 8; ++step) {
        keyed.SetKey(parent, static_cast<float>(step), origin,
                     {static_cast<float>(step - 1) * 0.785398f, 0, 0});
    }
    scripting.MaterialList(0)->Material(0)->SetCustomField(txAlpha, "Transparency");
    document.UserDataSingles() = kSingles;
    document.UserDataLongs() = Longs();
    document.UserDataString() = kSettingsText;
}

// Checks, on a model saved after ApplyEdits and read again, that every edit is there.
void ExpectEdits(Document& document, const WizardEdits& edits, const host::Bounds& movedBounds) {
    host::scene::Scene& scene = document.Scene();
    host::SceneGraph& graph = *scene.scripting->RootGroup()->SceneGraph();
    ASSERT_EQ(graph.GroupFieldIndex("MSTS"), 0);
    EXPECT_EQ(graph.MaterialFieldIndex("Alpha Pr"), 1);
    EXPECT_EQ(scene.model->FindGroup(edits.renamed), nullptr);
    EXPECT_EQ(scene.GroupNamed(edits.newName)->CustomField(0), "Main");
    EXPECT_EQ(scene.GroupNamed(edits.moved)->ParentNode(), scene.GroupNamed(edits.under));
    ExpectNear(
        scene.GroupNamed(edits.moved)->GetBounds(*scene.scripting->RootGroup(), host::kCurrentPose),
        movedBounds, 1e-3f);
    const std::vector<host::scene::Key>& keys = scene.GroupNamed(edits.keyed)->Keys();
    ASSERT_EQ(keys.size(), 8u);
    for (size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(keys[i].time, static_cast<float>(i + 1));
        // Angles read back through quaternions: the same turn, perhaps written another way.
        const float angle = static_cast<float>(i) * 0.785398f;
        EXPECT_NEAR(std::cos(keys[i].rotation.x), std::cos(angle), 1e-5);
        EXPECT_NEAR(std::sin(keys[i].rotation.x), std::sin(angle), 1e-5);
    }
    EXPECT_EQ(scene.scripting->MaterialList(0)->Material(0)->CustomField(0), "Transparency");
    EXPECT_EQ(document.UserDataSingles(), kSingles);
    EXPECT_EQ(document.UserDataLongs(), Longs());
    EXPECT_EQ(document.UserDataString(), kSettingsText);
}

TEST(DocumentSave, UnchangedModelKeepsEveryPartOfTheUsersFile) {
    // External textures and an extension the document knows nothing about.
    ScratchFolder scratch;
    const std::filesystem::path model = scratch.CopyCorpus("clearcoat_test", "ClearCoatTest.gltf");
    const std::string bin = ReadBytes(scratch / "ClearCoatTest.bin");
    const std::string png = ReadBytes(scratch / "PartialCoating_Alpha.png");
    const Json before = ReadJson(model);
    const std::unique_ptr<Document> document = MustLoad(model);
    ASSERT_TRUE(document);

    const SaveResult saved = document->Save();
    ASSERT_TRUE(saved.Ok()) << saved.error;
    const Json after = ReadJson(model);
    EXPECT_EQ(after, before);
    EXPECT_TRUE(after["materials"][1]["extensions"].contains("KHR_materials_clearcoat"));
    EXPECT_EQ(ReadBytes(scratch / "ClearCoatTest.bin"), bin);
    EXPECT_EQ(ReadBytes(scratch / "PartialCoating_Alpha.png"), png);
    EXPECT_FALSE(std::filesystem::exists(scratch / "ClearCoatTest.gltf.railwright-save"));
}

TEST(DocumentSave, WizardEditsReadBackFromTextAndBinaryFiles) {
    struct Case {
        const char* folder;
        const char* file;
        WizardEdits edits;
        size_t newAccessors;  // times, translations and rotations of each node with new keys
    };
    for (const Case& test : {
             Case{"quaternius_train/gltf",
                  "Locomotive_Front.gltf",
                  {"Locomotive", "Main", "SmallWheels1", "BigWheels3", "BigWheels2"},
                  3},
             Case{"box_textured/glTF-Binary",
                  "BoxTextured.glb",
                  {"Node0", "Main", "Node1", "Scene", "Node1"},
                  3},
             // External textures and an unknown extension, which stay as they were.
             Case{"clearcoat_test",
                  "ClearCoatTest.gltf",
                  {"R0_SimpleCoatTest", "Main", "R1_CoatOnlySample", "Main", "ClearCoatSample"},
                  3},
             // The moved joint's keys change with its parent, and are written anew too.
             Case{
                 "simple_skin", "simple_skin.gltf", {"Node0", "Body", "Node2", "Body", "Node1"}, 6},
         }) {
        SCOPED_TRACE(test.file);
        ScratchFolder scratch;
        const std::filesystem::path model = scratch.CopyCorpus(test.folder, test.file);
        const Json before = ReadJson(model);
        host::Bounds movedBounds;
        {
            const std::unique_ptr<Document> document = MustLoad(model);
            ASSERT_TRUE(document);
            host::scene::Scene& scene = document->Scene();
            movedBounds = scene.GroupNamed(test.edits.moved)
                              ->GetBounds(*scene.scripting->RootGroup(), host::kCurrentPose);
            ApplyEdits(*document, test.edits);
            const SaveResult saved = document->Save();
            ASSERT_TRUE(saved.Ok()) << saved.error;
            // Saving again from the same state writes the same file.
            const std::string first = ReadBytes(model);
            ASSERT_TRUE(document->Save().Ok());
            EXPECT_EQ(ReadBytes(model), first);
        }
        const std::unique_ptr<Document> reloaded = MustLoad(model);
        ASSERT_TRUE(reloaded);
        ExpectEdits(*reloaded, test.edits, movedBounds);

        const Json after = ReadJson(model);
        EXPECT_EQ(after["asset"]["extras"]["railwright"]["longs"][33], 818);
        EXPECT_EQ(after["asset"]["extras"]["railwright"]["singles"].dump(),
                  "[12.5,0.0,100.0,0.1,0.45,0.0]");
        EXPECT_EQ(after["animations"].back()["name"], "Railwright");
        // An animated node describes its transform by parts, never by a matrix.
        for (const Json& channel : after["animations"].back()["channels"]) {
            const Json& node = after["nodes"][channel["target"]["node"].get<size_t>()];
            EXPECT_FALSE(node.contains("matrix")) << node.dump();
        }
        EXPECT_EQ(after["accessors"].size(), before["accessors"].size() + test.newAccessors);
        // Materials, meshes, images... are as they were, but for our extras.
        Json rest = after;
        Json old = before;
        WithoutOurExtras(rest);
        for (const char* changed :
             {"nodes", "scenes", "animations", "accessors", "bufferViews", "buffers"}) {
            rest.erase(changed);
            old.erase(changed);
        }
        EXPECT_EQ(rest, old);
        if (reloaded->IsBinary()) {
            // Still self-contained: the new data went into the BIN chunk.
            ASSERT_EQ(after["buffers"].size(), 1u);
            EXPECT_FALSE(after["buffers"][0].contains("uri"));
        } else {
            EXPECT_EQ(after["buffers"].size(), before["buffers"].size() + 1);
            EXPECT_EQ(after["buffers"].back()["uri"].get<std::string>().rfind("data:", 0), 0u);
        }
    }
}

TEST(DocumentSave, AnimatedNodesGetTheirNewKeysInsteadOfTheOldOnes) {
    // The joint of the skin already turns; new keys replace its rotation channel, and the
    // animation that held only that channel goes.
    ScratchFolder scratch;
    const std::filesystem::path model = scratch.CopyCorpus("simple_skin", "simple_skin.gltf");
    {
        const std::unique_ptr<Document> document = MustLoad(model);
        ASSERT_TRUE(document);
        host::SceneGroup& joint = *document->Scene().GroupNamed("Node2");
        joint.SetKey(*joint.Parent(), 2.75f, {0, 0.5f, 0}, {0, 0, 0.25f});
        ASSERT_TRUE(document->Save().Ok());
    }
    const Json json = ReadJson(model);
    ASSERT_EQ(json["animations"].size(), 1u);
    EXPECT_EQ(json["animations"][0]["name"], "Railwright");
    EXPECT_EQ(json["animations"][0]["channels"].size(), 2u);
    const std::unique_ptr<Document> reloaded = MustLoad(model);
    ASSERT_TRUE(reloaded);
    const std::vector<host::scene::Key>& keys = reloaded->Scene().GroupNamed("Node2")->Keys();
    ASSERT_EQ(keys.size(), 13u);  // the 12 of the file and the new one
    EXPECT_EQ(keys[6].time, 2.75f);
    EXPECT_EQ(keys[6].position, (host::Vector3{0, 0.5f, 0}));
    EXPECT_NEAR(keys[6].rotation.z, 0.25f, 1e-6);
}

TEST(DocumentSave, MovedGroupsKeepTheirPlaceWhetherGivenByMatrixOrByParts) {
    ScratchFolder scratch;
    const std::filesystem::path model =
        scratch.CopyCorpus("quaternius_train/gltf", "Locomotive_Front.gltf");
    host::Bounds bounds;
    {
        const std::unique_ptr<Document> document = MustLoad(model);
        ASSERT_TRUE(document);
        host::scene::Scene& scene = document->Scene();
        // Out from under the scaled and turned root node, to the top of the scene.
        host::SceneGroup& wheel = *scene.GroupNamed("SmallWheels_2");
        bounds = wheel.GetBounds(*scene.scripting->RootGroup(), host::kCurrentPose);
        wheel.MoveTo(*scene.scripting->RootGroup());
        ASSERT_TRUE(document->Save().Ok());
    }
    const Json json = ReadJson(model);
    EXPECT_EQ(json["scenes"][0]["nodes"], Json({0, 6}));
    EXPECT_EQ(json["nodes"][0]["children"], Json({1, 2, 3, 4, 5}));
    EXPECT_TRUE(json["nodes"][6].contains("matrix"));  // given as a matrix, kept as one
    const std::unique_ptr<Document> reloaded = MustLoad(model);
    ASSERT_TRUE(reloaded);
    host::scene::Scene& scene = reloaded->Scene();
    EXPECT_EQ(scene.GroupNamed("SmallWheels_2")->ParentNode(), scene.model->Root());
    ExpectNear(scene.GroupNamed("SmallWheels_2")
                   ->GetBounds(*scene.scripting->RootGroup(), host::kCurrentPose),
               bounds, 1e-3f);
}

TEST(DocumentSave, SavingElsewhereKeepsTheTexturesAndBuffersFound) {
    ScratchFolder scratch;
    const std::filesystem::path model =
        scratch.CopyCorpus("box_textured/glTF", "BoxTextured.gltf", "model with spaces");
    const std::unique_ptr<Document> document = MustLoad(model);
    ASSERT_TRUE(document);
    std::filesystem::create_directories(scratch / "out");
    const std::filesystem::path copy = scratch / "out" / "Box copy.gltf";
    const SaveResult saved = document->SaveAs(copy.string());
    ASSERT_TRUE(saved.Ok()) << saved.error;

    const Json json = ReadJson(copy);
    EXPECT_EQ(json["buffers"][0]["uri"], "../model%20with%20spaces/BoxTextured0.bin");
    EXPECT_EQ(json["images"][0]["uri"], "../model%20with%20spaces/CesiumLogoFlat.png");
    EXPECT_EQ(ReadJson(model)["images"][0]["uri"], "CesiumLogoFlat.png");  // the source stays
    const std::unique_ptr<Document> reloaded = MustLoad(copy);
    ASSERT_TRUE(reloaded);
    EXPECT_TRUE(std::filesystem::exists(
        reloaded->Scene().scripting->MaterialList(0)->Material(0)->TextureFile()));
}

TEST(DocumentSave, AFailedSaveLeavesTheUsersFileAsItWas) {
    ScratchFolder scratch;
    const std::filesystem::path model = scratch.CopyCorpus("box_textured/glTF", "BoxTextured.gltf");
    const std::string original = ReadBytes(model);
    const std::unique_ptr<Document> document = MustLoad(model);
    ASSERT_TRUE(document);
    document->Scene().GroupNamed("Node1")->SetName("Main");

    struct Case {
        const char* name;
        std::filesystem::path target;
        std::function<void()> before;
        const char* fault;
    };
    std::filesystem::create_directories(scratch / "a folder");
    const Case cases[] = {
        {"missing folder", scratch / "missing" / "box.gltf", [] {}, "cannot be created"},
        {"a folder in the way", scratch / "a folder", [] {}, "cannot take its place"},
        {"the buffer gone: the new file does not read back", model,
         [&scratch] {
             std::filesystem::rename(scratch / "BoxTextured0.bin", scratch / "moved.bin");
         },
         "BoxTextured0.bin"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        test.before();
        const SaveResult saved = document->SaveAs(test.target.string());
        EXPECT_FALSE(saved.Ok());
        EXPECT_EQ(saved.error.rfind(test.target.string() + ": not saved: ", 0), 0u) << saved.error;
        EXPECT_NE(saved.error.find(test.fault), std::string::npos) << saved.error;
        EXPECT_EQ(ReadBytes(model), original);
        EXPECT_TRUE(std::filesystem::is_directory(scratch / "a folder"));
        EXPECT_FALSE(std::filesystem::exists(test.target.string() + ".railwright-save"));
    }
}

TEST(DocumentSave, AReadOnlyFolderLeavesTheUsersFileAsItWas) {
    ScratchFolder scratch;
    const std::filesystem::path model = scratch.CopyCorpus("box_textured/glTF", "BoxTextured.gltf");
    const std::string original = ReadBytes(model);
    const std::unique_ptr<Document> document = MustLoad(model);
    ASSERT_TRUE(document);
    std::filesystem::permissions(scratch.Path(),
                                 std::filesystem::perms::owner_write |
                                     std::filesystem::perms::group_write |
                                     std::filesystem::perms::others_write,
                                 std::filesystem::perm_options::remove);
    if (std::ofstream(scratch / "probe")) {
        GTEST_SKIP() << "this user writes into read-only folders";
    }
    const SaveResult saved = document->Save();
    EXPECT_FALSE(saved.Ok());
    EXPECT_NE(saved.error.find("cannot be created"), std::string::npos) << saved.error;
    EXPECT_EQ(ReadBytes(model), original);
}

TEST(DocumentSave, InspectShowsGroupsMaterialsFieldsAndSettings) {
    ScratchFolder scratch;
    const std::unique_ptr<Document> document =
        MustLoad(scratch.CopyCorpus("box_textured/glTF", "BoxTextured.gltf"));
    ASSERT_TRUE(document);
    ApplyEdits(*document, {"Node0", "Main", "Node1", "Scene", "Node1"});

    const Json inspection = document->Inspect();
    const Json expected = Json::parse(R"({
        "groups": [
          {"index": 0, "name": "Scene", "parent": -1, "shapes": 0, "keys": 0,
           "fields": {"MSTS": ""}},
          {"index": 1, "name": "Main", "parent": 0, "shapes": 0, "keys": 0,
           "fields": {"MSTS": "Main"}},
          {"index": 2, "name": "Node1", "parent": 0, "shapes": 1, "keys": 8,
           "fields": {"MSTS": ""}}],
        "materials": [
          {"holder": "Mesh", "texture": "TEXTURE",
           "fields": {"Tx Alpha": "Transparency", "Alpha Pr": ""}}],
        "groupFields": ["MSTS"],
        "materialFields": ["Tx Alpha", "Alpha Pr"],
        "settings": {"singles": [12.5, 0, 100, 0.1, 0.45, 0],
                     "longs": [1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                               0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 818, 0, 0, 0, 1, 0, 0, 0, 0,
                               0, 0, 0, -2147483648],
                     "string": "Class 20|class20||A diesel|||Start the engine"}})");
    Json actual = inspection;
    EXPECT_EQ(
        actual["materials"][0]["texture"],
        (std::filesystem::absolute(scratch / "CesiumLogoFlat.png")).lexically_normal().string());
    actual["materials"][0]["texture"] = "TEXTURE";
    EXPECT_EQ(actual, expected) << actual.dump(2);
}

}  // namespace
}  // namespace railwright::document
