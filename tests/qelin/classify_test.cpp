// The export's classification: what a tag, a class and a solid's geometry make of an entity.
// Entities are imported through the driver, drawn through the database or modelled by the
// host's own commands; the companion module is loaded where its opinion is wanted.
#include "export_fixture.h"

#include "creators/helpers/group_tag.h"
#include "export/entity_dispatch.h"
#include "export/qel_out_object.h"
#include "export/recognise_solids.h"
#include "objectfile/type_codes.h"
#include "records/annotate_record.h"
#include "records/member_record.h"
#include "writers/box_reading.h"

#include <arx/dbblkref.h>
#include <arx/dbdict.h>
#include <arx/dbkept.h>
#include <arx/dbmesh.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Classified {
    bool exportable;
    int type;
};

class Classify : public qelintest::ExportTest {
protected:
    Classified classify(AcDbObjectId id) {
        int type = -99;
        const bool exportable = classifyEntity(m_out, type, id);
        return {exportable, type};
    }
    int code(AcDbObjectId id) {
        const Classified c = classify(id);
        EXPECT_EQ(c.exportable, c.type >= 0);
        return c.type;
    }

    QelOutObject m_out;
};

std::string valveWithAnnotation() {
    return R"({"class": "Valve", "params": [
        ["pose", "object", {"class": "Transformation", "params": [
            ["translation", "double[]", [1, 2, 3]]]}],
        ["coneRadius", "double", 0.2], ["valveLength", "double", 0.6],
        ["stemLength", "double", 0.5], ["handwheelRadius", "double", 0.25],
        ["handwheelOffset", "double", 0.05],
        ["velmoraParam", "object", {"class": "VelmoraParam", "params": [
            ["stemThickness", "double", 0.04], ["handwheelThickness", "double", 0.03]]}],
        ["annotations", "object", {"class": "A", "params": [["Tag", "object",
            {"class": "StrAnnotation", "params": [["value", "string", "V-101"]]}]]}]]})";
}

} // namespace

// The tag answers before any test of the geometry: a cylinder moved, stretched or even turned
// into another shape leaves as a cylinder.
TEST_F(Classify, ATaggedCylinderStaysACylinderHoweverItWasEdited) {
    answer("");
    run(qelintest::oneLayer({R"({"class": "Cylinder", "params": [["radius", "double", 0.5],
                                                      ["height", "double", 2.0]]})"}));
    std::vector<AcDbObjectId> solids;
    for (const AcDbObjectId& id : modelSpace())
        if (is<AcDb3dSolid>(id)) solids.push_back(id);
    ASSERT_EQ(solids.size(), 1u);
    AcDb3dSolid* cylinder = nullptr;
    ASSERT_EQ(acdbOpenObject(cylinder, solids[0], AcDb::kForWrite), Acad::eOk);
    cylinder->transformBy(AcGeMatrix3d::translation(AcGeVector3d(4, 5, 6)) *
                          AcGeMatrix3d::scaling(3.0));
    cylinder->close();
    EXPECT_EQ(code(solids[0]), QelCode::Cylinder);

    const AcDbObjectId ball = solid([](AcDb3dSolid& s) { return s.createSphere(2.0); });
    tag(ball, QelCode::Cylinder);
    EXPECT_EQ(code(ball), QelCode::Cylinder) << "the tag, not the shape";
}

