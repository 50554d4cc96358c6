// What a drawing reader needs beyond the module's interface: a database built object by object
// under the handles of a file.
#include "arx/dbhost.h"
#include "objectimpl.h"

namespace {

template <class T>
bool residentIn(AcDbDatabase* db, AcDbObjectId id) {
    AcDbStub* s = acdbStubOf(id);
    return s != nullptr && AcDbImpl::database(s) == db && T::cast(AcDbImpl::peek(s)) != nullptr;
}

} // namespace

Acad::ErrorStatus acdbHostSetRoots(AcDbDatabase* db, const AcDbHostRoots& r) {
    if (db == nullptr) return Acad::eNoDatabase;
    const bool ok = residentIn<AcDbBlockTable>(db, r.blockTable) &&
                    residentIn<AcDbLayerTable>(db, r.layerTable) &&
                    residentIn<AcDbUCSTable>(db, r.ucsTable) &&
                    residentIn<AcDbRegAppTable>(db, r.regAppTable) &&
                    residentIn<AcDbDictionary>(db, r.namedObjects) &&
                    residentIn<AcDbDictionary>(db, r.groupDictionary) &&
                    residentIn<AcDbBlockTableRecord>(db, r.modelSpace) &&
                    residentIn<AcDbBlockTableRecord>(db, r.paperSpace) &&
                    residentIn<AcDbLayerTableRecord>(db, r.layerZero) &&
                    residentIn<AcDbLayerTableRecord>(db, r.clayer);
    if (!ok) return Acad::eWrongObjectType;
    auto& d = AcDbImpl::of(db);
    d.blockTable = acdbStubOf(r.blockTable);
    d.layerTable = acdbStubOf(r.layerTable);
    d.ucsTable = acdbStubOf(r.ucsTable);
    d.regAppTable = acdbStubOf(r.regAppTable);
    d.namedObjects = acdbStubOf(r.namedObjects);
    d.groupDictionary = acdbStubOf(r.groupDictionary);
    d.modelSpace = acdbStubOf(r.modelSpace);
    d.paperSpace = acdbStubOf(r.paperSpace);
    d.layerZero = acdbStubOf(r.layerZero);
    d.clayer = acdbStubOf(r.clayer);
    return Acad::eOk;
}

Acad::ErrorStatus acdbHostAppendEntity(AcDbBlockTableRecord* block, AcDbEntity* entity,
                                       const AcDbHandle& handle) {
    if (block == nullptr || entity == nullptr) return Acad::eNullObjectPointer;
    AcDbStub* blockStub = AcDbImpl::stub(block);
    if (blockStub == nullptr) return Acad::eNotInDatabase;
    AcDbDatabase* db = AcDbImpl::database(blockStub);
    if (AcDbImpl::layer(entity) == nullptr) AcDbImpl::setLayer(entity, acdbStubOf(db->clayer()));
    if (Acad::ErrorStatus es = AcDbImpl::add(db, entity, blockStub, Adesk::UInt64(handle));
        es != Acad::eOk)
        return es;
    AcDbImpl::appendToBlock(block, AcDbImpl::stub(entity));
    return Acad::eOk;
}

Acad::ErrorStatus acdbHostReserveHandle(AcDbDatabase* db, AcDbHandle& handle) {
    if (db == nullptr) return Acad::eNoDatabase;
    auto& d = AcDbImpl::of(db);
    Adesk::UInt64 h = handle;
    if (h == 0) {
        while (d.stubAt(d.handseed, true)->flags & AcDbStub::kUsed)
            ++d.handseed;
        h = d.handseed;
    }
    AcDbStub* s = d.stubAt(h, true);
    if (s->flags & AcDbStub::kUsed) return Acad::eHandleInUse;
    s->flags = AcDbStub::kUsed;
    if (h >= d.handseed) d.handseed = h + 1;
    handle = h;
    return Acad::eOk;
}

Acad::ErrorStatus acdbHostSetExtensionDictionary(AcDbObject* object, AcDbObjectId dictionary) {
    if (object == nullptr) return Acad::eNullObjectPointer;
    AcDbStub* s = acdbStubOf(dictionary);
    if (s == nullptr || !AcDbDictionary::cast(AcDbImpl::peek(s))) return Acad::eWrongObjectType;
    if (AcDbImpl::stub(object) == nullptr) return Acad::eNotInDatabase;
    AcDbImpl::setOwner(AcDbImpl::peek(s), AcDbImpl::stub(object));
    AcDbImpl::setExtensionDictionary(object, s);
    return Acad::eOk;
}

Acad::ErrorStatus acdbHostSetOwner(AcDbObject* object, AcDbObjectId owner) {
    if (object == nullptr) return Acad::eNullObjectPointer;
    if (AcDbImpl::stub(object) == nullptr) return Acad::eNotInDatabase;
    AcDbImpl::setOwner(object, acdbStubOf(owner));
    return Acad::eOk;
}

void acdbHostRaiseHandseed(AcDbDatabase* db, const AcDbHandle& seed) {
    if (db != nullptr && Adesk::UInt64(seed) > AcDbImpl::of(db).handseed)
        AcDbImpl::of(db).handseed = seed;
}

void acdbHostSetFileData(AcDbDatabase* db, std::shared_ptr<void> data) {
    if (db != nullptr) AcDbImpl::of(db).fileData = std::move(data);
}

std::shared_ptr<void> acdbHostFileData(const AcDbDatabase* db) {
    return db ? AcDbImpl::of(const_cast<AcDbDatabase*>(db)).fileData : nullptr;
}
