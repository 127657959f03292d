// The shape's shaders, images, vertex states and primitive states, from the materials of the
// batches.
//
// The material's "Tx Alpha" field chooses the shader: "Translucency" blends by the texture's
// alpha (BlendATexDiff); "Transparency" and "None" draw the texture lit (TexDiff), and
// "Transparency" also tests the alpha, so that clear texels cut out. The "Alpha Pr" field, the
// translucency priority, goes into the primitive state's z-bias for blended materials. The
// image is the .ace file that the texture conversion writes for the texture: its base name in
// lower case with ".ace". A material without a texture gets no texture at all.
//
// Every matrix has one vertex state, of the same index.
#pragma once

#include <vector>

#include "document/shape/ShapeData.h"
#include "document/shape/SurfaceBatches.h"
#include "host/scene/Materials.h"

namespace railwright::document::shape {

// Fills shape.shaders, images, primStates and vtxStates, and each batch's primState.
void AssignMaterials(const host::scene::FieldSlots& materialFields, size_t matrixCount,
                     std::vector<Batch>& batches, ShapeData& shape);

// The image name of a texture file: "Textures\\Body Paint.TGA" gives "body paint.ace".
std::string ImageName(std::string_view textureFile);

}  // namespace railwright::document::shape
