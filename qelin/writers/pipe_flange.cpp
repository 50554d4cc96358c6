// PipeFlange: the disc and the hub measured; the pose at the end of the flange away from the
// pipe, its Z axis towards the pipe's far end.
#include "objectfile/type_codes.h"
#include "records/member_record.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <algorithm>
#include <cmath>

namespace {

// Where the flange starts and where the pipe ends, from the two ends of each; false when the
// pipe runs through the flange.
bool flangeEnds(const QelConeFit& disc, const QelConeFit& pipe, AcGePoint3d& origin,
                AcGePoint3d& end) {
    const AcGePoint3d fb = disc.base, ff = disc.farEnd(), pb = pipe.base, pf = pipe.farEnd();
    const AcGeVector3d u = ff - fb;
    const double d1 = (pb - fb).dotProduct(u), d2 = (pf - fb).dotProduct(u);
    const double e1 = (pb - ff).dotProduct(-u), e2 = (pf - ff).dotProduct(-u);
    if (d1 > 0.0 && d2 > 0.0) {
        origin = fb;
        end = d1 > d2 ? pb : pf;
    } else if (d1 < 0.0 && d2 < 0.0) {
        origin = ff;
        end = d2 > d1 ? pb : pf;
    } else if (e1 > 0.0 && e2 > 0.0) {
        origin = ff;
        end = e1 > e2 ? pb : pf;
    } else if (e1 < 0.0 && e2 < 0.0) {
        origin = fb;
        end = e2 > e1 ? pb : pf;
    } else {
        return false;
    }
    return true;
}

} // namespace

bool QelWritePipeFlange(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                        const AcDbObjectId& id) {
    std::vector<QelFittingPart> parts = QelFittingParts(id, QelCode::PipeFlange);
    if (parts.empty() || parts.size() > 2) return false;
    std::stable_sort(
        parts.begin(), parts.end(),
        [](const QelFittingPart& a, const QelFittingPart& b) { return a.partIndex < b.partIndex; });
    QelConeFit disc;
    if (!cylinderFromEntity(parts[0].id, disc, 0.01)) return false;
    double flangeRadius = disc.radius0, flangeHeight = disc.height;
    // A flange without a hub is its disc alone.
    double radius = flangeRadius, height = flangeHeight;
    AcGePoint3d origin = disc.base, end = disc.farEnd();
    if (parts.size() == 2) {
        QelConeFit pipe;
        if (!coneFromSolid(parts[1].id, pipe) || !flangeEnds(disc, pipe, origin, end)) return false;
        radius = std::min(pipe.radius0, pipe.radius1);
        height = origin.distanceTo(end);
    }
    if (radius < 1e-5 || height < 1e-5 || flangeRadius < 1e-5 || flangeHeight < 1e-5) return false;
    flangeHeight = std::min(flangeHeight, height);
    flangeRadius = std::max(flangeRadius, radius);
    int type = int(parts.size());
    // The creator keeps the flange's type in the tag.
    QelMemberRecord tag;
    if (tag.Load(parts[0].id) && tag.radius1 > 0.0) type = int(std::trunc(tag.radius1));
    double rotation[4];
    QelRotationFromAxes(origin, (end - origin).normal(), disc.xAxis, rotation);
    QelWritePose(target, rotation, origin);
    QelSetReal(target, "radius", QelLengthOut(radius));
    QelSetReal(target, "height", QelLengthOut(height));
    QelSetReal(target, "flangeradius", QelLengthOut(flangeRadius));
    QelSetReal(target, "flangeheight", QelLengthOut(flangeHeight));
    target->AddOrReplaceParam(QelParam::Create("type", type));
    return true;
}
