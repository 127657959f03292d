// A glTF or GLB file through loading (validation, the scene), the MSTS shape of its first top
// group, the inspection and a save beside it, which reads the saved file back.
#include <cstring>

#include "FuzzFiles.h"
#include "document/Document.h"
#include "document/shape/ShapeText.h"
#include "document/shape/ShapeWriter.h"
#include "host/scene/Model.h"

using namespace railwright;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const bool binary = size >= 4 && std::memcmp(data, "glTF", 4) == 0;
    const std::filesystem::path folder = fuzz::ScratchFolder();
    const std::filesystem::path model = folder / (binary ? "model.glb" : "model.gltf");
    fuzz::WriteFile(model, fuzz::AsText(data, size));
    document::LoadResult loaded = document::Document::Load(model.string());
    if (!loaded.document) {
        return 0;
    }
    document::Document& document = *loaded.document;
    (void)document.Inspect().dump();
    const host::scene::Scene& scene = document.Scene();
    const auto& groups = scene.model->GroupOrder();
    if (groups.size() > 1) {
        const document::shape::BuiltShape built =
            document::shape::BuildShape(*groups[1], scene.model->MaterialFields(), {2, false});
        if (built.error.empty()) {
            (void)document::shape::ShapeText(built.data);
        }
    }
    const document::SaveResult saved =
        document.SaveAs((folder / (binary ? "saved.glb" : "saved.gltf")).string());
    (void)saved;
    return 0;
}
