// Valve, Flange and Tee imported through the driver: the solids of each, where they stand and
// how big they are (checked against the formulas of their shapes), their records, texts, group,
// centre lines, and the refusals that are told and counted while the walk goes on. Turned
// valves, the flanges' refusals and the tees' limits are fixtures of tests/fixtures/creators.
#include "fittings_support.h"

#include <cmath>

namespace {

using namespace fittingstest;
using qelintest::FileLayout;

constexpr double kPi = 3.14159265358979323846;
constexpr double kQuarterTurn = 1.5707963705062866;

std::string d(const std::string& name, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    return R"([")" + name + R"(", "double", )" + text + "]";
}
std::string pose(const std::string& translation, const std::string& rotation = "") {
    return R"(["pose", "object", )" + qelintest::transformation(translation, rotation) + "]";
}
std::string withParams(const std::string& cls, const std::vector<std::string>& params) {
    std::string joined;
    for (const std::string& p : params)
        joined += (joined.empty() ? "" : ", ") + p;
    return R"({"class": ")" + cls + R"(", "params": [)" + joined + "]}";
}

struct Frustum {
    double height, base, top;
    double volume() const { return kPi * height / 3 * (base * base + base * top + top * top); }
    // Height of the centroid above the base.
    double centroid() const {
        return height * (base * base + 2 * base * top + 3 * top * top) /
               (4 * (base * base + base * top + top * top));
    }
};

class Fittings : public qelintest::ImportTest {
protected:
    void import(const std::vector<std::string>& objects) {
        answer("");
        run(qelintest::oneLayer(objects, R"("Piping")"));
        m_ids = modelSpaceIds();
    }
    // The entities of model space of one kind, in order.
    template <typename T>
    std::vector<AcDbObjectId> of() const {
        std::vector<AcDbObjectId> out;
        for (const AcDbObjectId& id : m_ids)
            if (Open<T>(id)) out.push_back(id);
        return out;
    }
    void expectSolid(AcDbObjectId id, double volume, const AcGePoint3d& centroid, double size,
                     const char* what) {
        SCOPED_TRACE(what);
        const MassProps mass = massOf(id);
        EXPECT_NEAR(mass.volume, volume, 1e-4 * volume);
        expectNear(mass.centroid, centroid, 1e-4 * size, "centroid");
    }
    void expectLine(AcDbObjectId id, const AcGePoint3d& from, const AcGePoint3d& to, double size) {
        Open<AcDbLine> line(id);
        ASSERT_TRUE(bool(line));
        expectNear(line->startPoint(), from, 1e-9 * size, "from");
        expectNear(line->endPoint(), to, 1e-9 * size, "to");
        EXPECT_EQ(recordOf(id).memberType, 28);
        EXPECT_EQ(xdataOf(id), std::vector<std::wstring>{L"Center Line"});
        EXPECT_TRUE(groupMembersOf(id).empty()) << "centre lines stand outside the group";
    }
    std::vector<AcDbObjectId> m_ids;
};

std::string valve(const std::vector<std::string>& extra, double stemThickness = 0.04,
                  double handwheelThickness = 0.03) {
    std::vector<std::string> params = extra;
    for (const std::string& p :
         {d("coneRadius", 0.2), d("valveLength", 0.6), d("stemLength", 0.5),
          d("handwheelRadius", 0.25), d("handwheelOffset", 0.05),
          R"(["velmoraParam", "object", {"class": "VelmoraParam", "params": [)" +
              d("stemThickness", stemThickness) + ", " +
              d("handwheelThickness", handwheelThickness) + "]}]"})
        params.push_back(p);
    return withParams("Valve", params);
}

// Two cones point to point, the stem up +Y and the wheel on it; a cap at z = L (not at the cone's
// base), the flat one left out of a solid; one record per part, reset for each; the texts in
// the order cone 1, cone 2, stem, hand wheel.
TEST_F(Fittings, AValveStandsAtItsPoseWithItsPartsRecordsAndCap) {
    const double c = 0.2, L = 0.6, S = 0.5, H = 0.25, F = 0.05, T = 0.04, W = 0.03;
    import({valve(
        {pose("[1, 2, 3]"),
         R"(["appearance", "object", {"class": "Appearance", "params": [["diffuseColor", "byte[]", [255, 0, 0]]]}])",
         R"(["cap0", "object", {"class": "FlatCap", "params": []}])",
         R"(["cap1", "object", {"class": "SemiEllipticCap", "params": []}])",
         R"(["annotations", "object", {"class": "A", "params": [["Tag", "object", {"class": "StrAnnotation", "params": [["value", "string", "V-101"]]}]]}])"})});
    const AcGeVector3d at(1, 2, 3);
    const std::vector<AcDbObjectId> solids = of<AcDb3dSolid>();
    ASSERT_EQ(solids.size(), 5u);
    const Frustum cone{L / 2, c, 0.0};
    const double coneZ = L / 2 - cone.centroid(); // the apexes meet at the origin
    expectSolid(solids[0], cone.volume(), AcGePoint3d(0, 0, -coneZ) + at, L, "cone 1");
    expectSolid(solids[1], cone.volume(), AcGePoint3d(0, 0, coneZ) + at, L, "cone 2");
    expectSolid(solids[2], kPi * T * T / 4 * S, AcGePoint3d(0, S / 2, 0) + at, S, "stem");
    expectSolid(solids[3], 2 * kPi * kPi * H * (W / 2) * (W / 2), AcGePoint3d(0, S - F, 0) + at, S,
                "hand wheel");
    expectSolid(solids[4], 2.0 / 3.0 * kPi * c * c * (c / 2),
                AcGePoint3d(0, 0, L + 3.0 / 8.0 * c / 2) + at, L, "semi-elliptic cap at z = L");

    const int parts[4] = {0, 1, 3, 2};
    const wchar_t* texts[4] = {L"Valve", L"Valve", L"Valve_Stem", L"Valve_Hand_Wheel"};
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        const QelMemberRecord r = recordOf(solids[i]);
        EXPECT_EQ(r.memberType, 16);
        EXPECT_EQ(r.partIndex, parts[i]);
        EXPECT_DOUBLE_EQ(r.length, L);
        EXPECT_DOUBLE_EQ(r.radius0, c);
        EXPECT_EQ(r.objectIndex, 0);
        const bool wheel = parts[i] == 2, stem = parts[i] == 3;
        EXPECT_DOUBLE_EQ(r.handwheelRadius, wheel ? H : 0.0);
        EXPECT_DOUBLE_EQ(r.handwheelOffset, wheel ? F : 0.0);
        EXPECT_DOUBLE_EQ(r.handwheelThickness, wheel ? W : 0.0);
        EXPECT_DOUBLE_EQ(r.stemLength, stem ? S : 0.0);
        EXPECT_DOUBLE_EQ(r.stemThickness, stem ? T : 0.0);
        EXPECT_EQ(xdataOf(solids[i]), std::vector<std::wstring>{texts[i]});
        Open<AcDbEntity> entity(solids[i]);
        EXPECT_EQ(entity->colorIndex(), 1);
    }
    EXPECT_EQ(recordOf(solids[4]).memberType, 27);
    ASSERT_EQ(of<AcDbText>().size(), 1u);
    EXPECT_EQ(groupMembersOf(solids[0]).size(), 6u) << "four parts, the cap and the text";
    EXPECT_EQ(m_ids.size(), 6u);
    EXPECT_EQ(errorCount(), 0u);
}

