#include "acis_text.h"

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

std::string encodeLine(std::string_view line) {
    std::string out(line.size() + size_t(std::count(line.begin(), line.end(), 'A')), ' ');
    char* to = out.data();
    for (const char ch : line) {
        *to++ = kCodes.encoded[static_cast<unsigned char>(ch)];
        if (ch == 'A') ++to; // the blank after its '^' is already there
    }
    return out;
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

Tags tagsFromSat(const std::string& sat) {
    Tags tags;
    tags.reserve(size_t(std::count(sat.begin(), sat.end(), '\n')) + 1);
    size_t start = 0;
    while (start < sat.size()) {
        size_t end = sat.find('\n', start);
        if (end == std::string::npos) end = sat.size();
        std::string_view line(sat.data() + start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        std::string coded = encodeLine(line);
        start = end + 1;
        // Most lines are one group: the coded line itself.
        if (coded.size() <= kMaxLine) {
            tags.push_back({1, std::move(coded)});
            continue;
        }
        // A coded 'A' is two characters: never split between them.
        size_t pos = 0;
        int code = 1;
        do {
            size_t take = std::min(kMaxLine, coded.size() - pos);
            if (take < coded.size() - pos && take > 0 && coded[pos + take - 1] == 0x5E &&
                coded[pos + take] == ' ')
                --take;
            tags.push_back({code, coded.substr(pos, take)});
            pos += take;
            code = 3;
        } while (pos < coded.size());
    }
    return tags;
}

} // namespace dxf
