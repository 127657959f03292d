// A reader of MSTS text shapes for the tests, written from the format's description and
// independent of the writer: it takes the file as the simulator's reader does (by position,
// counts first), checks every count, every index and the hierarchy, and gives back what a test
// compares: the matrices, the lists, the counts per distance level and the triangles placed in
// the shape's frame through the matrix hierarchy.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace railwright::document::shape::testing {

using Triangle = std::array<std::array<float, 3>, 3>;  // three corners, as written

struct ReadPrimState {
    int32_t shader = 0;
    std::vector<int32_t> textures;
    int32_t zBias = 0;
    int32_t vtxState = 0;
    int32_t alphaTestMode = 0;
};

struct ReadLevel {
    float distance = 0;
    size_t subObjects = 0;
    size_t vertices = 0;
    size_t triangles = 0;
    size_t drawCalls = 0;
    size_t largestSubObject = 0;          // vertices
    size_t largestTrilist = 0;            // triangles
    std::vector<Triangle> placed;         // every triangle in the shape's frame (the root's)
    std::vector<int32_t> primStatesUsed;  // per trilist
};

struct ReadKey {
    int32_t frame = 0;
    std::array<float, 4> value{};  // x y z w of a rotation; x y z of a position
};

struct ReadAnimNode {
    std::string name;
    std::vector<ReadKey> rotations;
    std::vector<ReadKey> positions;
};

struct ReadShape {
    std::string error;  // empty when the file is sound
    std::vector<std::string> shaders;
    size_t points = 0;
    size_t uvPoints = 0;
    size_t normals = 0;
    std::vector<std::string> matrixNames;
    std::vector<std::array<float, 12>> matrices;
    std::vector<int32_t> hierarchy;
    std::vector<std::string> images;
    std::vector<ReadPrimState> primStates;
    std::vector<ReadLevel> levels;
    float radius = 0;
    bool animated = false;
    int32_t frameCount = 0;
    int32_t frameRate = 0;
    std::vector<ReadAnimNode> animNodes;
};

// Reads the bytes of a .s file: UTF-16LE with its byte order mark, or 8-bit text.
ReadShape ReadShapeFile(const std::string& bytes);

}  // namespace railwright::document::shape::testing
