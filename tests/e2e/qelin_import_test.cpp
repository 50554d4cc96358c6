// The import from the user's side: qelcad with the module loaded, scripts and answers in, the
// transcript, the log and the settings out.
#include "drawing_summary.h"
#include "records/xrecords.h"
#include "shell/settings_store.h"

#include <nlohmann/json.hpp>
#include <qel/qel_json.h>

#include <gtest/gtest.h>

#include "qelcad_fixture.h"

#include <arx/dbblkref.h>
#include <arx/dbsol3d.h>
#include <dxf/drawing.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

using QelinEndToEnd = QelcadEndToEnd;

TEST_F(QelinEndToEnd, StartUpLoadsTheCompanionAndAnnouncesTheCommands) {
    const Outcome run = qelcad("run --script " + write("s.scr", "QUIT\n"));
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_FALSE(has(run.out, "ToviQelOut.dll")) << "the companion lies beside the module";
    EXPECT_FALSE(has(run.out, "acbr17.dbx")) << "the host has the boundary walk already";
    EXPECT_TRUE(has(run.out, "Loading Velmora QEL Plugin Version 6.1 (Build 170)...\n"));
    EXPECT_TRUE(has(run.out, "  Commands added: QELIN, QELOUT, QELXPLODE, QELANN\n  If you do not "
                             "see ribbon tab QEL, run QELMENU command twice to update it.\n"));
}

TEST_F(QelinEndToEnd, WithoutTheCompanionStartUpReportsItsErrorAndGoesOn) {
    // A module folder holding the module alone.
    const fs::path modules = dir / "modules";
    fs::create_directories(modules);
    fs::create_symlink(fs::path(QELCAD).parent_path() / "QelIn.arx", modules / "QelIn.arx");
    const Outcome run = qelcad("run --modules " + modules.string() + " --script " +
                               write("s.scr", "QELMENU\nQUIT\n"));
    EXPECT_EQ(run.status, 0) << run.out;
    const auto error = run.out.find("ERROR: Loading ToviQelOut.dll.\\nThis may cause errors if "
                                    "you call QelOut.\\n\\n\\nSuppress all non-critical error "
                                    "messages? | caption=qelcad type=36");
    const auto banner = run.out.find("Loading Velmora QEL Plugin Version 6.1 (Build 170)...\n");
    ASSERT_NE(error, std::string::npos) << run.out;
    ASSERT_NE(banner, std::string::npos) << run.out;
    EXPECT_LT(error, banner) << "the error comes first and start-up goes on";
    // The module's commands run; its menu files are not in this folder.
    EXPECT_TRUE(has(run.out, "Unable to find customization file VelmoraQEL.CUIX")) << run.out;
}

TEST_F(QelinEndToEnd, AFirstRunMakesTheKeyAndALaterRunKeepsTheChoices) {
    ASSERT_FALSE(KeyExists(QEL_SETTINGS_KEY));
    const std::string logs = (dir / "logs").string() + "/";
    const std::string answers = write("first.txt", "dialog 1001\n  file = " + plant +
                                                       "\n  blocks = on\n  points = on\n"
                                                       "  default-path = off\n  log-folder = " +
                                                       logs + "\n  units = Millimeters\n  ok\n");
    const Outcome first =
        qelcad("run --script " + write("s.scr", "QELIN\nQUIT\n") + " --answers " + answers);
    EXPECT_EQ(first.status, 0) << first.out;
    EXPECT_TRUE(has(first.out, "[dialog 1001 opened]")) << first.out;
    EXPECT_EQ(text(L"LastOpenDir"), fs::path(plant).wstring());
    EXPECT_EQ(text(L"ImportAcisSolids"), L"1") << "blocks";
    EXPECT_EQ(number(L"ImportDwgUnits"), 1u);
    EXPECT_EQ(text(L"LogFilePath"), fs::path(logs).wstring());
    EXPECT_EQ(number(L"CreateLog"), 1u);
    EXPECT_EQ(number(L"CheckBoxesState"), 1u);
    EXPECT_EQ(number(L"SurpressErrorMessages"), 0u) << "the run writes a number over the text";
    const std::string log = read(dir / "logs" / "Drawing1.log");
    ASSERT_FALSE(log.empty()) << first.out;
    EXPECT_TRUE(has(log, "\n Import units set to : Millimeters")) << log;
    const std::string total =
        "\n\n Total Errors Processing Objects: " + std::to_string(number(L"ImportErrorCount")) +
        "\n\n";
    EXPECT_EQ(log.substr(log.size() - total.size()), total) << "the total ends the log";

    // A later run: the dialog opens with what the first left behind and nothing answered.
    const Outcome later = qelcad("run --script " + write("s2.scr", "QELIN\nQUIT\n"));
    EXPECT_EQ(later.status, 0) << later.out;
    EXPECT_EQ(text(L"ImportAcisSolids"), L"1");
    EXPECT_EQ(number(L"CheckBoxesState"), 1u);
    EXPECT_EQ(number(L"ImportDwgUnits"), 0u) << "a new document starts from MEASUREINIT";
}

