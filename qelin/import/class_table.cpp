#include "import/class_table.h"

#include "bulk/bulk_creators.h"
#include "creators/elbows.h"
#include "creators/fittings.h"
#include "creators/object_sets.h"
#include "creators/patches.h"
#include "creators/points.h"
#include "creators/primitives.h"
#include "creators/steel.h"

#include <array>
#include <strings.h>

namespace {

constexpr QelCreator Nothing = QelCreateNothing; // known, and makes nothing
constexpr int No = QelNotDispatched;
constexpr bool Hide = true; // the view's "hiddenClasses" may name it
constexpr bool Shown = false;

using C = QelClassRow;
namespace Code = QelCode;

// Two numberings stand side by side here, and both are kept as files and drawings have them.
// The code is what member records keep and what the export's table is indexed by; the row is
// the dispatcher's order, which an import calls the object's type index. The hidden-class filter
// compares the codes named in "hiddenClasses" with the row: the two agree up to Cone and part
// from there, so that hiding "Flange" (code 11) hides row 11, Reducer. Users have met that.
//
// Two names stand side by side too: a code's name and the class the file writes. They differ
// for the fittings ("Flange" is PipeFlange, code 53; code 11 "Flange" is a cylinder with flat
// caps) and in one spelling ("HemiSphericCap" in files, HemisphericCap as a code).
//
// Order doesn't matter: lookups go by code, by row and by name.
// clang-format off
constexpr C kRows[] = {
    // code                         code name                  class in the file        row creator                        hide   group                   key                      xdata
    // Curves
    {Code::Line3d,                  "Line3d",                  "Line3d",                  0, CreateLine3d,                  Hide,  L"LineGroup",           L"LINE_GROUP",           L"Line"},
    {Code::CircularArc3d,           "CircularArc3d",           "CircularArc3d",           1, CreateCircularArc3d,           Hide,  L"CircularArcGroup",    L"CIRCULAR_ARC_GROUP",   L"CircularArc3d"},
    {Code::EllipticArc3d,           "EllipticArc3d",           "EllipticArc3d",           2, CreateEllipticArc3d,           Hide,  L"EllipticArcGroup",    L"ELLIPTIC_ARC_GROUP",   L"EllipticArc3d"},
    {Code::Polyline3d,              "Polyline3d",              "Polyline3d",              3, CreatePolyline3d,              Hide,  L"Polyline3dGroup",     L"POLYLINE3D_GROUP",     L"Polyline3d"},
    {Code::BSplineCurve3d,          "BSplineCurve3d",          "BSplineCurve3d",          5, CreateBSplineCurve3d,          Hide,  L"BSplineCurveGroup",   L"BSPLINE_CURVE_GROUP",  L"BSplineCurve3d"},
    // Primitive solids
    {Code::Cylinder,                "Cylinder",                "Cylinder",                9, CreateCylinder,                Hide,  L"CylinderGroup",       L"CYLINDER_GROUP",       L"Cylinder"},
    {Code::Cone,                    "Cone",                    "Cone",                   10, CreateCone,                    Hide,  L"ConeGroup",           L"CONE_GROUP",           L"Cone"},
    {Code::Sphere,                  "Sphere",                  "Sphere",                 12, CreateSphere,                  Hide,  L"SphereGroup",         L"SPHERE_GROUP",         L"Sphere"},
    {Code::Torus,                   "Torus",                   "Torus",                  13, CreateTorus,                   Hide,  L"TorusGroup",          L"TORUS_GROUP",          L"Torus"},
    {Code::RectangularBox,          "RectangularBox",          "RectangularBox",         16, CreateRectangularBox,          Hide,  L"RectBoxGroup",        L"RECTBOX_GROUP",        L"RectangularBox"},
    // Elbows and reducers
    {Code::Reducer,                 "Reducer",                 "Reducer",                11, CreateReducer,                 Hide,  L"ReducerGroup",        L"REDUCER_GROUP",        L"Reducer"},
    {Code::Elbow,                   "Elbow",                   "Elbow",                  14, CreateElbow,                   Hide,  L"ElbowGroup",          L"ELBOW_GROUP",          L"Elbow"},
    {Code::ReducingElbow,           "ReducingElbow",           "ReducingElbow",          29, CreateReducingElbow,           Shown, L"ReducingElbowGroup",  L"REDUCINGELBOW_GROUP",  L"ReducingElbow"},
    // Valves, flanges, tees; the flat-capped cylinder; caps and centre lines
    {Code::Valve,                   "Valve",                   "Valve",                  15, CreateValve,                   Hide,  L"ValveGroup",          L"VALVE_GROUP",          L"Valve"},
    {Code::PipeFlange,              "PipeFlange",              "Flange",                 17, CreateFlange,                  Hide,  L"PipeFlangeGroup",     L"PIPEFLANGE_GROUP",     L"PipeFlange"},
    {Code::PipeTee,                 "PipeTee",                 "Tee",                    18, CreateTee,                     Hide,  L"PipeTeeGroup",        L"PIPETEE_GROUP",        L"PipeTee"},
    {Code::Flange,                  "Flange",                  nullptr,                  No, nullptr,                       Hide,  L"CylinderGroup",       L"CYLINDER_GROUP",       L"Flange"},
    {Code::FlatCap,                 "FlatCap",                 "FlatCap",                No, nullptr,                       Shown, nullptr,                nullptr,                 L"Flat Cap"},
    {Code::HemisphericCap,          "HemisphericCap",          "HemiSphericCap",         No, nullptr,                       Shown, nullptr,                nullptr,                 L"Hemispheric Cap"},
    {Code::SemiEllipticCap,         "SemiEllipticCap",         "SemiEllipticCap",        No, nullptr,                       Shown, nullptr,                nullptr,                 L"SemiEllipticCap Cap"},
    {Code::CenterLine,              "CenterLine",              nullptr,                  No, nullptr,                       Shown, nullptr,                nullptr,                 L"Center Line"},
    {Code::BottomCenterLine,        "BottomCenterLine",        nullptr,                  No, nullptr,                       Shown, nullptr,                nullptr,                 L"BottomCenterLine"},
    // Steel; an extrusion's text is its section's name, its block form groups as "SteelBlkGroup"
    {Code::StdShape,                "StdShape",                "StdShape",                4, CreateStdShape,                Hide,  L"StdShapeGroup",       L"STD_SHAPE_GROUP",      L"StdShape"},
    {Code::StdShapeExtrusion,       "StdShapeExtrusion",       "StdShapeExtrusion",       8, CreateStdShapeExtrusion,       Hide,  L"SteelGroup",          L"Steel_Group",          nullptr},
    // Patches and polyline extrusions
    {Code::PlanarPatch,             "PlanarPatch",             "PlanarPatch",             6, CreatePlanarPatch,             Hide,  L"PlanerPatch",         L"PLANER_PATCH",         L"PlanarPatch"},
    {Code::PlanarPolylineExtrusion, "PlanarPolylineExtrusion", "PlanarPolylineExtrusion", 7, CreatePlanarPolylineExtrusion, Hide,  L"PlanerPatch",         L"PLANER_PATCH",         L"PlanarPolylineExtrusion"},
    // Points, meshes and contours
    {Code::Vertex3d,                "Vertex3d",                "Vertex3d",               19, CreateVertex3d,                Hide,  L"PointGroup",          L"POINT_GROUP",          nullptr},
    {Code::Pointset,                "Pointset",                "Pointset",               22, CreatePointset,                Shown, L"Pointset",            L"POINT_GROUP",          L"ToviQelPoint"},
    {Code::TriMesh,                 "TriMesh",                 "TriMesh",                23, CreateTriMesh,                 Hide,  L"TriMesh",             L"MESH_GROUP",           L"TriMesh"},
    {Code::ContourObj,              "ContourObj",              "ContourObj",             24, CreateContour,                 Hide,  L"ContourGroup",        L"COUTOUR_GROUP",        L"Contour"},
    // Groups and exclusion volumes (a volume has no group of its own)
    {Code::GeometricGroup,          "GeometricGroup",          "GeometricGroup",         20, CreateGeometricGroup,          Shown, L"GGroup",              L"GGROUP",               nullptr},
    {Code::ExclusionVolume,         "ExclusionVolume",         "ExclusionVolume",        21, CreateExclusionVolume,         Shown, nullptr,                nullptr,                 L"ExclusionVolume"},
    // Structure: the import driver reads these itself; met in an object list they make nothing
    {Code::Layer,                   "Layer",                   "Layer",                  25, Nothing,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::LayerMgr,                "LayerMgr",                "LayerMgr",               26, Nothing,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::ModelSpace,              "ModelSpace",              "ModelSpace",             27, Nothing,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::Header,                  "Header",                  "Header",                 28, Nothing,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "PipeBranch",             30, Nothing,                       Shown, nullptr,                nullptr,                 nullptr},
    // Read by the import driver or inside other objects; the dispatcher doesn't know them
    {Code::NoCode,                  nullptr,                   "ModelSpaceView",         No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "CoordSysMgr",            No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "Transformation",         No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "CoordSysList",           No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "Annotations",            No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "Appearance",             No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "VelmoraParam",           No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "VelmoraGraphicsParam",   No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "IntAnnotation",          No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "DblAnnotation",          No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
    {Code::NoCode,                  nullptr,                   "StrAnnotation",          No, nullptr,                       Shown, nullptr,                nullptr,                 nullptr},
};

// What a code without a row gets.
constexpr C kNoRow = {Code::NoCode, nullptr, nullptr, No, nullptr, Shown, nullptr, nullptr, nullptr};
// clang-format on

// The rows by the dispatcher's number.
const std::array<const C*, QelDispatchRowCount>& dispatchOrder() {
    static const auto order = [] {
        std::array<const C*, QelDispatchRowCount> rows{};
        for (const C& row : kRows)
            if (row.dispatchRow >= 0 && row.dispatchRow < QelDispatchRowCount)
                rows[std::size_t(row.dispatchRow)] = &row;
        return rows;
    }();
    return order;
}

} // namespace

std::span<const QelClassRow> QelClassRows() {
    return kRows;
}

const QelClassRow& QelClassOf(int code) {
    for (const C& row : kRows)
        if (row.code == code && code != Code::NoCode) return row;
    return kNoRow;
}

const QelClassRow* QelDispatchRow(int row) {
    return row >= 0 && row < QelDispatchRowCount ? dispatchOrder()[std::size_t(row)] : nullptr;
}

bool QelHiddenClassNumber(const char* name, unsigned& number) {
    if (!name) return false;
    for (const C& row : kRows)
        if (row.hideable && ::strcasecmp(row.codeName, name) == 0) {
            number = unsigned(row.code);
            return true;
        }
    return false;
}

QelCreated QelCreateNothing(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    return QelCreated::Done;
}
