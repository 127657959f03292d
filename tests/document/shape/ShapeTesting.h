// What the shape writer's tests share: building and reading back a shape, and the triangles a
// scene should show once written.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "document/shape/ShapeReader.h"
#include "document/shape/ShapeText.h"
#include "document/shape/ShapeWriter.h"
#include "host/scene/Model.h"
#include "support/SupportingFunctions.h"

namespace railwright::document::shape::testing {

struct Written {
    BuiltShape built;
    std::string text;
    ReadShape read;
};

// Builds the shape of `main`, turns it into text and reads that back; the read must be sound.
inline Written WriteAndRead(const host::scene::Node& main, const host::scene::Model& model,
                            const ShapeOptions& options = {}) {
    Written written;
    written.built = BuildShape(main, model.MaterialFields(), options);
    EXPECT_EQ(written.built.error, "");
    written.text = ShapeText(written.built.data);
    written.read = ReadShapeFile(written.text);
    EXPECT_EQ(written.read.error, "");
    return written;
}

// The triangles of `main`'s tree as the shape must show them, in the shape's frame (the scene's
// axes): every group's triangles at the current pose, corners in the written (clockwise) order.
// Placeholder groups and everything under them show nothing.
inline std::vector<Triangle> ExpectedTriangles(const host::scene::Node& main) {
    std::vector<Triangle> triangles;
    std::vector<const host::scene::Node*> pending{&main};
    while (!pending.empty()) {
        const host::scene::Node* group = pending.back();
        pending.pop_back();
        if (support::StartsWithIgnoreCase(group->NameValue(), "RailwrightPlaceholder-")) {
            continue;
        }
        const host::scene::Affine world = group->WorldAt(host::kCurrentPose);
        for (const host::scene::Shape& shape : group->Shapes()) {
            for (const host::scene::TriangleSet& set : shape.triangles) {
                for (size_t t = 0; t + 2 < set.corners.size(); t += 3) {
                    Triangle triangle;
                    const uint32_t order[3] = {set.corners[t], set.corners[t + 2],
                                               set.corners[t + 1]};
                    for (size_t k = 0; k < 3; ++k) {
                        const host::scene::Vec3 p =
                            world.ApplyToPoint(host::scene::ToVec3(shape.vertices[order[k]]));
                        triangle[k] = {static_cast<float>(p.x), static_cast<float>(p.y),
                                       static_cast<float>(p.z)};
                    }
                    triangles.push_back(triangle);
                }
            }
        }
        for (const auto& child : group->Children()) {
            pending.push_back(child.get());
        }
    }
    return triangles;
}

// Whether two triangles have the same corners in the same cyclic order, each coordinate within
// `tolerance` plus a millionth of its size.
inline bool SameCycle(const Triangle& a, const Triangle& b, double tolerance) {
    for (size_t start = 0; start < 3; ++start) {
        bool same = true;
        for (size_t k = 0; k < 3 && same; ++k) {
            for (size_t axis = 0; axis < 3 && same; ++axis) {
                const double x = a[k][axis];
                const double y = b[(start + k) % 3][axis];
                same = std::abs(x - y) <= tolerance + 1e-6 * std::abs(x);
            }
        }
        if (same) {
            return true;
        }
    }
    return false;
}

// The written triangles are the expected ones, each matched once, whatever their order.
inline ::testing::AssertionResult SameTriangles(const std::vector<Triangle>& expected,
                                                const std::vector<Triangle>& actual,
                                                double tolerance = 1e-4) {
    if (expected.size() != actual.size()) {
        return ::testing::AssertionFailure()
               << expected.size() << " triangles expected, " << actual.size() << " written";
    }
    // Candidates by the cell of their centroid; a match lies in the same cell or a neighbour.
    const double cell = std::max(tolerance * 1000, 1e-3);
    const auto cellOf = [cell](const Triangle& t, int axis) {
        return static_cast<long long>(
            std::floor((static_cast<double>(t[0][static_cast<size_t>(axis)]) +
                        t[1][static_cast<size_t>(axis)] + t[2][static_cast<size_t>(axis)]) /
                       3 / cell));
    };
    std::map<std::array<long long, 3>, std::vector<size_t>> cells;
    for (size_t i = 0; i < actual.size(); ++i) {
        cells[{cellOf(actual[i], 0), cellOf(actual[i], 1), cellOf(actual[i], 2)}].push_back(i);
    }
    std::vector<bool> used(actual.size(), false);
    for (size_t e = 0; e < expected.size(); ++e) {
        const Triangle& want = expected[e];
        bool found = false;
        for (long long dx = -1; dx <= 1 && !found; ++dx) {
            for (long long dy = -1; dy <= 1 && !found; ++dy) {
                for (long long dz = -1; dz <= 1 && !found; ++dz) {
                    const auto place = cells.find(
                        {cellOf(want, 0) + dx, cellOf(want, 1) + dy, cellOf(want, 2) + dz});
                    if (place == cells.end()) {
                        continue;
                    }
                    for (const size_t candidate : place->second) {
                        if (!used[candidate] && SameCycle(want, actual[candidate], tolerance)) {
                            used[candidate] = found = true;
                            break;
                        }
                    }
                }
            }
        }
        if (!found) {
            auto failure = ::testing::AssertionFailure();
            failure << "expected triangle " << e << " is not written:";
            for (const auto& corner : want) {
                failure << " (" << corner[0] << " " << corner[1] << " " << corner[2] << ")";
            }
            return failure;
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace railwright::document::shape::testing
