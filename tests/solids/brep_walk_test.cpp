// The boundary walk over solids and regions: faces and their surfaces, loops and their kinds,
// edges with their curves and ends, vertices with their points, and what a walk refuses.
#include "arx/brep.h"
#include "arx/brhost.h"
#include "arx/rxregsvc.h"
#include "entity_test.h"

#include <map>
#include <set>
#include <vector>

namespace entitytest {
namespace {

std::vector<AcBrFace> facesOf(const AcBrBrep& brep) {
    AcBrBrepFaceTraverser it;
    EXPECT_EQ(it.setBrep(brep), AcBr::eOk);
    std::vector<AcBrFace> out;
    for (; !it.done(); it.next()) {
        AcBrFace face;
        EXPECT_EQ(it.getFace(face), AcBr::eOk);
        out.push_back(face);
    }
    return out;
}

std::vector<AcBrLoop> loopsOf(const AcBrFace& face) {
    AcBrFaceLoopTraverser it;
    std::vector<AcBrLoop> out;
    if (it.setFace(face) != AcBr::eOk) return out;
    for (; !it.done(); it.next()) {
        AcBrLoop loop;
        EXPECT_EQ(it.getLoop(loop), AcBr::eOk);
        out.push_back(loop);
    }
    return out;
}

AcGe::EntityId surfaceOf(const AcBrFace& face) {
    AcGe::EntityId kind = AcGe::kNurbCurve3d;
    EXPECT_EQ(face.getSurfaceType(kind), AcBr::eOk);
    return kind;
}

AcBr::LoopType typeOf(const AcBrLoop& loop) {
    AcBr::LoopType type = AcBr::kLoopUnclassified;
    EXPECT_EQ(loop.getType(type), AcBr::eOk);
    return type;
}

AcGePoint3d pointOf(const AcBrVertex& vertex) {
    AcGePoint3d p;
    EXPECT_EQ(vertex.getPoint(p), AcBr::eOk);
    return p;
}

std::vector<AcGePoint3d> cornersOf(const AcBrLoop& loop) {
    AcBrLoopVertexTraverser it;
    EXPECT_EQ(it.setLoop(loop), AcBr::eOk);
    std::vector<AcGePoint3d> out;
    for (; !it.done(); it.next()) {
        AcBrVertex vertex;
        EXPECT_EQ(it.getVertex(vertex), AcBr::eOk);
        out.push_back(pointOf(vertex));
    }
    return out;
}

struct Coedge {
    AcBrEdge edge;
    bool along = true;
    AcGe::EntityId curve = AcGe::kNurbCurve3d;
};

std::vector<Coedge> coedgesOf(const AcBrLoop& loop) {
    AcBrLoopEdgeTraverser it;
    EXPECT_EQ(it.setLoop(loop), AcBr::eOk);
    std::vector<Coedge> out;
    for (; !it.done(); it.next()) {
        Coedge c;
        Adesk::Boolean along = false;
        EXPECT_EQ(it.getEdge(c.edge), AcBr::eOk);
        EXPECT_EQ(it.getEdgeOrientToLoop(along), AcBr::eOk);
        EXPECT_EQ(c.edge.getCurveType(c.curve), AcBr::eOk);
        c.along = along;
        out.push_back(c);
    }
    return out;
}

// For a convex loop, the side about which it turns counter-clockwise.
AcGeVector3d turnOf(const std::vector<AcGePoint3d>& loop) {
    return (loop[1] - loop[0]).crossProduct(loop[2] - loop[1]);
}

// Twice the area a loop in the XY plane encloses, positive counter-clockwise about +Z.
double twiceAreaOf(const std::vector<AcGePoint3d>& loop) {
    double twice = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i)
        twice +=
            loop[i].x * loop[(i + 1) % loop.size()].y - loop[(i + 1) % loop.size()].x * loop[i].y;
    return twice;
}

bool near(const AcGePoint3d& a, const AcGePoint3d& b) {
    return a.distanceTo(b) < 1e-9;
}

TEST(AcBrWalk, MovedBoxLoopsRunTheirEdgesBetweenTheirCornersInTheWorld) {
    auto box = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(box->createBox(4.0, 2.0, 1.0), Acad::eOk);
    AcGeMatrix3d move = AcGeMatrix3d::translation(AcGeVector3d(10, 20, 30)) *
                        AcGeMatrix3d::rotation(0.5, AcGeVector3d::kZAxis, AcGePoint3d::kOrigin);
    ASSERT_EQ(box->transformBy(move), Acad::eOk);
    const AcGePoint3d centre = AcGePoint3d(10, 20, 30);
    AcBrBrep brep;
    ASSERT_EQ(brep.set(*box), AcBr::eOk);
    const std::vector<AcBrFace> faces = facesOf(brep);
    ASSERT_EQ(faces.size(), 6u);
    std::map<std::pair<int, bool>, int> runs; // edge (by first corner seen) and sense
    int coedges = 0;
    for (const AcBrFace& face : faces) {
        EXPECT_EQ(surfaceOf(face), AcGe::kPlane);
        const std::vector<AcBrLoop> loops = loopsOf(face);
        ASSERT_EQ(loops.size(), 1u);
        EXPECT_EQ(typeOf(loops[0]), AcBr::kLoopExterior);
        const std::vector<AcGePoint3d> corners = cornersOf(loops[0]);
        ASSERT_EQ(corners.size(), 4u);
        AcGePoint3d mid(0, 0, 0);
        for (const AcGePoint3d& p : corners) {
            // Every corner is a corner of the moved box: half sizes from its centre.
            AcGePoint3d local = p;
            local.transformBy(move.inverse());
            EXPECT_NEAR(std::abs(local.x), 2.0, 1e-9);
            EXPECT_NEAR(std::abs(local.y), 1.0, 1e-9);
            EXPECT_NEAR(std::abs(local.z), 0.5, 1e-9);
            mid += 0.25 * p.asVector();
        }
        EXPECT_GT(turnOf(corners).dotProduct(mid - centre), 0.0)
            << "loops run counter-clockwise about the outward normal";
        const std::vector<Coedge> run = coedgesOf(loops[0]);
        ASSERT_EQ(run.size(), 4u);
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_EQ(run[k].curve, AcGe::kLineSeg3d);
            AcBrVertex v1, v2;
            ASSERT_EQ(run[k].edge.getVertex1(v1), AcBr::eOk);
            ASSERT_EQ(run[k].edge.getVertex2(v2), AcBr::eOk);
            const AcGePoint3d from = run[k].along ? pointOf(v1) : pointOf(v2);
            const AcGePoint3d to = run[k].along ? pointOf(v2) : pointOf(v1);
            EXPECT_TRUE(near(from, corners[k]));
            EXPECT_TRUE(near(to, corners[(k + 1) % 4]));
            ++coedges;
        }
    }
    EXPECT_EQ(coedges, 24) << "twelve edges, each run once each way";
}

