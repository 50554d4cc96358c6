// Meshes, points, groups and exclusion volumes from the user's side: a file imported and exported
// again, with and without the file as reference, in metres and in millimetres; and meshes,
// points, texts and a thick arc drawn by hand.
#include "objectfile/param_read.h"

#include <arx/gevec.h>
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

// The big mesh: two rows of this many vertices, more than one host mesh can hold.
constexpr int kColumns = 16500;

template <class T>
std::string list(const std::vector<T>& values) {
    std::string text;
    for (const T v : values)
        text += (text.empty() ? "" : ", ") + std::to_string(v);
    return "[" + text + "]";
}

// A band of two rows of kColumns vertices, two triangles per column step.
void bigMesh(std::vector<double>& vertices, std::vector<int>& indices) {
    for (int row = 0; row < 2; ++row)
        for (int j = 0; j < kColumns; ++j)
            vertices.insert(vertices.end(), {0.25 * (j % 64), 0.5 * row + 0.25 * (j / 64), 0.0});
    for (int j = 0; j + 1 < kColumns; ++j)
        indices.insert(indices.end(),
                       {j, j + 1, kColumns + j, kColumns + j, j + 1, kColumns + j + 1});
}

std::string model() {
    std::vector<double> big;
    std::vector<int> bigFaces;
    bigMesh(big, bigFaces);
    const std::string line = R"({ "class": "Line3d", "params": [
        ["startPoint", "double[]", [0, 0, 0]], ["endPoint", "double[]", [1, 0, 0]] ] })";
    return R"({ "format": "qel-json-1", "objects": [
  { "class": "TriMesh", "params": [
      ["vertices", "float[]", [0, 0, 0, 2, 0, 0, 2, 1, 0.5, 0, 1, 0.5, 1, 0.5, 1.25]],
      ["faceCount", "int", 3],
      ["triStripIndices", "int[]", [0, 1, 4, 1, 2, 4, 2, 3, 4]],
      ["designNote", "string", "kept"] ] },
  { "class": "TriMesh", "params": [
      ["vertices", "float[]", )" +
           list(big) + R"(], ["faceCount", "int", )" + std::to_string(bigFaces.size() / 3) +
           R"(], ["triStripIndices", "int[]", )" + list(bigFaces) + R"(] ] },
  { "class": "Vertex3d", "params": [["position", "double[]", [1.5, -2, 0.25]]] },
  { "class": "Pointset", "params": [["points", "float[]", [0, 0, 0, 1, 0, 0, 1, 1, 0.5]]] },
  )" + line +
           R"(,
  { "class": "Vertex3d", "params": [["position", "double[]", [0.5, 0.5, 0.5]]] },
  { "class": "GeometricGroup", "params": [["objectList", "uint[]", [4, 5, 6]],
      ["annotations", "object", { "class": "Annotations", "params": [
          ["Tag", "object", { "class": "StrAnnotation", "params": [["value", "string", "P-101"]] }]
      ] }] ] },
  { "class": "ExclusionVolume", "params": [
      ["objectList", "uint[]", [6]], ["thickness", "double[]", [1, 2, 3]],
      ["pose", "object", { "class": "Transformation", "params": [
          ["translation", "double[]", [5, 5, 5]] ] }] ] },
  )" + line +
           R"(,
  { "class": "GeometricGroup", "params": [["objectList", "uint[]", [8]]] },
  { "class": "Layer", "params": [["name", "string", "Meshes"], ["objectList", "uint[]", [0, 1, 2, 3, 7]]] },
  { "class": "Layer", "params": [["name", "string", "Inside"], ["objectList", "uint[]", [6]]] },
  { "class": "Layer", "params": [["name", "string", "Lonely"], ["objectList", "uint[]", [9]]] },
  { "class": "LayerMgr", "params": [["layerList", "uint[]", [10, 11, 12]]] },
  { "class": "ModelSpace", "params": [
      ["objectList", "uint[]", [0, 1, 2, 3, 6, 7, 9]], ["layerMgr", "uint", 13] ] },
  { "class": "Header", "params": [["rootLocation", "uint", 14]] } ] })";
}

