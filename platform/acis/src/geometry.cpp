#include "geometry.h"

#include <algorithm>
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

// ---- B-splines: knots as (value, multiplicity) pairs, the end knots once less than in the
// full vector; poles as x y z, with the weight after each when rational ----

constexpr int kMaxDegree = 25;

struct SplineBlock {
    int degree = 0;
    bool rational = false;
    std::vector<double> knots; // full vector
};

// The header words up to the knot count: "nurbs" or "nubs", the degree, then words (closure,
// singularity) this reader does not need.
SplineBlock readSplineHead(Fields& f, int degrees, int* second) {
    SplineBlock b;
    const std::string_view form = f.token("spline form");
    if (form != "nurbs" && form != "nubs")
        f.fail("spline form must be nurbs or nubs, not '" + std::string(form) + "'");
    b.rational = form == "nurbs";
    b.degree = f.count("degree", kMaxDegree);
    if (degrees == 2) *second = f.count("degree", kMaxDegree);
    while (f.remaining() > 0 && !f.nextIsNumber())
        f.skip("spline form word");
    return b;
}

std::vector<double> readKnots(Fields& f, int pairs, int degree) {
    std::vector<double> full;
    for (int i = 0; i < pairs; ++i) {
        const double value = f.number("knot");
        const int mult = f.count("knot multiplicity", degree + 1) + (i == 0 || i == pairs - 1);
        if (!full.empty() && value < full.back()) f.fail("knots must not decrease");
        full.insert(full.end(), mult, value);
    }
    if (pairs < 2 || full.size() < static_cast<std::size_t>(2 * degree + 2))
        f.fail("too few knots for the degree");
    return full;
}

void readPoles(Fields& f, std::size_t count, bool rational, std::vector<Vec3>& poles,
               std::vector<double>& weights) {
    if (count * (rational ? 4 : 3) > f.remaining()) f.fail("the record ends before its poles");
    for (std::size_t i = 0; i < count; ++i) {
        poles.push_back(readVec(f, "pole"));
        if (rational) {
            weights.push_back(f.number("weight"));
            if (!(weights.back() > 0.0)) f.fail("weights must be positive");
        }
    }
}

// Past the rest of a subtype, to its closing brace.
void skipSubtype(Fields& f) {
    int depth = 1;
    while (depth > 0) {
        const std::string_view t = f.token("closing brace");
        depth += (t == "{") - (t == "}");
    }
}

SurfaceRead readSpline(Fields& f) {
    SurfaceRead out;
    out.flipped = f.word("sense", "reversed", "forward");
    if (f.token("subtype") != "{") f.fail("a spline surface's data must start with '{'");
    const std::string_view kind = f.token("subtype name");
    if (kind != "exactsur") throw Unrepresentable("a spline surface of kind " + std::string(kind));
    f.skip("save level");
    arxsolids::SplineSurfaceDesc& d = out.desc.spline;
    out.desc.kind = SurfaceKind::kOther;
    const SplineBlock head = readSplineHead(f, 2, &d.vDegree);
    d.uDegree = head.degree;
    const int limit = static_cast<int>(f.remaining());
    const int nu = f.count("u knot count", limit), nv = f.count("v knot count", limit);
    d.uKnots = readKnots(f, nu, d.uDegree);
    d.vKnots = readKnots(f, nv, d.vDegree);
    d.uCount = static_cast<int>(d.uKnots.size()) - d.uDegree - 1;
    d.vCount = static_cast<int>(d.vKnots.size()) - d.vDegree - 1;
    readPoles(f, static_cast<std::size_t>(d.uCount) * d.vCount, head.rational, d.poles, d.weights);
    skipSubtype(f);
    return out;
}

