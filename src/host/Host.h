// The host's object model: the only way the system reaches the model it works on.
//
// Every operation either returns its result or throws HostError (the host's failing status).
// Implementations: host/scene (an in-memory scene, used by the tests and the model document) and
// host/com (the modeller's COM objects on Windows).
//
// Conventions of this seam:
//  - text is UTF-8 std::string; a COM binding converts to and from wide strings at its edge;
//  - coordinates are 32-bit floats in the model's units (metres), counts and indices int32_t;
//  - objects are handed out as std::shared_ptr and stay valid while held; two handles to the same
//    host object compare equal through IsSameGroup.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace railwright::host {

// A failing status of a host operation.
class HostError : public std::runtime_error {
public:
    HostError(int32_t number, std::string description);

    int32_t Number() const { return number_; }
    const std::string& Description() const { return description_; }

private:
    int32_t number_;
    std::string description_;
};

// The host's own error numbers; the reporter shows their descriptions as they stand.
inline constexpr int32_t kHostErrorFailed = static_cast<int32_t>(0x80040001u);
inline constexpr int32_t kHostErrorInvalidArgument = static_cast<int32_t>(0x80040002u);

// The time argument that asks for the current pose rather than an animation key.
inline constexpr float kCurrentPose = -1.0f;

struct Vector3 {
    float x = 0;
    float y = 0;
    float z = 0;
    bool operator==(const Vector3&) const = default;
};

struct Bounds {
    float minX = 0;
    float minY = 0;
    float minZ = 0;
    float maxX = 0;
    float maxY = 0;
    float maxZ = 0;
    bool operator==(const Bounds&) const = default;
};

// Scripting.GetViewArea: the model's view area; `extra` is not used by the system.
struct ViewArea {
    float x = 0;
    float y = 0;
    float z = 0;
    float size = 0;
    float extra = 0;
};

// A light of the model (its light list), as the lights section of an engine or wagon file needs.
enum class LightKind {
    Ordinary,  // written with Type ( 1 ): a spot with radius and angle
    Glow,      // the second kind, written with Type ( 0 ): a glow with an azimuth
};

struct Light {
    LightKind kind = LightKind::Ordinary;
    float red = 1;  // colour components 0 to 1
    float green = 1;
    float blue = 1;
    Vector3 position;   // in the root group's frame
    Vector3 direction;  // unit vector the light points along
};

// A collision box of the model as the shape data file needs it: the box's reference point P, the
// origin Q of the group that owns it, and the box's corners, all in the root group's frame.
struct CollisionBox {
    Vector3 referencePoint;
    Vector3 groupOrigin;
    Bounds box;
};

class SceneGraph;

class SceneGroup {
public:
    virtual ~SceneGroup() = default;

    virtual std::string Name() = 0;
    virtual void SetName(const std::string& name) = 0;
    // The parent group; null for the root group.
    virtual std::shared_ptr<SceneGroup> Parent() = 0;
    // Moves the group under newParent, keeping its world position.
    virtual void MoveTo(SceneGroup& newParent) = 0;
    // Number of shapes directly in this group.
    virtual int32_t ShapeCount() = 0;
    // The group's origin in the frame of `frame` at `time` (kCurrentPose: the current pose).
    virtual Vector3 GetPosition(SceneGroup& frame, float time) = 0;
    // The bounds of the group's geometry, children included, in the frame of `frame`.
    virtual Bounds GetBounds(SceneGroup& frame, float time) = 0;
    virtual int32_t KeyCount() = 0;
    // Sets an animation key: position and rotation (Euler angles in radians) relative to `frame`.
    virtual void SetKey(SceneGroup& frame, float time, Vector3 position, Vector3 rotation) = 0;
    virtual std::shared_ptr<host::SceneGraph> SceneGraph() = 0;
    // The group's value of custom group field `fieldIndex` (empty when unset).
    virtual std::string CustomField(int32_t fieldIndex) = 0;
    virtual void SetCustomField(int32_t fieldIndex, const std::string& value) = 0;

    virtual bool IsSameGroup(SceneGroup& other) = 0;
};

class SceneGraph {
public:
    virtual ~SceneGraph() = default;

    // The box of all geometry at `time`, leaving out groups whose names begin with
    // `excludePrefix` (ignoring case) together with their children. `flags` and the two trailing
    // arguments are the host's (the system passes 11, 0 and 0).
    virtual Bounds BoundingBox(float time, int32_t flags, const std::string& excludePrefix,
                               int32_t reserved1, int32_t reserved2) = 0;
    virtual int32_t GroupFieldIndex(const std::string& fieldName) = 0;
    // The index of the new field; above 5 means all six slots were taken.
    virtual int32_t AddGroupField(const std::string& fieldName) = 0;
    virtual int32_t MaterialFieldIndex(const std::string& fieldName) = 0;
    virtual int32_t AddMaterialField(const std::string& fieldName) = 0;
};

class Material {
public:
    virtual ~Material() = default;

