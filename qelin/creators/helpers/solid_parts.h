// What the fittings and caps share: a solid built under the host's exceptions, and a part
// placed, coloured and appended with its own failure texts.
#pragma once

#include "foundation/error_report.h"
#include "objectfile/param_read.h"
#include "records/member_record.h"

#include <arx/arx.h>
#include <arx/dbsol3d.h>
#include <qel/qel.h>
#include <win/win.h>

#include <cstddef>
#include <functional>

// A new solid that records its history, shaped by build. A status other than eOk from build
// (sizes the host refuses: refused is reported when given), an integer the host throws
// ("Caught arx exception error:%d" in a message box, arxLogText in the log) and any other
// exception ("\nCaught unknown exception!" reported) all delete the solid and give null.
AcDb3dSolid* QelBuildSolid(const std::function<Acad::ErrorStatus(AcDb3dSolid&)>& build,
                           const wchar_t* arxLogText, const wchar_t* refused = nullptr);

struct QelPartTexts {
    const wchar_t* noModelSpace; // after "Could not get block table"; null for nothing more
    const wchar_t* appendFailed;
};

// Moves the entity by local, then translation, rotation and the import transform, colours it
// and appends it to model space, where it is closed. On failure the entity is deleted, the
// text reported, and the id is null.
AcDbObjectId QelPlacePart(QelObject* object, AcDbEntity* entity, const AcGeMatrix3d& local,
                          const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                          const QelPartTexts& texts);

// A frustum about Z (base radius at -height/2, top radius at +height/2) placed as QelPlacePart
// does; the solid in model space (closed), or null. One the host could not make is logged as
// notMade and counted, and the fitting goes on without it; one that could not be appended is
// reported as notAppended and sets failed.
AcDbEntity* QelRoundPart(QelObject* object, double height, double baseRadius, double topRadius,
                         const AcGeMatrix3d& local, const AcGeMatrix3d& translation,
                         const AcGeMatrix3d& rotation, const wchar_t* notMade,
                         const wchar_t* notAppended, bool& failed);

// One part of a fitting into the group and tagged: the record with partIndex, radius0 and
// length set for it. Nothing for a null part.
void QelTagPart(AcDbGroup* group, QelMemberRecord& record, AcDbEntity* part, int index,
                double radius0, double length);

// One size of a fitting: a length of the object, or of the object held in param inObject, read
// in drawing units into field; missing is reported when it is absent.
template <typename Sizes>
struct QelSizeRow {
    const char* name;
    double Sizes::*field;
    const wchar_t* missing;
    const char* inObject = nullptr;
};

// The sizes in the order of the rows; false after the message of the first one missing.
template <typename Sizes, std::size_t N>
bool QelReadSizes(QelObject* object, const QelSizeRow<Sizes> (&rows)[N], Sizes& sizes) {
    for (const QelSizeRow<Sizes>& row : rows) {
        double& value = sizes.*row.field;
        const bool found = row.inObject ? GetSubObjectDouble(object, row.inObject, row.name, value)
                                        : GetDoubleParam(object, row.name, value, true);
        if (!found) {
            QelReportError(row.missing);
            return false;
        }
    }
    return true;
}

// The name of the group, empty without one.
CString QelGroupName(AcDbGroup* group);
