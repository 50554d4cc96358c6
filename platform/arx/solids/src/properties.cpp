// Measures of shapes: volume, area, extents, topology counts and the boundary walk.
#include "internal.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepBndLib.hxx>
#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GProp_GProps.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Iterator.hxx>

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>

namespace arxsolids {

namespace {

// Relative error the adaptive rule works to.
constexpr double kAdaptiveError = 1e-12;

bool rationalCurve(const TopoDS_Edge& edge) {
    if (BRep_Tool::Degenerated(edge)) return false;
    const BRepAdaptor_Curve curve(edge);
    return curve.GetType() == GeomAbs_BSplineCurve && curve.IsRational();
}

// A face on a rational B-spline, or bounded by one: what a body read back from a drawing has
// where the original had a revolved profile.
bool rationalFace(const TopoDS_Face& face) {
    const BRepAdaptor_Surface surface(face, false);
    if (surface.GetType() == GeomAbs_BSplineSurface &&
        (surface.IsURational() || surface.IsVRational()))
        return true;
    for (TopExp_Explorer it(face, TopAbs_EDGE); it.More(); it.Next())
        if (rationalCurve(TopoDS::Edge(it.Current()))) return true;
    return false;
}

// Properties of a shape by the rule that suits it. The fixed Gauss rule is exact for analytic
// faces and for extrusions of conics, and fast, but off by parts in a thousand on rational
// B-splines; bodies with such faces take the adaptive rule (elsewhere it is the worse of the
// two, so only they).
template <typename Rule>
void byRule(const TopoDS_Shape& shape, GProp_GProps& props, Rule rule) {
    bool anyRational = false;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More() && !anyRational; it.Next())
        anyRational = rationalFace(TopoDS::Face(it.Current()));
    rule(shape, props, anyRational);
}

} // namespace

void volumeProperties(const TopoDS_Shape& shape, GProp_GProps& props) {
    if (polyhedronVolume(shape, props)) return;
    byRule(shape, props, [](const TopoDS_Shape& s, GProp_GProps& p, bool adaptive) {
        if (adaptive)
            BRepGProp::VolumeProperties(s, p, kAdaptiveError, true);
        else
            BRepGProp::VolumeProperties(s, p, true);
    });
}

double volumeOf(const TopoDS_Shape& shape) {
    if (shape.IsNull()) return 0.0;
    GProp_GProps props;
    volumeProperties(shape, props);
    return props.Mass();
}

double areaOf(const TopoDS_Shape& shape) {
    if (shape.IsNull()) return 0.0;
    if (double area = 0.0; polyhedronArea(shape, area)) return area;
    GProp_GProps props;
    byRule(shape, props, [](const TopoDS_Shape& s, GProp_GProps& p, bool adaptive) {
        if (adaptive)
            BRepGProp::SurfaceProperties(s, p, kAdaptiveError);
        else
            BRepGProp::SurfaceProperties(s, p);
    });
    return props.Mass();
}

bool boxExtents(Bnd_Box box, Extents& extents) {
    box.SetGap(0.0);
    if (box.IsVoid()) return false;
    double x0, y0, z0, x1, y1, z1;
    box.Get(x0, y0, z0, x1, y1, z1);
    extents = {{x0, y0, z0}, {x1, y1, z1}};
    return true;
}

namespace {

// Faces with a closed form for their tightest box take it; the others take the kernel's search
// (exact, and costly) or the bounds of their own geometry (enclosing), which grow by the
// tolerances of what they hold: the geometry's own bounds hold the body, and plane faces then
// give their exact place.
bool faceBoxes(const TopoDS_Shape& shape, bool exact, Extents& extents) {
    if (shape.IsNull()) return false;
    const auto other = [exact](const TopoDS_Shape& s, Bnd_Box& box) {
        if (exact)
            BRepBndLib::AddOptimal(s, box, false, false);
        else
            BRepBndLib::Add(s, box, false);
    };
    Bnd_Box box;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        const TopoDS_Face& face = TopoDS::Face(it.Current());
        if (!addExactFaceBox(face, box)) other(face, box);
    }
    if (box.IsVoid()) other(shape, box);
    return boxExtents(box, extents);
}

} // namespace

bool extentsOf(const TopoDS_Shape& shape, Extents& extents) {
    return faceBoxes(shape, true, extents);
}

bool enclosingExtentsOf(const TopoDS_Shape& shape, Extents& extents) {
    return faceBoxes(shape, false, extents);
}

double diagonalOf(const TopoDS_Shape& shape) {
    Extents e;
    if (!extentsOf(shape, e)) return 0.0;
    return toPnt(e.min).Distance(toPnt(e.max));
}

double roughSizeOf(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::Add(shape, box, false);
    return box.IsVoid() ? 0.0 : std::sqrt(box.SquareExtent());
}

