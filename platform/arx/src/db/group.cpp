#include <algorithm>
#include <string>

#include "objectimpl.h"
#include "rxdefine.h"
#include "text.h"

ACRX_DEFINE_MEMBERS(AcDbGroup, AcDbObject, ACRX_T("GROUP"))

AcDbGroup::AcDbGroup(const ACHAR* description, bool selectable)
    : description_(description ? description : L""), selectable_(selectable) {}

const ACHAR* AcDbGroup::name() const {
    return name_ ? name_->c_str() : L"";
}

Acad::ErrorStatus AcDbGroup::getName(ACHAR*& name) const {
    name = acdbDupString(this->name());
    return Acad::eOk;
}

const ACHAR* AcDbGroup::description() const {
    return description_.c_str();
}

Acad::ErrorStatus AcDbGroup::setDescription(const ACHAR* description) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    description_ = description ? description : L"";
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::setSelectable(bool selectable) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    selectable_ = selectable;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::setAnonymous() {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    anonymous_ = true;
    auto* dictionary = AcDbDictionary::cast(AcDbImpl::peek(AcDbImpl::owner(this)));
    if (dictionary == nullptr) return Acad::eOk;
    auto& db = AcDbImpl::of(database());
    std::wstring key;
    do {
        key = L"*A" + std::to_wstring(db.nextAnonymousGroup++);
    } while (dictionary->has(key.c_str()));
    // Renaming the entry is the group's own business, whether its dictionary is open or not.
    AcDbImpl::renameEntry(dictionary, AcDbImpl::stub(this), key.c_str());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::append(AcDbObjectId id) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (AcDbImpl::stub(this) == nullptr) return Acad::eNotInDatabase;
    AcDbStub* s = acdbStubOf(id);
    if (s == nullptr) return Acad::eNullObjectId;
    if (AcDbImpl::database(s) != database()) return Acad::eWrongDatabase;
    AcDbObject* member = AcDbImpl::peek(s);
    if (member == nullptr) return Acad::ePermanentlyErased;
    if (AcDbImpl::erased(s)) return Acad::eWasErased;
    if (!AcDbEntity::cast(member)) return Acad::eNotAnEntity;
    if (member->hasPersistentReactor(objectId())) return Acad::eAlreadyInGroup;
    members_.push_back(s);
    member->addPersistentReactor(objectId());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::append(const AcDbObjectIdArray& ids) {
    members_.reserve(members_.size() + size_t(ids.length()));
    for (const AcDbObjectId& id : ids)
        if (Acad::ErrorStatus es = append(id); es != Acad::eOk) return es;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::remove(AcDbObjectId id) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    auto it = std::find(members_.begin(), members_.end(), acdbStubOf(id));
    if (it == members_.end()) return Acad::eNotInGroup;
    members_.erase(it);
    if (AcDbObject* member = AcDbImpl::peek(acdbStubOf(id)))
        member->removePersistentReactor(objectId());
    return Acad::eOk;
}

bool AcDbGroup::has(const AcDbEntity* entity) const {
    return entity != nullptr &&
           std::find(members_.begin(), members_.end(), AcDbImpl::stub(entity)) != members_.end();
}

Adesk::UInt32 AcDbGroup::numEntities() const {
    AcDbObjectIdArray ids;
    return allEntityIds(ids);
}

Adesk::UInt32 AcDbGroup::allEntityIds(AcDbObjectIdArray& ids) const {
    ids.removeAll();
    for (AcDbStub* s : members_)
        if (s->object != nullptr && !AcDbImpl::erased(s)) ids.append(s);
    return Adesk::UInt32(ids.length());
}
