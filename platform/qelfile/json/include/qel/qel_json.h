// The readable JSON form of QEL files ("qel-json-1"): what qeltool prints and builds, and the
// form of every fixture and sample.
//
//   { "format": "qel-json-1",
//     "objects": [ { "class": "Cylinder", "params": [ ["radius", "double", 0.5], ... ] } ] }
//
// Objects stand in writing order, so an object's reference number is its index. A param is
// [name, type, value]; nested objects are { "class", "params" } (or null for an empty object
// param). Doubles and floats are printed in their shortest exact form and read back exactly.
// A string that is not valid UTF-8 is written as { "hex": "..." }.
#pragma once

#include <qel/qel.h>

#include <iosfwd>
#include <stdexcept>
#include <string>

namespace qeljson {

// A JSON text that is not a valid object file; the message names the object and param.
class JsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Prints the JSON form of every object of the open reader. Throws QelException from the reader.
void dump(QelReader& reader, std::ostream& out);
// The JSON form of one object (as it stands in the "objects" list).
std::string objectToJson(const QelObject& object);

// Writes a .qel file from JSON text. `source` names the text in messages. Nothing is left at
// `qelPath` unless the whole file was written. Throws JsonError or QelException.
void build(const std::string& jsonText, const std::string& source, const std::string& qelPath);

// One object from the JSON form of an object; one reference for the caller.
QelObject* objectFromJson(const std::string& jsonText, const std::string& source);

} // namespace qeljson
