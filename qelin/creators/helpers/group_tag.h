// The end of every creator's recipe: the object's anonymous group, the member record and the
// extended data on its entities, and the centre lines beside them.
#pragma once

#include "import/class_table.h"
#include "records/member_record.h"

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/win.h>

// One anonymous group of an object: made with the class's group name as its description,
// selectable, put into the group dictionary under key and made anonymous. The group stays open
// for write for the creator to append to and close; name gets the generated name. Null (and
// the group deleted) if the dictionary refused it.
AcDbGroup* QelMakeObjectGroup(const ACHAR* groupName, const ACHAR* key, CString& name);
// Appends the entity's id to the group when both exist.
void QelGroupAppend(AcDbGroup* group, AcDbObjectId id);
// Closes the group if there is one.
void QelCloseGroup(AcDbGroup* group);

// The parts of a record that say where the object came from: objectIndex, filePath, context,
// groupName, and groupSerial (maxGroupNumber inside a geometric group, else 0).
void QelFillRecordOrigin(QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                         const CString& groupName);
// Stores the record on the entity and, when text is given, appends it to the entity's extended
// data.
void QelTagEntity(AcDbEntity* entity, QelMemberRecord& record, const ACHAR* text);
// Opens the entity for write to append one extended data text, then closes it.
void QelAddXDataById(AcDbObjectId id, const ACHAR* text);
// The group of an object with its one entity: the group made, the entity (when not null)
// appended to it, and the record, filled with where the object came from, stored on the entity
// with the extended data text. The group stays open for write (null if it could not be made).
AcDbGroup* QelGroupAndTag(AcDbEntity* entity, const ACHAR* groupName, const ACHAR* key,
                          QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                          const ACHAR* text);
// The whole end of the recipe for an object of one entity: QelGroupAndTag without the text, the
// annotations placed by the two matrices and tied to the group, the group closed, then the
// extended data text on the entity.
void QelGroupTagAnnotate(QelObject* object, AcDbEntity* entity, const ACHAR* groupName,
                         const ACHAR* key, QelMemberRecord& record, unsigned objIndex,
                         const CString* filePath, const AcGeMatrix3d& translation,
                         const AcGeMatrix3d& rotation, const ACHAR* text);

// The two above for a class of the table: its group name, key and text, and its code as the
// record's memberType.
AcDbGroup* QelGroupAndTag(AcDbEntity* entity, const QelClassRow& kind, QelMemberRecord& record,
                          unsigned objIndex, const CString* filePath);
void QelGroupTagAnnotate(QelObject* object, AcDbEntity* entity, const QelClassRow& kind,
                         QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                         const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation);

// Centre lines: a line coloured, placed by both matrices and the import transform, appended
// to model space and tagged with memberType 28 and "Center Line". Not a member of any group. The
// id of the line, null when it could not be appended.
AcDbObjectId AddCenterLine(QelObject* object, const AcGePoint3d& from, const AcGePoint3d& to,
                           const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                           unsigned objIndex, const CString* filePath);
// From the origin to (0, 0, height).
AcDbObjectId AddAxisCenterLine(QelObject* object, double height, const AcGeMatrix3d& translation,
                               const AcGeMatrix3d& rotation, unsigned objIndex,
                               const CString* filePath);
