// Solids keep the SAT text they were read or saved as: built into kernel bodies only when first
// needed, and saved again as that text, byte for byte, while nothing changes them.
#include <dxf/drawing.h>

#include <arx/arx.h>
#include <arx/dbhost.h>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "acis_test.h"

namespace acistest {
namespace {

constexpr double kRadius = 0.5, kHeight = 3.0, kMajor = 2.0, kMinor = 0.25;
const Vec3 kTorusAt{10, 4, 1};

// The time a save writes into each solid's SAT header (seconds since 1970).
void saveTime(const char* seconds) {
    ::setenv("SOURCE_DATE_EPOCH", seconds, 1);
}

// The record of an entity in a drawing's text, from its group 0 to the next.
std::string record(const std::string& text, AcDbHandle handle) {
    char hex[20];
    std::snprintf(hex, sizeof hex, "%llX", static_cast<unsigned long long>(handle));
    const size_t at = text.find("\n  5\n" + std::string(hex) + "\n");
    if (at == std::string::npos) return "";
    const size_t begin = text.rfind("\n  0\n", at);
    return text.substr(begin, text.find("\n  0\n", at) - begin);
}

std::string saved(AcDbDatabase& db) {
    std::ostringstream out;
    dxf::writeDrawing(db, out);
    return out.str();
}

AcDbHandle append(AcDbDatabase& db, AcDbEntity* entity) {
    AcDbBlockTableRecord* space = nullptr;
    EXPECT_EQ(acdbOpenObject(space, db.currentSpaceId(), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
    space->close();
    entity->close();
    return id.handle();
}

// Opens the solid of that handle, hands it to f and closes it.
template <class F>
void withSolid(AcDbDatabase& db, AcDbHandle handle, AcDb::OpenMode mode, F f) {
    AcDbObjectId id;
    ASSERT_EQ(db.getAcDbObjectId(id, false, handle), Acad::eOk);
    AcDb3dSolid* solid = nullptr;
    ASSERT_EQ(acdbOpenObject(solid, id, mode), Acad::eOk);
    f(*solid);
    solid->close();
}

// A new drawing with a cylinder about the origin and a torus away from it.
struct TwoSolids {
    std::unique_ptr<AcDbDatabase> db = std::make_unique<AcDbDatabase>();
    AcDbHandle cylinder, torus;

    TwoSolids() {
        acdbHostApplicationServices()->setWorkingDatabase(db.get());
        auto* c = new AcDb3dSolid;
        EXPECT_EQ(c->createFrustum(kHeight, kRadius, kRadius, kRadius), Acad::eOk);
        cylinder = append(*db, c);
        auto* t = new AcDb3dSolid;
        EXPECT_EQ(t->createTorus(kMajor, kMinor), Acad::eOk);
        EXPECT_EQ(t->transformBy(AcGeMatrix3d::translation({kTorusAt.x, kTorusAt.y, kTorusAt.z})),
                  Acad::eOk);
        torus = append(*db, t);
    }
    ~TwoSolids() {
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
        ::unsetenv("SOURCE_DATE_EPOCH");
    }
};

std::unique_ptr<AcDbDatabase> reopened(const std::string& text) {
    std::unique_ptr<AcDbDatabase> db = dxf::readDrawing(text, "two-solids.dxf");
    acdbHostApplicationServices()->setWorkingDatabase(db.get());
    return db;
}

// Saved at one time, read and saved at another: the same text, the first time still in it, and
// no body built for it. A body asked for afterwards is the solid that was saved.
TEST(StoredSat, AnUnchangedSolidIsSavedAsReadAndBuiltOnlyWhenNeeded) {
    TwoSolids drawing;
    saveTime("1000000000");
    const std::string first = saved(*drawing.db);
    saveTime("2000000000");
    std::unique_ptr<AcDbDatabase> db = reopened(first);
    ASSERT_NE(db, nullptr);
    withSolid(*db, drawing.cylinder, AcDb::kForRead,
              [](AcDb3dSolid& s) { EXPECT_FALSE(s.isBuilt()); });
    EXPECT_EQ(saved(*db), first);
    withSolid(*db, drawing.cylinder, AcDb::kForRead, [](AcDb3dSolid& s) {
        EXPECT_FALSE(s.isBuilt());
        EXPECT_VOLUME(s.body(), kPi * kRadius * kRadius * kHeight, kHeight);
        EXPECT_TRUE(s.isBuilt());
        AcDbExtents box;
        ASSERT_EQ(s.getGeomExtents(box), Acad::eOk);
        EXPECT_NEAR(box.maxPoint().z, kHeight / 2, 1e-6 * kHeight);
    });
    // Built and looked at, but not changed: still the text it was read as.
    EXPECT_EQ(saved(*db), first);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

// A solid moved after reading is written anew from its body; the one beside it stays as read.
TEST(StoredSat, AChangedSolidIsWrittenAnewAndTheOthersStayAsRead) {
    TwoSolids drawing;
    saveTime("1000000000");
    const std::string first = saved(*drawing.db);
    std::unique_ptr<AcDbDatabase> db = reopened(first);
    ASSERT_NE(db, nullptr);
    const Vec3 step{0, 0, 5};
    withSolid(*db, drawing.torus, AcDb::kForWrite, [&](AcDb3dSolid& s) {
        EXPECT_EQ(s.transformBy(AcGeMatrix3d::translation({step.x, step.y, step.z})), Acad::eOk);
        EXPECT_TRUE(s.storedSat().empty());
    });
    const std::string second = saved(*db);
    EXPECT_EQ(record(second, drawing.cylinder), record(first, drawing.cylinder));
    EXPECT_NE(record(second, drawing.torus), record(first, drawing.torus));

    std::unique_ptr<AcDbDatabase> again = reopened(second);
    ASSERT_NE(again, nullptr);
    withSolid(*again, drawing.torus, AcDb::kForRead, [&](AcDb3dSolid& s) {
        EXPECT_CENTROID(s.body(), (Vec3{kTorusAt.x, kTorusAt.y, kTorusAt.z + step.z}), kMajor);
    });
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

// A drawing the host made, saved twice at different times without change in between, gives the
// same file: each solid keeps the text of its first save.
TEST(StoredSat, TwoSavesOfAnUnchangedDrawingAreTheSame) {
    TwoSolids drawing;
    saveTime("1000000000");
    const std::string first = saved(*drawing.db);
    saveTime("2000000000");
    EXPECT_EQ(saved(*drawing.db), first);
    withSolid(*drawing.db, drawing.cylinder, AcDb::kForWrite, [](AcDb3dSolid& s) {
        EXPECT_EQ(s.transformBy(AcGeMatrix3d::translation({1, 0, 0})), Acad::eOk);
    });
    EXPECT_NE(saved(*drawing.db), first);
}

} // namespace
} // namespace acistest
