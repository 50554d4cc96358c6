// The database as a DXF file: header, classes, tables, blocks, entities, objects.
#include <arx/acdb.h>
#include <arx/dbdict.h>
#include <arx/dbhost.h>
#include <arx/dbkept.h>
#include <arx/dbpoly.h>
#include <dxf/drawing.h>
#include <dxf/tag_io.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include "item_tags.h"
#include "object_tags.h"
#include "standard.h"
#include "utf8.h"

namespace dxf {

namespace {

std::uint64_t handleOf(AcDbObjectId id) {
    return id.isNull() ? 0 : Adesk::UInt64(id.handle());
}

std::string pointText(double v) {
    return formatDouble(v);
}

class DrawingWriter {
public:
    DrawingWriter(AcDbDatabase& db, std::ostream& out) : m_db(db), m_out(out) {}

    void write() {
        m_data = fileDataOf(&m_db);
        scan(1);
        const Adesk::UInt64 scanned = m_db.handseed();
        if (addStandardParts(m_db, *m_data, m_keptTables, m_unendedPolylines)) {
            // The standard parts are objects after those scanned, and they end every polyline
            // that had no end: only the new objects are scanned again.
            std::erase_if(m_unendedPolylines,
                          [this](std::uint64_t h) { return m_data->sequenceEnds.count(h) != 0; });
            scan(scanned);
        }
        header();
        classes();
        tables();
        blocks();
        entities();
        objects();
        m_out.write(0, "EOF");
    }

private:
    // Every live object by handle from the first one given on, and the kept ones by owner.
    void scan(Adesk::UInt64 first) {
        const Adesk::UInt64 seed = m_db.handseed();
        m_written.resize(std::max<std::size_t>(m_written.size(), seed), false);
        for (Adesk::UInt64 h = first; h < seed; ++h) {
            AcDbObjectId id;
            if (m_db.getAcDbObjectId(id, false, AcDbHandle(h)) != Acad::eOk) continue;
            // A folded tag is a dictionary or its record, never erased: written in its turn
            // below, without being made twice for this look.
            if (acdbHostIsFolded(id)) {
                m_written[h] = true;
                m_objects.push_back(id);
                continue;
            }
            AcDbObject* object = nullptr;
            if (acdbOpenAcDbObject(object, id, AcDb::kForRead) != Acad::eOk) continue;
            if (emptyAnonymousGroup(*object)) {
                // Its members all erased, it goes with them: the dictionary entry naming it is
                // left out as a dangling pointer.
                object->close();
                continue;
            }
            m_written[h] = true;
            if (!AcDbEntity::cast(object)) {
                m_objects.push_back(id);
                if (const auto* kept = AcDbKeptObject::cast(object)) {
                    m_keptByOwner[handleOf(object->ownerId())].push_back(id);
                    if (kept->dxfName() == "TABLE" && kept->find(2))
                        m_keptTables.emplace(*kept->find(2), id);
                }
            } else if (recordType(*object).empty()) {
                // Nothing is written rather than a record that loses the entity's data.
                const std::string kind = toUtf8(object->isA()->name());
                object->close();
                throw std::runtime_error("entity " + formatHandle(h) + " (" + kind +
                                         ") has no form in a drawing file yet; nothing was "
                                         "written");
            } else if (acdbHostVertices(object) != nullptr && !m_data->sequenceEnds.count(h)) {
                m_unendedPolylines.push_back(h);
            }
            object->close();
        }
    }

    bool written(std::uint64_t handle) const {
        return handle < m_written.size() && m_written[handle];
    }

    static bool emptyAnonymousGroup(const AcDbObject& object) {
        const auto* group = AcDbGroup::cast(&object);
        return group && group->isAnonymous() && group->numEntities() == 0;
    }

    void section(const char* name) {
        m_out.write(0, "SECTION");
        m_out.write(2, name);
    }
    void endSection() { m_out.write(0, "ENDSEC"); }

