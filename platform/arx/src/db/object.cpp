#include <algorithm>
#include <cwchar>
#include <vector>

#include "../ads/rbkind.h"
#include "objectimpl.h"
#include "packedchain.h"
#include "rxdefine.h"
#include "text.h"

ACRX_DEFINE_MEMBERS(AcDbObject, AcRxObject, nullptr)

// Reactors beyond the first, and the pointer view that reactors() hands out.
struct AcDbObject::Extras {
    std::vector<AcDbStub*> moreReactors;
    AcDbVoidPtrArray view;
};

namespace {

constexpr std::uintptr_t kPersistentTag = 1;
constexpr size_t kMaxXDataBytes = 16383;

void* tagged(AcDbStub* stub) {
    return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(stub) | kPersistentTag);
}

const ACHAR* appOf(const resbuf* rb) {
    return rb->resval.rstring ? rb->resval.rstring : L"";
}

// Splits a chain of extended data into the runs of each application.
std::vector<resbuf*> splitByApp(resbuf* chain) {
    std::vector<resbuf*> runs;
    resbuf* prev = nullptr;
    for (resbuf* rb = chain; rb != nullptr; prev = rb, rb = rb->rbnext) {
        if (rb->restype != 1001) continue;
        if (prev != nullptr) prev->rbnext = nullptr;
        runs.push_back(rb);
    }
    return runs;
}

// Packs a whole chain of extended data; the store is left as it was when that fails.
Acad::ErrorStatus packXData(const resbuf* chain, PackedChain& store) {
    PackedChain packed;
    if (Acad::ErrorStatus es = acdbPackChain(chain, packed); es != Acad::eOk) return es;
    if (packed != nullptr) {
        const unsigned char* p = packed.get();
        size_t size = 0;
        for (int shift = 0;; shift += 7) {
            size |= size_t(*p & 0x7F) << shift;
            if (!(*p++ & 0x80)) break;
        }
        if (size > kMaxXDataBytes) return Acad::eXdataSizeExceeded;
    }
    store = std::move(packed);
    return Acad::eOk;
}

} // namespace

bool acdbIsPersistentReactor(void* reactor) {
    return reinterpret_cast<std::uintptr_t>(reactor) & kPersistentTag;
}

AcDbObjectId acdbPersistentReactorObjectId(void* reactor) {
    if (!acdbIsPersistentReactor(reactor)) return AcDbObjectId::kNull;
    return reinterpret_cast<AcDbStub*>(reinterpret_cast<std::uintptr_t>(reactor) & ~kPersistentTag);
}

AcDbObject::AcDbObject() = default;

AcDbObject::AcDbObject(const AcDbObject& other) : AcRxObject(other) {
    if (other.xdata_ != nullptr) {
        resbuf* chain = acdbUnpackChain(other.xdata_.get());
        acdbPackChain(chain, xdata_);
        acutRelRb(chain);
    }
}

AcDbObject::~AcDbObject() {
    if (stub_ == nullptr || stub_->object != this) return;
    stub_->object = nullptr;
    if (AcDbDatabase* db = AcDbImpl::database(stub_))
        AcDbImpl::of(db).openCount -= readers_ + (writeOpen_ ? 1 : 0);
}

AcDbObjectId AcDbObject::objectId() const {
    return stub_;
}
AcDbObjectId AcDbObject::ownerId() const {
    return owner_;
}
AcDbDatabase* AcDbObject::database() const {
    return AcDbImpl::database(stub_);
}
AcDbHandle AcDbObject::handle() const {
    return stub_ ? AcDbHandle(AcDbImpl::handle(stub_)) : AcDbHandle();
}
bool AcDbObject::isErased() const {
    return stub_ && AcDbImpl::erased(stub_);
}