TEST(AcBrWalk, CylinderRimsWindRoundItsSideAndAreOneClosedCircleEach) {
    auto cylinder = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(cylinder->createFrustum(2.0, 1.0, 1.0, 1.0), Acad::eOk);
    AcBrBrep brep;
    ASSERT_EQ(brep.set(*cylinder), AcBr::eOk);
    int planes = 0, sides = 0;
    for (const AcBrFace& face : facesOf(brep)) {
        const AcGe::EntityId kind = surfaceOf(face);
        const std::vector<AcBrLoop> loops = loopsOf(face);
        if (kind == AcGe::kPlane) {
            ++planes;
            ASSERT_EQ(loops.size(), 1u);
            EXPECT_EQ(typeOf(loops[0]), AcBr::kLoopExterior);
        } else {
            ++sides;
            EXPECT_EQ(kind, AcGe::kCylinder);
            ASSERT_EQ(loops.size(), 2u);
            for (const AcBrLoop& loop : loops)
                EXPECT_EQ(typeOf(loop), AcBr::kLoopWinding);
        }
        for (const AcBrLoop& loop : loops) {
            const std::vector<Coedge> run = coedgesOf(loop);
            ASSERT_EQ(run.size(), 1u);
            EXPECT_EQ(run[0].curve, AcGe::kCircArc3d);
            AcBrVertex v1, v2;
            ASSERT_EQ(run[0].edge.getVertex1(v1), AcBr::eOk);
            ASSERT_EQ(run[0].edge.getVertex2(v2), AcBr::eOk);
            EXPECT_TRUE(v1.isEqualTo(&v2)) << "a closed edge starts and ends at one vertex";
            const std::vector<AcGePoint3d> corners = cornersOf(loop);
            ASSERT_EQ(corners.size(), 1u);
            EXPECT_NEAR(std::hypot(corners[0].x, corners[0].y), 1.0, 1e-9);
            EXPECT_NEAR(std::abs(corners[0].z), 1.0, 1e-9);
        }
    }
    EXPECT_EQ(planes, 2);
    EXPECT_EQ(sides, 1);
}

