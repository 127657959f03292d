// A glTF mesh as one shape of the scene: the positions of all its primitives one after another,
// with their normals (both in the scene's axes, Handedness.h), first texture coordinates and
// triangles, whose corners keep glTF's order.
//
// Each primitive adds its vertices to the shape's list; its triangles (modes TRIANGLES,
// TRIANGLE_STRIP and TRIANGLE_FAN, indexed or not) index that list and go to the triangle set
// of the primitive's material slot. Points and lines add vertices and no triangles. A primitive
// without normals leaves zero normals (the shape writer shades such faces flat), one without
// texture coordinates leaves (0, 0). Triangles that repeat a corner are left out: they show
// nothing.
#pragma once

#include <string>
#include <vector>

#include "document/TinyGltf.h"
#include "host/scene/Node.h"

namespace railwright::document {

// Reads mesh `meshIndex` of a model that ValidateModel accepted into `shape` (its vertices and
// surface; the holder is left alone). `materialSlots` holds, per primitive of the mesh, the
// index of the primitive's material in the shape's holder. Empty on success; otherwise the
// fault, naming the mesh and the primitive.
[[nodiscard]] std::string ReadMeshSurface(const tinygltf::Model& model, int meshIndex,
                                          const std::vector<int32_t>& materialSlots,
                                          host::scene::Shape& shape);

}  // namespace railwright::document
