// The module's answers to the host's messages: start-up with its banner and command group, the
// group's removal, and the resets of the per-document records when a drawing goes.
#include "host_fixture.h"
#include "shell/app_messages.h"
#include "shell/commands.h"

#include <arx/accmd.h>

using qelintest::HostTest;

namespace {

class Shell : public HostTest {
protected:
    void start() {
        answer("box no\n");
        ASSERT_EQ(QelAppMessage(AcRx::kInitAppMsg, &m_appId), AcRx::kRetOK);
    }
    void TearDown() override {
        QelAppMessage(AcRx::kUnloadAppMsg, &m_appId);
        HostTest::TearDown();
    }
    static AcEdCommand* command(const wchar_t* name) {
        return acedRegCmds()->lookupCmd(name, true);
    }
    int m_appId = 0;
};

} // namespace

TEST_F(Shell, StartUpReportsTheMissingCompanionThenAnnouncesAndAddsTheCommands) {
    start();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0], L"ERROR: Loading ToviQelOut.dll.\nThis may cause errors if you call "
                        L"QelOut.\n\n\nSuppress all non-critical error messages?|36");
    const std::wstring printed = win::Transcript::instance().printed(m_mark);
    const auto banner = printed.find(L"Loading Velmora QEL Plugin Version 6.1 (Build 170)...\n");
    ASSERT_NE(banner, std::wstring::npos) << printed;
    EXPECT_NE(printed.find(L"  Commands added: QELIN, QELOUT, QELXPLODE, QELANN\n  If you do not "
                           L"see ribbon tab QEL, run QELMENU command twice to update it.\n",
                           banner),
              std::wstring::npos);
    for (const QelCommandRow& row : QelCommandTable) {
        AcEdCommand* found = command(row.name);
        ASSERT_NE(found, nullptr) << row.name;
        EXPECT_EQ(found->functionAddr(), row.function);
        EXPECT_EQ(found->commandFlags(), ACRX_CMD_MODAL);
    }
    QelAppMessage(AcRx::kUnloadAppMsg, &m_appId);
    for (const QelCommandRow& row : QelCommandTable)
        EXPECT_EQ(command(row.name), nullptr) << row.name << " left with the group";
}

TEST_F(Shell, CommandsOfLaterBuildsSaySoInOneLine) {
    start();
    for (const wchar_t* name : {L"QELXPLODE", L"QELMENU"}) {
        const std::size_t mark = win::Transcript::instance().size();
        command(name)->functionAddr()();
        EXPECT_EQ(win::Transcript::instance().printed(mark),
                  L"\n" + std::wstring(name) + L" is not in this build of QelIn.\n");
    }
}

TEST_F(Shell, UnloadingADrawingMarksEveryRecordButResetsOnlyTheCurrentOne) {
    AcApDocument* other = m_document;
    AcApDocument* current = qelhost::newDocument();
    for (AcApDocument* document : {other, current}) {
        CDocData& record = QelDocDataManager().docData(document);
        record.firstLoad = 0;
        record.importScale = 2.5;
        record.importOptionsValid = 1;
        record.exportOptionsValid = 1;
    }
    QelAppMessage(AcRx::kUnloadDwgMsg, &m_appId);
    const CDocData& kept = QelDocDataManager().docData(other);
    const CDocData& reset = QelDocDataManager().docData(current);
    EXPECT_EQ(kept.firstLoad, 1);
    EXPECT_EQ(reset.firstLoad, 1);
    EXPECT_EQ(kept.importScale, 2.5);
    EXPECT_EQ(kept.importOptionsValid, 1);
    EXPECT_EQ(kept.exportOptionsValid, 1);
    EXPECT_EQ(reset.importScale, 1.0);
    EXPECT_EQ(reset.importOptionsValid, 0);
    EXPECT_EQ(reset.exportOptionsValid, 0);
    qelhost::closeDocument(current);
}

TEST_F(Shell, LoadingADrawingDoesNothingAndAClosedDocumentLosesItsRecord) {
    const std::size_t before = QelDocDataManager().size();
    QelAppMessage(AcRx::kLoadDwgMsg, &m_appId);
    EXPECT_EQ(QelDocDataManager().size(), before) << "records are made on first use only";
    EXPECT_TRUE(alerts().empty());

    AcApDocument* second = qelhost::newDocument();
    QelDocData().importScale = 4.0;
    EXPECT_EQ(QelDocDataManager().size(), before + 1);
    qelhost::closeDocument(second);
    EXPECT_EQ(QelDocDataManager().size(), before);
}
