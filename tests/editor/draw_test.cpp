// Entities drawn by commands: splines through fit points, face meshes, points; ZOOM and menus.
#include "editor_test.h"

#include <win/scripted.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace editortest {
namespace {

using DrawCommands = EditorTest;

template <class T>
T* openLast() {
    ads_name last;
    AcDbObjectId id;
    if (acdbEntLast(last) != RTNORM || acdbGetObjectId(id, last) != Acad::eOk) return nullptr;
    T* entity = nullptr;
    acdbOpenObject(entity, id, AcDb::kForRead);
    return entity;
}

resbuf* commandList(const wchar_t* name, std::initializer_list<AcGePoint3d> points,
                    std::initializer_list<const wchar_t*> tail) {
    resbuf* head = acutBuildList(RTSTR, name, 0);
    resbuf* end = head;
    for (const AcGePoint3d& p : points) {
        ads_point q = {p.x, p.y, p.z};
        end = end->rbnext = acutBuildList(RT3DPOINT, q, 0);
    }
    for (const wchar_t* word : tail)
        end = end->rbnext = acutBuildList(RTSTR, word, 0);
    return head;
}

TEST_F(DrawCommands, SplineThroughFitPointsOpenAndClosed) {
    resbuf* open = commandList(L"_spline", {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {L"", L"", L""});
    ASSERT_EQ(acedCmd(open), RTNORM);
    acutRelRb(open);
    AcDbSpline* spline = openLast<AcDbSpline>();
    ASSERT_NE(spline, nullptr);
    EXPECT_EQ(spline->numFitPoints(), 3);
    AcGePoint3d end;
    spline->getEndPoint(end);
    EXPECT_TRUE(end.isEqualTo({2, 0, 0}));
    spline->close();

    resbuf* closed = commandList(L"_spline", {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {L"_Close", L""});
    ASSERT_EQ(acedCmd(closed), RTNORM);
    acutRelRb(closed);
    spline = openLast<AcDbSpline>();
    ASSERT_NE(spline, nullptr);
    AcGePoint3d start;
    spline->getStartPoint(start);
    spline->getEndPoint(end);
    EXPECT_TRUE(start.isEqualTo(end)) << "a closed spline ends where it starts";
    spline->close();

    // One point is no spline; missing answers cancel.
    resbuf* single = commandList(L"_spline", {{0, 0, 0}}, {L""});
    EXPECT_EQ(acedCmd(single), RTERROR);
    acutRelRb(single);
    resbuf* unfinished = commandList(L"_spline", {{0, 0, 0}, {1, 0, 0}}, {L""});
    EXPECT_EQ(acedCmd(unfinished), RTCAN);
    acutRelRb(unfinished);
    EXPECT_EQ(entityCount(), 2);
}

TEST_F(DrawCommands, PfaceOfOneFaceOverAllVertices) {
    resbuf* list = acutBuildList(RTSTR, L"_pface", 0);
    resbuf* end = list;
    const int n = 6;
    for (int i = 0; i < n; ++i) {
        ads_point p = {std::cos(i * 1.0), std::sin(i * 1.0), 0};
        end = end->rbnext = acutBuildList(RTPOINT, p, 0);
    }
    end = end->rbnext = acutBuildList(RTSTR, L"", 0);
    for (int i = 1; i <= n; ++i)
        end = end->rbnext = acutBuildList(RTSHORT, i, 0);
    end = end->rbnext = acutBuildList(RTSTR, L"", RTSTR, L"", 0);
    ASSERT_EQ(acedCmd(list), RTNORM);
    acutRelRb(list);
    AcDbPolyFaceMesh* mesh = openLast<AcDbPolyFaceMesh>();
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices(), n);
    // Six vertices take two records of four; the seam between them is hidden.
    EXPECT_EQ(mesh->numFaces(), 2);
    mesh->close();
}

TEST_F(DrawCommands, ZoomExtentsAndListShowTheDrawing) {
    ads_point a = {1, 2, 3}, b = {-4, 0, 9};
    ASSERT_EQ(acedCommand(RTSTR, L"_point", RT3DPOINT, a, RTSTR, L"_point", RT3DPOINT, b, RTSTR,
                          L"_zoom", RTSTR, L"_extents", RTNONE),
              RTNORM);
    EXPECT_NE(printed().find(L"View: -4.000000,0.000000,3.000000 to 1.000000,2.000000,9.000000"),
              std::wstring::npos)
        << printed();
    answers(L"\n");
    EXPECT_EQ(qelhost::runCommand(L"LIST"), RTNORM);
    EXPECT_NE(printed().find(L"POINT  Layer: \"0\""), std::wstring::npos);
    EXPECT_NE(printed().find(L"(10) -4.000000,0.000000,9.000000"), std::wstring::npos);
    answers(L"FFFF\n");
    EXPECT_EQ(qelhost::runCommand(L"LIST"), RTERROR);
}

TEST_F(DrawCommands, MenusLoadByGroupAndInsertPullDowns) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("qel-editor-menus-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "VelmoraQEL.mns") << "***MENUGROUP=QEL\n***POP11\n";
    qelhost::setSupportFolders({folder});
    EXPECT_FALSE(acedIsMenuGroupLoaded(L"QEL"));
    EXPECT_EQ(acedMenuCmd(L"P12=+QEL.POP11"), RTERROR) << "the group isn't loaded";
    ASSERT_EQ(acedCommand(RTSTR, L"_menuload", RTSTR, L"VelmoraQEL.mns", RTNONE), RTNORM);
    EXPECT_TRUE(acedIsMenuGroupLoaded(L"qel"));
    EXPECT_EQ(acedMenuCmd(L"P12=+QEL.POP11"), RTNORM);
    EXPECT_EQ(qelhost::insertedMenus(), (std::vector<std::wstring>{L"P12=+QEL.POP11"}));
    EXPECT_EQ(acedCommand(RTSTR, L"_menuload", RTSTR, L"VelmoraQEL.mns", RTNONE), RTERROR);
    ASSERT_EQ(acedCommand(RTSTR, L"_menuunload", RTSTR, L"QEL", RTNONE), RTNORM);
    EXPECT_FALSE(acedIsMenuGroupLoaded(L"QEL"));
    EXPECT_TRUE(qelhost::insertedMenus().empty());
    EXPECT_EQ(acedCommand(RTSTR, L"_cuiload", RTSTR, L"Missing.cuix", RTNONE), RTERROR);
    std::filesystem::remove_all(folder);
}

TEST_F(DrawCommands, MenugroupsListsGroupsAndPullDowns) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("qel-editor-groups-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "A.mns") << "***MENUGROUP=QEL\n";
    std::ofstream(folder / "Tools.cuix") << "packed\n";
    qelhost::setSupportFolders({folder});
    ASSERT_EQ(qelhost::runCommand(L"MENUGROUPS"), RTNORM);
    EXPECT_NE(printed().find(L"Menu groups: none\nPull-downs: none\n"), std::wstring::npos);
    ASSERT_EQ(acedCommand(RTSTR, L"_menuload", RTSTR, L"A.mns", RTNONE), RTNORM);
    ASSERT_EQ(acedCommand(RTSTR, L"_cuiload", RTSTR, L"Tools.cuix", RTNONE), RTNORM);
    ASSERT_EQ(acedMenuCmd(L"P12=+QEL.POP11"), RTNORM);
    ASSERT_EQ(qelhost::runCommand(L"MENUGROUPS"), RTNORM);
    EXPECT_NE(printed().find(L"Menu groups: QEL TOOLS\nPull-downs: P12=+QEL.POP11\n"),
              std::wstring::npos)
        << printed();
    qelhost::setSupportFolders({});
    std::filesystem::remove_all(folder);
}

// A person at the keyboard, as the terminal is.
class KeyboardInput : public qelhost::ScriptInput {
public:
    using ScriptInput::ScriptInput;
    bool interactive() const override { return true; }
};

TEST_F(DrawCommands, MenuloadAtTheKeyboardShowsTheFileDialogWhileFiledia) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("qel-editor-filedia-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Tools.mns") << "***MENUGROUP=TOOLS\n";
    auto presenter = std::make_shared<win::ScriptedPresenter>();
    std::string error;
    ASSERT_TRUE(presenter->parse("file " + (folder / "Tools.mns").string() + "\n", error));
    win::setPresenter(presenter);
    qelhost::setInput(std::make_shared<KeyboardInput>(L""));
    EXPECT_EQ(qelhost::runCommand(L"MENULOAD"), RTNORM);
    EXPECT_TRUE(acedIsMenuGroupLoaded(L"TOOLS"));
    // A program gives the name at the prompt whatever FILEDIA says; a cancelled dialog cancels.
    EXPECT_EQ(qelhost::runCommand(L"MENULOAD"), RTCAN) << "no answer: the dialog is cancelled";
    EXPECT_EQ(acedCommand(RTSTR, L"_menuunload", RTSTR, L"TOOLS", RTSTR, L"_menuload", RTSTR,
                          (folder / "Tools.mns").wstring().c_str(), RTNONE),
              RTNORM);
    EXPECT_TRUE(acedIsMenuGroupLoaded(L"TOOLS"));
    win::setPresenter(nullptr);
    std::filesystem::remove_all(folder);
}

TEST_F(DrawCommands, StatusBarMeterReportsProgress) {
    ASSERT_EQ(acedSetStatusBarProgressMeter(L"Importing", 0, 200), 0);
    acedSetStatusBarProgressMeterPos(50);
    acedSetStatusBarProgressMeterPos(500);
    acedRestoreStatusBar();
    std::vector<int> percents;
    for (const auto& e : win::Transcript::instance().events())
        if (e.kind == win::EventKind::Progress && e.what.empty() && e.text.empty())
            percents.push_back(e.percent);
    EXPECT_EQ(percents, (std::vector<int>{25, 100}));
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Empty", 5, 5), -1);
}

} // namespace
} // namespace editortest
