// Reading and writing the tag stream of an ASCII DXF file.
#pragma once

#include <dxf/tags.h>

#include <ostream>
#include <string>
#include <string_view>

namespace dxf {

// Splits DXF text into tags. Accepts LF and CR LF line ends, blanks around group codes, and a
// UTF-8 byte order mark. Refuses binary DXF, a group code that is not a number, and a code line
// without its value line, each with the line number.
class TagReader {
public:
    TagReader(std::string text, std::string source);
    // Reads a text it does not copy, which must outlive the reader.
    TagReader(const std::string* text, std::string source);
    // The reader looks into its text: not copied, not moved.
    TagReader(const TagReader&) = delete;
    TagReader& operator=(const TagReader&) = delete;

    // The next tag, or false at the end of the text.
    bool next(Tag& tag);
    // Puts back the tag just read, so that the next call returns it again.
    void pushBack(const Tag& tag);
    const std::string& source() const { return m_source; }
    std::size_t line() const { return m_line; }

private:
    bool nextLine(std::string_view& line);

    void start();

    std::string m_owned;
    std::string_view m_text;
    std::string m_source;
    std::size_t m_pos = 0;
    std::size_t m_line = 0;
    bool m_hasPushed = false;
    Tag m_pushed;
};

// Writes tags in the layout other programs write: the code right-aligned in three columns, the
// value on the next line, CR LF never (LF only, which every reader accepts).
class TagWriter {
public:
    explicit TagWriter(std::ostream& out) : m_out(out) {}

    void write(int code, const std::string& value);
    void write(const Tag& tag) { write(tag.code, tag.value); }
    // The tags in one write to the stream.
    void write(const Tags& tags);
    void writeDouble(int code, double value) { write(code, formatDouble(value)); }
    void writeInt(int code, long long value) { write(code, std::to_string(value)); }
    void writeHandle(int code, std::uint64_t handle) { write(code, formatHandle(handle)); }
    // A point as its three coordinates under code, code + 10 and code + 20.
    void writePoint(int code, double x, double y, double z);

private:
    void put(const std::string& text);
    std::ostream& m_out;
    std::string m_buffer;
};

// One tag in the layout TagWriter writes, appended to out.
void appendTag(std::string& out, int code, std::string_view value);

} // namespace dxf
