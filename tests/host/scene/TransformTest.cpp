// The scene's transform arithmetic: Euler angles, rotation splits, inverses and glTF matrices.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "host/scene/Transform.h"

namespace railwright::host::scene {
namespace {

constexpr double kPi = std::numbers::pi;

void ExpectSameMatrix(const Mat3& actual, const Mat3& expected) {
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(actual.e[i], expected.e[i], 1e-9) << "element " << i;
    }
}

TEST(SceneTransform, EulerAnglesTurnAboutXThenYThenZ) {
    // (0, 1, 0): a right angle about X gives (0, 0, 1), then about Y gives (1, 0, 0).
    const Vec3 turned = EulerXyzMatrix({kPi / 2, kPi / 2, 0}) * Vec3{0, 1, 0};
    EXPECT_NEAR(turned.x, 1, 1e-12);
    EXPECT_NEAR(turned.y, 0, 1e-12);
    EXPECT_NEAR(turned.z, 0, 1e-12);
}

TEST(SceneTransform, EulerAnglesComeBackFromTheirMatrix) {
    const Vec3 cases[] = {
        {0, 0, 0},       {0.3, -0.2, 1.1},  {-2.5, 1.2, 3.0},  {kPi / 4, 0, 0},
        {0, kPi / 2, 0},  // gimbal lock: x and z share one axis
        {0.4, -kPi / 2, 0}, {0.7, kPi / 2, 0.2},
    };
    for (const Vec3& angles : cases) {
        SCOPED_TRACE(::testing::Message() << angles.x << " " << angles.y << " " << angles.z);
        const Mat3 rotation = EulerXyzMatrix(angles);
        ExpectSameMatrix(EulerXyzMatrix(ToEulerXyz(rotation)), rotation);
    }
    const Vec3 plain = ToEulerXyz(EulerXyzMatrix({0.3, -0.2, 1.1}));
    EXPECT_NEAR(plain.x, 0.3, 1e-12);
    EXPECT_NEAR(plain.y, -0.2, 1e-12);
    EXPECT_NEAR(plain.z, 1.1, 1e-12);
}

TEST(SceneTransform, DecomposeRecoversTranslationRotationAndScale) {
    const Trs trs{{1, -2, 3}, {0.2, 0.4, -0.1, 0.888819}, {2, 0.5, -3}};
    const Affine affine = Affine::FromTrs(trs);
    const Trs back = affine.Decompose();
    // The same transform, whatever sign the parts came back with.
    const Affine again = Affine::FromTrs(back);
    ExpectSameMatrix(again.linear, affine.linear);
    EXPECT_EQ(again.translation, affine.translation);
    EXPECT_NEAR(std::abs(back.scale.x), 2, 1e-9);
    EXPECT_NEAR(std::abs(back.scale.y), 0.5, 1e-9);
    EXPECT_NEAR(std::abs(back.scale.z), 3, 1e-9);
}

TEST(SceneTransform, SplitRotationIsProperEvenForAZeroScale) {
    Mat3 flat = EulerXyzMatrix({0.5, 0.2, -0.3});
    flat.SetColumn(1, {0, 0, 0});
    const RotationSplit split = SplitRotation(flat);
    EXPECT_NEAR(split.rotation.Determinant(), 1, 1e-12);
    ExpectSameMatrix(split.rotation * split.stretch, flat);
}

TEST(SceneTransform, InverseUndoesAndRefusesAZeroScale) {
    const Affine affine =
        Affine::FromTrs({{4, 5, 6}, {0.1, 0.7, 0.3, 0.64}, {0.001, 2, 3}});
    const std::optional<Affine> inverse = affine.Inverse();
    ASSERT_TRUE(inverse.has_value());
    const Affine identity = *inverse * affine;
    ExpectSameMatrix(identity.linear, Mat3{});
    EXPECT_NEAR(Length(identity.translation), 0, 1e-9);

    EXPECT_FALSE(Affine::FromTrs({{}, {}, {1, 0, 1}}).Inverse().has_value());
}

TEST(SceneTransform, ColumnMajorMatricesAreGltfs) {
    // glTF stores the translation in elements 12 to 14.
    const std::array<double, 16> values{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 7, 8, 9, 1};
    const Affine affine = Affine::FromColumnMajor(values);
    EXPECT_EQ(affine.ApplyToPoint({1, 1, 1}), (Vec3{9, 11, 13}));
    EXPECT_EQ(affine.ToColumnMajor(), values);
}

}  // namespace
}  // namespace railwright::host::scene
