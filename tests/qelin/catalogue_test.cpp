// The object catalogue in code, and the file check built on it.
#include "objectfile/catalogue.h"
#include "validate.h"

#include <qel/qel_json.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

TEST(Catalogue, ClassesAndParamsAreUniqueAndWellFormed) {
    std::set<std::string> classes;
    for (const QelClassSpec& cls : QelCatalogue()) {
        EXPECT_TRUE(classes.insert(cls.name).second) << cls.name;
        std::set<std::string> params;
        for (const QelParamDef& p : cls.params) {
            EXPECT_TRUE(params.insert(p.name).second) << cls.name << "." << p.name;
            // Counts belong to arrays only, and every array has one.
            const bool array = p.type >= QelByteArrayType;
            EXPECT_EQ(array, *p.count != 0) << cls.name << "." << p.name;
        }
    }
    EXPECT_EQ(classes.size(), QelCatalogue().size());
}

TEST(Catalogue, CountRules) {
    const QelParamDef& translation = QelFindClass("Transformation")->params[0];
    EXPECT_TRUE(QelCountFits(translation, 3));
    EXPECT_FALSE(QelCountFits(translation, 2));
    const QelParamDef* vertices = QelFindParam(*QelFindClass("PlanarPatch"), "vertices");
    EXPECT_TRUE(QelCountFits(*vertices, 8));
    EXPECT_FALSE(QelCountFits(*vertices, 7));
    EXPECT_TRUE(QelCountFits(*QelFindParam(*QelFindClass("LayerMgr"), "layerList"), 0));
}

// The check of a file against the catalogue, through files built from their readable form.
class CatalogueValidate : public ::testing::Test {
protected:
    void SetUp() override { QelInit(0, 0, QelInitWords); }
    void TearDown() override { std::filesystem::remove(m_path); }

    std::string check(const std::string& objects) {
        qeljson::build(R"({"format": "qel-json-1", "objects": [)" + objects + "]}", "t.json",
                       m_path);
        QelReader reader(m_path.c_str());
        std::string all;
        for (const auto& f : qeltool::validate(reader))
            all += std::to_string(f.object) + ": " + f.text + "\n";
        return all;
    }
    // A whole file around one object (number 0).
    std::string checkOne(const std::string& object) {
        return check(object + R"(,
            {"class": "Layer", "params": [["name", "string", "0"], ["objectList", "uint[]", [0]]]},
            {"class": "LayerMgr", "params": [["layerList", "uint[]", [1]]]},
            {"class": "ModelSpace", "params": [["objectList", "uint[]", [0]], ["layerMgr", "uint", 2]]},
            {"class": "Header", "params": [["rootLocation", "uint", 3]]})");
    }

    std::string m_path = (std::filesystem::temp_directory_path() /
                          ("qelin-cat-" + std::to_string(::getpid()) + ".qel"))
                             .string();
};

TEST_F(CatalogueValidate, AWholeObjectPasses) {
    EXPECT_EQ(checkOne(R"({"class": "Cylinder", "params": [["radius", "double", 0.5],
        ["height", "double", 2], ["pose", "object", {"class": "Transformation",
        "params": [["translation", "double[]", [1, 2, 3]]]}]]})"),
              "");
}

TEST_F(CatalogueValidate, MissingRequiredParamsAreNamedPerClass) {
    EXPECT_EQ(checkOne(R"({"class": "Torus", "params": [["majorRadius", "double", 1]]})"),
              "0: Torus lacks the required \"minorRadius\"\n");
    // Only the Valve must have a pose; conditional params are not demanded.
    EXPECT_EQ(checkOne(R"({"class": "Valve", "params": [["coneRadius", "double", 1],
        ["valveLength", "double", 1], ["stemLength", "double", 1],
        ["handwheelRadius", "double", 1], ["handwheelOffset", "double", 1]]})"),
              "0: Valve lacks the required \"pose\"\n");
    EXPECT_EQ(checkOne(R"({"class": "BSplineCurve3d", "params": []})"), "");
    EXPECT_EQ(check(R"({"class": "Header", "params": []})"),
              "0: Header lacks the required \"rootLocation\"\n");
}

TEST_F(CatalogueValidate, WrongTypesAndCountsAreNamedDownIntoNestedObjects) {
    EXPECT_EQ(checkOne(R"({"class": "Sphere", "params": [["radius", "string", "0.5"]]})"),
              "0: Sphere \"radius\" should be a double, not a string\n");
    EXPECT_EQ(checkOne(R"({"class": "Line3d", "params": [["startPoint", "double[]", [0, 0]],
        ["endPoint", "float[]", [1, 1, 1]]]})"),
              "0: Line3d \"startPoint\" holds 2 values, not 3\n"
              "0: Line3d \"endPoint\" should be a double[], not a float[]\n");
    EXPECT_EQ(checkOne(R"({"class": "Sphere", "params": [["radius", "double", 1],
        ["pose", "object", {"class": "Transformation", "params": [["rotation", "int[]", [1]]]}],
        ["appearance", "object", {"class": "Appearance", "params": [["diffuseColor", "byte[]", [1, 2]]]}]]})"),
              "0: Sphere \"pose\" Transformation lacks the required \"translation\"\n"
              "0: Sphere \"pose\" Transformation \"rotation\" should be a double[], not a int[]\n"
              "0: Sphere \"appearance\" Appearance \"diffuseColor\" holds 2 values, not 3\n");
    // Params the catalogue doesn't know, and classes it doesn't know, pass.
    EXPECT_EQ(
        checkOne(R"({"class": "Sphere", "params": [["radius", "double", 1], ["x", "int", 1]]})"),
        "");
    EXPECT_EQ(checkOne(R"({"class": "Spaceship", "params": [["radius", "string", "x"]]})"), "");
}

} // namespace
