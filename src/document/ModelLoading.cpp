// Reading a glTF file into the in-memory scene.
//
// The mapping:
//  - the root group is the scene: the file's default scene, else its first; a file without
//    scenes shows its parentless nodes, in index order. Nodes that the scene does not reach
//    are not groups; they stay in the file as they are.
//  - every node of the scene is a group, in depth-first pre-order, children in their order. Its
//    name is the node's name; a node without one is "Node<index>". Its local transform comes
//    from the node's matrix or translation, rotation and scale.
//  - positions, directions, transforms and keys change from glTF's right-handed axes to the
//    scene's left-handed ones (Handedness.h); saving changes them back.
//  - a node's mesh is one shape of its group: the positions of all its primitives, in the
//    node's frame (a skinned mesh in its bind pose), with their surface (MeshSurface.h). The
//    shape's material holder is named after the mesh ("Mesh<index>" when it has no name) and
//    holds one material per distinct material of the primitives, in order. One glTF material
//    is one material of the scene, shared by every holder that uses it; primitives without a
//    material share one default material.
//  - a material's texture file is the file of its base colour image, the further maps those of
//    its normal, occlusion, emissive and metallic-roughness images. An image file is its URI
//    percent-decoded and resolved against the model's folder (URIs with a scheme are kept as
//    they are). An image inside the file (bufferView or data: URI) has no file of its own: it
//    is named "<model name>_image<index>.<ext>" beside the model until
//    Document::PrepareTextures gives every material files the exporters take (TexturePreparation.h).
//  - alpha mode MASK makes the base colour file the transparency map as well (its alpha is a
//    cut-out); BLEND gives a translucency level of 1. OPAQUE gives neither.
//  - a node with a light of KHR_lights_punctual adds a light to the model's light list at the
//    node's origin, pointing along the node's -Z: a point light is a glow, a spot or
//    directional light an ordinary light, in the light's colour.
//  - animation keys: see Animations.h. Settings and custom fields: see StoredData.h.
#include <algorithm>
#include <array>
#include <cmath>

#include "document/AccessorReader.h"
#include "document/Animations.h"
#include "document/DocumentState.h"
#include "document/Files.h"
#include "document/GltfContainer.h"
#include "document/Handedness.h"
#include "document/MeshSurface.h"
#include "document/TinyGltfReader.h"
#include "document/Uri.h"
#include "document/Validation.h"
#include "support/Utf8Paths.h"

namespace railwright::document {

namespace {

using host::Vector3;
using host::scene::Affine;
using host::scene::MaterialProperties;
using host::scene::Node;
using host::scene::SceneMaterial;
using host::scene::SceneSelection;

// nlohmann's messages start with a tag ("[json.exception.parse_error.101] ") meant for
// programmers.
std::string WithoutExceptionTag(const std::string& message) {
    const size_t end = message.find("] ");
    return message.rfind('[', 0) == 0 && end != std::string::npos ? message.substr(end + 2)
                                                                  : message;
}

std::string Quoted(const std::string& name) {
    return name.empty() ? "" : " \"" + name + "\"";
}

// The name the JSON object gives itself, or the fallback when it has none.
std::string NameOf(const Json& object, const std::string& fallback) {
    const auto name = object.find("name");
    return name != object.end() && name->is_string() ? name->get<std::string>() : fallback;
}

const Json& Element(const Json& root, const char* array, size_t index) {
    return root.at(array).at(index);
}

std::string ImageExtension(const std::string& mimeType, std::string_view bytes) {
    if (mimeType == "image/png" || bytes.substr(0, 4) == "\x89PNG") {
        return ".png";
    }
    if (mimeType == "image/jpeg" || bytes.substr(0, 2) == "\xFF\xD8") {
        return ".jpg";
    }
    if (mimeType == "image/webp") {
        return ".webp";
    }
    if (mimeType == "image/ktx2") {
        return ".ktx2";
    }
    return ".bin";
}

// Builds the scene of a validated model into `state`.
class SceneMapper {
  public:
    SceneMapper(const tinygltf::Model& model, const std::map<int, std::string>& dataUriImages,
                DocumentState& state)
        : model_(model), dataUriImages_(dataUriImages), state_(state) {}

