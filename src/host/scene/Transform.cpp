#include "host/scene/Transform.h"

#include <algorithm>
#include <cmath>

namespace railwright::host::scene {

Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Vec3 operator-(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
Vec3 operator*(Vec3 v, double factor) { return {v.x * factor, v.y * factor, v.z * factor}; }
double Dot(Vec3 a, Vec3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vec3 Cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double Length(Vec3 v) { return std::sqrt(Dot(v, v)); }

Vec3 ToVec3(Vector3 v) { return {v.x, v.y, v.z}; }
Vector3 ToVector3(Vec3 v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

void Mat3::SetColumn(int column, Vec3 v) {
    e[column] = v.x;
    e[3 + column] = v.y;
    e[6 + column] = v.z;
}

double Mat3::Determinant() const { return Dot(Column(0), Cross(Column(1), Column(2))); }

Mat3 operator*(const Mat3& a, const Mat3& b) {
    Mat3 product;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            product(row, column) = a(row, 0) * b(0, column) + a(row, 1) * b(1, column) +
                                   a(row, 2) * b(2, column);
        }
    }
    return product;
}

Vec3 operator*(const Mat3& m, Vec3 v) {
    return {m(0, 0) * v.x + m(0, 1) * v.y + m(0, 2) * v.z,
            m(1, 0) * v.x + m(1, 1) * v.y + m(1, 2) * v.z,
            m(2, 0) * v.x + m(2, 1) * v.y + m(2, 2) * v.z};
}

Mat3 EulerXyzMatrix(Vec3 angles) {
    const double cx = std::cos(angles.x), sx = std::sin(angles.x);
    const double cy = std::cos(angles.y), sy = std::sin(angles.y);
    const double cz = std::cos(angles.z), sz = std::sin(angles.z);
    Mat3 rx{{1, 0, 0, 0, cx, -sx, 0, sx, cx}};
    Mat3 ry{{cy, 0, sy, 0, 1, 0, -sy, 0, cy}};
    Mat3 rz{{cz, -sz, 0, sz, cz, 0, 0, 0, 1}};
    return rz * ry * rx;
}

Vec3 ToEulerXyz(const Mat3& r) {
    // R = Rz Ry Rx has -sin(y) at (2, 0), sin(x) cos(y) at (2, 1), cos(x) cos(y) at (2, 2),
    // cos(y) sin(z) at (1, 0) and cos(y) cos(z) at (0, 0).
    const double sinY = std::clamp(-r(2, 0), -1.0, 1.0);
    const double cosY = std::hypot(r(0, 0), r(1, 0));
    if (cosY > 1e-9) {
        return {std::atan2(r(2, 1), r(2, 2)), std::asin(sinY), std::atan2(r(1, 0), r(0, 0))};
    }
    // With cos(y) = 0 only x - z (sin(y) = 1) or x + z (sin(y) = -1) is defined: (0, 1) holds
    // sin(x - z) or -sin(x + z), (1, 1) the matching cosine.
    const double y = sinY > 0 ? std::acos(0.0) : -std::acos(0.0);
    const double x = sinY > 0 ? std::atan2(r(0, 1), r(1, 1)) : std::atan2(-r(0, 1), r(1, 1));
    return {x, y, 0};
}

Mat3 RotationMatrix(Quaternion q) {
    const double norm = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    if (norm > 0) {
        q = {q.x / norm, q.y / norm, q.z / norm, q.w / norm};
    } else {
        q = {};
    }
    const double xx = q.x * q.x, yy = q.y * q.y, zz = q.z * q.z;
    const double xy = q.x * q.y, xz = q.x * q.z, yz = q.y * q.z;
    const double xw = q.x * q.w, yw = q.y * q.w, zw = q.z * q.w;
    return Mat3{{1 - 2 * (yy + zz), 2 * (xy - zw), 2 * (xz + yw),  //
                 2 * (xy + zw), 1 - 2 * (xx + zz), 2 * (yz - xw),  //
                 2 * (xz - yw), 2 * (yz + xw), 1 - 2 * (xx + yy)}};
}

Quaternion ToQuaternion(const Mat3& m) {
    const double trace = m(0, 0) + m(1, 1) + m(2, 2);
    Quaternion q;
    if (trace > 0) {
        const double s = std::sqrt(trace + 1) * 2;
        q = {(m(2, 1) - m(1, 2)) / s, (m(0, 2) - m(2, 0)) / s, (m(1, 0) - m(0, 1)) / s, s / 4};
    } else if (m(0, 0) > m(1, 1) && m(0, 0) > m(2, 2)) {
        const double s = std::sqrt(1 + m(0, 0) - m(1, 1) - m(2, 2)) * 2;
        q = {s / 4, (m(0, 1) + m(1, 0)) / s, (m(0, 2) + m(2, 0)) / s, (m(2, 1) - m(1, 2)) / s};
    } else if (m(1, 1) > m(2, 2)) {
        const double s = std::sqrt(1 + m(1, 1) - m(0, 0) - m(2, 2)) * 2;
        q = {(m(0, 1) + m(1, 0)) / s, s / 4, (m(1, 2) + m(2, 1)) / s, (m(0, 2) - m(2, 0)) / s};
    } else {
        const double s = std::sqrt(1 + m(2, 2) - m(0, 0) - m(1, 1)) * 2;
        q = {(m(0, 2) + m(2, 0)) / s, (m(1, 2) + m(2, 1)) / s, s / 4, (m(1, 0) - m(0, 1)) / s};
    }
    // One sign for one rotation: w not negative.
    if (q.w < 0) {
        q = {-q.x, -q.y, -q.z, -q.w};
    }
    return q;
}

Vec3 RotateAboutAxis(Vec3 point, Vec3 unitAxis, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return point * c + Cross(unitAxis, point) * s + unitAxis * (Dot(unitAxis, point) * (1 - c));
}

namespace {

// A unit vector at right angles to the unit vector v.
Vec3 AnyPerpendicular(Vec3 v) {
    const Vec3 axis = std::abs(v.x) < 0.9 ? Vec3{1, 0, 0} : Vec3{0, 1, 0};
    const Vec3 perpendicular = Cross(v, axis);
    return perpendicular * (1 / Length(perpendicular));
}

}  // namespace

RotationSplit SplitRotation(const Mat3& linear) {
    // Gram-Schmidt on the columns (a QR decomposition). A column that vanishes (a zero scale)
    // gets any direction that completes the orthonormal frame.
    const Vec3 c0 = linear.Column(0), c1 = linear.Column(1), c2 = linear.Column(2);
    const double largest = std::max({Length(c0), Length(c1), Length(c2)});
    const double tiny = largest * 1e-12;
    RotationSplit split;
    Mat3& u = split.stretch;

    u(0, 0) = Length(c0);
    const Vec3 q0 = u(0, 0) > tiny ? c0 * (1 / u(0, 0)) : Vec3{1, 0, 0};
    if (u(0, 0) <= tiny) {
        u(0, 0) = 0;
    }

    u(0, 1) = Dot(q0, c1);
    const Vec3 w1 = c1 - q0 * u(0, 1);
    u(1, 1) = Length(w1);
    const Vec3 q1 = u(1, 1) > tiny ? w1 * (1 / u(1, 1)) : AnyPerpendicular(q0);
    if (u(1, 1) <= tiny) {
        u(1, 1) = 0;
    }

    u(0, 2) = Dot(q0, c2);
    u(1, 2) = Dot(q1, c2);
    const Vec3 w2 = c2 - q0 * u(0, 2) - q1 * u(1, 2);
    Vec3 q2 = Cross(q0, q1);
    // The remaining column runs along +q2 or -q2; its signed length is the last diagonal entry.
    u(2, 2) = Dot(q2, w2);
    if (std::abs(u(2, 2)) <= tiny) {
        u(2, 2) = 0;
    }
    u(1, 0) = u(2, 0) = u(2, 1) = 0;

    split.rotation.SetColumn(0, q0);
    split.rotation.SetColumn(1, q1);
    split.rotation.SetColumn(2, q2);
    return split;
}

Affine Affine::Translation(Vec3 offset) {
    Affine affine;
    affine.translation = offset;
    return affine;
}

Affine Affine::FromTrs(const Trs& trs) {
    Affine affine;
    const Mat3 rotation = RotationMatrix(trs.rotation);
    affine.linear.SetColumn(0, rotation.Column(0) * trs.scale.x);
    affine.linear.SetColumn(1, rotation.Column(1) * trs.scale.y);
    affine.linear.SetColumn(2, rotation.Column(2) * trs.scale.z);
    affine.translation = trs.translation;
    return affine;
}

Affine Affine::FromColumnMajor(const std::array<double, 16>& values) {
    Affine affine;
    for (int column = 0; column < 3; ++column) {
        affine.linear.SetColumn(
            column, {values[column * 4], values[column * 4 + 1], values[column * 4 + 2]});
    }
    affine.translation = {values[12], values[13], values[14]};
    return affine;
}

std::array<double, 16> Affine::ToColumnMajor() const {
    std::array<double, 16> values{};
    for (int column = 0; column < 3; ++column) {
        const Vec3 c = linear.Column(column);
        values[column * 4] = c.x;
        values[column * 4 + 1] = c.y;
        values[column * 4 + 2] = c.z;
    }
    values[12] = translation.x;
    values[13] = translation.y;
    values[14] = translation.z;
    values[15] = 1;
    return values;
}

Trs Affine::Decompose() const {
    const RotationSplit split = SplitRotation(linear);
    return {translation, ToQuaternion(split.rotation),
            {split.stretch(0, 0), split.stretch(1, 1), split.stretch(2, 2)}};
}

std::optional<Affine> Affine::Inverse() const {
    const Vec3 c0 = linear.Column(0), c1 = linear.Column(1), c2 = linear.Column(2);
    const double determinant = Dot(c0, Cross(c1, c2));
    // Compared with the volume the columns would span at right angles, so that small but sound
    // scales still invert.
    const double volume = Length(c0) * Length(c1) * Length(c2);
    if (!std::isfinite(determinant) || !(std::abs(determinant) > volume * 1e-12)) {
        return std::nullopt;
    }
    // The rows of the inverse are the cross products of the columns, over the determinant.
    const Vec3 r0 = Cross(c1, c2) * (1 / determinant);
    const Vec3 r1 = Cross(c2, c0) * (1 / determinant);
    const Vec3 r2 = Cross(c0, c1) * (1 / determinant);
    Affine inverse;
    inverse.linear = Mat3{{r0.x, r0.y, r0.z, r1.x, r1.y, r1.z, r2.x, r2.y, r2.z}};
    inverse.translation = (inverse.linear * translation) * -1;
    return inverse;
}

Affine operator*(const Affine& a, const Affine& b) {
    Affine product;
    product.linear = a.linear * b.linear;
    product.translation = a.linear * b.translation + a.translation;
    return product;
}

}  // namespace railwright::host::scene
