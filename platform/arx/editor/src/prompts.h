// Prompts of the drawing and editing commands, as operators know them: a bad answer is told
// and asked again, Escape cancels, options are matched by their capitals. Points answered are
// in the current UCS and come back in the world; "@dx,dy[,dz]" is relative to the last point.
#pragma once

#include "processor.h"

#include <arx/acdb.h>

#include <functional>
#include <span>

class AcDb3dSolid;

namespace qelhost {

// What a prompt got: a value, Enter, one of its options (by index), or a cancel.
struct Answer {
    enum Kind { kValue, kEnter, kOption, kCancel } kind = kCancel;
    int option = -1;
    bool operator==(Kind k) const { return kind == k; }
};

// A point. Enter is taken when enterOk, else asked again.
Answer askPoint(CommandContext& ctx, const std::wstring& prompt, AcGePoint3d& world,
                std::span<const Option> options = {}, bool enterOk = false);

// A number, or a point whose distance from `from` (when given) is the number. `check` refuses
// a value with its message; Enter gives `fallback` when there is one, else asks again.
using Check = std::function<const wchar_t*(double)>;
Answer askDistance(CommandContext& ctx, const std::wstring& prompt, double& value,
                   const AcGePoint3d* from, std::span<const Option> options = {},
                   const Check& check = {}, const double* fallback = nullptr);
// Checks of the usual kinds.
const wchar_t* positive(double value);
const wchar_t* nonZero(double value);

// An angle in degrees (counter-clockwise about the UCS Z axis), or a point whose direction from
// `from` gives it. The value comes back in radians.
Answer askAngle(CommandContext& ctx, const std::wstring& prompt, double& radians,
                const AcGePoint3d* from, std::span<const Option> options = {},
                const double* fallbackDegrees = nullptr);

// One of the options; Enter gives `fallback` (an index) when it is not -1.
Answer askOption(CommandContext& ctx, const std::wstring& prompt, std::span<const Option> options,
                 int fallback = -1);

// The last point given at a prompt, in the world (LASTPOINT).
AcGePoint3d lastPoint();
void setLastPoint(const AcGePoint3d& world);

// The current UCS as a matrix to the world, its Z axis and its origin.
AcGeVector3d ucsZ();
AcGeVector3d ucsVector(const AcGeVector3d& v);

// A real system variable of the drawing (THICKNESS, ELEVATION).
double realVariable(const wchar_t* name);

// Appends a new entity to model space on the current layer; deleted when that fails.
// The new entity's id, null on failure.
AcDbObjectId appendEntity(AcDbEntity* entity);

// The entities chosen at "Select objects: " (see select.cpp); empty when cancelled or none.
// cancelled tells the two apart.
SelectionSet selectObjects(CommandContext& ctx, bool& cancelled);
// The objects a command works on: nothing when cancelled (status RTCAN) or when none was
// chosen, which is told (status RTNORM).
std::optional<SelectionSet> objectsToWork(CommandContext& ctx, int& status);
// One entity, by handle, L for the last one, or an entity name from a caller; or an option.
Answer pickOne(CommandContext& ctx, const std::wstring& prompt, AcDbObjectId& id,
               std::span<const Option> options = {});
// The set the last selection made (P at "Select objects: ").
void rememberSelection(const SelectionSet& set);

// Opens each entity of the set for write and applies the change; the count that took it.
int forEachEntity(const SelectionSet& set, const std::function<bool(AcDbEntity&)>& change);

// Erases an entity open for write (the database takes what it owns along); an unnamed group that
// it leaves empty is erased too.
Acad::ErrorStatus eraseEntity(AcDbEntity& entity);

// A copy of the entity in model space with its extended data and the X-records of its
// extension dictionary; null id on failure.
AcDbObjectId copyEntity(const AcDbEntity& entity);

// What LIST shows of a solid (volume, area, extents) or a region (area, normal, extents).
void describeBody(const AcDbEntity& entity);
double measureVolume(const AcDb3dSolid& solid);

// Prints a line.
void tell(const std::wstring& text);
// A number as operators read it: four decimals.
std::wstring number(double value);
std::wstring pointText(const AcGePoint3d& p);

} // namespace qelhost
