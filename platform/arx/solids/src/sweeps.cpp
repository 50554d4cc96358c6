// Solids swept from regions: extrusion, sweep along a path, revolution.
#include "internal.h"

#include <BOPAlgo_GlueEnum.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepClass_FaceClassifier.hxx>
#include <BRepLib_FindSurface.hxx>
#include <BRepOffsetAPI_DraftAngle.hxx>
#include <BRepOffsetAPI_MakePipeShell.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeRevol.hxx>
#include <BRepTools.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Geom_Plane.hxx>
#include <IntAna_IntConicQuad.hxx>
#include <ShapeCustom.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <gp_Lin.hxx>
#include <gp_Pln.hxx>

#include <algorithm>
#include <cmath>

namespace arxsolids {
namespace {

// Points along every edge of a shape, close enough to see which side of a line it reaches.
std::vector<gp_Pnt> samplePoints(const TopoDS_Shape& shape) {
    std::vector<gp_Pnt> points;
    for (TopExp_Explorer it(shape, TopAbs_EDGE); it.More(); it.Next()) {
        BRepAdaptor_Curve curve(TopoDS::Edge(it.Current()));
        const int n = 64;
        for (int i = 0; i <= n; ++i)
            points.push_back(curve.Value(curve.FirstParameter() +
                                         (curve.LastParameter() - curve.FirstParameter()) * i / n));
    }
    return points;
}

// True when the axis passes through the inside of the region.
bool axisCrossesRegion(const TopoDS_Shape& region, const gp_Dir& normal, const gp_Ax1& axis) {
    // The tolerance is that of joining the region's curves: ends that close a loop may stand
    // that far past the axis.
    const double tol = 1e-7 * roughSizeOf(region);
    if (std::abs(axis.Direction().Dot(normal)) < 1e-12) {
        // Axis in (or parallel to) the plane: the region must stay on one side of it.
        const gp_Dir side = normal.Crossed(axis.Direction());
        bool below = false, above = false;
        for (const gp_Pnt& p : samplePoints(region)) {
            const double d = gp_Vec(axis.Location(), p).Dot(gp_Vec(side));
            below = below || d < -tol;
            above = above || d > tol;
        }
        return below && above;
    }
    // Axis through the plane: where it pierces it must be outside every face.
    for (const TopoDS_Face& face : facesOf(region)) {
        BRepAdaptor_Surface surface(face, false);
        IntAna_IntConicQuad hit(gp_Lin(axis), surface.Plane(), 1e-12);
        if (!hit.IsDone() || hit.NbPoints() < 1) continue;
        BRepClass_FaceClassifier classifier(face, hit.Point(1), tol);
        if (classifier.State() != TopAbs_OUT) return true;
    }
    return false;
}

// Sub-shapes of one kind, each counted once.
int countOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum type) {
    TopTools_IndexedMapOfShape map;
    TopExp::MapShapes(shape, type, map);
    return map.Extent();
}

// Sweeps one wire along the spine with mitred corners into a closed solid. The sweep has one
// face per profile edge and path edge, and two ends on an open path: anything else is a sweep
// the kernel got wrong.
TopoDS_Shape pipeOfWire(const TopoDS_Wire& spine, const TopoDS_Wire& profile,
                        const std::optional<gp_Dir>& binormal) {
    BRepOffsetAPI_MakePipeShell pipe(spine);
    if (binormal) pipe.SetMode(*binormal);
    pipe.SetTransitionMode(BRepBuilderAPI_RightCorner);
    pipe.Add(profile, false, false);
    pipe.Build();
    if (!pipe.IsDone() || !pipe.MakeSolid()) return {};
    const int ends = BRep_Tool::IsClosed(spine) ? 0 : 2;
    const int expected = countOf(profile, TopAbs_EDGE) * countOf(spine, TopAbs_EDGE) + ends;
    if (countOf(pipe.Shape(), TopAbs_FACE) != expected) return {};
    return pipe.Shape();
}

// The plane a path lies in, if any: planar curves carry their normal, others are searched.
std::optional<gp_Dir> pathPlaneNormal(const Curve& path, const TopoDS_Wire& spine) {
    if (const auto* c = std::get_if<ArcCurve>(&path)) return toDir(c->normal);
    if (const auto* c = std::get_if<CircleCurve>(&path)) return toDir(c->normal);
    if (const auto* c = std::get_if<EllipseCurve>(&path)) return toDir(c->normal);
    if (const auto* c = std::get_if<PolylineCurve>(&path)) return toDir(c->normal);
    BRepLib_FindSurface finder(spine, 1e-9 * std::max(1.0, roughSizeOf(spine)), true);
    if (!finder.Found()) return std::nullopt;
    Handle(Geom_Plane) plane = Handle(Geom_Plane)::DownCast(finder.Surface());
    if (plane.IsNull()) return std::nullopt;
    return plane->Pln().Axis().Direction().Transformed(finder.Location().Transformation());
}

// Tangent at the start of the path.
gp_Vec startTangent(const TopoDS_Wire& spine) {
    BRepTools_WireExplorer it(spine);
    BRepAdaptor_Curve curve(it.Current());
    gp_Pnt p;
    gp_Vec d;
    const bool reversed = it.Current().Orientation() == TopAbs_REVERSED;
    curve.D1(reversed ? curve.LastParameter() : curve.FirstParameter(), p, d);
    return reversed ? -d : d;
}

TopoDS_Shape sweepFace(const TopoDS_Face& face, const TopoDS_Wire& spine,
                       const std::optional<gp_Dir>& binormal) {
    const TopoDS_Wire outer = BRepTools::OuterWire(face);
    TopoDS_Shape body = pipeOfWire(spine, outer, binormal);
    if (body.IsNull()) return {};
    for (TopExp_Explorer it(face, TopAbs_WIRE); it.More(); it.Next()) {
        if (it.Current().IsSame(outer)) continue;
        const TopoDS_Shape hole = pipeOfWire(spine, TopoDS::Wire(it.Current()), binormal);
        if (hole.IsNull()) return {};
        BRepAlgoAPI_Cut cut(body, hole);
        if (!cut.IsDone() || cut.HasErrors()) return {};
        body = cut.Shape();
    }
    return body;
}

Status applyDraft(TopoDS_Shape& prism, const gp_Dir& direction, const gp_Pln& neutral,
                  double taper) {
    BRepOffsetAPI_DraftAngle draft(prism);
    for (TopExp_Explorer it(prism, TopAbs_FACE); it.More(); it.Next()) {
        const TopoDS_Face& face = TopoDS::Face(it.Current());
        if (surfaceKind(face) == SurfaceKind::kPlane) {
            const gp_Dir n = BRepAdaptor_Surface(face, false).Plane().Axis().Direction();
            if (n.IsParallel(direction, 1e-9)) continue; // base and top
        }
        draft.Add(face, direction, taper, neutral);
        if (!draft.AddDone()) return Status::eInvalidInput;
    }
    draft.Build();
    if (!draft.IsDone()) return Status::eInvalidInput;
    prism = draft.Shape();
    return Status::eOk;
}

// Corners of a path made only of straight segments, repeated points dropped; empty for any
// other path (arcs, bulges, splines, closed polylines).
std::vector<gp_Pnt> straightCorners(const Curve& path) {
    std::vector<gp_Pnt> corners;
    if (const auto* c = std::get_if<PolylineCurve>(&path)) {
        if (c->closed) return {};
        for (std::size_t i = 0; i < c->vertices.size(); ++i) {
            if (i + 1 < c->vertices.size() && c->vertices[i].bulge != 0.0) return {};
            corners.push_back(toPnt(polylinePoint(*c, i)));
        }
    } else if (const auto* c = std::get_if<Polyline3dCurve>(&path)) {
        if (c->closed) return {};
        for (const Vec3& p : c->points)
            corners.push_back(toPnt(p));
    }
    std::vector<gp_Pnt> kept;
    for (const gp_Pnt& p : corners)
        if (kept.empty() || kept.back().Distance(p) > 1e-12 * std::max(1.0, p.XYZ().Modulus()))
            kept.push_back(p);
    return kept.size() >= 2 ? kept : std::vector<gp_Pnt>{};
}

// The half-space beyond the plane through the point, on the side of the normal, as far as
// reach goes: a box standing on the plane.
TopoDS_Shape beyond(const gp_Pnt& point, const gp_Dir& normal, double reach) {
    const gp_Ax2 frame(point, normal);
    const gp_Pnt corner =
        point.Translated(-reach * (gp_Vec(frame.XDirection()) + gp_Vec(frame.YDirection())));
    return BRepPrimAPI_MakeBox(gp_Ax2(corner, normal, frame.XDirection()), 2 * reach, 2 * reach,
                               reach)
        .Shape();
}

// The profile swept along straight segments as a pipe: its section is the profile turned about
// the path's start to stand square to the first segment, and stays square to every segment
// after it. Each piece is a prism of the section cut on the planes that bisect its corners; the
// first starts on the profile's own plane, the last ends square. The pieces are fused. A circle
// so makes a round pipe whose volume is its area times the path's length, mitred at both ends
// when it lies on a plane through the path's start that leans as a corner's would.
TopoDS_Shape mitredPipe(const TopoDS_Shape& profile, const gp_Dir& normal,
                        const std::vector<gp_Pnt>& corners) {
    std::vector<gp_Dir> along;
    for (std::size_t i = 0; i + 1 < corners.size(); ++i)
        along.emplace_back(gp_Vec(corners[i], corners[i + 1]));
    // How far the profile reaches from the path's start: bounds how far a mitre leans out.
    Bnd_Box box;
    BRepBndLib::Add(profile, box);
    double reach = 0.0;
    for (const gp_Pnt& p : {box.CornerMin(), box.CornerMax()})
        reach = std::max(reach, 2.0 * p.Distance(corners.front()));
    const gp_Pnt onProfile =
        BRepAdaptor_Surface(facesOf(profile).front(), false).Plane().Location();
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < corners.size(); ++i)
        length += corners[i].Distance(corners[i + 1]);
    // A corner turning almost back on itself has no mitre that bounds its pieces, nor does a
    // profile facing almost across the first segment give a start.
    const gp_Dir facing = normal.Dot(along.front()) < 0 ? normal.Reversed() : normal;
    const double tilt = facing.Angle(along.front());
    if (tilt > 0.5 * M_PI - 1e-3) return {};
    std::vector<double> lean(corners.size(), 0.0);
    lean[0] = reach * std::tan(tilt) + reach;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const double turn = along[i - 1].Angle(along[i]);
        if (turn > M_PI - 1e-3) return {};
        lean[i] = reach * std::tan(turn / 2) + reach;
    }
    const double far = 4.0 * (length + reach + *std::max_element(lean.begin(), lean.end()));

    gp_Trsf place; // the section as it stands at the start of the current segment
    if (!facing.IsParallel(along.front(), 1e-12))
        place.SetRotation(gp_Ax1(corners.front(), facing.Crossed(along.front())),
                          facing.Angle(along.front()));
    TopTools_ListOfShape pieces;
    for (std::size_t i = 0; i + 1 < corners.size(); ++i) {
        if (i > 0) {
            gp_Trsf move, turn;
            move.SetTranslation(corners[i - 1], corners[i]);
            if (!along[i - 1].IsParallel(along[i], 1e-12))
                turn.SetRotation(gp_Ax1(corners[i], along[i - 1].Crossed(along[i])),
                                 along[i - 1].Angle(along[i]));
            place = turn * move * place;
        }
        gp_Trsf back;
        back.SetTranslation(-lean[i] * gp_Vec(along[i]));
        const TopoDS_Shape section = BRepBuilderAPI_Transform(profile, back * place, true).Shape();
        const double run = corners[i].Distance(corners[i + 1]) + lean[i] + lean[i + 1];
        // The prism's walls are made cylinders and planes again, so that the mitres cut them
        // in exact conics.
        const TopoDS_Shape prism = ShapeCustom::SweptToElementary(
            BRepPrimAPI_MakePrism(section, gp_Vec(along[i]) * run).Shape());
        TopTools_ListOfShape body, ends;
        body.Append(prism);
        ends.Append(
            i > 0 ? beyond(corners[i], gp_Dir(-(gp_Vec(along[i - 1]) + gp_Vec(along[i]))), far)
                  : beyond(onProfile, facing.Reversed(), far));
        if (i + 2 < corners.size())
            ends.Append(
                beyond(corners[i + 1], gp_Dir(gp_Vec(along[i]) + gp_Vec(along[i + 1])), far));
        BRepAlgoAPI_Cut cut;
        cut.SetArguments(body);
        cut.SetTools(ends);
        cut.Build();
        if (!cut.IsDone() || cut.HasErrors()) return {};
        const TopoDS_Shape piece = cut.Shape();
        pieces.Append(piece);
    }
    if (pieces.Size() == 1) return pieces.First();
    TopTools_ListOfShape first;
    first.Append(pieces.First());
    pieces.RemoveFirst();
    BRepAlgoAPI_Fuse fuse;
    fuse.SetArguments(first);
    fuse.SetTools(pieces);
    // Neighbours only touch, on their common mitre.
    fuse.SetGlue(BOPAlgo_GlueShift);
    fuse.Build();
    if (!fuse.IsDone() || fuse.HasErrors()) return {};
    ShapeUpgrade_UnifySameDomain unify(fuse.Shape(), true, true, true);
    unify.Build();
    return unify.Shape();
}

} // namespace

