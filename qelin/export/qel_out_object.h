// One export's worker: the reader of the source files, the records of the entities in scope and
// of the groups, the numbers that become the model space's object list, and what the structure
// objects need to know of each other. Made for one export and dropped after it.
#pragma once

#include "foundation/growing_array.h"

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/win.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

// An entity with a member record.
struct TaggedEntityRec {
    virtual ~TaggedEntityRec() = default;
    unsigned sourceObject = 0; // its object in the source file
    int objectType = -1;       // from the member record, then from the classifier
    AcDbObjectId entityId;
    int writtenRef = -1; // the number written for it; -1 until then
    unsigned groupNumber = 0;
};

// An entity without one.
struct UntaggedEntityRec {
    virtual ~UntaggedEntityRec() = default;
    unsigned reserved = 0;
    int objectType = -1;
    AcDbObjectId entityId;
    QelArray<int> extraRefs; // further objects written for this one entity
    int writtenRef = -1;
};

struct GroupExportRec {
    virtual ~GroupExportRec() = default;
    int groupRef = -1;
    int groupNumber = 0;
    AcDbObjectId layerId; // the layer of the group's last member, once known
};

struct QelObjectIdHash {
    std::size_t operator()(const AcDbObjectId& id) const {
        return std::hash<Adesk::IntPtr>()(id.asOldId());
    }
};

// A layer's name as the lookups by name without case keep it.
std::wstring QelLayerKey(LPCWSTR name);

class QelOutObject {
public:
    QelReader reader; // on the source file of the entity in hand
    bool readerInitialised = false;
    CString openReferenceFile;

    QelArray<unsigned> objectList; // what ModelSpace lists
    std::vector<std::unique_ptr<UntaggedEntityRec>> untaggedEntities;
    std::vector<std::unique_ptr<TaggedEntityRec>> taggedEntities;
    std::vector<std::unique_ptr<GroupExportRec>> groupRecs;

    int coordSysMgrWritten = 0;
    unsigned coordSysMgrRef = 0;
    unsigned layerMgrRef = 0;
    int processMethod = 0;
    CString referenceFile; // the export's name first, then the file last imported
    CString outputFile;
    AcDbDatabase* database = nullptr;

    // The Layers of the reference file by their names in lower case, read at the first look.
    std::unordered_map<std::wstring, unsigned> referenceLayers;
    bool referenceLayersRead = false;
    // The reasons already shown of source files that could not be read, each told once.
    std::set<std::wstring> readFailuresTold;
    // The groups written, by the names in lower case of their layers.
    std::unordered_map<std::wstring, std::vector<unsigned>> groupsByLayer;

    TaggedEntityRec& addTagged(std::unique_ptr<TaggedEntityRec> record);
    UntaggedEntityRec& addUntagged(std::unique_ptr<UntaggedEntityRec> record);
    void clearEntities();
    // The records of an entity, by its id; null when it has none.
    TaggedEntityRec* findTagged(const AcDbObjectId& id) const;
    UntaggedEntityRec* findUntagged(const AcDbObjectId& id) const;

private:
    std::unordered_map<AcDbObjectId, TaggedEntityRec*, QelObjectIdHash> m_taggedById;
    std::unordered_map<AcDbObjectId, UntaggedEntityRec*, QelObjectIdHash> m_untaggedById;
};
