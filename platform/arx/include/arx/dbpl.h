// The lightweight polyline: 2-D vertices with bulges and widths in the plane of its normal.
#pragma once

#include <vector>

#include "arx/dbents.h"

class AcDbPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyline);
    ACDB_CLONE(AcDbPolyline)
    enum SegType { kLine = 0, kArc = 1, kCoincident = 2, kPoint = 3, kEmpty = 4 };

    AcDbPolyline() = default;
    explicit AcDbPolyline(unsigned int numVerts) { vertices_.reserve(numVerts); }

    // Inserts before index (index == numVerts appends). Widths of -1 take the constant width.
    Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge = 0.0,
                                  double startWidth = -1.0, double endWidth = -1.0);
    Acad::ErrorStatus removeVertexAt(unsigned int index);
    unsigned int numVerts() const { return unsigned(vertices_.size()); }
    // World point of a vertex; eInvalidIndex beyond the last.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& point) const;
    // Point in the polyline's own plane.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& point) const;
    Acad::ErrorStatus setPointAt(unsigned int index, const AcGePoint2d& point);
    // Tangent of a quarter of the segment's included angle; positive turns counter-clockwise.
    Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
    Acad::ErrorStatus setBulgeAt(unsigned int index, double bulge);
    Acad::ErrorStatus getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const;
    Acad::ErrorStatus setWidthsAt(unsigned int index, double startWidth, double endWidth);
    Acad::ErrorStatus getConstantWidth(double& width) const;
    Acad::ErrorStatus setConstantWidth(double width);
    // Segment from vertex index to the next (to vertex 0 when closed): kEmpty past the last
    // segment, kPoint for a lone vertex, kCoincident for equal ends.
    SegType segType(unsigned int index) const;
    // eNotApplicable unless the segment is an arc. The arc runs counter-clockwise about its
    // normal from the segment's start to its end; a clockwise bulge reverses the normal.
    Acad::ErrorStatus getArcSegAt(unsigned int index, AcGeCircArc3d& arc) const;

    bool isClosed() const override { return closed_; }
    void setClosed(bool closed);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double elevation() const { return elevation_; }
    Acad::ErrorStatus setElevation(double elevation);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);

    // eDegenerateGeometry for a polyline without vertices.
    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // eInvalidExtents for a polyline without vertices. Arcs count with their bulging sides.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // Lines and arcs, one per segment.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

    struct Vertex {
        AcGePoint2d point;
        double bulge = 0.0, startWidth = 0.0, endWidth = 0.0;
    };

private:
    AcGePoint3d toWorld(const AcGePoint2d& p) const;
    std::vector<Vertex> vertices_;
    bool closed_ = false;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    double elevation_ = 0.0, thickness_ = 0.0, constantWidth_ = 0.0;
};