TEST_F(QelinEndToEnd, QelinaTakesTheFileFromTheScript) {
    ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    const std::string script = write("a.scr", "QELINA\n" + plant + "\nQUIT\n");
    const Outcome run = qelcad("run --script " + script);
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(has(run.out, "QEL file name to load:" + plant)) << run.out;
    EXPECT_TRUE(has(run.out, "\n Importing file:" + plant)) << run.out;
    EXPECT_EQ(text(L"LastOpenDir"), fs::path(plant).wstring());

    const Outcome cancelled = qelcad("run --script " + script + " --answers " +
                                     write("c.txt", "dialog 1001\n  cancel\n"));
    EXPECT_TRUE(has(cancelled.out, "\n Import script file cancelled.")) << cancelled.out;
}

TEST_F(QelinEndToEnd, ImportRefusesAScaleWithTheDialogsOwnMessage) {
    const Outcome run = qelcad("import " + plant + " -o out.dxf --scale 0.000005");
    EXPECT_EQ(run.status, 1) << run.out;
    EXPECT_TRUE(has(run.out, "qelcad: Import Options...: Please enter a value greater than "
                             "'0.000001'\n"))
        << run.out;
    EXPECT_FALSE(fs::exists(dir / "out.dxf"));
}

TEST_F(QelinEndToEnd, ImportSavesTheDrawingWithEverythingItMade) {
    const Outcome run = qelcad("import " + plant + " -o out.dxf --units 2 --points --log-dir " +
                               (dir / "logs").string());
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(has(run.out, "\nLayers (4):\n  0  colour 7\n  Piping  colour 152\n  Equipment  "
                             "colour 95\n  Steel  colour 22  off\n"))
        << run.out;
    EXPECT_TRUE(has(run.out, "\nNamed UCSs (3): North Plant Pump Skid Site\n")) << run.out;
    // Without --verbose the scripted answers stay out of sight.
    EXPECT_FALSE(has(run.out, "[dialog ")) << run.out;
    EXPECT_EQ(number(L"ImportDwgUnits"), 2u);
    EXPECT_EQ(number(L"CheckBoxesState"), 1u);
    EXPECT_TRUE(fs::exists(dir / "logs" / "Drawing1.log"));
    // The sample's elbow, reducer and steel members are all built, with no error.
    for (const char* built : {"Elbow", "Reducer", "StdShapeExtrusion"})
        EXPECT_FALSE(has(run.out, std::string(" ") + built + " objects are not imported"))
            << built << ":\n"
            << run.out;
    EXPECT_FALSE(has(run.out, "Total Errors Processing Objects")) << run.out;

    // The saved drawing, read back: solids through their SAT text, layers with their state,
    // the named systems, and the module's records on what it made.
    const Outcome info = qelcad("info out.dxf --json");
    ASSERT_EQ(info.status, 0) << info.out;
    const nlohmann::json drawing = nlohmann::json::parse(info.out);
    EXPECT_GT(drawing["entities"]["3DSOLID"]["Piping"].get<int>(), 0) << info.out;
    EXPECT_EQ(drawing["entities"]["3DSOLID"]["Steel"].get<int>(), 2) << info.out;
    EXPECT_EQ(drawing["layers"]["Steel"]["on"], false);
    EXPECT_EQ(drawing["layers"]["Piping"]["color"], 152);
    EXPECT_TRUE(drawing["ucs"]["table"].contains("Pump Skid")) << info.out;
    bool tagged = false;
    for (const auto& entity : drawing["tagged"])
        tagged = tagged || (entity["kind"] == "3DSOLID" &&
                            entity["records"].dump().find("MemberRec") != std::string::npos);
    EXPECT_TRUE(tagged) << info.out;
    // The patch with its hole cut out, and the geometric group.
    bool patch = false;
    for (const auto& entity : drawing["tagged"])
        patch = patch || (entity["kind"] == "REGION" &&
                          entity["xdata"].dump().find("PlanarPatch") != std::string::npos);
    EXPECT_TRUE(patch) << info.out;
    int groups = 0;
    for (const auto& group : drawing["groups"])
        groups += group["description"] == "GGroup" ? 1 : 0;
    EXPECT_EQ(groups, 1) << info.out;
}

