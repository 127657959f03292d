#include "document/shape/ShapeAnimation.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace railwright::document::shape {

namespace {

using host::scene::Affine;

constexpr int32_t kFrameRate = 30;
// Key times within this of a whole number count as whole frames.
constexpr double kWholeFrameTolerance = 1e-4;

bool AllTimesWhole(const MatrixPlan& plan) {
    for (const PlannedMatrix& matrix : plan.matrices) {
        if (!matrix.animated) {
            continue;
        }
        for (const host::scene::Key& key : matrix.group->Keys()) {
            const double time = key.time;
            if (std::abs(time - std::round(time)) > kWholeFrameTolerance) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

RotationKey FileRotation(int32_t frame, const host::scene::Mat3& rotation) {
    const host::scene::Quaternion q = host::scene::ToQuaternion(rotation);
    // Read on row vectors, the rotation turns the other way: its conjugate.
    return {frame, static_cast<float>(-q.x), static_cast<float>(-q.y), static_cast<float>(-q.z),
            static_cast<float>(q.w)};
}

std::optional<Animation> BuildAnimation(const MatrixPlan& plan) {
    const bool anyMoving = std::any_of(plan.matrices.begin(), plan.matrices.end(),
                                       [](const PlannedMatrix& m) { return m.animated; });
    if (!anyMoving) {
        return std::nullopt;
    }
    const int32_t framesPerTime = AllTimesWhole(plan) ? 1 : kFrameRate;
    Animation animation;
    animation.frameRate = kFrameRate * framesPerTime;
    for (const PlannedMatrix& matrix : plan.matrices) {
        AnimNode& node = animation.nodes.emplace_back();
        if (!matrix.animated) {
            continue;
        }
        std::map<int32_t, Affine> poses;  // by frame; a later key on the same frame wins
        for (const host::scene::Key& key : matrix.group->Keys()) {
            const double time = std::max(0.0, static_cast<double>(key.time));
            const auto frame = static_cast<int32_t>(std::lround(time * framesPerTime));
            Affine pose;
            pose.linear = host::scene::EulerXyzMatrix(host::scene::ToVec3(key.rotation));
            pose.translation = host::scene::ToVec3(key.position);
            poses[frame] = matrix.keyBefore * pose * matrix.keyAfter;
        }
        for (const auto& [frame, pose] : poses) {
            node.rotations.push_back(
                FileRotation(frame, host::scene::SplitRotation(pose.linear).rotation));
            node.positions.push_back(
                {frame,
                 {static_cast<float>(pose.translation.x), static_cast<float>(pose.translation.y),
                  static_cast<float>(pose.translation.z)}});
            animation.frameCount = std::max(animation.frameCount, frame);
        }
    }
    return animation;
}

}  // namespace railwright::document::shape
