// Selecting at a terminal, editing and changing properties, and drawing curves, faces and text
// from the command line: tagged entities keep their tags, bad answers are asked again.
#include "editor_test.h"

#include <arx/dbdict.h>
#include <arx/dbpl.h>
#include <arx/dbpoly.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include <unistd.h>

namespace editortest {
namespace {

constexpr double kPi = std::numbers::pi;

class Editing : public EditorTest {
protected:
    // A circle tagged as the module tags what it imports: extended data and an X-record.
    AcDbObjectId taggedCircle(const AcGePoint3d& centre, double radius) {
        const AcDbObjectId id = add(new AcDbCircle(centre, AcGeVector3d::kZAxis, radius));
        acdbRegApp(L"Tovi_Technologies"); // refused the second time, when it is there already
        AcDbEntity* e = nullptr;
        EXPECT_EQ(acdbOpenObject(e, id, AcDb::kForWrite), Acad::eOk);
        resbuf* xdata = acutBuildList(1001, L"Tovi_Technologies", 1000, L"Pipe", 0);
        EXPECT_EQ(e->setXData(xdata), Acad::eOk);
        acutRelRb(xdata);
        EXPECT_EQ(e->createExtensionDictionary(), Acad::eOk);
        AcDbDictionary* dict = nullptr;
        EXPECT_EQ(acdbOpenObject(dict, e->extensionDictionary(), AcDb::kForWrite), Acad::eOk);
        e->close();
        auto* record = new AcDbXrecord;
        resbuf* data = acutBuildList(1, L"P-101", 0);
        record->setFromRbChain(*data);
        acutRelRb(data);
        AcDbObjectId recordId;
        EXPECT_EQ(dict->setAt(L"MemberRec", record, recordId), Acad::eOk);
        record->close();
        dict->close();
        return id;
    }
    // The entity's tags: its extended data string and its X-record's string.
    static std::pair<std::wstring, std::wstring> tagsOf(AcDbObjectId id) {
        std::pair<std::wstring, std::wstring> tags;
        AcDbEntity* e = nullptr;
        if (acdbOpenObject(e, id, AcDb::kForRead) != Acad::eOk) return tags;
        if (resbuf* x = e->xData(L"Tovi_Technologies")) {
            if (x->rbnext && x->rbnext->restype == 1000) tags.first = x->rbnext->resval.rstring;
            acutRelRb(x);
        }
        AcDbDictionary* dict = nullptr;
        if (!e->extensionDictionary().isNull() &&
            acdbOpenObject(dict, e->extensionDictionary(), AcDb::kForRead) == Acad::eOk) {
            AcDbObject* object = nullptr;
            if (dict->getAt(L"MemberRec", object, AcDb::kForRead) == Acad::eOk) {
                resbuf* chain = nullptr;
                static_cast<AcDbXrecord*>(object)->rbChain(&chain);
                if (chain && chain->restype == 1) tags.second = chain->resval.rstring;
                acutRelRb(chain);
                object->close();
            }
            dict->close();
        }
        e->close();
        return tags;
    }
    template <class T, class F>
    static void inspect(AcDbObjectId id, F&& check) {
        T* e = nullptr;
        ASSERT_EQ(acdbOpenObject(e, id, AcDb::kForRead), Acad::eOk);
        check(*e);
        e->close();
    }
    AcDbObjectId last() const {
        ads_name name;
        AcDbObjectId id;
        if (acdbEntLast(name) == RTNORM) acdbGetObjectId(id, name);
        return id;
    }
    // The set a selection answer makes, as ERASE would take it: the number of entities erased.
    int erasedBy(const std::wstring& selection) {
        const int before = entityCount();
        EXPECT_EQ(command(L"ERASE", selection), RTNORM) << printed();
        return before - entityCount();
    }
};

#define EXPECT_POINT(expected, actual)                                                             \
    EXPECT_LT((expected).distanceTo(actual), 1e-9 * (1.0 + (expected).distanceTo({0, 0, 0})))      \
        << (actual).x << "," << (actual).y << "," << (actual).z

TEST_F(Editing, SelectionByWindowCrossingLayerLastPreviousAndRemove) {
    addLayer(L"Pipes");
    addLayer(L"Steel");
    add(new AcDbLine({0, 0, 0}, {2, 0, 0}), L"Pipes"); // inside the window
    add(new AcDbLine({1, 1, 0}, {9, 1, 0}), L"Steel"); // crosses its edge
    add(new AcDbPoint({20, 20, 0}), L"Pipes");         // far away
    const AcDbObjectId keep = add(new AcDbPoint({30, 0, 0}), L"Steel");
    // The window holds only the first line, the crossing the second too; in a copy each.
    EXPECT_EQ(erasedBy(L"W -1,-1 5,5\n\n"), 1);
    EXPECT_EQ(erasedBy(L"C 5,5 -1,-1\n\n"), 1) << "the line crossing the edge";
    // By layer pattern, then removing the last entity from the set again.
    EXPECT_EQ(erasedBy(L"LA *\nR L\n\n"), 1);
    EXPECT_EQ(entityCount(), 1);
    EXPECT_FALSE(last().isNull());
    EXPECT_EQ(last(), keep);
    // Previous is the set of the last selection; a handle that is no entity is asked again.
    answers(L"FFFF L\n\n\n");
    ASSERT_EQ(qelhost::runCommand(L"CHPROP"), RTNORM) << "no property given";
    EXPECT_NE(printed().find(L"*Invalid selection*"), std::wstring::npos) << printed();
    EXPECT_EQ(erasedBy(L"P\n\n"), 1);
    EXPECT_EQ(entityCount(), 0);
}

TEST_F(Editing, MovedRotatedScaledAndMirroredEntitiesKeepHandleAndTags) {
    const AcDbObjectId pipe = taggedCircle({1, 0, 0}, 1.0);
    const std::wstring h = handleOf(pipe);
    ASSERT_EQ(command(L"MOVE", h + L"\n\n0,0,0 10,0,5\n"), RTNORM) << printed();
    inspect<AcDbCircle>(pipe,
                        [](AcDbCircle& c) { EXPECT_POINT(AcGePoint3d(11, 0, 5), c.center()); });
    // A quarter turn about (10,0,0): (11,0,5) goes to (10,1,5).
    ASSERT_EQ(command(L"ROTATE", h + L"\n\n10,0,0 90\n"), RTNORM) << printed();
    inspect<AcDbCircle>(pipe,
                        [](AcDbCircle& c) { EXPECT_POINT(AcGePoint3d(10, 1, 5), c.center()); });
    // A scale of 0 is refused and asked again; 3 about (10,0,5) triples the radius.
    ASSERT_EQ(command(L"SCALE", h + L"\n\n10,0,5 0 3\n"), RTNORM) << printed();
    EXPECT_NE(printed().find(L"Value must be positive and nonzero."), std::wstring::npos);
    inspect<AcDbCircle>(pipe, [](AcDbCircle& c) {
        EXPECT_POINT(AcGePoint3d(10, 3, 5), c.center());
        EXPECT_NEAR(3.0, c.radius(), 1e-12);
    });
    // About the world X axis through the centre's foot: a half turn flips Y and Z.
    ASSERT_EQ(command(L"3DROTATE", h + L"\n\nX 0,0,0 180\n"), RTNORM) << printed();
    inspect<AcDbCircle>(pipe, [](AcDbCircle& c) {
        EXPECT_POINT(AcGePoint3d(10, -3, -5), c.center());
        EXPECT_TRUE(c.normal().isEqualTo(-AcGeVector3d::kZAxis));
    });
    // Mirrored in the line x = 0, keeping no source.
    ASSERT_EQ(command(L"MIRROR", h + L"\n\n0,0 0,1 Y\n"), RTNORM) << printed();
    inspect<AcDbCircle>(pipe,
                        [](AcDbCircle& c) { EXPECT_POINT(AcGePoint3d(-10, -3, -5), c.center()); });
    EXPECT_EQ(entityCount(), 1);
    EXPECT_EQ(tagsOf(pipe), std::make_pair(std::wstring(L"Pipe"), std::wstring(L"P-101")));
}

TEST_F(Editing, CopiesTakeTheTagsAndAFailedCopyLeavesNothing) {
    const AcDbObjectId pipe = taggedCircle({0, 0, 0}, 1.0);
    ASSERT_EQ(command(L"COPY", handleOf(pipe) + L"\n\n0,0 5,0 10,0\n"), RTNORM) << printed();
    ASSERT_EQ(entityCount(), 3);
    const AcDbObjectId copy = last();
    EXPECT_NE(copy, pipe);
    inspect<AcDbCircle>(copy,
                        [](AcDbCircle& c) { EXPECT_POINT(AcGePoint3d(10, 0, 0), c.center()); });
    EXPECT_EQ(tagsOf(copy), tagsOf(pipe));
    // A mirror that keeps the source makes a tagged copy, the source stays put.
    ASSERT_EQ(command(L"MIRROR", handleOf(pipe) + L"\n\n0,5 1,5\n\n"), RTNORM) << printed();
    inspect<AcDbCircle>(last(),
                        [](AcDbCircle& c) { EXPECT_POINT(AcGePoint3d(0, 10, 0), c.center()); });
    inspect<AcDbCircle>(pipe,
                        [](AcDbCircle& c) { EXPECT_POINT(AcGePoint3d(0, 0, 0), c.center()); });
    EXPECT_EQ(tagsOf(last()).first, L"Pipe");
}

TEST_F(Editing, ErasedTaggedEntitiesTakeTheirRecordsAndTheDrawingReopens) {
    const AcDbObjectId valve = taggedCircle({0, 0, 0}, 1.0);
    const AcDbObjectId pipe = taggedCircle({5, 0, 0}, 1.0);
    // The valve alone in an unnamed group, as imports group the parts of one object.
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(db()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
    auto* group = new AcDbGroup(L"ValveGroup");
    AcDbObjectId groupId;
    ASSERT_EQ(groups->setAt(L"VALVE", group, groupId), Acad::eOk);
    ASSERT_EQ(group->setAnonymous(), Acad::eOk);
    ASSERT_EQ(group->append(valve), Acad::eOk);
    group->close();
    groups->close();
    ASSERT_EQ(command(L"ERASE", handleOf(valve) + L"\n\n"), RTNORM) << printed();
    AcDbGroup* gone = nullptr;
    EXPECT_NE(acdbOpenObject(gone, groupId, AcDb::kForRead), Acad::eOk) << "the empty group went";
    const auto file = std::filesystem::temp_directory_path() /
                      ("qel-erase-" + std::to_string(::getpid()) + ".dxf");
    answers(file.wstring() + L"\n");
    ASSERT_EQ(qelhost::runCommand(L"SAVEAS"), RTNORM) << printed();
    // A record left behind would be saved owned by the erased entity, and refused on opening.
    answers(file.wstring() + L"\n");
    EXPECT_EQ(qelhost::runCommand(L"OPEN"), RTNORM) << printed();
    std::filesystem::remove(file);
    AcDbObjectId reopened;
    ASSERT_EQ(db()->getAcDbObjectId(reopened, false, pipe.handle()), Acad::eOk);
    EXPECT_EQ(tagsOf(reopened), std::make_pair(std::wstring(L"Pipe"), std::wstring(L"P-101")));
    EXPECT_EQ(entityCount(), 1);
}

TEST_F(Editing, ChpropChangesColourLayerAndThicknessAndAsksAgainForUnknownOnes) {
    addLayer(L"Pipes");
    const AcDbObjectId circle = add(new AcDbCircle({0, 0, 0}, AcGeVector3d::kZAxis, 1.0));
    const AcDbObjectId face = add(new AcDbFace({0, 0, 0}, {1, 0, 0}, {1, 1, 0}));
    ASSERT_EQ(command(L"CHPROP", L"ALL\n\nC purple red LA Nowhere Pipes T 4\n\n"), RTNORM)
        << printed();
    EXPECT_NE(printed().find(L"Invalid color"), std::wstring::npos);
    EXPECT_NE(printed().find(L"Layer \"Nowhere\" not found."), std::wstring::npos);
    EXPECT_NE(printed().find(L"1 object(s) have no thickness"), std::wstring::npos) << printed();
    inspect<AcDbCircle>(circle, [](AcDbCircle& c) {
        EXPECT_EQ(c.colorIndex(), 1);
        ACHAR* layer = c.layer();
        EXPECT_EQ(std::wstring(layer), L"Pipes");
        acutDelString(layer);
        EXPECT_EQ(c.thickness(), 4.0);
    });
    inspect<AcDbFace>(face, [](AcDbFace& f) { EXPECT_EQ(f.colorIndex(), 1); });
    // -CHANGE reaches the same properties.
    ASSERT_EQ(command(L"-CHANGE", L"L\n\nP C BYLAYER\n\n"), RTNORM) << printed();
    inspect<AcDbFace>(face, [](AcDbFace& f) { EXPECT_EQ(f.colorIndex(), 256); });
}

TEST_F(Editing, LinesCirclesAndArcsInTheUcsWithThicknessAndElevation) {
    answers(L"THICKNESS 2.5\n");
    ASSERT_EQ(qelhost::runCommand(L"SETVAR"), RTNORM);
    answers(L"ELEVATION 1\n");
    ASSERT_EQ(qelhost::runCommand(L"SETVAR"), RTNORM);
    // A triangle closed by C: three lines; a bad point on the way is asked again.
    ASSERT_EQ(command(L"LINE", L"0,0 4,0 nowhere @0,3 C\n"), RTNORM) << printed();
    EXPECT_EQ(entityCount(), 3);
    inspect<AcDbLine>(last(), [](AcDbLine& l) {
        EXPECT_POINT(AcGePoint3d(4, 3, 1), l.startPoint()) << "relative to the last point";
        EXPECT_POINT(AcGePoint3d(0, 0, 1), l.endPoint());
        EXPECT_EQ(l.thickness(), 2.5);
    });
    // A thick circle through three points: the circumcircle of a right triangle.
    ASSERT_EQ(command(L"CIRCLE", L"3P 0,0 6,0 0,8\n"), RTNORM) << printed();
    inspect<AcDbCircle>(last(), [](AcDbCircle& c) {
        EXPECT_POINT(AcGePoint3d(3, 4, 1), c.center());
        EXPECT_NEAR(5.0, c.radius(), 1e-12);
        EXPECT_EQ(c.thickness(), 2.5);
    });
    // Points on one line make no circle and are asked again; a radius 0 too.
    ASSERT_EQ(command(L"CIRCLE", L"3P 0,0 1,1 2,2 0,0 2,0 0,2\n"), RTNORM);
    EXPECT_NE(printed().find(L"lie on one line"), std::wstring::npos);
    ASSERT_EQ(command(L"CIRCLE", L"5,5 0 D 3\n"), RTNORM);
    inspect<AcDbCircle>(last(), [](AcDbCircle& c) { EXPECT_NEAR(1.5, c.radius(), 1e-12); });
    // An arc through three points clockwise is kept counter-clockwise from the end.
    ASSERT_EQ(command(L"ARC", L"0,1 1,0 0,-1\n"), RTNORM) << printed();
    inspect<AcDbArc>(last(), [](AcDbArc& a) {
        EXPECT_POINT(AcGePoint3d(0, 0, 1), a.center());
        AcGePoint3d s, e;
        a.getStartPoint(s);
        a.getEndPoint(e);
        EXPECT_POINT(AcGePoint3d(0, -1, 1), s);
        EXPECT_POINT(AcGePoint3d(0, 1, 1), e);
    });
    // By centre, start and included angle.
    ASSERT_EQ(command(L"ARC", L"C 0,0 2,0 A 90\n"), RTNORM) << printed();
    inspect<AcDbArc>(last(), [](AcDbArc& a) {
        AcGePoint3d e;
        a.getEndPoint(e);
        EXPECT_POINT(AcGePoint3d(0, 2, 1), e);
    });
}

TEST_F(Editing, PolylinesWithWidthsBulgesAndClosing) {
    // A line, then a tangent arc (a half circle back), widths from the second segment on.
    ASSERT_EQ(command(L"PLINE", L"0,0 4,0 W 0.5 1 A 4,4 L C\n"), RTNORM) << printed();
    inspect<AcDbPolyline>(last(), [](AcDbPolyline& p) {
        ASSERT_EQ(p.numVerts(), 3u);
        EXPECT_TRUE(p.isClosed());
        double bulge = 0, w0 = 0, w1 = 0;
        p.getBulgeAt(0, bulge);
        EXPECT_EQ(bulge, 0.0);
        // Leaving along +X to reach (4,4) turns a half circle counter-clockwise: bulge 1.
        p.getBulgeAt(1, bulge);
        EXPECT_NEAR(1.0, bulge, 1e-12);
        p.getWidthsAt(1, w0, w1);
        EXPECT_EQ(w0, 0.5);
        EXPECT_EQ(w1, 1.0);
    });
    // An arc of a given included angle, clockwise.
    ASSERT_EQ(command(L"PLINE", L"0,0 A AN -90 2,2\n\n"), RTNORM) << printed();
    inspect<AcDbPolyline>(last(), [](AcDbPolyline& p) {
        double bulge = 0;
        p.getBulgeAt(0, bulge);
        EXPECT_NEAR(-std::tan(kPi / 8), bulge, 1e-12);
    });
    // Undo takes the last vertex back; a polyline of one vertex makes nothing.
    const int before = entityCount();
    ASSERT_EQ(command(L"PLINE", L"0,0 1,1 U\n\n"), RTNORM);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(Editing, PolylinesFacesAndTextIn3d) {
    ASSERT_EQ(command(L"3DPOLY", L"0,0,0 1,0,1 1,1,2 C\n"), RTNORM) << printed();
    inspect<AcDb3dPolyline>(last(), [](AcDb3dPolyline& p) {
        EXPECT_TRUE(p.isClosed());
        AcGePoint3d start, end;
        p.getStartPoint(start);
        p.getEndPoint(end);
        EXPECT_POINT(AcGePoint3d(0, 0, 0), start);
        EXPECT_POINT(start, end) << "a closed polyline ends where it starts";
    });
    // Two faces sharing an edge; the first edge of the first hidden, the second a triangle.
    ASSERT_EQ(command(L"3DFACE", L"I 0,0,0 1,0,0 1,1,0 0,1,0 1,2,1\n\n\n"), RTNORM) << printed();
    EXPECT_EQ(entityCount(), 3);
    inspect<AcDbFace>(last(), [](AcDbFace& f) {
        AcGePoint3d p0, p3;
        f.getVertexAt(0, p0);
        f.getVertexAt(3, p3);
        EXPECT_POINT(AcGePoint3d(0, 1, 0), p0) << "starts on the last edge of the first";
        EXPECT_POINT(AcGePoint3d(1, 2, 1), p3) << "a triangle repeats its third corner";
    });
    // Two lines of text, the second below the first.
    ASSERT_EQ(command(L"TEXT", L"0,0 2 0\nValve V-12\nsecond line\n\n"), RTNORM) << printed();
    inspect<AcDbText>(last(), [](AcDbText& t) {
        EXPECT_EQ(std::wstring(t.textStringConst()), L"second line");
        EXPECT_EQ(t.height(), 2.0);
        EXPECT_LT(t.position().y, -2.0);
    });
}

TEST_F(Editing, HelpListsTheDrawingAndEditingCommands) {
    ASSERT_EQ(qelhost::runCommand(L"HELP"), RTNORM);
    for (const wchar_t* name : {L"LINE", L"PLINE", L"3DFACE", L"BOX", L"TORUS", L"EXTRUDE",
                                L"SLICE", L"MOVE", L"3DROTATE", L"CHPROP", L"MASSPROP", L"DIST"})
        EXPECT_NE(printed().find(name), std::wstring::npos) << name;
    ASSERT_EQ(command(L"DIST", L"0,0,0 3,4,12\n"), RTNORM);
    EXPECT_NE(printed().find(L"Distance = 13.0000"), std::wstring::npos) << printed();
    EXPECT_NE(printed().find(L"Angle in XY Plane = 53.1301"), std::wstring::npos) << printed();
}

} // namespace
} // namespace editortest
