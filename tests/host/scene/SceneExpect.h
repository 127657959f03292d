// Comparisons with a tolerance for the in-memory scene's tests: results pass through double
// precision transforms and are rounded to float on the way out.
#pragma once

#include <gtest/gtest.h>

#include "host/Host.h"

namespace railwright::host::scene::testing {

inline constexpr float kTolerance = 1e-5f;

inline void ExpectNear(const Vector3& actual, const Vector3& expected) {
    EXPECT_NEAR(actual.x, expected.x, kTolerance);
    EXPECT_NEAR(actual.y, expected.y, kTolerance);
    EXPECT_NEAR(actual.z, expected.z, kTolerance);
}

inline void ExpectNear(const Bounds& actual, const Bounds& expected, float tolerance = kTolerance) {
    EXPECT_NEAR(actual.minX, expected.minX, tolerance);
    EXPECT_NEAR(actual.minY, expected.minY, tolerance);
    EXPECT_NEAR(actual.minZ, expected.minZ, tolerance);
    EXPECT_NEAR(actual.maxX, expected.maxX, tolerance);
    EXPECT_NEAR(actual.maxY, expected.maxY, tolerance);
    EXPECT_NEAR(actual.maxZ, expected.maxZ, tolerance);
}

}  // namespace railwright::host::scene::testing