Acad::ErrorStatus AcDbObject::assertWriteEnabled() const {
    return writeOpen_ ? Acad::eOk : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus AcDbObject::close() {
    if (stub_ == nullptr) return Acad::eOk;
    auto& impl = AcDbImpl::of(AcDbImpl::database(stub_));
    if (writeOpen_) {
        writeOpen_ = false;
        ++impl.writeCloses;
    } else if (readers_ > 0)
        --readers_;
    else
        return Acad::eNotOpenForRead;
    --impl.openCount;
    // The last of a folding pair to close may delete both: nothing after this touches the object.
    if (foldKind_ != AcDbImpl::kNoFold && readers_ == 0 && !writeOpen_) AcDbImpl::fold(this);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    if (writeOpen_) return Acad::eWasOpenForWrite;
    if (readers_ == 0) return Acad::eNotOpenForRead;
    if (readers_ > 1) return Acad::eHadMultipleReaders;
    if (const auto* e = AcDbEntity::cast(this)) {
        const auto* layer = AcDbLayerTableRecord::cast(AcDbImpl::peek(AcDbImpl::layer(e)));
        if (layer != nullptr && layer->isLocked()) return Acad::eOnLockedLayer;
    }
    readers_ = 0;
    writeOpen_ = true;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    if (!writeOpen_) return Acad::eNotOpenForWrite;
    writeOpen_ = false;
    readers_ = 1;
    return Acad::eOk;
}

namespace {

// What an object owns goes and comes back with it: its extension dictionary and, for a
// dictionary, the entries it owns (an X-record under a dictionary, a dictionary under another).
// Entries that another object owns are only referred to and stay as they are.
void eraseOwned(AcDbObject* object, bool erasing);

void eraseOwnedStub(AcDbStub* stub, bool erasing) {
    if (stub == nullptr || AcDbImpl::erased(stub) == erasing) return;
    AcDbImpl::setErased(stub, erasing);
    if (AcDbObject* owned = AcDbImpl::peek(stub)) eraseOwned(owned, erasing);
}

void eraseOwned(AcDbObject* object, bool erasing) {
    eraseOwnedStub(AcDbImpl::extensionDictionaryOf(object), erasing);
    if (auto* dictionary = AcDbDictionary::cast(object))
        for (AcDbStub* entry : AcDbImpl::dictionaryEntries(*dictionary))
            if (const AcDbObject* value = AcDbImpl::peek(entry);
                value != nullptr && AcDbImpl::owner(value) == AcDbImpl::stub(object))
                eraseOwnedStub(entry, erasing);
}

} // namespace

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (stub_ == nullptr) return Acad::eNotInDatabase;
    if (isErased() == erasing) return erasing ? Acad::eWasErased : Acad::eWasNotErased;
    AcDbImpl::setErased(stub_, erasing);
    eraseOwned(this, erasing);
    return Acad::eOk;
}

AcDbObjectId AcDbObject::extensionDictionary() const {
    return extensionDictionary_;
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (stub_ == nullptr) return Acad::eNotInDatabase;
    if (extensionDictionary_ != nullptr && !AcDbImpl::erased(extensionDictionary_))
        return Acad::eAlreadyInDb;
    AcDbDatabase* db = AcDbImpl::database(stub_);
    AcDbDictionary* dictionary = AcDbImpl::newDictionary(AcDbImpl::of(db));
    AcDbImpl::add(db, dictionary, stub_);
    extensionDictionary_ = AcDbImpl::stub(dictionary);
    dictionary->close();
    return Acad::eOk;
}

resbuf* AcDbObject::xData(const ACHAR* regappName) const {
    resbuf* chain = acdbUnpackChain(xdata_.get());
    if (regappName == nullptr || chain == nullptr) return chain;
    resbuf* found = nullptr;
    for (resbuf* run : splitByApp(chain)) {
        if (found == nullptr && acdbEqualNoCase(appOf(run), regappName))
            found = run;
        else
            acutRelRb(run);
    }
    return found;
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* chain) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (chain == nullptr) return Acad::eOk;
    if (chain->restype != 1001) return Acad::eInvalidResBuf;
    AcDbDatabase* db = database() ? database() : acdbHostApplicationServices()->workingDatabase();
    const auto* apps =
        db ? static_cast<const AcDbSymbolTable*>(AcDbImpl::peek(AcDbImpl::of(db).regAppTable))
           : nullptr;
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
        if (rb->restype < 1000 || rb->restype > 1071 || acutRbKind(rb->restype) == RbKind::kInvalid)
            return Acad::eInvalidResBuf;
        if (rb->restype == 1001 && (apps == nullptr || !apps->has(appOf(rb))))
            return Acad::eRegappIdNotFound;
    }
    if (xdata_ == nullptr) return packXData(chain, xdata_);
    // Runs of the applications in the new chain replace the old ones; others stay in place.
    resbuf* incoming = nullptr;
    resbuf** link = &incoming;
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
        resbuf* copy = acutNewRb(rb->restype);
        copy->resval = rb->resval;
        const RbKind kind = acutRbKind(rb->restype);
        if (kind == RbKind::kString) copy->resval.rstring = acutNewString(appOf(rb));
        if (kind == RbKind::kBinary)
            copy->resval.rbinary.buf = nullptr, copy->resval.rbinary.clen = 0;
        *link = copy;
        link = &copy->rbnext;
    }
    std::vector<resbuf*> oldRuns = splitByApp(acdbUnpackChain(xdata_.get()));
    std::vector<resbuf*> newRuns = splitByApp(incoming);
    std::vector<resbuf*> kept;
    for (resbuf* run : oldRuns) {
        const bool replaced = std::any_of(newRuns.begin(), newRuns.end(), [run](resbuf* n) {
            return acdbEqualNoCase(appOf(n), appOf(run));
        });
        if (replaced)
            acutRelRb(run);
        else
            kept.push_back(run);
    }
    for (resbuf* run : newRuns) {
        if (run->rbnext == nullptr)
            acutRelRb(run); // an application alone drops its data
        else
            kept.push_back(run);
    }
    resbuf* merged = nullptr;
    link = &merged;
    for (resbuf* run : kept) {
        *link = run;
        while (*link != nullptr)
            link = &(*link)->rbnext;
    }
    Acad::ErrorStatus es = packXData(merged, xdata_);
    acutRelRb(merged);
    return es;
}

