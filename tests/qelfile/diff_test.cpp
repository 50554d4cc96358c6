// Two object files compared as models: pairs of files built from the sample's JSON form that
// differ in one way each, and files that cannot be read.
#include "support.h"

#include "model_diff.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cfloat>
#include <cmath>
#include <numeric>

using nlohmann::json;
using qeltool::Change;
using qeltool::DiffReport;
using qeltool::Outcome;

namespace {

// The params of the sample that hold reference numbers.
bool holdsReferences(const std::string& name) {
    for (const char* r : {"rootLocation", "objectList", "layerMgr", "modelSpaceViewList",
                          "layerList", "coordSysMgr"})
        if (name == r) return true;
    return false;
}

json& paramOf(json& object, const std::string& name) {
    for (json& p : object["params"])
        if (p[0] == name) return p[2];
    throw std::runtime_error("no param " + name);
}

class ModelDiff : public ::testing::Test {
protected:
    void SetUp() override {
        qeltest::initLibrary();
        sample = json::parse(qeltest::sampleJson());
        a = write(sample, "a.qel");
    }

    std::string write(const json& model, const std::string& name) {
        const std::string path = dir.file(name);
        qeljson::build(model.dump(), name, path);
        return path;
    }

    // The sample with one change, compared with the sample.
    DiffReport against(const json& changed, double tolerance = qeltool::kDefaultTolerance) {
        return qeltool::compareFiles(a, write(changed, "b.qel"), tolerance);
    }

    // The objects in another order, with every reference renumbered: what a new export gives.
    static json renumbered(const json& model, const std::vector<unsigned>& order) {
        std::vector<unsigned> newNumber(order.size());
        for (unsigned i = 0; i < order.size(); ++i)
            newNumber[order[i]] = i;
        json out = model;
        out["objects"] = json::array();
        for (unsigned old : order) {
            json object = model["objects"][old];
            for (json& p : object["params"]) {
                if (!holdsReferences(p[0])) continue;
                if (p[2].is_array())
                    for (json& n : p[2])
                        n = newNumber[n.get<unsigned>()];
                else
                    p[2] = newNumber[p[2].get<unsigned>()];
            }
            out["objects"].push_back(object);
        }
        return out;
    }

    static const qeltool::ObjectPair& pairOf(const DiffReport& r, unsigned a) {
        for (const auto& p : r.pairs)
            if (p.a == a) return p;
        throw std::runtime_error("object not paired");
    }

    // The one change of the pair of A's object, checked to be the only one.
    static qeltool::ParamChange onlyChange(const DiffReport& r, unsigned a) {
        const auto& p = pairOf(r, a);
        EXPECT_EQ(p.changes.size(), 1u);
        return p.changes.empty() ? qeltool::ParamChange{} : p.changes.front();
    }

    static std::size_t changedPairs(const DiffReport& r) {
        return std::count_if(r.pairs.begin(), r.pairs.end(),
                             [](const auto& p) { return p.outcome != Outcome::Equal; });
    }

    qeltest::ScratchDir dir;
    json sample;
    std::string a;
};

} // namespace

TEST_F(ModelDiff, AFileAndItsRenumberedCopyAreTheSameModel) {
    const unsigned count = unsigned(sample["objects"].size());
    const DiffReport same = against(sample);
    EXPECT_TRUE(same.equal());
    EXPECT_EQ(same.pairs.size(), count);
    EXPECT_EQ(changedPairs(same), 0u);

    // Every object numbered from the other end.
    std::vector<unsigned> order(count);
    std::iota(order.rbegin(), order.rend(), 0u);
    const DiffReport reversed = against(renumbered(sample, order));
    EXPECT_TRUE(reversed.equal());
    EXPECT_EQ(changedPairs(reversed), 0u);
    EXPECT_EQ(pairOf(reversed, 0).b, count - 1) << "paired by place, not by number";
    EXPECT_EQ(pairOf(reversed, 2).b, count - 3);
}

