// DXF group codes and tags: the text form of a drawing, one code line and one value line each.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace dxf {

// What a group code's value holds, by the ranges of the DXF reference.
enum class ValueType { String, Int16, Int32, Int64, Double, Bool, Handle, Binary, Unknown };

ValueType valueType(int code);
const char* valueTypeName(ValueType type);

struct Tag {
    int code = 0;
    std::string value;
    std::size_t line = 0; // where the tag's code stood in the text it was read from; 0 if made

    bool operator==(const Tag& other) const { return code == other.code && value == other.value; }
};

using Tags = std::vector<Tag>;

// The code of a tag whose value is groups already in the file's layout, written as they stand
// (a solid's model text: some hundred groups as one value instead of a tag each).
constexpr int kFormattedGroups = -1;

// A DXF text that can't be read, with the line where the fault was found (1-based; 0 when the
// fault is the end of the text).
class DxfError : public std::runtime_error {
public:
    DxfError(const std::string& source, std::size_t line, const std::string& what);
    std::size_t line() const { return m_line; }

private:
    std::size_t m_line;
};

// Value conversions with the checks a reader needs. A value that does not convert throws
// std::invalid_argument whose message starts with `where`.
double toDouble(const Tag& tag, const std::string& where);
std::int64_t toInteger(const Tag& tag, const std::string& where);
std::uint64_t toHandle(const Tag& tag, const std::string& where);

// Text of values in the form written to files: doubles in their shortest exact form, handles
// in upper-case hexadecimal.
std::string formatDouble(double value);
// A value of the file as a message quotes it: its first 40 characters, "..." for the rest.
std::string quotedValue(std::string_view value);
std::string formatHandle(std::uint64_t handle);

} // namespace dxf
