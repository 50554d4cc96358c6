// Drawings the host writes, read by an independent reader (ezdxf): its strict read and audit,
// a raw-tag lint for what the audit misses, and what it finds compared with what the host holds.
#include <arx/acdb.h>
#include <dxf/summary.h>

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <filesystem>
#include <set>
#include <sys/wait.h>

#include "../support/command.h"
#include "module_drawing.h"

namespace fs = std::filesystem;

namespace {

Outcome run(const std::string& command) {
    return runCommand(command + " 2>&1");
}

constexpr const char* kPython = "/usr/bin/python3";

class EzdxfCheck : public ::testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(kPython) || run(std::string(kPython) + " -c 'import ezdxf'").status != 0)
            GTEST_SKIP() << "python3 with ezdxf is missing (Debian: python3-ezdxf); the "
                            "third-party checks of written drawings did not run";
        folder = fs::temp_directory_path() /
                 ("qel-ezdxf-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(folder);
        db = std::make_unique<AcDbDatabase>();
        acdbHostApplicationServices()->setWorkingDatabase(db.get());
    }
    void TearDown() override {
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    std::string save(AcDbDatabase& drawing, const char* name) {
        const std::string path = (folder / name).string();
        std::string message;
        EXPECT_TRUE(dxf::saveDrawing(drawing, path, message)) << message;
        return path;
    }
    static Outcome tool(const char* script, const std::string& argument) {
        return run(std::string(kPython) + " " + QEL_DXF_CHECK + "/" + script + " '" + argument +
                   "'");
    }
    // ezdxf's report of a file, which must read and audit clean and pass the lint.
    static nlohmann::json checkedReport(const std::string& path) {
        const Outcome lint = tool("dxf_lint.py", path);
        EXPECT_EQ(lint.status, 0) << lint.out;
        const Outcome report = tool("dxf_report.py", path);
        EXPECT_EQ(report.status, 0) << report.out.substr(0, 4000);
        try {
            return nlohmann::json::parse(report.out);
        } catch (const std::exception& e) {
            ADD_FAILURE() << "the report is no JSON: " << e.what() << "\n"
                          << report.out.substr(0, 2000);
            return {};
        }
    }

    fs::path folder;
    std::unique_ptr<AcDbDatabase> db;
};

std::string handleText(AcDbObjectId id) {
    return dxf::formatHandle(Adesk::UInt64(id.handle()));
}

// The entities ezdxf found, by handle.
std::map<std::string, nlohmann::json> entitiesByHandle(const nlohmann::json& report) {
    std::map<std::string, nlohmann::json> out;
    for (const nlohmann::json& e : report["entities"])
        out[e["handle"].get<std::string>()] = e;
    return out;
}

void expectSameAsHost(const nlohmann::json& report, AcDbDatabase& drawing) {
    const dxf::DrawingSummary host = dxf::summarize(drawing);
    // Entities by kind.
    std::map<std::string, int> kinds;
    for (const auto& [kind, layers] : host.entities)
        for (const auto& [layer, n] : layers)
            kinds[kind] += n;
    using Counts = std::map<std::string, int>;
    EXPECT_EQ(report["entity_counts"].get<Counts>(), kinds);
    // Layers and their state; the index of a true-colour layer is its nearest one. ezdxf makes
    // its "Defpoints" layer when a drawing lacks it.
    ASSERT_EQ(report["layers"].size() - report["layers"].count("Defpoints"), host.layers.size());
    for (const dxf::DrawingSummary::Layer& l : host.layers) {
        const nlohmann::json& r = report["layers"][l.name];
        EXPECT_EQ(r["on"].get<bool>(), l.on) << l.name;
        EXPECT_EQ(r["frozen"].get<bool>(), l.frozen) << l.name;
        EXPECT_EQ(r["locked"].get<bool>(), l.locked) << l.name;
        EXPECT_EQ(std::abs(r["color"].get<int>()), l.color) << l.name;
        if (l.trueColor) {
            EXPECT_EQ(r["true_color"].get<unsigned>(), *l.trueColor) << l.name;
        }
    }
    // Groups with their members.
    ASSERT_EQ(report["groups"].size(), host.groups.size());
    for (const dxf::DrawingSummary::Group& g : host.groups) {
        const nlohmann::json& r = report["groups"][g.name];
        EXPECT_EQ(r["unnamed"].get<int>() != 0, g.anonymous) << g.name;
        EXPECT_EQ(r["selectable"].get<int>() != 0, g.selectable) << g.name;
        const auto members = r["handles"].get<std::vector<std::string>>();
        EXPECT_EQ(std::set<std::string>(members.begin(), members.end()),
                  std::set<std::string>(g.members.begin(), g.members.end()))
            << g.name;
    }
    // The UCS table and the current UCS.
    for (const dxf::DrawingSummary::Ucs& u : host.ucss) {
        const nlohmann::json& r = report["ucs"][u.name];
        EXPECT_EQ(r["origin"].get<std::vector<double>>(),
                  (std::vector<double>{u.origin.x, u.origin.y, u.origin.z}));
        EXPECT_EQ(r["xaxis"].get<std::vector<double>>(),
                  (std::vector<double>{u.xAxis.x, u.xAxis.y, u.xAxis.z}));
    }
    EXPECT_EQ(
        report["header"]["$UCSORG"].get<std::vector<double>>(),
        (std::vector<double>{host.current.origin.x, host.current.origin.y, host.current.origin.z}));
    // The module's extended data and X-records, entity by entity.
    const auto found = entitiesByHandle(report);
    for (const dxf::DrawingSummary::Tagged& t : host.tagged) {
        ASSERT_TRUE(found.count(t.handle)) << t.handle;
        const nlohmann::json& e = found.at(t.handle);
        std::vector<std::string> texts;
        for (const nlohmann::json& item : e["xdata"][dxf::kModuleApplication])
            texts.push_back(item[1].get<std::string>());
        EXPECT_EQ(texts, t.xdata) << t.handle;
        for (const std::string& key : t.records)
            EXPECT_TRUE(e["extension_dict"].contains(key)) << t.handle << " " << key;
    }
}

