// The drawing database and the host services that name the working one.
#pragma once

#include <memory>

#include "arx/dbdict.h"
#include "arx/dbsymtb.h"

class AcDbDatabase {
public:
    // With buildDefaultDrawing: the tables, "*Model_Space", "*Paper_Space", layer "0" (current),
    // the named objects dictionary with its group dictionary "ACAD_GROUP".
    explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~AcDbDatabase();
    AcDbDatabase(const AcDbDatabase&) = delete;
    AcDbDatabase& operator=(const AcDbDatabase&) = delete;

    Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getUCSTable(AcDbUCSTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getRegAppTable(AcDbRegAppTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& t, AcDb::OpenMode m) {
        return getBlockTable(t, m);
    }
    Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& t, AcDb::OpenMode m) {
        return getLayerTable(t, m);
    }
    Acad::ErrorStatus getSymbolTable(AcDbUCSTable*& t, AcDb::OpenMode m) {
        return getUCSTable(t, m);
    }
    Acad::ErrorStatus getSymbolTable(AcDbRegAppTable*& t, AcDb::OpenMode m) {
        return getRegAppTable(t, m);
    }
    AcDbObjectId blockTableId() const;
    AcDbObjectId layerTableId() const;
    AcDbObjectId UCSTableId() const;
    AcDbObjectId regAppTableId() const;

    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dictionary,
                                                AcDb::OpenMode mode = AcDb::kForRead);
    AcDbObjectId namedObjectsDictionaryId() const;
    Acad::ErrorStatus getGroupDictionary(AcDbDictionary*& dictionary,
                                         AcDb::OpenMode mode = AcDb::kForRead);
    AcDbObjectId groupDictionaryId() const;

    // The layout block new entities go to: model space.
    AcDbObjectId currentSpaceId() const;
    AcDbObjectId modelSpaceId() const;
    AcDbObjectId paperSpaceId() const;
    AcDbObjectId clayer() const;
    Acad::ErrorStatus setClayer(AcDbObjectId layerId);
    AcDbObjectId layerZero() const;
    AcGePoint3d ucsorg() const;
    AcGeVector3d ucsxdir() const;
    AcGeVector3d ucsydir() const;
    // The current user coordinate system; the axes must be perpendicular and not zero.
    Acad::ErrorStatus setUcs(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                             const AcGeVector3d& yAxis);

    // Adds a new object without owner; objects that belong to a container go in through it.
    Acad::ErrorStatus addAcDbObject(AcDbObjectId& id, AcDbObject* object);
    // The id of the object with this handle; eUnknownHandle when there is none.
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound,
                                      const AcDbHandle& handle, Adesk::UInt32 xRefId = 0);
    // The next handle to be given out.
    AcDbHandle handseed() const;
    // Leaves in ids only the objects nothing refers to: layers no entity is on, blocks no
    // reference inserts. Layer "0", the current layer and the layout blocks always stay.
    Acad::ErrorStatus purge(AcDbObjectIdArray& ids) const;

private:
    friend struct AcDbImpl;
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

class AcDbHostApplicationServices {
public:
    AcDbDatabase* workingDatabase() const { return working_; }
    void setWorkingDatabase(AcDbDatabase* database) { working_ = database; }

private:
    AcDbDatabase* working_ = nullptr;
};

AcDbHostApplicationServices* acdbHostApplicationServices();
