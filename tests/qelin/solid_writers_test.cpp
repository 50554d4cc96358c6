// The solid writers at their edges: what makes a cylinder, a cone to a point, the block form of
// a cylinder, and the pose helpers' degenerate cases. Solids are built in the host directly.
#include "export_fixture.h"
#include "export_params.h"

#include "export/complete_object.h"

#include "objectfile/param_read.h"
#include "writers/frame.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/dbblkref.h>

#include <cmath>
#include <numbers>

namespace {

using namespace qelintest;

// The file's pi is a float's: a height read back through it is off by its relative error.
const double kSinglePi = std::fabs(QelPiSingle - std::numbers::pi) / std::numbers::pi;

class SolidWriters : public qelintest::ExportTest {
protected:
    static bool write(QelEntityWriterFn* writer, const AcDbObjectId& id, QelObjectRef& object,
                      const char* cls) {
        object.reset(QelObject::Create(cls));
        QelWriter unused;
        return writer(AcGeMatrix3d::kIdentity, object.get(), unused, id);
    }
    // A reference to a block of one circle of that thickness.
    static AcDbObjectId thickCircleBlock(const wchar_t* name, double thickness) {
        auto* circle = new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, 0.5);
        circle->setThickness(thickness);
        return add(new AcDbBlockReference(AcGePoint3d(3, 4, 5), block(name, {circle})));
    }
};

} // namespace

// A cone drawn to its point has one flat face: radius1 is 0, the height comes from the volume
// and the axis points from the base to the point.
TEST_F(SolidWriters, AConeToAPointTakesItsHeightFromItsVolume) {
    const AcGeMatrix3d tilt = AcGeMatrix3d::rotation(0.7, AcGeVector3d::kXAxis) *
                              AcGeMatrix3d::translation(AcGeVector3d(1, 2, 3));
    const AcDbObjectId cone =
        solid([](AcDb3dSolid& s) { return s.createFrustum(2.0, 0.5, 0.5, 0.0); }, tilt);
    QelConeFit fit;
    ASSERT_TRUE(coneFromSolid(cone, fit));
    EXPECT_EQ(fit.radius1, 0.0);
    EXPECT_NEAR(fit.radius0, 0.5, 1e-12);
    EXPECT_NEAR(fit.height, 2.0, 2.0 * kSinglePi * 2.0);
    EXPECT_TRUE(fit.axis.isEqualTo(tilt * AcGeVector3d::kZAxis, AcGeTol()));
    EXPECT_TRUE(fit.base.isEqualTo(tilt * AcGePoint3d(0, 0, -1.0), AcGeTol()));
    EXPECT_NEAR(fit.xAxis.dotProduct(fit.axis), 0.0, 1e-12);
    QelObjectRef object;
    ASSERT_TRUE(write(QelWriteCone, cone, object, "Cone"));
    EXPECT_EQ(real(object.get(), "radius1"), 0.0);
}

// Radii a whole percent apart make no cylinder, so the object keeps no size; half a percent does.
// 12.5 and 12.375 differ by exactly 0.125 in binary too.
TEST_F(SolidWriters, RadiiOnePercentApartAreNoCylinder) {
    const AcDbObjectId apart = frustum(1.0, 12.5, 12.375);
    QelObjectRef object;
    EXPECT_FALSE(write(QelWriteCylinder, apart, object, "Cylinder"));
    EXPECT_EQ(object->GetParam("radius", 0), nullptr);
    QelConeFit fit;
    EXPECT_TRUE(coneFromSolid(apart, fit)) << "still a cone";

    const AcDbObjectId near = frustum(1.0, 12.5, 12.4375);
    ASSERT_TRUE(write(QelWriteCylinder, near, object, "Cylinder"));
    EXPECT_NEAR(real(object.get(), "height"), 1.0, 1e-12);
    EXPECT_NEAR(real(object.get(), "radius"), 12.5, 1e-12) << "the base's radius";
}

// The block form reads the circle as the insert places it; a circle of no thickness is no
// cylinder, and a block is no solid either, so nothing is written.
TEST_F(SolidWriters, AThickCircleInABlockIsACylinderUnlessItHasNoHeight) {
    QelObjectRef object;
    ASSERT_TRUE(write(QelWriteCylinder, thickCircleBlock(L"THICK", 2.0), object, "Cylinder"));
    EXPECT_NEAR(real(object.get(), "radius"), 0.5, 1e-12);
    EXPECT_NEAR(real(object.get(), "height"), 2.0, 1e-12);
    EXPECT_NE(object->GetParam("pose", 0), nullptr) << "placed at (3, 4, 5)";

    EXPECT_FALSE(write(QelWriteCylinder, thickCircleBlock(L"FLAT", 0.0), object, "Cylinder"));
    EXPECT_EQ(object->GetParam("radius", 0), nullptr);
}

// An entity of another kind gives the writers nothing to read: they fail and add no param.
TEST_F(SolidWriters, ShapesThatCannotBeMeasuredWriteNoSizes) {
    const AcDbObjectId line = add(new AcDbLine(AcGePoint3d(), AcGePoint3d(1, 0, 0)));
    QelObjectRef object;
    EXPECT_FALSE(write(QelWriteSphere, line, object, "Sphere"));
    EXPECT_FALSE(write(QelWriteTorus, line, object, "Torus"));
    EXPECT_FALSE(write(QelWriteElbow, line, object, "Elbow"));
    EXPECT_FALSE(write(QelWriteValve, line, object, "Valve")) << "no group";
    EXPECT_FALSE(write(QelWriteReducingElbow, line, object, "ReducingElbow"));
    EXPECT_EQ(object->GetParamCount(), 0u);
}

