// SAT from other writers: their bodies read with the right measures; what the host cannot
// represent is kept as raw text and written back unchanged.
#include <fstream>
#include <sstream>

#include "acis_test.h"

namespace acistest {
namespace {

std::string fixture(const std::string& name) {
    std::ifstream in(std::string(QEL_SAT_FIXTURES) + "/" + name, std::ios::binary);
    EXPECT_TRUE(in) << name;
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void replaceFirst(std::string& text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
}

struct SampleCase {
    const char* file;
    double volume;
    Vec3 centroid;
    int faces;
};

TEST(SatSamples, OtherWritersBodiesReadWithTheirMeasures) {
    const SampleCase samples[] = {
        // Seams and sequence-free records, coedges listed before their loops.
        {"cube_sat.txt", 1000.0, {0, 0, 0}, 6},
        // A seam edge on the side, solid-history attributes, an identity transform.
        {"cyl_700.sat", kPi * 100 * 20, {0, 0, 10}, 3},
        // One face with no loop.
        {"sphere_700.sat", 4.0 / 3.0 * kPi * 125, {0, 0, 0}, 1},
    };
    for (const SampleCase& s : samples) {
        SCOPED_TRACE(s.file);
        const Solid solid = solidFromSat(fixture(s.file));
        MassProps props;
        ASSERT_OK(solid.getMassProp(props));
        EXPECT_TRUE(near(s.volume, props.volume, s.volume));
        EXPECT_TRUE(samePoint(s.centroid, props.centroid, std::cbrt(s.volume)));
        EXPECT_EQ(solid.topology().faces, s.faces);
    }
}

TEST(SatSamples, TheBodysTransformPlacesIt) {
    // A quarter turn about Z, twice the size, then 5 along X: rows of the linear part act on
    // row vectors, the translation comes last and is not scaled.
    std::string sat = fixture("cyl_700.sat");
    replaceFirst(sat, "transform $-1 -1 1 0 0 0 1 0 0 0 1 0 0 0 1 no_rotate",
                 "transform $-1 -1 0 1 0 -1 0 0 0 0 1 5 0 0 2 rotate");
    const Solid solid = solidFromSat(sat);
    MassProps props;
    ASSERT_OK(solid.getMassProp(props));
    EXPECT_TRUE(near(8 * kPi * 100 * 20, props.volume, 8 * kPi * 100 * 20));
    EXPECT_TRUE(samePoint({5, 0, 20}, props.centroid, 40));
    Extents box;
    ASSERT_OK(solid.getGeomExtents(box));
    EXPECT_TRUE(samePoint({-15, -20, 0}, box.min, 40, 1e-6));
}

TEST(SatSamples, ReopenedCylinderExplodesIntoTwoCirclesAndASurface) {
    const Solid solid = solidFromSat(fixture("cyl_700.sat"));
    std::vector<Piece> pieces;
    ASSERT_OK(solid.explode(pieces));
    int regions = 0;
    std::vector<Curve> rims;
    for (const Piece& p : pieces) {
        if (std::holds_alternative<Region>(p)) {
            ++regions;
        } else {
            ASSERT_OK(std::get<Surface>(p).explode(rims));
        }
    }
    EXPECT_EQ(regions, 2);
    ASSERT_EQ(rims.size(), 2u);
    for (const Curve& rim : rims) {
        ASSERT_TRUE(std::holds_alternative<CircleCurve>(rim));
        EXPECT_TRUE(near(10.0, std::get<CircleCurve>(rim).radius, 10.0));
    }
}

TEST(SatSamples, UnknownAttributesAndBothStringFormsAreRead) {
    Solid cylinder;
    ASSERT_OK(cylinder.createFrustum(6, 2, 2, 2));
    std::string sat = satOf(cylinder);
    // An attribute of some other application hung on the body, with strings that hold spaces
    // and the record end mark; the convexity of the edges in the plain string form.
    const int records = std::stoi(sat.substr(4));
    replaceFirst(sat, "700 " + std::to_string(records) + " 1 0", "700 0 1 0");
    replaceFirst(sat, "body $-1", "body $" + std::to_string(records));
    replaceFirst(sat, "End-of-ACIS-data",
                 "other-app-attrib $-1 -1 $-1 $-1 $0 @11 two # words 7 @0  3.5 #\n"
                 "End-of-ACIS-data");
    for (auto at = sat.find("@7 unknown"); at != std::string::npos; at = sat.find("@7 unknown"))
        sat.replace(at, 10, "unknown");
    expectSameBody(cylinder, solidFromSat(sat), 6);
}

TEST(SatSamples, WhatTheHostCannotRepresentIsKeptRaw) {
    std::string sat = fixture("sphere_700.sat");
    replaceFirst(sat, "sphere-surface $-1 -1 $-1 0 0 0 5 1 0 0 0 0 1 forward_v I I I I #",
                 "spline-surface $-1 -1 $-1 forward { rotsur straight 0 0 0 { ref 1 } } I I I I #");
    AcDb3dSolid solid;
    ASSERT_EQ(solid.createBox(1, 1, 1), Acad::eOk);
    std::string message, back;
    ASSERT_EQ(acis::entityFromSat(sat, &solid, message), Acad::eOk) << message;
    EXPECT_NE(message.find("spline surface of kind rotsur"), std::string::npos) << message;
    EXPECT_TRUE(solid.isNull()) << "a proxy has no body of the host's";
    ASSERT_EQ(acis::satFromEntity(&solid, back, message), Acad::eOk) << message;
    EXPECT_EQ(back, sat);
    // Building anew replaces the kept text.
    ASSERT_EQ(solid.createSphere(2), Acad::eOk);
    EXPECT_TRUE(solid.rawSat().empty());
    ASSERT_EQ(acis::satFromEntity(&solid, back, message), Acad::eOk) << message;
    EXPECT_NE(back, sat);

    AcDbRegion region;
    ASSERT_EQ(acis::entityFromSat(sat, &region, message), Acad::eOk) << message;
    ASSERT_EQ(acis::satFromEntity(&region, back, message), Acad::eOk) << message;
    EXPECT_EQ(back, sat);
    ASSERT_EQ(region.setBody(polygonRegion({{0, 0}, {1, 0}, {0, 1}})), Acad::eOk);
    EXPECT_TRUE(region.rawSat().empty());
}

} // namespace
} // namespace acistest
