// The section builder of the steel creators: the outline of a section, point by point in the
// local XY plane with the section's lower-left corner at the origin, as a closed polyline or as
// a region to extrude. Sizes are read from the object each time an outline is built.
#pragma once

#include <arx/arx.h>
#include <arx/dbpl.h>
#include <arx/dbregion.h>
#include <qel/qel.h>
#include <win/win.h>

// The outlines the builder knows. A tube is the rectangle with the tube's inner outline.
enum class QelSectionOutline { WideFlange, Tee, Channel, TubeInner, Angle, Rectangle };

class CCreateStdShape {
public:
    CCreateStdShape(QelObject* object, const CString& sectionType);
    virtual ~CCreateStdShape() = default;

    // Reads the sizes the outline needs and puts its points, dropping a point equal to the one
    // before it. The rectangle reads no thicknesses, and a "Square" takes its width for depth.
    void Build(QelSectionOutline outline);
    // The built points as a closed polyline coloured as the object; null below three points.
    AcDbPolyline* MakeSectionPolyline() const;
    // Builds the outline and appends its polyline to the record (open for write); the polyline
    // stays open. Null after "Error appending Polyline to database".
    AcDbPolyline* MakePolyline(QelSectionOutline outline, AcDbBlockTableRecord* record);
    // Builds the outline and makes it a region in the record, coloured as the object and left
    // open, or closed with closeRegion. Null after the outline's own message.
    AcDbRegion* MakeRegion(QelSectionOutline outline, AcDbBlockTableRecord* record,
                           bool closeRegion);

    // Sizes in drawing units. A thickness the object lacks stays 1.0, a width or depth 0.0.
    double width = 0.0;
    double depth = 0.0;
    double flangeThickness = 1.0;
    double webThickness = 1.0;
    CString sectionType;
    QelObject* object = nullptr;
    AcGePoint2d points[20];
    int pointCount = 0;
};

// The builder of an extruded member: it also keeps the length and the last entity it made.
class CCreateStdShapeExtru3D : public CCreateStdShape {
public:
    using CCreateStdShape::CCreateStdShape;

    bool lastFound = false;
    ads_name last = {0, 0};
    double length = 0.0;
};
