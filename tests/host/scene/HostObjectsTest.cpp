// The application, its locator and exporter, the viewer, and failure injection.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/scene/Scene.h"

namespace railwright::host::scene {
namespace {

TEST(SceneApplication, LocatorsReportTheConfiguredInstallations) {
    Scene scene = Scene::Create();
    Application& application = *scene.application;
    EXPECT_EQ(application.CreateSimulatorLocator()->FindMSTS("", "Polyforge"), "");

    scene.application->SetSimulators({"C:\\Games\\MSTS\\train.exe", "C:\\RailWorks"});
    std::shared_ptr<SimulatorLocator> locator = application.CreateSimulatorLocator();
    EXPECT_EQ(locator->FindMSTS("C:\\Old", "Polyforge"), "C:\\Games\\MSTS\\train.exe");
    EXPECT_EQ(locator->FindRailWorks(0, "Polyforge"), "C:\\RailWorks");
    EXPECT_EQ(scene.application->LocatorCalls(),
              (std::vector<std::string>{"FindMSTS  Polyforge", "FindMSTS C:\\Old Polyforge",
                                        "FindRailWorks 0 Polyforge"}));
}

TEST(SceneApplication, ExportersRecordAndCallThePluggedWriters) {
    Scene scene = SceneBuilder().Group("Main").Build();
    std::vector<std::string> written;
    scene.application->SetExporterBehaviour(
        {[&](SceneGroup& group, const std::string& file, const ShapeExportOptions&) {
             written.push_back(group.Name() + " -> " + file);
             return true;
         },
         nullptr, [](const std::string&) { return false; }});
    std::shared_ptr<Exporter> exporter = scene.application->CreateExporter();

    EXPECT_TRUE(exporter->ExportShape(*scene.GroupNamed("Main"), "/out/loco.s", {}));
    EXPECT_TRUE(exporter->ExportIGS("/out/loco.igs"));
    EXPECT_FALSE(exporter->ExportIA("/out/loco.ia"));
    scene.application->SetExportShapeResult(false);
    EXPECT_FALSE(scene.application->CreateExporter()->ExportShape(*scene.GroupNamed("Main"),
                                                                 "/out/again.s", {}));

    EXPECT_EQ(written, (std::vector<std::string>{"Main -> /out/loco.s"}));
    EXPECT_EQ(scene.application->ExportCalls(),
              (std::vector<std::string>{"ExportShape Main /out/loco.s", "ExportIGS /out/loco.igs",
                                        "ExportIA /out/loco.ia", "ExportShape Main /out/again.s"}));
}

TEST(SceneViewer, PicksBecomeTheSelectionAndRunTheHandler) {
    Scene scene = SceneBuilder().Group("Body").Group("Wheel", "Body").Build();
    SceneViewer& viewer = *scene.viewer;
    std::vector<std::string> seen;
    viewer.OnPick([&] {
        std::shared_ptr<Selection> selection = viewer.Selection();
        seen.push_back(selection ? selection->Group()->Name() : "nothing");
    });
    EXPECT_EQ(viewer.Selection(), nullptr);

    viewer.Pick(scene.GroupNamed("Wheel"));
    viewer.Selection()->SetName("Wheels11");
    viewer.Pick(nullptr);

    EXPECT_EQ(seen, (std::vector<std::string>{"Wheel", "nothing"}));
    EXPECT_EQ(viewer.Selection(), nullptr);
}

TEST(SceneViewer, RecordsAttachLookAtPointAndEndPicking) {
    Scene scene = Scene::Create();
    SceneViewer& viewer = *scene.viewer;
    viewer.Attach(*scene.hostContext, *scene.scripting);
    viewer.SetPointX(1.5f);
    viewer.SetPointY(0);
    viewer.SetPointZ(-2);
    viewer.LookAtPoint();
    viewer.SetPointX(7);
    viewer.EndPicking();
    viewer.Pick(scene.model->Root());
    viewer.Selection()->SetName("Main");

    EXPECT_EQ(viewer.Calls(),
              (std::vector<std::string>{"Attach", "LookAtPoint 1.5 0 -2", "EndPicking"}));
    EXPECT_EQ(viewer.PointX(), 7);
    EXPECT_EQ(viewer.EndPickingCount(), 1);
    EXPECT_EQ(viewer.Picked()->NamesSet(), (std::vector<std::string>{"Main"}));
}

// Every host operation of the scene, called once.
std::vector<std::pair<std::string, std::function<void()>>> EveryOperation(Scene& scene) {
    std::shared_ptr<Node> body = scene.GroupNamed("Body");
    std::shared_ptr<Node> root = scene.model->Root();
    std::shared_ptr<SceneSelection> holder = scene.model->MaterialHolders()[0];
    std::shared_ptr<SceneMaterial> material = holder->Materials()[0];
    // Plain pointers: the calls outlive this function's locals, not the scene.
    Scripting* scripting = scene.scripting.get();
    SceneApplication* application = scene.application.get();
    SceneViewer* viewer = scene.viewer.get();
    Model* model = scene.model.get();
    HostContext* context = scene.hostContext.get();
    return {
        {"Scripting.ValueText", [=] { scripting->ValueText(1); }},
        {"Scripting.LengthText", [=] { scripting->LengthText(1); }},
        {"Scripting.GetViewArea", [=] { scripting->GetViewArea(); }},
        {"Scripting.Group", [=] { scripting->Group(0); }},
        {"Scripting.GroupCount", [=] { scripting->GroupCount(); }},
        {"Scripting.RootGroup", [=] { scripting->RootGroup(); }},
        {"Scripting.MaterialListCount", [=] { scripting->MaterialListCount(); }},
        {"Scripting.MaterialList", [=] { scripting->MaterialList(0); }},
        {"Scripting.RotateAboutAxis", [=] { scripting->RotateAboutAxis({}, {1, 0, 0}, 1); }},
        {"Scripting.SetFlags", [=] { scripting->SetFlags(8); }},
        {"Scripting.SetMode", [=] { scripting->SetMode(1); }},
        {"Scripting.LightCount", [=] { scripting->LightCount(); }},
        {"Scripting.GetLight", [=] { scripting->GetLight(0); }},
        {"Scripting.CollisionBoxCount", [=] { scripting->CollisionBoxCount(); }},
        {"Scripting.GetCollisionBox", [=] { scripting->GetCollisionBox(0); }},
        {"SceneGroup.Name", [=] { body->Name(); }},
        {"SceneGroup.SetName", [=] { body->SetName("Body"); }},
        {"SceneGroup.Parent", [=] { body->Parent(); }},
        {"SceneGroup.MoveTo", [=] { body->MoveTo(*root); }},
        {"SceneGroup.ShapeCount", [=] { body->ShapeCount(); }},
        {"SceneGroup.GetPosition", [=] { body->GetPosition(*root, kCurrentPose); }},
        {"SceneGroup.GetBounds", [=] { body->GetBounds(*root, kCurrentPose); }},
        {"SceneGroup.KeyCount", [=] { body->KeyCount(); }},
        {"SceneGroup.SetKey", [=] { body->SetKey(*root, 1, {}, {}); }},
        {"SceneGroup.SceneGraph", [=] { body->SceneGraph(); }},
        {"SceneGroup.CustomField", [=] { body->CustomField(0); }},
        {"SceneGroup.SetCustomField", [=] { body->SetCustomField(0, "x"); }},
        {"SceneGraph.BoundingBox", [=] { model->BoundingBox(kCurrentPose, 11, "", 0, 0); }},
        {"SceneGraph.GroupFieldIndex", [=] { model->GroupFieldIndex("MSTS"); }},
        {"SceneGraph.AddGroupField", [=] { model->AddGroupField("BVE"); }},
        {"SceneGraph.MaterialFieldIndex", [=] { model->MaterialFieldIndex("Tx Alpha"); }},
        {"SceneGraph.AddMaterialField", [=] { model->AddMaterialField("Alpha Pr"); }},
        {"Selection.Group", [=] { holder->Group(); }},
        {"Selection.SetName", [=] { holder->SetName("Body"); }},
        {"Selection.Name", [=] { holder->Name(); }},
        {"Selection.MaterialCount", [=] { holder->MaterialCount(); }},
        {"Selection.Material", [=] { holder->Material(0); }},
        {"Material.TextureFile", [=] { material->TextureFile(); }},
        {"Material.TransparencyMap", [=] { material->TransparencyMap(); }},
        {"Material.TranslucencyLevel", [=] { material->TranslucencyLevel(); }},
        {"Material.CustomField", [=] { material->CustomField(0); }},
        {"Material.SetCustomField", [=] { material->SetCustomField(0, "x"); }},
        {"Material.Changed", [=] { material->Changed(0); }},
        {"Material.NormalMap", [=] { material->NormalMap(); }},
        {"Material.OcclusionMap", [=] { material->OcclusionMap(); }},
        {"Material.EmissiveMap", [=] { material->EmissiveMap(); }},
        {"Material.MetallicRoughnessMap", [=] { material->MetallicRoughnessMap(); }},
        {"HostContext.Application", [=] { context->Application(); }},
        {"Application.RegistryName", [=] { application->RegistryName(); }},
        {"Application.Redraw", [=] { application->Redraw(1); }},
        {"Application.RefreshPanel", [=] { application->RefreshPanel("SysProperties"); }},
        {"Application.SetStatus", [=] { application->SetStatus(100); }},
        {"Application.ToolsFolder", [=] { application->ToolsFolder(); }},
        {"Application.DocumentsFolder", [=] { application->DocumentsFolder(); }},
        {"Application.CreateSimulatorLocator", [=] { application->CreateSimulatorLocator(); }},
        {"Application.CreateExporter", [=] { application->CreateExporter(); }},
        {"Viewer.Attach", [=] { viewer->Attach(*context, *scripting); }},
        {"Viewer.PointX", [=] { viewer->PointX(); }},
        {"Viewer.PointY", [=] { viewer->PointY(); }},
        {"Viewer.PointZ", [=] { viewer->PointZ(); }},
        {"Viewer.SetPointX", [=] { viewer->SetPointX(1); }},
        {"Viewer.SetPointY", [=] { viewer->SetPointY(1); }},
        {"Viewer.SetPointZ", [=] { viewer->SetPointZ(1); }},
        {"Viewer.LookAtPoint", [=] { viewer->LookAtPoint(); }},
        {"Viewer.EndPicking", [=] { viewer->EndPicking(); }},
        {"Viewer.Selection", [=] { viewer->Selection(); }},
        {"Viewer.OnPick", [=] { viewer->OnPick([] {}); }},
    };
}

Scene SceneForEveryOperation() {
    return SceneBuilder()
        .GroupFields({"MSTS"})
        .Group("Body")
        .Box({0, 0, 0}, {1, 1, 1}, "body.ace")
        .MaterialField("Tx Alpha", "None")
        .Light({})
        .CollisionBox({})
        .Build();
}

TEST(SceneFailures, EveryOperationFailsWhenAskedAndOnlyThen) {
    Scene scene = SceneForEveryOperation();
    const auto operations = EveryOperation(scene);
    for (const auto& [name, call] : operations) {
        SCOPED_TRACE(name);
        EXPECT_NO_THROW(call());
    }

    scene.failures->FailEveryOperation(true);
    for (const auto& [name, call] : operations) {
        SCOPED_TRACE(name);
        try {
            call();
            ADD_FAILURE() << name << " did not fail";
        } catch (const HostError& error) {
            EXPECT_EQ(error.Number(), kHostErrorFailed);
            EXPECT_EQ(error.Description(), name + " failed.");
        }
        EXPECT_EQ(scene.failures->CallCount(name), 2);
    }

    // Exporter and locator operations go through objects that must be created first.
    scene.failures->FailEveryOperation(false);
    std::shared_ptr<Exporter> exporter = scene.application->CreateExporter();
    std::shared_ptr<SimulatorLocator> locator = scene.application->CreateSimulatorLocator();
    scene.failures->FailEveryOperation(true);
    EXPECT_THROW(exporter->ExportShape(*scene.GroupNamed("Body"), "x.s", {}), HostError);
    EXPECT_THROW(exporter->ExportIGS("x.igs"), HostError);
    EXPECT_THROW(exporter->ExportIA("x.ia"), HostError);
    EXPECT_THROW(locator->FindMSTS("", "Polyforge"), HostError);
    EXPECT_THROW(locator->FindRailWorks(0, "Polyforge"), HostError);
    EXPECT_TRUE(scene.application->ExportCalls().empty());
}

TEST(SceneFailures, OneOperationFailsAfterItsAllowance) {
    Scene scene = SceneBuilder().Group("Main").Group("Wheels1", "Main").Build();
    Node& main = *scene.GroupNamed("Main");
    Node& wheels = *scene.GroupNamed("Wheels1");
    scene.failures->FailOperation("SceneGroup.SetKey", 2);

    wheels.SetKey(main, 1, {}, {});
    wheels.SetKey(main, 2, {}, {});
    EXPECT_THROW(wheels.SetKey(main, 3, {}, {}), HostError);
    EXPECT_THROW(wheels.SetKey(main, 4, {}, {}), HostError);
    EXPECT_EQ(wheels.KeyCount(), 2);  // keys set before the failure stay
    EXPECT_EQ(wheels.Name(), "Wheels1");

    scene.failures->FailOperation("SceneGroup.MoveTo");
    EXPECT_THROW(wheels.MoveTo(*scene.model->Root()), HostError);
    EXPECT_TRUE(wheels.Parent()->IsSameGroup(main));

    scene.failures->Clear();
    wheels.SetKey(main, 5, {}, {});
    EXPECT_EQ(wheels.KeyCount(), 3);
    EXPECT_EQ(scene.failures->CallCount("SceneGroup.SetKey"), 5);
}

}  // namespace
}  // namespace railwright::host::scene