void AcDbObject::addPersistentReactor(AcDbObjectId id) {
    AcDbStub* s = acdbStubOf(id);
    if (s == nullptr || hasPersistentReactor(id)) return;
    if (firstReactor_ == nullptr) {
        firstReactor_ = s;
        return;
    }
    if (extras_ == nullptr) extras_ = std::make_unique<Extras>();
    extras_->moreReactors.push_back(s);
}

Acad::ErrorStatus AcDbObject::removePersistentReactor(AcDbObjectId id) {
    AcDbStub* s = acdbStubOf(id);
    if (s != nullptr && firstReactor_ == s) {
        firstReactor_ = nullptr;
        if (extras_ && !extras_->moreReactors.empty()) {
            firstReactor_ = extras_->moreReactors.front();
            extras_->moreReactors.erase(extras_->moreReactors.begin());
        }
        return Acad::eOk;
    }
    if (extras_) {
        auto& more = extras_->moreReactors;
        auto it = std::find(more.begin(), more.end(), s);
        if (it != more.end()) {
            more.erase(it);
            return Acad::eOk;
        }
    }
    return Acad::eKeyNotFound;
}

bool AcDbObject::hasPersistentReactor(AcDbObjectId id) const {
    AcDbStub* s = acdbStubOf(id);
    if (s == nullptr) return false;
    if (firstReactor_ == s) return true;
    return extras_ && std::find(extras_->moreReactors.begin(), extras_->moreReactors.end(), s) !=
                          extras_->moreReactors.end();
}

const AcDbVoidPtrArray* AcDbObject::reactors() const {
    if (extras_ == nullptr) extras_ = std::make_unique<Extras>();
    extras_->view.removeAll();
    if (firstReactor_ != nullptr) extras_->view.append(tagged(firstReactor_));
    for (AcDbStub* s : extras_->moreReactors)
        extras_->view.append(tagged(s));
    return &extras_->view;
}

void AcDbImpl::setErased(AcDbStub* s, bool erased) {
    if (erased)
        s->flags |= AcDbStub::kErased;
    else
        s->flags &= ~AcDbStub::kErased;
}

