// The schema of the object file as the plug-in reads and writes it: every class, every param
// with its type, whether it must be there, what stands in when it is absent, and its unit. The
// importer's tables and the file checker are built on it.
#pragma once

#include <qel/qel.h>

#include <span>

enum class QelParamStatus {
    Required,    // a missing param ends the object's creation
    Optional,    // the default applies
    Written,     // the export writes it, the import never reads it
    Conditional, // required in some forms of the class only (the default column says when)
};

struct QelParamDef {
    const char* name;
    QelParamType type;
    // For arrays, the element count: "3", "4", "3n", "2n", "n" (any count); "" for scalars.
    const char* count;
    QelParamStatus status;
    // The value or rule that stands in when the param is absent; "" when none.
    const char* fallback;
    // "m" for lengths, which are converted between metres and drawing units; "rad" for angles;
    // "" for values used as they stand.
    const char* unit;
};

struct QelClassSpec {
    const char* name;
    // A geometric class: it may carry "pose", "appearance" and "annotations".
    bool geometric;
    std::span<const QelParamDef> params;
};

// Every class of the file, structure, geometry, grouping and sub-objects.
std::span<const QelClassSpec> QelCatalogue();
// The class of that name (exact match), or null.
const QelClassSpec* QelFindClass(const char* className);
// The param of that name in the class (exact match), or null.
const QelParamDef* QelFindParam(const QelClassSpec& cls, const char* paramName);
// The params every geometric class may carry beside its own.
std::span<const QelParamDef> QelCommonGeometricParams();
// True when count elements fit the count rule of the param's definition ("3", "3n", ...).
bool QelCountFits(const QelParamDef& def, unsigned count);
