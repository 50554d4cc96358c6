// RectangularBox: a base face of the face list, its two edges, the height above it.
#include "writers/face_list.h"
#include "writers/patch_writers.h"
#include "writers/pose.h"

#include "records/member_record.h"

#include <cmath>

bool QelWriteRectangularBox(QelObject* target, const AcDbObjectId& id, const resbuf* faceList) {
    QelExtrusionFit fit;
    if (!QelParseFaceList(faceList, fit) || fit.outline.size() < 3) return false;
    // The frame stands at corner 1 with corners 0 and 2 on its axes.
    const AcGePoint3d p0 = fit.frame.toLocal(fit.outline[0]);
    const AcGePoint3d p2 = fit.frame.toLocal(fit.outline[2]);
    const bool zeroOnX = std::fabs(p0.x) > 1e-5;
    const double depth = zeroOnX ? std::fabs(p0.x) : std::fabs(p2.x);
    const double width = zeroOnX ? std::fabs(p2.y) : std::fabs(p0.y);
    double rotation[4];
    fit.frame.rotation(rotation);
    QelWritePose(target, rotation, fit.frame.toWorld(AcGePoint3d(depth / 2, width / 2, 0.0)));
    double height = fit.height;
    if (height < 1e-5) {
        QelMemberRecord tag;
        if (tag.Load(id)) height = tag.length;
    }
    QelSetReal(target, "height", QelLengthOut(height));
    QelSetReal(target, "width", QelLengthOut(width));
    QelSetReal(target, "depth", QelLengthOut(depth));
    return true;
}
