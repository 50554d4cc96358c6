// Opening by id, and the entity-name interface over the working database.
#include <algorithm>
#include <cstring>
#include <memory>

#include "../ads/rbkind.h"
#include "../dxf/items.h"
#include "arx/acdb.h"
#include "arx/dbhost.h"
#include "arx/dbkept.h"
#include "arx/dbmesh.h"
#include "arx/dxfkind.h"
#include "objectimpl.h"
#include "text.h"

namespace {

AcDbDatabase* working() {
    return acdbHostApplicationServices()->workingDatabase();
}

AcDbStub* stubOfName(const ads_name name) {
    return name == nullptr ? nullptr : reinterpret_cast<AcDbStub*>(name[0]);
}

void setName(ads_name name, AcDbStub* s) {
    name[0] = reinterpret_cast<Adesk::IntPtr>(s);
    name[1] = 0;
}

// The live entity after `after` in a block (the first with null), or null.
AcDbStub* nextInBlock(const AcDbBlockTableRecord* block, AcDbStub* after) {
    AcDbBlockTableRecordIterator* raw = nullptr;
    block->newIterator(raw);
    std::unique_ptr<AcDbBlockTableRecordIterator> it(raw);
    bool passed = after == nullptr;
    for (; !it->done(); it->step()) {
        AcDbObjectId id;
        it->getEntityId(id);
        if (passed) return acdbStubOf(id);
        passed = acdbStubOf(id) == after;
    }
    return nullptr;
}

std::wstring handleText(const AcDbHandle& h) {
    ACHAR buffer[17];
    h.getIntoAsciiBuffer(buffer, 17);
    return buffer;
}

} // namespace

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased) {
    return AcDbImpl::open(acdbStubOf(id), mode, openErased, object);
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased) {
    entity = nullptr;
    AcDbStub* s = acdbStubOf(id);
    if (s != nullptr && ((s->object != nullptr && !AcDbEntity::cast(s->object)) ||
                         (s->object == nullptr && AcDbImpl::folded(s))))
        return Acad::eNotAnEntity;
    AcDbObject* object = nullptr;
    Acad::ErrorStatus es = AcDbImpl::open(s, mode, openErased, object);
    entity = static_cast<AcDbEntity*>(object);
    return es;
}

Acad::ErrorStatus acdbGetAdsName(ads_name name, AcDbObjectId id) {
    if (id.isNull()) return Acad::eNullObjectId;
    setName(name, acdbStubOf(id));
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name) {
    id = AcDbObjectId::kNull;
    AcDbStub* s = stubOfName(name);
    if (s == nullptr) return Acad::eInvalidAdsName;
    id = s;
    return Acad::eOk;
}

int acdbEntLast(ads_name name) {
    AcDbDatabase* db = working();
    if (db == nullptr) return RTERROR;
    AcDbStub* best = nullptr;
    for (AcDbObjectId spaceId : {db->modelSpaceId(), db->paperSpaceId()}) {
        const auto* space = AcDbBlockTableRecord::cast(AcDbImpl::peek(acdbStubOf(spaceId)));
        if (space == nullptr) continue;
        AcDbBlockTableRecordIterator* raw = nullptr;
        space->newIterator(raw, false);
        std::unique_ptr<AcDbBlockTableRecordIterator> it(raw);
        AcDbObjectId id;
        if (it->getEntityId(id) == Acad::eOk &&
            (best == nullptr || AcDbImpl::handle(acdbStubOf(id)) > AcDbImpl::handle(best)))
            best = acdbStubOf(id);
    }
    if (best == nullptr) return RTERROR;
    setName(name, best);
    return RTNORM;
}

