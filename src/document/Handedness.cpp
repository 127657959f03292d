#include "document/Handedness.h"

namespace railwright::document {

using host::scene::Affine;
using host::scene::Quaternion;
using host::scene::Vec3;

host::Vector3 OtherHandedness(host::Vector3 point) {
    return {-point.x, point.y, point.z};
}

Vec3 OtherHandedness(Vec3 point) {
    return {-point.x, point.y, point.z};
}

Affine OtherHandedness(const Affine& transform) {
    // S * M * S changes the sign of every element that mixes X with another axis.
    Affine changed = transform;
    for (int i = 1; i < 3; ++i) {
        changed.linear(0, i) = -transform.linear(0, i);
        changed.linear(i, 0) = -transform.linear(i, 0);
    }
    changed.translation = OtherHandedness(transform.translation);
    return changed;
}

Quaternion OtherHandedness(Quaternion rotation) {
    // The axis (x, y, z) is mirrored to (-x, y, z) and the sense of the turn reverses.
    return {rotation.x, -rotation.y, -rotation.z, rotation.w};
}

host::scene::Key OtherHandedness(const host::scene::Key& key) {
    // R = Rz(c) * Ry(b) * Rx(a): the turn about X keeps its sense, those about Y and Z reverse.
    return {key.time, OtherHandedness(key.position),
            {key.rotation.x, -key.rotation.y, -key.rotation.z}};
}

}  // namespace railwright::document
