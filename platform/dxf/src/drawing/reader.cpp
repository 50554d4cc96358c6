// A DXF file as a new database: every record becomes an object under its own handle, of the
// host's class where the host knows the kind, kept as read where it does not.
#include <acis/sat.h>
#include <arx/acdb.h>
#include <arx/dbblkref.h>
#include <arx/dbhost.h>
#include <arx/dbkept.h>
#include <arx/dbmesh.h>
#include <arx/dbpoly.h>
#include <arx/dxfkind.h>
#include <dxf/drawing.h>
#include <dxf/tags.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <set>

#include "acis_text.h"
#include "file_data.h"
#include "item_tags.h"
#include "utf8.h"

namespace dxf {

namespace {

// The parts every record shares, located in its tags.
struct Common {
    std::uint64_t handle = 0;
    std::uint64_t owner = 0;
    std::vector<const Tag*> reactors;
    const Tag* extensionDictionary = nullptr;
    std::vector<ExtraGroup> appGroups; // application groups of other programs
    size_t body = 0;                   // the first tag after the common part
    size_t xdata = 0;                  // the first tag of the extended data, or the end
};

struct Pending {
    const Record* record;
    AcDbObjectId id;
    Common common;
};

// The working database is the one being read while its objects take their fields: names of
// layers and blocks are found there.
class WorkingDatabase {
public:
    explicit WorkingDatabase(AcDbDatabase* db)
        : m_old(acdbHostApplicationServices()->workingDatabase()) {
        acdbHostApplicationServices()->setWorkingDatabase(db);
    }
    ~WorkingDatabase() { acdbHostApplicationServices()->setWorkingDatabase(m_old); }
    WorkingDatabase(const WorkingDatabase&) = delete;
    WorkingDatabase& operator=(const WorkingDatabase&) = delete;

private:
    AcDbDatabase* m_old;
};

std::string statusText(Acad::ErrorStatus es) {
    return toUtf8(acadErrorStatusText(es));
}

bool isSolidModel(const std::string& type) {
    return type == "3DSOLID" || type == "REGION" || type == "BODY";
}

// A new object of the kind when it is of class T; null otherwise.
template <class T>
std::unique_ptr<T> make(const AcDbDxfKind* kind) {
    std::unique_ptr<AcDbObject> made(kind ? kind->create() : nullptr);
    if (!T::cast(made.get())) return nullptr;
    return std::unique_ptr<T>(static_cast<T*>(made.release()));
}

// Result buffers of the items, for extended data and X-records; the caller frees the chain.
resbuf* chainOf(const AcDbDxfItems& items) {
    resbuf* chain = nullptr;
    resbuf** link = &chain;
    for (const AcDbDxfItem& item : items) {
        *link = acdbDxfToResbuf(item);
        link = &(*link)->rbnext;
    }
    return chain;
}

std::set<short> angleCodes(const AcDbDxfKind* kind) {
    std::set<short> codes;
    if (kind != nullptr)
        for (const AcDbDxfField& f : kind->fields)
            if (f.flags & AcDbDxfField::kAngle) codes.insert(f.code);
    return codes;
}

class DrawingReader {
public:
    DrawingReader(const RawDocument& doc, std::string source)
        : m_doc(doc), m_source(std::move(source)), m_db(std::make_unique<AcDbDatabase>(false)),
          m_data(fileDataOf(m_db.get())) {}

    std::unique_ptr<AcDbDatabase> read() {
        WorkingDatabase working(m_db.get());
        header();
        if (const Section* s = m_doc.section("CLASSES")) m_data->classes = s->records;
        if (const Section* s = m_doc.section("TABLES")) tables(*s);
        if (const Section* s = m_doc.section("OBJECTS")) createObjects(*s);
        roots();
        if (const Section* s = m_doc.section("BLOCKS")) blocks(*s);
        if (const Section* s = m_doc.section("ENTITIES"))
            entities(s->records, 0, s->records.size(), m_db->modelSpaceId());
        for (const std::vector<Pending>* list : {&m_pending, &m_objects})
            for (const Pending& p : *list) {
                AcDbObject* object = openForWrite(p);
                shared(*p.record, p.common, object);
                object->close();
            }
        for (const Pending& p : m_objects)
            objectFields(p);
        currentState();
        return std::move(m_db);
    }

private:
    // The kind of a record type, looked up once per type.
    const AcDbDxfKind* kindNamed(const std::string& type) {
        auto it = m_kinds.find(type);
        if (it == m_kinds.end())
            it = m_kinds.emplace(type, acdbDxfKindNamed(fromUtf8(type).c_str())).first;
        return it->second;
    }
    const std::set<short>& anglesOf(const AcDbDxfKind* kind) {
        auto it = m_angles.find(kind);
        if (it == m_angles.end()) it = m_angles.emplace(kind, angleCodes(kind)).first;
        return it->second;
    }

