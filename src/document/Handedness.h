// Where the model's axes change.
//
// glTF's axes are right-handed: Y up, +Z the model's front, so +X is its left. The modeller,
// and with it the scene that stands in for it, shows the model as MSTS does, left-handed: X to
// the right, Y up, Z to the front. Loading turns every position, direction, transform and key
// into the scene's axes by changing the sign of X; saving turns them back. Every other part of
// the system (the identification, the engine and shape data files, the shape) then sees one
// frame, the simulator's.
//
// Changing the sign of one axis is its own inverse, so one function serves both directions.
#pragma once

#include "host/scene/Node.h"
#include "host/scene/Transform.h"

namespace railwright::document {

host::Vector3 OtherHandedness(host::Vector3 point);
host::scene::Vec3 OtherHandedness(host::scene::Vec3 point);
// The same place seen in the other axes: S * transform * S, with S the sign change of X.
host::scene::Affine OtherHandedness(const host::scene::Affine& transform);
host::scene::Quaternion OtherHandedness(host::scene::Quaternion rotation);
host::scene::Key OtherHandedness(const host::scene::Key& key);

}  // namespace railwright::document
