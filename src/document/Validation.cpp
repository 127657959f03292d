#include "document/Validation.h"

#include <limits>
#include <optional>
#include <vector>

namespace railwright::document {

namespace {

using Model = tinygltf::Model;

std::string Quoted(const std::string& name) {
    return name.empty() ? "" : " \"" + name + "\"";
}

// Overflow-checked size arithmetic: nothing when the result does not fit.
std::optional<size_t> Add(std::optional<size_t> a, size_t b) {
    if (!a || *a > std::numeric_limits<size_t>::max() - b) {
        return std::nullopt;
    }
    return *a + b;
}

std::optional<size_t> Multiply(size_t a, size_t b) {
    if (a != 0 && b > std::numeric_limits<size_t>::max() / a) {
        return std::nullopt;
    }
    return a * b;
}

bool Fits(std::optional<size_t> end, size_t limit) {
    return end && *end <= limit;
}

// Whether `index` names one of `count` objects; -1 (absent) only when `optional`.
bool Names(int index, size_t count, bool optional) {
    if (index == -1) {
        return optional;
    }
    return index >= 0 && static_cast<size_t>(index) < count;
}

std::string Missing(const std::string& owner, const char* kind, int index) {
    return owner + " names " + kind + " " + std::to_string(index) + ", which does not exist.";
}

size_t ComponentSize(int componentType) {
    switch (componentType) {
        case TINYGLTF_COMPONENT_TYPE_BYTE:
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return 1;
        case TINYGLTF_COMPONENT_TYPE_SHORT:
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
            return 2;
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
        case TINYGLTF_COMPONENT_TYPE_FLOAT:
            return 4;
        default:
            return 0;  // 5124 (signed int) and anything else are not glTF 2.0 component types
    }
}

std::string CheckBufferViews(const Model& model) {
    for (size_t i = 0; i < model.bufferViews.size(); ++i) {
        const tinygltf::BufferView& view = model.bufferViews[i];
        const std::string owner = "bufferView " + std::to_string(i);
        if (!Names(view.buffer, model.buffers.size(), false)) {
            return Missing(owner, "buffer", view.buffer);
        }
        const size_t bufferSize = model.buffers[static_cast<size_t>(view.buffer)].data.size();
        if (view.byteLength == 0 || !Fits(Add(view.byteOffset, view.byteLength), bufferSize)) {
            return owner + " claims " + std::to_string(view.byteLength) + " bytes from byte " +
                   std::to_string(view.byteOffset) + " of buffer " + std::to_string(view.buffer) +
                   ", which holds " + std::to_string(bufferSize) + ".";
        }
        if (view.byteStride != 0 &&
            (view.byteStride < 4 || view.byteStride > 252 || view.byteStride % 4 != 0)) {
            return owner + " has a byteStride of " + std::to_string(view.byteStride) +
                   " (it must be a multiple of 4 from 4 to 252).";
        }
    }
    return {};
}

std::string CheckSparse(const Model& model, const tinygltf::Accessor& accessor,
                        const std::string& owner, size_t elementSize) {
    const auto& sparse = accessor.sparse;
    if (sparse.count < 1 || static_cast<size_t>(sparse.count) > accessor.count) {
        return owner + " has a sparse count of " + std::to_string(sparse.count) + " for its " +
               std::to_string(accessor.count) + " elements.";
    }
    const auto count = static_cast<size_t>(sparse.count);
    struct Part {
        const char* what;
        int view;
        int offset;
        size_t size;
    };
    const size_t indexSize = ComponentSize(sparse.indices.componentType);
    if (sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_BYTE ||
        sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_SHORT ||
        sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT || indexSize == 0) {
        return owner + " has sparse indices of component type " +
               std::to_string(sparse.indices.componentType) + " (only unsigned integers).";
    }
    for (const Part& part :
         {Part{"indices", sparse.indices.bufferView, sparse.indices.byteOffset, indexSize},
          Part{"values", sparse.values.bufferView, sparse.values.byteOffset, elementSize}}) {
        if (!Names(part.view, model.bufferViews.size(), false)) {
            return Missing(owner + "'s sparse " + part.what, "bufferView", part.view);
        }
        const size_t viewLength = model.bufferViews[static_cast<size_t>(part.view)].byteLength;
        const std::optional<size_t> bytes = Multiply(count, part.size);
        if (part.offset < 0 || !bytes ||
            !Fits(Add(static_cast<size_t>(part.offset), *bytes), viewLength)) {
            return owner + "'s sparse " + part.what + " do not fit in bufferView " +
                   std::to_string(part.view) + ".";
        }
    }
    return {};
}

std::string CheckAccessors(const Model& model) {
    for (size_t i = 0; i < model.accessors.size(); ++i) {
        const tinygltf::Accessor& accessor = model.accessors[i];
        const std::string owner = "accessor " + std::to_string(i) + Quoted(accessor.name);
        const size_t elementSize = AccessorElementSize(accessor.type, accessor.componentType);
        if (elementSize == 0) {
            return owner + " has an unknown type or component type.";
        }
        if (accessor.count == 0) {
            return owner + " has no elements.";
        }
        if (!Names(accessor.bufferView, model.bufferViews.size(), true)) {
            return Missing(owner, "bufferView", accessor.bufferView);
        }
        if (accessor.bufferView >= 0) {
            const tinygltf::BufferView& view =
                model.bufferViews[static_cast<size_t>(accessor.bufferView)];
            const size_t stride = view.byteStride != 0 ? view.byteStride : elementSize;
            if (stride < elementSize) {
                return owner + " has elements of " + std::to_string(elementSize) +
                       " bytes, longer than the stride " + std::to_string(stride) +
                       " of bufferView " + std::to_string(accessor.bufferView) + ".";
            }
            const std::optional<size_t> strides = Multiply(accessor.count - 1, stride);
            const size_t lastElement =
                AccessorLastElementSize(accessor.type, accessor.componentType);
            if (!strides ||
                !Fits(Add(Add(accessor.byteOffset, *strides), lastElement), view.byteLength)) {
                return owner + " reads " + std::to_string(accessor.count) +
                       " elements past the end of bufferView " +
                       std::to_string(accessor.bufferView) + ".";
            }
            if (accessor.byteOffset % ComponentSize(accessor.componentType) != 0) {
                return owner + " starts at byte " + std::to_string(accessor.byteOffset) +
                       ", not a multiple of its component size.";
            }
        } else if (accessor.byteOffset != 0) {
            return owner + " has a byteOffset but no bufferView.";
        } else if (accessor.count > kMaxAccessorCountWithoutData) {
            return owner + " claims " + std::to_string(accessor.count) +
                   " elements without any data.";
        }
        if (accessor.sparse.isSparse) {
            if (std::string fault = CheckSparse(model, accessor, owner, elementSize);
                !fault.empty()) {
                return fault;
            }
        }
    }
    return {};
}

std::string CheckMeshes(const Model& model) {
    const size_t accessors = model.accessors.size();
    for (size_t m = 0; m < model.meshes.size(); ++m) {
        const tinygltf::Mesh& mesh = model.meshes[m];
        for (size_t p = 0; p < mesh.primitives.size(); ++p) {
            const tinygltf::Primitive& primitive = mesh.primitives[p];
            const std::string owner =
                "mesh " + std::to_string(m) + Quoted(mesh.name) + " primitive " + std::to_string(p);
            for (const auto& [attribute, accessor] : primitive.attributes) {
                if (!Names(accessor, accessors, false)) {
                    return Missing(owner + " attribute " + attribute, "accessor", accessor);
                }
            }
            if (!Names(primitive.indices, accessors, true)) {
                return Missing(owner, "index accessor", primitive.indices);
            }
            if (!Names(primitive.material, model.materials.size(), true)) {
                return Missing(owner, "material", primitive.material);
            }
            for (const auto& target : primitive.targets) {
                for (const auto& [attribute, accessor] : target) {
                    if (!Names(accessor, accessors, false)) {
                        return Missing(owner + " morph target " + attribute, "accessor", accessor);
                    }
                }
            }
        }
    }
    return {};
}

// Nodes form a forest: each node has at most one parent, nothing is its own ancestor, and
// every scene's roots are parentless nodes listed once.
std::string CheckHierarchy(const Model& model) {
    const size_t count = model.nodes.size();
    std::vector<int> parent(count, -1);
    for (size_t i = 0; i < count; ++i) {
        const tinygltf::Node& node = model.nodes[i];
        const std::string owner = "node " + std::to_string(i) + Quoted(node.name);
        if (!Names(node.mesh, model.meshes.size(), true)) {
            return Missing(owner, "mesh", node.mesh);
        }
        if (!Names(node.skin, model.skins.size(), true)) {
            return Missing(owner, "skin", node.skin);
        }
        if (!Names(node.camera, model.cameras.size(), true)) {
            return Missing(owner, "camera", node.camera);
        }
        if (!node.matrix.empty() && node.matrix.size() != 16) {
            return owner + " has a matrix of " + std::to_string(node.matrix.size()) +
                   " numbers instead of 16.";
        }
        for (const int child : node.children) {
            if (!Names(child, count, false)) {
                return Missing(owner, "child node", child);
            }
            const auto c = static_cast<size_t>(child);
            if (c == i) {
                return owner + " is its own child.";
            }
            if (parent[c] != -1) {
                return "node " + std::to_string(child) + " is a child of both node " +
                       std::to_string(parent[c]) + " and node " + std::to_string(i) + ".";
            }
            parent[c] = static_cast<int>(i);
        }
    }
    // With one parent each, a cycle shows as a walk upwards that never reaches a root. Depths
    // already known end each walk early, so the whole check is linear.
    std::vector<int> depth(count, -1);
    std::vector<size_t> path;
    for (size_t i = 0; i < count; ++i) {
        path.clear();
        size_t at = i;
        while (depth[at] < 0) {
            path.push_back(at);
            if (path.size() > count) {
                return "node " + std::to_string(i) + " lies in or below a cycle of nodes.";
            }
            if (parent[at] < 0) {
                break;
            }
            at = static_cast<size_t>(parent[at]);
        }
        int known = depth[at] >= 0 ? depth[at] : -1;
        for (auto it = path.rbegin(); it != path.rend(); ++it) {
            depth[*it] = ++known;
            if (known > kMaxHierarchyDepth) {
                return "node " + std::to_string(*it) + " lies more than " +
                       std::to_string(kMaxHierarchyDepth) + " levels deep.";
            }
        }
    }
    std::vector<size_t> listedBy(count, model.scenes.size());  // the last scene listing a root
    for (size_t s = 0; s < model.scenes.size(); ++s) {
        const std::string owner = "scene " + std::to_string(s) + Quoted(model.scenes[s].name);
        for (const int root : model.scenes[s].nodes) {
            if (!Names(root, count, false)) {
                return Missing(owner, "node", root);
            }
            const auto r = static_cast<size_t>(root);
            if (parent[r] != -1) {
                return owner + " lists node " + std::to_string(root) +
                       " as a root, but it is a child of node " + std::to_string(parent[r]) + ".";
            }
            if (listedBy[r] == s) {
                return owner + " lists node " + std::to_string(root) + " twice.";
            }
            listedBy[r] = s;
        }
    }
    if (!Names(model.defaultScene, model.scenes.size(), true)) {
        return Missing("the file", "default scene", model.defaultScene);
    }
    return {};
}

std::string CheckMaterialsAndTextures(const Model& model) {
    for (size_t i = 0; i < model.materials.size(); ++i) {
        const tinygltf::Material& material = model.materials[i];
        const std::string owner = "material " + std::to_string(i) + Quoted(material.name);
        for (const int texture : {material.pbrMetallicRoughness.baseColorTexture.index,
                                  material.pbrMetallicRoughness.metallicRoughnessTexture.index,
                                  material.normalTexture.index, material.occlusionTexture.index,
                                  material.emissiveTexture.index}) {
            if (!Names(texture, model.textures.size(), true)) {
                return Missing(owner, "texture", texture);
            }
        }
    }
    for (size_t i = 0; i < model.textures.size(); ++i) {
        const tinygltf::Texture& texture = model.textures[i];
        const std::string owner = "texture " + std::to_string(i) + Quoted(texture.name);
        if (!Names(texture.source, model.images.size(), true)) {
            return Missing(owner, "image", texture.source);
        }
        if (!Names(texture.sampler, model.samplers.size(), true)) {
            return Missing(owner, "sampler", texture.sampler);
        }
    }
    for (size_t i = 0; i < model.images.size(); ++i) {
        const tinygltf::Image& image = model.images[i];
        if (!Names(image.bufferView, model.bufferViews.size(), true)) {
            return Missing("image " + std::to_string(i) + Quoted(image.name), "bufferView",
                           image.bufferView);
        }
    }
    return {};
}

std::string CheckSkinsAndAnimations(const Model& model) {
    for (size_t i = 0; i < model.skins.size(); ++i) {
        const tinygltf::Skin& skin = model.skins[i];
        const std::string owner = "skin " + std::to_string(i) + Quoted(skin.name);
        if (!Names(skin.inverseBindMatrices, model.accessors.size(), true)) {
            return Missing(owner, "accessor", skin.inverseBindMatrices);
        }
        if (!Names(skin.skeleton, model.nodes.size(), true)) {
            return Missing(owner, "skeleton node", skin.skeleton);
        }
        for (const int joint : skin.joints) {
            if (!Names(joint, model.nodes.size(), false)) {
                return Missing(owner, "joint node", joint);
            }
        }
    }
    for (size_t a = 0; a < model.animations.size(); ++a) {
        const tinygltf::Animation& animation = model.animations[a];
        const std::string owner = "animation " + std::to_string(a) + Quoted(animation.name);
        for (size_t c = 0; c < animation.channels.size(); ++c) {
            const tinygltf::AnimationChannel& channel = animation.channels[c];
            const std::string what = owner + " channel " + std::to_string(c);
            if (!Names(channel.sampler, animation.samplers.size(), false)) {
                return Missing(what, "sampler", channel.sampler);
            }
            if (!Names(channel.target_node, model.nodes.size(), true)) {
                return Missing(what, "node", channel.target_node);
            }
        }
        for (size_t s = 0; s < animation.samplers.size(); ++s) {
            const tinygltf::AnimationSampler& sampler = animation.samplers[s];
            const std::string what = owner + " sampler " + std::to_string(s);
            if (!Names(sampler.input, model.accessors.size(), false)) {
                return Missing(what, "input accessor", sampler.input);
            }
            if (!Names(sampler.output, model.accessors.size(), false)) {
                return Missing(what, "output accessor", sampler.output);
            }
        }
    }
    return {};
}

std::string CheckAssetAndExtensions(const Model& model) {
    const std::string& version = model.asset.version;
    if (version.size() < 2 || version.compare(0, 2, "2.") != 0) {
        return "it is glTF version \"" + version + "\"; only version 2 can be read.";
    }
    if (!model.asset.minVersion.empty() && model.asset.minVersion != "2.0") {
        return "it needs at least glTF version " + model.asset.minVersion + ".";
    }
    for (const std::string& extension : model.extensionsRequired) {
        if (extension == "KHR_draco_mesh_compression" || extension == "EXT_meshopt_compression") {
            return "its geometry is compressed with " + extension +
                   ", which cannot be read here; export the model again without mesh "
                   "compression.";
        }
        if (!SupportsRequiredExtension(extension)) {
            return "it requires the extension " + extension + ", which cannot be read here.";
        }
    }
    return {};
}

}  // namespace

bool SupportsRequiredExtension(std::string_view name) {
    return name == "KHR_texture_transform" || name == "KHR_lights_punctual" ||
           name == "KHR_mesh_quantization" || name.substr(0, 14) == "KHR_materials_";
}

size_t AccessorElementSize(int type, int componentType) {
    const size_t component = ComponentSize(componentType);
    if (component == 0) {
        return 0;
    }
    // Matrix columns start on 4-byte boundaries.
    const auto paddedColumns = [component](size_t rows, size_t columns) {
        return (rows * component + 3) / 4 * 4 * columns;
    };
    switch (type) {
        case TINYGLTF_TYPE_SCALAR:
            return component;
        case TINYGLTF_TYPE_VEC2:
            return 2 * component;
        case TINYGLTF_TYPE_VEC3:
            return 3 * component;
        case TINYGLTF_TYPE_VEC4:
            return 4 * component;
        case TINYGLTF_TYPE_MAT2:
            return paddedColumns(2, 2);
        case TINYGLTF_TYPE_MAT3:
            return paddedColumns(3, 3);
        case TINYGLTF_TYPE_MAT4:
            return paddedColumns(4, 4);
        default:
            return 0;
    }
}

size_t AccessorLastElementSize(int type, int componentType) {
    const size_t component = ComponentSize(componentType);
    const size_t size = AccessorElementSize(type, componentType);
    const auto unpadded = [component, size](size_t rows, size_t columns) {
        return size / columns * (columns - 1) + rows * component;
    };
    switch (type) {
        case TINYGLTF_TYPE_MAT2:
            return unpadded(2, 2);
        case TINYGLTF_TYPE_MAT3:
            return unpadded(3, 3);
        default:
            return size;
    }
}

std::string ValidateModel(const Model& model) {
    for (auto check : {&CheckAssetAndExtensions, &CheckBufferViews, &CheckAccessors, &CheckMeshes,
                       &CheckHierarchy, &CheckMaterialsAndTextures, &CheckSkinsAndAnimations}) {
        if (std::string fault = check(model); !fault.empty()) {
            return fault;
        }
    }
    return {};
}

}  // namespace railwright::document
