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
//
// A folded stub has no object either, but stands for one the database makes again on demand: an
// extension dictionary holding one X-record whose data many such records share (a cloud's
// points each carry one). The pair takes two handles in a row; the dictionary's stub keeps the
// number of the database's fold that holds the key and the data, the record's stub the distance
// back to the dictionary's owner.
class AcDbStub {
public:
    enum Flags : Adesk::UInt32 {
        kUsed = 1,
        kErased = 2,
        kFoldedDictionary = 4,
        kFoldedRecord = 8,
        kFolded = kFoldedDictionary | kFoldedRecord
    };
    AcDbObject* object = nullptr;
    Adesk::UInt32 flags = 0;
    Adesk::UInt32 reserved = 0;
};

// What a folded pair is made again from: the record's key and a record sharing its data.
struct AcDbFold {
    const std::wstring* key;
    std::unique_ptr<AcDbXrecord> record;
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
    // Few: one per distinct shared record folded, and no more than kMaxFolds.
    std::vector<AcDbFold> folds;
    static constexpr size_t kMaxFolds = 256;
    size_t lastFold = 0;
    // A folded dictionary's object, kept for the next one made: tagging many entities in a row
    // then reuses one object and its entry instead of asking the allocator each time.
    std::unique_ptr<AcDbDictionary> spareDictionary;
    AcGePoint3d ucsOrigin;
    AcGeVector3d ucsXAxis = AcGeVector3d::kXAxis, ucsYAxis = AcGeVector3d::kYAxis;
    std::shared_ptr<void> fileData;

    // New objects take handles in order: most look-ups fall on the last page used.
    AcDbStub* stubAt(Adesk::UInt64 handle, bool create) {
        if (lastPage != nullptr && handle - lastPage->base < AcDbStubPage::kCount)
            return &lastPage->stubs[handle - lastPage->base];
        return stubOnOtherPage(handle, create);
    }
    AcDbStub* stubOnOtherPage(Adesk::UInt64 handle, bool create);
};

struct AcDbImpl {
    enum FoldKind : Adesk::UInt8 { kNoFold, kFoldDictionary, kFoldRecord };
    static void setFoldKind(AcDbObject* o, FoldKind kind) { o->foldKind_ = kind; }
    // Dictionaries and X-records: no entity, no group.
    static bool mayFold(const AcDbObject* o) { return o->foldKind_ != kNoFold; }
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
    // For containers: the object behind a stub without opening it, null when gone. A folded
    // pair is made again.
    static AcDbObject* peek(const AcDbStub* s) {
        if (s == nullptr) return nullptr;
        return s->object != nullptr || !(s->flags & AcDbStub::kFolded)
                   ? s->object
                   : unfold(const_cast<AcDbStub*>(s));
    }
    static bool folded(const AcDbStub* s) { return s->flags & AcDbStub::kFolded; }
    // The objects of a folded pair made again, closed; returns the one of s.
    static AcDbObject* unfold(AcDbStub* s);
    // An object just closed by its last opener: when it is the extension dictionary or the
    // record of a pair that can fold, the pair folds and both objects are deleted.
    static void fold(AcDbObject* closed);
    // A new dictionary, not in any database: the spare one when there is one.
    static AcDbDictionary* newDictionary(AcDbDatabase::Impl& impl);
    static AcDbStub* layer(const AcDbEntity* e) { return e->layer_; }
    static void setLayer(AcDbEntity* e, AcDbStub* layer) { e->layer_ = layer; }
    // Makes r the object's only persistent reactor when it has none; false otherwise (a reactor
    // beyond the first is never kept without a first).
    static bool setFirstReactor(AcDbObject* o, AcDbStub* r) {
        if (o->firstReactor_ != nullptr) return false;
        o->firstReactor_ = r;
        return true;
    }
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
