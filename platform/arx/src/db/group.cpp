#include <algorithm>
#include <string>

#include "../dxf/fieldtable.h"
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
    AcDbStub* self = AcDbImpl::stub(this);
    if (AcDbImpl::database(s) != AcDbImpl::database(self)) return Acad::eWrongDatabase;
    AcDbObject* member = AcDbImpl::peek(s);
    if (member == nullptr) return Acad::ePermanentlyErased;
    if (AcDbImpl::erased(s)) return Acad::eWasErased;
    if (!AcDbEntity::cast(member)) return Acad::eNotAnEntity;
    // A member with no reactor yet is in no group: the common case of a fresh entity.
    if (AcDbImpl::setFirstReactor(member, self)) {
        members_.push_back(s);
        return Acad::eOk;
    }
    if (member->hasPersistentReactor(objectId())) return Acad::eAlreadyInGroup;
    members_.push_back(s);
    member->addPersistentReactor(objectId());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::append(const AcDbObjectIdArray& ids) {
    members_.reserve(members_.size() + size_t(ids.length()));
    // Each member gets a reactor: asking memory for members a few ahead hides its latency when
    // a whole cloud joins at once.
    constexpr int kAhead = 8;
    for (int i = 0; i < ids.length(); ++i) {
        if (i + kAhead < ids.length())
            if (const AcDbStub* ahead = acdbStubOf(ids[i + kAhead]))
                __builtin_prefetch(ahead->object, 1);
        if (Acad::ErrorStatus es = append(ids[i]); es != Acad::eOk) return es;
    }
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

// A group's description, its flags and its members, each as a reference.
namespace {
const AcDbGroup& group(const AcDbObject& o) {
    return static_cast<const AcDbGroup&>(o);
}
void writeDescription(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofText(f.code, group(o).description()));
}
bool readDescription(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbGroup&>(o).setDescription(item.text.c_str()) == Acad::eOk;
}
void writeUnnamed(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(f.code, group(o).isAnonymous() ? 1 : 0));
}
// The name is the dictionary's key, read with the dictionary: the flag alone is kept.
bool readUnnamed(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    AcDbImpl::setGroupAnonymous(static_cast<AcDbGroup&>(o), item.integer != 0);
    return true;
}
void writeSelectable(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(f.code, group(o).isSelectable() ? 1 : 0));
}
bool readSelectable(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbGroup&>(o).setSelectable(item.integer != 0) == Acad::eOk;
}
void writeMembers(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    AcDbObjectIdArray ids;
    group(o).allEntityIds(ids);
    for (const AcDbObjectId& id : ids)
        out.push_back(AcDbDxfItem::ofId(f.code, id));
}
bool readMember(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbGroup&>(o).append(item.id) == Acad::eOk;
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbGroup")),           dxf::custom(300, writeDescription, readDescription),
    dxf::custom(70, writeUnnamed, readUnnamed), dxf::custom(71, writeSelectable, readSelectable),
    dxf::custom(340, writeMembers, readMember),
};
} // namespace
ACDB_DXF_KIND(AcDbGroup, "GROUP", kFields)
