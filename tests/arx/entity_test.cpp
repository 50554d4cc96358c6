#include "samples.h"

namespace {

class EntityTest : public ArxTest, public ::testing::WithParamInterface<Sample> {};

TEST_P(EntityTest, ExtentsAsWorkedByHand) {
    std::unique_ptr<AcDbEntity> e(GetParam().make(*db));
    expectExtents(*e, GetParam().min, GetParam().max, 1e-9);
}

// A quarter turn about Z and a move take an axis-aligned box onto another exactly, so the
// transformed entity's box is the transformed box.
TEST_P(EntityTest, TransformMovesTheExtents) {
    std::unique_ptr<AcDbEntity> e(GetParam().make(*db));
    const AcGeMatrix3d m = AcGeMatrix3d::translation({10, 20, 30}) *
                           AcGeMatrix3d::rotation(M_PI / 2, AcGeVector3d::kZAxis);
    AcDbExtents expected(GetParam().min, GetParam().max);
    expected.transformBy(m);
    ASSERT_EQ(e->transformBy(m), Acad::eOk);
    expectExtents(*e, expected.minPoint(), expected.maxPoint(), 1e-9);
}

// The same in the database: the entity opened for write, moved and closed.
TEST_P(EntityTest, TransformOfAResidentEntity) {
    const AcDbObjectId id = append(GetParam().make(*db));
    {
        Opened<AcDbEntity> e(id, AcDb::kForWrite);
        ASSERT_EQ(e->transformBy(AcGeMatrix3d::translation({0, 0, -7})), Acad::eOk);
    }
    Opened<AcDbEntity> e(id);
    expectExtents(*e.get(), GetParam().min - AcGeVector3d(0, 0, 7),
                  GetParam().max - AcGeVector3d(0, 0, 7), 1e-9);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, EntityTest, ::testing::ValuesIn(entitySamples()),
                         [](const auto& info) { return info.param.name; });

TEST(Entities, CirclesAndArcsKeepTheirShapeOnly) {
    AcDbCircle circle({0, 0, 0}, AcGeVector3d::kZAxis, 1);
    AcGeMatrix3d stretch = AcGeMatrix3d::kIdentity;
    stretch.entry[0][0] = 2;
    EXPECT_EQ(circle.transformBy(stretch), Acad::eCannotScaleNonUniformly);
    EXPECT_EQ(circle.radius(), 1.0);
    ASSERT_EQ(circle.transformBy(AcGeMatrix3d::scaling(3, {1, 0, 0})), Acad::eOk);
    EXPECT_DOUBLE_EQ(circle.radius(), 3.0);
    expectNear(circle.center(), {-2, 0, 0});

    // A mirror keeps the arc's ends where the mirror puts them.
    AcDbArc arc({0, 0, 0}, 2, 0, M_PI / 2);
    const AcGeMatrix3d mirror = AcGeMatrix3d::alignCoordSys(
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
        AcGePoint3d::kOrigin, -AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis);
    ASSERT_EQ(arc.transformBy(mirror), Acad::eOk);
    AcGePoint3d start, end;
    arc.getStartPoint(start);
    arc.getEndPoint(end);
    AcDbExtents box;
    arc.getGeomExtents(box);
    expectNear(box.minPoint(), {-2, 0, 0});
    expectNear(box.maxPoint(), {0, 2, 0});
    EXPECT_TRUE(start.isEqualTo({0, 2, 0}, AcGeTol()) || start.isEqualTo({-2, 0, 0}, AcGeTol()));
    EXPECT_FALSE(start.isEqualTo(end));
}

TEST(Entities, ThicknessFollowsTheNormal) {
    AcDbLine line({0, 0, 0}, {1, 0, 0});
    line.setThickness(2);
    ASSERT_EQ(line.transformBy(AcGeMatrix3d::rotation(M_PI, AcGeVector3d::kXAxis)), Acad::eOk);
    expectNear(line.normal(), {0, 0, -1});
    EXPECT_NEAR(line.thickness(), 2.0, 1e-12);
    expectExtents(line, {0, 0, -2}, {1, 0, 0});
}

TEST(Entities, DegenerateNormalsAreRefused) {
    const AcGeVector3d zero(0, 0, 0);
    AcDbLine line;
    AcDbCircle circle;
    AcDbArc arc;
    AcDbPoint point;
    AcDbText text;
    AcDbPolyline pl;
    AcDbSolid solid;
    for (Acad::ErrorStatus es :
         {line.setNormal(zero), circle.setNormal(zero), arc.setNormal(zero), point.setNormal(zero),
          text.setNormal(zero), pl.setNormal(zero), solid.setNormal(zero)})
        EXPECT_EQ(es, Acad::eInvalidInput);
    expectNear(circle.normal(), AcGeVector3d::kZAxis);
    EXPECT_EQ(circle.setRadius(0), Acad::eInvalidInput);
    EXPECT_EQ(text.setHeight(-1), Acad::eInvalidInput);
}

TEST(Entities, EllipseRatioAndAxesAreChecked) {
    AcDbEllipse e;
    const AcGePoint3d c(0, 0, 0);
    EXPECT_EQ(e.set(c, AcGeVector3d::kZAxis, {2, 0, 0}, 0.0), Acad::eInvalidInput);
    EXPECT_EQ(e.set(c, AcGeVector3d::kZAxis, {2, 0, 0}, 1.5), Acad::eInvalidInput);
    EXPECT_EQ(e.set(c, AcGeVector3d::kZAxis, {2, 0, 0}, -0.5), Acad::eInvalidInput);
    EXPECT_EQ(e.set(c, {0, 0, 0}, {2, 0, 0}, 0.5), Acad::eInvalidInput);
    EXPECT_EQ(e.set(c, AcGeVector3d::kZAxis, {0, 0, 0}, 0.5), Acad::eInvalidInput);
    EXPECT_EQ(e.set(c, AcGeVector3d::kZAxis, {1, 0, 1}, 0.5), Acad::eInvalidInput);
    EXPECT_EQ(e.set(c, AcGeVector3d::kZAxis, {2, 0, 0}, 1.000000005), Acad::eOk);
    // Refused by the constructor: the unit circle stays.
    AcDbEllipse refused(c, AcGeVector3d::kZAxis, {3, 0, 0}, 2.0);
    EXPECT_EQ(refused.majorRadius(), 1.0);
    EXPECT_EQ(refused.radiusRatio(), 1.0);
    // A circular arc of ratio 1: angles and parameters agree.
    AcDbEllipse arc(c, AcGeVector3d::kZAxis, AcGeVector3d::kZAxis.perpVector() * 2, 1.0, 0.0, 1e-6);
    EXPECT_NEAR(arc.endParam(), 1e-6, 1e-18);
    EXPECT_FALSE(arc.isClosed());
    // Angles and parameters differ off the axes of a flat ellipse.
    AcDbEllipse flat(c, AcGeVector3d::kZAxis, {2, 0, 0}, 0.5, M_PI / 4, 2 * M_PI);
    EXPECT_NEAR(flat.startParam(), std::atan2(1.0, 0.5), 1e-12);
    AcGePoint3d p;
    flat.getStartPoint(p);
    EXPECT_NEAR(p.x, p.y, 1e-12);
    EXPECT_NEAR(flat.endParam(), 2 * M_PI, 1e-12);
    EXPECT_DOUBLE_EQ(flat.minorRadius(), 1.0);
}

TEST(Entities, LightweightPolylineSegments) {
    AcDbPolyline pl;
    EXPECT_EQ(pl.segType(0), AcDbPolyline::kEmpty);
    AcDbExtents box;
    EXPECT_EQ(pl.getGeomExtents(box), Acad::eInvalidExtents);
    AcGePoint3d p;
    EXPECT_EQ(pl.getStartPoint(p), Acad::eDegenerateGeometry);
    EXPECT_EQ(pl.getPointAt(0, p), Acad::eInvalidIndex);
    EXPECT_EQ(pl.addVertexAt(1, {0, 0}), Acad::eInvalidIndex);

    pl.addVertexAt(0, {0, 0});
    EXPECT_EQ(pl.segType(0), AcDbPolyline::kPoint);
    pl.addVertexAt(1, {2, 0}, -1.0); // clockwise half circle from (2,0) to (4,0)
    pl.addVertexAt(2, {4, 0});
    pl.addVertexAt(3, {4, 0});
    EXPECT_EQ(pl.segType(0), AcDbPolyline::kLine);
    EXPECT_EQ(pl.segType(1), AcDbPolyline::kArc);
    EXPECT_EQ(pl.segType(2), AcDbPolyline::kCoincident);
    EXPECT_EQ(pl.segType(3), AcDbPolyline::kEmpty);
    pl.setClosed(true);
    EXPECT_EQ(pl.segType(3), AcDbPolyline::kLine);

    AcGeCircArc3d arc;
    EXPECT_EQ(pl.getArcSegAt(0, arc), Acad::eNotApplicable);
    ASSERT_EQ(pl.getArcSegAt(1, arc), Acad::eOk);
    expectNear(arc.center(), {3, 0, 0});
    EXPECT_DOUBLE_EQ(arc.radius(), 1.0);
    expectNear(arc.normal(), {0, 0, -1});
    expectNear(arc.startPoint(), {2, 0, 0});
    expectNear(arc.endPoint(), {4, 0, 0});
    EXPECT_NEAR(arc.endAng() - arc.startAng(), M_PI, 1e-12);
    // Clockwise in the polyline's plane: the arc bulges to +Y.
    expectNear(arc.pointAt(arc.startAng() + M_PI / 2), {3, 1, 0});
    expectExtents(pl, {0, 0, 0}, {4, 1, 0});
}

TEST(Entities, PolylinePlaneAndWidths) {
    AcDbPolyline pl;
    pl.setConstantWidth(0.5);
    pl.addVertexAt(0, {1, 0});
    pl.addVertexAt(1, {1, 1});
    double w0 = 0, w1 = 0, constant = 0;
    pl.getWidthsAt(1, w0, w1);
    EXPECT_EQ(w0, 0.5);
    EXPECT_EQ(pl.getConstantWidth(constant), Acad::eOk);
    pl.setWidthsAt(0, 1, 2);
    EXPECT_EQ(pl.getConstantWidth(constant), Acad::eNotApplicable);
    // In the plane of normal X at elevation 3: the plane's X axis is world Y.
    pl.setNormal(AcGeVector3d::kXAxis);
    pl.setElevation(3);
    AcGePoint3d p;
    pl.getPointAt(1, p);
    expectNear(p, {3, 1, 1});
    ASSERT_EQ(pl.transformBy(AcGeMatrix3d::scaling(2)), Acad::eOk);
    pl.getWidthsAt(0, w0, w1);
    EXPECT_DOUBLE_EQ(w1, 4.0);
    EXPECT_DOUBLE_EQ(pl.elevation(), 6.0);
    pl.getPointAt(1, p);
    expectNear(p, {6, 2, 2});
}

TEST(Entities, ExplodeGivesTheParts) {
    AcDbPolyline pl;
    pl.addVertexAt(0, {0, 0});
    pl.addVertexAt(1, {2, 0}, 1.0);
    pl.addVertexAt(2, {4, 0});
    AcDbVoidPtrArray parts;
    ASSERT_EQ(pl.explode(parts), Acad::eOk);
    ASSERT_EQ(parts.length(), 2);
    auto* line = AcDbLine::cast(static_cast<AcRxObject*>(parts[0]));
    auto* arc = AcDbArc::cast(static_cast<AcRxObject*>(parts[1]));
    ASSERT_TRUE(line && arc);
    expectNear(line->endPoint(), {2, 0, 0});
    AcGePoint3d s, e;
    arc->getStartPoint(s);
    arc->getEndPoint(e);
    expectNear(s, {2, 0, 0});
    expectNear(e, {4, 0, 0});
    expectExtents(*arc, {2, -1, 0}, {4, 0, 0});
    for (void* p : parts)
        delete static_cast<AcDbEntity*>(p);

    AcDb3dPolyline open3d(AcDb::k3dSimplePoly, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, true);
    parts.removeAll();
    ASSERT_EQ(open3d.explode(parts), Acad::eOk);
    EXPECT_EQ(parts.length(), 3);
    for (void* p : parts)
        delete static_cast<AcDbEntity*>(p);

    AcDbCircle circle;
    parts.removeAll();
    EXPECT_EQ(circle.explode(parts), Acad::eNotApplicable);
}

TEST(Entities, PolyFaceMeshChecksVertexNumbers) {
    AcDbPolyFaceMesh mesh;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(mesh.appendVertex(new AcDbPolyFaceMeshVertex({double(i), double(i * i), 0})),
                  Acad::eOk);
    auto* beyond = new AcDbFaceRecord(1, 2, 4, 0);
    EXPECT_EQ(mesh.appendFaceRecord(beyond), Acad::eInvalidMeshVertexIndex);
    EXPECT_EQ(int(mesh.appendFaceRecord(beyond)), 56);
    delete beyond;
    auto* empty = new AcDbFaceRecord;
    EXPECT_EQ(mesh.appendFaceRecord(empty), Acad::eInvalidMeshVertexIndex);
    delete empty;
    ASSERT_EQ(mesh.appendFaceRecord(new AcDbFaceRecord(1, -2, 3, 0)), Acad::eOk);
    auto* late = new AcDbPolyFaceMeshVertex;
    EXPECT_EQ(mesh.appendVertex(late), Acad::eVertexAfterFace);
    delete late;
    EXPECT_EQ(mesh.numVertices(), 3);
    EXPECT_EQ(mesh.numFaces(), 1);

    AcDbVoidPtrArray parts;
    ASSERT_EQ(mesh.explode(parts), Acad::eOk);
    ASSERT_EQ(parts.length(), 1);
    auto* face = static_cast<AcDbFace*>(parts[0]);
    AcGePoint3d p;
    face->getVertexAt(3, p);
    expectNear(p, {2, 4, 0}); // a triangle repeats its third corner
    bool visible = true;
    face->isEdgeVisibleAt(1, visible);
    EXPECT_FALSE(visible);
    delete face;

    AcDbFaceRecord record(1, 2, 3);
    Adesk::Int16 v = 0;
    EXPECT_EQ(record.getVertexAt(4, v), Acad::eInvalidIndex);
    record.makeEdgeInvisibleAt(0);
    record.getVertexAt(0, v);
    EXPECT_EQ(v, -1);
}

TEST(Entities, PolygonMeshSizes) {
    AcDbPolygonMesh wrongCount(AcDb::kSimpleMesh, 2, 3, {{0, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(wrongCount.mSize(), 0);
    AcDbPolygonMesh tooSmall(AcDb::kSimpleMesh, 1, 2, {{0, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(tooSmall.mSize(), 0);
    AcDbPolygonMesh mesh(AcDb::kSimpleMesh, 2, 2, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}},
                         true, false);
    EXPECT_TRUE(mesh.isMClosed());
    EXPECT_FALSE(mesh.isNClosed());
    // Closed both ways unless told otherwise.
    AcDbPolygonMesh closed(AcDb::kSimpleMesh, 2, 2, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    EXPECT_TRUE(closed.isMClosed() && closed.isNClosed());
    AcDbPolygonMeshVertex extra;
    EXPECT_EQ(mesh.appendVertex(&extra), Acad::eInvalidIndex);
    EXPECT_EQ(mesh.setMSize(3), Acad::eInvalidInput);
    EXPECT_EQ(mesh.setMSurfaceDensity(2), Acad::eInvalidInput);
    EXPECT_EQ(mesh.setMSurfaceDensity(12), Acad::eOk);
    EXPECT_EQ(mesh.setPolyMeshType(AcDb::kCubicSurfaceMesh), Acad::eOk);
    EXPECT_EQ(mesh.mSurfaceDensity(), 12);
    std::unique_ptr<AcDbObjectIterator> it(mesh.vertexIterator());
    int n = 0;
    for (; !it->done(); it->step())
        ++n;
    EXPECT_EQ(n, 4);
}

TEST(Entities, SplineForms) {
    AcDbSpline fit({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {1, 0, 0}, {0, -1, 0}, 4, 0.0);
    ASSERT_TRUE(fit.hasFitData());
    // The curve passes through its fit points at their chord-length parameters (0, 1/2, 1),
    // and leaves along its start tangent.
    AcGePoint3d on, near;
    ASSERT_EQ(fit.getPointAtParam(0.5, on), Acad::eOk);
    expectNear(on, {1, 1, 0}, 1e-9);
    fit.getPointAtParam(1.0, on);
    expectNear(on, {2, 0, 0}, 1e-9);
    fit.getPointAtParam(1e-6, near);
    EXPECT_LT(std::fabs(near.y), 1e-9);
    EXPECT_GT(near.x, 0.0);
    EXPECT_EQ(fit.getPointAtParam(1.5, on), Acad::eInvalidInput);
    EXPECT_EQ(fit.numControlPoints(), 5);
    // Without tangents: as many control points as fit points, the curve through all of them.
    AcDbSpline free({{0, 0, 0}, {1, 2, 0}, {3, 2, 1}, {4, 0, 1}, {5, 5, 5}});
    EXPECT_EQ(free.numControlPoints(), 5);
    for (int k = 1; k < 4; ++k) {
        // Chord lengths worked out from the points.
        const double chords[] = {std::sqrt(5.0), std::sqrt(5.0), std::sqrt(5.0), std::sqrt(42.0)};
        double total = 0, upTo = 0;
        for (int i = 0; i < 4; ++i)
            total += chords[i];
        for (int i = 0; i < k; ++i)
            upTo += chords[i];
        AcGePoint3d fitPoint;
        free.getFitPointAt(k, fitPoint);
        ASSERT_EQ(free.getPointAtParam(upTo / total, on), Acad::eOk);
        expectNear(on, fitPoint, 1e-9);
    }
    AcGePoint3dArray points;
    int degree = 0;
    double tol = -1;
    bool tangents = false;
    AcGeVector3d t0, t1;
    ASSERT_EQ(fit.getFitData(points, degree, tol, tangents, t0, t1), Acad::eOk);
    EXPECT_EQ(points.length(), 3);
    EXPECT_EQ(degree, 3);
    EXPECT_TRUE(tangents);
    expectNear(t1, {0, -1, 0});

    // Knots must number control points + degree + 1.
    AcDbSpline refused(4, false, true, true, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}},
                       {0, 0, 0, 0, 1, 1, 1, 1}, {});
    EXPECT_EQ(refused.numControlPoints(), 0);
    AcDbSpline nurbs(3, false, false, false, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}},
                     {0, 0, 0, 0, 1, 1, 1, 1}, {});
    EXPECT_EQ(nurbs.numControlPoints(), 4);
    EXPECT_FALSE(nurbs.hasFitData());
    EXPECT_EQ(nurbs.getFitData(points, degree, tol, tangents, t0, t1), Acad::eNotApplicable);
    AcDbSpline decreasing(1, false, false, false, {{0, 0, 0}, {1, 0, 0}}, {0, 1, 0.5, 1}, {});
    EXPECT_EQ(decreasing.numControlPoints(), 0);
    AcDbSpline empty;
    AcDbExtents box;
    EXPECT_EQ(empty.getGeomExtents(box), Acad::eInvalidExtents);
}

TEST_F(ArxTest, BlockReferencePlacesItsBlock) {
    const AcDbObjectId block = blockWithUnitLine(*db, L"B");
    auto* ref = new AcDbBlockReference({5, 5, 0}, block);
    ref->setScaleFactors(AcGeScale3d(2, 3, 1));
    ref->setColorIndex(3);
    EXPECT_EQ(ref->setScaleFactors(AcGeScale3d(0, 1, 1)), Acad::eInvalidInput);
    expectNear(ref->blockTransform() * AcGePoint3d(1, 1, 0), {7, 8, 0});
    AcDbVoidPtrArray parts;
    ASSERT_EQ(ref->explode(parts), Acad::eOk);
    ASSERT_EQ(parts.length(), 1);
    auto* line = AcDbLine::cast(static_cast<AcRxObject*>(parts[0]));
    ASSERT_NE(line, nullptr);
    expectNear(line->endPoint(), {7, 5, 0});
    EXPECT_TRUE(line->isNewObject());
    delete line;
    // Moved as a whole: the decomposition gives position, scale and rotation back.
    ASSERT_EQ(ref->transformBy(AcGeMatrix3d::rotation(M_PI / 2, AcGeVector3d::kZAxis)), Acad::eOk);
    expectNear(ref->position(), {-5, 5, 0});
    EXPECT_NEAR(ref->rotation(), M_PI / 2, 1e-12);
    EXPECT_NEAR(ref->scaleFactors().sy, 3.0, 1e-12);
    const AcDbObjectId refId = append(ref);
    Opened<AcDbBlockTableRecord> record(block);
    AcDbObjectIdArray refs;
    ASSERT_EQ(record->getBlockReferenceIds(refs), Acad::eOk);
    ASSERT_EQ(refs.length(), 1);
    EXPECT_EQ(refs[0], refId);
    EXPECT_TRUE(record->hasEntities());
    EXPECT_FALSE(record->isLayout());
}

TEST_F(ArxTest, PropertiesCopyAndDefaults) {
    AcDbLayerTable* layers = nullptr;
    db->getLayerTable(layers, AcDb::kForWrite);
    auto* layer = new AcDbLayerTableRecord;
    layer->setName(L"Pipes");
    AcDbObjectId pipes;
    layers->add(pipes, layer);
    layer->close();
    layers->close();
    db->setClayer(pipes);

    AcDbLine source;
    source.setLayer(L"0");
    source.setColorIndex(5);
    source.setVisibility(AcDb::kInvisible);
    AcDbCircle copy;
    ASSERT_EQ(copy.setPropertiesFrom(&source), Acad::eOk);
    EXPECT_EQ(copy.colorIndex(), 5);
    EXPECT_EQ(copy.visibility(), AcDb::kInvisible);
    EXPECT_EQ(copy.layerId(), db->layerZero());
    copy.setDatabaseDefaults();
    EXPECT_EQ(copy.layerId(), pipes);
    EXPECT_EQ(copy.colorIndex(), 256);
    EXPECT_EQ(copy.setColorIndex(300), Acad::eInvalidInput);
    AcCmColor tc;
    tc.setRGB(1, 2, 3);
    copy.setColor(tc);
    EXPECT_EQ(copy.color().blue(), 3);
}

} // namespace

namespace {

TEST_F(ArxTest, VerticesBecomeObjectsOfTheirPolyline) {
    AcDbLayerTable* layers = nullptr;
    db->getLayerTable(layers, AcDb::kForWrite);
    auto* layer = new AcDbLayerTableRecord;
    layer->setName(L"Mesh");
    AcDbObjectId meshLayer;
    layers->add(meshLayer, layer);
    layer->close();
    layers->close();

    auto* mesh = new AcDbPolyFaceMesh;
    mesh->setLayer(meshLayer);
    const AcDbObjectId meshId = append(mesh);
    // Appended to a resident mesh, a vertex is resident at once, open for its caller to close.
    Opened<AcDbPolyFaceMesh> open(meshId, AcDb::kForWrite);
    std::vector<AcDbObjectId> ids;
    for (AcGePoint3d p : {AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0)}) {
        auto* vertex = new AcDbPolyFaceMeshVertex(p);
        AcDbObjectId id;
        ASSERT_EQ(open->appendVertex(id, vertex), Acad::eOk);
        EXPECT_TRUE(vertex->isWriteEnabled());
        EXPECT_EQ(vertex->ownerId(), meshId);
        EXPECT_EQ(vertex->layerId(), meshLayer);
        vertex->close();
        ids.push_back(id);
    }
    auto* face = new AcDbFaceRecord(1, 2, 3);
    ASSERT_EQ(open->appendFaceRecord(face), Acad::eOk);
    face->setColorIndex(4);
    face->close();
    std::unique_ptr<AcDbObjectIterator> it(open->vertexIterator());
    int vertices = 0, faces = 0;
    for (; !it->done(); it->step()) {
        AcDbObject* o = nullptr;
        ASSERT_EQ(acdbOpenAcDbObject(o, it->objectId(), AcDb::kForRead), Acad::eOk);
        vertices += AcDbPolyFaceMeshVertex::cast(o) != nullptr;
        faces += AcDbFaceRecord::cast(o) != nullptr;
        o->close();
    }
    EXPECT_EQ(vertices, 3);
    EXPECT_EQ(faces, 1);
    // Erasing a vertex takes it out of the walk and of the box.
    {
        Opened<AcDbPolyFaceMeshVertex> v(ids[1], AcDb::kForWrite);
        v->erase();
    }
    expectExtents(*open.get(), {0, 0, 0}, {0, 1, 0});
}

TEST(Entities, TwoDimensionalPolylineInItsPlane) {
    AcGeDoubleArray bulges = {0.0, 0.0};
    AcDb2dPolyline pl(AcDb::k2dSimplePoly, {{1, 0, 0}, {1, 2, 0}}, 3.0, false, 0, 0, &bulges);
    ASSERT_EQ(pl.setNormal(AcGeVector3d::kXAxis), Acad::eOk);
    std::unique_ptr<AcDbObjectIterator> it(pl.vertexIterator());
    const auto* first = AcDb2dVertex::cast(it->entity());
    ASSERT_NE(first, nullptr);
    // Plane of normal X: its X axis is world Y, its Y axis world Z, the elevation along X.
    expectNear(pl.vertexPosition(*first), {3, 1, 0});
    AcGePoint3d end;
    pl.getEndPoint(end);
    expectNear(end, {3, 1, 2});
    ASSERT_EQ(pl.transformBy(AcGeMatrix3d::translation({1, 0, 0})), Acad::eOk);
    EXPECT_DOUBLE_EQ(pl.elevation(), 4.0);
    expectNear(pl.vertexPosition(*first), {4, 1, 0});
    // Vertices of a spline frame are not drawn.
    AcDb2dPolyline framed(AcDb::k2dSimplePoly, {{0, 0, 0}, {1, 0, 0}});
    auto* frame = new AcDb2dVertex({50, 50, 0});
    frame->setVertexType(AcDb::k2dSplineCtlVertex);
    framed.appendVertex(frame);
    expectExtents(framed, {0, 0, 0}, {1, 0, 0});
    // A copy has copies of the vertices.
    std::unique_ptr<AcDb2dPolyline> copy(static_cast<AcDb2dPolyline*>(pl.clone()));
    AcGePoint3d start;
    copy->getStartPoint(start);
    expectNear(start, {4, 1, 0});
}

TEST(Entities, TextFollowsItsTransform) {
    AcDbText text({1, 1, 0}, L"ABC", AcDbObjectId::kNull, 2.0, 0.0);
    ASSERT_EQ(text.transformBy(AcGeMatrix3d::rotation(M_PI / 2, AcGeVector3d::kZAxis) *
                               AcGeMatrix3d::scaling(1.5)),
              Acad::eOk);
    EXPECT_NEAR(text.rotation(), M_PI / 2, 1e-12);
    EXPECT_NEAR(text.height(), 3.0, 1e-12);
    expectNear(text.position(), {-1.5, 1.5, 0});
    // Centred on its alignment point.
    AcDbText centred({0, 0, 0}, L"AB", AcDbObjectId::kNull, 1.0);
    centred.setHorizontalMode(AcDb::kTextCenter);
    centred.setAlignmentPoint({10, 0, 0});
    expectExtents(centred, {9, 0, 0}, {11, 1, 0});
    EXPECT_EQ(centred.setHorizontalMode(AcDb::TextHorzMode(9)), Acad::eInvalidInput);
    ACHAR* copy = centred.textString();
    EXPECT_STREQ(copy, L"AB");
    acutDelString(copy);
}

// Axes so long that their cross product overflows still give the turned unit normal, never a
// normal of NaN that a saved drawing could not be read back with.
TEST(Entities, EllipseOfHugeAxesKeepsItsNormalUnderARotation) {
    AcDbEllipse e({1e300, 1e300, 1e300}, AcGeVector3d::kZAxis, {1e300, 0, 0}, 1.0, 0, M_PI);
    ASSERT_EQ(e.transformBy(AcGeMatrix3d::rotation(M_PI / 2, AcGeVector3d::kXAxis)), Acad::eOk);
    expectNear(e.normal(), {0, -1, 0});
    EXPECT_DOUBLE_EQ(e.majorRadius(), 1e300);
}

TEST(Entities, EllipseUnderScaleAndMirror) {
    AcDbEllipse e({1, 0, 0}, AcGeVector3d::kZAxis, {2, 0, 0}, 0.5, 0, M_PI / 2);
    ASSERT_EQ(e.transformBy(AcGeMatrix3d::scaling(2)), Acad::eOk);
    EXPECT_DOUBLE_EQ(e.majorRadius(), 4.0);
    EXPECT_DOUBLE_EQ(e.minorRadius(), 2.0);
    expectNear(e.center(), {2, 0, 0});
    const AcGeMatrix3d mirror = AcGeMatrix3d::alignCoordSys(
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, -AcGeVector3d::kYAxis, AcGeVector3d::kZAxis);
    AcGePoint3d before;
    e.getEndPoint(before);
    ASSERT_EQ(e.transformBy(mirror), Acad::eOk);
    AcGePoint3d after;
    e.getEndPoint(after);
    expectNear(after, mirror * before);
    expectNear(e.normal(), {0, 0, -1});
}

TEST_F(ArxTest, BlockReferencesKeepToShapesTheyCanHold) {
    const AcDbObjectId block = blockWithUnitLine(*db, L"Shear");
    AcDbBlockReference ref({0, 0, 0}, block);
    ref.setScaleFactors(AcGeScale3d(1, 2, 1));
    // A turn after a stretch shears: no position, scale and rotation give that.
    AcGeMatrix3d stretch = AcGeMatrix3d::kIdentity;
    stretch.entry[0][0] = 3;
    ref.setRotation(M_PI / 4);
    EXPECT_EQ(ref.transformBy(stretch), Acad::eCannotScaleNonUniformly);
    EXPECT_NEAR(ref.rotation(), M_PI / 4, 1e-15);
    AcDbBlockReference nowhere({0, 0, 0}, AcDbObjectId::kNull);
    AcDbVoidPtrArray parts;
    EXPECT_EQ(nowhere.explode(parts), Acad::eInvalidInput);
}

} // namespace

namespace {

TEST(Entities, BoxesOfTiltedCurvesWorkedByHand) {
    // A unit circle about a normal (0, 0.6, 0.8) reaches sqrt(1 - n^2) along each axis.
    AcDbCircle circle({0, 0, 0}, {0, 0.6, 0.8}, 1);
    expectExtents(circle, {-1, -0.8, -0.6}, {1, 0.8, 0.6}, 1e-12);
    // An ellipse with radii 2 and 1 turned by 45 degrees: sqrt(4/2 + 1/2) each way.
    AcDbEllipse ellipse({0, 0, 0}, AcGeVector3d::kZAxis, {std::sqrt(2.0), std::sqrt(2.0), 0}, 0.5);
    const double h = std::sqrt(2.5);
    expectExtents(ellipse, {-h, -h, 0}, {h, h, 0}, 1e-12);
}

TEST(Entities, PolylineVertexEditsAndPieceProperties) {
    AcDbPolyline pl;
    pl.addVertexAt(0, {0, 0});
    pl.addVertexAt(1, {5, 5});
    pl.addVertexAt(2, {1, 0});
    ASSERT_EQ(pl.removeVertexAt(1), Acad::eOk);
    EXPECT_EQ(pl.removeVertexAt(2), Acad::eInvalidIndex);
    ASSERT_EQ(pl.setPointAt(1, {3, 0}), Acad::eOk);
    pl.setColorIndex(2);
    pl.setVisibility(AcDb::kInvisible);
    AcDbVoidPtrArray parts;
    ASSERT_EQ(pl.explode(parts), Acad::eOk);
    ASSERT_EQ(parts.length(), 1);
    auto* line = static_cast<AcDbLine*>(parts[0]);
    expectNear(line->endPoint(), {3, 0, 0});
    EXPECT_EQ(line->colorIndex(), 2);
    EXPECT_EQ(line->visibility(), AcDb::kInvisible);
    delete line;
}

TEST_F(ArxTest, ErasedRecordsFreeTheirNames) {
    AcDbUCSTable* ucss = nullptr;
    ASSERT_EQ(db->getUCSTable(ucss, AcDb::kForWrite), Acad::eOk);
    auto* first = new AcDbUCSTableRecord;
    first->setName(L"Saved");
    AcDbObjectId firstId;
    ucss->add(firstId, first);
    first->erase();
    first->close();
    AcDbObjectId found;
    EXPECT_EQ(ucss->getAt(L"Saved", found), Acad::eKeyNotFound);
    EXPECT_EQ(ucss->getAt(L"Saved", found, true), Acad::eOk);
    EXPECT_EQ(found, firstId);
    // The name is free again: a system saved under it replaces the erased one.
    auto* second = new AcDbUCSTableRecord;
    second->setName(L"SAVED");
    ASSERT_EQ(ucss->add(second), Acad::eOk);
    second->close();
    AcDbUCSTableIterator* it = nullptr;
    ucss->newIterator(it, true, false);
    int withErased = 0;
    for (; !it->done(); it->step(true, false))
        ++withErased;
    delete it;
    EXPECT_EQ(withErased, 2);
    ucss->close();
}

TEST_F(ArxTest, EmptyDrawingHasNoEntities) {
    ads_name name;
    EXPECT_EQ(acdbEntNext(nullptr, name), RTERROR);
    EXPECT_EQ(acdbEntLast(name), RTERROR);
    Opened<AcDbBlockTableRecord> model(db->currentSpaceId());
    EXPECT_FALSE(model->hasEntities());
    EXPECT_TRUE(model->isLayout());
}

} // namespace
