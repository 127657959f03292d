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

// One material, what the default pass leaves in its fields ("Rail Sim", "Tx Alpha" and
// "Alpha Pr" joined by spaces), the values the fields start with, and whether it was visited.
struct MaterialCase {
    const char* name;
    MaterialProperties properties;
    const char* fields;
    std::vector<std::pair<const char*, const char*>> before = {};  // field name, value
    bool visited = true;
};

TEST(CustomFields, DefaultValuesFollowTheMaterialsAlpha) {
    const std::vector<MaterialCase> cases{
        {"translucent",
         {.textureFile = "glass.ace", .translucencyLevel = 3},
         "BlendATexDiff Translucency 2"},
        {"transparency map",
         {.textureFile = "fence.bmp", .transparencyMap = "fence_a.bmp"},
         "TexDiff Transparency 0"},
        {"short map name", {.textureFile = "wall.bmp", .transparencyMap = "ab"}, "TexDiff None 0"},
        {"tga texture", {.textureFile = "leaves.TGA"}, "TexDiff Transparency 0"},
        {"png normal map",
         {.textureFile = "body.jpg", .normalMap = "body_n.png"},
         "TexDiff Transparency 0"},
        {"bmp texture", {.textureFile = "roof.bmp"}, "TexDiff None 0"},
        {"two letters are unset",
         {.textureFile = "roof.dds"},
         "TexDiff Transparency 0",
         {{"Tx Alpha", "No"}}},
        {"rail sim kept",
         {.translucencyLevel = 1},
         "TexDiff Translucency 0",
         {{"Rail Sim", "TexDiff"}}},
        {"user's choice kept",
         {.translucencyLevel = 5},
         " None 7",
         {{"Tx Alpha", "None"}, {"Alpha Pr", "7"}},
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
        ASSERT_GE(fields.size(), 3u) << expected.name;
        EXPECT_EQ(fields[0] + " " + fields[1] + " " + fields[2], expected.fields) << expected.name;
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
