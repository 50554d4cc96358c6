#include "arx/dxfkind.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

#include "../db/objectimpl.h"
#include "../db/text.h"
#include "fieldtable.h"

namespace {

struct Registry {
    std::mutex guard;
    std::vector<const AcDbDxfKind*> kinds;
    // Every object written or read looks its kind up by class.
    std::unordered_map<const AcRxClass*, const AcDbDxfKind*> byClass;
};

Registry& registry() {
    static Registry r;
    return r;
}

// The part every entity shares.
void writeLayer(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const auto* layer = AcDbLayerTableRecord::cast(
        AcDbImpl::peek(AcDbImpl::layer(static_cast<const AcDbEntity*>(&o))));
    out.push_back(AcDbDxfItem::ofText(f.code, layer ? layer->name() : L"0"));
}
bool readLayer(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbEntity&>(o).setLayer(item.text.c_str()) == Acad::eOk;
}
void writeColorIndex(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const AcCmEntityColor c = static_cast<const AcDbEntity&>(o).entityColor();
    if (!c.isByLayer()) out.push_back(AcDbDxfItem::ofInt(f.code, c.colorIndex()));
}
bool readColorIndex(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    auto& e = static_cast<AcDbEntity&>(o);
    // A true colour read earlier wins over its nearest index.
    if (e.entityColor().isByColor()) return true;
    return e.setColorIndex(Adesk::UInt16(item.integer)) == Acad::eOk;
}
void writeTrueColor(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const AcCmEntityColor c = static_cast<const AcDbEntity&>(o).entityColor();
    if (c.isByColor()) out.push_back(AcDbDxfItem::ofInt(f.code, c.color() & 0xFFFFFF));
}
bool readTrueColor(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    AcCmColor c;
    c.setRGB(Adesk::UInt8(item.integer >> 16), Adesk::UInt8(item.integer >> 8),
             Adesk::UInt8(item.integer));
    return static_cast<AcDbEntity&>(o).setColor(c) == Acad::eOk;
}
void writeVisibility(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    if (static_cast<const AcDbEntity&>(o).visibility() == AcDb::kInvisible)
        out.push_back(AcDbDxfItem::ofInt(f.code, 1));
}
bool readVisibility(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbEntity&>(o).setVisibility(item.integer ? AcDb::kInvisible
                                                                  : AcDb::kVisible) == Acad::eOk;
}

const AcDbDxfField kEntityFields[] = {
    dxf::marker(ACRX_T("AcDbEntity")),
    dxf::custom(8, writeLayer, readLayer),
    dxf::custom(62, writeColorIndex, readColorIndex),
    dxf::custom(420, writeTrueColor, readTrueColor),
    dxf::custom(60, writeVisibility, readVisibility),
};

bool takes(const AcDbDxfField& f, short code) {
    if (f.marker != nullptr || f.read == nullptr) return false;
    if (f.code == code) return true;
    return std::find(std::begin(f.moreCodes), std::end(f.moreCodes), code) !=
               std::end(f.moreCodes) &&
           code != 0;
}

} // namespace

AcDbDxfItem AcDbDxfItem::ofReal(short code, double value, bool angle) {
    AcDbDxfItem item;
    item.code = code;
    item.point.x = value;
    item.angle = angle;
    return item;
}
AcDbDxfItem AcDbDxfItem::ofPoint(short code, const AcGePoint3d& value) {
    AcDbDxfItem item;
    item.code = code;
    item.point = value;
    return item;
}
AcDbDxfItem AcDbDxfItem::ofInt(short code, Adesk::Int64 value) {
    AcDbDxfItem item;
    item.code = code;
    item.integer = value;
    return item;
}
AcDbDxfItem AcDbDxfItem::ofText(short code, std::wstring value) {
    AcDbDxfItem item;
    item.code = code;
    item.text = std::move(value);
    return item;
}
AcDbDxfItem AcDbDxfItem::ofId(short code, AcDbObjectId value) {
    AcDbDxfItem item;
    item.code = code;
    item.id = value;
    return item;
}

const AcDbDxfKind* acdbDxfKindOf(const AcRxClass* cls) {
    Registry& r = registry();
    std::lock_guard lock(r.guard);
    const auto it = r.byClass.find(cls);
    return it == r.byClass.end() ? nullptr : it->second;
}

