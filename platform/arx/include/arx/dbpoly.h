// Polylines whose vertices are objects of their own: 2-D and 3-D polylines; also the vertex
// list that meshes share.
#pragma once

#include <vector>

#include "arx/dbents.h"

class AcDbVertex : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbVertex);

protected:
    AcDbVertex() = default;
};

class AcDb2dVertex : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDb2dVertex);
    ACDB_CLONE(AcDb2dVertex)
    AcDb2dVertex() = default;
    // Position in the polyline's own plane; its z is the elevation.
    explicit AcDb2dVertex(const AcGePoint3d& position, double bulge = 0.0, double startWidth = 0.0,
                          double endWidth = 0.0, double tangent = 0.0)
        : position_(position), bulge_(bulge), startWidth_(startWidth), endWidth_(endWidth),
          tangent_(tangent) {}

    AcGePoint3d position() const { return position_; }
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double bulge() const { return bulge_; }
    Acad::ErrorStatus setBulge(double bulge);
    double startWidth() const { return startWidth_; }
    double endWidth() const { return endWidth_; }
    Acad::ErrorStatus setStartWidth(double width);
    Acad::ErrorStatus setEndWidth(double width);
    AcDb::Vertex2dType vertexType() const { return type_; }
    Acad::ErrorStatus setVertexType(AcDb::Vertex2dType type);
    // The polyline places its vertices; alone a vertex moves in its plane.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    friend class AcDb2dPolyline;
    AcGePoint3d position_;
    double bulge_ = 0.0, startWidth_ = 0.0, endWidth_ = 0.0, tangent_ = 0.0;
    AcDb::Vertex2dType type_ = AcDb::k2dVertex;
};

// Vertices with a world position: of 3-D polylines and of both meshes. AcDbPositionVertex is
// the host's shared implementation, not a class of the interface.
class AcDbPositionVertex : public AcDbVertex {
public:
    AcGePoint3d position() const { return position_; }
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

protected:
    AcDbPositionVertex() = default;
    explicit AcDbPositionVertex(const AcGePoint3d& position) : position_(position) {}

private:
    friend class AcDbVertexList;
    AcGePoint3d position_;
};

class AcDb3dPolylineVertex : public AcDbPositionVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolylineVertex);
    ACDB_CLONE(AcDb3dPolylineVertex)
    AcDb3dPolylineVertex() = default;
    explicit AcDb3dPolylineVertex(const AcGePoint3d& position) : AcDbPositionVertex(position) {}
    AcDb::Vertex3dType vertexType() const { return type_; }
    Acad::ErrorStatus setVertexType(AcDb::Vertex3dType type);

private:
    AcDb::Vertex3dType type_ = AcDb::k3dSimpleVertex;
};

// The vertices (and face records) of a polyline or mesh. Until the owner is in a database the
// owner keeps them; then they become database objects that it owns. Host helper.
class AcDbVertexList {
public:
    AcDbVertexList() = default;
    AcDbVertexList(const AcDbVertexList& other);
    AcDbVertexList& operator=(const AcDbVertexList&) = delete;
    ~AcDbVertexList();

    // Takes the vertex. The owner must be open for write; a resident owner makes the vertex
    // resident at once, and leaves it open for write for the caller to close.
    Acad::ErrorStatus append(AcDbEntity* owner, AcDbVertex* vertex, AcDbObjectId& id);
    void addToDatabase(AcDbEntity* owner);
    int length() const;
    // The vertex at index without opening it; null for an index beyond or a vertex gone.
    AcDbVertex* at(int index) const;
    AcDbObjectId idAt(int index) const;
    bool isErasedAt(int index) const;
    // Moves every vertex with a world position; adds those positions to a box.
    void transformPositions(const AcGeMatrix3d& xform);
    void addPositions(AcDbExtents& extents) const;
    // World positions of the vertices that have one, in order.
    AcGePoint3dArray positions() const;

private:
    std::vector<AcDbVertex*> pending_;
    std::vector<AcDbStub*> resident_;
};

// Walks the vertices of a polyline or mesh in order.
class AcDbObjectIterator {
public:
    bool done() const { return index_ < 0 || index_ >= list_->length(); }
    void start(bool atEnd = false);
    void step(bool backwards = false, bool skipErasedObjects = true);
    // Null for the vertices of a polyline not yet in a database.
    AcDbObjectId objectId() const { return done() ? AcDbObjectId::kNull : list_->idAt(index_); }
    // The vertex itself, without opening it.
    AcDbEntity* entity() const { return done() ? nullptr : list_->at(index_); }

private:
    friend class AcDb2dPolyline;
    friend class AcDb3dPolyline;
    friend class AcDbPolyFaceMesh;
    friend class AcDbPolygonMesh;
    explicit AcDbObjectIterator(const AcDbVertexList* list) : list_(list) {}
    const AcDbVertexList* list_;
    int index_ = 0;
};

class AcDb2dPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDb2dPolyline);
    ACDB_CLONE(AcDb2dPolyline)
    AcDb2dPolyline() = default;
    // Vertices in the plane of the normal at the elevation; bulges, when given, one a vertex.
    AcDb2dPolyline(AcDb::Poly2dType type, const AcGePoint3dArray& vertices, double elevation = 0.0,
                   bool closed = false, double defStartWidth = 0.0, double defEndWidth = 0.0,
                   const AcGeDoubleArray* bulges = nullptr);

    Acad::ErrorStatus appendVertex(AcDb2dVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex);
    AcDbObjectIterator* vertexIterator() const;
    Acad::ErrorStatus openVertex(AcDb2dVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErased = false) const;
    // The world point of one of this polyline's vertices.
    AcGePoint3d vertexPosition(const AcDb2dVertex& vertex) const;
    AcDb::Poly2dType polyType() const { return type_; }
    Acad::ErrorStatus setPolyType(AcDb::Poly2dType type);
    bool isClosed() const override { return closed_; }
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus makeOpen();
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double elevation() const { return elevation_; }
    Acad::ErrorStatus setElevation(double elevation);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);
    double defaultStartWidth() const { return defaultStartWidth_; }
    double defaultEndWidth() const { return defaultEndWidth_; }

    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // Vertex points (bulged segments by their arcs' boxes); eInvalidExtents without vertices.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

protected:
    void addedToDatabase() override { vertices_.addToDatabase(this); }

private:
    AcDbVertexList vertices_;
    AcDb::Poly2dType type_ = AcDb::k2dSimplePoly;
    bool closed_ = false;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    double elevation_ = 0.0, thickness_ = 0.0, defaultStartWidth_ = 0.0, defaultEndWidth_ = 0.0;
};

class AcDb3dPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolyline);
    ACDB_CLONE(AcDb3dPolyline)
    AcDb3dPolyline() = default;
    AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices, bool closed = false);

    Acad::ErrorStatus appendVertex(AcDb3dPolylineVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex);
    AcDbObjectIterator* vertexIterator() const;
    Acad::ErrorStatus openVertex(AcDb3dPolylineVertex*& vertex, AcDbObjectId id,
                                 AcDb::OpenMode mode, bool openErased = false) const;
    AcDb::Poly3dType polyType() const { return type_; }
    Acad::ErrorStatus setPolyType(AcDb::Poly3dType type);
    bool isClosed() const override { return closed_; }
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus makeOpen();

    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // eInvalidExtents without vertices.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // One line per segment.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

protected:
    void addedToDatabase() override { vertices_.addToDatabase(this); }

private:
    AcDbVertexList vertices_;
    AcDb::Poly3dType type_ = AcDb::k3dSimplePoly;
    bool closed_ = false;
};
