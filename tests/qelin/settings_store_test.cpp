// The settings store: one key of the user, values read with the caller's defaults kept.
#include "shell/settings_store.h"
#include "support.h"

#include "../support/command.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class SettingsStore : public ::testing::Test {
protected:
    qelintest::ScratchRegistry registry;
};

} // namespace

TEST_F(SettingsStore, WithoutTheKeyReadsFailAndTheFirstRunMakesIt) {
    DWORD units = 4;
    EXPECT_FALSE(KeyExists(QEL_SETTINGS_KEY));
    EXPECT_FALSE(ReadNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", units));
    EXPECT_EQ(units, 4u) << "the caller's default stays";
    CString text = L"start";
    EXPECT_FALSE(ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", text));
    EXPECT_EQ(text, CString(L"Unable to open key"));
    EXPECT_FALSE(WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 1)) << "writes need the key";

    EXPECT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    EXPECT_TRUE(KeyExists(QEL_SETTINGS_KEY));
    EXPECT_TRUE(CreateNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", 5));
    EXPECT_TRUE(CreateString(QEL_SETTINGS_KEY, L"LogFilePath", L"default"));
    EXPECT_TRUE(ReadNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", units));
    EXPECT_EQ(units, 5u);
    EXPECT_TRUE(ReadString(QEL_SETTINGS_KEY, L"LogFilePath", text));
    EXPECT_EQ(text, CString(L"default"));
}

TEST_F(SettingsStore, MissingAndMistypedValues) {
    ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    DWORD count = 7;
    EXPECT_TRUE(ReadNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", count))
        << "a missing value is not a failure";
    EXPECT_EQ(count, 7u);
    CString text;
    EXPECT_FALSE(ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", text));
    EXPECT_EQ(text, CString(L"Unable to query value"));

    // The dialogs write the suppress flag as text; a number read of it keeps the start value.
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", L"0"));
    DWORD suppress = 42;
    EXPECT_TRUE(ReadNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", suppress));
    EXPECT_EQ(suppress, 42u);
    // And a text read of a number gives empty text, successfully.
    ASSERT_TRUE(WriteNumber(QEL_SETTINGS_KEY, L"CreateLog", 1));
    text = L"x";
    EXPECT_TRUE(ReadString(QEL_SETTINGS_KEY, L"CreateLog", text));
    EXPECT_TRUE(text.IsEmpty());
}

TEST_F(SettingsStore, TextWithoutItsTerminatorReadsEmpty) {
    ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, QEL_SETTINGS_KEY, 0, KEY_WRITE, &key),
              ERROR_SUCCESS);
    const wchar_t raw[] = L"abc";
    ASSERT_EQ(RegSetValueExW(key, L"LastOpenDir", 0, REG_SZ, reinterpret_cast<const BYTE*>(raw),
                             3 * sizeof(wchar_t)),
              ERROR_SUCCESS);
    RegCloseKey(key);
    CString text = L"x";
    EXPECT_TRUE(ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", text));
    EXPECT_TRUE(text.IsEmpty());
}

// Run alone by ValuesOutliveTheProcess, as a second process on the same store.
TEST(SettingsStoreSecondProcess, DISABLED_ReadsWhatTheFirstWrote) {
    CString text;
    ASSERT_TRUE(ReadString(QEL_SETTINGS_KEY, L"LastExportDir", text));
    EXPECT_EQ(text, CString(L"/plant/out/Übergabe.qel"));
}

TEST_F(SettingsStore, ValuesOutliveTheProcess) {
    ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastExportDir", L"/plant/out/Übergabe.qel"));
    // Another process shares nothing with this one but the store (the scratch key's file).
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const Outcome second = runCommand(
        "'" + self +
        "' --gtest_also_run_disabled_tests"
        " --gtest_filter=SettingsStoreSecondProcess.DISABLED_ReadsWhatTheFirstWrote 2>&1");
    EXPECT_EQ(second.status, 0) << second.out;
    EXPECT_NE(second.out.find("1 test"), std::string::npos) << second.out;
}
