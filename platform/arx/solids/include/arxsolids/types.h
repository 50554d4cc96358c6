// Plain value types of the solids kernel. Nothing here depends on the modelling kernel behind
// it, so the database entities convert to and from these by copying numbers.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace arxsolids {

// Outcome of every kernel operation. Names follow the host's error statuses so that the
// entities map them one to one.
enum class Status {
    eOk = 0,
    eInvalidInput,            // a size, angle or curve out of range
    eDegenerateGeometry,      // the result would have no volume or no area
    eNonCoplanarGeometry,     // regions (or a region and an axis) not in one plane
    eNonPlanarEntity,         // curves of one loop not in one plane
    eOpenLoop,                // curves that do not close into a loop
    eSelfIntersecting,        // a loop that crosses itself
    eCannotScaleNonUniformly, // a matrix other than a similarity
    eNotApplicable,           // an operation on an empty solid or region
    eNegativeCoordinates,     // STL output of a model reaching below zero
    eFileAccessErr,           // STL file not writable
    eGeneralModelingFailure,  // the modelling kernel failed or produced a wrong result
    eOutOfMemory,
};

const char* statusName(Status status);

// A point or a vector.
struct Vec3 {
    double x = 0.0, y = 0.0, z = 0.0;
};

// 4x4 matrix, row major; the translation is the last column, as in the host's matrices.
struct Matrix {
    std::array<double, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    double operator()(int row, int col) const { return m[row * 4 + col]; }
    double& operator()(int row, int col) { return m[row * 4 + col]; }

    static Matrix translation(const Vec3& v);
    // Right-handed rotation by angle (radians) about axis through point.
    static Matrix rotation(double angle, const Vec3& axis, const Vec3& point = {});
    static Matrix scaling(double factor, const Vec3& point = {});
    Matrix operator*(const Matrix& rhs) const;
};

struct Plane {
    Vec3 origin;
    Vec3 normal{0, 0, 1};
};

struct Extents {
    Vec3 min;
    Vec3 max;
};

// ---- Curve descriptions --------------------------------------------------------------------
// Angles are radians. Arcs and elliptic arcs run counter-clockwise about their normal from the
// start to the end angle; refAxis (or majorAxis) marks angle zero.

struct LineCurve {
    Vec3 start, end;
};

struct CircleCurve {
    Vec3 center;
    Vec3 normal{0, 0, 1};
    double radius = 0.0;
};

struct ArcCurve {
    Vec3 center;
    Vec3 normal{0, 0, 1};
    Vec3 refAxis{1, 0, 0}; // unit, in the arc's plane
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
};

// Ellipse or elliptic arc; majorAxis has the length of the major radius. The angles are the
// parameters of the ellipse (eccentric anomaly); 0 to 2 pi is the whole ellipse.
struct EllipseCurve {
    Vec3 center;
    Vec3 normal{0, 0, 1};
    Vec3 majorAxis{1, 0, 0};
    double radiusRatio = 1.0;
    double startParam = 0.0;
    double endParam = 6.283185307179586;
};

// Light-weight polyline: 2-D vertices in the plane of `normal` at `elevation`, axes of the
// plane by the arbitrary-axis rule. The bulge of a vertex shapes the segment that starts there:
// tan(included angle / 4), positive counter-clockwise about the normal.
struct PolylineVertex {
    double x = 0.0, y = 0.0, bulge = 0.0;
};
struct PolylineCurve {
    Vec3 normal{0, 0, 1};
    double elevation = 0.0;
    std::vector<PolylineVertex> vertices;
    bool closed = false;
};

struct Polyline3dCurve {
    std::vector<Vec3> points;
    bool closed = false;
};

// B-spline by control points; `knots` is the full (flat) knot vector (control points plus
// degree plus one), `weights` empty for a non-rational curve. The curve is the one these define;
// a periodic curve is given with its wrapped control points, and `periodic` only tells so.
struct SplineCurve {
    int degree = 3;
    std::vector<Vec3> controlPoints;
    std::vector<double> knots;
    std::vector<double> weights;
    bool periodic = false;
};

using Curve = std::variant<LineCurve, CircleCurve, ArcCurve, EllipseCurve, PolylineCurve,
                           Polyline3dCurve, SplineCurve>;

// Corner points of a polyline in world coordinates (bulges ignored): the arbitrary-axis rule.
Vec3 polylinePoint(const PolylineCurve& polyline, std::size_t index);