Status Solid::extrude(const Region& region, double height, double taperAngle) {
    return guarded([&] {
        const TopoDS_Shape& profile = Access::shape(region);
        const auto normal = regionNormal(profile);
        if (profile.IsNull() || !normal) return Status::eNotApplicable;
        const double size = roughSizeOf(profile);
        if (!std::isfinite(height) || std::abs(height) <= 1e-9 * size ||
            !std::isfinite(taperAngle) || std::abs(taperAngle) >= 0.5 * M_PI)
            return Status::eInvalidInput;
        TopoDS_Shape body = BRepPrimAPI_MakePrism(profile, gp_Vec(*normal) * height).Shape();
        if (taperAngle != 0.0) {
            // Walls lean in by the taper towards the top; the base stays as it is.
            const gp_Dir up = height > 0 ? *normal : normal->Reversed();
            const gp_Pnt origin =
                BRepAdaptor_Surface(facesOf(profile).front(), false).Plane().Location();
            if (Status s = applyDraft(body, up, gp_Pln(origin, up), taperAngle); s != Status::eOk)
                return s;
        }
        TopoDS_Shape solids;
        if (Status s =
                finishSolids(body, solids, taperAngle != 0.0 ? Check::kValidity : Check::kTrusted);
            s != Status::eOk)
            return s;
        if (solids.IsNull()) return Status::eGeneralModelingFailure;
        Access::shape(*this) = solids;
        return Status::eOk;
    });
}

