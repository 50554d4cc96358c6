#include "objectfile/catalogue.h"

#include <cstring>

namespace {

constexpr auto Req = QelParamStatus::Required;
constexpr auto Opt = QelParamStatus::Optional;
constexpr auto Wri = QelParamStatus::Written;
constexpr auto Cond = QelParamStatus::Conditional;

constexpr auto Bool = QelBoolType;
constexpr auto Short = QelShortType;
constexpr auto Int = QelIntType;
constexpr auto UInt = QelUIntType;
constexpr auto Float = QelFloatType;
constexpr auto Double = QelDoubleType;
constexpr auto String = QelStringType;
constexpr auto Object = QelObjectType;
constexpr auto Bytes = QelByteArrayType;
constexpr auto Shorts = QelShortArrayType;
constexpr auto Ints = QelIntArrayType;
constexpr auto UInts = QelUIntArrayType;
constexpr auto Floats = QelFloatArrayType;
constexpr auto Doubles = QelDoubleArrayType;

using P = QelParamDef;

// Sub-objects.
constexpr P kTransformation[] = {
    {"translation", Doubles, "3", Req, "", "m"},
    {"rotation", Doubles, "4", Opt, "(0,0,0,0), or (0,0,1,0) for some classes", "rad"},
};
constexpr P kAppearance[] = {
    {"diffuseColor", Bytes, "3", Opt, "255, 255, 255", ""},
    {"ambientColor", Bytes, "3", Wri, "", ""},
};
constexpr P kVelmoraParam[] = {
    {"stemThickness", Double, "", Req, "", "m"},
    {"handwheelThickness", Double, "", Req, "", "m"},
};
constexpr P kVelmoraGraphicsParam[] = {
    {"elevationCtrl", Int, "", Opt, "0; 64 labels whole intervals only", ""},
    {"elevationUnit", Int, "", Opt, "", ""},
    {"elevationSize", Double, "", Opt, "", ""},
    {"elevationColor", Bytes, "3", Opt, "255, 255, 255; or an int of red, green, blue", ""},
};
constexpr P kAnnotationValue[] = {{"value", Int, "", Req, "", ""}};
constexpr P kDblAnnotationValue[] = {{"value", Double, "", Req, "", ""}};
constexpr P kStrAnnotationValue[] = {{"value", String, "", Req, "", ""}};

// Params every geometric class may carry.
constexpr P kCommon[] = {
    {"pose", Object, "", Opt, "translation (0,0,0), no rotation", ""},
    {"appearance", Object, "", Opt, "white", ""},
    {"annotations", Object, "", Opt, "", ""},
};

// Structure objects.
constexpr P kHeader[] = {
    {"rootLocation", UInt, "", Req, "", ""},
    {"version", UInt, "", Wri, "", ""},
    {"application", String, "", Wri, "", ""},
    {"source", String, "", Wri, "", ""},
};
constexpr P kModelSpace[] = {
    {"name", String, "", Wri, "", ""},        {"objectList", UInts, "n", Req, "", ""},
    {"layerMgr", UInt, "", Req, "", ""},      {"modelSpaceViewList", UInts, "n", Wri, "", ""},
    {"defCoordSys", Object, "", Opt, "", ""},
};
constexpr P kLayerMgr[] = {{"layerList", UInts, "n", Req, "", ""}};
constexpr P kLayer[] = {
    {"name", String, "", Req, "\"z_VelmoraDefaultLayer\" after the message", ""},
    {"objectList", UInts, "n", Opt, "empty", ""},
    {"appearance", Object, "", Opt, "colour message, then default", ""},
    {"layerProperties", UInt, "", Wri, "", ""},
};
constexpr P kModelSpaceView[] = {
    {"name", String, "", Wri, "", ""},         {"coordSysMgr", UInt, "", Wri, "", ""},
    {"currCoordSys", Object, "", Opt, "", ""}, {"upVec", Doubles, "3", Wri, "", ""},
    {"upVecUse", Int, "", Wri, "", ""},        {"layerOverrides", UInts, "n", Opt, "", ""},
    {"viewpointMgr", UInt, "", Opt, "", ""},   {"hiddenClasses", String, "", Opt, "", ""},
};
constexpr P kCoordSysMgr[] = {{"coordSysList", Object, "", Opt, "no saved systems", ""}};

// Geometry objects.
constexpr P kLine3d[] = {
    {"startPoint", Doubles, "3", Req, "", "m"},
    {"endPoint", Doubles, "3", Req, "", "m"},
};
constexpr P kCircularArc3d[] = {
    {"radius", Double, "", Req, "", "m"},
    {"endAngle", Double, "", Req, "", "rad"},
};
constexpr P kEllipticArc3d[] = {
    {"radiusX", Double, "", Req, "", "m"},
    {"radiusY", Double, "", Req, "", "m"},
    {"startAngle", Double, "", Req, "", "rad"},
    {"endAngle", Double, "", Req, "", "rad"},
};
constexpr P kPolyline3d[] = {{"vertices", Doubles, "3n", Req, "", "m"}};
constexpr P kBSplineCurve3d[] = {
    {"fitPoints", Doubles, "3n", Cond, "chooses the fit form", "m"},
    {"poles", Doubles, "3n", Cond, "required if no \"fitPoints\"", "m"},
    {"order", Int, "", Opt, "4, with message", ""},
    {"periodic", Bool, "", Opt, "true, with message in pole form", ""},
    {"rational", Bool, "", Opt, "false with message in pole form; true in fit form", ""},
    {"weights", Doubles, "n", Cond, "required in pole form", ""},
    {"knots", Doubles, "n", Cond, "required in pole form", ""},
    {"startVec", Doubles, "3", Opt, "", ""},
    {"endVec", Doubles, "3", Opt, "", ""},
};
constexpr P kStdShape[] = {
    {"sectionType", String, "", Req, "", ""},
    {"width", Double, "", Req, "0.0 after message", "m"},
    {"depth", Double, "", Cond, "required except for \"Square\"; 0.0 after message", "m"},
    {"flangeThickness", Double, "", Opt, "1.0 after message", "m"},
    {"webThickness", Double, "", Opt, "1.0 after message", "m"},
};
constexpr P kStdShapeExtrusion[] = {
    {"sectionType", String, "", Req, "", ""},
    {"width", Double, "", Req, "0.0 after message", "m"},
    {"depth", Double, "", Cond, "required except for \"Square\"; 0.0 after message", "m"},
    {"flangeThickness", Double, "", Opt, "1.0 after message", "m"},
    {"webThickness", Double, "", Opt, "1.0 after message", "m"},
    {"length", Double, "", Req, "0.0 after message", "m"},
};
constexpr P kPlanarPatch[] = {
    {"vertices", Doubles, "2n", Req, "", "m"},
    {"holeVertices", Doubles, "2n", Opt, "", "m"},
    {"holeVertexEndIndices", Ints, "n", Opt, "", ""},
};
constexpr P kPlanarPolylineExtrusion[] = {
    {"vertices", Doubles, "2n", Req, "", "m"},
    {"holeVertices", Doubles, "2n", Opt, "", "m"},
    {"holeVertexEndIndices", Ints, "n", Opt, "", ""},
    {"height", Double, "", Opt, "0.001 after message; 0.01 if below 1e-5", "m"},
    {"direction", Doubles, "3", Opt, "0, 0, 1", ""},
};
constexpr P kCylinder[] = {
    {"radius", Double, "", Req, "raised to 1e-5", "m"},
    {"height", Double, "", Req, "raised to 1e-6", "m"},
    {"cap0", Object, "", Opt, "no cap at the base", ""},
    {"cap1", Object, "", Opt, "no cap at the far end", ""},
};
constexpr P kCone[] = {
    {"radius0", Double, "", Req, "raised to 1e-5", "m"},
    {"radius1", Double, "", Req, "raised to 1e-5", "m"},
    {"height", Double, "", Req, "above 1e-5", "m"},
};
constexpr P kReducer[] = {
    {"radius0", Double, "", Req, "above 1e-5", "m"},
    {"radius1", Double, "", Req, "above 1e-5", "m"},
    {"height", Double, "", Req, "above 1e-5", "m"},
    {"direction", Doubles, "3", Opt, "0, 0, 1", ""},
    {"subtype", Short, "", Wri, "", ""},
};
constexpr P kSphere[] = {{"radius", Double, "", Req, "", "m"}};
constexpr P kTorus[] = {
    {"majorRadius", Double, "", Req, "", "m"},
    {"minorRadius", Double, "", Req, "", "m"},
};
constexpr P kRectangularBox[] = {
    {"height", Double, "", Req, "", "m"},
    {"width", Double, "", Req, "", "m"},
    {"depth", Double, "", Req, "", "m"},
};
constexpr P kElbow[] = {
    {"majorRadius", Double, "", Req, "", "m"},
    {"minorRadius", Double, "", Req, "above 1e-5", "m"},
    {"endAngle", Double, "", Opt, "1.5707963705062866", "rad"},
    {"miterCount", Short, "", Opt, "0", ""},
};
constexpr P kReducingElbow[] = {
    {"majorRadius", Double, "", Req, "", "m"},
    {"minorRadius", Double, "", Req, "above 1e-5", "m"},
    {"endAngle", Double, "", Opt, "1.5707963705062866", "rad"},
    {"miterCount", Short, "", Opt, "0", ""},
    {"minorRadius1", Double, "", Opt, "\"minorRadius\"", "m"},
};
constexpr P kValve[] = {
    {"coneRadius", Double, "", Req, "", "m"},
    {"valveLength", Double, "", Req, "", "m"},
    {"stemLength", Double, "", Req, "", "m"},
    {"handwheelRadius", Double, "", Req, "", "m"},
    {"handwheelOffset", Double, "", Req, "", "m"},
    {"pose", Object, "", Req, "", ""},
    {"cap0", Object, "", Opt, "no cap at the base", ""},
    {"cap1", Object, "", Opt, "no cap at the far end", ""},
    {"velmoraParam", Object, "", Opt, "", ""},
};
constexpr P kFlange[] = {
    {"type", Int, "", Opt, "0", ""},
    {"radius", Double, "", Req, "", "m"},
    {"height", Double, "", Req, "", "m"},
    {"flangeradius", Double, "", Opt, "\"radius\" for types other than 1", "m"},
    {"flangeheight", Double, "", Opt, "\"height\" for types other than 1", "m"},
};
constexpr P kTee[] = {
    {"radius", Double, "", Req, "", "m"},
    {"height", Double, "", Req, "", "m"},
    {"branchradius", Double, "", Req, "", "m"},
    {"branchheight", Double, "", Req, "", "m"},
};
constexpr P kVertex3d[] = {{"position", Doubles, "3", Req, "", "m"}};
constexpr P kPointset[] = {
    {"points", Floats, "3n", Cond, "this or \"pointList\" is required", "m"},
    {"pointList", Floats, "3n", Cond, "older name of \"points\"", "m"},
    {"intensities", Shorts, "n", Opt, "", ""},
    {"intensityList", Shorts, "n", Opt, "older name of \"intensities\"", ""},
    {"minIntensity", Float, "", Opt, "0.0", ""},
    {"maxIntensity", Float, "", Opt, "0.0", ""},
    {"minMappedValue", Float, "", Opt, "0.0", ""},
    {"maxMappedValue", Float, "", Opt, "0.0", ""},
};
constexpr P kTriMesh[] = {
    {"vertexCount", Int, "", Wri, "", ""},
    {"vertices", Floats, "3n", Req, "", "m"},
    {"faceCount", Int, "", Req, "", ""},
    {"triStripIndices", Ints, "n", Req, "", ""},
    {"triStripLens", Ints, "n", Opt, "", ""},
    {"intensities", Shorts, "n", Opt, "", ""},
    {"intensityList", Shorts, "n", Opt, "older name of \"intensities\"", ""},
    {"colors", Bytes, "3n", Opt, "", ""},
    {"minIntensity", Float, "", Opt, "0.0", ""},
    {"maxIntensity", Float, "", Opt, "0.0", ""},
    {"minMappedValue", Float, "", Opt, "0.0", ""},
    {"maxMappedValue", Float, "", Opt, "0.0", ""},
};
constexpr P kContourObj[] = {
    {"contourVertices", Doubles, "n", Req, "", "m"},
    {"planeStartIndices", Ints, "n", Req, "", ""},
    {"polylineStartIndices", Ints, "n", Req, "", ""},
    {"startPlaneIdx", Int, "", Opt, "", ""},
    {"numMinorIntervals", Int, "", Opt, "", ""},
    {"majorInterval", Double, "", Opt, "", "m"},
    {"elevationPosCounts", Ints, "n", Opt, "", ""},
    {"elevationPositions", Doubles, "2n", Opt, "", "m"},
    {"elevationVectors", Doubles, "2n", Opt, "", "m"},
    {"velmoraGraphicsParam", Object, "", Opt, "", ""},
};

// Grouping objects.
constexpr P kGeometricGroup[] = {{"objectList", UInts, "n", Req, "", ""}};
constexpr P kExclusionVolume[] = {
    {"objectList", UInts, "n", Opt, "none, with a log line", ""},
    {"thickness", Doubles, "3", Opt, "", "m"},
};

constexpr std::span<const P> kNone{};

const QelClassSpec kClasses[] = {
    // Structure
    {"Header", false, kHeader},
    {"ModelSpace", false, kModelSpace},
    {"LayerMgr", false, kLayerMgr},
    {"Layer", false, kLayer},
    {"ModelSpaceView", false, kModelSpaceView},
    {"CoordSysMgr", false, kCoordSysMgr},
    // Geometry
    {"Line3d", true, kLine3d},
    {"CircularArc3d", true, kCircularArc3d},
    {"EllipticArc3d", true, kEllipticArc3d},
    {"Polyline3d", true, kPolyline3d},
    {"BSplineCurve3d", true, kBSplineCurve3d},
    {"StdShape", true, kStdShape},
    {"StdShapeExtrusion", true, kStdShapeExtrusion},
    {"PlanarPatch", true, kPlanarPatch},
    {"PlanarPolylineExtrusion", true, kPlanarPolylineExtrusion},
    {"Cylinder", true, kCylinder},
    {"Cone", true, kCone},
    {"Reducer", true, kReducer},
    {"Sphere", true, kSphere},
    {"Torus", true, kTorus},
    {"RectangularBox", true, kRectangularBox},
    {"Elbow", true, kElbow},
    {"ReducingElbow", true, kReducingElbow},
    {"Valve", true, kValve},
    {"Flange", true, kFlange},
    {"Tee", true, kTee},
    {"Vertex3d", true, kVertex3d},
    {"Pointset", true, kPointset},
    {"TriMesh", true, kTriMesh},
    {"ContourObj", true, kContourObj},
    // Grouping
    {"GeometricGroup", true, kGeometricGroup},
    {"ExclusionVolume", true, kExclusionVolume},
    {"PipeBranch", false, kNone},
    // Sub-objects
    {"Transformation", false, kTransformation},
    // Each param one system: its name, a Transformation.
    {"CoordSysList", false, kNone},
    // Each param one annotation: its name, an Int-, Dbl- or StrAnnotation.
    {"Annotations", false, kNone},
    {"Appearance", false, kAppearance},
    {"VelmoraParam", false, kVelmoraParam},
    {"VelmoraGraphicsParam", false, kVelmoraGraphicsParam},
    {"IntAnnotation", false, kAnnotationValue},
    {"DblAnnotation", false, kDblAnnotationValue},
    {"StrAnnotation", false, kStrAnnotationValue},
    {"FlatCap", false, kNone},
    {"SemiEllipticCap", false, kNone},
    {"HemiSphericCap", false, kNone},
};

} // namespace

std::span<const QelClassSpec> QelCatalogue() {
    return kClasses;
}

const QelClassSpec* QelFindClass(const char* className) {
    if (!className) return nullptr;
    for (const QelClassSpec& cls : kClasses)
        if (std::strcmp(cls.name, className) == 0) return &cls;
    return nullptr;
}

const QelParamDef* QelFindParam(const QelClassSpec& cls, const char* paramName) {
    for (const QelParamDef& def : cls.params)
        if (std::strcmp(def.name, paramName) == 0) return &def;
    if (cls.geometric)
        for (const QelParamDef& def : kCommon)
            if (std::strcmp(def.name, paramName) == 0) return &def;
    return nullptr;
}

std::span<const QelParamDef> QelCommonGeometricParams() {
    return kCommon;
}

bool QelCountFits(const QelParamDef& def, unsigned count) {
    const char* rule = def.count;
    if (!*rule || std::strcmp(rule, "n") == 0) return true;
    const unsigned size = unsigned(rule[0] - '0');
    return rule[1] == 'n' ? count % size == 0 : count == size;
}
