// Loading third-party models of the shared corpus into the scene.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "document/DocumentTesting.h"
#include "host/scene/SceneExpect.h"

namespace railwright::document {
namespace {

using host::scene::testing::ExpectNear;
using testing::CorpusPath;
using testing::MustLoad;
using testing::ReadBytes;
using testing::ScratchFolder;

std::vector<std::string> GroupNames(Document& document) {
    std::vector<std::string> names;
    for (const auto& group : document.Scene().model->GroupOrder()) {
        names.push_back(group->NameValue());
    }
    return names;
}

std::string Absolute(const std::filesystem::path& path) {
    return std::filesystem::absolute(path).lexically_normal().string();
}

host::scene::SceneMaterial& OnlyMaterial(Document& document) {
    const auto& holders = document.Scene().model->MaterialHolders();
    EXPECT_EQ(holders.size(), 1u);
    EXPECT_EQ(holders.at(0)->Materials().size(), 1u);
    return *holders.at(0)->Materials().at(0);
}

TEST(DocumentLoad, BoxTexturedAsTextAndAsBinary) {
    // The same box: a node with a matrix over an unnamed node with the mesh; the .gltf names
    // its texture file, the .glb holds the image in a bufferView.
    ScratchFolder scratch;
    const std::filesystem::path glb =
        scratch.CopyCorpus("box_textured/glTF-Binary", "BoxTextured.glb");
    struct Case {
        std::filesystem::path file;
        bool binary;
        std::string texture;
    };
    for (const Case& test : {Case{CorpusPath("box_textured/glTF/BoxTextured.gltf"), false,
                                  Absolute(CorpusPath("box_textured/glTF/CesiumLogoFlat.png"))},
                             Case{glb, true, Absolute(scratch / "BoxTextured_image0.png")}}) {
        SCOPED_TRACE(test.file.string());
        const std::unique_ptr<Document> document = MustLoad(test.file);
        ASSERT_TRUE(document);
        EXPECT_EQ(document->IsBinary(), test.binary);
        EXPECT_EQ(GroupNames(*document), (std::vector<std::string>{"Scene", "Node0", "Node1"}));
        host::scene::Scene& scene = document->Scene();
        EXPECT_EQ(scene.scripting->Group(2)->ShapeCount(), 1);
        EXPECT_EQ(scene.scripting->MaterialList(0)->Name(), "Mesh");
        EXPECT_EQ(OnlyMaterial(*document).TextureFile(), test.texture);
        ExpectNear(scene.model->GeometryBounds(host::kCurrentPose, ""),
                   {-0.5f, -0.5f, -0.5f, 0.5f, 0.5f, 0.5f}, 1e-6f);
        EXPECT_TRUE(document->UserDataLongs().empty());
    }
}

TEST(DocumentLoad, ClearCoatMaterialsShareTheirTexturesAndKeepBlend) {
    const std::filesystem::path folder = CorpusPath("clearcoat_test");
    const std::unique_ptr<Document> document = MustLoad(folder / "ClearCoatTest.gltf");
    ASSERT_TRUE(document);
    host::scene::Model& model = *document->Scene().model;
    EXPECT_EQ(model.GroupOrder().size(), 34u);  // the scene and its 33 nodes
    EXPECT_EQ(model.GroupOrder()[1]->NameValue(), "R0_SimpleCoatTest");
    EXPECT_EQ(model.GroupOrder()[2]->NameValue(), "BaseLayerSample");
    EXPECT_EQ(model.GroupOrder()[2]->ParentNode(), model.GroupOrder()[1]);

    // One scene material per glTF material, however many holders use it.
    std::vector<const host::scene::SceneMaterial*> distinct;
    host::scene::SceneMaterial* partialCoating = nullptr;
    for (const auto& holder : model.MaterialHolders()) {
        for (const auto& material : holder->Materials()) {
            if (std::find(distinct.begin(), distinct.end(), material.get()) == distinct.end()) {
                distinct.push_back(material.get());
            }
            if (material->Properties().translucencyLevel == 1) {
                partialCoating = material.get();
            }
        }
    }
    EXPECT_EQ(distinct.size(), 19u);
    ASSERT_NE(partialCoating, nullptr);
    EXPECT_EQ(partialCoating->Properties().textureFile,
              Absolute(folder / "PartialCoating_Alpha.png"));
    EXPECT_EQ(partialCoating->Properties().transparencyMap, "");
}

TEST(DocumentLoad, DataUriBuffersAndJointAnimation) {
    const std::unique_ptr<Document> document = MustLoad(CorpusPath("simple_skin/simple_skin.gltf"));
    ASSERT_TRUE(document);
    host::scene::Model& model = *document->Scene().model;
    EXPECT_EQ(GroupNames(*document),
              (std::vector<std::string>{"Scene", "Node0", "Node1", "Node2"}));
    // The joint turns about Z, a quarter turn each way, at 12 times half a second apart; it
    // keeps its translation. In the scene's left-handed axes the turns about Z change sense.
    const std::vector<host::scene::Key>& keys = model.GroupOrder()[3]->Keys();
    ASSERT_EQ(keys.size(), 12u);
    const float quarterTurn = 1.5707963f;
    for (const auto& [index, time, turn] :
         {std::tuple{0, 0.0f, 0.0f}, std::tuple{2, 1.0f, -quarterTurn}, std::tuple{6, 3.0f, 0.0f},
          std::tuple{9, 4.5f, quarterTurn}}) {
        SCOPED_TRACE(index);
        const host::scene::Key& key = keys[static_cast<size_t>(index)];
        EXPECT_EQ(key.time, time);
        EXPECT_NEAR(key.rotation.x, 0, 1e-5);
        EXPECT_NEAR(key.rotation.y, 0, 1e-5);
        EXPECT_NEAR(key.rotation.z, turn, 1e-3);
        EXPECT_EQ(key.position, (host::Vector3{}));
    }
    EXPECT_GT(model.GroupOrder()[1]->Shapes().at(0).vertices.size(), 0u);
}

TEST(DocumentLoad, RailVehicleHierarchyNamesAndBoundsThroughNodeMatrices) {
    const std::unique_ptr<Document> document =
        MustLoad(CorpusPath("quaternius_train/gltf/Locomotive_Front.gltf"));
    ASSERT_TRUE(document);
    EXPECT_EQ(
        GroupNames(*document),
        (std::vector<std::string>{"Scene", "RootNode", "BigWheels1", "BigWheels2", "BigWheels3",
                                  "Locomotive", "SmallWheels1", "SmallWheels_2"}));
    host::scene::Scene& scene = document->Scene();
    host::SceneGroup& root = *scene.scripting->RootGroup();
    EXPECT_EQ(scene.scripting->Group(2)->Parent()->Name(), "RootNode");
    // Expected boxes: the vertices of the .bin mapped through the node matrices, worked out
    // apart from this code, in the scene's axes (glTF's X with its sign changed).
    ExpectNear(scene.scripting->Group(2)->GetBounds(root, host::kCurrentPose),
               {-16.5423f, 1.5109f, -54.4706f, 80.4523f, 98.5056f, 54.4706f}, 2e-3f);
    ExpectNear(scene.scripting->Group(7)->GetBounds(root, host::kCurrentPose),
               {102.5400f, 2.0297f, -50.3143f, 169.2973f, 68.7870f, 50.3143f}, 2e-3f);
    ExpectNear(scene.model->GeometryBounds(host::kCurrentPose, ""),
               {-357.0839f, 1.5109f, -143.3546f, 451.8266f, 359.8582f, 143.3545f}, 2e-3f);
    // Colour-only materials: no texture files.
    EXPECT_EQ(scene.scripting->MaterialList(0)->Material(0)->TextureFile(), "");
}

TEST(DocumentLoad, ImageUrisWithSpacesNameTheFilesBesideTheModel) {
    const std::filesystem::path folder = CorpusPath("malformed_tinygltf/CubeImageUriSpaces");
    for (const auto& [model, image] :
         {std::pair{"CubeImageUriSpaces.gltf", "2x2 image has spaces.png"},
          std::pair{"CubeImageUriMultipleSpaces.gltf",
                    " 2x2 image  has multiple      spaces.png"}}) {
        SCOPED_TRACE(model);
        const std::unique_ptr<Document> document = MustLoad(folder / model);
        ASSERT_TRUE(document);
        const std::string texture = OnlyMaterial(*document).TextureFile();
        EXPECT_EQ(texture, Absolute(folder / image));
        EXPECT_TRUE(std::filesystem::exists(texture));
    }
}

TEST(DocumentLoad, PercentEncodedUrisAreDecoded) {
    // The same cube with its texture URI percent-encoded, as most exporters write it.
    ScratchFolder scratch;
    const std::filesystem::path model =
        scratch.CopyCorpus("malformed_tinygltf/CubeImageUriSpaces", "CubeImageUriSpaces.gltf");
    std::string json = ReadBytes(model);
    const std::string plain = "\"2x2 image has spaces.png\"";
    json.replace(json.find(plain), plain.size(), "\"2x2%20image%20has%20spaces.png\"");
    testing::WriteBytes(model, json);

    const std::unique_ptr<Document> document = MustLoad(model);
    ASSERT_TRUE(document);
    EXPECT_EQ(OnlyMaterial(*document).TextureFile(),
              Absolute(scratch / "2x2 image has spaces.png"));
}

}  // namespace
}  // namespace railwright::document