// A mesh's triangles as corner coordinates in tenths of a millimetre, each turned to start at its
// smallest corner and the whole sorted: the same surface whatever the numbering.
using Corner = std::array<long, 3>;
using Triangle = std::array<Corner, 3>;
std::vector<Triangle> surface(QelObject* mesh) {
    const std::vector<float> v = array<float>(mesh, "vertices");
    const std::vector<int> faces = array<int>(mesh, "triStripIndices");
    std::vector<Triangle> out;
    for (std::size_t t = 0; t + 2 < faces.size(); t += 3) {
        Triangle triangle;
        for (int k = 0; k < 3; ++k)
            for (int c = 0; c < 3; ++c)
                triangle[k][c] = std::lround(v.at(3 * std::size_t(faces[t + k]) + c) * 1e4);
        std::rotate(triangle.begin(), std::min_element(triangle.begin(), triangle.end()),
                    triangle.end());
        out.push_back(triangle);
    }
    std::sort(out.begin(), out.end());
    return out;
}

struct FileObjects {
    explicit FileObjects(const std::string& path) {
        QelInit(0, 0, QelInitWords);
        QelReader reader;
        reader.Open(path.c_str());
        for (unsigned i = 0; i < reader.GetObjectCount(); ++i)
            objects.emplace_back(reader.ReadObject(i));
    }
    std::vector<unsigned> numbersOf(const std::string& className) const {
        std::vector<unsigned> out;
        for (unsigned i = 0; i < objects.size(); ++i)
            if (className == objects[i]->GetName()) out.push_back(i);
        return out;
    }
    QelObject* at(unsigned number) const {
        return number < objects.size() ? objects[number].get() : nullptr;
    }
    std::vector<QelObjectRef> objects;
};

QelObject* nested(QelObject* object, const char* name) {
    QelObject* value = nullptr;
    if (QelParam* param = object ? object->GetParam(name, 0) : nullptr) param->GetValue(value);
    return value;
}

} // namespace

class MeshExport : public QelcadEndToEnd {
protected:
    std::string path(const std::string& name) const { return (dir / name).string(); }
};

