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
    QelFrame frame;
    if (!QelFrameFromThreePoints(start, end, start + up, frame)) return false;
    QelWriteFramePose(target, frame);
    QelWriteOutline(target, frame, {start, end, end + up, start + up});
    return true;
}
