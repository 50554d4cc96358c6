// Simple entities: lines, circles, arcs, points, texts and the four-sided ones.
#pragma once

#include "arx/dbmain.h"

#define ACDB_CLONE(CLASS)                                                                          \
    AcRxObject* clone() const override {                                                           \
        return new CLASS(*this);                                                                   \
    }

// Entities drawn in a plane with a normal and an extrusion thickness keep both.

class AcDbLine : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbLine);
    ACDB_CLONE(AcDbLine)
    AcDbLine() = default;
    AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) : start_(start), end_(end) {}

    AcGePoint3d startPoint() const { return start_; }
    Acad::ErrorStatus setStartPoint(const AcGePoint3d& point);
    AcGePoint3d endPoint() const { return end_; }
    Acad::ErrorStatus setEndPoint(const AcGePoint3d& point);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const { return normal_; }
    // eInvalidInput for a zero-length normal.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    AcGePoint3d start_, end_;
    double thickness_ = 0.0;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
};

class AcDbCircle : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbCircle);
    ACDB_CLONE(AcDbCircle)
    AcDbCircle() = default;
    AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);

    AcGePoint3d center() const { return center_; }
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const { return radius_; }
    // eInvalidInput unless positive.
    Acad::ErrorStatus setRadius(double radius);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);

    bool isClosed() const override { return true; }
    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    // Needs a transformation that scales alike in all directions: eCannotScaleNonUniformly.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    AcGePoint3d center_;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    double radius_ = 1.0;
    double thickness_ = 0.0;
};

// Angles are measured about the normal from the X axis of the normal's arbitrary-axis system.
class AcDbArc : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbArc);
    ACDB_CLONE(AcDbArc)
    AcDbArc() = default;
    AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle);
    AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
            double endAngle);

    AcGePoint3d center() const { return center_; }
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const { return radius_; }
    Acad::ErrorStatus setRadius(double radius);
    double startAngle() const { return startAngle_; }
    Acad::ErrorStatus setStartAngle(double angle);
    double endAngle() const { return endAngle_; }
    Acad::ErrorStatus setEndAngle(double angle);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);

    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    AcGePoint3d center_;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    double radius_ = 1.0;
    double startAngle_ = 0.0, endAngle_ = 0.0;
    double thickness_ = 0.0;
};

class AcDbPoint : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPoint);
    ACDB_CLONE(AcDbPoint)
    AcDbPoint() = default;
    explicit AcDbPoint(const AcGePoint3d& position) : position_(position) {}

    AcGePoint3d position() const { return position_; }
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double ecsRotation() const { return ecsRotation_; }
    Acad::ErrorStatus setEcsRotation(double rotation);

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    AcGePoint3d position_;
    double thickness_ = 0.0;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    double ecsRotation_ = 0.0;
};

class AcDbText : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbText);
    ACDB_CLONE(AcDbText)
    AcDbText() = default;
    AcDbText(const AcGePoint3d& position, const ACHAR* text,
             AcDbObjectId style = AcDbObjectId::kNull, double height = 0.0, double rotation = 0.0);

    AcGePoint3d position() const { return position_; }
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGePoint3d alignmentPoint() const { return alignment_; }
    Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& point);
    // A copy that the caller frees with acutDelString.
    ACHAR* textString() const;
    const ACHAR* textStringConst() const { return text_.c_str(); }
    Acad::ErrorStatus setTextString(const ACHAR* text);
    double height() const { return height_; }
    // eInvalidInput unless positive.
    Acad::ErrorStatus setHeight(double height);
    double rotation() const { return rotation_; }
    Acad::ErrorStatus setRotation(double rotation);
    double widthFactor() const { return widthFactor_; }
    Acad::ErrorStatus setWidthFactor(double factor);
    double oblique() const { return oblique_; }
    Acad::ErrorStatus setOblique(double angle);
    AcDb::TextHorzMode horizontalMode() const { return horizontalMode_; }
    Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
    AcDb::TextVertMode verticalMode() const { return verticalMode_; }
    Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // Without fonts, a character is taken as one height high and wide (times the width factor).
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    std::wstring text_;
    AcGePoint3d position_, alignment_;
    double height_ = 1.0, rotation_ = 0.0, widthFactor_ = 1.0, oblique_ = 0.0, thickness_ = 0.0;
    AcDb::TextHorzMode horizontalMode_ = AcDb::kTextLeft;
    AcDb::TextVertMode verticalMode_ = AcDb::kTextBase;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
};

class AcDbFace : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbFace);
    ACDB_CLONE(AcDbFace)
    AcDbFace() = default;
    AcDbFace(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2,
             const AcGePoint3d& p3, bool e0vis = true, bool e1vis = true, bool e2vis = true,
             bool e3vis = true);
    AcDbFace(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2, bool e0vis = true,
             bool e1vis = true, bool e2vis = true, bool e3vis = true);

    // Corners 0 to 3; eInvalidIndex beyond.
    Acad::ErrorStatus getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const;
    Acad::ErrorStatus setVertexAt(Adesk::UInt16 index, const AcGePoint3d& point);
    Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 index, bool& visible) const;
    Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 index);
    Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 index);
    // Flags of the four edges, bit i set when edge i is invisible.
    Adesk::Int16 invisibleEdgeFlags() const { return invisible_; }
    Acad::ErrorStatus setInvisibleEdgeFlags(Adesk::Int16 flags);

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    AcGePoint3d corners_[4];
    Adesk::Int16 invisible_ = 0;
};

// Solids and traces: four points, filled, with thickness along the normal. The corners are
// in the host's bow-tie order: 0, 1, 3, 2 around the outline. AcDbPlanarQuad is the host's
// shared implementation of the two, not a class of the interface.
class AcDbPlanarQuad : public AcDbEntity {
public:
    // Corners 0 to 3; eInvalidIndex beyond.
    Acad::ErrorStatus getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const;
    Acad::ErrorStatus setPointAt(Adesk::UInt16 index, const AcGePoint3d& point);
    double thickness() const { return thickness_; }
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

protected:
    AcDbPlanarQuad() = default;
    AcDbPlanarQuad(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2,
                   const AcGePoint3d& p3)
        : corners_{p0, p1, p2, p3} {}

private:
    AcGePoint3d corners_[4];
    double thickness_ = 0.0;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
};

class AcDbSolid : public AcDbPlanarQuad {
public:
    ACRX_DECLARE_MEMBERS(AcDbSolid);
    ACDB_CLONE(AcDbSolid)
    AcDbSolid() = default;
    AcDbSolid(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2,
              const AcGePoint3d& p3)
        : AcDbPlanarQuad(p0, p1, p2, p3) {}
    // A triangle: the third point is also the fourth.
    AcDbSolid(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2)
        : AcDbPlanarQuad(p0, p1, p2, p2) {}
};

class AcDbTrace : public AcDbPlanarQuad {
public:
    ACRX_DECLARE_MEMBERS(AcDbTrace);
    ACDB_CLONE(AcDbTrace)
    AcDbTrace() = default;
    AcDbTrace(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2,
              const AcGePoint3d& p3)
        : AcDbPlanarQuad(p0, p1, p2, p3) {}
};