    std::string Map();

  private:
    void NameImages();
    std::string AddGroup(int nodeIndex, Node& parent);
    std::string AddMaterial(int index, SceneSelection& holder);
    int ImageOf(int textureIndex) const;
    std::string AddLight(const Json& node, const Node& group);
    TexCoordTransform TexCoordTransformOf(int materialIndex) const;
    std::string TextureFile(int textureIndex) const;

    const tinygltf::Model& model_;
    const std::map<int, std::string>& dataUriImages_;
    DocumentState& state_;
    std::vector<std::string> imageFiles_;
    std::map<int, std::vector<host::scene::Key>> keys_;
    std::map<int, std::shared_ptr<SceneMaterial>> materials_;  // by glTF index, -1 the default
    size_t leftOut_ = 0;  // primitives of points and lines
};

std::string SceneMapper::Map() {
    const Json& root = state_.json;
    if (std::string fault = ReadModelData(root.at("asset"), state_.data); !fault.empty()) {
        return "the asset: " + fault;
    }
    state_.scene = model_.defaultScene >= 0 ? model_.defaultScene : model_.scenes.empty() ? -1 : 0;
    std::vector<int> roots;
    std::string rootName = "Scene";
    if (state_.scene >= 0) {
        roots = model_.scenes[static_cast<size_t>(state_.scene)].nodes;
        rootName = NameOf(Element(root, "scenes", static_cast<size_t>(state_.scene)), rootName);
    } else {
        std::vector<bool> isChild(model_.nodes.size(), false);
        for (const tinygltf::Node& node : model_.nodes) {
            for (const int child : node.children) {
                isChild[static_cast<size_t>(child)] = true;
            }
        }
        for (size_t i = 0; i < isChild.size(); ++i) {
            if (!isChild[i]) {
                roots.push_back(static_cast<int>(i));
            }
        }
    }

    state_.host = host::scene::Scene::Create(rootName);
    host::scene::Model& scene = *state_.host.model;
    for (const std::string& name : state_.data.groupFields) {
        scene.GroupFields().Add(name);
    }
    for (const std::string& name : state_.data.materialFields) {
        scene.MaterialFields().Add(name);
    }
    const std::shared_ptr<Node>& rootGroup = scene.Root();
    if (state_.scene >= 0) {
        const std::string owner = "scene " + std::to_string(state_.scene) + Quoted(rootName);
        if (std::string fault =
                ReadFieldValues(Element(root, "scenes", static_cast<size_t>(state_.scene)),
                                state_.data.groupFields.size(), rootGroup->CustomFields());
            !fault.empty()) {
            return owner + ": " + fault;
        }
    }
    state_.groups.push_back({rootGroup, -1, rootName, {}, {}, roots});

    if (std::string fault = ReadNodeKeys(model_, keys_); !fault.empty()) {
        return fault;
    }
    NameImages();

    // Depth-first pre-order without recursion: a child is pushed after its later siblings.
    std::vector<std::pair<int, Node*>> pending;
    for (auto it = roots.rbegin(); it != roots.rend(); ++it) {
        pending.emplace_back(*it, rootGroup.get());
    }
    while (!pending.empty()) {
        const auto [nodeIndex, parent] = pending.back();
        pending.pop_back();
        if (std::string fault = AddGroup(nodeIndex, *parent); !fault.empty()) {
            return fault;
        }
        Node* group = state_.groups.back().group.get();
        const std::vector<int>& children = model_.nodes[static_cast<size_t>(nodeIndex)].children;
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            pending.emplace_back(*it, group);
        }
    }
    if (leftOut_ > 0) {
        state_.notices.push_back(std::to_string(leftOut_) +
                                 (leftOut_ == 1 ? " primitive of points or lines was"
                                                : " primitives of points or lines were") +
                                 " left out: a shape holds triangles only.");
    }
    return {};
}

void SceneMapper::NameImages() {
    const std::string stem = support::Utf8FromPath(state_.file.stem());
    for (size_t i = 0; i < model_.images.size(); ++i) {
        const tinygltf::Image& image = model_.images[i];
        const auto data = dataUriImages_.find(static_cast<int>(i));
        ImageSource source;
        if (image.bufferView >= 0) {
            const tinygltf::BufferView& view =
                model_.bufferViews[static_cast<size_t>(image.bufferView)];
            const auto& buffer = model_.buffers[static_cast<size_t>(view.buffer)].data;
            source.bytes.assign(reinterpret_cast<const char*>(buffer.data()) + view.byteOffset,
                                view.byteLength);
        } else if (data != dataUriImages_.end()) {
            source.bytes = data->second;
        } else {
            const std::string& uri = image.uri;
            source.file = IsRelativeReference(uri) ? ResolveReference(state_.folder, uri)
                          : HasScheme(uri)         ? uri
                                                   : PercentDecode(uri);
            source.name = support::Utf8FromPath(support::PathFromUtf8(source.file).stem());
            imageFiles_.push_back(source.file);
            state_.images.push_back(std::move(source));
            continue;
        }
        source.name = image.name.empty()
                          ? stem + "_image" + std::to_string(i)
                          : support::Utf8FromPath(support::PathFromUtf8(image.name).stem());
        // Until its picture is written (Document::PrepareTextures) such an image is named as a
        // file beside the model that does not exist.
        imageFiles_.push_back(support::Utf8FromPath(
            state_.folder / support::PathFromUtf8(stem + "_image" + std::to_string(i) +
                                                  ImageExtension(image.mimeType, source.bytes))));
        state_.images.push_back(std::move(source));
    }
}

std::string SceneMapper::AddGroup(int nodeIndex, Node& parent) {
    const tinygltf::Node& node = model_.nodes[static_cast<size_t>(nodeIndex)];
    const Json& json = Element(state_.json, "nodes", static_cast<size_t>(nodeIndex));
    const std::string name = NameOf(json, "Node" + std::to_string(nodeIndex));
    const std::string owner = "node " + std::to_string(nodeIndex) + Quoted(name);
    if ((!node.translation.empty() && node.translation.size() != 3) ||
        (!node.rotation.empty() && node.rotation.size() != 4) ||
        (!node.scale.empty() && node.scale.size() != 3)) {
        return owner + " has a translation, rotation or scale with the wrong number of values.";
    }
    for (const std::vector<double>* values :
         {&node.matrix, &node.translation, &node.rotation, &node.scale}) {
        for (const double value : *values) {
            if (!std::isfinite(value)) {
                return owner + " has a transform with a number that is not finite.";
            }
        }
    }
    const Affine local = OtherHandedness(NodeLocalTransform(node));
    const std::shared_ptr<Node> group = state_.host.model->AddGroup(name, parent, local);
    if (std::string fault =
            ReadFieldValues(json, state_.data.groupFields.size(), group->CustomFields());
        !fault.empty()) {
        return owner + ": " + fault;
    }
    if (std::string fault = AddLight(json, *group); !fault.empty()) {
        return owner + ": " + fault;
    }
    if (const auto keys = keys_.find(nodeIndex); keys != keys_.end()) {
        for (const host::scene::Key& key : keys->second) {
            group->PutKey(OtherHandedness(key));
        }
    }
    if (node.mesh >= 0) {
        const tinygltf::Mesh& mesh = model_.meshes[static_cast<size_t>(node.mesh)];
        const std::shared_ptr<SceneSelection> holder = state_.host.model->AddMaterialHolder(
            NameOf(Element(state_.json, "meshes", static_cast<size_t>(node.mesh)),
                   "Mesh" + std::to_string(node.mesh)));
        std::vector<int> held;
        std::vector<PrimitiveLook> looks;
        for (const tinygltf::Primitive& primitive : mesh.primitives) {
            auto slot = std::find(held.begin(), held.end(), primitive.material);
            if (slot == held.end()) {
                held.push_back(primitive.material);
                slot = held.end() - 1;
                if (std::string fault = AddMaterial(primitive.material, *holder); !fault.empty()) {
                    return fault;
                }
            }
            looks.push_back({static_cast<int32_t>(slot - held.begin()),
                             TexCoordTransformOf(primitive.material)});
        }
        host::scene::Shape shape{{}, holder};
        if (std::string fault = ReadMeshSurface(model_, node.mesh, looks, shape, leftOut_);
            !fault.empty()) {
            return fault;
        }
        group->AddShape(std::move(shape));
    }
    state_.groups.push_back({group, nodeIndex, name, local, group->Keys(), node.children});
    return {};
}

std::string SceneMapper::AddLight(const Json& node, const Node& group) {
    const auto extensions = node.find("extensions");
    if (extensions == node.end() || !extensions->is_object()) {
        return {};
    }
    const auto lightOf = extensions->find("KHR_lights_punctual");
    if (lightOf == extensions->end()) {
        return {};
    }
    const auto index = lightOf->is_object() ? lightOf->find("light") : lightOf->end();
    if (index == lightOf->end() || !index->is_number_unsigned() ||
        index->get<uint64_t>() >= model_.lights.size()) {
        return "its light is not one of the file's " + std::to_string(model_.lights.size()) +
               " lights.";
    }
    const tinygltf::Light& light = model_.lights[index->get<size_t>()];
    host::Light added;
    added.kind = light.type == "point" ? host::LightKind::Glow : host::LightKind::Ordinary;
    if (light.color.size() == 3) {
        added.red = static_cast<float>(light.color[0]);
        added.green = static_cast<float>(light.color[1]);
        added.blue = static_cast<float>(light.color[2]);
    }
    const Affine world = group.WorldAt(host::kCurrentPose);
    added.position = host::scene::ToVector3(world.translation);
    const host::scene::Vec3 direction = world.linear * host::scene::Vec3{0, 0, -1};
    const double length = host::scene::Length(direction);
    added.direction = length > 0 && std::isfinite(length)
                          ? host::scene::ToVector3(direction * (1 / length))
                          : host::Vector3{0, 0, -1};
    state_.host.model->AddLight(added);
    return {};
}

// The KHR_texture_transform of the material's base colour texture: offset, then rotation
// (counter-clockwise in the image), then scale, applied to the coordinates in reverse order.
TexCoordTransform SceneMapper::TexCoordTransformOf(int materialIndex) const {
    if (materialIndex < 0) {
        return {};
    }
    const Json* turn = &Element(state_.json, "materials", static_cast<size_t>(materialIndex));
    for (const char* key :
         {"pbrMetallicRoughness", "baseColorTexture", "extensions", "KHR_texture_transform"}) {
        if (!turn->is_object() || !turn->contains(key)) {
            return {};
        }
        turn = &(*turn)[key];
    }
    const auto pair = [turn](const char* key, double fallback) {
        const auto found = turn->find(key);
        std::array<double, 2> values = {fallback, fallback};
        if (found != turn->end() && found->is_array() && found->size() == 2 &&
            (*found)[0].is_number() && (*found)[1].is_number()) {
            values = {(*found)[0].get<double>(), (*found)[1].get<double>()};
        }
        return values;
    };
    const auto [offsetU, offsetV] = pair("offset", 0.0);
    const auto [scaleU, scaleV] = pair("scale", 1.0);
    const auto rotation = turn->find("rotation");
    const double angle =
        rotation != turn->end() && rotation->is_number() ? rotation->get<double>() : 0.0;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return {static_cast<float>(cosine * scaleU), static_cast<float>(sine * scaleV),
            static_cast<float>(-sine * scaleU),  static_cast<float>(cosine * scaleV),
            static_cast<float>(offsetU),         static_cast<float>(offsetV)};
}

int SceneMapper::ImageOf(int textureIndex) const {
    return textureIndex < 0 ? -1 : model_.textures[static_cast<size_t>(textureIndex)].source;
}

std::string SceneMapper::TextureFile(int textureIndex) const {
    const int image = ImageOf(textureIndex);
    return image < 0 ? std::string() : imageFiles_[static_cast<size_t>(image)];
}

std::string SceneMapper::AddMaterial(int index, SceneSelection& holder) {
    if (const auto known = materials_.find(index); known != materials_.end()) {
        holder.AddMaterial(known->second);
        return {};
    }
    MaterialProperties properties;
    FieldValues fields = state_.data.defaultMaterialFields;
    const std::string stem = support::Utf8FromPath(state_.file.stem());
    std::string name = stem + "_material";
    MaterialImages images;
    if (index >= 0) {
        const tinygltf::Material& material = model_.materials[static_cast<size_t>(index)];
        name = material.name.empty() ? stem + "_material" + std::to_string(index) : material.name;
        const tinygltf::PbrMetallicRoughness& pbr = material.pbrMetallicRoughness;
        images.baseColour = ImageOf(pbr.baseColorTexture.index);
        if (pbr.baseColorFactor.size() == 4) {
            for (size_t c = 0; c < 4; ++c) {
                images.baseColourFactor[c] =
                    static_cast<float>(std::clamp(pbr.baseColorFactor[c], 0.0, 1.0));
            }
        }
        images.normal = ImageOf(material.normalTexture.index);
        images.occlusion = ImageOf(material.occlusionTexture.index);
        images.emissive = ImageOf(material.emissiveTexture.index);
        images.metallicRoughness = ImageOf(pbr.metallicRoughnessTexture.index);
        properties.textureFile = TextureFile(material.pbrMetallicRoughness.baseColorTexture.index);
        if (material.alphaMode == "MASK") {
            properties.transparencyMap = properties.textureFile;
        } else if (material.alphaMode == "BLEND") {
            properties.translucencyLevel = 1;
        }
        properties.normalMap = TextureFile(material.normalTexture.index);
        properties.occlusionMap = TextureFile(material.occlusionTexture.index);
        properties.emissiveMap = TextureFile(material.emissiveTexture.index);
        properties.metallicRoughnessMap =
            TextureFile(material.pbrMetallicRoughness.metallicRoughnessTexture.index);
        if (std::string fault =
                ReadFieldValues(Element(state_.json, "materials", static_cast<size_t>(index)),
                                state_.data.materialFields.size(), fields);
            !fault.empty()) {
            return "material " + std::to_string(index) + Quoted(material.name) + ": " + fault;
        }
    }
    std::shared_ptr<SceneMaterial> material = holder.AddMaterial(properties);
    material->CustomFields() = fields;
    materials_[index] = material;
    state_.materials.push_back({material, index, name, images});
    return {};
}

}  // namespace