TEST_F(EzdxfCheck, AHostDrawingReadsAuditsAndLintsClean) {
    buildModuleDrawing(*db);
    const nlohmann::json report = checkedReport(save(*db, "module.dxf"));
    EXPECT_TRUE(report["audit"]["errors"].empty()) << report["audit"].dump();
    EXPECT_TRUE(report["audit"]["fixes"].empty()) << report["audit"].dump();
    EXPECT_EQ(report["acadver"], "AC1024");
    expectSameAsHost(report, *db);
}

TEST_F(EzdxfCheck, TheMemberRecordReadsBackItemForItem) {
    const std::vector<AcDbObjectId> ids = buildModuleDrawing(*db);
    const auto found = entitiesByHandle(checkedReport(save(*db, "record.dxf")));
    const nlohmann::json& tags =
        found.at(handleText(ids[0]))["extension_dict"]["MemberRec"]["tags"];
    const nlohmann::json expected = nlohmann::json::parse(
        R"([[1,"C:\\plant one.qel"],[1,"*A3"],[90,7],[90,-40000],[40,0.1],[40,1e-300],)"
        R"([40,-2.5e17],[1,"1F"]])");
    EXPECT_EQ(tags, expected);
}

// The drawing ezdxf makes with one of each kind opens in the host with everything and saves back
// clean: what ezdxf reads from the saved file is what it read from its own.
TEST_F(EzdxfCheck, EzdxfsDrawingOfEveryKindSavesBackClean) {
    const std::string made = (folder / "made.dxf").string();
    const Outcome make = tool("make_test_dxf.py", made);
    ASSERT_EQ(make.status, 0) << make.out;
    std::string message;
    std::unique_ptr<AcDbDatabase> opened = dxf::openDrawing(made, message);
    ASSERT_NE(opened, nullptr) << message;
    const nlohmann::json before = checkedReport(made);
    const nlohmann::json after = checkedReport(save(*opened, "saved.dxf"));
    EXPECT_TRUE(after["undecodable_entities"].empty()) << after["undecodable_entities"].dump();
    EXPECT_EQ(after["entity_counts"], before["entity_counts"]);
    EXPECT_EQ(after["objects_counts"], before["objects_counts"]);
    EXPECT_EQ(after["ucs"], before["ucs"]);
    EXPECT_EQ(after["header"]["$UCSORG"], before["header"]["$UCSORG"]);
    EXPECT_EQ(after["header"]["$INSUNITS"], before["header"]["$INSUNITS"]);
    EXPECT_EQ(after["layers"], before["layers"]);
    for (const auto& [name, group] : before["groups"].items()) {
        const auto a = after["groups"][name]["handles"].get<std::vector<std::string>>();
        const auto b = group["handles"].get<std::vector<std::string>>();
        EXPECT_EQ(std::set<std::string>(a.begin(), a.end()),
                  std::set<std::string>(b.begin(), b.end()));
        EXPECT_EQ(after["groups"][name]["unnamed"], group["unnamed"]);
        EXPECT_EQ(after["groups"][name]["selectable"], group["selectable"]);
    }
    const auto a = entitiesByHandle(after), b = entitiesByHandle(before);
    ASSERT_EQ(a.size(), b.size());
    for (const auto& [handle, entity] : b) {
        ASSERT_TRUE(a.count(handle)) << handle;
        nlohmann::json x = a.at(handle), y = entity;
        // The host puts a group among its members' reactors and writes the normal of every
        // ellipse.
        x.erase("reactors"), y.erase("reactors");
        if (y["type"] == "ELLIPSE") x.erase("extrusion"), y.erase("extrusion");
        // A solid or region is read into the host and written anew by its own SAT writer: the
        // same bodies, faces, loops, coedges and surfaces, in another header and line count.
        if (y.contains("acis_faces")) {
            for (nlohmann::json* j : {&x, &y})
                j->erase("sat_header"), j->erase("sat_lines");
        }
        EXPECT_EQ(x, y) << handle;
    }
}

} // namespace
