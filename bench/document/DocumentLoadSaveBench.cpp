// Load and save of a large glTF model by the model document: 10,001 named nodes (a train of
// 100 cars of 99 parts), 5,000 meshes of 200 triangles each (1,000,000 triangles), 20
// materials and 10 external PNG textures, as a .gltf with its .bin and as a .glb. The model is
// generated once into a temporary folder. Saving includes the read-back check of the new file.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "document/Document.h"

namespace {

using Json = nlohmann::ordered_json;
using railwright::document::Document;

constexpr int kMeshes = 5000;
constexpr int kGrid = 10;  // quads per side of each mesh: 2 * 10 * 10 = 200 triangles
constexpr int kCars = 100;
constexpr int kPartsPerCar = 99;
constexpr int kMaterials = 20;
constexpr int kImages = 10;

void AppendFloat(std::string& bytes, float value) {
    char raw[4];
    std::memcpy(raw, &value, 4);
    bytes.append(raw, 4);
}

void AppendUint32(std::string& bytes, uint32_t value) {
    char raw[4];
    std::memcpy(raw, &value, 4);
    bytes.append(raw, 4);
}

void WriteFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

class GeneratedModel {
  public:
    GeneratedModel() {
        std::random_device random;
        folder_ = std::filesystem::temp_directory_path() /
                  ("railwright-bench-document-" + std::to_string(random()));
        std::filesystem::create_directories(folder_);
        Generate();
    }
    ~GeneratedModel() {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }

    std::string Gltf() const { return (folder_ / "train.gltf").string(); }
    std::string Glb() const { return (folder_ / "train.glb").string(); }

  private:
    void Generate() {
        std::string buffer;
        Json json = Json::object();
        json["asset"] = {{"version", "2.0"}, {"generator", "Railwright benchmark"}};
        Json accessors = Json::array();
        Json views = Json::array();
        Json meshes = Json::array();
        const int vertices = (kGrid + 1) * (kGrid + 1);
        for (int m = 0; m < kMeshes; ++m) {
            const size_t positions = buffer.size();
            for (int y = 0; y <= kGrid; ++y) {
                for (int x = 0; x <= kGrid; ++x) {
                    AppendFloat(buffer, static_cast<float>(x) * 0.1f);
                    AppendFloat(buffer, static_cast<float>(y) * 0.1f);
                    AppendFloat(buffer, static_cast<float>((x * y + m) % 7) * 0.01f);
                }
            }
            const size_t normals = buffer.size();
            for (int v = 0; v < vertices; ++v) {
                AppendFloat(buffer, 0);
                AppendFloat(buffer, 0);
                AppendFloat(buffer, 1);
            }
            const size_t indices = buffer.size();
            for (int y = 0; y < kGrid; ++y) {
                for (int x = 0; x < kGrid; ++x) {
                    const auto corner = static_cast<uint32_t>(y * (kGrid + 1) + x);
                    const auto above = corner + static_cast<uint32_t>(kGrid + 1);
                    for (const uint32_t index :
                         {corner, corner + 1, above, above, corner + 1, above + 1}) {
                        AppendUint32(buffer, index);
                    }
                }
            }
            const size_t end = buffer.size();
            const auto view = [&views](size_t from, size_t to, int target) {
                views.push_back({{"buffer", 0},
                                 {"byteOffset", from},
                                 {"byteLength", to - from},
                                 {"target", target}});
                return views.size() - 1;
            };
            const size_t first = accessors.size();
            accessors.push_back({{"bufferView", view(positions, normals, 34962)},
                                 {"componentType", 5126},
                                 {"count", vertices},
                                 {"type", "VEC3"},
                                 {"min", {0, 0, 0}},
                                 {"max", {1, 1, 0.06}}});
            accessors.push_back({{"bufferView", view(normals, indices, 34962)},
                                 {"componentType", 5126},
                                 {"count", vertices},
                                 {"type", "VEC3"}});
            accessors.push_back({{"bufferView", view(indices, end, 34963)},
                                 {"componentType", 5125},
                                 {"count", kGrid * kGrid * 6},
                                 {"type", "SCALAR"}});
            meshes.push_back({{"name", "Mesh" + std::to_string(m)},
                              {"primitives",
                               {{{"attributes", {{"POSITION", first}, {"NORMAL", first + 1}}},
                                 {"indices", first + 2},
                                 {"material", m % kMaterials}}}}});
        }

        Json nodes = Json::array();
        Json train = {{"name", "Train"}, {"children", Json::array()}};
        nodes.push_back(train);
        int meshIndex = 0;
        for (int car = 0; car < kCars; ++car) {
            const auto carNode = static_cast<int>(nodes.size());
            nodes[0]["children"].push_back(carNode);
            nodes.push_back({{"name", "Car" + std::to_string(car)},
                             {"translation", {car * 20.0, 0, 0}},
                             {"children", Json::array()},
                             {"mesh", meshIndex++ % kMeshes}});
            for (int part = 0; part < kPartsPerCar; ++part) {
                nodes[static_cast<size_t>(carNode)]["children"].push_back(nodes.size());
                nodes.push_back(
                    {{"name", "Car" + std::to_string(car) + "Part" + std::to_string(part)},
                     {"translation", {0, part * 0.1, 0}},
                     {"rotation", {0, 0, 0.38268343, 0.92387953}},
                     {"mesh", meshIndex++ % kMeshes}});
            }
        }

        Json materials = Json::array();
        Json textures = Json::array();
        Json images = Json::array();
        for (int i = 0; i < kImages; ++i) {
            const std::string name = "texture" + std::to_string(i) + ".png";
            WriteFile(folder_ / name, std::string("\x89PNG\r\n\x1a\n", 8) + std::string(64, 'x'));
            images.push_back({{"uri", name}});
            textures.push_back({{"source", i}});
        }
        for (int i = 0; i < kMaterials; ++i) {
            materials.push_back(
                {{"name", "Material" + std::to_string(i)},
                 {"pbrMetallicRoughness", {{"baseColorTexture", {{"index", i % kImages}}}}}});
        }

        json["scene"] = 0;
        json["scenes"] = {{{"nodes", {0}}}};
        json["nodes"] = std::move(nodes);
        json["meshes"] = std::move(meshes);
        json["materials"] = std::move(materials);
        json["textures"] = std::move(textures);
        json["images"] = std::move(images);
        json["accessors"] = std::move(accessors);
        json["bufferViews"] = std::move(views);
        json["buffers"] = {{{"byteLength", buffer.size()}, {"uri", "train.bin"}}};
        WriteFile(folder_ / "train.bin", buffer);
        WriteFile(folder_ / "train.gltf", json.dump());

        // The same model as one .glb: buffer 0 in the BIN chunk.
        json["buffers"][0].erase("uri");
        std::string text = json.dump();
        text.append((4 - text.size() % 4) % 4, ' ');
        buffer.append((4 - buffer.size() % 4) % 4, '\0');
        std::string glb = "glTF";
        AppendUint32(glb, 2);
        AppendUint32(glb, static_cast<uint32_t>(12 + 8 + text.size() + 8 + buffer.size()));
        AppendUint32(glb, static_cast<uint32_t>(text.size()));
        glb += "JSON";
        glb += text;
        AppendUint32(glb, static_cast<uint32_t>(buffer.size()));
        glb += std::string("BIN\0", 4);
        glb += buffer;
        WriteFile(folder_ / "train.glb", glb);
    }

