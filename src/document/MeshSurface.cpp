#include "document/MeshSurface.h"

#include <algorithm>
#include <cstdint>

#include "document/AccessorReader.h"
#include "document/Handedness.h"

namespace railwright::document {

namespace {

using host::scene::TriangleSet;

constexpr int kModeTriangles = 4;
constexpr int kModeTriangleStrip = 5;
constexpr int kModeTriangleFan = 6;

// The primitive's corners as triangles, three per triangle, in glTF's order of each mode.
std::vector<uint32_t> Triangles(int mode, const std::vector<uint32_t>& indices) {
    std::vector<uint32_t> corners;
    const size_t n = indices.size();
    const auto add = [&corners](uint32_t a, uint32_t b, uint32_t c) {
        if (a != b && b != c && a != c) {
            corners.insert(corners.end(), {a, b, c});
        }
    };
    if (mode == kModeTriangles || mode < 0) {
        corners.reserve(n - n % 3);
        for (size_t i = 0; i + 2 < n; i += 3) {
            add(indices[i], indices[i + 1], indices[i + 2]);
        }
    } else if (mode == kModeTriangleStrip) {
        for (size_t i = 0; i + 2 < n; ++i) {
            // Every second triangle of a strip runs the other way round.
            add(indices[i], indices[i + 1 + i % 2], indices[i + 2 - i % 2]);
        }
    } else if (mode == kModeTriangleFan) {
        for (size_t i = 1; i + 1 < n; ++i) {
            add(indices[i], indices[i + 1], indices[0]);
        }
    }
    return corners;
}

std::string Quoted(const std::string& name) {
    return name.empty() ? "" : " \"" + name + "\"";
}

}  // namespace

std::string ReadMeshSurface(const tinygltf::Model& model, int meshIndex,
                            const std::vector<PrimitiveLook>& looks, host::scene::Shape& shape,
                            size_t& leftOut) {
    const tinygltf::Mesh& mesh = model.meshes[static_cast<size_t>(meshIndex)];
    const bool quantized =
        std::find(model.extensionsUsed.begin(), model.extensionsUsed.end(),
                  "KHR_mesh_quantization") != model.extensionsUsed.end();
    const ComponentRule positionRule =
        quantized ? ComponentRule::FloatOrInteger : ComponentRule::FloatOnly;
    const ComponentRule normalRule =
        quantized ? ComponentRule::FloatOrNormalized : ComponentRule::FloatOnly;
    const ComponentRule texCoordRule =
        quantized ? ComponentRule::FloatOrInteger : ComponentRule::FloatOrNormalized;
    bool anyNormals = false;
    bool anyTexCoords = false;
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<float> texCoords;
    std::vector<uint32_t> indices;
    for (size_t p = 0; p < mesh.primitives.size(); ++p) {
        const tinygltf::Primitive& primitive = mesh.primitives[p];
        const std::string owner = "mesh " + std::to_string(meshIndex) + Quoted(mesh.name) +
                                  " primitive " + std::to_string(p);
        const auto attribute = [&primitive](const char* name) {
            const auto found = primitive.attributes.find(name);
            return found == primitive.attributes.end() ? -1 : found->second;
        };
        const int position = attribute("POSITION");
        if (position < 0) {
            continue;
        }
        if (primitive.mode >= 0 && primitive.mode < kModeTriangles) {
            ++leftOut;
            continue;
        }
        const PrimitiveLook look = p < looks.size() ? looks[p] : PrimitiveLook{};
        if (std::string fault = ReadAccessor(model, position, 3, positionRule, positions);
            !fault.empty()) {
            return owner + " has positions that cannot be used: " + fault;
        }
        const size_t count = positions.size() / 3;
        const size_t base = shape.vertices.size();
        for (size_t i = 0; i < count; ++i) {
            shape.vertices.push_back(OtherHandedness(
                host::Vector3{positions[3 * i], positions[3 * i + 1], positions[3 * i + 2]}));
        }

        normals.clear();
        if (const int normal = attribute("NORMAL"); normal >= 0) {
            if (std::string fault = ReadAccessor(model, normal, 3, normalRule, normals);
                !fault.empty()) {
                return owner + " has normals that cannot be used: " + fault;
            }
            if (normals.size() != positions.size()) {
                return owner + " has " + std::to_string(normals.size() / 3) + " normals for " +
                       std::to_string(count) + " positions.";
            }
            anyNormals = true;
        }
        shape.normals.resize(base);
        for (size_t i = 0; i < count; ++i) {
            shape.normals.push_back(
                normals.empty()
                    ? host::Vector3{}
                    : OtherHandedness(host::Vector3{normals[3 * i], normals[3 * i + 1],
                                                    normals[3 * i + 2]}));
        }

        texCoords.clear();
        if (const int texCoord = attribute("TEXCOORD_0"); texCoord >= 0) {
            if (std::string fault = ReadAccessor(model, texCoord, 2, texCoordRule, texCoords);
                !fault.empty()) {
                return owner + " has texture coordinates that cannot be used: " + fault;
            }
            if (texCoords.size() / 2 != count) {
                return owner + " has " + std::to_string(texCoords.size() / 2) +
                       " texture coordinates for " + std::to_string(count) + " positions.";
            }
            anyTexCoords = true;
        }
        shape.texCoords.resize(base);
        const TexCoordTransform& turn = look.texCoords;
        for (size_t i = 0; i < count; ++i) {
            if (texCoords.empty()) {
                shape.texCoords.emplace_back();
                continue;
            }
            const float u = texCoords[2 * i];
            const float v = texCoords[2 * i + 1];
            shape.texCoords.push_back(
                {turn.a * u + turn.b * v + turn.e, turn.c * u + turn.d * v + turn.f});
        }

        if (primitive.indices >= 0) {
            if (std::string fault = ReadIndices(model, primitive.indices, indices);
                !fault.empty()) {
                return owner + " has indices that cannot be used: " + fault;
            }
            for (const uint32_t index : indices) {
                if (index >= count) {
                    return owner + " has an index (" + std::to_string(index) + ") past its " +
                           std::to_string(count) + " vertices.";
                }
            }
        } else {
            indices.resize(count);
            for (size_t i = 0; i < count; ++i) {
                indices[i] = static_cast<uint32_t>(i);
            }
        }
        std::vector<uint32_t> corners = Triangles(primitive.mode, indices);
        if (corners.empty()) {
            continue;
        }
        for (uint32_t& corner : corners) {
            corner += static_cast<uint32_t>(base);
        }
        const int32_t slot = look.materialSlot;
        auto set = std::find_if(shape.triangles.begin(), shape.triangles.end(),
                                [slot](const TriangleSet& s) { return s.material == slot; });
        if (set == shape.triangles.end()) {
            shape.triangles.push_back({slot, std::move(corners)});
        } else {
            set->corners.insert(set->corners.end(), corners.begin(), corners.end());
        }
    }
    if (!anyNormals) {
        shape.normals.clear();
    }
    if (!anyTexCoords) {
        shape.texCoords.clear();
    }
    return {};
}

}  // namespace railwright::document
