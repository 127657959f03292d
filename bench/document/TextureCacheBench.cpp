// The pictures the model document makes of a model's textures: a cube model of 50 materials,
// each painting with its own 1024 x 1024 PNG (photograph-like content: smooth shading with fine
// noise, about 1.5 MB a file), generated once into a temporary folder.
//
//   BM_DecodeAndWrite  every PNG decoded and written as a TGA into an empty cache
//   BM_FromTheCache    the same model again: every picture found in the cache
//
// Times are wall-clock (the pictures are made side by side on every core) and the CPU time of
// all threads together.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-compare"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#endif
#include <stb/stb_image_write.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#include "document/Document.h"
#include "document/TextureImages.h"

namespace {

namespace fs = std::filesystem;
using railwright::document::Document;

constexpr int kTextures = 50;
constexpr int kSide = 1024;

void WriteFile(const fs::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

void WritePng(const fs::path& file, int index) {
    std::mt19937 random(static_cast<unsigned>(index));
    std::uniform_int_distribution<int> noise(-6, 6);
    std::vector<uint8_t> rgb(static_cast<size_t>(kSide) * kSide * 3);
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const double shade = 0.5 + 0.5 * std::sin((x + index * 17) * 0.013) *
                                           std::cos((y - index * 5) * 0.011);
            uint8_t* pixel = &rgb[(static_cast<size_t>(y) * kSide + x) * 3];
            for (int c = 0; c < 3; ++c) {
                const int value = static_cast<int>(shade * (160 + 30 * c)) + 40 + noise(random);
                pixel[c] = static_cast<uint8_t>(std::clamp(value, 0, 255));
            }
        }
    }
    if (stbi_write_png(file.string().c_str(), kSide, kSide, 3, rgb.data(), kSide * 3) == 0) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

// One triangle per material; the pictures are what is measured.
class Model {
  public:
    Model() {
        std::random_device random;
        folder_ = fs::temp_directory_path() / ("railwright-bench-textures-" +
                                               std::to_string(random()));
        fs::create_directories(folder_);
        nlohmann::json json = {{"asset", {{"version", "2.0"}}}, {"scenes", {{{"nodes", {0}}}}}};
        std::string buffer;
        for (const float value : {0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f}) {
            buffer.append(reinterpret_cast<const char*>(&value), sizeof value);
        }
        WriteFile(folder_ / "model.bin", buffer);
        json["buffers"] = {{{"uri", "model.bin"}, {"byteLength", buffer.size()}}};
        json["bufferViews"] = {{{"buffer", 0}, {"byteLength", buffer.size()}}};
        json["accessors"] = {{{"bufferView", 0}, {"componentType", 5126}, {"count", 3},
                              {"type", "VEC3"}, {"min", {0, 0, 0}}, {"max", {1, 1, 0}}}};
        nlohmann::json primitives = nlohmann::json::array();
        for (int i = 0; i < kTextures; ++i) {
            const std::string name = "texture" + std::to_string(i);
            WritePng(folder_ / (name + ".png"), i);
            json["images"].push_back({{"uri", name + ".png"}});
            json["textures"].push_back({{"source", i}});
            json["materials"].push_back(
                {{"name", name}, {"pbrMetallicRoughness", {{"baseColorTexture", {{"index", i}}}}}});
            primitives.push_back({{"attributes", {{"POSITION", 0}}}, {"material", i}});
        }
        json["meshes"] = {{{"primitives", primitives}}};
        json["nodes"] = {{{"mesh", 0}, {"name", "Main"}}};
        WriteFile(folder_ / "model.gltf", json.dump());
    }
    ~Model() {
        std::error_code error;
        fs::remove_all(folder_, error);
    }
    std::string File() const { return (folder_ / "model.gltf").string(); }
    std::string Cache() const { return (folder_ / "cache").string(); }

  private:
    fs::path folder_;
};

const Model& TheModel() {
    static const Model model;
    return model;
}

std::unique_ptr<Document> Load(benchmark::State& state) {
    auto loaded = Document::Load(TheModel().File());
    if (!loaded.document) {
        state.SkipWithError(loaded.error.c_str());
    }
    return std::move(loaded.document);
}

void BM_DecodeAndWrite(benchmark::State& state) {
    const Model& model = TheModel();
    for (auto _ : state) {
        state.PauseTiming();
        std::error_code error;
        fs::remove_all(model.Cache(), error);
        std::unique_ptr<Document> document = Load(state);
        state.ResumeTiming();
        if (!document) {
            break;
        }
        const auto prepared = document->PrepareTextures(model.Cache());
        if (prepared.written != kTextures) {
            state.SkipWithError("not every picture was written");
            break;
        }
    }
    std::error_code error;
    uintmax_t bytes = 0;
    for (int i = 0; i < kTextures; ++i) {
        bytes += fs::file_size(fs::path(model.File()).parent_path() /
                                  ("texture" + std::to_string(i) + ".png"),
                              error);
    }
    state.counters["png_MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["textures"] = kTextures;
}
BENCHMARK(BM_DecodeAndWrite)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime()->MinTime(3);

void BM_FromTheCache(benchmark::State& state) {
    const Model& model = TheModel();
    if (std::unique_ptr<Document> document = Load(state)) {
        (void)document->PrepareTextures(model.Cache());
    }
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Document> document = Load(state);
        state.ResumeTiming();
        if (!document) {
            break;
        }
        const auto prepared = document->PrepareTextures(model.Cache());
        if (prepared.reused != kTextures || prepared.written != 0) {
            state.SkipWithError("the cache was not used");
            break;
        }
    }
}
BENCHMARK(BM_FromTheCache)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

// One of the PNGs, decoded and encoded as TGA in memory: the share of the work that is not the
// file system's.
void BM_DecodeOnePicture(benchmark::State& state) {
    const Model& model = TheModel();
    std::ifstream stream(fs::path(model.File()).parent_path() / "texture0.png", std::ios::binary);
    const std::string png{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    for (auto _ : state) {
        const railwright::document::DecodedPicture decoded =
            railwright::document::DecodePicture(png);
        benchmark::DoNotOptimize(railwright::document::EncodeTga(decoded.picture));
    }
}
BENCHMARK(BM_DecodeOnePicture)->Unit(benchmark::kMillisecond);

}  // namespace
