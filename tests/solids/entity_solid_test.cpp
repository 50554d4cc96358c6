// The 3-D solid entity: builders, mass properties, slices, sections, booleans, explode,
// transforms and its life in the database.
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "convert.h"
#include "entity_test.h"

using namespace entitytest;

namespace {

struct BuilderCase {
    const char* name;
    std::function<Acad::ErrorStatus(AcDb3dSolid&)> build;
    double volume;
    AcGePoint3d centroid;
};

const BuilderCase kBuilders[] = {
    {"cylinder", [](AcDb3dSolid& s) { return s.createFrustum(6, 2, 2, 2); }, kPi * 4 * 6, {}},
    // Cone: apex at +h/2, centroid a quarter of the height above the base.
    {"cone",
     [](AcDb3dSolid& s) { return s.createFrustum(8, 3, 3, 0); },
     kPi * 9 * 8 / 3,
     {0, 0, -4 + 2}},
    {"elliptic cone",
     [](AcDb3dSolid& s) { return s.createFrustum(6, 2, 1, 0); },
     kPi * 2 * 1 * 6 / 3,
     {0, 0, -3 + 1.5}},
    // Frustum of radii 2 and 1, height 3: pi h (R^2 + R r + r^2) / 3.
    {"frustum",
     [](AcDb3dSolid& s) { return s.createFrustum(3, 2, 2, 1); },
     kPi * 3 * 7 / 3,
     {0, 0, -1.5 + 3 * (4 + 2 * 2 + 3 * 1) / (4 * 7.0)}},
    {"box", [](AcDb3dSolid& s) { return s.createBox(2, 4, 6); }, 48, {}},
    {"sphere", [](AcDb3dSolid& s) { return s.createSphere(3); }, 4 * kPi * 27 / 3, {}},
    {"torus", [](AcDb3dSolid& s) { return s.createTorus(5, 1); }, 2 * kPi* kPi * 5, {}},
};

TEST(SolidEntity, EveryBuilderGivesTheClosedFormVolumeAndCentroid) {
    for (const BuilderCase& c : kBuilders) {
        SCOPED_TRACE(c.name);
        AcDb3dSolid solid;
        EXPECT_EQ(solid.setRecordHistory(true), Acad::eOk);
        EXPECT_TRUE(solid.recordHistory());
        ASSERT_EQ(c.build(solid), Acad::eOk);
        const Mass m = massOf(solid);
        EXPECT_NEAR(m.volume, c.volume, 1e-6 * c.volume);
        expectNear(m.centroid, c.centroid, 1e-5);
    }
}

TEST(SolidEntity, BuildersAreCentredOnTheOrigin) {
    AcDb3dSolid box;
    ASSERT_EQ(box.createBox(2, 4, 6), Acad::eOk);
    expectExtents(box, {-1, -2, -3}, {1, 2, 3}, 1e-7);
    AcDb3dSolid cylinder;
    ASSERT_EQ(cylinder.createFrustum(6, 2, 2, 2), Acad::eOk);
    expectExtents(cylinder, {-2, -2, -3}, {2, 2, 3}, 1e-6);
}

TEST(SolidEntity, TorusWithMinorNotBelowMajorIsTheSpaceTheTubeSweeps) {
    AcDb3dSolid torus;
    ASSERT_EQ(torus.createTorus(1, 2), Acad::eOk);
    const Mass m = massOf(torus);
    // The part of the generating circle beyond the axis adds to the volume instead of taking
    // away as in 2 pi^2 R r^2: integrating 2 pi x over the circle's part with x >= 0 gives
    // 16 pi^2 / 3 + 6 sqrt(3) pi for R = 1, r = 2.
    const double swept = 16 * kPi * kPi / 3 + 6 * std::sqrt(3.0) * kPi;
    EXPECT_NEAR(m.volume, swept, 1e-6 * swept);
    expectNear(m.extents.minPoint(), {-3, -3, -2}, 1e-6);
}

TEST(SolidEntity, RefusedInputGivesAStatusAndLeavesTheSolid) {
    AcDb3dSolid solid;
    ASSERT_EQ(solid.createBox(1, 1, 1), Acad::eOk);
    EXPECT_EQ(solid.createFrustum(-1, 1, 1, 1), Acad::eInvalidInput);
    EXPECT_EQ(solid.createBox(0, 1, 1), Acad::eInvalidInput);
    EXPECT_EQ(solid.createSphere(-2), Acad::eInvalidInput);
    EXPECT_EQ(solid.createTorus(5, 0), Acad::eInvalidInput);
    EXPECT_EQ(solid.extrude(nullptr, 1), Acad::eInvalidInput);
    EXPECT_NEAR(massOf(solid).volume, 1.0, 1e-9);

    AcDb3dSolid empty;
    double area = 0.0;
    EXPECT_EQ(empty.getArea(area), Acad::eNotApplicable);
    AcDbVoidPtrArray pieces;
    EXPECT_NE(empty.explode(pieces), Acad::eOk);
    EXPECT_EQ(pieces.length(), 0);
}

TEST(SolidEntity, MassPropertiesOfAnOffsetBoxAreAboutTheWorldAxes) {
    AcDb3dSolid box;
    ASSERT_EQ(box.createBox(2, 4, 6), Acad::eOk);
    ASSERT_EQ(box.transformBy(AcGeMatrix3d::translation({10, 0, 0})), Acad::eOk);
    const Mass m = massOf(box);
    // About the centroid: m (b^2 + c^2) / 12 and so on; the offset adds m d^2 off the X axis.
    EXPECT_NEAR(m.moments[0], 48 * (16 + 36) / 12.0, 1e-6);
    EXPECT_NEAR(m.moments[1], 48 * (4 + 36) / 12.0 + 48 * 100, 1e-6);
    EXPECT_NEAR(m.moments[2], 48 * (4 + 16) / 12.0 + 48 * 100, 1e-6);
    for (double p : m.products)
        EXPECT_NEAR(p, 0.0, 1e-6);
    EXPECT_NEAR(m.principal[0], 80, 1e-6);
    EXPECT_NEAR(m.principal[1], 160, 1e-6);
    EXPECT_NEAR(m.principal[2], 208, 1e-6);
    EXPECT_NEAR(std::abs(m.axes[0].z), 1.0, 1e-9);
    EXPECT_NEAR(std::abs(m.axes[2].x), 1.0, 1e-9);
    EXPECT_NEAR(m.gyration[1], std::sqrt(m.moments[1] / 48), 1e-9);
    expectNear(m.extents.minPoint(), {9, -2, -3}, 1e-7);
}

TEST(SolidEntity, SliceKeepsTheSideTheNormalPointsTo) {
    AcDb3dSolid box;
    ASSERT_EQ(box.createBox(2, 2, 2), Acad::eOk);
    AcDb3dSolid* negHalf = nullptr;
    ASSERT_EQ(box.getSlice(AcGePlane({0, 0, 0.5}, {0, 0, 1}), true, negHalf), Acad::eOk);
    ASSERT_NE(negHalf, nullptr);
    std::unique_ptr<AcDb3dSolid> owned(negHalf);
    EXPECT_NEAR(massOf(box).volume, 2.0, 1e-9);
    EXPECT_NEAR(massOf(box).centroid.z, 0.75, 1e-9);
    EXPECT_NEAR(massOf(*negHalf).volume, 6.0, 1e-9);
    EXPECT_NEAR(massOf(*negHalf).centroid.z, -0.25, 1e-9);

    AcDb3dSolid sphere;
    ASSERT_EQ(sphere.createSphere(1), Acad::eOk);
    AcDb3dSolid* none = &sphere;
    ASSERT_EQ(sphere.getSlice(AcGePlane({0, 0, 0}, {0, -1, 0}), false, none), Acad::eOk);
    EXPECT_EQ(none, nullptr);
    const Mass hemisphere = massOf(sphere);
    EXPECT_NEAR(hemisphere.volume, 2 * kPi / 3, 1e-6);
    EXPECT_NEAR(hemisphere.centroid.y, -3.0 / 8.0, 1e-6);
}

TEST(SolidEntity, SectionIsARegionTheCallerOwns) {
    AcDb3dSolid sphere;
    ASSERT_EQ(sphere.createSphere(2), Acad::eOk);
    AcDbRegion* section = nullptr;
    ASSERT_EQ(sphere.getSection(AcGePlane({0, 0, 0}, {1, 0, 0}), section), Acad::eOk);
    ASSERT_NE(section, nullptr);
    std::unique_ptr<AcDbRegion> owned(section);
    EXPECT_NEAR(areaOf(*section), 4 * kPi, 1e-6);
    Pieces edges;
    ASSERT_EQ(section->explode(edges.items), Acad::eOk);
    ASSERT_EQ(edges.size(), 1);
    const AcDbCircle* circle = AcDbCircle::cast(edges.at(0));
    ASSERT_NE(circle, nullptr);
    EXPECT_NEAR(circle->radius(), 2, 1e-9);
    EXPECT_NEAR(std::abs(circle->normal().x), 1, 1e-9);

    AcDbRegion* missed = nullptr;
    ASSERT_EQ(sphere.getSection(AcGePlane({0, 0, 5}, {0, 0, 1}), missed), Acad::eOk);
    ASSERT_NE(missed, nullptr);
    std::unique_ptr<AcDbRegion> ownedMissed(missed);
    EXPECT_TRUE(missed->isNull());
}

TEST(SolidEntity, CylinderExplodesToTwoCircularRegionsAndOneSurface) {
    AcDb3dSolid cylinder;
    ASSERT_EQ(cylinder.createFrustum(4, 1.5, 1.5, 1.5), Acad::eOk);
    ASSERT_EQ(cylinder.setColorIndex(3), Acad::eOk);
    Pieces pieces;
    ASSERT_EQ(cylinder.explode(pieces.items), Acad::eOk);
    ASSERT_EQ(pieces.size(), 3);
    EXPECT_EQ(pieces.count<AcDbRegion>(), 2);
    EXPECT_EQ(pieces.count<AcDbSurface>(), 1);
    for (int i = 0; i < pieces.size(); ++i) {
        AcDbEntity* piece = pieces.at(i);
        EXPECT_TRUE(piece->objectId().isNull());
        EXPECT_EQ(piece->colorIndex(), 3);
        Pieces edges;
        ASSERT_EQ(piece->explode(edges.items), Acad::eOk);
        const int expected = AcDbRegion::cast(piece) ? 1 : 2;
        ASSERT_EQ(edges.size(), expected);
        for (int e = 0; e < edges.size(); ++e) {
            const AcDbCircle* circle = AcDbCircle::cast(edges.at(e));
            ASSERT_NE(circle, nullptr);
            EXPECT_NEAR(circle->radius(), 1.5, 1e-9);
            EXPECT_NEAR(std::abs(circle->center().z), 2, 1e-9);
        }
        if (const AcDbRegion* end = AcDbRegion::cast(piece)) {
            EXPECT_NEAR(areaOf(*end), kPi * 2.25, 1e-9);
        }
    }
}

TEST(SolidEntity, BoxExplodesToSixRegionsOfFourLines) {
    AcDb3dSolid box;
    ASSERT_EQ(box.createBox(1, 2, 3), Acad::eOk);
    Pieces faces;
    ASSERT_EQ(box.explode(faces.items), Acad::eOk);
    ASSERT_EQ(faces.count<AcDbRegion>(), 6);
    for (int i = 0; i < faces.size(); ++i) {
        Pieces edges;
        ASSERT_EQ(faces.at(i)->explode(edges.items), Acad::eOk);
        EXPECT_EQ(edges.count<AcDbLine>(), 4);
    }
}

TEST(SolidEntity, SurfacesAreEntitiesOfTheirOwn) {
    AcDb3dSolid sphere;
    ASSERT_EQ(sphere.createSphere(2), Acad::eOk);
    Pieces faces;
    ASSERT_EQ(sphere.explode(faces.items), Acad::eOk);
    ASSERT_EQ(faces.size(), 1);
    AcDbSurface* surface = AcDbSurface::cast(faces.at(0));
    ASSERT_NE(surface, nullptr);
    double area = 0.0;
    ASSERT_EQ(surface->getArea(area), Acad::eOk);
    EXPECT_NEAR(area, 16 * kPi, 1e-9);
    Pieces edges;
    ASSERT_EQ(surface->explode(edges.items), Acad::eOk);
    EXPECT_EQ(edges.size(), 0); // no boundary: seams and poles are not edges
    AcGeMatrix3d stretch;
    stretch(2, 2) = 3.0;
    EXPECT_EQ(surface->transformBy(stretch), Acad::eCannotScaleNonUniformly);
    ASSERT_EQ(surface->transformBy(AcGeMatrix3d::translation({0, 0, 2})), Acad::eOk);
    expectExtents(*surface, {-2, -2, 0}, {2, 2, 4}, 1e-6);
    std::unique_ptr<AcDbSurface> copy(AcDbSurface::cast(surface->clone()));
    ASSERT_NE(copy, nullptr);
    expectExtents(*copy, {-2, -2, 0}, {2, 2, 4}, 1e-6);
}

TEST(SolidEntity, MitredElbowWallsEndInEllipses) {
    AcDbVoidPtrArray curves, regions;
    AcDbCircle section({0, 0, 0}, AcGeVector3d::kZAxis, 1);
    curves.append(&section);
    ASSERT_EQ(AcDbRegion::createFromCurves(curves, regions), Acad::eOk);
    std::unique_ptr<AcDbRegion> disc(AcDbRegion::cast(static_cast<AcDbEntity*>(regions[0])));
    AcGePoint3dArray bend{{0, 0, 0}, {0, 0, 4}, {4, 0, 4}};
    AcDb3dPolyline path(AcDb::k3dSimplePoly, bend);
    AcDb3dSolid elbow;
    ASSERT_EQ(elbow.extrudeAlongPath(disc.get(), &path), Acad::eOk);
    Pieces faces;
    ASSERT_EQ(elbow.explode(faces.items), Acad::eOk);
    EXPECT_EQ(faces.count<AcDbRegion>(), 2);
    ASSERT_EQ(faces.count<AcDbSurface>(), 2);
    for (int i = 0; i < faces.size(); ++i) {
        if (!AcDbSurface::cast(faces.at(i))) continue;
        Pieces edges;
        ASSERT_EQ(faces.at(i)->explode(edges.items), Acad::eOk);
        EXPECT_EQ(edges.count<AcDbCircle>(), 1);
        // The mitre, a 45 degree cut of a cylinder of radius 1, in elliptic arcs that go once
        // round.
        double turn = 0.0;
        for (int e = 0; e < edges.size(); ++e) {
            const AcDbEllipse* mitre = AcDbEllipse::cast(edges.at(e));
            if (mitre == nullptr) continue;
            EXPECT_NEAR(mitre->majorRadius(), std::sqrt(2.0), 1e-7);
            EXPECT_NEAR(mitre->minorRadius(), 1, 1e-7);
            expectNear(mitre->center(), {0, 0, 4}, 1e-7);
            double sweep = mitre->endParam() - mitre->startParam();
            turn += sweep > 0 ? sweep : sweep + 2 * kPi;
        }
        EXPECT_NEAR(turn, 2 * kPi, 1e-9);
    }
}

TEST(SolidEntity, TubeBySubtractionLeavesTheOtherSolidEmpty) {
    AcDb3dSolid outer, inner;
    ASSERT_EQ(outer.createFrustum(4, 2, 2, 2), Acad::eOk);
    ASSERT_EQ(inner.createFrustum(4, 1, 1, 1), Acad::eOk);
    ASSERT_EQ(outer.booleanOper(AcDb::kBoolSubtract, &inner), Acad::eOk);
    EXPECT_TRUE(inner.isNull());
    EXPECT_NEAR(massOf(outer).volume, kPi * (4 - 1) * 4, 1e-6);
    Pieces faces;
    ASSERT_EQ(outer.explode(faces.items), Acad::eOk);
    EXPECT_EQ(faces.count<AcDbSurface>(), 2);
    EXPECT_EQ(faces.count<AcDbRegion>(), 2);

    AcDb3dSolid a, b;
    ASSERT_EQ(a.createBox(2, 2, 2), Acad::eOk);
    ASSERT_EQ(b.createBox(2, 2, 2), Acad::eOk);
    ASSERT_EQ(b.transformBy(AcGeMatrix3d::translation({1, 0, 0})), Acad::eOk);
    ASSERT_EQ(a.booleanOper(AcDb::kBoolIntersect, &b), Acad::eOk);
    EXPECT_NEAR(massOf(a).volume, 4, 1e-9);
    EXPECT_EQ(a.booleanOper(AcDb::kBoolUnite, &a), Acad::eInvalidInput);
    EXPECT_EQ(a.booleanOper(AcDb::kBoolUnite, &b), Acad::eNotApplicable); // b is empty now
}

TEST(SolidEntity, TransformByRefusesNonUniformScale) {
    AcDb3dSolid box;
    ASSERT_EQ(box.createBox(2, 2, 2), Acad::eOk);
    AcGeMatrix3d stretch;
    stretch(0, 0) = 2.0;
    EXPECT_EQ(box.transformBy(stretch), Acad::eCannotScaleNonUniformly);
    expectExtents(box, {-1, -1, -1}, {1, 1, 1}, 1e-7);

    ASSERT_EQ(box.transformBy(AcGeMatrix3d::scaling(3)), Acad::eOk);
    EXPECT_NEAR(massOf(box).volume, 8 * 27, 1e-6);
    ASSERT_EQ(box.transformBy(AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis, {3, 3, 0})),
              Acad::eOk);
    expectNear(massOf(box).centroid, {6, 0, 0}, 1e-9);

