#include "host/scene/Scripting.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "host/scene/Transform.h"

namespace railwright::host::scene {

namespace {

template <typename Item>
const Item& ItemAt(const std::vector<Item>& items, int32_t index, const char* what) {
    if (index < 0 || index >= static_cast<int32_t>(items.size())) {
        throw HostError(kHostErrorInvalidArgument, std::string(what) + " index " +
                                                       std::to_string(index) +
                                                       " is out of range.");
    }
    return items[index];
}

}  // namespace

std::string NumberText(float value) {
    if (value == 0) {
        return "0";
    }
    // The longest fixed text of a float is the smallest subnormal: "-0." and 45 decimals.
    char buffer[64];
    const std::to_chars_result written =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return std::string(buffer, written.ptr);
}

SceneScripting::SceneScripting(std::shared_ptr<Failures> failures, std::shared_ptr<Model> model)
    : failures_(std::move(failures)), model_(std::move(model)) {}

std::string SceneScripting::ValueText(float value) {
    failures_->Check("Scripting.ValueText");
    return NumberText(value);
}

std::string SceneScripting::LengthText(float value) {
    failures_->Check("Scripting.LengthText");
    return NumberText(value);
}

ViewArea SceneScripting::GetViewArea() {
    failures_->Check("Scripting.GetViewArea");
    const Bounds box = model_->GeometryBounds(kCurrentPose, {});
    const float size = std::max({box.maxX - box.minX, box.maxY - box.minY, box.maxZ - box.minZ});
    return {box.minX, box.minY, box.minZ, size, 0};
}

std::shared_ptr<SceneGroup> SceneScripting::Group(int32_t index) {
    failures_->Check("Scripting.Group");
    return ItemAt(model_->GroupOrder(), index, "Group");
}

int32_t SceneScripting::GroupCount() {
    failures_->Check("Scripting.GroupCount");
    return static_cast<int32_t>(model_->GroupOrder().size());
}

std::shared_ptr<SceneGroup> SceneScripting::RootGroup() {
    failures_->Check("Scripting.RootGroup");
    return model_->Root();
}

int32_t SceneScripting::MaterialListCount() {
    failures_->Check("Scripting.MaterialListCount");
    return static_cast<int32_t>(model_->MaterialHolders().size());
}

std::shared_ptr<Selection> SceneScripting::MaterialList(int32_t index) {
    failures_->Check("Scripting.MaterialList");
    return ItemAt(model_->MaterialHolders(), index, "Material list");
}

Vector3 SceneScripting::RotateAboutAxis(Vector3 point, Vector3 axis, float angle) {
    failures_->Check("Scripting.RotateAboutAxis");
    const Vec3 direction = ToVec3(axis);
    const double length = Length(direction);
    if (!(length > 0) || !std::isfinite(length)) {
        throw HostError(kHostErrorInvalidArgument, "The axis of a rotation must not be zero.");
    }
    const Vec3 unitAxis = direction * (1 / length);
    return ToVector3(scene::RotateAboutAxis(ToVec3(point), unitAxis, static_cast<double>(angle)));
}

void SceneScripting::SetFlags(int32_t flags) {
    failures_->Check("Scripting.SetFlags");
    calls_.push_back("SetFlags " + std::to_string(flags));
}

void SceneScripting::SetMode(int32_t mode) {
    failures_->Check("Scripting.SetMode");
    calls_.push_back("SetMode " + std::to_string(mode));
}

int32_t SceneScripting::LightCount() {
    failures_->Check("Scripting.LightCount");
    return static_cast<int32_t>(model_->Lights().size());
}

Light SceneScripting::GetLight(int32_t index) {
    failures_->Check("Scripting.GetLight");
    return ItemAt(model_->Lights(), index, "Light");
}

int32_t SceneScripting::CollisionBoxCount() {
    failures_->Check("Scripting.CollisionBoxCount");
    return static_cast<int32_t>(model_->CollisionBoxes().size());
}

CollisionBox SceneScripting::GetCollisionBox(int32_t index) {
    failures_->Check("Scripting.GetCollisionBox");
    return ItemAt(model_->CollisionBoxes(), index, "Collision box");
}

}  // namespace railwright::host::scene
