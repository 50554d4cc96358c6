#include "export/generic_mesh.h"

#include "writers/mesh_params.h"

#include <arx/aced.h>
#include <arx/dbsol3d.h>
#include <win/files.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <map>
#include <string>
#include <vector>

namespace {

using Key = std::array<double, 3>; // compared exactly, x first: no tolerance merges vertices

bool anyNegative(const AcGePoint3d& p) {
    return p.x < 0.0 || p.y < 0.0 || p.z < 0.0;
}

// Writes the solid as ASCII STL. The host refuses a solid with negative coordinates, so such a
// solid is moved by minus its lowest corner for the write and back after it, whatever the
// write does (an exception included). The solid comes in open for read and leaves closed.
Acad::ErrorStatus writeStl(AcDb3dSolid* solid, const AcDbObjectId& id, const wchar_t* file,
                           AcGePoint3d& offset) {
    offset = AcGePoint3d::kOrigin;
    AcDbExtents extents;
    if (solid->getGeomExtents(extents) == Acad::eOk && anyNegative(extents.minPoint())) {
        solid->close();
        if (acdbOpenObject(solid, id, AcDb::kForWrite) == Acad::eOk) {
            offset = extents.minPoint();
            solid->transformBy(AcGeMatrix3d::translation(-offset.asVector()));
        } else if (acdbOpenObject(solid, id, AcDb::kForRead) != Acad::eOk) {
            return Acad::eNotOpenForWrite; // gone between the two opens
        }
        // A solid that can't be moved (a locked layer) is written where it lies: the host
        // then refuses it, and the caller reports that.
    }
    Acad::ErrorStatus status = Acad::eOk;
    try {
        status = file ? solid->stlOut(file, true) : Acad::eInvalidInput;
    } catch (...) {
        if (anyNegative(offset)) solid->transformBy(AcGeMatrix3d::translation(offset.asVector()));
        solid->close();
        throw;
    }
    if (anyNegative(offset)) solid->transformBy(AcGeMatrix3d::translation(offset.asVector()));
    solid->close();
    return status;
}

// The vertex lines of the STL text, three to a triangle; each point is numbered at its first
// appearance, so the same solid numbers its vertices the same way in every run.
bool readStl(const wchar_t* file, std::map<Key, int>& points, std::vector<int>& indices) {
    FILE* in = _wfopen(file, L"rt");
    if (!in) return false;
    wchar_t line[1000];
    std::vector<Key> triangle;
    while (std::fgetws(line, 1000, in)) {
        const wchar_t* text = line;
        while (*text && std::iswspace(static_cast<wint_t>(*text)))
            ++text;
        if (std::wcsncmp(text, L"vertex", 6) != 0) continue;
        Key point{};
        if (std::swscanf(text + 6, L"%lf %lf %lf", &point[0], &point[1], &point[2]) != 3) continue;
        triangle.push_back(point);
        if (triangle.size() < 3) continue;
        for (const Key& corner : triangle) {
            const auto [at, added] = points.emplace(corner, static_cast<int>(points.size()));
            indices.push_back(at->second);
        }
        triangle.clear();
    }
    std::fclose(in);
    return true;
}

} // namespace

bool writeGenericMesh(QelObject* target, QelWriter&, AcDbObjectId id, const AcGeMatrix3d&) {
    AcDb3dSolid* solid = nullptr;
    if (acdbOpenObject(solid, id, AcDb::kForRead) != Acad::eOk) return false;
    acutPrintf(L"\n -> Writing as generic mesh");
    wchar_t folder[260] = {};
    GetTempPathW(260, folder);
    wchar_t* named = _wtempnam(folder, L"QelTmp");
    const std::wstring file = named ? named : L"";
    std::free(named);

    AcGePoint3d offset;
    if (writeStl(solid, id, file.empty() ? nullptr : file.c_str(), offset) != Acad::eOk) {
        if (!file.empty()) _wremove(file.c_str()); // a write that broke off leaves no file
        acutPrintf(L"\n   error converting to mesh (skipping)");
        return false;
    }
    std::map<Key, int> points;
    std::vector<int> indices;
    if (!readStl(file.c_str(), points, indices)) {
        acutPrintf(L"\n   error converting from mesh (skipping)");
        return false;
    }
    _wremove(file.c_str());
    if (points.empty() || indices.empty()) {
        acutPrintf(L"\n   error converting to/from mesh (skipping)");
        return false;
    }
    std::vector<AcGePoint3d> vertices(points.size());
    const bool shifted = !offset.isEqualTo(AcGePoint3d::kOrigin, AcGeContext::gTol);
    for (const auto& [key, index] : points) {
        AcGePoint3d point(key[0], key[1], key[2]);
        if (shifted) point += offset.asVector();
        vertices[static_cast<std::size_t>(index)] = point;
    }
    QelWriteMeshParams(target, vertices, indices);
    return true;
}
