#include "host/GroupListViewer.h"

namespace railwright::host {
namespace {

// A pick in the list: the group itself, holding no materials of its own.
class GroupSelection final : public Selection {
public:
    explicit GroupSelection(std::shared_ptr<SceneGroup> group) : group_(std::move(group)) {}

    std::shared_ptr<SceneGroup> Group() override { return group_; }
    // The list shows the groups' own names, which the wizard has just set.
    void SetName(const std::string&) override {}
    std::string Name() override { return group_->Name(); }
    int32_t MaterialCount() override { return 0; }
    std::shared_ptr<host::Material> Material(int32_t index) override {
        throw HostError(kHostErrorInvalidArgument,
                        "a pick holds no material " + std::to_string(index));
    }

private:
    std::shared_ptr<SceneGroup> group_;
};

}  // namespace

void GroupListViewer::Attach(HostContext&, Scripting& scripting) {
    scripting_ = &scripting;
    selection_.reset();
}

std::string GroupListViewer::Pick(const std::variant<std::string, int32_t>& group) {
    if (scripting_ == nullptr) {
        return "the view shows no model";
    }
    const int32_t count = scripting_->GroupCount();
    std::shared_ptr<SceneGroup> picked;
    if (const int32_t* index = std::get_if<int32_t>(&group)) {
        if (*index < 0 || *index >= count) {
            return "the model has no group " + std::to_string(*index) + " (it has " +
                   std::to_string(count) + ")";
        }
        picked = scripting_->Group(*index);
    } else {
        const std::string& name = std::get<std::string>(group);
        for (int32_t i = 0; i < count && !picked; ++i) {
            std::shared_ptr<SceneGroup> candidate = scripting_->Group(i);
            if (candidate->Name() == name) {
                picked = std::move(candidate);
            }
        }
        if (!picked) {
            return "the model has no group \"" + name + "\"";
        }
    }
    selection_ = std::make_shared<GroupSelection>(std::move(picked));
    if (handler_) {
        handler_();
    }
    return {};
}

}  // namespace railwright::host
