// The custom group and material fields that the wizard keeps in the model, the default values of
// the material fields, and the default values of the group fields: each part's name for each
// simulator.
#include "wizard/CustomFields.h"

#include <array>
#include <optional>

#include "identification/Identification.h"
#include "support/SupportingFunctions.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

// The host has six custom field slots of each kind, 0 to 5.
constexpr int32_t kLastFieldSlot = 5;
// A field value shorter than this counts as unset.
constexpr size_t kSetValueLength = 3;
// A transparency map name shorter than this means there is none.
constexpr size_t kMapNameLength = 3;

constexpr const char* kRailSimMaterialField = "Rail Sim";
constexpr const char* kTxAlphaMaterialField = "Tx Alpha";
constexpr const char* kAlphaPrMaterialField = "Alpha Pr";

// "Rail Sim" material values: plain textured diffuse, or diffuse blended by the texture's alpha.
constexpr const char* kTexDiff = "TexDiff";
constexpr const char* kBlendATexDiff = "BlendATexDiff";
// "Tx Alpha" values.
constexpr const char* kTransparency = "Transparency";
constexpr const char* kTranslucency = "Translucency";
constexpr const char* kNoAlpha = "None";

// Texture formats that can carry an alpha channel.
constexpr std::array<std::string_view, 3> kAlphaFormats{"TGA", "PNG", "DDS"};

constexpr std::string_view kAlphaFieldsCreated =
    "Two new custom materials \"Tx Alpha\" and \"Alpha Pr\" have been created. Default values "
    "have been set. \"Tx Alpha\" is set to \"Transparency\" for textures with transparency, "
    "\"Translucency\" for textures with translucency or to \"None\". \"Alpha Pr\" is for MSTS "
    "only and is set to a priority of 1 to indicate a possibility of viewing through multiple "
    "layers of translucency.";

enum class FieldKind { Group, Material };

std::string TooManyFields(FieldKind kind, const std::string& fieldName) {
    const std::string kindName = kind == FieldKind::Group ? "group" : "material";
    return "Too many custom " + kindName + " fields defined. Please create a custom " + kindName +
           " field called \"" + fieldName +
           "\" by selecting \"Properties\" from the \"File\" menu.";
}

bool IsSet(const std::string& value) {
    return value.size() >= kSetValueLength;
}

bool CanCarryAlpha(host::Material& material) {
    for (const std::string& file :
         {material.TextureFile(), material.NormalMap(), material.OcclusionMap(),
          material.EmissiveMap(), material.MetallicRoughnessMap()}) {
        for (const std::string_view format : kAlphaFormats) {
            if (support::EndsWithIgnoreCase(file, format)) {
                return true;
            }
        }
    }
    return false;
}

struct EnsuredField {
    int32_t index = -1;
    bool created = false;
};

// Finds the field or adds it; empty when the host had no room for it.
std::optional<EnsuredField> EnsureField(host::SceneGraph& graph, FieldKind kind,
                                        const std::string& fieldName) {
    const int32_t existing = kind == FieldKind::Group ? graph.GroupFieldIndex(fieldName)
                                                      : graph.MaterialFieldIndex(fieldName);
    if (existing >= 0) {
        return EnsuredField{existing, false};
    }
    const int32_t added = kind == FieldKind::Group ? graph.AddGroupField(fieldName)
                                                   : graph.AddMaterialField(fieldName);
    if (added > kLastFieldSlot) {
        return std::nullopt;
    }
    return EnsuredField{added, true};
}

}  // namespace

host::SceneGraph& frmWizard::Graph() {
    if (!sceneGraph_) {
        throw support::RunTimeError(support::kErrorInternal, "The wizard has no scene graph");
    }
    return *sceneGraph_;
}

bool frmWizard::EnsureGroupField(const std::string& fieldName) {
    if (!EnsureField(Graph(), FieldKind::Group, fieldName)) {
        platform_.ui.ShowMessage(TooManyFields(FieldKind::Group, fieldName),
                                 support::MessageIcon::Exclamation, support::MessageButtons::Ok);
        // The later steps rely on the field.
        Unload();
        return false;
    }
    return true;
}

