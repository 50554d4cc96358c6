// The export from the user's side: qelcad export and QELOUT in scripts, the file they write read
// back by the library, checked by qeltool and imported again.
#include "objectfile/param_read.h"

#include <nlohmann/json.hpp>
#include <qel/qel_json.h>

#include "qelcad_fixture.h"

#include <map>
#include <vector>

namespace {

// What a written file holds: each object's class by number, and the objects kept open.
class WrittenFile {
public:
    explicit WrittenFile(const std::string& path) {
        QelInit(0, 0, QelInitWords);
        reader_.Open(path.c_str());
        for (unsigned i = 0; i < reader_.GetObjectCount(); ++i) {
            objects_.emplace_back(reader_.ReadObject(i));
            classes_.push_back(objects_.back()->GetName());
        }
    }
    const std::vector<std::string>& classes() const { return classes_; }
    // The first object of the class, or the one whose "name" is given.
    QelObject* find(const std::string& cls, const std::string& name = "") const {
        for (std::size_t i = 0; i < classes_.size(); ++i) {
            CString text;
            if (classes_[i] == cls &&
                (name.empty() || (QelReadString(objects_[i].get(), "name", text) &&
                                  win::toUtf8(text.GetString()) == name)))
                return objects_[i].get();
        }
        return nullptr;
    }
    QelObject* object(unsigned number) const { return objects_.at(number).get(); }
    unsigned numberOf(const std::string& cls) const {
        for (std::size_t i = 0; i < classes_.size(); ++i)
            if (classes_[i] == cls) return unsigned(i);
        return ~0u;
    }
    static std::vector<unsigned> list(QelObject* object, const char* param) {
        QelArray<unsigned> values;
        QelReadUnsignedArray(object, param, values);
        return std::vector<unsigned>(values.GetData(), values.GetData() + values.GetCount());
    }
    static std::string text(QelObject* object, const char* param) {
        CString value;
        return QelReadString(object, param, value) ? win::toUtf8(value.GetString()) : "<none>";
    }

private:
    QelReader reader_;
    std::vector<QelObjectRef> objects_;
    std::vector<std::string> classes_;
};

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++n;
    return n;
}

} // namespace

