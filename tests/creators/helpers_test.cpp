// The shared recipe on its own: reading in drawing units, the pose and the import transform,
// colour, groups and tags, regions and centre lines, on entities of a real drawing.
#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "drawing_summary.h"
#include "foundation/error_report.h"
#include "host_fixture.h"
#include "objectfile/param_read.h"
#include "records/xrecords.h"

#include <qel/qel_json.h>

#include <cmath>
#include <memory>

namespace {

struct Unref {
    void operator()(QelObject* object) const { object->UnRef(); }
};
using ObjectRef = std::unique_ptr<QelObject, Unref>;

ObjectRef parse(const std::string& params) {
    return ObjectRef(
        qeljson::objectFromJson(R"({"class": "Thing", "params": [)" + params + "]}", "test"));
}

constexpr double kHalfPi = 1.5707963267948966;

class Helpers : public qelintest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        QelDocData() = CDocData();
        WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 0);
    }
    static void expectPoint(const AcGePoint3d& actual, double x, double y, double z) {
        EXPECT_NEAR(actual.x, x, 1e-9);
        EXPECT_NEAR(actual.y, y, 1e-9);
        EXPECT_NEAR(actual.z, z, 1e-9);
    }
    static std::vector<std::wstring> xdataTexts(const AcDbObject* object) {
        std::vector<std::wstring> out;
        resbuf* chain = object->xData(QEL_XDATA_APP);
        for (resbuf* rb = chain; rb; rb = rb->rbnext)
            if (rb->restype == 1000) out.push_back(rb->resval.rstring);
        acutRelRb(chain);
        return out;
    }
    static QelMemberRecord recordOf(const AcDbEntity* entity) {
        ads_name name;
        QelMemberRecord record;
        EXPECT_EQ(acdbGetAdsName(name, entity->objectId()), Acad::eOk);
        EXPECT_TRUE(record.Load(name));
        return record;
    }
};

TEST_F(Helpers, LengthsConvertToDrawingUnitsAndEverythingElseStays) {
    QelDocData().importUnitIndex = 1; // millimetres
    ObjectRef object = parse(R"(["radius", "double", 0.25],
        ["pose", "object", {"class": "Transformation", "params": [
            ["translation", "double[]", [1, 2, 3]], ["rotation", "double[]", [0, 0, 1, 0.5]]]}],
        ["knots", "double[]", [0, 0.5, 1]], ["ints", "int[]", [1, 2, 3]],
        ["plane", "double[]", [1, 2, 3, 4, 5]])");
    double radius = 0.0;
    EXPECT_TRUE(GetDoubleParam(object.get(), "radius", radius, true));
    EXPECT_DOUBLE_EQ(radius, 250.0);
    EXPECT_FALSE(GetDoubleParam(object.get(), "height", radius, true));
    EXPECT_DOUBLE_EQ(radius, 250.0);

    AcGeDoubleArray knots;
    EXPECT_TRUE(GetDoubleArrayParam(object.get(), "knots", knots, false));
    ASSERT_EQ(knots.length(), 3);
    EXPECT_DOUBLE_EQ(knots[1], 0.5);
    // An array of another type counts as absent.
    AcGePoint3dArray points;
    EXPECT_FALSE(GetPoint3dArrayParam(object.get(), "ints", points, true));
    AcGePoint2dArray flat;
    EXPECT_TRUE(GetPoint2dArrayParam(object.get(), "plane", flat, true));
    ASSERT_EQ(flat.length(), 2);
    EXPECT_DOUBLE_EQ(flat[1].y, 4000.0);

    AcGePoint3d origin;
    EXPECT_TRUE(GetPoseTranslation(object.get(), "pose", origin));
    expectPoint(origin, 1000.0, 2000.0, 3000.0);
    double quad[4] = {};
    EXPECT_TRUE(GetPoseRotation(object.get(), "pose", quad));
    EXPECT_DOUBLE_EQ(quad[2], 1000.0); // the axis is scaled, the angle is not
    EXPECT_DOUBLE_EQ(quad[3], 0.5);
}

