// The custom material fields that every opening ensures, and their default values.
#include <gtest/gtest.h>

#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

using host::scene::MaterialProperties;
using host::scene::SceneBuilder;

const std::string kFieldsCreated = Exclamation(
    "Two new custom materials \"Tx Alpha\" and \"Alpha Pr\" have been created. Default values "
    "have been set. \"Tx Alpha\" is set to \"Transparency\" for textures with transparency, "
    "\"Translucency\" for textures with translucency or to \"None\". \"Alpha Pr\" is for MSTS "
    "only and is set to a priority of 1 to indicate a possibility of viewing through multiple "
    "layers of translucency.");

TEST(CustomFields, AFreshModelGetsTheThreeFieldsInOrderAndOneNotice) {
    WizardScenario scenario(SceneBuilder().Group("Body").Box({0, 0, 0}, {1, 1, 1}).Build());
    scenario.RunEvents({});
    EXPECT_EQ(scenario.Scene().model->MaterialFields().Names(),
              (std::vector<std::string>{"Rail Sim", "Tx Alpha", "Alpha Pr"}));
    EXPECT_EQ(scenario.Messages(), std::vector<std::string>{kFieldsCreated});
    const wizard::MaterialFieldIndices& indices = scenario.Wizard().MaterialFields();
    EXPECT_EQ(indices.railSim, 0);
    EXPECT_EQ(indices.txAlpha, 1);
    EXPECT_EQ(indices.alphaPr, 2);
}

TEST(CustomFields, ExistingFieldsAreReusedWhateverTheirSlot) {
    WizardScenario scenario(SceneBuilder()
                                .MaterialFields({"Alpha Pr", "Colour", "Tx Alpha", "Rail Sim"})
                                .Group("Body")
                                .Box({0, 0, 0}, {1, 1, 1})
                                .Build());
    scenario.RunEvents({});
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(scenario.Scene().model->MaterialFields().Count(), 4);
    const wizard::MaterialFieldIndices& indices = scenario.Wizard().MaterialFields();
    EXPECT_EQ(indices.railSim, 3);
    EXPECT_EQ(indices.txAlpha, 2);
    EXPECT_EQ(indices.alphaPr, 0);
}

TEST(CustomFields, NoRoomForTxAlphaClosesTheWizardWhileItOpens) {
    WizardScenario scenario(SceneBuilder()
                                .MaterialFields({"A", "B", "C", "D", "E"})
                                .Group("Body")
                                .Box({0, 0, 0}, {1, 1, 1})
                                .Build());
    scenario.RunEvents({Click("chkTrainz")});
    EXPECT_EQ(scenario.Messages(),
              std::vector<std::string>{Exclamation(
                  "Too many custom material fields defined. Please create a custom material field "
                  "called \"Tx Alpha\" by selecting \"Properties\" from the \"File\" menu.")});
    EXPECT_EQ(scenario.Scene().model->MaterialFields().Names().back(), "Rail Sim");
    EXPECT_FALSE(scenario.Wizard().IsLoaded());
    EXPECT_EQ(scenario.Ui().EventsLeft(), 1u);
}

// One material, the values its fields start with, and what the default pass leaves in them.
struct MaterialCase {
    const char* name;
    MaterialProperties properties;
    std::vector<std::pair<const char*, const char*>> before;  // field name, value
    const char* railSim;
    const char* txAlpha;
    const char* alphaPr;
    bool visited;
};

TEST(CustomFields, DefaultValuesFollowTheMaterialsAlpha) {
    const std::vector<MaterialCase> cases{
        {"translucent",
         {.textureFile = "glass.ace", .translucencyLevel = 3},
         {},
         "BlendATexDiff",
         "Translucency",
         "2",
         true},
        {"transparency map",
         {.textureFile = "fence.bmp", .transparencyMap = "fence_a.bmp"},
         {},
         "TexDiff",
         "Transparency",
         "0",
         true},
        {"short map name",
         {.textureFile = "wall.bmp", .transparencyMap = "ab"},
         {},
         "TexDiff",
         "None",
         "0",
         true},
        {"tga texture", {.textureFile = "leaves.TGA"}, {}, "TexDiff", "Transparency", "0", true},
        {"png normal map",
         {.textureFile = "body.jpg", .normalMap = "body_n.png"},
         {},
         "TexDiff",
         "Transparency",
         "0",
         true},
        {"bmp texture", {.textureFile = "roof.bmp"}, {}, "TexDiff", "None", "0", true},
        {"two letters are unset",
         {.textureFile = "roof.dds"},
         {{"Tx Alpha", "No"}},
         "TexDiff",
         "Transparency",
         "0",
         true},
        {"rail sim kept",
         {.translucencyLevel = 1},
         {{"Rail Sim", "TexDiff"}},
         "TexDiff",
         "Translucency",
         "0",
         true},
        {"user's choice kept",
         {.translucencyLevel = 5},
         {{"Tx Alpha", "None"}, {"Alpha Pr", "7"}},
         "",
         "None",
         "7",
         false},
    };
    SceneBuilder builder;
    builder.MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"}).Group("Body");
    for (const MaterialCase& material : cases) {
        builder.Box({0, 0, 0}, {1, 1, 1}, material.properties);
        for (const auto& [field, value] : material.before) {
            builder.MaterialField(field, value);
        }
    }
    WizardScenario scenario(builder.Build());
    scenario.RunEvents({});  // never stored: the upgrade sets the defaults
    EXPECT_TRUE(scenario.Messages().empty());

    const auto& holders = scenario.Scene().model->MaterialHolders();
    ASSERT_EQ(holders.size(), cases.size());
    for (size_t i = 0; i < cases.size(); ++i) {
        const MaterialCase& expected = cases[i];
        auto material =
            std::dynamic_pointer_cast<host::scene::SceneMaterial>(holders[i]->Material(0));
        ASSERT_NE(material, nullptr);
        const auto& fields = material->CustomFields();
        EXPECT_EQ(fields[0], expected.railSim) << expected.name;
        EXPECT_EQ(fields[1], expected.txAlpha) << expected.name;
        EXPECT_EQ(fields[2], expected.alphaPr) << expected.name;
        EXPECT_EQ(material->ChangedCount(), expected.visited ? 1 : 0) << expected.name;
    }
}

TEST(CustomFields, AStoredProjectKeepsItsMaterialValues) {
    host::scene::Scene scene = SceneBuilder()
                                   .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
                                   .Group("Body")
                                   .Box({0, 0, 0}, {1, 1, 1}, "leaves.tga")
                                   .Build();
    WizardScenario scenario(scene);
    scenario.Settings() = CurrentSettings();
    scenario.RunEvents({});
    auto material = std::dynamic_pointer_cast<host::scene::SceneMaterial>(
        scene.model->MaterialHolders()[0]->Material(0));
    EXPECT_EQ(material->CustomFields()[1], "");
    EXPECT_EQ(material->ChangedCount(), 0);
}

}  // namespace
}  // namespace railwright::testing