class QeloutEndToEnd : public QelcadEndToEnd {
protected:
    // A drawing made by a script of host commands, from a new drawing or the one given.
    std::string drawing(const std::string& name, const std::string& commands,
                        const std::string& from = "") {
        const Outcome made =
            qelcad("run " + from + " --script " + write(name + ".scr", commands + "QUIT\n") +
                   " --save " + name + ".dxf");
        EXPECT_EQ(made.status, 0) << made.out;
        return (dir / (name + ".dxf")).string();
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    static constexpr const char* kSpline = "SPLINE\n0,0,0\n1,1,0\n2,0,0\n\n\n\n";
};

TEST_F(QeloutEndToEnd, AnEmptyDrawingGivesAValidFileThatImportsAgain) {
    const std::string empty = drawing("empty", "");
    const Outcome run = qelcad("export " + empty + " -o out.qel");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(has(run.out, "Objects (5): Layer x1 LayerMgr x1 ModelSpaceView x1 ModelSpace x1 "
                             "Header x1\n"))
        << run.out;
    const WrittenFile file(path("out.qel"));
    EXPECT_EQ(file.classes(), (std::vector<std::string>{"Layer", "LayerMgr", "ModelSpaceView",
                                                        "ModelSpace", "Header"}));
    QelObject* layer = file.find("Layer", "Default");
    ASSERT_NE(layer, nullptr);
    EXPECT_TRUE(WrittenFile::list(layer, "objectList").empty());
    unsigned root = 0;
    ASSERT_TRUE(QelReadUnsigned(file.find("Header"), "rootLocation", root));
    EXPECT_EQ(root, file.numberOf("ModelSpace"));
    QelObject* space = file.find("ModelSpace");
    EXPECT_TRUE(WrittenFile::list(space, "objectList").empty());
    EXPECT_EQ(WrittenFile::list(space, "modelSpaceViewList"),
              std::vector<unsigned>{file.numberOf("ModelSpaceView")});
    EXPECT_EQ(WrittenFile::list(file.find("LayerMgr"), "layerList"), std::vector<unsigned>{0});
    EXPECT_EQ(WrittenFile::text(file.find("Header"), "application")
                  .rfind("Qel Version 6.1 (Build 170) for AutoCAD", 0),
              0u);
    EXPECT_EQ(file.find("ModelSpaceView")->GetParam("layerOverrides", 0), nullptr)
        << "a synthesised layer has no override";
    EXPECT_EQ(file.find("ModelSpaceView")->GetParam("currCoordSys", 0), nullptr)
        << "the world UCS is current";

    const Outcome valid = runCommand(std::string(QELTOOL) + " validate " + path("out.qel"));
    EXPECT_EQ(valid.status, 0) << valid.out;
    const Outcome back = qelcad("import " + path("out.qel") + " -o back.dxf --no-log");
    EXPECT_EQ(back.status, 0) << back.out;
    EXPECT_TRUE(has(back.out, "Default")) << back.out;
}

// The plant's layers, coloured, one off, one frozen here, go out and come back.
TEST_F(QeloutEndToEnd, LayersWithColoursAndStatesComeBackThroughImport) {
    ASSERT_EQ(qelcad("import " + plant + " -o plant.dxf --no-log").status, 0);
    const std::string frozen = drawing("frozen", "-LAYER F Equipment\n\n", path("plant.dxf"));
    const Outcome run = qelcad("export " + frozen + " -o out.qel --no-reference");
    ASSERT_EQ(run.status, 0) << run.out;
    const WrittenFile file(path("out.qel"));
    // Layer "0" holds nothing and is left out; the overrides follow the layers in order.
    std::vector<std::string> names;
    for (unsigned number : WrittenFile::list(file.find("LayerMgr"), "layerList"))
        names.push_back(WrittenFile::text(file.object(number), "name"));
    EXPECT_EQ(names, (std::vector<std::string>{"Piping", "Equipment", "Steel"}));
    const std::vector<unsigned> overrides =
        WrittenFile::list(file.find("ModelSpaceView"), "layerOverrides");
    ASSERT_EQ(overrides.size(), 3u);
    EXPECT_EQ(overrides[0] & 1u, 0u) << "Piping is on";
    EXPECT_EQ(overrides[1] & 9u, 9u) << "Equipment is frozen";
    EXPECT_EQ(overrides[2] & 9u, 9u) << "Steel is off";
    unsigned char red = 0, green = 0, blue = 0;
    ASSERT_TRUE(QelReadColour(file.find("Layer", "Piping"), red, green, blue));

    const Outcome back =
        qelcad("import " + path("out.qel") + " -o back.dxf --no-log --layer-colour-override");
    ASSERT_EQ(back.status, 0) << back.out;
    const nlohmann::json layers =
        nlohmann::json::parse(qelcad("info back.dxf --json").out)["layers"];
    const nlohmann::json before =
        nlohmann::json::parse(qelcad("info plant.dxf --json").out)["layers"];
    for (const char* name : {"Piping", "Equipment", "Steel"}) {
        ASSERT_TRUE(layers.contains(name)) << layers.dump();
        EXPECT_EQ(layers[name]["color"], before[name]["color"]) << name;
    }
    EXPECT_EQ(layers["Piping"]["on"], true);
    EXPECT_EQ(layers["Steel"]["on"], false);
    EXPECT_EQ(layers["Equipment"]["on"], false) << "frozen leaves as off, and comes back so";
}

// QELOUT in a script, answered from a file: the drawing's named UCSs become the file's systems.
TEST_F(QeloutEndToEnd, NamedUcssComeBackAsNamedUcss) {
    const std::string file = path("ucs.qel");
    const std::string answers =
        write("a.txt", "dialog 1004\n  file = " + file + "\n  no-reference = on\n  ok\n");
    const Outcome run = qelcad(
        "run --script " +
        write("s.scr", "UCS\n_3P\n1,2,3\n1,3,3\n0,2,3\nUCS\n_S\nNorth\nUCS\n_W\nQELOUT\nQUIT\n") +
        " --answers " + answers);
    ASSERT_EQ(run.status, 0) << run.out;
    const WrittenFile written(file);
    QelObject* manager = written.find("CoordSysMgr");
    ASSERT_NE(manager, nullptr) << run.out;
    EXPECT_EQ(written.numberOf("CoordSysMgr") + 1, written.numberOf("ModelSpaceView"));
    unsigned reference = 0;
    ASSERT_TRUE(QelReadUnsigned(written.find("ModelSpaceView"), "coordSysMgr", reference));
    EXPECT_EQ(reference, written.numberOf("CoordSysMgr"));

    const Outcome back = qelcad("import " + file + " -o back.dxf --no-log");
    ASSERT_EQ(back.status, 0) << back.out;
    const nlohmann::json ucs = nlohmann::json::parse(qelcad("info back.dxf --json").out)["ucs"];
    EXPECT_TRUE(ucs["table"].contains("North")) << ucs.dump();
}

TEST_F(QeloutEndToEnd, TheDialogRefusesBadNamesWithItsOwnMessages) {
    ASSERT_EQ(qelcad("import " + plant + " -o plant.dxf --no-log").status, 0);
    const std::string source = path("plant.dxf");
    struct Case {
        std::string output;
        const char* message;
    };
    fs::create_directories(dir / "folder.qel");
    const Case cases[] = {
        {"\"\"", "Please enter a valid 'qel' filename."},
        {"a,b.qel", "Filename has invalid characters."},
        {"a=b.qel", "Filename has invalid characters."},
        {"folder.qel", "Please enter a valid 'qel' filename."},
        {"no/such/out.qel", "ERROR: All or part of the path is invalid."},
        {path("plant.qel"), "You cannot export to the original qel file!\nPlease select a "
                            "different file for export."},
    };
    for (const Case& c : cases) {
        const Outcome run = qelcad("export " + source + " -o " + c.output);
        EXPECT_EQ(run.status, 1) << c.output << "\n" << run.out;
        EXPECT_TRUE(has(run.out, std::string("qelcad: Export Options...: ") + c.message))
            << c.output << "\n"
            << run.out;
    }
    // A directory part may hold what a file name may not.
    fs::create_directories(dir / "a,b");
    EXPECT_EQ(qelcad("export " + source + " -o a,b/out --scope visible").status, 0);
    EXPECT_TRUE(fs::exists(dir / "a,b" / "out.qel")) << "the extension is added";

    EXPECT_EQ(qelcad("export " + source + " -o a,b/UP.QEL").status, 0);
    EXPECT_TRUE(fs::exists(dir / "a,b" / "UP.QEL")) << "an upper-case extension is one";

    // Replacing asks first; No keeps the file and the dialog.
    const Outcome kept = qelcad("export " + source + " -o a,b/out.qel --box no");
    EXPECT_EQ(kept.status, 1) << kept.out;
    EXPECT_TRUE(has(kept.out, "out.qel already exist.\\nDo you want to replace it?")) << kept.out;
    EXPECT_GT(fs::file_size(dir / "a,b" / "out.qel"), 0u);
    EXPECT_EQ(qelcad("export " + source + " -o a,b/out.qel --box yes").status, 0);
}

// Under process method 1 the structure objects of the file last imported are read back and
// changed: what the module doesn't know of them survives.
TEST_F(QeloutEndToEnd, WithReferenceALayerKeepsItsUnknownParams) {
    const std::string reference = path("ref.qel");
    QelInit(0, 0, QelInitWords);
    qeljson::build(R"({"format": "qel-json-1", "objects": [
        {"class": "Cylinder", "params": [["radius", "double", 0.1], ["height", "double", 1.0]]},
        {"class": "Layer", "params": [["name", "string", "Piping"], ["objectList", "uint[]", [0]],
            ["vendorNote", "string", "keep me"]]},
        {"class": "LayerMgr", "params": [["layerList", "uint[]", [1]], ["mgrNote", "int", 7]]},
        {"class": "ModelSpaceView", "params": [["name", "string", "v"],
            ["viewNote", "string", "seen"]]},
        {"class": "ModelSpace", "params": [["layerMgr", "uint", 2], ["objectList", "uint[]", [0]],
            ["name", "string", "the plant"]]},
        {"class": "Header", "params": [["rootLocation", "uint", 4]]}]})",
                   "ref", reference);
    ASSERT_EQ(qelcad("import " + reference + " -o ref.dxf --no-log").status, 0);

    const Outcome with = qelcad("export " + path("ref.dxf") + " -o with.qel --reference");
    ASSERT_EQ(with.status, 0) << with.out;
    const WrittenFile file(path("with.qel"));
    QelObject* layer = file.find("Layer", "Piping");
    ASSERT_NE(layer, nullptr) << with.out;
    EXPECT_EQ(WrittenFile::text(layer, "vendorNote"), "keep me");
    EXPECT_NE(file.find("LayerMgr")->GetParam("mgrNote", 0), nullptr);
    EXPECT_EQ(WrittenFile::text(file.find("ModelSpaceView"), "viewNote"), "seen");
    EXPECT_EQ(WrittenFile::text(file.find("ModelSpace"), "name"), "the plant");
    // The tagged cylinder leaves measured from its solid.
    EXPECT_FALSE(has(with.out, "Unknown object type!")) << with.out;
    QelObject* cylinder = file.find("Cylinder");
    ASSERT_NE(cylinder, nullptr) << with.out;
    double radius = 0;
    cylinder->GetParam("radius", 0)->GetValue(radius);
    EXPECT_NEAR(radius, 0.1, 1e-12);

    const Outcome without = qelcad("export " + path("ref.dxf") + " -o without.qel --no-reference");
    ASSERT_EQ(without.status, 0) << without.out;
    const WrittenFile plain(path("without.qel"));
    EXPECT_EQ(WrittenFile::text(plain.find("Layer", "Piping"), "vendorNote"), "<none>");
    EXPECT_EQ(WrittenFile::text(plain.find("ModelSpace"), "name"), path("without.qel"));
}

