// Hostile and damaged drawings through qelcad export, as a user's hand edits of the DXF text or
// a bad file would give them: tags whose member records are spoilt, degenerate geometry. Each
// row exports the drawing and asks that the export ends, says what it left out, and writes a
// file that validates and whose every entity object is reached from ModelSpace.
#include "objectfile/param_read.h"

#include "qelcad_fixture.h"

#include <algorithm>
#include <functional>
#include <set>
#include <vector>

namespace {

// A DXF file as its group code and value pairs, for edits by hand.
using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs parseDxf(const std::string& text) {
    std::istringstream in(text);
    Pairs pairs;
    std::string code, value;
    while (std::getline(in, code) && std::getline(in, value)) {
        const auto first = code.find_first_not_of(' ');
        pairs.emplace_back(first == std::string::npos ? "" : code.substr(first), value);
    }
    return pairs;
}

std::string printDxf(const Pairs& pairs) {
    std::string text;
    for (const auto& [code, value] : pairs)
        text += code + "\n" + value + "\n";
    return text;
}

// The items of every "MemberRec" X-record: the pairs after its 280 up to the next entity or
// object, each range as [first, end).
std::vector<std::pair<std::size_t, std::size_t>> memberRecords(const Pairs& pairs) {
    std::set<std::string> handles;
    for (std::size_t i = 0; i + 1 < pairs.size(); ++i)
        if (pairs[i].first == "3" && pairs[i].second == "MemberRec" && pairs[i + 1].first == "350")
            handles.insert(pairs[i + 1].second);
    std::vector<std::pair<std::size_t, std::size_t>> ranges;
    for (std::size_t i = 0; i + 1 < pairs.size(); ++i) {
        if (pairs[i] != Pairs::value_type{"0", "XRECORD"} || pairs[i + 1].first != "5" ||
            !handles.count(pairs[i + 1].second))
            continue;
        std::size_t first = i + 1;
        while (pairs[first].first != "280")
            ++first;
        std::size_t end = first + 1;
        while (end < pairs.size() && pairs[end].first != "0")
            ++end;
        ranges.emplace_back(first + 1, end);
    }
    return ranges;
}

// One edit of every member record's items.
using RecordEdit = std::function<void(Pairs& items)>;

RecordEdit setItem(std::size_t item, const std::string& code, const std::string& value) {
    return [=](Pairs& items) {
        if (item < items.size()) items[item] = {code, value};
    };
}

RecordEdit everyReal(const std::string& value) {
    return [=](Pairs& items) {
        for (auto& [code, text] : items)
            if (code == "40") text = value;
    };
}

std::string editRecords(const std::string& dxf, const RecordEdit& edit) {
    Pairs pairs = parseDxf(dxf);
    const auto ranges = memberRecords(pairs);
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
        Pairs items(pairs.begin() + long(range->first), pairs.begin() + long(range->second));
        edit(items);
        pairs.erase(pairs.begin() + long(range->first), pairs.begin() + long(range->second));
        pairs.insert(pairs.begin() + long(range->first), items.begin(), items.end());
    }
    return printDxf(pairs);
}

// The value of the nth pair of that code in the entity of that handle.
std::string editEntity(const std::string& dxf, const std::string& handle, const std::string& code,
                       const std::string& value, int nth = 0) {
    Pairs pairs = parseDxf(dxf);
    for (std::size_t i = 0; i + 1 < pairs.size(); ++i) {
        if (pairs[i].first != "0" || pairs[i + 1] != Pairs::value_type{"5", handle}) continue;
        for (std::size_t j = i + 1; j < pairs.size() && pairs[j].first != "0"; ++j)
            if (pairs[j].first == code && nth-- == 0) {
                pairs[j].second = value;
                return printDxf(pairs);
            }
    }
    ADD_FAILURE() << "no group " << code << " in entity " << handle;
    return dxf;
}

