#include "host/scene/Viewer.h"

#include <utility>

#include "host/scene/Node.h"
#include "host/scene/Scripting.h"

namespace railwright::host::scene {

SceneViewer::SceneViewer(std::shared_ptr<Failures> failures) : failures_(std::move(failures)) {}

void SceneViewer::Attach(HostContext&, Scripting&) {
    failures_->Check("Viewer.Attach");
    ++attachCount_;
    calls_.emplace_back("Attach");
}

float SceneViewer::PointX() {
    failures_->Check("Viewer.PointX");
    return point_.x;
}

float SceneViewer::PointY() {
    failures_->Check("Viewer.PointY");
    return point_.y;
}

float SceneViewer::PointZ() {
    failures_->Check("Viewer.PointZ");
    return point_.z;
}

void SceneViewer::SetPointX(float value) {
    failures_->Check("Viewer.SetPointX");
    point_.x = value;
}

void SceneViewer::SetPointY(float value) {
    failures_->Check("Viewer.SetPointY");
    point_.y = value;
}

void SceneViewer::SetPointZ(float value) {
    failures_->Check("Viewer.SetPointZ");
    point_.z = value;
}

void SceneViewer::LookAtPoint() {
    failures_->Check("Viewer.LookAtPoint");
    calls_.push_back("LookAtPoint " + NumberText(point_.x) + " " + NumberText(point_.y) + " " +
                     NumberText(point_.z));
}

void SceneViewer::EndPicking() {
    failures_->Check("Viewer.EndPicking");
    ++endPickingCount_;
    calls_.emplace_back("EndPicking");
}

std::shared_ptr<host::Selection> SceneViewer::Selection() {
    failures_->Check("Viewer.Selection");
    return selection_;
}

void SceneViewer::OnPick(std::function<void()> handler) {
    failures_->Check("Viewer.OnPick");
    handler_ = std::move(handler);
}

void SceneViewer::Pick(const std::shared_ptr<SceneGroup>& group) {
    if (!group) {
        selection_ = nullptr;
    } else {
        const auto* node = dynamic_cast<const Node*>(group.get());
        selection_ = std::make_shared<SceneSelection>(
            failures_, std::make_shared<FieldSlots>(), node != nullptr ? node->NameValue() : "",
            group);
    }
    if (handler_) {
        handler_();
    }
}

}  // namespace railwright::host::scene
