#include "geometry_helpers.h"

#include <arx/arx.h>
#include <qel/qel.h>

namespace {

AcGeVector3d edge(const double* p, int from, int to) {
    return AcGeVector3d(p[3 * to] - p[3 * from], p[3 * to + 1] - p[3 * from + 1],
                        p[3 * to + 2] - p[3 * from + 2]);
}

// Opposite edges a and b: both of some length, and parallel by the dot product of unit edges.
bool parallelPair(AcGeVector3d a, AcGeVector3d b) {
    if (a.length() == 0.0 || b.length() == 0.0) return false;
    a.normalize();
    b.normalize();
    const double dot = a.dotProduct(b);
    return (dot < 0 ? -dot : dot) >= 0.99999;
}

} // namespace

bool QelIsParallelogram(const double* p, int pointCount) {
    if (pointCount != 4) return false;
    return parallelPair(edge(p, 0, 1), edge(p, 2, 3)) && parallelPair(edge(p, 1, 2), edge(p, 3, 0));
}

void QelPoseFromFrame(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                      const AcGeVector3d& yAxis, double translation[3], double rotation[4]) {
    AcGeVector3d z = xAxis.crossProduct(yAxis);
    z.normalize(AcGeContext::gTol);
    AcGeMatrix3d m;
    m.setToAlignCoordSys(AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis,
                         AcGeVector3d::kZAxis, origin, xAxis, yAxis, z);
    double rows[9];
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            rows[3 * r + c] = m(r, c);
    rotation_from_affine(rotation, rows);
    translation[0] = origin.x;
    translation[1] = origin.y;
    translation[2] = origin.z;
}

bool QelCurrentUcsPose(double translation[3], double rotation[4]) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    if (!db) return false;
    QelPoseFromFrame(db->ucsorg(), db->ucsxdir(), db->ucsydir(), translation, rotation);
    return true;
}