// Each straight segment is a piece fused with all the others: beyond this many the fuse runs for
// minutes, so a path that long is refused rather than left to look like a hang.
constexpr std::size_t kMostMitredSegments = 256;

Status Solid::extrudeAlongPath(const Region& region, const Curve& path, double taperAngle) {
    return guarded([&] {
        const TopoDS_Shape& profile = Access::shape(region);
        const auto normal = regionNormal(profile);
        if (profile.IsNull() || !normal) return Status::eNotApplicable;
        if (taperAngle != 0.0) return Status::eInvalidInput;
        const auto corners = straightCorners(path);
        if (corners.size() > kMostMitredSegments + 1) return Status::eInvalidInput;
        TopoDS_Wire spine;
        if (Status s = buildPathWire(path, spine); s != Status::eOk) return s;
        const gp_Vec tangent = startTangent(spine);
        if (tangent.Magnitude() <= 0.0 ||
            std::abs(gp_Vec(*normal).Dot(tangent.Normalized())) < 1e-9)
            return Status::eDegenerateGeometry;
        TopoDS_Shape body;
        Check check = Check::kTrusted;
        if (const auto* line = std::get_if<LineCurve>(&path)) {
            body = BRepPrimAPI_MakePrism(profile, gp_Vec(toPnt(line->start), toPnt(line->end)))
                       .Shape();
        } else if (!corners.empty()) {
            body = mitredPipe(profile, *normal, corners);
            if (body.IsNull()) return Status::eGeneralModelingFailure;
            check = Check::kValidity;
        } else {
            const auto binormal = pathPlaneNormal(path, spine);
            // A profile without holes is one sweep, checked by its faces; holes go through
            // a boolean, checked by volume.
            for (const TopoDS_Face& face : facesOf(profile))
                if (countOf(face, TopAbs_WIRE) > 1) check = Check::kVolume;
            BRep_Builder builder;
            TopoDS_Compound parts;
            builder.MakeCompound(parts);
            for (const TopoDS_Face& face : facesOf(profile)) {
                const TopoDS_Shape part = sweepFace(face, spine, binormal);
                if (part.IsNull()) return Status::eGeneralModelingFailure;
                builder.Add(parts, part);
            }
            body = parts;
        }
        TopoDS_Shape solids;
        if (Status s = finishSolids(body, solids, check); s != Status::eOk) return s;
        if (solids.IsNull()) return Status::eGeneralModelingFailure;
        Access::shape(*this) = solids;
        return Status::eOk;
    });
}

