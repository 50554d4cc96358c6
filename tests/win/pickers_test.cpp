#include "helpers.h"

using wintest::Scripted;
using wintest::TranscriptMark;

class Pickers : public ::testing::Test {
protected:
    void SetUp() override {
        wintest::writeFile(temp.dir() / "plant.qel", "QEL");
        folder = win::fromUtf8(temp.dir().string());
    }
    wintest::TempRegistry temp;
    std::wstring folder;
};

TEST_F(Pickers, AnOpenDialogInsistsOnAnExistingFileAndAddsTheExtension) {
    Scripted script("file " + temp.dir().string() + "/missing.qel\nfile " + temp.dir().string() +
                    "/plant\n");
    TranscriptMark mark;
    CFileDialog dialog(TRUE, L"qel", L"C:\\*.qel", 0x801005, L"Qel Data Files (*.qel)|*.qel||");
    EXPECT_STREQ(dialog.m_ofn.lpstrFilter, L"Qel Data Files (*.qel)") << "'|' became terminators";
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(std::wstring(dialog.GetPathName()), folder + L"/plant.qel");
    EXPECT_STREQ(dialog.GetFileName(), L"plant.qel");
    EXPECT_STREQ(dialog.GetFileExt(), L"qel");
    EXPECT_STREQ(dialog.GetFileTitle(), L"plant");
    auto boxes = mark.of(win::EventKind::MessageBox);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text,
              folder + L"/missing.qel\nFile not found.\nCheck the file name and try again.");
}

TEST_F(Pickers, ASaveDialogAsksBeforeReplacingAndMayBeCancelled) {
    {
        Scripted script("file " + temp.dir().string() + "/plant.qel\nbox no\nfile " +
                        temp.dir().string() + "/new.qel\n");
        CFileDialog dialog(FALSE, L"qel", nullptr, OFN_OVERWRITEPROMPT,
                           L"Qel Data Files (*.qel)|*.qel||");
        ASSERT_EQ(dialog.DoModal(), IDOK);
        EXPECT_EQ(std::wstring(dialog.GetPathName()), folder + L"/new.qel");
    }
    {
        Scripted script("file cancel\n");
        CFileDialog dialog(FALSE, L"qel");
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    }
    {
        Scripted script; // nobody answers: cancelled
        CFileDialog dialog(TRUE, L"qel");
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    }
}

TEST_F(Pickers, FolderBrowsingGivesAnExistingFolder) {
    Scripted script("folder " + temp.dir().string() + "/nowhere\nfolder " + temp.dir().string() +
                    "/\n");
    wchar_t display[MAX_PATH] = {};
    BROWSEINFOW info;
    info.lpszTitle = L"Select New Log File Folder";
    info.pszDisplayName = display;
    PIDLIST_ABSOLUTE item = SHBrowseForFolderW(&info);
    ASSERT_NE(item, nullptr);
    wchar_t path[MAX_PATH];
    ASSERT_TRUE(SHGetPathFromIDListW(item, path));
    CoTaskMemFree(item);
    EXPECT_EQ(std::wstring(path), folder + L"/");
    EXPECT_EQ(std::wstring(display), win::fromUtf8(temp.dir().filename().string()));
    EXPECT_EQ(SHBrowseForFolderW(&info), nullptr) << "no more answers: cancelled";
}

TEST(Cursor, TheWaitCursorIsSetAndGivenBack) {
    HCURSOR wait = LoadCursorW(nullptr, IDC_WAIT);
    HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
    ASSERT_NE(wait, nullptr);
    SetCursor(arrow);
    EXPECT_EQ(SetCursor(wait), arrow);
    EXPECT_EQ(win::cursorId(GetCursor()), 32514);
    EXPECT_EQ(SetCursor(arrow), wait);
    EXPECT_EQ(LoadCursorW(nullptr, MAKEINTRESOURCEW(1)), nullptr);
}
