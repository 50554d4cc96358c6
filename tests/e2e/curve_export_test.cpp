// Curves from the user's side: a file of curves imported and exported again gives back the same
// objects, with and without the file as reference, in metres and in millimetres; curves drawn
// by hand leave as their classes.
#include "model_diff.h"

#include "objectfile/param_read.h"
#include "writers/pose.h"

#include <qel/qel.h>

#include "export_params.h"
#include "qelcad_fixture.h"

#include <cmath>
#include <limits>
#include <set>

namespace {

using namespace qelintest;

// One curve of each kind, turned and moved off the origin, with a param no writer knows and
// connection points that only hold in this file.
constexpr const char* kCurves = R"({ "format": "qel-json-1", "objects": [
  { "class": "Line3d", "params": [
      ["startPoint", "double[]", [1.25, -0.5, 0.75]],
      ["endPoint", "double[]", [3.5, 2.125, 1.0]],
      ["connPtList", "uint[]", [1]],
      ["designNote", "string", "kept"] ] },
  { "class": "CircularArc3d", "params": [
      ["radius", "double", 0.4],
      ["endAngle", "double", 2.0],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [2, 1, 0.5]],
          ["rotation", "double[]", [1, 0, 0, 0.5]] ] }] ] },
  { "class": "EllipticArc3d", "params": [
      ["radiusX", "double", 0.3],
      ["radiusY", "double", 0.6],
      ["startAngle", "double", 0.25],
      ["endAngle", "double", 2.5],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [0, 3, 1]],
          ["rotation", "double[]", [0, 0, 1, 0.75]] ] }] ] },
  { "class": "Polyline3d", "params": [
      ["vertices", "double[]", [0, 0, 0, 1, 0, 0.5, 1, 2, 0.5, 0, 2, 1]] ] },
  { "class": "BSplineCurve3d", "params": [
      ["order", "int", 4],
      ["periodic", "bool", false],
      ["rational", "bool", false],
      ["fitPoints", "double[]", [0, 0, 0, 1, 1, 0.5, 2, 0, 1, 3, 1, 1.5]] ] },
  { "class": "Layer", "params": [
      ["name", "string", "Curves"],
      ["objectList", "uint[]", [0, 1, 2, 3, 4]],
      ["layerProperties", "uint", 0] ] },
  { "class": "LayerMgr", "params": [["layerList", "uint[]", [5]]] },
  { "class": "ModelSpace", "params": [
      ["name", "string", "Curves"],
      ["objectList", "uint[]", [0, 1, 2, 3, 4]],
      ["layerMgr", "uint", 6] ] },
  { "class": "Header", "params": [["rootLocation", "uint", 7], ["version", "uint", 1]] } ] })";

const std::set<std::string> kCurveClasses = {"Line3d", "CircularArc3d", "EllipticArc3d",
                                             "Polyline3d", "BSplineCurve3d"};

// The file's quarter and full turns are single-precision values, so an angle that passes through
// one holds to a float's epsilon; lengths pass two unit conversions in doubles, far finer.
const double kTolerance = std::numeric_limits<float>::epsilon();

// What differs in the curves, param by param, beside what the export adds of its own (the
// colour of the entity) and the params the case expects to be gone.
std::vector<std::string> curveDifferences(const qeltool::DiffReport& report,
                                          const std::set<std::string>& expectedGone) {
    std::vector<std::string> faults;
    for (const qeltool::LoneObject& lone : report.onlyA)
        if (kCurveClasses.count(lone.className)) faults.push_back(lone.className + " not exported");
    for (const qeltool::ObjectPair& pair : report.pairs) {
        if (!kCurveClasses.count(pair.className)) continue;
        for (const qeltool::ParamChange& change : pair.changes) {
            if (change.change == qeltool::Change::WithinTolerance) continue;
            if (change.path.rfind("appearance", 0) == 0) continue;
            if (pair.className == "EllipticArc3d" && change.path.find("Angle") != std::string::npos)
                continue; // measured from the other axis on the way out: checked on its own
            if (change.change == qeltool::Change::Removed && expectedGone.count(change.path))
                continue;
            faults.push_back(pair.className + "." + change.path + ": " + change.valueA + " -> " +
                             change.valueB + " " + change.note);
        }
    }
    return faults;
}

} // namespace

class CurveExport : public QelcadEndToEnd {
protected:
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string curves() {
        const std::string json = write("curves.json", kCurves);
        const Outcome built = runCommand(std::string(QELTOOL) + " build " + json + " -o " +
                                         path("curves.qel") + " 2>&1");
        EXPECT_EQ(built.status, 0) << built.out;
        return path("curves.qel");
    }
    // The object file of a drawing made by host commands, exported in millimetres.
    std::string exportedDrawing(const std::string& name, const std::string& commands) {
        const Outcome made = qelcad("run --script " + write(name + ".scr", commands + "QUIT\n") +
                                    " --save " + name + ".dxf");
        EXPECT_EQ(made.status, 0) << made.out;
        const Outcome run =
            qelcad("export " + name + ".dxf -o " + name + ".qel --units Millimeters");
        EXPECT_EQ(run.status, 0) << run.out;
        QelInit(0, 0, QelInitWords);
        return path(name + ".qel");
    }
};

