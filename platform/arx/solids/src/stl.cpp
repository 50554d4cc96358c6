// STL output of a faceted copy of the solid.
#include "internal.h"

#include <BRepBuilderAPI_Copy.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace arxsolids {
namespace {

struct Facet {
    gp_XYZ normal;
    std::array<gp_XYZ, 3> corners;
};

// Triangles of every face, corners counter-clockwise seen from outside.
std::vector<Facet> facets(const TopoDS_Shape& shape, double clampBelow) {
    std::vector<Facet> out;
    // Coordinates within the tolerance below zero are zero: the host's own check allows them.
    auto clamp = [clampBelow](gp_XYZ p) {
        for (int i = 1; i <= 3; ++i)
            if (p.Coord(i) < 0.0 && p.Coord(i) >= -clampBelow) p.SetCoord(i, 0.0);
        return p;
    };
    for (const TopoDS_Face& face : facesOf(shape)) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull()) continue;
        const gp_Trsf trsf = location.Transformation();
        const bool reversed = face.Orientation() == TopAbs_REVERSED;
        for (int t = 1; t <= mesh->NbTriangles(); ++t) {
            int a, b, c;
            mesh->Triangle(t).Get(a, b, c);
            if (reversed) std::swap(b, c);
            Facet f;
            f.corners = {clamp(mesh->Node(a).Transformed(trsf).XYZ()),
                         clamp(mesh->Node(b).Transformed(trsf).XYZ()),
                         clamp(mesh->Node(c).Transformed(trsf).XYZ())};
            const gp_XYZ n = (f.corners[1] - f.corners[0]).Crossed(f.corners[2] - f.corners[0]);
            if (n.Modulus() <= 0.0) continue; // a sliver adds nothing to the surface
            f.normal = n / n.Modulus();
            out.push_back(f);
        }
    }
    return out;
}

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};

bool writeAscii(std::FILE* file, const std::vector<Facet>& all) {
    std::fprintf(file, "solid arxsolid\n");
    for (const Facet& f : all) {
        std::fprintf(file, "  facet normal %.9e %.9e %.9e\n    outer loop\n", f.normal.X(),
                     f.normal.Y(), f.normal.Z());
        for (const gp_XYZ& p : f.corners)
            std::fprintf(file, "      vertex %.9e %.9e %.9e\n", p.X(), p.Y(), p.Z());
        std::fprintf(file, "    endloop\n  endfacet\n");
    }
    return std::fprintf(file, "endsolid arxsolid\n") > 0;
}

bool writeBinary(std::FILE* file, const std::vector<Facet>& all) {
    char header[80] = "arxsolid";
    std::fwrite(header, 1, sizeof header, file);
    const std::uint32_t count = static_cast<std::uint32_t>(all.size());
    std::fwrite(&count, sizeof count, 1, file);
    for (const Facet& f : all) {
        float values[12];
        int k = 0;
        for (int i = 1; i <= 3; ++i)
            values[k++] = static_cast<float>(f.normal.Coord(i));
        for (const gp_XYZ& p : f.corners)
            for (int i = 1; i <= 3; ++i)
                values[k++] = static_cast<float>(p.Coord(i));
        const std::uint16_t attributes = 0;
        std::fwrite(values, sizeof values, 1, file);
        std::fwrite(&attributes, sizeof attributes, 1, file);
    }
    return !std::ferror(file);
}

} // namespace

Status Solid::stlOut(const std::string& fileName, bool asciiFormat) const {
    return guarded([&] {
        const TopoDS_Shape& shape = Access::shape(*this);
        Extents e;
        if (shape.IsNull() || !extentsOf(shape, e)) return Status::eNotApplicable;
        const double size = toPnt(e.min).Distance(toPnt(e.max));
        const double tol = 1e-9 * std::max(1.0, size);
        if (e.min.x < -tol || e.min.y < -tol || e.min.z < -tol) return Status::eNegativeCoordinates;
        // Facets go on a copy: the solid itself stays free of them.
        const TopoDS_Shape copy = BRepBuilderAPI_Copy(shape, true, false).Shape();
        BRepMesh_IncrementalMesh mesher(copy, 1e-3 * size, false, 0.25, false);
        if (!mesher.IsDone()) return Status::eGeneralModelingFailure;
        const std::vector<Facet> all = facets(copy, tol);
        if (all.empty()) return Status::eGeneralModelingFailure;
        std::unique_ptr<std::FILE, FileCloser> file(
            std::fopen(fileName.c_str(), asciiFormat ? "w" : "wb"));
        if (!file) return Status::eFileAccessErr;
        const bool written =
            asciiFormat ? writeAscii(file.get(), all) : writeBinary(file.get(), all);
        return written ? Status::eOk : Status::eFileAccessErr;
    });
}

} // namespace arxsolids
