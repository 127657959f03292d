// The scripting facade of the in-memory scene: groups in scene order, number texts, material
// lists, lights and collision boxes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/Host.h"
#include "host/scene/Failures.h"
#include "host/scene/Model.h"

namespace railwright::host::scene {

// The text of a number as this host writes it: the shortest text in fixed notation that reads
// back as the same single-precision value, with "." as decimal separator, no exponent, no digit
// grouping and no trailing zeros ("27", "96.25", "0.5", "1000000"). Negative zero is written
// "0", the same as zero. Infinities and NaN are written "inf", "-inf" and "nan".
std::string NumberText(float value);

class SceneScripting final : public host::Scripting {
public:
    SceneScripting(std::shared_ptr<Failures> failures, std::shared_ptr<Model> model);

    // Both write NumberText: the scene keeps lengths in metres and adds no unit.
    std::string ValueText(float value) override;
    std::string LengthText(float value) override;
    // x, y, z: the low corner of the box of all geometry; size: the box's largest extent;
    // extra: 0. All zeros for a model without geometry.
    ViewArea GetViewArea() override;
    // An index outside 0 to GroupCount() - 1 throws HostError.
    std::shared_ptr<SceneGroup> Group(int32_t index) override;
    int32_t GroupCount() override;
    std::shared_ptr<SceneGroup> RootGroup() override;
    int32_t MaterialListCount() override;
    // An index outside 0 to MaterialListCount() - 1 throws HostError.
    std::shared_ptr<Selection> MaterialList(int32_t index) override;
    // A zero axis throws HostError.
    Vector3 RotateAboutAxis(Vector3 point, Vector3 axis, float angle) override;
    void SetFlags(int32_t flags) override;
    void SetMode(int32_t mode) override;
    int32_t LightCount() override;
    // An index outside the list throws HostError(kHostErrorInvalidArgument).
    Light GetLight(int32_t index) override;
    int32_t CollisionBoxCount() override;
    CollisionBox GetCollisionBox(int32_t index) override;

    // SetFlags and SetMode calls in order, as "SetFlags 8", "SetMode 1".
    const std::vector<std::string>& Calls() const { return calls_; }

private:
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<Model> model_;
    std::vector<std::string> calls_;
};

}  // namespace railwright::host::scene