int acdbEntNext(const ads_name name, ads_name next) {
    AcDbDatabase* db = working();
    if (db == nullptr) return RTERROR;
    AcDbStub* current = stubOfName(name);
    const auto* model = AcDbBlockTableRecord::cast(AcDbImpl::peek(acdbStubOf(db->modelSpaceId())));
    AcDbStub* found = nullptr;
    if (current == nullptr) {
        found = model ? nextInBlock(model, nullptr) : nullptr;
    } else if (AcDbImpl::peek(current) == nullptr) {
        return RTERROR;
    } else {
        AcDbStub* main = current;
        // A complex entity goes on with its first vertex, a vertex with the next one.
        if (auto vertices = acdbHostVertices(AcDbImpl::peek(current));
            vertices && !vertices->done()) {
            found = acdbStubOf(vertices->objectId());
        } else if (AcDbVertex::cast(AcDbImpl::peek(current))) {
            main = AcDbImpl::owner(AcDbImpl::peek(current));
            auto siblings = acdbHostVertices(AcDbImpl::peek(main));
            for (; siblings && !siblings->done(); siblings->step())
                if (acdbStubOf(siblings->objectId()) == current) {
                    siblings->step();
                    if (!siblings->done()) found = acdbStubOf(siblings->objectId());
                    break;
                }
        }
        if (found == nullptr) {
            const auto* block =
                AcDbBlockTableRecord::cast(AcDbImpl::peek(AcDbImpl::owner(AcDbImpl::peek(main))));
            found = block ? nextInBlock(block, main) : nullptr;
        }
    }
    if (found == nullptr) return RTERROR;
    setName(next, found);
    return RTNORM;
}

resbuf* acdbEntGet(const ads_name name) {
    AcDbStub* s = stubOfName(name);
    if (s == nullptr || AcDbImpl::erased(s)) return nullptr;
    const auto* entity = AcDbEntity::cast(AcDbImpl::peek(s));
    if (entity == nullptr) return nullptr;
    const AcDbDxfKind* kind = acdbDxfKindOf(entity->isA());
    AcDbDxfItems items;
    items.push_back(AcDbDxfItem::ofId(-1, s));
    // An entity kept as read is named as the file named it.
    if (const auto* kept = AcDbKeptEntity::cast(entity))
        items.push_back(AcDbDxfItem::ofText(0, acdbFromUtf8(kept->dxfName())));
    else
        items.push_back(AcDbDxfItem::ofText(0, kind                       ? kind->dxfName
                                               : entity->isA()->dxfName() ? entity->isA()->dxfName()
                                                                          : entity->isA()->name()));
    items.push_back(AcDbDxfItem::ofId(330, AcDbImpl::owner(entity)));
    items.push_back(AcDbDxfItem::ofText(5, handleText(entity->handle())));
    acdbDxfWriteObject(*entity, items);
    resbuf* head = nullptr;
    resbuf** link = &head;
    for (const AcDbDxfItem& item : items) {
        *link = acdbDxfToResbuf(item);
        link = &(*link)->rbnext;
    }
    return head;
}

int acdbEntDel(const ads_name name) {
    AcDbObject* object = nullptr;
    if (AcDbImpl::open(stubOfName(name), AcDb::kForWrite, true, object) != Acad::eOk)
        return RTERROR;
    const Acad::ErrorStatus es = object->erase(!object->isErased());
    object->close();
    return es == Acad::eOk ? RTNORM : RTERROR;
}

int acdbHandEnt(const ACHAR* handle, ads_name name) {
    AcDbDatabase* db = working();
    AcDbObjectId id;
    if (db == nullptr || handle == nullptr ||
        db->getAcDbObjectId(id, false, AcDbHandle(handle)) != Acad::eOk || !id.isValid())
        return RTERROR;
    setName(name, acdbStubOf(id));
    return RTNORM;
}

resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int next) {
    AcDbDatabase* db = working();
    if (db == nullptr || table == nullptr || name == nullptr || next != 0) return nullptr;
    AcDbObjectId tableId;
    const std::wstring kind = acdbUpper(table);
    if (kind == L"LAYER")
        tableId = db->layerTableId();
    else if (kind == L"BLOCK")
        tableId = db->blockTableId();
    else if (kind == L"UCS")
        tableId = db->UCSTableId();
    else if (kind == L"APPID")
        tableId = db->regAppTableId();
    else
        return nullptr;
    const auto* records = AcDbSymbolTable::cast(AcDbImpl::peek(acdbStubOf(tableId)));
    AcDbObjectId id;
    if (records == nullptr || records->getAt(name, id) != Acad::eOk) return nullptr;
    const auto* record = AcDbSymbolTableRecord::cast(AcDbImpl::peek(acdbStubOf(id)));
    AcDbDxfItems items = {AcDbDxfItem::ofText(0, kind), AcDbDxfItem::ofText(2, record->name())};
    if (const auto* layer = AcDbLayerTableRecord::cast(record)) {
        items.push_back(
            AcDbDxfItem::ofInt(70, (layer->isFrozen() ? 1 : 0) | (layer->isLocked() ? 4 : 0)));
        const int color = layer->color().colorIndex();
        items.push_back(AcDbDxfItem::ofInt(62, layer->isOff() ? -color : color));
    } else if (const auto* ucs = AcDbUCSTableRecord::cast(record)) {
        items.push_back(AcDbDxfItem::ofInt(70, 0));
        items.push_back(AcDbDxfItem::ofPoint(10, ucs->origin()));
        items.push_back(AcDbDxfItem::ofPoint(11, AcGePoint3d::kOrigin + ucs->xAxis()));
        items.push_back(AcDbDxfItem::ofPoint(12, AcGePoint3d::kOrigin + ucs->yAxis()));
    } else if (const auto* block = AcDbBlockTableRecord::cast(record)) {
        items.push_back(AcDbDxfItem::ofInt(70, block->isAnonymous() ? 1 : 0));
        items.push_back(AcDbDxfItem::ofPoint(10, block->origin()));
    } else {
        items.push_back(AcDbDxfItem::ofInt(70, 0));
    }
    resbuf* head = nullptr;
    resbuf** link = &head;
    for (const AcDbDxfItem& item : items) {
        *link = acdbDxfToResbuf(item);
        link = &(*link)->rbnext;
    }
    return head;
}

int acdbRegApp(const ACHAR* appName) {
    AcDbDatabase* db = working();
    if (db == nullptr || appName == nullptr) return RTERROR;
    AcDbRegAppTable* apps = nullptr;
    if (db->getRegAppTable(apps, AcDb::kForWrite) != Acad::eOk) return RTERROR;
    int result = RTERROR;
    if (!apps->has(appName)) {
        auto* record = new AcDbRegAppTableRecord;
        if (record->setName(appName) == Acad::eOk && apps->add(record) == Acad::eOk) {
            record->close();
            result = RTNORM;
        } else {
            delete record;
        }
    }
    apps->close();
    return result;
}

std::unique_ptr<AcDbObjectIterator> acdbHostVertices(const AcDbObject* o) {
    if (const auto* p = AcDb2dPolyline::cast(o))
        return std::unique_ptr<AcDbObjectIterator>(p->vertexIterator());
    if (const auto* p = AcDb3dPolyline::cast(o))
        return std::unique_ptr<AcDbObjectIterator>(p->vertexIterator());
    if (const auto* p = AcDbPolyFaceMesh::cast(o))
        return std::unique_ptr<AcDbObjectIterator>(p->vertexIterator());
    if (const auto* p = AcDbPolygonMesh::cast(o))
        return std::unique_ptr<AcDbObjectIterator>(p->vertexIterator());
    return nullptr;
}

bool acdbHostIsFolded(AcDbObjectId id) {
    const AcDbStub* s = acdbStubOf(id);
    return s != nullptr && s->object == nullptr && AcDbImpl::folded(s);
}

Adesk::UInt64 acdbHostOpenObjectCount(const AcDbDatabase* database) {
    return database ? AcDbImpl::of(const_cast<AcDbDatabase*>(database)).openCount : 0;
}

Adesk::UInt64 acdbHostWriteCloseCount(const AcDbDatabase* database) {
    return database ? AcDbImpl::of(const_cast<AcDbDatabase*>(database)).writeCloses : 0;
}

AcDbObjectIdArray acdbHostOpenObjects(const AcDbDatabase* database) {
    AcDbObjectIdArray ids;
    if (database == nullptr) return ids;
    std::vector<AcDbStub*> open;
    for (auto& [number, page] : AcDbImpl::of(const_cast<AcDbDatabase*>(database)).pages)
        for (AcDbStub& s : page->stubs)
            if (s.object && s.object->isReadEnabled()) open.push_back(&s);
    std::sort(open.begin(), open.end(),
              [](AcDbStub* a, AcDbStub* b) { return AcDbImpl::handle(a) < AcDbImpl::handle(b); });
    for (AcDbStub* s : open)
        ids.append(s);
    return ids;
}

Acad::ErrorStatus acdbHostAddObject(AcDbDatabase* database, AcDbObject* object,
                                    AcDbObjectId ownerId, const AcDbHandle& handle) {
    if (database == nullptr) return Acad::eNoDatabase;
    return AcDbImpl::add(database, object, acdbStubOf(ownerId), Adesk::UInt64(handle));
}
