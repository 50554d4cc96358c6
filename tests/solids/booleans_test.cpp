// Booleans, slices and sections of solids.
#include "checks.h"

namespace solidstest {
namespace {

Solid box(double x, double y, double z, const Vec3& at = {}) {
    Solid s;
    EXPECT_STATUS(Status::eOk, s.createBox(x, y, z));
    EXPECT_STATUS(Status::eOk, s.transformBy(Matrix::translation(at)));
    return s;
}

std::vector<double> circleRadii(const std::vector<Curve>& curves) {
    std::vector<double> radii;
    for (const Curve& c : curves)
        if (const auto* circle = std::get_if<CircleCurve>(&c)) radii.push_back(circle->radius);
    std::sort(radii.begin(), radii.end());
    return radii;
}

TEST(SolidBoolean, TubeBySubtraction) {
    const double r1 = 1.0, r2 = 0.6, h = 4.0;
    Solid tube, bore;
    ASSERT_OK(tube.createFrustum(h, r1, r1, r1));
    ASSERT_OK(bore.createFrustum(h + 1, r2, r2, r2));
    ASSERT_OK(tube.booleanOper(BoolOperType::kBoolSubtract, bore));
    EXPECT_TRUE(bore.isNull());
    EXPECT_VOLUME(tube, kPi * (r1 * r1 - r2 * r2) * h, h);
    EXPECT_AREA(tube, 2 * kPi * (r1 + r2) * h + 2 * kPi * (r1 * r1 - r2 * r2), h);

    // Two annular end regions and the two cylinder walls.
    std::vector<Piece> pieces;
    ASSERT_OK(tube.explode(pieces));
    ASSERT_EQ(4u, pieces.size());
    int regions = 0, cylinders = 0;
    for (const Piece& p : pieces) {
        if (const auto* region = std::get_if<Region>(&p)) {
            ++regions;
            std::vector<Curve> edges;
            ASSERT_OK(region->explode(edges));
            EXPECT_EQ((std::vector<double>{r2, r1}), circleRadii(edges));
        } else if (std::get<Surface>(p).description().kind == SurfaceKind::kCylinder) {
            ++cylinders;
        }
    }
    EXPECT_EQ(2, regions);
    EXPECT_EQ(2, cylinders);
}

TEST(SolidBoolean, UnionMergesFacesAndKeepsDisjointLumps) {
    Solid a = box(2, 2, 2), b = box(2, 2, 2, {1, 0, 0});
    ASSERT_OK(a.booleanOper(BoolOperType::kBoolUnite, b));
    EXPECT_VOLUME(a, 12.0, 3.0);
    EXPECT_EQ(6, a.topology().faces);

    Solid c = box(1, 1, 1), d = box(1, 1, 1, {5, 0, 0});
    ASSERT_OK(c.booleanOper(BoolOperType::kBoolUnite, d));
    EXPECT_EQ(2, c.topology().solids);
    EXPECT_VOLUME(c, 2.0, 1.0);
    EXPECT_CENTROID(c, (Vec3{2.5, 0, 0}), 5.0);
}

TEST(SolidBoolean, EmptyAndSplitResults) {
    Solid a = box(1, 1, 1), far = box(1, 1, 1, {5, 0, 0});
    ASSERT_OK(a.booleanOper(BoolOperType::kBoolIntersect, far));
    EXPECT_TRUE(a.isNull());
    EXPECT_TRUE(far.isNull());

    Solid bar = box(4, 1, 1), cutter = box(1, 2, 2);
    ASSERT_OK(bar.booleanOper(BoolOperType::kBoolSubtract, cutter));
    EXPECT_EQ(2, bar.topology().solids);
    EXPECT_VOLUME(bar, 3.0, 4.0);

    Solid empty, c = box(1, 1, 1);
    EXPECT_STATUS(Status::eNotApplicable, c.booleanOper(BoolOperType::kBoolUnite, empty));
    EXPECT_STATUS(Status::eNotApplicable, empty.booleanOper(BoolOperType::kBoolUnite, c));
    EXPECT_VOLUME(c, 1.0, 1.0);
}

TEST(Slice, KeepsTheSideTheNormalPointsTo) {
    Solid up = box(2, 2, 2), down = box(2, 2, 2), lower;
    ASSERT_OK(up.getSlice({{0, 0, 0.5}, {0, 0, 1}}, true, &lower));
    EXPECT_VOLUME(up, 2.0, 2.0);
    EXPECT_CENTROID(up, (Vec3{0, 0, 0.75}), 2.0);
    EXPECT_VOLUME(lower, 6.0, 2.0);
    EXPECT_CENTROID(lower, (Vec3{0, 0, -0.25}), 2.0);

    ASSERT_OK(down.getSlice({{0, 0, 0.5}, {0, 0, -1}}, false, nullptr));
    EXPECT_VOLUME(down, 6.0, 2.0);
}

TEST(Slice, HemisphericCapKeepsTheHalfOnTheNormalSide) {
    const double r = 1.5;
    Solid cap;
    ASSERT_OK(cap.createSphere(r));
    ASSERT_OK(cap.getSlice({{0, 0, 0}, {0, 0, 1}}, false, nullptr));
    EXPECT_VOLUME(cap, 2 * kPi * r * r * r / 3, r);
    EXPECT_CENTROID(cap, (Vec3{0, 0, 3 * r / 8}), r);
}

TEST(Slice, PlaneMissingTheSolidLeavesItOnOneSide) {
    Solid below = box(1, 1, 1), above = box(1, 1, 1), rest, none;
    ASSERT_OK(below.getSlice({{0, 0, 5}, {0, 0, 1}}, true, &rest));
    EXPECT_TRUE(below.isNull());
    EXPECT_VOLUME(rest, 1.0, 1.0);
    ASSERT_OK(above.getSlice({{0, 0, -5}, {0, 0, 1}}, true, &none));
    EXPECT_VOLUME(above, 1.0, 1.0);
    EXPECT_TRUE(none.isNull());

    EXPECT_STATUS(Status::eInvalidInput, above.getSlice({{0, 0, 0}, {0, 0, 1}}, true, nullptr));
    EXPECT_STATUS(Status::eInvalidInput, above.getSlice({{0, 0, 0}, {0, 0, 0}}, false, nullptr));
    EXPECT_STATUS(Status::eNotApplicable, none.getSlice({{0, 0, 0}, {0, 0, 1}}, false, nullptr));
    EXPECT_VOLUME(above, 1.0, 1.0);
}

TEST(Section, SphereAndTorusCuts) {
    Solid sphere, torus;
    ASSERT_OK(sphere.createSphere(2.0));
    Region disc;
    ASSERT_OK(sphere.getSection({{0, 0, 1}, {0, 0, 1}}, disc));
    EXPECT_AREA(disc, 3 * kPi, 2.0);
    Vec3 normal;
    ASSERT_OK(disc.getNormal(normal));
    EXPECT_TRUE(sameDirection({0, 0, 1}, normal)); // the section faces along the plane's normal
    std::vector<Curve> edges;
    ASSERT_OK(disc.explode(edges));
    ASSERT_EQ(1u, edges.size());
    const auto& circle = std::get<CircleCurve>(edges[0]);
    EXPECT_NEAR(std::sqrt(3.0), circle.radius, 2.0 * kRelTol);
    EXPECT_TRUE(samePoint({0, 0, 1}, circle.center, 2.0));

    // Through the mid plane of a torus: the ring between R - r and R + r.
    ASSERT_OK(torus.createTorus(3.0, 1.0));
    Region ring;
    ASSERT_OK(torus.getSection({{0, 0, 0}, {0, 0, 1}}, ring));
    EXPECT_AREA(ring, kPi * (16 - 4), 4.0);
    ASSERT_OK(ring.explode(edges));
    EXPECT_EQ((std::vector<double>{2.0, 4.0}), circleRadii(edges));

    Region nothing;
    ASSERT_OK(torus.getSection({{0, 0, 7}, {0, 0, 1}}, nothing));
    EXPECT_TRUE(nothing.isNull());
}

} // namespace
} // namespace solidstest