namespace {

// Coedges of one wire in the order the face runs them; seams and collapsed edges are left out.
void addWireLoops(const TopoDS_Wire& wire, const TopoDS_Face& face, bool outer,
                  TopTools_IndexedMapOfShape& edges, TopTools_IndexedMapOfShape& vertices,
                  std::vector<BrepLoop>& loops) {
    std::vector<RingCoedge> ring;
    for (const TopoDS_Shape& shape : runningEdges(wire, face)) {
        const TopoDS_Edge& edge = TopoDS::Edge(shape);
        RingCoedge c;
        c.kept = isBoundaryEdge(edge, face);
        if (c.kept) {
            c.coedge.edge = edges.Add(edge) - 1;
            c.coedge.reversed = edge.Orientation() == TopAbs_REVERSED;
            c.vertex = vertices.Add(TopExp::FirstVertex(edge, true)) - 1;
        }
        ring.push_back(c);
    }
    for (BrepLoop& loop : loopsOfRing(ring, outer))
        loops.push_back(std::move(loop));
}

} // namespace

std::vector<BrepLoop> loopsOfRing(const std::vector<RingCoedge>& ring, bool outer) {
    std::vector<BrepLoop> chains(1, BrepLoop{outer, {}, {}});
    for (const RingCoedge& c : ring) {
        if (!c.kept) {
            if (!chains.back().coedges.empty()) chains.push_back(BrepLoop{outer, {}, {}});
            continue;
        }
        chains.back().coedges.push_back(c.coedge);
        chains.back().vertices.push_back(c.vertex);
    }
    if (chains.back().coedges.empty()) chains.pop_back();
    // A run that wraps past the ring's end and start is one loop.
    if (chains.size() > 1 && ring.front().kept && ring.back().kept) {
        BrepLoop& tail = chains.back();
        tail.coedges.insert(tail.coedges.end(), chains.front().coedges.begin(),
                            chains.front().coedges.end());
        tail.vertices.insert(tail.vertices.end(), chains.front().vertices.begin(),
                             chains.front().vertices.end());
        chains.erase(chains.begin());
    }
    return chains;
}

namespace {

// The shapes behind a walk's faces (as the walk met them), edges (forward) and vertices.
struct WalkedShapes {
    std::vector<TopoDS_Shape> faces, edges, vertices;
};

Brep walkShapes(const TopoDS_Shape& shape, WalkedShapes* walked) {
    Brep brep;
    if (shape.IsNull()) return brep;
    TopTools_IndexedMapOfShape edges, vertices;
    for (const TopoDS_Face& face : facesOf(shape)) {
        BrepFace out;
        out.surface = describeSurface(face, &out.reversed);
        const TopoDS_Wire outerWire = BRepTools::OuterWire(face);
        for (TopoDS_Iterator it(face); it.More(); it.Next()) {
            if (it.Value().ShapeType() != TopAbs_WIRE) continue;
            const TopoDS_Wire& wire = TopoDS::Wire(it.Value());
            addWireLoops(wire, face, wire.IsSame(outerWire), edges, vertices, out.loops);
        }
        brep.faces.push_back(std::move(out));
        if (walked) walked->faces.push_back(face);
    }
    for (int i = 1; i <= vertices.Extent(); ++i) {
        brep.vertices.push_back({fromPnt(BRep_Tool::Pnt(TopoDS::Vertex(vertices(i))))});
        if (walked) walked->vertices.push_back(vertices(i));
    }
    for (int i = 1; i <= edges.Extent(); ++i) {
        const TopoDS_Edge edge = TopoDS::Edge(edges(i).Oriented(TopAbs_FORWARD));
        BrepEdge out;
        out.curve = describeEdge(edge, false);
        out.startVertex = vertices.Add(TopExp::FirstVertex(edge)) - 1;
        out.endVertex = vertices.Add(TopExp::LastVertex(edge)) - 1;
        brep.edges.push_back(std::move(out));
        if (walked) walked->edges.push_back(edge);
    }
    return brep;
}

// Every shape of a body in the order its iterators run, orientations composed, each at its own
// location (not the body's).
void depthFirst(const TopoDS_Shape& shape, std::vector<TopoDS_Shape>& nodes) {
    nodes.push_back(shape);
    for (TopoDS_Iterator it(shape, true, false); it.More(); it.Next())
        depthFirst(it.Value(), nodes);
}

unsigned char nodeCode(const TopoDS_Shape& shape) {
    return static_cast<unsigned char>(shape.ShapeType() * 4 + shape.Orientation());
}

// The walk of the first primitive of a kind, by the place of each face, edge and vertex in the
// body's depth-first order. A later body whose nodes run the same types and orientations, none
// placed within the body, is the same build: its walk is this topology with its own geometry.
struct PrimitiveWalk {
    bool usable = false;
    std::vector<unsigned char> codes;
    std::vector<int> slots; // of each node: its place in faces, edges, vertices; or -1
    Brep topology;
};

// Where the shape is first met among the nodes (orientation too when `oriented`), or -1.
int placeOf(const std::vector<TopoDS_Shape>& nodes, const TopoDS_Shape& shape, bool oriented) {
    for (size_t i = 0; i < nodes.size(); ++i)
        if (oriented ? nodes[i].IsEqual(shape) : nodes[i].IsSame(shape)) return int(i);
    return -1;
}

PrimitiveWalk recordWalk(const TopoDS_Shape& shape, const Brep& brep, const WalkedShapes& walked) {
    PrimitiveWalk walk;
    std::vector<TopoDS_Shape> nodes;
    depthFirst(shape, nodes);
    walk.topology = brep;
    walk.slots.assign(nodes.size(), -1);
    // Every shape inside sits where the body does: then each one's location is the body's.
    for (size_t i = 0; i < nodes.size(); ++i) {
        walk.codes.push_back(nodeCode(nodes[i]));
        if (i > 0 && !nodes[i].Location().IsIdentity()) return walk;
        if (i > 0) nodes[i].Location(shape.Location());
    }
    int slot = 0;
    auto place = [&](const std::vector<TopoDS_Shape>& shapes, bool oriented) {
        for (const TopoDS_Shape& s : shapes) {
            const int at = placeOf(nodes, s, oriented);
            if (at < 0 || walk.slots[size_t(at)] >= 0) return false;
            walk.slots[size_t(at)] = slot++;
        }
        return true;
    };
    walk.usable =
        place(walked.faces, true) && place(walked.edges, false) && place(walked.vertices, false);
    return walk;
}

// The shapes a recorded walk reads its geometry from, in its slots' order; false for a body of
// another build.
bool gatherSlots(const TopoDS_Shape& node, const PrimitiveWalk& walk, size_t& index,
                 std::vector<TopoDS_Shape>& kept) {
    if (index >= walk.codes.size() || walk.codes[index] != nodeCode(node)) return false;
    if (index > 0 && !node.Location().IsIdentity()) return false;
    if (const int slot = walk.slots[index]; slot >= 0) kept[size_t(slot)] = node;
    ++index;
    for (TopoDS_Iterator it(node, true, false); it.More(); it.Next())
        if (!gatherSlots(it.Value(), walk, index, kept)) return false;
    return true;
}

} // namespace

