#include <string>
#include <unordered_map>

#include "objectimpl.h"
#include "rxdefine.h"
#include "text.h"

ACRX_DEFINE_MEMBERS(AcDbDictionary, AcDbObject, ACRX_T("DICTIONARY"))

namespace {
// Dictionaries above this size look keys up through an index.
constexpr size_t kIndexFrom = 16;
} // namespace

struct AcDbDictionary::Index {
    std::unordered_map<std::wstring, size_t> byKey;
};

AcDbDictionary::AcDbDictionary() {
    AcDbImpl::setFoldKind(this, AcDbImpl::kFoldDictionary);
}
AcDbDictionary::~AcDbDictionary() = default;

int AcDbDictionary::find(const ACHAR* key) const {
    if (key == nullptr) return -1;
    if (index_ != nullptr) {
        auto it = index_->byKey.find(acdbUpper(key));
        return it == index_->byKey.end() ? -1 : int(it->second);
    }
    for (size_t i = 0; i < entries_.size(); ++i)
        if (acdbEqualNoCase(*entries_[i].key, key)) return int(i);
    return -1;
}

int AcDbDictionary::find(AcDbStub* value) const {
    // From the newest entry back: the one asked for is most often a group named as it is made,
    // and an object stands under one key only.
    for (size_t i = entries_.size(); i-- > 0;)
        if (entries_[i].value == value) return int(i);
    return -1;
}

void AcDbDictionary::rename(int entry, const ACHAR* key) {
    Entry& e = entries_[size_t(entry)];
    if (index_ != nullptr) {
        index_->byKey.erase(acdbUpper(*e.key));
        index_->byKey[acdbUpper(key)] = size_t(entry);
    }
    e.key = acdbInternKey(key);
    if (auto* group = AcDbGroup::cast(AcDbImpl::peek(e.value)))
        AcDbImpl::setGroupName(group, e.key);
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObjectId& id) const {
    id = AcDbObjectId::kNull;
    const int i = find(key);
    if (i < 0 || AcDbImpl::erased(entries_[size_t(i)].value)) return Acad::eKeyNotFound;
    id = entries_[size_t(i)].value;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObject*& object,
                                        AcDb::OpenMode mode) const {
    object = nullptr;
    AcDbObjectId id;
    if (Acad::ErrorStatus es = getAt(key, id); es != Acad::eOk) return es;
    return AcDbImpl::open(acdbStubOf(id), mode, false, object);
}

Acad::ErrorStatus AcDbDictionary::nameAt(AcDbObjectId id, ACHAR*& key) const {
    key = nullptr;
    const int i = find(acdbStubOf(id));
    if (i < 0) return Acad::eKeyNotFound;
    key = acdbDupString(*entries_[size_t(i)].key);
    return Acad::eOk;
}

bool AcDbDictionary::has(const ACHAR* key) const {
    AcDbObjectId id;
    return getAt(key, id) == Acad::eOk;
}

bool AcDbDictionary::has(AcDbObjectId id) const {
    const int i = find(acdbStubOf(id));
    return i >= 0 && !AcDbImpl::erased(entries_[size_t(i)].value);
}

Adesk::UInt32 AcDbDictionary::numEntries() const {
    Adesk::UInt32 n = 0;
    for (const Entry& e : entries_)
        if (!AcDbImpl::erased(e.value)) ++n;
    return n;
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id) {
    id = AcDbObjectId::kNull;
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (key == nullptr || *key == 0) return Acad::eInvalidKey;
    if (object == nullptr) return Acad::eNullObjectPointer;
    if (AcDbImpl::stub(this) == nullptr) return Acad::eNotInDatabase;
    AcDbStub* value = AcDbImpl::stub(object);
    if (value == nullptr) {
        Acad::ErrorStatus es = AcDbImpl::add(database(), object, AcDbImpl::stub(this));
        if (es != Acad::eOk) return es;
        value = AcDbImpl::stub(object);
    } else if (AcDbImpl::database(value) != database()) {
        return Acad::eWrongDatabase;
    }
    AcDbImpl::setOwner(object, AcDbImpl::stub(this));
    const int i = find(key);
    if (i >= 0) {
        AcDbStub* old = entries_[size_t(i)].value;
        if (old != value) AcDbImpl::setErased(old, true);
        entries_[size_t(i)].value = value;
        rename(i, key);
    } else {
        entries_.push_back({acdbInternKey(key), value});
        if (index_ == nullptr && entries_.size() > kIndexFrom) {
            index_ = std::make_unique<Index>();
            for (size_t n = 0; n < entries_.size(); ++n)
                index_->byKey[acdbUpper(*entries_[n].key)] = n;
        } else if (index_ != nullptr) {
            index_->byKey[acdbUpper(key)] = entries_.size() - 1;
        }
        if (auto* group = AcDbImpl::mayFold(object) ? nullptr : AcDbGroup::cast(object))
            AcDbImpl::setGroupName(group, entries_.back().key);
    }
    id = value;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key) {
    AcDbObjectId id;
    return remove(key, id);
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key, AcDbObjectId& id) {
    id = AcDbObjectId::kNull;
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    const int i = find(key);
    if (i < 0) return Acad::eKeyNotFound;
    id = entries_[size_t(i)].value;
    if (AcDbObject* o = AcDbImpl::peek(acdbStubOf(id))) AcDbImpl::setOwner(o, nullptr);
    entries_.erase(entries_.begin() + i);
    if (index_ != nullptr) {
        index_->byKey.clear();
        for (size_t n = 0; n < entries_.size(); ++n)
            index_->byKey[acdbUpper(*entries_[n].key)] = n;
    }
    return Acad::eOk;
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
    return new AcDbDictionaryIterator(this);
}

AcDbDictionaryIterator::AcDbDictionaryIterator(const AcDbDictionary* dictionary)
    : dictionary_(dictionary) {
    skipErased();
}

void AcDbDictionaryIterator::skipErased() {
    while (index_ < dictionary_->entries_.size() &&
           AcDbImpl::erased(dictionary_->entries_[index_].value))
        ++index_;
}

const ACHAR* AcDbDictionaryIterator::name() const {
    return done() ? nullptr : dictionary_->entries_[index_].key->c_str();
}

AcDbObjectId AcDbDictionaryIterator::objectId() const {
    return done() ? AcDbObjectId::kNull : AcDbObjectId(dictionary_->entries_[index_].value);
}

Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& object, AcDb::OpenMode mode) {
    object = nullptr;
    if (done()) return Acad::eInvalidIndex;
    return AcDbImpl::open(dictionary_->entries_[index_].value, mode, false, object);
}

bool AcDbDictionaryIterator::next() {
    if (done()) return false;
    ++index_;
    skipErased();
    return !done();
}

bool AcDbDictionaryIterator::done() const {
    return index_ >= dictionary_->entries_.size();
}