using SurfaceReader = SurfaceRead (*)(Fields&);
const std::map<std::string, SurfaceReader, std::less<>>& surfaceReaders() {
    static const std::map<std::string, SurfaceReader, std::less<>> table{
        {"plane-surface", readPlane},   {"cone-surface", readCone},
        {"sphere-surface", readSphere}, {"torus-surface", readTorus},
        {"spline-surface", readSpline},
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

// The B-spline of an intcurve, run as the edge runs it; only edges over the whole of it.
Curve readIntcurve(Fields& f, const EdgeRun& run) {
    const bool curveReversed = f.word("sense", "reversed", "forward");
    const bool backwards = curveReversed != run.reversed;
    if (f.token("subtype") != "{") f.fail("an intcurve's data must start with '{'");
    const std::string_view kind = f.token("subtype name");
    if (kind != "exactcur") throw Unrepresentable("an intcurve of kind " + std::string(kind));
    f.skip("save level");
    arxsolids::SplineCurve c;
    const SplineBlock head = readSplineHead(f, 1, nullptr);
    c.degree = head.degree;
    c.knots = readKnots(f, f.count("knot count", static_cast<int>(f.remaining())), c.degree);
    readPoles(f, c.knots.size() - c.degree - 1, head.rational, c.controlPoints, c.weights);
    skipSubtype(f);
    const double first = c.knots[c.degree], last = c.knots[c.knots.size() - c.degree - 1];
    const double tol = 1e-9 * std::max(1.0, std::abs(last - first));
    // Each reversal (of the edge against its curve, of the curve against its B-spline) negates
    // the parameters.
    const double t0 = backwards ? -run.t1 : run.t0, t1 = backwards ? -run.t0 : run.t1;
    if (std::abs(t0 - first) > tol || std::abs(t1 - last) > tol)
        throw Unrepresentable("an edge over part of its intcurve");
    if (backwards) {
        std::reverse(c.controlPoints.begin(), c.controlPoints.end());
        std::reverse(c.weights.begin(), c.weights.end());
        std::reverse(c.knots.begin(), c.knots.end());
        for (double& k : c.knots)
            k = first + last - k;
    }
    return c;
}

using CurveReader = Curve (*)(Fields&, const EdgeRun&);
const std::map<std::string, CurveReader, std::less<>>& curveReaders() {
    static const std::map<std::string, CurveReader, std::less<>> table{
        {"straight-curve", readStraight},
        {"ellipse-curve", readEllipse},
        {"intcurve-curve", readIntcurve},
    };
    return table;
}

// ---- Writing ----

void appendVec(std::string& out, const Vec3& v) {
    appendNumber(out, v.x);
    out += ' ';
    appendNumber(out, v.y);
    out += ' ';
    appendNumber(out, v.z);
}

std::string vec(const Vec3& v) {
    std::string out;
    appendVec(out, v);
    return out;
}

std::string record(const std::string& name, const std::string& fields) {
    return name + " $-1 -1 $-1 " + fields + " #";
}

// Knot count and (value, multiplicity) pairs of a full knot vector, the end knots once less.
std::string knotPairs(const std::vector<double>& full) {
    std::vector<std::pair<double, int>> pairs;
    for (double k : full) {
        if (!pairs.empty() && pairs.back().first == k)
            ++pairs.back().second;
        else
            pairs.push_back({k, 1});
    }
    if (pairs.size() < 2) throw Unrepresentable("a B-spline with fewer than two distinct knots");
    --pairs.front().second;
    --pairs.back().second;
    std::string out = std::to_string(pairs.size());
    for (const auto& [value, mult] : pairs)
        out += " " + formatNumber(value) + " " + std::to_string(mult);
    return out;
}

std::string poleList(const std::vector<Vec3>& poles, const std::vector<double>& weights) {
    std::string out;
    for (std::size_t i = 0; i < poles.size(); ++i) {
        out += " " + vec(poles[i]);
        if (!weights.empty()) out += " " + formatNumber(weights[i]);
    }
    return out;
}

std::string splineSurfaceRecord(const arxsolids::SplineSurfaceDesc& d) {
    if (d.poles.empty() || d.poles.size() != static_cast<std::size_t>(d.uCount) * d.vCount ||
        d.uKnots.size() != static_cast<std::size_t>(d.uCount + d.uDegree + 1) ||
        d.vKnots.size() != static_cast<std::size_t>(d.vCount + d.vDegree + 1) ||
        (!d.weights.empty() && d.weights.size() != d.poles.size()))
        throw Unrepresentable("a free-form face without a whole B-spline");
    const std::string u = knotPairs(d.uKnots), v = knotPairs(d.vKnots);
    const std::string uCount = u.substr(0, u.find(' ')), vCount = v.substr(0, v.find(' '));
    const auto range = [](const std::vector<double>& k, int degree) {
        return "F " + formatNumber(k[k.size() - degree - 1]) + " F " + formatNumber(k[degree]);
    };
    return record("spline-surface",
                  std::string("forward { exactsur full ") +
                      (d.weights.empty() ? "nubs " : "nurbs ") + std::to_string(d.uDegree) + " " +
                      std::to_string(d.vDegree) + " both open open none none " + uCount + " " +
                      vCount + u.substr(u.find(' ')) + v.substr(v.find(' ')) +
                      poleList(d.poles, d.weights) + " 0 0 0 0 0 0 0 " +
                      range(d.uKnots, d.uDegree) + " " + range(d.vKnots, d.vDegree) + " } I I I I");
}

// refAxis made square to axis, as the records need.
Vec3 squareTo(const Vec3& ref, const Vec3& axis) {
    const Vec3 n = unit(axis);
    return unit(ref - n * dot(ref, n));
}

} // namespace

void appendNumber(std::string& out, double value) {
    char buffer[32];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    if (value == 0.0 || ec != std::errc()) // no "-0"
        out += '0';
    else
        out.append(buffer, end);
}

std::string formatNumber(double value) {
    std::string out;
    appendNumber(out, value);
    return out;
}

SurfaceRead readSurface(const SatDocument& doc, int index) {
    Fields f(doc, index);
    const auto it = surfaceReaders().find(f.record().name);
    if (it == surfaceReaders().end())
        throw Unrepresentable("a face on a " + std::string(f.record().name));
    f.skipCommon();
    return it->second(f);
}

Curve readCurve(const SatDocument& doc, int index, const EdgeRun& run) {
    Fields f(doc, index);
    const auto it = curveReaders().find(f.record().name);
    if (it == curveReaders().end())
        throw Unrepresentable("an edge on a " + std::string(f.record().name));
    f.skipCommon();
    return it->second(f, run);
}

std::string surfaceRecord(const SurfaceDesc& d) {
    const Vec3 axis = unit(d.axis), ref = squareTo(d.refAxis, d.axis);
    std::string out;
    out.reserve(256);
    const auto head = [&out](const char* name) {
        out += name;
        out += " $-1 -1 $-1 ";
    };
    const auto number = [&out](double value) {
        appendNumber(out, value);
        out += ' ';
    };
    const auto vector = [&out](const Vec3& v) {
        appendVec(out, v);
        out += ' ';
    };
    switch (d.kind) {
    case SurfaceKind::kPlane:
        head("plane-surface");
        vector(d.origin);
        vector(axis);
        vector(ref);
        out += "forward_v I I I I #";
        return out;
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
        head("cone-surface");
        vector(origin);
        vector(axis);
        vector(ref * radius);
        out += "1 I I ";
        number(std::sin(angle));
        number(std::cos(angle));
        number(radius);
        out += "forward I I I I #";
        return out;
    }
    case SurfaceKind::kSphere:
        head("sphere-surface");
        vector(d.origin);
        number(d.radius);
        vector(ref);
        vector(axis);
        out += "forward_v I I I I #";
        return out;
    case SurfaceKind::kTorus:
        head("torus-surface");
        vector(d.origin);
        vector(axis);
        number(d.radius);
        number(d.minorRadius);
        vector(ref);
        out += "forward_v I I I I #";
        return out;
    case SurfaceKind::kOther:
        return splineSurfaceRecord(d.spline);
    }
    throw Unrepresentable("a face of an unknown kind");
}

