#include "document/shape/ShapeText.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

#include "export/common/Windows1252.h"
#include "support/FloatText.h"

namespace railwright::document::shape {

namespace {

constexpr std::string_view kSignature = "SIMISA@@@@@@@@@@JINX0s1t______";
constexpr std::string_view kFilterMode = "MipLinear";
// The usual values of the fields that the simulators do not take from the model.
constexpr uint32_t kSubObjectFlags = 0x400;
constexpr uint32_t kSourceVertexFormat = 0x1d2;
constexpr uint32_t kTargetVertexFormat = 0x1c4;
constexpr uint32_t kVertexColour1 = 0xffffffff;
constexpr uint32_t kVertexColour2 = 0xff000000;
constexpr uint32_t kTextureBorderColour = 0xff000000;
constexpr uint32_t kVtxStateLightFlags = 0x2;
constexpr int32_t kNormalLightMaterial = -5;
constexpr int32_t kZBufferMode = 1;
constexpr int32_t kWrapAddressing = 1;
constexpr size_t kTrianglesPerLine = 16;
// Threads that make sub-objects' text at once, at most.
constexpr size_t kMostTextThreads = 8;

// Text appended piece by piece; every line ends with CR LF. With a sink, whole lines are handed
// on whenever a block has gathered.
class Text {
  public:
    Text() = default;
    explicit Text(const ShapeTextSink* sink) : sink_(sink) { bytes_.reserve(2 * kShapeTextBlock); }

    Text& Tabs(int depth) {
        bytes_.append(static_cast<size_t>(depth), '\t');
        return *this;
    }
    Text& Put(std::string_view piece) {
        bytes_ += piece;
        return *this;
    }
    Text& Space() {
        bytes_ += ' ';
        return *this;
    }
    Text& Number(float value) {
        bytes_ += support::ShortestFixedText(value);
        return *this;
    }
    template <typename Integer>
    Text& Int(Integer value) {
        char buffer[24];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        bytes_.append(buffer, result.ptr);
        return *this;
    }
    Text& Hex(uint32_t value) {
        char buffer[8];
        for (int i = 7; i >= 0; --i) {
            buffer[i] = "0123456789abcdef"[value & 0xf];
            value >>= 4;
        }
        bytes_.append(buffer, 8);
        return *this;
    }
    // A name as one token: quoted when it holds what would end a token.
    Text& Name(std::string_view name) {
        const std::string bytes = exportcommon::ToWindows1252(name);
        const bool plain = !bytes.empty() && bytes.find_first_of(" \t()\"") == std::string::npos &&
                           bytes.front() != '_' && bytes.front() != '#';
        if (plain) {
            return Put(bytes);
        }
        bytes_ += '"';
        for (const char c : bytes) {
            if (c == '"' || c == '\\') {
                bytes_ += '\\';
            }
            bytes_ += c;
        }
        bytes_ += '"';
        return *this;
    }
    Text& End() {
        bytes_ += "\r\n";
        if (sink_ != nullptr && bytes_.size() >= kShapeTextBlock) {
            Flush();
        }
        return *this;
    }
    // Hands what has gathered to the sink.
    void Flush() {
        if (sink_ != nullptr && !bytes_.empty()) {
            (*sink_)(bytes_);
            handed_ += bytes_.size();
            bytes_.clear();
        }
    }
    // A piece made apart (a sub-object), handed on as it is when there is a sink.
    void Append(const std::string& piece) {
        if (sink_ == nullptr) {
            bytes_ += piece;
            return;
        }
        Flush();
        (*sink_)(piece);
        handed_ += piece.size();
    }
    // Every byte so far, handed on or not.
    size_t Size() const { return handed_ + bytes_.size(); }
    // "name ( count" on a line of its own.
    Text& Open(int depth, std::string_view name, size_t count) {
        return Tabs(depth).Put(name).Put(" ( ").Int(count).End();
    }
    Text& Open(int depth, std::string_view name) { return Tabs(depth).Put(name).Put(" (").End(); }
    Text& Close(int depth) { return Tabs(depth).Put(")").End(); }