// Each entity in scope leaves once, and only those.
TEST_F(QeloutEndToEnd, ScopeVisibleLeavesOutTheEntitiesOfAnOffLayer) {
    const std::string source =
        drawing("two", "-LAYER M Shown\n\n" + std::string(kSpline) + "-LAYER M Hidden\n\n" +
                           kSpline + "-LAYER S 0 OFF Hidden\n\n");
    const Outcome all = qelcad("export " + source + " -o all.qel --scope all");
    ASSERT_EQ(all.status, 0) << all.out;
    EXPECT_TRUE(has(all.out, "BSplineCurve3d x2 ")) << all.out;
    const Outcome visible = qelcad("export " + source + " -o visible.qel --scope visible");
    ASSERT_EQ(visible.status, 0) << visible.out;
    EXPECT_TRUE(has(visible.out, "BSplineCurve3d x1 ")) << visible.out;
    const std::vector<unsigned> overrides = WrittenFile::list(
        WrittenFile(path("visible.qel")).find("ModelSpaceView"), "layerOverrides");
    EXPECT_EQ(overrides, (std::vector<unsigned>{2u, 11u})) << "both follow their layer's colour";
}

TEST_F(QeloutEndToEnd, ACancelledSelectionLeavesTheEmptyFileAndNoMessage) {
    const std::string source = drawing("one", kSpline);
    const Outcome run = qelcad("export " + source + " -o picked.qel --scope selected");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_FALSE(has(run.out, "Nothing selected")) << run.out;
    EXPECT_TRUE(has(run.out, "Objects (0):")) << run.out;

    const Outcome picked =
        qelcad("export " + source + " -o picked.qel --scope selected --select ALL");
    EXPECT_EQ(picked.status, 0) << picked.out;
    EXPECT_TRUE(has(picked.out, "BSplineCurve3d x1 ")) << picked.out;
    EXPECT_TRUE(has(picked.out, "Header x1")) << picked.out;
}

