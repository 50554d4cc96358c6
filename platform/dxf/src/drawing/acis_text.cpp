#include "acis_text.h"

namespace dxf {

namespace {

constexpr size_t kMaxLine = 255;

// Letters A to ^ trade places end for end; blanks stay; '@' and '_' swap; every other
// character has its bits 0x5F flipped. 'A' would become a control character, so it is written
// as '^' followed by a blank.
void decodeLine(const std::string& line, std::string& out) {
    for (size_t i = 0; i < line.size(); ++i) {
        const auto c = static_cast<unsigned char>(line[i]);
        if (c == ' ')
            out += ' ';
        else if (c == 0x40)
            out += '_';
        else if (c == 0x5F)
            out += '@';
        else if (c >= 0x41 && c <= 0x5E) {
            out += char(0x9F - c);
            if (c == 0x5E && i + 1 < line.size() && line[i + 1] == ' ') ++i;
        } else
            out += char(c ^ 0x5F);
    }
}

std::string encodeLine(std::string_view line) {
    std::string out;
    out.reserve(line.size() + 8);
    for (const char ch : line) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == ' ')
            out += ' ';
        else if (c == '_')
            out += char(0x40);
        else if (c == '@')
            out += char(0x5F);
        else if (c >= 0x41 && c <= 0x5E) {
            out += char(0x9F - c);
            if (c == 'A') out += ' ';
        } else
            out += char(c ^ 0x5F);
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
    size_t start = 0;
    while (start < sat.size()) {
        size_t end = sat.find('\n', start);
        if (end == std::string::npos) end = sat.size();
        std::string_view line(sat.data() + start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const std::string coded = encodeLine(line);
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
        start = end + 1;
    }
    return tags;
}

} // namespace dxf
