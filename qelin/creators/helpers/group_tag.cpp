#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"

#include "import/class_table.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

AcDbGroup* QelMakeObjectGroup(const ACHAR* groupName, const ACHAR* key, CString& name) {
    auto* group = new AcDbGroup(groupName, true);
    AcDbDictionary* dictionary = nullptr;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    if (!db || db->getGroupDictionary(dictionary, AcDb::kForWrite) != Acad::eOk) {
        delete group;
        return nullptr;
    }
    AcDbObjectId id;
    const Acad::ErrorStatus status = dictionary->setAt(key, group, id);
    dictionary->close();
    if (status != Acad::eOk) {
        delete group;
        return nullptr;
    }
    group->setAnonymous();
    name = group->name();
    return group;
}

void QelGroupAppend(AcDbGroup* group, AcDbObjectId id) {
    if (group && !id.isNull()) group->append(id);
}

void QelCloseGroup(AcDbGroup* group) {
    if (group) group->close();
}

void QelFillRecordOrigin(QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                         const CString& groupName) {
    const CDocData& doc = QelDocData();
    record.objectIndex = int(objIndex);
    record.filePath = filePath ? *filePath : CString();
    record.context = doc.importContext;
    record.groupName = groupName;
    record.groupSerial = doc.importContext == 2 ? doc.maxGroupNumber : 0;
}

void QelTagEntity(AcDbEntity* entity, QelMemberRecord& record, const ACHAR* text) {
    record.Store(entity);
    if (text) AddXData(entity, text);
}

void QelAddXDataById(AcDbObjectId id, const ACHAR* text) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
    entity->close();
    AddXData(entity, text);
}

AcDbGroup* QelGroupAndTag(AcDbEntity* entity, const ACHAR* groupName, const ACHAR* key,
                          QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                          const ACHAR* text) {
    CString name;
    AcDbGroup* group = QelMakeObjectGroup(groupName, key, name);
    QelFillRecordOrigin(record, objIndex, filePath, name);
    if (!entity) return group;
    QelGroupAppend(group, entity->objectId());
    QelTagEntity(entity, record, text);
    return group;
}

void QelGroupTagAnnotate(QelObject* object, AcDbEntity* entity, const ACHAR* groupName,
                         const ACHAR* key, QelMemberRecord& record, unsigned objIndex,
                         const CString* filePath, const AcGeMatrix3d& translation,
                         const AcGeMatrix3d& rotation, const ACHAR* text) {
    AcDbGroup* group = QelGroupAndTag(entity, groupName, key, record, objIndex, filePath, nullptr);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    if (entity) AddXData(entity, text);
}

AcDbGroup* QelGroupAndTag(AcDbEntity* entity, const QelClassRow& kind, QelMemberRecord& record,
                          unsigned objIndex, const CString* filePath) {
    record.memberType = kind.code;
    return QelGroupAndTag(entity, kind.groupName, kind.groupKey, record, objIndex, filePath,
                          kind.xdata);
}

void QelGroupTagAnnotate(QelObject* object, AcDbEntity* entity, const QelClassRow& kind,
                         QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                         const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation) {
    record.memberType = kind.code;
    QelGroupTagAnnotate(object, entity, kind.groupName, kind.groupKey, record, objIndex, filePath,
                        translation, rotation, kind.xdata);
}

AcDbObjectId AddCenterLine(QelObject* object, const AcGePoint3d& from, const AcGePoint3d& to,
                           const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                           unsigned objIndex, const CString* filePath) {
    auto* line = new AcDbLine(from, to);
    ApplyColour(object, line);
    line->transformBy(translation);
    line->transformBy(rotation);
    ApplyImportTransform(line);
    if (AppendToModelSpace(line) != Acad::eOk) return AcDbObjectId();
    const QelClassRow& kind = QelClassOf(QelCode::CenterLine);
    QelMemberRecord record;
    record.memberType = kind.code;
    QelFillRecordOrigin(record, objIndex, filePath, CString());
    QelTagEntity(line, record, kind.xdata);
    return line->objectId();
}

AcDbObjectId AddAxisCenterLine(QelObject* object, double height, const AcGeMatrix3d& translation,
                               const AcGeMatrix3d& rotation, unsigned objIndex,
                               const CString* filePath) {
    return AddCenterLine(object, AcGePoint3d::kOrigin, AcGePoint3d(0.0, 0.0, height), translation,
                         rotation, objIndex, filePath);
}
