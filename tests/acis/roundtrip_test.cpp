// Every kind of solid the creators make, and regions with holes, go to SAT and come back with
// the same measures and topology.
#include <dxf/drawing.h>
#include <sys/wait.h>
#include <unistd.h>

#include <arx/arx.h>
#include <arx/dbhost.h>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "acis_test.h"

namespace acistest {
namespace {

struct BodyCase {
    const char* name;
    std::function<Solid()> make;
    double size; // of the body, for relative tolerances
    // Mitres cut cylinders in ellipses; the kernel fits their surface curves anew on rebuilding,
    // to about its point resolution, and areas follow those.
    double rel = kRelTol;
};

// A mitre cut by a boolean meets a round pipe's wall in a curve the kernel fits, and both
// bodies' properties integrate over their own fits: to about a hundred thousandth of the size.
constexpr double kMitred = 1e-5;
// Free-form faces come back as their exact B-splines, with surface curves fitted anew; a
// revolved profile is a rational B-spline, measured by the adaptive rule, least exactly near a
// pole (the crown of a cap).
constexpr double kFreeForm = 1e-6;
constexpr double kRationalPole = 2e-7;

Solid built(const std::function<Status(Solid&)>& build) {
    Solid s;
    EXPECT_STATUS(Status::eOk, build(s));
    return s;
}

Solid moved(Solid s) {
    // Off the axes, so that no coordinate is trivially zero.
    EXPECT_STATUS(Status::eOk, s.transformBy(Matrix::rotation(0.7, {1, 2, 3}, {0.5, -1, 2}) *
                                             Matrix::translation({10, -20, 5})));
    return s;
}

Solid minus(Solid a, Solid b) {
    EXPECT_STATUS(Status::eOk, a.booleanOper(BoolOperType::kBoolSubtract, b));
    return a;
}

Solid extruded(const Region& profile, double height) {
    return built([&](Solid& s) { return s.extrude(profile, height, 0.0); });
}

Solid swept(const Region& profile, const Curve& path) {
    return built([&](Solid& s) { return s.extrudeAlongPath(profile, path, 0.0); });
}

// The upper half of a body (z above `z`).
Solid upperHalf(Solid s, double z) {
    EXPECT_STATUS(Status::eOk, s.getSlice(Plane{{0, 0, z}, {0, 0, 1}}, false, nullptr));
    return s;
}

Region plateWithHoles() {
    Region plate = polygonRegion({{0, 0}, {6, 0}, {6, 4}, {0, 4}});
    Region a = circleRegion({1.5, 2, 0}, {0, 0, 1}, 0.8);
    Region b = polygonRegion({{3.5, 1}, {5, 1}, {5, 3}, {3.5, 3}});
    EXPECT_STATUS(Status::eOk, plate.booleanOper(BoolOperType::kBoolSubtract, a));
    EXPECT_STATUS(Status::eOk, plate.booleanOper(BoolOperType::kBoolSubtract, b));
    return plate;
}

PolylineCurve polyline(std::initializer_list<PolylineVertex> vertices, bool closed = false) {
    PolylineCurve p;
    p.vertices = vertices;
    p.closed = closed;
    return p;
}

Region sectionOf(const PolylineCurve& outline) {
    std::vector<Region> regions;
    EXPECT_STATUS(Status::eOk, Region::createFromCurves({outline}, regions));
    EXPECT_EQ(regions.size(), 1u);
    return regions.empty() ? Region() : regions.front();
}

Solid semiEllipticCap() {
    std::vector<Region> profile;
    EXPECT_STATUS(Status::eOk,
                  Region::createFromCurves(
                      {LineCurve{{0, 0, 0}, {2, 0, 0}},
                       EllipseCurve{{0, 0, 0}, {0, 0, 1}, {2, 0, 0}, 0.5, 0.0, 1.5707963705062866},
                       LineCurve{{0, 1, 0}, {0, 0, 0}}},
                      profile));
    return built([&](Solid& s) { return s.revolve(profile.at(0), {0, 0, 0}, {0, 1, 0}, 2 * kPi); });
}

const Region kPipe = circleRegion({3, 0, 0}, {0, 1, 0}, 0.5);

const BodyCase kBodies[] = {
    {"cylinder", [] { return built([](Solid& s) { return s.createFrustum(6, 2, 2, 2); }); }, 6},
    {"cone", [] { return built([](Solid& s) { return s.createFrustum(8, 3, 3, 0); }); }, 8},
    {"frustum", [] { return built([](Solid& s) { return s.createFrustum(3, 2, 2, 1); }); }, 4},
    {"sphere", [] { return built([](Solid& s) { return s.createSphere(3); }); }, 6},
    {"torus", [] { return built([](Solid& s) { return s.createTorus(5, 1); }); }, 12},
    {"box", [] { return built([](Solid& s) { return s.createBox(2, 4, 6); }); }, 6},
    {"moved cylinder",
     [] { return moved(built([](Solid& s) { return s.createFrustum(6, 2, 2, 2); })); }, 6},
    {"moved cone",
     [] { return moved(built([](Solid& s) { return s.createFrustum(3, 1, 1, 0.4); })); }, 3},
    {"moved torus", [] { return moved(built([](Solid& s) { return s.createTorus(4, 1.5); })); },
     11},
    {"standard elbow",
     [] {
         return swept(kPipe, ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0, kPi / 2});
     },
     4},
    {"bevel elbow",
     [] {
         return swept(kPipe, polyline({{3, 0, 0}, {3, 3, 0}, {0, 3, 0}}));
     },
     4, kMitred},
    {"segmented elbow",
     [] {
         return swept(kPipe, polyline({{3, 0, 0}, {3, 2, 0}, {2, 3.2, 0}, {0, 3.6, 0}}));
     },
     4, kMitred},
    {"extrusion with holes", [] { return extruded(plateWithHoles(), 2.5); }, 6},
    {"steel section",
     [] {
         // An I section: flanges 4 x 0.5, web 0.3 thick, 5 high.
         return extruded(sectionOf(polyline({{-2, 0},
                                             {2, 0},
                                             {2, 0.5},
                                             {0.15, 0.5},
                                             {0.15, 4.5},
                                             {2, 4.5},
                                             {2, 5},
                                             {-2, 5},
                                             {-2, 4.5},
                                             {-0.15, 4.5},
                                             {-0.15, 0.5},
                                             {-2, 0.5}},
                                            true)),
                         12);
     },
     12},
    {"rounded section",
     [] {
         // Corners with bulges become cylinders of the extrusion.
         return extruded(sectionOf(polyline({{0, 0, 0},
                                             {3, 0, 0.4142135623730951},
                                             {4, 1, 0},
                                             {4, 3, 1},
                                             {2, 3, 0},
                                             {0, 3, 0}},
                                            true)),
                         2);
     },
     4},
    {"tube by subtraction",
     [] {
         return minus(built([](Solid& s) { return s.createFrustum(4, 1, 1, 1); }),
                      built([](Solid& s) { return s.createFrustum(5, 0.6, 0.6, 0.6); }));
     },
     4},
    {"flat cap", [] { return built([](Solid& s) { return s.createFrustum(0.2, 1.5, 1.5, 1.5); }); },
     3},
    {"hemispheric cap",
     [] { return upperHalf(built([](Solid& s) { return s.createSphere(1.5); }), 0.0); }, 3},
    {"hollow hemispheric cap",
     [] {
         return minus(upperHalf(built([](Solid& s) { return s.createSphere(1.5); }), 0.0),
                      built([](Solid& s) { return s.createSphere(1.3); }));
     },
     3},
    {"semi-elliptic cap", semiEllipticCap, 4, kRationalPole},
    {"tube along a spline",
     [] {
         return swept(
             circleRegion({0, 0, 0}, {0, 1, 0}, 0.2),
             SplineCurve{2, {{0, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {0, 0, 0, 1, 1, 1}, {}, false});
     },
     4, kFreeForm},
    {"spline profile extruded",
     [] {
         std::vector<Region> lens;
         EXPECT_STATUS(Status::eOk, Region::createFromCurves(
                                        {SplineCurve{3,
                                                     {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}},
                                                     {0, 0, 0, 0, 1, 1, 1, 1},
                                                     {},
                                                     false},
                                         LineCurve{{4, 0, 0}, {0, 0, 0}}},
                                        lens));
         return extruded(lens.at(0), 1.5);
     },
     4, kFreeForm},
    {"elliptic cone", [] { return built([](Solid& s) { return s.createFrustum(6, 2, 1, 0); }); }, 6,
     kFreeForm},
    {"exclusion-volume box",
     [] { return moved(built([](Solid& s) { return s.createBox(10, 3, 2.5); })); }, 10},
    {"two lumps",
     [] {
         Solid a = built([](Solid& s) { return s.createBox(1, 1, 1); });
         Solid b = built([](Solid& s) { return s.createSphere(0.5); });
         EXPECT_STATUS(Status::eOk, b.transformBy(Matrix::translation({3, 0, 0})));
         EXPECT_STATUS(Status::eOk, a.booleanOper(BoolOperType::kBoolUnite, b));
         return a;
     },
     4},
};

TEST(SatRoundTrip, EverySolidComesBackTheSame) {
    for (const BodyCase& c : kBodies) {
        SCOPED_TRACE(c.name);
        const Solid original = c.make();
        ASSERT_FALSE(original.isNull());
        const std::string sat = satOf(original);
        const Solid copy = solidFromSat(sat);
        ASSERT_FALSE(copy.isNull()) << sat;
        expectSameBody(original, copy, c.size, c.rel);
    }
}

// The same bodies, and a region with holes, in one drawing: saved through the drawing writer,
// reopened through its reader, each found again by its handle; and the saved file passes a
// third-party reader's strict read and audit.
TEST(SatRoundTrip, EverySolidSavesInADrawingAndReopensTheSame) {
    auto db = std::make_unique<AcDbDatabase>();
    acdbHostApplicationServices()->setWorkingDatabase(db.get());
    std::vector<std::pair<AcDbHandle, const BodyCase*>> saved;
    const auto append = [&](AcDbEntity* entity) {
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(acdbOpenObject(space, db->currentSpaceId(), AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        space->close();
        entity->close();
        return id.handle();
    };
    for (const BodyCase& c : kBodies) {
        auto* solid = new AcDb3dSolid;
        EXPECT_EQ(solid->setBody(c.make()), Acad::eOk) << c.name;
        saved.emplace_back(append(solid), &c);
    }
    auto* plate = new AcDbRegion;
    EXPECT_EQ(plate->setBody(plateWithHoles()), Acad::eOk);
    const AcDbHandle plateHandle = append(plate);

    const std::string path = (std::filesystem::temp_directory_path() /
                              ("qel-solids-" + std::to_string(::getpid()) + ".dxf"))
                                 .string();
    std::string message;
    ASSERT_TRUE(dxf::saveDrawing(*db, path, message)) << message;
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    db.reset();
    std::unique_ptr<AcDbDatabase> reopened = dxf::openDrawing(path, message);
    ASSERT_NE(reopened, nullptr) << message;
    acdbHostApplicationServices()->setWorkingDatabase(reopened.get());
    const auto body = [&](AcDbHandle handle, auto* entity) {
        AcDbObjectId id;
        EXPECT_EQ(reopened->getAcDbObjectId(id, false, handle), Acad::eOk);
        using Entity = std::remove_pointer_t<decltype(entity)>;
        Entity* opened = nullptr;
        EXPECT_EQ(acdbOpenObject(opened, id, AcDb::kForRead), Acad::eOk);
        auto copy = opened ? opened->body() : decltype(opened->body()){};
        if (opened) opened->close();
        return copy;
    };
    for (const auto& [handle, c] : saved) {
        SCOPED_TRACE(c->name);
        expectSameBody(c->make(), body(handle, static_cast<AcDb3dSolid*>(nullptr)), c->size,
                       c->rel);
    }
    const Region copy = body(plateHandle, static_cast<AcDbRegion*>(nullptr));
    EXPECT_TRUE(near(areaOf(plateWithHoles()), areaOf(copy), 36));
    EXPECT_EQ(copy.topology().loops, plateWithHoles().topology().loops);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);

    if (std::system(QEL_PYTHON3 " -c 'import ezdxf' >/dev/null 2>&1") == 0) {
        const std::string audit = QEL_PYTHON3 " " QEL_DXF_REPORT " " + path + " >/dev/null";
        EXPECT_EQ(std::system(audit.c_str()), 0) << "ezdxf's strict read and audit of " << path;
    }
    std::filesystem::remove(path);
}

// A body the SAT writer refuses (an empty solid) stops the save, naming the entity; the file
// saved before stays as it was and no temporary is left.
TEST(SatRoundTrip, ASolidWithNoBodyStopsTheSaveAndKeepsTheOldFile) {
    AcDbDatabase db;
    acdbHostApplicationServices()->setWorkingDatabase(&db);
    const auto folder =
        std::filesystem::temp_directory_path() / ("qel-nobody-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    const std::string path = (folder / "kept.dxf").string();
    std::string message;
    ASSERT_TRUE(dxf::saveDrawing(db, path, message)) << message;
    const auto size = std::filesystem::file_size(path);
    AcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(acdbOpenObject(space, db.currentSpaceId(), AcDb::kForWrite), Acad::eOk);
    auto* empty = new AcDb3dSolid;
    AcDbObjectId id;
    EXPECT_EQ(space->appendAcDbEntity(id, empty), Acad::eOk);
    empty->close();
    space->close();
    EXPECT_FALSE(dxf::saveDrawing(db, path, message));
    EXPECT_NE(message.find("AcDb3dSolid"), std::string::npos) << message;
    EXPECT_NE(message.find("solid model cannot be written"), std::string::npos) << message;
    EXPECT_EQ(std::filesystem::file_size(path), size);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder),
                            std::filesystem::directory_iterator()),
              1);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    std::filesystem::remove_all(folder);
}

TEST(SatRoundTrip, ReopenedElbowKeepsItsEndCircles) {
    const Solid elbow = solidFromSat(
        satOf(swept(kPipe, ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0, kPi / 2})));
    std::vector<Piece> pieces;
    ASSERT_OK(elbow.explode(pieces));
    std::vector<Curve> ends;
    int regions = 0;
    for (const Piece& p : pieces) {
        if (const auto* bend = std::get_if<Surface>(&p)) {
            EXPECT_EQ(bend->description().kind, SurfaceKind::kTorus);
            ASSERT_OK(bend->explode(ends));
        } else {
            ++regions;
        }
    }
    EXPECT_EQ(regions, 2);
    ASSERT_EQ(ends.size(), 2u);
    for (const Curve& end : ends) {
        ASSERT_TRUE(std::holds_alternative<CircleCurve>(end));
        EXPECT_TRUE(near(0.5, std::get<CircleCurve>(end).radius, 0.5));
    }
}

