// Steel, patches, polyline extrusions and boxes from the user's side: a file of them imported
// and exported again, with and without the file as reference, in metres and in millimetres,
// gives back the same members, outlines, faces and solids. One import and four exports serve
// the whole suite; each test looks at one kind.
#include "objectfile/param_read.h"

#include <qel/qel.h>

#include "export_params.h"
#include "qelcad_fixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

namespace {

using namespace qelintest;

// Each kind posed off the origin; the steel of every section of both builders.
constexpr const char* kModel = R"({ "format": "qel-json-1", "objects": [
  { "class": "StdShapeExtrusion", "params": [
      ["sectionType", "string", "SteelWideFlange"], ["width", "double", 0.2], ["depth", "double", 0.3],
      ["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01], ["length", "double", 2.0],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [1, -1, 0.5]], ["rotation", "double[]", [0, 1, 0, 1.5707963705062866]] ] }] ] },
  { "class": "StdShapeExtrusion", "params": [
      ["sectionType", "string", "SteelTee"], ["width", "double", 0.2], ["depth", "double", 0.3],
      ["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01], ["length", "double", 1.5],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [0, 2, 0]], ["rotation", "double[]", [0, 0, 1, 0.5]] ] }] ] },
  { "class": "StdShapeExtrusion", "params": [
      ["sectionType", "string", "SteelChannel"], ["width", "double", 0.1], ["depth", "double", 0.3],
      ["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01], ["length", "double", 1.0],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [3, 0, 0]], ["rotation", "double[]", [1, 0, 0, 0.7]] ] }] ] },
  { "class": "StdShapeExtrusion", "params": [
      ["sectionType", "string", "SteelRectangularTube"], ["width", "double", 0.2], ["depth", "double", 0.1],
      ["flangeThickness", "double", 0.01], ["webThickness", "double", 0.02], ["length", "double", 1.0],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [-2, 1, 1]] ] }] ] },
  { "class": "StdShapeExtrusion", "params": [
      ["sectionType", "string", "SteelAngle"], ["width", "double", 0.1], ["depth", "double", 0.08],
      ["flangeThickness", "double", 0.01], ["webThickness", "double", 0.03], ["length", "double", 1.0],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [0, 0, 3]], ["rotation", "double[]", [1, 1, 0, 1.0]] ] }] ] },
  { "class": "StdShapeExtrusion", "params": [
      ["sectionType", "string", "SteelBar"], ["width", "double", 0.1], ["depth", "double", 0.05],
      ["length", "double", 1.0], ["steelGrade", "string", "S355"] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "SteelWideFlange"], ["width", "double", 0.2], ["depth", "double", 0.3],
      ["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [0, 0, 1]], ["rotation", "double[]", [1, 0, 0, 1.5707963705062866]] ] }] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "SteelTee"], ["width", "double", 0.2], ["depth", "double", 0.3],
      ["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [5, 1, 0]], ["rotation", "double[]", [0, 0, 1, 0.3]] ] }] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "SteelChannel"], ["width", "double", 0.1], ["depth", "double", 0.3],
      ["flangeThickness", "double", 0.015], ["webThickness", "double", 0.01] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "SteelRectangularTube"], ["width", "double", 0.2], ["depth", "double", 0.1],
      ["flangeThickness", "double", 0.01], ["webThickness", "double", 0.02] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "SteelAngle"], ["width", "double", 0.1], ["depth", "double", 0.08],
      ["flangeThickness", "double", 0.01], ["webThickness", "double", 0.03] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "SteelBar"], ["width", "double", 0.1], ["depth", "double", 0.05] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "Square"], ["width", "double", 0.15] ] },
  { "class": "StdShape", "params": [
      ["sectionType", "string", "Rectangle"], ["width", "double", 0.2], ["depth", "double", 0.1] ] },
  { "class": "PlanarPatch", "params": [
      ["vertices", "double[]", [0, 0, 2, 0, 2, 1, 0, 1]],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [1, 2, 3]], ["rotation", "double[]", [1, 0, 0, 0.4]] ] }] ] },
  { "class": "PlanarPatch", "params": [
      ["vertices", "double[]", [0, 0, 4, 0, 4, 4, 0, 4, 0, 0]],
      ["holeVertices", "double[]", [1, 1, 2, 1, 2, 2, 1, 2, 1, 1]],
      ["holeVertexEndIndices", "int[]", [5]],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [10, 0, 0]] ] }] ] },
  { "class": "PlanarPolylineExtrusion", "params": [
      ["vertices", "double[]", [0, 0, 2, 0, 2, 1, 1, 2, 0, 1, 0, 0]], ["height", "double", 1.5],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [0, -5, 0]], ["rotation", "double[]", [0, 0, 1, 0.25]] ] }] ] },
  { "class": "PlanarPolylineExtrusion", "params": [
      ["vertices", "double[]", [0, 0, 1, 0, 1, 1, 0, 1, 0, 0]], ["height", "double", 2.0],
      ["direction", "double[]", [1, 0, 1]],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [4, -5, 0]] ] }] ] },
  { "class": "PlanarPolylineExtrusion", "params": [
      ["vertices", "double[]", [0, 0, 2, 0, 2, 2, 0, 2, 0, 0]], ["height", "double", 1.0],
      ["holeVertices", "double[]", [0.5, 0.5, 1.5, 0.5, 1.5, 1.5, 0.5, 1.5, 0.5, 0.5]],
      ["holeVertexEndIndices", "int[]", [5]],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [0, -10, 0]] ] }] ] },
  { "class": "RectangularBox", "params": [
      ["height", "double", 1.0], ["width", "double", 2.0], ["depth", "double", 3.0],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [1, 8, 0]], ["rotation", "double[]", [0, 0, 1, 0.6]] ] }] ] },
  { "class": "Layer", "params": [
      ["name", "string", "Steel"],
      ["objectList", "uint[]", [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19]] ] },
  { "class": "LayerMgr", "params": [["layerList", "uint[]", [20]]] },
  { "class": "ModelSpace", "params": [
      ["objectList", "uint[]", [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19]],
      ["layerMgr", "uint", 21] ] },
  { "class": "Header", "params": [["rootLocation", "uint", 22], ["version", "uint", 1]] } ] })";

