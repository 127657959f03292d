// The pictures the document makes of a model's textures, checked against pixels read from the
// source images by other decoders (a PNG reader of our own in Python, ImageMagick for JPEG).
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "document/TextureImages.h"
#include "document/TexturePreparation.h"
#include "document/Uri.h"
#include "document/DocumentTesting.h"

namespace railwright::document {
namespace {

namespace fs = std::filesystem;
using testing::CorpusPath;
using testing::MustLoad;
using testing::ReadBytes;
using testing::ScratchFolder;
using testing::WriteBytes;
using Rgba = std::array<int, 4>;

// Every distinct texture file the model's materials paint with, in holder order.
std::vector<std::string> TextureFiles(Document& document) {
    host::Scripting& scripting = *document.Scene().scripting;
    std::vector<std::string> files;
    for (int32_t i = 0; i < scripting.MaterialListCount(); ++i) {
        const auto holder = scripting.MaterialList(i);
        for (int32_t m = 0; m < holder->MaterialCount(); ++m) {
            for (const std::string& file :
                 {holder->Material(m)->TextureFile(), holder->Material(m)->NormalMap()}) {
                if (!file.empty() && std::find(files.begin(), files.end(), file) == files.end()) {
                    files.push_back(file);
                }
            }
        }
    }
    return files;
}

// The pixel at (x, y) of the texture file named `name` that the model paints with.
std::optional<Rgba> PixelOf(Document& document, const std::string& name, int x, int y) {
    for (const std::string& file : TextureFiles(document)) {
        if (fs::path(file).filename() != name) {
            continue;
        }
        const DecodedPicture decoded = DecodePicture(ReadBytes(file));
        EXPECT_EQ(decoded.error, "") << file;
        const size_t at = (static_cast<size_t>(y) * decoded.picture.width + x) * 4;
        if (decoded.picture.rgba.size() < at + 4) {
            return std::nullopt;
        }
        const auto& rgba = decoded.picture.rgba;
        return Rgba{rgba[at], rgba[at + 1], rgba[at + 2], rgba[at + 3]};
    }
    ADD_FAILURE() << "no texture file " << name;
    return std::nullopt;
}

// Rewrites the copied model's JSON.
void EditModel(const fs::path& model, const std::function<void(nlohmann::json&)>& edit) {
    nlohmann::json json = nlohmann::json::parse(ReadBytes(model));
    edit(json);
    WriteBytes(model, json.dump());
}

// The box's one primitive again with a second material, which multiplies the same image by
// half red, full green, quarter blue and half alpha.
void AddTintedCopy(nlohmann::json& json) {
    nlohmann::json primitive = json["meshes"][0]["primitives"][0];
    primitive["material"] = 1;
    json["meshes"][0]["primitives"].push_back(primitive);
    json["materials"].push_back(
        {{"name", "Tinted"},
         {"pbrMetallicRoughness",
          {{"baseColorTexture", {{"index", 0}}}, {"baseColorFactor", {0.5, 1, 0.25, 0.5}}}}});
}

TEST(TexturePreparation, PicturesHoldTheSourcePixelsUnderTheImagesNames) {
    struct Case {
        const char* what;
        const char* corpus;
        const char* model;
        std::function<void(nlohmann::json&)> edit;
        const char* picture;
        int x, y;
        Rgba expected;
        int tolerance = 0;
    };
    const Case cases[] = {
        {"a PNG beside the model", "box_textured/glTF", "BoxTextured.gltf", nullptr,
         "CesiumLogoFlat.tga", 90, 9, {134, 187, 228, 255}},
        {"a PNG in the .glb", "box_textured/glTF-Binary", "BoxTextured.glb", nullptr,
         "BoxTextured_image0.tga", 90, 9, {134, 187, 228, 255}},
        {"a PNG in a data: URI", "box_textured/glTF", "BoxTextured.gltf",
         [](nlohmann::json& json) {
             const std::string png = ReadBytes(CorpusPath("box_textured/glTF/CesiumLogoFlat.png"));
             json["images"][0]["uri"] = "data:image/png;base64," + Base64Encode(png);
         },
         "BoxTextured_image0.tga", 90, 9, {134, 187, 228, 255}},
        {"a JPEG normal map", "clearcoat_test", "ClearCoatTest.gltf", nullptr,
         "PlasticWrap_normals.tga", 200, 300, {74, 124, 245, 255}, 3},
        {"a PNG with alpha", "clearcoat_test", "ClearCoatTest.gltf", nullptr,
         "PartialCoating_Alpha.tga", 100, 100, {0, 0, 0, 169}},
        // sRGB(linear(134) x 0.5) = 97, sRGB(linear(228) x 0.25) = 122, 255 x 0.5 = 128.
        {"a factor multiplied in, under a second name", "box_textured/glTF", "BoxTextured.gltf",
         AddTintedCopy, "CesiumLogoFlat_2.tga", 90, 9, {97, 187, 122, 128}},
        {"the untinted picture keeps the name", "box_textured/glTF", "BoxTextured.gltf",
         AddTintedCopy, "CesiumLogoFlat.tga", 90, 9, {134, 187, 228, 255}},
        // Main's base colour (0.3434, 0.2615, 0.0773) in sRGB.
        {"a material of one colour", "quaternius_train/gltf", "CargoTrain_Wagon.gltf", nullptr,
         "Main.tga", 0, 0, {158, 140, 79, 255}},
        {"a material of one colour without a texture", "animated_morph_cube",
         "AnimatedMorphCube.gltf", nullptr, "Material.tga", 7, 7, {204, 204, 204, 255}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        ScratchFolder scratch;
        const fs::path model = scratch.CopyCorpus(test.corpus, test.model, "model");
        if (test.edit) {
            EditModel(model, test.edit);
        }
        const std::unique_ptr<Document> document = MustLoad(model);
        ASSERT_TRUE(document);
        const TexturePreparation prepared = document->PrepareTextures((scratch / "cache").string());
        EXPECT_TRUE(prepared.notices.empty()) << prepared.notices.front();
        const std::optional<Rgba> pixel = PixelOf(*document, test.picture, test.x, test.y);
        ASSERT_TRUE(pixel);
        for (size_t c = 0; c < 4; ++c) {
            EXPECT_NEAR((*pixel)[c], test.expected[c], test.tolerance) << "channel " << c;
        }
        for (const std::string& file : TextureFiles(*document)) {
            EXPECT_EQ(fs::path(file).extension(), ".tga") << file;
            EXPECT_TRUE(fs::path(file).string().starts_with((scratch / "cache").string())) << file;
        }
    }
}

TEST(TexturePreparation, EachPictureIsMadeOnceAndTakenFromTheCacheAfterwards) {
    ScratchFolder scratch;
    // Nine materials paint with five images.
    const fs::path model =
        scratch.CopyCorpus("texture_transform_test", "TextureTransformTest.gltf", "model");
    const std::string cache = (scratch / "cache").string();
    for (const auto& [written, reused] : {std::pair{5u, 0u}, std::pair{0u, 5u}}) {
        const std::unique_ptr<Document> document = MustLoad(model);
        ASSERT_TRUE(document);
        const TexturePreparation prepared = document->PrepareTextures(cache);
        EXPECT_EQ(prepared.written, written);
        EXPECT_EQ(prepared.reused, reused);
        EXPECT_EQ(TextureFiles(*document).size(), 5u);
    }
    // The model's own file still names its PNGs.
    EXPECT_NE(ReadBytes(model).find(R"("uri": "UV.png")"), std::string::npos);
}

TEST(TexturePreparation, AnImageThatCannotBeDecodedKeepsItsFileWithANotice) {
    ScratchFolder scratch;
    const fs::path model = scratch.CopyCorpus("box_textured/glTF", "BoxTextured.gltf", "model");
    WriteBytes(scratch / "model" / "CesiumLogoFlat.png", "\x89PNG but not really");
    const std::unique_ptr<Document> document = MustLoad(model);
    ASSERT_TRUE(document);
    const TexturePreparation prepared = document->PrepareTextures((scratch / "cache").string());
    ASSERT_EQ(prepared.notices.size(), 1u);
    EXPECT_NE(prepared.notices[0].find("CesiumLogoFlat.png: it cannot be decoded"),
              std::string::npos)
        << prepared.notices[0];
    EXPECT_EQ(TextureFiles(*document),
              std::vector<std::string>{(scratch / "model" / "CesiumLogoFlat.png").string()});
}

TEST(TexturePreparation, CleaningRemovesPicturesUnusedForAMonthAndNothingElse) {
    ScratchFolder scratch;
    const fs::path cache = scratch / "cache";
    const auto folder = [&](const std::string& path, std::chrono::hours age) {
        fs::create_directories(cache / path);
        WriteBytes(cache / path / "picture.tga", "tga");
        fs::last_write_time(cache / path, fs::file_time_type::clock::now() - age);
    };
    const std::chrono::hours month{24 * 30};
    folder("old-0000aaaa/0123456789abcdef", month + std::chrono::hours(1));
    folder("mixed-0000bbbb/0123456789abcdef", month + std::chrono::hours(1));
    folder("mixed-0000bbbb/fedcba9876543210", std::chrono::hours(1));
    folder("mixed-0000bbbb/not-a-picture", month * 2);
    WriteBytes(cache / "notes.txt", "the user's");

    EXPECT_EQ(CleanTextureCache(cache, month), 2u);
    EXPECT_FALSE(fs::exists(cache / "old-0000aaaa"));
    EXPECT_FALSE(fs::exists(cache / "mixed-0000bbbb/0123456789abcdef"));
    EXPECT_TRUE(fs::exists(cache / "mixed-0000bbbb/fedcba9876543210/picture.tga"));
    EXPECT_TRUE(fs::exists(cache / "mixed-0000bbbb/not-a-picture"));
    EXPECT_TRUE(fs::exists(cache / "notes.txt"));
}

}  // namespace
}  // namespace railwright::document
