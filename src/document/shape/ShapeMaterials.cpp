#include "document/shape/ShapeMaterials.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <tuple>

#include "export/textures/TextureCheck.h"
#include "support/SupportingFunctions.h"

namespace railwright::document::shape {

namespace {

constexpr std::string_view kTxAlphaField = "Tx Alpha";
constexpr std::string_view kAlphaPriorityField = "Alpha Pr";
// A field value shorter than this counts as unset.
constexpr size_t kShortestFieldValue = 3;

constexpr std::string_view kLitShader = "TexDiff";
constexpr std::string_view kBlendedShader = "BlendATexDiff";
constexpr int32_t kAlphaTest = 1;

enum class AlphaUse { None, Transparency, Translucency };

std::string FieldValue(const host::scene::FieldSlots& fields,
                       const host::scene::SceneMaterial& material, std::string_view field) {
    const int32_t index = fields.IndexOf(field);
    return index < 0 ? std::string() : material.CustomFields()[static_cast<size_t>(index)];
}

// The field when it is set; otherwise what the material itself says, as the wizard would have
// filled the field in.
AlphaUse AlphaUseOf(const host::scene::FieldSlots& fields, host::scene::SceneMaterial& material) {
    const std::string value = FieldValue(fields, material, kTxAlphaField);
    if (value.size() >= kShortestFieldValue) {
        if (support::EqualsIgnoreCase(value, exporttextures::kAlphaTranslucency)) {
            return AlphaUse::Translucency;
        }
        return support::EqualsIgnoreCase(value, exporttextures::kAlphaTransparency)
                   ? AlphaUse::Transparency
                   : AlphaUse::None;
    }
    const host::scene::MaterialProperties& properties = material.Properties();
    if (properties.translucencyLevel >= 1) {
        return AlphaUse::Translucency;
    }
    return properties.transparencyMap.size() >= kShortestFieldValue ? AlphaUse::Transparency
                                                                    : AlphaUse::None;
}

int32_t AlphaPriority(const host::scene::FieldSlots& fields,
                      const host::scene::SceneMaterial& material) {
    const std::string value = FieldValue(fields, material, kAlphaPriorityField);
    int32_t priority = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), priority);
    return error == std::errc() && end == value.data() + value.size() ? priority : 0;
}

template <typename T>
int32_t IndexIn(std::vector<T>& list, const T& value) {
    const auto found = std::find(list.begin(), list.end(), value);
    if (found != list.end()) {
        return static_cast<int32_t>(found - list.begin());
    }
    list.push_back(value);
    return static_cast<int32_t>(list.size() - 1);
}

}  // namespace

std::string ImageName(std::string_view textureFile) {
    const size_t slash = textureFile.find_last_of("\\/");
    const std::string_view file =
        slash == std::string_view::npos ? textureFile : textureFile.substr(slash + 1);
    return support::ToLower(support::SplitExtension(file).baseName) + ".ace";
}

void AssignMaterials(const host::scene::FieldSlots& materialFields, size_t matrixCount,
                     std::vector<Batch>& batches, ShapeData& shape) {
    shape.vtxStates.clear();
    for (size_t m = 0; m < matrixCount; ++m) {
        shape.vtxStates.push_back(static_cast<int32_t>(m));
    }
    using Key = std::tuple<int32_t, int32_t, int32_t, int32_t, int32_t>;
    std::map<Key, int32_t> known;
    for (Batch& batch : batches) {
        PrimState state;
        state.vtxState = batch.matrix;
        AlphaUse use = AlphaUse::None;
        if (batch.material != nullptr) {
            use = AlphaUseOf(materialFields, *batch.material);
            const std::string& texture = batch.material->Properties().textureFile;
            if (!texture.empty()) {
                state.texture = IndexIn(shape.images, ImageName(texture));
            }
            if (use == AlphaUse::Translucency) {
                state.zBias = AlphaPriority(materialFields, *batch.material);
            }
        }
        state.shader =
            IndexIn(shape.shaders,
                    std::string(use == AlphaUse::Translucency ? kBlendedShader : kLitShader));
        state.alphaTestMode = use == AlphaUse::Transparency ? kAlphaTest : 0;
        const Key key{state.shader, state.texture, state.zBias, state.vtxState,
                      state.alphaTestMode};
        const auto [place, added] =
            known.try_emplace(key, static_cast<int32_t>(shape.primStates.size()));
        if (added) {
            shape.primStates.push_back(state);
        }
        batch.primState = place->second;
    }
}

}  // namespace railwright::document::shape
