// The model document: a glTF 2.0 model (.gltf with its buffers and images beside it or in data:
// URIs, or a self-contained .glb) loaded into the in-memory scene, and saved back in the same
// form with what the system changed.
//
//     LoadResult loaded = Document::Load("loco.gltf");
//     if (!loaded.document) { report(loaded.error); }
//     host::scene::Scene& scene = loaded.document->Scene();   // the host objects of the model
//     ... run the plug-in against scene.scripting, scene.hostContext ...
//     SaveResult saved = loaded.document->Save();
//
// How the file maps to the scene is described in ModelLoading.cpp, what saving changes in
// WriteBack.cpp, where the system's own data lives in StoredData.h.
//
// Saving never corrupts the target: the new file is written beside it, read back and compared
// with the scene, and only then renamed into place. A .gltf keeps its external files as they
// are; new binary data (animation keys) goes into the BIN chunk of a .glb and into a buffer
// given as a data: URI in a .gltf, so no file beside the model is written or overwritten.
// Errors are values; nothing here throws.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/TexturePreparation.h"
#include "host/scene/Scene.h"

namespace railwright::document {

struct DocumentState;
class Document;

struct [[nodiscard]] LoadResult {
    std::unique_ptr<Document> document;  // null when the file was refused
    std::string error;                   // names the file and the fault
};

struct [[nodiscard]] SaveResult {
    std::string error;  // empty on success; otherwise names the file and the fault
    bool Ok() const { return error.empty(); }
};

class Document {
  public:
    // Loads the model at `path` (UTF-8). A file that is not sound glTF 2.0, or that needs what
    // the document cannot read (compressed geometry, integer positions), is refused with a
    // message naming the file and the fault.
    static LoadResult Load(const std::string& path);
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    // The in-memory scene and its host objects.
    host::scene::Scene& Scene();
    // The settings values that the host keeps with the model, for Plugin_Apply.
    std::vector<float>& UserDataSingles();
    std::vector<int32_t>& UserDataLongs();
    std::string& UserDataString();

    // What loading left out of the scene (points and lines), one line each.
    const std::vector<std::string>& Notices() const;

    // The absolute path of the loaded file.
    std::string Path() const;
    // The loaded file's name and the files its buffers and images name by relative reference,
    // as paths relative to the file's folder with "/" between folders (decoded, not checked).
    std::vector<std::string> ReferencedFiles() const;
    bool IsBinary() const;

    // Saves over the loaded file.
    SaveResult Save();
    // Saves to another file, in the loaded file's form whatever its name. Relative URIs of
    // buffers and images are rewritten to name the same files from the new folder; a model
    // whose files cannot be named from there (another drive) is refused. The document stays
    // bound to the loaded file.
    SaveResult SaveAs(const std::string& path);

    // Gives every material texture files the exporters take, as the modeller would: PNG, JPEG
    // and images held inside the file are decoded into TGA files in `cacheFolder` (UTF-8),
    // base colour factors multiplied in, and materials of one colour get a picture of it
    // (TexturePreparation.h). The model's own file is not changed: saving keeps its images.
    TexturePreparation PrepareTextures(const std::string& cacheFolder);

    // The model as `railwright inspect --json` prints it: groups in scene order (index, name,
    // parent index or -1, shapes, keys, fields by field name), materials by holder (holder,
    // texture, fields), the custom field names by slot and the settings values.
    nlohmann::ordered_json Inspect();

  private:
    explicit Document(std::unique_ptr<DocumentState> state);

    std::unique_ptr<DocumentState> state_;
};

}  // namespace railwright::document
