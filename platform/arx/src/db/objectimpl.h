// The host's side of objects: stubs (what an object id points to), pages of stubs, and the
// bookkeeping that public classes keep private.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "arx/dbdatabase.h"
#include "arx/dbdict.h"

// One per handle of a database; ids point here. The object may be gone (never made, or deleted
// by its creator) while the stub stays.
class AcDbStub {
public:
    enum Flags : Adesk::UInt32 { kUsed = 1, kErased = 2 };
    AcDbObject* object = nullptr;
    Adesk::UInt32 flags = 0;
    Adesk::UInt32 reserved = 0;
};

// Stubs live in aligned pages, so that a stub finds its database and handle from its address.
struct AcDbStubPage {
    static constexpr size_t kBytes = size_t(1) << 16;
    AcDbDatabase* database;
    Adesk::UInt64 base;
    static constexpr size_t kCount = (kBytes - 16) / sizeof(AcDbStub);
    AcDbStub stubs[kCount];

    static AcDbStubPage* of(const AcDbStub* stub) {
        return reinterpret_cast<AcDbStubPage*>(reinterpret_cast<std::uintptr_t>(stub) &
                                               ~std::uintptr_t(kBytes - 1));
    }
};
static_assert(sizeof(AcDbStubPage) <= AcDbStubPage::kBytes);

struct AcDbDatabase::Impl {
    ~Impl();
    AcDbDatabase* self = nullptr;
    AcDbStubPage* lastPage = nullptr;
    std::unordered_map<Adesk::UInt64, AcDbStubPage*> pages;
    Adesk::UInt64 handseed = 1;
    Adesk::UInt64 openCount = 0;
    // Closings after an opening for write: what tells a changed drawing.
    Adesk::UInt64 writeCloses = 0;
    AcDbStub* blockTable = nullptr;
    AcDbStub* layerTable = nullptr;
    AcDbStub* ucsTable = nullptr;
    AcDbStub* regAppTable = nullptr;
    AcDbStub* namedObjects = nullptr;
    AcDbStub* groupDictionary = nullptr;
    AcDbStub* modelSpace = nullptr;
    AcDbStub* paperSpace = nullptr;
    AcDbStub* layerZero = nullptr;
    AcDbStub* clayer = nullptr;
    Adesk::UInt64 nextAnonymousGroup = 1;
    AcGePoint3d ucsOrigin;
    AcGeVector3d ucsXAxis = AcGeVector3d::kXAxis, ucsYAxis = AcGeVector3d::kYAxis;
    std::shared_ptr<void> fileData;

    AcDbStub* stubAt(Adesk::UInt64 handle, bool create);
};

struct AcDbImpl {
    static AcDbDatabase::Impl& of(AcDbDatabase* db) { return *db->impl_; }
    static AcDbStub* stub(const AcDbObject* o) { return o->stub_; }
    static AcDbStub* owner(const AcDbObject* o) { return o->owner_; }
    static void setOwner(AcDbObject* o, AcDbStub* owner) { o->owner_ = owner; }
    static AcDbDatabase* database(const AcDbStub* s) {
        return s ? AcDbStubPage::of(s)->database : nullptr;
    }
    static Adesk::UInt64 handle(const AcDbStub* s) {
        const AcDbStubPage* page = AcDbStubPage::of(s);
        return page->base + Adesk::UInt64(s - page->stubs);
    }
    static bool erased(const AcDbStub* s) { return s->flags & AcDbStub::kErased; }
    static void setErased(AcDbStub* s, bool erased);
    // Makes the object resident with the next handle (or the given one), owned by owner. An
    // object still open for write by its creator counts as open in the database.
    static Acad::ErrorStatus add(AcDbDatabase* db, AcDbObject* object, AcDbStub* owner,
                                 Adesk::UInt64 handle = 0);
    static Acad::ErrorStatus open(AcDbStub* stub, AcDb::OpenMode mode, bool openErased,
                                  AcDbObject*& object);
    // For containers: the object behind a stub without opening it, null when gone.
    static AcDbObject* peek(const AcDbStub* s) { return s ? s->object : nullptr; }
    static AcDbStub* layer(const AcDbEntity* e) { return e->layer_; }
    static void setLayer(AcDbEntity* e, AcDbStub* layer) { e->layer_ = layer; }
    static void setExtensionDictionary(AcDbObject* o, AcDbStub* d) { o->extensionDictionary_ = d; }
    static AcDbStub* extensionDictionaryOf(const AcDbObject* o) { return o->extensionDictionary_; }
    static std::vector<AcDbStub*> dictionaryEntries(const AcDbDictionary& d) {
        std::vector<AcDbStub*> values;
        for (const auto& e : d.entries_)
            values.push_back(e.value);
        return values;
    }
    static void appendToBlock(AcDbBlockTableRecord* b, AcDbStub* e) { b->entities_.push_back(e); }
    static const std::wstring* groupName(const AcDbGroup* g) { return g->name_; }
    static void setGroupName(AcDbGroup* g, const std::wstring* name) { g->name_ = name; }
    static void setGroupAnonymous(AcDbGroup& g, bool anonymous) { g.anonymous_ = anonymous; }
    static void renameEntry(AcDbDictionary* d, AcDbStub* value, const ACHAR* key) {
        if (const int i = d->find(value); i >= 0) d->rename(i, key);
    }
    static const unsigned char* xrecordData(const AcDbXrecord& x) { return x.bytes(); }
    // Copies the object's own data, not its identity, for clones.
    static void copyRecords(const AcDbObject& from, AcDbObject& to);
};

inline AcDbStub* acdbStubOf(AcDbObjectId id) {
    return static_cast<AcDbStub*>(id);
}