CurveRecord curveRecord(const Curve& curve, const Vec3& start) {
    using arxsolids::ArcCurve;
    using arxsolids::CircleCurve;
    using arxsolids::EllipseCurve;
    using arxsolids::LineCurve;
    const auto ellipse = [](const Vec3& centre, const Vec3& normal, const Vec3& major, double ratio,
                            double t0, double t1) {
        // Far enough from the origin, the axis found from the edge's vertex rounds to nothing.
        if (!(length(major) > 0.0))
            throw Unrepresentable("a circle or ellipse whose major axis has no length");
        CurveRecord out{"ellipse-curve $-1 -1 $-1 ", t0, t1};
        appendVec(out.text, centre);
        out.text += ' ';
        appendVec(out.text, unit(normal));
        out.text += ' ';
        appendVec(out.text, major);
        out.text += ' ';
        appendNumber(out.text, ratio);
        out.text += " I I #";
        return out;
    };
    if (const auto* line = std::get_if<LineCurve>(&curve)) {
        const double len = length(line->end - line->start);
        if (!(len > 0.0)) throw Unrepresentable("a straight edge of no length");
        CurveRecord out{"straight-curve $-1 -1 $-1 ", 0.0, len};
        appendVec(out.text, line->start);
        out.text += ' ';
        appendVec(out.text, unit(line->end - line->start));
        out.text += " I I #";
        return out;
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
    if (const auto* c = std::get_if<arxsolids::SplineCurve>(&curve)) {
        if (c->degree < 1 || c->controlPoints.size() <= static_cast<std::size_t>(c->degree) ||
            c->knots.size() != c->controlPoints.size() + c->degree + 1 ||
            (!c->weights.empty() && c->weights.size() != c->controlPoints.size()))
            throw Unrepresentable("a spline edge without a whole B-spline");
        const double t0 = c->knots[c->degree], t1 = c->knots[c->controlPoints.size()];
        return {record("intcurve-curve",
                       std::string("forward { exactcur full ") +
                           (c->weights.empty() ? "nubs " : "nurbs ") + std::to_string(c->degree) +
                           (c->periodic ? " periodic " : " open ") + knotPairs(c->knots) +
                           poleList(c->controlPoints, c->weights) +
                           " 0 null_surface null_surface nullbs nullbs I I 0 0 0 F " +
                           formatNumber(t1) + " F " + formatNumber(t0) + " } I I"),
                t0, t1};
    }
    throw Unrepresentable("an edge of an unknown kind");
}

} // namespace acis
