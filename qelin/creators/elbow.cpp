// Elbow: a pipe bent about the local Z axis, its circular section swept along a centre line
// that stays in the drawing. The bend centre is the origin; the pipe starts at (R, 0, 0)
// heading along +Y and turns counter-clockwise through the end angle. Three forms: smooth
// along an arc, a bevel cut with one mitre at half the angle, and n straight mitred segments.
#include "creators/elbows.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "creators/last_entity.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/state_guards.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include <arx/aced.h>
#include <arx/dbelipse.h>
#include <arx/dbpl.h>

#include <cmath>

namespace {

constexpr double kQuarterTurn = 1.5707963705062866;

struct Elbow {
    QelObject* object = nullptr;
    double major = 0.0;
    double minor = 0.0;
    double endAngle = kQuarterTurn;
    AcGeMatrix3d translation, rotation;
    unsigned objIndex = 0;
    const CString* filePath = nullptr;
};

// The solid's volume; 0 when the host cannot tell one.
double volumeOf(const AcDb3dSolid& solid) {
    double volume = 0.0, moments[3], products[3], principal[3], gyration[3];
    AcGePoint3d centroid;
    AcGeVector3d axes[3];
    AcDbExtents extents;
    return solid.getMassProp(volume, centroid, moments, products, principal, axes, gyration,
                             extents) == Acad::eOk
               ? volume
               : 0.0;
}

void place(AcDbEntity* entity, const Elbow& e) {
    entity->transformBy(e.translation);
    entity->transformBy(e.rotation);
    ApplyImportTransform(entity);
}

// The centre line coloured, placed and appended (and closed); on failure it is gone and the
// text is logged with the host's status.
bool appendCentreLine(const Elbow& e, AcDbCurve* line, const wchar_t* failed) {
    ApplyColour(e.object, line);
    place(line, e);
    const Acad::ErrorStatus status = AppendToModelSpace(line);
    if (status == Acad::eOk) return true;
    QelLogAppend(failed);
    acutPrintf(L"Process Error:%s", acadErrorStatusText(status));
    return false;
}

// A centre line tagged at once, outside the elbow's group.
void tagCentreLine(const Elbow& e, AcDbEntity* line) {
    QelMemberRecord record;
    record.memberType = QelCode::CenterLine;
    QelFillRecordOrigin(record, e.objIndex, e.filePath, CString());
    QelTagEntity(line, record, L"Elbow Center Line");
}

struct SectionTexts {
    const wchar_t* notAdded;
    const wchar_t* noRegion;
    const wchar_t* notSwept;
};

// The pipe's section, a circle of the minor radius at the start of the centre line and facing
// along it, made a region and swept along the path; circle and region leave the drawing again.
// With placed the section stands where the object does, otherwise in the elbow's own frame, as
// the path must. The solid is new, not in the drawing; null after the text.
AcDb3dSolid* sweepSection(const Elbow& e, const AcDbCurve* path, bool placed,
                          const SectionTexts& texts) {
    auto* circle = new AcDbCircle(AcGePoint3d(e.major, 0.0, 0.0), AcGeVector3d::kYAxis, e.minor);
    ApplyColour(e.object, circle);
    if (placed) place(circle, e);
    if (AppendToModelSpace(circle) != Acad::eOk) {
        QelReportError(texts.notAdded);
        return nullptr;
    }
    ads_name circleName;
    const bool circleNamed = QelLastEntity(circleName);
    AcDbRegion* region = nullptr;
    AcDbCurve* curve = nullptr;
    if (AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite)) {
        if (acdbOpenObject(curve, circle->objectId(), AcDb::kForWrite) == Acad::eOk)
            region = RegionFromCurve(curve, space);
        space->close();
    }
    if (circleNamed) QelEraseEntity(circleName, L"Error removing Redundant entity");
    if (!region) {
        QelReportError(texts.noRegion);
        return nullptr;
    }
    region->close();
    ads_name regionName;
    const bool regionNamed = QelLastEntity(regionName);
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) {
            const Acad::ErrorStatus status = s.extrudeAlongPath(region, path, 0.0);
            // A sweep without volume would stop the drawing from being saved.
            return status == Acad::eOk && !(volumeOf(s) > 0.0) ? Acad::eGeneralModelingFailure
                                                               : status;
        },
        L"\nCaught arx exception error", texts.notSwept);
    if (regionNamed) QelEraseEntity(regionName, L"Error removing Redundant entity");
    return solid;
}