// Lengths pass two unit conversions in doubles and the host's solids; quarter turns come as
// single-precision values.
constexpr double kTolerance = 1e-6;

// The same place, axis by axis and in translation.
::testing::AssertionResult samePlacement(QelObject* want, QelObject* got) {
    const Placement a = placementOf(want), b = placementOf(got);
    for (int i = 0; i < 9; ++i)
        if (std::fabs(a.r[i] - b.r[i]) > kTolerance)
            return ::testing::AssertionFailure()
                   << "rotation entry " << i << ": " << a.r[i] << " -> " << b.r[i];
    for (int i = 0; i < 3; ++i)
        if (std::fabs(a.t[i] - b.t[i]) > kTolerance)
            return ::testing::AssertionFailure()
                   << "translation " << i << ": " << a.t[i] << " -> " << b.t[i];
    return ::testing::AssertionSuccess();
}

// The outline of a patch or extrusion in the world, without its closing point.
std::vector<std::array<double, 3>> worldOutline(QelObject* object) {
    const Placement placement = placementOf(object);
    const std::vector<double> v = reals(object, "vertices");
    std::vector<std::array<double, 3>> points;
    for (std::size_t i = 0; i + 1 < v.size(); i += 2)
        points.push_back(placement.apply(v[i], v[i + 1], 0.0));
    if (points.size() > 1) {
        const auto& a = points.front();
        const auto& b = points.back();
        if (std::fabs(a[0] - b[0]) + std::fabs(a[1] - b[1]) + std::fabs(a[2] - b[2]) < kTolerance)
            points.pop_back();
    }
    return points;
}

double distance(const std::array<double, 3>& a, const std::array<double, 3>& b) {
    return std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                     (a[2] - b[2]) * (a[2] - b[2]));
}

// Every corner of one outline is a corner of the other, whatever corner each starts from.
::testing::AssertionResult sameCorners(const std::vector<std::array<double, 3>>& want,
                                       const std::vector<std::array<double, 3>>& got) {
    if (want.size() != got.size())
        return ::testing::AssertionFailure() << want.size() << " corners -> " << got.size();
    for (const auto& corner : want) {
        bool found = false;
        for (const auto& other : got)
            found = found || distance(corner, other) < kTolerance;
        if (!found)
            return ::testing::AssertionFailure()
                   << "(" << corner[0] << ", " << corner[1] << ", " << corner[2] << ") lost";
    }
    return ::testing::AssertionSuccess();
}

