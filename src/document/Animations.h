// Animation keys of the scene's groups and glTF node animations.
//
// A group's key is its pose at one time (translation and rotation, relative to its parent).
// Reading: the translation and rotation channels that target a node, across all of the file's
// animations, give one key at every time that either channel has; the other channel is sampled
// at that time by its interpolation (a cubic spline as a straight line between its values), and
// a node without one of the two channels keeps its own translation or rotation. When several
// channels move the same property of a node, the first one counts.
//
// Writing: the keys of a node that the system changed replace the node's translation and
// rotation channels in every animation. They go, as two LINEAR channels, into the animation
// named kAnimationName (made when missing); samplers left unused are dropped, and so are
// animations left without channels.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/TinyGltf.h"
#include "host/scene/Node.h"

namespace railwright::document {

inline constexpr std::string_view kAnimationName = "Railwright";

// A node's transform in its parent's frame, from its matrix or from its translation, rotation
// and scale.
host::scene::Affine NodeLocalTransform(const tinygltf::Node& node);

// The keys of every node that an animation moves, by node index. Empty on success; otherwise
// the fault of an animation that cannot be read.
[[nodiscard]] std::string ReadNodeKeys(const tinygltf::Model& model,
                                       std::map<int, std::vector<host::scene::Key>>& keys);

// The nodes that some animation channel targets (a node moved by an animation must describe
// its transform by translation, rotation and scale, never by a matrix).
std::set<int> AnimatedNodes(const nlohmann::ordered_json& root);

// Replaces the animation of the nodes in `keys` (node index → its new keys, sorted by time) in
// the glTF JSON. `addBufferView` stores bytes and returns the index of a new bufferView holding
// them. Empty on success; otherwise the fault (a key at a negative time).
[[nodiscard]] std::string WriteNodeKeys(
    nlohmann::ordered_json& root, const std::map<int, std::vector<host::scene::Key>>& keys,
    const std::function<int(std::string_view bytes)>& addBufferView);

}  // namespace railwright::document
