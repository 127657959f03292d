// Makes the sample of the railwright command:
//
//   railwright_make_sample model DIR   a small textured diesel locomotive: diesel.gltf with its
//                                      buffer and TGA textures (kept in examples/sample)
//   railwright_make_sample msts DIR    a minimal MSTS installation for a run: a placeholder
//                                      train.exe and the DASH9 cab view and sound files that the
//                                      default cab and sound copies need
//
// The locomotive: a body 20 m long, 3 m wide, its floor 1.1 m above the rail; two bogies 13 m
// apart; two wheelsets of radius 0.5 m in each bogie. MSTS axes: x across, y up, z forward.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr float kPi = 3.14159265358979f;

struct Mesh {
    std::string name;
    int material = 0;
    std::vector<float> positions;  // x y z
    std::vector<float> normals;    // x y z
    std::vector<float> uvs;        // u v
    std::vector<uint16_t> indices;

    void Vertex(float x, float y, float z, float nx, float ny, float nz, float u, float v) {
        positions.insert(positions.end(), {x, y, z});
        normals.insert(normals.end(), {nx, ny, nz});
        uvs.insert(uvs.end(), {u, v});
    }
    uint16_t Count() const { return static_cast<uint16_t>(positions.size() / 3); }
};

// A box with its own four corners per face, so that each face has its normal and full texture.
void AddBox(Mesh& mesh, float x0, float y0, float z0, float x1, float y1, float z1) {
    struct Face {
        float n[3];
        float corners[4][3];
    };
    const Face faces[] = {
        {{1, 0, 0}, {{x1, y0, z0}, {x1, y1, z0}, {x1, y1, z1}, {x1, y0, z1}}},
        {{-1, 0, 0}, {{x0, y0, z1}, {x0, y1, z1}, {x0, y1, z0}, {x0, y0, z0}}},
        {{0, 1, 0}, {{x0, y1, z0}, {x0, y1, z1}, {x1, y1, z1}, {x1, y1, z0}}},
        {{0, -1, 0}, {{x0, y0, z1}, {x0, y0, z0}, {x1, y0, z0}, {x1, y0, z1}}},
        {{0, 0, 1}, {{x1, y0, z1}, {x1, y1, z1}, {x0, y1, z1}, {x0, y0, z1}}},
        {{0, 0, -1}, {{x0, y0, z0}, {x0, y1, z0}, {x1, y1, z0}, {x1, y0, z0}}},
    };
    const float uv[4][2] = {{0, 1}, {0, 0}, {1, 0}, {1, 1}};
    for (const Face& face : faces) {
        const uint16_t first = mesh.Count();
        for (int i = 0; i < 4; ++i) {
            mesh.Vertex(face.corners[i][0], face.corners[i][1], face.corners[i][2], face.n[0],
                        face.n[1], face.n[2], uv[i][0], uv[i][1]);
        }
        mesh.indices.insert(mesh.indices.end(),
                            {first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2),
                             first, static_cast<uint16_t>(first + 2), static_cast<uint16_t>(first + 3)});
    }
}

// A wheel: a cylinder along x centred on the origin, with its two faces.
void AddWheel(Mesh& mesh, float xCentre, float radius, float width) {
    constexpr int kSides = 16;
    const float x0 = xCentre - width / 2;
    const float x1 = xCentre + width / 2;
    for (int side = 0; side < kSides; ++side) {
        const float a0 = 2 * kPi * static_cast<float>(side) / kSides;
        const float a1 = 2 * kPi * static_cast<float>(side + 1) / kSides;
        const float y0 = radius * std::cos(a0), z0 = radius * std::sin(a0);
        const float y1 = radius * std::cos(a1), z1 = radius * std::sin(a1);
        const float ny = std::cos((a0 + a1) / 2), nz = std::sin((a0 + a1) / 2);
        const uint16_t first = mesh.Count();
        const float u0 = static_cast<float>(side) / kSides, u1 = static_cast<float>(side + 1) / kSides;
        mesh.Vertex(x0, y0, z0, 0, ny, nz, u0, 1);
        mesh.Vertex(x1, y0, z0, 0, ny, nz, u0, 0);
        mesh.Vertex(x1, y1, z1, 0, ny, nz, u1, 0);
        mesh.Vertex(x0, y1, z1, 0, ny, nz, u1, 1);
        mesh.indices.insert(mesh.indices.end(),
                            {first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2),
                             first, static_cast<uint16_t>(first + 2), static_cast<uint16_t>(first + 3)});
        // The two faces: a fan from the centre.
        for (const float x : {x0, x1}) {
            const float nx = x == x0 ? -1.0f : 1.0f;
            const uint16_t centre = mesh.Count();
            mesh.Vertex(x, 0, 0, nx, 0, 0, 0.5f, 0.5f);
            mesh.Vertex(x, y0, z0, nx, 0, 0, 0.5f + 0.5f * std::cos(a0), 0.5f + 0.5f * std::sin(a0));
            mesh.Vertex(x, y1, z1, nx, 0, 0, 0.5f + 0.5f * std::cos(a1), 0.5f + 0.5f * std::sin(a1));
            if (x == x0) {
                mesh.indices.insert(mesh.indices.end(), {centre, static_cast<uint16_t>(centre + 2),
                                                         static_cast<uint16_t>(centre + 1)});
            } else {
                mesh.indices.insert(mesh.indices.end(), {centre, static_cast<uint16_t>(centre + 1),
                                                         static_cast<uint16_t>(centre + 2)});
            }
        }
    }
}

