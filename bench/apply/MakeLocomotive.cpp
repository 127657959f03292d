// Writes the benchmark locomotive as a glTF model: `railwright_bench_locomotive TRIANGLES FOLDER`
// writes FOLDER/locomotive.gltf, locomotive.bin and the 50 textures tex00.tga ... tex49.tga.
//
// The model: a body ("Body") of 46 curved panels, one primitive and one texture each, carrying
// nearly all the triangles; two bogies ("FrontBogie", "RearBogie") and four wheelsets
// ("FrontAxle1" ... "RearAxle2") sharing two small meshes of two textures each. Every primitive
// has normals and texture coordinates. The same count always gives the same bytes, so that
// the files an export writes from it can be compared from one build to the next.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr int kTextures = 50;
constexpr int kBodyPanels = 46;
constexpr int kTextureSide = 128;
// Triangles of each primitive of the bogie and wheelset meshes.
constexpr int kSmallPrimitiveTriangles = 200;

struct Vertex {
    float position[3];
    float normal[3];
    float uv[2];
};

// A grid of `columns` x `rows` quads on a half cylinder of `radius` about the Z axis at height
// `y0`, spanning z0..z1 and the angles a0..a1.
struct Patch {
    std::vector<Vertex> vertices;
    std::vector<uint32_t> corners;
};

Patch CylinderPatch(int columns, int rows, float radius, float y0, float a0, float a1, float z0,
                    float z1) {
    Patch patch;
    for (int j = 0; j <= rows; ++j) {
        for (int i = 0; i <= columns; ++i) {
            const float s = static_cast<float>(i) / static_cast<float>(columns);
            const float t = static_cast<float>(j) / static_cast<float>(rows);
            const float angle = a0 + (a1 - a0) * s;
            const float c = std::cos(angle);
            const float n = std::sin(angle);
            patch.vertices.push_back(
                {{radius * c, y0 + radius * n, z0 + (z1 - z0) * t}, {c, n, 0}, {s, t}});
        }
    }
    for (int j = 0; j < rows; ++j) {
        for (int i = 0; i < columns; ++i) {
            const auto a = static_cast<uint32_t>(j * (columns + 1) + i);
            const auto b = a + static_cast<uint32_t>(columns) + 1;
            patch.corners.insert(patch.corners.end(), {a, b, a + 1, a + 1, b, b + 1});
        }
    }
    return patch;
}

// Columns and rows of a grid of about `triangles` triangles, twice as wide as it is long.
std::pair<int, int> GridFor(int64_t triangles) {
    const int rows = std::max(1, static_cast<int>(std::lround(std::sqrt(static_cast<double>(triangles) / 4.0))));
    const int columns =
        std::max(1, static_cast<int>(std::lround(static_cast<double>(triangles) / (2.0 * rows))));
    return {columns, rows};
}

class ModelWriter {
  public:
    // Appends one primitive; its accessors and views go into the model.
    Json Primitive(const Patch& patch, int material) {
        Align();
        const size_t vertexStart = buffer_.size();
        float low[3] = {1e30f, 1e30f, 1e30f};
        float high[3] = {-1e30f, -1e30f, -1e30f};
        for (const Vertex& vertex : patch.vertices) {
            for (int a = 0; a < 3; ++a) {
                low[a] = std::min(low[a], vertex.position[a]);
                high[a] = std::max(high[a], vertex.position[a]);
            }
            Append(&vertex, sizeof vertex);
        }
        const size_t vertexView = View(vertexStart, buffer_.size() - vertexStart, sizeof(Vertex),
                                       34962);
        const size_t count = patch.vertices.size();
        const size_t position = Accessor(vertexView, 0, count, 5126, "VEC3");
        accessors_.back()["min"] = {low[0], low[1], low[2]};
        accessors_.back()["max"] = {high[0], high[1], high[2]};
        const size_t normal = Accessor(vertexView, 12, count, 5126, "VEC3");
        const size_t uv = Accessor(vertexView, 24, count, 5126, "VEC2");
        const size_t indexStart = buffer_.size();
        Append(patch.corners.data(), patch.corners.size() * sizeof(uint32_t));
        const size_t indexView = View(indexStart, buffer_.size() - indexStart, 0, 34963);
        const size_t indices = Accessor(indexView, 0, patch.corners.size(), 5125, "SCALAR");
        triangles_ += static_cast<int64_t>(patch.corners.size() / 3);
        return {{"attributes", {{"POSITION", position}, {"NORMAL", normal}, {"TEXCOORD_0", uv}}},
                {"indices", indices},
                {"material", material}};
    }

