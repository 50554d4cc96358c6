#include "creators/planar_outline.h"

#include "foundation/error_report.h"
#include "objectfile/param_read.h"

#include <arx/aced.h>

bool QelReadPlanarOutline(QelObject* object, QelPlanarOutline& outline, const wchar_t* missing) {
    if (!GetPoint2dArrayParam(object, "vertices", outline.vertices, true)) {
        QelReportError(missing);
        return false;
    }
    AcGePoint2dArray holeVertices;
    QelArray<int> ends;
    const bool haveVertices = GetPoint2dArrayParam(object, "holeVertices", holeVertices, true);
    const bool haveEnds = QelReadIntArray(object, "holeVertexEndIndices", ends);
    if (!haveVertices || !haveEnds || holeVertices.isEmpty() || ends.GetCount() == 0) return true;
    std::vector<int> endList;
    for (unsigned i = 0; i < ends.GetCount(); ++i)
        endList.push_back(ends[i]);
    outline.holes = QelSplitHoles(holeVertices, endList);
    outline.hasHoles = true;
    return true;
}

std::vector<AcGePoint2dArray> QelSplitHoles(const AcGePoint2dArray& vertices,
                                            const std::vector<int>& ends) {
    std::vector<AcGePoint2dArray> holes;
    int start = 0;
    for (const int end : ends) {
        AcGePoint2dArray hole;
        for (int i = std::max(start, 0); i < end && i < vertices.length(); ++i)
            hole.append(vertices[i]);
        holes.push_back(hole);
        start = end;
    }
    return holes;
}

void QelFillPolyline(AcDbPolyline& polyline, const AcGePoint2dArray& points, int count) {
    for (int i = 0; i < count && i < points.length(); ++i)
        polyline.addVertexAt(unsigned(i), points[i], 0.0, -1.0, -1.0);
}

void QelSubtractHoles(AcDbRegion* outer, const std::vector<AcGePoint2dArray>& holes) {
    for (const AcGePoint2dArray& hole : holes) {
        AcDbPolyline polyline;
        QelFillPolyline(polyline, hole, hole.length());
        AcDbVoidPtrArray curves, regions;
        curves.append(&polyline);
        if (AcDbRegion::createFromCurves(curves, regions) != Acad::eOk) {
            acutPrintf(L"\n Warning: failed to create hole for patch.");
            continue;
        }
        for (int i = 0; i < regions.length(); ++i) {
            auto* region = static_cast<AcDbRegion*>(regions[i]);
            if (outer->booleanOper(AcDb::kBoolSubtract, region) != Acad::eOk)
                acutPrintf(L"\n Warning: failed to create hole in patch.");
            delete region;
        }
    }
}
