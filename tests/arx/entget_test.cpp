#include <cstdio>
#include <map>

#include "arx/dbkept.h"
#include "arx/dxfkind.h"
#include "samples.h"

namespace {

std::string text(const resbuf* rb) {
    char buffer[128];
    if (rb == nullptr) return "<none>";
    if (rb->restype == 0 || rb->restype == 1 || rb->restype == 2 || rb->restype == 5 ||
        rb->restype == 8 || rb->restype == 100) {
        std::string s;
        for (const ACHAR* p = rb->resval.rstring; *p; ++p)
            s += char(*p);
        return s;
    }
    if ((rb->restype >= 10 && rb->restype < 38) || rb->restype == 210) {
        std::snprintf(buffer, sizeof buffer, "%g,%g,%g", rb->resval.rpoint[0] + 0.0,
                      rb->resval.rpoint[1] + 0.0, rb->resval.rpoint[2] + 0.0);
    } else if (rb->restype >= 38 && rb->restype < 60) {
        std::snprintf(buffer, sizeof buffer, "%g", rb->resval.rreal);
    } else if (rb->restype >= 60 && rb->restype < 80) {
        std::snprintf(buffer, sizeof buffer, "%d", rb->resval.rint);
    } else {
        std::snprintf(buffer, sizeof buffer, "%d", int(rb->resval.rlong));
    }
    return buffer;
}

// Each kind's own groups, as acdbEntGet gives them: angles in radians, points of planar
// entities in their plane's system.
const std::multimap<std::string, std::pair<int, std::string>> kOwnGroups = {
    {"Line", {10, "0,0,0"}},
    {"Line", {11, "3,4,0"}},
    {"Circle", {10, "1,2,3"}},
    {"Circle", {40, "2"}},
    {"CircleTilted", {210, "1,0,0"}},
    {"CircleTilted", {10, "0,0,0"}},
    {"ArcQuarter", {40, "1"}},
    {"ArcQuarter", {51, "1.5708"}},
    {"ArcOverZero", {50, "6.10865"}},
    {"Ellipse", {11, "0,2,0"}},
    {"Ellipse", {40, "0.5"}},
    {"Ellipse", {42, "6.28319"}},
    {"EllipseHalf", {42, "3.14159"}},
    {"LwPolyline", {90, "3"}},
    {"LwPolyline", {42, "1"}},
    {"LwPolyline", {40, "0.5"}},
    {"Polyline2d", {10, "0,0,5"}},
    {"Polyline2d", {70, "0"}},
    {"Polyline3d", {70, "8"}},
    {"SplineFit", {74, "3"}},
    {"SplineFit", {73, "3"}},
    {"SplineNurbs", {71, "1"}},
    {"SplineNurbs", {72, "4"}},
    {"SplineNurbs", {70, "4"}},
    {"Point", {10, "1,2,3"}},
    {"Text", {1, "AB"}},
    {"Text", {40, "2"}},
    {"Face", {12, "1,1,1"}},
    {"Face", {70, "2"}},
    {"Solid", {39, "3"}},
    {"Solid", {13, "2,1,0"}},
    {"Trace", {11, "2,0,0"}},
    {"PolyFaceMesh", {70, "64"}},
    {"PolyFaceMesh", {71, "4"}},
    {"PolyFaceMesh", {72, "1"}},
    {"PolygonMesh", {70, "48"}},
    {"PolygonMesh", {72, "2"}},
    {"BlockReference", {2, "UnitLine"}},
    {"BlockReference", {10, "10,0,0"}},
    {"BlockReference", {41, "2"}},
    {"BlockReference", {50, "1.5708"}},
};

class EntGetTest : public ArxTest, public ::testing::WithParamInterface<Sample> {};

TEST_P(EntGetTest, CommonAndOwnGroups) {
    const AcDbObjectId id = append(GetParam().make(*db));
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, id), Acad::eOk);
    RbChain chain(acdbEntGet(name));
    ASSERT_NE(chain.head, nullptr);
    EXPECT_EQ(chain.head->restype, -1);
    EXPECT_TRUE(ads_name_equal(chain.head->resval.rlname, name));
    const AcDbDxfKind* kind = acdbDxfKindOf(id.objectClass());
    ASSERT_NE(kind, nullptr);
    std::string type;
    for (const ACHAR* p = kind->dxfName; *p; ++p)
        type += char(*p);
    EXPECT_EQ(text(findCode(chain.head, 0)), type);
    ACHAR handle[20];
    id.handle().getIntoAsciiBuffer(handle, 20);
    EXPECT_EQ(std::wstring(findCode(chain.head, 5)->resval.rstring), handle);
    EXPECT_EQ(text(findCode(chain.head, 8)), "0");
    ads_name owner;
    acdbGetAdsName(owner, db->currentSpaceId());
    EXPECT_TRUE(ads_name_equal(findCode(chain.head, 330)->resval.rlname, owner));
    EXPECT_EQ(findCode(chain.head, 62), nullptr); // by layer
    const auto [first, last] = kOwnGroups.equal_range(GetParam().name);
    EXPECT_NE(first, last) << "no groups listed for " << GetParam().name;
    for (auto it = first; it != last; ++it)
        EXPECT_EQ(text(findCode(chain.head, it->second.first)), it->second.second)
            << GetParam().name << " group " << it->second.first;
}

