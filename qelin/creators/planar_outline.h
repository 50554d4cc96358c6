// The flat outlines of patches and polyline extrusions: 2-D vertices in the local XY plane, the
// holes given as one list of vertices and a list of end indices.
#pragma once

#include <arx/arx.h>
#include <arx/dbpl.h>
#include <arx/dbregion.h>
#include <qel/qel.h>

#include <vector>

// The outline and its holes as the object gives them.
struct QelPlanarOutline {
    AcGePoint2dArray vertices;
    std::vector<AcGePoint2dArray> holes;
    // True when both hole params were there and not empty.
    bool hasHoles = false;
};

// "vertices" (converted to drawing units) and the holes. When "vertices" is absent the class's
// message is reported and the result is false.
bool QelReadPlanarOutline(QelObject* object, QelPlanarOutline& outline, const wchar_t* missing);

// Hole i runs from the previous hole's end index up to, not including, ends[i]; the first starts
// at 0. An end at or below the previous one, or beyond the list, gives the vertices that exist.
std::vector<AcGePoint2dArray> QelSplitHoles(const AcGePoint2dArray& vertices,
                                            const std::vector<int>& ends);

// A polyline through the first count points with no bulge and default widths, not closed.
void QelFillPolyline(AcDbPolyline& polyline, const AcGePoint2dArray& points, int count);

// Each hole made a region and subtracted from the outer region (open for write). A hole that
// fails says so and is skipped; the others still go.
void QelSubtractHoles(AcDbRegion* outer, const std::vector<AcGePoint2dArray>& holes);
