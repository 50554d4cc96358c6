// An operator's round on an imported model: import the plant, move a pipe, draw a cylinder and
// a thick circle, erase a valve, save; the drawing holds exactly that.
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "../support/command.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class Operator : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("qelin-operator-" + std::to_string(::getpid()));
        fs::remove_all(dir);
        fs::create_directories(dir);
        ::setenv("QELCAD_REGISTRY", (dir / "registry.json").c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("QELCAD_REGISTRY");
        fs::remove_all(dir);
    }
    Outcome qelcad(const std::string& arguments) {
        return runCommand("cd " + dir.string() + " && " + QELCAD + " " + arguments +
                          " </dev/null 2>&1");
    }
    nlohmann::json info(const std::string& file) {
        const Outcome run = qelcad("info --json " + file);
        EXPECT_EQ(run.status, 0) << run.out;
        return run.status == 0 ? nlohmann::json::parse(run.out) : nlohmann::json();
    }
    // Entity handle to the module's kind name ("Cylinder", "Valve", ...), of the tagged ones.
    static std::map<std::string, std::string> tagged(const nlohmann::json& report) {
        std::map<std::string, std::string> out;
        for (const auto& t : report["tagged"]) {
            std::string name;
            if (!t["xdata"].empty()) name = t["xdata"][0].get<std::string>();
            out[t["handle"].get<std::string>()] = t["kind"].get<std::string>() + " " + name;
        }
        return out;
    }
    static int count(const nlohmann::json& report) {
        int n = 0;
        for (const auto& [kind, layers] : report["entities"].items())
            for (const auto& [layer, k] : layers.items())
                n += k.get<int>();
        return n;
    }
    fs::path dir;
};

TEST_F(Operator, ImportMoveDrawEraseSave) {
    const Outcome import =
        qelcad(std::string("import ") + QEL_SAMPLE_PLANT + " -o plant.dxf --solids --no-log");
    ASSERT_EQ(import.status, 0) << import.out;
    const nlohmann::json before = info("plant.dxf");
    const auto tags = tagged(before);
    // The first pipe and the valve's parts, as the import tagged them.
    std::string pipe;
    std::vector<std::string> valve;
    for (const auto& [handle, what] : tags) {
        if (pipe.empty() && what == "3DSOLID Cylinder") pipe = handle;
        if (what.starts_with("3DSOLID Valve")) valve.push_back(handle);
    }
    ASSERT_FALSE(pipe.empty()) << before.dump(1);
    ASSERT_FALSE(valve.empty()) << before.dump(1);
    std::string erase;
    for (const std::string& h : valve)
        erase += " #" + h;
    std::ofstream(dir / "work.scr") << "LIST #" << pipe << "\n"
                                    << "MOVE #" << pipe << "\n\n0,0,0 0,0,1.5\n"
                                    << "CYLINDER 4,4,0 0.3 2\n"
                                    << "SETVAR THICKNESS 1.2\n"
                                    << "CIRCLE -4,4 0.25\n"
                                    << "ERASE" << erase << "\n\n"
                                    << "LIST #" << pipe << "\n";
    const Outcome work =
        qelcad("run plant.dxf --no-autoload --script work.scr --save operated.dxf");
    ASSERT_EQ(work.status, 0) << work.out;
    EXPECT_NE(work.out.find(std::to_string(valve.size()) + " erased"), std::string::npos);
    // LIST before and after the move: the pipe's box went up by 1.5.
    const std::regex zSpan(R"(\n +Z: (-?[0-9.]+)  --  (-?[0-9.]+))");
    std::vector<double> lows;
    for (std::sregex_iterator it(work.out.begin(), work.out.end(), zSpan), end; it != end; ++it)
        lows.push_back(std::stod((*it)[1]));
    ASSERT_EQ(lows.size(), 2u) << work.out;
    EXPECT_NEAR(lows[1] - lows[0], 1.5, 1e-4) << "printed with four decimals";

    const nlohmann::json after = info("operated.dxf");
    EXPECT_EQ(count(after), count(before) - int(valve.size()) + 2);
    const auto kept = tagged(after);
    EXPECT_EQ(kept.at(pipe), tags.at(pipe)) << "the moved pipe keeps its tags";
    for (const std::string& h : valve)
        EXPECT_EQ(kept.count(h), 0u) << h;
    EXPECT_EQ(kept.size(), tags.size() - valve.size()) << "nothing else lost or gained a tag";
    EXPECT_EQ(after["entities"]["3DSOLID"]["0"], 1) << "the new cylinder, untagged";
    EXPECT_EQ(after["entities"]["CIRCLE"]["0"], 1) << "the thick circle";

    // The independent reader: what moved and what was drawn, and a clean audit.
    if (runCommand("/usr/bin/python3 -c 'import ezdxf' 2>/dev/null").status != 0)
        GTEST_SKIP() << "python3 with ezdxf is missing (Debian: python3-ezdxf)";
    const Outcome check = runCommand(
        "cd " + dir.string() +
        " && /usr/bin/python3 -c 'import ezdxf, sys\n"
        "a, b = ezdxf.readfile(\"plant.dxf\"), ezdxf.readfile(\"operated.dxf\")\n"
        "audit = b.audit()\n"
        "c = b.modelspace().query(\"CIRCLE\")[0]\n"
        "print(len(audit.errors), len(audit.fixes), c.dxf.center, c.dxf.radius, c.dxf.thickness)\n"
        "sys.exit(1 if audit.has_errors or audit.has_fixes else 0)' 2>&1");
    EXPECT_EQ(check.status, 0) << check.out;
    EXPECT_NE(check.out.find("0 0 (-4.0, 4.0, 0.0) 0.25 1.2"), std::string::npos) << check.out;
}

} // namespace