// The entity of that handle without its pairs of those codes.
std::string dropGroups(const std::string& dxf, const std::string& handle,
                       const std::set<std::string>& codes) {
    Pairs pairs = parseDxf(dxf);
    for (std::size_t i = 0; i + 1 < pairs.size(); ++i) {
        if (pairs[i].first != "0" || pairs[i + 1] != Pairs::value_type{"5", handle}) continue;
        std::size_t end = i + 1;
        while (end < pairs.size() && pairs[end].first != "0")
            ++end;
        pairs.erase(std::remove_if(pairs.begin() + long(i) + 1, pairs.begin() + long(end),
                                   [&](const auto& pair) { return codes.count(pair.first) > 0; }),
                    pairs.begin() + long(end));
        break;
    }
    return printDxf(pairs);
}

// The objects of a written file that nothing lists: neither ModelSpace, nor a Layer, nor a group.
std::vector<std::string> unreached(const std::string& path) {
    QelInit(0, 0, QelInitWords);
    QelReader reader;
    reader.Open(path.c_str());
    std::set<unsigned> listed;
    std::vector<std::string> classes;
    for (unsigned i = 0; i < reader.GetObjectCount(); ++i) {
        QelObjectRef object(reader.ReadObject(i));
        classes.push_back(object->GetName());
        for (const char* param : {"objectList", "layerList"}) {
            QelArray<unsigned> numbers;
            QelReadUnsignedArray(object.get(), param, numbers);
            listed.insert(numbers.GetData(), numbers.GetData() + numbers.GetCount());
        }
    }
    const std::set<std::string> structure = {"LayerMgr", "CoordSysMgr", "ModelSpaceView",
                                             "ModelSpace", "Header"};
    std::vector<std::string> lost;
    for (unsigned i = 0; i < classes.size(); ++i)
        if (!listed.count(i) && !structure.count(classes[i]))
            lost.push_back(std::to_string(i) + " " + classes[i]);
    return lost;
}

struct Row {
    std::string label;
    std::function<std::string(const std::string&)> edit; // of the drawing's DXF text
    std::string options;                                 // of qelcad export
    std::string told;   // a part of what the export says; empty: nothing in particular
    std::string counts; // a part of the "Objects" line; empty: not checked
};

} // namespace

class HostileExport : public QelcadEndToEnd {
protected:
    // The plant imported, saved as a drawing: its text.
    std::string plantDrawing() {
        const Outcome made = qelcad("import " + plant + " -o plant.dxf --no-log");
        EXPECT_EQ(made.status, 0) << made.out;
        return read(dir / "plant.dxf");
    }
    // A drawing of host commands: its text.
    std::string drawn(const std::string& commands) {
        const Outcome made =
            qelcad("run --script " + write("drawn.scr", commands + "QUIT\n") + " --save drawn.dxf");
        EXPECT_EQ(made.status, 0) << made.out;
        return read(dir / "drawn.dxf");
    }
    // Each row: the edited drawing exported, the export ends well and tells what it should,
    // and its file validates with every object of an entity reachable.
    void exportEach(const std::string& drawing, const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.label);
            write("hostile.dxf", row.edit(drawing));
            fs::remove(dir / "hostile.qel");
            const Outcome run = qelcad("export hostile.dxf -o hostile.qel " + row.options);
            ASSERT_EQ(run.status, 0) << run.out;
            EXPECT_TRUE(has(run.out, row.told)) << run.out;
            EXPECT_TRUE(has(run.out, row.counts)) << run.out;
            const std::string out = (dir / "hostile.qel").string();
            const Outcome valid = runCommand(std::string(QELTOOL) + " validate " + out + " 2>&1");
            EXPECT_EQ(valid.status, 0) << valid.out;
            EXPECT_EQ(unreached(out), std::vector<std::string>{});
        }
    }
};