TEST_F(QelinEndToEnd, ImportIntoADrawingKeepsWhatItHeld) {
    const Outcome base =
        qelcad("run --script " + write("b.scr", "-LAYER N Survey\n\nQUIT\n") + " --save base.dxf");
    ASSERT_EQ(base.status, 0) << base.out;
    const Outcome run = qelcad("import " + plant + " -o merged.dxf --into base.dxf --no-log");
    EXPECT_EQ(run.status, 0) << run.out;
    const Outcome info = qelcad("info merged.dxf --json");
    ASSERT_EQ(info.status, 0) << info.out;
    const nlohmann::json drawing = nlohmann::json::parse(info.out);
    EXPECT_TRUE(drawing["layers"].contains("Survey")) << info.out;
    EXPECT_TRUE(drawing["layers"].contains("Piping")) << info.out;
    EXPECT_TRUE(fs::exists(dir / "base.dxf")) << "the drawing imported into stays as it was";
}

TEST_F(QelinEndToEnd, ImportChoosesTheCoordinateSystemByName) {
    const Outcome run = qelcad("import " + plant + " -o out.dxf --verbose --cs \"Pump Skid\" " +
                               "--log-dir " + (dir / "logs").string());
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(has(run.out, "[dialog 1005 set: Coordinate system (1027) = Pump Skid (script)]"))
        << run.out;
    EXPECT_TRUE(
        has(read(dir / "logs" / "Drawing1.log"), "\n User selected coordinate system : Pump Skid"));

    const Outcome unknown = qelcad("import " + plant + " -o out.dxf --cs Nowhere --no-log");
    EXPECT_EQ(unknown.status, 1) << unknown.out;
    EXPECT_TRUE(has(unknown.out, "qelcad: ")) << unknown.out;
}

TEST_F(QelinEndToEnd, ContradictingOptionsAndDrawingsToOpenStopBeforeAnything) {
    const Outcome both = qelcad("import " + plant + " -o out.dxf --blocks --solids");
    EXPECT_EQ(both.status, 2);
    EXPECT_TRUE(has(both.out, "qelcad: --blocks and --solids exclude each other")) << both.out;
    const Outcome into = qelcad("import " + plant + " -o out.dxf --into base.dxf");
    EXPECT_EQ(into.status, 2);
    EXPECT_TRUE(has(into.out, "qelcad: base.dxf: cannot be read")) << into.out;
    EXPECT_FALSE(has(into.out, "Loading Velmora")) << "the host didn't start";
    EXPECT_FALSE(KeyExists(QEL_SETTINGS_KEY));
}

// Usage errors end with status 2 like every other bad option, whatever the parser calls them.
TEST_F(QelinEndToEnd, UsageErrorsEndWithStatusTwo) {
    for (const char* arguments :
         {"", "bogus", "info", "info a.dxf b.dxf", "import " /*no -o*/, "run --frobnicate"}) {
        const Outcome run = qelcad(arguments);
        EXPECT_EQ(run.status, 2) << "qelcad " << arguments << "\n" << run.out;
        EXPECT_TRUE(has(run.out, "--help")) << run.out;
    }
    EXPECT_EQ(qelcad("--help").status, 0);
}

// Ctrl-C at the import dialog cancels it as at the command prompt; the session goes on, and the
// next command is read.
TEST_F(QelinEndToEnd, CtrlCAtTheImportDialogCancelsItAndTheSessionGoesOn) {
    const std::string script = "mkfifo in; " + std::string(QELCAD) +
                               " shell < in > out.txt 2>&1 & pid=$!; exec 3> in; "
                               "echo QELIN >&3; "
                               // Ctrl-C once the dialog is on screen, however slow the start.
                               "for i in $(seq 600); do grep -q 'Import Options' out.txt && "
                               "break; sleep 0.1; done; sleep 0.2; kill -INT $pid; sleep 0.5; "
                               "printf 'SETVAR\\nOSMODE\\n\\nQUIT\\n' >&3; wait $pid";
    const Outcome run = qelcad("--help >/dev/null; " + script);
    const std::string out = read(dir / "out.txt");
    EXPECT_EQ(run.status, 0) << run.out << out;
    EXPECT_FALSE(KeyExists(QEL_SETTINGS_KEY)) << "a cancelled dialog stores nothing";
    EXPECT_TRUE(has(out, "OSMODE")) << "the command after Ctrl-C was read\n" << out;
}

