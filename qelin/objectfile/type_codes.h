// Object-type codes: the number a member record keeps for what an entity is, and the row of the
// export's object-type table. Classes of the file and kinds of entity that exist only in the
// drawing (centre lines, caps, the export's fallbacks) share the one numbering.
//
// A code is not the row of the import's dispatcher: see import/class_table.h.
#pragma once

namespace QelCode {

enum : int {
    NoCode = -1, // a class that leaves no record (PipeBranch)

    Line3d = 0,
    CircularArc3d = 1,
    EllipticArc3d = 2,
    Polyline3d = 3,
    StdShape = 4,
    BSplineCurve3d = 5,
    PlanarPatch = 6,
    PlanarPolylineExtrusion = 7,
    StdShapeExtrusion = 8,
    Cylinder = 9,
    Cone = 10,
    Flange = 11, // a cylinder with flat caps on both ends; the class "Flange" is PipeFlange
    Reducer = 12,
    Sphere = 13,
    Torus = 14,
    Elbow = 15,
    Valve = 16,
    Vertex3d = 17,
    GeometricGroup = 18,
    ExclusionVolume = 19,
    Pointset = 20,
    Layer = 21,
    LayerMgr = 22,
    ModelSpace = 23,
    Header = 24,
    FlatCap = 25,
    HemisphericCap = 26,
    SemiEllipticCap = 27,
    CenterLine = 28,
    Text = 29,
    SteelRectangular = 30,
    SteelWideFlange = 31,
    SteelTee = 32,
    SteelChannel = 33,
    SteelAngle = 34,
    RectangularBox = 35,
    TriMesh = 36,
    ContourObj = 37,
    BottomCenterLine = 38,
    Unknown3dSolid = 39,
    Poly3DFace = 40,
    Region = 41,
    Pipe = 42,
    LinePatch = 43,
    PolylinePatch = 44,
    AcDbSolidObj = 45,
    EllipticExtruPatch = 46,
    CircularArc3dPatch = 47,
    AcDbTraceObj = 48,
    AcDbTraceObjExtruPatch = 49,
    KS_SHAPE = 50,
    BlockRef = 51,
    ReducingElbow = 52,
    PipeFlange = 53, // the class "Flange"
    PipeTee = 54,    // the class "Tee"

    Count = 55,
};

} // namespace QelCode
