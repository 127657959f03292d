#include "document/AccessorReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "document/Validation.h"

namespace railwright::document {

namespace {

template <typename T>
T Load(const unsigned char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// One component as a float; integers are normalised as glTF defines it (signed values clamp
// at -1) or, when the accessor is not normalised, taken as the whole numbers they are.
float ReadComponent(const unsigned char* bytes, int componentType, bool normalized) {
    if (!normalized && componentType != TINYGLTF_COMPONENT_TYPE_FLOAT) {
        switch (componentType) {
            case TINYGLTF_COMPONENT_TYPE_BYTE:
                return Load<int8_t>(bytes);
            case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
                return Load<uint8_t>(bytes);
            case TINYGLTF_COMPONENT_TYPE_SHORT:
                return Load<int16_t>(bytes);
            default:
                return Load<uint16_t>(bytes);
        }
    }
    switch (componentType) {
        case TINYGLTF_COMPONENT_TYPE_FLOAT:
            return Load<float>(bytes);
        case TINYGLTF_COMPONENT_TYPE_BYTE:
            return std::max(static_cast<float>(Load<int8_t>(bytes)) / 127.0f, -1.0f);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return static_cast<float>(Load<uint8_t>(bytes)) / 255.0f;
        case TINYGLTF_COMPONENT_TYPE_SHORT:
            return std::max(static_cast<float>(Load<int16_t>(bytes)) / 32767.0f, -1.0f);
        default:  // unsigned short: the rules let nothing else through
            return static_cast<float>(Load<uint16_t>(bytes)) / 65535.0f;
    }
}

uint32_t ReadIndex(const unsigned char* bytes, int componentType) {
    switch (componentType) {
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return Load<uint8_t>(bytes);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
            return Load<uint16_t>(bytes);
        default:
            return Load<uint32_t>(bytes);
    }
}

const unsigned char* ViewStart(const tinygltf::Model& model, int viewIndex, size_t offset) {
    const tinygltf::BufferView& view = model.bufferViews[static_cast<size_t>(viewIndex)];
    return model.buffers[static_cast<size_t>(view.buffer)].data.data() + view.byteOffset + offset;
}

// Reads `count` elements starting at `start`, `stride` bytes apart, into `out` at `first`.
void ReadElements(const unsigned char* start, size_t stride, size_t count, int components,
                  int componentType, bool normalized, float* out) {
    const size_t componentSize = componentType == TINYGLTF_COMPONENT_TYPE_FLOAT ? 4
                                 : (componentType == TINYGLTF_COMPONENT_TYPE_SHORT ||
                                    componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT)
                                     ? 2
                                     : 1;
    for (size_t e = 0; e < count; ++e) {
        const unsigned char* element = start + e * stride;
        for (int c = 0; c < components; ++c) {
            *out++ = ReadComponent(element + static_cast<size_t>(c) * componentSize, componentType,
                                   normalized);
        }
    }
}

bool Accepted(int componentType, bool normalized, ComponentRule rule) {
    if (componentType == TINYGLTF_COMPONENT_TYPE_FLOAT) {
        return true;
    }
    if (rule == ComponentRule::FloatOnly ||
        (rule == ComponentRule::FloatOrNormalized && !normalized)) {
        return false;
    }
    return componentType == TINYGLTF_COMPONENT_TYPE_BYTE ||
           componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE ||
           componentType == TINYGLTF_COMPONENT_TYPE_SHORT ||
           componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT;
}

}  // namespace

std::string ReadAccessor(const tinygltf::Model& model, int index, int components,
                         ComponentRule rule, std::vector<float>& values) {
    const tinygltf::Accessor& accessor = model.accessors[static_cast<size_t>(index)];
    const std::string owner = "accessor " + std::to_string(index);
    if (tinygltf::GetNumComponentsInType(static_cast<uint32_t>(accessor.type)) != components ||
        accessor.type == TINYGLTF_TYPE_MAT2) {
        return owner + " does not hold " + std::to_string(components) +
               "-component vectors as it should here.";
    }
    if (!Accepted(accessor.componentType, accessor.normalized, rule)) {
        return rule == ComponentRule::FloatOnly
                   ? owner + " does not hold floats (component type " +
                         std::to_string(accessor.componentType) + "), as it must here."
                   : rule == ComponentRule::FloatOrNormalized
                       ? owner + " holds neither floats nor normalised integers."
                       : owner + " holds neither floats nor bytes or shorts.";
    }
    const auto width = static_cast<size_t>(components);
    values.assign(accessor.count * width, 0.0f);
    if (accessor.bufferView >= 0) {
        const tinygltf::BufferView& view =
            model.bufferViews[static_cast<size_t>(accessor.bufferView)];
        const size_t elementSize = AccessorElementSize(accessor.type, accessor.componentType);
        const size_t stride = view.byteStride != 0 ? view.byteStride : elementSize;
        ReadElements(ViewStart(model, accessor.bufferView, accessor.byteOffset), stride,
                     accessor.count, components, accessor.componentType, accessor.normalized,
                     values.data());
    }
    if (accessor.sparse.isSparse) {
        const auto& sparse = accessor.sparse;
        const auto count = static_cast<size_t>(sparse.count);
        const size_t indexSize =
            sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE    ? 1
            : sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT ? 2
                                                                                     : 4;
        const unsigned char* indices = ViewStart(model, sparse.indices.bufferView,
                                                 static_cast<size_t>(sparse.indices.byteOffset));
        const unsigned char* substitutes = ViewStart(model, sparse.values.bufferView,
                                                     static_cast<size_t>(sparse.values.byteOffset));
        const size_t elementSize = AccessorElementSize(accessor.type, accessor.componentType);
        for (size_t i = 0; i < count; ++i) {
            const uint32_t target =
                ReadIndex(indices + i * indexSize, sparse.indices.componentType);
            if (target >= accessor.count) {
                return owner + "'s sparse index " + std::to_string(target) + " lies beyond its " +
                       std::to_string(accessor.count) + " elements.";
            }
            ReadElements(substitutes + i * elementSize, elementSize, 1, components,
                         accessor.componentType, accessor.normalized,
                         values.data() + target * width);
        }
    }
    for (const float value : values) {
        if (!std::isfinite(value)) {
            return owner + " holds a number that is not finite.";
        }
    }
    return {};
}

std::string ReadIndices(const tinygltf::Model& model, int index, std::vector<uint32_t>& indices) {
    const tinygltf::Accessor& accessor = model.accessors[static_cast<size_t>(index)];
    const std::string owner = "accessor " + std::to_string(index);
    const int type = accessor.componentType;
    if (accessor.type != TINYGLTF_TYPE_SCALAR ||
        (type != TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE &&
         type != TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT &&
         type != TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT)) {
        return owner + " does not hold unsigned integer scalars, as indices must.";
    }
    const size_t size = AccessorElementSize(accessor.type, type);
    indices.assign(accessor.count, 0);
    if (accessor.bufferView >= 0) {
        const tinygltf::BufferView& view =
            model.bufferViews[static_cast<size_t>(accessor.bufferView)];
        const size_t stride = view.byteStride != 0 ? view.byteStride : size;
        const unsigned char* start = ViewStart(model, accessor.bufferView, accessor.byteOffset);
        for (size_t i = 0; i < accessor.count; ++i) {
            indices[i] = ReadIndex(start + i * stride, type);
        }
    }
    if (accessor.sparse.isSparse) {
        const auto& sparse = accessor.sparse;
        const int targetType = sparse.indices.componentType;
        const size_t targetSize = AccessorElementSize(TINYGLTF_TYPE_SCALAR, targetType);
        const unsigned char* targets = ViewStart(model, sparse.indices.bufferView,
                                                 static_cast<size_t>(sparse.indices.byteOffset));
        const unsigned char* values = ViewStart(model, sparse.values.bufferView,
                                                static_cast<size_t>(sparse.values.byteOffset));
        for (size_t i = 0; i < static_cast<size_t>(sparse.count); ++i) {
            const uint32_t target = ReadIndex(targets + i * targetSize, targetType);
            if (target >= accessor.count) {
                return owner + "'s sparse index " + std::to_string(target) + " lies beyond its " +
                       std::to_string(accessor.count) + " elements.";
            }
            indices[target] = ReadIndex(values + i * size, type);
        }
    }
    return {};
}

}  // namespace railwright::document