TEST_F(Helpers, AClosedFitPointListLosesItsLastPointOnlyWhenConverted) {
    ObjectRef object = parse(R"(["closed", "double[]", [0, 0, 0, 1, 0, 0, 1, 1, 0, 0.000009, 0, 0]],
        ["open", "double[]", [0, 0, 0, 1, 0, 0, 1, 1, 0, 0.00002, 0, 0]])");
    AcGePoint3dArray points;
    EXPECT_TRUE(GetFitPointArrayParam(object.get(), "closed", points, true));
    EXPECT_EQ(points.length(), 3);
    points.setLogicalLength(0);
    EXPECT_TRUE(GetFitPointArrayParam(object.get(), "closed", points, false));
    EXPECT_EQ(points.length(), 4);
    points.setLogicalLength(0);
    EXPECT_TRUE(GetFitPointArrayParam(object.get(), "open", points, true));
    EXPECT_EQ(points.length(), 4);
}

TEST_F(Helpers, PoseTurnsAboutTheObjectsOriginAndTheImportTransformUndoesTheChosenSystem) {
    ObjectRef object = parse(R"(["pose", "object", {"class": "Transformation", "params": [
        ["translation", "double[]", [10, 0, 0]], ["rotation", "double[]", [0, 0, 2, 1.5707963267948966]]]}])");
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object.get(), translation, rotation);
    expectPoint(rotation * (translation * AcGePoint3d(1, 0, 0)), 10, 1, 0);

    // Without a pose, or with a translation only, nothing turns.
    ObjectRef bare = parse(R"(["pose", "object", {"class": "Transformation", "params": [
        ["translation", "double[]", [0, 5, 0]]]}])");
    PoseMatrices(bare.get(), translation, rotation);
    expectPoint(rotation * (translation * AcGePoint3d(1, 0, 0)), 1, 5, 0);
    ObjectRef none = parse("");
    PoseMatrices(none.get(), translation, rotation);
    EXPECT_TRUE(translation.isEqualTo(AcGeMatrix3d::kIdentity));
    EXPECT_TRUE(rotation.isEqualTo(AcGeMatrix3d::kIdentity));

    // The chosen system's origin (10,0,0) turned by a quarter about Z becomes the world.
    CDocData& doc = QelDocData();
    doc.selectedTranslation[0] = 10.0;
    doc.selectedRotation[3] = kHalfPi;
    auto* line = new AcDbLine(AcGePoint3d(10, 0, 0), AcGePoint3d(10, 1, 0));
    ApplyImportTransform(line);
    expectPoint(line->startPoint(), 0, 0, 0);
    expectPoint(line->endPoint(), 1, 0, 0);
    delete line;
    // Each import applies the system chosen for it, not one seen before.
    doc.selectedTranslation[0] = 0.0;
    doc.selectedRotation[3] = 0.0;
    AcDbLine still(AcGePoint3d(10, 0, 0), AcGePoint3d(10, 1, 0));
    ApplyImportTransform(&still);
    expectPoint(still.startPoint(), 10, 0, 0);
    doc.selectedTranslation[1] = -2.0;
    ApplyImportTransform(&still);
    expectPoint(still.startPoint(), 10, 2, 0);
    doc.selectedTranslation[1] = 0.0;
}

