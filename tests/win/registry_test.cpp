#include "helpers.h"

#include <cstring>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace {

const wchar_t* const kKey = L"Software\\Tovi Technologies\\QelPlugins\\AutoCAD\\Qelin";

// Runs `body` in a child process and returns its exit status: a process of its own, with none
// of this one's registry state behind it after the fork's copy is dropped.
template <typename Body>
int inChild(Body body) {
    pid_t pid = fork();
    if (pid == 0) _exit(body());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 100;
}

LSTATUS setString(HKEY key, const wchar_t* name, DWORD type, std::wstring text) {
    return RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

LSTATUS setDword(HKEY key, const wchar_t* name, DWORD value) {
    return RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                          sizeof value);
}

HKEY createKey(HKEY root = HKEY_CURRENT_USER) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    EXPECT_EQ(RegCreateKeyExW(root, kKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, &key, &disposition),
              ERROR_SUCCESS);
    return key;
}

// The one message of the host when the registry file with this text is first read.
std::string messageAboutFile(const std::filesystem::path& file, const std::string& text) {
    wintest::writeFile(file, text);
    wintest::TranscriptMark mark;
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Soft", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    auto host = mark.of(win::EventKind::Host);
    EXPECT_EQ(host.size(), 1u);
    return host.empty() ? "" : win::toUtf8(host[0].text);
}

} // namespace

class Registry : public ::testing::Test {
protected:
    wintest::TempRegistry registry;
};

TEST_F(Registry, ValuesOfEachTypeKeepTypeAndSizeAcrossARestart) {
    const wchar_t multi[] = L"first\0second\0"; // two strings and the closing empty one
    int written = inChild([&] {
        HKEY key = createKey();
        bool ok = setString(key, L"LastOpenDir", REG_SZ, L"C:\\models\\plant.qel") == 0 &&
                  setString(key, L"LogFilePath", REG_EXPAND_SZ, L"%TEMP%\\logs\\") == 0 &&
                  RegSetValueExW(key, L"Names", 0, REG_MULTI_SZ,
                                 reinterpret_cast<const BYTE*>(multi), sizeof multi) == 0 &&
                  setDword(key, L"ImportDwgUnits", 5) == 0 && RegCloseKey(key) == 0;
        return ok ? 0 : 1;
    });
    ASSERT_EQ(written, 0);

    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key), ERROR_SUCCESS);
    DWORD type = 0, size = 0;
    ASSERT_EQ(RegQueryValueExW(key, L"LastOpenDir", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD(REG_SZ));
    EXPECT_EQ(size, (std::wcslen(L"C:\\models\\plant.qel") + 1) * sizeof(wchar_t));
    std::vector<wchar_t> text(size / sizeof(wchar_t));
    ASSERT_EQ(RegQueryValueExW(key, L"LastOpenDir", nullptr, &type,
                               reinterpret_cast<BYTE*>(text.data()), &size),
              ERROR_SUCCESS);
    EXPECT_STREQ(text.data(), L"C:\\models\\plant.qel");

    ASSERT_EQ(RegQueryValueExW(key, L"LogFilePath", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD(REG_EXPAND_SZ));

    wchar_t names[32] = {};
    size = sizeof names;
    ASSERT_EQ(
        RegQueryValueExW(key, L"Names", nullptr, &type, reinterpret_cast<BYTE*>(names), &size),
        ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD(REG_MULTI_SZ));
    EXPECT_EQ(size, sizeof multi);
    EXPECT_EQ(std::memcmp(names, multi, sizeof multi), 0);

    DWORD units = 0;
    size = sizeof units;
    ASSERT_EQ(RegQueryValueExW(key, L"importdwgunits", nullptr, &type,
                               reinterpret_cast<BYTE*>(&units), &size),
              ERROR_SUCCESS)
        << "value names ignore case";
    EXPECT_EQ(type, DWORD(REG_DWORD));
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(units, 5u);
    RegCloseKey(key);

    // The file is readable by a person, with the type names.
    std::string file = wintest::readFile(registry.file());
    EXPECT_NE(file.find("\"REG_EXPAND_SZ\""), std::string::npos) << file;
    EXPECT_NE(file.find("C:\\\\models\\\\plant.qel"), std::string::npos) << file;
}

TEST_F(Registry, SmallBuffersMissingValuesAndAccessAreReportedAsTheSystemDoes) {
    HKEY missing = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &missing), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(missing, nullptr);

    HKEY key = createKey();
    ASSERT_EQ(setString(key, L"LastExportDir", REG_SZ, L"C:\\cadExport.qel"), ERROR_SUCCESS);
    wchar_t small[4];
    DWORD size = sizeof small, type = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"LastExportDir", nullptr, &type,
                               reinterpret_cast<BYTE*>(small), &size),
              ERROR_MORE_DATA);
    EXPECT_EQ(size, 17 * sizeof(wchar_t)) << "the size needed comes back";
    EXPECT_EQ(RegQueryValueExW(key, L"NoSuchValue", nullptr, &type, nullptr, &size),
              ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);

    HKEY writeOnly = nullptr, readOnly = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_SET_VALUE, &writeOnly), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(writeOnly, L"LastExportDir", nullptr, &type, nullptr, &size),
              ERROR_ACCESS_DENIED);
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &readOnly), ERROR_SUCCESS);
    EXPECT_EQ(setDword(readOnly, L"CreateLog", 1), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegCloseKey(writeOnly), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(readOnly), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(readOnly), ERROR_INVALID_HANDLE) << "a closed handle is gone";
}