TEST_F(QeloutEndToEnd, ContradictingOptionsAreUsageErrors) {
    const std::string source = drawing("empty", "");
    for (const char* options : {"--reference --no-reference", "--scope some"}) {
        const Outcome run = qelcad("export " + source + " -o out.qel " + options);
        EXPECT_EQ(run.status, 2) << options << "\n" << run.out;
        EXPECT_FALSE(fs::exists(dir / "out.qel"));
    }
    EXPECT_EQ(qelcad("export -o out.qel").status, 2) << "the drawing is required";
}

// Cancel at the progress dialog ends the walk of the entities; the structure is still written.
TEST_F(QeloutEndToEnd, ACancelAtTheProgressDialogStillGivesAValidFile) {
    const std::string source = drawing("two", std::string(kSpline) + kSpline);
    const Outcome run = qelcad("export " + source + " -o cut.qel --answers " +
                               write("p.txt", "progress cancel 1\n"));
    EXPECT_EQ(run.status, 1) << run.out;
    EXPECT_TRUE(has(run.out, "qelcad: the export was cancelled from its progress dialog"))
        << run.out;
    EXPECT_EQ(count(run.out, "Unknown object type!"), 0u) << "the walk ended at the first entity";
    const Outcome valid = runCommand(std::string(QELTOOL) + " validate " + path("cut.qel"));
    EXPECT_EQ(valid.status, 0) << valid.out;
    EXPECT_EQ(WrittenFile(path("cut.qel")).classes().back(), "Header");
}
