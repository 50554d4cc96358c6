// Sections and records: a drawing written by another program reads and writes back tag for
// tag, and broken structure is refused with the line where it breaks.
#include <dxf/raw_document.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

std::string fixture(const std::string& name) {
    std::ifstream in(std::string(QEL_FIXTURES) + "/dxf/" + name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string write(const dxf::RawDocument& doc) {
    std::ostringstream out;
    dxf::TagWriter w(out);
    dxf::writeRaw(w, doc);
    return out.str();
}

std::string errorOf(const std::string& text) {
    try {
        dxf::readRaw(text, "t.dxf");
    } catch (const dxf::DxfError& e) {
        return e.what();
    }
    return "(accepted)";
}

} // namespace

TEST(RawDocument, AnotherProgramsDrawingRoundTripsTagForTag) {
    const std::string text = fixture("ezdxf-every-kind.dxf");
    const dxf::RawDocument doc = dxf::readRaw(text, "ezdxf-every-kind.dxf");
    EXPECT_TRUE(doc.warnings.empty());
    std::vector<std::string> names;
    for (const auto& s : doc.sections)
        names.push_back(s.name);
    EXPECT_EQ(names, (std::vector<std::string>{"HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES",
                                               "OBJECTS"}));

    const dxf::RawDocument again = dxf::readRaw(write(doc), "again");
    ASSERT_EQ(again.sections.size(), doc.sections.size());
    for (std::size_t i = 0; i < doc.sections.size(); ++i) {
        const auto& a = doc.sections[i];
        const auto& b = again.sections[i];
        EXPECT_EQ(a.leading, b.leading) << a.name;
        ASSERT_EQ(a.records.size(), b.records.size()) << a.name;
        for (std::size_t r = 0; r < a.records.size(); ++r) {
            EXPECT_EQ(a.records[r].type, b.records[r].type);
            EXPECT_EQ(a.records[r].tags, b.records[r].tags) << a.name << " record " << r;
        }
    }
}

TEST(RawDocument, EveryValueOfARealDrawingHasTheTypeItsCodeSays) {
    const dxf::RawDocument doc = dxf::readRaw(fixture("ezdxf-every-kind.dxf"), "f");
    std::size_t checked = 0;
    auto check = [&](const dxf::Tag& t) {
        const std::string where = "line " + std::to_string(t.line);
        switch (dxf::valueType(t.code)) {
        case dxf::ValueType::Double:
            EXPECT_NO_THROW(dxf::toDouble(t, where)) << where;
            break;
        case dxf::ValueType::Int16:
        case dxf::ValueType::Int32:
        case dxf::ValueType::Int64:
        case dxf::ValueType::Bool:
            EXPECT_NO_THROW(dxf::toInteger(t, where)) << where;
            break;
        case dxf::ValueType::Handle:
            EXPECT_NO_THROW(dxf::toHandle(t, where)) << where;
            break;
        case dxf::ValueType::Unknown:
            ADD_FAILURE() << "group code " << t.code << " at " << where;
            break;
        default:
            break;
        }
        ++checked;
    };
    for (const auto& s : doc.sections) {
        for (const auto& t : s.leading)
            check(t);
        for (const auto& r : s.records)
            for (const auto& t : r.tags)
                check(t);
    }
    EXPECT_GT(checked, 4000u);
}

TEST(RawDocument, HeaderVariablesKeepTheirValues) {
    const dxf::RawDocument doc = dxf::readRaw(fixture("ezdxf-every-kind.dxf"), "f");
    const auto vars = dxf::headerVariables(*doc.section("HEADER"));
    ASSERT_FALSE(vars.empty());
    EXPECT_EQ(vars[0].name, "$ACADVER");
    EXPECT_EQ(vars[0].values, (dxf::Tags{{1, "AC1024"}}));
    bool sawUcsOrigin = false;
    for (const auto& v : vars)
        if (v.name == "$UCSORG") {
            sawUcsOrigin = true;
            ASSERT_EQ(v.values.size(), 3u);
            EXPECT_EQ(dxf::toDouble(v.values[1], "y"), 2.0);
        }
    EXPECT_TRUE(sawUcsOrigin);
}

TEST(RawDocument, BrokenStructureIsRefusedWithItsLine) {
    EXPECT_EQ(errorOf("  0\nLINE\n  0\nEOF\n"), "t.dxf, line 1: expected 0/SECTION, found 0/LINE");
    EXPECT_EQ(errorOf("  0\nSECTION\n  9\nHEADER\n"),
              "t.dxf, line 1: a SECTION must be followed by its name (group 2)");
    EXPECT_EQ(errorOf("  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n"),
              "t.dxf, line 1: section ENTITIES is not closed: the file ends before its ENDSEC");
    EXPECT_EQ(errorOf("  0\nSECTION\n  2\nENTITIES\n  0\nSECTION\n"),
              "t.dxf, line 5: section ENTITIES is not closed (found 0/SECTION before its ENDSEC)");
    EXPECT_EQ(errorOf("  0\nSECTION\n  2\nA\n  0\nENDSEC\n  0\nSECTION\n  2\nA\n  0\nENDSEC\n"),
              "t.dxf, line 9: section A appears twice");
}

TEST(RawDocument, TolerancesAreSaidNotHidden) {
    const auto noEof = dxf::readRaw("  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n", "t.dxf");
    ASSERT_EQ(noEof.warnings.size(), 1u);
    EXPECT_EQ(noEof.warnings[0], "t.dxf: the file has no EOF marker; read up to its end");
    const auto trailing = dxf::readRaw("  0\nEOF\n  0\nLINE\n", "t.dxf");
    ASSERT_EQ(trailing.warnings.size(), 1u);
    EXPECT_EQ(trailing.warnings[0], "t.dxf, line 3: text after the EOF marker was ignored");
}