    // Through the entity's virtual, as a caller holding an AcDbEntity does.
    AcDbEntity& entity = box;
    ASSERT_EQ(entity.transformBy(AcGeMatrix3d::translation({-6, 0, 0})), Acad::eOk);
    expectExtents(entity, {-3, -3, -3}, {3, 3, 3}, 1e-6);
}

TEST(SolidEntity, CloneIsAnIndependentCopy) {
    AcDb3dSolid sphere;
    ASSERT_EQ(sphere.createSphere(1), Acad::eOk);
    ASSERT_EQ(sphere.setColorIndex(5), Acad::eOk);
    std::unique_ptr<AcDb3dSolid> copy(AcDb3dSolid::cast(sphere.clone()));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->colorIndex(), 5);
    ASSERT_EQ(copy->transformBy(AcGeMatrix3d::translation({5, 0, 0})), Acad::eOk);
    expectNear(massOf(*copy).centroid, {5, 0, 0}, 1e-9);
    expectNear(massOf(sphere).centroid, {0, 0, 0}, 1e-9);
}

TEST(SolidEntity, StlOutRefusesNegativeCoordinatesAndWritesFacets) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / "qel_entity_test_box.stl";
    std::filesystem::remove(file);
    AcDb3dSolid box;
    ASSERT_EQ(box.createBox(2, 2, 2), Acad::eOk);
    EXPECT_EQ(box.stlOut(file.wstring().c_str(), true), Acad::eNegativeCoordinates);
    EXPECT_FALSE(std::filesystem::exists(file));

    ASSERT_EQ(box.transformBy(AcGeMatrix3d::translation({1, 1, 1})), Acad::eOk);
    ASSERT_EQ(box.stlOut(file.wstring().c_str(), true), Acad::eOk);
    std::ifstream in(file);
    int facets = 0, vertices = 0;
    for (std::string word; in >> word;) {
        facets += word == "facet";
        vertices += word == "vertex";
    }
    EXPECT_EQ(facets, 12);
    EXPECT_EQ(vertices, 36);
    std::filesystem::remove(file);
}