TEST(AcBrWalk, SurfacesOfSpheresToriAndSweptElbows) {
    auto sphere = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(sphere->createSphere(2.0), Acad::eOk);
    auto torus = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(torus->createTorus(5.0, 1.0), Acad::eOk);
    auto elbow = std::make_unique<AcDb3dSolid>();
    {
        auto profile = regionOf({new AcDbCircle(AcGePoint3d(5, 0, 0), AcGeVector3d::kYAxis, 1.0)});
        AcDbArc path(AcGePoint3d::kOrigin, 5.0, 0.0, kPi / 2);
        ASSERT_EQ(elbow->extrudeAlongPath(profile.get(), &path), Acad::eOk);
    }
    auto mitred = std::make_unique<AcDb3dSolid>();
    {
        auto profile = regionOf({new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, 1.0)});
        AcDbPolyline path(3);
        path.addVertexAt(0, AcGePoint2d(0, 0));
        path.addVertexAt(1, AcGePoint2d(10, 0));
        path.addVertexAt(2, AcGePoint2d(10, 10));
        ASSERT_EQ(mitred->extrudeAlongPath(profile.get(), &path), Acad::eOk);
    }
    struct Case {
        const char* name;
        const AcDb3dSolid* solid;
        std::multiset<AcGe::EntityId> surfaces;
        std::set<AcGe::EntityId> curves; // the mitre's ellipse is cut where the seams run
    } cases[] = {
        {"sphere", sphere.get(), {AcGe::kSphere}, {}},
        {"torus", torus.get(), {AcGe::kTorus}, {}},
        {"elbow along an arc",
         elbow.get(),
         {AcGe::kPlane, AcGe::kPlane, AcGe::kTorus},
         {AcGe::kCircArc3d}},
        {"mitred elbow",
         mitred.get(),
         {AcGe::kPlane, AcGe::kPlane, AcGe::kCylinder, AcGe::kCylinder},
         {AcGe::kCircArc3d, AcGe::kCircArc3d, AcGe::kCircArc3d, AcGe::kCircArc3d, AcGe::kEllipArc3d,
          AcGe::kEllipArc3d}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AcBrBrep brep;
        ASSERT_EQ(brep.set(*c.solid), AcBr::eOk);
        std::multiset<AcGe::EntityId> surfaces;
        std::set<AcGe::EntityId> curves;
        for (const AcBrFace& face : facesOf(brep)) {
            surfaces.insert(surfaceOf(face));
            AcBrFaceLoopTraverser loops;
            if (surfaceOf(face) == AcGe::kSphere || surfaceOf(face) == AcGe::kTorus) {
                // A whole sphere or torus has no boundary at all.
                if (c.surfaces.size() == 1) {
                    EXPECT_EQ(loops.setFace(face), AcBr::eDegenerateTopology);
                    EXPECT_TRUE(loops.done());
                    continue;
                }
            }
            for (const AcBrLoop& loop : loopsOf(face)) {
                // The ends of a swept tube wind round its side.
                EXPECT_EQ(typeOf(loop), surfaceOf(face) == AcGe::kPlane ? AcBr::kLoopExterior
                                                                        : AcBr::kLoopWinding);
                for (const Coedge& coedge : coedgesOf(loop))
                    curves.insert(coedge.curve);
            }
        }
        EXPECT_EQ(surfaces, c.surfaces);
        EXPECT_EQ(curves, c.curves);
    }
}

TEST(AcBrWalk, RegionWithAHoleHasAnOuterLoopAndAClockwiseHole) {
    auto region = regionOf({square(0, 0, 10)});
    auto hole = regionOf({square(2, 3, 4)});
    ASSERT_EQ(region->booleanOper(AcDb::kBoolSubtract, hole.get()), Acad::eOk);
    AcBrBrep brep;
    ASSERT_EQ(brep.set(*region), AcBr::eOk);
    const std::vector<AcBrFace> faces = facesOf(brep);
    ASSERT_EQ(faces.size(), 1u);
    EXPECT_EQ(surfaceOf(faces[0]), AcGe::kPlane);
    const std::vector<AcBrLoop> loops = loopsOf(faces[0]);
    ASSERT_EQ(loops.size(), 2u);
    int outer = 0, inner = 0;
    for (const AcBrLoop& loop : loops) {
        const std::vector<AcGePoint3d> corners = cornersOf(loop);
        ASSERT_EQ(corners.size(), 4u);
        const double turn = twiceAreaOf(corners) / 2.0;
        if (typeOf(loop) == AcBr::kLoopExterior) {
            ++outer;
            EXPECT_NEAR(turn, 100.0, 1e-9);
        } else {
            ++inner;
            EXPECT_EQ(typeOf(loop), AcBr::kLoopInterior);
            EXPECT_NEAR(turn, -16.0, 1e-9);
        }
    }
    EXPECT_EQ(outer, 1);
    EXPECT_EQ(inner, 1);
}