// The corners of an extrusion's solid: its outline and the outline pushed along the direction.
std::vector<std::array<double, 3>> prismCorners(QelObject* object) {
    std::vector<double> direction = reals(object, "direction");
    if (direction.size() != 3) direction = {0, 0, 1};
    const double length = std::sqrt(direction[0] * direction[0] + direction[1] * direction[1] +
                                    direction[2] * direction[2]);
    const double height = real(object, "height");
    Placement turn = placementOf(object);
    turn.t[0] = turn.t[1] = turn.t[2] = 0;
    const auto push = turn.apply(direction[0] * height / length, direction[1] * height / length,
                                 direction[2] * height / length);
    std::vector<std::array<double, 3>> points = worldOutline(object);
    const std::size_t base = points.size();
    for (std::size_t i = 0; i < base; ++i)
        points.push_back({points[i][0] + push[0], points[i][1] + push[1], points[i][2] + push[2]});
    return points;
}

std::vector<QelObjectRef> objectsOf(const std::string& file, const char* className) {
    QelReader reader;
    reader.Open(file.c_str());
    std::vector<QelObjectRef> objects;
    while (QelObject* object = reader.ReadObject(className, static_cast<unsigned>(objects.size())))
        objects.emplace_back(object);
    return objects;
}

struct Export {
    std::string name, file, transcript;
    bool reference = false;
};

} // namespace

class PatchExport : public ::testing::Test {
protected:
    // The model imported once in metres, once in millimetres and once as blocks; each drawing
    // exported in its units with and without reference.
    static void SetUpTestSuite() {
        dir = fs::temp_directory_path() / ("qelin-e2e-patches-" + std::to_string(::getpid()));
        fs::remove_all(dir);
        fs::create_directories(dir);
        ::setenv("QELCAD_REGISTRY", (dir / "registry.json").c_str(), 1);
        std::ofstream(dir / "model.json") << kModel;
        source = (dir / "model.qel").string();
        run(std::string(QELTOOL) + " build " + (dir / "model.json").string() + " -o " + source);
        for (const char* mode : {"Meters", "Millimeters", "Blocks"}) {
            const std::string units = mode == std::string("Millimeters") ? "Millimeters" : "Meters";
            const std::string drawing = std::string(mode) + ".dxf";
            run(std::string(QELCAD) + " import model.qel -o " + drawing + " --no-log --units " +
                units + (mode == std::string("Blocks") ? " --blocks" : " --solids"));
            for (const bool reference : {true, false}) {
                Export out;
                out.name =
                    std::string(mode) + (reference ? " with reference" : " without reference");
                out.file =
                    (dir / (std::string(mode) + (reference ? "-ref" : "-new") + ".qel")).string();
                out.reference = reference;
                out.transcript =
                    run(std::string(QELCAD) + " export " + drawing + " -o " + out.file +
                        " --units " + units + (reference ? " --reference" : " --no-reference"));
                exports.push_back(out);
            }
        }
        QelInit(0, 0, QelInitWords);
    }
    static void TearDownTestSuite() {
        ::unsetenv("QELCAD_REGISTRY");
        fs::remove_all(dir);
        exports.clear();
    }
    static std::string run(const std::string& command) {
        const Outcome outcome =
            runCommand("cd " + dir.string() + " && " + command + " </dev/null 2>&1");
        EXPECT_EQ(outcome.status, 0) << command << "\n" << outcome.out;
        return outcome.out;
    }
    // The exports of drawings made with solids; the block drawing's only for steel members.
    static std::vector<Export> solidExports() {
        std::vector<Export> out;
        for (const Export& e : exports)
            if (e.name.rfind("Blocks", 0) != 0) out.push_back(e);
        return out;
    }

    static bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    static inline fs::path dir;
    static inline std::string source;
    static inline std::vector<Export> exports;
};