TEST_F(CurveExport, CurvesComeBackWithTheirParamsInEveryUnitWithAndWithoutReference) {
    const std::string source = curves();
    QelInit(0, 0, QelInitWords);
    for (const std::string units : {"Meters", "Millimeters"}) {
        const Outcome imported =
            qelcad("import " + source + " -o curves.dxf --no-log --units " + units);
        ASSERT_EQ(imported.status, 0) << imported.out;
        for (const bool reference : {true, false}) {
            SCOPED_TRACE(units + (reference ? " with reference" : " without reference"));
            const Outcome exported = qelcad("export curves.dxf -o back.qel --units " + units +
                                            (reference ? " --reference" : " --no-reference"));
            ASSERT_EQ(exported.status, 0) << exported.out;
            EXPECT_FALSE(has(exported.out, "Unknown object type!")) << exported.out;
            const qeltool::DiffReport report =
                qeltool::compareFiles(source, path("back.qel"), kTolerance);
            // Connection points never leave; a param no writer knows stays with the reference.
            std::set<std::string> gone = {"connPtList"};
            if (!reference) gone.insert("designNote");
            const std::vector<std::string> faults = curveDifferences(report, gone);
            EXPECT_TRUE(faults.empty()) << ::testing::PrintToString(faults);
            // The import measures an ellipse's angles from its major axis as the file gives them;
            // the export counts them from the minor axis, a quarter turn further on.
            QelReader back;
            back.Open(path("back.qel").c_str());
            QelObjectRef ellipse(back.ReadObject("EllipticArc3d", 0));
            ASSERT_TRUE(ellipse);
            double start = 0, end = 0;
            ellipse->GetParam("startAngle", 0)->GetValue(start);
            ellipse->GetParam("endAngle", 0)->GetValue(end);
            EXPECT_NEAR(start, 0.25 + QelHalfPiSingle, kTolerance);
            EXPECT_NEAR(end, 2.5 + QelHalfPiSingle, kTolerance);
        }
    }
}

// LINE, ARC and 3DPOLY drawn in millimetres leave as their classes, in metres, with colour.
TEST_F(CurveExport, HandDrawnCurvesLeaveAsTheirClasses) {
    const std::string drawn =
        exportedDrawing("drawn", "LINE\n0,0,0\n1000,2000,500\n\nARC\nC\n500,500,0\n1500,500,0\n"
                                 "500,1500,0\n3DPOLY\n0,0,0\n1000,0,0\n1000,1000,250\n\n");
    QelReader reader;
    reader.Open(drawn.c_str());
    std::map<std::string, QelObjectRef> found;
    for (unsigned i = 0; i < reader.GetObjectCount(); ++i) {
        QelObjectRef object(reader.ReadObject(i));
        found.emplace(object->GetName(), std::move(object));
    }
    for (const char* cls : {"Line3d", "CircularArc3d", "Polyline3d"})
        ASSERT_TRUE(found.count(cls)) << cls;

    auto near = [](const std::vector<double>& got, const std::vector<double>& want) {
        if (got.size() != want.size()) return false;
        for (std::size_t i = 0; i < got.size(); ++i)
            if (std::fabs(got[i] - want[i]) > kTolerance * (1.0 + std::fabs(want[i]))) return false;
        return true;
    };
    EXPECT_TRUE(near(reals(found["Line3d"].get(), "endPoint"), {1.0, 2.0, 0.5}));
    EXPECT_TRUE(near(reals(found["Polyline3d"].get(), "vertices"), {0, 0, 0, 1, 0, 0, 1, 1, 0.25}));
    double radius = 0, sweep = 0;
    found["CircularArc3d"]->GetParam("radius", 0)->GetValue(radius);
    found["CircularArc3d"]->GetParam("endAngle", 0)->GetValue(sweep);
    EXPECT_NEAR(radius, 1.0, kTolerance);
    EXPECT_NEAR(sweep, M_PI / 2, kTolerance) << "a quarter arc from its centre's east";
    // The sweep starts on the pose's X axis: the arc starts east of its centre, so no turn.
    QelParam* pose = found["CircularArc3d"]->GetParam("pose", 0);
    ASSERT_NE(pose, nullptr);
    QelObject* transformation = nullptr;
    pose->GetValue(transformation);
    EXPECT_TRUE(near(reals(transformation, "translation"), {0.5, 0.5, 0}));
    EXPECT_EQ(transformation->GetParam("rotation", 0), nullptr);
    EXPECT_NE(found["Line3d"]->GetParam("appearance", 0), nullptr);
}

// A lightweight polyline's arc leaves as points on it: a half turn of radius 500 takes 48 steps
// after its start vertex, and its end vertex follows again.
TEST_F(CurveExport, ALightweightPolylineArcLeavesAsPointsOnTheArc) {
    const std::string file = exportedDrawing("p", "PLINE\n0,0\n1000,0\nA\n1000,1000\n\n");
    QelReader reader;
    reader.Open(file.c_str());
    QelObjectRef polyline(reader.ReadObject("Polyline3d", 0));
    ASSERT_TRUE(polyline);
    const std::vector<double> values = reals(polyline.get(), "vertices");
    ASSERT_EQ(values.size(), 3u * (1 + 1 + 48 + 1));
    for (unsigned point = 2; point < 50; ++point) {
        const double dx = values[3 * point] - 1.0, dy = values[3 * point + 1] - 0.5;
        EXPECT_NEAR(std::hypot(dx, dy), 0.5, kTolerance) << "point " << point;
        EXPECT_GE(dx, -kTolerance) << "the arc bulges away from the first segment";
    }
    EXPECT_NEAR(values[3 * 49 + 1], 1.0, kTolerance);
    EXPECT_NEAR(values[3 * 50 + 1], 1.0, kTolerance) << "the end vertex comes again";
}
