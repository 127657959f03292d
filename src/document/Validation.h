// What a loaded glTF must satisfy before anything reads it.
//
// tinygltf parses without checking references: a file can load with indices that point at
// nodes, accessors or bytes that do not exist. Every index of the model and every byte range
// that an accessor or bufferView claims is checked here, with arithmetic that cannot overflow,
// along with the shape of the node hierarchy and the extensions the file requires.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "document/TinyGltf.h"

namespace railwright::document {

// Nodes deeper than this are refused: every walk of the scene would have to go that deep.
inline constexpr int kMaxHierarchyDepth = 1024;
// An accessor without a bufferView reads as zeros (and its sparse values); larger ones are
// refused rather than allocated.
inline constexpr size_t kMaxAccessorCountWithoutData = size_t{1} << 24;

// Whether a file that lists `name` in extensionsRequired can be loaded: the extension changes
// nothing that the document reads (texture transforms, material models, lights).
bool SupportsRequiredExtension(std::string_view name);

// The bytes one element of an accessor takes (matrix columns padded to 4 bytes); 0 for an
// unknown type or component type.
size_t AccessorElementSize(int type, int componentType);
// The bytes of the last element that must lie inside the bufferView: the element without the
// padding after its last matrix column.
size_t AccessorLastElementSize(int type, int componentType);

// Empty when the model is sound; otherwise its first fault as a sentence ("node 3 names mesh
// 9, which does not exist.").
std::string ValidateModel(const tinygltf::Model& model);

}  // namespace railwright::document
