#include "helpers.h"

#include <win/cfile.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

class Files : public ::testing::Test {
protected:
    void SetUp() override { setenv("QELCAD_DRIVE_D", temp.dir().c_str(), 1); }
    void TearDown() override { unsetenv("QELCAD_DRIVE_D"); }
    wintest::TempRegistry temp; // a folder of the test's own, seen as drive D:
};

namespace {

// The cause a CFile constructor throws for a name and flags; none when it opens.
int causeOf(const wchar_t* name, UINT flags) {
    try {
        CFile file(name, flags);
    } catch (CFileException* e) {
        int cause = e->m_cause;
        e->Delete();
        return cause;
    }
    return CFileException::none;
}

} // namespace

TEST_F(Files, CFileExceptionCausesComeFromTheSystemsErrors) {
    wintest::writeFile(temp.dir() / "plant.qel", "QEL");
    fs::create_directory(temp.dir() / "folder");
    EXPECT_EQ(causeOf(L"D:\\plant.qel", 0), CFileException::none);
    EXPECT_EQ(causeOf(L"D:\\missing.qel", 0), CFileException::fileNotFound);
    EXPECT_EQ(causeOf(L"D:\\no\\such\\dir\\x.qel", CFile::modeCreate | CFile::modeWrite),
              CFileException::badPath);
    EXPECT_EQ(causeOf(L"D:\\folder", 0), CFileException::accessDenied) << "a directory";
    EXPECT_EQ(causeOf(L"D:\\bad?name.qel", 4097), CFileException::badPath);
    EXPECT_EQ(causeOf(L"Q:\\x.qel", 0), CFileException::badPath) << "a drive this host lacks";

    CFile held(L"D:\\plant.qel", CFile::modeRead | CFile::shareExclusive);
    EXPECT_EQ(causeOf(L"D:\\plant.qel", 0), CFileException::sharingViolation);
    held.Close();
    EXPECT_EQ(causeOf(L"D:\\plant.qel", 0), CFileException::none) << "closed, it opens again";

    CFileException error;
    CFile file;
    EXPECT_FALSE(file.Open(L"D:\\missing.qel", CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
    EXPECT_EQ(error.m_lOsError, ERROR_FILE_NOT_FOUND);
    wchar_t message[200];
    EXPECT_TRUE(error.GetErrorMessage(message, 200));
    EXPECT_STREQ(message, L"D:\\missing.qel was not found.");
}

TEST_F(Files, CreateFileHonoursDispositionAndShareModes) {
    wintest::writeFile(temp.dir() / "out.qel", "old contents");
    HANDLE h = CreateFileW(L"D:\\out.qel", GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(fs::file_size(temp.dir() / "out.qel"), 0u) << "CREATE_ALWAYS empties the file";

    HANDLE reader = CreateFileW(L"D:/out.qel", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(reader, INVALID_HANDLE_VALUE) << "both share reading and writing";
    HANDLE exclusive =
        CreateFileW(L"D:\\out.qel", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(exclusive, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_SHARING_VIOLATION));
    EXPECT_TRUE(CloseHandle(reader));
    EXPECT_TRUE(CloseHandle(h));
    EXPECT_FALSE(CloseHandle(h));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_HANDLE));

    EXPECT_EQ(CreateFileW(L"D:\\out.qel", GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_FILE_EXISTS));
}

TEST_F(Files, StatusAttributesAndDirectories) {
    CFileStatus status;
    EXPECT_TRUE(CFile::GetStatus(L"D:\\", status));
    EXPECT_EQ(status.m_attribute, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_FALSE(CFile::GetStatus(L"D:\\nothing.qel", status));
    EXPECT_TRUE(CreateDirectoryW(L"D:\\logs", nullptr));
    EXPECT_FALSE(CreateDirectoryW(L"D:\\logs", nullptr));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_ALREADY_EXISTS));
    EXPECT_FALSE(CreateDirectoryW(L"D:\\a\\b", nullptr));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND)) << "parents are not made";
    EXPECT_EQ(PathIsDirectoryW(L"D:\\logs\\"), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_FALSE(PathIsDirectoryW(L"D:\\logs\\x"));
    EXPECT_EQ(_chdrive(4), 0);
    EXPECT_EQ(_chdrive(17), -1) << "Q: stands for nothing here";
}

TEST_F(Files, NamesTemporaryFilesAndWidePathFopen) {
    EXPECT_STREQ(PathFindFileNameW(L"C:\\models\\plant.qel"), L"plant.qel");
    EXPECT_STREQ(PathFindFileNameW(L"C:\\*.qel"), L"*.qel");
    EXPECT_STREQ(PathFindFileNameW(L"C:\\models\\"), L"models\\");

    wchar_t* name = _wtempnam(L"D:\\", L"QelTmp");
    ASSERT_NE(name, nullptr);
    std::wstring temporary = name;
    std::free(name);
    EXPECT_EQ(temporary.rfind(L"D:\\QelTmp", 0), 0u) << win::toUtf8(temporary);
    EXPECT_FALSE(PathFileExistsW(temporary.c_str()));

    FILE* log = _wfopen(L"D:\\Pl\u00e4ne.log", L"a+t");
    ASSERT_NE(log, nullptr);
    std::fputs("\n Restoring cad settings\n", log);
    std::fclose(log);
    EXPECT_EQ(wintest::readFile(temp.dir() / "Pl\u00e4ne.log"), "\n Restoring cad settings\n");

    wchar_t tempPath[MAX_PATH];
    DWORD length = GetTempPathW(MAX_PATH, tempPath);
    ASSERT_GT(length, 0u);
    EXPECT_EQ(tempPath[length - 1], L'/');
    EXPECT_EQ(GetTempPathW(1, tempPath), length + 1) << "too small: the size needed";
}
