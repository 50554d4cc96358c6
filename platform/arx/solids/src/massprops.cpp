// Mass properties of a solid at unit density.
#include "internal.h"

#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <math_Jacobi.hxx>
#include <math_Matrix.hxx>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace arxsolids {

Status Solid::getMassProp(MassProps& props) const {
    return guarded([&] {
        const TopoDS_Shape& shape = Access::shape(*this);
        if (shape.IsNull()) return Status::eNotApplicable;
        GProp_GProps scratch;
        const GProp_GProps& gprops = shapeVolume(shape, Access::measures(*this), scratch);
        const double v = gprops.Mass();
        if (!(v > 0.0)) return Status::eGeneralModelingFailure;
        const gp_Pnt c = gprops.CentreOfMass();
        // The kernel's matrix is about the centre of mass, products negated.
        const gp_Mat central = gprops.MatrixOfInertia();
        const double cx = c.X(), cy = c.Y(), cz = c.Z();
        MassProps out;
        out.volume = v;
        out.centroid = fromPnt(c);
        out.momInertia = {central(1, 1) + v * (cy * cy + cz * cz),
                          central(2, 2) + v * (cz * cz + cx * cx),
                          central(3, 3) + v * (cx * cx + cy * cy)};
        out.prodInertia = {-central(1, 2) + v * cx * cy, -central(2, 3) + v * cy * cz,
                           -central(3, 1) + v * cz * cx};
        for (int i = 0; i < 3; ++i)
            out.radiiGyration[i] = std::sqrt(out.momInertia[i] / v);

        // Principal moments about the centroid, ascending, axes right-handed.
        math_Matrix m(1, 3, 1, 3);
        for (int i = 1; i <= 3; ++i)
            for (int j = 1; j <= 3; ++j)
                m(i, j) = central(i, j);
        math_Jacobi jacobi(m);
        if (!jacobi.IsDone()) return Status::eGeneralModelingFailure;
        std::array<int, 3> order{1, 2, 3};
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return jacobi.Value(a) < jacobi.Value(b); });
        const double largest = std::abs(jacobi.Value(order[2]));
        const bool allEqual =
            jacobi.Value(order[2]) - jacobi.Value(order[0]) <= 1e-9 * std::max(largest, 1e-300);
        for (int k = 0; k < 3; ++k) {
            out.prinMoments[k] = jacobi.Value(order[k]);
            math_Vector axis(1, 3);
            jacobi.Vector(order[k], axis);
            out.prinAxes[k] = {axis(1), axis(2), axis(3)};
        }
        if (allEqual) out.prinAxes = {Vec3{1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, 1}};
        const gp_Vec x = toVec(out.prinAxes[0]).Normalized();
        const gp_Vec y = toVec(out.prinAxes[1]).Normalized();
        out.prinAxes[0] = fromVec(x);
        out.prinAxes[1] = fromVec(y);
        out.prinAxes[2] = fromVec(x.Crossed(y).Normalized());
        if (Status s = shapeExtents(shape, Access::measures(*this), true, out.extents);
            s != Status::eOk)
            return s == Status::eNotApplicable ? Status::eGeneralModelingFailure : s;
        props = out;
        return Status::eOk;
    });
}

} // namespace arxsolids
