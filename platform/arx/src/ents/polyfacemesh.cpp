#include <cstdlib>
#include <memory>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbmesh.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbPolyFaceMesh, AcDbEntity, ACRX_T("POLYLINE"))
ACRX_DEFINE_MEMBERS(AcDbPolyFaceMeshVertex, AcDbVertex, ACRX_T("VERTEX"))
ACRX_DEFINE_MEMBERS(AcDbFaceRecord, AcDbVertex, ACRX_T("VERTEX"))

namespace {
// Flags of the drawing format: 64 a polyface mesh, its vertices 64 + 128, faces 128.
template <int Flags>
int fixedFlags(const AcDbObject&) {
    return Flags;
}
template <int Flags>
bool acceptFlags(AcDbObject&, const int& flags) {
    return (flags & Flags) == Flags;
}
AcGePoint3d origin(const AcDbObject&) {
    return AcGePoint3d::kOrigin;
}
bool keepOrigin(AcDbObject&, const AcGePoint3d&) {
    return true;
}
// Counts follow from the vertices and faces themselves.
int vertexCount(const AcDbPolyFaceMesh& m) {
    return m.numVertices();
}
int faceCount(const AcDbPolyFaceMesh& m) {
    return m.numFaces();
}
bool acceptCount(AcDbPolyFaceMesh&, const int& n) {
    return n >= 0;
}
template <Adesk::UInt16 I>
int faceVertex(const AcDbFaceRecord& f) {
    Adesk::Int16 v = 0;
    f.getVertexAt(I, v);
    return v;
}
template <Adesk::UInt16 I>
Acad::ErrorStatus setFaceVertex(AcDbFaceRecord& f, const int& v) {
    return f.setVertexAt(I, Adesk::Int16(v));
}
const AcDbDxfField kMeshFields[] = {
    dxf::marker(ACRX_T("AcDbPolyFaceMesh")),
    dxf::value<AcDbPolyFaceMesh, origin, keepOrigin>(10),
    dxf::value<AcDbPolyFaceMesh, fixedFlags<64>, acceptFlags<64>>(70),
    dxf::value<AcDbPolyFaceMesh, vertexCount, acceptCount>(71),
    dxf::value<AcDbPolyFaceMesh, faceCount, acceptCount>(72),
};
const AcDbDxfField kVertexFields[] = {
    dxf::marker(ACRX_T("AcDbVertex")),
    dxf::marker(ACRX_T("AcDbPolyFaceMeshVertex")),
    dxf::value<AcDbPolyFaceMeshVertex, &AcDbPositionVertex::position,
               &AcDbPositionVertex::setPosition>(10),
    dxf::value<AcDbPolyFaceMeshVertex, fixedFlags<192>, acceptFlags<192>>(70),
};
const AcDbDxfField kFaceFields[] = {
    dxf::marker(ACRX_T("AcDbVertex")),
    dxf::marker(ACRX_T("AcDbFaceRecord")),
    dxf::value<AcDbFaceRecord, origin, keepOrigin>(10),
    dxf::value<AcDbFaceRecord, fixedFlags<128>, acceptFlags<128>>(70),
    dxf::value<AcDbFaceRecord, faceVertex<0>, setFaceVertex<0>>(71),
    dxf::value<AcDbFaceRecord, faceVertex<1>, setFaceVertex<1>>(72),
    dxf::value<AcDbFaceRecord, faceVertex<2>, setFaceVertex<2>>(73),
    dxf::value<AcDbFaceRecord, faceVertex<3>, setFaceVertex<3>>(74, AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDbPolyFaceMesh, "POLYLINE", kMeshFields)
ACDB_DXF_KIND(AcDbPolyFaceMeshVertex, "VERTEX", kVertexFields)
ACDB_DXF_KIND(AcDbFaceRecord, "VERTEX", kFaceFields)

AcDbFaceRecord::AcDbFaceRecord(Adesk::Int16 vtx0, Adesk::Int16 vtx1, Adesk::Int16 vtx2,
                               Adesk::Int16 vtx3)
    : vertices_{vtx0, vtx1, vtx2, vtx3} {}

Acad::ErrorStatus AcDbFaceRecord::getVertexAt(Adesk::UInt16 faceIndex,
                                              Adesk::Int16& vertexIndex) const {
    if (faceIndex > 3) return Acad::eInvalidIndex;
    vertexIndex = vertices_[faceIndex];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFaceRecord::setVertexAt(Adesk::UInt16 faceIndex, Adesk::Int16 vertexIndex) {
    ACDB_WRITE_CHECK();
    if (faceIndex > 3) return Acad::eInvalidIndex;
    vertices_[faceIndex] = vertexIndex;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFaceRecord::isEdgeVisibleAt(Adesk::UInt16 faceIndex, bool& visible) const {
    if (faceIndex > 3) return Acad::eInvalidIndex;
    visible = vertices_[faceIndex] >= 0;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFaceRecord::makeEdgeInvisibleAt(Adesk::UInt16 faceIndex) {
    ACDB_WRITE_CHECK();
    if (faceIndex > 3) return Acad::eInvalidIndex;
    vertices_[faceIndex] = Adesk::Int16(-std::abs(vertices_[faceIndex]));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFaceRecord::makeEdgeVisibleAt(Adesk::UInt16 faceIndex) {
    ACDB_WRITE_CHECK();
    if (faceIndex > 3) return Acad::eInvalidIndex;
    vertices_[faceIndex] = Adesk::Int16(std::abs(vertices_[faceIndex]));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbPolyFaceMeshVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbObjectId& id, AcDbPolyFaceMeshVertex* vertex) {
    id = AcDbObjectId::kNull;
    if (numFaces_ > 0) return Acad::eVertexAfterFace;
    if (numVertices_ == 32767) return Acad::eInvalidIndex;
    Acad::ErrorStatus es = vertices_.append(this, vertex, id);
    if (es == Acad::eOk) ++numVertices_;
    return es;
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbFaceRecord* face) {
    AcDbObjectId id;
    return appendFaceRecord(id, face);
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbObjectId& id, AcDbFaceRecord* face) {
    id = AcDbObjectId::kNull;
    if (face == nullptr) return Acad::eNullObjectPointer;
    int used = 0;
    for (Adesk::UInt16 i = 0; i < 4; ++i) {
        Adesk::Int16 v = 0;
        face->getVertexAt(i, v);
        if (std::abs(v) > numVertices_) return Acad::eInvalidMeshVertexIndex;
        if (v != 0) ++used;
    }
    if (used == 0) return Acad::eInvalidMeshVertexIndex;
    if (numFaces_ == 32767) return Acad::eInvalidIndex;
    Acad::ErrorStatus es = vertices_.append(this, face, id);
    if (es == Acad::eOk) ++numFaces_;
    return es;
}

AcDbObjectIterator* AcDbPolyFaceMesh::vertexIterator() const {
    auto* it = new AcDbObjectIterator(&vertices_);
    it->start();
    return it;
}

Acad::ErrorStatus AcDbPolyFaceMesh::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    vertices_.transformPositions(xform);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyFaceMesh::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    vertices_.addPositions(extents);
    return extents.isEmpty() ? Acad::eInvalidExtents : Acad::eOk;
}

Acad::ErrorStatus AcDbPolyFaceMesh::explode(AcDbVoidPtrArray& entities) const {
    const AcGePoint3dArray points = vertices_.positions();
    for (int i = numVertices_; i < vertices_.length(); ++i) {
        const auto* face = AcDbFaceRecord::cast(vertices_.at(i));
        if (face == nullptr || vertices_.isErasedAt(i)) continue;
        AcGePoint3d corners[4];
        bool visible[4];
        int n = 0;
        for (Adesk::UInt16 k = 0; k < 4; ++k) {
            Adesk::Int16 v = 0;
            face->getVertexAt(k, v);
            if (v == 0 || std::abs(v) > points.length()) continue;
            corners[n] = points[std::abs(v) - 1];
            visible[n++] = v > 0;
        }
        if (n < 3) continue;
        if (n == 3) {
            corners[3] = corners[2];
            visible[3] = true;
        }
        auto* piece = new AcDbFace(corners[0], corners[1], corners[2], corners[3], visible[0],
                                   visible[1], visible[2], visible[3]);
        copyPropertiesTo(piece);
        if (!face->entityColor().isByLayer()) piece->setColor(face->color());
        entities.append(piece);
    }
    return Acad::eOk;
}
