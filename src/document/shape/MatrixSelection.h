// Which groups of the "Main" group's tree become matrices of the shape, and the frame in which
// each matrix holds its geometry.
//
// A group keeps a matrix of its own when it must move or stay separate: "Main" itself, the
// named parts (bogies, wheelsets, drive wheels, the main wheel link, the piston, rods, wipers,
// mirrors, pantograph parts) and every group with animation keys. Every other group is merged
// into its nearest kept ancestor: its geometry is carried into that matrix's frame, unless the
// model asks for every group to keep its own matrix (signal heads and other sub-objects that a
// route animates by their names). Placeholder
// groups and everything under them are left out. Matrices come in the tree's order (a parent
// before its children), "Main" first.
//
// Frames are in the scene's axes, which are the shape's (left-handed: X right, Y up). A still
// matrix holds its group's frame, scale included. A moving matrix must be a pure rotation and
// translation, because the simulator replaces those two by its keys: its scale goes into the
// geometry. Wheelsets, bogies and the main wheel link turn about their origin in the
// simulator, so their frame is moved to the centre of their geometry.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/scene/Node.h"

namespace railwright::document::shape {

struct PlannedMatrix {
    std::string name;  // upper case, a single token
    int32_t parent = -1;
    const host::scene::Node* group = nullptr;
    bool animated = false;
    // The matrix relative to its parent's frame (for "Main", to the scene's root frame).
    host::scene::Affine local;
    // The matrix's frame in the scene's root frame.
    host::scene::Affine frame;
    // A moving matrix: a key (the group's pose relative to its scene parent, as the scene keeps
    // it) maps to the matrix's local pose as keyBefore * key * keyAfter, of which the rotation
    // and translation are written.
    host::scene::Affine keyBefore;
    host::scene::Affine keyAfter;
    // What one unit of the matrix's frame measures in the root frame (its largest scale).
    double unitLength = 1;
};

// A group whose geometry goes into a matrix, with the map from its frame to the matrix's.
struct GeometrySource {
    const host::scene::Node* group = nullptr;
    int32_t matrix = 0;
    host::scene::Affine toMatrix;
};

struct MatrixPlan {
    std::vector<PlannedMatrix> matrices;
    std::vector<GeometrySource> sources;  // in the tree's order
};

// The matrix name of a group: upper case, with every character that cannot stand in a token of
// the shape (spaces, brackets, quotes, a leading comment mark) replaced by '_'.
std::string MatrixName(std::string_view groupName);

// Which groups keep a matrix of their own.
enum class MatrixChoice {
    NamedAndAnimated,  // "Main", the named parts and the animated groups; the rest is merged
    EveryGroup,        // every group, named as the group, so that a route can move any of them
};

MatrixPlan PlanMatrices(const host::scene::Node& main,
                        MatrixChoice choice = MatrixChoice::NamedAndAnimated);

// A matrix as the shape writes it: rows A, B, C (the images of the X, Y and Z axes) and D (the
// translation).
std::array<float, 12> MatrixRows(const host::scene::Affine& local);

}  // namespace railwright::document::shape
