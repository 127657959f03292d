// tinygltf behind a wall: the one place that calls its loader.
//
// tinygltf 2.7.0 throws out of its loader on some inputs, trusts image bufferViews before
// anything checks them, looks for missing files in the process's current folder and decodes
// images by default. This adapter installs an image callback that keeps URIs and decodes
// nothing, file callbacks confined to the model's folder, checks the image bufferViews that
// tinygltf hands to that callback, and catches whatever the loader throws. What it returns has
// been parsed, not validated: see Validation.h.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "document/TinyGltf.h"

namespace railwright::document {

struct TinyGltfRead {
    tinygltf::Model model;
    // The encoded bytes of every image given as a data: URI, by image index. Images in a
    // bufferView are read from the buffers once those are validated.
    std::map<int, std::string> dataUriImages;
    // Empty on success.
    std::string error;
};

// Loads the file's bytes (JSON text, or the whole .glb) with tinygltf. `json` is the same
// document parsed beforehand, used to check what tinygltf would trust; `folder` is where
// relative URIs of buffers point.
TinyGltfRead ReadWithTinyGltf(std::string_view file, bool binary,
                              const nlohmann::ordered_json& json,
                              const std::filesystem::path& folder);

}  // namespace railwright::document
