// The little vector algebra the codec needs on the kernel's plain points.
#pragma once

#include <arxsolids/types.h>

#include <cmath>

namespace acis {

using arxsolids::Vec3;

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(const Vec3& a, double k) {
    return {a.x * k, a.y * k, a.z * k};
}
inline Vec3 operator-(const Vec3& a) {
    return {-a.x, -a.y, -a.z};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vec3& a) {
    return std::sqrt(dot(a, a));
}
// The unit vector along a; a itself when it has no length.
inline Vec3 unit(const Vec3& a) {
    const double n = length(a);
    return n > 0.0 ? a * (1.0 / n) : a;
}

} // namespace acis
