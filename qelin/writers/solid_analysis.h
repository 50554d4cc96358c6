// What the solid writers read off the host's geometry: the circles that bound a solid of
// revolution, the cone or cylinder they make, and the tagged members of a fitting's group.
#pragma once

#include <arx/arx.h>

#include <vector>

class AcDb3dSolid;

// A circle found on the solid's edges.
struct QelEdgeCircle {
    AcGePoint3d centre;
    AcGeVector3d normal;
    double radius = 0.0;
};

// The pieces of a solid's explode: at most two circles of its curved faces, the flat faces
// (regions) and everything else (the curved faces among them).
struct QelSolidEdges {
    int circles = 0;
    int regions = 0;
    int others = 0;
    QelEdgeCircle circle[2];
};

// False for an entity that isn't a solid or that the host will not explode.
bool solidEdgeInfo(const AcDbObjectId& id, QelSolidEdges& edges);

// A cone, frustum or cylinder: radius0 at the base, radius1 at height along the axis; xAxis is
// square to the axis. Lengths in drawing units.
struct QelConeFit {
    double radius0 = 0.0;
    double radius1 = 0.0;
    double height = 0.0;
    AcGePoint3d base;
    AcGeVector3d axis = AcGeVector3d::kZAxis;
    AcGeVector3d xAxis = AcGeVector3d::kXAxis;
    AcGePoint3d farEnd() const { return base + axis * height; }
};

// Two parallel flat discs on one axis with one curved face between them, or one disc and the
// point of a cone (its height then from the volume). False for any other solid.
bool coneFromSolid(const AcDbObjectId& id, QelConeFit& fit);

// A cylinder: a block reference whose first piece is a circle with thickness, else a solid
// that coneFromSolid reads. With equalWithin above 0 the radii must differ by less than that
// fraction of radius0; radius1 is then radius0.
bool cylinderFromEntity(const AcDbObjectId& id, QelConeFit& fit, double equalWithin);

// Area, volume, centroid and principal axes of a solid.
struct QelSolidMeasure {
    bool hasArea = false;
    bool hasMass = false;
    double area = 0.0;
    double volume = 0.0;
    AcGePoint3d centroid;
    AcGeVector3d axes[3];
};

// Measures the solid, flagging what the host gives; true when it gives both.
bool QelMeasureSolid(const AcDb3dSolid& solid, QelSolidMeasure& out);
// Measures the entity as above; false only when it is no solid.
bool QelMeasureSolid(const AcDbObjectId& id, QelSolidMeasure& out);

// A piece of an assembled fitting: its entity and its record.
struct QelFittingPart {
    AcDbObjectId id;
    int partIndex = 0;
};
// The members of the entity's group tagged as the same fitting (code), in the group's order;
// annotations, caps and centre lines are left out.
std::vector<QelFittingPart> QelFittingParts(const AcDbObjectId& id, int code);
