#include "outline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace toviqelout {

namespace {

struct Flat {
    double x = 0.0, y = 0.0;
    bool operator==(const Flat&) const = default;
};

// A closed run of corners with their positions in the face's plane.
struct Ring {
    std::vector<AcGePoint3d> points;
    std::vector<Flat> flat;
    std::size_t size() const { return points.size(); }
};

double cross(const Flat& o, const Flat& a, const Flat& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

double area(const std::vector<Flat>& ring) {
    double twice = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Flat& a = ring[i];
        const Flat& b = ring[(i + 1) % ring.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2.0;
}

// The face's normal from its outer loop (Newell's sum: right for any simple polygon).
AcGeVector3d normalOf(const std::vector<AcGePoint3d>& loop) {
    AcGeVector3d n(0.0, 0.0, 0.0);
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const AcGePoint3d& a = loop[i];
        const AcGePoint3d& b = loop[(i + 1) % loop.size()];
        n += AcGeVector3d((a.y - b.y) * (a.z + b.z), (a.z - b.z) * (a.x + b.x),
                          (a.x - b.x) * (a.y + b.y));
    }
    return n;
}

// Corners mapped into the plane's axes.
class Plane {
public:
    explicit Plane(const std::vector<AcGePoint3d>& outer)
        : origin_(outer.front()), normal_(normalOf(outer).normal()),
          u_(normal_.perpVector().normal()), v_(normal_.crossProduct(u_)) {}
    bool valid() const { return !normal_.isZeroLength(); }
    Ring ring(const std::vector<AcGePoint3d>& points) const {
        Ring r{points, {}};
        for (const AcGePoint3d& p : points) {
            const AcGeVector3d d = p - origin_;
            r.flat.push_back({d.dotProduct(u_), d.dotProduct(v_)});
        }
        return r;
    }

private:
    AcGePoint3d origin_;
    AcGeVector3d normal_, u_, v_;
};

// Counter-clockwise turn from direction a to direction b, in (0, 2 pi].
double turn(double a, double b) {
    constexpr double kFull = 2.0 * std::numbers::pi;
    double t = std::fmod(b - a, kFull);
    if (t <= 0.0) t += kFull;
    return t;
}

// True when a cut from corner i towards `to` starts into the face, which lies on the left of
// every edge: strictly between the edge to the next corner and the edge from the previous one.
bool startsInside(const std::vector<Flat>& ring, std::size_t i, const Flat& to) {
    const std::size_t n = ring.size();
    const Flat& at = ring[i];
    const Flat& next = ring[(i + 1) % n];
    const Flat& prev = ring[(i + n - 1) % n];
    auto angle = [&](const Flat& p) { return std::atan2(p.y - at.y, p.x - at.x); };
    const double out = angle(next);
    return turn(out, angle(to)) < turn(out, angle(prev));
}

bool between(const Flat& a, const Flat& b, const Flat& p) {
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

// True when the cut a-b meets the edge c-d anywhere but at an end they share.
bool meets(const Flat& a, const Flat& b, const Flat& c, const Flat& d, double eps) {
    const bool sharesA = c == a || d == a, sharesB = c == b || d == b;
    if (sharesA && sharesB) return true; // the cut runs along the edge
    if (sharesA || sharesB) {
        const Flat& other = (c == a || c == b) ? d : c; // the edge's far end
        const Flat& far = sharesA ? b : a;              // the cut's far end
        const Flat& shared = sharesA ? a : b;
        return (std::abs(cross(a, b, other)) <= eps && between(a, b, other)) ||
               (std::abs(cross(shared, other, far)) <= eps && between(shared, other, far));
    }
    const double o1 = cross(a, b, c), o2 = cross(a, b, d);
    const double o3 = cross(c, d, a), o4 = cross(c, d, b);
    if ((o1 > eps && o2 > eps) || (o1 < -eps && o2 < -eps)) return false;
    if ((o3 > eps && o4 > eps) || (o3 < -eps && o4 < -eps)) return false;
    return true;
}

bool meetsRing(const Flat& a, const Flat& b, const std::vector<Flat>& ring, double eps) {
    for (std::size_t k = 0; k < ring.size(); ++k)
        if (meets(a, b, ring[k], ring[(k + 1) % ring.size()], eps)) return true;
    return false;
}

struct Bridge {
    std::size_t from = 0, to = 0;
    double length2 = std::numeric_limits<double>::infinity();
};

// The shortest cut from a corner of the outline to a corner of the hole that starts into the
// face at both ends and meets no edge of the outline or of the holes not yet joined.
std::optional<Bridge> bridgeTo(const Ring& outline, const Ring& hole,
                               const std::vector<const Ring*>& obstacles, double eps) {
    std::optional<Bridge> best;
    for (std::size_t i = 0; i < outline.size(); ++i)
        for (std::size_t j = 0; j < hole.size(); ++j) {
            const Flat& a = outline.flat[i];
            const Flat& b = hole.flat[j];
            const double length2 = (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
            if (best && length2 >= best->length2) continue;
            if (!startsInside(outline.flat, i, b) || !startsInside(hole.flat, j, a)) continue;
            if (meetsRing(a, b, outline.flat, eps)) continue;
            if (std::any_of(obstacles.begin(), obstacles.end(),
                            [&](const Ring* r) { return meetsRing(a, b, r->flat, eps); }))
                continue;
            best = Bridge{i, j, length2};
        }
    return best;
}

void splice(Ring& outline, const Ring& hole, const Bridge& bridge) {
    Ring out;
    auto take = [&](const Ring& r, std::size_t k) {
        out.points.push_back(r.points[k]);
        out.flat.push_back(r.flat[k]);
    };
    for (std::size_t k = 0; k <= bridge.from; ++k)
        take(outline, k);
    for (std::size_t k = 0; k <= hole.size(); ++k)
        take(hole, (bridge.to + k) % hole.size());
    for (std::size_t k = bridge.from; k < outline.size(); ++k)
        take(outline, k);
    outline = std::move(out);
}

double reach(const Ring& ring) {
    double x = -std::numeric_limits<double>::infinity();
    for (const Flat& p : ring.flat)
        x = std::max(x, p.x);
    return x;
}

} // namespace

std::optional<std::vector<AcGePoint3d>>
joinedOutline(const std::vector<AcGePoint3d>& outer,
              const std::vector<std::vector<AcGePoint3d>>& holes) {
    if (outer.size() < 3) return std::nullopt;
    const Plane plane(outer);
    if (!plane.valid()) return std::nullopt;
    Ring outline = plane.ring(outer);
    std::vector<Ring> rings;
    double size = 0.0;
    for (const Flat& p : outline.flat)
        size = std::max({size, std::abs(p.x), std::abs(p.y)});
    for (const std::vector<AcGePoint3d>& hole : holes) {
        if (hole.size() < 3) return std::nullopt;
        rings.push_back(plane.ring(hole));
        // Holes run clockwise, so that the face lies on the left of every edge.
        if (area(rings.back().flat) > 0.0) {
            std::reverse(rings.back().points.begin(), rings.back().points.end());
            std::reverse(rings.back().flat.begin(), rings.back().flat.end());
        }
    }
    // Touching and crossing are judged to a part in 1e12 of the face's size (squared, as the
    // cross products are areas).
    const double eps = 1e-12 * std::max(size * size, 1e-300);
    // Joined from the hole that reaches furthest: its furthest corner always sees the outline.
    std::sort(rings.begin(), rings.end(),
              [](const Ring& a, const Ring& b) { return reach(a) > reach(b); });
    for (std::size_t h = 0; h < rings.size(); ++h) {
        std::vector<const Ring*> obstacles;
        for (std::size_t k = h; k < rings.size(); ++k)
            obstacles.push_back(&rings[k]);
        const std::optional<Bridge> bridge = bridgeTo(outline, rings[h], obstacles, eps);
        if (!bridge) return std::nullopt;
        splice(outline, rings[h], *bridge);
    }
    return outline.points;
}

} // namespace toviqelout
