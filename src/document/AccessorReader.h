// Reading the numbers of a validated accessor: byte strides, accessors without a bufferView
// (zeros), sparse substitutions, and normalised or plain integer components.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/TinyGltf.h"

namespace railwright::document {

enum class ComponentRule {
    FloatOnly,          // vertex positions, animation times and translations
    FloatOrNormalized,  // rotations may also be normalised signed or unsigned bytes and shorts
    FloatOrInteger      // quantized vertex data (KHR_mesh_quantization): bytes and shorts,
                        // normalised or read as the whole numbers they hold
};

// Reads accessor `index` of a model that ValidateModel accepted, as `components` numbers per
// element, element after element. The accessor's type must have exactly that many components
// and its component type must meet `rule`. Empty on success; otherwise the fault (a wrong type,
// a sparse index beyond the accessor's elements, a number that is not finite).
[[nodiscard]] std::string ReadAccessor(const tinygltf::Model& model, int index, int components,
                                       ComponentRule rule, std::vector<float>& values);

// Reads index accessor `index` (scalar unsigned bytes, shorts or ints, sparse substitutions
// applied) of a model that ValidateModel accepted. Empty on success; otherwise the fault.
[[nodiscard]] std::string ReadIndices(const tinygltf::Model& model, int index,
                                      std::vector<uint32_t>& indices);

}  // namespace railwright::document