    virtual std::string TextureFile() = 0;
    // Three characters or more means the material has a transparency map.
    virtual std::string TransparencyMap() = 0;
    // 1 or more means translucent.
    virtual int32_t TranslucencyLevel() = 0;
    virtual std::string CustomField(int32_t fieldIndex) = 0;
    virtual void SetCustomField(int32_t fieldIndex, const std::string& value) = 0;
    // Tells the host that the material was edited (the system passes 0).
    virtual void Changed(int32_t flags) = 0;
    // The four further texture maps, in the order the texture check registers them.
    virtual std::string NormalMap() = 0;
    virtual std::string OcclusionMap() = 0;
    virtual std::string EmissiveMap() = 0;
    virtual std::string MetallicRoughnessMap() = 0;
};

// A pick in the view, and also a holder of materials (one shape of the model).
class Selection {
public:
    virtual ~Selection() = default;

    virtual std::shared_ptr<SceneGroup> Group() = 0;
    // The name that the view shows for the pick.
    virtual void SetName(const std::string& name) = 0;
    // As a material holder: the shape's name, its materials.
    virtual std::string Name() = 0;
    virtual int32_t MaterialCount() = 0;
    virtual std::shared_ptr<host::Material> Material(int32_t index) = 0;
};

// The shape export's options, which the export driver hands over from the model's settings.
struct ShapeExportOptions {
    int32_t distanceLevels = 0;  // the distance-level choice (settings long 30)
    // Every group keeps a matrix of its own (settings long 31 set to 1); otherwise only "Main",
    // the named parts and the animated groups do.
    bool retainSubObjects = false;
    bool operator==(const ShapeExportOptions&) const = default;
};

class Exporter {
public:
    virtual ~Exporter() = default;

    // Each returns true on success.
    virtual bool ExportShape(SceneGroup& mainGroup, const std::string& shapeFile,
                             const ShapeExportOptions& options) = 0;
    virtual bool ExportIGS(const std::string& file) = 0;
    virtual bool ExportIA(const std::string& file) = 0;
};

class SimulatorLocator {
public:
    virtual ~SimulatorLocator() = default;

    // The full path of the MSTS main program file, or empty when not installed.
    virtual std::string FindMSTS(const std::string& text, const std::string& applicationName) = 0;
    // The RailWorks / Rail Simulator folder, or empty.
    virtual std::string FindRailWorks(intptr_t ownerWindow, const std::string& applicationName) = 0;
};

class Application {
public:
    virtual ~Application() = default;

    virtual std::string RegistryName() = 0;
    virtual void Redraw(int32_t flags) = 0;
    virtual void RefreshPanel(const std::string& panel) = 0;
    virtual void SetStatus(int32_t status) = 0;

    // What the host provides that the object model leaves implicit.
    // The folder of the external conversion tools, ending in the path separator.
    virtual std::string ToolsFolder() = 0;
    // The user's documents folder, without a trailing separator.
    virtual std::string DocumentsFolder() = 0;
    // The folder of the open model's file, against which the names of its texture files are
    // resolved; empty for a model never saved, whose texture names are taken as they stand.
    virtual std::string ModelFolder() { return {}; }
    // A new host component for each lookup or export.
    virtual std::shared_ptr<SimulatorLocator> CreateSimulatorLocator() = 0;
    virtual std::shared_ptr<host::Exporter> CreateExporter() = 0;
};

class HostContext {
public:
    virtual ~HostContext() = default;

    virtual std::shared_ptr<host::Application> Application() = 0;
};

class Scripting {
public:
    virtual ~Scripting() = default;

    virtual std::string ValueText(float value) = 0;
    virtual std::string LengthText(float value) = 0;
    virtual ViewArea GetViewArea() = 0;
    // Groups in the host's scene order: index 0 the root, then depth-first pre-order.
    virtual std::shared_ptr<SceneGroup> Group(int32_t index) = 0;
    virtual int32_t GroupCount() = 0;
    virtual std::shared_ptr<SceneGroup> RootGroup() = 0;
    virtual int32_t MaterialListCount() = 0;
    virtual std::shared_ptr<Selection> MaterialList(int32_t index) = 0;
    // Turns `point` by `angle` radians about the axis through the origin along `axis`.
    virtual Vector3 RotateAboutAxis(Vector3 point, Vector3 axis, float angle) = 0;
    virtual void SetFlags(int32_t flags) = 0;
    virtual void SetMode(int32_t mode) = 0;

    // The model's lights and collision boxes, in the host's order.
    virtual int32_t LightCount() = 0;
    virtual Light GetLight(int32_t index) = 0;
    virtual int32_t CollisionBoxCount() = 0;
    virtual CollisionBox GetCollisionBox(int32_t index) = 0;
};

// The wizard's embedded view of the model.
class Viewer {
public:
    virtual ~Viewer() = default;

    virtual void Attach(HostContext& context, Scripting& scripting) = 0;
    virtual float PointX() = 0;
    virtual float PointY() = 0;
    virtual float PointZ() = 0;
    virtual void SetPointX(float value) = 0;
    virtual void SetPointY(float value) = 0;
    virtual void SetPointZ(float value) = 0;
    virtual void LookAtPoint() = 0;
    virtual void EndPicking() = 0;
    // The current pick, or null.
    virtual std::shared_ptr<host::Selection> Selection() = 0;
    // Called after each pick, with Selection() already showing it. One handler at a time.
    virtual void OnPick(std::function<void()> handler) = 0;
};

}  // namespace railwright::host
