// Cone, Sphere, Torus and RectangularBox: one solid each, built about the local origin, placed
// by the pose and the import transform, in a group of its own.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "creators/primitives.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"

#include <arx/aced.h>

#include <algorithm>

namespace {

constexpr const wchar_t* kCaught = L"\nCaught arx exception error";

AcGeMatrix3d liftBy(double height) {
    return AcGeMatrix3d::translation(AcGeVector3d(0.0, 0.0, height / 2.0));
}

// The solid placed and appended; the solid itself (closed) or null after the class's text.
AcDbEntity* placeSolid(QelObject* object, AcDb3dSolid* solid, const AcGeMatrix3d& local,
                       const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                       const QelPartTexts& texts) {
    return QelPlacePart(object, solid, local, translation, rotation, texts).isNull() ? nullptr
                                                                                     : solid;
}

// A sphere or a torus: the solid about the origin, posed, in its group, its record's length the
// (major) radius.
struct RoundKind {
    const wchar_t* noModelSpace;
    const wchar_t* appendFailed;
    int code;
    bool groupedWhenNotAppended;
};

QelCreated roundSolid(QelObject* object,
                      const std::function<Acad::ErrorStatus(AcDb3dSolid&)>& build,
                      const RoundKind& kind, double length, unsigned objIndex,
                      const CString* filePath) {
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    AcDb3dSolid* solid = QelBuildSolid(build, kCaught);
    if (!solid) return QelCreated::Failed;
    AcDbEntity* placed = placeSolid(object, solid, AcGeMatrix3d::kIdentity, translation, rotation,
                                    {kind.noModelSpace, kind.appendFailed});
    if (!placed && !kind.groupedWhenNotAppended) return QelCreated::Failed;
    QelMemberRecord record;
    record.length = length;
    QelGroupTagAnnotate(object, placed, QelClassOf(kind.code), record, objIndex, filePath,
                        translation, rotation);
    return QelCreated::Done;
}

} // namespace

QelCreated CreateCone(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                      const CString* filePath) {
    double radius0 = 0.0, radius1 = 0.0, height = 0.0;
    if (!QelRequireLength(object, "radius0", radius0, L"\nError getting radius0 of Cone.") ||
        !QelRequireLength(object, "radius1", radius1, L"\nError getting radius1 of Cone.") ||
        !QelRequireLength(object, "height", height, L"\nError getting height of Cone."))
        return QelCreated::Failed;
    radius0 = std::max(radius0, 1e-5);
    radius1 = std::max(radius1, 1e-5);
    // The limit is 1e-5 and the message says 1e-6: both as they have always been.
    if (1e-5 >= height) {
        QelReportError(L"\nHeight of cone out of range. (< 1e-6)");
        return QelCreated::Failed;
    }
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    Acad::ErrorStatus status = Acad::eOk;
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) { return status = s.createFrustum(height, radius0, radius0, radius1); },
        kCaught);
    if (!solid) {
        if (status != Acad::eOk) QelReportError(L"\nError creating cone");
        return QelCreated::Failed;
    }
    // The centroid is taken with the base at local z = 0, before the pose.
    solid->transformBy(liftBy(height));
    double volume = 0.0, moments[3], products[3], principal[3], gyration[3];
    AcGePoint3d centroid;
    AcGeVector3d axes[3];
    AcDbExtents extents;
    solid->getMassProp(volume, centroid, moments, products, principal, axes, gyration, extents);
    AcDbEntity* cone = placeSolid(object, solid, AcGeMatrix3d::kIdentity, translation, rotation,
                                  {nullptr, L"\nCould not append Cone to ACAD Database."});
    if (!cone) return QelCreated::Failed;
    QelMemberRecord record;
    record.length = height;
    record.radius0 = radius0;
    record.radius1 = radius1;
    record.centroid = centroid.z;
    AcDbGroup* group = QelGroupAndTag(cone, QelClassOf(QelCode::Cone), record, objIndex, filePath);
    AddAxisCenterLine(object, height, translation, rotation, objIndex, filePath);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    return QelCreated::Done;
}

QelCreated CreateSphere(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                        const CString* filePath) {
    double radius = 0.0;
    if (!QelRequireLength(object, "radius", radius, L"\nError getting radius of sphere."))
        return QelCreated::Failed;
    return roundSolid(
        object, [&](AcDb3dSolid& s) { return s.createSphere(radius); },
        {nullptr, L"\nCould not append Sphere to ACAD Database.", QelCode::Sphere, false}, radius,
        objIndex, filePath);
}

QelCreated CreateTorus(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                       const CString* filePath) {
    double major = 0.0, minor = 0.0;
    if (!QelRequireLength(object, "majorRadius", major, L"\nError getting majorRadius of torus.") ||
        !QelRequireLength(object, "minorRadius", minor, L"\nError getting minorRadius of torus."))
        return QelCreated::Failed;
    // A torus that could not be appended still gets its group, empty, and its annotations.
    return roundSolid(
        object, [&](AcDb3dSolid& s) { return s.createTorus(major, minor); },
        {L"\nError getting BlockTableRecord", L"\nCould not append Torus to ACAD Database.",
         QelCode::Torus, true},
        major, objIndex, filePath);
}

QelCreated CreateRectangularBox(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                                const CString* filePath) {
    double height = 0.0, width = 0.0, depth = 0.0;
    if (!QelRequireLength(object, "height", height,
                          L"\nError getting height of Rectangular Box.") ||
        !QelRequireLength(object, "width", width, L"\nError getting width of Rectangular Box.") ||
        !QelRequireLength(object, "depth", depth, L"\nError getting depth of Rectangular Box."))
        return QelCreated::Failed;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    // Depth along local X, width along Y, height along Z. A box the host refuses is dropped
    // without a word.
    Acad::ErrorStatus status = Acad::eOk;
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) { return status = s.createBox(depth, width, height); }, kCaught);
    if (!solid) return status == Acad::eOk ? QelCreated::Failed : QelCreated::FailedReported;
    AcDbEntity* box = placeSolid(object, solid, liftBy(height), translation, rotation,
                                 {L"\n Error reading RectBox BlockTableRecord.",
                                  L"Could not append RectBox to ACAD Database."});
    if (!box) {
        acutPrintf(L"\n End process RectBox\n");
        return QelCreated::Failed;
    }
    QelMemberRecord record;
    record.length = height;
    record.width = width;
    record.depth = depth;
    QelGroupTagAnnotate(object, box, QelClassOf(QelCode::RectangularBox), record, objIndex,
                        filePath, translation, rotation);
    return QelCreated::Done;
}