// Member records spoilt by hand, on every tagged entity of the plant at once: the export still
// writes every object it can, numbered in step, and says what it left out.
TEST_F(HostileExport, DamagedMemberRecordsCostNoOtherObject) {
    const std::string plantObjects = "Objects (28): Cylinder x4 Elbow x1 Valve x1 Flange x2 Tee x1";
    const auto records = [](RecordEdit edit) {
        return [edit](const std::string& dxf) { return editRecords(dxf, edit); };
    };
    write("damaged.qel", std::string(2000, '\x7f'));
    exportEach(
        plantDrawing(),
        {
            {"as imported, without reference", [](const std::string& d) { return d; },
             "--no-reference", "", plantObjects},
            {"as imported, with reference", [](const std::string& d) { return d; }, "--reference",
             "", plantObjects},
            // A serial above 32767 reads back negative: no group, so under model space.
            {"group serials negative", records(setItem(5, "90", "65531")), "--reference", "",
             "Objects (27)"},
            {"group serials pointing nowhere", records(setItem(5, "90", "77")), "--no-reference",
             "", plantObjects},
            // The valve's parts no longer say which is which: its pose is at the origin.
            {"part indexes damaged", records(setItem(6, "90", "-1")), "--no-reference", "",
             plantObjects},
            {"sizes zero", records(everyReal("0.0")), "--no-reference",
             "the Reducer has no \"radius0\"; it is left out.", ""},
            {"sizes negative", records(everyReal("-5.0")), "--no-reference",
             "the StdShapeExtrusion has no \"width\"; it is left out.", ""},
            {"object numbers huge", records(setItem(3, "90", "2147483647")), "--reference", "",
             plantObjects},
            {"type codes beyond the table", records(setItem(2, "90", "1000")), "--reference", "",
             ""},
            {"type codes negative", records(setItem(2, "90", "-100")), "--no-reference", "", ""},
            {"type of the wrong kind", records(setItem(2, "40", "1.5")), "--reference", "", ""},
            {"chains cut short", records([](Pairs& items) { items.resize(3); }), "--reference", "",
             ""},
            {"source file missing", records(setItem(0, "1", "/nonexistent/plant.qel")),
             "--reference", "", plantObjects},
            {"source file a folder", records(setItem(0, "1", dir.string())), "--reference", "",
             plantObjects},
            {"source file damaged", records(setItem(0, "1", (dir / "damaged.qel").string())),
             "--reference", "", plantObjects},
        });
}

// Geometry no solid or patch can be made of: the entity is left out with a word, the rest leave.
TEST_F(HostileExport, DegenerateGeometryIsToldAndLeftOut) {
    const std::string drawing = drawn("SETVAR THICKNESS 2\nLINE 20,0,0 21,0,0\n\n"
                                      "SETVAR THICKNESS 0\n3DFACE 60,0,0 61,0,0 61,1,0 60,1,0\n\n"
                                      "SPHERE 90,0,0 1\nSPLINE\n50,0,0\n51,1,0\n52,0,0\n\n\n\n");
    // The handles of a new drawing's first entities.
    const std::string line = "B", face = "C", spline = "E";
    const std::string fewer = "Objects (8): PlanarPatch x1 Sphere x1 BSplineCurve3d x1";
    exportEach(
        drawing,
        {
            {"a thick line of no length",
             [&](const std::string& d) { return editEntity(d, line, "11", "20.0"); },
             "--no-reference", "Error exporting entity B: the PlanarPatch has no", fewer},
            {"a 3-D face shrunk to a point",
             [&](const std::string& d) {
                 std::string text = editEntity(d, face, "11", "60.0");
                 text = editEntity(text, face, "12", "60.0");
                 text = editEntity(text, face, "22", "0.0");
                 text = editEntity(text, face, "13", "60.0");
                 return editEntity(text, face, "23", "0.0");
             },
             "--no-reference", "skipping degenerate object", fewer},
            {"a spline without its fit points",
             [&](const std::string& d) {
                 return editEntity(dropGroups(d, spline, {"11", "21", "31"}), spline, "74", "0");
             },
             "--no-reference", "the BSplineCurve3d has no \"fitPoints\"; it is left out.",
             "Objects (8): PlanarPatch x2 Sphere x1"},
        });
}