TEST(SolidEntity, ModellingFailuresAreThrownAsTheHostStatusAndInputErrorsReturned) {
    using arxsolids::Status;
    EXPECT_EQ(solident::builtOrThrow(Status::eOk), Acad::eOk);
    EXPECT_EQ(solident::builtOrThrow(Status::eInvalidInput), Acad::eInvalidInput);
    EXPECT_EQ(solident::builtOrThrow(Status::eSelfIntersecting), Acad::eSelfIntersecting);
    for (Status failure : {Status::eGeneralModelingFailure, Status::eOutOfMemory}) {
        try {
            solident::builtOrThrow(failure);
            ADD_FAILURE() << arxsolids::statusName(failure) << " not thrown";
        } catch (int code) {
            EXPECT_EQ(code, int(solident::toAcad(failure)));
            EXPECT_NE(code, int(Acad::eOk));
        }
    }
    // Every kernel status has a host status of the same name.
    for (int s = int(Status::eOk); s <= int(Status::eOutOfMemory); ++s) {
        const std::wstring host = acadErrorStatusText(solident::toAcad(Status(s)));
        const std::string kernel = arxsolids::statusName(Status(s));
        EXPECT_EQ(host, std::wstring(kernel.begin(), kernel.end()));
    }
}

// ---- In the database ----