// ---- Surfaces --------------------------------------------------------------------------------

enum class SurfaceKind { kPlane, kCylinder, kCone, kSphere, kTorus, kOther };

// A free-form surface as a B-spline: poles row by row with u running fastest (uCount x vCount),
// full (flat) knot vectors, weights empty unless rational. Never periodic: a closed surface is
// given clamped.
struct SplineSurfaceDesc {
    int uDegree = 0, vDegree = 0;
    int uCount = 0, vCount = 0;
    std::vector<Vec3> poles;
    std::vector<double> weights;
    std::vector<double> uKnots, vKnots;
};

// Parameters of a face's underlying surface, in world coordinates. `axis` is the plane's normal
// or the axis of revolution; `refAxis` marks the zero of the angular parameter.
// Cylinder: radius. Cone: radius at origin and halfAngle. Sphere: radius. Torus: radius (major)
// and minorRadius. A plane's normal points out of the solid when the face is one of a solid.
// Anything else (kOther) is `spline`: the surface exactly where it is a B-spline already or
// converts to one (surfaces of revolution and extrusion), within the face's bounds; else the
// kernel's closest fit. The frame fields are unused then.
struct SurfaceDesc {
    SurfaceKind kind = SurfaceKind::kOther;
    Vec3 origin;
    Vec3 axis{0, 0, 1};
    Vec3 refAxis{1, 0, 0};
    double radius = 0.0;
    double minorRadius = 0.0;
    double halfAngle = 0.0;
    SplineSurfaceDesc spline;
};

// ---- Properties ----------------------------------------------------------------------------

// Mass properties at unit density. Moments and products are about the world axes through the
// world origin: momInertia = (Ixx, Iyy, Izz), Ixx = integral of y^2 + z^2; prodInertia = (Ixy,
// Iyz, Izx), Ixy = integral of x y. Principal moments are about the centroid, in ascending
// order, with their axes forming a right-handed frame. Radii of gyration are sqrt(I / volume)
// of the world moments.
struct MassProps {
    double volume = 0.0;
    Vec3 centroid;
    std::array<double, 3> momInertia{};
    std::array<double, 3> prodInertia{};
    std::array<double, 3> prinMoments{};
    std::array<Vec3, 3> prinAxes{};
    std::array<double, 3> radiiGyration{};
    Extents extents;
};

struct TopologyCounts {
    int solids = 0, shells = 0, faces = 0, loops = 0, edges = 0, vertices = 0;
    // Faces by the kind of their surface.
    int planar = 0, cylindrical = 0, conical = 0, spherical = 0, toroidal = 0, other = 0;
};

// ---- Boundary representation walk ------------------------------------------------------------
// A snapshot of a body's boundary. Seams of periodic surfaces and collapsed edges (the apex of a
// cone, the poles of a sphere) are not edges of the boundary and are left out, so a cylinder's
// side face has two loops of one circle each, a sphere's face no loop.

struct BrepVertex {
    Vec3 point;
};
struct BrepEdge {
    Curve curve; // in the edge's own direction
    int startVertex = -1;
    int endVertex = -1; // equal to startVertex for a closed edge
};
struct BrepCoedge {
    int edge = -1;
    bool reversed = false; // the loop runs the edge from its end to its start
};
struct BrepLoop {
    bool outer = false;
    std::vector<BrepCoedge> coedges;
    std::vector<int> vertices; // in the order the loop runs through them
};
struct BrepFace {
    SurfaceDesc surface;
    // The outside of the body lies against the surface's own normal (the inside of a bore, say).
    // Never set for planes: their axis is already the outward normal.
    bool reversed = false;
    std::vector<BrepLoop> loops;
};
struct Brep {
    std::vector<BrepFace> faces;
    std::vector<BrepEdge> edges;
    std::vector<BrepVertex> vertices;
};

// One coedge of a ring as a face runs it, with the vertex it starts at; `kept` false for a seam
// or a collapsed edge, which the description leaves out.
struct RingCoedge {
    BrepCoedge coedge;
    int vertex = -1;
    bool kept = true;
};
// The loops of a ring without its left-out coedges: the ring splits where they interrupt it, and
// a piece that wraps past the ring's end joins the first. (A cylinder's side, run with its seam,
// gives its two rims.)
std::vector<BrepLoop> loopsOfRing(const std::vector<RingCoedge>& ring, bool outer);

enum class BoolOperType { kBoolUnite, kBoolIntersect, kBoolSubtract };

} // namespace arxsolids