// Opposite vectors turn by the file's pi; past a half turn the angle counts on about the
// reference; points too close to span a plane give no pose.
TEST_F(SolidWriters, PoseHelpersAtTheirEdges) {
    const AcGeVector3d x = AcGeVector3d::kXAxis, y = AcGeVector3d::kYAxis;
    const AcGeVector3d z = AcGeVector3d::kZAxis;
    EXPECT_EQ(QelAngleBetween(x, -x, z), QelPiSingle);
    EXPECT_EQ(QelAngleBetween(x, x, z), 0.0);
    EXPECT_EQ(QelAngleBetween(AcGeVector3d(), x, z), 0.0);
    EXPECT_NEAR(QelAngleBetween(x, y, z), std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(QelAngleBetween(x, y, -z), QelTwoPiSingle - std::numbers::pi / 2, 1e-12);

    QelFrame frame;
    const AcGePoint3d o(1, 1, 1);
    EXPECT_FALSE(QelFrameFromThreePoints(o, o + x * 1e-6, o + y, frame));
    EXPECT_FALSE(QelFrameFromThreePoints(o, o + x, o + x * 2.0, frame)) << "in one line";
    ASSERT_TRUE(QelFrameFromThreePoints(o, o + y, o - x, frame));
    double rotation[4];
    frame.rotation(rotation);
    // X onto Y with the plane's normal still Z: a quarter turn about Z.
    EXPECT_NEAR(rotation[2] * rotation[3], std::numbers::pi / 2, 1e-12);
}

// A frustum read as a reducer: its ends square to the pose's Z axis, as the reducer is built
// again, the far end straight along it, and so concentric.
TEST_F(SolidWriters, AFrustumReadAsAReducerStandsOnItsAxis) {
    const AcGeMatrix3d tilt = AcGeMatrix3d::rotation(0.4, AcGeVector3d::kYAxis);
    const AcDbObjectId id =
        solid([](AcDb3dSolid& s) { return s.createFrustum(3.0, 1.0, 1.0, 0.5); }, tilt);
    QelObjectRef object;
    ASSERT_TRUE(write(QelWriteReducer, id, object, "Reducer"));
    EXPECT_NEAR(real(object.get(), "radius0"), 1.0, 1e-12);
    EXPECT_NEAR(real(object.get(), "radius1"), 0.5, 1e-12);
    EXPECT_NEAR(real(object.get(), "height"), 3.0, 1e-12);
    int subtype = -1;
    object->GetParam("subtype", 0)->GetValue(subtype);
    EXPECT_EQ(subtype, 0);
    EXPECT_EQ(object->GetParam("subtype", 0)->GetType(), QelShortType) << "as the file has it";
    double* direction = nullptr;
    unsigned count = 0;
    object->GetParam("direction", 0)->GetValue(direction, count, false);
    ASSERT_EQ(count, 3u);
    EXPECT_NEAR(direction[2], 1.0, 1e-12);
    QelObject* pose = nullptr;
    object->GetParam("pose", 0)->GetValue(pose);
    double* rotation = nullptr;
    pose->GetParam("rotation", 0)->GetValue(rotation, count, false);
    double m[9];
    rotation_to_affine(rotation, m);
    const AcGeVector3d z(m[2], m[5], m[8]);
    EXPECT_TRUE(z.isEqualTo(tilt * AcGeVector3d::kZAxis, AcGeTol())) << z.x << " " << z.z;
}

// A turn at the origin keeps its translation, as readers require of a pose; the last look before
// a write names the missing param, nested ones by their path, and the entity's handle.
TEST_F(SolidWriters, AnObjectLackingARequiredParamIsNamedAndLeftOut) {
    const double quarter[4] = {1, 0, 0, std::numbers::pi / 2};
    QelObjectRef cylinder(QelObject::Create("Cylinder"));
    QelWritePose(cylinder.get(), quarter, AcGePoint3d::kOrigin);
    QelSetReal(cylinder.get(), "radius", 1.0);
    QelSetReal(cylinder.get(), "height", 2.0);
    const AcDbObjectId line = add(new AcDbLine(AcGePoint3d(), AcGePoint3d(1, 0, 0)));
    EXPECT_TRUE(QelObjectComplete(cylinder.get(), line));

    QelObjectRef turnOnly(QelObject::Create("Transformation"));
    turnOnly->AddOrReplaceParam(QelParam::Create("rotation", quarter, 4));
    cylinder->AddOrReplaceParam(QelParam::Create("pose", turnOnly.get()));
    EXPECT_FALSE(QelObjectComplete(cylinder.get(), line));
    QelObjectRef sphere(QelObject::Create("Sphere"));
    EXPECT_FALSE(QelObjectComplete(sphere.get(), line));
    ACHAR handle[20];
    line.handle().getIntoAsciiBuffer(handle, 20);
    const std::wstring printed = win::Transcript::instance().printed();
    EXPECT_NE(printed.find(L"Error exporting entity " + std::wstring(handle) +
                           L": the Cylinder has no \"pose.translation\"; it is left out."),
              std::wstring::npos)
        << win::toUtf8(printed);
    EXPECT_NE(printed.find(L"the Sphere has no \"radius\""), std::wstring::npos);
}