class SolidInDatabase : public ArxTest {};

TEST_F(SolidInDatabase, AppendedSolidReopensWithItsGeometry) {
    auto* solid = new AcDb3dSolid;
    ASSERT_EQ(solid->createFrustum(2, 1, 1, 1), Acad::eOk);
    const AcDbObjectId id = append(solid);
    {
        Opened<AcDb3dSolid> read(id);
        ASSERT_EQ(read.status, Acad::eOk);
        EXPECT_NEAR(massOf(*read.object).volume, 2 * kPi, 1e-9);
        // Building needs the solid open for write.
        EXPECT_EQ(read->createSphere(1), Acad::eNotOpenForWrite);
        EXPECT_EQ(read->transformBy(AcGeMatrix3d::translation({1, 0, 0})), Acad::eNotOpenForWrite);
    }
    {
        Opened<AcDbRegion> wrongClass(id);
        EXPECT_EQ(wrongClass.status, Acad::eNotThatKindOfClass);
    }
    {
        Opened<AcDbEntity> write(id, AcDb::kForWrite);
        ASSERT_EQ(write.status, Acad::eOk);
        ASSERT_EQ(write->transformBy(AcGeMatrix3d::translation({0, 0, 5})), Acad::eOk);
    }
    Opened<AcDbEntity> again(id);
    expectExtents(*again.object, {-1, -1, 4}, {1, 1, 6}, 1e-6);
}