// A cylinder turned at the origin keeps its turn: the pose carries its translation as well, or
// the next import would not take the rotation.
TEST_F(HostileExport, AShapeTurnedAtTheOriginKeepsItsTurn) {
    drawn("CYLINDER 0,0,0 1 A 5,0,0\n");
    ASSERT_EQ(qelcad("export drawn.dxf -o turned.qel --no-reference").status, 0);
    const Outcome valid =
        runCommand(std::string(QELTOOL) + " validate " + (dir / "turned.qel").string() + " 2>&1");
    EXPECT_EQ(valid.status, 0) << valid.out;
    ASSERT_EQ(qelcad("import turned.qel -o back.dxf --no-log").status, 0);
    ASSERT_EQ(qelcad("export back.dxf -o back.qel --no-reference").status, 0);
    // Z onto X is a third of a turn about (1, 1, 1).
    QelInit(0, 0, QelInitWords);
    QelReader reader;
    reader.Open((dir / "back.qel").string().c_str());
    QelObjectRef cylinder(reader.ReadObject(0));
    ASSERT_STREQ(cylinder->GetName(), "Cylinder");
    QelParam* pose = cylinder->GetParam("pose", 0);
    ASSERT_NE(pose, nullptr);
    QelObject* transformation = nullptr;
    pose->GetValue(transformation);
    QelParam* turn = transformation ? transformation->GetParam("rotation", 0) : nullptr;
    ASSERT_NE(turn, nullptr) << "the turn was lost on the way";
    double* rotation = nullptr;
    unsigned count = 0;
    turn->GetValue(rotation, count, false);
    ASSERT_EQ(count, 4u);
    EXPECT_NEAR(rotation[3], 2.0 * 3.141592653589793 / 3.0, 1e-9);
    EXPECT_NEAR(rotation[0], rotation[2], 1e-9);
}

// Output names a user mistypes: refused by the dialog with its reason and nothing written, or,
// for a name without ".qel", written under the name the dialog gives it and counted there.
TEST_F(HostileExport, MistypedOutputNamesAreRefusedOrCompleted) {
    drawn("SPHERE 0,0,0 1\n");
    fs::create_directories(dir / "folder.qel");
    const struct {
        std::string output;
        int status;
        std::string told;
    } rows[] = {
        {"no-suffix", 0, "Object file: " + (dir / "no-suffix.qel").string() + "\nObjects (6)"},
        {"missing/out.qel", 1, "ERROR: All or part of the path is invalid."},
        {"folder.qel", 1, "Please enter a valid 'qel' filename."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.output);
        const Outcome run = qelcad("export drawn.dxf --no-reference -o " + row.output);
        EXPECT_EQ(run.status, row.status) << run.out;
        EXPECT_TRUE(has(run.out, row.told)) << run.out;
    }
    EXPECT_FALSE(fs::exists(dir / "missing"));
}