// A valve needs its pose and every size; each refusal has its message, counts, and the walk
// goes on to a valve whose stem has no thickness, which gets one of 0.0001. A part the host
// refuses is told and counted; the parts made stay.
TEST_F(Fittings, ValveRefusalsAreToldAndTheWalkGoesOn) {
    std::string noOffset = valve({pose("[5, 0, 0]")});
    const std::string offset = d("handwheelOffset", 0.05) + ", ";
    noOffset.erase(noOffset.find(offset), offset.size());
    import({valve({}), noOffset, valve({pose("[10, 0, 0]")}, 0.0),
            valve({pose("[20, 0, 0]")}, 0.04, 0.0)});
    const std::string log = logText();
    EXPECT_NE(log.find("\nError getting translation info."), std::string::npos);
    EXPECT_NE(log.find("\nError getting handwheelOffset of valve."), std::string::npos);
    EXPECT_NE(log.find("\nError creating hand wheel of valve."), std::string::npos);
    EXPECT_EQ(errorCount(), 3u);
    const std::vector<AcDbObjectId> solids = of<AcDb3dSolid>();
    ASSERT_EQ(solids.size(), 7u);
    EXPECT_EQ(recordOf(solids[6]).partIndex, 3) << "the wheelless valve ends with its stem";
    const double r = 0.00005, S = 0.5;
    expectSolid(solids[2], kPi * r * r * S, AcGePoint3d(10, S / 2, 0), S, "thin stem");
    EXPECT_DOUBLE_EQ(recordOf(solids[2]).stemThickness, 0.0);
}

std::string flange(const std::string& type, const std::vector<std::string>& params) {
    std::vector<std::string> all = params;
    if (!type.empty()) all.insert(all.begin(), R"(["type", "int", )" + type + "]");
    return withParams("Flange", all);
}

