// Planes, infinite lines and circular arcs of the host's geometry library.
#pragma once

#include "arx/gemat3d.h"

class AcGePlane {
public:
    AcGePlane();
    AcGePlane(const AcGePoint3d& origin, const AcGeVector3d& normal);
    AcGePlane(const AcGePoint3d& p1, const AcGePoint3d& p2, const AcGePoint3d& p3);
    static const AcGePlane kXYPlane, kYZPlane, kZXPlane;

    AcGePlane& set(const AcGePoint3d& origin, const AcGeVector3d& normal);
    AcGePoint3d pointOnPlane() const { return origin_; }
    AcGeVector3d normal() const { return normal_; }
    // Positive on the side the normal points to.
    double signedDistanceTo(const AcGePoint3d& p) const;
    double distanceTo(const AcGePoint3d& p) const;
    AcGePoint3d closestPointTo(const AcGePoint3d& p) const;
    bool isOn(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const;

private:
    AcGePoint3d origin_;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
};

class AcGeLinearEnt3d {
public:
    virtual ~AcGeLinearEnt3d() = default;
    AcGePoint3d pointOnLine() const { return point_; }
    AcGeVector3d direction() const { return direction_; }
    bool isOn(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const;
    AcGePoint3d closestPointTo(const AcGePoint3d& p) const;
    bool isParallelTo(const AcGeLinearEnt3d& line, const AcGeTol& tol = AcGeContext::gTol) const;
    // Both on one infinite line.
    bool isColinearTo(const AcGeLinearEnt3d& line, const AcGeTol& tol = AcGeContext::gTol) const;
    // The one point the two lines share; false for parallel or skew lines.
    bool intersectWith(const AcGeLinearEnt3d& line, AcGePoint3d& point,
                       const AcGeTol& tol = AcGeContext::gTol) const;

protected:
    AcGeLinearEnt3d() = default;
    AcGeLinearEnt3d(const AcGePoint3d& point, const AcGeVector3d& direction)
        : point_(point), direction_(direction) {}
    AcGePoint3d point_;
    AcGeVector3d direction_ = AcGeVector3d::kXAxis;
};

class AcGeLine3d : public AcGeLinearEnt3d {
public:
    AcGeLine3d() = default;
    AcGeLine3d(const AcGePoint3d& point, const AcGeVector3d& direction)
        : AcGeLinearEnt3d(point, direction) {}
    AcGeLine3d(const AcGePoint3d& p1, const AcGePoint3d& p2) : AcGeLinearEnt3d(p1, p2 - p1) {}
    AcGeLine3d& set(const AcGePoint3d& point, const AcGeVector3d& direction);
    AcGeLine3d& set(const AcGePoint3d& p1, const AcGePoint3d& p2);
};

class AcGeCircArc3d {
public:
    AcGeCircArc3d() = default;
    AcGeCircArc3d(const AcGePoint3d& center, const AcGeVector3d& normal, const AcGeVector3d& refVec,
                  double radius, double startAngle, double endAngle);
    AcGeCircArc3d& set(const AcGePoint3d& center, const AcGeVector3d& normal,
                       const AcGeVector3d& refVec, double radius, double startAngle,
                       double endAngle);

    AcGePoint3d center() const { return center_; }
    AcGeVector3d normal() const { return normal_; }
    AcGeVector3d refVec() const { return refVec_; }
    double radius() const { return radius_; }
    double startAng() const { return startAngle_; }
    double endAng() const { return endAngle_; }
    // The point at an angle measured from refVec about the normal.
    AcGePoint3d pointAt(double angle) const;
    AcGePoint3d startPoint() const { return pointAt(startAngle_); }
    AcGePoint3d endPoint() const { return pointAt(endAngle_); }

private:
    AcGePoint3d center_;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    AcGeVector3d refVec_ = AcGeVector3d::kXAxis;
    double radius_ = 0.0, startAngle_ = 0.0, endAngle_ = 0.0;
};