// Members of the six sections come back with their sections, sizes and places, solids and
// blocks alike; a param no writer knows stays with the reference only. The sizes are the tag's:
// a bar made as a solid is tagged with the thicknesses its builder starts from, one drawing
// unit each, and leaves with them.
TEST_F(PatchExport, SteelMembersComeBackWithSectionSizesAndPlace) {
    const std::vector<QelObjectRef> want = objectsOf(source, "StdShapeExtrusion");
    ASSERT_EQ(want.size(), 6u);
    for (const Export& e : exports) {
        SCOPED_TRACE(e.name);
        EXPECT_FALSE(has(e.transcript, "Unknown object type!")) << e.transcript;
        const std::vector<QelObjectRef> got = objectsOf(e.file, "StdShapeExtrusion");
        ASSERT_EQ(got.size(), want.size());
        for (std::size_t k = 0; k < want.size(); ++k) {
            SCOPED_TRACE(text(want[k].get(), "sectionType"));
            EXPECT_EQ(text(got[k].get(), "sectionType"), text(want[k].get(), "sectionType"));
            for (const char* size :
                 {"width", "depth", "length", "flangeThickness", "webThickness"}) {
                double wanted = real(want[k].get(), size);
                const bool bar = text(want[k].get(), "sectionType") == "SteelBar";
                if (bar && std::string(size).find("Thickness") != std::string::npos &&
                    e.name.rfind("Blocks", 0) != 0)
                    wanted = e.name.rfind("Millimeters", 0) == 0 ? 0.001 : 1.0;
                if (std::isnan(wanted))
                    EXPECT_EQ(got[k]->GetParam(size, 0), nullptr) << size;
                else
                    EXPECT_NEAR(real(got[k].get(), size), wanted, kTolerance) << size;
            }
            EXPECT_TRUE(samePlacement(want[k].get(), got[k].get()));
        }
        EXPECT_EQ(text(got[5].get(), "steelGrade"), e.reference ? "S355" : "<none>");
    }
}

// Outlines are measured corner by corner: each section's sizes and place; the tube's
// thicknesses live only in the tag, and a rectangle is written as the tube's section.
TEST_F(PatchExport, SteelOutlinesAreMeasuredOnTheirCorners) {
    struct Expected {
        const char* section;
        double depth, width, flange, web; // NaN: not written
    };
    const double none = std::nan("");
    const Expected expected[] = {{"SteelWideFlange", 0.3, 0.2, 0.015, 0.01},
                                 {"SteelTee", 0.3, 0.2, 0.015, 0.01},
                                 {"SteelChannel", 0.3, 0.1, 0.015, 0.01},
                                 {"SteelRectangularTube", 0.1, 0.2, 0, 0},
                                 {"SteelAngle", 0.08, 0.1, 0.01, none},
                                 {"SteelBar", 0.05, 0.1, 0, none},
                                 {"Square", 0.15, 0.15, 0, none},
                                 {"SteelRectangularTube", 0.1, 0.2, 0, none}};
    const std::vector<QelObjectRef> want = objectsOf(source, "StdShape");
    for (const Export& e : solidExports()) {
        SCOPED_TRACE(e.name);
        const std::vector<QelObjectRef> got = objectsOf(e.file, "StdShape");
        ASSERT_EQ(got.size(), std::size(expected));
        for (std::size_t k = 0; k < got.size(); ++k) {
            const Expected& x = expected[k];
            SCOPED_TRACE(text(want[k].get(), "sectionType"));
            EXPECT_EQ(text(got[k].get(), "sectionType"), x.section);
            EXPECT_NEAR(real(got[k].get(), "depth"), x.depth, kTolerance);
            EXPECT_NEAR(real(got[k].get(), "width"), x.width, kTolerance);
            EXPECT_NEAR(real(got[k].get(), "flangeThickness"), x.flange, kTolerance);
            // Without a written web the reference's value, if any, stays.
            const double web =
                std::isnan(x.web) && e.reference ? real(want[k].get(), "webThickness") : x.web;
            if (std::isnan(web))
                EXPECT_EQ(got[k]->GetParam("webThickness", 0), nullptr);
            else
                EXPECT_NEAR(real(got[k].get(), "webThickness"), web, kTolerance);
            EXPECT_TRUE(samePlacement(want[k].get(), got[k].get()));
        }
    }
}

