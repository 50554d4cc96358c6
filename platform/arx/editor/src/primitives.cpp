// Commands that model primitive solids through the solid kernel: BOX, CYLINDER, CONE, SPHERE,
// TORUS. Bases lie in the current UCS's XY plane and heights run along its Z axis (or along an
// axis given by its end point); a negative height runs the other way.
#include "prompts.h"

#include <arx/dbsol3d.h>

#include <cmath>
#include <functional>

namespace qelhost {

namespace {

using Builder = std::function<Acad::ErrorStatus(AcDb3dSolid&)>;

// Builds a solid centred on the origin about Z, places it, and appends it; the kernel's failure
// is told and nothing is added.
int appendSolid(CommandContext& ctx, const Builder& build, const AcGeMatrix3d& placement) {
    auto* solid = new AcDb3dSolid;
    Acad::ErrorStatus es = Acad::eOk;
    try {
        es = build(*solid);
        if (es == Acad::eOk) es = solid->transformBy(placement);
    } catch (int thrown) {
        es = Acad::ErrorStatus(thrown);
    }
    if (es != Acad::eOk || solid->isNull()) {
        delete solid;
        ctx.invalid(L"The solid could not be modelled (" + std::wstring(acadErrorStatusText(es)) +
                    L").");
        return RTERROR;
    }
    return appendEntity(solid).isNull() ? RTERROR : RTNORM;
}

// The placement of a solid modelled about Z from -height/2 to +height/2: its base centred on
// `base`, its axis along `axis` (unit), X along the UCS X where the axis is the UCS Z.
AcGeMatrix3d placement(const AcGePoint3d& base, const AcGeVector3d& axis, double height) {
    AcGeVector3d x = ucsVector(AcGeVector3d::kXAxis).normal();
    if (!axis.isParallelTo(ucsZ())) x = AcGeMatrix3d::planeToWorld(axis) * AcGeVector3d::kXAxis;
    const AcGeVector3d y = axis.crossProduct(x).normal();
    x = y.crossProduct(axis).normal();
    return AcGeMatrix3d::alignCoordSys(AcGePoint3d::kOrigin, AcGeVector3d::kXAxis,
                                       AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
                                       base + axis * (height / 2.0), x, y, axis);
}

const Option kDiameter[] = {{L"D", L"DIAMETER"}};

// A radius, or with Diameter half a diameter; both above zero.
Answer radius(CommandContext& ctx, const std::wstring& what, const AcGePoint3d& centre, double& r) {
    const Answer got = askDistance(ctx, L"Specify " + what + L"radius or [Diameter]: ", r, &centre,
                                   kDiameter, positive);
    if (got != Answer::kOption) return got;
    const Answer d = askDistance(ctx, L"Specify " + what + L"diameter: ", r, &centre, {}, positive);
    r /= 2.0;
    return d;
}

// A height along the UCS Z, or an axis end point; with topRadius, the Top radius option too.
// The axis comes back unit, the height signed along it.
Answer axisAndHeight(CommandContext& ctx, const AcGePoint3d& base, AcGeVector3d& axis,
                     double& height, double* topRadius) {
    enum { kAxis, kTop };
    const Option kOptions[] = {{L"A", L"AXIS"}, {L"T", L"TOP"}};
    axis = ucsZ();
    for (;;) {
        const Answer got =
            askDistance(ctx,
                        topRadius ? L"Specify height or [Axis endpoint/Top radius]: "
                                  : L"Specify height or [Axis endpoint]: ",
                        height, nullptr, std::span(kOptions, topRadius ? 2 : 1), nonZero);
        if (got != Answer::kOption) return got;
        if (got.option == kTop) {
            const auto notNegative = [](double v) -> const wchar_t* {
                return v >= 0.0 ? nullptr : L"Value must be positive or zero.";
            };
            const double none = 0.0;
            if (askDistance(ctx, L"Specify top radius <0.0000>: ", *topRadius, &base, {},
                            notNegative, &none) == Answer::kCancel)
                return Answer{Answer::kCancel};
            continue;
        }
        AcGePoint3d end;
        for (;;) {
            if (askPoint(ctx, L"Specify axis endpoint: ", end) == Answer::kCancel)
                return Answer{Answer::kCancel};
            if (!end.isEqualTo(base)) break;
            ctx.invalid(L"The axis endpoint is the base centre: no height.");
        }
        axis = (end - base).normal();
        height = base.distanceTo(end);
        return Answer{Answer::kValue};
    }
}

int box(CommandContext& ctx) {
    const Option kCentre[] = {{L"C", L"CENTER"}};
    AcGePoint3d first, centre;
    const Answer start = askPoint(ctx, L"Specify first corner or [Center]: ", first, kCentre);
    if (start == Answer::kCancel) return RTCAN;
    const bool fromCentre = start == Answer::kOption;
    if (fromCentre && askPoint(ctx, L"Specify center: ", centre) == Answer::kCancel) return RTCAN;
    const AcGeMatrix3d toUcs = ucsToWorld().inverse();
    // Sizes in the UCS: x and y from the corners, z from the height.
    double size[3] = {0, 0, 0};
    AcGePoint3d low; // the UCS corner with the least coordinates of the base
    enum { kCube, kLength };
    const Option kOptions[] = {{L"C", L"CUBE"}, {L"L", L"LENGTH"}};
    bool needHeight = true, zFromCorners = false;
    for (;;) {
        AcGePoint3d other;
        const Answer got =
            askPoint(ctx, L"Specify other corner or [Cube/Length]: ", other, kOptions);
        if (got == Answer::kCancel) return RTCAN;
        const AcGePoint3d a = toUcs * (fromCentre ? centre : first);
        if (got == Answer::kOption) {
            double l = 0, w = 0;
            if (askDistance(ctx, L"Specify length: ", l, nullptr, {}, positive) == Answer::kCancel)
                return RTCAN;
            w = l;
            if (got.option == kLength &&
                askDistance(ctx, L"Specify width: ", w, nullptr, {}, positive) == Answer::kCancel)
                return RTCAN;
            size[0] = l, size[1] = w;
            if (got.option == kCube) size[2] = l, needHeight = false;
            low = fromCentre ? AcGePoint3d(a.x - l / 2, a.y - w / 2, a.z) : a;
            break;
        }
        const AcGePoint3d b = toUcs * other;
        // From the centre the other corner is half way out.
        const AcGePoint3d c = fromCentre ? a + (a - b) : a;
        size[0] = std::abs(b.x - c.x), size[1] = std::abs(b.y - c.y);
        if (size[0] < 1e-12 || size[1] < 1e-12) {
            ctx.invalid(L"The corners must differ in X and in Y.");
            continue;
        }
        low.set(std::min(b.x, c.x), std::min(b.y, c.y), c.z);
        if (std::abs(b.z - c.z) > 1e-12) {
            size[2] = b.z - c.z;
            needHeight = false;
            zFromCorners = true;
        }
        break;
    }
    if (needHeight &&
        askDistance(ctx, L"Specify height: ", size[2], nullptr, {}, nonZero) == Answer::kCancel)
        return RTCAN;
    // From the centre, a height or cube size is centred too.
    const double zLow = fromCentre && !zFromCorners ? low.z - size[2] / 2 : low.z;
    const double height = size[2];
    const AcGePoint3d middle(low.x + size[0] / 2, low.y + size[1] / 2, zLow + height / 2);
    const AcGeMatrix3d place = AcGeMatrix3d::alignCoordSys(
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
        toWorld(middle), ucsVector(AcGeVector3d::kXAxis), ucsVector(AcGeVector3d::kYAxis), ucsZ());
    return appendSolid(
        ctx, [&](AcDb3dSolid& s) { return s.createBox(size[0], size[1], std::abs(height)); },
        place);
}

int cylinderOrCone(CommandContext& ctx, bool cone) {
    AcGePoint3d base;
    if (askPoint(ctx, L"Specify center point of base: ", base) == Answer::kCancel) return RTCAN;
    double r = 0.0, top = cone ? 0.0 : -1.0, height = 0.0;
    if (radius(ctx, L"base ", base, r) == Answer::kCancel) return RTCAN;
    AcGeVector3d axis;
    if (axisAndHeight(ctx, base, axis, height, cone ? &top : nullptr) == Answer::kCancel)
        return RTCAN;
    if (!cone) top = r;
    // A negative height runs down the axis.
    if (height < 0) axis = -axis, height = -height;
    return appendSolid(
        ctx, [&](AcDb3dSolid& s) { return s.createFrustum(height, r, r, top); },
        placement(base, axis, height));
}

int cylinder(CommandContext& ctx) {
    return cylinderOrCone(ctx, false);
}

int cone(CommandContext& ctx) {
    return cylinderOrCone(ctx, true);
}

int sphere(CommandContext& ctx) {
    AcGePoint3d centre;
    double r = 0.0;
    if (askPoint(ctx, L"Specify center point: ", centre) == Answer::kCancel ||
        radius(ctx, L"", centre, r) == Answer::kCancel)
        return RTCAN;
    return appendSolid(
        ctx, [&](AcDb3dSolid& s) { return s.createSphere(r); },
        AcGeMatrix3d::translation(centre - AcGePoint3d::kOrigin));
}

int torus(CommandContext& ctx) {
    AcGePoint3d centre;
    double major = 0.0, minor = 0.0;
    if (askPoint(ctx, L"Specify center point: ", centre) == Answer::kCancel ||
        radius(ctx, L"", centre, major) == Answer::kCancel ||
        radius(ctx, L"tube ", centre, minor) == Answer::kCancel)
        return RTCAN;
    return appendSolid(
        ctx, [&](AcDb3dSolid& s) { return s.createTorus(major, minor); },
        placement(centre, ucsZ(), 0.0));
}

const ProcessorCommand kCommands[] = {
    {L"BOX", box}, {L"CYLINDER", cylinder}, {L"CONE", cone}, {L"SPHERE", sphere}, {L"TORUS", torus},
};

} // namespace

std::span<const ProcessorCommand> solidCommands() {
    return kCommands;
}

} // namespace qelhost
