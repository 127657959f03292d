#include "export/textures/TextureCheck.h"

#include <algorithm>

#include "support/SupportingFunctions.h"

namespace railwright::exporttextures {
namespace {

constexpr std::string_view kAlphaField = "Tx Alpha";

// A texture or map name shorter than this names nothing.
constexpr size_t kShortestName = 3;

bool Names(const std::string& name) {
    return name.size() >= kShortestName;
}

bool IsAlphaKind(std::string_view value) {
    return support::EqualsIgnoreCase(value, kAlphaTranslucency) ||
           support::EqualsIgnoreCase(value, kAlphaTransparency);
}

// Whether registering `candidate` over an entry registered as `current` raises its kind.
bool RanksHigher(std::string_view candidate, std::string_view current) {
    if (support::EqualsIgnoreCase(candidate, kAlphaTranslucency)) {
        return !support::EqualsIgnoreCase(current, kAlphaTranslucency);
    }
    if (support::EqualsIgnoreCase(candidate, kAlphaTransparency)) {
        return !IsAlphaKind(current);
    }
    return false;
}

void ShowUntextured(support::UserInterface& ui, const std::string& holderName) {
    ui.ShowMessage("Shape \"" + holderName +
                       "\" contains untextured faces. Rail Simulator and Microsoft Train "
                       "Simulator requires that all faces be textured.",
                   support::MessageIcon::Critical, support::MessageButtons::Ok);
}

void ShowAlphaMisuse(support::UserInterface& ui, const std::string& holderName,
                     const std::string& value) {
    ui.ShowMessage("Shape \"" + holderName +
                       "\" uses the custom material field \"Tx Alpha\" incorrectly. It has a "
                       "value of \"" +
                       value + "\".",
                   support::MessageIcon::None, support::MessageButtons::Ok);
}

void ShowTranslucencyLost(support::UserInterface& ui, const std::string& textureFile) {
    ui.ShowMessage("Texture \"" + textureFile +
                       "\" is used with a translucency map. This format doesn't support "
                       "translucency. All translucency information will be lost.",
                   support::MessageIcon::Exclamation, support::MessageButtons::Ok);
}

}  // namespace

bool RegisterTexture(support::UserInterface& ui, TextureList& list, const std::string& textureFile,
                     bool mapFlag, const std::string& alphaValue) {
    const bool valid = alphaValue.empty() || IsAlphaKind(alphaValue) ||
                       support::EqualsIgnoreCase(alphaValue, kAlphaNone);
    const auto found = std::find_if(list.begin(), list.end(), [&](const TextureEntry& entry) {
        return support::EqualsIgnoreCase(entry.textureFile, textureFile);
    });
    if (found != list.end()) {
        if (RanksHigher(alphaValue, found->alphaKind)) {
            found->alphaKind = alphaValue;
        }
        return valid;
    }
    list.push_back({textureFile, mapFlag, alphaValue});
    const std::string extension = support::SplitExtension(textureFile).extension;
    if (IsAlphaKind(alphaValue) &&
        (support::EqualsIgnoreCase(extension, "BMP") ||
         support::EqualsIgnoreCase(extension, "JPG")) &&
        mapFlag) {
        ShowTranslucencyLost(ui, textureFile);
    }
    return valid;
}

bool CheckTextures(support::UserInterface& ui, host::Scripting& scripting,
                   host::SceneGraph& sceneGraph, TextureList& list,
                   std::string_view excludePrefix) {
    bool ok = true;
    try {
        const int32_t alphaField = sceneGraph.MaterialFieldIndex(std::string(kAlphaField));
        bool misuseShown = false;
        const int32_t holderCount = scripting.MaterialListCount();
        for (int32_t i = 0; i < holderCount; ++i) {
            std::shared_ptr<host::Selection> holder = scripting.MaterialList(i);
            const std::string holderName = holder->Name();
            if (!excludePrefix.empty() &&
                support::StartsWithIgnoreCase(holderName, excludePrefix)) {
                continue;
            }
            const int32_t materialCount = holder->MaterialCount();
            for (int32_t j = 0; j < materialCount; ++j) {
                std::shared_ptr<host::Material> material = holder->Material(j);
                const std::string textureFile = material->TextureFile();
                if (!Names(textureFile)) {
                    ShowUntextured(ui, holderName);
                    ok = false;
                    break;
                }
                const std::string transparencyMap = material->TransparencyMap();
                const bool hasTransparencyMap = Names(transparencyMap);
                const std::string alphaValue =
                    alphaField != -1 ? material->CustomField(alphaField) : std::string(kAlphaNone);
                bool valid = RegisterTexture(ui, list, textureFile, hasTransparencyMap, alphaValue);
                // The further maps carry no transparency map of their own.
                for (const std::string& map :
                     {material->NormalMap(), transparencyMap, material->OcclusionMap(),
                      material->EmissiveMap(), material->MetallicRoughnessMap()}) {
                    if (Names(map)) {
                        valid = RegisterTexture(ui, list, map, false, alphaValue) && valid;
                    }
                }
                if (!valid && !misuseShown) {
                    ShowAlphaMisuse(ui, holderName, alphaValue);
                    misuseShown = true;
                }
            }
        }
    } catch (...) {
        support::ReportCurrentError(ui);
    }
    return ok;
}

}  // namespace railwright::exporttextures