// A patch leaves with its corners where they were; one with a hole as one outline joined round
// the hole, of the area that is left, and without the holes of the object read back.
TEST_F(PatchExport, PatchesKeepTheirCornersAndHoles) {
    const std::vector<QelObjectRef> want = objectsOf(source, "PlanarPatch");
    for (const Export& e : solidExports()) {
        SCOPED_TRACE(e.name);
        const std::vector<QelObjectRef> got = objectsOf(e.file, "PlanarPatch");
        ASSERT_EQ(got.size(), 2u);
        EXPECT_TRUE(sameCorners(worldOutline(want[0].get()), worldOutline(got[0].get())));
        const std::vector<double> v = reals(got[1].get(), "vertices");
        double twice = 0;
        for (std::size_t i = 0; i + 3 < v.size(); i += 2)
            twice += v[i] * v[i + 3] - v[i + 2] * v[i + 1];
        EXPECT_NEAR(std::fabs(twice) / 2, 16.0 - 1.0, kTolerance);
        EXPECT_EQ(got[1]->GetParam("holeVertices", 0), nullptr) << "the hole is in the outline";
    }
}

// An extrusion leaves as the same solid, straight or slanted: its corners, base and top, stand
// where they stood. (Which face is taken for the base follows the order of the faces, so the
// params may describe the solid from another side.) One with a hole is no extrusion of one
// outline: it leaves as a mesh of its volume, told once.
TEST_F(PatchExport, ExtrusionsComeBackAsTheSameSolidOrAsAMesh) {
    const std::vector<QelObjectRef> want = objectsOf(source, "PlanarPolylineExtrusion");
    ASSERT_EQ(want.size(), 3u);
    for (const Export& e : solidExports()) {
        SCOPED_TRACE(e.name);
        const std::size_t told = e.transcript.find("Get PlanarPolyExtru geometry failed!");
        EXPECT_NE(told, std::string::npos) << e.transcript;
        EXPECT_EQ(e.transcript.find("Get PlanarPolyExtru geometry failed!", told + 1),
                  std::string::npos);
        const std::vector<QelObjectRef> got = objectsOf(e.file, "PlanarPolylineExtrusion");
        ASSERT_EQ(got.size(), 2u);
        for (std::size_t k = 0; k < got.size(); ++k)
            EXPECT_TRUE(sameCorners(prismCorners(want[k].get()), prismCorners(got[k].get()))) << k;

        const std::vector<QelObjectRef> meshes = objectsOf(e.file, "TriMesh");
        ASSERT_EQ(meshes.size(), 1u);
        QelParam* vertexParam = meshes[0]->GetParam("vertices", 0);
        QelParam* indexParam = meshes[0]->GetParam("triStripIndices", 0);
        ASSERT_TRUE(vertexParam && indexParam);
        float* v = nullptr;
        int* index = nullptr;
        unsigned vertexCount = 0, indexCount = 0;
        vertexParam->GetValue(v, vertexCount, false);
        indexParam->GetValue(index, indexCount, false);
        double volume = 0;
        for (unsigned t = 0; t + 2 < indexCount; t += 3) {
            const float* a = v + 3 * index[t];
            const float* b = v + 3 * index[t + 1];
            const float* c = v + 3 * index[t + 2];
            volume += (a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
                       a[2] * (b[0] * c[1] - b[1] * c[0])) /
                      6.0;
        }
        EXPECT_NEAR(std::fabs(volume), 2.0 * 2.0 - 1.0 * 1.0, 1e-4) << "the hole stays a hole";
    }
}

// A box leaves as the same box: its eight corners where they were.
TEST_F(PatchExport, BoxesComeBackAsTheSameBox) {
    auto corners = [](QelObject* box) {
        const double h = real(box, "height"), w = real(box, "width"), d = real(box, "depth");
        const Placement placement = placementOf(box);
        std::vector<std::array<double, 3>> points;
        for (const double x : {-d / 2, d / 2})
            for (const double y : {-w / 2, w / 2})
                for (const double z : {0.0, h})
                    points.push_back(placement.apply(x, y, z));
        return points;
    };
    const std::vector<QelObjectRef> want = objectsOf(source, "RectangularBox");
    for (const Export& e : solidExports()) {
        SCOPED_TRACE(e.name);
        const std::vector<QelObjectRef> got = objectsOf(e.file, "RectangularBox");
        ASSERT_EQ(got.size(), 1u);
        EXPECT_TRUE(sameCorners(corners(want[0].get()), corners(got[0].get())));
    }
}

