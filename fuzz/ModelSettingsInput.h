// The input of the model-settings fuzz target, shared with the test that replays its findings.
//
// The settings and custom fields that a model keeps in its extras, through a whole application
// of the plug-in: the wizard loads them (upgrading and correcting what it must), Finish is
// pressed, and the model is saved and read back.
//
// The input is JSON. An object's members "asset", "scene", "node" and "material" go under the
// "railwright" key of the extras of the model's asset, its scene, its one node and its one
// material; any other value goes under the asset's.
#pragma once

#include <sstream>

#include <nlohmann/json.hpp>

#include "FuzzFiles.h"
#include "cli/Command.h"

namespace railwright::fuzz::model_settings {

using Json = nlohmann::ordered_json;

// One triangle, its three positions in a data: URI.
inline Json BaseModel() {
    return Json::parse(R"({
      "asset": { "version": "2.0" },
      "scene": 0,
      "scenes": [ { "nodes": [ 0 ] } ],
      "nodes": [ { "name": "Body", "mesh": 0 } ],
      "meshes": [ { "primitives": [ { "attributes": { "POSITION": 0 }, "material": 0 } ] } ],
      "materials": [ { "name": "Paint" } ],
      "accessors": [ { "bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                       "min": [ 0, 0, 0 ], "max": [ 1, 1, 0 ] } ],
      "bufferViews": [ { "buffer": 0, "byteLength": 36 } ],
      "buffers": [ { "byteLength": 36, "uri":
        "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA" } ]
    })");
}

}  // namespace railwright::fuzz::model_settings

namespace railwright::fuzz {

// Runs one input; the exit status of the application, or -1 for an input that is not JSON.
inline int RunModelSettingsInput(const uint8_t* data, size_t size) {
    using model_settings::Json;
    const Json stored = Json::parse(railwright::fuzz::AsText(data, size), nullptr, false);
    if (stored.is_discarded()) {
        return -1;
    }
    Json model = model_settings::BaseModel();
    if (stored.is_object()) {
        for (const auto& [member, pointer] :
             {std::pair{"asset", "/asset"}, std::pair{"scene", "/scenes/0"},
              std::pair{"node", "/nodes/0"}, std::pair{"material", "/materials/0"}}) {
            if (stored.contains(member)) {
                model[Json::json_pointer(pointer)]["extras"]["railwright"] = stored[member];
            }
        }
    } else {
        model["asset"]["extras"]["railwright"] = stored;
    }
    const std::filesystem::path folder = railwright::fuzz::ScratchFolder();
    railwright::fuzz::WriteFile(folder / "model.gltf", model.dump());
    railwright::fuzz::WriteFile(
        folder / "script.json",
        R"({ "events": [ { "click": "cmdFinish" }, { "click": "chkBVE" },
                         { "click": "cmdFinish" } ], "answers": [ "Yes", "Yes", "Yes" ] })");
    std::ostringstream out;
    std::ostringstream err;
    return railwright::cli::RunCommand(
        {"railwright", "apply", (folder / "model.gltf").string(), "--script",
         (folder / "script.json").string(), "--documents", folder.string(), "--settings",
         (folder / "settings.ini").string(), "--tools", folder.string(), "--output",
         (folder / "saved.gltf").string(), "--no-cache", "--quiet"},
        {out, err, false, folder.string()});
}

}  // namespace railwright::fuzz
