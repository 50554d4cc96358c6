// The kinds of object an entity can leave as: one row per object-type code, the code being the
// row's index. Member records keep these codes; the classifier answers with them and the
// dispatcher writes by them.
#pragma once

#include "objectfile/type_codes.h"
#include "writers/entity_writer.h"

#include <qel/qel.h>

#include <span>

class QelOutObject;
class AcGeMatrix3d;
class AcDbObjectId;

// How the dispatcher treats a row.
enum class QelExportHandling {
    Generic,         // the common path: object, appearance, annotations, writer, write
    GenericCaps,     // the same, with the caps of a pipe
    GenericPlain,    // the same, without annotations
    Nothing,         // true without a write
    Unknown,         // told to the user as an unknown type
    Patch,           // planar patch through the patch writer
    Region,          // a region's outline through the companion module
    Extrusion,       // a polyline extrusion, a mesh when that fails
    Box,             // a rectangular box
    Mesh,            // a triangle mesh, kept as read when it came from the reference
    Contour,         // only from the reference
    PointSet,        // only from the reference
    ExclusionVolume, // the volume and the tree it holds
    PolylinePatch,   // one patch per segment
    Solid2d,         // the writer writes its own objects
    ArcPatch,        // a thick arc as a mesh
    NestedInsert,    // a block reference: told and skipped
};

// What the member record's code says about the entity (the classifier's first step).
enum class QelTagRule {
    ClassDecides = 0, // the code gives no answer; the entity's class decides
    TagDecides = 1,   // the code is the answer
    Grouped = 2,      // one object drawn as several entities of one group
};

// Fills the target object from the entity; the result is not looked at.
using QelEntityWriter = QelEntityWriterFn*;

struct QelObjectTypeRow {
    int code; // the row's own index
    const char* name;
    // The class of a new object: null when none can be made from nothing, "" for the row's name.
    const char* className;
    QelTagRule tagRule;
    QelExportHandling handling;
    QelEntityWriter writer; // null: the row's case writes it, or it leaves as unknown
};

inline constexpr int QelObjectTypeCount = QelCode::Count;

std::span<const QelObjectTypeRow> objectTypeTable();
// The row of a code, or null outside the table.
const QelObjectTypeRow* QelTypeRow(int code);
// The class an object of that row is created as: the column, the row's name for "", or null.
const char* QelObjectTypeClass(const QelObjectTypeRow& row);