TEST_F(ModelDiff, RealsWithinAndBeyondTheTolerance) {
    json b = sample;
    paramOf(b["objects"][0], "radius") = 0.1 * (1 + 1e-6);         // beyond 1e-9
    paramOf(b["objects"][7], "height") = 2.5 * (1 + 1e-12);        // within
    paramOf(b["objects"][8], "radius") = std::nextafter(0.5, 1.0); // a double at its last bit
    const DiffReport r = against(b);
    EXPECT_FALSE(r.equal());
    const auto radius = onlyChange(r, 0);
    EXPECT_EQ(radius.path, "radius");
    EXPECT_EQ(radius.change, Change::Changed);
    EXPECT_NEAR(radius.difference, 1e-6 / (1 + 1e-6), 1e-15) << "relative to the larger";
    EXPECT_EQ(radius.valueA, "0.1");
    EXPECT_EQ(onlyChange(r, 7).change, Change::WithinTolerance);
    EXPECT_EQ(onlyChange(r, 8).change, Change::WithinTolerance);
    EXPECT_EQ(pairOf(r, 7).outcome, Outcome::WithinTolerance);

    const DiffReport loose = against(b, 1e-5);
    EXPECT_TRUE(loose.equal());
    EXPECT_EQ(onlyChange(loose, 0).change, Change::WithinTolerance);

    const DiffReport exact = against(b, 0);
    EXPECT_EQ(onlyChange(exact, 7).change, Change::Changed);
    EXPECT_EQ(onlyChange(exact, 8).change, Change::Changed);
}

TEST_F(ModelDiff, AnArrayDiffersAtOneElement) {
    json b = sample;
    // The polyline's zero coordinates beside coordinates of 4 may move by 4 times the tolerance.
    json& vertices = paramOf(b["objects"][13], "vertices");
    vertices[0] = 3e-9;
    const DiffReport within = against(b);
    EXPECT_EQ(onlyChange(within, 13).change, Change::WithinTolerance);
    vertices[0] = 0;
    vertices[5] = 0.001;
    const auto change = onlyChange(against(b), 13);
    EXPECT_EQ(change.change, Change::Changed);
    EXPECT_NE(change.note.find("element 5: 0 -> 0.001"), std::string::npos) << change.note;
    vertices.push_back(1);
    EXPECT_NE(onlyChange(against(b), 13).note.find("12 values -> 13 values"), std::string::npos);
}

TEST_F(ModelDiff, FloatsAreComparedAtSinglePrecision) {
    json withCloud = sample;
    withCloud["objects"].push_back(json::parse(R"({ "class": "Pointset", "params": [
        ["points", "float[]", [1, 2, 3, 1.5, 2.5, 3.5]],
        ["minIntensity", "float", 0.25] ] })"));
    const unsigned cloud = unsigned(withCloud["objects"].size()) - 1;
    a = write(withCloud, "a.qel");
    json b = withCloud;
    json& points = paramOf(b["objects"][cloud], "points");
    points[0] = std::nextafter(1.0f, 2.0f);
    // Floats never compare finer than their last bit, whatever the tolerance asked for.
    EXPECT_EQ(onlyChange(against(b, 0), cloud).change, Change::WithinTolerance);
    points[0] = 1;
    points[5] = 3.5 * (1 + 4 * FLT_EPSILON);
    EXPECT_EQ(onlyChange(against(b), cloud).change, Change::Changed);
    points[5] = 3.5;
    paramOf(b["objects"][cloud], "minIntensity") = std::nextafter(0.25f, 1.0f);
    EXPECT_EQ(onlyChange(against(b, 0), cloud).change, Change::WithinTolerance);
}

