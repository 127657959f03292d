// A view of any host's model as the list of its groups, in Scripting.Group order: what the wizard
// shows where the host's own view control cannot be created, and what an event script picks in.
// A pick names a group by its name (the first group of that name) or its index; the pick then
// becomes the current selection and the pick handler runs.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "host/Host.h"

namespace railwright::host {

class GroupListViewer final : public Viewer {
public:
    void Attach(HostContext& context, Scripting& scripting) override;
    float PointX() override { return point_.x; }
    float PointY() override { return point_.y; }
    float PointZ() override { return point_.z; }
    void SetPointX(float value) override { point_.x = value; }
    void SetPointY(float value) override { point_.y = value; }
    void SetPointZ(float value) override { point_.z = value; }
    void LookAtPoint() override {}
    void EndPicking() override {}
    std::shared_ptr<host::Selection> Selection() override { return selection_; }
    void OnPick(std::function<void()> handler) override { handler_ = std::move(handler); }

    // Picks a group of the attached model; an error text for the user when there is no such
    // group (or no model is attached), empty when the pick was made. What the pick handler
    // throws reaches the caller.
    std::string Pick(const std::variant<std::string, int32_t>& group);

private:
    Scripting* scripting_ = nullptr;
    Vector3 point_;
    std::shared_ptr<host::Selection> selection_;
    std::function<void()> handler_;
};

}  // namespace railwright::host
