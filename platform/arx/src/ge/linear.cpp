#include "arx/gelinear.h"

#include <cmath>

const AcGePlane AcGePlane::kXYPlane(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis);
const AcGePlane AcGePlane::kYZPlane(AcGePoint3d::kOrigin, AcGeVector3d::kXAxis);
const AcGePlane AcGePlane::kZXPlane(AcGePoint3d::kOrigin, AcGeVector3d::kYAxis);

AcGePlane::AcGePlane() = default;

AcGePlane::AcGePlane(const AcGePoint3d& origin, const AcGeVector3d& normal) {
    set(origin, normal);
}

AcGePlane::AcGePlane(const AcGePoint3d& p1, const AcGePoint3d& p2, const AcGePoint3d& p3) {
    set(p1, (p2 - p1).crossProduct(p3 - p1));
}

AcGePlane& AcGePlane::set(const AcGePoint3d& origin, const AcGeVector3d& normal) {
    origin_ = origin;
    normal_ = normal.normal();
    return *this;
}

double AcGePlane::signedDistanceTo(const AcGePoint3d& p) const {
    return (p - origin_).dotProduct(normal_);
}

double AcGePlane::distanceTo(const AcGePoint3d& p) const {
    return std::fabs(signedDistanceTo(p));
}

AcGePoint3d AcGePlane::closestPointTo(const AcGePoint3d& p) const {
    return p - normal_ * signedDistanceTo(p);
}

bool AcGePlane::isOn(const AcGePoint3d& p, const AcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}

AcGePoint3d AcGeLinearEnt3d::closestPointTo(const AcGePoint3d& p) const {
    const double len2 = direction_.lengthSqrd();
    if (len2 == 0.0) return point_;
    return point_ + direction_ * ((p - point_).dotProduct(direction_) / len2);
}

bool AcGeLinearEnt3d::isOn(const AcGePoint3d& p, const AcGeTol& tol) const {
    return closestPointTo(p).isEqualTo(p, tol);
}

bool AcGeLinearEnt3d::isParallelTo(const AcGeLinearEnt3d& line, const AcGeTol& tol) const {
    return direction_.isParallelTo(line.direction_, tol);
}

bool AcGeLinearEnt3d::isColinearTo(const AcGeLinearEnt3d& line, const AcGeTol& tol) const {
    return isParallelTo(line, tol) && isOn(line.point_, tol);
}

bool AcGeLinearEnt3d::intersectWith(const AcGeLinearEnt3d& line, AcGePoint3d& point,
                                    const AcGeTol& tol) const {
    if (direction_.isZeroLength(tol) || line.direction_.isZeroLength(tol)) return false;
    if (isParallelTo(line, tol)) return false;
    // Closest points of the two lines; they meet when those coincide.
    const AcGeVector3d d1 = direction_, d2 = line.direction_, w = point_ - line.point_;
    const double a = d1.dotProduct(d1), b = d1.dotProduct(d2), c = d2.dotProduct(d2);
    const double d = d1.dotProduct(w), e = d2.dotProduct(w);
    const double denom = a * c - b * b;
    const AcGePoint3d p1 = point_ + d1 * ((b * e - c * d) / denom);
    const AcGePoint3d p2 = line.point_ + d2 * ((a * e - b * d) / denom);
    if (!p1.isEqualTo(p2, tol)) return false;
    point = p1;
    return true;
}

AcGeLine3d& AcGeLine3d::set(const AcGePoint3d& point, const AcGeVector3d& direction) {
    point_ = point;
    direction_ = direction;
    return *this;
}

AcGeLine3d& AcGeLine3d::set(const AcGePoint3d& p1, const AcGePoint3d& p2) {
    return set(p1, p2 - p1);
}

AcGeCircArc3d::AcGeCircArc3d(const AcGePoint3d& center, const AcGeVector3d& normal,
                             const AcGeVector3d& refVec, double radius, double startAngle,
                             double endAngle) {
    set(center, normal, refVec, radius, startAngle, endAngle);
}

AcGeCircArc3d& AcGeCircArc3d::set(const AcGePoint3d& center, const AcGeVector3d& normal,
                                  const AcGeVector3d& refVec, double radius, double startAngle,
                                  double endAngle) {
    center_ = center;
    normal_ = normal.normal();
    refVec_ = refVec.normal();
    radius_ = radius;
    startAngle_ = startAngle;
    endAngle_ = endAngle;
    return *this;
}

AcGePoint3d AcGeCircArc3d::pointAt(double angle) const {
    const AcGeVector3d y = normal_.crossProduct(refVec_);
    return center_ + refVec_ * (radius_ * std::cos(angle)) + y * (radius_ * std::sin(angle));
}
