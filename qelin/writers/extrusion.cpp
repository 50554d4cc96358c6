// PlanarPolylineExtrusion: the base face of a solid's face list, how high and which way.
#include "writers/face_list.h"
#include "writers/patch_writers.h"
#include "writers/pose.h"

#include "records/member_record.h"

#include <cmath>
#include <vector>

namespace {

// The length kept in the tag, in drawing units; 0 without one.
double taggedLength(const AcDbObjectId& id) {
    QelMemberRecord tag;
    if (!tag.Load(id)) return 0.0;
    return tag.length;
}

} // namespace

bool QelWritePlanarPolylineExtrusion(QelObject* target, const AcDbObjectId& id,
                                     const resbuf* faceList) {
    QelExtrusionFit fit;
    if (!QelParseFaceList(faceList, fit) || fit.outline.size() < 3) return false;
    QelWriteOutline(target, fit.frame, fit.outline);
    double rotation[4];
    fit.frame.rotation(rotation);
    QelWritePose(target, rotation, fit.frame.origin);
    // The file's height runs along the direction; the faces give it square to the base.
    double height = fit.height;
    if (fit.direction.z != 0.0) height /= fit.direction.z;
    if (height < 1e-5) height = taggedLength(id);
    QelSetReal(target, "height", QelLengthOut(height));
    if (fit.direction != AcGeVector3d::kZAxis) {
        const double direction[3] = {fit.direction.x, fit.direction.y, fit.direction.z};
        target->AddOrReplaceParam(QelParam::Create("direction", direction, 3));
    } else {
        // Square to the base: no direction, not even the one an object read back had.
        target->DeleteParam("direction");
    }
    return true;
}