bool frmWizard::EnsureMaterialFields() {
    struct Field {
        const char* name;
        int32_t* index;
    };
    for (const Field field : {Field{kRailSimMaterialField, &materialFields_.railSim},
                              Field{kTxAlphaMaterialField, &materialFields_.txAlpha},
                              Field{kAlphaPrMaterialField, &materialFields_.alphaPr}}) {
        const std::optional<EnsuredField> ensured =
            EnsureField(Graph(), FieldKind::Material, field.name);
        if (!ensured) {
            platform_.ui.ShowMessage(TooManyFields(FieldKind::Material, field.name),
                                     support::MessageIcon::Exclamation,
                                     support::MessageButtons::Ok);
            Unload();
            return false;
        }
        *field.index = ensured->index;
        if (ensured->created && field.index == &materialFields_.alphaPr) {
            platform_.ui.ShowMessage(kAlphaFieldsCreated, support::MessageIcon::Exclamation,
                                     support::MessageButtons::Ok);
        }
    }
    return true;
}

void frmWizard::SetDefaultMaterialFieldValues() {
    host::Scripting& scene = host_.scene;
    const int32_t holderCount = scene.MaterialListCount();
    for (int32_t holderIndex = 0; holderIndex < holderCount; ++holderIndex) {
        const std::shared_ptr<host::Selection> holder = scene.MaterialList(holderIndex);
        const int32_t materialCount = holder->MaterialCount();
        for (int32_t materialIndex = 0; materialIndex < materialCount; ++materialIndex) {
            const std::shared_ptr<host::Material> material = holder->Material(materialIndex);
            // The user's own choices survive.
            if (IsSet(material->CustomField(materialFields_.txAlpha))) {
                continue;
            }
            const auto setRailSimIfUnset = [&](const char* blend) {
                if (!IsSet(material->CustomField(materialFields_.railSim))) {
                    material->SetCustomField(materialFields_.railSim, blend);
                }
            };
            const int32_t translucency = material->TranslucencyLevel();
            if (translucency >= 1) {
                material->SetCustomField(materialFields_.txAlpha, kTranslucency);
                material->SetCustomField(materialFields_.alphaPr, std::to_string(translucency - 1));
                setRailSimIfUnset(kBlendATexDiff);
            } else if (material->TransparencyMap().size() >= kMapNameLength) {
                material->SetCustomField(materialFields_.txAlpha, kTransparency);
                material->SetCustomField(materialFields_.alphaPr, "0");
                setRailSimIfUnset(kTexDiff);
            } else {
                material->SetCustomField(materialFields_.txAlpha,
                                         CanCarryAlpha(*material) ? kTransparency : kNoAlpha);
                material->SetCustomField(materialFields_.alphaPr, "0");
                setRailSimIfUnset(kTexDiff);
            }
            material->Changed(0);
        }
    }
}

void frmWizard::SetDefaultGroupCustomFields() {
    using identification::PartEntry;
    struct SimulatorField {
        const char* fieldName;
        std::string PartEntry::*partName;
    };
    constexpr SimulatorField kSimulatorFields[] = {
        {kMstsField, &PartEntry::MstsName},     {kRailSimField, &PartEntry::RailWorksName},
        {kTrainzField, &PartEntry::TrainzName}, {kRail3DField, &PartEntry::Rail3DName},
        {kBveField, &PartEntry::BveName},
    };
    // Only the fields that the model has; none is created here.
    struct PresentField {
        int32_t index;
        std::string PartEntry::*partName;
    };
    std::vector<PresentField> fields;
    for (const SimulatorField& field : kSimulatorFields) {
        const int32_t index = Graph().GroupFieldIndex(field.fieldName);
        if (index >= 0) {
            fields.push_back({index, field.partName});
        }
    }

    // The parts of the attributes as they stand now, each found in the model by its group name:
    // a part that was skipped or never identified has no group to mark.
    const identification::PartCatalogue parts =
        identification::ListParts(CatalogueInputsFromControls());
    for (const PartEntry& part : parts.entries) {
        const std::shared_ptr<host::SceneGroup> group =
            identification::FindGroupNamed(host_.scene, part.GroupName);
        if (!group) {
            continue;
        }
        for (const PresentField& field : fields) {
            const std::string& name = part.*field.partName;
            // "notsure", a bogie's name for the simulators that may not know bogies, is written.
            if (name != identification::kNoName) {
                group->SetCustomField(field.index, name);
            }
        }
    }
}

}  // namespace railwright::wizard
