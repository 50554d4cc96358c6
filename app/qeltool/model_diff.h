// Two object files compared as models rather than as bytes. A file written anew numbers its
// objects anew, so objects are paired through the structure first (the Header, its ModelSpace,
// the LayerMgr, layers by name, the view and its CoordSysMgr), then within each class by
// placement, groups last by their members. Params are compared by name and type: reals within a
// relative tolerance, arrays element by element, nested objects param by param, references
// through the pairing, poses as the places they give the objects' shapes.
#pragma once

#include <qel/qel.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace qeltool {

// A millionth of a millimetre on a metre: far below what any drawing holds, far above the
// rounding of a unit conversion done in doubles.
inline constexpr double kDefaultTolerance = 1e-9;

// A file, or objects of it, that could not be read; what() holds one line per fault, each
// naming the file.
class DiffReadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class Change {
    Added,           // in B only
    Removed,         // in A only
    Changed,         // in both, different
    WithinTolerance, // in both, the same model written differently (reals, order, rotation)
};

struct ParamChange {
    std::string path; // "radius", "pose.translation", "annotations.Tag.value", "layer"
    Change change;
    std::string typeA, typeB; // type names, "" where the param is absent
    std::string valueA, valueB;
    // Reals: the largest difference relative to the values' magnitude; a rotation: the angle
    // between the two, in radians. 0 for other types.
    double difference = 0;
    std::string note; // where an array differs, which members a list gained or lost, ...
};

enum class Outcome { Equal, WithinTolerance, Changed };

// Two objects paired by the comparison, with what differs between them.
struct ObjectPair {
    unsigned a, b;
    std::string className;
    Outcome outcome;
    std::vector<ParamChange> changes;
};

// An object that has no partner in the other file.
struct LoneObject {
    unsigned number;
    std::string className;
    std::string where; // "on layer Piping", "in group 19", "not on any layer"
};

struct ClassTally {
    std::string className;
    unsigned inA = 0, inB = 0, equal = 0, withinTolerance = 0, changed = 0, onlyA = 0, onlyB = 0;
};

struct DiffReport {
    double tolerance = kDefaultTolerance;
    unsigned objectsA = 0, objectsB = 0;
    std::vector<LoneObject> onlyA, onlyB;
    std::vector<ObjectPair> pairs;   // every pair, in A's number order
    std::vector<ClassTally> classes; // by class name
    // Equal within the tolerance: every object paired and none changed.
    bool equal() const;
};

// Compares the two files. Throws DiffReadError when either cannot be opened or holds an object
// that cannot be read; every such object of both files is named.
DiffReport compareFiles(const std::string& pathA, const std::string& pathB, double tolerance);

// The report as a person reads it, with the files named as given.
std::string diffText(const DiffReport& report, const std::string& nameA, const std::string& nameB);
// The report as JSON (docs/cli.md).
std::string diffJson(const DiffReport& report, const std::string& nameA, const std::string& nameB);

} // namespace qeltool
