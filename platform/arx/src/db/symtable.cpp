#include <algorithm>
#include <cwchar>

#include "../dxf/fieldtable.h"
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
    auto* table = AcDbSymbolTable::cast(AcDbImpl::peek(AcDbImpl::owner(this)));
    if (table) {
        AcDbObjectId other;
        if (table->getAt(name, other) == Acad::eOk && acdbStubOf(other) != AcDbImpl::stub(this))
            return Acad::eDuplicateRecordName;
    }
    std::wstring from = std::move(name_);
    name_ = name;
    if (table) table->renamed(AcDbImpl::stub(this), from, name_);
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
    const auto found = byName_.find(acdbUpper(name));
    if (found == byName_.end()) return Acad::eKeyNotFound;
    for (AcDbStub* s : found->second) {
        if (AcDbImpl::peek(s) == nullptr || (AcDbImpl::erased(s) && !getErasedRecord)) continue;
        id = s;
        return Acad::eOk;
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
    AcDbStub* s = acdbStubOf(id);
    const auto* record = AcDbSymbolTableRecord::cast(AcDbImpl::peek(s));
    if (record == nullptr || AcDbImpl::erased(s)) return false;
    const auto found = byName_.find(acdbUpper(record->name()));
    if (found == byName_.end()) return false;
    for (AcDbStub* listed : found->second)
        if (listed == s) return true;
    return false;
}

void AcDbSymbolTable::renamed(AcDbStub* record, const std::wstring& from, const std::wstring& to) {
    const std::wstring oldKey = acdbUpper(from), newKey = acdbUpper(to);
    if (oldKey == newKey) return;
    if (auto found = byName_.find(oldKey); found != byName_.end()) {
        auto& list = found->second;
        const auto at = std::find(list.begin(), list.end(), record);
        if (at == list.end()) return; // not one of this table's records
        list.erase(at);
        if (list.empty()) byName_.erase(found);
    } else {
        return;
    }
    // The record keeps its place in the table: among records of its new name it goes where
    // the table's order puts it.
    auto& list = byName_[newKey];
    if (list.empty()) {
        list.push_back(record);
        return;
    }
    const auto position = std::find(records_.begin(), records_.end(), record);
    auto at = list.begin();
    while (at != list.end() && std::find(records_.begin(), position, *at) != position)
        ++at;
    list.insert(at, record);
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
    byName_[acdbUpper(record->name())].push_back(AcDbImpl::stub(record));
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

// Drawing groups of the records. Every record starts with its name; a layer keeps its states in
// 70 (1 frozen, 4 locked) and its being off in the sign of its colour.
namespace {
const AcDbSymbolTableRecord& rec(const AcDbObject& o) {
    return static_cast<const AcDbSymbolTableRecord&>(o);
}
void writeName(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofText(f.code, rec(o).name()));
}
bool readName(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbSymbolTableRecord&>(o).setName(item.text.c_str()) == Acad::eOk;
}
void writeNoFlags(const AcDbDxfField& f, const AcDbObject&, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(f.code, 0));
}
bool readNoFlags(const AcDbDxfField&, AcDbObject&, const AcDbDxfItem&) {
    return true;
}

const AcDbLayerTableRecord& layer(const AcDbObject& o) {
    return static_cast<const AcDbLayerTableRecord&>(o);
}
void writeLayerFlags(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(
        AcDbDxfItem::ofInt(f.code, (layer(o).isFrozen() ? 1 : 0) | (layer(o).isLocked() ? 4 : 0)));
}
bool readLayerFlags(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    auto& l = static_cast<AcDbLayerTableRecord&>(o);
    l.setIsLocked(item.integer & 4);
    return l.setIsFrozen(item.integer & 1) == Acad::eOk;
}
void writeLayerColor(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const int index = layer(o).color().colorIndex();
    out.push_back(AcDbDxfItem::ofInt(f.code, layer(o).isOff() ? -index : index));
}
bool readLayerColor(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    auto& l = static_cast<AcDbLayerTableRecord&>(o);
    AcCmColor color;
    if (!color.setColorIndex(Adesk::Int16(item.integer < 0 ? -item.integer : item.integer)))
        return false;
    l.setIsOff(item.integer < 0);
    if (!l.color().isByColor()) l.setColor(color);
    return true;
}
void writeLayerTrueColor(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const AcCmColor c = layer(o).color();
    if (c.isByColor()) out.push_back(AcDbDxfItem::ofInt(f.code, c.color() & 0xFFFFFF));
}
bool readLayerTrueColor(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    AcCmColor c;
    c.setRGB(Adesk::UInt8(item.integer >> 16), Adesk::UInt8(item.integer >> 8),
             Adesk::UInt8(item.integer));
    static_cast<AcDbLayerTableRecord&>(o).setColor(c);
    return true;
}
// Line types are not kept: every layer draws continuous lines.
void writeLinetype(const AcDbDxfField& f, const AcDbObject&, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofText(f.code, L"Continuous"));
}
bool readLinetype(const AcDbDxfField&, AcDbObject&, const AcDbDxfItem&) {
    return true;
}

const AcDbDxfField kLayerFields[] = {
    dxf::marker(ACRX_T("AcDbSymbolTableRecord")),
    dxf::marker(ACRX_T("AcDbLayerTableRecord")),
    dxf::custom(2, writeName, readName),
    dxf::custom(70, writeLayerFlags, readLayerFlags),
    dxf::custom(62, writeLayerColor, readLayerColor),
    dxf::custom(420, writeLayerTrueColor, readLayerTrueColor),
    dxf::custom(6, writeLinetype, readLinetype),
};
const AcDbDxfField kUcsFields[] = {
    dxf::marker(ACRX_T("AcDbSymbolTableRecord")),
    dxf::marker(ACRX_T("AcDbUCSTableRecord")),
    dxf::custom(2, writeName, readName),
    dxf::custom(70, writeNoFlags, readNoFlags),
    dxf::value<AcDbUCSTableRecord, &AcDbUCSTableRecord::origin, &AcDbUCSTableRecord::setOrigin>(10),
    dxf::value<AcDbUCSTableRecord, &AcDbUCSTableRecord::xAxis, &AcDbUCSTableRecord::setXAxis>(11),
    dxf::value<AcDbUCSTableRecord, &AcDbUCSTableRecord::yAxis, &AcDbUCSTableRecord::setYAxis>(12),
};
const AcDbDxfField kRegAppFields[] = {
    dxf::marker(ACRX_T("AcDbSymbolTableRecord")),
    dxf::marker(ACRX_T("AcDbRegAppTableRecord")),
    dxf::custom(2, writeName, readName),
    dxf::custom(70, writeNoFlags, readNoFlags),
};
const AcDbDxfField kBlockRecordFields[] = {
    dxf::marker(ACRX_T("AcDbSymbolTableRecord")),
    dxf::marker(ACRX_T("AcDbBlockTableRecord")),
    dxf::custom(2, writeName, readName),
};
} // namespace
ACDB_DXF_KIND(AcDbLayerTableRecord, "LAYER", kLayerFields)
ACDB_DXF_KIND(AcDbUCSTableRecord, "UCS", kUcsFields)
ACDB_DXF_KIND(AcDbRegAppTableRecord, "APPID", kRegAppFields)
ACDB_DXF_KIND(AcDbBlockTableRecord, "BLOCK_RECORD", kBlockRecordFields)
