#include "creators/fittings.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"

#include <arx/dbdict.h>

#include <algorithm>

namespace {

// The disk and, for the types beyond 0 and 1, the hub that rises from it to the pipe.
struct FlangeSizes {
    int type = 0;
    double radius = 0.0;
    double height = 0.0;
    double flangeRadius = 0.0;
    double flangeHeight = 0.0;
    double hubBase = 0.0;
    bool hub = false;
};

// The sizes by type; false for sizes that make no flange.
bool readSizes(QelObject* object, FlangeSizes& f) {
    if (!QelReadInt(object, "type", f.type) || f.type < 0) f.type = 0;
    GetDoubleParam(object, "radius", f.radius, true);
    GetDoubleParam(object, "height", f.height, true);
    if (f.type == 0) {
        f.flangeRadius = f.radius;
        f.flangeHeight = f.height;
        return f.radius > 0.0 && f.height > 0.0;
    }
    if (f.type == 1) {
        GetDoubleParam(object, "flangeradius", f.flangeRadius, true);
        GetDoubleParam(object, "flangeheight", f.flangeHeight, true);
        f.flangeRadius = f.radius = std::max(f.radius, f.flangeRadius);
        f.flangeHeight = f.height = std::max(f.height, f.flangeHeight);
        return f.radius > 0.0 && f.height > 0.0;
    }
    f.flangeRadius = f.radius;
    f.flangeHeight = f.height;
    GetDoubleParam(object, "flangeradius", f.flangeRadius, true);
    GetDoubleParam(object, "flangeheight", f.flangeHeight, true);
    if (f.flangeHeight <= 0.0 || f.flangeRadius <= 0.0 || f.radius < 0.0 || f.height < 0.0)
        return false;
    if (f.radius == 0.0) f.radius = f.flangeRadius * 0.75;
    if (f.height == 0.0 || f.height == f.flangeHeight) f.height = f.flangeHeight * 1.001;
    if (f.flangeHeight > f.height || f.radius > f.flangeRadius) return false;
    f.hub = true;
    f.hubBase = std::min((f.flangeRadius - f.radius) / 3.0 + f.radius,
                         (f.height - f.flangeHeight) * 0.4 + f.radius);
    return true;
}

AcGeMatrix3d lift(double z) {
    return AcGeMatrix3d::translation(AcGeVector3d(0.0, 0.0, z));
}

} // namespace

QelCreated CreateFlange(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                        const CString* filePath) {
    FlangeSizes f;
    if (!readSizes(object, f)) return QelCreated::Failed;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);

    // The text of a failed append is the tee's: the two share it.
    bool failed = false;
    AcDbEntity* disk = QelRoundPart(object, f.flangeHeight, f.flangeRadius, f.flangeRadius,
                                    lift(f.flangeHeight * 0.5), translation, rotation,
                                    L"\n  Error creating cylinder for pipe flange. ",
                                    L"Could not append pipe tee to ACAD Database.", failed);
    AcDbEntity* hub = nullptr;
    if (f.hub)
        hub = QelRoundPart(object, f.height - f.flangeHeight, f.hubBase, f.radius,
                           lift((f.flangeHeight + f.height) * 0.5), translation, rotation,
                           L"\n  Error creating hub base for pipe flange. ",
                           L"Could not append pipe flange to ACAD Database.", failed);

    const QelClassRow& kind = QelClassOf(QelCode::PipeFlange);
    CString groupName;
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, groupName);
    QelMemberRecord record;
    record.memberType = kind.code;
    record.radius1 = double(f.type);
    QelFillRecordOrigin(record, objIndex, filePath, groupName);
    QelTagPart(group, record, disk, 0, f.flangeRadius, f.flangeHeight);
    QelTagPart(group, record, hub, 1, f.radius, f.height - f.flangeHeight);
    ImportAnnotations(object, translation, rotation, group);
    if (disk) QelAddXDataById(disk->objectId(), kind.xdata);
    if (hub) QelAddXDataById(hub->objectId(), L"PipeFlangee");
    QelCloseGroup(group);
    AddCenterLine(object, AcGePoint3d(0, 0, 0), AcGePoint3d(0, 0, f.height), translation, rotation,
                  objIndex, filePath);
    return failed ? QelCreated::Failed : QelCreated::Done;
}
