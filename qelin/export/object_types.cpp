#include "export/object_types.h"

namespace {

using H = QelExportHandling;
constexpr auto Class = QelTagRule::ClassDecides;
constexpr auto Tag = QelTagRule::TagDecides;
constexpr auto Grouped = QelTagRule::Grouped;
constexpr const char* Own = "";
constexpr const char* None = nullptr;

// By code. Writers join their rows as they are built.
constexpr QelObjectTypeRow kRows[QelObjectTypeCount] = {
    {"Line3d", Own, Tag, H::Generic, nullptr},
    {"CircularArc3d", Own, Tag, H::Generic, nullptr},
    {"EllipticArc3d", Own, Tag, H::Generic, nullptr},
    {"Polyline3d", Own, Tag, H::Generic, nullptr},
    {"StdShape", Own, Tag, H::Generic, nullptr},
    {"BSplineCurve3d", Own, Tag, H::Generic, nullptr},
    {"PlanarPatch", Own, Tag, H::Patch, nullptr},
    {"PlanarPolylineExtrusion", Own, Tag, H::Extrusion, nullptr},
    {"StdShapeExtrusion", Own, Tag, H::Generic, nullptr},
    {"Cylinder", Own, Tag, H::GenericCaps, nullptr},
    {"Cone", Own, Tag, H::Generic, nullptr},
    {"Flange", Own, Tag, H::Generic, nullptr}, // the cylinder's writer
    {"Reducer", Own, Tag, H::Generic, nullptr},
    {"Sphere", Own, Tag, H::Generic, nullptr},
    {"Torus", Own, Tag, H::Generic, nullptr},
    {"Elbow", Own, Tag, H::Generic, nullptr},
    {"Valve", Own, Grouped, H::Generic, nullptr},
    {"Vertex3d", Own, Tag, H::Generic, nullptr},
    {"GeometricGroup", None, Tag, H::Nothing, nullptr},
    {"ExclusionVolume", Own, Tag, H::ExclusionVolume, nullptr},
    {"Pointset", None, Tag, H::PointSet, nullptr},
    {"Layer", None, Class, H::Nothing, nullptr},
    {"LayerMgr", None, Class, H::Nothing, nullptr},
    {"ModelSpace", None, Class, H::Nothing, nullptr},
    {"Header", None, Class, H::Nothing, nullptr},
    {"FlatCap", None, Tag, H::Nothing, nullptr},
    {"HemisphericCap", None, Tag, H::Nothing, nullptr},
    {"SemiEllipticCap", None, Tag, H::Nothing, nullptr},
    {"CenterLine", None, Tag, H::Nothing, nullptr},
    {"Text", "Vertex3d", Tag, H::Generic, nullptr},
    {"SteelRectangular", None, Class, H::Unknown, nullptr},
    {"SteelWideFlange", None, Class, H::Unknown, nullptr},
    {"SteelTee", None, Class, H::Unknown, nullptr},
    {"SteelChannel", None, Class, H::Unknown, nullptr},
    {"SteelAngle", None, Class, H::Unknown, nullptr},
    {"RectangularBox", Own, Tag, H::Box, nullptr},
    {"TriMesh", Own, Grouped, H::Mesh, nullptr},
    {"ContourObj", None, Grouped, H::Contour, nullptr},
    {"BottomCenterLine", None, Tag, H::Nothing, nullptr},
    {"Unknown3dSolid", None, Class, H::Patch, nullptr},
    {"Poly3DFace", "PlanarPatch", Class, H::Patch, nullptr},
    {"Region", "PlanarPatch", Class, H::Region, nullptr},
    {"Pipe", "Cylinder", Class, H::GenericCaps, nullptr},
    {"LinePatch", "PlanarPatch", Class, H::Generic, nullptr},
    {"PolylinePatch", Own, Class, H::PolylinePatch, nullptr},
    {"AcDbSolidObj", Own, Class, H::Solid2d, nullptr},
    {"EllipticExtruPatch", Own, Class, H::Nothing, nullptr},
    {"CircularArc3dPatch", "TriMesh", Class, H::ArcPatch, nullptr},
    {"AcDbTraceObj", "PlanarPatch", Class, H::GenericPlain, nullptr},
    {"AcDbTraceObjExtruPatch", "PlanarPolylineExtrusion", Class, H::GenericPlain, nullptr},
    {"KS_SHAPE", None, Class, H::Nothing, nullptr},
    {"BlockRef", None, Class, H::NestedInsert, nullptr},
    {"ReducingElbow", Own, Tag, H::Generic, nullptr},
    {"PipeFlange", "Flange", Grouped, H::Generic, nullptr},
    {"PipeTee", "Tee", Grouped, H::Generic, nullptr},
};

} // namespace

std::span<const QelObjectTypeRow> objectTypeTable() {
    return kRows;
}

const QelObjectTypeRow* QelTypeRow(int code) {
    return code >= 0 && code < QelObjectTypeCount ? &kRows[code] : nullptr;
}

const char* QelObjectTypeClass(const QelObjectTypeRow& row) {
    if (!row.className) return nullptr;
    return *row.className ? row.className : row.name;
}
