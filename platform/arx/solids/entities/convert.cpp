#include "convert.h"

#include <cmath>
#include <memory>
#include <utility>

#include "arx/dbelipse.h"
#include "arx/dbents.h"
#include "arx/dbpl.h"
#include "arx/dbpoly.h"
#include "arx/dbspline.h"

namespace solident {

namespace {

using arxsolids::Status;

constexpr std::pair<Status, Acad::ErrorStatus> kStatuses[] = {
    {Status::eOk, Acad::eOk},
    {Status::eInvalidInput, Acad::eInvalidInput},
    {Status::eDegenerateGeometry, Acad::eDegenerateGeometry},
    {Status::eNonCoplanarGeometry, Acad::eNonCoplanarGeometry},
    {Status::eNonPlanarEntity, Acad::eNonPlanarEntity},
    {Status::eOpenLoop, Acad::eOpenLoop},
    {Status::eSelfIntersecting, Acad::eSelfIntersecting},
    {Status::eCannotScaleNonUniformly, Acad::eCannotScaleNonUniformly},
    {Status::eNotApplicable, Acad::eNotApplicable},
    {Status::eNegativeCoordinates, Acad::eNegativeCoordinates},
    {Status::eFileAccessErr, Acad::eFileAccessErr},
    {Status::eGeneralModelingFailure, Acad::eGeneralModelingFailure},
    {Status::eOutOfMemory, Acad::eOutOfMemory},
};

// Angle of a direction in the plane system of the normal.
double planeAngle(const AcGeVector3d& normal, const AcGeVector3d& direction) {
    const AcGeVector3d local = AcGeMatrix3d::worldToPlane(normal) * direction;
    return std::atan2(local.y, local.x);
}

arxsolids::Curve fromPolyline(const AcDbPolyline& pl) {
    arxsolids::PolylineCurve c;
    c.normal = toVec(pl.normal());
    c.elevation = pl.elevation();
    c.closed = pl.isClosed();
    for (unsigned i = 0; i < pl.numVerts(); ++i) {
        AcGePoint2d p;
        double bulge = 0.0;
        pl.getPointAt(i, p);
        pl.getBulgeAt(i, bulge);
        c.vertices.push_back({p.x, p.y, bulge});
    }
    return c;
}

// Spline frames of polylines are not corners of the drawn curve.
arxsolids::Curve from2dPolyline(const AcDb2dPolyline& pl) {
    arxsolids::PolylineCurve c;
    c.normal = toVec(pl.normal());
    c.elevation = pl.elevation();
    c.closed = pl.isClosed();
    std::unique_ptr<AcDbObjectIterator> it(pl.vertexIterator());
    for (it->start(); !it->done(); it->step()) {
        const AcDb2dVertex* v = AcDb2dVertex::cast(it->entity());
        if (v == nullptr || v->vertexType() == AcDb::k2dSplineCtlVertex) continue;
        c.vertices.push_back({v->position().x, v->position().y, v->bulge()});
    }
    return c;
}

arxsolids::Curve from3dPolyline(const AcDb3dPolyline& pl) {
    arxsolids::Polyline3dCurve c;
    c.closed = pl.isClosed();
    std::unique_ptr<AcDbObjectIterator> it(pl.vertexIterator());
    for (it->start(); !it->done(); it->step()) {
        const auto* v = AcDb3dPolylineVertex::cast(it->entity());
        if (v == nullptr || v->vertexType() == AcDb::k3dControlVertex) continue;
        c.points.push_back(toVec(v->position()));
    }
    return c;
}

arxsolids::Curve fromSpline(const AcDbSpline& s) {
    int degree = 3;
    bool rational = false, closed = false, periodic = false;
    AcGePoint3dArray points;
    AcGeDoubleArray knots, weights;
    double pointTol = 0.0, knotTol = 0.0;
    s.getNurbsData(degree, rational, closed, periodic, points, knots, weights, pointTol, knotTol);
    arxsolids::SplineCurve c;
    c.degree = degree;
    c.periodic = periodic;
    for (int i = 0; i < points.length(); ++i)
        c.controlPoints.push_back(toVec(points[i]));
    for (int i = 0; i < knots.length(); ++i)
        c.knots.push_back(knots[i]);
    if (rational)
        for (int i = 0; i < weights.length(); ++i)
            c.weights.push_back(weights[i]);
    return c;
}

AcDbEntity* entityOf(const arxsolids::LineCurve& c) {
    return new AcDbLine(toPoint(c.start), toPoint(c.end));
}

AcDbEntity* entityOf(const arxsolids::CircleCurve& c) {
    return new AcDbCircle(toPoint(c.center), toVector(c.normal), c.radius);
}

AcDbEntity* entityOf(const arxsolids::ArcCurve& a) {
    const AcGeVector3d normal = toVector(a.normal);
    const double offset = planeAngle(normal, toVector(a.refAxis));
    return new AcDbArc(toPoint(a.center), normal, a.radius, a.startAngle + offset,
                       a.endAngle + offset);
}

AcDbEntity* entityOf(const arxsolids::EllipseCurve& e) {
    auto* ellipse = new AcDbEllipse(toPoint(e.center), toVector(e.normal).normal(),
                                    toVector(e.majorAxis), e.radiusRatio);
    ellipse->setStartParam(e.startParam);
    ellipse->setEndParam(e.endParam);
    return ellipse;
}

AcDbEntity* entityOf(const arxsolids::PolylineCurve& c) {
    auto* pl = new AcDbPolyline(unsigned(c.vertices.size()));
    for (const arxsolids::PolylineVertex& v : c.vertices)
        pl->addVertexAt(pl->numVerts(), AcGePoint2d(v.x, v.y), v.bulge);
    pl->setNormal(toVector(c.normal));
    pl->setElevation(c.elevation);
    pl->setClosed(c.closed);
    return pl;
}

AcDbEntity* entityOf(const arxsolids::Polyline3dCurve& c) {
    AcGePoint3dArray points;
    for (const arxsolids::Vec3& p : c.points)
        points.append(toPoint(p));
    return new AcDb3dPolyline(AcDb::k3dSimplePoly, points, c.closed);
}

AcDbEntity* entityOf(const arxsolids::SplineCurve& c) {
    AcGePoint3dArray points;
    AcGeDoubleArray knots, weights;
    for (const arxsolids::Vec3& p : c.controlPoints)
        points.append(toPoint(p));
    for (double k : c.knots)
        knots.append(k);
    for (double w : c.weights)
        weights.append(w);
    const bool closed = !c.controlPoints.empty() &&
                        toPoint(c.controlPoints.front()).isEqualTo(toPoint(c.controlPoints.back()));
    return new AcDbSpline(c.degree, !c.weights.empty(), closed, c.periodic, points, knots, weights);
}

} // namespace

Acad::ErrorStatus toAcad(Status status) {
    for (const auto& [kernel, host] : kStatuses)
        if (kernel == status) return host;
    return Acad::eGeneralModelingFailure;
}

Acad::ErrorStatus builtOrThrow(Status status) {
    const Acad::ErrorStatus es = toAcad(status);
    if (status == Status::eGeneralModelingFailure || status == Status::eOutOfMemory)
        throw static_cast<int>(es);
    return es;
}

arxsolids::Matrix toMatrix(const AcGeMatrix3d& m) {
    arxsolids::Matrix out;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            out(r, c) = m(unsigned(r), unsigned(c));
    return out;
}

AcDbExtents toExtents(const arxsolids::Extents& e) {
    return AcDbExtents(toPoint(e.min), toPoint(e.max));
}

arxsolids::Plane toPlane(const AcGePlane& plane) {
    return {toVec(plane.pointOnPlane()), toVec(plane.normal())};
}

Acad::ErrorStatus toCurve(const AcDbCurve* entity, arxsolids::Curve& curve) {
    if (const AcDbLine* line = AcDbLine::cast(entity)) {
        curve = arxsolids::LineCurve{toVec(line->startPoint()), toVec(line->endPoint())};
    } else if (const AcDbCircle* circle = AcDbCircle::cast(entity)) {
        curve = arxsolids::CircleCurve{toVec(circle->center()), toVec(circle->normal()),
                                       circle->radius()};
    } else if (const AcDbArc* arc = AcDbArc::cast(entity)) {
        const AcGeVector3d ref = AcGeMatrix3d::planeToWorld(arc->normal()) * AcGeVector3d::kXAxis;
        curve = arxsolids::ArcCurve{toVec(arc->center()), toVec(arc->normal()), toVec(ref),
                                    arc->radius(),        arc->startAngle(),    arc->endAngle()};
    } else if (const AcDbEllipse* e = AcDbEllipse::cast(entity)) {
        curve =
            arxsolids::EllipseCurve{toVec(e->center()), toVec(e->normal()), toVec(e->majorAxis()),
                                    e->radiusRatio(),   e->startParam(),    e->endParam()};
    } else if (const AcDbPolyline* pl = AcDbPolyline::cast(entity)) {
        curve = fromPolyline(*pl);
    } else if (const AcDb2dPolyline* pl2 = AcDb2dPolyline::cast(entity)) {
        curve = from2dPolyline(*pl2);
    } else if (const AcDb3dPolyline* pl3 = AcDb3dPolyline::cast(entity)) {
        curve = from3dPolyline(*pl3);
    } else if (const AcDbSpline* spline = AcDbSpline::cast(entity)) {
        curve = fromSpline(*spline);
    } else {
        return Acad::eInvalidInput;
    }
    return Acad::eOk;
}

AcDbEntity* toEntity(const arxsolids::Curve& curve) {
    return std::visit([](const auto& c) { return entityOf(c); }, curve);
}

} // namespace solident
