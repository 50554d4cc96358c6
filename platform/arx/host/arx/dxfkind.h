// One declaration per kind of object: its DXF name, class, and the table of its fields. The
// entity-name interface (acdbEntGet) and the drawing reader and writer all go through these
// tables. Host side only: the module never includes this header.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "arx/dbmain.h"

// One group of a DXF listing. Points and vectors use point, reals point.x, integers integer,
// strings text, references to other objects id.
struct AcDbDxfItem {
    short code = 0;
    AcGePoint3d point;
    Adesk::Int64 integer = 0;
    std::wstring text;
    AcDbObjectId id;
    // Angles are radians here; a drawing file writes them in degrees.
    bool angle = false;

    double real() const { return point.x; }
    static AcDbDxfItem ofReal(short code, double value, bool angle = false);
    static AcDbDxfItem ofPoint(short code, const AcGePoint3d& value);
    static AcDbDxfItem ofInt(short code, Adesk::Int64 value);
    static AcDbDxfItem ofText(short code, std::wstring value);
    static AcDbDxfItem ofId(short code, AcDbObjectId value);
};
using AcDbDxfItems = std::vector<AcDbDxfItem>;

struct AcDbDxfField {
    // kOcs: a point in the plane system of the object's normal, read once the normal is known.
    // kRest: takes every group that no other field of the kind takes (an X-record's data).
    enum Flags : unsigned { kOmitDefault = 1, kAngle = 2, kOcs = 4, kRest = 8 };
    short code;
    // Text of a subclass marker (code 100); null for a value field.
    const ACHAR* marker;
    unsigned flags;
    // Appends the field's items (none, one, or a run for repeated fields).
    void (*write)(const AcDbDxfField& field, const AcDbObject& object, AcDbDxfItems& out);
    // Takes one item of the field's code; false when the value is refused. Null for markers.
    bool (*read)(const AcDbDxfField& field, AcDbObject& object, const AcDbDxfItem& item);
    // Further codes that a repeated field takes (vertex widths, bulges, ...); 0 ends the list.
    short moreCodes[4] = {0, 0, 0, 0};
};

struct AcDbDxfKind {
    const ACHAR* dxfName;
    AcRxClass* (*rxClass)();
    AcDbObject* (*create)();
    std::span<const AcDbDxfField> fields;
};

// Kinds by exact class, and by DXF name (without regard to case). Null when unknown.
const AcDbDxfKind* acdbDxfKindOf(const AcRxClass* cls);
const AcDbDxfKind* acdbDxfKindNamed(const ACHAR* dxfName);
// Every kind known, in the order they were added.
std::vector<const AcDbDxfKind*> acdbDxfKinds();
// Adds a kind; the solid kernel adds its own this way. A second kind of one class is refused.
bool acdbDxfAddKind(const AcDbDxfKind* kind);
// Whether a group of this code goes to a field: of the kind, or for an entity of the part every
// entity shares.
bool acdbDxfKindTakes(const AcDbDxfKind* kind, bool entity, short code);
// Writes the groups of an object: for an entity the common entity part first, then the kind's
// own fields. eNotImplementedYet, after the common part, for a class without a kind.
Acad::ErrorStatus acdbDxfWriteObject(const AcDbObject& object, AcDbDxfItems& out);
// Reads groups back into an object of the right class, open for write. eInvalidDxfCode names a
// group no field takes; eInvalidInput a value a field refuses. failedCode, when given, receives
// the group code of the offending item. Fields that refer to other objects (group members) need
// the object in its database first.
Acad::ErrorStatus acdbDxfReadObject(AcDbObject& object, const AcDbDxfItems& in,
                                    short* failedCode = nullptr);

// Result buffers and items, one into the other (the entity-name interface, X-records,
// extended data).
resbuf* acdbDxfToResbuf(const AcDbDxfItem& item);
AcDbDxfItem acdbDxfFromResbuf(const resbuf& rb);
