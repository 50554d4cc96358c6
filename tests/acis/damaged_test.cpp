// Damaged SAT fails with a message that says what is wrong and on which line, and leaves the
// entity as it was.
#include <regex>

#include <arx/dbents.h>

#include "acis_test.h"

namespace acistest {
namespace {

std::string cylinderSat() {
    Solid cylinder;
    EXPECT_STATUS(Status::eOk, cylinder.createFrustum(4, 1, 1, 1));
    return satOf(cylinder);
}

// Line number (1-based) of the first line that starts with `prefix`.
int lineOf(const std::string& sat, const std::string& prefix) {
    int line = 1;
    for (std::size_t at = 0; at < sat.size(); at = sat.find('\n', at) + 1, ++line)
        if (sat.compare(at, prefix.size(), prefix) == 0) return line;
    return 0;
}

// Reading `sat` into a box fails with eInvalidInput, a message holding every one of `parts`,
// and the box untouched.
void expectRefused(const std::string& sat, std::initializer_list<std::string> parts) {
    AcDb3dSolid solid;
    ASSERT_EQ(solid.createBox(1, 2, 3), Acad::eOk);
    std::string message;
    EXPECT_EQ(acis::entityFromSat(sat, &solid, message), Acad::eInvalidInput);
    for (const std::string& part : parts)
        EXPECT_NE(message.find(part), std::string::npos) << "message: " << message;
    EXPECT_TRUE(solid.rawSat().empty());
    MassProps props;
    ASSERT_OK(solid.body().getMassProp(props));
    EXPECT_NEAR(props.volume, 6.0, 1e-9);
}

std::string replaced(std::string text, const std::string& pattern, const std::string& with) {
    return std::regex_replace(text, std::regex(pattern), with,
                              std::regex_constants::format_first_only);
}

TEST(SatDamaged, TruncatedTextNamesWhatIsMissing) {
    const std::string sat = cylinderSat();
    expectRefused(sat.substr(0, sat.find("End-of-ACIS-data")), {"no End-of-ACIS-data"});
    const std::size_t mid = sat.find(" #\nloop") - 3;
    expectRefused(sat.substr(0, mid), {"line " + std::to_string(lineOf(sat, "face")), "face record",
                                       "does not end with '#'"});
    expectRefused("700 0 1 0\n", {"header is truncated"});
    expectRefused("", {"header is truncated"});
    // No cut, at any place, gets through or crashes.
    for (std::size_t n = 0; n < sat.size() - 4; n += 7) {
        AcDb3dSolid solid;
        std::string message;
        EXPECT_EQ(acis::entityFromSat(sat.substr(0, n), &solid, message), Acad::eInvalidInput) << n;
        EXPECT_FALSE(message.empty());
    }
}

TEST(SatDamaged, DanglingAndMistypedReferencesNameRecordAndField) {
    const std::string sat = cylinderSat();
    const std::string loopLine = "line " + std::to_string(lineOf(sat, "loop"));
    expectRefused(replaced(sat, "(\nloop \\$-1 -1 \\$-1 \\$-?\\d+ )\\$\\d+", "$1$$999"),
                  {loopLine, "loop $", "first coedge $999 names no record"});
    expectRefused(replaced(sat, "(\nloop \\$-1 -1 \\$-1 \\$-?\\d+ )\\$\\d+", "$1$$0"),
                  {loopLine, "first coedge $0 is a body, not a coedge"});
    expectRefused(replaced(sat, "(\nloop \\$-1 -1 \\$-1 \\$-?\\d+ )\\$\\d+", "$1x7"),
                  {loopLine, "must be a $ reference, not 'x7'"});
    expectRefused(replaced(sat, "(\npoint \\$-1 -1 \\$-1 )\\S+", "$1nan"),
                  {"line " + std::to_string(lineOf(sat, "point")), "x must be a number"});
    expectRefused(replaced(sat, "(\nface [^#]*) single #", "$1 #"),
                  {"line " + std::to_string(lineOf(sat, "face")), "ends before its sidedness"});
}

TEST(SatDamaged, WrongCountsAndBrokenRings) {
    const std::string sat = cylinderSat();
    expectRefused(replaced(sat, "^700 \\d+ 1 0", "700 3 1 0"),
                  {"line 1", "counts 3 records", "holds"});
    expectRefused(replaced(sat, "^700 (\\d+) 1 0", "700 $1 2 0"), {"counts 2 bodies"});
    expectRefused(replaced(sat, "^700", "seven"), {"line 1", "four whole numbers"});
    // A coedge whose successor does not name it back, and a face list that runs in a circle.
    expectRefused(replaced(sat, "(\ncoedge \\$-1 -1 \\$-1 \\$\\d+ )\\$\\d+", "$1$$0"),
                  {"previous coedge", "is a body"});
    const int firstFace = lineOf(sat, "face") - 4;
    expectRefused(
        replaced(sat, "(\nface \\$-1 -1 \\$-1 )\\$-?\\d+", "$1$$" + std::to_string(firstFace)),
        {"list of faces", "runs in a circle"});
    expectRefused("700 0 1 0\n@1 x\n1 1e-06 1e-10\npoint $-1 -1 $-1 0 0 0 #\nEnd-of-ACIS-data\n",
                  {"no body record"});
}

TEST(SatDamaged, BrokenSplinesNameTheirField) {
    Solid tube;
    ASSERT_OK(tube.extrudeAlongPath(
        circleRegion({0, 0, 0}, {0, 1, 0}, 0.2),
        SplineCurve{2, {{0, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {0, 0, 0, 1, 1, 1}, {}, false}, 0.0));
    const std::string sat = satOf(tube);
    const std::string line = "line " + std::to_string(lineOf(sat, "spline-surface"));
    expectRefused(replaced(sat, "(none none \\d+ \\d+) \\S+", "$1 99"),
                  {line, "spline-surface $", "knots must not decrease"});
    expectRefused(replaced(sat, "(none none) \\d+", "$1 999999"),
                  {line, "u knot count must be a whole number from 0 to"});
    expectRefused(replaced(sat, "nurbs (\\d+) (\\d+)", "nurbs 40 $2"),
                  {line, "degree must be a whole number from 0 to 25"});
    expectRefused(replaced(sat, "forward \\{ exactsur", "forward exactsur"),
                  {line, "must start with '{'"});
    expectRefused(replaced(sat, " 0 0 0 0 0 0 0 F [^#]*#", " #"), {line, "closing brace"});
}

// A solid so far from the origin that its circles' axes round away: refused on writing, never
// written as text that reading refuses.
TEST(SatDamaged, ABodyWhoseCirclesRoundAwayIsNotWritten) {
    AcDb3dSolid far;
    ASSERT_EQ(far.createFrustum(2.0, 1.0, 1.0, 1.0), Acad::eOk);
    ASSERT_EQ(far.transformBy(AcGeMatrix3d::translation({1e20, 1e20, 1e20})), Acad::eOk);
    std::string sat, message;
    const Acad::ErrorStatus written = acis::satFromEntity(&far, sat, message);
    if (written == Acad::eOk) {
        AcDb3dSolid back;
        EXPECT_EQ(acis::entityFromSat(sat, &back, message), Acad::eOk) << message;
    } else {
        EXPECT_NE(message.find("no length"), std::string::npos) << message;
    }
}

TEST(SatDamaged, OtherEntitiesAreRefused) {
    AcDbCircle circle;
    std::string sat, message;
    EXPECT_EQ(acis::satFromEntity(&circle, sat, message), Acad::eWrongObjectType);
    EXPECT_EQ(acis::entityFromSat(cylinderSat(), &circle, message), Acad::eWrongObjectType);
    AcDb3dSolid empty;
    EXPECT_EQ(acis::satFromEntity(&empty, sat, message), Acad::eNotApplicable);
    EXPECT_NE(message.find("empty"), std::string::npos);
    EXPECT_TRUE(sat.empty());
}

} // namespace
} // namespace acistest