TEST_F(ModelDiff, ObjectsAddedAndRemoved) {
    json b = sample;
    b["objects"].push_back(json::parse(R"({ "class": "Sphere", "params": [
        ["radius", "double", 0.2],
        ["pose", "object", { "class": "Transformation", "params": [
            ["translation", "double[]", [1, 1, 1]] ] }] ] })"));
    const unsigned added = unsigned(b["objects"].size()) - 1;
    paramOf(b["objects"][20], "objectList").push_back(added);
    const std::string path = write(b, "b.qel");

    const DiffReport r = qeltool::compareFiles(a, path, qeltool::kDefaultTolerance);
    EXPECT_FALSE(r.equal());
    ASSERT_EQ(r.onlyB.size(), 1u);
    EXPECT_EQ(r.onlyB[0].number, added);
    EXPECT_EQ(r.onlyB[0].where, "on layer Piping");
    EXPECT_TRUE(r.onlyA.empty());
    EXPECT_EQ(changedPairs(r), 0u) << "the layer's list tells the new object only once";

    const DiffReport back = qeltool::compareFiles(path, a, qeltool::kDefaultTolerance);
    ASSERT_EQ(back.onlyA.size(), 1u);
    EXPECT_EQ(back.onlyA[0].className, "Sphere");
    const auto sphere = std::find_if(back.classes.begin(), back.classes.end(),
                                     [](const auto& t) { return t.className == "Sphere"; });
    ASSERT_NE(sphere, back.classes.end());
    EXPECT_EQ(sphere->inA, 2u);
    EXPECT_EQ(sphere->equal, 1u);
    EXPECT_EQ(sphere->onlyA, 1u);
}

TEST_F(ModelDiff, AnObjectMovedToAnotherLayerOrInSpace) {
    json b = sample;
    // The sphere (8) leaves "Equipment" (21) for "Steel" (22).
    json& equipment = paramOf(b["objects"][21], "objectList");
    equipment.erase(std::find(equipment.begin(), equipment.end(), 8));
    paramOf(b["objects"][22], "objectList").push_back(8);
    const auto layer = onlyChange(against(b), 8);
    EXPECT_EQ(layer.path, "layer");
    EXPECT_EQ(layer.valueA, "Equipment");
    EXPECT_EQ(layer.valueB, "Steel");

    // A torus moved far is still that torus, changed; not one removed and one added.
    json moved = sample;
    paramOf(paramOf(moved["objects"][16], "pose"), "translation") = {60, 20, 18};
    const DiffReport r = against(moved);
    EXPECT_TRUE(r.onlyA.empty() && r.onlyB.empty());
    EXPECT_EQ(onlyChange(r, 16).path, "pose.translation");
}

TEST_F(ModelDiff, ListsAreSetsOfMembers) {
    json b = sample;
    paramOf(b["objects"][19], "objectList") = {18, 17}; // the group, reordered
    const DiffReport reordered = against(b);
    EXPECT_TRUE(reordered.equal());
    const auto order = onlyChange(reordered, 19);
    EXPECT_EQ(order.change, Change::WithinTolerance);
    EXPECT_EQ(order.note, "the same members in another order");

    paramOf(b["objects"][19], "objectList") = {17, 16}; // the flange leaves, the torus joins
    const auto members = onlyChange(against(b), 19);
    EXPECT_EQ(members.change, Change::Changed);
    EXPECT_EQ(members.note, "without Flange 18 (of A); with Torus 16 (of B)");

    // The view's overrides follow their layers: the layer list reordered with them is the same.
    json layers = sample;
    paramOf(layers["objects"][23], "layerList") = {22, 20, 21};
    paramOf(layers["objects"][25], "layerOverrides") = {1, 2, 0};
    const DiffReport same = against(layers);
    EXPECT_TRUE(same.equal());
    paramOf(layers["objects"][25], "layerOverrides") = {2, 0, 1};
    const auto overrides = onlyChange(against(layers), 25);
    EXPECT_EQ(overrides.change, Change::Changed);
    EXPECT_EQ(overrides.note, "Equipment: 0 -> 1; Piping: 2 -> 0; Steel: 1 -> 2");
}

TEST_F(ModelDiff, RotationsCompareAsTurns) {
    json b = sample;
    const double angle = paramOf(paramOf(b["objects"][0], "pose"), "rotation")[3];
    // The same turn about the opposite axis, written with another length.
    paramOf(paramOf(b["objects"][0], "pose"), "rotation") = {0, -2, 0, -angle};
    EXPECT_EQ(onlyChange(against(b), 0).change, Change::WithinTolerance);
    // No rotation and a turn by nothing are the same.
    paramOf(b["objects"][15], "pose")["params"].push_back({"rotation", "double[]", {1, 0, 0, 0}});
    EXPECT_EQ(onlyChange(against(b), 15).change, Change::WithinTolerance);
    // The single-precision right angle against the exact one: turned by 4.4e-8.
    paramOf(paramOf(b["objects"][0], "pose"), "rotation") = {0, 1, 0, M_PI / 2};
    const auto turn = onlyChange(against(b), 0);
    EXPECT_EQ(turn.change, Change::Changed);
    EXPECT_NEAR(turn.difference, 1.5707963705062866 - M_PI / 2, 1e-15);
}

