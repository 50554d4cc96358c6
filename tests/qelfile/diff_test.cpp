// Two object files compared as models: pairs of files built from the sample's JSON form that
// differ in one way each, and files that cannot be read.
#include "support.h"

#include "model_diff.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
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

namespace {

void dropParam(json& object, const std::string& name) {
    json kept = json::array();
    for (const json& p : object["params"])
        if (p[0] != name) kept.push_back(p);
    object["params"] = kept;
}

// The object's pose turned further about one of its own axes: the rotation B would hold.
json turnedLocally(json object, const std::array<double, 3>& axis, double angle) {
    json& pose = paramOf(object, "pose");
    double before[4] = {0, 0, 1, 0};
    for (const json& p : pose["params"])
        if (p[0] == "rotation")
            for (int i = 0; i < 4; ++i)
                before[i] = p[2][i];
    const double turn[4] = {axis[0], axis[1], axis[2], angle};
    double a[9], t[9], m[9], after[4];
    rotation_to_affine(before, a);
    rotation_to_affine(turn, t);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            m[3 * r + c] = a[3 * r] * t[c] + a[3 * r + 1] * t[3 + c] + a[3 * r + 2] * t[6 + c];
    rotation_from_affine(after, m);
    dropParam(pose, "rotation");
    pose["params"].push_back({"rotation", "double[]", {after[0], after[1], after[2], after[3]}});
    return object;
}

} // namespace

// An export measures a round solid from its geometry, and the spin about its axis is not in it:
// a pose turned only as far as the shape cannot show places the same shape.
TEST_F(ModelDiff, PosesCompareAsTheShapesTheyPlace) {
    constexpr double kPi = M_PI;
    const std::array<double, 3> x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    struct Case {
        unsigned object;
        std::array<double, 3> axis; // local
        double angle;
        bool sameShape;
    } const cases[] = {
        {0, z, 1.0, true},         // cylinder about its axis
        {0, x, 1e-3, false},       // ... tipped
        {0, x, kPi, false},        // ... end for end: the base moves to the other end
        {15, z, 2.0, true},        // cone, no rotation in A
        {15, y, kPi, false},       //
        {4, z, -0.5, true},        // flange
        {4, y, 0.5, false},        //
        {6, z, 3.0, true},         // concentric reducer
        {16, x, kPi, true},        // torus end for end
        {16, y, kPi, true},        // ... about any axis of its plane
        {16, y, kPi / 3, false},   //
        {8, {1, 2, 3}, 2.5, true}, // sphere, any way
        {5, x, kPi, true},         // tee: the run end for end, the branch kept
        {5, y, kPi, false},        // ... the branch the other way
        {5, z, kPi, false},        //
        {5, z, 1.0, false},        //
        {3, y, kPi, true},         // valve: the cones end for end, the stem kept
        {3, x, kPi, false},        // ... the stem the other way
        {17, z, 0.25, true},       // a cylinder without rotation in A, and one in B
        {9, z, kPi, false},        // a box: not in the table, compared as turns
    };
    for (const Case& c : cases) {
        json b = sample;
        b["objects"][c.object] = turnedLocally(b["objects"][c.object], c.axis, c.angle);
        const auto turn = onlyChange(against(b), c.object);
        EXPECT_EQ(turn.path, "pose.rotation");
        // A rotation where A has none is added, else changed.
        EXPECT_EQ(turn.change == Change::WithinTolerance, c.sameShape)
            << sample["objects"][c.object]["class"] << " turned by " << c.angle << " about ("
            << c.axis[0] << ", " << c.axis[1] << ", " << c.axis[2] << "): " << turn.note;
    }

    json b = sample;
    b["objects"][0] = turnedLocally(b["objects"][0], z, 1.0);
    b["objects"][16] = turnedLocally(b["objects"][16], x, kPi);
    const DiffReport r = against(b);
    EXPECT_TRUE(r.equal());
    EXPECT_EQ(onlyChange(r, 0).note, "the same shape: turned about its own axis by 1 rad");
    EXPECT_NEAR(onlyChange(r, 0).difference, 0, 1e-12) << "the shapes' angle, not the turn's";
    EXPECT_EQ(onlyChange(r, 16).note, "no rotation in A; the same shape: turned end for end");
    // A turn that is not a number places no shape, not even a sphere.
    paramOf(b["objects"][8], "pose")["params"].push_back(
        {"rotation", "double[]", {0, 0, 1, "NaN"}});
    EXPECT_EQ(onlyChange(against(b), 8).change, Change::Added);

    // Each file's params must keep the symmetry: an eccentric reducer, a valve with caps and an
    // arc short of a circle are compared as turns.
    json kept = sample;
    paramOf(kept["objects"][6], "direction") = {0.2, 0, 1};
    kept["objects"][3]["params"].push_back(
        {"cap0", "object", {{"class", "FlatCap"}, {"params", json::array()}}});
    kept["objects"].push_back(json::parse(R"({ "class": "CircularArc3d", "params": [
        ["radius", "double", 1.5], ["endAngle", "double", 6.2831854820251465],
        ["pose", "object", { "class": "Transformation", "params": [
            ["translation", "double[]", [7, 7, 0]] ] }] ] })"));
    const unsigned arc = unsigned(kept["objects"].size()) - 1;
    a = write(kept, "a.qel");
    json turned = kept;
    for (unsigned o : {6u, 3u, arc})
        turned["objects"][o] =
            turnedLocally(turned["objects"][o], o == 3 ? y : z, o == 3 ? kPi : 1);
    const DiffReport asTurns = against(turned);
    EXPECT_EQ(onlyChange(asTurns, 6).change, Change::Changed);
    EXPECT_EQ(onlyChange(asTurns, 3).change, Change::Changed);
    EXPECT_EQ(onlyChange(asTurns, arc).change, Change::WithinTolerance) << "a full circle";
    paramOf(kept["objects"][arc], "endAngle") = kPi;
    paramOf(turned["objects"][arc], "endAngle") = kPi;
    a = write(kept, "a.qel");
    EXPECT_EQ(onlyChange(against(turned), arc).change, Change::Added);
}

