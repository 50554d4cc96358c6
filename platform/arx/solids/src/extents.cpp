// Tightest boxes of faces in closed form. A face straight along one direction (a plane, a
// cylinder, a cone) has its extremes on its boundary, so the boxes of its edges make its box;
// a torus adds the points inside the face where its height along an axis peaks.
#include "internal.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <BndLib_Add3dCurve.hxx>
#include <ElSLib.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>

#include <cmath>

namespace arxsolids {
namespace {

constexpr double kTwoPi = 2 * M_PI;
constexpr double kWhole = kTwoPi - 1e-9;

// The boxes of a face's edges, conics and lines only (their boxes are exact); a collapsed edge
// gives its point. False when an edge is of another kind.
bool addEdges(const TopoDS_Face& face, Bnd_Box& box) {
    Bnd_Box edges;
    for (TopExp_Explorer it(face, TopAbs_EDGE); it.More(); it.Next()) {
        const TopoDS_Edge& edge = TopoDS::Edge(it.Current());
        if (BRep_Tool::Degenerated(edge)) {
            edges.Add(BRep_Tool::Pnt(TopExp::FirstVertex(edge)));
            continue;
        }
        const BRepAdaptor_Curve curve(edge);
        switch (curve.GetType()) {
        case GeomAbs_Line:
        case GeomAbs_Circle:
        case GeomAbs_Ellipse:
            BndLib_Add3dCurve::Add(curve, 0.0, edges);
            break;
        default:
            return false;
        }
    }
    if (edges.IsVoid()) return false;
    box.Add(edges);
    return true;
}

// A part of a torus whole around its tube (an elbow's wall): its boundary, and the points inside
// where the height along a world axis is at its highest or lowest.
bool addTorusBand(const TopoDS_Face& face, const gp_Torus& torus, Bnd_Box& box) {
    double u0, u1, v0, v1;
    BRepTools::UVBounds(face, u0, u1, v0, v1);
    if (v1 - v0 < kWhole || u1 - u0 >= kWhole) return false;
    Bnd_Box band;
    if (!addEdges(face, band)) return false;
    const gp_Ax3& pos = torus.Position();
    const double R = torus.MajorRadius(), r = torus.MinorRadius();
    for (int axis = 1; axis <= 3; ++axis) {
        // Height along the axis: (R + r cos v)(a cos u + b sin u) + r c sin v, about the centre.
        const double a = pos.XDirection().Coord(axis), b = pos.YDirection().Coord(axis);
        const double c = pos.Direction().Coord(axis);
        if (std::hypot(a, b) < 1e-12) continue; // along the torus's axis: the rims hold the peaks
        for (double u : {std::atan2(b, a), std::atan2(b, a) + M_PI}) {
            double inRange = u0 + std::fmod(std::fmod(u - u0, kTwoPi) + kTwoPi, kTwoPi);
            if (inRange > u1) continue;
            const double rho = a * std::cos(u) + b * std::sin(u);
            for (double v : {std::atan2(c, rho), std::atan2(c, rho) + M_PI})
                band.Add(ElSLib::TorusValue(inRange, v, pos, R, r));
        }
    }
    box.Add(band);
    return true;
}

} // namespace

bool addExactFaceBox(const TopoDS_Face& face, Bnd_Box& box) {
    const BRepAdaptor_Surface surface(face, false);
    switch (surface.GetType()) {
    case GeomAbs_Plane:
    case GeomAbs_Cylinder:
    case GeomAbs_Cone:
        return addEdges(face, box);
    case GeomAbs_Sphere: {
        double u0, u1, v0, v1;
        BRepTools::UVBounds(face, u0, u1, v0, v1);
        if (u1 - u0 < kWhole || v1 - v0 < M_PI - 1e-9) return false;
        const gp_Sphere sphere = surface.Sphere();
        const gp_XYZ half(sphere.Radius(), sphere.Radius(), sphere.Radius());
        box.Add(gp_Pnt(sphere.Location().XYZ() - half));
        box.Add(gp_Pnt(sphere.Location().XYZ() + half));
        return true;
    }
    case GeomAbs_Torus: {
        const gp_Torus torus = surface.Torus();
        double u0, u1, v0, v1;
        BRepTools::UVBounds(face, u0, u1, v0, v1);
        if (u1 - u0 >= kWhole && v1 - v0 >= kWhole) {
            const gp_XYZ c = torus.Location().XYZ(), n = torus.Axis().Direction().XYZ();
            const double R = torus.MajorRadius(), r = torus.MinorRadius();
            gp_XYZ half;
            for (int i = 1; i <= 3; ++i)
                half.SetCoord(i, R * std::sqrt(std::max(0.0, 1.0 - n.Coord(i) * n.Coord(i))) + r);
            box.Add(gp_Pnt(c - half));
            box.Add(gp_Pnt(c + half));
            return true;
        }
        return addTorusBand(face, torus, box);
    }
    default:
        return false;
    }
}

} // namespace arxsolids
