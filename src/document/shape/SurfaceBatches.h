// The triangles of the kept matrices, gathered per matrix and material, in the shape's axes.
//
// The scene is right-handed with glTF's axes (Y up, +Z the front, -X the right); the shape is
// left-handed with X to the right. Mirroring X takes one to the other with the front and the
// top where they were, and turns counter-clockwise triangles clockwise, as the shape has them
// once their corners are swapped. A corner without a normal (none in the scene, or a zero one)
// takes its triangle's face normal: such faces are shaded flat.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/shape/MatrixSelection.h"
#include "host/scene/Materials.h"

namespace railwright::document::shape {

// One vertex of a batch, in its matrix's frame and the shape's axes.
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
