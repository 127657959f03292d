#include "host/com/ComHost.h"

#include <utility>

namespace railwright::host::com {
namespace {

// The base of every binding: the host object and the call helper.
class Bound {
public:
    explicit Bound(ComPtr<IDispatch> object) : object_(std::move(object)) {}
    IDispatch* Dispatch() const { return object_.Get(); }

protected:
    DispatchObject object_;
};

// A host object that our objects hand back, or a HostError when the host returned none where
// one is needed.
ComPtr<IDispatch> Required(ComPtr<IDispatch> object, Member member) {
    if (!object) {
        throw HostError(static_cast<int32_t>(E_POINTER),
                        "The host's \"" + Narrow(MemberName(member)) + "\" returned no object.");
    }
    return object;
}

IDispatch* RequireOurs(IDispatch* object, std::string_view what) {
    if (object == nullptr) {
        throw HostError(static_cast<int32_t>(E_INVALIDARG),
                        std::string(what) + " is not an object of the host.");
    }
    return object;
}

class ComSceneGraph;

class ComSceneGroup final : public SceneGroup, public Bound {
public:
    using Bound::Bound;

    std::string Name() override { return object_.CallText(Member::Name); }
    void SetName(const std::string& name) override { object_.Call(Member::SetName, {name}); }
    std::shared_ptr<SceneGroup> Parent() override {
        ComPtr<IDispatch> parent = object_.CallObject(Member::Parent);
        return parent ? std::make_shared<ComSceneGroup>(std::move(parent)) : nullptr;
    }
    void MoveTo(SceneGroup& newParent) override {
        object_.Call(Member::MoveTo, {RequireOurs(DispatchOf(newParent), "The new parent")});
    }
    int32_t ShapeCount() override { return object_.CallLong(Member::ShapeCount); }
    Vector3 GetPosition(SceneGroup& frame, float time) override {
        Vector3 p;
        object_.Call(Member::GetPosition,
                     {RequireOurs(DispatchOf(frame), "The frame group"), time, &p.x, &p.y, &p.z});
        return p;
    }
    Bounds GetBounds(SceneGroup& frame, float time) override {
        Bounds b;
        object_.Call(Member::GetBounds, {RequireOurs(DispatchOf(frame), "The frame group"), time,
                                         &b.minX, &b.minY, &b.minZ, &b.maxX, &b.maxY, &b.maxZ});
        return b;
    }
    int32_t KeyCount() override { return object_.CallLong(Member::KeyCount); }
    void SetKey(SceneGroup& frame, float time, Vector3 position, Vector3 rotation) override {
        object_.Call(Member::SetKey, {RequireOurs(DispatchOf(frame), "The frame group"), time,
                                      position.x, position.y, position.z, rotation.x,
                                      rotation.y, rotation.z});
    }
    std::shared_ptr<host::SceneGraph> SceneGraph() override;
    std::string CustomField(int32_t fieldIndex) override {
        return object_.CallText(Member::CustomField, {fieldIndex});
    }
    void SetCustomField(int32_t fieldIndex, const std::string& value) override {
        object_.Call(Member::SetCustomField, {fieldIndex, value});
    }
    bool IsSameGroup(SceneGroup& other) override {
        auto* theirs = dynamic_cast<ComSceneGroup*>(&other);
        return theirs != nullptr && object_.SameObject(theirs->object_);
    }
};

std::shared_ptr<SceneGroup> MakeGroup(ComPtr<IDispatch> object, Member member) {
    return std::make_shared<ComSceneGroup>(Required(std::move(object), member));
}

class ComSceneGraph final : public SceneGraph, public Bound {
public:
    using Bound::Bound;

    Bounds BoundingBox(float time, int32_t flags, const std::string& excludePrefix,
                       int32_t reserved1, int32_t reserved2) override {
        Bounds b;
        object_.Call(Member::BoundingBox, {time, flags, excludePrefix, reserved1, reserved2,
                                           &b.minX, &b.minY, &b.minZ, &b.maxX, &b.maxY, &b.maxZ});
        return b;
    }
    int32_t GroupFieldIndex(const std::string& fieldName) override {
        return object_.CallLong(Member::GroupFieldIndex, {fieldName});
    }
    int32_t AddGroupField(const std::string& fieldName) override {
        return object_.CallLong(Member::AddGroupField, {fieldName});
    }
    int32_t MaterialFieldIndex(const std::string& fieldName) override {
        return object_.CallLong(Member::MaterialFieldIndex, {fieldName});
    }
    int32_t AddMaterialField(const std::string& fieldName) override {
        return object_.CallLong(Member::AddMaterialField, {fieldName});
    }
};

std::shared_ptr<host::SceneGraph> ComSceneGroup::SceneGraph() {
    return std::make_shared<ComSceneGraph>(
        Required(object_.CallObject(Member::SceneGraph), Member::SceneGraph));
}

class ComMaterial final : public Material, public Bound {
public:
    using Bound::Bound;

