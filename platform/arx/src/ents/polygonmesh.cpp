#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbmesh.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbPolygonMesh, AcDbEntity, ACRX_T("POLYLINE"))
ACRX_DEFINE_MEMBERS(AcDbPolygonMeshVertex, AcDbVertex, ACRX_T("VERTEX"))

namespace {
bool validSize(int n) {
    return n >= 2 && n <= 256;
}
bool validDensity(int n) {
    return n >= 3 && n <= 200;
}

AcGePoint3d origin(const AcDbObject&) {
    return AcGePoint3d::kOrigin;
}
bool keepOrigin(AcDbObject&, const AcGePoint3d&) {
    return true;
}
// Flags of the drawing format: 16 a polygon mesh, 1 closed in M, 32 closed in N.
int flags(const AcDbPolygonMesh& m) {
    return 16 | (m.isMClosed() ? 1 : 0) | (m.isNClosed() ? 32 : 0);
}
Acad::ErrorStatus setFlags(AcDbPolygonMesh& m, const int& f) {
    if (Acad::ErrorStatus es = f & 1 ? m.makeMClosed() : m.makeMOpen(); es != Acad::eOk) return es;
    return f & 32 ? m.makeNClosed() : m.makeNOpen();
}
int meshType(const AcDbPolygonMesh& m) {
    return m.polyMeshType();
}
Acad::ErrorStatus setMeshType(AcDbPolygonMesh& m, const int& t) {
    // Only the types there are become an enumeration.
    if (t != AcDb::kSimpleMesh && t != AcDb::kQuadSurfaceMesh && t != AcDb::kCubicSurfaceMesh &&
        t != AcDb::kBezierSurfaceMesh)
        return Acad::eInvalidInput;
    return m.setPolyMeshType(AcDb::PolyMeshType(t));
}
int vertexFlags(const AcDbPolygonMeshVertex&) {
    return 64;
}
bool acceptVertexFlags(AcDbPolygonMeshVertex&, const int& f) {
    return f & 64;
}
const AcDbDxfField kMeshFields[] = {
    dxf::marker(ACRX_T("AcDbPolygonMesh")),
    dxf::value<AcDbPolygonMesh, origin, keepOrigin>(10),
    dxf::value<AcDbPolygonMesh, flags, setFlags>(70),
    dxf::value<AcDbPolygonMesh, &AcDbPolygonMesh::mSize, &AcDbPolygonMesh::setMSize>(71),
    dxf::value<AcDbPolygonMesh, &AcDbPolygonMesh::nSize, &AcDbPolygonMesh::setNSize>(72),
    dxf::value<AcDbPolygonMesh, &AcDbPolygonMesh::mSurfaceDensity,
               &AcDbPolygonMesh::setMSurfaceDensity>(73),
    dxf::value<AcDbPolygonMesh, &AcDbPolygonMesh::nSurfaceDensity,
               &AcDbPolygonMesh::setNSurfaceDensity>(74),
    dxf::value<AcDbPolygonMesh, meshType, setMeshType>(75, AcDbDxfField::kOmitDefault),
};
const AcDbDxfField kVertexFields[] = {
    dxf::marker(ACRX_T("AcDbVertex")),
    dxf::marker(ACRX_T("AcDbPolygonMeshVertex")),
    dxf::value<AcDbPolygonMeshVertex, &AcDbPositionVertex::position,
               &AcDbPositionVertex::setPosition>(10),
    dxf::value<AcDbPolygonMeshVertex, vertexFlags, acceptVertexFlags>(70),
};
} // namespace
ACDB_DXF_KIND(AcDbPolygonMesh, "POLYLINE", kMeshFields)
ACDB_DXF_KIND(AcDbPolygonMeshVertex, "VERTEX", kVertexFields)

AcDbPolygonMesh::AcDbPolygonMesh(AcDb::PolyMeshType type, Adesk::Int16 mSize, Adesk::Int16 nSize,
                                 const AcGePoint3dArray& vertices, bool mClosed, bool nClosed)
    : type_(type), mClosed_(mClosed), nClosed_(nClosed) {
    if (!validSize(mSize) || !validSize(nSize) || vertices.length() != mSize * nSize) return;
    mSize_ = mSize;
    nSize_ = nSize;
    for (const AcGePoint3d& p : vertices)
        appendVertex(new AcDbPolygonMeshVertex(p));
}

Acad::ErrorStatus AcDbPolygonMesh::setMSize(Adesk::Int16 size) {
    ACDB_WRITE_CHECK();
    if (!validSize(size) || vertices_.length() > 0) return Acad::eInvalidInput;
    mSize_ = size;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::setNSize(Adesk::Int16 size) {
    ACDB_WRITE_CHECK();
    if (!validSize(size) || vertices_.length() > 0) return Acad::eInvalidInput;
    nSize_ = size;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::makeMClosed() {
    return entgeom::setProperty(this, mClosed_, true);
}

Acad::ErrorStatus AcDbPolygonMesh::makeMOpen() {
    return entgeom::setProperty(this, mClosed_, false);
}

Acad::ErrorStatus AcDbPolygonMesh::makeNClosed() {
    return entgeom::setProperty(this, nClosed_, true);
}

Acad::ErrorStatus AcDbPolygonMesh::makeNOpen() {
    return entgeom::setProperty(this, nClosed_, false);
}

Acad::ErrorStatus AcDbPolygonMesh::setPolyMeshType(AcDb::PolyMeshType type) {
    ACDB_WRITE_CHECK();
    if (type != AcDb::kSimpleMesh && type != AcDb::kQuadSurfaceMesh &&
        type != AcDb::kCubicSurfaceMesh && type != AcDb::kBezierSurfaceMesh)
        return Acad::eInvalidInput;
    type_ = type;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::setMSurfaceDensity(Adesk::Int16 density) {
    ACDB_WRITE_CHECK();
    if (!validDensity(density)) return Acad::eInvalidInput;
    mDensity_ = density;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::setNSurfaceDensity(Adesk::Int16 density) {
    ACDB_WRITE_CHECK();
    if (!validDensity(density)) return Acad::eInvalidInput;
    nDensity_ = density;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::appendVertex(AcDbPolygonMeshVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}

Acad::ErrorStatus AcDbPolygonMesh::appendVertex(AcDbObjectId& id, AcDbPolygonMeshVertex* vertex) {
    id = AcDbObjectId::kNull;
    if (vertices_.length() >= mSize_ * nSize_) return Acad::eInvalidIndex;
    return vertices_.append(this, vertex, id);
}

AcDbObjectIterator* AcDbPolygonMesh::vertexIterator() const {
    auto* it = new AcDbObjectIterator(&vertices_);
    it->start();
    return it;
}

Acad::ErrorStatus AcDbPolygonMesh::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    vertices_.transformPositions(xform);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    vertices_.addPositions(extents);
    return extents.isEmpty() ? Acad::eInvalidExtents : Acad::eOk;
}
