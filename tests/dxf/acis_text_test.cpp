// The solid-model text of 3DSOLID and REGION entities, decoded and coded as the file holds it.
#include "../../platform/dxf/src/drawing/acis_text.h"

#include <dxf/raw_document.h>
#include <dxf/tag_io.h>
#include <gtest/gtest.h>

#include "drawing_test.h"

#include <sstream>

namespace {

dxf::Tags groupsOf(const std::string& type) {
    const dxf::RawDocument doc = dxf::readRaw(fixtureText("ezdxf-every-kind.dxf"), "fixture");
    for (const dxf::Record& r : doc.section("ENTITIES")->records)
        if (r.type == type) return r.tags;
    return {};
}

TEST(AcisText, ASolidOfTheFixtureDecodesToItsModelAndCodesBackTheSame) {
    const dxf::Tags tags = groupsOf("3DSOLID");
    const std::string sat = dxf::satFromTags(tags);
    // The header of a model text: version, record count, body count, flag; then the product.
    EXPECT_EQ(sat.substr(0, 4), "700 ");
    EXPECT_NE(sat.find("body "), std::string::npos);
    EXPECT_NE(sat.find("End-of-ACIS-data"), std::string::npos);
    dxf::Tags model;
    for (const dxf::Tag& t : tags)
        if (t.code == 1 || t.code == 3) model.push_back(t);
    EXPECT_EQ(dxf::tagsFromSat(sat), model);
}

TEST(AcisText, CapitalALongLinesAndEveryPrintableCharacterComeBack) {
    std::string line;
    for (char c = ' '; c < 127; ++c)
        line += c;
    const std::string sat = "A @_^ AAA\n" + line + line + line + "\n\n";
    const dxf::Tags tags = dxf::tagsFromSat(sat);
    EXPECT_EQ(tags[0].value, "^  _@A ^ ^ ^ ");
    for (const dxf::Tag& t : tags)
        EXPECT_LE(t.value.size(), 255u);
    EXPECT_EQ(tags[2].code, 3) << "a long line goes on in group 3";
    EXPECT_EQ(dxf::satFromTags(tags), sat);
    // Written out at once, the groups are what the tags give one by one.
    std::ostringstream one, each;
    dxf::TagWriter(one).write(dxf::Tags{{dxf::kFormattedGroups, dxf::formattedSatGroups(sat)}});
    dxf::TagWriter(each).write(tags);
    EXPECT_EQ(one.str(), each.str());
    EXPECT_NE(one.str().find("  3\n"), std::string::npos);
}

} // namespace