// A pose param absent is the pose that places nothing elsewhere: no translation is the origin
// and no rotation is none; a whole pose absent is both.
TEST_F(ModelDiff, AbsentPosePartsAreTheIdentity) {
    json b = sample;
    dropParam(b["objects"][19], "pose");
    const DiffReport r = against(b);
    EXPECT_TRUE(r.equal());
    const auto& group = pairOf(r, 19).changes;
    ASSERT_EQ(group.size(), 2u);
    EXPECT_EQ(group[0].path, "pose.translation");
    EXPECT_EQ(group[0].note, "the origin -> no translation");
    EXPECT_EQ(group[1].change, Change::WithinTolerance);

    // A pose that moves or turns the object is not the identity.
    json moved = sample;
    paramOf(paramOf(moved["objects"][19], "pose"), "translation") = {0, 0, 1e-3};
    a = write(moved, "a.qel");
    EXPECT_EQ(onlyChange(against(b), 19).change, Change::Removed);
    paramOf(paramOf(moved["objects"][19], "pose"), "translation") = {0, 0, 0};
    paramOf(paramOf(moved["objects"][19], "pose"), "rotation") = {0, 0, 1, 0.5};
    a = write(moved, "a.qel");
    EXPECT_EQ(onlyChange(against(b), 19).change, Change::Removed);
}

// Groups pair by their members, whatever their poses say: two groups whose poses trade places
// are each still the group of its own members, and so are groups of those groups.
TEST_F(ModelDiff, GroupsPairByTheirMembers) {
    json both = sample;
    const unsigned second = unsigned(both["objects"].size());
    const auto group = [](const char* cls, std::vector<unsigned> members, double at) {
        return json{{"class", cls},
                    {"params",
                     {{"objectList", "uint[]", members},
                      {"pose",
                       "object",
                       {{"class", "Transformation"},
                        {"params", {{"translation", "double[]", {at, at, at}}}}}}}}};
    };
    both["objects"].push_back(group("GeometricGroup", {7, 8}, 5));
    both["objects"].push_back(group("ExclusionVolume", {19}, 7));
    both["objects"].push_back(group("ExclusionVolume", {second}, 9));
    paramOf(paramOf(both["objects"][19], "pose"), "translation") = {3, 3, 3};
    a = write(both, "a.qel");
    json b = both;
    paramOf(paramOf(b["objects"][19], "pose"), "translation") = {5, 5, 5};
    paramOf(paramOf(b["objects"][second], "pose"), "translation") = {3, 3, 3};
    paramOf(paramOf(b["objects"][second + 1], "pose"), "translation") = {9, 9, 9};
    paramOf(paramOf(b["objects"][second + 2], "pose"), "translation") = {7, 7, 7};
    const DiffReport r = against(b);
    for (unsigned g : {19u, second, second + 1, second + 2}) {
        EXPECT_EQ(pairOf(r, g).b, g);
        EXPECT_EQ(onlyChange(r, g).path, "pose.translation");
    }
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
