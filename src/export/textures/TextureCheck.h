// The texture check that every simulator export runs before it writes a file: one pass over the
// model's materials that verifies that every shape is textured and that the custom material field
// "Tx Alpha" holds a value the exporters understand, and that collects the distinct texture files
// with their alpha kinds for the conversion (TextureConversion.h).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exporttextures {

// The known alpha kinds, as the "Tx Alpha" field holds them (compared without regard to case).
inline constexpr std::string_view kAlphaTranslucency = "Translucency";
inline constexpr std::string_view kAlphaTransparency = "Transparency";
inline constexpr std::string_view kAlphaNone = "None";

struct TextureEntry {
    std::string textureFile;  // as the material names it
    bool mapFlag = false;     // the flag of the file's first registration
    std::string alphaKind;    // the "Tx Alpha" value it was registered under
    bool operator==(const TextureEntry&) const = default;
};

// Distinct by texture file, compared without regard to case, in the order first registered.
using TextureList = std::vector<TextureEntry>;

// Adds `textureFile` to the list, or raises the alpha kind of its entry when `alphaValue` ranks
// higher (Translucency above Transparency above anything else); an entry keeps its map flag.
// A new entry with an alpha kind, a BMP or JPG file and the map flag set is kept with a warning
// that the format loses the translucency. Returns false when `alphaValue` is neither empty nor a
// known alpha kind.
bool RegisterTexture(support::UserInterface& ui, TextureList& list, const std::string& textureFile,
                     bool mapFlag, const std::string& alphaValue);

// The pass. Material holders whose names begin with `excludePrefix` (ignoring case; an empty
// prefix leaves out nothing) are skipped. Each holder with an untextured material gets its own
// message; a misused "Tx Alpha" gets one message per pass. Returns true when every examined
// material has a texture. A failing host call is reported and ends the pass with the result as
// it stood.
bool CheckTextures(support::UserInterface& ui, host::Scripting& scripting,
                   host::SceneGraph& sceneGraph, TextureList& list, std::string_view excludePrefix);

}  // namespace railwright::exporttextures
