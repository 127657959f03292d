// The text of an MSTS shape file, 8-bit with CR LF line ends, as txt2uni then converts it:
//
//   SIMISA@@@@@@@@@@JINX0s1t______
//
//   shape (
//   	shape_header ( 00000000 00000000 )
//   	volumes ( 1 vol_sphere ( vector ( 0 0 0 ) 12.5 ) )
//   	shader_names ( ... )  texture_filter_names ( ... )  points ( ... )  uv_points ( ... )
//   	normals ( ... )  sort_vectors ( 0 )  colours ( 0 )  matrices ( ... )  images ( ... )
//   	textures ( ... )  light_materials ( 0 )  light_model_cfgs ( ... )  vtx_states ( ... )
//   	prim_states ( ... )  lod_controls ( ... )  [animations ( ... )]
//   )
//
// The blocks come in this fixed order, each list opening with its count, because the reader
// takes them by position, not by name. Numbers are the shortest decimal text that reads back
// as the same single-precision value, without exponent; flags are eight hex digits.
#pragma once

#include <string>

#include "document/shape/ShapeData.h"

namespace railwright::document::shape {

std::string ShapeText(const ShapeData& shape);

}  // namespace railwright::document::shape
