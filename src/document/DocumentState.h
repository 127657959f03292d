// What a loaded document holds: the file as it was read, the scene built from it, and for each
// group and material the glTF object it came from with what it looked like then. Saving
// compares the scene with those records and changes only what differs.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "document/StoredData.h"
#include "document/TextureImages.h"
#include "host/scene/Scene.h"

namespace railwright::document {

enum class FileForm {
    Text,   // .gltf: JSON, buffers and images in files beside it or in data: URIs
    Binary  // .glb: JSON and buffer 0 in one file
};

// A group and the glTF object it came from, as loaded.
struct GroupRecord {
    std::shared_ptr<host::scene::Node> group;
    int node = -1;  // the glTF node; -1 for the root group, which is the scene
    std::string name;
    host::scene::Affine local;
    std::vector<host::scene::Key> keys;
    std::vector<int> children;  // glTF node indices, in order
};

// The images a glTF material paints with, by glTF image index (-1: none).
struct MaterialImages {
    int baseColour = -1;
    LinearColour baseColourFactor = {1.0f, 1.0f, 1.0f, 1.0f};
    int normal = -1;
    int occlusion = -1;
    int emissive = -1;
    int metallicRoughness = -1;
};

struct MaterialRecord {
    std::shared_ptr<host::scene::SceneMaterial> material;
    int index = -1;  // the glTF material; -1 for the default material of primitives without one
    std::string name;  // its own name, or one made from the model's name and its index
    MaterialImages images;
};

// A glTF image: a file beside the model or bytes held inside the file (a bufferView or a data:
// URI).
struct ImageSource {
    std::string name;   // for files made from it: the file's own stem, else the image's name,
                        // else the model's name and the image's index
    std::string file;   // UTF-8; empty for an image held inside the file
    std::string bytes;  // an image held inside the file
};

struct DocumentState {
    std::filesystem::path file;    // absolute
    std::filesystem::path folder;  // the file's folder: where relative URIs point
    FileForm form = FileForm::Text;
    Json json;                       // the file's JSON as read; never changed by saving
    std::optional<std::string> bin;  // .glb: the BIN chunk
    std::string otherChunks;         // .glb: chunks of other types, kept as they were
    int scene = -1;  // the glTF scene shown as the root group; -1 when the file has none and
                     // the parentless nodes are its top groups
    host::scene::Scene host;
    std::vector<GroupRecord> groups;  // in scene order when loaded; [0] is the root group
    std::vector<MaterialRecord> materials;
    ModelData data;  // the settings values (edited in place) and the field names as loaded
    std::vector<ImageSource> images;  // by glTF image index
    std::vector<std::string> notices;  // what loading left out, one line each
};

// Reads `file` into `state`. Empty on success; otherwise the fault, without the file's name.
[[nodiscard]] std::string LoadState(const std::filesystem::path& file, DocumentState& state);

// The file's JSON with every change of the scene and settings applied, and the BIN chunk to go
// with it (.glb). Empty on success; otherwise the fault.
[[nodiscard]] std::string ApplyChanges(const DocumentState& state, Json& json,
                                       std::optional<std::string>& bin);

}  // namespace railwright::document