    [[noreturn]] void fail(std::size_t line, const std::string& what) const {
        throw DxfError(m_source, line, what);
    }

    AcDbObjectId idOf(std::uint64_t handle, const Tag& where) const {
        AcDbObjectId id;
        if (handle != 0 && m_db->getAcDbObjectId(id, false, AcDbHandle(handle)) != Acad::eOk)
            fail(where.line, "group " + std::to_string(where.code) + " refers to handle " +
                                 where.value + ", which no object of the drawing has");
        return id;
    }

    std::uint64_t handleOf(const Tag& t) const {
        try {
            return toHandle(t, "group " + std::to_string(t.code));
        } catch (const std::invalid_argument& e) {
            fail(t.line, e.what());
        }
    }

    Common common(const Record& r) const {
        Common c;
        const Tags& tags = r.tags;
        size_t i = 0;
        if (r.type == "TABLE" && !tags.empty() && tags[0].code == 2) i = 1;
        for (; i < tags.size(); ++i) {
            const Tag& t = tags[i];
            if ((t.code == 5 || t.code == 105) && c.handle == 0) {
                c.handle = handleOf(t);
                if (c.handle == 0) fail(t.line, r.type + " has the null handle");
            } else if (t.code == 102 && !t.value.empty() && t.value[0] == '{') {
                const size_t open = i;
                while (++i < tags.size() && !(tags[i].code == 102 && tags[i].value == "}")) {
                    if (t.value == "{ACAD_REACTORS" && tags[i].code == 330)
                        c.reactors.push_back(&tags[i]);
                    else if (t.value == "{ACAD_XDICTIONARY" && tags[i].code == 360)
                        c.extensionDictionary = &tags[i];
                }
                if (i == tags.size())
                    fail(t.line, "application group " + t.value + " is not closed");
                if (t.value != "{ACAD_REACTORS" && t.value != "{ACAD_XDICTIONARY")
                    for (size_t k = open; k <= i; ++k)
                        c.appGroups.push_back({"", tags[k]});
            } else if (t.code == 330 && c.owner == 0) {
                c.owner = handleOf(t);
            } else {
                break;
            }
        }
        if (c.handle == 0) fail(r.line, r.type + " has no handle");
        c.body = i;
        c.xdata = tags.size();
        for (size_t k = i; k < tags.size(); ++k)
            if (tags[k].code == 1001) {
                c.xdata = k;
                break;
            }
        return c;
    }

    // Reads the tags [from, to) into the object's fields; groups no field takes are kept.
    void fields(AcDbObject& object, const AcDbDxfKind* kind, const Record& r, const Common& c,
                size_t from, size_t to, std::initializer_list<int> dropped = {}) {
        const bool entity = AcDbEntity::cast(&object) != nullptr;
        std::vector<const Tag*>& taken = m_taken; // one buffer for all records
        taken.clear();
        std::vector<ExtraGroup> extras = c.appGroups;
        std::string marker;
        for (size_t i = from; i < to; ++i) {
            const Tag& t = r.tags[i];
            if (t.code == 100) marker = t.value;
            if (std::find(dropped.begin(), dropped.end(), t.code) != dropped.end()) continue;
            if (t.code == 100 || acdbDxfKindTakes(kind, entity, short(t.code))) {
                taken.push_back(&t);
                // A point takes its y and z along.
                for (int k = 1; isPointCode(t.code) && k <= 2 && i + 1 < to &&
                                r.tags[i + 1].code == t.code + 10 * k;
                     ++k)
                    taken.push_back(&r.tags[++i]);
            } else {
                extras.push_back({marker, t});
            }
        }
        const AcDbDxfItems items =
            itemsFromTags(taken, m_db.get(), anglesOf(kind), m_source, r.type);
        short failed = 0;
        const Acad::ErrorStatus es = acdbDxfReadObject(object, items, &failed);
        if (es != Acad::eOk) {
            std::size_t line = r.line;
            for (const Tag* t : taken)
                if (t->code == failed) {
                    line = t->line;
                    break;
                }
            fail(line, r.type + ": the value of group " + std::to_string(failed) + " is refused (" +
                           statusText(es) + ")");
        }
        if (!extras.empty()) m_data->extras[c.handle] = std::move(extras);
    }

