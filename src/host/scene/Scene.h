// A whole in-memory host: the model and the host objects wired to it, and a builder that lets a
// test describe a scene in a few lines:
//
//     Scene scene = SceneBuilder()
//                       .Group("Body").Box({-1, 0, -5}, {1, 3, 5}, "body.ace")
//                       .Group("Wheels11", "Body").At(0, 0.5f, 3).Box({-1, -0.5f, -0.5f},
//                                                                      {1, 0.5f, 0.5f})
//                       .Build();
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/Host.h"
#include "host/scene/Application.h"
#include "host/scene/Failures.h"
#include "host/scene/Materials.h"
#include "host/scene/Model.h"
#include "host/scene/Node.h"
#include "host/scene/Scripting.h"
#include "host/scene/Viewer.h"

namespace railwright::host::scene {

struct Scene {
    std::shared_ptr<Failures> failures;
    std::shared_ptr<Model> model;
    std::shared_ptr<SceneScripting> scripting;
    std::shared_ptr<SceneApplication> application;
    std::shared_ptr<SceneHostContext> hostContext;
    std::shared_ptr<SceneViewer> viewer;

    // A model holding only its root group, with every host object wired to it.
    static Scene Create(const std::string& rootName = "Scene");
    // The first group of this name (case ignored) in scene order; throws std::invalid_argument
    // when there is none.
    std::shared_ptr<Node> GroupNamed(std::string_view name) const;
    // The user clicks a group in the view: by name (the first group of exactly that name in
    // Scripting.Group order) or by its index in that order. An error text for a group the model
    // does not have, empty when the pick was made.
    std::string PickGroup(const std::variant<std::string, int32_t>& group) const;
};

class SceneBuilder {
public:
    explicit SceneBuilder(const std::string& rootName = "Scene");

    // Starts a group, last child of the first group named `parent` (empty: the root). The calls
    // that follow describe it; before the first Group they describe the root.
    SceneBuilder& Group(const std::string& name, const std::string& parent = "");
    // The current group's translation, rotation (Euler angles, radians, X then Y then Z) and
    // scale; its local transform is translation * rotation * scale in whatever order these come.
    SceneBuilder& At(float x, float y, float z);
    SceneBuilder& Rotated(float x, float y, float z);
    SceneBuilder& Scaled(float x, float y, float z);
    // A shape of the current group: the eight corners of the box, in the group's frame, and its
    // twelve triangles, with a material holder named after the group holding one material.
    SceneBuilder& Box(Vector3 min, Vector3 max, const std::string& textureFile = "");
    SceneBuilder& Box(Vector3 min, Vector3 max, const MaterialProperties& material);
    // A shape of the current group with these vertices and a holder of its own with one
    // material.
    SceneBuilder& Shape(const std::string& holderName, std::vector<Vector3> vertices,
                        const MaterialProperties& material = {});
    // A shape of the current group as given (vertices, surface), with a holder of its own
    // holding one material; any holder the shape names is replaced.
    SceneBuilder& Mesh(const std::string& holderName, scene::Shape shape,
                       const MaterialProperties& material = {});
    // One more material in the holder of the last shape.
    SceneBuilder& Material(const MaterialProperties& material);
    // A value of a custom group field of the current group; the field is defined if missing.
    SceneBuilder& Field(const std::string& fieldName, const std::string& value);
    // A value of a custom material field of the last material; the field is defined if missing.
    SceneBuilder& MaterialField(const std::string& fieldName, const std::string& value);
    // Defines fields without values, in the next free slots.
    SceneBuilder& GroupFields(std::initializer_list<std::string> names);
    SceneBuilder& MaterialFields(std::initializer_list<std::string> names);
    // An animation key of the current group, relative to its parent.
    SceneBuilder& Key(float time, Vector3 position, Vector3 rotation);
    SceneBuilder& Light(const host::Light& light);
    SceneBuilder& CollisionBox(const host::CollisionBox& box);

    // The scene described so far. Misuse of the builder (an unknown parent, a seventh field, a
    // material without a shape) throws std::invalid_argument when it happens.
    Scene Build() const { return scene_; }

private:
    void UpdateTransform();
    SceneSelection& LastHolder();

    Scene scene_;
    std::shared_ptr<Node> current_;
    std::shared_ptr<SceneMaterial> lastMaterial_;
    Vec3 translation_;
    Vec3 rotation_;
    Vec3 scale_{1, 1, 1};
};

}  // namespace railwright::host::scene
