#include <cwchar>

#include "arx/dbblkref.h"
#include "objectimpl.h"
#include "rxdefine.h"
#include "text.h"

ACRX_DEFINE_MEMBERS(AcDbSymbolTableRecord, AcDbObject, nullptr)
ACRX_DEFINE_MEMBERS(AcDbSymbolTable, AcDbObject, nullptr)
ACRX_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord, ACRX_T("BLOCK_RECORD"))
ACRX_DEFINE_MEMBERS(AcDbLayerTableRecord, AcDbSymbolTableRecord, ACRX_T("LAYER"))
ACRX_DEFINE_MEMBERS(AcDbUCSTableRecord, AcDbSymbolTableRecord, ACRX_T("UCS"))
ACRX_DEFINE_MEMBERS(AcDbRegAppTableRecord, AcDbSymbolTableRecord, ACRX_T("APPID"))
ACRX_DEFINE_MEMBERS(AcDbBlockTable, AcDbSymbolTable, ACRX_T("TABLE"))
ACRX_DEFINE_MEMBERS(AcDbLayerTable, AcDbSymbolTable, ACRX_T("TABLE"))
ACRX_DEFINE_MEMBERS(AcDbUCSTable, AcDbSymbolTable, ACRX_T("TABLE"))
ACRX_DEFINE_MEMBERS(AcDbRegAppTable, AcDbSymbolTable, ACRX_T("TABLE"))

// Records.

Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& name) const {
    name = acdbDupString(name_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(const ACHAR*& name) const {
    name = name_.c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* name) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (name == nullptr || *name == 0) return Acad::eInvalidSymbolTableName;
    // A leading '*' marks the host's own and anonymous records.
    for (const ACHAR* p = name; *p; ++p)
        if (std::wcschr(L"<>/\\\":;?|,=`", *p) || (*p == L'*' && p != name))
            return Acad::eInvalidSymbolTableName;
    // A new name must not clash with another record of the table.
    if (const auto* table = AcDbSymbolTable::cast(AcDbImpl::peek(AcDbImpl::owner(this)))) {
        AcDbObjectId other;
        if (table->getAt(name, other) == Acad::eOk && acdbStubOf(other) != AcDbImpl::stub(this))
            return Acad::eDuplicateRecordName;
    }
    name_ = name;
    return Acad::eOk;
}

AcDbLayerTableRecord::AcDbLayerTableRecord() {
    color_.setColorIndex(7);
}

void AcDbLayerTableRecord::setColor(const AcCmColor& color) {
    if (assertWriteEnabled() == Acad::eOk) color_ = color;
}
void AcDbLayerTableRecord::setIsOff(bool off) {
    if (assertWriteEnabled() == Acad::eOk) off_ = off;
}
Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    frozen_ = frozen;
    return Acad::eOk;
}
void AcDbLayerTableRecord::setIsLocked(bool locked) {
    if (assertWriteEnabled() == Acad::eOk) locked_ = locked;
}

void AcDbUCSTableRecord::setOrigin(const AcGePoint3d& origin) {
    if (assertWriteEnabled() == Acad::eOk) origin_ = origin;
}
void AcDbUCSTableRecord::setXAxis(const AcGeVector3d& xAxis) {
    if (assertWriteEnabled() == Acad::eOk) xAxis_ = xAxis;
}
void AcDbUCSTableRecord::setYAxis(const AcGeVector3d& yAxis) {
    if (assertWriteEnabled() == Acad::eOk) yAxis_ = yAxis;
}

// Tables.

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id,
                                         bool getErasedRecord) const {
    id = AcDbObjectId::kNull;
    if (name == nullptr) return Acad::eInvalidInput;
    for (AcDbStub* s : records_) {
        const auto* record = static_cast<const AcDbSymbolTableRecord*>(AcDbImpl::peek(s));
        if (record == nullptr || (AcDbImpl::erased(s) && !getErasedRecord)) continue;
        if (acdbEqualNoCase(record->name(), name)) {
            id = s;
            return Acad::eOk;
        }
    }
    return Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbSymbolTableRecord*& record,
                                         AcDb::OpenMode mode, bool openErasedRecord) const {
    record = nullptr;
    AcDbObjectId id;
    if (Acad::ErrorStatus es = getAt(name, id, openErasedRecord); es != Acad::eOk) return es;
    AcDbObject* object = nullptr;
    Acad::ErrorStatus es = AcDbImpl::open(acdbStubOf(id), mode, openErasedRecord, object);
    record = static_cast<AcDbSymbolTableRecord*>(object);
    return es;
}

bool AcDbSymbolTable::has(const ACHAR* name) const {
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}

