// The shape's animation from the animation keys of its moving matrices.
//
// The simulator matches animation nodes to matrices by their index, so every matrix gets a node,
// a still one without controllers. A moving matrix gets a rotation controller (slerp_rot keys)
// and a position controller (linear_key keys), one key of each per key of its group.
//
// Frames: a key's time is its frame, at the 30 frames a second that MSTS animations run at; the
// drive wheel animation turns its wheels once over frames 0 to 8, which is how the simulators
// turn drive wheels. Frames are whole numbers: when some key time is not, every time is counted
// in thirtieths instead (frame = time x 30) and the frame rate written is 30 x 30, so that the
// animation runs at the same speed. Keys that meet on one frame keep the later one; times
// before 0 count as 0.
#pragma once

#include <optional>

#include "document/shape/MatrixSelection.h"
#include "document/shape/ShapeData.h"

namespace railwright::document::shape {

// Nothing when no matrix moves.
std::optional<Animation> BuildAnimation(const MatrixPlan& plan);

// The file's numbers of a rotation of the scene: the simulator reads slerp_rot keys as the
// quaternion of the rotation acting on row vectors.
RotationKey FileRotation(int32_t frame, const host::scene::Mat3& rotation);

}  // namespace railwright::document::shape
