// The tag stream: what is accepted, what is refused with its line, and how values are written.
#include <dxf/tag_io.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace {

std::vector<dxf::Tag> readAll(const std::string& text) {
    dxf::TagReader in(text, "t.dxf");
    std::vector<dxf::Tag> tags;
    dxf::Tag t;
    while (in.next(t))
        tags.push_back(t);
    return tags;
}

std::string errorOf(const std::string& text) {
    try {
        readAll(text);
    } catch (const dxf::DxfError& e) {
        return e.what();
    }
    return "(accepted)";
}

} // namespace

TEST(TagReader, AcceptsTheLineEndsAndBlanksOfOtherWriters) {
    const auto tags = readAll("\xEF\xBB\xBF  0\r\nSECTION\r\n2\nHEADER\n 10 \n 1.5 \n");
    ASSERT_EQ(tags.size(), 3u);
    EXPECT_EQ(tags[0], (dxf::Tag{0, "SECTION"}));
    EXPECT_EQ(tags[1], (dxf::Tag{2, "HEADER"}));
    EXPECT_EQ(tags[2].code, 10);
    EXPECT_EQ(tags[2].value, " 1.5 ") << "values are kept as written";
    EXPECT_EQ(tags[2].line, 5u);
    EXPECT_EQ(readAll("  0\nEOF\n\n\n").size(), 1u) << "blank lines at the end are harmless";
}

TEST(TagReader, RefusesWhatIsNotATagStreamWithItsLine) {
    EXPECT_EQ(errorOf("SomeCAD Binary DXF\r\n\x1a"),
              "t.dxf, line 1: binary DXF is not supported; save the drawing as ASCII DXF");
    EXPECT_EQ(errorOf("  0\nLINE\n  8x\n0\n"), "t.dxf, line 3: group code '8x' is not a number");
    // A line of garbage is quoted by its start, not written out whole on one line of the message.
    EXPECT_EQ(errorOf("  0\nLINE\n" + std::string(100000, 'x') + "\n0\n"),
              "t.dxf, line 3: group code '" + std::string(40, 'x') + "...' is not a number");
    EXPECT_EQ(errorOf("  0\nLINE\n  8"), "t.dxf, line 3: group code 8 has no value line");
    EXPECT_EQ(errorOf("  0\nLINE\n\n  8\n0\n"),
              "t.dxf, line 3: empty line where a group code should be");
}

TEST(TagValues, NumbersAndHandlesAreChecked) {
    EXPECT_DOUBLE_EQ(dxf::toDouble({40, " 2.5"}, "w"), 2.5);
    EXPECT_EQ(dxf::toInteger({70, "  -3"}, "w"), -3);
    EXPECT_EQ(dxf::toHandle({5, "1aF"}, "w"), 0x1AFu);
    EXPECT_THROW(dxf::toDouble({40, "2.5mm"}, "w"), std::invalid_argument);
    EXPECT_THROW(dxf::toDouble({40, "nan"}, "w"), std::invalid_argument);
    EXPECT_THROW(dxf::toInteger({70, "1.0"}, "w"), std::invalid_argument);
    EXPECT_THROW(dxf::toHandle({5, "12345678901234567"}, "w"), std::invalid_argument);
    EXPECT_THROW(dxf::toHandle({5, ""}, "w"), std::invalid_argument);
    try {
        dxf::toDouble({40, "abc"}, "LINE #2F");
        FAIL();
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "LINE #2F: group 40 value 'abc' is not a number");
    }
    try {
        dxf::toDouble({40, std::string(5000, '7') + "x"}, "w");
        FAIL();
    } catch (const std::invalid_argument& e) {
        EXPECT_EQ(std::string(e.what()),
                  "w: group 40 value '" + std::string(40, '7') + "...' is not a number");
    }
}

TEST(TagValues, DoublesAreWrittenExactlyWithAPoint) {
    EXPECT_EQ(dxf::formatDouble(0.0), "0.0");
    EXPECT_EQ(dxf::formatDouble(-0.0), "0.0");
    EXPECT_EQ(dxf::formatDouble(3.0), "3.0");
    EXPECT_EQ(dxf::formatDouble(0.1), "0.1");
    EXPECT_EQ(dxf::formatDouble(1e300), "1e+300");
    for (double v : {1.0 / 3.0, 6.2831854820251465, -123456.789e-7, 5e-324})
        EXPECT_EQ(dxf::toDouble({40, dxf::formatDouble(v)}, "w"), v) << dxf::formatDouble(v);
    EXPECT_EQ(dxf::formatHandle(0x2fa), "2FA");
    for (double v : {std::nan(""), -double(INFINITY)})
        EXPECT_THROW(dxf::formatDouble(v), std::invalid_argument) << v;
}

TEST(TagWriter, CodesAreRightAlignedAndValuesStayOnOneLine) {
    std::ostringstream out;
    dxf::TagWriter w(out);
    w.write(0, "LINE");
    w.write(999, "comment");
    w.write(1001, "APP");
    w.writePoint(10, 1, 2, 3);
    w.write(1, "two\nlines");
    EXPECT_EQ(out.str(),
              "  0\nLINE\n999\ncomment\n1001\nAPP\n 10\n1.0\n 20\n2.0\n 30\n3.0\n  1\ntwo lines\n");
}

TEST(TagValues, EachCodeRangeHasItsValueType) {
    using dxf::ValueType;
    const std::pair<int, ValueType> cases[] = {
        {-5, ValueType::String},   {-1, ValueType::String},  {0, ValueType::String},
        {5, ValueType::Handle},    {10, ValueType::Double},  {59, ValueType::Double},
        {60, ValueType::Int16},    {90, ValueType::Int32},   {105, ValueType::Handle},
        {160, ValueType::Int64},   {290, ValueType::Bool},   {310, ValueType::Binary},
        {330, ValueType::Handle},  {481, ValueType::Handle}, {999, ValueType::String},
        {1004, ValueType::Binary}, {1071, ValueType::Int32},
    };
    for (const auto& [code, type] : cases)
        EXPECT_EQ(dxf::valueType(code), type) << code;
    // Codes outside every range, at the ends and in the gaps.
    for (int code : {-6, 80, 101, 150, 482, 998, 1072, 5000, -100000, 100000})
        EXPECT_EQ(dxf::valueType(code), ValueType::Unknown) << code;
}
