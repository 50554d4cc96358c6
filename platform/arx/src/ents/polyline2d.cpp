#include <memory>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/acdb.h"
#include "arx/dbpl.h"
#include "arx/dbpoly.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDb2dPolyline, AcDbCurve, ACRX_T("POLYLINE"))

namespace {
AcGePoint3d elevationPoint(const AcDb2dPolyline& p) {
    return {0.0, 0.0, p.elevation()};
}
Acad::ErrorStatus setElevationPoint(AcDb2dPolyline& p, const AcGePoint3d& point) {
    return p.setElevation(point.z);
}
int flags(const AcDb2dPolyline& p) {
    return p.isClosed() ? 1 : 0;
}
Acad::ErrorStatus setFlags(AcDb2dPolyline& p, const int& f) {
    return f & 1 ? p.makeClosed() : p.makeOpen();
}
// Curve type of the drawing format: 0 none, 5 quadratic, 6 cubic, 8 fitted.
int curveType(const AcDb2dPolyline& p) {
    constexpr int kCodes[] = {0, 8, 5, 6};
    return kCodes[p.polyType()];
}
Acad::ErrorStatus setCurveType(AcDb2dPolyline& p, const int& t) {
    return p.setPolyType(t == 5   ? AcDb::k2dQuadSplinePoly
                         : t == 6 ? AcDb::k2dCubicSplinePoly
                         : t == 8 ? AcDb::k2dFitCurvePoly
                                  : AcDb::k2dSimplePoly);
}
constexpr unsigned kOmit = AcDbDxfField::kOmitDefault;
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDb2dPolyline")),
    dxf::value<AcDb2dPolyline, elevationPoint, setElevationPoint>(10),
    dxf::value<AcDb2dPolyline, &AcDb2dPolyline::thickness, &AcDb2dPolyline::setThickness>(39,
                                                                                          kOmit),
    dxf::value<AcDb2dPolyline, flags, setFlags>(70),
    dxf::value<AcDb2dPolyline, curveType, setCurveType>(75, kOmit),
    dxf::value<AcDb2dPolyline, &AcDb2dPolyline::normal, &AcDb2dPolyline::setNormal>(210, kOmit),
};
} // namespace
ACDB_DXF_KIND(AcDb2dPolyline, "POLYLINE", kFields)

AcDb2dPolyline::AcDb2dPolyline(AcDb::Poly2dType type, const AcGePoint3dArray& vertices,
                               double elevation, bool closed, double defStartWidth,
                               double defEndWidth, const AcGeDoubleArray* bulges)
    : type_(type), closed_(closed), elevation_(elevation), defaultStartWidth_(defStartWidth),
      defaultEndWidth_(defEndWidth) {
    for (int i = 0; i < vertices.length(); ++i) {
        const double bulge = bulges && i < bulges->length() ? (*bulges)[i] : 0.0;
        appendVertex(new AcDb2dVertex({vertices[i].x, vertices[i].y, elevation}, bulge,
                                      defStartWidth, defEndWidth));
    }
}

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDb2dVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex) {
    return vertices_.append(this, vertex, id);
}

AcDbObjectIterator* AcDb2dPolyline::vertexIterator() const {
    auto* it = new AcDbObjectIterator(&vertices_);
    it->start();
    return it;
}

Acad::ErrorStatus AcDb2dPolyline::openVertex(AcDb2dVertex*& vertex, AcDbObjectId id,
                                             AcDb::OpenMode mode, bool openErased) const {
    return acdbOpenObject(vertex, id, mode, openErased);
}

AcGePoint3d AcDb2dPolyline::vertexPosition(const AcDb2dVertex& vertex) const {
    const AcGePoint3d p = vertex.position();
    return entgeom::fromOcs(normal_, {p.x, p.y, elevation_});
}

Acad::ErrorStatus AcDb2dPolyline::setPolyType(AcDb::Poly2dType type) {
    return entgeom::setProperty(this, type_, type);
}

Acad::ErrorStatus AcDb2dPolyline::makeClosed() {
    return entgeom::setProperty(this, closed_, true);
}

Acad::ErrorStatus AcDb2dPolyline::makeOpen() {
    return entgeom::setProperty(this, closed_, false);
}

Acad::ErrorStatus AcDb2dPolyline::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
    return entgeom::setProperty(this, elevation_, elevation);
}

Acad::ErrorStatus AcDb2dPolyline::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

namespace {
// The polyline's drawn vertices (spline frame vertices left out) as a lightweight polyline,
// which knows bulged segments; with the indexes of the vertices used.
std::unique_ptr<AcDbPolyline> asLightweight(const AcDb2dPolyline& p, AcDbObjectIterator& it,
                                            std::vector<AcDb2dVertex*>& used) {
    auto lw = std::make_unique<AcDbPolyline>();
    lw->setNormal(p.normal());
    lw->setElevation(p.elevation());
    lw->setThickness(p.thickness());
    lw->setClosed(p.isClosed());
    for (; !it.done(); it.step()) {
        auto* v = AcDb2dVertex::cast(it.entity());
        if (v == nullptr || v->vertexType() == AcDb::k2dSplineCtlVertex) continue;
        lw->addVertexAt(lw->numVerts(), v->position().convert2d(), v->bulge());
        used.push_back(v);
    }
    return lw;
}
} // namespace

Acad::ErrorStatus AcDb2dPolyline::getStartPoint(AcGePoint3d& p) const {
    std::unique_ptr<AcDbObjectIterator> it(vertexIterator());
    std::vector<AcDb2dVertex*> used;
    return asLightweight(*this, *it, used)->getStartPoint(p);
}

Acad::ErrorStatus AcDb2dPolyline::getEndPoint(AcGePoint3d& p) const {
    std::unique_ptr<AcDbObjectIterator> it(vertexIterator());
    std::vector<AcDb2dVertex*> used;
    return asLightweight(*this, *it, used)->getEndPoint(p);
}

// Vertices move in their own right, with their owner open for write: they are its parts.
Acad::ErrorStatus AcDb2dPolyline::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    std::unique_ptr<AcDbObjectIterator> it(vertexIterator());
    std::vector<AcDb2dVertex*> used;
    std::unique_ptr<AcDbPolyline> lw = asLightweight(*this, *it, used);
    if (Acad::ErrorStatus es = lw->transformBy(xform); es != Acad::eOk) return es;
    for (size_t i = 0; i < used.size(); ++i) {
        AcGePoint2d p;
        lw->getPointAt(unsigned(i), p);
        used[i]->position_ = {p.x, p.y, lw->elevation()};
    }
    normal_ = lw->normal();
    elevation_ = lw->elevation();
    thickness_ = lw->thickness();
    return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::getGeomExtents(AcDbExtents& extents) const {
    std::unique_ptr<AcDbObjectIterator> it(vertexIterator());
    std::vector<AcDb2dVertex*> used;
    return asLightweight(*this, *it, used)->getGeomExtents(extents);
}