// An output that could never be saved is refused before the import runs, not after it.
TEST_F(QelinEndToEnd, AnOutputThatCannotBeSavedStopsBeforeTheImport) {
    const Outcome dwg = qelcad("import " + plant + " -o out.dwg --no-log");
    EXPECT_EQ(dwg.status, 2);
    EXPECT_TRUE(has(dwg.out, "qelcad: out.dwg: drawings are saved as DXF: give a name ending in "
                             ".dxf"))
        << dwg.out;
    const Outcome folder = qelcad("import " + plant + " -o no/such/out.dxf --no-log");
    EXPECT_EQ(folder.status, 2);
    EXPECT_TRUE(has(folder.out, "qelcad: no/such/out.dxf: the folder no/such does not exist"))
        << folder.out;
    EXPECT_FALSE(has(dwg.out + folder.out, "Loading Velmora")) << "the host didn't start";
    EXPECT_FALSE(KeyExists(QEL_SETTINGS_KEY));
    EXPECT_EQ(qelcad("import " + plant + " -o OUT.DXF --no-log").status, 0);
}

TEST_F(QelinEndToEnd, APersonAtTheTerminalIsToldWhatTheDialogRefusesAndAskedAgain) {
    const std::string input = "No\n" // the companion's error: don't suppress
                              "QELIN\n"
                              "file = " +
                              plant +
                              "\n"
                              "units = User defined\n"
                              "scale = 0.000005\n"
                              "OK\n"
                              "\n" // the message box
                              "scale = 2\n"
                              "log = off\n"
                              "OK\n"
                              "OK\n" // the coordinate-system dialog as it opens
                              "QUIT\n";
    const Outcome run = qelcad("shell", input);
    EXPECT_EQ(run.status, 0) << run.out;
    const auto refused = run.out.find("Please enter a value greater than '0.000001'");
    const auto again = run.out.find("Scale Factor: [2]");
    const auto read = run.out.find("Reading Qel file... " + plant);
    ASSERT_NE(refused, std::string::npos) << run.out;
    ASSERT_NE(again, std::string::npos) << run.out;
    ASSERT_NE(read, std::string::npos) << run.out;
    EXPECT_LT(refused, again);
    EXPECT_LT(again, read) << "the import starts after the second OK";
    EXPECT_TRUE(has(run.out, "Browse for *.qel file to import")) << "tips are shown";
    EXPECT_EQ(number(L"ImportDwgUnits"), 9u);
    EXPECT_EQ(number(L"CreateLog"), 0u);
}

TEST_F(QelinEndToEnd, ACancelledImportEndsWithStatusOneAndItsReason) {
    const Outcome choice = qelcad("import " + plant + " -o out.dxf --no-log --answers " +
                                  write("cs.txt", "dialog 1005\n  cancel\n"));
    EXPECT_EQ(choice.status, 1) << choice.out;
    EXPECT_TRUE(has(choice.out, "\n User cancelled, import stopped."));
    EXPECT_TRUE(has(choice.out, "qelcad: the choice of coordinate system was cancelled: nothing "
                                "was imported\n"));

    const Outcome progress =
        qelcad("import " + plant + " -o out.dxf --log-dir " + (dir / "logs").string() +
               " --answers " + write("p.txt", "progress cancel 3\n"));
    EXPECT_EQ(progress.status, 1) << progress.out;
    EXPECT_TRUE(has(progress.out, "qelcad: the import was cancelled from its progress dialog\n"));
    EXPECT_TRUE(has(read(dir / "logs" / "Drawing1.log"), "\n User canceled, import stopped.\n"));
    EXPECT_FALSE(has(progress.out, "saving drawings")) << "a cancelled import isn't saved";
}

TEST_F(QelinEndToEnd, AMissingOrCorruptFileIsRefusedByTheDialogAndNothingIsStored) {
    const Outcome missing = qelcad("import nothing.qel -o out.dxf --no-log");
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(has(missing.out, "qelcad: Import Options...: Filename does not exist.\n"))
        << missing.out;
    const std::string corrupt = write("corrupt.qel", "not an object file");
    const Outcome bad = qelcad("import " + corrupt + " -o out.dxf --no-log");
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(
        has(bad.out, "qelcad: Import Options...: '" + corrupt + "' is not a QEL object file\n"))
        << bad.out;
    EXPECT_FALSE(KeyExists(QEL_SETTINGS_KEY)) << "a refused dialog stores nothing";
}