Brep walkBrep(const TopoDS_Shape& shape) {
    return walkShapes(shape, nullptr);
}

Brep walkPrimitive(const TopoDS_Shape& shape, Primitive kind) {
    static std::mutex mutex;
    static std::map<Primitive, PrimitiveWalk> walks;
    if (shape.IsNull()) return {};
    std::unique_lock lock(mutex);
    auto found = walks.find(kind);
    if (found == walks.end()) {
        lock.unlock();
        WalkedShapes walked;
        Brep brep = walkShapes(shape, &walked);
        PrimitiveWalk walk = recordWalk(shape, brep, walked);
        lock.lock();
        walks.emplace(kind, std::move(walk));
        return brep;
    }
    const PrimitiveWalk& walk = found->second;
    Brep brep = walk.topology;
    lock.unlock();
    const size_t faces = brep.faces.size(), edges = brep.edges.size();
    std::vector<TopoDS_Shape> kept(faces + edges + brep.vertices.size());
    size_t index = 0;
    if (!walk.usable || !gatherSlots(shape, walk, index, kept) || index != walk.codes.size())
        return walkBrep(shape);
    // Each shape at the body's location, as the walk's explorers meet it.
    const TopLoc_Location& location = shape.Location();
    for (size_t i = 0; i < faces; ++i) {
        BrepFace& face = brep.faces[i];
        face.reversed = false;
        face.surface = describeSurface(TopoDS::Face(kept[i].Located(location)), &face.reversed);
    }
    for (size_t i = 0; i < edges; ++i)
        brep.edges[i].curve = describeEdge(
            TopoDS::Edge(kept[faces + i].Located(location).Oriented(TopAbs_FORWARD)), false);
    for (size_t i = 0; i < brep.vertices.size(); ++i)
        brep.vertices[i].point =
            fromPnt(BRep_Tool::Pnt(TopoDS::Vertex(kept[faces + edges + i].Located(location))));
    return brep;
}

TopologyCounts countTopology(const TopoDS_Shape& shape) {
    TopologyCounts counts;
    if (shape.IsNull()) return counts;
    TopTools_IndexedMapOfShape solids, shells;
    TopExp::MapShapes(shape, TopAbs_SOLID, solids);
    TopExp::MapShapes(shape, TopAbs_SHELL, shells);
    counts.solids = solids.Extent();
    counts.shells = shells.Extent();
    const Brep brep = walkBrep(shape);
    counts.faces = static_cast<int>(brep.faces.size());
    counts.edges = static_cast<int>(brep.edges.size());
    counts.vertices = static_cast<int>(brep.vertices.size());
    for (const BrepFace& face : brep.faces) {
        counts.loops += static_cast<int>(face.loops.size());
        switch (face.surface.kind) {
        case SurfaceKind::kPlane:
            ++counts.planar;
            break;
        case SurfaceKind::kCylinder:
            ++counts.cylindrical;
            break;
        case SurfaceKind::kCone:
            ++counts.conical;
            break;
        case SurfaceKind::kSphere:
            ++counts.spherical;
            break;
        case SurfaceKind::kTorus:
            ++counts.toroidal;
            break;
        case SurfaceKind::kOther:
            ++counts.other;
            break;
        }
    }
    return counts;
}

} // namespace arxsolids
