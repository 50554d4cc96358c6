// PipeTee: the run and the branch measured as cylinders; the pose at the middle of the run, its
// X axis along the branch.
#include "objectfile/type_codes.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <algorithm>

bool QelWritePipeTee(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    std::vector<QelFittingPart> parts = QelFittingParts(id, QelCode::PipeTee);
    if (parts.size() != 2) return false;
    // The run is part 0, the branch part 1.
    if (parts[0].partIndex > parts[1].partIndex) std::swap(parts[0], parts[1]);
    QelConeFit run, branch;
    const bool runFound = cylinderFromEntity(parts[0].id, run, 0.01);
    const bool branchFound = cylinderFromEntity(parts[1].id, branch, 0.01);
    if (!runFound || !branchFound) return false;
    double radius = run.radius0, height = run.height, branchRadius = branch.radius0;
    if (radius < 1e-5 || height < 1e-5 || branchRadius < 1e-5) return false;
    const AcGePoint3d origin = run.base + run.axis * (height / 2.0);
    // The branch reaches from the run's axis to its farther end.
    const AcGePoint3d farEnd = branch.farEnd();
    const double toBase = origin.distanceTo(branch.base), toFar = origin.distanceTo(farEnd);
    double branchHeight = std::max(toBase, toFar);
    const AcGeVector3d branchDirection =
        ((toBase > toFar ? branch.base : farEnd) - origin).normal();
    branchHeight = std::max(branchHeight, radius);
    branchRadius = std::min(branchRadius, radius);
    height = std::max(height, 2.0 * branchRadius);
    double rotation[4];
    QelRotationFromAxes(origin, run.axis, branchDirection, rotation);
    QelWritePose(target, rotation, origin);
    QelSetReal(target, "radius", QelLengthOut(radius));
    QelSetReal(target, "height", QelLengthOut(height));
    QelSetReal(target, "branchradius", QelLengthOut(branchRadius));
    QelSetReal(target, "branchheight", QelLengthOut(branchHeight));
    return true;
}
