// Line3d, CircularArc3d, EllipticArc3d and Polyline3d: one curve each, in a group of its own.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/primitives.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"

#include <arx/aced.h>

#include <cmath>

namespace {

// Annotations of an object without a pose stand at a point of the curve, unturned.
AcGeMatrix3d movedTo(const AcGePoint3d& point) {
    return AcGeMatrix3d::translation(point.asVector());
}

// An arc or an elliptic arc about the pose's origin in its XY plane, turned by the pose, placed
// and tagged.
QelCreated placeArc(QelObject* object, const AcGeVector3d& major, double ratio, double startAngle,
                    double endAngle, const QelClassRow& kind, unsigned objIndex,
                    const CString* filePath) {
    AcGeMatrix3d translation, rotation;
    AcGePoint3d centre;
    PoseMatrices(object, translation, rotation, centre);
    // The centre is in place already: no translation step.
    auto* arc = new AcDbEllipse(centre, AcGeVector3d::kZAxis, major, ratio, startAngle, endAngle);
    arc->transformBy(rotation);
    ApplyImportTransform(arc);
    ApplyColour(object, arc);
    const Acad::ErrorStatus status = AppendToModelSpace(arc);
    if (status != Acad::eOk) {
        acutPrintf(L"Process Error:%s", acadErrorStatusText(status));
        QelLogAppend(L"\nProcess Error adding arc to current dwg space");
        return QelCreated::Failed;
    }
    QelMemberRecord record;
    QelGroupTagAnnotate(object, arc, kind, record, objIndex, filePath, translation, rotation);
    return QelCreated::Done;
}

} // namespace

QelCreated CreateLine3d(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                        const CString* filePath) {
    AcGePoint3d start, end;
    if (!GetPointParam(object, "startPoint", start, true)) {
        QelReportError(L"\nError setting 3d Start point.");
        return QelCreated::Failed;
    }
    if (!GetPointParam(object, "endPoint", end, true)) {
        QelReportError(L"\nError setting 3d end point.");
        return QelCreated::Failed;
    }
    auto* line = new AcDbLine(start, end);
    QelMemberRecord record;
    record.length = std::hypot(std::hypot(std::fabs(end.x - start.x), std::fabs(end.y - start.y)),
                               std::fabs(end.z - start.z));
    ApplyImportTransform(line);
    ApplyColour(object, line);
    if (AppendToModelSpace(line) != Acad::eOk) return QelCreated::Failed;
    QelGroupTagAnnotate(object, line, QelClassOf(QelCode::Line3d), record, objIndex, filePath,
                        movedTo(start), AcGeMatrix3d::kIdentity);
    return QelCreated::Done;
}

QelCreated CreateCircularArc3d(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                               const CString* filePath) {
    double radius = 0.0, endAngle = 0.0;
    if (!QelRequireLength(object, "radius", radius,
                          L"\nError getting radius of the Circular Arc.") ||
        !QelRequireValue(object, "endAngle", endAngle,
                         L"\nError getting endAngle of the Circular Arc."))
        return QelCreated::Failed;
    if (1e-6 > std::fabs(endAngle)) endAngle = 1e-6;
    const AcGeVector3d major = AcGeVector3d::kZAxis.perpVector().normal() * radius;
    return placeArc(object, major, 1.0, 0.0, endAngle, QelClassOf(QelCode::CircularArc3d), objIndex,
                    filePath);
}

QelCreated CreateEllipticArc3d(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                               const CString* filePath) {
    double radiusX = 0.0, radiusY = 0.0, startAngle = 0.0, endAngle = 0.0;
    if (!QelRequireLength(object, "radiusX", radiusX, L"\nError getting radiusX of the Ellipse.") ||
        !QelRequireLength(object, "radiusY", radiusY, L"\nError getting radiusY of the Ellipse.") ||
        !QelRequireValue(object, "startAngle", startAngle,
                         L"\nError getting startAngle of the Ellipse.") ||
        !QelRequireValue(object, "endAngle", endAngle, L"\nError getting endAngle of the Ellipse."))
        return QelCreated::Failed;
    if (endAngle < 1e-6) endAngle = 1e-6;
    // The major axis lies along local Y; a ratio out of range falls back to a circle of radius
    // radiusY, so an ellipse wider than it is long comes in as a circular arc.
    auto inRange = [](double ratio) { return ratio > 0.0 && ratio <= 1.00000001; };
    double ratio = radiusY == 0.0 ? 0.0 : radiusX / radiusY;
    if (radiusY == 0.0 || !inRange(ratio)) {
        radiusX = radiusY;
        ratio = radiusY / radiusY;
        if (!inRange(ratio)) {
            QelReportError(L"\nEllipse ratio out of range.");
            return QelCreated::Failed;
        }
    }
    // The file counts its angles from local X, the host from the major axis on local Y: a
    // quarter turn less, the same one that the export adds back.
    constexpr double kQuarterTurn = 1.5707963705062866;
    return placeArc(object, AcGeVector3d(0.0, radiusY, 0.0), ratio, startAngle - kQuarterTurn,
                    endAngle - kQuarterTurn, QelClassOf(QelCode::EllipticArc3d), objIndex,
                    filePath);
}

QelCreated CreatePolyline3d(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                            const CString* filePath) {
    AcGePoint3dArray points;
    if (!GetPoint3dArrayParam(object, "vertices", points, true)) {
        QelReportError(L"\nError getting vertices for Polyline.");
        return QelCreated::Failed;
    }
    // In the file's order and never closed, even when the last point is the first.
    auto* polyline = new AcDb3dPolyline(AcDb::k3dSimplePoly, points, false);
    polyline->setDatabaseDefaults();
    ApplyImportTransform(polyline);
    ApplyColour(object, polyline);
    if (AppendToModelSpace(polyline) != Acad::eOk) {
        QelReportError(L"\nProcess Error adding polyline to current dwg space");
        return QelCreated::Failed;
    }
    QelMemberRecord record;
    record.partIndex = 0;
    const AcGePoint3d first = points.isEmpty() ? AcGePoint3d::kOrigin : points[0];
    QelGroupTagAnnotate(object, polyline, QelClassOf(QelCode::Polyline3d), record, objIndex,
                        filePath, movedTo(first), AcGeMatrix3d::kIdentity);
    return QelCreated::Done;
}
