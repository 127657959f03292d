// The embedded view of the in-memory scene: it records what it is told and reports picks that a
// test (or the event script) makes through Pick.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/Host.h"
#include "host/scene/Failures.h"
#include "host/scene/Materials.h"

namespace railwright::host::scene {

class SceneViewer final : public host::Viewer {
public:
    explicit SceneViewer(std::shared_ptr<Failures> failures);

    void Attach(HostContext& context, Scripting& scripting) override;
    float PointX() override;
    float PointY() override;
    float PointZ() override;
    void SetPointX(float value) override;
    void SetPointY(float value) override;
    void SetPointZ(float value) override;
    void LookAtPoint() override;
    void EndPicking() override;
    std::shared_ptr<host::Selection> Selection() override;
    void OnPick(std::function<void()> handler) override;

    // The user clicks `group` in the view: a selection of it (named as the group, no materials)
    // becomes current, then the pick handler runs. A null group is a click on empty space: no
    // selection. What the handler throws reaches the caller.
    void Pick(const std::shared_ptr<SceneGroup>& group);
    // The current pick as the scene's own type, or null.
    const std::shared_ptr<SceneSelection>& Picked() const { return selection_; }

    // In order: "Attach", "LookAtPoint <x> <y> <z>" (the point at that moment), "EndPicking".
    const std::vector<std::string>& Calls() const { return calls_; }
    Vector3 Point() const { return point_; }
    int32_t AttachCount() const { return attachCount_; }
    int32_t EndPickingCount() const { return endPickingCount_; }

private:
    std::shared_ptr<Failures> failures_;
    Vector3 point_;
    std::shared_ptr<SceneSelection> selection_;
    std::function<void()> handler_;
    std::vector<std::string> calls_;
    int32_t attachCount_ = 0;
    int32_t endPickingCount_ = 0;
};

}  // namespace railwright::host::scene
