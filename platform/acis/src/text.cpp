#include "text.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace acis {
namespace {

constexpr const char* kEndMarker = "End-of-ACIS-data";
constexpr const char* kHistoryMarker = "Begin-of-ACIS-History-Data";

bool startsWith(const std::string& s, std::size_t at, const char* prefix) {
    return s.compare(at, std::char_traits<char>::length(prefix), prefix) == 0;
}

bool parseInt(const std::string& token, int& value) {
    const char* end = token.data() + token.size();
    auto [ptr, ec] = std::from_chars(token.data(), end, value);
    return ec == std::errc() && ptr == end;
}

bool parseDouble(const std::string& token, double& value) {
    if (token.empty()) return false;
    char* end = nullptr;
    value = std::strtod(token.c_str(), &end);
    return end == token.c_str() + token.size();
}

// Text split into lines, each with its number.
struct Line {
    std::string text;
    int number;
};

std::vector<Line> linesOf(const std::string& text) {
    std::vector<Line> lines;
    std::size_t at = 0;
    int number = 1;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back({std::move(line), number++});
        at = end + 1;
    }
    return lines;
}

void readHeader(const std::vector<Line>& lines, SatDocument& doc) {
    if (lines.size() < 3) throw SatError(0, "the header is truncated (it needs three lines)");
    int counts[4] = {0, 0, 0, 0};
    std::size_t at = 0;
    const std::string& first = lines[0].text;
    for (int& n : counts) {
        while (at < first.size() && std::isspace(static_cast<unsigned char>(first[at])))
            ++at;
        std::size_t end = at;
        while (end < first.size() && !std::isspace(static_cast<unsigned char>(first[end])))
            ++end;
        if (!parseInt(first.substr(at, end - at), n))
            throw SatError(1, "the header's first line needs four whole numbers (version, "
                              "records, bodies, flags)");
        at = end;
    }
    doc.version = counts[0];
    doc.declaredRecords = counts[1];
    doc.declaredBodies = counts[2];
    double units = 0.0;
    const std::string& third = lines[2].text;
    const std::size_t space = third.find_first_of(" \t");
    if (!parseDouble(third.substr(0, space), units) || !(units > 0.0))
        throw SatError(3, "the header's third line must start with the size of a unit in mm");
    doc.unitsInMm = units;
}

} // namespace

SatError::SatError(int at, const std::string& what)
    : std::runtime_error(at > 0 ? "line " + std::to_string(at) + ": " + what : what), line(at) {}

SatDocument parseSat(const std::string& text) {
    const std::vector<Line> lines = linesOf(text);
    SatDocument doc;
    readHeader(lines, doc);
    Record current;
    bool inRecord = false, ended = false, history = false;
    for (std::size_t l = 3; l < lines.size() && !ended; ++l) {
        const std::string& s = lines[l].text;
        const int number = lines[l].number;
        if (!inRecord && startsWith(s, 0, kEndMarker)) {
            ended = true;
            break;
        }
        if (!inRecord && startsWith(s, 0, kHistoryMarker)) history = true;
        if (history) continue; // construction history: nothing of the body's shape
        std::size_t at = 0;
        while (at < s.size()) {
            if (std::isspace(static_cast<unsigned char>(s[at]))) {
                ++at;
                continue;
            }
            std::size_t end = at;
            while (end < s.size() && !std::isspace(static_cast<unsigned char>(s[end])))
                ++end;
            std::string token = s.substr(at, end - at);
            at = end;
            int length = 0;
            if (token.size() > 1 && token[0] == '@' && parseInt(token.substr(1), length)) {
                // A string with its length: exactly that many characters after one space.
                if (length < 0 || at + 1 + static_cast<std::size_t>(length) > s.size())
                    throw SatError(number, "a string of " + token.substr(1) +
                                               " characters runs past the end of its line");
                token = s.substr(at + 1, length);
                at += 1 + length;
                if (!inRecord) throw SatError(number, "a record starts with a string");
                current.fields.push_back(std::move(token));
                continue;
            }
            if (!inRecord) {
                int sequence = 0;
                if (token.size() > 1 && token[0] == '-' && parseInt(token.substr(1), sequence))
                    continue; // the optional record number
                current = Record{token, number, {}};
                inRecord = true;
                continue;
            }
            if (token == "#") {
                doc.records.push_back(std::move(current));
                current = Record{};
                inRecord = false;
                continue;
            }
            current.fields.push_back(std::move(token));
        }
    }
    if (inRecord)
        throw SatError(current.line, "the " + current.name +
                                         " record starting here does not end with '#' (the text "
                                         "is truncated)");
    if (!ended) throw SatError(0, "the text is truncated: no End-of-ACIS-data line");
    if (doc.declaredRecords > 0 && doc.declaredRecords != static_cast<int>(doc.records.size()))
        throw SatError(1, "the header counts " + std::to_string(doc.declaredRecords) +
                              " records, the text holds " + std::to_string(doc.records.size()));
    return doc;
}

Fields::Fields(const SatDocument& doc, int index)
    : doc_(&doc), record_(&doc.records.at(index)), index_(index) {}

void Fields::fail(const std::string& what) const {
    throw SatError(record_->line, record_->name + " $" + std::to_string(index_) + ": " + what);
}

const std::string& Fields::next(const char* field) {
    if (at_ >= record_->fields.size()) fail(std::string("the record ends before its ") + field);
    return record_->fields[at_++];
}

void Fields::skipCommon() {
    ref("attribute", "");
    if (doc_->version >= 700) {
        next("history number");
        ref("pattern", "");
    }
}

int Fields::ref(const char* field, const char* kind) {
    const std::string& token = next(field);
    int value = 0;
    if (token.size() < 2 || token[0] != '$' || !parseInt(token.substr(1), value))
        fail(std::string(field) + " must be a $ reference, not '" + token + "'");
    if (value == -1) return -1;
    const int count = static_cast<int>(doc_->records.size());
    if (value < 0 || value >= count)
        fail(std::string(field) + " $" + std::to_string(value) + " names no record (there are " +
             std::to_string(count) + ")");
    const std::string& name = doc_->records[value].name;
    const std::string want = kind;
    if (name.size() < want.size() || name.compare(name.size() - want.size(), want.size(), want))
        fail(std::string(field) + " $" + std::to_string(value) + " is a " + name + ", not a " +
             (want[0] == '-' ? want.substr(1) : want));
    return value;
}

double Fields::number(const char* field) {
    const std::string& token = next(field);
    double value = 0.0;
    if (!parseDouble(token, value) || !std::isfinite(value))
        fail(std::string(field) + " must be a number, not '" + token + "'");
    return value;
}

bool Fields::word(const char* field, const char* yes, const char* no) {
    const std::string& token = next(field);
    if (token == yes) return true;
    if (token == no) return false;
    fail(std::string(field) + " must be '" + yes + "' or '" + no + "', not '" + token + "'");
}

bool Fields::nextIsNumber() const {
    double value = 0.0;
    return at_ < record_->fields.size() && parseDouble(record_->fields[at_], value);
}

int Fields::count(const char* field, int max) {
    const std::string& token = next(field);
    int value = 0;
    if (!parseInt(token, value) || value < 0 || value > max)
        fail(std::string(field) + " must be a whole number from 0 to " + std::to_string(max) +
             ", not '" + token + "'");
    return value;
}

void Fields::bound(const char* field) {
    const std::string& token = next(field);
    if (token == "I") return;
    if (token == "F") {
        number(field);
        return;
    }
    fail(std::string(field) + " must be 'I' or 'F value', not '" + token + "'");
}

} // namespace acis
