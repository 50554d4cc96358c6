// Tightest boxes in closed form agree with the kernel's search over the same faces.
#include "checks.h"
#include "internal.h"

#include <BRepBndLib.hxx>
#include <BRepGProp.hxx>
#include <Bnd_Box.hxx>
#include <GProp_GProps.hxx>

namespace solidstest {
namespace {

Extents searched(const Solid& solid) {
    Bnd_Box box;
    BRepBndLib::AddOptimal(Access::shape(solid), box, false, false);
    Extents e;
    box.Get(e.min.x, e.min.y, e.min.z, e.max.x, e.max.y, e.max.z);
    return e;
}

TEST(ExactBox, ClosedFormsAgreeWithTheSearch) {
    const Matrix turn = Matrix::rotation(0.7, {1, 2, 3}, {4, -1, 2});
    Solid cylinder, cone, frustum, box, elbow, wideElbow, torus, sphere, tube, bore;
    ASSERT_OK(cylinder.createFrustum(2.0, 0.5, 0.5, 0.5));
    ASSERT_OK(cone.createFrustum(3.0, 1.0, 1.0, 0.0));
    ASSERT_OK(frustum.createFrustum(3.0, 1.0, 1.0, 0.4));
    ASSERT_OK(box.createBox(1.0, 2.0, 3.0));
    ASSERT_OK(elbow.extrudeAlongPath(circleRegion({3, 0, 0}, {0, 1, 0}, 0.5),
                                     ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0, kPi / 2},
                                     0.0));
    // An arc of 300 degrees: the tube's outermost points lie inside the face, not on its rims.
    ASSERT_OK(wideElbow.extrudeAlongPath(
        circleRegion({3, 0, 0}, {0, 1, 0}, 0.5),
        ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0, 5 * kPi / 3}, 0.0));
    ASSERT_OK(torus.createTorus(3.0, 1.0));
    ASSERT_OK(sphere.createSphere(1.5));
    ASSERT_OK(tube.createFrustum(4.0, 1.0, 1.0, 1.0));
    ASSERT_OK(bore.createFrustum(5.0, 0.6, 0.6, 0.6));
    ASSERT_OK(tube.booleanOper(BoolOperType::kBoolSubtract, bore));
    for (auto [name, solid, size] :
         {std::tuple{"cylinder", &cylinder, 2.0}, std::tuple{"cone", &cone, 3.0},
          std::tuple{"frustum", &frustum, 3.0}, std::tuple{"box", &box, 3.0},
          std::tuple{"elbow", &elbow, 4.0}, std::tuple{"wide elbow", &wideElbow, 4.0},
          std::tuple{"torus", &torus, 4.0}, std::tuple{"sphere", &sphere, 2.0},
          std::tuple{"bored tube", &tube, 4.0}}) {
        for (bool turned : {false, true}) {
            SCOPED_TRACE(std::string(name) + (turned ? ", turned" : ""));
            if (turned) {
                ASSERT_OK(solid->transformBy(turn));
            }
            // A primitive moved only keeps its kind: its boxes come from its sizes and place.
            const bool primitive = solid != &elbow && solid != &wideElbow && solid != &tube;
            EXPECT_EQ(primitive, Access::primitive(*solid) != Primitive::kNone);
            // Every face of these takes its closed form, not the search.
            for (const TopoDS_Face& face : facesOf(Access::shape(std::as_const(*solid)))) {
                Bnd_Box scratch;
                EXPECT_TRUE(addExactFaceBox(face, scratch));
            }
            Extents exact;
            ASSERT_OK(solid->getGeomExtents(exact));
            const Extents search = searched(*solid);
            EXPECT_TRUE(samePoint(search.min, exact.min, size, 1e-7));
            EXPECT_TRUE(samePoint(search.max, exact.max, size, 1e-7));
        }
    }
}

// Bodies of flat faces with straight edges: volume, centre, inertia and area in closed form agree
// with the kernel's integration (convex, hollow, not convex, mirrored, all away from the origin).
TEST(ClosedFormMeasures, FlatBodiesAgreeWithTheKernelsIntegration) {
    const Matrix turn = Matrix::rotation(0.7, {1, 2, 3}, {4, -1, 2});
    Solid box, framed, hole, ell, cut, mirrored;
    ASSERT_OK(box.createBox(1, 2, 3));
    ASSERT_OK(framed.createBox(4, 4, 1));
    ASSERT_OK(hole.createBox(2, 2, 3));
    ASSERT_OK(framed.booleanOper(BoolOperType::kBoolSubtract, hole));
    ASSERT_OK(ell.createBox(4, 1, 2));
    ASSERT_OK(cut.createBox(2, 2, 2));
    ASSERT_OK(cut.transformBy(Matrix::translation({1, 1, 0})));
    ASSERT_OK(ell.booleanOper(BoolOperType::kBoolUnite, cut));
    ASSERT_OK(mirrored.createBox(1, 2, 3));
    Matrix mirror; // in the plane x = 0
    mirror(0, 0) = -1;
    ASSERT_OK(mirrored.transformBy(mirror));
    for (auto [name, solid] :
         {std::pair{"box", &box}, std::pair{"frame with a hole", &framed},
          std::pair{"L of two boxes", &ell}, std::pair{"mirrored box", &mirrored}}) {
        SCOPED_TRACE(name);
        ASSERT_OK(solid->transformBy(turn));
        const TopoDS_Shape& shape = Access::shape(std::as_const(*solid));
        GProp_GProps closed, kernel;
        double area = 0.0;
        ASSERT_TRUE(polyhedronVolume(shape, closed));
        ASSERT_TRUE(polyhedronArea(shape, area));
        BRepGProp::VolumeProperties(shape, kernel, true);
        GProp_GProps surface;
        BRepGProp::SurfaceProperties(shape, surface);
        const double size = 10;
        EXPECT_TRUE(near(kernel.Mass(), closed.Mass(), size * size * size));
        EXPECT_TRUE(near(surface.Mass(), area, size * size));
        EXPECT_LT(closed.CentreOfMass().Distance(kernel.CentreOfMass()), 1e-9 * size);
        const gp_Mat a = closed.MatrixOfInertia(), b = kernel.MatrixOfInertia();
        for (int i = 1; i <= 3; ++i)
            for (int j = 1; j <= 3; ++j)
                EXPECT_TRUE(near(b(i, j), a(i, j), std::pow(size, 5))) << i << "," << j;
    }
    // A body with a curved face is not one of them.
    Solid cylinder;
    ASSERT_OK(cylinder.createFrustum(2.0, 0.5, 0.5, 0.5));
    GProp_GProps untouched;
    EXPECT_FALSE(polyhedronVolume(Access::shape(std::as_const(cylinder)), untouched));
}

} // namespace
} // namespace solidstest
