// LinePatch: a line with thickness, the wall it sweeps as a PlanarPatch of four corners.
#include "writers/frame.h"
#include "writers/patch_writers.h"
#include "writers/pose.h"

#include <arx/aced.h>

bool QelWriteLinePatch(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbLine* line = nullptr;
    if (acdbOpenObject(line, id, AcDb::kForRead) != Acad::eOk) return false;
    const AcGePoint3d start = line->startPoint(), end = line->endPoint();
    AcGeVector3d normal = line->normal();
    const double thickness = line->thickness();
    line->close();
    if (normal.length() > 0.0) normal.normalize();
    const AcGeVector3d up = normal * thickness;
    const AcGePoint3d corners[4] = {start, end, end + up, start + up};
    QelFrame frame;
    if (!QelFrameFromThreePoints(start, end, start + up, frame)) return false;
    double vertices[10];
    for (int i = 0; i < 5; ++i) {
        const AcGePoint3d local = frame.toLocal(corners[i % 4]);
        vertices[2 * i] = QelLengthOut(local.x);
        vertices[2 * i + 1] = QelLengthOut(local.y);
    }
    QelWriteFramePose(target, frame);
    target->AddOrReplaceParam(QelParam::Create("vertices", vertices, 10));
    return true;
}
