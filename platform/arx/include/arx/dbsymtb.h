// Symbol tables and their records: blocks, layers, user coordinate systems, applications.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "arx/dbmain.h"

class AcDbSymbolTableRecord : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTableRecord);
    // A copy that the caller frees with acutDelString.
    Acad::ErrorStatus getName(ACHAR*& name) const;
    // The record's own text, valid while the record is open.
    Acad::ErrorStatus getName(const ACHAR*& name) const;
    // eInvalidSymbolTableName for an empty name or one with < > / \ " : ; ? * | , = `.
    Acad::ErrorStatus setName(const ACHAR* name);
    const std::wstring& name() const { return name_; }

protected:
    AcDbSymbolTableRecord() = default;

private:
    friend struct AcDbImpl;
    std::wstring name_;
};

class AcDbSymbolTable;

class AcDbSymbolTableIterator {
public:
    virtual ~AcDbSymbolTableIterator() = default;
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;
    Acad::ErrorStatus getRecord(AcDbSymbolTableRecord*& record,
                                AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedRecord = false) const;

protected:
    friend class AcDbSymbolTable;
    AcDbSymbolTableIterator(const AcDbSymbolTable* table) : table_(table) {}
    void skip(bool forward, bool skipDeleted);
    const AcDbSymbolTable* table_;
    int index_ = 0;
};

template <class Record>
class AcDbSymbolTableIteratorOf : public AcDbSymbolTableIterator {
public:
    using AcDbSymbolTableIterator::getRecord;
    Acad::ErrorStatus getRecord(Record*& record, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedRecord = false) const {
        AcDbSymbolTableRecord* base = nullptr;
        const Acad::ErrorStatus es = getRecord(base, mode, openErasedRecord);
        record = static_cast<Record*>(base);
        return es;
    }

private:
    friend class AcDbSymbolTable;
    using AcDbSymbolTableIterator::AcDbSymbolTableIterator;
};

class AcDbSymbolTable : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTable);
    // Names compare without regard to case. eKeyNotFound when absent.
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id,
                            bool getErasedRecord = false) const;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbSymbolTableRecord*& record, AcDb::OpenMode mode,
                            bool openErasedRecord = false) const;
    bool has(const ACHAR* name) const;
    bool has(AcDbObjectId id) const;
    // The table must be open for write; eDuplicateRecordName for a name in use.
    Acad::ErrorStatus add(AcDbSymbolTableRecord* record);
    Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* record);
    Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;

protected:
    AcDbSymbolTable() = default;
    // The class of record that the table holds.
    virtual AcRxClass* recordClass() const = 0;
    template <class Record>
    Acad::ErrorStatus newTypedIterator(AcDbSymbolTableIteratorOf<Record>*& iterator,
                                       bool atBeginning, bool skipDeleted) const {
        iterator = new AcDbSymbolTableIteratorOf<Record>(this);
        iterator->start(atBeginning, skipDeleted);
        return Acad::eOk;
    }

private:
    friend class AcDbSymbolTableIterator;
    friend class AcDbSymbolTableRecord;
    friend struct AcDbImpl;
    // A record of the table took a new name: its entry in the index moves with it.
    void renamed(AcDbStub* record, const std::wstring& from, const std::wstring& to);
    std::vector<AcDbStub*> records_;
    // Records by upper-case name, in the order they were added; erased ones stay listed, so
    // an unerased record is found again and a name may be held by an erased and a live one.
    std::unordered_map<std::wstring, std::vector<AcDbStub*>> byName_;
};