    void add(AcDbObject* object, AcDbObjectId owner, const Record& r, const Common& c) {
        const Acad::ErrorStatus es = acdbHostAddObject(m_db.get(), object, owner, c.handle);
        if (es != Acad::eOk) {
            delete object;
            fail(r.line, r.type + ": handle " + formatHandle(c.handle) +
                             (es == Acad::eHandleInUse ? " is used twice" : " cannot be taken"));
        }
    }

    void reserve(std::uint64_t handle, const Record& r) {
        AcDbHandle h(handle);
        if (acdbHostReserveHandle(m_db.get(), h) != Acad::eOk)
            fail(r.line, r.type + ": handle " + formatHandle(handle) + " is used twice");
    }

    // ---- header

    void header() {
        const Section* s = m_doc.section("HEADER");
        if (s == nullptr) fail(0, "the drawing has no HEADER section");
        m_data->header = headerVariables(*s);
        const std::string* version = variable("$ACADVER", 1);
        if (version == nullptr) fail(s->line, "the header has no $ACADVER");
        if (*version < "AC1015" || version->size() != 6)
            fail(s->line, "drawings of version " + *version +
                              " have no handles; only AC1015 (2000) and later are read");
    }

    const std::string* variable(const std::string& name, int code) const {
        for (const HeaderVariable& v : m_data->header)
            if (v.name == name)
                for (const Tag& t : v.values)
                    if (t.code == code) return &t.value;
        return nullptr;
    }

    const Tag* variableTag(const std::string& name, int code) const {
        for (const HeaderVariable& v : m_data->header)
            if (v.name == name)
                for (const Tag& t : v.values)
                    if (t.code == code) return &t;
        return nullptr;
    }

    AcGePoint3d headerPoint(const std::string& name, const AcGePoint3d& fallback) const {
        AcGePoint3d p = fallback;
        double* xyz[] = {&p.x, &p.y, &p.z};
        for (int k = 0; k < 3; ++k)
            if (const Tag* t = variableTag(name, 10 + 10 * k)) try {
                    *xyz[k] = toDouble(*t, name);
                } catch (const std::invalid_argument& e) {
                    fail(t->line, e.what());
                }
        return p;
    }

    void currentState() {
        const AcGePoint3d org = headerPoint("$UCSORG", AcGePoint3d::kOrigin);
        const AcGePoint3d x = headerPoint("$UCSXDIR", {1, 0, 0});
        const AcGePoint3d y = headerPoint("$UCSYDIR", {0, 1, 0});
        if (m_db->setUcs(org, x.asVector(), y.asVector()) != Acad::eOk) {
            const Tag* t = variableTag("$UCSXDIR", 10);
            fail(t ? t->line : 0, "$UCSXDIR and $UCSYDIR are not two perpendicular directions");
        }
        if (const Tag* t = variableTag("$HANDSEED", 5))
            acdbHostRaiseHandseed(m_db.get(), AcDbHandle(handleOf(*t)));
    }

    // ---- tables

    template <class Table>
    AcDbObjectId hostTable(const Record& head, const Common& c) {
        auto* table = new Table;
        add(table, AcDbObjectId::kNull, head, c);
        table->close();
        return table->objectId();
    }

    void tables(const Section& s) {
        const std::vector<Record>& records = s.records;
        for (size_t i = 0; i < records.size(); ++i) {
            const Record& head = records[i];
            if (head.type != "TABLE") fail(head.line, "expected TABLE, found " + head.type);
            const std::string* name = head.find(2);
            if (name == nullptr) fail(head.line, "TABLE without its name (group 2)");
            const Common c = common(head);
            AcDbObjectId tableId;
            if (*name == "LAYER")
                tableId = m_roots.layerTable = hostTable<AcDbLayerTable>(head, c);
            else if (*name == "UCS")
                tableId = m_roots.ucsTable = hostTable<AcDbUCSTable>(head, c);
            else if (*name == "APPID")
                tableId = m_roots.regAppTable = hostTable<AcDbRegAppTable>(head, c);
            else if (*name == "BLOCK_RECORD")
                tableId = m_roots.blockTable = hostTable<AcDbBlockTable>(head, c);
            else
                tableId = kept(head, c, AcDbObjectId::kNull);
            const bool host = !AcDbKeptObject::cast(peek(tableId));
            for (++i; i < records.size() && records[i].type != "ENDTAB"; ++i) {
                const Record& r = records[i];
                if (r.type == "TABLE") fail(r.line, "TABLE " + *name + " has no ENDTAB");
                const Common rc = common(r);
                if (host)
                    tableRecord(tableId, r, rc);
                else
                    kept(r, rc, tableId);
            }
            if (i == records.size()) fail(head.line, "TABLE " + *name + " has no ENDTAB");
        }
    }

