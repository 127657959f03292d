// The triangles of the kept matrices, gathered per matrix and material.
//
// The scene already has the shape's axes (left-handed: X right, Y up, Z the front), so
// positions and normals are written as the matrices' frames give them. A triangle's corners run
// counter-clockwise seen from its front in the scene, as in the glTF file it came from, and
// clockwise in the shape: each triangle is written with two corners swapped. A corner without a normal (none in the scene, or a zero one)
// takes its triangle's face normal: such faces are shaded flat.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/shape/MatrixSelection.h"
#include "host/scene/Materials.h"

namespace railwright::document::shape {

// One vertex of a batch, in its matrix's frame.
struct VertexRecord {
    float position[3] = {0, 0, 0};
    float normal[3] = {0, 1, 0};
    float u = 0;
    float v = 0;
};

// The triangles of one material in one matrix: three corners per triangle, indices into the
// records, clockwise seen from the front.
struct Batch {
    int32_t matrix = 0;
    host::scene::SceneMaterial* material = nullptr;  // null: the shape has none
    int32_t primState = 0;                           // filled in by the material table
    std::vector<VertexRecord> records;
    std::vector<uint32_t> corners;
    size_t TriangleCount() const { return corners.size() / 3; }
};

struct [[nodiscard]] GatherResult {
    std::vector<Batch> batches;  // by matrix, then by material in the order first met
    std::string error;           // a triangle naming a vertex the shape does not have
};

GatherResult GatherBatches(const MatrixPlan& plan);

// The face normal of a triangle, unit length; (0, 1, 0) for a triangle without area.
void FaceNormal(const float* a, const float* b, const float* c, float* normal);

}  // namespace railwright::document::shape