template <class Record>
class AcDbSymbolTableOf : public AcDbSymbolTable {
public:
    using AcDbSymbolTable::add;
    using AcDbSymbolTable::getAt;
    using AcDbSymbolTable::newIterator;
    using Iterator = AcDbSymbolTableIteratorOf<Record>;
    Acad::ErrorStatus getAt(const ACHAR* name, Record*& record, AcDb::OpenMode mode,
                            bool openErasedRecord = false) const {
        AcDbSymbolTableRecord* base = nullptr;
        const Acad::ErrorStatus es = getAt(name, base, mode, openErasedRecord);
        record = static_cast<Record*>(base);
        return es;
    }
    Acad::ErrorStatus newIterator(Iterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const {
        return newTypedIterator(iterator, atBeginning, skipDeleted);
    }

protected:
    AcRxClass* recordClass() const override { return Record::desc(); }
};

class AcDbBlockTableRecordIterator;

class AcDbBlockTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockTableRecord);
    AcDbBlockTableRecord() = default;

    // The record must be open for write and in a database; the entity must be new to every
    // database. It stays open for write, for its creator to close. An entity without a layer
    // goes on the database's current layer.
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* entity);
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // Block references, not erased, that insert this block.
    Acad::ErrorStatus getBlockReferenceIds(AcDbObjectIdArray& ids, bool directOnly = true,
                                           bool forceValidity = false) const;
    bool isLayout() const;
    bool isAnonymous() const;
    bool hasEntities() const;
    AcGePoint3d origin() const { return origin_; }
    Acad::ErrorStatus setOrigin(const AcGePoint3d& origin);

private:
    friend class AcDbBlockTableRecordIterator;
    friend struct AcDbImpl;
    std::vector<AcDbStub*> entities_;
    AcGePoint3d origin_;
};

class AcDbBlockTableRecordIterator {
public:
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedEntity = false) const;

private:
    friend class AcDbBlockTableRecord;
    AcDbBlockTableRecordIterator(const AcDbBlockTableRecord* record) : record_(record) {}
    void skip(bool forward, bool skipDeleted);
    const AcDbBlockTableRecord* record_;
    int index_ = 0;
};

class AcDbLayerTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbLayerTableRecord);
    AcDbLayerTableRecord();
    AcCmColor color() const { return color_; }
    void setColor(const AcCmColor& color);
    bool isOff() const { return off_; }
    void setIsOff(bool off);
    bool isFrozen() const { return frozen_; }
    Acad::ErrorStatus setIsFrozen(bool frozen);
    bool isLocked() const { return locked_; }
    void setIsLocked(bool locked);

private:
    AcCmColor color_;
    bool off_ = false, frozen_ = false, locked_ = false;
};

class AcDbUCSTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbUCSTableRecord);
    AcDbUCSTableRecord() = default;
    AcGePoint3d origin() const { return origin_; }
    void setOrigin(const AcGePoint3d& origin);
    AcGeVector3d xAxis() const { return xAxis_; }
    void setXAxis(const AcGeVector3d& xAxis);
    AcGeVector3d yAxis() const { return yAxis_; }
    void setYAxis(const AcGeVector3d& yAxis);

private:
    AcGePoint3d origin_;
    AcGeVector3d xAxis_ = AcGeVector3d::kXAxis, yAxis_ = AcGeVector3d::kYAxis;
};

class AcDbRegAppTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbRegAppTableRecord);
    AcDbRegAppTableRecord() = default;
};

using AcDbBlockTableIterator = AcDbSymbolTableIteratorOf<AcDbBlockTableRecord>;
using AcDbLayerTableIterator = AcDbSymbolTableIteratorOf<AcDbLayerTableRecord>;
using AcDbUCSTableIterator = AcDbSymbolTableIteratorOf<AcDbUCSTableRecord>;
using AcDbRegAppTableIterator = AcDbSymbolTableIteratorOf<AcDbRegAppTableRecord>;

class AcDbBlockTable : public AcDbSymbolTableOf<AcDbBlockTableRecord> {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockTable);
    AcDbBlockTable() = default;
};

class AcDbLayerTable : public AcDbSymbolTableOf<AcDbLayerTableRecord> {
public:
    ACRX_DECLARE_MEMBERS(AcDbLayerTable);
    AcDbLayerTable() = default;
};

class AcDbUCSTable : public AcDbSymbolTableOf<AcDbUCSTableRecord> {
public:
    ACRX_DECLARE_MEMBERS(AcDbUCSTable);
    AcDbUCSTable() = default;
};

class AcDbRegAppTable : public AcDbSymbolTableOf<AcDbRegAppTableRecord> {
public:
    ACRX_DECLARE_MEMBERS(AcDbRegAppTable);
    AcDbRegAppTable() = default;
};

// Names of the two layout blocks.
#define ACDB_MODEL_SPACE ACRX_T("*Model_Space")
#define ACDB_PAPER_SPACE ACRX_T("*Paper_Space")
