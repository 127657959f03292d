// A group of the in-memory scene: name, place in the hierarchy, local transform, shapes,
// animation keys and custom field values.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"
#include "host/scene/Failures.h"
#include "host/scene/Materials.h"
#include "host/scene/Transform.h"

namespace railwright::host::scene {

class Model;

// A texture coordinate as glTF gives it: u to the right, v downwards from the image's top.
struct TexCoord {
    float u = 0;
    float v = 0;
    bool operator==(const TexCoord&) const = default;
};

// The triangles of one material of a shape: three corners per triangle, each an index into the
// shape's vertices, counter-clockwise seen from the front.
struct TriangleSet {
    int32_t material = 0;  // index into the holder's materials
    std::vector<uint32_t> corners{};
    bool operator==(const TriangleSet&) const = default;
};

// One mesh piece: vertices in its group's frame, and the holder of its materials. The surface
// data is optional: a shape without triangles has vertices only (they still count for bounds);
// normals and texture coordinates are empty or hold one entry per vertex, and a zero normal
// means that the surface has none there.
struct Shape {
    std::vector<Vector3> vertices;
    std::shared_ptr<SceneSelection> holder;  // may be null: a shape without materials
    std::vector<Vector3> normals{};
    std::vector<TexCoord> texCoords{};
    std::vector<TriangleSet> triangles{};
};

// An animation key: the group's pose at `time`, relative to its parent. The key replaces the
// translation and rotation of the group's local transform; its scale (and any shear) stays.
struct Key {
    float time = 0;
    Vector3 position;  // the group's origin in the parent's frame
    Vector3 rotation;  // Euler angles in radians, X then Y then Z, relative to the parent's axes
    bool operator==(const Key&) const = default;
};

// The axis-aligned box of a set of points.
class BoxAccumulator {
public:
    void Add(Vec3 point);
    bool Empty() const { return empty_; }
    // All zeros when no point was added.
    Bounds Result() const;

private:
    bool empty_ = true;
    Vec3 min_;
    Vec3 max_;
};

// Whether `name` begins with `prefix`, comparing ASCII letters without regard to case.
bool StartsWithIgnoringCase(std::string_view name, std::string_view prefix);

// Whether a box takes in the named parts (PartNames.h) below the group it is the box of.
enum class NamedPartsBelow { Included, LeftOut };

class Node final : public host::SceneGroup, public std::enable_shared_from_this<Node> {
public:
    // Made by Model::Create and Model::AddGroup.
    Node(std::weak_ptr<Model> model, std::shared_ptr<Failures> failures,
         std::shared_ptr<const FieldSlots> groupFields, std::string name);

    std::string Name() override;
    void SetName(const std::string& name) override;
    std::shared_ptr<SceneGroup> Parent() override;
    // Keeps the group's world pose: its local transform (and its keys) are recomputed for the
    // new parent, and it becomes the new parent's last child. Moving a group under its present
    // parent changes nothing. Throws HostError when the group is the root, when newParent is
    // the group itself or one of its descendants or belongs to another scene, and when the new
    // parent's frame cannot be inverted (a zero scale).
    void MoveTo(SceneGroup& newParent) override;
    int32_t ShapeCount() override;
    // The origin of this group in the frame of `frame`; with a time other than kCurrentPose
    // every group on the way uses its key at exactly that time, if it has one.
    Vector3 GetPosition(SceneGroup& frame, float time) override;
    // The axis-aligned box, in the frame of `frame`, of the vertices of this group and all its
    // descendants. A wheelset's box leaves out the named parts hung on it (the main wheel link
    // under "Wheels1") and everything under them, so that its centre is the axle it turns about.
    // A group without any geometry gives a box of all zeros.
    Bounds GetBounds(SceneGroup& frame, float time) override;
    int32_t KeyCount() override;
    // `position` and `rotation` are this group's pose in the frame of `frame` at `time`; they
    // are kept relative to the parent. A key at the same time as an earlier one replaces it.
    void SetKey(SceneGroup& frame, float time, Vector3 position, Vector3 rotation) override;
    std::shared_ptr<host::SceneGraph> SceneGraph() override;
    // An index that names no custom group field throws HostError.
    std::string CustomField(int32_t fieldIndex) override;
    void SetCustomField(int32_t fieldIndex, const std::string& value) override;
    bool IsSameGroup(SceneGroup& other) override { return &other == this; }

    // The scene's own access, never failing.
    const std::string& NameValue() const { return name_; }
    std::shared_ptr<Node> ParentNode() const { return parent_.lock(); }
    const std::vector<std::shared_ptr<Node>>& Children() const { return children_; }
    const Affine& LocalTransform() const { return local_; }
    void SetLocalTransform(const Affine& local) { local_ = local; }
    const std::vector<Shape>& Shapes() const { return shapes_; }
    // A holder that belongs to no group yet takes this group as its group.
    void AddShape(Shape shape);
    // Keys sorted by time.
    const std::vector<Key>& Keys() const { return keys_; }
    // Adds a key already relative to the parent, replacing one at the same time.
    void PutKey(const Key& key);
    const FieldSlots::Values& CustomFields() const { return fields_; }
    FieldSlots::Values& CustomFields() { return fields_; }

    // The local transform at `time`: from the key at that time, else the current one.
    Affine LocalAt(float time) const;
    Affine WorldAt(float time) const;
    bool IsDescendantOf(const Node& ancestor) const;
    // Adds the vertices of this group and its descendants, mapped by `toFrame` (this group's
    // frame to the target frame), leaving out every group whose name begins with
    // `excludePrefix` (unless it is empty) together with its descendants.
    void CollectBounds(const Affine& toFrame, float time, std::string_view excludePrefix,
                       BoxAccumulator& box,
                       NamedPartsBelow namedParts = NamedPartsBelow::Included) const;

private:
    friend class Model;

    Node& FrameNode(SceneGroup& frame, const char* operation);
    Affine ParentWorldAt(float time) const;
    // Maps this group's frame at `time` into the frame of `frame`.
    Affine ThisToFrame(const Node& frame, float time) const;
    std::shared_ptr<Model> OwningModel() const;

    std::weak_ptr<Model> model_;
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<const FieldSlots> groupFields_;
    std::string name_;
    std::weak_ptr<Node> parent_;
    std::vector<std::shared_ptr<Node>> children_;
    Affine local_;
    std::vector<Shape> shapes_;
    std::vector<Key> keys_;
    FieldSlots::Values fields_;
};

}  // namespace railwright::host::scene
