#include <memory>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/acdb.h"
#include "arx/dbpoly.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDb3dPolyline, AcDbCurve, ACRX_T("POLYLINE"))

namespace {
AcGePoint3d origin(const AcDb3dPolyline&) {
    return AcGePoint3d::kOrigin;
}
bool keepOrigin(AcDb3dPolyline&, const AcGePoint3d&) {
    return true;
}
// Flag 8 marks a 3-D polyline in the drawing format.
int flags(const AcDb3dPolyline& p) {
    return 8 | (p.isClosed() ? 1 : 0);
}
Acad::ErrorStatus setFlags(AcDb3dPolyline& p, const int& f) {
    return f & 1 ? p.makeClosed() : p.makeOpen();
}
int curveType(const AcDb3dPolyline& p) {
    constexpr int kCodes[] = {0, 5, 6};
    return kCodes[p.polyType()];
}
Acad::ErrorStatus setCurveType(AcDb3dPolyline& p, const int& t) {
    return p.setPolyType(t == 5   ? AcDb::k3dQuadSplinePoly
                         : t == 6 ? AcDb::k3dCubicSplinePoly
                                  : AcDb::k3dSimplePoly);
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDb3dPolyline")),
    dxf::value<AcDb3dPolyline, origin, keepOrigin>(10),
    dxf::value<AcDb3dPolyline, flags, setFlags>(70),
    dxf::value<AcDb3dPolyline, curveType, setCurveType>(75, AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDb3dPolyline, "POLYLINE", kFields)

AcDb3dPolyline::AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices, bool closed)
    : type_(type), closed_(closed) {
    for (const AcGePoint3d& p : vertices)
        appendVertex(new AcDb3dPolylineVertex(p));
}

Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDb3dPolylineVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}

Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex) {
    return vertices_.append(this, vertex, id);
}

AcDbObjectIterator* AcDb3dPolyline::vertexIterator() const {
    auto* it = new AcDbObjectIterator(&vertices_);
    it->start();
    return it;
}

Acad::ErrorStatus AcDb3dPolyline::openVertex(AcDb3dPolylineVertex*& vertex, AcDbObjectId id,
                                             AcDb::OpenMode mode, bool openErased) const {
    return acdbOpenObject(vertex, id, mode, openErased);
}

Acad::ErrorStatus AcDb3dPolyline::setPolyType(AcDb::Poly3dType type) {
    return entgeom::setProperty(this, type_, type);
}

Acad::ErrorStatus AcDb3dPolyline::makeClosed() {
    return entgeom::setProperty(this, closed_, true);
}

Acad::ErrorStatus AcDb3dPolyline::makeOpen() {
    return entgeom::setProperty(this, closed_, false);
}

Acad::ErrorStatus AcDb3dPolyline::getStartPoint(AcGePoint3d& p) const {
    const AcGePoint3dArray points = vertices_.positions();
    if (points.isEmpty()) return Acad::eDegenerateGeometry;
    p = points.first();
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::getEndPoint(AcGePoint3d& p) const {
    const AcGePoint3dArray points = vertices_.positions();
    if (points.isEmpty()) return Acad::eDegenerateGeometry;
    p = closed_ ? points.first() : points.last();
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    vertices_.transformPositions(xform);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    vertices_.addPositions(extents);
    return extents.isEmpty() ? Acad::eInvalidExtents : Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::explode(AcDbVoidPtrArray& entities) const {
    const AcGePoint3dArray points = vertices_.positions();
    const int n = points.length();
    const int segments = closed_ && n > 2 ? n : n - 1;
    for (int i = 0; i < segments; ++i) {
        auto* line = new AcDbLine(points[i], points[(i + 1) % n]);
        copyPropertiesTo(line);
        entities.append(line);
    }
    return Acad::eOk;
}