// QELANN on an import: the tee's texts hidden with Enter, then shown again after Escape at the
// keyword prompt; the last entity (the tee's second text) is listed after each.
TEST_F(QelinEndToEnd, QelannHidesWithEnterAndRestoresAfterEscape) {
    const std::string value =
        R"("object", {"class": "StrAnnotation", "params": [["value", "string", "L-7"]]})";
    const std::string file = (dir / "tee.qel").string();
    QelInit(0, 0, QelInitWords);
    qeljson::build(
        R"({"format": "qel-json-1", "objects": [
        {"class": "Tee", "params": [["radius", "double", 0.1], ["height", "double", 0.4],
            ["branchradius", "double", 0.08], ["branchheight", "double", 0.3],
            ["annotations", "object", {"class": "A", "params": [["Line", )" +
            value + R"(], ["Class", )" + value + R"(]]}]]},
        {"class": "Layer", "params": [["name", "string", "Piping"], ["objectList", "uint[]", [0]]]},
        {"class": "LayerMgr", "params": [["layerList", "uint[]", [1]]]},
        {"class": "ModelSpace", "params": [["layerMgr", "uint", 2], ["objectList", "uint[]", [0]]]},
        {"class": "Header", "params": [["rootLocation", "uint", 3]]}]})",
        "tee", file);
    const std::string answers = write("a.txt", "dialog 1001\n  file = " + file + "\n  ok\n");
    const Outcome run = qelcad("run --script " +
                               write("s.scr", "QELIN\nQELANN\nALL\n\n\nLIST\n\n"
                                              "QELANN\nALL\n\n\x1b\nLIST\n\nQUIT\n") +
                               " --answers " + answers);
    EXPECT_EQ(run.status, 0) << run.out;
    const auto hidden = run.out.find("\nCommand: LIST");
    const auto cancelled = run.out.find("\n User canceled");
    const auto shown = run.out.find("\nCommand: LIST", hidden + 1);
    ASSERT_NE(shown, std::string::npos) << run.out;
    ASSERT_NE(cancelled, std::string::npos) << run.out;
    ASSERT_LT(cancelled, shown);
    const std::string first = run.out.substr(hidden, cancelled - hidden);
    const std::string second = run.out.substr(shown);
    EXPECT_TRUE(has(first, "\"Class: L-7\"")) << run.out;
    EXPECT_TRUE(has(first, "(60) 1")) << "invisible after Enter: " << first;
    EXPECT_TRUE(has(second, "\"Class: L-7\"")) << run.out;
    EXPECT_FALSE(has(second, "(60) 1")) << "visible again after Escape: " << second;
    EXPECT_TRUE(has(run.out, "Restore or Hide annotations - [Restore/Hide]<Hide>: ")) << run.out;
}

// The creators' fixtures through qelcad: what each makes, by layer and kind, and the error total
// the import tells, with cylinders in both forms.
TEST_F(QelinEndToEnd, ImportMakesTheEntitiesOfTheCreatorFixtures) {
    struct Case {
        const char* fixture;
        const char* form;
        const char* entities;
        const char* errors; // null: none
    };
    const Case cases[] = {
        {"cylinder_solid", "--solids", "Pipes: AcDb3dSolid x3 AcDbLine x2 AcDbText x1", nullptr},
        {"cylinder_blocks", "--blocks", "Pipes: AcDbBlockReference x5 AcDbCircle x1 AcDbLine x5",
         nullptr},
        {"cone", "--solids", "Model: AcDb3dSolid x2 AcDbLine x2", "Processing Objects: 1\\n"},
        {"line_polyline", "--blocks", "Model: AcDb3dPolyline x1 AcDbLine x1 AcDbText x2",
         "Processing Objects: 2\\n"},
        {"bspline_fit", "--solids", "Model: AcDbSpline x4", "Processing Objects: 1\\n"},
    };
    QelInit(0, 0, QelInitWords);
    for (const Case& c : cases) {
        const std::string name = c.fixture;
        const std::string file = (dir / (name + ".qel")).string();
        qeljson::build(read(fs::path(QEL_CREATOR_FIXTURE_DIR) / (name + ".json")), name, file);
        const Outcome run = qelcad("import " + file + " -o out.dxf " + c.form + " --log-dir " +
                                   (dir / "logs").string());
        EXPECT_EQ(run.status, 0) << run.out;
        EXPECT_TRUE(has(run.out, c.entities)) << name << ":\n" << run.out;
        EXPECT_EQ(has(run.out, "Total Errors Processing Objects"), c.errors != nullptr) << run.out;
        if (c.errors) {
            EXPECT_TRUE(has(run.out, c.errors)) << name << ":\n" << run.out;
        }
    }
}

namespace {

// What a saved drawing holds of the module's making, read back in this process: every block
// reference, tagged or not, and every tagged solid with its object number and mass properties.
struct Held {
    std::map<int, std::string> references; // object number -> handle of its tagged reference
    int untaggedReferences = 0;
    struct Solid {
        double volume;
        AcGePoint3d centroid;
        double size; // the longest side of its box
    };
    std::map<int, std::vector<Solid>> solids; // by volume
    std::vector<std::string> others;          // handles of everything but block references
    int entities = 0;
};

std::string handleOf(const AcDbEntity& entity) {
    return dxf::formatHandle(Adesk::UInt64(entity.objectId().handle()));
}

int taggedObject(AcDbEntity& entity) {
    resbuf* chain = QelGetXrecordChain(&entity, L"MemberRec");
    int object = -1;
    int item = 0;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext, ++item)
        if (item == 3) object = rb->resval.rlong; // file, group name, member type, object
    acutRelRb(chain);
    return object;
}

Held heldIn(const fs::path& drawing) {
    Held held;
    std::string message;
    std::unique_ptr<AcDbDatabase> db = dxf::openDrawing(drawing.string(), message);
    EXPECT_NE(db, nullptr) << message;
    if (!db) return held;
    held.entities = creatorstest::CountModelSpace(*db, [&held](AcDbEntity& entity) {
        const int object = taggedObject(entity);
        if (AcDbBlockReference::cast(&entity)) {
            if (object < 0)
                ++held.untaggedReferences;
            else
                held.references[object] = handleOf(entity);
            return true;
        }
        held.others.push_back(handleOf(entity));
        if (auto* solid = AcDb3dSolid::cast(&entity); solid && object >= 0) {
            double moments[3], products[3], principal[3], gyration[3];
            AcGeVector3d axes[3];
            AcDbExtents box;
            Held::Solid made;
            EXPECT_EQ(solid->getMassProp(made.volume, made.centroid, moments, products, principal,
                                         axes, gyration, box),
                      Acad::eOk);
            const AcGeVector3d diagonal = box.maxPoint() - box.minPoint();
            made.size = std::max({diagonal.x, diagonal.y, diagonal.z});
            held.solids[object].push_back(made);
        }
        return true;
    });
    for (auto& [object, made] : held.solids)
        std::sort(made.begin(), made.end(),
                  [](const Held::Solid& a, const Held::Solid& b) { return a.volume < b.volume; });
    return held;
}

// Solids made again from their objects are the solids a solid import makes of them: the same
// creator under the same settings, so they differ only by what writing a drawing's solid text
// and reading it back rounds, a few units of the last place of the size.
void expectSameSolids(const Held& exploded, const Held& solidImport, const std::set<int>& objects) {
    for (int object : objects) {
        ASSERT_TRUE(exploded.solids.count(object)) << "object " << object;
        ASSERT_TRUE(solidImport.solids.count(object)) << "object " << object;
        const std::vector<Held::Solid>& made = exploded.solids.at(object);
        const std::vector<Held::Solid>& expected = solidImport.solids.at(object);
        ASSERT_EQ(made.size(), expected.size()) << "object " << object;
        for (std::size_t i = 0; i < made.size(); ++i) {
            const Held::Solid& a = made[i];
            const Held::Solid& b = expected[i];
            const double length = 64 * std::numeric_limits<double>::epsilon() * b.size;
            EXPECT_NEAR(a.volume, b.volume, 3 * length * b.size * b.size) << "object " << object;
            EXPECT_LE(a.centroid.distanceTo(b.centroid), length) << "object " << object;
        }
    }
}

std::set<int> keysOf(const auto& map) {
    std::set<int> keys;
    for (const auto& [key, value] : map)
        keys.insert(key);
    return keys;
}

class Explode : public QelinEndToEnd {
protected:
    // The creators' fixture as a file, imported in both forms: blocks.dxf and solids.dxf.
    void importBoth(const std::string& fixture) {
        QelInit(0, 0, QelInitWords);
        file = (dir / (fixture + ".qel")).string();
        qeljson::build(read(fs::path(QEL_CREATOR_FIXTURE_DIR) / (fixture + ".json")), fixture,
                       file);
        for (const char* form : {"blocks", "solids"}) {
            const Outcome run =
                qelcad("import " + file + " -o " + form + ".dxf --" + form + " --no-log");
            ASSERT_EQ(run.status, 0) << run.out;
        }
    }
    // QELXPLODE on the saved drawing with these answers at the selection prompt, saved anew.
    Outcome explode(const std::string& from, const std::string& selection, const std::string& to) {
        const Outcome run =
            qelcad("run " + from + " --script " +
                   write("x.scr", "QELXPLODE\n" + selection + "\n\nQUIT\n") + " --save " + to);
        EXPECT_EQ(run.status, 0) << run.out;
        return run;
    }
    void addForeignReference();
    void explodeAll();
    static void expectAuditedClean(const fs::path& drawing) {
        const Outcome audit =
            runCommand("/usr/bin/python3 -c \"import ezdxf,sys; d=ezdxf.readfile(sys.argv[1]); "
                       "a=d.audit(); print(len(a.errors), len(a.fixes))\" " +
                       drawing.string() + " 2>&1");
        EXPECT_EQ(audit.status, 0) << audit.out;
        EXPECT_EQ(audit.out, "0 0\n") << drawing;
    }

    std::string file;
};

} // namespace

TEST_F(Explode, EveryReferenceBecomesTheSolidOfTheSolidImportAndOthersStay) {
    for (const char* fixture : {"cylinder_blocks", "steel_members_blocks"}) {
        SCOPED_TRACE(fixture);
        importBoth(fixture);
        addForeignReference();
        explodeAll();
    }
}

// A block reference the module didn't make, beside the imported ones.
void Explode::addForeignReference() {
    std::string message;
    std::unique_ptr<AcDbDatabase> db = dxf::openDrawing((dir / "blocks.dxf").string(), message);
    ASSERT_NE(db, nullptr) << message;
    AcDbObjectId block;
    creatorstest::CountModelSpace(*db, [&block](AcDbEntity& entity) {
        if (auto* reference = AcDbBlockReference::cast(&entity))
            block = reference->blockTableRecord();
        return true;
    });
    AcDbBlockTable* table = nullptr;
    AcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(db->getBlockTable(table, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(table->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite), Acad::eOk);
    table->close();
    auto* foreign = new AcDbBlockReference(AcGePoint3d(20, 0, 0), block);
    ASSERT_EQ(space->appendAcDbEntity(foreign), Acad::eOk);
    foreign->close();
    space->close();
    ASSERT_TRUE(dxf::saveDrawing(*db, (dir / "blocks.dxf").string(), message)) << message;
}

void Explode::explodeAll() {
    const Held blocks = heldIn(dir / "blocks.dxf");
    const Held solids = heldIn(dir / "solids.dxf");
    ASSERT_EQ(blocks.untaggedReferences, 1);
    ASSERT_FALSE(blocks.references.empty());
    ASSERT_FALSE(solids.solids.empty());

    const Outcome run = explode("blocks.dxf", "ALL", "all.dxf");
    for (const char* message : {"Nothing selected", "cannot be found", "Error"})
        EXPECT_FALSE(has(run.out, message)) << run.out;
    const Held all = heldIn(dir / "all.dxf");
    EXPECT_TRUE(all.references.empty()) << "every imported reference goes";
    EXPECT_EQ(all.untaggedReferences, 1) << "the foreign one stays";
    // Each object makes again what a solid import makes of it: solids where it makes solids.
    std::set<int> expected;
    for (int object : keysOf(blocks.references))
        if (solids.solids.count(object)) expected.insert(object);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(keysOf(all.solids), expected);
    expectSameSolids(all, solids, expected);
    expectAuditedClean(dir / "all.dxf");
}

TEST_F(Explode, ChosenReferencesGoEvenWhenTheirFileOrObjectIsGone) {
    importBoth("cylinder_blocks");
    // An empty selection is told at the command line and in an alert.
    const Outcome none = qelcad("run blocks.dxf --script " + write("n.scr", "QELXPLODE\n\nQUIT\n"));
    EXPECT_TRUE(has(none.out, "\nNothing selected.")) << none.out;
    EXPECT_TRUE(has(none.out, "\n** Nothing selected. **\n")) << none.out;
    const Held blocks = heldIn(dir / "blocks.dxf");
    const Held solids = heldIn(dir / "solids.dxf");
    // Three references whose objects make solids: one made again, one whose file is moved away,
    // one whose object the file no longer has.
    std::vector<int> objects;
    for (const auto& [object, handle] : blocks.references)
        if (solids.solids.count(object)) objects.push_back(object);
    ASSERT_GE(objects.size(), 3u);
    const int some = objects[0], moved = objects[1], missing = objects[2];

    // Everything but the references: nothing happens, without a word.
    std::string everythingElse;
    for (const std::string& handle : blocks.others)
        everythingElse += handle + "\n";
    ASSERT_FALSE(everythingElse.empty());
    const Outcome lines = explode("blocks.dxf", everythingElse, "lines.dxf");
    const Held untouched = heldIn(dir / "lines.dxf");
    EXPECT_EQ(untouched.references, blocks.references);
    EXPECT_EQ(untouched.entities, blocks.entities);
    for (const char* message : {"Nothing selected", "cannot be found", "Error"})
        EXPECT_FALSE(has(lines.out, message)) << lines.out;

    explode("blocks.dxf", blocks.references.at(some), "some.dxf");
    const Held first = heldIn(dir / "some.dxf");
    EXPECT_EQ(first.references.size(), blocks.references.size() - 1);
    EXPECT_FALSE(first.references.count(some));
    EXPECT_EQ(keysOf(first.solids), std::set<int>{some});
    expectSameSolids(first, solids, {some});

    fs::rename(file, dir / "elsewhere.qel");
    const Outcome gone = explode("some.dxf", blocks.references.at(moved), "moved.dxf");
    EXPECT_TRUE(has(gone.out, "The qel creation file for this object cannot be found")) << gone.out;
    const Held second = heldIn(dir / "moved.dxf");
    EXPECT_FALSE(second.references.count(moved)) << "deleted before the file was looked for";
    EXPECT_EQ(second.references.size(), first.references.size() - 1);
    EXPECT_EQ(keysOf(second.solids), std::set<int>{some});

    // The file back, but too short to hold the object.
    qeljson::build(R"({"format": "qel-json-1", "objects": [
        {"class": "ModelSpace", "params": [["objectList", "uint[]", []]]},
        {"class": "Header", "params": [["rootLocation", "uint", 0]]}]})",
                   "short", file);
    ASSERT_GE(missing, 2);
    const Outcome lost = explode("moved.dxf", blocks.references.at(missing), "missing.dxf");
    EXPECT_TRUE(has(lost.out, "Error reading object creation qel file")) << lost.out;
    const Held third = heldIn(dir / "missing.dxf");
    EXPECT_FALSE(third.references.count(missing));
    EXPECT_EQ(third.references.size(), second.references.size() - 1);
    EXPECT_EQ(keysOf(third.solids), std::set<int>{some});
    for (const char* saved : {"some.dxf", "moved.dxf", "missing.dxf"})
        expectAuditedClean(dir / saved);
}

