#include "roundtrip.h"
#include "symbol_tables.h"

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/strings.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <map>
#include <memory>
#include <set>
#include <string_view>

namespace qelcad {

namespace {

// Classes that hold the file together: the import reads them and makes no entity of them.
bool isStructure(std::string_view name) {
    for (const char* s :
         {"Header", "ModelSpace", "LayerMgr", "Layer", "ModelSpaceView", "CoordSysMgr"})
        if (name == s) return true;
    return false;
}

struct Unref {
    void operator()(QelObject* o) const {
        if (o) o->UnRef();
    }
};

// The object number of the member record on the entity, the fourth item of its chain.
void taggedNumber(const AcDbEntity& entity, std::set<unsigned>& numbers) {
    if (entity.extensionDictionary().isNull()) return;
    AcDbDictionary* dict = nullptr;
    if (acdbOpenObject(dict, entity.extensionDictionary(), AcDb::kForRead) != Acad::eOk) return;
    AcDbObjectId recordId;
    const bool found = dict->getAt(L"MemberRec", recordId) == Acad::eOk;
    dict->close();
    AcDbXrecord* record = nullptr;
    if (!found || acdbOpenObject(record, recordId, AcDb::kForRead) != Acad::eOk) return;
    resbuf* chain = nullptr;
    record->rbChain(&chain);
    record->close();
    const resbuf* item = chain;
    for (int i = 0; i < 3 && item; ++i)
        item = item->rbnext;
    if (item && item->restype == 90 && item->resval.rlong >= 0)
        numbers.insert(unsigned(item->resval.rlong));
    acutRelRb(chain);
}

// Every entity of every block, model space among them: an object imported as a block is
// tagged on its reference or inside its definition.
std::set<unsigned> taggedNumbers(AcDbDatabase& db) {
    std::set<unsigned> numbers;
    AcDbBlockTable* blocks = nullptr;
    if (db.getBlockTable(blocks) != Acad::eOk) return numbers;
    forEachRecord(blocks, [&](AcDbBlockTableRecord& block) {
        AcDbBlockTableRecordIterator* it = nullptr;
        if (block.newIterator(it) != Acad::eOk) return;
        for (; !it->done(); it->step()) {
            AcDbEntity* entity = nullptr;
            if (it->getEntity(entity) != Acad::eOk) continue;
            taggedNumber(*entity, numbers);
            entity->close();
        }
        delete it;
    });
    blocks->close();
    return numbers;
}

std::set<std::string> layerNames(AcDbDatabase& db) {
    std::set<std::string> names;
    AcDbLayerTable* layers = nullptr;
    if (db.getLayerTable(layers) != Acad::eOk) return names;
    forEachRecord(layers, [&](AcDbLayerTableRecord& layer) {
        const ACHAR* name = nullptr;
        layer.getName(name);
        names.insert(win::toUtf8(name ? name : L""));
    });
    layers->close();
    return names;
}

std::string layerName(QelObject& layer) {
    QelParam* p = layer.GetParam("name", 0);
    const char* text = nullptr;
    if (p && p->GetType() == QelStringType) p->GetValue(text);
    return text ? text : "";
}

} // namespace

ImportHalf importHalf(const std::string& qelPath, AcDbDatabase& drawing) {
    QelReader reader(qelPath.c_str());
    const std::set<unsigned> tagged = taggedNumbers(drawing);
    const std::set<std::string> layers = layerNames(drawing);
    ImportHalf half;
    std::map<std::string, ImportTally> tally;
    for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
        std::unique_ptr<QelObject, Unref> object;
        try {
            object.reset(reader.ReadObject(id));
        } catch (const QelException& e) {
            half.unreadable.push_back(e.GetReason());
            continue;
        }
        if (!object) continue;
        const std::string name = object->GetName();
        if (name == "Layer") {
            ++half.layers.in;
            half.layers.inDrawing += layers.count(layerName(*object));
        }
        if (isStructure(name)) continue;
        ImportTally& t = tally[name];
        ++t.in;
        if (tagged.count(id))
            ++t.inDrawing;
        else
            half.missing.push_back(id);
    }
    for (auto& [name, t] : tally) {
        t.className = name;
        half.classes.push_back(t);
    }
    return half;
}

std::string roundtripText(const std::string& input, const std::string& drawing,
                          const ImportHalf& half, const ExportHalf& exported) {
    std::string out =
        fmt::format("Round trip of {}\nImport: saved as {} and reopened\n", input, drawing);
    out += fmt::format("{:<24}{:>7}{:>12}{:>16}\n", "class", "in", "in drawing", "not in drawing");
    for (const ImportTally& t : half.classes)
        out += fmt::format("{:<24}{:>7}{:>12}{:>16}\n", t.className, t.in, t.inDrawing,
                           t.in - t.inDrawing);
    out += fmt::format("{:<24}{:>7}{:>12}{:>16}\n", "Layer (by name)", half.layers.in,
                       half.layers.inDrawing, half.layers.in - half.layers.inDrawing);
    if (!half.missing.empty())
        out += fmt::format("Objects no entity of the drawing is tagged with: {} (the "
                           "import's transcript says why)\n",
                           fmt::join(half.missing, ", "));
    for (const std::string& reason : half.unreadable)
        out += "Cannot be read: " + reason + "\n";
    // A is the input, B the export of the reopened drawing: "only A" is what the way out lost.
    out += "Export of the reopened drawing, compared with the input:\n";
    if (!exported.report) return out + "Not compared: " + exported.why + "\n";
    return out + qeltool::diffText(*exported.report, input, "the export");
}

std::string roundtripJson(const std::string& input, const std::string& drawing,
                          const ImportHalf& half, const ExportHalf& exported) {
    using nlohmann::json;
    json classes = json::array();
    for (const ImportTally& t : half.classes)
        classes.push_back({{"class", t.className}, {"in", t.in}, {"inDrawing", t.inDrawing}});
    const json out = {
        {"input", input},
        {"drawing", drawing.empty() ? json(nullptr) : json(drawing)},
        {"import",
         {{"classes", classes},
          {"layers", {{"in", half.layers.in}, {"inDrawing", half.layers.inDrawing}}},
          {"missing", half.missing},
          {"unreadable", half.unreadable}}},
        {"export", exported.report
                       ? json::parse(qeltool::diffJson(*exported.report, input, "the export"))
                       : json{{"compared", false}, {"why", exported.why}}},
    };
    return out.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

} // namespace qelcad
