#include "document/shape/SurfaceBatches.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <utility>

namespace railwright::document::shape {

namespace {

using host::scene::Affine;
using host::scene::Mat3;
using host::scene::Vec3;

constexpr uint32_t kNoRecord = std::numeric_limits<uint32_t>::max();

// The map of normals under `linear`: the transpose of its inverse (the matrix itself when it
// cannot be inverted; such normals are mostly lost to zero and replaced by face normals).
Mat3 NormalMap(const Mat3& linear) {
    Affine pure;
    pure.linear = linear;
    const std::optional<Affine> inverse = pure.Inverse();
    if (!inverse) {
        return linear;
    }
    Mat3 map;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            map(row, column) = inverse->linear(column, row);
        }
    }
    return map;
}

// A shape's vertices, normals and texture coordinates in its matrix's frame.
struct MappedShape {
    std::vector<float> positions;  // three per vertex
    std::vector<float> normals;    // three per vertex; empty when the shape has none
    std::vector<bool> hasNormal;
};

MappedShape MapShape(const host::scene::Shape& shape, const Affine& toMatrix,
                     const Mat3& normalMap) {
    MappedShape mapped;
    const size_t count = shape.vertices.size();
    mapped.positions.resize(count * 3);
    for (size_t i = 0; i < count; ++i) {
        const Vec3 p = toMatrix.ApplyToPoint(host::scene::ToVec3(shape.vertices[i]));
        mapped.positions[3 * i] = static_cast<float>(p.x);
        mapped.positions[3 * i + 1] = static_cast<float>(p.y);
        mapped.positions[3 * i + 2] = static_cast<float>(p.z);
    }
    if (shape.normals.size() == count) {
        mapped.normals.resize(count * 3);
        mapped.hasNormal.resize(count);
        for (size_t i = 0; i < count; ++i) {
            const Vec3 n = normalMap * host::scene::ToVec3(shape.normals[i]);
            const double length = host::scene::Length(n);
            if (!(length > 1e-12) || !std::isfinite(length)) {
                continue;
            }
            mapped.hasNormal[i] = true;
            mapped.normals[3 * i] = static_cast<float>(n.x / length);
            mapped.normals[3 * i + 1] = static_cast<float>(n.y / length);
            mapped.normals[3 * i + 2] = static_cast<float>(n.z / length);
        }
    }
    return mapped;
}

}  // namespace

void FaceNormal(const float* a, const float* b, const float* c, float* normal) {
    const double u[3] = {static_cast<double>(b[0]) - a[0], static_cast<double>(b[1]) - a[1],
                         static_cast<double>(b[2]) - a[2]};
    const double w[3] = {static_cast<double>(c[0]) - a[0], static_cast<double>(c[1]) - a[1],
                         static_cast<double>(c[2]) - a[2]};
    // The shape's axes are left-handed: this cross product points to the side from which the
    // corners a, b, c run clockwise, the triangle's front.
    const double n[3] = {u[1] * w[2] - u[2] * w[1], u[2] * w[0] - u[0] * w[2],
                         u[0] * w[1] - u[1] * w[0]};
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (!(length > 0) || !std::isfinite(length)) {
        normal[0] = 0;
        normal[1] = 1;
        normal[2] = 0;
        return;
    }
    for (int i = 0; i < 3; ++i) {
        normal[i] = static_cast<float>(n[i] / length);
    }
}

GatherResult GatherBatches(const MatrixPlan& plan) {
    GatherResult result;
    std::map<std::pair<int32_t, host::scene::SceneMaterial*>, size_t> batchOf;
    std::vector<uint32_t> recordOf;
    for (const GeometrySource& source : plan.sources) {
        const Mat3 normalMap = NormalMap(source.toMatrix.linear);
        for (const host::scene::Shape& shape : source.group->Shapes()) {
            if (shape.triangles.empty()) {
                continue;
            }
            const MappedShape mapped = MapShape(shape, source.toMatrix, normalMap);
            const size_t count = shape.vertices.size();
            const bool hasTexCoords = shape.texCoords.size() == count;
            for (const host::scene::TriangleSet& set : shape.triangles) {
                host::scene::SceneMaterial* material = nullptr;
                if (shape.holder && set.material >= 0 &&
                    static_cast<size_t>(set.material) < shape.holder->Materials().size()) {
                    material = shape.holder->Materials()[static_cast<size_t>(set.material)].get();
                }
                const auto [place, added] =
                    batchOf.try_emplace({source.matrix, material}, result.batches.size());
                if (added) {
                    result.batches.push_back({source.matrix, material, 0, {}, {}});
                }
                Batch& batch = result.batches[place->second];
                recordOf.assign(count, kNoRecord);
                const auto record = [&](uint32_t vertex, const float* faceNormal) {
                    VertexRecord r;
                    std::copy_n(&mapped.positions[3 * vertex], 3, r.position);
                    if (faceNormal != nullptr) {
                        std::copy_n(faceNormal, 3, r.normal);
                    } else {
                        std::copy_n(&mapped.normals[3 * vertex], 3, r.normal);
                    }
                    if (hasTexCoords) {
                        r.u = shape.texCoords[vertex].u;
                        r.v = shape.texCoords[vertex].v;
                    }
                    batch.records.push_back(r);
                    return static_cast<uint32_t>(batch.records.size() - 1);
                };
                const std::vector<uint32_t>& corners = set.corners;
                batch.corners.reserve(batch.corners.size() + corners.size());
                for (size_t t = 0; t + 2 < corners.size(); t += 3) {
                    // Written the other way round: the scene's front faces run counter-clockwise,
                    // as glTF's do, the shape's clockwise.
                    const uint32_t written[3] = {corners[t], corners[t + 2], corners[t + 1]};
                    for (const uint32_t vertex : written) {
                        if (vertex >= count) {
                            result.error = "group \"" + source.group->NameValue() +
                                           "\" has a triangle naming vertex " +
                                           std::to_string(vertex) + " of " + std::to_string(count);
                            return result;
                        }
                    }
                    float face[3];
                    FaceNormal(&mapped.positions[3 * written[0]], &mapped.positions[3 * written[1]],
                               &mapped.positions[3 * written[2]], face);
                    for (const uint32_t vertex : written) {
                        const bool smooth = !mapped.hasNormal.empty() && mapped.hasNormal[vertex];
                        if (!smooth) {
                            batch.corners.push_back(record(vertex, face));
                        } else {
                            if (recordOf[vertex] == kNoRecord) {
                                recordOf[vertex] = record(vertex, nullptr);
                            }
                            batch.corners.push_back(recordOf[vertex]);
                        }
                    }
                }
            }
        }
    }
    std::stable_sort(result.batches.begin(), result.batches.end(),
                     [](const Batch& a, const Batch& b) { return a.matrix < b.matrix; });
    return result;
}

}  // namespace railwright::document::shape