TEST_F(Helpers, ColourComesFromTheAppearanceOrTheLayerAndExclusionMembersHide) {
    ObjectRef red = parse(R"(["appearance", "object", {"class": "Appearance", "params": [
        ["diffuseColor", "byte[]", [255, 0, 0]]]}])");
    ObjectRef plain = parse("");
    AcDbLine line;
    ApplyColour(red.get(), &line);
    EXPECT_EQ(line.colorIndex(), 1);
    EXPECT_EQ(line.visibility(), AcDb::kVisible);
    ApplyColour(plain.get(), &line);
    EXPECT_EQ(line.colorIndex(), AcCmEntityColor::lookUpACI(255, 255, 255));

    CDocData& doc = QelDocData();
    doc.importContext = 1;
    ApplyColour(red.get(), &line);
    EXPECT_EQ(line.visibility(), AcDb::kInvisible);

    AcDbLine other;
    doc.layerColourFlag = 1;
    ApplyColour(red.get(), &other); // the override alone does nothing
    EXPECT_EQ(other.colorIndex(), 1);
    doc.useLayerColourOverride = 1;
    AcDbLine byLayer;
    ApplyColour(red.get(), &byLayer);
    EXPECT_EQ(byLayer.colorIndex(), 256);
    EXPECT_EQ(byLayer.visibility(), AcDb::kVisible);
}

TEST_F(Helpers, NumbersOfNamesAlwaysHaveSixDecimals) {
    wchar_t buffer[QelFormatDoubleSize];
    EXPECT_STREQ(FormatDouble(0.5, 2, buffer), L"0.500000");
    EXPECT_EQ(QelFormatDouble(1234.0000004), CString(L"1234.000000"));
    EXPECT_EQ(QelFormatDouble(1e20).GetLength(), 28);
}

TEST_F(Helpers, GroupsUnderOneKeyAllSurviveAndTagsCarryTheirNames) {
    CString firstName, secondName;
    AcDbGroup* first = QelMakeObjectGroup(L"LineGroup", L"LINE_GROUP", firstName);
    AcDbGroup* second = QelMakeObjectGroup(L"LineGroup", L"LINE_GROUP", secondName);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(firstName, secondName);
    EXPECT_FALSE(firstName.IsEmpty());

    AcDbLine* line = appendLine();
    QelGroupAppend(first, line->objectId());
    QelGroupAppend(second, AcDbObjectId()); // a null id is left out
    EXPECT_EQ(first->numEntities(), 1u);
    EXPECT_EQ(second->numEntities(), 0u);
    QelCloseGroup(first);
    QelCloseGroup(second);

    CDocData& doc = QelDocData();
    doc.importContext = 2;
    doc.maxGroupNumber = 7;
    const CString file(L"/plant/model.qel");
    QelMemberRecord record;
    record.memberType = 0;
    record.length = 3.0;
    QelFillRecordOrigin(record, 42, &file, firstName);
    QelTagEntity(line, record, L"Line");
    AddXData(line, L"second");
    QelMemberRecord back = recordOf(line);
    EXPECT_EQ(back.objectIndex, 42);
    EXPECT_EQ(back.filePath, file);
    EXPECT_EQ(back.context, 2);
    EXPECT_EQ(back.groupSerial, 7);
    EXPECT_EQ(back.groupName, firstName);
    EXPECT_DOUBLE_EQ(back.length, 3.0);
    EXPECT_EQ(xdataTexts(line), (std::vector<std::wstring>{L"Line", L"second"}));

    doc.importContext = 1; // only a geometric group numbers its members
    QelFillRecordOrigin(record, 42, &file, firstName);
    EXPECT_EQ(record.groupSerial, 0);
}

TEST_F(Helpers, CentreLinesArePlacedByThePoseAndTagged) {
    ObjectRef object = parse(R"(["pose", "object", {"class": "Transformation", "params": [
        ["translation", "double[]", [1, 2, 3]], ["rotation", "double[]", [1, 0, 0, 1.5707963267948966]]]}])");
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object.get(), translation, rotation);
    const CString file(L"f.qel");
    const AcDbObjectId id = AddAxisCenterLine(object.get(), 4.0, translation, rotation, 5, &file);
    AcDbLine* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, id), Acad::eOk);
    expectPoint(line->startPoint(), 1, 2, 3);
    expectPoint(line->endPoint(), 1, -2, 3); // +Z turned a quarter about X is -Y
    line->close();
    QelMemberRecord back = recordOf(line);
    EXPECT_EQ(back.memberType, 28);
    EXPECT_EQ(back.objectIndex, 5);
    EXPECT_EQ(xdataTexts(line), std::vector<std::wstring>{L"Center Line"});
}

