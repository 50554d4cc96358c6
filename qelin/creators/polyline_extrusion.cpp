// PlanarPolylineExtrusion: the outline, holes cut out, swept along "direction" and cut at the
// height by a plane parallel to the base. The sweep runs far beyond the height in pieces of at
// most kPieceLength, so that the cut is true for an oblique direction too; each piece is a solid
// with a group of its own.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "creators/patches.h"
#include "creators/planar_outline.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"

#include <arx/aced.h>
#include <arx/dbsol3d.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPieceLength = 100000.0;

// origin + distance along the direction, normalised unless it has no length.
AcGePoint3d OffsetAlong(const AcGeVector3d& direction, const AcGePoint3d& origin, double distance) {
    const AcGeVector3d unit = direction.isZeroLength() ? direction : direction.normal();
    return origin + unit * distance;
}

// The diagonal of the outline's extent in x and y.
double extentDiagonal(const AcGePoint2dArray& vertices) {
    if (vertices.isEmpty()) return 0.0;
    AcGePoint2d low = vertices[0], high = vertices[0];
    for (int i = 1; i < vertices.length(); ++i) {
        low.set(std::min(low.x, vertices[i].x), std::min(low.y, vertices[i].y));
        high.set(std::max(high.x, vertices[i].x), std::max(high.y, vertices[i].y));
    }
    return std::hypot(high.x - low.x, high.y - low.y);
}

void report(const wchar_t* text) {
    acutPrintf(text);
    QelLogAppend(text);
}

void erase(AcDbObjectId id) {
    ads_name name;
    if (acdbGetAdsName(name, id) == Acad::eOk) acdbEntDel(name);
}

// The outline without its last vertex (a file's outline repeats its first), closed, as a region
// appended to the record and left open; null after the messages.
AcDbRegion* MakeOutlineRegion(QelObject* object, const QelPlanarOutline& outline,
                              AcDbBlockTableRecord* space) {
    auto* polyline = new AcDbPolyline;
    QelFillPolyline(*polyline, outline.vertices, outline.vertices.length() - 1);
    polyline->setClosed(true);
    polyline->setNormal(AcGeVector3d::kZAxis);
    AcDbRegion* region = RegionFromCurve(polyline, space);
    delete polyline;
    if (!region) {
        acutPrintf(L"\n Error creating region for extrusion,(PlanarPolylineExtrusion).");
        return nullptr;
    }
    ApplyColour(object, region);
    return region;
}

struct Sweep {
    QelObject* object;
    const QelPlanarOutline& outline;
    AcGeVector3d direction;
    AcGePoint3d top; // a point of the cutting plane
    AcGeMatrix3d translation, rotation;
    double height;
    unsigned objIndex;
    const CString* filePath;
};

enum class Piece { kMade, kEnd, kFailed };

