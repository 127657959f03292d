// The MSTS text shape (.s) as plain data, in the file's own terms: left-handed axes (X right,
// Y up, Z forward), matrices as rows A, B, C (rotation and scale) and D (translation) acting on
// row vectors, triangles clockwise seen from the front. ShapeText.h turns it into the file's
// text; the pipeline of ShapeWriter.h fills it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace railwright::document::shape {

struct Float3 {
    float x = 0;
    float y = 0;
    float z = 0;
    bool operator==(const Float3&) const = default;
};

struct UvPoint {
    float u = 0;
    float v = 0;
    bool operator==(const UvPoint&) const = default;
};

// One matrix: its label (upper case) and its twelve numbers, rows A, B, C, D.
struct MatrixRecord {
    std::string name;
    std::array<float, 12> rows{};
};

// How a primitive is drawn. The texture is an index into ShapeData::images (one texture per
// image), or -1 for an untextured material.
struct PrimState {
    int32_t shader = 0;  // index into ShapeData::shaders
    int32_t texture = -1;
    int32_t zBias = 0;
    int32_t vtxState = 0;
    int32_t alphaTestMode = 0;  // 1 tests the texture's alpha
};

// Indices into the shape's point, normal and uv point lists.
struct Vertex {
    uint32_t point = 0;
    uint32_t normal = 0;
    uint32_t uvPoint = 0;
    bool operator==(const Vertex&) const = default;
};

// The run of a sub-object's vertices that one vertex state (one matrix) uses.
struct VertexSet {
    int32_t vtxState = 0;
    uint32_t start = 0;
    uint32_t count = 0;
};

// One indexed triangle list: three corners per triangle (indices into the sub-object's
// vertices) and the index of each triangle's face normal in the shape's normals.
struct Primitive {
    int32_t primState = 0;
    std::vector<uint32_t> corners;
    std::vector<uint32_t> faceNormals;
    size_t TriangleCount() const { return faceNormals.size(); }
};

struct SubObject {
    std::vector<Vertex> vertices;
    std::vector<VertexSet> vertexSets;
    std::vector<Primitive> primitives;
};

struct DistanceLevel {
    float distance = 0;  // the viewing distance up to which the level is drawn, metres
    std::vector<SubObject> subObjects;
};

struct RotationKey {
    int32_t frame = 0;
    float x = 0;
    float y = 0;
    float z = 0;
    float w = 1;
};

struct PositionKey {
    int32_t frame = 0;
    Float3 position;
};

// The controllers of one matrix; a matrix that does not move has neither.
struct AnimNode {
    std::vector<RotationKey> rotations;
    std::vector<PositionKey> positions;
};

// The shape's one animation: one node per matrix, in matrix order.
struct Animation {
    int32_t frameCount = 0;  // the last frame
    int32_t frameRate = 30;
    std::vector<AnimNode> nodes;
};

struct ShapeData {
    float radius = 0;  // of the sphere about the shape's origin holding all geometry
    std::vector<std::string> shaders;
    std::vector<Float3> points;
    std::vector<UvPoint> uvPoints;
    std::vector<Float3> normals;
    std::vector<MatrixRecord> matrices;
    std::vector<int32_t> hierarchy;  // per matrix, its parent's index or -1
    std::vector<std::string> images;
    std::vector<PrimState> primStates;
    std::vector<int32_t> vtxStates;  // per vertex state, its matrix
    std::vector<DistanceLevel> levels;
    std::optional<Animation> animation;
};

}  // namespace railwright::document::shape