TEST_F(Helpers, ARegionThatCannotBeMadeIsToldAndCounted) {
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    ASSERT_NE(space, nullptr);
    AcDbLine open(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
    AcDbVoidPtrArray curves;
    curves.append(&open);
    EXPECT_EQ(CreateRegion(curves, space), nullptr);

    AcDbLine a(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
    AcDbLine b(AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0));
    AcDbLine c(AcGePoint3d(0, 1, 0), AcGePoint3d(0, 0, 0));
    AcDbVoidPtrArray triangle;
    triangle.append(&a);
    triangle.append(&b);
    triangle.append(&c);
    AcDbRegion* region = CreateRegion(triangle, space);
    ASSERT_NE(region, nullptr);
    EXPECT_FALSE(region->objectId().isNull());
    region->close();
    space->close();

    unsigned errors = 0;
    QelGetErrorCount(errors);
    EXPECT_EQ(errors, 1u);
    EXPECT_NE(win::Transcript::instance().printed(m_mark).find(
                  L"\n Couldn't create Region - check for self-intersecting shapes."),
              std::wstring::npos);
}

TEST_F(Helpers, ACurveInModelSpaceBecomesARegionAndEntitiesGoToTheCurrentSpace) {
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    ASSERT_NE(space, nullptr);
    auto* circle = new AcDbCircle(AcGePoint3d(1, 1, 0), AcGeVector3d::kZAxis, 2.0);
    ASSERT_EQ(space->appendAcDbEntity(circle), Acad::eOk);
    AcDbRegion* region = RegionFromCurve(circle, space);
    space->close();
    ASSERT_NE(region, nullptr);
    double area = 0.0;
    EXPECT_EQ(region->getArea(area), Acad::eOk);
    EXPECT_NEAR(area, 4.0 * 3.141592653589793, 1e-9 * 4.0);
    region->close();
    EXPECT_FALSE(circle->isWriteEnabled()); // closed by the helper

    auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
    EXPECT_EQ(AddToCurrentSpace(line), Acad::eOk);
    EXPECT_EQ(line->ownerId(), acdbHostApplicationServices()->workingDatabase()->currentSpaceId());
    line->close();
}

} // namespace

namespace {

// The fixtures' comparison itself: a difference the fixtures are there to catch must fail.
TEST(SummaryLines, NumbersWithinTheirToleranceTextsExactly) {
    using creatorstest::LineMatches;
    std::string why;
    EXPECT_TRUE(LineMatches("AcDbLine from=(1,2,3) r=1000",
                            "AcDbLine from=(1,2,3.0000001) r=1000.0009", why));
    EXPECT_FALSE(LineMatches("r=1000", "r=1000.002", why));
    EXPECT_NE(why.find("1000.002"), std::string::npos);
    EXPECT_TRUE(LineMatches("vol=12.5~1e-2", "vol=12.509", why));
    EXPECT_FALSE(LineMatches("vol=12.5~1e-3", "vol=12.509", why));
    EXPECT_FALSE(LineMatches("xdata=\"0.500000 (lg)\"", "xdata=\"0.5 (lg)\"", why));
    EXPECT_TRUE(LineMatches("a=0..1e-06 group=*", R"(a=0..1e-06 group="LineGroup")", why));
    EXPECT_TRUE(LineMatches("AcDbLine * colour=7", "AcDbLine layer colour=7", why));
    EXPECT_FALSE(LineMatches("errors 0", "errors 0 more", why));
    EXPECT_FALSE(LineMatches("errors 0 more", "errors 0", why));
    EXPECT_FALSE(LineMatches("colour=-1", "colour=1", why));
}

} // namespace
