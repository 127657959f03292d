// Saving: the loaded JSON with the scene's changes applied, and nothing else touched.
//
// What the system can change is what is written: node (and scene) names, the hierarchy
// (children lists and the scene's roots), the transforms of moved groups, animation keys,
// custom field values and names, and the settings values. Transforms and keys go back from the
// scene's axes into glTF's (Handedness.h). Everything else of the user's file
// (extensions, other extras, cameras, skins, morph targets, accessors, the order of keys) stays
// as it was read. Keys on the root group have no node to live on and are not kept.
#include <cmath>
#include <unordered_map>

#include "document/Animations.h"
#include "document/DocumentState.h"
#include "document/Handedness.h"
#include "document/Uri.h"

namespace railwright::document {

namespace {

using host::scene::Affine;
using host::scene::Node;

bool Near(double a, double b) {
    return std::abs(a - b) <= 1e-9 * std::max(1.0, std::abs(a));
}

bool NearlyEqual(const Affine& a, const Affine& b) {
    for (size_t i = 0; i < a.linear.e.size(); ++i) {
        if (!Near(a.linear.e[i], b.linear.e[i])) {
            return false;
        }
    }
    return Near(a.translation.x, b.translation.x) && Near(a.translation.y, b.translation.y) &&
           Near(a.translation.z, b.translation.z);
}

// Writes a node's transform: as translation, rotation and scale when it has no shear and
// either must (an animated node) or was given that way; as a matrix otherwise. Defaults are
// left out.
std::string WriteTransform(Json& node, const Affine& local, bool animated) {
    const host::scene::Trs trs = local.Decompose();
    const bool representable = NearlyEqual(Affine::FromTrs(trs), local);
    if (animated && !representable) {
        return "its new transform is sheared, which an animated glTF node cannot hold.";
    }
    const bool hadMatrix = node.contains("matrix");
    node.erase("matrix");
    node.erase("translation");
    node.erase("rotation");
    node.erase("scale");
    if (!animated && (hadMatrix || !representable)) {
        if (local != Affine{}) {
            const std::array<double, 16> values = local.ToColumnMajor();
            node["matrix"] = Json(values);
        }
        return {};
    }
    if (trs.translation != host::scene::Vec3{}) {
        node["translation"] = {trs.translation.x, trs.translation.y, trs.translation.z};
    }
    if (trs.rotation != host::scene::Quaternion{}) {
        node["rotation"] = {trs.rotation.x, trs.rotation.y, trs.rotation.z, trs.rotation.w};
    }
    if (trs.scale != host::scene::Vec3{1, 1, 1}) {
        node["scale"] = {trs.scale.x, trs.scale.y, trs.scale.z};
    }
    return {};
}

void SetOrErase(Json& object, const char* key, const std::vector<int>& list) {
    if (list.empty()) {
        object.erase(key);
    } else {
        object[key] = list;
    }
}

class ChangeWriter {
  public:
    ChangeWriter(const DocumentState& state, Json& json, std::optional<std::string>& bin)
        : state_(state), json_(json), bin_(bin) {}

    std::string Write();

  private:
    std::string WriteGroups();
    std::string WriteKeysAndTransforms();
    std::string WriteMaterialsAndModelData();
    Json& SceneJson();
    int AddBufferView(std::string_view bytes);
    std::vector<int> ChildNodes(const Node& group) const;