std::string LoadState(const std::filesystem::path& file, DocumentState& state) {
    std::error_code error;
    state.file = std::filesystem::absolute(file, error);
    if (error) {
        return "its path cannot be made absolute.";
    }
    state.folder = state.file.parent_path();
    if (!std::filesystem::exists(state.file, error)) {
        return "there is no such file.";
    }
    if (!std::filesystem::is_regular_file(state.file, error)) {
        return "it is not a file.";
    }
    const std::optional<std::string> bytes = ReadWholeFile(state.file);
    if (!bytes) {
        return "it cannot be read.";
    }
    std::string_view fileText = *bytes;
    std::string_view jsonText = *bytes;
    if (LooksLikeGlb(*bytes)) {
        state.form = FileForm::Binary;
        GlbChunks chunks;
        if (std::string fault = SplitGlb(*bytes, chunks); !fault.empty()) {
            return fault;
        }
        fileText = chunks.container;
        jsonText = chunks.json;
        // Padding is spaces; some writers pad with zeros, which no JSON parser takes.
        while (!jsonText.empty() && jsonText.back() == '\0') {
            jsonText.remove_suffix(1);
        }
        if (chunks.bin) {
            state.bin = std::string(*chunks.bin);
        }
        state.otherChunks = std::string(chunks.otherChunks);
    }
    if (std::string fault = JsonNestingFault(jsonText); !fault.empty()) {
        return fault;
    }
    try {
        state.json = Json::parse(jsonText);
    } catch (const Json::exception& exception) {
        return "its JSON cannot be read: " + WithoutExceptionTag(exception.what());
    }
    if (!state.json.is_object()) {
        return "its JSON is not an object.";
    }

    TinyGltfRead read =
        ReadWithTinyGltf(fileText, state.form == FileForm::Binary, state.json, state.folder);
    if (!read.error.empty()) {
        return read.error;
    }
    if (std::string fault = ValidateModel(read.model); !fault.empty()) {
        return fault;
    }
    try {
        return SceneMapper(read.model, read.dataUriImages, state).Map();
    } catch (const Json::exception& exception) {
        return std::string("its JSON does not match what was read from it: ") + exception.what();
    }
}

}  // namespace railwright::document