TEST_F(Registry, CreateReportsNewOrExistingAndTheTreesAreSeparate) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                              &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, DWORD(REG_CREATED_NEW_KEY));
    RegCloseKey(key);
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER,
                              L"SOFTWARE\\tovi technologies\\QelPlugins\\AutoCAD\\Qelin", 0,
                              nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, DWORD(REG_OPENED_EXISTING_KEY)) << "key names ignore case";
    RegCloseKey(key);

    HKEY parent = nullptr;
    EXPECT_EQ(
        RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Tovi Technologies", 0, KEY_READ, &parent),
        ERROR_SUCCESS)
        << "the keys on the way were made too";
    RegCloseKey(parent);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ, &parent), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, TwoProcessesWritingAtOnceLoseNoValue) {
    RegCloseKey(createKey());
    auto writer = [](const wchar_t* prefix) {
        return [prefix] {
            HKEY key = nullptr;
            if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_WRITE, &key) != ERROR_SUCCESS)
                return 1;
            for (DWORD i = 0; i < 60; ++i) {
                std::wstring name = prefix + std::to_wstring(i);
                if (setDword(key, name.c_str(), i) != ERROR_SUCCESS) return 2;
                if (setDword(key, L"Shared", i) != ERROR_SUCCESS) return 3;
            }
            return RegCloseKey(key) == ERROR_SUCCESS ? 0 : 4;
        };
    };
    pid_t a = fork();
    if (a == 0) _exit(writer(L"A")());
    pid_t b = fork();
    if (b == 0) _exit(writer(L"B")());
    int statusA = 0, statusB = 0;
    waitpid(a, &statusA, 0);
    waitpid(b, &statusB, 0);
    ASSERT_EQ(WEXITSTATUS(statusA), 0);
    ASSERT_EQ(WEXITSTATUS(statusB), 0);

    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key), ERROR_SUCCESS);
    int found = 0;
    for (const wchar_t* prefix : {L"A", L"B"})
        for (DWORD i = 0; i < 60; ++i) {
            DWORD value = 99, size = sizeof value;
            std::wstring name = prefix + std::to_wstring(i);
            if (RegQueryValueExW(key, name.c_str(), nullptr, nullptr,
                                 reinterpret_cast<BYTE*>(&value), &size) == ERROR_SUCCESS &&
                value == i)
                ++found;
        }
    EXPECT_EQ(found, 120);
    DWORD shared = 0, size = sizeof shared;
    EXPECT_EQ(
        RegQueryValueExW(key, L"Shared", nullptr, nullptr, reinterpret_cast<BYTE*>(&shared), &size),
        ERROR_SUCCESS);
    EXPECT_EQ(shared, 59u) << "both writers ended on 59";
    RegCloseKey(key);
}

TEST_F(Registry, ACorruptFileIsKeptAsideWithAMessageNamingIt) {
    const std::string garbage =
        "{\"format\": \"qelcad-registry-1\", \"keys\": {\"HKEY_CURRENT_USER\\\\X\"";
    std::string message = messageAboutFile(registry.file(), garbage);
    EXPECT_NE(message.find(registry.file().string()), std::string::npos) << message;
    EXPECT_NE(message.find("not JSON"), std::string::npos) << message;
    EXPECT_NE(message.find(".corrupt"), std::string::npos) << message;
    EXPECT_EQ(wintest::readFile(registry.file().string() + ".corrupt"), garbage);

    // Work goes on in a new file; the backup stays as it was.
    wintest::TranscriptMark mark;
    HKEY created = createKey();
    EXPECT_EQ(setDword(created, L"CreateLog", 1), ERROR_SUCCESS);
    RegCloseKey(created);
    EXPECT_EQ(wintest::readFile(registry.file().string() + ".corrupt"), garbage);
    EXPECT_TRUE(mark.of(win::EventKind::Host).empty()) << "told once";
}

TEST_F(Registry, AValueWithoutTypeIsReportedByKeyAndName) {
    std::string message = messageAboutFile(
        registry.file(), R"({"format": "qelcad-registry-1", "keys": {"HKEY_CURRENT_USER\\Soft": )"
                         R"({"CreateLog": {"dword": 1}}}})");
    EXPECT_NE(
        message.find("key \"HKEY_CURRENT_USER\\Soft\", value \"CreateLog\": no valid \"type\""),
        std::string::npos)
        << message;
}

TEST_F(Registry, AValueAnotherProcessWroteIsSeenAtTheNextQuery) {
    HKEY key = createKey();
    ASSERT_EQ(setDword(key, L"ImportErrorCount", 1), ERROR_SUCCESS);
    DWORD count = 0, size = sizeof count;
    ASSERT_EQ(RegQueryValueExW(key, L"ImportErrorCount", nullptr, nullptr,
                               reinterpret_cast<BYTE*>(&count), &size),
              ERROR_SUCCESS);
    ASSERT_EQ(count, 1u);
    ASSERT_EQ(inChild([] {
                  HKEY other = nullptr;
                  RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_WRITE, &other);
                  return setDword(other, L"ImportErrorCount", 2) == ERROR_SUCCESS ? 0 : 1;
              }),
              0);
    size = sizeof count;
    ASSERT_EQ(RegQueryValueExW(key, L"ImportErrorCount", nullptr, nullptr,
                               reinterpret_cast<BYTE*>(&count), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(count, 2u) << "the handle open here reads what the other process wrote";
    RegCloseKey(key);
}
