// The log and the error reporter together, as a run uses them.
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "host_fixture.h"

#include <arx/aced.h>

using qelintest::HostTest;

namespace {
class Reporting : public HostTest {};
} // namespace

TEST_F(Reporting, WithoutLoggingNothingIsWrittenOrSaid) {
    QelDocData().createLog = 0;
    QelLogCreate();
    EXPECT_EQ(QelLogAppend(L"line"), -1);
    EXPECT_EQ(QelLogWrite(L"line", logPath().wstring().c_str()), -1);
    EXPECT_FALSE(std::filesystem::exists(logPath()));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Reporting, EachRunStartsANewLogAndTextsGoInAsTheyStand) {
    QelDocData().createLog = 1;
    QelLogCreate();
    EXPECT_EQ(QelLogAppend(L"\n First run."), 0);
    QelLogCreate(); // the second import of the same drawing
    EXPECT_EQ(QelLogAppend(L"\n New layer: [Rohrleitung]"), 0);
    EXPECT_EQ(QelLogWrite(L" Already exists.", logPath().wstring().c_str()), 0);
    EXPECT_EQ(logText(), "\n New layer: [Rohrleitung] Already exists.");
}

TEST_F(Reporting, TheSuppressQuestionComesOnceAfterYes) {
    QelDocData().createLog = 1;
    QelLogCreate();
    answer("box no\nbox yes\n");
    QelReportError(L"\nBad radius");
    QelReportError(L"\nBad height");
    QelReportError(L"\nBad angle");
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u) << "No asks again, Yes silences";
    EXPECT_EQ(shown[0], L"\nBad radius\n\nSuppress all non-critical error messages?|36");
    DWORD suppressed = 0;
    ReadNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", suppressed);
    EXPECT_EQ(suppressed, 1u);
    EXPECT_EQ(logText(), "\nBad radius\nBad height\nBad angle")
        << "silenced errors are still logged";
    QelReportErrorNoLog(L"\nnot logged");
    EXPECT_EQ(logText(), "\nBad radius\nBad height\nBad angle");
}

TEST_F(Reporting, ErrorsAreCountedInTheStore) {
    unsigned count = 99;
    EXPECT_TRUE(QelGetErrorCount(count));
    EXPECT_EQ(count, 0u);
    QelCountError();
    QelCountError();
    QelGetErrorCount(count);
    EXPECT_EQ(count, 2u);
}

TEST_F(Reporting, AnUnwritableLogSaysSoOnceAndStops) {
    QelDocData().createLog = 1;
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LogFilePath", L"/no/such/folder/"));
    answer("");
    EXPECT_EQ(QelLogAppend(L"text"), -1);
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0],
              L"Error opening qel log file\n\nSuppress all non-critical error messages?|36");
}

TEST_F(Reporting, FailedOpensNameTheirCause) {
    const std::wstring missing = (m_folder / "absent.qel").wstring();
    EXPECT_FALSE(QelOpenFile(missing.c_str(), GENERIC_READ));
    EXPECT_EQ(boxes(), (std::vector<std::wstring>{L"ERROR: The file could not be located.|48"}));
    const std::wstring made = (m_folder / "made.log").wstring();
    EXPECT_TRUE(QelOpenFile(made.c_str(), GENERIC_WRITE));
    EXPECT_TRUE(std::filesystem::exists(made));
}

TEST_F(Reporting, AlertsCarryTheStatusText) {
    QelAlertStatus(Acad::eInvalidInput, L"acdbGetObjectId failed");
    QelAlertStatusFormat(Acad::eOk, L"CX: Could not open dictionary\n<%s>", L"MemberRec");
    QelAlert(L"%s", L"no selection");
    const auto shown = alerts();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[0], std::wstring(L"acdbGetObjectId failed\n(ERROR:<") +
                            acadErrorStatusText(Acad::eInvalidInput) + L">");
    EXPECT_EQ(shown[1].rfind(L"CX: Could not open dictionary\n<MemberRec>\n(ERROR:<", 0), 0u)
        << shown[1];
    EXPECT_EQ(shown[2], L"ARX ERROR: no selection");
}