TEST_F(ModelDiff, TypesParamsAndNestedObjects) {
    json b = sample;
    json& flange = b["objects"][4];
    flange["params"][0] = {"type", "short", 1};                  // int -> short
    flange["params"].erase(flange["params"].begin() + 3);        // no "flangeradius"
    b["objects"][2]["params"][2][2]["class"] = "HemiSphericCap"; // another cap
    paramOf(paramOf(b["objects"][3], "annotations"), "Tag")["params"][0][2] = "XV-1002";
    paramOf(b["objects"][8], "appearance")["params"].push_back({"shininess", "float", 0.5});
    const DiffReport r = against(b);
    const auto& f = pairOf(r, 4).changes;
    ASSERT_EQ(f.size(), 2u);
    EXPECT_EQ(f[0].path, "type");
    EXPECT_EQ(f[0].typeA, "int");
    EXPECT_EQ(f[0].typeB, "short");
    EXPECT_EQ(f[1].path, "flangeradius");
    EXPECT_EQ(f[1].change, Change::Removed);
    const auto cap = onlyChange(r, 2);
    EXPECT_EQ(cap.path, "cap1");
    EXPECT_EQ(cap.valueB, "HemiSphericCap");
    const auto tag = onlyChange(r, 3);
    EXPECT_EQ(tag.path, "annotations.Tag.value");
    EXPECT_EQ(tag.valueB, "\"XV-1002\"");
    const auto shine = onlyChange(r, 8);
    EXPECT_EQ(shine.path, "appearance.shininess");
    EXPECT_EQ(shine.change, Change::Added);
}

TEST_F(ModelDiff, UnreadableFilesAreNamedWithEveryDamagedObject) {
    std::string bytes = qeltest::readText(a);
    bytes[72] ^= 0x40; // inside object 0
    const std::string damaged = dir.file("damaged.qel");
    qeltest::writeText(damaged, bytes);
    try {
        qeltool::compareFiles(a, damaged, qeltool::kDefaultTolerance);
        FAIL() << "a damaged object was compared";
    } catch (const qeltool::DiffReadError& e) {
        EXPECT_NE(std::string(e.what()).find(damaged + "': object 0"), std::string::npos)
            << e.what();
        EXPECT_EQ(std::string(e.what()).find(a + "'"), std::string::npos) << "A is sound";
    }
    const std::string text = dir.file("text.qel");
    qeltest::writeText(text, "not an object file");
    for (const std::string& bad : {text, dir.file("missing.qel")})
        try {
            qeltool::compareFiles(bad, a, qeltool::kDefaultTolerance);
            FAIL() << bad << " was compared";
        } catch (const qeltool::DiffReadError& e) {
            EXPECT_NE(std::string(e.what()).find(bad), std::string::npos) << e.what();
        }
}

TEST_F(ModelDiff, HostileStructureIsComparedWithoutHarm) {
    json b = sample;
    paramOf(b["objects"][27], "rootLocation") = 27;                    // the Header itself
    paramOf(b["objects"][26], "layerMgr") = 4000000000u;               // out of range
    paramOf(b["objects"][19], "objectList") = {19, 19, 99999, 17};     // itself, twice
    paramOf(b["objects"][23], "layerList") = {0, 20, 20};              // a cylinder as a layer
    paramOf(b["objects"][25], "layerOverrides") = json::array();       // too short
    b["objects"][21]["params"][1] = {"objectList", "double[]", {7.5}}; // a list of the wrong type
    for (int i : {0, 2, 7, 17}) // every cylinder at a place that is not a number
        paramOf(paramOf(b["objects"][i], "pose"), "translation") = {"NaN", 0, "-Infinity"};
    const DiffReport r = against(b);
    EXPECT_FALSE(r.equal());
    EXPECT_EQ(r.pairs.size() + r.onlyA.size(), sample["objects"].size());
}
