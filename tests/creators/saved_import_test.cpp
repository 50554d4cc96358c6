// A drawing saved after an import opens again: objects that landed on the temporary layers are
// erased at the end of the import with everything they own, and the save points at nothing it
// leaves out. Hostile groups on the way end with counted errors, and the drawing still saves.
#include "drawing_summary.h"
#include "import_fixture.h"
#include "shell/settings_store.h"

#include <arx/dbdict.h>
#include <arx/dbents.h>
#include <dxf/drawing.h>

#include <fstream>
#include <sstream>

namespace {

using qelintest::FileLayout;

class SavedImport : public qelintest::ImportTest {
protected:
    std::string save(AcDbDatabase& db, const std::string& name) {
        const std::string path = (m_folder / name).string();
        std::string message;
        EXPECT_TRUE(dxf::saveDrawing(db, path, message)) << message;
        std::ifstream in(path);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
};

// Entities of model space that carry the module's member record.
int taggedEntities(AcDbDatabase& db) {
    return creatorstest::CountModelSpace(db, [](AcDbEntity& entity) {
        AcDbDictionary* dictionary = nullptr;
        if (acdbOpenObject(dictionary, entity.extensionDictionary()) != Acad::eOk) return false;
        const bool tagged = dictionary->has(L"MemberRec");
        dictionary->close();
        return tagged;
    });
}

const std::string kLine =
    R"({"class": "Line3d", "params": [["startPoint", "double[]", [0, 0, 0]], ["endPoint", "double[]", [1, 0, 0]]]})";

TEST_F(SavedImport, ObjectsOfNamelessAndTemporaryLayersLeaveADrawingThatReopens) {
    const std::string& line = kLine;
    FileLayout layout;
    layout.objects = {
        line,
        line,
        R"({"class": "GeometricGroup", "params": [["objectList", "uint[]", [2, 4, 6]]]})",
        R"({"class": "ExclusionVolume", "params": [["thickness", "double[]", [1, 1, 1]]]})",
        line,
        R"({"class": "PlanarPatch", "params": [["vertices", "double[]", [0, 0, 1, 0, 1, 1, 0, 0]]]})",
    };
    layout.layers = {
        {"", "[0]", ""}, {R"("z_VelmoraTemp_Layer")", "[1]", ""}, {R"("Plant")", "[2, 3, 5]", ""}};
    const std::wstring file = build(layout.json());
    // The group opens the run's file again by the name the dialog stores.
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", file.c_str()));
    run(file);
    // The group lists itself and a layer: two members told and counted, the line still made.
    EXPECT_EQ(errorCount(), 2u) << ::testing::PrintToString(boxes());
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    const int tagged = taggedEntities(*db);
    EXPECT_EQ(tagged, 3); // the group's line, the box and the face; nothing of the erased ones

    const std::string first = save(*db, "first.dxf");
    std::string message;
    std::unique_ptr<AcDbDatabase> reopened =
        dxf::openDrawing((m_folder / "first.dxf").string(), message);
    ASSERT_NE(reopened, nullptr) << message;
    EXPECT_EQ(taggedEntities(*reopened), tagged);
    const std::string second = save(*reopened, "second.dxf");
    EXPECT_EQ(second.size(), first.size());
    EXPECT_NE(dxf::openDrawing((m_folder / "second.dxf").string(), message), nullptr) << message;
}

// Values no drawing can hold fail their objects only, each told by object, param and value: the
// good line stays, and the drawing saves and opens again.
TEST_F(SavedImport, ValuesNoDrawingHoldsFailTheirObjectsOnly) {
    FileLayout layout;
    layout.objects = {
        kLine,
        R"({"class": "Line3d", "params": [["startPoint", "double[]", [0, 0, 0]], ["endPoint", "double[]", [1, "NaN", 0]]]})",
        R"({"class": "Sphere", "params": [["radius", "double", 0.5], ["pose", "object", {"class": "Transformation", "params": [["translation", "double[]", [1e20, 0, 0]]]}]]})",
        R"({"class": "Cylinder", "params": [["radius", "string", "wide"], ["height", "double", 1]]})",
    };
    layout.layers = {{R"("Plant")", "[0, 1, 2, 3]", ""}};
    run(build(layout.json()));
    EXPECT_GE(errorCount(), 3u);
    const std::string log = logText();
    EXPECT_NE(log.find("Object 1 (Line3d): param \"endPoint\" holds nan"), std::string::npos)
        << log;
    EXPECT_NE(log.find("Object 2 (Sphere): param \"translation\" holds 1e+20"), std::string::npos)
        << log;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    EXPECT_EQ(creatorstest::CountModelSpace(*db,
                                            [](AcDbEntity& entity) {
                                                auto* good = AcDbLine::cast(&entity);
                                                return good && good->endPoint().x == 1.0;
                                            }),
              1);
    save(*db, "saved.dxf");
    std::string message;
    EXPECT_NE(dxf::openDrawing((m_folder / "saved.dxf").string(), message), nullptr) << message;
}

} // namespace
