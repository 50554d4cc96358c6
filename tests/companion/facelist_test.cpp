// getPolyPlanerExtru: the faces of solids and regions bounded by planes, each face one outline
// running counter-clockwise about its outward normal; an empty reply for anything curved.
#include "companion_test.h"
#include "solids.h"

namespace companiontest {
namespace {

AcGePoint3d at(const AcGePoint2d& p, double z) {
    return {p.x, p.y, z};
}

// The faces of a prism over the outline (counter-clockwise about +Z) and its holes
// (clockwise), from z0 up to z1: walls from each edge, a -> b -> b up -> a up.
std::vector<Outline> walls(const std::vector<std::vector<AcGePoint2d>>& loops, double z0,
                           double z1) {
    std::vector<Outline> out;
    for (const auto& loop : loops)
        for (std::size_t i = 0; i < loop.size(); ++i) {
            const AcGePoint2d& a = loop[i];
            const AcGePoint2d& b = loop[(i + 1) % loop.size()];
            out.push_back({at(a, z0), at(b, z0), at(b, z1), at(a, z1)});
        }
    return out;
}

Outline flat(const std::vector<AcGePoint2d>& loop, double z, bool reversed) {
    Outline out;
    for (const AcGePoint2d& p : loop)
        out.push_back(at(p, z));
    if (reversed) std::reverse(out.begin(), out.end());
    return out;
}

class FaceList : public Companion {
protected:
    std::vector<Outline> facesOf(AcDbEntity* entity) {
        const Answer answer = call(L"getPolyPlanerExtru", add(entity));
        EXPECT_EQ(answer.status, RTNORM);
        return faceListOf(answer.list.get());
    }
    // One face with one hole, its outline taken apart and checked against the loops.
    void expectBridged(const Outline& face, const Outline& outer, const Outline& hole) {
        EXPECT_EQ(face.size(), outer.size() + hole.size() + 2);
        EXPECT_FALSE(crossesItself(face)) << "the bridge runs inside the face";
        const Apart apart = takeApart(face);
        EXPECT_TRUE(sameLoop(apart.outer, outer));
        EXPECT_TRUE(sameLoop(apart.hole, hole));
    }
};

TEST_F(FaceList, ARotatedAndMovedBoxGivesItsSixFacesInTheWorld) {
    const AcGeMatrix3d place =
        AcGeMatrix3d::translation(AcGeVector3d(5, -3, 7)) *
        AcGeMatrix3d::rotation(0.7, AcGeVector3d(1, 1, 1).normal(), AcGePoint3d::kOrigin);
    const std::vector<Outline> faces = facesOf(box(4, 2, 1, place));
    // The faces of the box about its centre: on each axis k at -half and +half, the corners
    // counter-clockwise about the outward normal.
    const double half[3] = {2, 1, 0.5};
    std::vector<Outline> expected;
    for (int k = 0; k < 3; ++k)
        for (double sense : {-1.0, 1.0}) {
            const int i = (k + 1) % 3, j = (k + 2) % 3;
            Outline face;
            for (auto [si, sj] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}) {
                AcGePoint3d p;
                p[k] = sense * half[k];
                p[i] = si * half[i];
                p[j] = sj * half[j];
                face.push_back(place * p);
            }
            if (sense < 0) std::reverse(face.begin(), face.end());
            expected.push_back(face);
        }
    expectFaces(faces, expected);
}

TEST_F(FaceList, AnExtrudedPolygonGivesItsTwoCapsAndItsSides) {
    const std::vector<AcGePoint2d> gon = regularPolygon(12, 5.0);
    const std::vector<Outline> faces = facesOf(extrusion(region(polygon(gon)), 3.0));
    std::vector<Outline> expected = walls({gon}, 0.0, 3.0);
    expected.push_back(flat(gon, 3.0, false));
    expected.push_back(flat(gon, 0.0, true));
    expectFaces(faces, expected);
    // The reader takes a cap for the base: its corners make as many sides as faces less two.
    ASSERT_EQ(faces.size(), 14u);
}

TEST_F(FaceList, AnExtrusionWithAHoleGivesCapsWithTheHoleJoinedIn) {
    const std::vector<AcGePoint2d> outer = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    // The hole runs clockwise about +Z, as the cap's hole does.
    const std::vector<AcGePoint2d> hole = {{2, 3}, {2, 7}, {6, 7}, {6, 3}};
    const std::vector<Outline> faces =
        facesOf(extrusion(region(polygon(outer), {polygon(hole)}), 2.0));
    ASSERT_EQ(faces.size(), 10u);
    std::vector<Outline> sides, caps;
    for (const Outline& face : faces)
        (face.size() == 4 ? sides : caps).push_back(face);
    expectFaces(sides, walls({outer, hole}, 0.0, 2.0));
    ASSERT_EQ(caps.size(), 2u);
    if (caps[0][0].z > caps[1][0].z) std::swap(caps[0], caps[1]);
    expectBridged(caps[1], flat(outer, 2.0, false), flat(hole, 2.0, false));
    expectBridged(caps[0], flat(outer, 0.0, true), flat(hole, 0.0, true));
    EXPECT_NEAR(twiceArea(caps[1]), 2 * (100.0 - 16.0), 1e-9);
    EXPECT_NEAR(twiceArea(caps[0]), -2 * (100.0 - 16.0), 1e-9);
}

TEST_F(FaceList, ARegionWithAHoleIsOneOutlineWithTheHoleJoinedIn) {
    // An L whose hole sits in its foot, beside the inner corner.
    const std::vector<AcGePoint2d> outline = {{0, 0}, {12, 0}, {12, 4}, {4, 4}, {4, 10}, {0, 10}};
    const std::vector<AcGePoint2d> hole = {{5, 1}, {5, 3}, {9, 3}, {9, 1}};
    const std::vector<Outline> faces = facesOf(region(polygon(outline), {polygon(hole)}));
    ASSERT_EQ(faces.size(), 1u);
    expectBridged(faces[0], flat(outline, 0.0, false), flat(hole, 0.0, false));
    EXPECT_NEAR(twiceArea(faces[0]), 2 * (12 * 4 + 4 * 6 - 8.0), 1e-9);
}

TEST_F(FaceList, ARegionInTwoPiecesGivesOneOutlinePerPiece) {
    const std::vector<AcGePoint2d> left = {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    const std::vector<AcGePoint2d> right = {{5, 0}, {8, 0}, {8, 1}, {5, 1}};
    AcDbRegion* both = region(polygon(left));
    AcDbRegion* other = region(polygon(right));
    ASSERT_EQ(both->booleanOper(AcDb::kBoolUnite, other), Acad::eOk);
    delete other;
    expectFaces(facesOf(both), {flat(left, 0.0, false), flat(right, 0.0, false)});
}

TEST_F(FaceList, CurvedFacesAndEdgesAndOtherEntitiesGetAnEmptyReply) {
    const struct {
        const char* what;
        AcDbEntity* entity;
    } cases[] = {
        {"sphere", sphere(1.0)},
        {"torus", torus(5.0, 1.0)},
        {"mitred elbow", mitredElbow(1.0)},
        {"cylinder", cylinder(1.0, 2.0)},
        {"hemisphere", hemisphere(1.0)},
        {"round region", disc(1.0)},
        {"line", new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0))},
        {"empty solid", new AcDb3dSolid},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Answer answer = call(L"getPolyPlanerExtru", add(c.entity));
        EXPECT_EQ(answer.status, RTNORM);
        EXPECT_EQ(answer.list, nullptr);
    }
}

} // namespace
} // namespace companiontest