const AcDbDxfKind* acdbDxfKindNamed(const ACHAR* dxfName) {
    Registry& r = registry();
    std::lock_guard lock(r.guard);
    for (const AcDbDxfKind* k : r.kinds)
        if (dxfName && acdbEqualNoCase(k->dxfName, dxfName)) return k;
    return nullptr;
}

std::vector<const AcDbDxfKind*> acdbDxfKinds() {
    Registry& r = registry();
    std::lock_guard lock(r.guard);
    return r.kinds;
}

bool acdbDxfAddKind(const AcDbDxfKind* kind) {
    Registry& r = registry();
    std::lock_guard lock(r.guard);
    for (const AcDbDxfKind* k : r.kinds)
        if (k->rxClass == kind->rxClass) return false;
    r.kinds.push_back(kind);
    r.byClass.emplace(kind->rxClass(), kind);
    return true;
}

bool acdbDxfKindTakes(const AcDbDxfKind* kind, bool entity, short code) {
    if (entity && std::any_of(std::begin(kEntityFields), std::end(kEntityFields),
                              [code](const AcDbDxfField& f) { return takes(f, code); }))
        return true;
    if (kind == nullptr) return false;
    return std::any_of(kind->fields.begin(), kind->fields.end(), [code](const AcDbDxfField& f) {
        return takes(f, code) || (f.flags & AcDbDxfField::kRest);
    });
}

Acad::ErrorStatus acdbDxfWriteObject(const AcDbObject& object, AcDbDxfItems& out) {
    if (AcDbEntity::cast(&object))
        for (const AcDbDxfField& f : kEntityFields)
            f.write(f, object, out);
    const AcDbDxfKind* kind = acdbDxfKindOf(object.isA());
    if (kind == nullptr) return Acad::eNotImplementedYet;
    for (const AcDbDxfField& f : kind->fields)
        f.write(f, object, out);
    return Acad::eOk;
}

Acad::ErrorStatus acdbDxfReadObject(AcDbObject& object, const AcDbDxfItems& in, short* failedCode) {
    const AcDbDxfKind* kind = acdbDxfKindOf(object.isA());
    if (kind == nullptr) return Acad::eNotImplementedYet;
    std::vector<const AcDbDxfField*> fields;
    if (AcDbEntity::cast(&object))
        for (const AcDbDxfField& f : kEntityFields)
            fields.push_back(&f);
    const AcDbDxfField* rest = nullptr;
    for (const AcDbDxfField& f : kind->fields) {
        fields.push_back(&f);
        if (f.flags & AcDbDxfField::kRest) rest = &f;
    }
    size_t section = 0;
    std::vector<std::pair<const AcDbDxfField*, const AcDbDxfItem*>> deferred;
    for (const AcDbDxfItem& item : in) {
        if (item.code == 100) {
            for (size_t i = 0; i < fields.size(); ++i)
                if (fields[i]->marker && item.text == fields[i]->marker) section = i;
            continue;
        }
        // The field of the current subclass first: codes repeat across subclasses.
        const AcDbDxfField* field = nullptr;
        for (size_t i = section; i < fields.size() && !field; ++i)
            if (takes(*fields[i], item.code)) field = fields[i];
        for (size_t i = 0; i < section && !field; ++i)
            if (takes(*fields[i], item.code)) field = fields[i];
        if (field == nullptr) field = rest;
        if (field != nullptr && (field->flags & AcDbDxfField::kOcs)) {
            deferred.emplace_back(field, &item);
            continue;
        }
        Acad::ErrorStatus es = Acad::eOk;
        if (field == nullptr)
            es = Acad::eInvalidDxfCode;
        else if (!field->read(*field, object, item))
            es = Acad::eInvalidInput;
        if (es != Acad::eOk) {
            if (failedCode) *failedCode = item.code;
            return es;
        }
    }
    for (auto [field, item] : deferred)
        if (!field->read(*field, object, *item)) {
            if (failedCode) *failedCode = item->code;
            return Acad::eInvalidInput;
        }
    return Acad::eOk;
}
