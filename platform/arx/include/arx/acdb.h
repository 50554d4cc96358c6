// Opening objects by id, and the entity-name interface over the working database.
#pragma once

#include "arx/dbdatabase.h"

// Opens an object. eNullObjectId, eWasErased (unless openErased), eWasOpenForWrite (asked for
// read or write while open for write), eWasOpenForRead (asked for write while open for read),
// eAtMaxReaders, eOnLockedLayer (write on an entity of a locked layer).
Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased = false);
// As above; eNotAnEntity for an object that is no entity.
Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased = false);

// Opens as the given class; eNotThatKindOfClass (and nothing left open) for another class.
template <class T>
Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead,
                                 bool openErased = false) {
    object = nullptr;
    AcDbObject* base = nullptr;
    Acad::ErrorStatus es = acdbOpenAcDbObject(base, id, mode, openErased);
    if (es != Acad::eOk) return es;
    object = T::cast(base);
    if (object == nullptr) {
        base->close();
        return Acad::eNotThatKindOfClass;
    }
    return Acad::eOk;
}

// Entity names of the working database. Each returns eOk, or the status of the failure.
Acad::ErrorStatus acdbGetAdsName(ads_name name, AcDbObjectId id);
Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name);

// The following answer RTNORM (5100) or RTERROR.
// The last entity of model or paper space that is not erased.
int acdbEntLast(ads_name name);
// The entity after the given one in its space, or the first with a null name.
int acdbEntNext(const ads_name name, ads_name next);
// The entity's groups: -1 name, 0 type, 330 owner, 5 handle, 100 class markers, 8 layer,
// 62 colour index unless by layer, 420 true colour, 60 visibility when invisible, then the
// kind's own groups. The caller frees the chain with acutRelRb. Null for an unknown name.
resbuf* acdbEntGet(const ads_name name);
// Erases a live entity, or brings back an erased one.
int acdbEntDel(const ads_name name);
// The entity with a handle written in hexadecimal.
int acdbHandEnt(const ACHAR* handle, ads_name name);
// A record of a symbol table ("LAYER", "BLOCK", "UCS", "APPID"; without regard to case) as a
// chain: 0 table name, 2 record name, 70 flags, and for a layer 62 colour (negative when off).
// Null when there is no such record. next is kept for the interface and must be 0.
resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int next);
// Registers an application name for extended data: RTNORM when new, RTERROR when already
// there or not a valid name.
int acdbRegApp(const ACHAR* appName);
