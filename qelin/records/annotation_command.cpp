#include "annotation_command.h"

#include "records/member_record.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/dbdict.h>
#include <arx/dbents.h>

namespace {

// The group an entity belongs to: the first group among its persistent reactors.
AcDbObjectId groupOf(ads_name entity) {
    AcDbObjectId id;
    AcDbEntity* object = nullptr;
    if (acdbGetObjectId(id, entity) != Acad::eOk ||
        acdbOpenAcDbEntity(object, id, AcDb::kForRead) != Acad::eOk)
        return AcDbObjectId::kNull;
    AcDbObjectId group;
    if (const AcDbVoidPtrArray* reactors = object->reactors())
        for (int i = 0; i < reactors->length() && group.isNull(); ++i) {
            void* reactor = reactors->at(i);
            if (!acdbIsPersistentReactor(reactor)) continue;
            const AcDbObjectId candidate = acdbPersistentReactorObjectId(reactor);
            AcDbGroup* found = nullptr;
            if (acdbOpenObject(found, candidate, AcDb::kForRead) != Acad::eOk) continue;
            group = candidate;
            found->close();
        }
    object->close();
    return group;
}

// Every text of the group made visible or invisible; members that don't open are passed by.
void setTextsVisible(AcDbObjectId groupId, bool visible) {
    AcDbGroup* group = nullptr;
    if (acdbOpenObject(group, groupId, AcDb::kForRead) != Acad::eOk) return;
    AcDbObjectIdArray members;
    group->allEntityIds(members);
    group->close();
    for (int i = 0; i < members.length(); ++i) {
        AcDbEntity* member = nullptr;
        if (acdbOpenAcDbEntity(member, members[i], AcDb::kForWrite) != Acad::eOk) continue;
        if (AcDbText::cast(member))
            member->setVisibility(visible ? AcDb::kVisible : AcDb::kInvisible, true);
        member->close();
    }
}

// The answer to the prompt: true to hide. Enter hides; after Escape or an error the command
// goes on and restores, which is the flag's own default.
bool askHide() {
    ACHAR answer[133] = {};
    acedInitGet(0, L"Restore Hide");
    switch (acedGetKword(L"\nRestore or Hide annotations - [Restore/Hide]<Hide>: ", answer)) {
    case RTNORM:
        return std::wstring(answer) == L"Hide";
    case RTNONE:
        return true;
    case RTCAN:
        acutPrintf(L"\n User canceled");
        return false;
    case RTERROR:
        acutPrintf(L"\n Error in acedGetKword function");
        return false;
    default:
        return false;
    }
}

} // namespace

void QelAnnCommand() {
    ads_name selection = {0, 0};
    const int selected = acedSSGet(nullptr, nullptr, nullptr, nullptr, selection);
    if (selected == RTCAN) return;
    if (selected != RTNORM) {
        acutPrintf(L"\n Nothing selected.");
        return;
    }
    Adesk::Int32 count = 0;
    if (acedSSLength(selection, &count) != RTNORM) {
        acutPrintf(L"\n Invalid selected set.");
        acedSSFree(selection);
        return;
    }
    const bool hide = askHide();
    QelMemberRecord record;
    for (Adesk::Int32 i = 0; i < count; ++i) {
        ads_name entity = {0, 0};
        if (acedSSName(selection, i, entity) != RTNORM) continue;
        if (!record.Load(entity)) continue; // not imported: no group of ours
        const AcDbObjectId group = groupOf(entity);
        if (!group.isNull()) setTextsVisible(group, !hide);
    }
    acedSSFree(selection);
}
