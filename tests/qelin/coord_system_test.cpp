// The choice of the file's coordinate system: the list as the user sees it, when the dialog is
// shown at all, what the choice leaves in the document, the saved systems as named UCSs and the
// file's current UCS at the end.
#include "coords/coord_system_mgr.h"
#include "import_fixture.h"

#include <cmath>

namespace {

using qelintest::FileLayout;
using qelintest::ImportTest;
using qelintest::object;
using qelintest::transformation;

class CoordSystemTest : public ImportTest {
protected:
    // The names of the list, the selected index and the result of the choice.
    struct Choice {
        std::vector<std::wstring> names;
        int selected = -1;
        int result = 0;
    };
    Choice choose(const FileLayout& layout) {
        const std::wstring path = build(layout.json(), "cs" + std::to_string(m_serial++) + ".qel");
        QelReader reader(std::string(path.begin(), path.end()).c_str());
        CCoordSystemMgr mgr;
        double translation[3], rotation[4];
        Choice choice;
        choice.result = mgr.selectCoordinateSystem(&reader, translation, rotation);
        for (const CoordSystemEntry& e : mgr.Entries())
            choice.names.push_back(e.name.str());
        choice.selected = mgr.Selected();
        return choice;
    }
    static std::vector<double> ucsVar(const wchar_t* name) {
        resbuf rb{};
        acedGetVar(name, &rb);
        return {rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]};
    }
    int m_serial = 0;
};

const std::string kNorth = R"(["North", "object", )" +
                           transformation("[10, 20, 0]", "[0, 0, 1, 1.5707963705062866]") + "]";
const std::string kZero = R"(["Zero", "object", )" + transformation("[0, 0, 0]", "") + "]";

TEST_F(CoordSystemTest, NoSystemsInTheFileAndNoDialog) {
    answer("");
    FileLayout layout;
    const Choice choice = choose(layout);
    EXPECT_EQ(choice.names,
              (std::vector<std::wstring>{L"<None> (current)", L"<Default> (current)"}));
    EXPECT_EQ(choice.selected, 1);
    EXPECT_EQ(choice.result, 1);
    EXPECT_EQ(dialogsOpened(CCoordSystemMgr::IDD), 0);
}

TEST_F(CoordSystemTest, TheCurrentSystemIsMarkedAndPreselected) {
    answer("dialog 1005\n  ok\n");
    FileLayout layout;
    layout.coordSystems = kNorth + ", " + kZero;
    layout.currCoordSys = transformation("[10, 20, 0]", "[0, 0, 1, 1.5707963705062866]");
    const Choice choice = choose(layout);
    EXPECT_EQ(choice.names,
              (std::vector<std::wstring>{L"<None>", L"<Default>", L"North (current)", L"Zero"}));
    EXPECT_EQ(choice.selected, 2);
    EXPECT_EQ(dialogsOpened(CCoordSystemMgr::IDD), 1);
    // OK takes the selection into the document, and the saved systems become named UCSs.
    EXPECT_EQ(QelDocData().selectedTranslation[0], 10.0);
    EXPECT_EQ(QelDocData().selectedRotation[3], 1.5707963705062866);
    EXPECT_EQ(ucsNames(), (std::vector<std::wstring>{L"North", L"Zero"}));
    EXPECT_TRUE(logText().find("\n User selected coordinate system : North (current)") !=
                std::string::npos);
}