// One import per unit, two exports each. With the reference the meshes leave as they came, the
// split one once; without, from the drawing: the same surface, the split mesh as its pieces.
// The point set leaves only with the reference. The exclusion volume carries its group and the
// group's members, copied ahead of it with new numbers (the group lists itself too, which the
// copy leaves out rather than going round for ever), or nothing without the reference. The
// group whose one member was erased leaves nothing and uses no number.
TEST_F(MeshExport, MeshesPointsGroupsAndVolumesComeBackWithAndWithoutReference) {
    const std::string json = write("meshes.json", model());
    const Outcome built =
        runCommand(std::string(QELTOOL) + " build " + json + " -o " + path("meshes.qel") + " 2>&1");
    ASSERT_EQ(built.status, 0) << built.out;
    const FileObjects source(path("meshes.qel"));
    const std::vector<Triangle> whole = surface(source.at(0));
    const std::vector<Triangle> split = surface(source.at(1));

    for (const std::string units : {"Meters", "Millimeters"}) {
        const Outcome imported =
            qelcad("import meshes.qel -o meshes.dxf --no-log --points --units " + units);
        ASSERT_EQ(imported.status, 0) << imported.out;
        const Outcome erased =
            qelcad("run meshes.dxf --script " + write("erase.scr", "ERASE\nLA\nLonely\n\nQUIT\n") +
                   " --save meshes.dxf");
        ASSERT_EQ(erased.status, 0) << erased.out;
        for (const bool reference : {true, false}) {
            SCOPED_TRACE(units + (reference ? " with reference" : " without reference"));
            const Outcome exported = qelcad("export meshes.dxf -o back.qel --units " + units +
                                            (reference ? " --reference" : " --no-reference"));
            ASSERT_EQ(exported.status, 0) << exported.out;
            EXPECT_FALSE(has(exported.out, "Unknown object type!")) << exported.out;
            const FileObjects back(path("back.qel"));

            const std::vector<unsigned> meshes = back.numbersOf("TriMesh");
            std::vector<Triangle> pieces;
            bool wholeFound = false;
            for (const unsigned number : meshes) {
                const std::vector<Triangle> got = surface(back.at(number));
                if (got == whole) {
                    wholeFound = true;
                    EXPECT_EQ(back.at(number)->GetParam("designNote", 0) != nullptr, reference);
                } else {
                    pieces.insert(pieces.end(), got.begin(), got.end());
                }
            }
            EXPECT_TRUE(wholeFound);
            std::sort(pieces.begin(), pieces.end());
            // The import begins the triangle that filled its first host mesh again in the
            // second: the pieces hold every triangle of the split mesh, and that one twice.
            std::vector<Triangle> missing, extra;
            std::set_difference(split.begin(), split.end(), pieces.begin(), pieces.end(),
                                std::back_inserter(missing));
            std::set_difference(pieces.begin(), pieces.end(), split.begin(), split.end(),
                                std::back_inserter(extra));
            EXPECT_TRUE(missing.empty()) << missing.size();
            ASSERT_EQ(extra.size(), reference ? 0u : 1u);
            if (!reference) {
                EXPECT_TRUE(std::binary_search(split.begin(), split.end(), extra[0]));
            }
            EXPECT_EQ(meshes.size(), reference ? 2u : 3u);

            const std::vector<unsigned> vertices = back.numbersOf("Vertex3d");
            bool pointFound = false;
            for (const unsigned number : vertices) {
                const std::vector<double> at = array<double>(back.at(number), "position");
                pointFound |= at.size() == 3 && std::fabs(at[0] - 1.5) < 1e-9 &&
                              std::fabs(at[1] + 2) < 1e-9 && std::fabs(at[2] - 0.25) < 1e-9;
            }
            EXPECT_TRUE(pointFound);

            EXPECT_EQ(back.numbersOf("Pointset").size(), reference ? 1u : 0u);
            EXPECT_EQ(has(exported.out, "points were not exported"), !reference) << exported.out;

            const std::vector<unsigned> volumes = back.numbersOf("ExclusionVolume");
            ASSERT_EQ(volumes.size(), 1u);
            QelObject* volume = back.at(volumes[0]);
            const std::vector<double> thickness = array<double>(volume, "thickness");
            std::vector<double> sorted = thickness;
            std::sort(sorted.begin(), sorted.end());
            ASSERT_EQ(sorted.size(), 3u);
            for (int i = 0; i < 3; ++i)
                EXPECT_NEAR(sorted[i], i + 1.0, 1e-9);
            const std::vector<double> centre = array<double>(nested(volume, "pose"), "translation");
            ASSERT_EQ(centre.size(), 3u);
            for (const double c : centre)
                EXPECT_NEAR(c, 5.0, 1e-9);
            const std::vector<unsigned> held = array<unsigned>(volume, "objectList");
            if (!reference) {
                EXPECT_TRUE(held.empty());
            } else {
                ASSERT_EQ(held.size(), 1u);
                ASSERT_LT(held[0], volumes[0]);
                QelObject* group = back.at(held[0]);
                EXPECT_STREQ(group->GetName(), "GeometricGroup");
                const std::vector<unsigned> members = array<unsigned>(group, "objectList");
                ASSERT_EQ(members.size(), 2u);
                EXPECT_LT(members[0], held[0]);
                EXPECT_LT(members[1], held[0]);
                EXPECT_STREQ(back.at(members[0])->GetName(), "Line3d");
                EXPECT_STREQ(back.at(members[1])->GetName(), "Vertex3d");
            }

            // The drawing's group of the line and the point leaves as one GeometricGroup; the
            // erased line's group as none. Every number listed names an object of geometry.
            // It carries its annotation text back as its annotation.
            std::vector<unsigned> drawingGroups;
            for (const unsigned number : back.numbersOf("GeometricGroup"))
                if (!reference || number != held.at(0)) drawingGroups.push_back(number);
            ASSERT_EQ(drawingGroups.size(), 1u);
            QelObject* tag = nested(nested(back.at(drawingGroups[0]), "annotations"), "Tag");
            ASSERT_NE(tag, nullptr);
            const char* value = nullptr;
            tag->GetParam("value", 0)->GetValue(value);
            EXPECT_STREQ(value, "P-101");
            const std::vector<unsigned> modelSpace =
                array<unsigned>(back.at(back.numbersOf("ModelSpace").at(0)), "objectList");
            for (const unsigned number : modelSpace) {
                ASSERT_NE(back.at(number), nullptr) << number;
                const std::string name = back.at(number)->GetName();
                EXPECT_TRUE(name != "Layer" && name != "LayerMgr" && name != "Header") << name;
            }
        }
    }
}

