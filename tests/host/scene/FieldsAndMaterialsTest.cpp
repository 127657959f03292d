// Custom field slots, their values on groups and materials, and the material holders.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/scene/Scene.h"

namespace railwright::host::scene {
namespace {

// One kind of custom field, reached through the scene graph as the system reaches it.
struct FieldKind {
    const char* name;
    std::function<int32_t(SceneGraph&, const std::string&)> add;
    std::function<int32_t(SceneGraph&, const std::string&)> indexOf;
    std::function<const FieldSlots&(const Model&)> slots;
};

const FieldKind kFieldKinds[] = {
    {"group", [](SceneGraph& g, const std::string& n) { return g.AddGroupField(n); },
     [](SceneGraph& g, const std::string& n) { return g.GroupFieldIndex(n); },
     [](const Model& m) -> const FieldSlots& { return m.GroupFields(); }},
    {"material", [](SceneGraph& g, const std::string& n) { return g.AddMaterialField(n); },
     [](SceneGraph& g, const std::string& n) { return g.MaterialFieldIndex(n); },
     [](const Model& m) -> const FieldSlots& { return m.MaterialFields(); }},
};

TEST(SceneFields, SixSlotsPerKindThenNoRoom) {
    for (const FieldKind& kind : kFieldKinds) {
        SCOPED_TRACE(kind.name);
        Scene scene = Scene::Create();
        SceneGraph& graph = *scene.scripting->RootGroup()->SceneGraph();
        const std::vector<std::string> names{"One", "Two", "Three", "Four", "Five", "Rail Sim"};
        for (size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(kind.add(graph, names[i]), static_cast<int32_t>(i));
        }

        EXPECT_EQ(kind.add(graph, "Tx Alpha"), 6);
        EXPECT_EQ(kind.indexOf(graph, "Tx Alpha"), -1);  // no field was made
        EXPECT_EQ(kind.slots(*scene.model).Names(), names);

        EXPECT_EQ(kind.indexOf(graph, "Rail Sim"), 5);
        EXPECT_EQ(kind.indexOf(graph, "Three"), 2);
        EXPECT_EQ(kind.indexOf(graph, "rail sim"), -1);  // names match exactly
    }
}

TEST(SceneFields, GroupValuesBelongToEachGroup) {
    Scene scene = SceneBuilder().GroupFields({"Trainz", "MSTS"}).Group("A").Group("B").Build();
    Node& a = *scene.GroupNamed("A");
    Node& b = *scene.GroupNamed("B");

    a.SetCustomField(1, "Main");
    EXPECT_EQ(a.CustomField(1), "Main");
    EXPECT_EQ(b.CustomField(1), "");
    EXPECT_EQ(a.CustomField(0), "");

    for (int32_t bad : {-1, 2, 6}) {
        SCOPED_TRACE(bad);
        try {
            a.SetCustomField(bad, "x");
            FAIL() << "index " << bad << " was accepted";
        } catch (const HostError& error) {
            EXPECT_EQ(error.Number(), kHostErrorInvalidArgument);
        }
        EXPECT_THROW(a.CustomField(bad), HostError);
    }
}

TEST(SceneFields, MaterialValuesBelongToEachMaterial) {
    Scene scene = SceneBuilder()
                      .Group("Body")
                      .Box({0, 0, 0}, {1, 1, 1}, "body.tga")
                      .MaterialField("Tx Alpha", "Transparency")
                      .Material({.textureFile = "glass.png"})
                      .Build();
    Selection& holder = *scene.scripting->MaterialList(0);
    std::shared_ptr<Material> body = holder.Material(0);
    std::shared_ptr<Material> glass = holder.Material(1);
    const int32_t txAlpha = scene.model->MaterialFieldIndex("Tx Alpha");
    const int32_t alphaPr = scene.model->AddMaterialField("Alpha Pr");

    EXPECT_EQ(body->CustomField(txAlpha), "Transparency");
    EXPECT_EQ(glass->CustomField(txAlpha), "");
    glass->SetCustomField(alphaPr, "1");
    EXPECT_EQ(glass->CustomField(alphaPr), "1");
    EXPECT_EQ(body->CustomField(alphaPr), "");
    EXPECT_THROW(body->CustomField(alphaPr + 1), HostError);
    EXPECT_THROW(body->SetCustomField(-1, "x"), HostError);
}

TEST(SceneMaterials, HoldersListShapesInTheOrderMadeWithTheirMaps) {
    Scene scene = SceneBuilder()
                      .Group("Body")
                      .Box({0, 0, 0}, {1, 1, 1},
                           {.textureFile = "body.ace",
                            .transparencyMap = "body_alpha.bmp",
                            .translucencyLevel = 2,
                            .normalMap = "n.png",
                            .occlusionMap = "o.png",
                            .emissiveMap = "e.png",
                            .metallicRoughnessMap = "mr.png"})
                      .Group("Cab", "Body")
                      .Shape("cab windows", {{0, 0, 0}}, {.textureFile = "glass.tga"})
                      .Build();
    Scripting& scripting = *scene.scripting;
    ASSERT_EQ(scripting.MaterialListCount(), 2);
    EXPECT_EQ(scripting.MaterialList(0)->Name(), "Body");
    EXPECT_EQ(scripting.MaterialList(1)->Name(), "cab windows");
    EXPECT_TRUE(scripting.MaterialList(1)->Group()->IsSameGroup(*scene.GroupNamed("Cab")));
    EXPECT_THROW(scripting.MaterialList(2), HostError);

    Material& body = *scripting.MaterialList(0)->Material(0);
    EXPECT_EQ(body.TextureFile(), "body.ace");
    EXPECT_EQ(body.TransparencyMap(), "body_alpha.bmp");
    EXPECT_EQ(body.TranslucencyLevel(), 2);
    EXPECT_EQ(body.NormalMap(), "n.png");
    EXPECT_EQ(body.OcclusionMap(), "o.png");
    EXPECT_EQ(body.EmissiveMap(), "e.png");
    EXPECT_EQ(body.MetallicRoughnessMap(), "mr.png");
    EXPECT_THROW(scripting.MaterialList(0)->Material(1), HostError);
}

TEST(SceneMaterials, CountChangedCalls) {
    Scene scene = SceneBuilder().Group("Body").Box({0, 0, 0}, {1, 1, 1}).Build();
    std::shared_ptr<SceneMaterial> material = scene.model->MaterialHolders()[0]->Materials()[0];
    scene.scripting->MaterialList(0)->Material(0)->Changed(0);
    scene.scripting->MaterialList(0)->Material(0)->Changed(0);
    EXPECT_EQ(material->ChangedCount(), 2);
}

}  // namespace
}  // namespace railwright::host::scene