    void header() {
        section("HEADER");
        const AcGePoint3d org = m_db.ucsorg();
        const AcGeVector3d x = m_db.ucsxdir(), y = m_db.ucsydir();
        std::string clayer = "0";
        if (AcDbLayerTableRecord* layer = nullptr;
            acdbOpenObject(layer, m_db.clayer(), AcDb::kForRead) == Acad::eOk) {
            clayer = toUtf8(layer->name());
            layer->close();
        }
        auto point = [](double a, double b, double c) {
            return Tags{{10, pointText(a)}, {20, pointText(b)}, {30, pointText(c)}};
        };
        const std::map<std::string, Tags> own = {
            {"$ACADVER", {{1, "AC1024"}}},
            {"$HANDSEED", {{5, formatHandle(Adesk::UInt64(m_db.handseed()))}}},
            {"$CLAYER", {{8, clayer}}},
            {"$UCSORG", point(org.x, org.y, org.z)},
            {"$UCSXDIR", point(x.x, x.y, x.z)},
            {"$UCSYDIR", point(y.x, y.y, y.z)},
        };
        const std::vector<std::pair<std::string, Tags>> defaults = {
            {"$DWGCODEPAGE", {{3, "ANSI_1252"}}},
            {"$INSUNITS", {{70, "4"}}},
            {"$MEASUREMENT", {{70, "1"}}},
        };
        std::set<std::string> written;
        auto variable = [&](const std::string& name, const Tags& values) {
            if (!written.insert(name).second) return;
            m_out.write(9, name);
            m_out.write(own.count(name) ? own.at(name) : values);
        };
        variable("$ACADVER", {});
        for (const HeaderVariable& v : m_data->header)
            variable(v.name, v.values);
        for (const auto& [name, values] : defaults)
            variable(name, values);
        for (const auto& [name, values] : own)
            variable(name, values);
        endSection();
    }

    void classes() {
        section("CLASSES");
        for (const Record& r : m_data->classes) {
            m_out.write(0, r.type);
            m_out.write(r.tags);
        }
        endSection();
    }

    void record(const AcDbObject& object, AcDbObjectId owner, bool paper = false) {
        // One buffer for all records, so that its room is made once.
        Tags& tags = m_tags;
        tags.clear();
        const std::string type = recordType(object);
        appendHead(tags, type, object, owner, *m_data);
        const size_t bodyStart = tags.size();
        if (const auto* d = AcDbDictionary::cast(&object))
            dictionaryBody(tags, *d);
        else if (const auto* kept = AcDbKeptObject::cast(&object); kept && type == "TABLE")
            tableHead(tags, *kept);
        else
            appendBody(tags, object, *m_data);
        if (const auto* layer = AcDbLayerTableRecord::cast(&object)) keepLayerIndex(tags, *layer);
        if (paper) insertAfterMarker(tags, bodyStart, 1, {67, "1"});
        const auto followers = m_data->followers.find(Adesk::UInt64(object.handle()));
        if (type == "POLYLINE" || followers != m_data->followers.end())
            insertAfterMarker(tags, bodyStart, 2, {66, "1"});
        appendXData(tags, object);
        dropDanglingPointers(tags);
        if (followers != m_data->followers.end())
            for (const Record& r : followers->second) {
                tags.push_back({0, r.type});
                tags.insert(tags.end(), r.tags.begin(), r.tags.end());
            }
        m_out.write(tags);
    }

    // A pointer to an object that is not written (erased, or never in the drawing) would make
    // the file unreadable: it is left out, and so is the key of a dictionary entry holding one.
    void dropDanglingPointers(Tags& tags) const {
        auto dangling = [this](const Tag& t) {
            const bool pointer = (t.code >= 330 && t.code <= 369) ||
                                 (t.code >= 390 && t.code <= 399) ||
                                 (t.code >= 480 && t.code <= 481);
            if (!pointer) return false;
            const std::uint64_t handle = std::strtoull(t.value.c_str(), nullptr, 16);
            return handle != 0 && !written(handle);
        };
        size_t end = 0;
        for (size_t i = 0; i < tags.size(); ++i) {
            if (!dangling(tags[i])) {
                if (end != i) tags[end] = std::move(tags[i]);
                ++end;
            } else if ((tags[i].code == 350 || tags[i].code == 360) && end > 0 &&
                       tags[end - 1].code == 3) {
                --end;
            }
        }
        if (end == tags.size()) return;
        tags.resize(end);
        // A list of reactors this left empty goes as well.
        end = 0;
        for (size_t i = 0; i < tags.size(); ++i) {
            const bool emptied = tags[i].code == 102 && tags[i].value == "}" && end > 0 &&
                                 tags[end - 1].code == 102 && tags[end - 1].value.starts_with("{");
            if (emptied) {
                --end;
                continue;
            }
            if (end != i) tags[end] = std::move(tags[i]);
            ++end;
        }
        tags.resize(end);
    }

    // A true-colour layer keeps the index its file gave it while its colour stays the same.
    void keepLayerIndex(Tags& tags, const AcDbLayerTableRecord& layer) const {
        const auto kept = m_data->layerIndexes.find(Adesk::UInt64(layer.handle()));
        if (kept == m_data->layerIndexes.end() || !layer.color().isByColor() ||
            (layer.color().color() & 0xFFFFFF) != kept->second.first)
            return;
        for (Tag& t : tags)
            if (t.code == 62)
                t.value =
                    std::to_string(layer.isOff() ? -kept->second.second : kept->second.second);
    }

