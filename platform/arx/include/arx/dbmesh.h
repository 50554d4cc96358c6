// Meshes: polyface meshes (vertices and face records) and polygon meshes (an m by n grid).
#pragma once

#include "arx/dbpoly.h"

class AcDbPolyFaceMeshVertex : public AcDbPositionVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyFaceMeshVertex);
    ACDB_CLONE(AcDbPolyFaceMeshVertex)
    AcDbPolyFaceMeshVertex() = default;
    explicit AcDbPolyFaceMeshVertex(const AcGePoint3d& position) : AcDbPositionVertex(position) {}
};

// A face of up to four vertices, numbered from 1; a negative number hides the edge that
// starts at that vertex, 0 marks an unused place.
class AcDbFaceRecord : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDbFaceRecord);
    ACDB_CLONE(AcDbFaceRecord)
    AcDbFaceRecord(Adesk::Int16 vtx0 = 0, Adesk::Int16 vtx1 = 0, Adesk::Int16 vtx2 = 0,
                   Adesk::Int16 vtx3 = 0);
    // Places 0 to 3; eInvalidIndex beyond.
    Acad::ErrorStatus getVertexAt(Adesk::UInt16 faceIndex, Adesk::Int16& vertexIndex) const;
    Acad::ErrorStatus setVertexAt(Adesk::UInt16 faceIndex, Adesk::Int16 vertexIndex);
    Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 faceIndex, bool& visible) const;
    Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 faceIndex);
    Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 faceIndex);
    // A face record has no geometry of its own.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d&) override { return Acad::eOk; }

private:
    Adesk::Int16 vertices_[4];
};

class AcDbPolyFaceMesh : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyFaceMesh);
    ACDB_CLONE(AcDbPolyFaceMesh)
    AcDbPolyFaceMesh() = default;

    // eVertexAfterFace once a face record is in.
    Acad::ErrorStatus appendVertex(AcDbPolyFaceMeshVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDbPolyFaceMeshVertex* vertex);
    // eInvalidMeshVertexIndex (56) when a vertex number is beyond the mesh's vertices, or the
    // record uses fewer than one; the record is then not taken.
    Acad::ErrorStatus appendFaceRecord(AcDbFaceRecord* face);
    Acad::ErrorStatus appendFaceRecord(AcDbObjectId& id, AcDbFaceRecord* face);
    Adesk::Int16 numVertices() const { return numVertices_; }
    Adesk::Int16 numFaces() const { return numFaces_; }
    // Vertices first, then face records.
    AcDbObjectIterator* vertexIterator() const;

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // eInvalidExtents without vertices.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // One AcDbFace per face record, hidden edges kept.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

protected:
    void addedToDatabase() override { vertices_.addToDatabase(this); }

private:
    AcDbVertexList vertices_;
    Adesk::Int16 numVertices_ = 0, numFaces_ = 0;
};

class AcDbPolygonMeshVertex : public AcDbPositionVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolygonMeshVertex);
    ACDB_CLONE(AcDbPolygonMeshVertex)
    AcDbPolygonMeshVertex() = default;
    explicit AcDbPolygonMeshVertex(const AcGePoint3d& position) : AcDbPositionVertex(position) {}
    AcDb::PolyMeshVertexType vertexType() const { return type_; }

private:
    AcDb::PolyMeshVertexType type_ = AcDb::kPolyMeshVertex;
};

// Vertices row by row: m rows of n. Smoothing (type and densities) is kept and written; the
// vertices are always the control grid.
class AcDbPolygonMesh : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolygonMesh);
    ACDB_CLONE(AcDbPolygonMesh)
    AcDbPolygonMesh() = default;
    // Sizes from 2 to 256 and m times n vertices, else an empty mesh.
    AcDbPolygonMesh(AcDb::PolyMeshType type, Adesk::Int16 mSize, Adesk::Int16 nSize,
                    const AcGePoint3dArray& vertices, bool mClosed = true, bool nClosed = true);

    Adesk::Int16 mSize() const { return mSize_; }
    Adesk::Int16 nSize() const { return nSize_; }
    // eInvalidInput outside 2 to 256, or once vertices are in.
    Acad::ErrorStatus setMSize(Adesk::Int16 size);
    Acad::ErrorStatus setNSize(Adesk::Int16 size);
    bool isMClosed() const { return mClosed_; }
    bool isNClosed() const { return nClosed_; }
    Acad::ErrorStatus makeMClosed();
    Acad::ErrorStatus makeMOpen();
    Acad::ErrorStatus makeNClosed();
    Acad::ErrorStatus makeNOpen();
    AcDb::PolyMeshType polyMeshType() const { return type_; }
    Acad::ErrorStatus setPolyMeshType(AcDb::PolyMeshType type);
    Adesk::Int16 mSurfaceDensity() const { return mDensity_; }
    Adesk::Int16 nSurfaceDensity() const { return nDensity_; }
    // eInvalidInput outside 3 to 200.
    Acad::ErrorStatus setMSurfaceDensity(Adesk::Int16 density);
    Acad::ErrorStatus setNSurfaceDensity(Adesk::Int16 density);
    // eInvalidIndex when the grid is full.
    Acad::ErrorStatus appendVertex(AcDbPolygonMeshVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDbPolygonMeshVertex* vertex);
    AcDbObjectIterator* vertexIterator() const;

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

protected:
    void addedToDatabase() override { vertices_.addToDatabase(this); }

private:
    AcDbVertexList vertices_;
    AcDb::PolyMeshType type_ = AcDb::kSimpleMesh;
    Adesk::Int16 mSize_ = 0, nSize_ = 0, mDensity_ = 6, nDensity_ = 6;
    bool mClosed_ = false, nClosed_ = false;
};
