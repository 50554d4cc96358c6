// STL output of a faceted copy of the solid.
#include "internal.h"

#include <BRepBuilderAPI_Copy.hxx>
#include <BRepMesh_IncrementalMesh.hxx>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace arxsolids {
namespace {

// Coordinates within the tolerance below zero are zero: the host's own check allows them.
std::vector<Triangle> clamped(std::vector<Triangle> all, double clampBelow) {
    auto clamp = [clampBelow](double& v) {
        if (v < 0.0 && v >= -clampBelow) v = 0.0;
    };
    for (Triangle& t : all)
        for (Vec3& p : t.corners) {
            clamp(p.x);
            clamp(p.y);
            clamp(p.z);
        }
    return all;
}

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};

bool writeAscii(std::FILE* file, const std::vector<Triangle>& all) {
    std::fprintf(file, "solid arxsolid\n");
    for (const Triangle& f : all) {
        std::fprintf(file, "  facet normal %.9e %.9e %.9e\n    outer loop\n", f.normal.x,
                     f.normal.y, f.normal.z);
        for (const Vec3& p : f.corners)
            std::fprintf(file, "      vertex %.9e %.9e %.9e\n", p.x, p.y, p.z);
        std::fprintf(file, "    endloop\n  endfacet\n");
    }
    return std::fprintf(file, "endsolid arxsolid\n") > 0;
}

bool writeBinary(std::FILE* file, const std::vector<Triangle>& all) {
    char header[80] = "arxsolid";
    std::fwrite(header, 1, sizeof header, file);
    const std::uint32_t count = static_cast<std::uint32_t>(all.size());
    std::fwrite(&count, sizeof count, 1, file);
    for (const Triangle& f : all) {
        float values[12];
        int k = 0;
        for (const Vec3* v : {&f.normal, &f.corners[0], &f.corners[1], &f.corners[2]}) {
            values[k++] = static_cast<float>(v->x);
            values[k++] = static_cast<float>(v->y);
            values[k++] = static_cast<float>(v->z);
        }
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
        const std::vector<Triangle> all = clamped(meshTriangles(copy), tol);
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
