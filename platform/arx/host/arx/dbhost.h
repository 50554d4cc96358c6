// Host side of the database: what the command layer and the tests check after a command.
// The module never includes this header.
#pragma once

#include "arx/dbdatabase.h"

// Objects of the database now open (each opening counts once).
Adesk::UInt64 acdbHostOpenObjectCount(const AcDbDatabase* database);
// How many times an object of the database was closed after being opened for write (a new
// object's first closing included): a drawing whose count moved since it was read or saved has
// changed.
Adesk::UInt64 acdbHostWriteCloseCount(const AcDbDatabase* database);
// The resident objects that are open, in handle order.
AcDbObjectIdArray acdbHostOpenObjects(const AcDbDatabase* database);
// True for an extension dictionary, or its one X-record, that the database keeps folded: no
// object in memory, made anew from a record shared with others whenever it is reached. Nothing
// else tells a folded pair from a resident one.
bool acdbHostIsFolded(AcDbObjectId id);

// Makes a new object resident under the given owner with the given handle, as a drawing
// reader needs (a null handle takes the next free one). eHandleInUse when the handle is taken;
// eAlreadyInDb for an object already resident. The object stays open for write.
Acad::ErrorStatus acdbHostAddObject(AcDbDatabase* database, AcDbObject* object,
                                    AcDbObjectId ownerId, const AcDbHandle& handle);

// What a drawing reader needs beyond the module's interface.
#include <memory>

class AcDbObjectIterator;

// The vertices (and face records) of a polyline or mesh; null for other objects.
std::unique_ptr<AcDbObjectIterator> acdbHostVertices(const AcDbObject* object);

class AcDbBlockTableRecord;
class AcDbEntity;

// The objects a database names, for a database built from a file (made without the default
// drawing). Each must be resident in that database and of its class.
struct AcDbHostRoots {
    AcDbObjectId blockTable, layerTable, ucsTable, regAppTable;
    AcDbObjectId namedObjects, groupDictionary;
    AcDbObjectId modelSpace, paperSpace;
    AcDbObjectId layerZero, clayer;
};
Acad::ErrorStatus acdbHostSetRoots(AcDbDatabase* database, const AcDbHostRoots& roots);
// Appends a new entity to a resident block under the given handle (null: the next free one).
// The entity stays open for write.
Acad::ErrorStatus acdbHostAppendEntity(AcDbBlockTableRecord* block, AcDbEntity* entity,
                                       const AcDbHandle& handle);
// Takes a handle for what the database keeps no object for (the end marker of a polyline, the
// begin and end of a block); a null handle takes the next free one. eHandleInUse when taken.
Acad::ErrorStatus acdbHostReserveHandle(AcDbDatabase* database, AcDbHandle& handle);
// Gives an object the extension dictionary it had in a file; the dictionary must be resident.
// It becomes owned by the object.
Acad::ErrorStatus acdbHostSetExtensionDictionary(AcDbObject* object, AcDbObjectId dictionary);
// Sets the owner of a resident object, for owners that a file names before making them.
Acad::ErrorStatus acdbHostSetOwner(AcDbObject* object, AcDbObjectId owner);
// The next handle given out is at least seed.
void acdbHostRaiseHandseed(AcDbDatabase* database, const AcDbHandle& seed);
// What the file a database came from held that has no object in it (header variables, the
// classes); the drawing writer's own data, kept with the database.
void acdbHostSetFileData(AcDbDatabase* database, std::shared_ptr<void> data);
std::shared_ptr<void> acdbHostFileData(const AcDbDatabase* database);
