#include "acis_text.h"

#include <dxf/tag_io.h>

#include <algorithm>

namespace dxf {

namespace {

constexpr size_t kMaxLine = 255;

// Letters A to ^ trade places end for end; blanks stay; '@' and '_' swap; every other
// character has its bits 0x5F flipped. 'A' would become a control character, so it is written
// as '^' followed by a blank. Both ways go through one table of 256 entries.
struct Codes {
    char encoded[256];
    char decoded[256];
    constexpr Codes() : encoded(), decoded() {
        for (int c = 0; c < 256; ++c) {
            encoded[c] = char(code(c, '_', '@'));
            decoded[c] = char(code(c, 0x40, 0x5F));
        }
    }
    // The rule one way: `under` and `at` are the characters that become '@' and '_'.
    static constexpr int code(int c, int under, int at) {
        if (c == ' ') return ' ';
        if (c == under) return under == '_' ? 0x40 : '_';
        if (c == at) return at == '@' ? 0x5F : '@';
        if (c >= 0x41 && c <= 0x5E) return 0x9F - c;
        return c ^ 0x5F;
    }
};
constexpr Codes kCodes;

void decodeLine(std::string_view line, std::string& out) {
    const size_t at = out.size();
    out.resize(at + line.size());
    char* to = out.data() + at;
    for (size_t i = 0; i < line.size(); ++i) {
        const auto c = static_cast<unsigned char>(line[i]);
        *to++ = kCodes.decoded[c];
        // '^' stands for 'A', and the blank after it is part of it.
        if (c == 0x5E && i + 1 < line.size() && line[i + 1] == ' ') ++i;
    }
    out.resize(size_t(to - out.data()));
}

// The line coded, in place of what out held.
void encodeLine(std::string_view line, std::string& out) {
    out.assign(line.size() + size_t(std::count(line.begin(), line.end(), 'A')), ' ');
    char* to = out.data();
    for (const char ch : line) {
        *to++ = kCodes.encoded[static_cast<unsigned char>(ch)];
        if (ch == 'A') ++to; // the blank after its '^' is already there
    }
}

} // namespace

std::string satFromTags(const Tags& tags) {
    std::string sat, line;
    bool open = false;
    for (const Tag& t : tags) {
        if (t.code == 1) {
            if (open) {
                decodeLine(line, sat);
                sat += '\n';
            }
            line = t.value;
            open = true;
        } else if (t.code == 3 && open) {
            line += t.value;
        }
    }
    if (open) {
        decodeLine(line, sat);
        sat += '\n';
    }
    return sat;
}

namespace {

// Each group of the model text in order: its code (1, or 3 for a continuation) and value.
template <class F>
void eachSatGroup(const std::string& sat, F group) {
    std::string coded;
    size_t start = 0;
    while (start < sat.size()) {
        size_t end = sat.find('\n', start);
        if (end == std::string::npos) end = sat.size();
        std::string_view line(sat.data() + start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        encodeLine(line, coded);
        start = end + 1;
        // A coded 'A' is two characters: never split between them.
        size_t pos = 0;
        int code = 1;
        do {
            size_t take = std::min(kMaxLine, coded.size() - pos);
            if (take < coded.size() - pos && take > 0 && coded[pos + take - 1] == 0x5E &&
                coded[pos + take] == ' ')
                --take;
            group(code, std::string_view(coded).substr(pos, take));
            pos += take;
            code = 3;
        } while (pos < coded.size());
    }
}

} // namespace

Tags tagsFromSat(const std::string& sat) {
    Tags tags;
    tags.reserve(size_t(std::count(sat.begin(), sat.end(), '\n')) + 1);
    eachSatGroup(sat, [&tags](int code, std::string_view value) {
        tags.push_back({code, std::string(value)});
    });
    return tags;
}

std::string formattedSatGroups(const std::string& sat) {
    std::string out;
    out.reserve(sat.size() + sat.size() / 8 + 64);
    eachSatGroup(sat, [&out](int code, std::string_view value) { appendTag(out, code, value); });
    return out;
}

} // namespace dxf
