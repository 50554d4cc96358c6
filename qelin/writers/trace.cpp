// Traces: the outline as a PlanarPatch, or with thickness a PlanarPolylineExtrusion; the only
// flat entity taken through the export's matrix.
#include "writers/frame.h"
#include "writers/patch_writers.h"
#include "writers/pose.h"

#include <arx/aced.h>

bool QelWriteTrace(const AcGeMatrix3d& m, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbTrace* trace = nullptr;
    if (acdbOpenObject(trace, id, AcDb::kForRead) != Acad::eOk) return false;
    AcGePoint3d p[4];
    for (Adesk::UInt16 i = 0; i < 4; ++i) {
        trace->getPointAt(i, p[i]);
        p[i].transformBy(m);
    }
    const double thickness = trace->thickness();
    trace->close();
    QelFrame frame;
    if (!QelFrameFromThreePoints(p[0], p[1], p[2], frame)) {
        acutPrintf(L"\n Warning: skipping degenerate object");
        return false;
    }
    // The host keeps the corners crosswise: 0, 1, 3, 2 run round the outline.
    const AcGePoint3d round[5] = {p[0], p[1], p[3], p[2], p[0]};
    double vertices[10];
    for (int i = 0; i < 5; ++i) {
        const AcGePoint3d local = frame.toLocal(round[i]);
        vertices[2 * i] = QelLengthOut(local.x);
        vertices[2 * i + 1] = QelLengthOut(local.y);
    }
    QelWriteFramePose(target, frame);
    target->AddOrReplaceParam(QelParam::Create("vertices", vertices, 10));
    if (thickness >= QelPointTol) QelSetReal(target, "height", QelLengthOut(thickness));
    return true;
}