// The solid of one piece from start along the direction for length. kEnd when the extrusion ends
// after a message, kFailed when the creator fails.
Piece piece(const Sweep& sweep, const AcGePoint3d& start, double length) {
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    if (!space) {
        report(L"Error opening pBlock for Write.");
        return Piece::kFailed;
    }
    AcDbRegion* region = MakeOutlineRegion(sweep.object, sweep.outline, space);
    if (!region) {
        space->close();
        return Piece::kEnd;
    }
    QelSubtractHoles(region, sweep.outline.holes);
    // The host sweeps the region where it lies: it stands at the start of its piece.
    region->transformBy(AcGeMatrix3d::translation(start.asVector()));
    ads_name regionName = {0, 0};
    if (acdbEntLast(regionName) != RTNORM) report(L"CreateMember:Error obtaining ent handle.");
    const AcDbObjectId regionId = region->objectId();

    const double step = std::min(length / 1000.0, 0.001);
    auto* path = new AcDbLine(OffsetAlong(sweep.direction, start, -step),
                              OffsetAlong(sweep.direction, start, length));
    if (space->appendAcDbEntity(path) != Acad::eOk) {
        delete path;
        region->close();
        space->close();
        AfxMessageBox(L"Error, appending pLine to block");
        return Piece::kEnd;
    }
    path->downgradeOpen();
    const AcDbObjectId pathId = path->objectId();

    auto* solid = new AcDb3dSolid;
    solid->setRecordHistory(true);
    Acad::ErrorStatus status = Acad::eOk;
    try {
        status = solid->extrudeAlongPath(region, path, 0.0);
    } catch (int code) {
        status = Acad::ErrorStatus(code);
    }
    if (status != Acad::eOk) {
        delete solid;
        path->close();
        region->close();
        space->close();
        erase(pathId);
        erase(regionId);
        report(L"\nError, Could not extrude to create 'PlanerPolyExtru'");
        return Piece::kEnd;
    }
    ApplyColour(sweep.object, solid);
    const bool appended = space->appendAcDbEntity(solid) == Acad::eOk;
    path->close();
    region->close();
    erase(pathId);
    if (!appended) {
        delete solid;
        space->close();
        acutPrintf(L"\nError, Could not append solid");
        return Piece::kEnd;
    }
    AcDb3dSolid* none = nullptr;
    if (solid->getSlice(AcGePlane(sweep.top, -AcGeVector3d::kZAxis), false, none) != Acad::eOk)
        QelLogAppend(L"\nError getting slice of PlanerPolylineExtrusion.");
    // A piece wholly beyond the top has nothing left: it goes, without a group.
    const bool empty = solid->isNull();
    if (empty) {
        solid->erase();
    } else {
        solid->transformBy(sweep.translation);
        solid->transformBy(sweep.rotation);
        ApplyImportTransform(solid);
    }
    solid->close();
    space->close();
    if (acdbEntDel(regionName) != RTNORM)
        acutPrintf(L"PlanerPolylineExtru: Error removing Redundant entity");
    if (empty) return Piece::kMade;

    const QelClassRow& row = QelClassOf(QelCode::PlanarPolylineExtrusion);
    QelMemberRecord record;
    record.memberType = row.code;
    record.length = sweep.height;
    QelGroupTagAnnotate(sweep.object, solid, row.groupName, row.groupKey, record, sweep.objIndex,
                        sweep.filePath, sweep.translation, sweep.rotation, row.xdata);
    return Piece::kMade;
}

} // namespace

QelCreated CreatePlanarPolylineExtrusion(QelObject* object, void*, int, unsigned char,
                                         unsigned objIndex, const CString* filePath) {
    QelPlanarOutline outline;
    if (!QelReadPlanarOutline(object, outline,
                              L"\nError getting vertices for PlanarPolylineExtrusion."))
        return QelCreated::Failed;
    Sweep sweep{object,   outline, AcGeVector3d::kZAxis, AcGePoint3d::kOrigin, {}, {}, 0.0,
                objIndex, filePath};
    PoseMatrices(object, sweep.translation, sweep.rotation);
    if (!GetDoubleParam(object, "height", sweep.height, true)) {
        QelReportError(L"\nError getting height of object.");
        sweep.height = 0.001;
    }
    if (sweep.height < 1e-5) {
        QelLogAppend(L"\nHeight of object is less than the min TOLERANCE, setting it to 0.01.");
        sweep.height = 0.01;
    }
    AcGePoint3d direction(0.0, 0.0, 1.0);
    GetPointParam(object, "direction", direction, false);
    sweep.direction = direction.asVector();
    sweep.top = OffsetAlong(sweep.direction, AcGePoint3d::kOrigin, sweep.height);

    const double total =
        std::max(std::max(2.0 * sweep.height, extentDiagonal(outline.vertices)), 1.0);
    AcGePoint3d start = AcGePoint3d::kOrigin;
    for (double travelled = 0.0; travelled < total; travelled += kPieceLength) {
        const double length = std::min(total - travelled, kPieceLength);
        const Piece made = piece(sweep, start, length);
        if (made != Piece::kMade)
            return made == Piece::kFailed ? QelCreated::Failed : QelCreated::FailedReported;
        start = OffsetAlong(sweep.direction, start, length);
    }
    return QelCreated::Done;
}
