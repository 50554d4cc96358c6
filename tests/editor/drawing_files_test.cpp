// OPEN, SAVE and SAVEAS on DXF files.
#include "editor_test.h"

#include <arx/acdocman.h>

#include <filesystem>
#include <fstream>

namespace editortest {
namespace {

namespace fs = std::filesystem;

class DrawingFiles : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        folder = fs::temp_directory_path() /
                 ("qel-files-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override {
        EditorTest::TearDown();
        fs::remove_all(folder);
    }
    std::wstring path(const char* name) const { return (folder / name).wstring(); }
    fs::path folder;
};

TEST_F(DrawingFiles, SaveAsThenOpenBringsTheDrawingBackAsANewDocument) {
    addLayer(L"Pipes", true);
    const AcDbObjectId line = add(new AcDbLine({0, 0, 0}, {1, 2, 3}), L"Pipes");
    const AcDbHandle handle = line.handle();
    answers(path("plant") + L"\n");
    ASSERT_EQ(qelhost::runCommand(L"SAVEAS"), RTNORM) << printed();
    EXPECT_TRUE(fs::exists(folder / "plant.dxf")) << "the extension is added";
    EXPECT_STREQ(curDoc()->docTitle(), L"plant.dxf");
    // SAVE goes back to the same file without asking.
    answers(L"");
    EXPECT_EQ(qelhost::runCommand(L"SAVE"), RTNORM) << printed();

    answers(path("plant.dxf") + L"\n");
    ASSERT_EQ(qelhost::runCommand(L"OPEN"), RTNORM) << printed();
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 2);
    AcDbObjectId same;
    ASSERT_EQ(db()->getAcDbObjectId(same, false, handle), Acad::eOk);
    AcDbEntity* e = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(e, same, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(static_cast<AcDbLine*>(e)->endPoint(), AcGePoint3d(1, 2, 3));
    ACHAR* layer = e->layer();
    EXPECT_EQ(std::wstring(layer), L"Pipes");
    acutDelString(layer);
    e->close();
    AcDbLayerTableRecord* pipes = openLayer(L"Pipes");
    EXPECT_TRUE(pipes->isOff());
    pipes->close();
}

TEST_F(DrawingFiles, RefusalsSayWhyAndChangeNothing) {
    answers(path("missing.dxf") + L"\n");
    EXPECT_EQ(qelhost::runCommand(L"OPEN"), RTERROR);
    EXPECT_NE(printed().find(L"cannot be read"), std::wstring::npos) << printed();
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 1);
    std::ofstream(folder / "broken.dxf") << "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\n";
    answers(path("broken.dxf") + L"\n");
    EXPECT_EQ(qelhost::runCommand(L"OPEN"), RTERROR);
    EXPECT_NE(printed().find(L"broken.dxf, line"), std::wstring::npos) << printed();
    answers(path("plant.dwg") + L"\n");
    EXPECT_EQ(qelhost::runCommand(L"SAVEAS"), RTERROR);
    EXPECT_NE(printed().find(L"ending in .dxf"), std::wstring::npos) << printed();
    // A new drawing has no file yet: SAVE asks for one.
    answers(path("asked.dxf") + L"\n");
    EXPECT_EQ(qelhost::runCommand(L"SAVE"), RTNORM) << printed();
    EXPECT_TRUE(fs::exists(folder / "asked.dxf"));
}

} // namespace
} // namespace editortest
