// Affine transforms of the in-memory scene: a group's place in its parent's frame.
//
// Computation is in double precision; the host seam hands out 32-bit floats, so values are
// rounded only when they leave the scene. Matrices act on column vectors: p' = linear * p + t.
//
// Rotations given as Euler angles (radians) turn about X first, then Y, then Z, each about the
// fixed axes of the parent frame: R = Rz * Ry * Rx.
#pragma once

#include <array>
#include <optional>

#include "host/Host.h"

namespace railwright::host::scene {

struct Vec3 {
    double x = 0;
    double y = 0;
    double z = 0;
    bool operator==(const Vec3&) const = default;
};

Vec3 operator+(Vec3 a, Vec3 b);
Vec3 operator-(Vec3 a, Vec3 b);
Vec3 operator*(Vec3 v, double factor);
double Dot(Vec3 a, Vec3 b);
Vec3 Cross(Vec3 a, Vec3 b);
double Length(Vec3 v);

Vec3 ToVec3(Vector3 v);
Vector3 ToVector3(Vec3 v);

// A rotation as a unit quaternion (glTF's order of components: x, y, z, w).
struct Quaternion {
    double x = 0;
    double y = 0;
    double z = 0;
    double w = 1;
    bool operator==(const Quaternion&) const = default;
};

// A 3x3 matrix, row-major storage, identity by default.
struct Mat3 {
    std::array<double, 9> e = {1, 0, 0, 0, 1, 0, 0, 0, 1};

    double operator()(int row, int column) const { return e[row * 3 + column]; }
    double& operator()(int row, int column) { return e[row * 3 + column]; }
    Vec3 Column(int column) const { return {e[column], e[3 + column], e[6 + column]}; }
    void SetColumn(int column, Vec3 v);
    double Determinant() const;
    bool operator==(const Mat3&) const = default;
};

Mat3 operator*(const Mat3& a, const Mat3& b);
Vec3 operator*(const Mat3& m, Vec3 v);

Mat3 EulerXyzMatrix(Vec3 angles);
// The Euler angles (X then Y then Z) of a proper rotation matrix. In gimbal lock (Y at plus or
// minus a right angle) the whole turn about the shared axis is given to X and Z is 0.
Vec3 ToEulerXyz(const Mat3& rotation);
Mat3 RotationMatrix(Quaternion rotation);  // normalises the quaternion first
Quaternion ToQuaternion(const Mat3& rotation);

// Turns `point` by `angle` radians about the axis through the origin along the unit vector
// `unitAxis` (Rodrigues' formula; positive angles turn anticlockwise looking down the axis).
Vec3 RotateAboutAxis(Vec3 point, Vec3 unitAxis, double angle);

// A linear part split into a proper rotation (determinant +1) and what is left of it, an upper
// triangular stretch holding scale and shear: linear = rotation * stretch. A reflection shows as
// a negative last diagonal element of the stretch.
struct RotationSplit {
    Mat3 rotation;
    Mat3 stretch;
};
RotationSplit SplitRotation(const Mat3& linear);

struct Trs {
    Vec3 translation;
    Quaternion rotation;
    Vec3 scale{1, 1, 1};
};

class Affine {
public:
    Mat3 linear;
    Vec3 translation;

    static Affine Translation(Vec3 offset);
    static Affine FromTrs(const Trs& trs);
    // glTF's node matrix: 16 values, column-major; the last row is taken to be 0 0 0 1.
    static Affine FromColumnMajor(const std::array<double, 16>& values);
    std::array<double, 16> ToColumnMajor() const;
    // Translation, rotation and scale; a shear of the linear part is dropped.
    Trs Decompose() const;

    Vec3 ApplyToPoint(Vec3 point) const { return linear * point + translation; }
    // Null when the linear part cannot be inverted (a zero scale).
    std::optional<Affine> Inverse() const;

    bool operator==(const Affine&) const = default;
};

Affine operator*(const Affine& a, const Affine& b);

}  // namespace railwright::host::scene