    std::filesystem::path folder_;
};

const GeneratedModel& Model() {
    static const GeneratedModel model;
    return model;
}

std::unique_ptr<Document> Load(benchmark::State& state, const std::string& file) {
    railwright::document::LoadResult loaded = Document::Load(file);
    if (!loaded.document) {
        state.SkipWithError(loaded.error.c_str());
    }
    return std::move(loaded.document);
}

// A change the wizard makes: renaming a group, so that saving has something to write.
void Rename(Document& document, int iteration) {
    document.Scene().scripting->Group(1)->SetName("Main" + std::to_string(iteration));
}

void BM_Load(benchmark::State& state, bool binary) {
    const std::string file = binary ? Model().Glb() : Model().Gltf();
    for (auto _ : state) {
        benchmark::DoNotOptimize(Load(state, file));
    }
}

void BM_Save(benchmark::State& state, bool binary) {
    std::unique_ptr<Document> document = Load(state, binary ? Model().Glb() : Model().Gltf());
    int iteration = 0;
    for (auto _ : state) {
        if (!document) {
            break;
        }
        Rename(*document, ++iteration);
        const railwright::document::SaveResult saved = document->Save();
        if (!saved.Ok()) {
            state.SkipWithError(saved.error.c_str());
        }
    }
}

void BM_LoadAndSave(benchmark::State& state, bool binary) {
    const std::string file = binary ? Model().Glb() : Model().Gltf();
    int iteration = 0;
    for (auto _ : state) {
        std::unique_ptr<Document> document = Load(state, file);
        if (!document) {
            break;
        }
        Rename(*document, ++iteration);
        const railwright::document::SaveResult saved = document->Save();
        if (!saved.Ok()) {
            state.SkipWithError(saved.error.c_str());
        }
    }
}

BENCHMARK_CAPTURE(BM_Load, gltf, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, glb, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, gltf, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, glb, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadAndSave, gltf, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadAndSave, glb, true)->Unit(benchmark::kMillisecond);

}  // namespace