// The file the drawing was imported from, spoilt or gone before the export with reference: every
// object is built from the drawing instead, and a damaged file is told once, not once an object.
TEST_F(HostileExport, ASpoiltReferenceFileIsToldOnce) {
    const std::string drawing = plantDrawing();
    const std::string good = read(plant);
    const struct {
        std::string label;
        std::function<void()> spoil;
        std::string told; // empty: no box at all
    } rows[] = {
        {"truncated", [&] { write("plant.qel", good.substr(0, 3000)); },
         "is 3000 bytes long but was written with"},
        {"one byte flipped",
         [&] {
             std::string flipped = good;
             flipped[flipped.size() / 2] = char(flipped[flipped.size() / 2] ^ 0xff);
             write("plant.qel", flipped);
         },
         "is damaged (checksum mismatch)"},
        {"not an object file", [&] { write("plant.qel", "not an object file\n"); },
         "is not a QEL object file"},
        {"deleted", [&] { fs::remove(plant); }, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        row.spoil();
        const Outcome run = qelcad("export plant.dxf -o out.qel --reference");
        ASSERT_EQ(run.status, 0) << run.out;
        EXPECT_TRUE(has(run.out, "Objects (28)")) << run.out;
        std::size_t boxes = 0;
        for (auto at = run.out.find("[box: '"); at != std::string::npos;
             at = run.out.find("[box: '", at + 1))
            ++boxes;
        EXPECT_EQ(boxes, row.told.empty() ? 0u : 1u) << run.out;
        EXPECT_TRUE(has(run.out, row.told)) << run.out;
        const Outcome valid =
            runCommand(std::string(QELTOOL) + " validate " + (dir / "out.qel").string() + " 2>&1");
        EXPECT_EQ(valid.status, 0) << valid.out;
    }
}

// An exclusion volume whose reference tree never ends: groups nested past any model, or each
// listing the next twice so that copies would double at every level. The tree is copied once
// per object and only so deep; the export ends with a file that validates.
TEST_F(HostileExport, AnEndlessReferenceTreeIsCutShort) {
    const auto volumeFile = [&](int depth, const std::string& list) {
        std::string json = R"({"format": "qel-json-1", "objects": [
            {"class": "ExclusionVolume", "params": [["objectList", "uint[]", [1]],
             ["thickness", "double[]", [1, 1, 1]], ["pose", "object", {"class": "Transformation",
             "params": [["translation", "double[]", [0, 0, 0]]]}]]})";
        for (int i = 1; i <= depth; ++i) {
            std::string members = list;
            for (auto at = members.find('N'); at != std::string::npos; at = members.find('N'))
                members.replace(at, 1, std::to_string(i + 1));
            json += R"(, {"class": "GeometricGroup", "params": [["objectList", "uint[]", [)" +
                    members + "]]]}";
        }
        const int line = depth + 1;
        json += R"(, {"class": "Line3d", "params": [["startPoint", "double[]", [0, 0, 0]],
            ["endPoint", "double[]", [1, 0, 0]]]})";
        json +=
            R"(, {"class": "Layer", "params": [["name", "string", "V"], ["objectList", "uint[]", [0]]]})";
        json += R"(, {"class": "LayerMgr", "params": [["layerList", "uint[]", [)" +
                std::to_string(line + 1) + "]]]}";
        json +=
            R"(, {"class": "ModelSpace", "params": [["objectList", "uint[]", [0]], ["layerMgr", "uint", )" +
            std::to_string(line + 2) + "]]}";
        json += R"(, {"class": "Header", "params": [["rootLocation", "uint", )" +
                std::to_string(line + 3) + "]]}]}";
        return json;
    };
    const struct {
        std::string label, json, told, counts;
    } rows[] = {
        {"nested too deep", volumeFile(1100, "N"),
         "Object lists nested too deep in the reference tree: left out.",
         "Objects (1006): GeometricGroup x1000 ExclusionVolume x1"},
        {"each level listed twice", volumeFile(30, "N, N"), "",
         "Objects (37): Line3d x1 GeometricGroup x30 ExclusionVolume x1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        write("volume.json", row.json);
        ASSERT_EQ(runCommand(std::string(QELTOOL) + " build " + (dir / "volume.json").string() +
                             " -o " + (dir / "volume.qel").string())
                      .status,
                  0);
        const Outcome imported = qelcad("import volume.qel -o volume.dxf --no-log");
        ASSERT_EQ(imported.status, 0) << imported.out;
        const Outcome run = qelcad("export volume.dxf -o out.qel --reference");
        ASSERT_EQ(run.status, 0) << run.out;
        EXPECT_TRUE(has(run.out, row.told)) << run.out;
        EXPECT_TRUE(has(run.out, row.counts)) << run.out;
        const Outcome valid =
            runCommand(std::string(QELTOOL) + " validate " + (dir / "out.qel").string() + " 2>&1");
        EXPECT_EQ(valid.status, 0) << valid.out;
    }
}