TEST_F(SolidInDatabase, EntityNamesGiveTheCommonGroupsOfSolidsAndRegions) {
    auto* solid = new AcDb3dSolid;
    ASSERT_EQ(solid->createSphere(1), Acad::eOk);
    const AcDbObjectId solidId = append(solid);
    const AcDbObjectId regionId = append(regionOf({square(0, 0, 1)}).release());
    ads_name last;
    ASSERT_EQ(acdbEntLast(last), 5100);
    AcDbObjectId lastId;
    ASSERT_EQ(acdbGetObjectId(lastId, last), Acad::eOk);
    EXPECT_EQ(lastId, regionId);
    for (const auto& [id, type] :
         {std::pair{solidId, L"3DSOLID"}, std::pair{regionId, L"REGION"}}) {
        ads_name name;
        ASSERT_EQ(acdbGetAdsName(name, id), Acad::eOk);
        RbChain chain(acdbEntGet(name));
        const resbuf* kind = findCode(chain.head, 0);
        ASSERT_NE(kind, nullptr);
        EXPECT_EQ(std::wstring(kind->resval.rstring), type);
        EXPECT_NE(findCode(chain.head, 8), nullptr); // the layer
    }
}

TEST_F(SolidInDatabase, BooleanNeedsBothSolidsOpenForWrite) {
    auto* outer = new AcDb3dSolid;
    auto* inner = new AcDb3dSolid;
    ASSERT_EQ(outer->createBox(4, 4, 4), Acad::eOk);
    ASSERT_EQ(inner->createBox(2, 2, 8), Acad::eOk);
    const AcDbObjectId outerId = append(outer), innerId = append(inner);
    Opened<AcDb3dSolid> a(outerId, AcDb::kForWrite);
    {
        Opened<AcDb3dSolid> b(innerId, AcDb::kForRead);
        EXPECT_EQ(a->booleanOper(AcDb::kBoolSubtract, b.object), Acad::eNotOpenForWrite);
        EXPECT_FALSE(b->isNull());
    }
    Opened<AcDb3dSolid> b(innerId, AcDb::kForWrite);
    ASSERT_EQ(a->booleanOper(AcDb::kBoolSubtract, b.object), Acad::eOk);
    EXPECT_TRUE(b->isNull());
    EXPECT_NEAR(massOf(*a.object).volume, 64 - 16, 1e-9);
    EXPECT_EQ(b->erase(), Acad::eOk);
}

} // namespace
