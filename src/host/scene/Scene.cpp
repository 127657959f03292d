#include "host/scene/Scene.h"

#include <stdexcept>
#include <utility>

namespace railwright::host::scene {

namespace {

int32_t EnsureField(FieldSlots& slots, const std::string& name, const char* kind) {
    int32_t index = slots.IndexOf(name);
    if (index < 0) {
        index = slots.Add(name);
    }
    if (!slots.Holds(index)) {
        throw std::invalid_argument(std::string("SceneBuilder: no free custom ") + kind +
                                    " field slot for \"" + name + "\".");
    }
    return index;
}

std::vector<Vector3> BoxCorners(Vector3 min, Vector3 max) {
    std::vector<Vector3> corners;
    for (const float x : {min.x, max.x}) {
        for (const float y : {min.y, max.y}) {
            for (const float z : {min.z, max.z}) {
                corners.push_back({x, y, z});
            }
        }
    }
    return corners;
}

// The twelve triangles of the box's six faces over the corners of BoxCorners (corner index
// x * 4 + y * 2 + z), counter-clockwise seen from outside.
std::vector<TriangleSet> BoxFaces() {
    constexpr uint32_t kQuads[6][4] = {{0, 1, 3, 2}, {4, 6, 7, 5}, {0, 4, 5, 1},
                                       {2, 3, 7, 6}, {4, 0, 2, 6}, {7, 3, 1, 5}};
    TriangleSet faces;
    for (const auto& quad : kQuads) {
        faces.corners.insert(faces.corners.end(),
                             {quad[0], quad[1], quad[2], quad[0], quad[2], quad[3]});
    }
    return {faces};
}

}  // namespace

Scene Scene::Create(const std::string& rootName) {
    Scene scene;
    scene.failures = std::make_shared<Failures>();
    scene.model = Model::Create(scene.failures, rootName);
    scene.scripting = std::make_shared<SceneScripting>(scene.failures, scene.model);
    scene.application = std::make_shared<SceneApplication>(scene.failures);
    scene.hostContext = std::make_shared<SceneHostContext>(scene.failures, scene.application);
    scene.viewer = std::make_shared<SceneViewer>(scene.failures);
    return scene;
}

std::shared_ptr<Node> Scene::GroupNamed(std::string_view name) const {
    std::shared_ptr<Node> group = model->FindGroup(name);
    if (!group) {
        throw std::invalid_argument("The scene has no group named \"" + std::string(name) +
                                    "\".");
    }
    return group;
}

std::string Scene::PickGroup(const std::variant<std::string, int32_t>& group) const {
    const int32_t count = scripting->GroupCount();
    if (const int32_t* index = std::get_if<int32_t>(&group)) {
        if (*index < 0 || *index >= count) {
            return "the model has no group " + std::to_string(*index) + " (it has " +
                   std::to_string(count) + ")";
        }
        viewer->Pick(scripting->Group(*index));
        return {};
    }
    const std::string& name = std::get<std::string>(group);
    for (int32_t i = 0; i < count; ++i) {
        std::shared_ptr<SceneGroup> candidate = scripting->Group(i);
        if (candidate->Name() == name) {
            viewer->Pick(candidate);
            return {};
        }
    }
    return "the model has no group \"" + name + "\"";
}

SceneBuilder::SceneBuilder(const std::string& rootName)
    : scene_(Scene::Create(rootName)), current_(scene_.model->Root()) {}

SceneBuilder& SceneBuilder::Group(const std::string& name, const std::string& parent) {
    Node& parentNode = parent.empty() ? *scene_.model->Root() : *scene_.GroupNamed(parent);
    current_ = scene_.model->AddGroup(name, parentNode);
    translation_ = rotation_ = {};
    scale_ = {1, 1, 1};
    return *this;
}

SceneBuilder& SceneBuilder::At(float x, float y, float z) {
    translation_ = {x, y, z};
    UpdateTransform();
    return *this;
}

SceneBuilder& SceneBuilder::Rotated(float x, float y, float z) {
    rotation_ = {x, y, z};
    UpdateTransform();
    return *this;
}

SceneBuilder& SceneBuilder::Scaled(float x, float y, float z) {
    scale_ = {x, y, z};
    UpdateTransform();
    return *this;
}

SceneBuilder& SceneBuilder::Box(Vector3 min, Vector3 max, const std::string& textureFile) {
    MaterialProperties material;
    material.textureFile = textureFile;
    return Box(min, max, material);
}

SceneBuilder& SceneBuilder::Box(Vector3 min, Vector3 max, const MaterialProperties& material) {
    scene::Shape box{BoxCorners(min, max), nullptr};
    box.triangles = BoxFaces();
    return Mesh(current_->NameValue(), std::move(box), material);
}

SceneBuilder& SceneBuilder::Shape(const std::string& holderName, std::vector<Vector3> vertices,
                                  const MaterialProperties& material) {
    return Mesh(holderName, {std::move(vertices), nullptr}, material);
}

SceneBuilder& SceneBuilder::Mesh(const std::string& holderName, scene::Shape shape,
                                 const MaterialProperties& material) {
    shape.holder = scene_.model->AddMaterialHolder(holderName);
    lastMaterial_ = shape.holder->AddMaterial(material);
    current_->AddShape(std::move(shape));
    return *this;
}

SceneBuilder& SceneBuilder::Material(const MaterialProperties& material) {
    lastMaterial_ = LastHolder().AddMaterial(material);
    return *this;
}

SceneBuilder& SceneBuilder::Field(const std::string& fieldName, const std::string& value) {
    const int32_t index = EnsureField(scene_.model->GroupFields(), fieldName, "group");
    current_->CustomFields()[index] = value;
    return *this;
}

SceneBuilder& SceneBuilder::MaterialField(const std::string& fieldName,
                                          const std::string& value) {
    if (!lastMaterial_) {
        throw std::invalid_argument("SceneBuilder: a material field \"" + fieldName +
                                    "\" before any material.");
    }
    const int32_t index = EnsureField(scene_.model->MaterialFields(), fieldName, "material");
    lastMaterial_->CustomFields()[index] = value;
    return *this;
}

SceneBuilder& SceneBuilder::GroupFields(std::initializer_list<std::string> names) {
    for (const std::string& name : names) {
        EnsureField(scene_.model->GroupFields(), name, "group");
    }
    return *this;
}

SceneBuilder& SceneBuilder::MaterialFields(std::initializer_list<std::string> names) {
    for (const std::string& name : names) {
        EnsureField(scene_.model->MaterialFields(), name, "material");
    }
    return *this;
}

SceneBuilder& SceneBuilder::Key(float time, Vector3 position, Vector3 rotation) {
    current_->PutKey({time, position, rotation});
    return *this;
}

SceneBuilder& SceneBuilder::Light(const host::Light& light) {
    scene_.model->AddLight(light);
    return *this;
}

SceneBuilder& SceneBuilder::CollisionBox(const host::CollisionBox& box) {
    scene_.model->AddCollisionBox(box);
    return *this;
}

void SceneBuilder::UpdateTransform() {
    Affine local;
    const Mat3 rotation = EulerXyzMatrix(rotation_);
    local.linear.SetColumn(0, rotation.Column(0) * scale_.x);
    local.linear.SetColumn(1, rotation.Column(1) * scale_.y);
    local.linear.SetColumn(2, rotation.Column(2) * scale_.z);
    local.translation = translation_;
    current_->SetLocalTransform(local);
}

SceneSelection& SceneBuilder::LastHolder() {
    const std::vector<scene::Shape>& shapes = current_->Shapes();
    if (shapes.empty() || !shapes.back().holder) {
        throw std::invalid_argument("SceneBuilder: group \"" + current_->NameValue() +
                                    "\" has no shape to hold another material.");
    }
    return *shapes.back().holder;
}

}  // namespace railwright::host::scene