    AcDbObject* peek(AcDbObjectId id) const {
        AcDbObject* o = nullptr;
        if (acdbOpenAcDbObject(o, id, AcDb::kForRead) != Acad::eOk) return nullptr;
        o->close();
        return o;
    }

    AcDbObjectId kept(const Record& r, const Common& c, AcDbObjectId owner) {
        AcDbKeptGroups groups;
        if (r.type == "TABLE") groups.emplace_back(short(2), r.tags[0].value);
        for (size_t i = c.body; i < c.xdata; ++i)
            groups.emplace_back(short(r.tags[i].code), r.tags[i].value);
        auto* object = new AcDbKeptObject(r.type, std::move(groups));
        add(object, owner, r, c);
        object->close();
        if (!c.appGroups.empty()) m_data->extras[c.handle] = c.appGroups;
        m_pending.push_back({&r, object->objectId(), c});
        return object->objectId();
    }

    void tableRecord(AcDbObjectId tableId, const Record& r, const Common& c) {
        const AcDbDxfKind* kind = kindNamed(r.type);
        AcDbSymbolTable* table = nullptr;
        acdbOpenObject(table, tableId, AcDb::kForWrite);
        std::unique_ptr<AcDbSymbolTableRecord> owned = make<AcDbSymbolTableRecord>(kind);
        if (owned == nullptr) {
            const std::string tableName = toUtf8(table->isA()->name());
            table->close();
            fail(r.line, "a record of type " + quotedValue(r.type) + " cannot stand in the " +
                             tableName + ": that is no kind of record it holds");
        }
        AcDbSymbolTableRecord* record = owned.get();
        fields(*record, kind, r, c, c.body, c.xdata);
        if (const auto* layer = AcDbLayerTableRecord::cast(record);
            layer && layer->color().isByColor())
            if (const std::string* index = r.find(62))
                m_data->layerIndexes[c.handle] = {layer->color().color() & 0xFFFFFF,
                                                  std::abs(std::atoi(index->c_str()))};
        add(owned.release(), tableId, r, c);
        const Acad::ErrorStatus es = table->add(record);
        const AcDbObjectId id = record->objectId();
        record->close();
        table->close();
        if (es != Acad::eOk)
            fail(r.line, r.type + " \"" + toUtf8(record->name()) + "\" cannot join its table (" +
                             statusText(es) + ")");
        m_pending.push_back({&r, id, c});
    }

    // ---- objects

    void createObjects(const Section& s) {
        for (const Record& r : s.records) {
            Common c = common(r);
            AcDbObject* object = nullptr;
            if (r.type == "DICTIONARY") {
                object = new AcDbDictionary;
            } else if (const AcDbDxfKind* kind = kindNamed(r.type);
                       kind && (r.type == "XRECORD" || r.type == "GROUP")) {
                object = kind->create();
            } else {
                kept(r, c, AcDbObjectId::kNull);
                m_objects.push_back(std::move(m_pending.back()));
                m_pending.pop_back();
                continue;
            }
            add(object, AcDbObjectId::kNull, r, c);
            object->close();
            if (m_roots.namedObjects.isNull() && r.type == "DICTIONARY")
                m_roots.namedObjects = object->objectId();
            m_objects.push_back({&r, object->objectId(), std::move(c)});
        }
    }

    void objectFields(const Pending& p) {
        const Record& r = *p.record;
        AcDbObject* object = openForWrite(p);
        if (p.common.owner != 0) {
            Tag ownerTag{330, formatHandle(p.common.owner), r.line};
            acdbHostSetOwner(object, idOf(p.common.owner, ownerTag));
        }
        if (auto* d = AcDbDictionary::cast(object))
            dictionary(*d, r, p.common);
        else if (auto* x = AcDbXrecord::cast(object))
            xrecord(*x, r, p.common);
        else if (!AcDbKeptObject::cast(object))
            fields(*object, acdbDxfKindOf(object->isA()), r, p.common, p.common.body,
                   p.common.xdata);
        object->close();
    }

    // An X-record's data go in as one chain: item by item through its field would pack the
    // growing chain again for every item.
    void xrecord(AcDbXrecord& x, const Record& r, const Common& c) {
        size_t from = c.body;
        while (from < c.xdata && (r.tags[from].code == 100 || r.tags[from].code == 280))
            ++from;
        if (from == c.xdata) return;
        const AcDbDxfItems items =
            itemsFromTags(r.tags, from, c.xdata, m_db.get(), {}, m_source, r.type);
        resbuf* chain = chainOf(items);
        const Acad::ErrorStatus es = x.setFromRbChain(*chain);
        acutRelRb(chain);
        if (es != Acad::eOk)
            fail(r.tags[from].line, "XRECORD: its data are refused (" + statusText(es) + ")");
    }