    std::string TextureFile() override { return object_.CallText(Member::TextureFile); }
    std::string TransparencyMap() override { return object_.CallText(Member::TransparencyMap); }
    int32_t TranslucencyLevel() override { return object_.CallLong(Member::TranslucencyLevel); }
    std::string CustomField(int32_t fieldIndex) override {
        return object_.CallText(Member::CustomField, {fieldIndex});
    }
    void SetCustomField(int32_t fieldIndex, const std::string& value) override {
        object_.Call(Member::SetCustomField, {fieldIndex, value});
    }
    void Changed(int32_t flags) override { object_.Call(Member::Changed, {flags}); }
    std::string NormalMap() override { return object_.CallText(Member::NormalMap); }
    std::string OcclusionMap() override { return object_.CallText(Member::OcclusionMap); }
    std::string EmissiveMap() override { return object_.CallText(Member::EmissiveMap); }
    std::string MetallicRoughnessMap() override {
        return object_.CallText(Member::MetallicRoughnessMap);
    }
};

class ComSelection final : public Selection, public Bound {
public:
    using Bound::Bound;

    std::shared_ptr<SceneGroup> Group() override {
        return MakeGroup(object_.CallObject(Member::Group), Member::Group);
    }
    void SetName(const std::string& name) override { object_.Call(Member::SetName, {name}); }
    std::string Name() override { return object_.CallText(Member::Name); }
    int32_t MaterialCount() override { return object_.CallLong(Member::MaterialCount); }
    std::shared_ptr<host::Material> Material(int32_t index) override {
        return std::make_shared<ComMaterial>(
            Required(object_.CallObject(Member::Material, {index}), Member::Material));
    }
};

class ComExporter final : public Exporter, public Bound {
public:
    using Bound::Bound;

    bool ExportShape(SceneGroup& mainGroup, const std::string& shapeFile,
                     const ShapeExportOptions& options) override {
        return object_.CallBool(Member::ExportShape,
                                {RequireOurs(DispatchOf(mainGroup), "The main group"), shapeFile,
                                 options.distanceLevels,
                                 static_cast<int32_t>(options.retainSubObjects ? 1 : 0)});
    }
    bool ExportIGS(const std::string& file) override {
        return object_.CallBool(Member::ExportIGS, {file});
    }
    bool ExportIA(const std::string& file) override {
        return object_.CallBool(Member::ExportIA, {file});
    }
};

class ComSimulatorLocator final : public SimulatorLocator, public Bound {
public:
    using Bound::Bound;

    std::string FindMSTS(const std::string& text, const std::string& applicationName) override {
        return object_.CallText(Member::FindMSTS, {text, applicationName});
    }
    std::string FindRailWorks(intptr_t ownerWindow, const std::string& applicationName) override {
        // Window handles fit in 32 bits on every Windows.
        return object_.CallText(Member::FindRailWorks,
                                {static_cast<int32_t>(ownerWindow), applicationName});
    }
};

// A host component, created by its registered name.
ComPtr<IDispatch> CreateComponent(std::wstring_view progId) {
    const std::wstring name(progId);
    CLSID clsid{};
    HRESULT result = CLSIDFromProgID(name.c_str(), &clsid);
    ComPtr<IDispatch> object;
    if (SUCCEEDED(result)) {
        result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                  IID_IDispatch, reinterpret_cast<void**>(object.Put()));
    }
    if (FAILED(result)) {
        throw HostError(static_cast<int32_t>(result),
                        "The host's component \"" + Narrow(progId) + "\" cannot be created.");
    }
    return object;
}

class ComApplication final : public Application, public Bound {
public:
    ComApplication(ComPtr<IDispatch> object, PluginFolders folders)
        : Bound(std::move(object)), folders_(std::move(folders)) {}

    std::string RegistryName() override { return object_.CallText(Member::RegistryName); }
    void Redraw(int32_t flags) override { object_.Call(Member::Redraw, {flags}); }
    void RefreshPanel(const std::string& panel) override {
        object_.Call(Member::RefreshPanel, {panel});
    }
    void SetStatus(int32_t status) override { object_.Call(Member::SetStatus, {status}); }
    std::string ToolsFolder() override { return folders_.tools; }
    std::string DocumentsFolder() override { return folders_.documents; }
    std::shared_ptr<SimulatorLocator> CreateSimulatorLocator() override {
        return std::make_shared<ComSimulatorLocator>(CreateComponent(kSimulatorLocatorProgId));
    }
    std::shared_ptr<host::Exporter> CreateExporter() override {
        return std::make_shared<ComExporter>(CreateComponent(kExporterProgId));
    }

private:
    PluginFolders folders_;
};

class ComHostContext final : public HostContext, public Bound {
public:
    ComHostContext(ComPtr<IDispatch> object, PluginFolders folders)
        : Bound(std::move(object)), folders_(std::move(folders)) {}

    std::shared_ptr<host::Application> Application() override {
        return std::make_shared<ComApplication>(
            Required(object_.CallObject(Member::Application), Member::Application), folders_);
    }

private:
    PluginFolders folders_;
};

class ComScripting final : public Scripting, public Bound {
public:
    using Bound::Bound;