// A 64×64 uncompressed 24-bit TGA (bottom-left origin) filled by `colour(x, y)`.
template <typename Colour>
void WriteTga(const fs::path& path, Colour colour) {
    constexpr int kSize = 64;
    std::vector<uint8_t> file(18, 0);
    file[2] = 2;  // uncompressed true colour
    file[12] = kSize;
    file[14] = kSize;
    file[16] = 24;
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const auto [r, g, b] = colour(x, y);
            file.insert(file.end(), {static_cast<uint8_t>(b), static_cast<uint8_t>(g),
                                     static_cast<uint8_t>(r)});
        }
    }
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

template <typename T>
void Append(std::vector<uint8_t>& buffer, const std::vector<T>& values) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(values.data());
    buffer.insert(buffer.end(), bytes, bytes + values.size() * sizeof(T));
    while (buffer.size() % 4 != 0) {
        buffer.push_back(0);
    }
}

std::string Numbers(const float* values, int count) {
    std::ostringstream text;
    for (int i = 0; i < count; ++i) {
        text << (i ? ", " : "") << values[i];
    }
    return text.str();
}

void MakeModel(const fs::path& folder) {
    fs::create_directories(folder);
    std::vector<Mesh> meshes;
    Mesh body;
    body.name = "BodyShape";
    AddBox(body, -1.5f, 1.1f, -10, 1.5f, 3.2f, 10);   // the hood
    AddBox(body, -1.5f, 3.2f, 4, 1.5f, 4.3f, 8.5f);  // the cab roof section
    AddBox(body, -1.6f, 1.0f, -10.2f, 1.6f, 1.1f, 10.2f);  // the running board
    meshes.push_back(body);
    Mesh bogie;
    bogie.name = "BogieShape";
    bogie.material = 1;
    AddBox(bogie, -1.2f, 0.55f, -2.0f, 1.2f, 1.0f, 2.0f);
    meshes.push_back(bogie);
    Mesh wheelset;
    wheelset.name = "WheelsetShape";
    wheelset.material = 2;
    AddWheel(wheelset, -0.72f, 0.5f, 0.14f);
    AddWheel(wheelset, 0.72f, 0.5f, 0.14f);
    AddBox(wheelset, -0.72f, -0.06f, -0.06f, 0.72f, 0.06f, 0.06f);  // the axle
    meshes.push_back(wheelset);

    std::vector<uint8_t> buffer;
    std::ostringstream views, accessors, meshJson;
    int view = 0;
    for (size_t m = 0; m < meshes.size(); ++m) {
        const Mesh& mesh = meshes[m];
        float minimum[3] = {1e9f, 1e9f, 1e9f}, maximum[3] = {-1e9f, -1e9f, -1e9f};
        for (size_t i = 0; i < mesh.positions.size(); ++i) {
            minimum[i % 3] = std::min(minimum[i % 3], mesh.positions[i]);
            maximum[i % 3] = std::max(maximum[i % 3], mesh.positions[i]);
        }
        const auto addView = [&](size_t offset, size_t length, int target) {
            views << (view ? ",\n    " : "    ") << "{ \"buffer\": 0, \"byteOffset\": " << offset
                  << ", \"byteLength\": " << length << ", \"target\": " << target << " }";
            return view++;
        };
        const size_t positionsAt = buffer.size();
        Append(buffer, mesh.positions);
        const int positions = addView(positionsAt, mesh.positions.size() * 4, 34962);
        const size_t normalsAt = buffer.size();
        Append(buffer, mesh.normals);
        const int normals = addView(normalsAt, mesh.normals.size() * 4, 34962);
        const size_t uvsAt = buffer.size();
        Append(buffer, mesh.uvs);
        const int uvs = addView(uvsAt, mesh.uvs.size() * 4, 34962);
        const size_t indicesAt = buffer.size();
        Append(buffer, mesh.indices);
        const int indices = addView(indicesAt, mesh.indices.size() * 2, 34963);
        const int first = static_cast<int>(m) * 4;
        accessors << (m ? ",\n    " : "    ")
                  << "{ \"bufferView\": " << positions << ", \"componentType\": 5126, \"count\": "
                  << mesh.Count() << ", \"type\": \"VEC3\", \"min\": [" << Numbers(minimum, 3)
                  << "], \"max\": [" << Numbers(maximum, 3) << "] },\n    "
                  << "{ \"bufferView\": " << normals << ", \"componentType\": 5126, \"count\": "
                  << mesh.Count() << ", \"type\": \"VEC3\" },\n    "
                  << "{ \"bufferView\": " << uvs << ", \"componentType\": 5126, \"count\": "
                  << mesh.Count() << ", \"type\": \"VEC2\" },\n    "
                  << "{ \"bufferView\": " << indices << ", \"componentType\": 5123, \"count\": "
                  << mesh.indices.size() << ", \"type\": \"SCALAR\" }";
        meshJson << (m ? ",\n    " : "    ") << "{ \"name\": \"" << mesh.name
                 << "\", \"primitives\": [ { \"attributes\": { \"POSITION\": " << first
                 << ", \"NORMAL\": " << first + 1 << ", \"TEXCOORD_0\": " << first + 2
                 << " }, \"indices\": " << first + 3 << ", \"material\": " << mesh.material
                 << " } ] }";
    }
    std::ofstream bin(folder / "diesel.bin", std::ios::binary);
    bin.write(reinterpret_cast<const char*>(buffer.data()), static_cast<std::streamsize>(buffer.size()));

    std::ofstream gltf(folder / "diesel.gltf");
    gltf << R"({
  "asset": { "version": "2.0", "generator": "railwright_make_sample" },
  "scene": 0,
  "scenes": [ { "name": "Diesel", "nodes": [ 0, 1, 2, 3, 4, 5, 6 ] } ],
  "nodes": [
    { "name": "Body", "mesh": 0 },
    { "name": "FrontBogie", "mesh": 1, "translation": [ 0, 0, 6.5 ] },
    { "name": "RearBogie", "mesh": 1, "translation": [ 0, 0, -6.5 ] },
    { "name": "FrontAxle1", "mesh": 2, "translation": [ 0, 0.5, 7.7 ] },
    { "name": "FrontAxle2", "mesh": 2, "translation": [ 0, 0.5, 5.3 ] },
    { "name": "RearAxle1", "mesh": 2, "translation": [ 0, 0.5, -5.3 ] },
    { "name": "RearAxle2", "mesh": 2, "translation": [ 0, 0.5, -7.7 ] }
  ],
  "meshes": [
)" << meshJson.str() << R"(
  ],
  "materials": [
    { "name": "Body", "pbrMetallicRoughness": { "baseColorTexture": { "index": 0 }, "metallicFactor": 0 } },
    { "name": "Bogie", "pbrMetallicRoughness": { "baseColorTexture": { "index": 1 }, "metallicFactor": 0 } },
    { "name": "Wheel", "pbrMetallicRoughness": { "baseColorTexture": { "index": 2 }, "metallicFactor": 0 } }
  ],
  "textures": [ { "source": 0 }, { "source": 1 }, { "source": 2 } ],
  "images": [ { "uri": "body.tga" }, { "uri": "bogie.tga" }, { "uri": "wheel.tga" } ],
  "accessors": [
)" << accessors.str() << R"(
  ],
  "bufferViews": [
)" << views.str() << R"(
  ],
  "buffers": [ { "uri": "diesel.bin", "byteLength": )" << buffer.size() << R"( } ]
}
)";
    // A maroon body with a yellow band, black bogies, steel wheels.
    WriteTga(folder / "body.tga", [](int, int y) {
        return y > 26 && y < 34 ? std::tuple{230, 190, 30} : std::tuple{120, 20, 30};
    });
    WriteTga(folder / "bogie.tga", [](int x, int y) {
        const int shade = 30 + ((x / 8 + y / 8) % 2) * 10;
        return std::tuple{shade, shade, shade};
    });
    WriteTga(folder / "wheel.tga", [](int x, int y) {
        const int dx = x - 32, dy = y - 32;
        const int shade = dx * dx + dy * dy > 28 * 28 ? 200 : 110;
        return std::tuple{shade, shade, shade + 10};
    });
}

