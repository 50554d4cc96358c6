// Malformed input to every entry point gives a status, never a crash or an exception, and
// leaves the object as it was.
#include "checks.h"

#include <limits>

namespace solidstest {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(Refusals, NonFiniteCurvesMakeNoRegion) {
    const std::vector<Curve> bad = {
        LineCurve{{0, 0, 0}, {kNan, 0, 0}},
        CircleCurve{{0, 0, 0}, {0, 0, 1}, kInf},
        CircleCurve{{kNan, 0, 0}, {0, 0, 1}, 1.0},
        ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 1.0, 0.0, kNan},
        ArcCurve{{0, 0, 0}, {0, 0, 1}, {0, 0, 1}, 1.0, 0.0, 1.0},     // reference along the normal
        EllipseCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 1.5, 0.0, 1.0}, // ratio above 1
        EllipseCurve{{0, 0, 0}, {0, 0, 1}, {0, 0, 0}, 0.5, 0.0, 1.0}, // no major axis
        PolylineCurve{{0, 0, 1}, 0.0, {{0, 0, 0}}, true},             // one vertex
        PolylineCurve{{0, 0, 1}, 0.0, {{0, 0, 0}, {1, 0, kNan}}, true}, // bad bulge
        Polyline3dCurve{{{0, 0, 0}, {0, 0, 0}}, true},                  // no length
        SplineCurve{3,
                    {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}},
                    {0, 0, 0, 0, 1, 1, 1, 1},
                    {1, 1, -1, 1},
                    false},                                              // negative weight
        SplineCurve{1, {{0, 0, 0}, {1, 1, 0}}, {0, 1, 0, 1}, {}, false}, // knots decrease
    };
    for (const Curve& curve : bad) {
        std::vector<Region> regions;
        EXPECT_STATUS(Status::eInvalidInput, Region::createFromCurves({curve}, regions))
            << "curve kind " << curve.index();
        EXPECT_TRUE(regions.empty());
    }
}

TEST(Refusals, SweepsAndCutsWithBadGeometry) {
    Solid s;
    ASSERT_OK(s.createBox(1, 1, 1));
    const Region disc = circleRegion({0, 0, 0}, {0, 0, 1}, 0.5);
    EXPECT_STATUS(Status::eInvalidInput, s.extrude(disc, kNan, 0.0));
    EXPECT_STATUS(Status::eInvalidInput, s.extrude(disc, 1.0, kInf));
    EXPECT_STATUS(Status::eInvalidInput,
                  s.extrudeAlongPath(disc, LineCurve{{0, 0, 0}, {0, 0, kInf}}, 0.0));
    EXPECT_STATUS(Status::eInvalidInput,
                  s.extrudeAlongPath(disc, Polyline3dCurve{{{0, 0, 0}}, false}, 0.0));
    EXPECT_STATUS(Status::eInvalidInput, s.revolve(disc, {kNan, 0, 0}, {0, 1, 0}, kPi));
    EXPECT_STATUS(Status::eInvalidInput, s.revolve(disc, {5, 0, 0}, {0, 1, 0}, kNan));
    EXPECT_STATUS(Status::eInvalidInput, s.getSlice({{0, 0, 0}, {kNan, 0, 1}}, false, nullptr));
    Region section;
    EXPECT_STATUS(Status::eInvalidInput, s.getSection({{kInf, 0, 0}, {0, 0, 1}}, section));
    EXPECT_TRUE(section.isNull());
    EXPECT_VOLUME(s, 1.0, 1.0);
}

TEST(Refusals, EmptyObjectsAnswerNotApplicable) {
    Solid empty, other;
    Region region;
    Surface surface;
    MassProps props;
    double area = 0.0;
    Extents e;
    ASSERT_OK(other.createSphere(1.0));
    EXPECT_STATUS(Status::eNotApplicable, empty.getSection({{0, 0, 0}, {0, 0, 1}}, region));
    EXPECT_STATUS(Status::eNotApplicable, empty.getMassProp(props));
    EXPECT_STATUS(Status::eNotApplicable, region.getArea(area));
    EXPECT_STATUS(Status::eNotApplicable, region.getGeomExtents(e));
    EXPECT_STATUS(Status::eNotApplicable, surface.getArea(area));
    EXPECT_STATUS(Status::eNotApplicable, surface.getGeomExtents(e));
    Vec3 v;
    EXPECT_STATUS(Status::eNotApplicable, region.getNormal(v));
    EXPECT_STATUS(Status::eNotApplicable, region.getCentroid(v));
    EXPECT_STATUS(Status::eNotApplicable, other.revolve(region, {0, 0, 0}, {0, 1, 0}, kPi));
    // Transforming nothing is no error: there is nothing to move.
    EXPECT_STATUS(Status::eOk, empty.transformBy(Matrix::translation({1, 2, 3})));
    EXPECT_STATUS(Status::eOk, surface.transformBy(Matrix::translation({1, 2, 3})));
    EXPECT_EQ(SurfaceKind::kOther, surface.description().kind);
}

} // namespace
} // namespace solidstest
