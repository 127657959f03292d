// The in-memory model: the tree of groups, the material holders, the custom field slots, the
// lights and collision boxes. It is the host's scene graph, and the plain API through which a
// test or the model document builds a scene.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"
#include "host/scene/Failures.h"
#include "host/scene/Materials.h"
#include "host/scene/Node.h"
#include "host/scene/Transform.h"

namespace railwright::host::scene {

class Model final : public host::SceneGraph, public std::enable_shared_from_this<Model> {
public:
    // A model holding only its root group.
    static std::shared_ptr<Model> Create(std::shared_ptr<Failures> failures,
                                         const std::string& rootName);

    // The box of all geometry in the root group's frame, leaving out groups whose names begin
    // with `excludePrefix` (ignoring case) and their descendants; an empty prefix leaves out
    // nothing. All zeros when nothing is left. `flags` and the reserved arguments are accepted
    // and not interpreted.
    Bounds BoundingBox(float time, int32_t flags, const std::string& excludePrefix,
                       int32_t reserved1, int32_t reserved2) override;
    // Names are matched exactly (case counts).
    int32_t GroupFieldIndex(const std::string& fieldName) override;
    int32_t AddGroupField(const std::string& fieldName) override;
    int32_t MaterialFieldIndex(const std::string& fieldName) override;
    int32_t AddMaterialField(const std::string& fieldName) override;

    // The scene's own API, never failing.
    const std::shared_ptr<Node>& Root() const { return root_; }
    // A new group, last child of `parent`; a parent of another model throws
    // std::invalid_argument.
    std::shared_ptr<Node> AddGroup(const std::string& name, Node& parent,
                                   const Affine& local = {});
    // A new material holder, last in the host's material list order.
    std::shared_ptr<SceneSelection> AddMaterialHolder(const std::string& name);
    const std::vector<std::shared_ptr<SceneSelection>>& MaterialHolders() const {
        return holders_;
    }
    // Every group: the root first, then depth-first pre-order, children in order.
    const std::vector<std::shared_ptr<Node>>& GroupOrder() const;
    // The first group in that order whose name equals `name` ignoring case, or null.
    std::shared_ptr<Node> FindGroup(std::string_view name) const;
    // Box of all geometry at `time` in the root frame, leaving out the prefix's groups.
    Bounds GeometryBounds(float time, std::string_view excludePrefix) const;

    const FieldSlots& GroupFields() const { return *groupFields_; }
    FieldSlots& GroupFields() { return *groupFields_; }
    const FieldSlots& MaterialFields() const { return *materialFields_; }
    FieldSlots& MaterialFields() { return *materialFields_; }

    void AddLight(const Light& light) { lights_.push_back(light); }
    const std::vector<Light>& Lights() const { return lights_; }
    void AddCollisionBox(const CollisionBox& box) { collisionBoxes_.push_back(box); }
    const std::vector<CollisionBox>& CollisionBoxes() const { return collisionBoxes_; }

    // Called when groups are added or moved: the scene order is rebuilt on next use.
    void StructureChanged() { orderValid_ = false; }

private:
    explicit Model(std::shared_ptr<Failures> failures);

    std::shared_ptr<Failures> failures_;
    std::shared_ptr<FieldSlots> groupFields_;
    std::shared_ptr<FieldSlots> materialFields_;
    std::shared_ptr<Node> root_;
    std::vector<std::shared_ptr<SceneSelection>> holders_;
    std::vector<Light> lights_;
    std::vector<CollisionBox> collisionBoxes_;
    mutable std::vector<std::shared_ptr<Node>> order_;
    mutable bool orderValid_ = false;
};

}  // namespace railwright::host::scene