// Four solids and an annotation text: the first solid leaves for the valve, the rest give
// nothing. Once the group is gone, each piece leaves as what its role made it.
TEST_F(Classify, AValveLeavesOnceAndItsExplodedPiecesByTheirRoles) {
    answer("");
    run(qelintest::oneLayer({valveWithAnnotation()}));
    const std::vector<AcDbObjectId> ids = modelSpace();
    ASSERT_EQ(ids.size(), 5u);
    std::vector<int> codes;
    for (const AcDbObjectId& id : ids) {
        const Classified c = classify(id);
        EXPECT_EQ(c.exportable, c.type == QelCode::Valve);
        codes.push_back(c.type);
    }
    EXPECT_EQ(codes, (std::vector<int>{16, -1, -1, -1, -1}));

    // The group removed, as EXPLODE of the group leaves the pieces: cones, stem, hand wheel.
    for (const AcDbObjectId& id : ids) {
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, groupOf(id), AcDb::kForWrite) != Acad::eOk) continue;
        EXPECT_EQ(group->remove(id), Acad::eOk);
        group->close();
    }
    std::map<int, int> byRole;
    for (const AcDbObjectId& id : ids) {
        if (!is<AcDb3dSolid>(id)) continue;
        ads_name name;
        acdbGetAdsName(name, id);
        QelMemberRecord record;
        ASSERT_TRUE(record.Load(name));
        byRole[record.partIndex] = code(id);
    }
    EXPECT_EQ(
        byRole,
        (std::map<int, int>{
            {0, QelCode::Cone}, {1, QelCode::Cone}, {2, QelCode::Torus}, {3, QelCode::Cylinder}}));
}

// Pieces of exploded flanges and tees; a role the fitting doesn't have goes on to the geometry.
TEST_F(Classify, ExplodedFlangesAndTeesLeaveByRoleOrByShape) {
    const AcDbObjectId flangeRing = frustum(1.0, 2.0, 2.0);
    tag(flangeRing, QelCode::PipeFlange, 0);
    const AcDbObjectId flangeNeck = frustum(1.0, 2.0, 1.0);
    tag(flangeNeck, QelCode::PipeFlange, 1);
    const AcDbObjectId flangeOther = solid([](AcDb3dSolid& s) { return s.createBox(1, 2, 3); });
    tag(flangeOther, QelCode::PipeFlange, 5);
    const AcDbObjectId teeBranch = solid([](AcDb3dSolid& s) { return s.createBox(1, 2, 3); });
    tag(teeBranch, QelCode::PipeTee, 7);
    const AcDbObjectId valveOdd = frustum(10.0, 1.0, 1.0);
    tag(valveOdd, QelCode::Valve, 9);

    EXPECT_EQ(code(flangeRing), QelCode::Cylinder);
    EXPECT_EQ(code(flangeNeck), QelCode::Cone);
    EXPECT_EQ(code(flangeOther), QelCode::RectangularBox) << "no role: the box tests";
    EXPECT_EQ(code(teeBranch), QelCode::Cylinder) << "a tee's piece is always a pipe";
    EXPECT_EQ(code(valveOdd), QelCode::Cylinder) << "no role: the valve's geometry is read";
}

// A mesh the import split over several host meshes: once from its reference (the last member),
// else every member, the last one carrying the annotations and telling the log of the split.
TEST_F(Classify, ASplitMeshLeavesOnceWithReferenceAndPerMeshWithout) {
    AcGePoint3dArray grid;
    for (double y : {0.0, 1.0})
        for (double x : {0.0, 1.0})
            grid.append(AcGePoint3d(x, y, 0));
    CString groupName;
    AcDbGroup* group = QelMakeObjectGroup(L"TriMesh", L"QelMesh", groupName);
    ASSERT_NE(group, nullptr);
    std::vector<AcDbObjectId> members;
    for (int i = 0; i < 3; ++i) {
        AcDbEntity* entity = i == 1
                                 ? static_cast<AcDbEntity*>(new AcDbText(AcGePoint3d(), L"Tag: 1"))
                                 : new AcDbPolygonMesh(AcDb::kSimpleMesh, 2, 2, grid);
        members.push_back(add(entity));
        QelGroupAppend(group, members.back());
        if (i != 1) tag(members.back(), QelCode::TriMesh);
    }
    QelCloseGroup(group);
    const AcDbObjectId loose = add(new AcDbPolygonMesh(AcDb::kSimpleMesh, 2, 2, grid));
    tag(loose, QelCode::TriMesh);

    m_out.processMethod = 1;
    QelDocData().meshAnnotationsPending = 0;
    EXPECT_EQ(code(members[0]), -1);
    EXPECT_EQ(code(members[2]), QelCode::TriMesh);
    EXPECT_EQ(QelDocData().meshAnnotationsPending, 0);
    EXPECT_EQ(code(loose), -1) << "a tagged mesh outside its group";

    m_out.processMethod = 0;
    EXPECT_EQ(code(members[0]), QelCode::TriMesh);
    EXPECT_EQ(QelDocData().meshAnnotationsPending, 0) << "only the last member";
    EXPECT_EQ(code(members[2]), QelCode::TriMesh);
    EXPECT_EQ(QelDocData().meshAnnotationsPending, 1);
    EXPECT_NE(logText().find("\n The original imported mesh was split into 2 different\n mesh "
                             "objects, as a mesh object in AutoCAD is limited to 32k\n"),
              std::string::npos)
        << logText();
}

