// SAT text as records: the header, then one record per entity with its fields as tokens.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace acis {

// A fault in the text, with the line (1-based) it was found on; 0 when it concerns the whole.
struct SatError : std::runtime_error {
    SatError(int line, const std::string& what);
    int line;
};

// Names and fields are views into the text the document was parsed from.
struct Record {
    std::string_view name;
    int line = 0;
    std::uint32_t first = 0, count = 0; // its fields in the document's tokens
};

struct SatDocument {
    int version = 0;
    int declaredRecords = 0; // 0: not stated
    int declaredBodies = 0;
    double unitsInMm = 1.0;
    std::vector<Record> records;
    std::vector<std::string_view> tokens; // the fields after each record's name, in order; strings
                                          // without their length prefix
};

// Splits SAT text into records, without copying it: the document reads the text, which must
// outlive it. Throws SatError for a missing or short header, a record that does not end in '#',
// a string running past its line, or text without the end marker.
SatDocument parseSat(const std::string& text);

// Reads the fields of one record in order; every read names the field in its error.
class Fields {
public:
    Fields(const SatDocument& doc, int index);
    const Record& record() const { return *record_; }
    int index() const { return index_; }

    // A $ reference: -1 for none, else the index of a record whose name ends in `kind` (such as
    // "face" or "-surface"); anything else is an error naming the field.
    int ref(const char* field, const char* kind);
    double number(const char* field);
    // One of two words: true for the first.
    bool word(const char* field, const char* yes, const char* no);
    // An interval end: "I" (unbounded) or "F value".
    void bound(const char* field);
    void skip(const char* field) { next(field); }
    std::string_view token(const char* field) { return next(field); }
    // Whether the next field reads as a number (false at the record's end).
    bool nextIsNumber() const;
    std::size_t remaining() const { return record_->count - at_; }
    int count(const char* field, int max); // a whole number in [0, max]
    void skipCommon(); // attribute, history number and pattern, as every entity starts
    [[noreturn]] void fail(const std::string& what) const;

private:
    std::string_view next(const char* field);
    const SatDocument* doc_;
    const Record* record_;
    int index_;
    std::size_t at_ = 0;
};

} // namespace acis
