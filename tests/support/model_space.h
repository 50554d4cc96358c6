// The entities of a drawing's model space, for the tests that look at what a command left there.
#pragma once

#include <arx/acdb.h>
#include <arx/dbdatabase.h>
#include <arx/dbsymtb.h>

#include <vector>

// Their ids in the order model space holds them; none when model space cannot be opened.
inline std::vector<AcDbObjectId> modelSpaceIds(AcDbDatabase& db) {
    std::vector<AcDbObjectId> ids;
    AcDbBlockTableRecord* space = nullptr;
    if (acdbOpenObject(space, db.modelSpaceId(), AcDb::kForRead) != Acad::eOk) return ids;
    AcDbBlockTableRecordIterator* it = nullptr;
    space->newIterator(it);
    for (; !it->done(); it->step()) {
        AcDbObjectId id;
        if (it->getEntityId(id) == Acad::eOk) ids.push_back(id);
    }
    delete it;
    space->close();
    return ids;
}