    Json& Accessors() { return accessors_; }
    Json& Views() { return views_; }
    const std::string& Buffer() const { return buffer_; }
    int64_t Triangles() const { return triangles_; }

  private:
    void Append(const void* bytes, size_t size) {
        buffer_.append(static_cast<const char*>(bytes), size);
    }
    void Align() { buffer_.resize((buffer_.size() + 3) / 4 * 4, '\0'); }
    size_t View(size_t offset, size_t length, size_t stride, int target) {
        Json view = {{"buffer", 0}, {"byteOffset", offset}, {"byteLength", length}};
        if (stride != 0) {
            view["byteStride"] = stride;
        }
        view["target"] = target;
        views_.push_back(view);
        return views_.size() - 1;
    }
    size_t Accessor(size_t view, size_t offset, size_t count, int componentType,
                    const char* type) {
        accessors_.push_back({{"bufferView", view},
                              {"byteOffset", offset},
                              {"componentType", componentType},
                              {"count", count},
                              {"type", type}});
        return accessors_.size() - 1;
    }

    std::string buffer_;
    Json accessors_ = Json::array();
    Json views_ = Json::array();
    int64_t triangles_ = 0;
};

// An uncompressed 24-bit TGA of its own for each texture: a checker of the texture's colour.
std::string Texture(int index) {
    std::string tga(18, '\0');
    tga[2] = 2;
    tga[12] = static_cast<char>(kTextureSide & 0xff);
    tga[13] = static_cast<char>(kTextureSide >> 8);
    tga[14] = static_cast<char>(kTextureSide & 0xff);
    tga[15] = static_cast<char>(kTextureSide >> 8);
    tga[16] = 24;
    const int square = 4 + index % 13;
    for (int y = 0; y < kTextureSide; ++y) {
        for (int x = 0; x < kTextureSide; ++x) {
            const bool light = ((x / square) + (y / square)) % 2 == 0;
            const int shade = light ? 200 : 60;
            tga += static_cast<char>((shade + index * 37 + x) & 0xff);  // blue
            tga += static_cast<char>((shade + index * 11 + y) & 0xff);  // green
            tga += static_cast<char>((shade + index * 5) & 0xff);       // red
        }
    }
    return tga;
}

void WriteFile(const fs::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write \"" + file.string() + "\"");
    }
}

