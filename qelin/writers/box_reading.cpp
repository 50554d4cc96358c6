#include "writers/box_reading.h"

#include "writers/exploded.h"

#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kLengthTol = 1e-5;

struct Edge {
    AcGePoint3d start, end;
};

// The four straight edges of a face, or false.
bool fourLines(const AcDbEntity* piece, std::vector<Edge>& edges) {
    const AcDbRegion* region = AcDbRegion::cast(piece);
    if (!region) return false;
    const QelExploded lines(*region);
    if (!lines.ok() || lines.size() != 4) return false;
    for (int i = 0; i < lines.size(); ++i) {
        const AcDbLine* line = AcDbLine::cast(lines[i]);
        if (!line) return false;
        edges.push_back({line->startPoint(), line->endPoint()});
    }
    return true;
}

// A frame at origin with X towards onX and Y in the plane of the three points, towards onY;
// false when the offsets are too short or in one line.
bool frameOfThreePoints(const AcGePoint3d& origin, const AcGePoint3d& onX, const AcGePoint3d& onY,
                        AcGeVector3d axes[3]) {
    const AcGeVector3d toX = onX - origin, toY = onY - origin;
    if (toX.length() < kLengthTol || toY.length() < kLengthTol) return false;
    AcGeVector3d z = toX.crossProduct(toY);
    if (z.length() < kLengthTol) return false;
    axes[2] = z.normalize();
    axes[0] = toX.normal();
    axes[1] = axes[2].crossProduct(axes[0]).normalize();
    return true;
}

// The first length seen above the tolerance stands for its axis; later ones must agree.
bool agrees(double& known, double value) {
    if (value <= kLengthTol) return true;
    if (known == 0.0) {
        known = value;
        return true;
    }
    return std::fabs(known - value) <= kLengthTol;
}

} // namespace

bool QelReadBoxFromRegions(const AcDb3dSolid& solid, QelBoxReading& box) {
    const QelExploded faces(solid);
    if (!faces.ok() || faces.size() != 6) return false;
    std::vector<Edge> edges;
    for (int i = 0; i < faces.size(); ++i)
        if (!fourLines(faces[i], edges)) return false;

    // The first face's first edge gives X; a corner of that face off the edge's line gives Y.
    const AcGePoint3d origin = edges[0].start, onX = edges[0].end;
    bool framed = false;
    for (int i = 1; i < 4 && !framed; ++i)
        for (const AcGePoint3d& onY : {edges[i].start, edges[i].end})
            if (!framed) framed = frameOfThreePoints(origin, onX, onY, box.axes);
    if (!framed) return false;

    const AcGeMatrix3d toWorld = AcGeMatrix3d::alignCoordSys(
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
        origin, box.axes[0], box.axes[1], box.axes[2]);
    const AcGeMatrix3d toBox = toWorld.inverse();
    double low[3], high[3];
    std::fill(low, low + 3, std::numeric_limits<double>::max());
    std::fill(high, high + 3, std::numeric_limits<double>::lowest());
    for (const Edge& edge : edges) {
        const AcGePoint3d a = toBox * edge.start, b = toBox * edge.end;
        for (int k = 0; k < 3; ++k) {
            if (!agrees(box.lengths[k], std::fabs(b[k] - a[k]))) return false;
            low[k] = std::min({low[k], a[k], b[k]});
            high[k] = std::max({high[k], a[k], b[k]});
        }
    }
    box.centre = toWorld * AcGePoint3d((low[0] + high[0]) / 2, (low[1] + high[1]) / 2,
                                       (low[2] + high[2]) / 2);
    return true;
}

bool QelReadBoxFromRegions(const AcDbObjectId& id, QelBoxReading& box) {
    AcDb3dSolid* solid = nullptr;
    if (acdbOpenObject(solid, id, AcDb::kForRead) != Acad::eOk) return false;
    const bool read = QelReadBoxFromRegions(*solid, box);
    solid->close();
    return read;
}
