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
//
// The sub-objects' text is made in parallel, on as many threads as the machine has cores, and
// joined in their order, so the text is the same whatever the number of threads.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "document/shape/ShapeData.h"

namespace railwright::document::shape {

// The whole text at once.
std::string ShapeText(const ShapeData& shape);

// Receives the text in order, in pieces of about kShapeTextBlock bytes (one sub-object's text may
// make a larger piece).
using ShapeTextSink = std::function<void(std::string_view bytes)>;
inline constexpr size_t kShapeTextBlock = size_t{1} << 20;

// Hands the text to `sink` piece by piece, holding no more than a few blocks and the
// sub-objects being made at any time; the number of bytes handed over.
size_t StreamShapeText(const ShapeData& shape, const ShapeTextSink& sink);

}  // namespace railwright::document::shape