int64_t WriteLocomotive(int64_t triangles, const fs::path& folder) {
    ModelWriter writer;
    constexpr float kPi = 3.14159265f;

    const int64_t small = (2 + 4) * 2 * kSmallPrimitiveTriangles;
    const int64_t body = std::max<int64_t>(kBodyPanels * 2, triangles - small);
    Json bodyPrimitives = Json::array();
    const auto [columns, rows] = GridFor(body / kBodyPanels);
    for (int p = 0; p < kBodyPanels; ++p) {
        const float z0 = -10.0f + 20.0f * static_cast<float>(p) / kBodyPanels;
        const float z1 = -10.0f + 20.0f * static_cast<float>(p + 1) / kBodyPanels;
        bodyPrimitives.push_back(
            writer.Primitive(CylinderPatch(columns, rows, 1.5f, 2.0f, 0, kPi, z0, z1), p));
    }
    const auto [smallColumns, smallRows] = GridFor(kSmallPrimitiveTriangles);
    Json bogiePrimitives = Json::array();
    Json wheelPrimitives = Json::array();
    const int64_t bodyTriangles = writer.Triangles();
    for (int side = 0; side < 2; ++side) {
        const float from = kPi * static_cast<float>(side);
        const float to = kPi * static_cast<float>(side + 1);
        bogiePrimitives.push_back(writer.Primitive(
            CylinderPatch(smallColumns, smallRows, 0.4f, 0.0f, from, to, -2, 2),
            kBodyPanels + side));
        wheelPrimitives.push_back(writer.Primitive(
            CylinderPatch(smallColumns, smallRows, 0.5f, 0.0f, from, to, -0.8f, 0.8f),
            kBodyPanels + 2 + side));
    }

    Json materials = Json::array();
    Json textures = Json::array();
    Json images = Json::array();
    for (int t = 0; t < kTextures; ++t) {
        char name[16];
        std::snprintf(name, sizeof name, "tex%02d", t);
        WriteFile(folder / (std::string(name) + ".tga"), Texture(t));
        images.push_back({{"uri", std::string(name) + ".tga"}});
        textures.push_back({{"source", t}});
        materials.push_back(
            {{"name", name}, {"pbrMetallicRoughness", {{"baseColorTexture", {{"index", t}}}}}});
    }
    // The wheelsets' mesh lies along Z; turned a quarter about Y it lies along the axle.
    const Json axle = {0, 0.7071068, 0, 0.7071068};
    Json model;
    model["asset"] = {{"version", "2.0"}, {"generator", "railwright_bench_locomotive"}};
    model["scene"] = 0;
    model["scenes"] = {{{"name", "Locomotive"}, {"nodes", {0, 1, 2, 3, 4, 5, 6}}}};
    model["nodes"] = {
        {{"name", "Body"}, {"mesh", 0}},
        {{"name", "FrontBogie"}, {"mesh", 1}, {"translation", {0, 0.75, 6.5}}},
        {{"name", "RearBogie"}, {"mesh", 1}, {"translation", {0, 0.75, -6.5}}},
        {{"name", "FrontAxle1"}, {"mesh", 2}, {"translation", {0, 0.5, 7.7}}, {"rotation", axle}},
        {{"name", "FrontAxle2"}, {"mesh", 2}, {"translation", {0, 0.5, 5.3}}, {"rotation", axle}},
        {{"name", "RearAxle1"}, {"mesh", 2}, {"translation", {0, 0.5, -5.3}}, {"rotation", axle}},
        {{"name", "RearAxle2"}, {"mesh", 2}, {"translation", {0, 0.5, -7.7}}, {"rotation", axle}}};
    model["meshes"] = {{{"name", "BodyShape"}, {"primitives", bodyPrimitives}},
                       {{"name", "BogieShape"}, {"primitives", bogiePrimitives}},
                       {{"name", "WheelsetShape"}, {"primitives", wheelPrimitives}}};
    model["materials"] = materials;
    model["textures"] = textures;
    model["images"] = images;
    model["accessors"] = std::move(writer.Accessors());
    model["bufferViews"] = std::move(writer.Views());
    model["buffers"] = {{{"byteLength", writer.Buffer().size()}, {"uri", "locomotive.bin"}}};
    WriteFile(folder / "locomotive.bin", writer.Buffer());
    WriteFile(folder / "locomotive.gltf", model.dump(1));
    // The bogie mesh is used twice and the wheelset mesh four times.
    const int64_t eachSmallMesh = (writer.Triangles() - bodyTriangles) / 2;
    return bodyTriangles + 2 * eachSmallMesh + 4 * eachSmallMesh;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: railwright_bench_locomotive TRIANGLES FOLDER\n";
        return 2;
    }
    char* end = nullptr;
    const long long triangles = std::strtoll(argv[1], &end, 10);
    if (end == argv[1] || *end != '\0' || triangles < 1000) {
        std::cerr << "railwright_bench_locomotive: \"" << argv[1]
                  << "\" is not a triangle count of 1000 or more\n";
        return 2;
    }
    try {
        const fs::path folder = argv[2];
        fs::create_directories(folder);
        const int64_t written = WriteLocomotive(triangles, folder);
        std::cout << folder.string() << "/locomotive.gltf: " << written << " triangles, "
                  << kTextures << " textures\n";
    } catch (const std::exception& error) {
        std::cerr << "railwright_bench_locomotive: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