// Drawn in millimetres and exported in millimetres: a face mesh of a quad and a triangle (its
// fourth index 0), a point, a text, and an arc with thickness. With the export's reference
// option but no original file the face mesh carries its intensities; without, none.
TEST_F(MeshExport, HandDrawnMeshesPointsTextsAndThickArcsLeaveAsTheirObjects) {
    const Outcome made =
        qelcad("run --script " +
               write("drawn.scr", "PFACE\n0,0,0\n1000,0,0\n1000,1000,0\n0,1000,0\n500,500,800\n\n"
                                  "1\n2\n3\n4\n\n1\n2\n5\n\n\n"
                                  "POINT\n1500,-2000,250\n"
                                  "TEXT\n100,200,0\n50\n0\nPump 7\n\n"
                                  "SETVAR\nTHICKNESS\n300\n"
                                  "ARC\nC\n3000,0,0\n3500,0,0\n3000,500,0\n"
                                  "QUIT\n") +
               " --save drawn.dxf");
    ASSERT_EQ(made.status, 0) << made.out;
    for (const bool reference : {true, false}) {
        SCOPED_TRACE(reference ? "reference option" : "no reference");
        const Outcome run = qelcad("export drawn.dxf -o drawn.qel --units Millimeters" +
                                   std::string(reference ? " --reference" : " --no-reference"));
        ASSERT_EQ(run.status, 0) << run.out;
        const FileObjects back(path("drawn.qel"));

        const std::vector<unsigned> meshes = back.numbersOf("TriMesh");
        ASSERT_EQ(meshes.size(), 2u) << run.out;
        QelObject* faces = nullptr;
        QelObject* band = nullptr;
        for (const unsigned number : meshes)
            (array<float>(back.at(number), "vertices").size() == 15 ? faces : band) =
                back.at(number);
        ASSERT_NE(faces, nullptr);
        ASSERT_NE(band, nullptr);
        EXPECT_EQ(array<int>(faces, "triStripIndices"),
                  (std::vector<int>{0, 1, 2, 2, 3, 0, 0, 1, 4}));
        EXPECT_EQ(real(faces, "faceCount"), 3.0);
        EXPECT_EQ(real(faces, "vertexCount"), 5.0);
        const std::vector<float> v = array<float>(faces, "vertices");
        EXPECT_FLOAT_EQ(v[12], 0.5f);
        EXPECT_FLOAT_EQ(v[14], 0.8f);
        const std::vector<short> intensities = array<short>(faces, "intensities");
        if (reference) {
            EXPECT_EQ(intensities, std::vector<short>(5, 0));
            EXPECT_EQ(real(faces, "maxIntensity"), 1.0);
        } else {
            EXPECT_TRUE(intensities.empty());
        }

        // The arc: 25 points from its start, each with its twin 0.3 up, as 48 triangles of a
        // strip.
        const std::vector<float> arc = array<float>(band, "vertices");
        ASSERT_EQ(arc.size(), 150u);
        EXPECT_EQ(real(band, "faceCount"), 48.0);
        const std::vector<int> strip = array<int>(band, "triStripIndices");
        ASSERT_EQ(strip.size(), 144u);
        EXPECT_EQ(std::vector<int>(strip.end() - 3, strip.end()), (std::vector<int>{47, 48, 49}));
        for (int k = 0; k < 50; ++k) {
            const float x = arc[3 * k] - 3.0f, y = arc[3 * k + 1], z = arc[3 * k + 2];
            EXPECT_NEAR(std::hypot(x, y), 0.5, 1e-6) << k;
            EXPECT_NEAR(z, k % 2 ? 0.3 : 0.0, 1e-6) << k;
            EXPECT_NEAR(std::atan2(y, x), M_PI / 2 * (k / 2) / 24, 1e-5) << k;
        }

        std::vector<double> point, text;
        QelObject* annotations = nullptr;
        for (const unsigned number : back.numbersOf("Vertex3d")) {
            QelObject* object = back.at(number);
            if (QelObject* a = nested(object, "annotations")) {
                annotations = a;
                text = array<double>(object, "position");
            } else {
                point = array<double>(object, "position");
            }
        }
        EXPECT_EQ(point, (std::vector<double>{1.5, -2.0, 0.25}));
        EXPECT_EQ(text.size(), 3u);
        if (text.size() == 3) {
            EXPECT_NEAR(text[0], 0.1, 1e-12);
            EXPECT_NEAR(text[1], 0.2, 1e-12);
        }
        QelObject* first = nested(annotations, "1");
        ASSERT_NE(first, nullptr) << "the first text of an export is annotation 1";
        EXPECT_STREQ(first->GetName(), "StrAnnotation");
        const char* value = nullptr;
        first->GetParam("value", 0)->GetValue(value);
        EXPECT_STREQ(value, "Pump 7");
    }
}