TEST_F(CoordSystemTest, AnUnsavedCurrentSystemComesLastAndAZeroSystemSharesTheMark) {
    answer("dialog 1005\n  ok\n");
    FileLayout layout;
    layout.coordSystems = kNorth;
    layout.currCoordSys = transformation("[1, 2, 3]", "");
    Choice choice = choose(layout);
    EXPECT_EQ(choice.names,
              (std::vector<std::wstring>{L"<None>", L"<Default>", L"North", L"<Unsaved>"}));
    EXPECT_EQ(choice.selected, 3);
    // OK on the preselection takes the unsaved system.
    EXPECT_EQ(QelDocData().selectedTranslation[2], 3.0);

    // The identity saved under a name: every equal entry is marked, the last one selected; the
    // file's default makes the choice matter.
    answer("dialog 1005\n  cancel\n");
    layout.coordSystems = kZero;
    layout.currCoordSys = "";
    layout.defCoordSys = transformation("[5, 0, 0]", "");
    choice = choose(layout);
    EXPECT_EQ(choice.names,
              (std::vector<std::wstring>{L"<None> (current)", L"<Default>", L"Zero (current)"}));
    EXPECT_EQ(choice.selected, 2);
    EXPECT_EQ(choice.result, 2);
}

TEST_F(CoordSystemTest, LengthsAndTheAxisAreConvertedTheAngleIsNot) {
    answer("dialog 1005\n  ok\n");
    QelDocData().importUnitIndex = 1; // millimetres
    FileLayout layout;
    layout.currCoordSys = transformation("[0.01, 0.02, 0]", "[0, 0, 0.001, 0.5]");
    choose(layout);
    const CDocData& doc = QelDocData();
    EXPECT_DOUBLE_EQ(doc.selectedTranslation[0], 10.0);
    EXPECT_DOUBLE_EQ(doc.selectedTranslation[1], 20.0);
    EXPECT_DOUBLE_EQ(doc.selectedRotation[2], 1.0); // the axis is scaled with the rest
    EXPECT_EQ(doc.selectedRotation[3], 0.5);
}

TEST_F(CoordSystemTest, AnImportCancelledAtTheDialogChangesNothing) {
    answer("dialog 1005\n  cancel\n");
    FileLayout layout;
    layout.objects = {object("Cylinder")};
    layout.layers = {{R"("Piping")", "[0]", ""}};
    layout.coordSystems = kNorth;
    run(layout);
    EXPECT_NE(printed().find(L"\n User cancelled, import stopped."), std::wstring::npos);
    EXPECT_NE(logText().find("\n User cancelled, import stopped.\n"), std::string::npos);
    EXPECT_FALSE(layer(L"Piping"));
    EXPECT_FALSE(layer(L"z_VelmoraDefaultLayer"));
    EXPECT_TRUE(ucsNames().empty());
    EXPECT_EQ(errorCount(), 0u);
}

TEST_F(CoordSystemTest, TheFilesCurrentUcsComesBackAtTheEndUnderTheChosenMapping) {
    // The user keeps <None>: the file's current system shows where it lies in the file.
    answer("dialog 1005\n  system = <None>\n  ok\n");
    FileLayout layout;
    layout.layers = {{R"("Piping")", "", ""}};
    layout.coordSystems = kNorth;
    layout.currCoordSys = transformation("[10, 20, 0]", "[0, 0, 1, 1.5707963705062866]");
    run(layout);
    const auto origin = ucsVar(L"UCSORG"), xDir = ucsVar(L"UCSXDIR");
    EXPECT_NEAR(origin[0], 10.0, 1e-9);
    EXPECT_NEAR(origin[1], 20.0, 1e-9);
    EXPECT_NEAR(xDir[0], 0.0, 1e-6); // turned a quarter about Z: X points along world Y
    EXPECT_NEAR(xDir[1], 1.0, 1e-6);
    EXPECT_EQ(ucsNames(), (std::vector<std::wstring>{L"North"}));

    // Choosing North maps North onto the world: the current UCS, North itself, is the world.
    answer("dialog 1005\n  system = North (current)\n  ok\n");
    run(layout);
    const auto mappedOrigin = ucsVar(L"UCSORG"), mappedX = ucsVar(L"UCSXDIR");
    EXPECT_NEAR(std::hypot(mappedOrigin[0], mappedOrigin[1]), 0.0, 1e-6);
    EXPECT_NEAR(mappedX[0], 1.0, 1e-6);
}

} // namespace
