// The round trip from the user's side: qelcad imports the sample, saves, reopens, exports the
// drawing and tells class by class what came through each way.
#include <nlohmann/json.hpp>
#include <qel/qel.h>

#include <gtest/gtest.h>

#include "../support/command.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class RoundTrip : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("qelin-roundtrip-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
        ::setenv("QELCAD_REGISTRY", (dir / "registry.json").c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("QELCAD_REGISTRY");
        fs::remove_all(dir);
    }
    Outcome qelcad(const std::string& arguments, const char* errors = " 2>&1") {
        return runCommand("cd " + dir.string() + " && " + QELCAD + " " + arguments + " </dev/null" +
                          errors);
    }
    // Standard output alone: what a program reading qelcad's data gets.
    Outcome qelcadStdout(const std::string& arguments) { return qelcad(arguments, " 2>/dev/null"); }
    // Objects per class of the sample, the structure apart: what the table must count.
    static std::map<std::string, unsigned> sampleClasses() {
        QelInit(0, 0, QelInitWords);
        QelReader reader(QEL_SAMPLE_PLANT);
        std::map<std::string, unsigned> classes;
        for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
            QelObject* o = reader.ReadObject(id);
            const std::string name = o->GetName();
            o->UnRef();
            if (name != "Header" && name != "ModelSpace" && name != "LayerMgr" && name != "Layer" &&
                name != "ModelSpaceView" && name != "CoordSysMgr")
                ++classes[name];
        }
        return classes;
    }
    fs::path dir;
};

} // namespace

TEST_F(RoundTrip, TheSampleComesThroughTheImportHalfClassByClass) {
    // Standard output is the report alone: the transcript goes to standard error.
    const Outcome run = qelcadStdout(std::string("roundtrip ") + QEL_SAMPLE_PLANT +
                                     " --units Millimeters --keep kept --json");
    const auto report = nlohmann::json::parse(run.out);
    std::map<std::string, unsigned> in, inDrawing;
    unsigned found = 0, total = 0;
    for (const auto& row : report["import"]["classes"]) {
        in[row["class"]] = row["in"];
        inDrawing[row["class"]] = row["inDrawing"];
        found += row["inDrawing"].get<unsigned>();
        total += row["in"].get<unsigned>();
        EXPECT_LE(row["inDrawing"].get<unsigned>(), row["in"].get<unsigned>());
    }
    EXPECT_EQ(in, sampleClasses());
    // Classes the import has always made are found in the reopened drawing by their tags.
    for (const char* made : {"Sphere", "Cone", "Torus", "Line3d", "Valve"})
        EXPECT_EQ(inDrawing[made], in[made]) << made;
    EXPECT_EQ(report["import"]["missing"].size(), total - found);
    EXPECT_EQ(report["import"]["layers"]["in"], 3);
    EXPECT_EQ(report["import"]["layers"]["inDrawing"], 3);
    // The way back: the reopened drawing exported and compared with the input, class by class.
    const auto& back = report["export"];
    std::map<std::string, unsigned> inA;
    for (const auto& row : back["classes"]) {
        inA[row["class"]] = row["inA"];
        // Every object of the input is accounted for once: paired one way or another, or lost.
        EXPECT_EQ(row["inA"].get<unsigned>(),
                  row["equal"].get<unsigned>() + row["withinTolerance"].get<unsigned>() +
                      row["changed"].get<unsigned>() + row["onlyA"].get<unsigned>())
            << row.dump();
        // The layers come back by name, with their colours and states.
        if (row["class"] == "Layer") {
            EXPECT_EQ(row["equal"], 3) << row.dump();
        }
    }
    for (const auto& [name, count] : sampleClasses())
        EXPECT_EQ(inA[name], count) << name;
    EXPECT_TRUE(fs::exists(dir / "kept" / "plant.back.qel"));
    // 0 only when nothing was lost either way and the models are equal within the tolerance.
    EXPECT_EQ(run.status, found == total && back["equal"].get<bool>() ? 0 : 1) << run.out;
    // What was kept is the drawing that was reopened, and it opens.
    EXPECT_TRUE(fs::exists(dir / "kept" / "plant.transcript.txt"));
    const Outcome info = qelcad("info kept/plant.dxf");
    EXPECT_EQ(info.status, 0) << info.out;
    EXPECT_NE(info.out.find("MemberRec"), std::string::npos);
}

TEST_F(RoundTrip, AnUnreadableInputStopsBeforeTheImportAndADamagedObjectIsTold) {
    std::ofstream(dir / "bad.qel") << "not an object file";
    const Outcome bad = qelcad("roundtrip bad.qel --keep kept");
    EXPECT_EQ(bad.status, 2) << bad.out;
    EXPECT_NE(bad.out.find("bad.qel"), std::string::npos) << bad.out;
    EXPECT_FALSE(fs::exists(dir / "kept")) << "nothing made for an input that can't be read";
    EXPECT_EQ(qelcad("roundtrip").status, 2) << "the input is required";

    // One object damaged: the file opens, the table is made of the others, the damage is named.
    std::ifstream in(QEL_SAMPLE_PLANT, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    bytes[72] ^= 0x40; // inside object 0
    std::ofstream(dir / "damaged.qel", std::ios::binary) << bytes;
    const Outcome damaged = qelcad("roundtrip damaged.qel --units Meters");
    EXPECT_EQ(damaged.status, 1) << damaged.out;
    EXPECT_NE(damaged.out.find("Cannot be read: 'damaged.qel': object 0"), std::string::npos)
        << damaged.out;
    EXPECT_NE(damaged.out.find("Sphere                        1"), std::string::npos)
        << damaged.out;
    // The export still runs; the comparison needs every object of the input and says so.
    EXPECT_NE(damaged.out.find("Not compared: 'damaged.qel': object 0"), std::string::npos)
        << damaged.out;
}