Acad::ErrorStatus AcDbImpl::add(AcDbDatabase* db, AcDbObject* object, AcDbStub* owner,
                                Adesk::UInt64 handle) {
    if (db == nullptr || object == nullptr) return Acad::eNullObjectPointer;
    if (object->stub_ != nullptr) return Acad::eAlreadyInDb;
    AcDbDatabase::Impl& impl = of(db);
    AcDbStub* s = nullptr;
    if (handle == 0) {
        while ((s = impl.stubAt(impl.handseed, true))->flags & AcDbStub::kUsed)
            ++impl.handseed;
        handle = impl.handseed++;
    } else {
        if (s = impl.stubAt(handle, false); s && (s->flags & AcDbStub::kUsed))
            return Acad::eHandleInUse;
        if (handle >= impl.handseed) impl.handseed = handle + 1;
        s = impl.stubAt(handle, true);
    }
    s->object = object;
    s->flags = AcDbStub::kUsed;
    object->stub_ = s;
    object->owner_ = owner;
    impl.openCount += object->readers_ + (object->writeOpen_ ? 1 : 0);
    object->addedToDatabase();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbImpl::open(AcDbStub* s, AcDb::OpenMode mode, bool openErased,
                                 AcDbObject*& object) {
    object = nullptr;
    if (s == nullptr) return Acad::eNullObjectId;
    AcDbObject* o = s->object != nullptr || !folded(s) ? s->object : unfold(s);
    if (o == nullptr) return Acad::ePermanentlyErased;
    if (erased(s) && !openErased) return Acad::eWasErased;
    if (o->writeOpen_) return Acad::eWasOpenForWrite;
    if (mode == AcDb::kForWrite) {
        if (o->readers_ > 0) return Acad::eWasOpenForRead;
        // Dictionaries and records are no entities: their opening skips the layer's look.
        if (const auto* e = o->foldKind_ == kNoFold ? AcDbEntity::cast(o) : nullptr) {
            const auto* layer = AcDbLayerTableRecord::cast(peek(e->layer_));
            if (layer != nullptr && layer->isLocked()) return Acad::eOnLockedLayer;
        }
        o->writeOpen_ = true;
    } else {
        if (o->readers_ >= 256) return Acad::eAtMaxReaders;
        ++o->readers_;
    }
    ++of(database(s)).openCount;
    object = o;
    return Acad::eOk;
}

void AcDbImpl::copyRecords(const AcDbObject& from, AcDbObject& to) {
    if (from.xdata_ == nullptr && to.xdata_ == nullptr) return;
    resbuf* chain = acdbUnpackChain(from.xdata_.get());
    acdbPackChain(chain, to.xdata_);
    acutRelRb(chain);
}

// Ids and handles.

const AcDbObjectId AcDbObjectId::kNull;

bool AcDbObjectId::isValid() const {
    return stub_ != nullptr && (stub_->object != nullptr || AcDbImpl::folded(stub_));
}
bool AcDbObjectId::isErased() const {
    return stub_ != nullptr && AcDbImpl::erased(stub_);
}
AcDbDatabase* AcDbObjectId::database() const {
    return AcDbImpl::database(stub_);
}
AcDbHandle AcDbObjectId::handle() const {
    return stub_ ? AcDbHandle(AcDbImpl::handle(stub_)) : AcDbHandle();
}
AcRxClass* AcDbObjectId::objectClass() const {
    if (stub_ != nullptr && stub_->object == nullptr && AcDbImpl::folded(stub_))
        return stub_->flags & AcDbStub::kFoldedRecord ? AcDbXrecord::desc()
                                                      : AcDbDictionary::desc();
    return isValid() ? stub_->object->isA() : nullptr;
}

AcDbHandle& AcDbHandle::operator=(const ACHAR* text) {
    value_ = 0;
    if (text == nullptr || *text == 0) return *this;
    Adesk::UInt64 v = 0;
    int digits = 0;
    for (const ACHAR* p = text; *p; ++p, ++digits) {
        const ACHAR c = *p;
        int d = c >= L'0' && c <= L'9'   ? c - L'0'
                : c >= L'A' && c <= L'F' ? c - L'A' + 10
                : c >= L'a' && c <= L'f' ? c - L'a' + 10
                                         : -1;
        if (d < 0 || digits >= 16) return *this;
        v = (v << 4) | Adesk::UInt64(d);
    }
    value_ = v;
    return *this;
}

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer, size_t bufferLength) const {
    ACHAR digits[17];
    int n = 0;
    Adesk::UInt64 v = value_;
    do {
        digits[n++] = L"0123456789ABCDEF"[v & 0xF];
        v >>= 4;
    } while (v != 0);
    if (buffer == nullptr || size_t(n) + 1 > bufferLength) return false;
    for (int i = 0; i < n; ++i)
        buffer[i] = digits[n - 1 - i];
    buffer[n] = 0;
    return true;
}

// Folding: an extension dictionary that holds nothing but one X-record, whose data other records
// share, costs two objects per tagged entity (a cloud's points each carry one). Closed, the pair
// gives its objects back and keeps its two handles; whoever reaches either handle again (opening,
// a container's look, erasing the owner) gets the same two objects made anew, so nothing outside
// can tell the difference.