// Thickness decides between a curve and a surface: by its size for curves, by its sign for a
// trace. Untagged entities, so the class answers.
TEST_F(Classify, ThicknessMakesPatchesAndPipes) {
    auto circle = [&](double thickness) {
        auto* c = new AcDbCircle(AcGePoint3d(1, 2, 3), AcGeVector3d::kZAxis, 4.0);
        c->setThickness(thickness);
        return code(add(c));
    };
    EXPECT_EQ(circle(1e-6), QelCode::CircularArc3d);
    EXPECT_EQ(circle(-0.5), QelCode::Pipe);
    EXPECT_EQ(circle(1e-5), QelCode::Pipe) << "at the threshold it counts";
    auto trace = [&](double thickness) {
        auto* t = new AcDbTrace(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0),
                                AcGePoint3d(1, 1, 0));
        t->setThickness(thickness);
        return code(add(t));
    };
    EXPECT_EQ(trace(-0.5), QelCode::AcDbTraceObj) << "a negative thickness counts as none";
    EXPECT_EQ(trace(0.5), QelCode::AcDbTraceObjExtruPatch);
    auto* arc = new AcDbArc(AcGePoint3d(), 1.0, 0.0, 1.0);
    arc->setThickness(-2.0);
    EXPECT_EQ(code(add(arc)), QelCode::CircularArc3dPatch);
    auto* line = new AcDbLine(AcGePoint3d(), AcGePoint3d(1, 1, 1));
    EXPECT_EQ(code(add(line)), QelCode::Line3d);
}

// A polyface mesh in one plane is a face: one face record, or several that fan out of the
// first vertex in vertex order. A vertex a hair off the plane makes it a mesh.
TEST_F(Classify, APolyfaceMeshIsAFaceOnlyWhenFlat) {
    auto mesh = [&](double lift, const std::vector<std::array<int, 4>>& faces) {
        auto* m = new AcDbPolyFaceMesh;
        const AcGePoint3d corners[5] = {{0, 0, 0}, {2, 0, 0}, {2, 2, lift}, {0, 2, 0}, {-1, 1, 0}};
        for (const AcGePoint3d& p : corners)
            m->appendVertex(new AcDbPolyFaceMeshVertex(p));
        for (const auto& f : faces)
            m->appendFaceRecord(new AcDbFaceRecord(f[0], f[1], f[2], f[3]));
        return code(add(m));
    };
    EXPECT_EQ(mesh(0.0, {{1, 2, 3, 4}}), QelCode::Poly3DFace);
    EXPECT_EQ(mesh(2e-6, {{1, 2, 3, 4}}), QelCode::TriMesh);
    EXPECT_EQ(mesh(5e-7, {{1, 2, 3, 4}}), QelCode::Poly3DFace) << "within 1e-6 of the plane";
    EXPECT_EQ(mesh(0.0, {{1, -2, 3, 4}, {1, 4, 5, 0}}), QelCode::Poly3DFace) << "a fan from 1";
    EXPECT_EQ(mesh(0.0, {{2, 3, 4, 1}, {1, 4, 5, 0}}), QelCode::TriMesh) << "not from vertex 1";
    EXPECT_EQ(mesh(0.0, {{1, 3, 2, 4}, {1, 4, 5, 0}}), QelCode::TriMesh) << "not in order";
}

