// qeltool as a user runs it: exit status, what goes to standard output and to standard error.
#include "support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/wait.h>

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class Tool : public ::testing::Test {
protected:
    Outcome run(const std::string& args) {
        const std::string out = dir.file("out.txt"), err = dir.file("err.txt");
        const std::string command =
            std::string(QELTOOL_PATH) + " " + args + " >" + out + " 2>" + err;
        const int raw = std::system(command.c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, qeltest::readText(out),
                qeltest::readText(err)};
    }
    qeltest::ScratchDir dir;
};

} // namespace

TEST_F(Tool, BuildThenDumpGivesBackTheSample) {
    const std::string sample = std::string(QEL_SOURCE_DIR) + "/samples/plant.json";
    const std::string qel = dir.file("plant.qel");
    Outcome built = run("build " + sample + " -o " + qel);
    ASSERT_EQ(built.status, 0) << built.err;
    Outcome dumped = run("dump " + qel);
    ASSERT_EQ(dumped.status, 0) << dumped.err;
    EXPECT_EQ(dumped.out, qeltest::sampleJson());
    Outcome checked = run("validate " + qel);
    EXPECT_EQ(checked.status, 0);
    EXPECT_NE(checked.out.find("28 objects, structure valid"), std::string::npos) << checked.out;
    Outcome stats = run("stats " + qel);
    EXPECT_EQ(stats.status, 0);
    EXPECT_NE(stats.out.find("Cylinder"), std::string::npos);
}

TEST_F(Tool, FailuresGoToStandardErrorWithTheFile) {
    Outcome missing = run("dump " + dir.file("missing.qel"));
    EXPECT_NE(missing.status, 0);
    EXPECT_TRUE(missing.out.empty());
    EXPECT_NE(missing.err.find("missing.qel"), std::string::npos) << missing.err;

    qeltest::writeText(dir.file("bad.json"),
                       R"({ "format": "qel-json-1", "objects": [ { "class": 5 } ] })");
    Outcome bad = run("build " + dir.file("bad.json") + " -o " + dir.file("bad.qel"));
    EXPECT_NE(bad.status, 0);
    EXPECT_NE(bad.err.find("bad.json: object 0"), std::string::npos) << bad.err;

    Outcome usage = run("build " + dir.file("bad.json"));
    EXPECT_EQ(usage.status, 2) << "a missing -o is a usage error";
    Outcome help = run("validate --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("validate"), std::string::npos);
    Outcome none = run("");
    EXPECT_NE(none.status, 0);
}

TEST_F(Tool, DiffTellsByItsStatusWhetherTheModelsDiffer) {
    const std::string sample = std::string(QEL_SOURCE_DIR) + "/samples/plant.json";
    const std::string a = dir.file("a.qel"), b = dir.file("b.qel");
    ASSERT_EQ(run("build " + sample + " -o " + a).status, 0);
    std::string json = qeltest::sampleJson();
    const std::string radius = "[\"radius\", \"double\", 0.5]";
    json.replace(json.find(radius), radius.size(), "[\"radius\", \"double\", 0.6]");
    qeltest::writeText(dir.file("b.json"), json);
    ASSERT_EQ(run("build " + dir.file("b.json") + " -o " + b).status, 0);

    Outcome same = run("diff " + a + " " + a);
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_NE(same.out.find("The models are equal within the tolerance (1e-09)."),
              std::string::npos);
    Outcome differ = run("diff " + a + " " + b);
    EXPECT_EQ(differ.status, 1) << differ.err;
    EXPECT_NE(differ.out.find("Sphere, A 8 = B 8\n    radius: 0.5 -> 0.6"), std::string::npos)
        << differ.out;
    EXPECT_EQ(run("diff --tolerance 0.5 " + a + " " + b).status, 0);
    Outcome json_ = run("diff --json " + a + " " + b);
    EXPECT_EQ(json_.status, 1);
    EXPECT_NE(json_.out.find("\"path\": \"radius\""), std::string::npos) << json_.out;
    EXPECT_NE(json_.out.find("\"equal\": false"), std::string::npos);

    qeltest::writeText(dir.file("bad.qel"), "QELF but not really");
    Outcome bad = run("diff " + a + " " + dir.file("bad.qel"));
    EXPECT_EQ(bad.status, 2);
    EXPECT_TRUE(bad.out.empty());
    EXPECT_NE(bad.err.find("bad.qel"), std::string::npos) << bad.err;
    for (const std::string& usage :
         {"diff " + a, "diff --tolerance -1 " + a + " " + b, "diff --tolerance nan " + a + " " + b})
        EXPECT_EQ(run(usage).status, 2) << usage;
}