void WriteText(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

void MakeMsts(const fs::path& folder) {
    WriteText(folder / "train.exe", "placeholder for the simulator's program file\n");
    const fs::path dash9 = folder / "TRAINS" / "TRAINSET" / "DASH9";
    WriteText(dash9 / "CABVIEW" / "dash9.cvf", "SIMISA@@@@@@@@@@JINX0h0t______\r\n\r\nTr_CabViewFile (\r\n)\r\n");
    WriteText(dash9 / "CABVIEW" / "DASH9FRONT.ACE", "placeholder cab texture\n");
    WriteText(dash9 / "SOUND" / "d9cab.sms", "SIMISA@@@@@@@@@@JINX0x1t______\r\n\r\nTr_SMS (\r\n)\r\n");
    WriteText(dash9 / "SOUND" / "d9eng.sms", "SIMISA@@@@@@@@@@JINX0x1t______\r\n\r\nTr_SMS (\r\n)\r\n");
    WriteText(dash9 / "SOUND" / "D9HORN.WAV", "placeholder sound\n");
    fs::create_directories(folder / "ROUTES");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || (std::strcmp(argv[1], "model") != 0 && std::strcmp(argv[1], "msts") != 0)) {
        std::cerr << "usage: railwright_make_sample model|msts FOLDER\n";
        return 2;
    }
    try {
        if (std::strcmp(argv[1], "model") == 0) {
            MakeModel(argv[2]);
        } else {
            MakeMsts(argv[2]);
        }
    } catch (const std::exception& error) {
        std::cerr << "railwright_make_sample: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
