#include <dxf/raw_document.h>

#include <algorithm>
#include <iterator>

namespace dxf {

const std::string* Record::find(int code) const {
    for (const Tag& t : tags)
        if (t.code == code) return &t.value;
    return nullptr;
}

const Section* RawDocument::section(const std::string& name) const {
    for (const Section& s : sections)
        if (s.name == name) return &s;
    return nullptr;
}

Section* RawDocument::section(const std::string& name) {
    for (Section& s : sections)
        if (s.name == name) return &s;
    return nullptr;
}

namespace {

std::string describe(const Tag& t) {
    return std::to_string(t.code) + "/" + t.value;
}

// Reads one section's body, up to and including its ENDSEC. A record's tags gather in one
// buffer and move to the record, in a vector of their number, when the record ends.
void readSection(TagReader& in, Section& section) {
    Record* current = nullptr;
    Tags gathered;
    auto finish = [&] {
        if (current == nullptr) return;
        current->tags.reserve(gathered.size());
        std::move(gathered.begin(), gathered.end(), std::back_inserter(current->tags));
        gathered.clear();
    };
    // Each tag is read in the place it goes to; a group 0 leaves it again.
    for (Tags* into = &section.leading; in.next(into->emplace_back());
         into = current ? &gathered : &section.leading) {
        const Tag& tag = into->back();
        if (tag.code != 0) continue;
        Tag start = std::move(into->back());
        into->pop_back();
        finish();
        if (start.value == "ENDSEC") return;
        if (start.value == "SECTION" || start.value == "EOF")
            throw DxfError(in.source(), start.line,
                           "section " + section.name + " is not closed (found " + describe(start) +
                               " before its ENDSEC)");
        section.records.push_back({std::move(start.value), {}, start.line});
        current = &section.records.back();
    }
    throw DxfError(in.source(), section.line,
                   "section " + section.name + " is not closed: the file ends before its ENDSEC");
}

} // namespace

RawDocument readRaw(const std::string& text, const std::string& source) {
    TagReader in(&text, source);
    RawDocument doc;
    Tag tag;
    bool sawEof = false;
    while (in.next(tag)) {
        if (tag.code == 999) continue; // comments between sections
        if (tag.code == 0 && tag.value == "EOF") {
            sawEof = true;
            break;
        }
        if (tag.code != 0 || tag.value != "SECTION")
            throw DxfError(source, tag.line, "expected 0/SECTION, found " + describe(tag));
        Tag name;
        if (!in.next(name) || name.code != 2)
            throw DxfError(source, tag.line, "a SECTION must be followed by its name (group 2)");
        if (doc.section(name.value))
            throw DxfError(source, name.line, "section " + name.value + " appears twice");
        doc.sections.push_back({name.value, {}, {}, tag.line});
        readSection(in, doc.sections.back());
    }
    if (!sawEof)
        doc.warnings.push_back(source + ": the file has no EOF marker; read up to its end");
    else if (in.next(tag))
        doc.warnings.push_back(source + ", line " + std::to_string(tag.line) +
                               ": text after the EOF marker was ignored");
    return doc;
}

void writeRaw(TagWriter& out, const RawDocument& doc) {
    for (const Section& s : doc.sections) {
        out.write(0, "SECTION");
        out.write(2, s.name);
        out.write(s.leading);
        for (const Record& r : s.records) {
            out.write(0, r.type);
            out.write(r.tags);
        }
        out.write(0, "ENDSEC");
    }
    out.write(0, "EOF");
}

std::vector<HeaderVariable> headerVariables(const Section& header) {
    std::vector<HeaderVariable> vars;
    for (const Tag& t : header.leading) {
        if (t.code == 9)
            vars.push_back({t.value, {}});
        else if (!vars.empty())
            vars.back().values.push_back(t);
    }
    return vars;
}

} // namespace dxf
