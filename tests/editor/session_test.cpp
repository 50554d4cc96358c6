// A drawing made by qelcad from a script of drawing and modelling commands: what info reports
// of the saved file, and an independent reader's audit of it.
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "../support/command.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class Session : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("qel-session-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    Outcome qelcad(const std::string& arguments) {
        return runCommand("cd " + dir.string() + " && " + QELCAD + " " + arguments + " 2>&1");
    }
    std::string write(const std::string& name, const std::string& text) {
        std::ofstream(dir / name) << text;
        return (dir / name).string();
    }
    fs::path dir;
};

TEST_F(Session, EveryKindTheCommandsMakeIsSavedReopenedAndAudited) {
    const std::string script = write("draw.scr", "-LAYER N Pipes S Pipes\n\n"
                                                 "SETVAR THICKNESS 3\n"
                                                 "CIRCLE 0,0 1\n"
                                                 "SETVAR THICKNESS 0\n"
                                                 "LINE 0,0 5,0\n\n"
                                                 "ARC 0,1 1,0 0,-1\n"
                                                 "PLINE 0,0 4,0 W 0.2 0.2 A 4,4 L C\n"
                                                 "3DPOLY 0,0,0 1,1,1 2,0,2\n\n"
                                                 "3DFACE 0,0,0 1,0,0 1,1,0 0,1,0\n\n"
                                                 "TEXT 0,10 2.5 0\nValve V-12\n\n"
                                                 "BOX 10,0,0 12,2,0 2\n"
                                                 "CYLINDER 20,0,0 1 4\n"
                                                 "CIRCLE 30,0 1\n"
                                                 "REGION L\n\n"
                                                 "COPY L\n\n0,0 0,5\n\n"
                                                 "EXTRUDE L\n\n2\n");
    const std::string out = (dir / "made.dxf").string();
    const Outcome run = qelcad("run --no-autoload --script " + script + " --save " + out);
    ASSERT_EQ(run.status, 0) << run.out;
    const Outcome info = qelcad("info --json " + out);
    ASSERT_EQ(info.status, 0) << info.out;
    const nlohmann::json report = nlohmann::json::parse(info.out);
    const nlohmann::json& kinds = report["entities"];
    const std::pair<const char*, int> expected[] = {
        {"CIRCLE", 1}, {"LINE", 1}, {"ARC", 1},     {"LWPOLYLINE", 1}, {"POLYLINE", 1},
        {"3DFACE", 1}, {"TEXT", 1}, {"3DSOLID", 3}, {"REGION", 1},
    };
    for (const auto& [kind, count] : expected) {
        ASSERT_TRUE(kinds.contains(kind)) << kind << "\n" << info.out;
        int found = 0;
        for (const auto& [layer, n] : kinds[kind].items())
            found += n.get<int>();
        EXPECT_EQ(found, count) << kind;
    }
    EXPECT_EQ(int(kinds.size()), int(std::size(expected))) << info.out;
    EXPECT_EQ(kinds["CIRCLE"]["Pipes"], 1) << "drawn on the current layer";

    // The independent reader opens it and its audit finds nothing to fix.
    if (runCommand("/usr/bin/python3 -c 'import ezdxf' 2>/dev/null").status != 0)
        GTEST_SKIP() << "python3 with ezdxf is missing (Debian: python3-ezdxf)";
    const Outcome audit =
        runCommand("/usr/bin/python3 -c 'import ezdxf, sys\n"
                   "doc = ezdxf.readfile(sys.argv[1])\n"
                   "auditor = doc.audit()\n"
                   "kinds = sorted(set(e.dxftype() for e in doc.modelspace()))\n"
                   "thick = [e.dxf.thickness for e in doc.modelspace().query(\"CIRCLE\")]\n"
                   "print(len(auditor.errors), len(auditor.fixes), \" \".join(kinds), thick)\n"
                   "sys.exit(1 if auditor.has_errors or auditor.has_fixes else 0)' " +
                   out + " 2>&1");
    EXPECT_EQ(audit.status, 0) << audit.out;
    EXPECT_NE(audit.out.find("0 0 3DFACE 3DSOLID ARC CIRCLE LINE LWPOLYLINE POLYLINE REGION TEXT "
                             "[3.0]"),
              std::string::npos)
        << audit.out;
}

TEST_F(Session, AFailedCommandInAScriptSavesNothing) {
    // Subtracting a far sphere from a box is refused: the script stops and nothing is written.
    const std::string script = write("bad.scr", "BOX 0,0,0 1,1,0 1\n"
                                                "SPHERE 50,50,50 1\n"
                                                "SUBTRACT ALL R L\n\nL\n\n");
    const Outcome run =
        qelcad("run --no-autoload --script " + script + " --save " + (dir / "x.dxf").string());
    EXPECT_EQ(run.status, 1) << run.out;
    EXPECT_NE(run.out.find("do not meet"), std::string::npos) << run.out;
    EXPECT_FALSE(fs::exists(dir / "x.dxf"));
}

} // namespace