// A point set leaves once, from its marked first point; a loose point is a vertex.
TEST_F(Classify, PointsOfASetLeaveOnceFromTheMarkedPoint) {
    CString groupName;
    AcDbGroup* group = QelMakeObjectGroup(L"POINT_GROUP", L"QelPoints", groupName);
    ASSERT_NE(group, nullptr);
    std::vector<AcDbObjectId> points;
    for (int i = 0; i < 3; ++i) {
        points.push_back(add(new AcDbPoint(AcGePoint3d(i, 0, 0))));
        QelGroupAppend(group, points.back());
    }
    QelCloseGroup(group);
    QelAddXDataById(points[0], L"toviqelpoint"); // the mark, in any case
    QelAddXDataById(points[2], L"ToviQelPoint"); // marked, but not the first
    EXPECT_EQ(code(points[0]), QelCode::Pointset);
    EXPECT_EQ(code(points[1]), -1);
    EXPECT_EQ(code(points[2]), -1);
    EXPECT_EQ(code(add(new AcDbPoint(AcGePoint3d(5, 5, 5)))), QelCode::Vertex3d);
}

// Whether a block reference is worth telling about hangs on the drawing's last block, whatever
// block the reference inserts.
TEST_F(Classify, ABlockReferenceAsksTheLastBlockOfTheDrawing) {
    const AcDbObjectId full = block(L"FULL", {new AcDbLine(AcGePoint3d(), AcGePoint3d(1, 0, 0))});
    const AcDbObjectId insert = add(new AcDbBlockReference(AcGePoint3d(), full));
    const std::size_t mark = win::Transcript::instance().size();
    EXPECT_EQ(code(insert), QelCode::BlockRef);
    block(L"EMPTY");
    const Classified c = classify(insert);
    EXPECT_FALSE(c.exportable);
    EXPECT_EQ(c.type, -1);
    EXPECT_EQ(win::Transcript::instance().printed(mark),
              L"\nThere are no entities within this block.");
}

// Two flat round ends: equal radii (within one percent) make a cylinder, or a flange when the
// ends lie at most half a radius apart; other radii a cone, ends turned apart an elbow.
TEST_F(Classify, SolidsOfRevolutionByTheirEnds) {
    auto revolved = [&](AcDbObjectId id) {
        AcDb3dSolid* s = nullptr;
        EXPECT_EQ(acdbOpenObject(s, id, AcDb::kForRead), Acad::eOk);
        const int result = recogniseRevolved(*s, nullptr);
        s->close();
        return result;
    };
    EXPECT_EQ(revolved(frustum(20.0, 10.0, 10.05)), QelCode::Cylinder);
    EXPECT_EQ(revolved(frustum(5.0, 10.0, 10.05)), QelCode::Flange);
    EXPECT_EQ(revolved(frustum(5.1, 10.0, 10.05)), QelCode::Cylinder);
    EXPECT_EQ(revolved(frustum(20.0, 10.0, 10.2)), QelCode::Cone);
    EXPECT_EQ(revolved(frustum(20.0, 10.0, 0.0)), QelCode::Cone) << "one end, a point";
    EXPECT_EQ(revolved(solid([](AcDb3dSolid& s) { return s.createSphere(3.0); })), -1);
    EXPECT_EQ(revolved(solid([](AcDb3dSolid& s) { return s.createBox(1, 2, 3); })), -1);
    // A quarter of a ring: a disc swept along an arc about the disc's axis of turning.
    const AcDbObjectId elbow = solid([](AcDb3dSolid& s) {
        AcDbCircle rim(AcGePoint3d(10, 0, 0), AcGeVector3d::kYAxis, 2.0);
        AcDbVoidPtrArray curves, regions;
        curves.append(&rim);
        if (AcDbRegion::createFromCurves(curves, regions) != Acad::eOk) return Acad::eInvalidInput;
        auto* disc = static_cast<AcDbRegion*>(regions[0]);
        AcDbArc path(AcGePoint3d::kOrigin, 10.0, 0.0, kPi / 2);
        const Acad::ErrorStatus es = s.extrudeAlongPath(disc, &path);
        delete disc;
        return es;
    });
    EXPECT_EQ(revolved(elbow), QelCode::Elbow);
    // Only the companion confirms an elbow: a cut through its centroid shows no whole rim.
    EXPECT_EQ(code(elbow), QelCode::PlanarPolylineExtrusion);
    loadCompanion();
    EXPECT_EQ(code(elbow), QelCode::Elbow);

    const AcDbObjectId other = frustum(20.0, 10.0, 10.0);
    tag(other, QelCode::Elbow);
    AcDb3dSolid* s = nullptr;
    ASSERT_EQ(acdbOpenObject(s, other, AcDb::kForRead), Acad::eOk);
    ads_name name;
    acdbGetAdsName(name, other);
    QelMemberRecord record;
    record.Load(name);
    EXPECT_EQ(recogniseRevolved(*s, &record), -1) << "a tag of another kind vetoes";
    s->close();
}

