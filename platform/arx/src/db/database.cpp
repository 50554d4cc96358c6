#include <cstdlib>
#include <new>
#include <set>

#include "arx/dbblkref.h"
#include "objectimpl.h"
#include "text.h"

namespace {

template <class Table, class Record>
AcDbStub* addRecord(AcDbDatabase* db, Table* table, const ACHAR* name, Record* record) {
    AcDbImpl::add(db, record, AcDbImpl::stub(table));
    record->setName(name);
    table->add(record);
    AcDbStub* s = AcDbImpl::stub(record);
    record->close();
    return s;
}

template <class Table>
AcDbStub* addTable(AcDbDatabase* db, Table*& table) {
    table = new Table;
    AcDbImpl::add(db, table, nullptr);
    return AcDbImpl::stub(table);
}

template <class T>
Acad::ErrorStatus openAs(AcDbStub* s, T*& object, AcDb::OpenMode mode) {
    object = nullptr;
    AcDbObject* base = nullptr;
    Acad::ErrorStatus es = AcDbImpl::open(s, mode, false, base);
    if (es == Acad::eOk) object = static_cast<T*>(base);
    return es;
}

} // namespace

AcDbStub* AcDbDatabase::Impl::stubOnOtherPage(Adesk::UInt64 handle, bool create) {
    const Adesk::UInt64 pageNumber = handle / AcDbStubPage::kCount;
    auto it = pages.find(pageNumber);
    if (it == pages.end()) {
        if (!create) return nullptr;
        void* memory = std::aligned_alloc(AcDbStubPage::kBytes, AcDbStubPage::kBytes);
        if (memory == nullptr) throw std::bad_alloc();
        auto* page = new (memory) AcDbStubPage;
        page->database = self;
        page->base = pageNumber * AcDbStubPage::kCount;
        for (AcDbStub& s : page->stubs)
            s = AcDbStub{};
        it = pages.emplace(pageNumber, page).first;
    }
    lastPage = it->second;
    return &it->second->stubs[handle - it->second->base];
}

AcDbDatabase::Impl::~Impl() {
    for (auto& [number, page] : pages)
        for (AcDbStub& s : page->stubs) {
            AcDbObject* object = s.object;
            s.object = nullptr;
            delete object;
        }
    for (auto& [number, page] : pages)
        std::free(page);
}

AcDbDatabase::AcDbDatabase(bool buildDefaultDrawing, bool /*noDocument*/)
    : impl_(std::make_unique<Impl>()) {
    impl_->self = this;
    if (!buildDefaultDrawing) return;
    Impl& d = *impl_;
    AcDbBlockTable* blocks;
    AcDbLayerTable* layers;
    AcDbUCSTable* ucss;
    AcDbRegAppTable* apps;
    d.blockTable = addTable(this, blocks);
    d.layerTable = addTable(this, layers);
    d.ucsTable = addTable(this, ucss);
    d.regAppTable = addTable(this, apps);
    auto* layerZero = new AcDbLayerTableRecord;
    AcCmColor white;
    white.setColorIndex(7);
    layerZero->setColor(white);
    d.layerZero = d.clayer = addRecord(this, layers, ACRX_T("0"), layerZero);
    d.modelSpace = addRecord(this, blocks, ACDB_MODEL_SPACE, new AcDbBlockTableRecord);
    d.paperSpace = addRecord(this, blocks, ACDB_PAPER_SPACE, new AcDbBlockTableRecord);
    addRecord(this, apps, ACRX_T("ACAD"), new AcDbRegAppTableRecord);
    auto* named = new AcDbDictionary;
    AcDbImpl::add(this, named, nullptr);
    d.namedObjects = AcDbImpl::stub(named);
    AcDbObjectId groupsId;
    auto* groups = new AcDbDictionary;
    named->setAt(ACRX_T("ACAD_GROUP"), groups, groupsId);
    d.groupDictionary = acdbStubOf(groupsId);
    groups->close();
    named->close();
    blocks->close();
    layers->close();
    ucss->close();
    apps->close();
}

