// A DXF file as sections of records, each record the tags from one group 0 to the next. This
// is the form in which a drawing is read before its objects are made, and the form in which
// what the host does not know is kept and written back unchanged.
#pragma once

#include <dxf/tag_io.h>

#include <string>
#include <vector>

namespace dxf {

struct Record {
    std::string type; // the value of the group 0 that starts it ("LINE", "TABLE", ...)
    Tags tags;        // the tags after the group 0
    std::size_t line = 0;

    // The value of the first tag with that code, or null.
    const std::string* find(int code) const;
};

struct Section {
    std::string name; // "HEADER", "ENTITIES", ...
    Tags leading;     // tags before the first record: the variables of the HEADER section
    std::vector<Record> records;
    std::size_t line = 0;
};

struct HeaderVariable {
    std::string name; // "$ACADVER"
    Tags values;
};

struct RawDocument {
    std::vector<Section> sections;
    // What was tolerated on reading (a missing EOF), said rather than hidden.
    std::vector<std::string> warnings;

    const Section* section(const std::string& name) const;
    Section* section(const std::string& name);
};

// Reads the whole text. Throws DxfError with the line of the first structural fault.
RawDocument readRaw(const std::string& text, const std::string& source);
void writeRaw(TagWriter& out, const RawDocument& document);

// The variables of a HEADER section's leading tags, in order.
std::vector<HeaderVariable> headerVariables(const Section& header);

} // namespace dxf
