#include "object_tags.h"

#include <acis/sat.h>
#include <arx/adsdef.h>
#include <arx/dbkept.h>
#include <arx/dbpl.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>
#include <arx/dxfkind.h>

#include <iterator>
#include <stdexcept>
#include <unordered_map>

#include "acis_text.h"
#include "item_tags.h"
#include "utf8.h"

namespace dxf {

namespace {

std::uint64_t handleOf(const AcDbObject& o) {
    return Adesk::UInt64(o.handle());
}

const std::vector<ExtraGroup>* extrasOf(const AcDbObject& o, const FileData& data) {
    auto it = data.extras.find(handleOf(o));
    return it == data.extras.end() ? nullptr : &it->second;
}

void appendExtras(Tags& out, const std::vector<ExtraGroup>* extras, const std::string& marker) {
    if (extras == nullptr) return;
    for (const ExtraGroup& g : *extras)
        if (g.marker == marker) out.push_back(g.tag);
}

} // namespace

std::string recordType(const AcDbObject& object) {
    if (const auto* kept = AcDbKeptEntity::cast(&object)) return kept->dxfName();
    if (const auto* kept = AcDbKeptObject::cast(&object)) return kept->dxfName();
    if (AcDbDictionary::cast(&object)) return "DICTIONARY";
    // The name of each class once: every record of a drawing asks.
    static thread_local std::unordered_map<const AcRxClass*, std::string> names;
    auto it = names.find(object.isA());
    if (it == names.end()) {
        const AcDbDxfKind* kind = acdbDxfKindOf(object.isA());
        it = names.emplace(object.isA(), kind ? toUtf8(kind->dxfName) : "").first;
    }
    return it->second;
}

void appendHead(Tags& out, const std::string& type, const AcDbObject& object, AcDbObjectId owner,
                const FileData& data) {
    out.push_back({0, type});
    out.push_back({type == "DIMSTYLE" ? 105 : 5, formatHandle(handleOf(object))});
    const AcDbVoidPtrArray* reactors = object.reactors();
    bool open = false;
    for (void* r : *reactors) {
        if (!acdbIsPersistentReactor(r)) continue;
        if (!open) out.push_back({102, "{ACAD_REACTORS"});
        open = true;
        out.push_back({330, handleText(acdbPersistentReactorObjectId(r))});
    }
    if (open) out.push_back({102, "}"});
    if (!object.extensionDictionary().isNull()) {
        out.push_back({102, "{ACAD_XDICTIONARY"});
        out.push_back({360, handleText(object.extensionDictionary())});
        out.push_back({102, "}"});
    }
    appendExtras(out, extrasOf(object, data), "");
    out.push_back({330, handleText(owner)});
}

// Groups 1 and 3 of a solid's or region's body in SAT text, already formatted; none for other
// objects. A body the codec cannot write stops the save, which then leaves the old file as it
// was.
Tags modelTags(const AcDbObject& object) {
    if (!AcDb3dSolid::cast(&object) && !AcDbRegion::cast(&object)) return {};
    std::string sat, message;
    if (acis::satFromEntity(AcDbEntity::cast(&object), sat, message) != Acad::eOk)
        throw std::runtime_error("entity " + formatHandle(Adesk::UInt64(object.handle())) + " (" +
                                 toUtf8(object.isA()->name()) +
                                 "): its solid model cannot be written: " + message);
    Tags model(1); // not from a list, which would copy the text
    model[0] = {kFormattedGroups, formattedSatGroups(sat)};
    return model;
}

void appendBody(Tags& out, const AcDbObject& object, const FileData& data) {
    const std::vector<ExtraGroup>* extras = extrasOf(object, data);
    AcDbDxfItems items;
    acdbDxfWriteObject(object, items);
    // Groups between markers go out as they come; extras of a subclass follow its groups.
    std::string marker;
    const bool flat = AcDbPolyline::cast(&object) != nullptr;
    Tags body;
    body.reserve(3 * items.size()); // a point is three groups
    appendTags(body, items, flat);
    // The model text of a solid or region closes the modeller's part.
    Tags model = modelTags(object);
    const auto endPart = [&] {
        // One modeller part a record: its text moves in rather than being copied.
        if (marker == "AcDbModelerGeometry")
            out.insert(out.end(), std::make_move_iterator(model.begin()),
                       std::make_move_iterator(model.end()));
        appendExtras(out, extras, marker);
    };
    for (Tag& t : body) {
        if (t.code == 100) {
            endPart();
            marker = t.value;
        }
        out.push_back(std::move(t));
    }
    endPart();
    if (const auto* kept = AcDbKeptEntity::cast(&object))
        for (const auto& [code, value] : kept->groups())
            out.push_back({code, value});
    if (const auto* kept = AcDbKeptObject::cast(&object))
        for (const auto& [code, value] : kept->groups())
            out.push_back({code, value});
}

void appendXData(Tags& out, const AcDbObject& object) {
    resbuf* chain = object.xData();
    AcDbDxfItems items;
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext)
        items.push_back(acdbDxfFromResbuf(*rb));
    acutRelRb(chain);
    appendTags(out, items);
}

} // namespace dxf