    std::string& Bytes() { return bytes_; }

  private:
    const ShapeTextSink* sink_ = nullptr;
    std::string bytes_;
    size_t handed_ = 0;
};

// The writers below keep one line of the file to one statement.
// clang-format off
void WriteVector(Text& text, const Float3& v) {
    text.Number(v.x).Space().Number(v.y).Space().Number(v.z);
}

void WriteHead(Text& text, const ShapeData& shape) {
    text.Tabs(1).Put("shape_header ( ").Hex(0).Space().Hex(0).Put(" )").End();
    text.Open(1, "volumes", 1);
    text.Tabs(2).Put("vol_sphere ( vector ( 0 0 0 ) ").Number(shape.radius).Put(" )").End();
    text.Close(1);
    text.Open(1, "shader_names", shape.shaders.size());
    for (const std::string& shader : shape.shaders) {
        text.Tabs(2).Put("named_shader ( ").Put(shader).Put(" )").End();
    }
    text.Close(1);
    text.Open(1, "texture_filter_names", 1);
    text.Tabs(2).Put("named_filter_mode ( ").Put(kFilterMode).Put(" )").End();
    text.Close(1);
}

// A list of vectors, one "<item> ( x y z )" line each.
void WriteVectorList(Text& text, std::string_view list, std::string_view item,
                     const std::vector<Float3>& vectors) {
    text.Open(1, list, vectors.size());
    for (const Float3& vector : vectors) {
        text.Tabs(2).Put(item).Put(" ( ");
        WriteVector(text, vector);
        text.Put(" )").End();
    }
    text.Close(1);
}

void WriteLists(Text& text, const ShapeData& shape) {
    WriteVectorList(text, "points", "point", shape.points);
    text.Open(1, "uv_points", shape.uvPoints.size());
    for (const UvPoint& uv : shape.uvPoints) {
        text.Tabs(2).Put("uv_point ( ").Number(uv.u).Space().Number(uv.v).Put(" )").End();
    }
    text.Close(1);
    WriteVectorList(text, "normals", "vector", shape.normals);
    text.Tabs(1).Put("sort_vectors ( 0 )").End();
    text.Tabs(1).Put("colours ( 0 )").End();
    text.Open(1, "matrices", shape.matrices.size());
    for (const MatrixRecord& matrix : shape.matrices) {
        text.Tabs(2).Put("matrix ").Name(matrix.name).Put(" (");
        for (const float value : matrix.rows) {
            text.Space().Number(value);
        }
        text.Put(" )").End();
    }
    text.Close(1);
    text.Open(1, "images", shape.images.size());
    for (const std::string& image : shape.images) {
        text.Tabs(2).Put("image ( ").Name(image).Put(" )").End();
    }
    text.Close(1);
    text.Open(1, "textures", shape.images.size());
    for (size_t i = 0; i < shape.images.size(); ++i) {
        text.Tabs(2).Put("texture ( ").Int(i).Put(" 0 0 ").Hex(kTextureBorderColour)
            .Put(" )").End();
    }
    text.Close(1);
    text.Tabs(1).Put("light_materials ( 0 )").End();
    text.Open(1, "light_model_cfgs", 1);
    text.Tabs(2).Put("light_model_cfg ( ").Hex(0).End();
    text.Open(3, "uv_ops", 1);
    text.Tabs(4).Put("uv_op_copy ( ").Int(kWrapAddressing).Put(" 0 )").End();
    text.Close(3);
    text.Close(2);
    text.Close(1);
    text.Open(1, "vtx_states", shape.vtxStates.size());
    for (const int32_t matrix : shape.vtxStates) {
        text.Tabs(2).Put("vtx_state ( ").Hex(0).Space().Int(matrix).Space()
            .Int(kNormalLightMaterial).Put(" 0 ").Hex(kVtxStateLightFlags).Put(" )").End();
    }
    text.Close(1);
    text.Open(1, "prim_states", shape.primStates.size());
    for (const PrimState& state : shape.primStates) {
        text.Tabs(2).Put("prim_state ( ").Hex(0).Space().Int(state.shader).End();
        text.Tabs(3).Put("tex_idxs ( ");
        if (state.texture < 0) {
            text.Put("0");
        } else {
            text.Put("1 ").Int(state.texture);
        }
        text.Put(" ) ").Int(state.zBias).Space().Int(state.vtxState).Space()
            .Int(state.alphaTestMode).Put(" 0 ").Int(kZBufferMode).End();
        text.Close(2);
    }
    text.Close(1);
}

// The geometry summary of a sub-object that the MSTS grammar asks for; the simulators read it
// without using it.
void WriteSubObjectHeader(Text& text, const ShapeData& shape, const SubObject& sub, int depth) {
    size_t triangles = 0;
    size_t stateChanges = 0;
    std::set<int32_t> shaders;
    struct Node {
        size_t trilists = 0;
        size_t triangles = 0;
        size_t stateChanges = 0;
    };
    std::vector<Node> nodes(shape.matrices.size());
    int32_t previous = -1;
    for (const Primitive& primitive : sub.primitives) {
        const PrimState& state = shape.primStates[static_cast<size_t>(primitive.primState)];
        const int32_t matrix = shape.vtxStates[static_cast<size_t>(state.vtxState)];
        Node& node = nodes[static_cast<size_t>(matrix)];
        ++node.trilists;
        node.triangles += primitive.TriangleCount();
        triangles += primitive.TriangleCount();
        if (primitive.primState != previous) {
            ++stateChanges;
            ++node.stateChanges;
            previous = primitive.primState;
        }
        shaders.insert(state.shader);
    }
    text.Tabs(depth).Put("sub_object_header ( ").Hex(kSubObjectFlags).Put(" -1 -1 ")
        .Hex(kSourceVertexFormat).Space().Hex(kTargetVertexFormat).End();
    text.Tabs(depth + 1).Put("geometry_info ( ").Int(triangles).Space().Int(stateChanges)
        .Put(" 0 ").Int(triangles * 3).Put(" 0 0 ").Int(sub.primitives.size()).Put(" 0 0 0").End();
    size_t used = 0;
    for (const Node& node : nodes) {
        used += node.trilists > 0 ? 1 : 0;
    }
    text.Open(depth + 2, "geometry_nodes", used);
    for (const Node& node : nodes) {
        if (node.trilists == 0) {
            continue;
        }
        text.Tabs(depth + 3).Put("geometry_node ( ").Int(node.stateChanges).Put(" 0 ")
            .Int(node.trilists).Put(" 0 0").End();
        text.Tabs(depth + 4).Put("cullable_prims ( ").Int(node.trilists).Space()
            .Int(node.triangles).Space().Int(node.triangles * 3).Put(" )").End();
        text.Close(depth + 3);
    }
    text.Close(depth + 2);
    text.Tabs(depth + 2).Put("geometry_node_map ( ").Int(nodes.size());
    int32_t next = 0;
    for (const Node& node : nodes) {
        text.Space().Int(node.trilists > 0 ? next++ : -1);
    }
    text.Put(" )").End();
    text.Close(depth + 1);
    text.Tabs(depth + 1).Put("subobject_shaders ( ").Int(shaders.size());
    for (const int32_t shader : shaders) {
        text.Space().Int(shader);
    }
    text.Put(" )").End();
    text.Tabs(depth + 1).Put("subobject_light_cfgs ( 1 0 ) 0").End();
    text.Close(depth);
}

void WriteSubObject(Text& text, const ShapeData& shape, const SubObject& sub, int depth) {
    text.Open(depth, "sub_object");
    WriteSubObjectHeader(text, shape, sub, depth + 1);
    text.Open(depth + 1, "vertices", sub.vertices.size());
    for (const Vertex& vertex : sub.vertices) {
        text.Tabs(depth + 2).Put("vertex ( ").Hex(0).Space().Int(vertex.point).Space()
            .Int(vertex.normal).Space().Hex(kVertexColour1).Space().Hex(kVertexColour2)
            .Put(" vertex_uvs ( 1 ").Int(vertex.uvPoint).Put(" ) )").End();
    }
    text.Close(depth + 1);
    text.Open(depth + 1, "vertex_sets", sub.vertexSets.size());
    for (const VertexSet& set : sub.vertexSets) {
        text.Tabs(depth + 2).Put("vertex_set ( ").Int(set.vtxState).Space().Int(set.start)
            .Space().Int(set.count).Put(" )").End();
    }
    text.Close(depth + 1);

    // The count covers the prim_state_idx entries and the lists alike; a state is named before
    // the first list and whenever it changes.
    size_t entries = 0;
    int32_t previous = -1;
    for (const Primitive& primitive : sub.primitives) {
        entries += primitive.primState != previous ? 2 : 1;
        previous = primitive.primState;
    }
    text.Open(depth + 1, "primitives", entries);
    previous = -1;
    for (const Primitive& primitive : sub.primitives) {
        if (primitive.primState != previous) {
            text.Tabs(depth + 2).Put("prim_state_idx ( ").Int(primitive.primState).Put(" )").End();
            previous = primitive.primState;
        }
        const size_t triangles = primitive.TriangleCount();
        text.Open(depth + 2, "indexed_trilist");
        text.Tabs(depth + 3).Put("vertex_idxs ( ").Int(triangles * 3);
        for (size_t t = 0; t < triangles; ++t) {
            if (t % kTrianglesPerLine == 0) {
                text.End().Tabs(depth + 4);
            } else {
                text.Space();
            }
            text.Int(primitive.corners[3 * t]).Space().Int(primitive.corners[3 * t + 1]).Space()
                .Int(primitive.corners[3 * t + 2]);
        }
        text.Put(" )").End();
        text.Tabs(depth + 3).Put("normal_idxs ( ").Int(triangles);
        for (size_t t = 0; t < triangles; ++t) {
            if (t % kTrianglesPerLine == 0) {
                text.End().Tabs(depth + 4);
            } else {
                text.Space();
            }
            text.Int(primitive.faceNormals[t]).Put(" 3");
        }
        text.Put(" )").End();
        text.Tabs(depth + 3).Put("flags ( ").Int(triangles);
        for (size_t t = 0; t < triangles; ++t) {
            if (t % kTrianglesPerLine == 0) {
                text.End().Tabs(depth + 4);
            } else {
                text.Space();
            }
            text.Hex(0);
        }
        text.Put(" )").End();
        text.Close(depth + 2);
    }
    text.Close(depth + 1);
    text.Close(depth);
}

// clang-format on

// The sub-objects of a level, made a few at a time on the machine's cores and joined in order.
void WriteSubObjects(Text& text, const ShapeData& shape, const std::vector<SubObject>& subs) {
    const size_t threads =
        std::clamp<size_t>(std::thread::hardware_concurrency(), 1, kMostTextThreads);
    if (threads == 1 || subs.size() < 2) {
        for (const SubObject& sub : subs) {
            WriteSubObject(text, shape, sub, 6);
        }
        return;
    }
    // A window of sub-objects at a time keeps the memory held to a few sub-objects' text.
    const size_t window = 2 * threads;
    std::vector<std::string> pieces(window);
    for (size_t first = 0; first < subs.size(); first += window) {
        const size_t count = std::min(window, subs.size() - first);
        std::atomic<size_t> next{0};
        const auto work = [&] {
            for (size_t i = next++; i < count; i = next++) {
                Text piece;
                piece.Bytes().swap(pieces[i]);
                piece.Bytes().clear();
                WriteSubObject(piece, shape, subs[first + i], 6);
                pieces[i].swap(piece.Bytes());
            }
        };
        std::vector<std::thread> helpers;
        for (size_t t = 1; t < std::min(threads, count); ++t) {
            helpers.emplace_back(work);
        }
        work();
        for (std::thread& helper : helpers) {
            helper.join();
        }
        for (size_t i = 0; i < count; ++i) {
            text.Append(pieces[i]);
        }
    }
}

// clang-format off
void WriteLevels(Text& text, const ShapeData& shape) {
    text.Open(1, "lod_controls", 1);
    text.Open(2, "lod_control");
    text.Tabs(3).Put("distance_levels_header ( 0 )").End();
    text.Open(3, "distance_levels", shape.levels.size());
    for (const DistanceLevel& level : shape.levels) {
        text.Open(4, "distance_level");
        text.Open(5, "distance_level_header");
        text.Tabs(6).Put("dlevel_selection ( ").Number(level.distance).Put(" )").End();
        text.Tabs(6).Put("hierarchy ( ").Int(shape.hierarchy.size());
        for (const int32_t parent : shape.hierarchy) {
            text.Space().Int(parent);
        }
        text.Put(" )").End();
        text.Close(5);
        text.Open(5, "sub_objects", level.subObjects.size());
        WriteSubObjects(text, shape, level.subObjects);
        text.Close(5);
        text.Close(4);
    }
    text.Close(3);
    text.Close(2);
    text.Close(1);
}

void WriteAnimation(Text& text, const ShapeData& shape, const Animation& animation) {
    text.Open(1, "animations", 1);
    text.Tabs(2).Put("animation ( ").Int(animation.frameCount).Space().Int(animation.frameRate)
        .End();
    text.Open(3, "anim_nodes", animation.nodes.size());
    for (size_t m = 0; m < animation.nodes.size(); ++m) {
        const AnimNode& node = animation.nodes[m];
        text.Tabs(4).Put("anim_node ").Name(shape.matrices[m].name).Put(" (").End();
        const size_t controllers =
            (node.rotations.empty() ? 0 : 1) + (node.positions.empty() ? 0 : 1);
        text.Open(5, "controllers", controllers);
        if (!node.rotations.empty()) {
            text.Open(6, "tcb_rot", node.rotations.size());
            for (const RotationKey& key : node.rotations) {
                text.Tabs(7).Put("slerp_rot ( ").Int(key.frame).Space().Number(key.x).Space()
                    .Number(key.y).Space().Number(key.z).Space().Number(key.w).Put(" )").End();
            }
            text.Close(6);
        }
        if (!node.positions.empty()) {
            text.Open(6, "linear_pos", node.positions.size());
            for (const PositionKey& key : node.positions) {
                text.Tabs(7).Put("linear_key ( ").Int(key.frame).Space();
                WriteVector(text, key.position);
                text.Put(" )").End();
            }
            text.Close(6);
        }
        text.Close(5);
        text.Close(4);
    }
    text.Close(3);
    text.Close(2);
    text.Close(1);
}

// clang-format on

void WriteShape(Text& text, const ShapeData& shape) {
    text.Put(kSignature).End().End();
    text.Put("shape (").End();
    WriteHead(text, shape);
    WriteLists(text, shape);
    WriteLevels(text, shape);
    if (shape.animation) {
        WriteAnimation(text, shape, *shape.animation);
    }
    text.Put(")").End();
}

}  // namespace

size_t StreamShapeText(const ShapeData& shape, const ShapeTextSink& sink) {
    Text text(&sink);
    WriteShape(text, shape);
    text.Flush();
    return text.Size();
}

std::string ShapeText(const ShapeData& shape) {
    Text text;
    size_t corners = 0;
    for (const DistanceLevel& level : shape.levels) {
        for (const SubObject& sub : level.subObjects) {
            corners += sub.vertices.size();
            for (const Primitive& primitive : sub.primitives) {
                corners += primitive.corners.size();
            }
        }
    }
    // About what a point, a vertex and a corner take, so that the text grows once.
    text.Bytes().reserve(4096 + shape.points.size() * 40 + shape.normals.size() * 40 +
                         corners * 24);
    WriteShape(text, shape);
    return std::move(text.Bytes());
}

}  // namespace railwright::document::shape