// Type 0 is a disk; type 1 a disk of the larger sizes and no hub; other types a disk and a hub
// from the hub's base radius up to the pipe; a type 2 of equal heights gets a hub of a
// thousandth of the disk. The centre line runs from the origin to the height, outside the group.
TEST_F(Fittings, FlangesOfEachType) {
    import({flange("", {pose("[0, 0, 0]"), d("radius", 0.3), d("height", 0.05)}),
            flange("1", {pose("[2, 0, 0]"), d("radius", 0.2), d("height", 0.08),
                         d("flangeradius", 0.3), d("flangeheight", 0.04)}),
            flange("2", {pose("[4, 0, 0]"), d("radius", 0.1), d("height", 0.2),
                         d("flangeradius", 0.3), d("flangeheight", 0.05)}),
            flange("2", {pose("[6, 0, 0]"), d("radius", 0.0), d("height", 0.05),
                         d("flangeradius", 0.2), d("flangeheight", 0.05)})});
    EXPECT_EQ(errorCount(), 0u);
    const std::vector<AcDbObjectId> solids = of<AcDb3dSolid>();
    const std::vector<AcDbObjectId> lines = of<AcDbLine>();
    ASSERT_EQ(solids.size(), 6u);
    ASSERT_EQ(lines.size(), 4u);
    struct Part {
        Frustum shape;
        double x, z0;
        int index, type;
        const wchar_t* text;
    };
    const double b2 = std::min((0.3 - 0.1) / 3 + 0.1, (0.2 - 0.05) * 0.4 + 0.1);
    const double hub3 = 0.05 * 1.001 - 0.05;
    const double b3 = std::min((0.2 - 0.15) / 3 + 0.15, hub3 * 0.4 + 0.15);
    const Part parts[6] = {
        {{0.05, 0.3, 0.3}, 0, 0, 0, 0, L"PipeFlange"},
        {{0.08, 0.3, 0.3}, 2, 0, 0, 1, L"PipeFlange"},
        {{0.05, 0.3, 0.3}, 4, 0, 0, 2, L"PipeFlange"},
        {{0.15, b2, 0.1}, 4, 0.05, 1, 2, L"PipeFlangee"},
        {{0.05, 0.2, 0.2}, 6, 0, 0, 2, L"PipeFlange"},
        {{hub3, b3, 0.15}, 6, 0.05, 1, 2, L"PipeFlangee"},
    };
    for (int i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        const Part& p = parts[i];
        expectSolid(solids[i], p.shape.volume(), AcGePoint3d(p.x, 0, p.z0 + p.shape.centroid()),
                    0.3, "part");
        const QelMemberRecord r = recordOf(solids[i]);
        EXPECT_EQ(r.memberType, 53);
        EXPECT_EQ(r.partIndex, p.index);
        EXPECT_DOUBLE_EQ(r.radius1, p.type);
        EXPECT_NEAR(r.radius0, p.index == 0 ? p.shape.base : p.shape.top, 1e-12);
        EXPECT_NEAR(r.length, p.shape.height, 1e-12);
        EXPECT_EQ(xdataOf(solids[i]), std::vector<std::wstring>{p.text});
    }
    EXPECT_EQ(groupMembersOf(solids[2]), (std::vector<AcDbObjectId>{solids[2], solids[3]}));
    const double heights[4] = {0.05, 0.08, 0.2, 0.05 * 1.001};
    for (int i = 0; i < 4; ++i)
        expectLine(lines[i], AcGePoint3d(2 * i, 0, 0), AcGePoint3d(2 * i, 0, heights[i]), 1.0);
}

std::string tee(double r, double h, double br, double bh, const std::vector<std::string>& extra) {
    std::vector<std::string> params = extra;
    for (const std::string& p :
         {d("radius", r), d("height", h), d("branchradius", br), d("branchheight", bh)})
        params.push_back(p);
    return withParams("Tee", params);
}

// The run centred on the origin along Z, the branch along +X from its axis; both turned about
// the tee's origin. Centre lines of both, outside the group.
TEST_F(Fittings, ATeeStandsAtItsPoseWithRunBranchAndCentreLines) {
    const double r = 0.1, h = 0.4, br = 0.08, bh = 0.3;
    import({tee(r, h, br, bh, {pose("[1, 1, 1]", "[1, 0, 0, 1.5707963705062866]")})});
    const std::vector<AcDbObjectId> solids = of<AcDb3dSolid>();
    const std::vector<AcDbObjectId> lines = of<AcDbLine>();
    ASSERT_EQ(solids.size(), 2u);
    ASSERT_EQ(lines.size(), 2u);
    // A quarter turn about X takes Z to -Y and leaves X.
    expectSolid(solids[0], kPi * r * r * h, AcGePoint3d(1, 1, 1), h, "run");
    expectSolid(solids[1], kPi * br * br * bh, AcGePoint3d(1 + bh / 2, 1, 1), h, "branch");
    const double s = std::sin(kQuarterTurn), co = std::cos(kQuarterTurn);
    expectLine(lines[0], AcGePoint3d(1, 1 + h / 2 * s, 1 - h / 2 * co),
               AcGePoint3d(1, 1 - h / 2 * s, 1 + h / 2 * co), h);
    expectLine(lines[1], AcGePoint3d(1, 1, 1), AcGePoint3d(1 + bh, 1, 1), h);
    const double radii[2] = {r, br}, lengths[2] = {h, bh};
    for (int i = 0; i < 2; ++i) {
        const QelMemberRecord rec = recordOf(solids[i]);
        EXPECT_EQ(rec.memberType, 54);
        EXPECT_EQ(rec.partIndex, i);
        EXPECT_DOUBLE_EQ(rec.radius0, radii[i]);
        EXPECT_DOUBLE_EQ(rec.length, lengths[i]);
        EXPECT_EQ(xdataOf(solids[i]), std::vector<std::wstring>{L"PipeTee"});
    }
    EXPECT_EQ(groupMembersOf(solids[1]), solids);
}

} // namespace