    // Puts a group after the n-th subclass marker of the body.
    static void insertAfterMarker(Tags& tags, size_t from, int n, const Tag& tag) {
        for (size_t i = from; i < tags.size(); ++i)
            if (tags[i].code == 100 && --n == 0) {
                tags.insert(tags.begin() + std::ptrdiff_t(i) + 1, tag);
                return;
            }
    }

    void dictionaryBody(Tags& tags, const AcDbDictionary& d) {
        tags.push_back({100, "AcDbDictionary"});
        auto extras = m_data->extras.find(Adesk::UInt64(d.handle()));
        if (extras == m_data->extras.end())
            tags.push_back({281, "1"});
        else
            for (const ExtraGroup& g : extras->second)
                tags.push_back(g.tag);
        std::unique_ptr<AcDbDictionaryIterator> it(d.newIterator());
        for (; !it->done(); it->next()) {
            tags.push_back({3, toUtf8(it->name())});
            tags.push_back({350, handleText(it->objectId())});
        }
    }

    // A kept table's head: its name comes before its handle.
    static void tableHead(Tags& tags, const AcDbKeptObject& table) {
        tags.insert(tags.begin() + 1, {2, *table.find(2)});
        bool nameSkipped = false;
        for (const auto& [code, value] : table.groups()) {
            if (code == 2 && !nameSkipped) {
                nameSkipped = true;
                continue;
            }
            tags.push_back({code, value});
        }
    }

    template <class Table>
    void hostTable(const char* name, AcDbObjectId tableId) {
        Table* table = nullptr;
        if (acdbOpenObject(table, tableId, AcDb::kForRead) != Acad::eOk) return;
        AcDbSymbolTableIterator* raw = nullptr;
        table->newIterator(raw);
        std::unique_ptr<AcDbSymbolTableIterator> it(raw);
        std::vector<AcDbObjectId> ids;
        for (; !it->done(); it->step()) {
            AcDbObjectId id;
            it->getRecordId(id);
            ids.push_back(id);
        }
        m_out.write(0, "TABLE");
        m_out.write(2, name);
        m_out.writeHandle(5, handleOf(tableId));
        m_out.write(330, "0");
        m_out.write(100, "AcDbSymbolTable");
        m_out.writeInt(70, long(ids.size()));
        table->close();
        for (AcDbObjectId id : ids)
            withObject(id, [&](AcDbObject& r) { record(r, tableId); });
        m_out.write(0, "ENDTAB");
    }

    void keptTable(AcDbObjectId tableId) {
        withObject(tableId, [&](AcDbObject& t) { record(t, AcDbObjectId::kNull); });
        for (AcDbObjectId id : m_keptByOwner[handleOf(tableId)])
            withObject(id, [&](AcDbObject& r) { record(r, tableId); });
        m_out.write(0, "ENDTAB");
        m_tableParts.insert(handleOf(tableId));
        for (AcDbObjectId id : m_keptByOwner[handleOf(tableId)])
            m_tableParts.insert(handleOf(id));
    }

    void tables() {
        section("TABLES");
        std::map<std::string, AcDbObjectId> kept = m_keptTables;
        auto keptNamed = [&](const char* name) {
            if (auto it = kept.find(name); it != kept.end()) {
                keptTable(it->second);
                kept.erase(it);
            }
        };
        keptNamed("VPORT");
        keptNamed("LTYPE");
        hostTable<AcDbLayerTable>("LAYER", m_db.layerTableId());
        keptNamed("STYLE");
        keptNamed("VIEW");
        hostTable<AcDbUCSTable>("UCS", m_db.UCSTableId());
        hostTable<AcDbRegAppTable>("APPID", m_db.regAppTableId());
        keptNamed("DIMSTYLE");
        hostTable<AcDbBlockTable>("BLOCK_RECORD", m_db.blockTableId());
        for (const auto& [name, id] : kept)
            keptTable(id);
        endSection();
    }