// Three bars along x, y and z joined at one corner, modelled in millimetres below zero, are no
// primitive and no extrusion of one outline: they leave as one mesh where they lie, of their
// volume (each bar's end cube is shared by all three).
TEST_F(MeshExport, AHandModelledSolidLeavesAsAMeshOfItsVolume) {
    const Outcome made = qelcad("run --script " +
                                write("solid.scr", "BOX\n-2000,-500,-500\n0,0,-500\n500\n"
                                                   "BOX\n-500,-500,-500\n0,1500,-500\n500\n"
                                                   "BOX\n-500,-500,-500\n0,0,-500\n2500\n"
                                                   "UNION\nALL\n\nQUIT\n") +
                                " --save solid.dxf");
    ASSERT_EQ(made.status, 0) << made.out;
    const Outcome run = qelcad("export solid.dxf -o solid.qel --units Millimeters --no-reference");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(has(run.out, "-> Writing as generic mesh")) << run.out;
    const FileObjects back(path("solid.qel"));
    const std::vector<unsigned> meshes = back.numbersOf("TriMesh");
    ASSERT_EQ(meshes.size(), 1u) << run.out;
    const std::vector<float> v = array<float>(back.at(meshes[0]), "vertices");
    const std::vector<int> faces = array<int>(back.at(meshes[0]), "triStripIndices");
    ASSERT_FALSE(faces.empty());
    double volume = 0.0; // the divergence theorem over the triangles
    for (std::size_t t = 0; t + 2 < faces.size(); t += 3) {
        AcGeVector3d c[3];
        for (int k = 0; k < 3; ++k) {
            const float* p = &v.at(3 * std::size_t(faces[t + k]));
            c[k] = AcGeVector3d(p[0], p[1], p[2]);
        }
        volume += c[0].dotProduct(c[1].crossProduct(c[2])) / 6.0;
    }
    EXPECT_NEAR(volume, 2.0 * 0.25 + 2.0 * 0.25 + 2.5 * 0.25 - 2 * 0.125, 1e-5);
    float low[3] = {1e9f, 1e9f, 1e9f}, high[3] = {-1e9f, -1e9f, -1e9f};
    for (std::size_t i = 0; i < v.size(); ++i) {
        low[i % 3] = std::min(low[i % 3], v[i]);
        high[i % 3] = std::max(high[i % 3], v[i]);
    }
    const float wantLow[3] = {-2.0f, -0.5f, -0.5f}, wantHigh[3] = {0.0f, 1.5f, 2.0f};
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(low[axis], wantLow[axis], 1e-6) << axis;
        EXPECT_NEAR(high[axis], wantHigh[axis], 1e-6) << axis;
    }
}