TEST(SatRoundTrip, RegionsWithHolesComeBackTheSame) {
    Region tilted = plateWithHoles();
    ASSERT_OK(tilted.transformBy(Matrix::rotation(1.1, {1, -1, 0.3}, {2, 2, 0})));
    for (const Region& original : {plateWithHoles(), tilted}) {
        const std::string sat = satOf(original);
        EXPECT_NE(sat.find(" double out #"), std::string::npos) << "regions are sheets";
        const Region copy = regionFromSat(sat);
        EXPECT_TRUE(near(areaOf(original), areaOf(copy), 36));
        Vec3 a, b, na, nb;
        ASSERT_OK(original.getCentroid(a));
        ASSERT_OK(copy.getCentroid(b));
        EXPECT_TRUE(samePoint(a, b, 6));
        ASSERT_OK(original.getNormal(na));
        ASSERT_OK(copy.getNormal(nb));
        EXPECT_TRUE(sameDirection(na, nb));
        const TopologyCounts x = original.topology(), y = copy.topology();
        EXPECT_EQ(x.faces, y.faces);
        EXPECT_EQ(x.loops, y.loops);
        EXPECT_EQ(x.edges, y.edges);
        EXPECT_EQ(x.vertices, y.vertices);
    }
}

} // namespace
} // namespace acistest

