// The face list that the companion module gives for a solid or a region bounded by planes: read
// as an extrusion, chained into one outline, or written face by face as patches.
#pragma once

#include "writers/frame.h"

#include <arx/arx.h>
#include <qel/qel.h>

#include <vector>

// An extrusion found in a face list: the base face, how far and which way it was pushed.
struct QelExtrusionFit {
    std::vector<AcGePoint3d> outline; // the base face's corners, world, drawing units
    double height = 0.0;              // along the frame's Z, drawing units
    AcGeVector3d direction;           // in the frame
    QelFrame frame;                   // at the base face's second corner
};

// The faces of a list, each its run of points; false for a list that doesn't start with the face
// count or whose points run out.
bool QelReadFaceList(const resbuf* list, std::vector<std::vector<AcGePoint3d>>& faces);

// Finds a base face with its twin and parallelogram sides; false when none qualifies.
bool QelParseFaceList(const resbuf* list, QelExtrusionFit& fit);

// Every point of every face, in order: a region's loops as one outline.
bool QelRegionOutline(const resbuf* list, std::vector<AcGePoint3d>& points);

// The corners that place a flat polygon: the first point, the next one off it, and one further
// round that isn't on the line of the two. False when there is no such third.
bool QelPolygonFrame(const std::vector<AcGePoint3d>& points, QelFrame& frame);

// Each face a "PlanarPatch" written at once, without appearance; the numbers written.
std::vector<int> QelWriteFacesAsPatches(const resbuf* list, QelWriter& writer);