// Too small a ball is no sphere by its measures, and goes on to the companion: without it the
// solid is an extrusion, with it a sphere.
TEST_F(Classify, ABallOfVolumeBelowTheThresholdAsksTheCompanion) {
    const double r = std::cbrt(0.0005 / (4.0 / 3.0 * kPi));
    const AcDbObjectId small = solid([&](AcDb3dSolid& s) { return s.createSphere(r); });
    AcDb3dSolid* s = nullptr;
    ASSERT_EQ(acdbOpenObject(s, small, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(recogniseSphere(*s, nullptr));
    s->close();
    const std::size_t mark = win::Transcript::instance().size();
    EXPECT_EQ(code(small), QelCode::PlanarPolylineExtrusion);
    EXPECT_NE(win::Transcript::instance().printed(mark).find(L"\n Error (getting object type)"),
              std::wstring::npos);
    EXPECT_NE(logText().find("\n Error (getting object type)"), std::string::npos);
    loadCompanion();
    EXPECT_EQ(code(small), QelCode::Sphere);

    const AcDbObjectId big = solid([](AcDb3dSolid& s) { return s.createSphere(1.0); });
    ASSERT_EQ(acdbOpenObject(s, big, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(recogniseSphere(*s, nullptr));
    s->close();
}

// What a user models at the command line leaves as its class; a solid none of them fits leaves
// as a polyline extrusion. Without the companion too: the measures and sections suffice.
TEST_F(Classify, HandModelledPrimitivesLeaveAsTheirClasses) {
    for (const bool companion : {false, true}) {
        SCOPED_TRACE(companion ? "with the companion" : "without the companion");
        if (companion) loadCompanion();
        const ads_point a = {1, 2, 0}, b = {4, 6, 2.5}, c = {10, 0, 0};
        EXPECT_EQ(code(command(RTSTR, L"_BOX", RT3DPOINT, a, RT3DPOINT, b)),
                  QelCode::RectangularBox);
        EXPECT_EQ(code(command(RTSTR, L"_BOX", RT3DPOINT, a, RTSTR, L"C", RTREAL, 2.0)),
                  QelCode::RectangularBox);
        EXPECT_EQ(code(command(RTSTR, L"_CYLINDER", RT3DPOINT, c, RTREAL, 1.5, RTREAL, 6.0)),
                  QelCode::Cylinder);
        EXPECT_EQ(code(command(RTSTR, L"_CONE", RT3DPOINT, c, RTREAL, 1.5, RTREAL, 7.0)),
                  QelCode::Cone);
        EXPECT_EQ(code(command(RTSTR, L"_SPHERE", RT3DPOINT, c, RTREAL, 2.0)), QelCode::Sphere);
        EXPECT_EQ(code(command(RTSTR, L"_TORUS", RT3DPOINT, c, RTREAL, 5.0, RTREAL, 1.0)),
                  QelCode::Torus);
        // A wedge: a box sliced along its diagonal.
        const AcDbObjectId wedge = command(RTSTR, L"_BOX", RT3DPOINT, a, RT3DPOINT, b);
        AcDb3dSolid* s = nullptr;
        ASSERT_EQ(acdbOpenObject(s, wedge, AcDb::kForWrite), Acad::eOk);
        AcDb3dSolid* rest = nullptr;
        EXPECT_EQ(s->getSlice(AcGePlane(AcGePoint3d(1, 2, 0), AcGeVector3d(4, -3, 0).normal()),
                              false, rest),
                  Acad::eOk);
        s->close();
        EXPECT_EQ(code(wedge), QelCode::PlanarPolylineExtrusion);
    }
}

// A text leaves as a text of its own, unless it annotates an object or labels a contour.
TEST_F(Classify, TextsOfTheirOwnLeaveAnnotationsAndLabelsDont) {
    const AcDbObjectId plain = add(new AcDbText(AcGePoint3d(), L"Pump room"));
    EXPECT_EQ(code(plain), QelCode::Text);
    const AcDbObjectId annotation = add(new AcDbText(AcGePoint3d(), L"Tag: P-1"));
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, annotation, AcDb::kForRead), Acad::eOk);
    entity->close();
    CAnnotateRecord record(L"Tag", 12);
    EXPECT_TRUE(record.Store(entity));
    EXPECT_EQ(code(annotation), -1);
    const AcDbObjectId label = add(new AcDbText(AcGePoint3d(), L"12.5"));
    tag(label, QelCode::ContourObj);
    EXPECT_EQ(code(label), -1) << "a contour's label outside its group";
}

// The box reading: lengths along the axes of the first face, the centre, right-handed axes;
// anything but six four-sided flat faces is refused.
TEST_F(Classify, ABoxIsReadFromItsFacesWhereverItStands) {
    const AcGeMatrix3d place = AcGeMatrix3d::translation(AcGeVector3d(5, -2, 7)) *
                               AcGeMatrix3d::rotation(0.7, AcGeVector3d(1, 2, 3).normal());
    const AcDbObjectId box = solid([](AcDb3dSolid& s) { return s.createBox(2, 3, 4); }, place);
    QelBoxReading reading;
    ASSERT_TRUE(QelReadBoxFromRegions(box, reading));
    std::vector<double> lengths(reading.lengths, reading.lengths + 3);
    std::sort(lengths.begin(), lengths.end());
    EXPECT_NEAR(lengths[0], 2, 1e-9);
    EXPECT_NEAR(lengths[1], 3, 1e-9);
    EXPECT_NEAR(lengths[2], 4, 1e-9);
    EXPECT_LE(reading.centre.distanceTo(AcGePoint3d(5, -2, 7)), 1e-9);
    EXPECT_NEAR(reading.axes[0].crossProduct(reading.axes[1]).dotProduct(reading.axes[2]), 1.0,
                1e-9);
    // Each length runs along its axis: the box's own axes turned by the placement.
    for (int k = 0; k < 3; ++k) {
        const AcGeVector3d local = place.inverse() * reading.axes[k];
        const double along[3] = {std::fabs(local.x), std::fabs(local.y), std::fabs(local.z)};
        const int axis = int(std::max_element(along, along + 3) - along);
        EXPECT_NEAR(along[axis], 1.0, 1e-9);
        EXPECT_NEAR(reading.lengths[k], 2.0 + axis, 1e-9) << k;
    }
    QelBoxReading refused;
    EXPECT_FALSE(QelReadBoxFromRegions(frustum(2, 1, 1), refused));
    EXPECT_FALSE(
        QelReadBoxFromRegions(add(new AcDbLine(AcGePoint3d(), AcGePoint3d(1, 0, 0))), refused));
}

// What nothing else knows is told by its name; one kind of section shape is known by that alone.
TEST_F(Classify, OtherEntitiesAreKnownByTheirNamesOrTold) {
    EXPECT_EQ(code(add(new AcDbKeptEntity("KS_SHAPE", {}))), QelCode::KS_SHAPE);
    EXPECT_EQ(code(add(new AcDbKeptEntity("ks_shape", {}))), QelCode::KS_SHAPE);
    const std::size_t mark = win::Transcript::instance().size();
    const Classified other = classify(add(new AcDbKeptEntity("WIPEOUT", {})));
    EXPECT_FALSE(other.exportable);
    EXPECT_EQ(other.type, -1);
    EXPECT_EQ(win::Transcript::instance().printed(mark),
              L"\n Error (getting object type)\n Obj name:WIPEOUT");
}
