#include "creators/caps.h"

#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/solid_parts.h"
#include "foundation/error_report.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/dbelipse.h>
#include <arx/dbents.h>

#include <cstring>
#include <strings.h>

namespace {

constexpr double kQuarterTurn = 1.5707963705062866;
constexpr double kFullTurn = 6.2831854820251465;

enum class CapKind { Flat, HemiSpheric, SemiElliptic };

struct CapRow {
    int code; // its class name, record and text in the class table
    CapKind kind;
    double farEndShare; // z of end 1 as a share of the height
};

// The caps by class name, compared without regard to case; any other name is a flat cap.
constexpr CapRow kCaps[] = {
    {QelCode::FlatCap, CapKind::Flat, 0.5},
    {QelCode::HemisphericCap, CapKind::HemiSpheric, 1.0},
    {QelCode::SemiEllipticCap, CapKind::SemiElliptic, 1.0},
};

const CapRow& capRow(const char* className) {
    for (const CapRow& row : kCaps)
        if (className && ::strcasecmp(QelClassOf(row.code).className, className) == 0) return row;
    return kCaps[0];
}

// The outward normal of an end: down the axis at end 0, up it at end 1.
AcGeVector3d endNormal(int end) {
    return AcGeVector3d(0.0, 0.0, end == 1 ? 1.0 : -1.0);
}

AcDbEntity* flatCap(double radius, int end) {
    return new AcDbCircle(AcGePoint3d::kOrigin, endNormal(end), radius);
}

AcDbEntity* hemisphericCap(double radius, int end) {
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) {
            const Acad::ErrorStatus made = s.createSphere(radius);
            if (made != Acad::eOk) return made;
            AcDb3dSolid* other = nullptr;
            return s.getSlice(AcGePlane(AcGePoint3d::kOrigin, endNormal(end)), false, other);
        },
        L"\nCaught arx exception");
    if (!solid) QelReportError(L"Error capping object with HemiSphericCap");
    return solid;
}

// The quarter ellipse of half height turned about the Y axis, then tipped about X so that the
// dome points out of the end along Z. The end angle of a quarter in single precision leaves the
// ellipse's end 4.4e-8 of the radius across the axis; the kernel closes such a gap only below its
// own fixed tolerance, so the dome is turned at unit radius and then scaled to the radius.
AcDbEntity* semiEllipticCap(double radius, int end) {
    auto* base = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
    auto* arc = new AcDbEllipse(AcGePoint3d::kOrigin, AcGeVector3d(0, 0, 1), AcGeVector3d(1, 0, 0),
                                0.5, 0.0, kQuarterTurn);
    auto* axis = new AcDbLine(AcGePoint3d(0, 0.5, 0), AcGePoint3d(0, 0, 0));
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    AcDbRegion* region = nullptr;
    if (space) {
        AcDbVoidPtrArray curves;
        curves.append(base);
        curves.append(arc);
        curves.append(axis);
        region = CreateRegion(curves, space);
        space->close();
    }
    delete base;
    delete arc;
    delete axis;
    if (!space) return nullptr;
    if (!region) {
        QelReportError(L"\nError creating Cap Region object");
        return nullptr;
    }
    region->close();
    // The region was only the profile: out of the drawing again.
    ads_name last = {0, 0};
    if (acdbEntLast(last) != RTNORM)
        acutPrintf(L"Error obtaining ent handle.");
    else if (acdbEntDel(last) != RTNORM)
        acutPrintf(L"Error removing Redundant entity");
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) {
            return s.revolve(region, AcGePoint3d(0, 0, 0), AcGeVector3d(0, 1, 0), kFullTurn);
        },
        L"\nCaught arx exception");
    if (!solid) {
        QelReportError(L"\nError creating Cap object");
        return nullptr;
    }
    solid->transformBy(AcGeMatrix3d::scaling(radius) *
                       AcGeMatrix3d::rotation(end == 1 ? kQuarterTurn : -kQuarterTurn,
                                              AcGeVector3d::kXAxis, AcGePoint3d::kOrigin));
    return solid;
}

bool DrawCap(QelObject* object, const char* className, double radius, double height,
             const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation, int end,
             unsigned objIndex, const CString* filePath, AcDbGroup* group) {
    const CapRow& row = capRow(className);
    AcDbEntity* cap = nullptr;
    switch (row.kind) {
    case CapKind::Flat:
        cap = flatCap(radius, end);
        break;
    case CapKind::HemiSpheric:
        cap = hemisphericCap(radius, end);
        break;
    case CapKind::SemiElliptic:
        cap = semiEllipticCap(radius, end);
        break;
    }
    if (!cap) return false;
    const double z = end == 1 ? height * row.farEndShare : 0.0;
    const AcDbObjectId id =
        QelPlacePart(object, cap, AcGeMatrix3d::translation(AcGeVector3d(0.0, 0.0, z)), translation,
                     rotation, {nullptr, L"\nCould not append object to ACAD Database."});
    if (id.isNull()) {
        if (row.kind == CapKind::Flat) QelReportError(L"Error Drawing FlatCap object");
        return false;
    }
    QelGroupAppend(group, id);
    QelMemberRecord record;
    record.memberType = row.code;
    record.length = radius;
    record.partIndex = end;
    QelFillRecordOrigin(record, objIndex, filePath, QelGroupName(group));
    QelTagEntity(cap, record, QelClassOf(row.code).xdata);
    return true;
}

// The class name of the cap object held in param name; null without one.
const char* capClass(QelObject* object, const char* name) {
    QelParam* param = QelParamOf(object, name);
    if (!param || param->GetType() != QelObjectType) return nullptr;
    QelObject* cap = nullptr;
    param->GetValue(cap);
    return cap ? cap->GetName() : nullptr;
}

} // namespace

bool DrawCaps(QelObject* object, double radius, double height, const AcGeMatrix3d& translation,
              const AcGeMatrix3d& rotation, int subtype, unsigned objIndex, const CString* filePath,
              AcDbGroup* group, bool solidCaps) {
    bool drawn = true;
    auto draw = [&](const char* className, int end) {
        drawn = DrawCap(object, className, radius, height, translation, rotation, end, objIndex,
                        filePath, group) &&
                drawn;
    };
    const char* flat = QelClassOf(QelCode::FlatCap).className;
    if (subtype != 1) {
        const char* ends[] = {"cap0", "cap1"};
        for (int end = 0; end < 2; ++end) {
            const char* className = capClass(object, ends[end]);
            if (!className) continue;
            // Only the exact name stands for the closed end of a solid.
            if (solidCaps && std::strcmp(className, flat) == 0) continue;
            draw(className, end);
        }
    } else if (!solidCaps) {
        draw(flat, 0);
        draw(flat, 1);
    }
    return drawn;
}
