// What a drawing file held that the database keeps no object for, carried with the database
// from opening to saving.
#pragma once

#include <dxf/raw_document.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class AcDbDatabase;

namespace dxf {

// A group an object of the host had in the file but no field of its kind takes, with the
// subclass marker it followed ("" before the first marker), so that it goes back there.
struct ExtraGroup {
    std::string marker;
    Tag tag;
};

struct FileData {
    // The header variables in file order; the writer puts its own values into those the
    // database holds ($HANDSEED, the UCS, the current layer).
    std::vector<HeaderVariable> header;
    std::vector<Record> classes;
    // Handles of what ends a polyline (SEQEND), by the polyline's handle.
    std::map<std::uint64_t, std::uint64_t> sequenceEnds;
    // Handles of the BLOCK and ENDBLK of a block, by its block record's handle.
    std::map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> blockEnds;
    // Records that follow an entity and belong to it, kept as read: the attributes of a block
    // reference and their SEQEND, by the reference's handle.
    std::map<std::uint64_t, std::vector<Record>> followers;
    // The colour index a file gave a true-colour layer (the host keeps the colour alone), with
    // that colour: by the layer's handle.
    std::map<std::uint64_t, std::pair<std::uint32_t, int>> layerIndexes;
    // Groups no field takes, by the handle of their object.
    std::map<std::uint64_t, std::vector<ExtraGroup>> extras;
};

// The data of a database, made empty on first use.
std::shared_ptr<FileData> fileDataOf(AcDbDatabase* db);

} // namespace dxf
