#include "export/object_types.h"

#include "writers/curve_writers.h"
#include "writers/mesh_writers.h"
#include "writers/patch_writers.h"

namespace {

using H = QelExportHandling;
constexpr auto Class = QelTagRule::ClassDecides;
constexpr auto Tag = QelTagRule::TagDecides;
constexpr auto Grouped = QelTagRule::Grouped;
constexpr const char* Own = "";
constexpr const char* None = nullptr;

// By code. Writers join their rows as they are built.
constexpr QelObjectTypeRow kRows[QelObjectTypeCount] = {
    {QelCode::Line3d, "Line3d", Own, Tag, H::Generic, QelWriteLine3d},
    {QelCode::CircularArc3d, "CircularArc3d", Own, Tag, H::Generic, QelWriteCircularArc3d},
    {QelCode::EllipticArc3d, "EllipticArc3d", Own, Tag, H::Generic, QelWriteEllipticArc3d},
    {QelCode::Polyline3d, "Polyline3d", Own, Tag, H::Generic, QelWritePolyline3d},
    {QelCode::StdShape, "StdShape", Own, Tag, H::Generic, QelWriteStdShape},
    {QelCode::BSplineCurve3d, "BSplineCurve3d", Own, Tag, H::Generic, QelWriteBSplineCurve3d},
    {QelCode::PlanarPatch, "PlanarPatch", Own, Tag, H::Patch, nullptr},
    {QelCode::PlanarPolylineExtrusion, "PlanarPolylineExtrusion", Own, Tag, H::Extrusion, nullptr},
    {QelCode::StdShapeExtrusion, "StdShapeExtrusion", Own, Tag, H::Generic,
     QelWriteStdShapeExtrusion},
    {QelCode::Cylinder, "Cylinder", Own, Tag, H::GenericCaps, nullptr},
    {QelCode::Cone, "Cone", Own, Tag, H::Generic, nullptr},
    {QelCode::Flange, "Flange", Own, Tag, H::Generic, nullptr}, // the cylinder's writer
    {QelCode::Reducer, "Reducer", Own, Tag, H::Generic, nullptr},
    {QelCode::Sphere, "Sphere", Own, Tag, H::Generic, nullptr},
    {QelCode::Torus, "Torus", Own, Tag, H::Generic, nullptr},
    {QelCode::Elbow, "Elbow", Own, Tag, H::Generic, nullptr},
    {QelCode::Valve, "Valve", Own, Grouped, H::Generic, nullptr},
    {QelCode::Vertex3d, "Vertex3d", Own, Tag, H::Generic, QelWriteVertex3d},
    {QelCode::GeometricGroup, "GeometricGroup", None, Tag, H::Nothing, nullptr},
    {QelCode::ExclusionVolume, "ExclusionVolume", Own, Tag, H::ExclusionVolume, nullptr},
    {QelCode::Pointset, "Pointset", None, Tag, H::PointSet, nullptr},
    {QelCode::Layer, "Layer", None, Class, H::Nothing, nullptr},
    {QelCode::LayerMgr, "LayerMgr", None, Class, H::Nothing, nullptr},
    {QelCode::ModelSpace, "ModelSpace", None, Class, H::Nothing, nullptr},
    {QelCode::Header, "Header", None, Class, H::Nothing, nullptr},
    {QelCode::FlatCap, "FlatCap", None, Tag, H::Nothing, nullptr},
    {QelCode::HemisphericCap, "HemisphericCap", None, Tag, H::Nothing, nullptr},
    {QelCode::SemiEllipticCap, "SemiEllipticCap", None, Tag, H::Nothing, nullptr},
    {QelCode::CenterLine, "CenterLine", None, Tag, H::Nothing, nullptr},
    {QelCode::Text, "Text", "Vertex3d", Tag, H::Generic, QelWriteText},
    {QelCode::SteelRectangular, "SteelRectangular", None, Class, H::Unknown, nullptr},
    {QelCode::SteelWideFlange, "SteelWideFlange", None, Class, H::Unknown, nullptr},
    {QelCode::SteelTee, "SteelTee", None, Class, H::Unknown, nullptr},
    {QelCode::SteelChannel, "SteelChannel", None, Class, H::Unknown, nullptr},
    {QelCode::SteelAngle, "SteelAngle", None, Class, H::Unknown, nullptr},
    {QelCode::RectangularBox, "RectangularBox", Own, Tag, H::Box, nullptr},
    {QelCode::TriMesh, "TriMesh", Own, Grouped, H::Mesh, QelWriteTriMesh},
    {QelCode::ContourObj, "ContourObj", None, Grouped, H::Contour, nullptr},
    {QelCode::BottomCenterLine, "BottomCenterLine", None, Tag, H::Nothing, nullptr},
    {QelCode::Unknown3dSolid, "Unknown3dSolid", None, Class, H::Patch, nullptr},
    {QelCode::Poly3DFace, "Poly3DFace", "PlanarPatch", Class, H::Patch, nullptr},
    {QelCode::Region, "Region", "PlanarPatch", Class, H::Region, nullptr},
    {QelCode::Pipe, "Pipe", "Cylinder", Class, H::GenericCaps, nullptr},
    {QelCode::LinePatch, "LinePatch", "PlanarPatch", Class, H::Generic, QelWriteLinePatch},
    {QelCode::PolylinePatch, "PolylinePatch", Own, Class, H::PolylinePatch, nullptr},
    {QelCode::AcDbSolidObj, "AcDbSolidObj", Own, Class, H::Solid2d, nullptr},
    {QelCode::EllipticExtruPatch, "EllipticExtruPatch", Own, Class, H::Nothing, nullptr},
    {QelCode::CircularArc3dPatch, "CircularArc3dPatch", "TriMesh", Class, H::ArcPatch,
     QelWriteArcPatch},
    {QelCode::AcDbTraceObj, "AcDbTraceObj", "PlanarPatch", Class, H::GenericPlain, QelWriteTrace},
    {QelCode::AcDbTraceObjExtruPatch, "AcDbTraceObjExtruPatch", "PlanarPolylineExtrusion", Class,
     H::GenericPlain, QelWriteTrace},
    {QelCode::KS_SHAPE, "KS_SHAPE", None, Class, H::Nothing, nullptr},
    {QelCode::BlockRef, "BlockRef", None, Class, H::NestedInsert, nullptr},
    {QelCode::ReducingElbow, "ReducingElbow", Own, Tag, H::Generic, nullptr},
    {QelCode::PipeFlange, "PipeFlange", "Flange", Grouped, H::Generic, nullptr},
    {QelCode::PipeTee, "PipeTee", "Tee", Grouped, H::Generic, nullptr},
};

constexpr bool inCodeOrder() {
    for (int code = 0; code < QelObjectTypeCount; ++code)
        if (kRows[code].code != code) return false;
    return true;
}
static_assert(inCodeOrder(), "each row stands at its code");

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
