// A glTF mesh as one shape of the scene: the positions of all its primitives one after another,
// with their normals (both in the scene's axes, Handedness.h), first texture coordinates and
// triangles, whose corners keep glTF's order.
//
// Each primitive adds its vertices to the shape's list; its triangles (modes TRIANGLES,
// TRIANGLE_STRIP and TRIANGLE_FAN, indexed or not) index that list and go to the triangle set
// of the primitive's material slot. Points and lines are left out: a shape holds triangles. A
// primitive without normals leaves zero normals (the shape writer shades such faces flat), one
// without texture coordinates leaves (0, 0). The texture coordinates are TEXCOORD_0, turned as
// the material's base colour texture says (KHR_texture_transform). Quantized positions, normals
// and texture coordinates (KHR_mesh_quantization) are read when the model declares that it uses
// them. A skinned or morphed mesh is read in its rest pose: its own positions, no joints or
// morph targets applied. Triangles that repeat a corner are left out: they show nothing.
#pragma once

#include <string>
#include <vector>

#include "document/TinyGltf.h"
#include "host/scene/Node.h"

namespace railwright::document {

// How texture coordinates are turned: u' = a u + b v + e, v' = c u + d v + f.
struct TexCoordTransform {
    float a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
};

// What a primitive's material says about its surface.
struct PrimitiveLook {
    int32_t materialSlot = 0;  // the material's index in the shape's holder
    TexCoordTransform texCoords{};
};

// Reads mesh `meshIndex` of a model that ValidateModel accepted into `shape` (its vertices and
// surface; the holder is left alone). `looks` holds one entry per primitive of the mesh.
// `leftOut` counts the primitives of points and lines that were left out. Empty on success;
// otherwise the fault, naming the mesh and the primitive.
[[nodiscard]] std::string ReadMeshSurface(const tinygltf::Model& model, int meshIndex,
                                          const std::vector<PrimitiveLook>& looks,
                                          host::scene::Shape& shape, size_t& leftOut);

}  // namespace railwright::document
