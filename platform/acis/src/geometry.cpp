#include "geometry.h"

#include <charconv>
#include <cmath>
#include <map>
#include <variant>

#include "vec.h"

namespace acis {
namespace {

using arxsolids::Curve;
using arxsolids::SurfaceDesc;
using arxsolids::SurfaceKind;

constexpr double kTwoPi = 2.0 * M_PI;

Vec3 readVec(Fields& f, const char* field) {
    Vec3 v;
    v.x = f.number(field);
    v.y = f.number(field);
    v.z = f.number(field);
    return v;
}

Vec3 readDir(Fields& f, const char* field) {
    const Vec3 v = readVec(f, field);
    if (!(length(v) > 0.0)) f.fail(std::string(field) + " has no length");
    return unit(v);
}

void skipBounds(Fields& f, int count) {
    for (int i = 0; i < count; ++i)
        f.bound("parameter bound");
}

// ---- Surfaces, one reader each ----

SurfaceRead readPlane(Fields& f) {
    SurfaceRead out;
    out.desc.kind = SurfaceKind::kPlane;
    out.desc.origin = readVec(f, "origin");
    out.desc.axis = readDir(f, "normal");
    out.desc.refAxis = readDir(f, "u direction");
    return out;
}

SurfaceRead readCone(Fields& f) {
    SurfaceRead out;
    SurfaceDesc& d = out.desc;
    d.origin = readVec(f, "centre");
    d.axis = readDir(f, "axis");
    const Vec3 major = readVec(f, "major axis");
    const double ratio = f.number("radius ratio");
    f.bound("base parameter bound");
    f.bound("base parameter bound");
    double sine = f.number("sine of the half angle");
    double cosine = f.number("cosine of the half angle");
    f.number("u scale");
    f.skip("u sense");
    skipBounds(f, 4);
    d.radius = length(major);
    if (!(d.radius > 0.0)) f.fail("major axis has no length");
    d.refAxis = unit(major);
    if (std::abs(std::abs(ratio) - 1.0) > 1e-12) throw Unrepresentable("an elliptic cone");
    // A negative ratio or cosine turns the surface's normal towards the axis.
    out.flipped = (ratio < 0.0) != (cosine < 0.0);
    if (cosine < 0.0) sine = -sine, cosine = -cosine;
    if (!(std::hypot(sine, cosine) > 0.0)) f.fail("the half angle's sine and cosine are both 0");
    d.halfAngle = std::atan2(sine, cosine);
    d.kind = d.halfAngle == 0.0 ? SurfaceKind::kCylinder : SurfaceKind::kCone;
    if (std::abs(d.halfAngle) >= M_PI / 2 - 1e-12) throw Unrepresentable("a flat cone");
    return out;
}

SurfaceRead readSphere(Fields& f) {
    SurfaceRead out;
    SurfaceDesc& d = out.desc;
    d.kind = SurfaceKind::kSphere;
    d.origin = readVec(f, "centre");
    const double radius = f.number("radius");
    d.refAxis = readDir(f, "u direction");
    d.axis = readDir(f, "pole direction");
    if (radius == 0.0) f.fail("radius is 0");
    d.radius = std::abs(radius);
    out.flipped = radius < 0.0;
    return out;
}

SurfaceRead readTorus(Fields& f) {
    SurfaceRead out;
    SurfaceDesc& d = out.desc;
    d.kind = SurfaceKind::kTorus;
    d.origin = readVec(f, "centre");
    d.axis = readDir(f, "axis");
    d.radius = f.number("major radius");
    const double minor = f.number("minor radius");
    d.refAxis = readDir(f, "u direction");
    if (minor == 0.0) f.fail("minor radius is 0");
    if (!(d.radius > std::abs(minor))) throw Unrepresentable("a self-overlapping torus");
    d.minorRadius = std::abs(minor);
    out.flipped = minor < 0.0;
    return out;
}

using SurfaceReader = SurfaceRead (*)(Fields&);
const std::map<std::string, SurfaceReader>& surfaceReaders() {
    static const std::map<std::string, SurfaceReader> table{
        {"plane-surface", readPlane},
        {"cone-surface", readCone},
        {"sphere-surface", readSphere},
        {"torus-surface", readTorus},
    };
    return table;
}

// ---- Curves, one reader each ----

Curve readStraight(Fields& f, const EdgeRun& run) {
    readVec(f, "origin");
    readDir(f, "direction");
    if (run.closed) f.fail("a straight edge cannot be closed");
    return arxsolids::LineCurve{run.start, run.end};
}

Curve readEllipse(Fields& f, const EdgeRun& run) {
    const Vec3 centre = readVec(f, "centre");
    const Vec3 normal = readDir(f, "normal");
    const Vec3 major = readVec(f, "major axis");
    const double ratio = f.number("radius ratio");
    const double radius = length(major);
    if (!(radius > 0.0)) f.fail("major axis has no length");
    if (!(ratio > 0.0 && ratio <= 1.0)) f.fail("radius ratio must lie in (0, 1]");
    if (!(run.t1 > run.t0)) f.fail("the edge's parameters do not increase");
    // Running an ellipse backwards is running it forwards about the other normal, with the
    // same parameters.
    const Vec3 n = run.reversed ? -normal : normal;
    const bool whole = run.closed && run.t1 - run.t0 >= kTwoPi - 1e-9;
    if (ratio == 1.0) {
        if (whole) return arxsolids::CircleCurve{centre, n, radius};
        return arxsolids::ArcCurve{centre, n, unit(major), radius, run.t0, run.t1};
    }
    return arxsolids::EllipseCurve{centre, n, major, ratio, run.t0, run.t1};
}

using CurveReader = Curve (*)(Fields&, const EdgeRun&);
const std::map<std::string, CurveReader>& curveReaders() {
    static const std::map<std::string, CurveReader> table{
        {"straight-curve", readStraight},
        {"ellipse-curve", readEllipse},
    };
    return table;
}

// ---- Writing ----

std::string vec(const Vec3& v) {
    return formatNumber(v.x) + " " + formatNumber(v.y) + " " + formatNumber(v.z);
}

std::string record(const std::string& name, const std::string& fields) {
    return name + " $-1 -1 $-1 " + fields + " #";
}

// refAxis made square to axis, as the records need.
Vec3 squareTo(const Vec3& ref, const Vec3& axis) {
    const Vec3 n = unit(axis);
    return unit(ref - n * dot(ref, n));
}

} // namespace

std::string formatNumber(double value) {
    if (value == 0.0) return "0"; // no "-0"
    char buffer[32];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return ec == std::errc() ? std::string(buffer, end) : "0";
}

SurfaceRead readSurface(const SatDocument& doc, int index) {
    Fields f(doc, index);
    const auto it = surfaceReaders().find(f.record().name);
    if (it == surfaceReaders().end()) throw Unrepresentable("a face on a " + f.record().name);
    f.skipCommon();
    return it->second(f);
}

Curve readCurve(const SatDocument& doc, int index, const EdgeRun& run) {
    Fields f(doc, index);
    const auto it = curveReaders().find(f.record().name);
    if (it == curveReaders().end()) throw Unrepresentable("an edge on a " + f.record().name);
    f.skipCommon();
    return it->second(f, run);
}

std::string surfaceRecord(const SurfaceDesc& d) {
    const Vec3 axis = unit(d.axis), ref = squareTo(d.refAxis, d.axis);
    const std::string bounds = "I I I I";
    switch (d.kind) {
    case SurfaceKind::kPlane:
        return record("plane-surface",
                      vec(d.origin) + " " + vec(axis) + " " + vec(ref) + " forward_v " + bounds);
    case SurfaceKind::kCylinder:
    case SurfaceKind::kCone: {
        const double angle = d.kind == SurfaceKind::kCone ? d.halfAngle : 0.0;
        Vec3 origin = d.origin;
        double radius = d.radius;
        if (!(radius > 0.0)) {
            // The base circle must have a size: take it one unit along the slant, where the
            // cone is wider.
            const double step = angle < 0.0 ? -1.0 : 1.0;
            origin = origin + axis * (step * std::cos(angle));
            radius = step * std::sin(angle);
        }
        return record("cone-surface", vec(origin) + " " + vec(axis) + " " + vec(ref * radius) +
                                          " 1 I I " + formatNumber(std::sin(angle)) + " " +
                                          formatNumber(std::cos(angle)) + " " +
                                          formatNumber(radius) + " forward " + bounds);
    }
    case SurfaceKind::kSphere:
        return record("sphere-surface", vec(d.origin) + " " + formatNumber(d.radius) + " " +
                                            vec(ref) + " " + vec(axis) + " forward_v " + bounds);
    case SurfaceKind::kTorus:
        return record("torus-surface",
                      vec(d.origin) + " " + vec(axis) + " " + formatNumber(d.radius) + " " +
                          formatNumber(d.minorRadius) + " " + vec(ref) + " forward_v " + bounds);
    case SurfaceKind::kOther:
        break;
    }
    throw Unrepresentable("a free-form face (no exact form is written for it)");
}

CurveRecord curveRecord(const Curve& curve, const Vec3& start) {
    using arxsolids::ArcCurve;
    using arxsolids::CircleCurve;
    using arxsolids::EllipseCurve;
    using arxsolids::LineCurve;
    const auto ellipse = [](const Vec3& centre, const Vec3& normal, const Vec3& major, double ratio,
                            double t0, double t1) {
        return CurveRecord{record("ellipse-curve", vec(centre) + " " + vec(unit(normal)) + " " +
                                                       vec(major) + " " + formatNumber(ratio) +
                                                       " I I"),
                           t0, t1};
    };
    if (const auto* line = std::get_if<LineCurve>(&curve)) {
        const double len = length(line->end - line->start);
        if (!(len > 0.0)) throw Unrepresentable("a straight edge of no length");
        return {record("straight-curve",
                       vec(line->start) + " " + vec(unit(line->end - line->start)) + " I I"),
                0.0, len};
    }
    if (const auto* circle = std::get_if<CircleCurve>(&curve)) {
        // Parameter zero at the edge's vertex.
        const Vec3 major = squareTo(start - circle->center, circle->normal) * circle->radius;
        return ellipse(circle->center, circle->normal, major, 1.0, 0.0, kTwoPi);
    }
    if (const auto* arc = std::get_if<ArcCurve>(&curve))
        return ellipse(arc->center, arc->normal, squareTo(arc->refAxis, arc->normal) * arc->radius,
                       1.0, arc->startAngle, arc->endAngle);
    if (const auto* e = std::get_if<EllipseCurve>(&curve)) {
        double t0 = e->startParam, t1 = e->endParam;
        if (t1 - t0 >= kTwoPi - 1e-12) {
            // A whole ellipse starts where its vertex is.
            const Vec3 d = start - e->center, x = unit(e->majorAxis);
            const Vec3 y = cross(unit(e->normal), x);
            t0 = std::atan2(dot(d, y) / e->radiusRatio, dot(d, x));
            t1 = t0 + kTwoPi;
        }
        return ellipse(e->center, e->normal, e->majorAxis, e->radiusRatio, t0, t1);
    }
    throw Unrepresentable("a free-form edge (no exact form is written for it)");
}

} // namespace acis