    void dictionary(AcDbDictionary& d, const Record& r, const Common& c) {
        std::vector<ExtraGroup> extras = c.appGroups;
        for (size_t i = c.body; i < c.xdata; ++i) {
            const Tag& t = r.tags[i];
            if (t.code == 100) continue;
            if (t.code != 3) {
                extras.push_back({"AcDbDictionary", t});
                continue;
            }
            if (i + 1 >= c.xdata || (r.tags[i + 1].code != 350 && r.tags[i + 1].code != 360))
                fail(t.line, "dictionary entry \"" + t.value + "\" has no object (group 350)");
            const Tag& value = r.tags[++i];
            const AcDbObjectId id = idOf(handleOf(value), value);
            AcDbObject* entry = nullptr;
            if (id.isNull() || acdbOpenAcDbObject(entry, id, AcDb::kForWrite) != Acad::eOk)
                fail(value.line, "dictionary entry \"" + t.value + "\" refers to " + value.value +
                                     ", which is no object");
            // Entities belong to blocks and records to tables, never to a dictionary.
            if (AcDbEntity::cast(entry) || AcDbSymbolTable::cast(entry) ||
                AcDbSymbolTableRecord::cast(entry)) {
                entry->close();
                fail(value.line, "dictionary entry \"" + t.value + "\" refers to " + value.value +
                                     ", which belongs elsewhere");
            }
            AcDbObjectId set;
            const Acad::ErrorStatus es = d.setAt(fromUtf8(t.value).c_str(), entry, set);
            entry->close();
            if (es != Acad::eOk)
                fail(t.line,
                     "dictionary entry \"" + t.value + "\" refused (" + statusText(es) + ")");
        }
        if (!extras.empty()) m_data->extras[c.handle] = std::move(extras);
    }

    // What names the database's parts; what a file lacks of them is made.
    void roots() {
        if (m_roots.blockTable.isNull()) m_roots.blockTable = newObject(new AcDbBlockTable);
        if (m_roots.layerTable.isNull()) m_roots.layerTable = newObject(new AcDbLayerTable);
        if (m_roots.ucsTable.isNull()) m_roots.ucsTable = newObject(new AcDbUCSTable);
        if (m_roots.regAppTable.isNull()) m_roots.regAppTable = newObject(new AcDbRegAppTable);
        if (m_roots.namedObjects.isNull()) m_roots.namedObjects = newObject(new AcDbDictionary);
        m_roots.modelSpace = record<AcDbBlockTableRecord>(m_roots.blockTable, ACDB_MODEL_SPACE);
        m_roots.paperSpace = record<AcDbBlockTableRecord>(m_roots.blockTable, ACDB_PAPER_SPACE);
        m_roots.layerZero = record<AcDbLayerTableRecord>(m_roots.layerTable, ACRX_T("0"));
        m_roots.clayer = m_roots.layerZero;
        if (const std::string* name = variable("$CLAYER", 8)) {
            AcDbLayerTable* layers = nullptr;
            acdbOpenObject(layers, m_roots.layerTable, AcDb::kForRead);
            AcDbObjectId id;
            if (layers->getAt(fromUtf8(*name).c_str(), id) == Acad::eOk) m_roots.clayer = id;
            layers->close();
        }
        m_roots.groupDictionary = groupDictionary();
        const Acad::ErrorStatus es = acdbHostSetRoots(m_db.get(), m_roots);
        if (es != Acad::eOk)
            fail(0, std::string("the tables or the root dictionary are of the wrong kind (") +
                        statusText(es) + ")");
    }

    AcDbObjectId newObject(AcDbObject* object) {
        acdbHostAddObject(m_db.get(), object, AcDbObjectId::kNull, AcDbHandle());
        object->close();
        return object->objectId();
    }

    template <class Record>
    AcDbObjectId record(AcDbObjectId tableId, const ACHAR* name) {
        AcDbSymbolTable* table = nullptr;
        if (acdbOpenObject(table, tableId, AcDb::kForWrite) != Acad::eOk)
            fail(0, "a table of the drawing is of the wrong kind");
        AcDbObjectId id;
        if (table->getAt(name, id) != Acad::eOk) {
            auto* r = new Record;
            r->setName(name);
            table->add(id, r);
            r->close();
        }
        table->close();
        return id;
    }

