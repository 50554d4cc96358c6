// The fidelity report of `qelcad roundtrip`: what of an object file came through an import, a
// save and a reopening of the drawing, class by class, and how the export of that drawing
// compares with the file.
#pragma once

#include <arx/dbdatabase.h>
#include <model_diff.h>

#include <optional>
#include <string>
#include <vector>

namespace qelcad {

struct ImportTally {
    std::string className;
    unsigned in = 0;        // objects of the file
    unsigned inDrawing = 0; // of those, the ones an entity of the reopened drawing is tagged with
};

struct ImportHalf {
    std::vector<ImportTally> classes;    // by class name, the file's structure objects apart
    std::vector<unsigned> missing;       // numbers of the objects no entity is tagged with
    std::vector<std::string> unreadable; // why objects of the file could not be read
    ImportTally layers{"Layer"};         // the file's layers, and those the drawing has by name
};

// Every object of the file that stands for geometry, and whether an entity of the drawing
// carries its number in the module's member record. An object that cannot be read is told and
// the others are counted; throws QelException when the file cannot be opened.
ImportHalf importHalf(const std::string& qelPath, AcDbDatabase& drawing);

// The export of the reopened drawing and its comparison with the input; no report when the two
// could not be compared (why says so: an object of the input that cannot be read, say).
struct ExportHalf {
    std::optional<qeltool::DiffReport> report;
    std::string why;
};

// The tables as a person reads them: the import half, then per class the objects of the input
// and of the export, those equal, equal within the tolerance, changed and lost, and each changed
// param with both values and how far apart they are.
std::string roundtripText(const std::string& input, const std::string& drawing,
                          const ImportHalf& half, const ExportHalf& exported);
// The same as data; an empty `drawing` (one that was not kept) is null.
std::string roundtripJson(const std::string& input, const std::string& drawing,
                          const ImportHalf& half, const ExportHalf& exported);

} // namespace qelcad
