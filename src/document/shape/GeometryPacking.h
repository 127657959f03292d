// Points, normals and uv points shared across the shape; vertices, vertex sets and primitives
// per sub-object, within the limits that MSTS keeps to.
//
// Equal points (and normals, and uv points) are written once for the whole shape. Within a
// sub-object a vertex is written once per matrix: the vertices of one matrix form one run,
// which the sub-object's vertex set of that matrix's vertex state names. A sub-object is closed
// before it would reach kSubObjectVertexLimit vertices, a primitive before it would reach
// kPrimitiveTriangleLimit triangles; so no vertex index ever passes 65,535. Each triangle also
// names its face normal.
#pragma once

#include <cstdint>
#include <vector>

#include "document/shape/KeyTable.h"
#include "document/shape/ShapeData.h"
#include "document/shape/SurfaceBatches.h"

namespace railwright::document::shape {

// A sub-object holds fewer vertices than this, a primitive fewer triangles.
inline constexpr uint32_t kSubObjectVertexLimit = 15000;
inline constexpr uint32_t kPrimitiveTriangleLimit = 8000;

class GeometryPacker {
  public:
    explicit GeometryPacker(ShapeData& shape);

    // The sub-objects of one distance level: the batches' triangles, in their order.
    std::vector<SubObject> Pack(const std::vector<Batch>& batches);

  private:
    uint32_t PointIndex(const float* position);
    uint32_t NormalIndex(const float* normal);
    uint32_t UvPointIndex(float u, float v);

    ShapeData& shape_;
    KeyTable points_;
    KeyTable normals_;
    KeyTable uvPoints_;
    KeyTable run_;  // the vertices of the current matrix's run in the current sub-object
};

}  // namespace railwright::document::shape
