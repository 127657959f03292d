#include "host/scene/Model.h"

#include <stdexcept>
#include <utility>

namespace railwright::host::scene {

namespace {

void AppendPreOrder(const std::shared_ptr<Node>& node, std::vector<std::shared_ptr<Node>>& order) {
    order.push_back(node);
    for (const std::shared_ptr<Node>& child : node->Children()) {
        AppendPreOrder(child, order);
    }
}

}  // namespace

Model::Model(std::shared_ptr<Failures> failures)
    : failures_(std::move(failures)),
      groupFields_(std::make_shared<FieldSlots>()),
      materialFields_(std::make_shared<FieldSlots>()) {}

std::shared_ptr<Model> Model::Create(std::shared_ptr<Failures> failures,
                                     const std::string& rootName) {
    std::shared_ptr<Model> model(new Model(std::move(failures)));
    model->root_ = std::make_shared<Node>(model, model->failures_, model->groupFields_, rootName);
    return model;
}

Bounds Model::BoundingBox(float time, int32_t, const std::string& excludePrefix, int32_t,
                          int32_t) {
    failures_->Check("SceneGraph.BoundingBox");
    return GeometryBounds(time, excludePrefix);
}

int32_t Model::GroupFieldIndex(const std::string& fieldName) {
    failures_->Check("SceneGraph.GroupFieldIndex");
    return groupFields_->IndexOf(fieldName);
}

int32_t Model::AddGroupField(const std::string& fieldName) {
    failures_->Check("SceneGraph.AddGroupField");
    return groupFields_->Add(fieldName);
}

int32_t Model::MaterialFieldIndex(const std::string& fieldName) {
    failures_->Check("SceneGraph.MaterialFieldIndex");
    return materialFields_->IndexOf(fieldName);
}

int32_t Model::AddMaterialField(const std::string& fieldName) {
    failures_->Check("SceneGraph.AddMaterialField");
    return materialFields_->Add(fieldName);
}

std::shared_ptr<Node> Model::AddGroup(const std::string& name, Node& parent,
                                      const Affine& local) {
    if (parent.model_.lock().get() != this) {
        throw std::invalid_argument("Model::AddGroup: the parent \"" + parent.NameValue() +
                                    "\" belongs to another scene.");
    }
    auto group = std::make_shared<Node>(weak_from_this(), failures_, groupFields_, name);
    group->local_ = local;
    group->parent_ = parent.weak_from_this();
    parent.children_.push_back(group);
    StructureChanged();
    return group;
}

std::shared_ptr<SceneSelection> Model::AddMaterialHolder(const std::string& name) {
    auto holder = std::make_shared<SceneSelection>(failures_, materialFields_, name);
    holders_.push_back(holder);
    return holder;
}

const std::vector<std::shared_ptr<Node>>& Model::GroupOrder() const {
    if (!orderValid_) {
        order_.clear();
        AppendPreOrder(root_, order_);
        orderValid_ = true;
    }
    return order_;
}

std::shared_ptr<Node> Model::FindGroup(std::string_view name) const {
    for (const std::shared_ptr<Node>& group : GroupOrder()) {
        // Of equal length, a name that begins with the other equals it.
        if (group->NameValue().size() == name.size() &&
            StartsWithIgnoringCase(group->NameValue(), name)) {
            return group;
        }
    }
    return nullptr;
}

Bounds Model::GeometryBounds(float time, std::string_view excludePrefix) const {
    BoxAccumulator box;
    root_->CollectBounds(Affine{}, time, excludePrefix, box);
    return box.Result();
}

}  // namespace railwright::host::scene
