// Dictionaries, X-records and groups.
#pragma once

#include <string>
#include <vector>

#include "arx/dbmain.h"

class AcDbDictionaryIterator;

class AcDbDictionary : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDictionary);
    AcDbDictionary();
    ~AcDbDictionary() override;

    // Keys compare without regard to case. eKeyNotFound when absent.
    Acad::ErrorStatus getAt(const ACHAR* key, AcDbObject*& object, AcDb::OpenMode mode) const;
    Acad::ErrorStatus getAt(const ACHAR* key, AcDbObjectId& id) const;
    Acad::ErrorStatus nameAt(AcDbObjectId id, ACHAR*& key) const;
    bool has(const ACHAR* key) const;
    bool has(AcDbObjectId id) const;
    Adesk::UInt32 numEntries() const;
    // Needs the dictionary open for write. A new object is added to the database, owned by the
    // dictionary. An entry already under the key is erased and the new object takes its place.
    Acad::ErrorStatus setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id);
    Acad::ErrorStatus remove(const ACHAR* key);
    Acad::ErrorStatus remove(const ACHAR* key, AcDbObjectId& id);
    // Entries in the order they were made.
    AcDbDictionaryIterator* newIterator() const;

private:
    friend class AcDbDictionaryIterator;
    friend struct AcDbImpl;
    struct Entry {
        const std::wstring* key;
        AcDbStub* value;
    };
    struct Index;
    int find(const ACHAR* key) const;
    int find(AcDbStub* value) const;
    void rename(int entry, const ACHAR* key);
    std::vector<Entry> entries_;
    std::unique_ptr<Index> index_;
};

class AcDbDictionaryIterator {
public:
    const ACHAR* name() const;
    AcDbObjectId objectId() const;
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode = AcDb::kForRead);
    bool next();
    bool done() const;

private:
    friend class AcDbDictionary;
    explicit AcDbDictionaryIterator(const AcDbDictionary* dictionary);
    void skipErased();
    const AcDbDictionary* dictionary_;
    size_t index_ = 0;
};

class AcDbXrecord : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbXrecord);
    AcDbXrecord();
    AcDbXrecord(const AcDbXrecord& other);
    AcDbXrecord& operator=(const AcDbXrecord&) = delete;
    ~AcDbXrecord() override;
    // A copy of the data that the caller frees with acutRelRb; null for an empty record.
    Acad::ErrorStatus rbChain(resbuf** chain, AcDbDatabase* auxDb = nullptr) const;
    // Needs the record open for write. Handles (5, 105) and codes the data cannot hold give
    // eInvalidResBuf, and the record keeps its old data.
    Acad::ErrorStatus setFromRbChain(const resbuf& chain, AcDbDatabase* auxDb = nullptr);
    // The data (and extended data) of another X-record, which needs only be open for read; this
    // one needs to be open for write. eWrongObjectType for anything but an X-record.
    Acad::ErrorStatus copyFrom(const AcRxObject* other);

private:
    friend struct AcDbImpl;
    // The packed data: null for an empty record, a block of the record's own, or (low bit set)
    // a block that records copied from one another share, with a count of its holders in the
    // four bytes before it. Copying turns the source's block into a shared one: many objects
    // carry one tag, and a record of its own costs no more than before.
    mutable unsigned char* data_ = nullptr;
    const unsigned char* bytes() const;
    void share(const AcDbXrecord& from);
};

class AcDbGroup : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbGroup);
    explicit AcDbGroup(const ACHAR* description = nullptr, bool selectable = true);

    // The group's key in the group dictionary; empty until the group is in one.
    const ACHAR* name() const;
    Acad::ErrorStatus getName(ACHAR*& name) const;
    const ACHAR* description() const;
    Acad::ErrorStatus setDescription(const ACHAR* description);
    bool isSelectable() const { return selectable_; }
    Acad::ErrorStatus setSelectable(bool selectable);
    bool isAnonymous() const { return anonymous_; }
    // Renames the group to the next free "*A<n>" of its dictionary.
    Acad::ErrorStatus setAnonymous();

    // Needs the group open for write and in a database. Each member gets the group among its
    // persistent reactors. eAlreadyInGroup, eWasErased, eWrongDatabase as the case may be.
    Acad::ErrorStatus append(AcDbObjectId id);
    Acad::ErrorStatus append(const AcDbObjectIdArray& ids);
    Acad::ErrorStatus remove(AcDbObjectId id);
    bool has(const AcDbEntity* entity) const;
    // Members that are not erased, in the order they were added.
    Adesk::UInt32 numEntities() const;
    Adesk::UInt32 allEntityIds(AcDbObjectIdArray& ids) const;

private:
    friend struct AcDbImpl;
    std::vector<AcDbStub*> members_;
    std::wstring description_;
    const std::wstring* name_ = nullptr;
    bool selectable_ = true;
    bool anonymous_ = false;
};