    // The dictionary the root names ACAD_GROUP, made when the file has none.
    AcDbObjectId groupDictionary() {
        for (const Pending& p : m_objects) {
            if (p.id != m_roots.namedObjects) continue;
            const Tags& tags = p.record->tags;
            for (size_t i = p.common.body; i + 1 < p.common.xdata; ++i)
                if (tags[i].code == 3 && tags[i].value == "ACAD_GROUP") {
                    const AcDbObjectId id = idOf(handleOf(tags[i + 1]), tags[i + 1]);
                    if (!AcDbDictionary::cast(peek(id)))
                        fail(tags[i + 1].line, "ACAD_GROUP is no dictionary");
                    return id;
                }
        }
        AcDbDictionary* root = nullptr;
        if (acdbOpenObject(root, m_roots.namedObjects, AcDb::kForWrite) != Acad::eOk)
            fail(0, "the first object of the drawing is no dictionary");
        auto* groups = new AcDbDictionary;
        AcDbObjectId id;
        root->setAt(ACRX_T("ACAD_GROUP"), groups, id);
        groups->close();
        root->close();
        return id;
    }

    // ---- blocks and entities

    void blocks(const Section& s) {
        const std::vector<Record>& records = s.records;
        for (size_t i = 0; i < records.size(); ++i) {
            const Record& begin = records[i];
            if (begin.type != "BLOCK") fail(begin.line, "expected BLOCK, found " + begin.type);
            const Common c = common(begin);
            const std::string* name = begin.find(2);
            if (name == nullptr) fail(begin.line, "BLOCK without its name (group 2)");
            AcDbBlockTable* table = nullptr;
            acdbOpenObject(table, m_roots.blockTable, AcDb::kForRead);
            AcDbObjectId blockId;
            table->getAt(fromUtf8(*name).c_str(), blockId);
            table->close();
            if (blockId.isNull())
                fail(begin.line, "BLOCK \"" + *name + "\" has no record in BLOCK_RECORD");
            reserve(c.handle, begin);
            size_t end = i + 1;
            while (end < records.size() && records[end].type != "ENDBLK") {
                if (records[end].type == "BLOCK")
                    fail(records[end].line, "BLOCK \"" + *name + "\" has no ENDBLK");
                ++end;
            }
            if (end == records.size()) fail(begin.line, "BLOCK \"" + *name + "\" has no ENDBLK");
            const Common endCommon = common(records[end]);
            reserve(endCommon.handle, records[end]);
            m_data->blockEnds[Adesk::UInt64(blockId.handle())] = {c.handle, endCommon.handle};
            AcDbBlockTableRecord* block = nullptr;
            acdbOpenObject(block, blockId, AcDb::kForWrite);
            for (size_t k = c.body; k < begin.tags.size(); ++k)
                if (begin.tags[k].code == 10) {
                    const AcDbDxfItems origin =
                        itemsFromTags(begin.tags, k, std::min(k + 3, begin.tags.size()), m_db.get(),
                                      {}, m_source, begin.type);
                    block->setOrigin(origin.front().point);
                    break;
                }
            block->close();
            entities(records, i + 1, end, blockId);
            i = end;
        }
    }

    AcDbObjectId blockOf(const Record& r, const Common& c, AcDbObjectId fallback) {
        if (c.owner == 0) return fallback;
        // Entities come in runs of one owner.
        if (c.owner == m_lastOwner) return m_lastBlock;
        const Tag where{330, formatHandle(c.owner), r.line};
        const AcDbObjectId id = idOf(c.owner, where);
        if (!AcDbBlockTableRecord::cast(peek(id)))
            fail(r.line, r.type + ": its owner " + formatHandle(c.owner) + " is no block");
        m_lastOwner = c.owner;
        m_lastBlock = id;
        return id;
    }

    void entities(const std::vector<Record>& records, size_t first, size_t last,
                  AcDbObjectId fallback) {
        for (size_t i = first; i < last; ++i) {
            const Record& r = records[i];
            if (r.type == "VERTEX" || r.type == "SEQEND")
                fail(r.line, r.type + " without a POLYLINE before it");
            const Common c = common(r);
            const AcDbObjectId blockId = blockOf(r, c, fallback);
            AcDbEntity* e = entity(r, c);
            AcDbBlockTableRecord* block = nullptr;
            acdbOpenObject(block, blockId, AcDb::kForWrite);
            const Acad::ErrorStatus es = acdbHostAppendEntity(block, e, c.handle);
            block->close();
            if (es != Acad::eOk) {
                delete e;
                fail(r.line,
                     r.type + ": handle " + formatHandle(c.handle) +
                         (es == Acad::eHandleInUse ? " is used twice" : " cannot be taken"));
            }
            // Entities on locked layers open for write only now, as they are made.
            shared(r, c, e);
            if (r.type == "POLYLINE")
                i = vertices(records, i + 1, last, e);
            else if (const std::string* follow = r.find(66); follow && *follow == "1")
                i = followers(records, i + 1, last, c.handle);
            e->close();
        }
    }

