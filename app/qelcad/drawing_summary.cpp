#include "drawing_summary.h"
#include "symbol_tables.h"

#include <arx/arx.h>
#include <win/strings.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace qelcad {

namespace {

std::string text(const ACHAR* wide) {
    return win::toUtf8(wide ? wide : L"");
}

void printLayers(std::ostream& out, AcDbDatabase* db) {
    AcDbLayerTable* layers = nullptr;
    if (db->getLayerTable(layers) != Acad::eOk) return;
    std::vector<std::string> lines;
    forEachRecord(layers, [&](AcDbLayerTableRecord& layer) {
        const ACHAR* name = nullptr;
        layer.getName(name);
        std::string line =
            "  " + text(name) + "  colour " + std::to_string(layer.color().colorIndex());
        if (layer.isOff()) line += "  off";
        if (layer.isFrozen()) line += "  frozen";
        lines.push_back(line);
    });
    layers->close();
    out << "Layers (" << lines.size() << "):\n";
    for (const std::string& line : lines)
        out << line << "\n";
}

void printEntities(std::ostream& out, AcDbDatabase* db) {
    AcDbBlockTable* blocks = nullptr;
    if (db->getBlockTable(blocks) != Acad::eOk) return;
    AcDbBlockTableRecord* space = nullptr;
    const Acad::ErrorStatus opened = blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForRead);
    blocks->close();
    if (opened != Acad::eOk) return;
    std::map<std::string, std::map<std::string, int>> byLayer; // layer -> kind -> count
    int total = 0;
    AcDbBlockTableRecordIterator* it = nullptr;
    if (space->newIterator(it) == Acad::eOk) {
        for (; !it->done(); it->step()) {
            AcDbEntity* entity = nullptr;
            if (it->getEntity(entity) != Acad::eOk) continue;
            ACHAR* layer = entity->layer();
            ++byLayer[text(layer)][text(entity->isA()->name())];
            acutDelString(layer);
            entity->close();
            ++total;
        }
        delete it;
    }
    space->close();
    out << "Entities in model space (" << total << "):\n";
    for (const auto& [layer, kinds] : byLayer) {
        out << "  " << layer << ":";
        for (const auto& [kind, count] : kinds)
            out << " " << kind << " x" << count;
        out << "\n";
    }
}

void printUcss(std::ostream& out, AcDbDatabase* db) {
    AcDbUCSTable* ucss = nullptr;
    if (db->getUCSTable(ucss) != Acad::eOk) return;
    std::vector<std::string> names;
    forEachRecord(ucss, [&](AcDbUCSTableRecord& ucs) {
        const ACHAR* name = nullptr;
        ucs.getName(name);
        names.push_back(text(name));
    });
    ucss->close();
    out << "Named UCSs (" << names.size() << "):";
    for (const std::string& name : names)
        out << " " << name;
    out << "\n";
}

} // namespace

void printDrawingSummary(std::ostream& out) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    if (!db) return;
    printLayers(out, db);
    printEntities(out, db);
    printUcss(out, db);
}

} // namespace qelcad