    const DocumentState& state_;
    Json& json_;
    std::optional<std::string>& bin_;
    std::unordered_map<const Node*, int> nodeOf_;
    int createdScene_ = -1;
};

std::string ChangeWriter::Write() {
    json_ = state_.json;
    bin_ = state_.bin;
    for (const GroupRecord& record : state_.groups) {
        nodeOf_[record.group.get()] = record.node;
    }
    for (auto step : {&ChangeWriter::WriteGroups, &ChangeWriter::WriteKeysAndTransforms,
                      &ChangeWriter::WriteMaterialsAndModelData}) {
        if (std::string fault = (this->*step)(); !fault.empty()) {
            return fault;
        }
    }
    return {};
}

std::vector<int> ChangeWriter::ChildNodes(const Node& group) const {
    std::vector<int> nodes;
    for (const std::shared_ptr<Node>& child : group.Children()) {
        nodes.push_back(nodeOf_.at(child.get()));
    }
    return nodes;
}

// The scene of the root group; a file without scenes gets one, listing its top nodes.
Json& ChangeWriter::SceneJson() {
    if (state_.scene >= 0) {
        return json_["scenes"][static_cast<size_t>(state_.scene)];
    }
    if (createdScene_ < 0) {
        Json& scenes = json_["scenes"];
        if (!scenes.is_array()) {
            scenes = Json::array();
        }
        Json scene = Json::object();
        SetOrErase(scene, "nodes", state_.groups.front().children);
        scenes.push_back(std::move(scene));
        createdScene_ = static_cast<int>(scenes.size() - 1);
        json_["scene"] = createdScene_;
    }
    return json_["scenes"][static_cast<size_t>(createdScene_)];
}

std::string ChangeWriter::WriteGroups() {
    const size_t fieldCount = state_.host.model->GroupFields().Names().size();
    for (const GroupRecord& record : state_.groups) {
        const Node& group = *record.group;
        const bool isRoot = record.node < 0;
        const std::vector<int> children = ChildNodes(group);
        const bool anyField = std::any_of(group.CustomFields().begin(), group.CustomFields().end(),
                                          [](const std::string& value) { return !value.empty(); });
        if (isRoot && state_.scene < 0 && group.NameValue() == record.name &&
            children == record.children && !anyField) {
            continue;  // nothing to say, and no scene to say it in
        }
        Json& object = isRoot ? SceneJson() : json_["nodes"][static_cast<size_t>(record.node)];
        if (group.NameValue() != record.name) {
            object["name"] = group.NameValue();
        }
        if (children != record.children) {
            SetOrErase(object, isRoot ? "nodes" : "children", children);
        }
        if (std::string fault = WriteFieldValues(object, group.CustomFields(), fieldCount);
            !fault.empty()) {
            return (isRoot ? "the scene" : "node " + std::to_string(record.node)) + ": " + fault;
        }
    }
    return {};
}

std::string ChangeWriter::WriteKeysAndTransforms() {
    std::map<int, std::vector<host::scene::Key>> changedKeys;
    for (const GroupRecord& record : state_.groups) {
        if (record.node >= 0 && record.group->Keys() != record.keys) {
            std::vector<host::scene::Key>& keys = changedKeys[record.node];
            for (const host::scene::Key& key : record.group->Keys()) {
                keys.push_back(OtherHandedness(key));
            }
        }
    }
    if (!changedKeys.empty()) {
        if (std::string fault =
                WriteNodeKeys(json_, changedKeys,
                              [this](std::string_view bytes) { return AddBufferView(bytes); });
            !fault.empty()) {
            return fault;
        }
    }
    const std::set<int> animated = AnimatedNodes(json_);
    for (const GroupRecord& record : state_.groups) {
        if (record.node < 0) {
            continue;
        }
        Json& node = json_["nodes"][static_cast<size_t>(record.node)];
        const bool isAnimated = animated.count(record.node) > 0;
        const bool newlyAnimated = changedKeys.count(record.node) > 0 && isAnimated;
        if (record.group->LocalTransform() != record.local ||
            (newlyAnimated && node.contains("matrix"))) {
            if (std::string fault =
                    WriteTransform(node, OtherHandedness(record.group->LocalTransform()),
                                   isAnimated);
                !fault.empty()) {
                return "node " + std::to_string(record.node) + " \"" + record.group->NameValue() +
                       "\": " + fault;
            }
        }
    }
    return {};
}

// New data goes into the BIN chunk of a .glb file, and into a buffer of its own, given as a
// data: URI, in a .gltf file: no file beside the model is written or overwritten.
int ChangeWriter::AddBufferView(std::string_view bytes) {
    Json& buffers = json_["buffers"];
    if (!buffers.is_array()) {
        buffers = Json::array();
    }
    size_t buffer = 0;
    size_t offset = 0;
    const bool binChunk = state_.form == FileForm::Binary &&
                          (buffers.empty() || (!buffers[0].contains("uri") && bin_.has_value()));
    if (binChunk) {
        if (buffers.empty()) {
            buffers.push_back({{"byteLength", 0}});
            bin_ = std::string();
        }
        std::string& data = *bin_;
        data.resize(buffers[0]["byteLength"].get<size_t>());  // drop the chunk's padding
        data.append((4 - data.size() % 4) % 4, '\0');
        offset = data.size();
        data += bytes;
        buffers[0]["byteLength"] = data.size();
    } else {
        buffers.push_back({{"byteLength", bytes.size()},
                           {"uri", "data:application/octet-stream;base64," + Base64Encode(bytes)}});
        buffer = buffers.size() - 1;
    }
    Json& views = json_["bufferViews"];
    if (!views.is_array()) {
        views = Json::array();
    }
    views.push_back({{"buffer", buffer}, {"byteOffset", offset}, {"byteLength", bytes.size()}});
    return static_cast<int>(views.size() - 1);
}

std::string ChangeWriter::WriteMaterialsAndModelData() {
    const host::scene::Model& scene = *state_.host.model;
    ModelData data = state_.data;
    data.groupFields = scene.GroupFields().Names();
    data.materialFields = scene.MaterialFields().Names();
    const size_t fieldCount = data.materialFields.size();
    for (const MaterialRecord& record : state_.materials) {
        if (record.index < 0) {
            data.defaultMaterialFields = record.material->CustomFields();
            continue;
        }
        Json& material = json_["materials"][static_cast<size_t>(record.index)];
        if (std::string fault =
                WriteFieldValues(material, record.material->CustomFields(), fieldCount);
            !fault.empty()) {
            return "material " + std::to_string(record.index) + ": " + fault;
        }
    }
    if (std::string fault = WriteModelData(json_["asset"], data); !fault.empty()) {
        return "the asset: " + fault;
    }
    return {};
}

}  // namespace

std::string ApplyChanges(const DocumentState& state, Json& json, std::optional<std::string>& bin) {
    try {
        return ChangeWriter(state, json, bin).Write();
    } catch (const Json::exception& exception) {
        // Loading read every object that is written here; a JSON error is a fault of ours.
        return std::string("the file's JSON could not be updated: ") + exception.what();
    }
}

}  // namespace railwright::document