AcDbDatabase::~AcDbDatabase() {
    if (acdbHostApplicationServices()->workingDatabase() == this)
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& t, AcDb::OpenMode m) {
    return openAs(impl_->blockTable, t, m);
}
Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& t, AcDb::OpenMode m) {
    return openAs(impl_->layerTable, t, m);
}
Acad::ErrorStatus AcDbDatabase::getUCSTable(AcDbUCSTable*& t, AcDb::OpenMode m) {
    return openAs(impl_->ucsTable, t, m);
}
Acad::ErrorStatus AcDbDatabase::getRegAppTable(AcDbRegAppTable*& t, AcDb::OpenMode m) {
    return openAs(impl_->regAppTable, t, m);
}
Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& d, AcDb::OpenMode m) {
    return openAs(impl_->namedObjects, d, m);
}
Acad::ErrorStatus AcDbDatabase::getGroupDictionary(AcDbDictionary*& d, AcDb::OpenMode m) {
    return openAs(impl_->groupDictionary, d, m);
}

AcDbObjectId AcDbDatabase::blockTableId() const {
    return impl_->blockTable;
}
AcDbObjectId AcDbDatabase::layerTableId() const {
    return impl_->layerTable;
}
AcDbObjectId AcDbDatabase::UCSTableId() const {
    return impl_->ucsTable;
}
AcDbObjectId AcDbDatabase::regAppTableId() const {
    return impl_->regAppTable;
}
AcDbObjectId AcDbDatabase::namedObjectsDictionaryId() const {
    return impl_->namedObjects;
}
AcDbObjectId AcDbDatabase::groupDictionaryId() const {
    return impl_->groupDictionary;
}
AcDbObjectId AcDbDatabase::currentSpaceId() const {
    return impl_->modelSpace;
}
AcDbObjectId AcDbDatabase::modelSpaceId() const {
    return impl_->modelSpace;
}
AcDbObjectId AcDbDatabase::paperSpaceId() const {
    return impl_->paperSpace;
}
AcDbObjectId AcDbDatabase::clayer() const {
    return impl_->clayer;
}
AcDbObjectId AcDbDatabase::layerZero() const {
    return impl_->layerZero;
}
AcGePoint3d AcDbDatabase::ucsorg() const {
    return impl_->ucsOrigin;
}
AcGeVector3d AcDbDatabase::ucsxdir() const {
    return impl_->ucsXAxis;
}
AcGeVector3d AcDbDatabase::ucsydir() const {
    return impl_->ucsYAxis;
}
AcDbHandle AcDbDatabase::handseed() const {
    return impl_->handseed;
}

Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId layerId) {
    AcDbStub* s = acdbStubOf(layerId);
    if (s == nullptr || AcDbImpl::database(s) != this) return Acad::eWrongDatabase;
    if (!AcDbLayerTableRecord::cast(AcDbImpl::peek(s))) return Acad::eWrongObjectType;
    if (AcDbImpl::erased(s)) return Acad::eWasErased;
    impl_->clayer = s;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setUcs(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                       const AcGeVector3d& yAxis) {
    if (xAxis.isZeroLength() || yAxis.isZeroLength() || !xAxis.isPerpendicularTo(yAxis))
        return Acad::eInvalidInput;
    impl_->ucsOrigin = origin;
    impl_->ucsXAxis = xAxis.normal();
    impl_->ucsYAxis = yAxis.normal();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& id, AcDbObject* object) {
    Acad::ErrorStatus es = AcDbImpl::add(this, object, nullptr);
    if (es == Acad::eOk) id = object->objectId();
    return es;
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool /*createIfNotFound*/,
                                                const AcDbHandle& handle,
                                                Adesk::UInt32 /*xRefId*/) {
    id = AcDbObjectId::kNull;
    if (handle.isNull()) return Acad::eNullHandle;
    AcDbStub* s = impl_->stubAt(handle, false);
    if (s == nullptr || !(s->flags & AcDbStub::kUsed)) return Acad::eUnknownHandle;
    id = s;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::purge(AcDbObjectIdArray& ids) const {
    std::set<AcDbStub*> used = {impl_->layerZero, impl_->clayer, impl_->modelSpace,
                                impl_->paperSpace};
    for (auto& [number, page] : impl_->pages)
        for (AcDbStub& s : page->stubs) {
            if (s.object == nullptr || AcDbImpl::erased(&s)) continue;
            if (const auto* e = AcDbEntity::cast(s.object)) used.insert(AcDbImpl::layer(e));
            if (const auto* ref = AcDbBlockReference::cast(s.object))
                used.insert(acdbStubOf(ref->blockTableRecord()));
        }
    AcDbObjectIdArray purgeable;
    for (const AcDbObjectId& id : ids)
        if (!used.count(acdbStubOf(id))) purgeable.append(id);
    ids = purgeable;
    return Acad::eOk;
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}