void AcDbImpl::fold(AcDbObject* closed) {
    // Nothing rides on the object that a fold would lose (extended data, reactors, an extension
    // dictionary of its own), nobody has it open, and it is not erased.
    auto bare = [](const AcDbObject* o) {
        return o->readers_ == 0 && !o->writeOpen_ && o->xdata_ == nullptr &&
               o->firstReactor_ == nullptr &&
               (o->extras_ == nullptr || o->extras_->moreReactors.empty()) &&
               o->extensionDictionary_ == nullptr && o->stub_ != nullptr && !erased(o->stub_);
    };
    AcDbDictionary* dictionary = nullptr;
    AcDbXrecord* record = nullptr;
    if (closed->foldKind_ == kFoldRecord) {
        AcDbObject* owner = closed->owner_ ? closed->owner_->object : nullptr;
        if (owner == nullptr || owner->foldKind_ != kFoldDictionary) return;
        record = static_cast<AcDbXrecord*>(closed);
        dictionary = static_cast<AcDbDictionary*>(owner);
    } else {
        dictionary = static_cast<AcDbDictionary*>(closed);
        if (dictionary->entries_.size() != 1) return;
        AcDbObject* value = dictionary->entries_.front().value->object;
        if (value == nullptr || value->foldKind_ != kFoldRecord) return;
        record = static_cast<AcDbXrecord*>(value);
    }
    // The pair as createExtensionDictionary and setAt make it, and nothing more.
    AcDbStub* d = dictionary->stub_;
    AcDbStub* x = record->stub_;
    if (!bare(dictionary) || !bare(record) || dictionary->entries_.size() != 1 ||
        dictionary->entries_.front().value != x || dictionary->index_ != nullptr ||
        record->owner_ != d || x != d + 1)
        return;
    // Exactly the two kinds, not kinds made from them.
    if (dictionary->isA() != AcDbDictionary::desc() || record->isA() != AcDbXrecord::desc()) return;
    // Only data that records share: a record of its own would need a fold of its own.
    if (record->data_ != nullptr && !(reinterpret_cast<std::uintptr_t>(record->data_) & 1)) return;
    AcDbStub* owner = dictionary->owner_;
    if (owner == nullptr || owner->object == nullptr || owner->object->extensionDictionary_ != d ||
        database(owner) != database(d))
        return;
    const Adesk::UInt64 distance = handle(d) - handle(owner);
    if (handle(owner) >= handle(d) || distance > 0xFFFFFFFFu) return;

    AcDbDatabase::Impl& impl = of(database(d));
    const std::wstring* key = dictionary->entries_.front().key;
    auto same = [&](const AcDbFold& f) { return f.key == key && f.record->data_ == record->data_; };
    size_t n = impl.lastFold;
    if (n >= impl.folds.size() || !same(impl.folds[n])) {
        n = 0;
        while (n < impl.folds.size() && !same(impl.folds[n]))
            ++n;
        if (n == impl.folds.size()) {
            if (n == AcDbDatabase::Impl::kMaxFolds) return;
            impl.folds.push_back({key, std::make_unique<AcDbXrecord>(*record)});
        }
        impl.lastFold = n;
    }
    delete record;
    if (impl.spareDictionary == nullptr) {
        // As new: out of the database, open for write by its maker-to-be.
        d->object = nullptr;
        dictionary->stub_ = nullptr;
        dictionary->owner_ = nullptr;
        dictionary->entries_.clear();
        dictionary->writeOpen_ = true;
        impl.spareDictionary.reset(dictionary);
    } else {
        delete dictionary;
    }
    d->flags |= AcDbStub::kFoldedDictionary;
    d->reserved = Adesk::UInt32(n);
    x->flags |= AcDbStub::kFoldedRecord;
    x->reserved = Adesk::UInt32(distance);
}

AcDbObject* AcDbImpl::unfold(AcDbStub* s) {
    AcDbStub* d = s->flags & AcDbStub::kFoldedRecord ? s - 1 : s;
    AcDbStub* x = d + 1;
    AcDbDatabase::Impl& impl = of(database(d));
    const AcDbFold& fold = impl.folds[d->reserved];
    AcDbDictionary* dictionary = newDictionary(impl);
    auto* record = new AcDbXrecord(*fold.record);
    dictionary->entries_.push_back({fold.key, x});
    auto attach = [](AcDbObject* o, AcDbStub* stub, AcDbStub* owner) {
        o->writeOpen_ = false;
        o->stub_ = stub;
        o->owner_ = owner;
        stub->object = o;
        stub->flags &= ~AcDbStub::kFolded;
    };
    attach(dictionary, d, impl.stubAt(handle(d) - x->reserved, false));
    attach(record, x, d);
    return s->object;
}

AcDbDictionary* AcDbImpl::newDictionary(AcDbDatabase::Impl& impl) {
    if (impl.spareDictionary != nullptr) return impl.spareDictionary.release();
    return new AcDbDictionary;
}
