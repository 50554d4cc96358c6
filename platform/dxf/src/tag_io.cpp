#include <dxf/tag_io.h>

#include <algorithm>

#include <charconv>
#include <cstring>
#include <string_view>

namespace dxf {

namespace {
// Binary files open with a product name, then this mark.
constexpr std::string_view kBinaryMark = "Binary DXF\r\n\x1a";
} // namespace

TagReader::TagReader(std::string text, std::string source)
    : m_owned(std::move(text)), m_text(m_owned), m_source(std::move(source)) {
    start();
}

TagReader::TagReader(const std::string* text, std::string source)
    : m_text(*text), m_source(std::move(source)) {
    start();
}

void TagReader::start() {
    if (m_text.substr(0, 3) == "\xEF\xBB\xBF") m_pos = 3;
    if (m_text.substr(0, 32).find(kBinaryMark) != std::string_view::npos)
        throw DxfError(m_source, 1, "binary DXF is not supported; save the drawing as ASCII DXF");
}

bool TagReader::nextLine(std::string_view& line) {
    if (m_pos >= m_text.size()) return false;
    const std::size_t end = m_text.find('\n', m_pos);
    const std::size_t stop = end == std::string_view::npos ? m_text.size() : end;
    std::size_t len = stop - m_pos;
    if (len > 0 && m_text[m_pos + len - 1] == '\r') --len;
    line = m_text.substr(m_pos, len);
    m_pos = end == std::string_view::npos ? m_text.size() : end + 1;
    ++m_line;
    return true;
}

bool TagReader::next(Tag& tag) {
    if (m_hasPushed) {
        tag = m_pushed;
        m_hasPushed = false;
        return true;
    }
    std::string_view codeLine;
    // Blank lines between tags are tolerated at the end of a file only.
    if (!nextLine(codeLine)) return false;
    std::size_t a = 0, b = codeLine.size();
    while (a < b && (codeLine[a] == ' ' || codeLine[a] == '\t'))
        ++a;
    while (b > a && (codeLine[b - 1] == ' ' || codeLine[b - 1] == '\t'))
        --b;
    if (a == b) {
        const std::size_t line = m_line;
        std::string_view rest;
        while (nextLine(rest))
            if (rest.find_first_not_of(" \t") != std::string_view::npos)
                throw DxfError(m_source, line, "empty line where a group code should be");
        return false;
    }
    int code = 0;
    auto [end, ec] = std::from_chars(codeLine.data() + a, codeLine.data() + b, code);
    if (ec != std::errc() || end != codeLine.data() + b)
        throw DxfError(m_source, m_line,
                       "group code " + quotedValue(codeLine.substr(a, b - a)) + " is not a number");
    const std::size_t codeAt = m_line;
    std::string_view valueLine;
    if (!nextLine(valueLine))
        throw DxfError(m_source, codeAt,
                       "group code " + std::to_string(code) + " has no value line");
    tag.code = code;
    tag.value.assign(valueLine);
    tag.line = codeAt;
    return true;
}

void TagReader::pushBack(const Tag& tag) {
    m_pushed = tag;
    m_hasPushed = true;
}

void appendTag(std::string& out, int code, std::string_view value) {
    char digits[16];
    const auto [end, ec] = std::to_chars(digits, digits + sizeof digits, code);
    const std::size_t width = static_cast<std::size_t>(end - digits);
    const std::size_t pad = width < 3 ? 3 - width : 0;
    // The two lines in one step: the room is made once, then filled.
    const std::size_t at = out.size();
    out.resize(at + pad + width + value.size() + 2);
    char* p = out.data() + at;
    std::memset(p, ' ', pad);
    p = std::copy(digits, end, p + pad);
    *p++ = '\n';
    // A value never spans lines: a line break inside it would be read as the next group code.
    p = std::replace_copy_if(
        value.begin(), value.end(), p, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    *p = '\n';
}

void TagWriter::put(const std::string& text) {
    // The standard file buffer sends a write of a kilobyte or more straight to the system, with
    // whatever it holds: one system call per solid's text. In smaller pieces the text goes
    // through the stream's buffer, which the system sees when full.
    constexpr std::size_t kPiece = 1000;
    for (std::size_t at = 0; at < text.size(); at += kPiece)
        m_out.write(text.data() + at,
                    static_cast<std::streamsize>(std::min(kPiece, text.size() - at)));
}

void TagWriter::write(int code, const std::string& value) {
    m_buffer.clear();
    if (code == kFormattedGroups)
        m_buffer = value;
    else
        appendTag(m_buffer, code, value);
    put(m_buffer);
}

void TagWriter::write(const Tags& tags) {
    m_buffer.clear();
    for (const Tag& t : tags)
        if (t.code == kFormattedGroups)
            m_buffer += t.value;
        else
            appendTag(m_buffer, t.code, t.value);
    put(m_buffer);
}

void TagWriter::writePoint(int code, double x, double y, double z) {
    writeDouble(code, x);
    writeDouble(code + 10, y);
    writeDouble(code + 20, z);
}

} // namespace dxf
