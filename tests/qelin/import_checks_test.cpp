// The pure checks of the import dialog: the log folder and the text of hidden classes.
#include "import/hidden_class_text.h"
#include "import/log_folder_check.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

std::vector<unsigned> parsed(const char* text) {
    QelArray<unsigned> numbers;
    numbers.Append(999); // emptied first
    QelParseHiddenClasses(text, numbers);
    std::vector<unsigned> out;
    for (unsigned i = 0; i < numbers.GetCount(); ++i)
        out.push_back(numbers[i]);
    return out;
}

} // namespace

TEST(HiddenClassText, CommaEndedNamesOfTheTableOnlyAndTheLastNameIsLost) {
    EXPECT_EQ(parsed("Cylinder,Flange,Vertex3d,"), (std::vector<unsigned>{9, 11, 17}));
    EXPECT_EQ(parsed("cylinder,TRIMESH,PipeTee,"), (std::vector<unsigned>{9, 36, 54}))
        << "names are compared without regard to case";
    EXPECT_EQ(parsed("Cone,Sphere"), (std::vector<unsigned>{10})) << "no comma after Sphere";
    EXPECT_EQ(parsed("Nonsense,Layer,,Torus,"), (std::vector<unsigned>{14}))
        << "unknown names and empty tokens give nothing";
    EXPECT_TRUE(parsed("").empty());
    EXPECT_TRUE(parsed(nullptr).empty());
}

TEST(LogFolder, InvalidCharactersAndColonsPastTheDrive) {
    for (const wchar_t* bad :
         {L"C:\\logs<\\", L"C:\\a>b\\", L"C:\\a?\\", L"C:\\a*\\", L"C:\\a|b\\", L"C:\\a,b\\",
          L"C:\\a=b\\", L"C:\\a`b\\", L"C:\\\"a\"\\", L"C:\\a:b\\", L":\\logs\\"})
        EXPECT_TRUE(QelHasInvalidPathChars(bad)) << CString(bad).GetString();
    for (const wchar_t* good : {L"C:\\logs\\", L"/tmp/qel logs/", L"D:\\plant (2)\\", L"logs"})
        EXPECT_FALSE(QelHasInvalidPathChars(good)) << CString(good).GetString();
}

TEST(LogFolder, TrailingSeparatorAndDrives) {
    EXPECT_EQ(QelWithTrailingSeparator(L"C:\\logs"), CString(L"C:\\logs\\"));
    EXPECT_EQ(QelWithTrailingSeparator(L"C:\\logs\\"), CString(L"C:\\logs\\"));
    EXPECT_EQ(QelWithTrailingSeparator(L"/tmp/logs/"), CString(L"/tmp/logs/"));
    EXPECT_TRUE(QelDriveAccessible(L"/tmp/")) << "a path of this host has no drive";
    EXPECT_TRUE(QelDriveAccessible(L"C:\\"));
    ::unsetenv("QELCAD_DRIVE_Q");
    EXPECT_FALSE(QelDriveAccessible(L"Q:\\logs\\"));
}

TEST(LogFolder, FoldersAreMadeParentsFirst) {
    const auto root =
        std::filesystem::temp_directory_path() / ("qelin-folders-" + std::to_string(::getpid()));
    std::filesystem::remove_all(root);
    const std::wstring deep = (root / "a" / "b" / "c").wstring() + L"/";
    EXPECT_TRUE(QelCreateFolderTree(deep.c_str()));
    EXPECT_TRUE(std::filesystem::is_directory(root / "a" / "b" / "c"));
    EXPECT_TRUE(QelCreateFolderTree(deep.c_str())) << "an existing folder is fine";
    const std::wstring underFile = (root / "a" / "file").wstring();
    { std::ofstream(root / "a" / "file") << "x"; }
    EXPECT_FALSE(QelCreateFolderTree((underFile + L"/sub/").c_str()));
    std::filesystem::remove_all(root);
}
