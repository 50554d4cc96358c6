#include "creators/helpers/solid_parts.h"

#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"

#include <arx/dbdict.h>

AcDb3dSolid* QelBuildSolid(const std::function<Acad::ErrorStatus(AcDb3dSolid&)>& build,
                           const wchar_t* arxLogText, const wchar_t* refused) {
    auto* solid = new AcDb3dSolid;
    solid->setRecordHistory(true);
    try {
        if (build(*solid) == Acad::eOk) return solid;
        if (refused) QelReportError(refused);
    } catch (int code) {
        QelLogAppend(arxLogText);
        // The format is shown as it stands, the code going in as the box's type.
        AfxMessageBox(L"Caught arx exception error:%d", UINT(code));
    } catch (...) {
        QelReportError(L"\nCaught unknown exception!");
    }
    delete solid;
    return nullptr;
}

AcDbObjectId QelPlacePart(QelObject* object, AcDbEntity* entity, const AcGeMatrix3d& local,
                          const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                          const QelPartTexts& texts) {
    entity->transformBy(local);
    entity->transformBy(translation);
    entity->transformBy(rotation);
    ApplyImportTransform(entity);
    ApplyColour(object, entity);
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    if (!space) {
        if (texts.noModelSpace) QelReportError(texts.noModelSpace);
        delete entity;
        return AcDbObjectId::kNull;
    }
    if (space->appendAcDbEntity(entity) != Acad::eOk) {
        delete entity;
        space->close();
        QelReportError(texts.appendFailed);
        return AcDbObjectId::kNull;
    }
    space->close();
    entity->close();
    return entity->objectId();
}

AcDbEntity* QelRoundPart(QelObject* object, double height, double baseRadius, double topRadius,
                         const AcGeMatrix3d& local, const AcGeMatrix3d& translation,
                         const AcGeMatrix3d& rotation, const wchar_t* notMade,
                         const wchar_t* notAppended, bool& failed) {
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) { return s.createFrustum(height, baseRadius, baseRadius, topRadius); },
        L"\nCaught arx exception error");
    if (!solid) {
        QelLogAppend(notMade);
        QelCountError();
        return nullptr;
    }
    if (!QelPlacePart(object, solid, local, translation, rotation, {nullptr, notAppended}).isNull())
        return solid;
    failed = true;
    return nullptr;
}

void QelTagPart(AcDbGroup* group, QelMemberRecord& record, AcDbEntity* part, int index,
                double radius0, double length) {
    if (!part) return;
    QelGroupAppend(group, part->objectId());
    record.partIndex = index;
    record.radius0 = radius0;
    record.length = length;
    QelTagEntity(part, record, nullptr);
}

CString QelGroupName(AcDbGroup* group) {
    return group ? CString(group->name()) : CString();
}