// Drawn by hand in millimetres: a thick line is one wall, a thick polyline one wall per segment,
// a region from a closed polyline a patch, a box and an extruded polyline the same solids; a
// round region that no face list serves is told and leaves nothing, and the others keep their
// numbers.
TEST_F(PatchExport, HandDrawnFlatAndPlanarEntitiesLeaveAsTheirKinds) {
    std::ofstream(dir / "drawn.scr") << "SETVAR THICKNESS 500\n"
                                        "LINE 0,0 2000,0\n\n"
                                        "PLINE 0,3000 3000,3000 3000,7000\n\n"
                                        "SETVAR THICKNESS 0\n"
                                        "PLINE 10000,0 14000,0 14000,3000 C\n"
                                        "REGION L\n\n"
                                        "CIRCLE 20000,0 1000\n"
                                        "REGION L\n\n"
                                        "BOX 30000,0,0 33000,2000,0 1000\n"
                                        "PLINE 40000,0 42000,0 42000,1000 41000,2000 40000,1000 C\n"
                                        "EXTRUDE L\n\n1500\n"
                                        "QUIT\n";
    run(std::string(QELCAD) + " run --script drawn.scr --save drawn.dxf");
    const std::string said = run(
        std::string(QELCAD) + " export drawn.dxf -o drawn.qel --units Millimeters --no-reference");
    EXPECT_TRUE(has(said, "Get PlanarPatch geometry failed!")) << said;
    EXPECT_FALSE(has(said, "Unknown object type!")) << said;
    const std::string file = (dir / "drawn.qel").string();

    // Walls and the region's patch, in drawing order: areas in square metres.
    const std::vector<QelObjectRef> patches = objectsOf(file, "PlanarPatch");
    const double areas[] = {2.0 * 0.5, 3.0 * 0.5, 4.0 * 0.5, 4.0 * 3.0 / 2};
    ASSERT_EQ(patches.size(), std::size(areas));
    for (std::size_t k = 0; k < patches.size(); ++k) {
        const std::vector<double> v = reals(patches[k].get(), "vertices");
        double twice = 0;
        for (std::size_t i = 0; i + 3 < v.size(); i += 2)
            twice += v[i] * v[i + 3] - v[i + 2] * v[i + 1];
        EXPECT_NEAR(std::fabs(twice) / 2, areas[k], kTolerance) << k;
    }

    const std::vector<QelObjectRef> boxes = objectsOf(file, "RectangularBox");
    ASSERT_EQ(boxes.size(), 1u);
    std::vector<double> sizes = {real(boxes[0].get(), "height"), real(boxes[0].get(), "width"),
                                 real(boxes[0].get(), "depth")};
    std::sort(sizes.begin(), sizes.end());
    EXPECT_NEAR(sizes[0], 1.0, kTolerance);
    EXPECT_NEAR(sizes[1], 2.0, kTolerance);
    EXPECT_NEAR(sizes[2], 3.0, kTolerance);

    const std::vector<QelObjectRef> prisms = objectsOf(file, "PlanarPolylineExtrusion");
    ASSERT_EQ(prisms.size(), 1u);
    std::vector<std::array<double, 3>> prism;
    for (const double z : {0.0, 1.5})
        for (const auto& [x, y] :
             {std::pair{40.0, 0.0}, {42.0, 0.0}, {42.0, 1.0}, {41.0, 2.0}, {40.0, 1.0}})
            prism.push_back({x, y, z});
    EXPECT_TRUE(sameCorners(prism, prismCorners(prisms[0].get())));

    // Nothing was written for the round region: no number was skipped.
    QelReader reader;
    reader.Open(file.c_str());
    QelObjectRef space(reader.ReadObject("ModelSpace", 0));
    ASSERT_TRUE(space);
    std::vector<unsigned> listed;
    unsigned* numbers = nullptr;
    unsigned count = 0;
    space->GetParam("objectList", 0)->GetValue(numbers, count, false);
    listed.assign(numbers, numbers + count);
    EXPECT_EQ(listed, (std::vector<unsigned>{0, 1, 2, 3, 4, 5}));
}