// Appends the solid to model space, where it stays open; on failure it is deleted.
bool appendSolid(AcDb3dSolid* solid) {
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    const Acad::ErrorStatus status =
        space ? space->appendAcDbEntity(solid) : Acad::eNullObjectPointer;
    if (space) space->close();
    if (status == Acad::eOk) return true;
    delete solid;
    QelReportError(L"\nCould not append object to ACAD Database.");
    return false;
}

// The group of the solid, the record of a centre line not yet tagged, the solid's record
// pointing at its centre line, the annotations and the solid's extended data.
void finishElbow(const Elbow& e, AcDbEntity* solid, AcDbEntity* untaggedLine, int miterCount,
                 const AcDbHandle& lineHandle) {
    const QelClassRow& kind = QelClassOf(QelCode::Elbow);
    CString name;
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, name);
    QelGroupAppend(group, solid->objectId());
    QelMemberRecord record;
    QelFillRecordOrigin(record, e.objIndex, e.filePath, name);
    if (untaggedLine) {
        record.memberType = QelCode::CenterLine;
        record.Store(untaggedLine);
    }
    record.memberType = kind.code;
    record.partIndex = 0;
    record.majorRadius = e.major;
    record.minorRadius = e.minor;
    record.miterCount = miterCount;
    record.handle0 = lineHandle;
    record.Store(solid);
    ImportAnnotations(e.object, e.translation, e.rotation, group);
    QelCloseGroup(group);
    AddXData(solid, kind.xdata);
}

bool standardElbow(const Elbow& e) {
    if (e.endAngle < 1e-6) {
        QelReportError(L"\nCircular arc end angle out of range.");
        return false;
    }
    if (!(e.major > 0.0)) {
        QelReportError(L"\nMajor Radius equals zero");
        return false;
    }
    const AcGeVector3d major = AcGeVector3d::kZAxis.perpVector().normal() * e.major;
    auto* path =
        new AcDbEllipse(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, major, 1.0, 0.0, e.endAngle);
    if (!appendCentreLine(e, path, L"\nError adding arc to current dwg space.")) return false;
    AcDbHandle pathHandle;
    QelLastEntityHandle(pathHandle);
    AddXData(path, L"Elbow Center Line");
    if (!(e.minor > 0.0)) {
        QelReportError(L"\nError, Elbow minorRadius <= 0");
        return false;
    }
    AcDb3dSolid* solid = sweepSection(e, path, true,
                                      {L"\nError, adding elbow to drawing space.",
                                       L"\nError creating region to extrude.",
                                       L"\nCould not extrude standard elbow along path.!"});
    if (!solid || !appendSolid(solid)) return false;
    ApplyColour(e.object, solid);
    solid->close();
    finishElbow(e, solid, path, 0, pathHandle);
    return true;
}

bool bevelElbow(const Elbow& e) {
    if (e.endAngle < 1e-5) {
        QelReportError(L"\nCircular arc end angle out of range.");
        return true;
    }
    const double r = e.major, a = e.endAngle;
    // Two straight legs tangent to the bend at its ends, meeting on the half angle.
    const AcGePoint2d corners[] = {AcGePoint2d(r, 0.0), AcGePoint2d(r, r * std::tan(a / 2.0)),
                                   AcGePoint2d(r * std::cos(a), r * std::sin(a))};
    auto* path = new AcDbPolyline(3);
    for (unsigned i = 0; i < 3; ++i)
        path->addVertexAt(i, corners[i], 0.0, -1.0, -1.0);
    path->setClosed(false);
    path->setNormal(AcGeVector3d::kZAxis);
    if (!appendCentreLine(e, path, L"\nError adding elbow to drawing space")) return false;
    AcDbHandle pathHandle;
    QelLastEntityHandle(pathHandle);
    tagCentreLine(e, path);
    AcDb3dSolid* solid = sweepSection(e, path, true,
                                      {L"\nError adding Circle to drawing space",
                                       L"\nError creating region for elbow",
                                       L"\nCould not extrude elbow along path."});
    if (!solid || !appendSolid(solid)) return false;
    ApplyColour(e.object, solid);
    solid->close();
    finishElbow(e, solid, nullptr, -1, pathHandle);
    return true;
}

// The vertices i * step on the bend, i from 0 to count - 1, in the elbow's frame.
AcDbPolyline* polylineOnBend(double radius, double step, int count) {
    auto* line = new AcDbPolyline(unsigned(count));
    for (int i = 0; i < count; ++i)
        line->addVertexAt(unsigned(i),
                          AcGePoint2d(radius * std::cos(i * step), radius * std::sin(i * step)),
                          0.0, -1.0, -1.0);
    line->setClosed(false);
    line->setNormal(AcGeVector3d::kZAxis);
    return line;
}

