// Tolerances, points and vectors of the host's geometry library.
#pragma once

#include "arx/acarray.h"
#include "arx/adesk.h"

class AcGeMatrix3d;

class AcGeTol {
public:
    AcGeTol() = default;
    double equalPoint() const { return equalPoint_; }
    double equalVector() const { return equalVector_; }
    void setEqualPoint(double value) { equalPoint_ = value; }
    void setEqualVector(double value) { equalVector_ = value; }

private:
    double equalPoint_ = 1.0e-10;
    double equalVector_ = 1.0e-10;
};

struct AcGeContext {
    // The tolerance every geometry call uses when none is given.
    static AcGeTol gTol;
};

class AcGeVector2d {
public:
    AcGeVector2d() = default;
    AcGeVector2d(double xx, double yy) : x(xx), y(yy) {}
    static const AcGeVector2d kIdentity, kXAxis, kYAxis;

    double length() const;
    double dotProduct(const AcGeVector2d& v) const { return x * v.x + y * v.y; }
    AcGeVector2d& normalize(const AcGeTol& tol = AcGeContext::gTol);
    bool isEqualTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    AcGeVector2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    AcGeVector2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    AcGeVector2d operator*(double s) const { return {x * s, y * s}; }
    AcGeVector2d operator-() const { return {-x, -y}; }
    bool operator==(const AcGeVector2d& v) const { return isEqualTo(v); }

    double x = 0.0, y = 0.0;
};

class AcGePoint2d {
public:
    AcGePoint2d() = default;
    AcGePoint2d(double xx, double yy) : x(xx), y(yy) {}
    static const AcGePoint2d kOrigin;

    double distanceTo(const AcGePoint2d& p) const { return (*this - p).length(); }
    bool isEqualTo(const AcGePoint2d& p, const AcGeTol& tol = AcGeContext::gTol) const;
    AcGePoint2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    AcGePoint2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    AcGeVector2d operator-(const AcGePoint2d& p) const { return {x - p.x, y - p.y}; }
    AcGePoint2d& set(double xx, double yy) {
        x = xx;
        y = yy;
        return *this;
    }
    bool operator==(const AcGePoint2d& p) const { return isEqualTo(p); }

    double x = 0.0, y = 0.0;
};

class AcGeVector3d {
public:
    AcGeVector3d() = default;
    AcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
    static const AcGeVector3d kIdentity, kXAxis, kYAxis, kZAxis;

    double length() const;
    double lengthSqrd() const { return x * x + y * y + z * z; }
    double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    AcGeVector3d crossProduct(const AcGeVector3d& v) const;
    // Scales to unit length; a vector no longer than tol.equalVector() stays as it is.
    AcGeVector3d& normalize(const AcGeTol& tol = AcGeContext::gTol);
    AcGeVector3d normal(const AcGeTol& tol = AcGeContext::gTol) const;
    // A vector perpendicular to this one by the arbitrary-axis rule: the world Y axis crossed
    // with this vector when x and y are both below 1/64 in size, else the world Z axis crossed
    // with it. Not normalised.
    AcGeVector3d perpVector() const;
    double angleTo(const AcGeVector3d& v) const;
    // Angle in [0, 2 pi) measured counter-clockwise about reference.
    double angleTo(const AcGeVector3d& v, const AcGeVector3d& reference) const;
    AcGeVector3d& rotateBy(double angle, const AcGeVector3d& axis);
    AcGeVector3d& transformBy(const AcGeMatrix3d& m);
    AcGeVector3d& negate();

    bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isEqualTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    // False whenever either vector has zero length.
    bool isParallelTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isCodirectionalTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;

    AcGeVector3d& set(double xx, double yy, double zz) {
        x = xx;
        y = yy;
        z = zz;
        return *this;
    }
    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }
    AcGeVector3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGeVector3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    AcGeVector3d operator/(double s) const { return {x / s, y / s, z / s}; }
    AcGeVector3d operator-() const { return {-x, -y, -z}; }
    AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    AcGeVector3d& operator*=(double s) { return *this = *this * s; }
    bool operator==(const AcGeVector3d& v) const { return isEqualTo(v); }

    double x = 0.0, y = 0.0, z = 0.0;
};

AcGeVector3d operator*(double s, const AcGeVector3d& v);
AcGeVector3d operator*(const AcGeMatrix3d& m, const AcGeVector3d& v);

class AcGePoint3d {
public:
    AcGePoint3d() = default;
    AcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
    static const AcGePoint3d kOrigin;

    double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
    bool isEqualTo(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const;
    AcGePoint3d& transformBy(const AcGeMatrix3d& m);
    AcGeVector3d asVector() const { return {x, y, z}; }
    AcGePoint2d convert2d() const { return {x, y}; }

    AcGePoint3d& set(double xx, double yy, double zz) {
        x = xx;
        y = yy;
        z = zz;
        return *this;
    }
    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }
    AcGePoint3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGePoint3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-(const AcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    bool operator==(const AcGePoint3d& p) const { return isEqualTo(p); }

    double x = 0.0, y = 0.0, z = 0.0;
};

AcGePoint3d operator*(const AcGeMatrix3d& m, const AcGePoint3d& p);

using AcGePoint2dArray = AcArray<AcGePoint2d>;
using AcGePoint3dArray = AcArray<AcGePoint3d>;
using AcGeVector3dArray = AcArray<AcGeVector3d>;
