#include "document/Animations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>

#include "document/AccessorReader.h"
#include "document/StoredData.h"

namespace railwright::document {

namespace {

using host::scene::Affine;
using host::scene::Key;
using host::scene::Quaternion;
using host::scene::Vec3;

enum class Interpolation { Step, Linear, CubicSpline };

// One animated property of a node: values of `width` numbers at strictly increasing times.
struct Track {
    std::vector<float> times;
    std::vector<float> values;
    size_t width = 0;
    Interpolation interpolation = Interpolation::Linear;
};

struct NodeTracks {
    std::optional<Track> translation;
    std::optional<Track> rotation;
};

Quaternion Normalized(Quaternion q) {
    const double norm = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    return norm > 0 ? Quaternion{q.x / norm, q.y / norm, q.z / norm, q.w / norm} : Quaternion{};
}

Quaternion Slerp(Quaternion a, Quaternion b, double u) {
    double cosine = a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
    if (cosine < 0) {  // the shorter way round
        b = {-b.x, -b.y, -b.z, -b.w};
        cosine = -cosine;
    }
    double wa = 1 - u;
    double wb = u;
    if (cosine < 0.9995) {
        const double angle = std::acos(cosine);
        wa = std::sin((1 - u) * angle) / std::sin(angle);
        wb = std::sin(u * angle) / std::sin(angle);
    }
    return Normalized(
        {wa * a.x + wb * b.x, wa * a.y + wb * b.y, wa * a.z + wb * b.z, wa * a.w + wb * b.w});
}

// The track's value at `time`: held before the first and after the last time.
std::vector<double> Sample(const Track& track, float time) {
    const auto value = [&track](size_t i) {
        return std::vector<double>(
            track.values.begin() + static_cast<std::ptrdiff_t>(i * track.width),
            track.values.begin() + static_cast<std::ptrdiff_t>((i + 1) * track.width));
    };
    const auto after = std::upper_bound(track.times.begin(), track.times.end(), time);
    if (after == track.times.begin()) {
        return value(0);
    }
    if (after == track.times.end()) {
        return value(track.times.size() - 1);
    }
    const auto next = static_cast<size_t>(after - track.times.begin());
    const size_t previous = next - 1;
    if (track.interpolation == Interpolation::Step || track.times[previous] == time) {
        return value(previous);
    }
    const double u = (time - track.times[previous]) / (track.times[next] - track.times[previous]);
    const std::vector<double> a = value(previous);
    const std::vector<double> b = value(next);
    if (track.width == 4) {
        const Quaternion q = Slerp({a[0], a[1], a[2], a[3]}, {b[0], b[1], b[2], b[3]}, u);
        return {q.x, q.y, q.z, q.w};
    }
    std::vector<double> mixed(a.size());
    for (size_t i = 0; i < a.size(); ++i) {
        mixed[i] = a[i] + (b[i] - a[i]) * u;
    }
    return mixed;
}

std::string ReadTrack(const tinygltf::Model& model, const tinygltf::AnimationSampler& sampler,
                      size_t width, Track& track) {
    if (sampler.interpolation == "STEP") {
        track.interpolation = Interpolation::Step;
    } else if (sampler.interpolation == "CUBICSPLINE") {
        track.interpolation = Interpolation::CubicSpline;
    } else if (sampler.interpolation == "LINEAR") {
        track.interpolation = Interpolation::Linear;
    } else {
        return "has the unknown interpolation \"" + sampler.interpolation + "\".";
    }
    if (std::string fault =
            ReadAccessor(model, sampler.input, 1, ComponentRule::FloatOnly, track.times);
        !fault.empty()) {
        return "has times that cannot be used: " + fault;
    }
    for (size_t i = 1; i < track.times.size(); ++i) {
        if (!(track.times[i - 1] < track.times[i])) {
            return "has times that do not increase.";
        }
    }
    const ComponentRule rule =
        width == 4 ? ComponentRule::FloatOrNormalized : ComponentRule::FloatOnly;
    std::vector<float> values;
    if (std::string fault =
            ReadAccessor(model, sampler.output, static_cast<int>(width), rule, values);
        !fault.empty()) {
        return "has values that cannot be used: " + fault;
    }
    const size_t perTime = track.interpolation == Interpolation::CubicSpline ? 3 : 1;
    if (values.size() != track.times.size() * width * perTime) {
        return "has " + std::to_string(values.size() / width) + " values for " +
               std::to_string(track.times.size()) + " times.";
    }
    if (perTime == 3) {
        // In-tangent, value, out-tangent per time: the value is the middle one.
        for (size_t i = 0; i < track.times.size(); ++i) {
            track.values.insert(track.values.end(),
                                values.begin() + static_cast<std::ptrdiff_t>((3 * i + 1) * width),
                                values.begin() + static_cast<std::ptrdiff_t>((3 * i + 2) * width));
        }
    } else {
        track.values = std::move(values);
    }
    track.width = width;
    return {};
}

void AppendFloat(std::string& bytes, double value) {
    const auto single = static_cast<float>(value);
    char raw[sizeof single];
    std::memcpy(raw, &single, sizeof single);
    bytes.append(raw, sizeof raw);
}

// The node a channel targets: a whole number, whether read from a file (unsigned) or written
// here (signed).
std::optional<int> TargetNode(const Json& channel) {
    const auto target = channel.find("target");
    if (target == channel.end() || !target->is_object()) {
        return std::nullopt;
    }
    const auto node = target->find("node");
    if (node == target->end() || !node->is_number_integer() || node->get<int64_t>() < 0 ||
        node->get<int64_t>() > INT32_MAX) {
        return std::nullopt;
    }
    return node->get<int>();
}

bool TargetsMovedNode(const Json& channel, const std::map<int, std::vector<Key>>& keys) {
    const std::optional<int> node = TargetNode(channel);
    if (!node) {
        return false;
    }
    const Json& target = channel.at("target");
    const auto path = target.find("path");
    if (path == target.end() || !path->is_string()) {
        return false;
    }
    const std::string property = path->get<std::string>();
    return (property == "translation" || property == "rotation") && keys.count(*node) > 0;
}

// Drops the moved nodes' translation and rotation channels, then the samplers nobody uses and
// the animations left without channels.
void RemoveChannels(Json& root, const std::map<int, std::vector<Key>>& keys) {
    const auto animations = root.find("animations");
    if (animations == root.end() || !animations->is_array()) {
        return;
    }
    Json kept = Json::array();
    for (Json& animation : *animations) {
        if (!animation.is_object() || !animation.contains("channels") ||
            !animation["channels"].is_array() || !animation.contains("samplers") ||
            !animation["samplers"].is_array()) {
            kept.push_back(std::move(animation));
            continue;
        }
        Json channels = Json::array();
        for (Json& channel : animation["channels"]) {
            if (!TargetsMovedNode(channel, keys)) {
                channels.push_back(std::move(channel));
            }
        }
        if (channels.empty()) {
            continue;
        }
        const Json& samplers = animation["samplers"];
        std::vector<int> newIndex(samplers.size(), -1);
        for (const Json& channel : channels) {
            // Loading checked every sampler index against the same JSON.
            newIndex.at(channel.at("sampler").get<size_t>()) = 0;
        }
        Json keptSamplers = Json::array();
        for (size_t i = 0; i < samplers.size(); ++i) {
            if (newIndex[i] == 0) {
                newIndex[i] = static_cast<int>(keptSamplers.size());
                keptSamplers.push_back(samplers[i]);
            }
        }
        for (Json& channel : channels) {
            channel["sampler"] = newIndex[channel.at("sampler").get<size_t>()];
        }
        animation["channels"] = std::move(channels);
        animation["samplers"] = std::move(keptSamplers);
        kept.push_back(std::move(animation));
    }
    if (kept.empty()) {
        root.erase("animations");
    } else {
        *animations = std::move(kept);
    }
}

int AddAccessor(Json& root, int bufferView, size_t byteOffset, size_t count, const char* type) {
    Json& accessors = root["accessors"];
    if (!accessors.is_array()) {
        accessors = Json::array();
    }
    Json accessor = Json::object();
    accessor["bufferView"] = bufferView;
    accessor["byteOffset"] = byteOffset;
    accessor["componentType"] = TINYGLTF_COMPONENT_TYPE_FLOAT;
    accessor["count"] = count;
    accessor["type"] = type;
    accessors.push_back(std::move(accessor));
    return static_cast<int>(accessors.size() - 1);
}

}  // namespace

Affine NodeLocalTransform(const tinygltf::Node& node) {
    if (node.matrix.size() == 16) {
        std::array<double, 16> values{};
        std::copy(node.matrix.begin(), node.matrix.end(), values.begin());
        return Affine::FromColumnMajor(values);
    }
    host::scene::Trs trs;
    if (node.translation.size() == 3) {
        trs.translation = {node.translation[0], node.translation[1], node.translation[2]};
    }
    if (node.rotation.size() == 4) {
        trs.rotation = {node.rotation[0], node.rotation[1], node.rotation[2], node.rotation[3]};
    }
    if (node.scale.size() == 3) {
        trs.scale = {node.scale[0], node.scale[1], node.scale[2]};
    }
    return Affine::FromTrs(trs);
}

std::string ReadNodeKeys(const tinygltf::Model& model, std::map<int, std::vector<Key>>& keys) {
    std::map<int, NodeTracks> tracks;
    for (size_t a = 0; a < model.animations.size(); ++a) {
        const tinygltf::Animation& animation = model.animations[a];
        for (size_t c = 0; c < animation.channels.size(); ++c) {
            const tinygltf::AnimationChannel& channel = animation.channels[c];
            const bool translation = channel.target_path == "translation";
            if (channel.target_node < 0 || (!translation && channel.target_path != "rotation")) {
                continue;
            }
            std::optional<Track>& slot = translation ? tracks[channel.target_node].translation
                                                     : tracks[channel.target_node].rotation;
            if (slot) {
                continue;
            }
            Track track;
            const auto& sampler = animation.samplers[static_cast<size_t>(channel.sampler)];
            if (std::string fault = ReadTrack(model, sampler, translation ? 3 : 4, track);
                !fault.empty()) {
                return "animation " + std::to_string(a) + " channel " + std::to_string(c) + " " +
                       fault;
            }
            slot = std::move(track);
        }
    }
    for (const auto& [node, nodeTracks] : tracks) {
        const host::scene::Trs rest =
            NodeLocalTransform(model.nodes[static_cast<size_t>(node)]).Decompose();
        std::vector<float> times;
        for (const std::optional<Track>* track : {&nodeTracks.translation, &nodeTracks.rotation}) {
            if (*track) {
                times.insert(times.end(), (*track)->times.begin(), (*track)->times.end());
            }
        }
        std::sort(times.begin(), times.end());
        times.erase(std::unique(times.begin(), times.end()), times.end());
        std::vector<Key>& nodeKeys = keys[node];
        for (const float time : times) {
            Vec3 position = rest.translation;
            Quaternion rotation = rest.rotation;
            if (nodeTracks.translation) {
                const std::vector<double> t = Sample(*nodeTracks.translation, time);
                position = {t[0], t[1], t[2]};
            }
            if (nodeTracks.rotation) {
                const std::vector<double> r = Sample(*nodeTracks.rotation, time);
                rotation = {r[0], r[1], r[2], r[3]};
            }
            nodeKeys.push_back({time, host::scene::ToVector3(position),
                                host::scene::ToVector3(host::scene::ToEulerXyz(
                                    host::scene::RotationMatrix(rotation)))});
        }
    }
    return {};
}

std::set<int> AnimatedNodes(const Json& root) {
    std::set<int> nodes;
    const auto animations = root.find("animations");
    if (animations == root.end() || !animations->is_array()) {
        return nodes;
    }
    for (const Json& animation : *animations) {
        const auto channels = animation.find("channels");
        if (!animation.is_object() || channels == animation.end() || !channels->is_array()) {
            continue;
        }
        for (const Json& channel : *channels) {
            if (const std::optional<int> node = TargetNode(channel)) {
                nodes.insert(*node);
            }
        }
    }
    return nodes;
}

std::string WriteNodeKeys(Json& root, const std::map<int, std::vector<Key>>& keys,
                          const std::function<int(std::string_view bytes)>& addBufferView) {
    for (const auto& [node, nodeKeys] : keys) {
        for (const Key& key : nodeKeys) {
            if (!std::isfinite(key.time) || key.time < 0) {
                return "node " + std::to_string(node) + " has an animation key at time " +
                       std::to_string(key.time) + ", which a glTF animation cannot hold.";
            }
        }
    }
    RemoveChannels(root, keys);

    // All new data in one bufferView: per node its times, translations, then rotations.
    struct Layout {
        int node;
        size_t count;
        size_t times;
        size_t translations;
        size_t rotations;
    };
    std::vector<Layout> layouts;
    std::string bytes;
    for (const auto& [node, nodeKeys] : keys) {
        if (nodeKeys.empty()) {
            continue;
        }
        Layout layout{node, nodeKeys.size(), bytes.size(), 0, 0};
        for (const Key& key : nodeKeys) {
            AppendFloat(bytes, key.time);
        }
        layout.translations = bytes.size();
        for (const Key& key : nodeKeys) {
            AppendFloat(bytes, key.position.x);
            AppendFloat(bytes, key.position.y);
            AppendFloat(bytes, key.position.z);
        }
        layout.rotations = bytes.size();
        Quaternion previous;
        for (const Key& key : nodeKeys) {
            Quaternion q = host::scene::ToQuaternion(
                host::scene::EulerXyzMatrix(host::scene::ToVec3(key.rotation)));
            // Neighbouring keys on the same side of the quaternion sphere, so that every
            // interpolation takes the short way that the keys mean.
            if (q.x * previous.x + q.y * previous.y + q.z * previous.z + q.w * previous.w < 0) {
                q = {-q.x, -q.y, -q.z, -q.w};
            }
            previous = q;
            for (const double component : {q.x, q.y, q.z, q.w}) {
                AppendFloat(bytes, component);
            }
        }
        layouts.push_back(layout);
    }
    if (layouts.empty()) {
        return {};
    }

    const int bufferView = addBufferView(bytes);
    Json& animations = root["animations"];
    if (!animations.is_array()) {
        animations = Json::array();
    }
    Json* ours = nullptr;
    for (Json& animation : animations) {
        if (animation.is_object() && animation.value("name", Json()) == kAnimationName &&
            animation.contains("channels") && animation["channels"].is_array() &&
            animation.contains("samplers") && animation["samplers"].is_array()) {
            ours = &animation;
            break;
        }
    }
    if (ours == nullptr) {
        animations.push_back(
            {{"name", kAnimationName}, {"channels", Json::array()}, {"samplers", Json::array()}});
        ours = &animations.back();
    }
    for (const Layout& layout : layouts) {
        const int times = AddAccessor(root, bufferView, layout.times, layout.count, "SCALAR");
        const float first = keys.at(layout.node).front().time;
        const float last = keys.at(layout.node).back().time;
        root["accessors"][static_cast<size_t>(times)]["min"] = {ShortestDecimal(first)};
        root["accessors"][static_cast<size_t>(times)]["max"] = {ShortestDecimal(last)};
        const int translations =
            AddAccessor(root, bufferView, layout.translations, layout.count, "VEC3");
        const int rotations = AddAccessor(root, bufferView, layout.rotations, layout.count, "VEC4");
        for (const auto& [path, output] :
             {std::pair{"translation", translations}, std::pair{"rotation", rotations}}) {
            Json& samplers = (*ours)["samplers"];
            samplers.push_back({{"input", times}, {"output", output}, {"interpolation", "LINEAR"}});
            (*ours)["channels"].push_back({{"sampler", samplers.size() - 1},
                                           {"target", {{"node", layout.node}, {"path", path}}}});
        }
    }
    return {};
}

}  // namespace railwright::document