// The menu through the command line under two versions: loaded, then unloaded, read back with
// the host's own listing and variable.
TEST_F(QelinEndToEnd, QelmenuLoadsThenUnloadsTheMenuOfTheHostsVersion) {
    const std::string script =
        write("m.scr", "QELMENU\nMENUGROUPS\nSETVAR MENUBAR\n\nQELMENU\nMENUGROUPS\nQUIT\n");
    struct Case {
        const char* version;
        const char* loaded;
        const char* menuBar;
    };
    for (const Case& c : {Case{"18.2s", "Menu groups: QEL\nPull-downs: P12=+QEL.POP11\n", "1"},
                          Case{"19.0s", "Menu groups: QEL\nPull-downs: P12=+QEL.POP11\n", "0"},
                          Case{"17.2s", "Menu groups: QEL\nPull-downs: P10=+QEL.POP11\n", "0"}}) {
        const Outcome run =
            qelcad(std::string("run --set ACADVER=") + c.version + " --script " + script);
        EXPECT_EQ(run.status, 0) << run.out;
        const auto loaded = run.out.find(c.loaded);
        const auto unloaded = run.out.find("Menu groups: none\nPull-downs: none\n");
        ASSERT_NE(loaded, std::string::npos) << c.version << ":\n" << run.out;
        ASSERT_NE(unloaded, std::string::npos) << c.version << ":\n" << run.out;
        EXPECT_LT(loaded, unloaded);
        EXPECT_TRUE(has(run.out, std::string("Enter new value for MENUBAR <") + c.menuBar + ">"))
            << run.out;
    }
}
