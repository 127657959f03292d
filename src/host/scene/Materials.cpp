#include "host/scene/Materials.h"

#include <utility>

namespace railwright::host::scene {

namespace {

void CheckFieldIndex(const FieldSlots& slots, int32_t fieldIndex) {
    if (!slots.Holds(fieldIndex)) {
        throw HostError(kHostErrorInvalidArgument,
                        "There is no custom material field with index " +
                            std::to_string(fieldIndex) + ".");
    }
}

}  // namespace

int32_t FieldSlots::IndexOf(std::string_view name) const {
    for (size_t i = 0; i < names_.size(); ++i) {
        if (names_[i] == name) {
            return static_cast<int32_t>(i);
        }
    }
    return -1;
}

int32_t FieldSlots::Add(const std::string& name) {
    if (Count() >= kSlotCount) {
        return kSlotCount;
    }
    names_.push_back(name);
    return Count() - 1;
}

SceneMaterial::SceneMaterial(std::shared_ptr<Failures> failures,
                             std::shared_ptr<const FieldSlots> fields,
                             MaterialProperties properties)
    : failures_(std::move(failures)),
      slots_(std::move(fields)),
      properties_(std::move(properties)) {}

std::string SceneMaterial::TextureFile() {
    failures_->Check("Material.TextureFile");
    return properties_.textureFile;
}

std::string SceneMaterial::TransparencyMap() {
    failures_->Check("Material.TransparencyMap");
    return properties_.transparencyMap;
}

int32_t SceneMaterial::TranslucencyLevel() {
    failures_->Check("Material.TranslucencyLevel");
    return properties_.translucencyLevel;
}

std::string SceneMaterial::CustomField(int32_t fieldIndex) {
    failures_->Check("Material.CustomField");
    CheckFieldIndex(*slots_, fieldIndex);
    return fields_[fieldIndex];
}

void SceneMaterial::SetCustomField(int32_t fieldIndex, const std::string& value) {
    failures_->Check("Material.SetCustomField");
    CheckFieldIndex(*slots_, fieldIndex);
    fields_[fieldIndex] = value;
}

void SceneMaterial::Changed(int32_t) {
    failures_->Check("Material.Changed");
    ++changedCount_;
}

std::string SceneMaterial::NormalMap() {
    failures_->Check("Material.NormalMap");
    return properties_.normalMap;
}

std::string SceneMaterial::OcclusionMap() {
    failures_->Check("Material.OcclusionMap");
    return properties_.occlusionMap;
}

std::string SceneMaterial::EmissiveMap() {
    failures_->Check("Material.EmissiveMap");
    return properties_.emissiveMap;
}

std::string SceneMaterial::MetallicRoughnessMap() {
    failures_->Check("Material.MetallicRoughnessMap");
    return properties_.metallicRoughnessMap;
}

SceneSelection::SceneSelection(std::shared_ptr<Failures> failures,
                               std::shared_ptr<const FieldSlots> fields, std::string name,
                               std::weak_ptr<host::SceneGroup> group)
    : failures_(std::move(failures)),
      fields_(std::move(fields)),
      name_(std::move(name)),
      group_(std::move(group)) {}

std::shared_ptr<SceneGroup> SceneSelection::Group() {
    failures_->Check("Selection.Group");
    return group_.lock();
}

void SceneSelection::SetName(const std::string& name) {
    failures_->Check("Selection.SetName");
    name_ = name;
    namesSet_.push_back(name);
}

std::string SceneSelection::Name() {
    failures_->Check("Selection.Name");
    return name_;
}

int32_t SceneSelection::MaterialCount() {
    failures_->Check("Selection.MaterialCount");
    return static_cast<int32_t>(materials_.size());
}

std::shared_ptr<host::Material> SceneSelection::Material(int32_t index) {
    failures_->Check("Selection.Material");
    if (index < 0 || index >= static_cast<int32_t>(materials_.size())) {
        throw HostError(kHostErrorInvalidArgument, "Material index " + std::to_string(index) +
                                                       " is out of range for \"" + name_ +
                                                       "\".");
    }
    return materials_[index];
}

std::shared_ptr<SceneMaterial> SceneSelection::AddMaterial(MaterialProperties properties) {
    auto material = std::make_shared<SceneMaterial>(failures_, fields_, std::move(properties));
    materials_.push_back(material);
    return material;
}

void SceneSelection::AddMaterial(std::shared_ptr<SceneMaterial> material) {
    materials_.push_back(std::move(material));
}

}  // namespace railwright::host::scene