// Cuts the sweep where the centre line ends: by the plane through the bend's axis and that end,
// keeping the side of the bend. The plane's normal is taken from a UCS through the axis and the
// end, as the bend would be drawn by hand. False, after the message, when the cut failed.
bool trimOvershoot(AcDb3dSolid* solid, const AcGePoint3d& end) {
    const ads_point origin = {0.0, 0.0, 0.0}, onAxis = {0.0, 0.0, 1.0};
    const ads_point towardsEnd = {end.x, end.y, end.z};
    QelUcs3Points(origin, onAxis, towardsEnd);
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    const AcGeVector3d normal = db->ucsydir().crossProduct(db->ucsxdir()).normal();
    AcDb3dSolid* otherHalf = nullptr;
    // The overshoot always has volume: a slice that took none away did not cut.
    const double before = volumeOf(*solid);
    const bool cut =
        solid->getSlice(AcGePlane(AcGePoint3d::kOrigin, normal), false, otherHalf) == Acad::eOk &&
        volumeOf(*solid) < before;
    if (!cut) QelReportError(L"\nError getting slice of reducer");
    QelUcsWorld();
    return cut;
}

bool segmentedElbow(const Elbow& e, int segments) {
    const double step = e.endAngle / segments;
    if (step < 1e-6) {
        QelReportError(L"\nCircular arc end angle out of range.");
        return true;
    }
    AcDbPolyline* centreLine = polylineOnBend(e.major, step, segments + 1);
    if (!appendCentreLine(e, centreLine, L"\nError adding Polyline to current dwg space."))
        return false;
    AcDbHandle lineHandle;
    QelLastEntityHandle(lineHandle);
    tagCentreLine(e, centreLine);

    // The sweep goes one segment past the end so that the last mitre is cut like the others.
    AcDbPolyline* path = polylineOnBend(e.major, step, segments + 2);
    AcGePoint3d end;
    path->getPointAt(unsigned(segments), end);
    if (AppendToModelSpace(path) != Acad::eOk) return false;
    ads_name pathName;
    const bool pathNamed = QelLastEntity(pathName);
    if (!pathNamed) acutPrintf(L"\nError deleting elbow ent handle.");
    AcDb3dSolid* solid = sweepSection(e, path, false,
                                      {L"\nError adding circle to current dwg space.",
                                       L"\nError creating region for elbow",
                                       L"\nCould not extrude segmented elbow."});
    if (pathNamed) QelEraseEntity(pathName, L"Error removing Redundant entity");
    if (!solid || !appendSolid(solid)) return false;
    if (!trimOvershoot(solid, end)) {
        // A solid reaching past its end is no elbow, and one the host could not cut may not
        // even be saved: it goes.
        solid->erase();
        solid->close();
        return false;
    }
    ApplyColour(e.object, solid);
    place(solid, e);
    solid->close();
    finishElbow(e, solid, nullptr, segments, lineHandle);
    return true;
}

} // namespace

QelCreated CreateElbow(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                       const CString* filePath) {
    Elbow e;
    e.object = object;
    e.objIndex = objIndex;
    e.filePath = filePath;
    if (!QelRequireLength(object, "majorRadius", e.major,
                          L"\nError getting majorRadius of elbow.") ||
        !QelRequireLength(object, "minorRadius", e.minor, L"\nError getting minorRadius of elbow."))
        return QelCreated::Failed;
    if (!(e.minor > 1e-5)) {
        QelReportError(L"\nError, minorRadius of elbow less than/equal to zero");
        return QelCreated::FailedReported;
    }
    // A bend no wider than its pipe gets a pipe just inside the bend.
    if (e.major <= e.minor) {
        if (e.major < 1e-5) {
            e.major = e.minor;
            e.minor -= e.minor / 1000.0;
        } else {
            e.minor = e.major - e.major / 1000.0;
        }
    }
    GetDoubleParam(object, "endAngle", e.endAngle, false);
    short miterCount = 0;
    QelReadShort(object, "miterCount", miterCount);
    PoseMatrices(object, e.translation, e.rotation);
    // Other negative counts go the segmented way and fail its angle test.
    const wchar_t* failed = nullptr;
    if (miterCount == -1) {
        if (!bevelElbow(e)) failed = L"\nError creating Bevel Cut Elbow";
    } else if (miterCount == 0) {
        if (!standardElbow(e)) failed = L"\nError creating Standard Elbow!";
    } else if (!segmentedElbow(e, miterCount)) {
        failed = L"\nError creating Segmented Elbow";
    }
    if (!failed) return QelCreated::Done;
    QelReportError(failed);
    return QelCreated::FailedReported;
}
