#include "export/group_members.h"

#include <arx/dbdict.h>
#include <arx/dbents.h>

namespace {

// The first persistent reactor that opens as a group.
AcDbObjectId firstGroup(const AcDbEntity& entity) {
    const AcDbVoidPtrArray* reactors = entity.reactors();
    if (!reactors) return AcDbObjectId::kNull;
    for (int i = 0; i < reactors->length(); ++i) {
        void* reactor = reactors->at(i);
        if (!acdbIsPersistentReactor(reactor)) continue;
        const AcDbObjectId candidate = acdbPersistentReactorObjectId(reactor);
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, candidate, AcDb::kForRead) != Acad::eOk) continue;
        group->close();
        return candidate;
    }
    return AcDbObjectId::kNull;
}

} // namespace

int groupMembers(const AcDbObjectId& id, AcDbObjectIdArray& members) {
    members.setLogicalLength(0);
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return 0;
    const AcDbObjectId groupId = firstGroup(*entity);
    entity->close();
    if (groupId.isNull()) return 0;
    AcDbGroup* group = nullptr;
    if (acdbOpenObject(group, groupId, AcDb::kForRead) != Acad::eOk) return 0;
    group->allEntityIds(members);
    group->close();
    return members.length();
}

bool QelIsText(const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const bool text = AcDbText::cast(entity) != nullptr;
    entity->close();
    return text;
}
