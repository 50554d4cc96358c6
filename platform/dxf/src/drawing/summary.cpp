#include <arx/acdb.h>
#include <arx/dbkept.h>
#include <arx/dxfkind.h>
#include <dxf/summary.h>
#include <dxf/tags.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <sstream>

#include "utf8.h"

namespace dxf {

namespace {

std::string handleOf(AcDbObjectId id) {
    return formatHandle(Adesk::UInt64(id.handle()));
}

std::string kindOf(const AcDbEntity& e) {
    if (const auto* kept = AcDbKeptEntity::cast(&e)) return kept->dxfName();
    const AcDbDxfKind* kind = acdbDxfKindOf(e.isA());
    return kind ? toUtf8(kind->dxfName) : toUtf8(e.isA()->name());
}

template <class Table, class F>
void eachRecord(AcDbObjectId tableId, F f) {
    Table* table = nullptr;
    if (acdbOpenObject(table, tableId, AcDb::kForRead) != Acad::eOk) return;
    AcDbSymbolTableIterator* raw = nullptr;
    table->newIterator(raw);
    std::unique_ptr<AcDbSymbolTableIterator> it(raw);
    table->close();
    for (; !it->done(); it->step()) {
        AcDbSymbolTableRecord* record = nullptr;
        if (it->getRecord(record, AcDb::kForRead) != Acad::eOk) continue;
        f(*record);
        record->close();
    }
}

// The module's keys in the entity's extension dictionary, and its application's strings.
DrawingSummary::Tagged tagsOf(const AcDbEntity& e, const std::string& kind,
                              const std::string& layer) {
    DrawingSummary::Tagged t{handleOf(e.objectId()), kind, layer, {}, {}};
    if (AcDbDictionary* dict = nullptr;
        !e.extensionDictionary().isNull() &&
        acdbOpenObject(dict, e.extensionDictionary(), AcDb::kForRead) == Acad::eOk) {
        for (const char* key : kModuleRecordKeys)
            if (dict->has(fromUtf8(key).c_str())) t.records.push_back(key);
        dict->close();
    }
    resbuf* data = e.xData(fromUtf8(kModuleApplication).c_str());
    for (const resbuf* rb = data; rb != nullptr; rb = rb->rbnext)
        if (rb->restype == 1000) t.xdata.push_back(toUtf8(rb->resval.rstring));
    acutRelRb(data);
    return t;
}

void entities(AcDbObjectId spaceId, DrawingSummary& s) {
    AcDbBlockTableRecord* space = nullptr;
    if (acdbOpenObject(space, spaceId, AcDb::kForRead) != Acad::eOk) return;
    AcDbBlockTableRecordIterator* raw = nullptr;
    space->newIterator(raw);
    std::unique_ptr<AcDbBlockTableRecordIterator> it(raw);
    space->close();
    for (; !it->done(); it->step()) {
        AcDbEntity* e = nullptr;
        if (it->getEntity(e, AcDb::kForRead) != Acad::eOk) continue;
        const std::string kind = kindOf(*e);
        ACHAR* layerName = e->layer();
        const std::string layer = layerName ? toUtf8(layerName) : "";
        acutDelString(layerName);
        ++s.entities[kind][layer];
        DrawingSummary::Tagged t = tagsOf(*e, kind, layer);
        if (!t.records.empty() || !t.xdata.empty()) s.tagged.push_back(std::move(t));
        e->close();
    }
}

std::string point(const AcGePoint3d& p) {
    std::ostringstream out;
    out << p.x << "," << p.y << "," << p.z;
    return out.str();
}
std::string point(const AcGeVector3d& v) {
    return point(AcGePoint3d::kOrigin + v);
}

nlohmann::json json(const AcGePoint3d& p) {
    return {p.x, p.y, p.z};
}
nlohmann::json json(const AcGeVector3d& v) {
    return {v.x, v.y, v.z};
}

} // namespace

DrawingSummary summarize(AcDbDatabase& db) {
    DrawingSummary s;
    entities(db.modelSpaceId(), s);
    entities(db.paperSpaceId(), s);
    eachRecord<AcDbLayerTable>(db.layerTableId(), [&](AcDbSymbolTableRecord& r) {
        auto& l = static_cast<AcDbLayerTableRecord&>(r);
        DrawingSummary::Layer layer;
        layer.name = toUtf8(l.name());
        layer.color = l.color().colorIndex();
        if (l.color().isByColor()) layer.trueColor = l.color().color() & 0xFFFFFF;
        layer.on = !l.isOff();
        layer.frozen = l.isFrozen();
        layer.locked = l.isLocked();
        layer.current = l.objectId() == db.clayer();
        s.layers.push_back(layer);
    });
    eachRecord<AcDbUCSTable>(db.UCSTableId(), [&](AcDbSymbolTableRecord& r) {
        auto& u = static_cast<AcDbUCSTableRecord&>(r);
        s.ucss.push_back({toUtf8(u.name()), u.origin(), u.xAxis(), u.yAxis()});
    });
    s.current = {"", db.ucsorg(), db.ucsxdir(), db.ucsydir()};
    AcDbDictionary* groups = nullptr;
    if (db.getGroupDictionary(groups) == Acad::eOk) {
        std::unique_ptr<AcDbDictionaryIterator> it(groups->newIterator());
        groups->close();
        for (; !it->done(); it->next()) {
            AcDbObject* object = nullptr;
            if (it->getObject(object) != Acad::eOk) continue;
            if (const auto* g = AcDbGroup::cast(object)) {
                DrawingSummary::Group group{toUtf8(it->name()),
                                            toUtf8(g->description()),
                                            g->isAnonymous(),
                                            g->isSelectable(),
                                            {}};
                AcDbObjectIdArray ids;
                g->allEntityIds(ids);
                for (const AcDbObjectId& id : ids)
                    group.members.push_back(handleOf(id));
                s.groups.push_back(std::move(group));
            }
            object->close();
        }
    }
    return s;
}

std::string summaryText(const DrawingSummary& s) {
    std::ostringstream out;
    int total = 0;
    for (const auto& [kind, layers] : s.entities)
        for (const auto& [layer, n] : layers)
            total += n;
    out << "Entities: " << total << "\n";
    for (const auto& [kind, layers] : s.entities)
        for (const auto& [layer, n] : layers)
            out << "  " << kind << " on " << layer << ": " << n << "\n";
    out << "Layers: " << s.layers.size() << "\n";
    for (const DrawingSummary::Layer& l : s.layers) {
        out << "  " << l.name << ": colour " << l.color;
        if (l.trueColor) {
            char rgb[16];
            std::snprintf(rgb, sizeof rgb, " (#%06X)", *l.trueColor);
            out << rgb;
        }
        out << (l.on ? ", on" : ", off") << (l.frozen ? ", frozen" : ", thawed")
            << (l.locked ? ", locked" : ", unlocked") << (l.current ? ", current" : "") << "\n";
    }
    out << "Groups: " << s.groups.size() << "\n";
    for (const DrawingSummary::Group& g : s.groups) {
        out << "  " << g.name << (g.anonymous ? " (anonymous" : " (named")
            << (g.selectable ? ", selectable)" : ", not selectable)");
        if (!g.description.empty()) out << " \"" << g.description << "\"";
        out << ": " << g.members.size() << " member" << (g.members.size() == 1 ? "" : "s");
        for (const std::string& h : g.members)
            out << " " << h;
        out << "\n";
    }
    out << "UCS: current origin " << point(s.current.origin) << ", X " << point(s.current.xAxis)
        << ", Y " << point(s.current.yAxis) << "\n";
    for (const DrawingSummary::Ucs& u : s.ucss)
        out << "  " << u.name << ": origin " << point(u.origin) << ", X " << point(u.xAxis)
            << ", Y " << point(u.yAxis) << "\n";
    out << "Entities with the module's records or extended data: " << s.tagged.size() << "\n";
    for (const DrawingSummary::Tagged& t : s.tagged) {
        out << "  " << t.handle << " " << t.kind << " on " << t.layer << ":";
        for (const std::string& r : t.records)
            out << " " << r;
        for (const std::string& x : t.xdata)
            out << " " << kModuleApplication << " \"" << x << "\"";
        out << "\n";
    }
    return out.str();
}

std::string summaryJson(const DrawingSummary& s) {
    nlohmann::ordered_json j;
    j["entities"] = s.entities;
    for (const DrawingSummary::Layer& l : s.layers)
        j["layers"][l.name] = {
            {"color", l.color},
            {"true_color", l.trueColor ? nlohmann::json(*l.trueColor) : nlohmann::json(nullptr)},
            {"on", l.on},
            {"frozen", l.frozen},
            {"locked", l.locked},
            {"current", l.current}};
    j["groups"] = nlohmann::json::object();
    for (const DrawingSummary::Group& g : s.groups)
        j["groups"][g.name] = {{"anonymous", g.anonymous},
                               {"selectable", g.selectable},
                               {"description", g.description},
                               {"members", g.members}};
    j["ucs"]["current"] = {{"origin", json(s.current.origin)},
                           {"xaxis", json(s.current.xAxis)},
                           {"yaxis", json(s.current.yAxis)}};
    j["ucs"]["table"] = nlohmann::json::object();
    for (const DrawingSummary::Ucs& u : s.ucss)
        j["ucs"]["table"][u.name] = {
            {"origin", json(u.origin)}, {"xaxis", json(u.xAxis)}, {"yaxis", json(u.yAxis)}};
    j["tagged"] = nlohmann::json::array();
    for (const DrawingSummary::Tagged& t : s.tagged)
        j["tagged"].push_back({{"handle", t.handle},
                               {"kind", t.kind},
                               {"layer", t.layer},
                               {"records", t.records},
                               {"xdata", t.xdata}});
    return j.dump(1) + "\n";
}

} // namespace dxf
