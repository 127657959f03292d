#include "host/scene/Node.h"

#include <algorithm>
#include <utility>

#include "host/scene/Model.h"
#include "host/scene/PartNames.h"

namespace railwright::host::scene {

namespace {

char UpperAscii(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

Affine KeyTransform(Vector3 position, Vector3 rotation) {
    Affine pose;
    pose.linear = EulerXyzMatrix(ToVec3(rotation));
    pose.translation = ToVec3(position);
    return pose;
}

// The key that places a group at `pose` (a rigid pose in some frame) once `toParent` maps that
// frame into the group's parent frame. A scaled frame leaves a stretch that a key cannot carry;
// the key keeps its rotation part.
Key ConvertKey(const Affine& toParent, float time, const Affine& pose) {
    const Affine inParent = toParent * pose;
    return {time, ToVector3(inParent.translation),
            ToVector3(ToEulerXyz(SplitRotation(inParent.linear).rotation))};
}

Affine InverseOrThrow(const Affine& world, const std::string& groupName) {
    const std::optional<Affine> inverse = world.Inverse();
    if (!inverse) {
        throw HostError(kHostErrorFailed, "The frame of group \"" + groupName +
                                              "\" cannot be used: it is scaled to nothing.");
    }
    return *inverse;
}

}  // namespace

void BoxAccumulator::Add(Vec3 point) {
    if (empty_) {
        min_ = max_ = point;
        empty_ = false;
        return;
    }
    min_ = {std::min(min_.x, point.x), std::min(min_.y, point.y), std::min(min_.z, point.z)};
    max_ = {std::max(max_.x, point.x), std::max(max_.y, point.y), std::max(max_.z, point.z)};
}

Bounds BoxAccumulator::Result() const {
    if (empty_) {
        return {};
    }
    const Vector3 low = ToVector3(min_);
    const Vector3 high = ToVector3(max_);
    return {low.x, low.y, low.z, high.x, high.y, high.z};
}

bool StartsWithIgnoringCase(std::string_view name, std::string_view prefix) {
    if (prefix.size() > name.size()) {
        return false;
    }
    for (size_t i = 0; i < prefix.size(); ++i) {
        if (UpperAscii(name[i]) != UpperAscii(prefix[i])) {
            return false;
        }
    }
    return true;
}

Node::Node(std::weak_ptr<Model> model, std::shared_ptr<Failures> failures,
           std::shared_ptr<const FieldSlots> groupFields, std::string name)
    : model_(std::move(model)),
      failures_(std::move(failures)),
      groupFields_(std::move(groupFields)),
      name_(std::move(name)) {}

std::string Node::Name() {
    failures_->Check("SceneGroup.Name");
    return name_;
}

void Node::SetName(const std::string& name) {
    failures_->Check("SceneGroup.SetName");
    name_ = name;
}

std::shared_ptr<SceneGroup> Node::Parent() {
    failures_->Check("SceneGroup.Parent");
    return parent_.lock();
}

void Node::MoveTo(SceneGroup& newParent) {
    failures_->Check("SceneGroup.MoveTo");
    Node& target = FrameNode(newParent, "SceneGroup.MoveTo");
    const std::shared_ptr<Node> oldParent = parent_.lock();
    if (!oldParent) {
        throw HostError(kHostErrorInvalidArgument, "The root group cannot be moved.");
    }
    if (&target == this || target.IsDescendantOf(*this)) {
        throw HostError(kHostErrorInvalidArgument, "Group \"" + name_ +
                                                       "\" cannot be moved under itself or "
                                                       "one of its own groups.");
    }
    if (&target == oldParent.get()) {
        return;
    }

    // Work out everything before changing anything, so that a failure leaves the scene as it was.
    const Affine targetInverse = InverseOrThrow(target.WorldAt(kCurrentPose), target.name_);
    const Affine newLocal = targetInverse * WorldAt(kCurrentPose);
    std::vector<Key> newKeys;
    for (const Key& key : keys_) {
        const Affine oldToNew = InverseOrThrow(target.WorldAt(key.time), target.name_) *
                                oldParent->WorldAt(key.time);
        newKeys.push_back(ConvertKey(oldToNew, key.time, KeyTransform(key.position, key.rotation)));
    }

    const std::shared_ptr<Node> self = shared_from_this();
    std::erase(oldParent->children_, self);
    target.children_.push_back(self);
    parent_ = target.weak_from_this();
    local_ = newLocal;
    keys_ = std::move(newKeys);
    if (const std::shared_ptr<Model> model = model_.lock()) {
        model->StructureChanged();
    }
}

int32_t Node::ShapeCount() {
    failures_->Check("SceneGroup.ShapeCount");
    return static_cast<int32_t>(shapes_.size());
}

Vector3 Node::GetPosition(SceneGroup& frame, float time) {
    failures_->Check("SceneGroup.GetPosition");
    const Node& frameNode = FrameNode(frame, "SceneGroup.GetPosition");
    return ToVector3(ThisToFrame(frameNode, time).translation);
}

Bounds Node::GetBounds(SceneGroup& frame, float time) {
    failures_->Check("SceneGroup.GetBounds");
    const Node& frameNode = FrameNode(frame, "SceneGroup.GetBounds");
    BoxAccumulator box;
    CollectBounds(ThisToFrame(frameNode, time), time, {}, box,
                  IsWheelset(name_) ? NamedPartsBelow::LeftOut : NamedPartsBelow::Included);
    return box.Result();
}

int32_t Node::KeyCount() {
    failures_->Check("SceneGroup.KeyCount");
    return static_cast<int32_t>(keys_.size());
}

void Node::SetKey(SceneGroup& frame, float time, Vector3 position, Vector3 rotation) {
    failures_->Check("SceneGroup.SetKey");
    Node& frameNode = FrameNode(frame, "SceneGroup.SetKey");
    if (&frameNode == parent_.lock().get()) {
        // Already relative to the parent: kept exactly as given.
        PutKey({time, position, rotation});
        return;
    }
    const Affine frameToParent =
        InverseOrThrow(ParentWorldAt(time), "parent of " + name_) * frameNode.WorldAt(time);
    PutKey(ConvertKey(frameToParent, time, KeyTransform(position, rotation)));
}

std::shared_ptr<host::SceneGraph> Node::SceneGraph() {
    failures_->Check("SceneGroup.SceneGraph");
    return OwningModel();
}

std::string Node::CustomField(int32_t fieldIndex) {
    failures_->Check("SceneGroup.CustomField");
    if (!groupFields_->Holds(fieldIndex)) {
        throw HostError(kHostErrorInvalidArgument, "There is no custom group field with index " +
                                                       std::to_string(fieldIndex) + ".");
    }
    return fields_[fieldIndex];
}

void Node::SetCustomField(int32_t fieldIndex, const std::string& value) {
    failures_->Check("SceneGroup.SetCustomField");
    if (!groupFields_->Holds(fieldIndex)) {
        throw HostError(kHostErrorInvalidArgument, "There is no custom group field with index " +
                                                       std::to_string(fieldIndex) + ".");
    }
    fields_[fieldIndex] = value;
}

void Node::AddShape(Shape shape) {
    if (shape.holder && !shape.holder->HasGroup()) {
        shape.holder->SetGroup(weak_from_this());
    }
    shapes_.push_back(std::move(shape));
}

void Node::PutKey(const Key& key) {
    const auto place = std::lower_bound(keys_.begin(), keys_.end(), key.time,
                                        [](const Key& k, float time) { return k.time < time; });
    if (place != keys_.end() && place->time == key.time) {
        *place = key;
    } else {
        keys_.insert(place, key);
    }
}

Affine Node::LocalAt(float time) const {
    if (time == kCurrentPose) {
        return local_;
    }
    const auto key = std::find_if(keys_.begin(), keys_.end(),
                                  [time](const Key& k) { return k.time == time; });
    if (key == keys_.end()) {
        return local_;
    }
    Affine pose = KeyTransform(key->position, key->rotation);
    pose.linear = pose.linear * SplitRotation(local_.linear).stretch;
    return pose;
}

Affine Node::WorldAt(float time) const { return ParentWorldAt(time) * LocalAt(time); }

Affine Node::ParentWorldAt(float time) const {
    const std::shared_ptr<Node> parent = parent_.lock();
    return parent ? parent->WorldAt(time) : Affine{};
}

bool Node::IsDescendantOf(const Node& ancestor) const {
    for (std::shared_ptr<Node> up = parent_.lock(); up; up = up->parent_.lock()) {
        if (up.get() == &ancestor) {
            return true;
        }
    }
    return false;
}

void Node::CollectBounds(const Affine& toFrame, float time, std::string_view excludePrefix,
                         BoxAccumulator& box, NamedPartsBelow namedParts) const {
    if (!excludePrefix.empty() && StartsWithIgnoringCase(name_, excludePrefix)) {
        return;
    }
    for (const Shape& shape : shapes_) {
        for (const Vector3& vertex : shape.vertices) {
            box.Add(toFrame.ApplyToPoint(ToVec3(vertex)));
        }
    }
    for (const std::shared_ptr<Node>& child : children_) {
        if (namedParts == NamedPartsBelow::LeftOut && IsNamedPart(child->name_)) {
            continue;
        }
        child->CollectBounds(toFrame * child->LocalAt(time), time, excludePrefix, box,
                             namedParts);
    }
}

Node& Node::FrameNode(SceneGroup& frame, const char* operation) {
    auto* node = dynamic_cast<Node*>(&frame);
    if (node == nullptr || node->model_.owner_before(model_) || model_.owner_before(node->model_)) {
        throw HostError(kHostErrorInvalidArgument,
                        std::string(operation) + ": the group given belongs to another scene.");
    }
    return *node;
}

Affine Node::ThisToFrame(const Node& frame, float time) const {
    if (&frame == this) {
        return {};
    }
    return InverseOrThrow(frame.WorldAt(time), frame.name_) * WorldAt(time);
}

std::shared_ptr<Model> Node::OwningModel() const {
    std::shared_ptr<Model> model = model_.lock();
    if (!model) {
        throw HostError(kHostErrorFailed, "Group \"" + name_ + "\" no longer has a scene.");
    }
    return model;
}

}  // namespace railwright::host::scene
