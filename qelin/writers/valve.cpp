// Valve: its sizes from the tags of its parts, its pose from where the cones meet and which way
// the stem points.
#include "objectfile/type_codes.h"
#include "records/member_record.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <algorithm>

namespace {

struct ValveRead {
    double valveLength = 0.0;
    double coneRadius = 0.0;
    double stemLength = 0.0;
    double stemThickness = 0.0;
    double handwheelOffset = 0.0;
    double handwheelRadius = 0.0;
    double handwheelThickness = 0.0;
    AcGePoint3d origin;
    AcGeVector3d coneAxis = AcGeVector3d::kZAxis;
    AcGeVector3d side = AcGeVector3d::kXAxis;
};

void readPart(const QelFittingPart& part, ValveRead& v) {
    QelMemberRecord tag;
    if (!tag.Load(part.id)) return;
    switch (part.partIndex) {
    case 0:
    case 1: {
        v.valveLength = tag.length;
        v.coneRadius = tag.radius0;
        QelConeFit cone;
        if (coneFromSolid(part.id, cone)) {
            // The cones meet at their points, the valve's centre.
            v.origin = cone.farEnd();
            v.coneAxis = cone.axis;
        }
        break;
    }
    case 2:
        v.handwheelOffset = tag.handwheelOffset;
        v.handwheelRadius = tag.handwheelRadius;
        v.handwheelThickness = tag.handwheelThickness;
        break;
    case 3: {
        v.stemLength = tag.stemLength;
        v.stemThickness = tag.stemThickness;
        QelConeFit stem;
        if (cylinderFromEntity(part.id, stem, 0.0)) {
            // The stem points away from the centre.
            AcGeVector3d stemAxis = stem.axis;
            if ((stem.base - v.origin).length() > 0.0001) stemAxis = -stemAxis;
            v.side = stemAxis.crossProduct(v.coneAxis);
        }
        break;
    }
    default:
        break;
    }
}

} // namespace

bool QelWriteValve(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    std::vector<QelFittingPart> parts = QelFittingParts(id, QelCode::Valve);
    if (parts.empty()) return false;
    // The stem is read against the centre the cones give.
    std::stable_sort(parts.begin(), parts.end(),
                     [](const QelFittingPart& a, const QelFittingPart& b) {
                         return (a.partIndex == 3) < (b.partIndex == 3);
                     });
    ValveRead v;
    for (const QelFittingPart& part : parts)
        readPart(part, v);
    double rotation[4];
    QelRotationFromAxes(v.origin, v.coneAxis.normal(), v.side.normal(), rotation);
    // A valve's pose is never left out, not even at the origin: readers require it.
    QelWriteWholePose(target, rotation, v.origin);
    QelSetReal(target, "coneRadius", QelLengthOut(v.coneRadius));
    QelSetReal(target, "valveLength", QelLengthOut(v.valveLength));
    QelSetReal(target, "stemLength", QelLengthOut(v.stemLength));
    QelSetReal(target, "handwheelRadius", QelLengthOut(v.handwheelRadius));
    QelSetReal(target, "handwheelOffset", QelLengthOut(v.handwheelOffset));
    QelObject* more = QelObject::Create("VelmoraParam");
    more->AddOrReplaceParam(QelParam::Create("stemThickness", QelLengthOut(v.stemThickness)));
    more->AddOrReplaceParam(
        QelParam::Create("handwheelThickness", QelLengthOut(v.handwheelThickness)));
    target->AddOrReplaceParam(QelParam::Create("velmoraParam", more));
    more->UnRef();
    return true;
}