TEST(AcBrWalk, TheWalkIsASnapshotThatOutlivesItsEntity) {
    auto box = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(box->createBox(1, 1, 1), Acad::eOk);
    AcBrBrep brep;
    ASSERT_EQ(brep.set(*box), AcBr::eOk);
    box.reset();
    const std::vector<AcBrFace> faces = facesOf(brep);
    ASSERT_EQ(faces.size(), 6u);
    AcBrBrep back;
    ASSERT_EQ(faces[3].getBrep(back), AcBr::eOk);
    EXPECT_TRUE(back.isEqualTo(&brep));
    EXPECT_FALSE(faces[3].isEqualTo(&faces[2]));
    EXPECT_FALSE(faces[3].isEqualTo(&brep)) << "a face is not its body";
    // Another set of the same entity is another snapshot.
    auto again = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(again->createBox(1, 1, 1), Acad::eOk);
    AcBrBrep other;
    ASSERT_EQ(other.set(*again), AcBr::eOk);
    EXPECT_FALSE(other.isEqualTo(&brep));
}

TEST(AcBrWalk, RefusalsAndTraversersPastTheirEnd) {
    AcBrBrep brep;
    AcDbLine line(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
    EXPECT_EQ(brep.set(line), AcBr::eWrongObjectType);
    EXPECT_TRUE(brep.isNull());
    AcDb3dSolid empty;
    EXPECT_EQ(brep.set(empty), AcBr::eMissingTopology);
    EXPECT_TRUE(brep.isNull());

    AcBrBrepFaceTraverser faces;
    EXPECT_EQ(faces.setBrep(brep), AcBr::eUninitialisedObject);
    EXPECT_TRUE(faces.done());
    EXPECT_EQ(faces.next(), AcBr::eUninitialisedObject);
    AcBrFace face;
    EXPECT_EQ(faces.getFace(face), AcBr::eUninitialisedObject);
    AcGe::EntityId kind;
    EXPECT_EQ(face.getSurfaceType(kind), AcBr::eUninitialisedObject);
    AcBrLoopVertexTraverser vertices;
    EXPECT_EQ(vertices.setLoop(AcBrLoop()), AcBr::eUninitialisedObject);

    auto box = std::make_unique<AcDb3dSolid>();
    ASSERT_EQ(box->createBox(1, 1, 1), Acad::eOk);
    ASSERT_EQ(brep.set(*box), AcBr::eOk);
    ASSERT_EQ(faces.setBrep(brep), AcBr::eOk);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(faces.next(), AcBr::eOk);
    EXPECT_TRUE(faces.done());
    EXPECT_EQ(faces.next(), AcBr::eNotApplicable);
    EXPECT_EQ(faces.getFace(face), AcBr::eNotApplicable);
    ASSERT_EQ(faces.restart(), AcBr::eOk);
    EXPECT_FALSE(faces.done());
    EXPECT_EQ(faces.getFace(face), AcBr::eOk);
}

TEST(AcBrWalk, TheHostEntersTheSolidClassesAndTheWalkInTheClassDictionary) {
    auto* classes = AcRxDictionary::cast(acrxSysRegistry()->at(L"ClassDictionary"));
    ASSERT_NE(classes, nullptr);
    EXPECT_FALSE(classes->has(L"AcBrEntity"));
    qelhost::registerSolidClasses();
    ASSERT_TRUE(classes->has(L"AcBrEntity"));
    EXPECT_EQ(classes->at(L"AcBrEntity")->isA(), AcBrEntity::desc());
    EXPECT_TRUE(classes->has(L"AcDb3dSolid"));
    EXPECT_TRUE(classes->has(L"AcDbRegion"));
    EXPECT_TRUE(classes->has(L"AcBrLoopVertexTraverser"));
    EXPECT_TRUE(AcBrFace::desc()->isDerivedFrom(AcBrEntity::desc()));
    const Adesk::UInt32 entries = classes->numEntries();
    qelhost::registerSolidClasses();
    EXPECT_EQ(classes->numEntries(), entries);
}

} // namespace
} // namespace entitytest
