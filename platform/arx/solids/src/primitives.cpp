// Primitive solids, centred on the origin as the host builds them.
#include "internal.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepOffsetAPI_ThruSections.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <gp_Elips.hxx>

#include <cmath>

namespace arxsolids {
namespace {

// The largest size a builder takes. The kernel's tolerance is fixed (1e-7), and a double holds
// some 16 digits: beyond this the tolerance is lost in rounding, and slicing or joining such a
// body empties it or does not end.
constexpr double kMaxSize = 1e8;
// The smallest: ten times that tolerance. A thinner body has faces within tolerance of each
// other, which the kernel can neither join nor write so that it reads them back.
constexpr double kMinSize = 1e-6;

bool inRange(double v) {
    return std::fabs(v) <= kMaxSize;
}

bool positive(double v) {
    return v >= kMinSize && inRange(v);
}

// Elliptic section of an elliptic frustum at height z; radii along X and Y.
TopoDS_Wire ellipseWire(double z, double rx, double ry) {
    const bool alongX = rx >= ry;
    const gp_Ax2 frame(gp_Pnt(0, 0, z), gp::DZ(), alongX ? gp::DX() : gp::DY());
    const gp_Elips ellipse(frame, std::max(rx, ry), std::min(rx, ry));
    return BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(ellipse));
}

TopoDS_Shape ellipticFrustum(double height, double rx, double ry, double topRx) {
    BRepOffsetAPI_ThruSections loft(true, true);
    loft.AddWire(ellipseWire(-0.5 * height, rx, ry));
    if (topRx > 0.0)
        loft.AddWire(ellipseWire(0.5 * height, topRx, ry * topRx / rx));
    else
        loft.AddVertex(BRepBuilderAPI_MakeVertex(gp_Pnt(0, 0, 0.5 * height)));
    loft.Build();
    return loft.Shape();
}

// The space a torus's tube sweeps when it overlaps itself (|major| < minor): the part of the tube
// circle on the positive side of the axis, revolved. On the torus of major radius |major| that is
// the arc of the tube circle about its outer equator, or, for a negative major radius, about its
// inner one (the lemon); both end on the axis.
TopoDS_Shape overlappingTorus(double major, double minor) {
    if (major >= 0.0) {
        const double t = std::acos(-major / minor);
        return BRepPrimAPI_MakeTorus(major, minor, -t, t).Shape();
    }
    const double t = std::acos(major / minor);
    return BRepPrimAPI_MakeTorus(-major, minor, t, 2.0 * M_PI - t).Shape();
}

} // namespace

Status Solid::createFrustum(double height, double xRadius, double yRadius, double topXRadius) {
    return guarded([&] {
        if (!positive(height) || !positive(xRadius) || !positive(yRadius) ||
            !(topXRadius == 0.0 || positive(topXRadius)))
            return Status::eInvalidInput;
        const gp_Ax2 base(gp_Pnt(0, 0, -0.5 * height), gp::DZ());
        TopoDS_Shape shape;
        Primitive kind = Primitive::kNone;
        if (xRadius != yRadius) {
            shape = ellipticFrustum(height, xRadius, yRadius, topXRadius);
        } else if (topXRadius == xRadius) {
            shape = BRepPrimAPI_MakeCylinder(base, xRadius, height).Shape();
            kind = Primitive::kCylinder;
        } else {
            shape = BRepPrimAPI_MakeCone(base, xRadius, topXRadius, height).Shape();
            kind = topXRadius == 0.0 ? Primitive::kApexCone : Primitive::kCone;
        }
        Access::shape(*this) = shape;
        Access::primitive(*this) = kind;
        Access::sizes(*this) = {xRadius, topXRadius, height};
        return Status::eOk;
    });
}

Status Solid::createBox(double xLen, double yLen, double zLen) {
    return guarded([&] {
        if (!positive(xLen) || !positive(yLen) || !positive(zLen)) return Status::eInvalidInput;
        const gp_Pnt corner(-0.5 * xLen, -0.5 * yLen, -0.5 * zLen);
        Access::shape(*this) = BRepPrimAPI_MakeBox(corner, xLen, yLen, zLen).Shape();
        Access::primitive(*this) = Primitive::kBox;
        Access::sizes(*this) = {xLen, yLen, zLen};
        return Status::eOk;
    });
}

Status Solid::createSphere(double radius) {
    return guarded([&] {
        if (!positive(radius)) return Status::eInvalidInput;
        Access::shape(*this) = BRepPrimAPI_MakeSphere(radius).Shape();
        Access::primitive(*this) = Primitive::kSphere;
        Access::sizes(*this) = {radius, 0.0, 0.0};
        return Status::eOk;
    });
}

Status Solid::createTorus(double majorRadius, double minorRadius) {
    return guarded([&] {
        if (!positive(minorRadius) || !inRange(majorRadius) || majorRadius <= -minorRadius)
            return Status::eInvalidInput;
        // With equal radii the tube just closes the hole: the plain torus is right.
        if (majorRadius >= minorRadius) {
            Access::shape(*this) = BRepPrimAPI_MakeTorus(majorRadius, minorRadius).Shape();
            Access::primitive(*this) = Primitive::kTorus;
            Access::sizes(*this) = {majorRadius, minorRadius, 0.0};
            return Status::eOk;
        }
        TopoDS_Shape shape;
        if (Status s =
                finishSolids(overlappingTorus(majorRadius, minorRadius), shape, Check::kVolume);
            s != Status::eOk || shape.IsNull())
            return Status::eGeneralModelingFailure;
        Access::shape(*this) = shape;
        return Status::eOk;
    });
}

} // namespace arxsolids