    void withObject(AcDbObjectId id, const std::function<void(AcDbObject&)>& f) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, id, AcDb::kForRead) != Acad::eOk) return;
        f(*object);
        object->close();
    }

    void blockMarker(const char* type, std::uint64_t handle, const AcDbBlockTableRecord& block,
                     bool begin) {
        m_out.write(0, type);
        m_out.writeHandle(5, handle);
        m_out.writeHandle(330, Adesk::UInt64(block.handle()));
        m_out.write(100, "AcDbEntity");
        if (block.objectId() == m_db.paperSpaceId()) m_out.write(67, "1");
        m_out.write(8, "0");
        if (!begin) {
            m_out.write(100, "AcDbBlockEnd");
            return;
        }
        const std::string name = toUtf8(block.name());
        m_out.write(100, "AcDbBlockBegin");
        m_out.write(2, name);
        m_out.writeInt(70, block.isAnonymous() ? 1 : 0);
        const AcGePoint3d o = block.origin();
        m_out.writePoint(10, o.x, o.y, o.z);
        m_out.write(3, name);
        m_out.write(1, "");
    }

    void entitiesOf(const AcDbBlockTableRecord& block) {
        const bool paper = block.objectId() == m_db.paperSpaceId();
        AcDbBlockTableRecordIterator* raw = nullptr;
        block.newIterator(raw);
        std::unique_ptr<AcDbBlockTableRecordIterator> it(raw);
        for (; !it->done(); it->step()) {
            AcDbObjectId id;
            it->getEntityId(id);
            withObject(id, [&](AcDbObject& e) { entity(static_cast<AcDbEntity&>(e), paper); });
        }
    }

    void entity(const AcDbEntity& e, bool paper) {
        record(e, e.ownerId(), paper);
        std::unique_ptr<AcDbObjectIterator> vertices = acdbHostVertices(&e);
        if (vertices == nullptr) return;
        for (; !vertices->done(); vertices->step())
            withObject(vertices->objectId(),
                       [&](AcDbObject& v) { record(v, e.objectId(), paper); });
        m_out.write(0, "SEQEND");
        m_out.writeHandle(5, m_data->sequenceEnds[Adesk::UInt64(e.handle())]);
        m_out.writeHandle(330, Adesk::UInt64(e.handle()));
        m_out.write(100, "AcDbEntity");
        if (paper) m_out.write(67, "1");
        ACHAR* layer = e.layer();
        m_out.write(8, layer ? toUtf8(layer) : "0");
        acutDelString(layer);
    }

    template <class F>
    void eachBlock(F f) {
        AcDbBlockTable* table = nullptr;
        if (m_db.getBlockTable(table) != Acad::eOk) return;
        AcDbSymbolTableIterator* raw = nullptr;
        table->newIterator(raw);
        std::unique_ptr<AcDbSymbolTableIterator> it(raw);
        table->close();
        for (; !it->done(); it->step()) {
            AcDbObjectId id;
            it->getRecordId(id);
            withObject(id, [&](AcDbObject& b) { f(static_cast<AcDbBlockTableRecord&>(b)); });
        }
    }

    void blocks() {
        section("BLOCKS");
        eachBlock([&](AcDbBlockTableRecord& block) {
            const auto& ends = m_data->blockEnds[Adesk::UInt64(block.handle())];
            blockMarker("BLOCK", ends.first, block, true);
            if (!isLayout(block)) entitiesOf(block);
            blockMarker("ENDBLK", ends.second, block, false);
        });
        endSection();
    }

    bool isLayout(const AcDbBlockTableRecord& block) const {
        return block.objectId() == m_db.modelSpaceId() || block.objectId() == m_db.paperSpaceId();
    }

    void entities() {
        section("ENTITIES");
        for (AcDbObjectId id : {m_db.modelSpaceId(), m_db.paperSpaceId()})
            withObject(id,
                       [&](AcDbObject& b) { entitiesOf(static_cast<AcDbBlockTableRecord&>(b)); });
        endSection();
    }

    void objects() {
        section("OBJECTS");
        const AcDbObjectId root = m_db.namedObjectsDictionaryId();
        withObject(root, [&](AcDbObject& o) { record(o, AcDbObjectId::kNull); });
        for (AcDbObjectId id : m_objects) {
            if (id == root || m_tableParts.count(handleOf(id))) continue;
            withObject(id, [&](AcDbObject& o) {
                if (AcDbSymbolTable::cast(&o) || AcDbSymbolTableRecord::cast(&o)) return;
                record(o, o.ownerId());
            });
        }
        endSection();
    }

    AcDbDatabase& m_db;
    TagWriter m_out;
    std::shared_ptr<FileData> m_data;
    std::vector<AcDbObjectId> m_objects;
    // Whether the file gets the object of each handle.
    std::vector<bool> m_written;
    std::map<std::uint64_t, std::vector<AcDbObjectId>> m_keptByOwner;
    std::set<std::uint64_t> m_tableParts;
    std::map<std::string, AcDbObjectId> m_keptTables;
    std::vector<std::uint64_t> m_unendedPolylines;
    Tags m_tags;
};

} // namespace

void writeDrawing(AcDbDatabase& db, std::ostream& out) {
    DrawingWriter(db, out).write();
}

} // namespace dxf