// One declaration serves writing and reading: what is written reads back into a new entity
// that writes the same groups.
TEST_P(EntGetTest, FieldsReadBackWhatTheyWrite) {
    std::unique_ptr<AcDbEntity> e(GetParam().make(*db));
    e->setColorIndex(3);
    AcDbDxfItems first;
    ASSERT_EQ(acdbDxfWriteObject(*e, first), Acad::eOk);
    const AcDbDxfKind* kind = acdbDxfKindOf(e->isA());
    std::unique_ptr<AcDbEntity> copy(AcDbEntity::cast(kind->create()));
    short failed = 0;
    ASSERT_EQ(acdbDxfReadObject(*copy, first, &failed), Acad::eOk) << "group " << failed;
    AcDbDxfItems second;
    acdbDxfWriteObject(*copy, second);
    ASSERT_EQ(first.size(), second.size());
    // A polyface mesh counts its vertices and faces, which follow it as entities of their own.
    const bool countsFromParts = AcDbPolyFaceMesh::cast(e.get()) != nullptr;
    for (size_t i = 0; i < first.size(); ++i) {
        if (countsFromParts && (first[i].code == 71 || first[i].code == 72)) continue;
        EXPECT_EQ(first[i].code, second[i].code);
        expectNear(first[i].point, second[i].point, 1e-12);
        EXPECT_EQ(first[i].integer, second[i].integer);
        EXPECT_EQ(first[i].text, second[i].text);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryKind, EntGetTest, ::testing::ValuesIn(entitySamples()),
                         [](const auto& info) { return info.param.name; });

TEST(DxfKinds, UnknownGroupsAndBadValuesAreNamed) {
    AcDbCircle circle;
    AcDbDxfItems items = {AcDbDxfItem::ofReal(40, -1.0)};
    short failed = 0;
    EXPECT_EQ(acdbDxfReadObject(circle, items, &failed), Acad::eInvalidInput);
    EXPECT_EQ(failed, 40);
    items = {AcDbDxfItem::ofInt(77, 1)};
    EXPECT_EQ(acdbDxfReadObject(circle, items, &failed), Acad::eInvalidDxfCode);
    EXPECT_EQ(failed, 77);
    EXPECT_NE(acdbDxfKindNamed(L"lwpolyline"), nullptr);
    EXPECT_EQ(acdbDxfKindNamed(L"3DSOLID"), nullptr);
}

TEST_F(ArxTest, EntLastAndEntDel) {
    const AcDbObjectId a = append(new AcDbPoint), b = append(new AcDbLine);
    ads_name last, nameA, nameB;
    acdbGetAdsName(nameA, a);
    acdbGetAdsName(nameB, b);
    ASSERT_EQ(acdbEntLast(last), RTNORM);
    EXPECT_TRUE(ads_name_equal(last, nameB));
    ASSERT_EQ(acdbEntDel(nameB), RTNORM);
    EXPECT_TRUE(b.isErased());
    EXPECT_EQ(acdbEntGet(nameB), nullptr);
    acdbEntLast(last);
    EXPECT_TRUE(ads_name_equal(last, nameA));
    ASSERT_EQ(acdbEntDel(nameB), RTNORM); // and again to bring it back
    EXPECT_FALSE(b.isErased());
    AcDbObjectId back;
    ASSERT_EQ(acdbGetObjectId(back, nameB), Acad::eOk);
    EXPECT_EQ(back, b);
    ads_name none = {0, 0};
    EXPECT_EQ(acdbGetObjectId(back, none), Acad::eInvalidAdsName);
    EXPECT_EQ(acdbEntDel(none), RTERROR);
}

// An entity kept as read goes by the name the file gave it, as the host's own entities do.
TEST_F(ArxTest, EntGetNamesAKeptEntityAsItsFileDid) {
    const AcDbObjectId kept = append(new AcDbKeptEntity("WIPEOUT", {{10, "1"}}));
    ads_name name;
    acdbGetAdsName(name, kept);
    resbuf* data = acdbEntGet(name);
    const resbuf* kind = data;
    while (kind && kind->restype != 0)
        kind = kind->rbnext;
    ASSERT_NE(kind, nullptr);
    EXPECT_EQ(text(kind), "WIPEOUT");
    acutRelRb(data);
}

TEST(EntityNames, NoWorkingDatabaseNoEntities) {
    ads_name name;
    EXPECT_EQ(acdbEntLast(name), RTERROR);
    EXPECT_EQ(acdbRegApp(L"X"), RTERROR);
}

TEST_F(ArxTest, HandEntFindsByHandleText) {
    const AcDbObjectId id = append(new AcDbCircle);
    ACHAR handle[20];
    id.handle().getIntoAsciiBuffer(handle, 20);
    ads_name name, expected;
    acdbGetAdsName(expected, id);
    ASSERT_EQ(acdbHandEnt(handle, name), RTNORM);
    EXPECT_TRUE(ads_name_equal(name, expected));
    EXPECT_EQ(acdbHandEnt(L"FFFFFF", name), RTERROR);
    EXPECT_EQ(acdbHandEnt(L"not hex", name), RTERROR);
}

TEST_F(ArxTest, EntNextWalksVerticesOfComplexEntities) {
    const AcDbObjectId pl = append(new AcDb3dPolyline(AcDb::k3dSimplePoly, {{0, 0, 0}, {1, 0, 0}}));
    const AcDbObjectId after = append(new AcDbPoint);
    ads_name name, next;
    ASSERT_EQ(acdbEntNext(nullptr, name), RTNORM);
    AcDbObjectId id;
    acdbGetObjectId(id, name);
    EXPECT_EQ(id, pl);
    std::vector<std::string> types;
    while (true) {
        RbChain chain(acdbEntGet(name));
        types.push_back(text(findCode(chain.head, 0)));
        if (acdbEntNext(name, next) != RTNORM) break;
        ads_name_set(next, name);
    }
    EXPECT_EQ(types, (std::vector<std::string>{"POLYLINE", "VERTEX", "VERTEX", "POINT"}));
    acdbGetObjectId(id, name);
    EXPECT_EQ(id, after);
    // The vertices are the polyline's, in the database.
    Opened<AcDb3dPolyline> poly(pl);
    std::unique_ptr<AcDbObjectIterator> it(poly->vertexIterator());
    AcDb3dPolylineVertex* vertex = nullptr;
    ASSERT_EQ(poly->openVertex(vertex, it->objectId(), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(vertex->ownerId(), pl);
    vertex->close();
}

TEST_F(ArxTest, TblSearchAndRegApp) {
    RbChain zero(acdbTblSearch(L"layer", L"0", 0));
    ASSERT_NE(zero.head, nullptr);
    EXPECT_EQ(text(findCode(zero.head, 0)), "LAYER");
    EXPECT_EQ(text(findCode(zero.head, 62)), "7");
    {
        Opened<AcDbLayerTableRecord> layer(db->layerZero(), AcDb::kForWrite);
        layer->setIsOff(true);
    }
    RbChain off(acdbTblSearch(L"LAYER", L"0", 0));
    EXPECT_EQ(text(findCode(off.head, 62)), "-7");
    EXPECT_EQ(acdbTblSearch(L"LAYER", L"z_VelmoraTemp_Layer", 0), nullptr);
    EXPECT_EQ(acdbTblSearch(L"NOTATABLE", L"0", 0), nullptr);
    RbChain model(acdbTblSearch(L"BLOCK", L"*model_space", 0));
    EXPECT_EQ(text(findCode(model.head, 2)), "*Model_Space");
    EXPECT_EQ(acdbRegApp(L"Tovi_Technologies"), RTNORM);
    RbChain app(acdbTblSearch(L"APPID", L"TOVI_TECHNOLOGIES", 0));
    EXPECT_EQ(text(findCode(app.head, 2)), "Tovi_Technologies");
    EXPECT_EQ(acdbRegApp(L"bad/name"), RTERROR);
}

} // namespace

namespace {

TEST_F(ArxTest, EntGetShowsColourAndVisibility) {
    auto* line = new AcDbLine({0, 0, 0}, {1, 0, 0});
    line->setColorIndex(5);
    line->setVisibility(AcDb::kInvisible);
    const AcDbObjectId indexed = append(line);
    auto* circle = new AcDbCircle;
    AcCmColor c;
    c.setRGB(0x12, 0x34, 0x56);
    circle->setColor(c);
    const AcDbObjectId coloured = append(circle);
    ads_name name;
    acdbGetAdsName(name, indexed);
    RbChain a(acdbEntGet(name));
    EXPECT_EQ(findCode(a.head, 62)->resval.rint, 5);
    EXPECT_EQ(findCode(a.head, 60)->resval.rint, 1);
    EXPECT_EQ(findCode(a.head, 420), nullptr);
    acdbGetAdsName(name, coloured);
    RbChain b(acdbEntGet(name));
    EXPECT_EQ(findCode(b.head, 420)->resval.rlong, 0x123456);
    EXPECT_EQ(findCode(b.head, 62)->resval.rint, AcCmEntityColor::lookUpACI(0x12, 0x34, 0x56));
    EXPECT_EQ(findCode(b.head, 60), nullptr);
    // Objects that are no entities have no entity groups.
    acdbGetAdsName(name, db->layerZero());
    EXPECT_EQ(acdbEntGet(name), nullptr);
}

TEST_F(ArxTest, TblSearchShowsLayerStates) {
    {
        Opened<AcDbLayerTableRecord> layer(db->layerZero(), AcDb::kForWrite);
        layer->setIsFrozen(true);
        layer->setIsLocked(true);
    }
    RbChain zero(acdbTblSearch(L"LAYER", L"0", 0));
    EXPECT_EQ(findCode(zero.head, 70)->resval.rint, 5);
    EXPECT_EQ(acdbTblSearch(L"LAYER", L"0", 1), nullptr);
}

} // namespace

namespace {

// Writes an object's groups, reads them into a new object of its kind, and writes that again.
template <class T>
AcDbDxfItems writeReadWrite(const AcDbObject& object, T& copy) {
    AcDbDxfItems first, second;
    EXPECT_EQ(acdbDxfWriteObject(object, first), Acad::eOk);
    short failed = 0;
    EXPECT_EQ(acdbDxfReadObject(copy, first, &failed), Acad::eOk) << "group " << failed;
    acdbDxfWriteObject(copy, second);
    EXPECT_EQ(first.size(), second.size());
    for (size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
        EXPECT_EQ(first[i].code, second[i].code);
        EXPECT_EQ(first[i].integer, second[i].integer);
        EXPECT_EQ(first[i].text, second[i].text);
        expectNear(first[i].point, second[i].point, 0.0);
    }
    return first;
}

TEST_F(ArxTest, TableRecordsReadBackWhatTheyWrite) {
    AcDbLayerTableRecord layer;
    layer.setName(L"z_VelmoraTemp_Layer");
    AcCmColor c;
    c.setRGB(200, 100, 50);
    layer.setColor(c);
    layer.setIsOff(true);
    layer.setIsLocked(true);
    AcDbLayerTableRecord layerCopy;
    const AcDbDxfItems items = writeReadWrite(layer, layerCopy);
    EXPECT_EQ(items[2].text, L"z_VelmoraTemp_Layer");
    EXPECT_TRUE(layerCopy.isOff());
    EXPECT_TRUE(layerCopy.isLocked());
    EXPECT_FALSE(layerCopy.isFrozen());
    EXPECT_EQ(layerCopy.color().red(), 200);

    AcDbUCSTableRecord ucs;
    ucs.setName(L"Site");
    ucs.setOrigin({1, 2, 3});
    ucs.setXAxis(AcGeVector3d::kYAxis);
    ucs.setYAxis(AcGeVector3d::kZAxis);
    AcDbUCSTableRecord ucsCopy;
    writeReadWrite(ucs, ucsCopy);
    expectNear(ucsCopy.yAxis(), AcGeVector3d::kZAxis);

    AcDbRegAppTableRecord app;
    app.setName(L"Tovi_Technologies");
    AcDbRegAppTableRecord appCopy;
    writeReadWrite(app, appCopy);
    EXPECT_EQ(appCopy.name(), L"Tovi_Technologies");
    EXPECT_STREQ(acdbDxfKindOf(AcDbBlockTableRecord::desc())->dxfName, L"BLOCK_RECORD");
}

TEST_F(ArxTest, XrecordDataFollowItsMarker) {
    AcDbXrecord record;
    const ads_point where = {1, 2, 3};
    RbChain data(acutBuildList(1, L"path", 90, 20, 40, 0.25, 10, where, 0));
    ASSERT_EQ(record.setFromRbChain(*data.head), Acad::eOk);
    AcDbXrecord copy;
    const AcDbDxfItems items = writeReadWrite(record, copy);
    ASSERT_EQ(items.size(), 6u); // marker, cloning flag, four data
    EXPECT_EQ(items[2].text, L"path");
    resbuf* raw = nullptr;
    copy.rbChain(&raw);
    RbChain back(raw);
    EXPECT_EQ(back.head->rbnext->resval.rlong, 20);
    EXPECT_EQ(back.head->rbnext->rbnext->rbnext->resval.rpoint[2], 3.0);
}

TEST_F(ArxTest, GroupsReadTheirMembersBack) {
    const AcDbObjectId a = append(new AcDbPoint), b = append(new AcDbLine);
    AcDbDictionary* groups = nullptr;
    db->getGroupDictionary(groups, AcDb::kForWrite);
    auto* group = new AcDbGroup(L"PipeTeeGroup", false);
    AcDbObjectId groupId;
    groups->setAt(L"PIPETEE_GROUP", group, groupId);
    group->setAnonymous();
    group->append({a, b});
    // The copy must be in the database to take members.
    auto* copy = new AcDbGroup;
    AcDbObjectId copyId;
    groups->setAt(L"COPY", copy, copyId);
    groups->close();
    const AcDbDxfItems items = writeReadWrite(*group, *copy);
    EXPECT_EQ(items[1].text, L"PipeTeeGroup");
    EXPECT_EQ(items[2].integer, 1);
    EXPECT_EQ(items[3].integer, 0);
    EXPECT_EQ(items[4].id, a);
    EXPECT_TRUE(copy->isAnonymous());
    EXPECT_EQ(copy->numEntities(), 2u);
    group->close();
    copy->close();
}

} // namespace