namespace acistest {
namespace {

int reversedFaces(const std::string& sat) {
    int n = 0;
    for (std::size_t at = sat.find("\nface "); at != std::string::npos;
         at = sat.find("\nface ", at + 1)) {
        const std::string line = sat.substr(at + 1, sat.find('\n', at + 1) - at - 1);
        n += line.ends_with(" reversed single #");
    }
    return n;
}

TEST(SatRoundTrip, FaceSensesFollowTheOutside) {
    // Third-party readers take the sides of faces from their senses alone: a solid's curved
    // faces are reversed exactly where the body lies on the side their normal points to.
    const Matrix mirror{{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
    Solid cylinder, tube, bore, torus;
    ASSERT_OK(cylinder.createFrustum(4, 1, 1, 1));
    ASSERT_OK(tube.createFrustum(4, 1, 1, 1));
    ASSERT_OK(bore.createFrustum(5, 0.5, 0.5, 0.5));
    ASSERT_OK(tube.booleanOper(BoolOperType::kBoolSubtract, bore));
    ASSERT_OK(torus.createTorus(3, 1));
    EXPECT_EQ(reversedFaces(satOf(cylinder)), 0);
    EXPECT_EQ(reversedFaces(satOf(tube)), 1);
    EXPECT_EQ(reversedFaces(satOf(torus)), 0);
    for (Solid* s : {&cylinder, &tube, &torus})
        ASSERT_OK(s->transformBy(mirror));
    EXPECT_EQ(reversedFaces(satOf(cylinder)), 0) << satOf(cylinder);
    EXPECT_EQ(reversedFaces(satOf(tube)), 1);
    EXPECT_EQ(reversedFaces(satOf(torus)), 0);
}

} // namespace
} // namespace acistest