    // A new entity with its fields: of the host's class, or kept as read.
    AcDbEntity* entity(const Record& r, const Common& c) {
        const AcDbDxfKind* kind = nullptr;
        if (r.type == "POLYLINE")
            kind = acdbDxfKindOf(polylineClass(r));
        else
            kind = kindNamed(r.type);
        if (r.type == "ACDBKEPTENTITY") kind = nullptr;
        if (isSolidModel(r.type)) {
            if (AcDbEntity* e = solidModel(r, c, kind)) return e;
        } else if (std::unique_ptr<AcDbEntity> e = make<AcDbEntity>(kind)) {
            fields(*e, kind, r, c, c.body, c.xdata, {66, 67});
            if (const auto* ref = AcDbBlockReference::cast(e.get());
                ref && ref->blockTableRecord().isNull())
                fail(r.line, r.type + " names no block (group 2)");
            return e.release();
        }
        // A BODY, or a solid whose model text lies elsewhere, keeps its groups as read (the
        // model text in groups 1 and 3, see acis_text.h).
        size_t own = c.body;
        while (own < c.xdata && !(r.tags[own].code == 100 && r.tags[own].value != "AcDbEntity"))
            ++own;
        AcDbKeptGroups groups;
        for (size_t i = own; i < c.xdata; ++i)
            groups.emplace_back(short(r.tags[i].code), r.tags[i].value);
        auto e = std::make_unique<AcDbKeptEntity>(r.type, std::move(groups));
        fields(*e, acdbDxfKindOf(AcDbKeptEntity::desc()), r, c, c.body, own, {67});
        return e.release();
    }

    // A solid or region whose model text the SAT codec reads. Null, for the record to be kept
    // as read, when the host has no such class (BODY) or the text is not in the record (files
    // of later releases keep it elsewhere).
    AcDbEntity* solidModel(const Record& r, const Common& c, const AcDbDxfKind* kind) {
        const std::string sat = satFromTags(Tags(r.tags.begin() + std::ptrdiff_t(c.body),
                                                 r.tags.begin() + std::ptrdiff_t(c.xdata)));
        if (sat.empty()) return nullptr;
        std::unique_ptr<AcDbEntity> e = make<AcDbEntity>(kind);
        if (!e) return nullptr;
        fields(*e, kind, r, c, c.body, c.xdata, {1, 3, 66, 67});
        std::string message;
        if (acis::entityFromSat(sat, e.get(), message, acis::BuildTime::kOnFirstUse) != Acad::eOk)
            fail(r.line, r.type + ": its solid model is refused: " + message);
        return e.release();
    }

    static AcRxClass* polylineClass(const Record& r) {
        long long flags = 0;
        if (const std::string* f = r.find(70)) try {
                flags = std::stoll(*f);
            } catch (const std::exception&) {
            }
        if (flags & 64) return AcDbPolyFaceMesh::desc();
        if (flags & 16) return AcDbPolygonMesh::desc();
        if (flags & 8) return AcDb3dPolyline::desc();
        return AcDb2dPolyline::desc();
    }

    static AcRxClass* vertexClass(const AcDbEntity* owner, const Record& v) {
        if (AcDb3dPolyline::cast(owner)) return AcDb3dPolylineVertex::desc();
        if (AcDbPolygonMesh::cast(owner)) return AcDbPolygonMeshVertex::desc();
        if (AcDbPolyFaceMesh::cast(owner)) {
            const std::string* f = v.find(70);
            const bool face = f && (std::atoi(f->c_str()) & 192) == 128;
            return face ? AcDbFaceRecord::desc() : AcDbPolyFaceMeshVertex::desc();
        }
        return AcDb2dVertex::desc();
    }

    static Acad::ErrorStatus appendVertex(AcDbEntity* owner, AcDbVertex* v) {
        if (auto* p = AcDb2dPolyline::cast(owner))
            return p->appendVertex(static_cast<AcDb2dVertex*>(v));
        if (auto* p = AcDb3dPolyline::cast(owner))
            return p->appendVertex(static_cast<AcDb3dPolylineVertex*>(v));
        if (auto* p = AcDbPolygonMesh::cast(owner))
            return p->appendVertex(static_cast<AcDbPolygonMeshVertex*>(v));
        auto* mesh = AcDbPolyFaceMesh::cast(owner);
        if (auto* face = AcDbFaceRecord::cast(v)) return mesh->appendFaceRecord(face);
        return mesh->appendVertex(static_cast<AcDbPolyFaceMeshVertex*>(v));
    }

