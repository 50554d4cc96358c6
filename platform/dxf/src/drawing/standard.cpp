#include "standard.h"

#include <arx/acdb.h>
#include <arx/dbhost.h>
#include <arx/dbkept.h>
#include <arx/dbpoly.h>

#include <sstream>

namespace dxf {

namespace {

// Groups as "code value" separated by '|'.
AcDbKeptGroups groupsOf(const std::string& text) {
    AcDbKeptGroups groups;
    std::istringstream in(text);
    std::string item;
    while (std::getline(in, item, '|')) {
        const size_t blank = item.find(' ');
        groups.emplace_back(short(std::stoi(item.substr(0, blank))),
                            blank == std::string::npos ? "" : item.substr(blank + 1));
    }
    return groups;
}

struct StandardTable {
    const char* name;
    const char* head;
    std::vector<const char*> records;
};

const StandardTable kTables[] = {
    {"VPORT",
     "2 VPORT|100 AcDbSymbolTable|70 1",
     {"100 AcDbSymbolTableRecord|100 AcDbViewportTableRecord|2 *Active|70 0|10 0.0|20 0.0|"
      "11 1.0|21 1.0|12 0.0|22 0.0|13 0.0|23 0.0|14 0.5|24 0.5|15 0.5|25 0.5|16 0.0|26 0.0|"
      "36 1.0|17 0.0|27 0.0|37 0.0|40 1000.0|41 1.34|42 50.0|43 0.0|44 0.0|50 0.0|51 0.0|"
      "71 0|72 1000|73 1|74 3|75 0|76 0|77 0|78 0|281 0|65 0|146 0.0"}},
    {"LTYPE",
     "2 LTYPE|100 AcDbSymbolTable|70 3",
     {"100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 ByBlock|70 0|3 |72 65|73 0|"
      "40 0.0",
      "100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 ByLayer|70 0|3 |72 65|73 0|"
      "40 0.0",
      "100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 Continuous|70 0|3 Solid line|"
      "72 65|73 0|40 0.0"}},
    {"STYLE",
     "2 STYLE|100 AcDbSymbolTable|70 1",
     {"100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Standard|70 0|40 0.0|41 1.0|"
      "50 0.0|71 0|42 2.5|3 txt|4 "}},
    {"VIEW", "2 VIEW|100 AcDbSymbolTable|70 0", {}},
    {"DIMSTYLE",
     "2 DIMSTYLE|100 AcDbSymbolTable|70 1|100 AcDbDimStyleTable|71 0",
     {"100 AcDbSymbolTableRecord|100 AcDbDimStyleTableRecord|2 Standard|70 0"}},
};

constexpr const char* kLayoutSettings =
    "100 AcDbPlotSettings|1 |2 none_device|4 |6 |40 0.0|41 0.0|42 0.0|43 0.0|44 0.0|45 0.0|"
    "46 0.0|47 0.0|48 0.0|49 0.0|140 0.0|141 0.0|142 1.0|143 1.0|70 {flags}|72 1|73 0|74 5|7 |"
    "75 16|76 0|77 2|78 300|147 1.0|148 0.0|149 0.0|100 AcDbLayout|1 {name}|70 1|71 {tab}|"
    "10 0.0|20 0.0|11 420.0|21 297.0|12 0.0|22 0.0|32 0.0|14 1e+20|24 1e+20|34 1e+20|"
    "15 -1e+20|25 -1e+20|35 -1e+20|146 0.0|13 0.0|23 0.0|33 0.0|16 1.0|26 0.0|36 0.0|17 0.0|"
    "27 1.0|37 0.0|76 1";

std::string replaced(std::string text, const std::string& key, const std::string& value) {
    text.replace(text.find(key), key.size(), value);
    return text;
}

AcDbObjectId addKept(AcDbDatabase& db, AcDbKeptObject* object, AcDbObjectId owner) {
    acdbHostAddObject(&db, object, owner, AcDbHandle());
    const AcDbObjectId id = object->objectId();
    object->close();
    return id;
}

bool hasLayout(AcDbDatabase& db) {
    AcDbDictionary* named = nullptr;
    if (db.getNamedObjectsDictionary(named) != Acad::eOk) return false;
    const bool has = named->has(ACRX_T("ACAD_LAYOUT"));
    named->close();
    return has;
}

// A layout for a layout block, and the block's pointer to it.
void addLayout(FileData& data, AcDbDictionary* layouts, const char* name, int tab,
               AcDbObjectId block) {
    std::string text = replaced(kLayoutSettings, "{name}", name);
    text = replaced(text, "{tab}", std::to_string(tab));
    text = replaced(text, "{flags}", tab == 0 ? "1024" : "0");
    AcDbKeptGroups groups = groupsOf(text);
    groups.emplace_back(short(330), formatHandle(Adesk::UInt64(block.handle())));
    auto* layout = new AcDbKeptObject("LAYOUT", std::move(groups));
    AcDbObjectId id;
    layouts->setAt(std::wstring(name, name + std::char_traits<char>::length(name)).c_str(), layout,
                   id);
    layout->close();
    auto& extras = data.extras[Adesk::UInt64(block.handle())];
    extras.push_back({"AcDbBlockTableRecord", {340, formatHandle(Adesk::UInt64(id.handle()))}});
    extras.push_back({"AcDbBlockTableRecord", {70, "0"}});
    extras.push_back({"AcDbBlockTableRecord", {280, "1"}});
    extras.push_back({"AcDbBlockTableRecord", {281, "0"}});
}

} // namespace

bool addStandardParts(AcDbDatabase& db, FileData& data,
                      const std::map<std::string, AcDbObjectId>& tables,
                      const std::vector<std::uint64_t>& unendedPolylines) {
    bool added = false;
    for (const StandardTable& t : kTables) {
        if (tables.count(t.name)) continue;
        const AcDbObjectId table =
            addKept(db, new AcDbKeptObject("TABLE", groupsOf(t.head)), AcDbObjectId::kNull);
        for (const char* record : t.records)
            addKept(db, new AcDbKeptObject(t.name, groupsOf(record)), table);
        added = true;
    }
    if (!hasLayout(db)) {
        AcDbDictionary* named = nullptr;
        db.getNamedObjectsDictionary(named, AcDb::kForWrite);
        auto* layouts = new AcDbDictionary;
        AcDbObjectId id;
        named->setAt(ACRX_T("ACAD_LAYOUT"), layouts, id);
        named->close();
        addLayout(data, layouts, "Model", 0, db.modelSpaceId());
        addLayout(data, layouts, "Layout1", 1, db.paperSpaceId());
        layouts->close();
        added = true;
    }
    // End markers of blocks and polylines.
    auto reserve = [&db](std::uint64_t& end) {
        if (end != 0) return;
        AcDbHandle h;
        acdbHostReserveHandle(&db, h);
        end = h;
    };
    AcDbBlockTable* blocks = nullptr;
    db.getBlockTable(blocks);
    AcDbSymbolTableIterator* raw = nullptr;
    blocks->newIterator(raw);
    std::unique_ptr<AcDbSymbolTableIterator> it(raw);
    blocks->close();
    for (; !it->done(); it->step()) {
        AcDbObjectId blockId;
        it->getRecordId(blockId);
        auto& ends = data.blockEnds[Adesk::UInt64(blockId.handle())];
        reserve(ends.first);
        reserve(ends.second);
    }
    for (std::uint64_t polyline : unendedPolylines)
        reserve(data.sequenceEnds[polyline]);
    return added;
}

} // namespace dxf