    std::string ValueText(float value) override {
        return object_.CallText(Member::ValueText, {value});
    }
    std::string LengthText(float value) override {
        return object_.CallText(Member::LengthText, {value});
    }
    ViewArea GetViewArea() override {
        ViewArea a;
        object_.Call(Member::GetViewArea, {&a.x, &a.y, &a.z, &a.size, &a.extra});
        return a;
    }
    std::shared_ptr<SceneGroup> Group(int32_t index) override {
        return MakeGroup(object_.CallObject(Member::Group, {index}), Member::Group);
    }
    int32_t GroupCount() override { return object_.CallLong(Member::GroupCount); }
    std::shared_ptr<SceneGroup> RootGroup() override {
        return MakeGroup(object_.CallObject(Member::RootGroup), Member::RootGroup);
    }
    int32_t MaterialListCount() override { return object_.CallLong(Member::MaterialListCount); }
    std::shared_ptr<Selection> MaterialList(int32_t index) override {
        return std::make_shared<ComSelection>(
            Required(object_.CallObject(Member::MaterialList, {index}), Member::MaterialList));
    }
    Vector3 RotateAboutAxis(Vector3 point, Vector3 axis, float angle) override {
        Vector3 r;
        object_.Call(Member::RotateAboutAxis, {point.x, point.y, point.z, axis.x, axis.y, axis.z,
                                               angle, &r.x, &r.y, &r.z});
        return r;
    }
    void SetFlags(int32_t flags) override { object_.Call(Member::SetFlags, {flags}); }
    void SetMode(int32_t mode) override { object_.Call(Member::SetMode, {mode}); }
    int32_t LightCount() override { return object_.CallLong(Member::LightCount); }
    Light GetLight(int32_t index) override {
        Light l;
        int32_t kind = 0;
        object_.Call(Member::GetLight,
                     {index, &kind, &l.red, &l.green, &l.blue, &l.position.x, &l.position.y,
                      &l.position.z, &l.direction.x, &l.direction.y, &l.direction.z});
        l.kind = kind == 1 ? LightKind::Glow : LightKind::Ordinary;
        return l;
    }
    int32_t CollisionBoxCount() override { return object_.CallLong(Member::CollisionBoxCount); }
    CollisionBox GetCollisionBox(int32_t index) override {
        CollisionBox c;
        object_.Call(Member::GetCollisionBox,
                     {index, &c.referencePoint.x, &c.referencePoint.y, &c.referencePoint.z,
                      &c.groupOrigin.x, &c.groupOrigin.y, &c.groupOrigin.z, &c.box.minX,
                      &c.box.minY, &c.box.minZ, &c.box.maxX, &c.box.maxY, &c.box.maxZ});
        return c;
    }
};

}  // namespace

std::shared_ptr<Scripting> MakeScripting(ComPtr<IDispatch> scene) {
    return std::make_shared<ComScripting>(std::move(scene));
}

std::shared_ptr<HostContext> MakeHostContext(ComPtr<IDispatch> context, PluginFolders folders) {
    return std::make_shared<ComHostContext>(std::move(context), std::move(folders));
}

IDispatch* DispatchOf(SceneGroup& object) {
    auto* bound = dynamic_cast<Bound*>(&object);
    return bound != nullptr ? bound->Dispatch() : nullptr;
}

IDispatch* DispatchOf(HostContext& object) {
    auto* bound = dynamic_cast<Bound*>(&object);
    return bound != nullptr ? bound->Dispatch() : nullptr;
}

IDispatch* DispatchOf(Scripting& object) {
    auto* bound = dynamic_cast<Bound*>(&object);
    return bound != nullptr ? bound->Dispatch() : nullptr;
}

void ComViewer::Attach(HostContext& context, Scripting& scripting) {
    control_.Call(Member::Attach, {RequireOurs(DispatchOf(context), "The host context"),
                                   RequireOurs(DispatchOf(scripting), "The scripting object")});
}

float ComViewer::PointX() { return control_.CallFloat(Member::PointX); }
float ComViewer::PointY() { return control_.CallFloat(Member::PointY); }
float ComViewer::PointZ() { return control_.CallFloat(Member::PointZ); }
void ComViewer::SetPointX(float value) { control_.Put(Member::PointX, value); }
void ComViewer::SetPointY(float value) { control_.Put(Member::PointY, value); }
void ComViewer::SetPointZ(float value) { control_.Put(Member::PointZ, value); }
void ComViewer::LookAtPoint() { control_.Call(Member::LookAtPoint, {}); }
void ComViewer::EndPicking() { control_.Call(Member::EndPicking, {}); }

std::shared_ptr<host::Selection> ComViewer::Selection() {
    ComPtr<IDispatch> selection = control_.CallObject(Member::Selection);
    return selection ? std::make_shared<ComSelection>(std::move(selection)) : nullptr;
}

}  // namespace railwright::host::com