    // The vertices after a polyline, up to its SEQEND; the index of the SEQEND.
    size_t vertices(const std::vector<Record>& records, size_t i, size_t last, AcDbEntity* owner) {
        const Record& polyline = records[i - 1];
        for (; i < last && records[i].type == "VERTEX"; ++i) {
            const Record& r = records[i];
            const Common c = common(r);
            const AcDbDxfKind* kind = acdbDxfKindOf(vertexClass(owner, r));
            std::unique_ptr<AcDbVertex> v = make<AcDbVertex>(kind);
            fields(*v, kind, r, c, c.body, c.xdata, {67});
            AcDbVertex* vertex = v.release();
            add(vertex, owner->objectId(), r, c); // deletes the vertex when refused
            const Acad::ErrorStatus es = appendVertex(owner, vertex);
            vertex->close();
            if (es != Acad::eOk)
                fail(r.line,
                     std::string("VERTEX refused by its POLYLINE (") + statusText(es) + ")");
            m_pending.push_back({&r, vertex->objectId(), c});
        }
        if (i >= last || records[i].type != "SEQEND")
            fail(polyline.line, "POLYLINE has no SEQEND after its vertices");
        const Common end = common(records[i]);
        reserve(end.handle, records[i]);
        m_data->sequenceEnds[Adesk::UInt64(owner->handle())] = end.handle;
        return i;
    }

    // The attributes after a block reference, up to their SEQEND, kept as read; the index of
    // the SEQEND.
    size_t followers(const std::vector<Record>& records, size_t i, size_t last,
                     std::uint64_t owner) {
        const Record& reference = records[i - 1];
        std::vector<Record>& kept = m_data->followers[owner];
        for (; i < last; ++i) {
            const Record& r = records[i];
            if (r.type != "ATTRIB" && r.type != "SEQEND")
                fail(r.line, r.type + " among the attributes of " + reference.type);
            reserve(common(r).handle, r);
            kept.push_back(r);
            if (r.type == "SEQEND") return i;
        }
        fail(reference.line, reference.type + " has no SEQEND after its attributes");
    }

    // ---- what every record may carry

    // Opens for write an object this reader made.
    AcDbObject* openForWrite(const Pending& p) const {
        AcDbObject* object = nullptr;
        if (const Acad::ErrorStatus es = acdbOpenAcDbObject(object, p.id, AcDb::kForWrite);
            es != Acad::eOk)
            fail(p.record->line, p.record->type + " cannot be opened (" + statusText(es) + ")");
        return object;
    }

    // Reactors, extension dictionary and extended data, on the object open for write.
    void shared(const Record& r, const Common& c, AcDbObject* object) {
        // A group puts itself among its members' reactors when it reads its members.
        for (const Tag* t : c.reactors)
            if (AcDbObjectId id = idOf(handleOf(*t), *t);
                !id.isNull() && !AcDbGroup::cast(peek(id)))
                object->addPersistentReactor(id);
        if (const Tag* t = c.extensionDictionary) {
            const AcDbObjectId id = idOf(handleOf(*t), *t);
            if (acdbHostSetExtensionDictionary(object, id) != Acad::eOk) {
                fail(t->line,
                     r.type + ": its extension dictionary " + t->value + " is no dictionary");
            }
        }
        if (c.xdata < r.tags.size()) {
            const AcDbDxfItems items =
                itemsFromTags(r.tags, c.xdata, r.tags.size(), m_db.get(), {}, m_source, r.type);
            resbuf* chain = chainOf(items);
            const Acad::ErrorStatus es = object->setXData(chain);
            acutRelRb(chain);
            if (es != Acad::eOk) {
                fail(r.tags[c.xdata].line, r.type + ": extended data refused (" + statusText(es) +
                                               "); is every application in the APPID table?");
            }
        }
    }

    const RawDocument& m_doc;
    std::string m_source;
    std::unique_ptr<AcDbDatabase> m_db;
    std::shared_ptr<FileData> m_data;
    AcDbHostRoots m_roots;
    std::vector<Pending> m_pending;
    std::vector<Pending> m_objects;
    std::map<std::string, const AcDbDxfKind*> m_kinds;
    std::vector<const Tag*> m_taken;
    std::uint64_t m_lastOwner = 0;
    AcDbObjectId m_lastBlock;
    std::map<const AcDbDxfKind*, std::set<short>> m_angles;
};

} // namespace

std::unique_ptr<AcDbDatabase> readDrawing(const std::string& text, const std::string& source) {
    const RawDocument doc = readRaw(text, source);
    return DrawingReader(doc, source).read();
}

} // namespace dxf
