// The texture check over in-memory models: which textures are collected under which alpha kind,
// and which boxes the pass shows.
#include "export/textures/TextureCheck.h"

#include <gtest/gtest.h>

#include "export/ExportFixture.h"
#include "host/scene/Scene.h"
#include "support/SupportingFunctions.h"

namespace railwright::exporttextures {
namespace {

using host::scene::MaterialProperties;
using host::scene::Scene;
using host::scene::SceneBuilder;
using ::railwright::testing::ShownMessages;

struct CheckRun {
    bool ok = false;
    TextureList list;
    std::vector<std::string> messages;
};

CheckRun Check(const Scene& scene, std::string_view excludePrefix = support::kPlaceholderPrefix) {
    ui::script::ScriptedUserInterface ui{ui::script::EventScript{}};
    CheckRun run;
    run.ok = CheckTextures(ui, *scene.scripting, *scene.model, run.list, excludePrefix);
    run.messages = ShownMessages(ui);
    return run;
}

std::string Untextured(const std::string& holder) {
    return "Railwright: critical: Shape \"" + holder +
           "\" contains untextured faces. Rail Simulator and Microsoft Train Simulator requires "
           "that all faces be textured.";
}

TEST(CheckTextures, WithoutTheAlphaFieldEveryTextureIsRegisteredAsNone) {
    const Scene scene = SceneBuilder()
                            .Group("Main")
                            .Box({0, 0, 0}, {1, 1, 1}, "body.tga")
                            .Group("Roof", "Main")
                            .Box({0, 1, 0}, {1, 2, 1}, "roof.bmp")
                            .Build();
    const CheckRun run = Check(scene);
    EXPECT_TRUE(run.ok);
    EXPECT_EQ(run.list, (TextureList{{"body.tga", false, "None"}, {"roof.bmp", false, "None"}}));
    EXPECT_TRUE(run.messages.empty());
}

TEST(CheckTextures, OneEntryPerFileWhateverItsCaseWithTheHighestAlphaKind) {
    const Scene scene = SceneBuilder()
                            .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
                            .Group("Main")
                            .Box({0, 0, 0}, {1, 1, 1}, "body.tga")
                            .MaterialField("Tx Alpha", "None")
                            .Material({.textureFile = "BODY.TGA"})
                            .MaterialField("Tx Alpha", "Translucency")
                            .Material({.textureFile = "Body.tga"})
                            .MaterialField("Tx Alpha", "Transparency")
                            .Build();
    const CheckRun run = Check(scene);
    EXPECT_TRUE(run.ok);
    EXPECT_EQ(run.list, (TextureList{{"body.tga", false, "Translucency"}}));
    EXPECT_TRUE(run.messages.empty());
}

TEST(RegisterTexture, RanksTranslucencyAboveTransparencyAboveAnythingElse) {
    struct Case {
        std::vector<std::string> registrations;
        std::string kind;
    };
    const Case cases[] = {
        {{"None", "Transparency"}, "Transparency"},
        {{"Transparency", "None"}, "Transparency"},
        {{"Transparency", "Translucency"}, "Translucency"},
        {{"Translucency", "Transparency", "None"}, "Translucency"},
        {{"Opaque", "TRANSPARENCY"}, "TRANSPARENCY"},
        {{"None", "Opaque", ""}, "None"},
        {{"", "None"}, ""},
    };
    for (const Case& c : cases) {
        ui::script::ScriptedUserInterface ui{ui::script::EventScript{}};
        TextureList list;
        for (const std::string& kind : c.registrations) {
            RegisterTexture(ui, list, "a.tga", false, kind);
        }
        ASSERT_EQ(list.size(), 1u);
        EXPECT_EQ(list[0].alphaKind, c.kind) << c.registrations.front();
    }
}

TEST(RegisterTexture, OnlyEmptyAndTheThreeKindsAreValid) {
    ui::script::ScriptedUserInterface ui{ui::script::EventScript{}};
    TextureList list;
    for (const char* valid : {"", "none", "TRANSLUCENCY", "Transparency"}) {
        EXPECT_TRUE(RegisterTexture(ui, list, "a.tga", false, valid)) << valid;
    }
    for (const char* invalid : {"Opaque", " None", "Translucent"}) {
        EXPECT_FALSE(RegisterTexture(ui, list, "a.tga", false, invalid)) << invalid;
    }
}

TEST(CheckTextures, ShowsTheAlphaMisuseOncePerPassAndStillRegisters) {
    const Scene scene = SceneBuilder()
                            .Group("Main")
                            .Box({0, 0, 0}, {1, 1, 1}, "body.tga")
                            .MaterialField("Tx Alpha", "Opaque")
                            .Group("Cab", "Main")
                            .Box({0, 1, 0}, {1, 2, 1}, "cab.tga")
                            .MaterialField("Tx Alpha", "Solid")
                            .Build();
    const CheckRun run = Check(scene);
    EXPECT_TRUE(run.ok);
    EXPECT_EQ(run.list, (TextureList{{"body.tga", false, "Opaque"}, {"cab.tga", false, "Solid"}}));
    EXPECT_EQ(run.messages,
              std::vector<std::string>{
                  "Railwright: none: Shape \"Main\" uses the custom material field \"Tx Alpha\" "
                  "incorrectly. It has a value of \"Opaque\"."});
}

TEST(CheckTextures, EachUntexturedShapeGetsItsOwnMessageAndThePassFails) {
    const Scene scene = SceneBuilder()
                            .Group("Main")
                            .Box({0, 0, 0}, {1, 1, 1}, "ab")  // two characters name nothing
                            .Material({.textureFile = "never.tga"})
                            .Group("Cab", "Main")
                            .Box({0, 1, 0}, {1, 2, 1}, "cab.tga")
                            .Group("Roof", "Main")
                            .Box({0, 2, 0}, {1, 3, 1})
                            .Build();
    const CheckRun run = Check(scene);
    EXPECT_FALSE(run.ok);
    // The rest of an untextured holder is left; the other holders are still examined.
    EXPECT_EQ(run.list, (TextureList{{"cab.tga", false, "None"}}));
    EXPECT_EQ(run.messages, (std::vector<std::string>{Untextured("Main"), Untextured("Roof")}));
}

TEST(CheckTextures, LeavesOutPlaceholdersWhateverTheirCase) {
    const Scene scene = SceneBuilder()
                            .Group("Main")
                            .Box({0, 0, 0}, {1, 1, 1}, "body.tga")
                            .Group("railwrightplaceholder-stack1", "Main")
                            .Box({0, 3, 0}, {1, 4, 1})
                            .Build();
    const CheckRun run = Check(scene);
    EXPECT_TRUE(run.ok);
    EXPECT_TRUE(run.messages.empty());
    // Without a prefix nothing is left out.
    EXPECT_FALSE(Check(scene, "").ok);
}

TEST(CheckTextures, RegistersTheFurtherMapsAfterTheTextureWithItsAlphaKind) {
    const Scene scene = SceneBuilder()
                            .Group("Main")
                            .Box({0, 0, 0}, {1, 1, 1},
                                 MaterialProperties{.textureFile = "body.tga",
                                                    .transparencyMap = "mask.tga",
                                                    .normalMap = "normal.tga",
                                                    .occlusionMap = "ao",
                                                    .emissiveMap = "glow.tga",
                                                    .metallicRoughnessMap = "metal.tga"})
                            .MaterialField("Tx Alpha", "Transparency")
                            .Build();
    const CheckRun run = Check(scene);
    EXPECT_EQ(run.list, (TextureList{{"body.tga", true, "Transparency"},
                                     {"normal.tga", false, "Transparency"},
                                     {"mask.tga", false, "Transparency"},
                                     {"glow.tga", false, "Transparency"},
                                     {"metal.tga", false, "Transparency"}}));
}

TEST(CheckTextures, WarnsOnceWhenAFormatWithoutAlphaComesWithATransparencyMap) {
    const auto textured = [](const char* texture, const char* map, const char* kind) {
        return SceneBuilder()
            .Group("Main")
            .Box({0, 0, 0}, {1, 1, 1},
                 MaterialProperties{.textureFile = texture, .transparencyMap = map})
            .MaterialField("Tx Alpha", kind)
            .Material({.textureFile = texture, .transparencyMap = map})
            .MaterialField("Tx Alpha", kind)
            .Build();
    };
    const std::string lost =
        "Railwright: exclamation: Texture \"glass.bmp\" is used with a translucency map. This "
        "format doesn't support translucency. All translucency information will be lost.";
    EXPECT_EQ(Check(textured("glass.bmp", "glassmask.tga", "Translucency")).messages,
              (std::vector<std::string>{lost}));
    EXPECT_EQ(Check(textured("GLASS.JPG", "glassmask.tga", "transparency")).messages.size(), 1u);
    EXPECT_TRUE(Check(textured("glass.tga", "glassmask.tga", "Translucency")).messages.empty());
    EXPECT_TRUE(Check(textured("glass.bmp", "", "Translucency")).messages.empty());
    EXPECT_TRUE(Check(textured("glass.bmp", "glassmask.tga", "None")).messages.empty());
}

TEST(CheckTextures, AFailingHostEndsThePassWithTheResultAsItStood) {
    Scene scene = SceneBuilder()
                      .Group("Main")
                      .Box({0, 0, 0}, {1, 1, 1}, "body.tga")
                      .Group("Cab", "Main")
                      .Box({0, 1, 0}, {1, 2, 1}, "cab.tga")
                      .Build();
    scene.failures->FailOperation("Material.TextureFile", 1);
    const CheckRun run = Check(scene);
    EXPECT_TRUE(run.ok);
    EXPECT_EQ(run.list, (TextureList{{"body.tga", false, "None"}}));
    EXPECT_EQ(run.messages,
              std::vector<std::string>{"Railwright: critical: Material.TextureFile failed. (#" +
                                       std::to_string(host::kHostErrorFailed) + ")"});
}

}  // namespace
}  // namespace railwright::exporttextures