bool AcDbSymbolTable::has(AcDbObjectId id) const {
    for (AcDbStub* s : records_)
        if (s == acdbStubOf(id) && !AcDbImpl::erased(s)) return true;
    return false;
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* record) {
    AcDbObjectId id;
    return add(id, record);
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* record) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (record == nullptr) return Acad::eNullObjectPointer;
    if (!record->isKindOf(recordClass())) return Acad::eWrongObjectType;
    if (record->name().empty()) return Acad::eInvalidSymbolTableName;
    if (has(record->name().c_str())) return Acad::eDuplicateRecordName;
    if (AcDbImpl::stub(record) == nullptr) {
        Acad::ErrorStatus es = AcDbImpl::add(database(), record, AcDbImpl::stub(this));
        if (es != Acad::eOk) return es;
    } else if (AcDbImpl::database(AcDbImpl::stub(record)) != database()) {
        return Acad::eWrongDatabase;
    }
    AcDbImpl::setOwner(record, AcDbImpl::stub(this));
    records_.push_back(AcDbImpl::stub(record));
    id = record->objectId();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const {
    iterator = new AcDbSymbolTableIterator(this);
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

void AcDbSymbolTableIterator::skip(bool forward, bool skipDeleted) {
    const auto& records = table_->records_;
    while (index_ >= 0 && index_ < int(records.size()) && skipDeleted &&
           AcDbImpl::erased(records[size_t(index_)]))
        index_ += forward ? 1 : -1;
}

void AcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    index_ = atBeginning ? 0 : int(table_->records_.size()) - 1;
    skip(atBeginning, skipDeleted);
}

bool AcDbSymbolTableIterator::done() const {
    return index_ < 0 || index_ >= int(table_->records_.size());
}

void AcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    index_ += forward ? 1 : -1;
    skip(forward, skipDeleted);
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
    if (done()) return Acad::eInvalidIndex;
    id = table_->records_[size_t(index_)];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecord(AcDbSymbolTableRecord*& record,
                                                     AcDb::OpenMode mode,
                                                     bool openErasedRecord) const {
    record = nullptr;
    if (done()) return Acad::eInvalidIndex;
    AcDbObject* object = nullptr;
    Acad::ErrorStatus es =
        AcDbImpl::open(table_->records_[size_t(index_)], mode, openErasedRecord, object);
    record = static_cast<AcDbSymbolTableRecord*>(object);
    return es;
}

// Block table records.

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId id;
    return appendAcDbEntity(id, entity);
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
    id = AcDbObjectId::kNull;
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (AcDbImpl::stub(this) == nullptr) return Acad::eNotInDatabase;
    if (entity == nullptr) return Acad::eNullEntityPointer;
    if (AcDbImpl::stub(entity) != nullptr) return Acad::eAlreadyInDb;
    AcDbDatabase* db = database();
    if (AcDbImpl::layer(entity) == nullptr || AcDbImpl::database(AcDbImpl::layer(entity)) != db)
        AcDbImpl::setLayer(entity, acdbStubOf(db->clayer()));
    Acad::ErrorStatus es = AcDbImpl::add(db, entity, AcDbImpl::stub(this));
    if (es != Acad::eOk) return es;
    entities_.push_back(AcDbImpl::stub(entity));
    id = entity->objectId();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator,
                                                    bool atBeginning, bool skipDeleted) const {
    iterator = new AcDbBlockTableRecordIterator(this);
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::getBlockReferenceIds(AcDbObjectIdArray& ids,
                                                             bool /*directOnly*/,
                                                             bool /*forceValidity*/) const {
    ids.removeAll();
    AcDbDatabase* db = database();
    if (db == nullptr) return Acad::eNotInDatabase;
    for (auto& [number, page] : AcDbImpl::of(db).pages)
        for (AcDbStub& s : page->stubs) {
            const auto* ref = AcDbBlockReference::cast(s.object);
            if (ref && !AcDbImpl::erased(&s) &&
                acdbStubOf(ref->blockTableRecord()) == AcDbImpl::stub(this))
                ids.append(&s);
        }
    return Acad::eOk;
}

bool AcDbBlockTableRecord::isLayout() const {
    return acdbEqualNoCase(name(), ACDB_MODEL_SPACE) ||
           acdbUpper(name()).rfind(L"*PAPER_SPACE", 0) == 0;
}

bool AcDbBlockTableRecord::isAnonymous() const {
    return !name().empty() && name()[0] == L'*' && !isLayout();
}

bool AcDbBlockTableRecord::hasEntities() const {
    for (AcDbStub* s : entities_)
        if (!AcDbImpl::erased(s)) return true;
    return false;
}

Acad::ErrorStatus AcDbBlockTableRecord::setOrigin(const AcGePoint3d& origin) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    origin_ = origin;
    return Acad::eOk;
}

void AcDbBlockTableRecordIterator::skip(bool forward, bool skipDeleted) {
    const auto& entities = record_->entities_;
    while (index_ >= 0 && index_ < int(entities.size()) && skipDeleted &&
           AcDbImpl::erased(entities[size_t(index_)]))
        index_ += forward ? 1 : -1;
}

void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    index_ = atBeginning ? 0 : int(record_->entities_.size()) - 1;
    skip(atBeginning, skipDeleted);
}

bool AcDbBlockTableRecordIterator::done() const {
    return index_ < 0 || index_ >= int(record_->entities_.size());
}

void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    index_ += forward ? 1 : -1;
    skip(forward, skipDeleted);
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
    if (done()) return Acad::eInvalidIndex;
    id = record_->entities_[size_t(index_)];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity, AcDb::OpenMode mode,
                                                          bool openErasedEntity) const {
    entity = nullptr;
    if (done()) return Acad::eInvalidIndex;
    AcDbObject* object = nullptr;
    Acad::ErrorStatus es =
        AcDbImpl::open(record_->entities_[size_t(index_)], mode, openErasedEntity, object);
    entity = static_cast<AcDbEntity*>(object);
    return es;
}
