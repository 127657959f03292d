// Geometry as the extensions and the less common accessors give it: turned texture coordinates,
// quantized and sparse data, points and lines.
#include <gtest/gtest.h>

#include <cstring>

#include "document/DocumentTesting.h"
#include "document/Uri.h"

namespace railwright::document {
namespace {

namespace fs = std::filesystem;
using testing::CorpusPath;
using testing::MustLoad;
using testing::ScratchFolder;
using testing::WriteBytes;

// The shape of the first group whose mesh has this name.
const host::scene::Shape& ShapeOf(Document& document, const std::string& mesh) {
    for (const auto& group : document.Scene().model->GroupOrder()) {
        for (const host::scene::Shape& shape : group->Shapes()) {
            if (shape.holder && shape.holder->NameValue() == mesh) {
                return shape;
            }
        }
    }
    throw std::runtime_error("no mesh " + mesh);
}

TEST(MeshSurface, TextureTransformsTurnTheCoordinatesOfTheirMaterials) {
    const std::unique_ptr<Document> document =
        MustLoad(CorpusPath("texture_transform_test/TextureTransformTest.gltf"));
    ASSERT_TRUE(document);
    // The second corner's coordinates, (0.5, 0) in the offset meshes and (1, 0) in the others,
    // under each material's transform.
    const struct {
        const char* mesh;
        float u, v;
    } cases[] = {
        {"Correct Marker", 1.0f, 0.0f},
        {"Offset U", 1.0f, 0.0f},
        {"Offset UV", 1.0f, 0.5f},
        {"Rotation", 0.92387953f, -0.38268343f},
        {"Scale", 1.5f, 0.0f},
        {"All", 1.23300469f, -0.54328030f},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.mesh);
        const host::scene::Shape& shape = ShapeOf(*document, test.mesh);
        ASSERT_EQ(shape.texCoords.size(), 4u);
        EXPECT_NEAR(shape.texCoords[1].u, test.u, 1e-6f);
        EXPECT_NEAR(shape.texCoords[1].v, test.v, 1e-6f);
    }
}

// A triangle with quantized attributes in a data: URI buffer, laid out as KHR_mesh_quantization
// has it (every element on four bytes): positions as whole shorts, normals as normalised bytes,
// texture coordinates as whole bytes of which a sparse accessor replaces the third; and a line
// strip over the same positions.
nlohmann::json QuantizedTriangle(bool declared) {
    std::string bytes;
    const auto put = [&bytes](const auto& value) {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    for (const auto& corner : {std::array<int16_t, 4>{0, 0, 0, 0}, {2, 0, 0, 0}, {0, 3, -1, 0}}) {
        put(corner);  // 0: positions, 24 bytes
    }
    for (int i = 0; i < 3; ++i) {
        put(std::array<int8_t, 4>{0, 0, 127, 0});  // 24: normals, 12 bytes
    }
    for (const auto& uv : {std::array<uint8_t, 4>{0, 0, 0, 0}, {4, 0, 0, 0}, {9, 9, 0, 0}}) {
        put(uv);  // 36: texture coordinates, 12 bytes
    }
    put(std::array<uint8_t, 4>{2, 0, 0, 0});  // 48: the sparse index
    put(std::array<uint8_t, 4>{0, 4, 0, 0});  // 52: its value
    nlohmann::json json = {
        {"asset", {{"version", "2.0"}}},
        {"scenes", {{{"nodes", {0}}}}},
        {"nodes", {{{"mesh", 0}, {"name", "Triangle"}}}},
        {"meshes",
         {{{"name", "Quantized"},
           {"primitives",
            {{{"attributes", {{"POSITION", 0}, {"NORMAL", 1}, {"TEXCOORD_0", 2}}}},
             {{"attributes", {{"POSITION", 0}}}, {"mode", 3}}}}}}},
        {"buffers",
         {{{"byteLength", bytes.size()},
           {"uri", "data:application/octet-stream;base64," + Base64Encode(bytes)}}}},
        {"bufferViews",
         {{{"buffer", 0}, {"byteOffset", 0}, {"byteLength", 24}, {"byteStride", 8}},
          {{"buffer", 0}, {"byteOffset", 24}, {"byteLength", 12}, {"byteStride", 4}},
          {{"buffer", 0}, {"byteOffset", 36}, {"byteLength", 12}, {"byteStride", 4}},
          {{"buffer", 0}, {"byteOffset", 48}, {"byteLength", 1}},
          {{"buffer", 0}, {"byteOffset", 52}, {"byteLength", 2}}}},
        {"accessors",
         {{{"bufferView", 0}, {"componentType", 5122}, {"count", 3}, {"type", "VEC3"},
           {"min", {0, 0, -1}}, {"max", {2, 3, 0}}},
          {{"bufferView", 1}, {"componentType", 5120}, {"normalized", true}, {"count", 3},
           {"type", "VEC3"}},
          {{"bufferView", 2},
           {"componentType", 5121},
           {"count", 3},
           {"type", "VEC2"},
           {"sparse",
            {{"count", 1},
             {"indices", {{"bufferView", 3}, {"componentType", 5121}}},
             {"values", {{"bufferView", 4}}}}}}}}};
    if (declared) {
        json["extensionsUsed"] = json["extensionsRequired"] = {"KHR_mesh_quantization"};
    }
    return json;
}

TEST(MeshSurface, QuantizedAndSparseAccessorsReadAndLinesAreLeftOutWithANotice) {
    ScratchFolder scratch;
    WriteBytes(scratch / "triangle.gltf", QuantizedTriangle(true).dump());
    const std::unique_ptr<Document> document = MustLoad(scratch / "triangle.gltf");
    ASSERT_TRUE(document);
    const host::scene::Shape& shape = ShapeOf(*document, "Quantized");
    // The scene's X runs the other way from glTF's.
    EXPECT_EQ(shape.vertices, (std::vector<host::Vector3>{{-0.0f, 0, 0}, {-2, 0, 0}, {-0.0f, 3, -1}}));
    EXPECT_EQ(shape.normals, (std::vector<host::Vector3>(3, {0, 0, 1})));
    EXPECT_EQ(shape.texCoords, (std::vector<host::scene::TexCoord>{{0, 0}, {4, 0}, {0, 4}}));
    ASSERT_EQ(shape.triangles.size(), 1u);
    EXPECT_EQ(shape.triangles[0].corners, (std::vector<uint32_t>{0, 1, 2}));
    EXPECT_EQ(document->Notices(),
              std::vector<std::string>{
                  "1 primitive of points or lines was left out: a shape holds triangles only."});

    // Without the extension declared, whole-number positions are not glTF.
    WriteBytes(scratch / "undeclared.gltf", QuantizedTriangle(false).dump());
    const LoadResult refused = Document::Load((scratch / "undeclared.gltf").string());
    EXPECT_FALSE(refused.document);
    EXPECT_NE(refused.error.find("does not hold floats"), std::string::npos) << refused.error;
}

}  // namespace
}  // namespace railwright::document
