// Custom field slots, materials and material holders of the in-memory scene.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"
#include "host/scene/Failures.h"

namespace railwright::host::scene {

// The named custom fields of one kind (group or material): six slots, filled in order.
class FieldSlots {
public:
    static constexpr int32_t kSlotCount = 6;
    using Values = std::array<std::string, kSlotCount>;

    // The slot of the field with exactly this name (case counts), or -1.
    int32_t IndexOf(std::string_view name) const;
    // Takes the next free slot and returns its index. When all six are taken no field is made
    // and the result is kSlotCount (6), which callers read as "no room". A name already present
    // gets a second slot; callers look a field up before adding it.
    int32_t Add(const std::string& name);
    // Whether `index` names a field of this kind.
    bool Holds(int32_t index) const { return index >= 0 && index < Count(); }
    int32_t Count() const { return static_cast<int32_t>(names_.size()); }
    // Field names in slot order.
    const std::vector<std::string>& Names() const { return names_; }

private:
    std::vector<std::string> names_;
};

// What a material says about its textures. Every member has an initialiser, so that a designated
// initialiser may name only some of them.
struct MaterialProperties {
    std::string textureFile{};
    std::string transparencyMap{};
    int32_t translucencyLevel = 0;
    std::string normalMap{};
    std::string occlusionMap{};
    std::string emissiveMap{};
    std::string metallicRoughnessMap{};
    bool operator==(const MaterialProperties&) const = default;
};

class SceneMaterial final : public host::Material {
public:
    SceneMaterial(std::shared_ptr<Failures> failures, std::shared_ptr<const FieldSlots> fields,
                  MaterialProperties properties);

    std::string TextureFile() override;
    std::string TransparencyMap() override;
    int32_t TranslucencyLevel() override;
    // Values are kept per slot; an index that names no material field throws HostError.
    std::string CustomField(int32_t fieldIndex) override;
    void SetCustomField(int32_t fieldIndex, const std::string& value) override;
    void Changed(int32_t flags) override;
    std::string NormalMap() override;
    std::string OcclusionMap() override;
    std::string EmissiveMap() override;
    std::string MetallicRoughnessMap() override;

    // The scene's own access, never failing.
    MaterialProperties& Properties() { return properties_; }
    const FieldSlots::Values& CustomFields() const { return fields_; }
    FieldSlots::Values& CustomFields() { return fields_; }
    int32_t ChangedCount() const { return changedCount_; }

private:
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<const FieldSlots> slots_;
    MaterialProperties properties_;
    FieldSlots::Values fields_;
    int32_t changedCount_ = 0;
};

// A selection of the scene: either a material holder (one shape's materials; its group is the
// group of the first shape that uses it) or a pick in the viewer (the picked group, no
// materials).
class SceneSelection final : public host::Selection {
public:
    SceneSelection(std::shared_ptr<Failures> failures, std::shared_ptr<const FieldSlots> fields,
                   std::string name, std::weak_ptr<host::SceneGroup> group = {});

    // Null when the group is gone or the holder is not used by any shape.
    std::shared_ptr<SceneGroup> Group() override;
    void SetName(const std::string& name) override;
    std::string Name() override;
    int32_t MaterialCount() override;
    // An index outside 0 to MaterialCount() - 1 throws HostError.
    std::shared_ptr<host::Material> Material(int32_t index) override;

    // The scene's own access, never failing.
    std::shared_ptr<SceneMaterial> AddMaterial(MaterialProperties properties);
    // Adds a material that another holder of the same model already holds: one material used by
    // several shapes, whose field values are then shared.
    void AddMaterial(std::shared_ptr<SceneMaterial> material);
    const std::vector<std::shared_ptr<SceneMaterial>>& Materials() const { return materials_; }
    const std::string& NameValue() const { return name_; }
    void SetGroup(std::weak_ptr<host::SceneGroup> group) { group_ = std::move(group); }
    bool HasGroup() const { return !group_.expired(); }
    // Every name given through SetName, in order.
    const std::vector<std::string>& NamesSet() const { return namesSet_; }

private:
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<const FieldSlots> fields_;
    std::string name_;
    std::weak_ptr<host::SceneGroup> group_;
    std::vector<std::shared_ptr<SceneMaterial>> materials_;
    std::vector<std::string> namesSet_;
};

}  // namespace railwright::host::scene