Status Solid::revolve(const Region& region, const Vec3& axisPoint, const Vec3& axisDir,
                      double angle) {
    return guarded([&] {
        const TopoDS_Shape& profile = Access::shape(region);
        const auto normal = regionNormal(profile);
        if (profile.IsNull() || !normal) return Status::eNotApplicable;
        const auto dir = toDir(axisDir);
        if (!dir || !isFinite(axisPoint) || !std::isfinite(angle) || angle <= 0.0)
            return Status::eInvalidInput;
        const gp_Ax1 axis(toPnt(axisPoint), *dir);
        // An axis along the normal turns the region in its own plane: no volume.
        if (std::abs(dir->Dot(*normal)) > 1.0 - 1e-12) return Status::eDegenerateGeometry;
        if (axisCrossesRegion(profile, *normal, axis)) return Status::eInvalidInput;
        // A turn of 2 pi in single precision is a hair more than a full turn: still one turn.
        const double sweep = std::min(angle, 2.0 * M_PI);
        TopoDS_Shape body = BRepPrimAPI_MakeRevol(profile, axis, sweep).Shape();
        TopoDS_Shape solids;
        if (Status s = finishSolids(body, solids, Check::kTrusted); s != Status::eOk) return s;
        if (solids.IsNull()) return Status::eDegenerateGeometry;
        Access::shape(*this) = solids;
        return Status::eOk;
    });
}

} // namespace arxsolids
