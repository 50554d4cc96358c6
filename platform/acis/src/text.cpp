#include "text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace acis {
namespace {

constexpr const char* kEndMarker = "End-of-ACIS-data";
constexpr const char* kHistoryMarker = "Begin-of-ACIS-History-Data";

bool startsWith(std::string_view s, const char* prefix) {
    return s.substr(0, std::char_traits<char>::length(prefix)) == prefix;
}

bool parseInt(std::string_view token, int& value) {
    const char* end = token.data() + token.size();
    auto [ptr, ec] = std::from_chars(token.data(), end, value);
    return ec == std::errc() && ptr == end;
}

// A decimal number, whole token, as the C library reads one (a leading '+' allowed).
bool parseDouble(std::string_view token, double& value) {
    if (!token.empty() && token[0] == '+') {
        token.remove_prefix(1);
        if (!token.empty() && token[0] == '-') return false;
    }
    const char* end = token.data() + token.size();
    auto [ptr, ec] = std::from_chars(token.data(), end, value);
    return ec == std::errc() && ptr == end;
}

// The C locale's white space, without a call per character.
bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Text split into lines, each with its number.
struct Line {
    std::string_view text;
    int number;
};

std::vector<Line> linesOf(const std::string& text) {
    std::vector<Line> lines;
    std::size_t at = 0;
    int number = 1;
    const std::string_view all(text);
    while (at < all.size()) {
        std::size_t end = all.find('\n', at);
        if (end == std::string_view::npos) end = all.size();
        std::string_view line = all.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back({line, number++});
        at = end + 1;
    }
    return lines;
}

void readHeader(const std::vector<Line>& lines, SatDocument& doc) {
    if (lines.size() < 3) throw SatError(0, "the header is truncated (it needs three lines)");
    int counts[4] = {0, 0, 0, 0};
    std::size_t at = 0;
    const std::string_view first = lines[0].text;
    for (int& n : counts) {
        while (at < first.size() && isSpace(first[at]))
            ++at;
        std::size_t end = at;
        while (end < first.size() && !isSpace(first[end]))
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
    const std::string_view third = lines[2].text;
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
    doc.records.reserve(lines.size());
    doc.tokens.reserve(lines.size() * 8);
    Record current;
    bool inRecord = false, ended = false, history = false;
    const auto field = [&](std::string_view token) {
        doc.tokens.push_back(token);
        ++current.count;
    };
    for (std::size_t l = 3; l < lines.size() && !ended; ++l) {
        const std::string_view s = lines[l].text;
        const int number = lines[l].number;
        if (!inRecord && startsWith(s, kEndMarker)) {
            ended = true;
            break;
        }
        if (!inRecord && startsWith(s, kHistoryMarker)) history = true;
        if (history) continue; // construction history: nothing of the body's shape
        std::size_t at = 0;
        while (at < s.size()) {
            if (isSpace(s[at])) {
                ++at;
                continue;
            }
            std::size_t end = at;
            while (end < s.size() && !isSpace(s[end]))
                ++end;
            const std::string_view token = s.substr(at, end - at);
            at = end;
            int length = 0;
            if (token.size() > 1 && token[0] == '@' && parseInt(token.substr(1), length)) {
                // A string with its length: exactly that many characters after one space.
                if (length < 0 || at + 1 + static_cast<std::size_t>(length) > s.size())
                    throw SatError(number, "a string of " + std::string(token.substr(1)) +
                                               " characters runs past the end of its line");
                if (!inRecord) throw SatError(number, "a record starts with a string");
                field(s.substr(at + 1, length));
                at += 1 + length;
                continue;
            }
            if (!inRecord) {
                int sequence = 0;
                if (token.size() > 1 && token[0] == '-' && parseInt(token.substr(1), sequence))
                    continue; // the optional record number
                current = Record{token, number, static_cast<std::uint32_t>(doc.tokens.size()), 0};
                inRecord = true;
                continue;
            }
            if (token == "#") {
                doc.records.push_back(current);
                inRecord = false;
                continue;
            }
            field(token);
        }
    }
    if (inRecord)
        throw SatError(current.line, "the " + std::string(current.name) +
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
    throw SatError(record_->line,
                   std::string(record_->name) + " $" + std::to_string(index_) + ": " + what);
}

std::string_view Fields::next(const char* field) {
    if (at_ >= record_->count) fail(std::string("the record ends before its ") + field);
    return doc_->tokens[record_->first + at_++];
}

void Fields::skipCommon() {
    ref("attribute", "");
    if (doc_->version >= 700) {
        next("history number");
        ref("pattern", "");
    }
}

int Fields::ref(const char* field, const char* kind) {
    const std::string_view token = next(field);
    int value = 0;
    if (token.size() < 2 || token[0] != '$' || !parseInt(token.substr(1), value))
        fail(std::string(field) + " must be a $ reference, not '" + std::string(token) + "'");
    if (value == -1) return -1;
    const int count = static_cast<int>(doc_->records.size());
    if (value < 0 || value >= count)
        fail(std::string(field) + " $" + std::to_string(value) + " names no record (there are " +
             std::to_string(count) + ")");
    const std::string_view name = doc_->records[value].name;
    const std::string_view want = kind;
    if (name.size() < want.size() || name.substr(name.size() - want.size()) != want)
        fail(std::string(field) + " $" + std::to_string(value) + " is a " + std::string(name) +
             ", not a " + std::string(want[0] == '-' ? want.substr(1) : want));
    return value;
}

double Fields::number(const char* field) {
    const std::string_view token = next(field);
    double value = 0.0;
    if (!parseDouble(token, value) || !std::isfinite(value))
        fail(std::string(field) + " must be a number, not '" + std::string(token) + "'");
    return value;
}

bool Fields::word(const char* field, const char* yes, const char* no) {
    const std::string_view token = next(field);
    if (token == yes) return true;
    if (token == no) return false;
    fail(std::string(field) + " must be '" + yes + "' or '" + no + "', not '" + std::string(token) +
         "'");
}

bool Fields::nextIsNumber() const {
    double value = 0.0;
    return at_ < record_->count && parseDouble(doc_->tokens[record_->first + at_], value);
}

int Fields::count(const char* field, int max) {
    const std::string_view token = next(field);
    int value = 0;
    if (!parseInt(token, value) || value < 0 || value > max)
        fail(std::string(field) + " must be a whole number from 0 to " + std::to_string(max) +
             ", not '" + std::string(token) + "'");
    return value;
}

void Fields::bound(const char* field) {
    const std::string_view token = next(field);
    if (token == "I") return;
    if (token == "F") {
        number(field);
        return;
    }
    fail(std::string(field) + " must be 'I' or 'F value', not '" + std::string(token) + "'");
}

} // namespace acis
