// Internals shared by the kernel's sources. This folder is the only place that speaks the
// modelling kernel; nothing here leaks through the public headers.
#pragma once

#include <arxsolids/picture.h>
#include <arxsolids/solid.h>

#include <Bnd_Box.hxx>
#include <GProp_GProps.hxx>
#include <Geom_Curve.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include <array>
#include <new>
#include <optional>
#include <stdexcept>

namespace arxsolids {

// Measures of a body, each worked out on first use and dropped whenever the shape may change:
// the export asks each solid for them several times over.
struct Measures {
    std::optional<Extents> exact;       // the tightest box
    std::optional<Extents> enclosing;   // from the bounds of each face's own geometry
    std::optional<GProp_GProps> volume; // volume integrals at unit density
    std::optional<double> area;
};

// Primitives the kernel builds with one and the same topology whatever their sizes (a cone to an
// apex has other faces than one with a top, so it is a kind of its own).
enum class Primitive : unsigned char { kNone, kCylinder, kCone, kApexCone, kBox, kSphere, kTorus };

struct Solid::Impl {
    TopoDS_Shape shape; // a solid, a compound of solids, or null when empty
    bool history = false;
    // The primitive the shape still is (built as one, then moved only), or kNone.
    Primitive primitive = Primitive::kNone;
    // Its sizes as made about the origin: a frustum's base radius, top radius and height; a box's
    // lengths; a sphere's radius; a torus's major and minor radii.
    std::array<double, 3> sizes{};
    mutable Measures measures;
};

struct Region::Impl {
    TopoDS_Shape shape; // a compound of coplanar faces, or null when empty
    mutable Measures measures;
};

struct Surface::Impl {
    TopoDS_Shape shape; // one face, or null
    mutable Measures measures;
};

// Reaches the shapes behind the public classes. Whoever reaches a shape for change drops its
// cached measures.
struct Access {
    template <class T>
    static TopoDS_Shape& shape(T& object) {
        if (!object.impl_) object.impl_ = std::make_unique<typename T::Impl>();
        object.impl_->measures = {};
        if constexpr (requires { object.impl_->primitive; })
            object.impl_->primitive = Primitive::kNone;
        return object.impl_->shape;
    }
    static Primitive& primitive(Solid& solid);
    static Primitive primitive(const Solid& solid);
    // A primitive's sizes (see Solid::Impl).
    static std::array<double, 3>& sizes(Solid& solid);
    static std::array<double, 3> sizes(const Solid& solid);
    // The cached measures of a body, or null for one that was never given a shape.
    template <class T>
    static Measures* measures(const T& object) {
        return object.impl_ ? &object.impl_->measures : nullptr;
    }
    template <class T>
    static const TopoDS_Shape& shape(const T& object) {
        static const TopoDS_Shape empty;
        return object.impl_ ? object.impl_->shape : empty;
    }
    // The face of a surface that is not null.
    static TopoDS_Face face(const Surface& surface);
    static bool& history(Solid& solid);
    static bool history(const Solid& solid);
};

// Runs a kernel operation and turns every exception of the modelling kernel (which are not
// standard exceptions) into a status: none ever leaves the kernel.
template <class F>
Status guarded(F&& body) noexcept {
    try {
        return body();
    } catch (const Standard_Failure&) {
        return Status::eGeneralModelingFailure;
    } catch (const std::bad_alloc&) {
        return Status::eOutOfMemory;
    } catch (const std::exception&) {
        return Status::eGeneralModelingFailure;
    }
}

// ---- Conversions (convert.cpp) ----
inline gp_Pnt toPnt(const Vec3& v) {
    return gp_Pnt(v.x, v.y, v.z);
}
inline gp_Vec toVec(const Vec3& v) {
    return gp_Vec(v.x, v.y, v.z);
}
inline Vec3 fromXYZ(const gp_XYZ& p) {
    return {p.X(), p.Y(), p.Z()};
}
inline Vec3 fromPnt(const gp_Pnt& p) {
    return fromXYZ(p.XYZ());
}
inline Vec3 fromDir(const gp_Dir& d) {
    return fromXYZ(d.XYZ());
}
inline Vec3 fromVec(const gp_Vec& v) {
    return fromXYZ(v.XYZ());
}
bool isFinite(const Vec3& v);
// A unit direction, or nothing for a zero or non-finite vector.
std::optional<gp_Dir> toDir(const Vec3& v);
// The similarity of a matrix; eCannotScaleNonUniformly for anything else.
Status toTrsf(const Matrix& matrix, gp_Trsf& trsf);
// Moves a shape by a similarity (location only when rigid).
TopoDS_Shape transformed(const TopoDS_Shape& shape, const gp_Trsf& trsf);

// ---- Curves (curves.cpp) ----
// A piece of a curve: a basis curve between two parameters. Polylines give one piece per segment.
struct Segment {
    Handle(Geom_Curve) curve;
    double first = 0.0, last = 0.0;
    bool closed = false; // a whole circle, ellipse or closed spline
    gp_Pnt start() const { return curve->Value(first); }
    gp_Pnt end() const { return curve->Value(last); }
};
// Segments of one curve in its own order; eInvalidInput for a degenerate description.
Status toSegments(const Curve& curve, std::vector<Segment>& segments);
// Closed loops of curves in any order and direction, one face each, oriented (see Region).
Status buildLoopFaces(const std::vector<Curve>& curves, std::vector<TopoDS_Face>& faces);
// A path as one wire, its segments joined in order.
Status buildPathWire(const Curve& path, TopoDS_Wire& wire);

// ---- Descriptions (describe.cpp) ----
// An edge as a curve; with `oriented`, in the direction the edge runs in its shape.
Curve describeEdge(const TopoDS_Shape& edge, bool oriented);
// The surface under a face, in a right-handed frame. A plane's axis is the face's normal; for
// other kinds, `reversed` (when given) tells whether the face's outside lies against the normal
// of that frame (a bore, or any face of a mirrored body whose frame the mirror turned).
SurfaceDesc describeSurface(const TopoDS_Face& face, bool* reversed = nullptr);
SurfaceKind surfaceKind(const TopoDS_Face& face);
// Edges of a wire of a face (as the face holds it) in the order the face runs them, each
// oriented as it is run.
std::vector<TopoDS_Shape> runningEdges(const TopoDS_Shape& wire, const TopoDS_Face& face);
// Joins arcs of one circle that follow each other in a loop (a whole turn becomes a circle).
void mergeArcs(std::vector<Curve>& loop);
// Edges that bound a face: not seams, not collapsed.
bool isBoundaryEdge(const TopoDS_Shape& edge, const TopoDS_Face& face);

// ---- Properties (properties.cpp) ----
// Volume integrals: exact for analytic faces, to about 1e-8 on free-form ones.
void volumeProperties(const TopoDS_Shape& shape, GProp_GProps& props);
double volumeOf(const TopoDS_Shape& shape);
// The same in closed form for a body of flat faces with straight edges; false, props unchanged,
// for any other (polyhedra.cpp).
bool polyhedronVolume(const TopoDS_Shape& shape, GProp_GProps& props);
bool polyhedronArea(const TopoDS_Shape& shape, double& area);
double areaOf(const TopoDS_Shape& shape);
// The tightest box; false for an empty shape. Closed forms where the faces allow, else a search
// over the face, costly on free-form faces.
bool extentsOf(const TopoDS_Shape& shape, Extents& extents);
// Adds a face's tightest box where its kind gives it in closed form (planes, cylinders, cones,
// whole spheres and tori, bands of a torus); false, with the box unchanged, otherwise
// (extents.cpp).
bool addExactFaceBox(const TopoDS_Face& face, Bnd_Box& box);
// The tightest box of a primitive of the sizes given, placed by `place`, in closed form without
// reaching its shape; false for kNone.
bool primitiveExtents(Primitive kind, const std::array<double, 3>& sizes, const gp_Trsf& place,
                      Extents& extents);
// The extents of a box, without its gap; false for a void box.
bool boxExtents(Bnd_Box box, Extents& extents);
// A box that holds the shape, from the bounds of each face's and edge's own geometry; no search.
bool enclosingExtentsOf(const TopoDS_Shape& shape, Extents& extents);
double diagonalOf(const TopoDS_Shape& shape);
// Diagonal of a quick box that may be somewhat larger than the tight one: for tolerances.
double roughSizeOf(const TopoDS_Shape& shape);
TopologyCounts countTopology(const TopoDS_Shape& shape);
Brep walkBrep(const TopoDS_Shape& shape);
// The walk of a primitive of the kind: the topology of the first one walked serves every later
// one of the same build, whose geometry alone is read. Gives what walkBrep gives.
Brep walkPrimitive(const TopoDS_Shape& shape, Primitive kind);

// ---- Guarded operations shared by solids, regions and surfaces (shapes.cpp) ----
Status transformShape(TopoDS_Shape& shape, const Matrix& matrix);
// The exact or the enclosing box of a shape, kept in cache (when given) for the next call.
Status shapeExtents(const TopoDS_Shape& shape, Measures* cache, bool exact, Extents& extents);
Status shapeArea(const TopoDS_Shape& shape, Measures* cache, double& area);
// The volume integrals of a solid, kept in cache (when given).
const GProp_GProps& shapeVolume(const TopoDS_Shape& shape, Measures* cache, GProp_GProps& scratch);
Brep shapeBrep(const TopoDS_Shape& shape, Primitive kind = Primitive::kNone);
TopologyCounts shapeTopology(const TopoDS_Shape& shape);

// ---- Solids (solid.cpp) ----
// How far a result of the modelling kernel is checked: its volume always (a lump with none is
// a failure, one turned inside out is turned back), its topology and geometry where the
// kernel's operation is known to hand out invalid shapes.
// Sweeps of a valid face by translation or rotation come out valid and outward: kTrusted.
enum class Check { kTrusted, kVolume, kValidity };
// Orients every lump outward and gathers the lumps: a solid, a compound, or null when none.
Status finishSolids(const TopoDS_Shape& result, TopoDS_Shape& solids, Check check);
// Faces of a region or solid, each once.
std::vector<TopoDS_Face> facesOf(const TopoDS_Shape& shape);
TopoDS_Shape compoundOf(const std::vector<TopoDS_Face>& faces);
// Triangles of every face of a shape already meshed, corners counter-clockwise seen from outside;
// slivers left out.
std::vector<Triangle> meshTriangles(const TopoDS_Shape& meshed);
// Unit normal of a region (all its faces share the plane).
std::optional<gp_Dir> regionNormal(const TopoDS_Shape& region);

} // namespace arxsolids
