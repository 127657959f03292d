// The MSTS shape writer on a 1 M-triangle locomotive, and a whole `railwright apply` on it.
//
// The in-memory model: "Main" holding a body of 100 panels (merged into its matrix), each a grid
// of 10,000 triangles with normals and texture coordinates over 4 materials, two bogies and four
// wheelsets: 1,000,000 triangles in the body. Building is the pipeline up to the shape's data;
// text is the 8-bit text; the file adds writing it and txt2uni. The whole apply runs the command
// in-process on the same geometry saved as a glTF model (with small TGA textures and a stand-in
// MSTS folder), under the sample's event script.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "cli/Command.h"
#include "document/shape/ShapeText.h"
#include "document/shape/ShapeWriter.h"
#include "host/scene/Scene.h"
#include "support/posix/PosixServices.h"
#include "ui/script/ScriptedUserInterface.h"

namespace {

namespace fs = std::filesystem;
using railwright::document::shape::BuildShape;
using railwright::document::shape::ShapeText;
using railwright::host::scene::Scene;
using railwright::host::scene::SceneBuilder;
using railwright::host::scene::Shape;

constexpr int kPanels = 100;
constexpr int kColumns = 100;  // quads per panel row
constexpr int kRows = 50;      // 100 x 50 quads = 10,000 triangles
constexpr int kMaterials = 4;

// One panel of the body: a curved grid with normals and texture coordinates, its triangles
// shared out over the materials row by row.
Shape Panel(int panel) {
    Shape shape{{}, nullptr};
    const float z0 = -10 + 20.0f * static_cast<float>(panel) / kPanels;
    for (int j = 0; j <= kRows; ++j) {
        for (int i = 0; i <= kColumns; ++i) {
            const float angle = 3.14159f * static_cast<float>(i) / kColumns;
            const float z = z0 + 0.2f * static_cast<float>(j) / kRows;
            shape.vertices.push_back({1.5f * std::cos(angle), 2 + 1.5f * std::sin(angle), z});
            shape.normals.push_back({std::cos(angle), std::sin(angle), 0});
            shape.texCoords.push_back(
                {static_cast<float>(i) / kColumns, static_cast<float>(j) / kRows});
        }
    }
    shape.triangles.resize(kMaterials);
    for (int m = 0; m < kMaterials; ++m) {
        shape.triangles[static_cast<size_t>(m)].material = m;
    }
    for (int j = 0; j < kRows; ++j) {
        auto& corners = shape.triangles[static_cast<size_t>(j % kMaterials)].corners;
        for (int i = 0; i < kColumns; ++i) {
            const auto a = static_cast<uint32_t>(j * (kColumns + 1) + i);
            const auto b = a + kColumns + 1;
            corners.insert(corners.end(), {a, a + 1, b, b, a + 1, b + 1});
        }
    }
    return shape;
}

const Scene& Locomotive() {
    static const Scene scene = [] {
        SceneBuilder builder("Locomotive");
        builder.Group("Main");
        for (int p = 0; p < kPanels; ++p) {
            builder.Group("Panel" + std::to_string(p), "Main")
                .Mesh("Panel", Panel(p), {"body.tga"});
            for (int m = 1; m < kMaterials; ++m) {
                builder.Material({"panel" + std::to_string(m) + ".tga"});
            }
        }
        for (const int bogie : {1, 2}) {
            const float z = bogie == 1 ? 6.5f : -6.5f;
            const std::string name = "Bogie" + std::to_string(bogie);
            builder.Group(name, "Main")
                .At(0, 0, z)
                .Box({-1.2f, 0.5f, -2}, {1.2f, 1, 2}, "bogie.tga");
            for (const int axle : {1, 2}) {
                builder.Group("Wheels" + std::to_string(bogie) + std::to_string(axle), name)
                    .At(0, 0.5f, axle == 1 ? 1.2f : -1.2f)
                    .Box({-0.8f, -0.5f, -0.5f}, {0.8f, 0.5f, 0.5f}, "wheel.tga");
            }
        }
        return builder.Build();
    }();
    return scene;
}

void BM_BuildShape(benchmark::State& state) {
    const Scene& scene = Locomotive();
    const auto main = scene.GroupNamed("Main");
    size_t triangles = 0;
    for (auto _ : state) {
        auto built = BuildShape(*main, scene.model->MaterialFields(),
                                {static_cast<int32_t>(state.range(0))});
        triangles = built.report.levels.at(0).triangles;
        benchmark::DoNotOptimize(built);
    }
    state.counters["triangles"] = static_cast<double>(triangles);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(triangles));
}
BENCHMARK(BM_BuildShape)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_ShapeText(benchmark::State& state) {
    const Scene& scene = Locomotive();
    const auto built = BuildShape(*scene.GroupNamed("Main"), scene.model->MaterialFields(), {0});
    size_t bytes = 0;
    for (auto _ : state) {
        const std::string text = ShapeText(built.data);
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}
BENCHMARK(BM_ShapeText)->Unit(benchmark::kMillisecond);

// A temporary folder removed with everything in it.
class Scratch {
  public:
    Scratch() {
        std::random_device random;
        path_ = fs::temp_directory_path() / ("railwright-bench-shape-" + std::to_string(random()));
        fs::create_directories(path_);
    }
    ~Scratch() {
        std::error_code error;
        fs::remove_all(path_, error);
    }
    const fs::path& Path() const { return path_; }

  private:
    fs::path path_;
};

void BM_WriteShapeFile(benchmark::State& state) {
    const Scene& scene = Locomotive();
    Scratch scratch;
    railwright::support::posix::PosixServices services((scratch.Path() / "settings.ini").string());
    railwright::ui::script::ScriptedUserInterface ui({});
    railwright::support::Platform platform{services.files, services.processes, services.settings,
                                           services.system, ui};
    const std::string file = (scratch.Path() / "loco.s").string();
    size_t bytes = 0;
    for (auto _ : state) {
        const auto written = railwright::document::shape::WriteShapeFile(
            platform, *scene.GroupNamed("Main"), file, {0});
        if (!written.Ok()) {
            state.SkipWithError(written.error.c_str());
            return;
        }
        bytes = written.report.textBytes;
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}
BENCHMARK(BM_WriteShapeFile)->Unit(benchmark::kMillisecond)->UseRealTime();

// ---- The whole apply ----------------------------------------------------------------------

void Append(std::string& bytes, const void* value, size_t size) {
    bytes.append(static_cast<const char*>(value), size);
}

void WriteFile(const fs::path& file, const std::string& bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

// A 4 x 4 uncompressed 24-bit TGA image.
std::string SmallTga() {
    std::string tga(18, '\0');
    tga[2] = 2;
    tga[12] = 4;
    tga[14] = 4;
    tga[16] = 24;
    tga += std::string(4 * 4 * 3, '\x80');
    return tga;
}

// The locomotive as a glTF model named like the sample, so that the sample's script applies.
void WriteModel(const fs::path& folder) {
    using Json = nlohmann::ordered_json;
    std::string buffer;
    Json accessors = Json::array();
    Json views = Json::array();
    const auto addView = [&](size_t from, int target) {
        views.push_back({{"buffer", 0},
                         {"byteOffset", from},
                         {"byteLength", buffer.size() - from},
                         {"target", target}});
        return views.size() - 1;
    };
    // The body: all panels in one mesh of one primitive per material.
    std::vector<Shape> panels;
    for (int p = 0; p < kPanels; ++p) {
        panels.push_back(Panel(p));
    }
    const size_t positions = buffer.size();
    float low[3] = {1e9f, 1e9f, 1e9f};
    float high[3] = {-1e9f, -1e9f, -1e9f};
    for (const Shape& panel : panels) {
        for (const auto& v : panel.vertices) {
            const float xyz[3] = {v.x, v.y, v.z};
            for (int a = 0; a < 3; ++a) {
                low[a] = std::min(low[a], xyz[a]);
                high[a] = std::max(high[a], xyz[a]);
            }
            Append(buffer, xyz, sizeof xyz);
        }
    }
    const size_t vertexCount = panels.size() * panels[0].vertices.size();
    accessors.push_back({{"bufferView", addView(positions, 34962)},
                         {"componentType", 5126},
                         {"count", vertexCount},
                         {"type", "VEC3"},
                         {"min", {low[0], low[1], low[2]}},
                         {"max", {high[0], high[1], high[2]}}});
    const size_t normals = buffer.size();
    for (const Shape& panel : panels) {
        Append(buffer, panel.normals.data(), panel.normals.size() * sizeof(panel.normals[0]));
    }
    accessors.push_back({{"bufferView", addView(normals, 34962)},
                         {"componentType", 5126},
                         {"count", vertexCount},
                         {"type", "VEC3"}});
    const size_t uvs = buffer.size();
    for (const Shape& panel : panels) {
        Append(buffer, panel.texCoords.data(), panel.texCoords.size() * sizeof(panel.texCoords[0]));
    }
    accessors.push_back({{"bufferView", addView(uvs, 34962)},
                         {"componentType", 5126},
                         {"count", vertexCount},
                         {"type", "VEC2"}});
    Json primitives = Json::array();
    for (int m = 0; m < kMaterials; ++m) {
        const size_t indices = buffer.size();
        size_t count = 0;
        for (size_t p = 0; p < panels.size(); ++p) {
            const auto base = static_cast<uint32_t>(p * panels[p].vertices.size());
            for (uint32_t corner : panels[p].triangles[static_cast<size_t>(m)].corners) {
                corner += base;
                Append(buffer, &corner, sizeof corner);
                ++count;
            }
        }
        accessors.push_back({{"bufferView", addView(indices, 34963)},
                             {"componentType", 5125},
                             {"count", count},
                             {"type", "SCALAR"}});
        primitives.push_back({{"attributes", {{"POSITION", 0}, {"NORMAL", 1}, {"TEXCOORD_0", 2}}},
                              {"indices", accessors.size() - 1},
                              {"material", m}});
    }
    // One box for the bogies and one for the wheelsets (positions only).
    const auto box = [&](float sx, float sy, float sz) {
        const size_t from = buffer.size();
        for (const float x : {-sx, sx}) {
            for (const float y : {-sy, sy}) {
                for (const float z : {-sz, sz}) {
                    const float xyz[3] = {x, y, z};
                    Append(buffer, xyz, sizeof xyz);
                }
            }
        }
        accessors.push_back({{"bufferView", addView(from, 34962)},
                             {"componentType", 5126},
                             {"count", 8},
                             {"type", "VEC3"},
                             {"min", {-sx, -sy, -sz}},
                             {"max", {sx, sy, sz}}});
        const size_t indices = buffer.size();
        for (const uint32_t corner :
             {0u, 1u, 3u, 0u, 3u, 2u, 4u, 6u, 7u, 4u, 7u, 5u, 0u, 4u, 5u, 0u, 5u, 1u,
              2u, 3u, 7u, 2u, 7u, 6u, 4u, 0u, 2u, 4u, 2u, 6u, 7u, 3u, 1u, 7u, 1u, 5u}) {
            Append(buffer, &corner, sizeof corner);
        }
        accessors.push_back({{"bufferView", addView(indices, 34963)},
                             {"componentType", 5125},
                             {"count", 36},
                             {"type", "SCALAR"}});
        return accessors.size() - 2;
    };
    const size_t bogieBox = box(1.2f, 0.25f, 2);
    const size_t wheelBox = box(0.8f, 0.5f, 0.5f);
    const Json meshes = {{{"name", "BodyShape"}, {"primitives", primitives}},
                         {{"name", "BogieShape"},
                          {"primitives",
                           {{{"attributes", {{"POSITION", bogieBox}}},
                             {"indices", bogieBox + 1},
                             {"material", 4}}}}},
                         {{"name", "WheelsetShape"},
                          {"primitives",
                           {{{"attributes", {{"POSITION", wheelBox}}},
                             {"indices", wheelBox + 1},
                             {"material", 5}}}}}};
    Json materials = Json::array();
    Json textures = Json::array();
    Json images = Json::array();
    const char* files[] = {"body.tga",   "panel1.tga", "panel2.tga",
                           "panel3.tga", "bogie.tga",  "wheel.tga"};
    for (size_t i = 0; i < std::size(files); ++i) {
        WriteFile(folder / files[i], SmallTga());
        images.push_back({{"uri", files[i]}});
        textures.push_back({{"source", i}});
        materials.push_back(
            {{"name", files[i]}, {"pbrMetallicRoughness", {{"baseColorTexture", {{"index", i}}}}}});
    }
    Json model;
    model["asset"] = {{"version", "2.0"}};
    model["scene"] = 0;
    model["scenes"] = {{{"name", "Diesel"}, {"nodes", {0, 1, 2, 3, 4, 5, 6}}}};
    model["nodes"] = {{{"name", "Body"}, {"mesh", 0}},
                      {{"name", "FrontBogie"}, {"mesh", 1}, {"translation", {0, 0.75, 6.5}}},
                      {{"name", "RearBogie"}, {"mesh", 1}, {"translation", {0, 0.75, -6.5}}},
                      {{"name", "FrontAxle1"}, {"mesh", 2}, {"translation", {0, 0.5, 7.7}}},
                      {{"name", "FrontAxle2"}, {"mesh", 2}, {"translation", {0, 0.5, 5.3}}},
                      {{"name", "RearAxle1"}, {"mesh", 2}, {"translation", {0, 0.5, -5.3}}},
                      {{"name", "RearAxle2"}, {"mesh", 2}, {"translation", {0, 0.5, -7.7}}}};
    model["meshes"] = meshes;
    model["materials"] = materials;
    model["textures"] = textures;
    model["images"] = images;
    model["accessors"] = accessors;
    model["bufferViews"] = views;
    model["buffers"] = {{{"byteLength", buffer.size()}, {"uri", "diesel.bin"}}};
    WriteFile(folder / "diesel.bin", buffer);
    WriteFile(folder / "diesel.gltf", model.dump());
}

// The stand-in MSTS installation that the default cab view and sounds are copied from.
void WriteMsts(const fs::path& msts) {
    const fs::path dash9 = msts / "TRAINS" / "TRAINSET" / "DASH9";
    for (const char* file : {"CABVIEW/dash9.cvf", "CABVIEW/DASH9FRONT.ACE", "SOUND/d9cab.sms",
                             "SOUND/d9eng.sms", "SOUND/D9HORN.WAV"}) {
        WriteFile(dash9 / file, "stand-in");
    }
    WriteFile(msts / "train.exe", "stand-in");
}

void BM_ApplyTheSampleScript(benchmark::State& state) {
    Scratch scratch;
    const fs::path model = scratch.Path() / "model";
    WriteModel(model);
    WriteMsts(scratch.Path() / "msts");
    const std::string pristine = (model / "diesel.gltf").string();
    std::ifstream original(pristine, std::ios::binary);
    const std::string gltf((std::istreambuf_iterator<char>(original)),
                           std::istreambuf_iterator<char>());
    for (auto _ : state) {
        state.PauseTiming();
        WriteFile(model / "diesel.gltf", gltf);  // the model as it was before identification
        fs::remove_all(scratch.Path() / "documents");
        fs::create_directories(scratch.Path() / "documents");
        state.ResumeTiming();
        std::ostringstream out;
        std::ostringstream err;
        const int status = railwright::cli::RunCommand(
            {"railwright", "apply", pristine, "--script",
             std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json", "--msts",
             (scratch.Path() / "msts").string(), "--documents",
             (scratch.Path() / "documents").string(), "--settings",
             (scratch.Path() / "settings.ini").string(), "--tools", RAILWRIGHT_TOOLS_BIN_DIR},
            {out, err, false, RAILWRIGHT_TOOLS_BIN_DIR});
        if (status != railwright::cli::kExitSuccess) {
            state.SkipWithError(("apply failed: " + err.str()).c_str());
            return;
        }
    }
    // What the run wrote: the shape (UTF-16) and the model saved back.
    const fs::path shape =
        scratch.Path() / "documents" / "TRAINS" / "TRAINSET" / "SAMPLEDIESEL" / "samplediesel.s";
    state.counters["shape_MB"] = static_cast<double>(fs::file_size(shape)) / 1e6;
    state.counters["model_MB"] = static_cast<double>(fs::file_size(model / "diesel.bin")) / 1e6;
}
BENCHMARK(BM_ApplyTheSampleScript)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

}  // namespace
