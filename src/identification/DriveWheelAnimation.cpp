#include "identification/DriveWheelAnimation.h"

#include <array>
#include <memory>
#include <string_view>

#include "support/SupportingFunctions.h"

namespace railwright::identification {
namespace {

constexpr std::array<std::string_view, 4> kDriveWheelsets{"WHEELS1", "WHEELS2", "WHEELS3",
                                                          "WHEELS4"};
constexpr std::string_view kMainWheelLink = "MAIN_WHEEL_LINK";

// Eight keys of 45 degrees make one turn; the closing key is the starting pose.
constexpr int32_t kTurningKeys = 7;
constexpr int32_t kClosingKey = 8;
constexpr float kDegreesPerKey = 45.0f;
// Single precision, pi as the literal the turn has always used.
constexpr float kPi = 3.141593f;
constexpr float kDegreesPerHalfTurn = 180.0f;

constexpr host::Vector3 kWheelsetAxis{1, 0, 0};
// The link turns against its parent "Wheels1" by the same angle, so it keeps its attitude while
// the wheel carries it round.
constexpr host::Vector3 kLinkAxis{-1, 0, 0};

bool IsDriveWheelset(const std::string& upperName) {
    for (const std::string_view name : kDriveWheelsets) {
        if (upperName == name) {
            return true;
        }
    }
    return false;
}

void Animate(host::Scripting& scene, host::SceneGroup& group, host::SceneGroup& parent,
             host::Vector3 axis) {
    const host::Bounds bounds = group.GetBounds(parent, host::kCurrentPose);
    const host::Vector3 pivot{(bounds.minX + bounds.maxX) / 2, (bounds.minY + bounds.maxY) / 2,
                              (bounds.minZ + bounds.maxZ) / 2};
    const host::Vector3 start = group.GetPosition(parent, host::kCurrentPose);
    const host::Vector3 fromPivot{start.x - pivot.x, start.y - pivot.y, start.z - pivot.z};
    const host::Vector3 noTurn;

    group.SetKey(parent, 0, start, noTurn);
    for (int32_t t = 1; t <= kTurningKeys; ++t) {
        const float angle = static_cast<float>(t) * kDegreesPerKey * kPi / kDegreesPerHalfTurn;
        const host::Vector3 turned = scene.RotateAboutAxis(fromPivot, axis, angle);
        group.SetKey(parent, static_cast<float>(t),
                     {pivot.x + turned.x, pivot.y + turned.y, pivot.z + turned.z},
                     {axis.x * angle, axis.y * angle, axis.z * angle});
    }
    group.SetKey(parent, static_cast<float>(kClosingKey), start, noTurn);
}

}  // namespace

void AnimateDriveWheels(host::Scripting& scene, support::UserInterface& ui) {
    try {
        const int32_t count = scene.GroupCount();
        for (int32_t i = 0; i < count; ++i) {
            const std::shared_ptr<host::SceneGroup> group = scene.Group(i);
            const std::string name = support::ToUpper(group->Name());
            const bool link = name == kMainWheelLink;
            if (!link && !IsDriveWheelset(name)) {
                continue;
            }
            const std::shared_ptr<host::SceneGroup> parent = group->Parent();
            if (!parent) {
                continue;  // the top group has no frame to turn in
            }
            Animate(scene, *group, *parent, link ? kLinkAxis : kWheelsetAxis);
        }
    } catch (...) {
        support::ReportCurrentError(ui);
    }
}

}  // namespace railwright::identification
