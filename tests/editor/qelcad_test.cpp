// qelcad end to end: scripts, answers, the shell on a pipe, exit codes and the transcript file.
#include <gtest/gtest.h>

#include "../support/command.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

class Qelcad : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("qelcad-" + std::to_string(getpid()) + "-" +
               std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }

    std::string write(const std::string& name, const std::string& text) {
        std::ofstream(dir / name) << text;
        return (dir / name).string();
    }
    std::string read(const std::string& name) {
        std::ifstream in(dir / name);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    // Runs qelcad on the test modules with stdout and stderr together.
    Outcome qelcad(const std::string& arguments, const std::string& stdinText = "",
                   bool withModules = true) {
        const std::string input = write("stdin.txt", stdinText);
        const std::string command =
            std::string(QELCAD) + " " + arguments +
            (withModules ? std::string(" --modules ") + QEL_TEST_MODULES : "") + " < " + input +
            " 2>&1";
        return runCommand(command);
    }
    fs::path dir;
};

TEST_F(Qelcad, RunsAScriptWithTheModuleAndWritesTheTranscript) {
    const std::string script = write("s.scr", "SETVAR OSMODE 0\n"
                                              "TESTHELLO\n"
                                              "Grace Hopper\n"
                                              "_UCS _O 1,2,3\n"
                                              "_point 0,0,0\n"
                                              "LIST\n"
                                              "\n"
                                              "TESTDIALOG\n"
                                              "QUIT\n");
    const std::string answers = write("a.txt", "dialog 2001\n  name = Valve\n  ok\n");
    const Outcome run = qelcad("run --script " + script + " --answers " + answers +
                               " --transcript " + (dir / "t.log").string());
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("test: init"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("test: hello Grace Hopper"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("(10) 1.000000,2.000000,3.000000"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("test: dialog 1 name Valve"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("[dialog 2001 set: "), std::string::npos) << run.out;
    // Drawings are closed and modules unloaded on the way out.
    EXPECT_NE(run.out.find("test: unload Drawing1.dwg"), std::string::npos) << run.out;
    const std::string transcript = read("t.log");
    EXPECT_NE(transcript.find("test: hello Grace Hopper"), std::string::npos) << transcript;
    EXPECT_NE(transcript.find("test: unload"), std::string::npos) << transcript;
}

TEST_F(Qelcad, AScriptStopsAtTheFirstFailureWithItsLine) {
    const std::string script = write("s.scr", "SETVAR CMDECHO 0\nNOSUCH\nSETVAR OSMODE 1\n");
    const Outcome run = qelcad("run --script " + script);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("s.scr:2: NOSUCH failed"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("Enter new value for OSMODE"), std::string::npos) << run.out;
    // A cancelled command stops the script too.
    const std::string cancelled = write("c.scr", "_UCS\n^C\nQUIT\n");
    const Outcome second = qelcad("run --script " + cancelled);
    EXPECT_EQ(second.status, 1);
    EXPECT_NE(second.out.find("c.scr:1: _UCS was cancelled"), std::string::npos) << second.out;
}

TEST_F(Qelcad, RefusesWhatItCannotDoWithAReason) {
    const std::string script = write("s.scr", "QUIT\n");
    Outcome run = qelcad("run " + (dir / "plant.dxf").string() + " --script " + script);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.out.find("plant.dxf: cannot be read"), std::string::npos) << run.out;
    run = qelcad("run --script " + (dir / "missing.scr").string());
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.out.find("cannot read the script"), std::string::npos) << run.out;
    run = qelcad("run --script " + script + " --set OSMODE=99999");
    EXPECT_EQ(run.status, 2);
    run = qelcad("run");
    EXPECT_NE(run.status, 0);
    EXPECT_NE(run.out.find("--script is required"), std::string::npos) << run.out;
}

TEST_F(Qelcad, TheShellReadsCommandsAndAnswersFromTheTerminal) {
    const Outcome run =
        qelcad("shell --set ACADVER=17.2",
               "SETVAR\nACADVER\nTESTHELLO\n\x1b\nTESTASK\nre\n\n"
               "h\nNEW\nSETVAR\nDWGNAME\nSETVAR OSMODE 7\nSETVAR\nOSMODE\n\nQUIT\n");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("ACADVER = \"17.2\" (read only)"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("test: kword 5100 Restore"), std::string::npos) << run.out;
    // Escape cancels the prompt; the command goes on with what it got.
    EXPECT_NE(run.out.find("*Cancel*"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("test: hello \n"), std::string::npos) << run.out;
    // Enter at the command prompt repeats the last command.
    EXPECT_NE(run.out.find("test: kword 5100 Hide"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("DWGNAME = \"Drawing2.dwg\""), std::string::npos) << run.out;
    // Blanks end answers on a typed line, as at the host's command line.
    EXPECT_NE(run.out.find("Enter new value for OSMODE <7>"), std::string::npos) << run.out;
}

} // namespace

namespace {

// A drawing made by a script, saved, opened by the next run and described by info.
TEST_F(Qelcad, SavesOpensAndDescribesDrawings) {
    const std::string make = write("make.scr", "-LAYER N Pipes S Pipes\n\n"
                                               "_UCS _3P 1,2,3 1,3,3 0,2,3\n");
    const std::string first = (dir / "first.dxf").string();
    Outcome run = qelcad("run --no-autoload --script " + make + " --save " + first);
    ASSERT_EQ(run.status, 0) << run.out;
    const std::string second = (dir / "second.dxf").string();
    run = qelcad("run --no-autoload " + first + " --script " + write("none.scr", "") + " --save " +
                 second);
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(read("first.dxf"), read("second.dxf"));
    run = qelcad("info " + second, "", false);
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("Pipes: colour 7, on, thawed, unlocked, current"), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("UCS: current origin 1,2,3, X 0,1,0, Y -1,0,0"), std::string::npos)
        << run.out;
    run = qelcad("info --json " + second, "", false);
    EXPECT_NE(run.out.find("\"current\": true"), std::string::npos) << run.out;
    // A script that fails saves nothing.
    run = qelcad("run --no-autoload --script " + write("bad.scr", "NOSUCHCOMMAND\n") + " --save " +
                 (dir / "third.dxf").string());
    EXPECT_EQ(run.status, 1);
    EXPECT_FALSE(fs::exists(dir / "third.dxf"));
    run = qelcad("info " + (dir / "missing.dxf").string(), "", false);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.out.find("cannot be read"), std::string::npos) << run.out;
}

} // namespace
