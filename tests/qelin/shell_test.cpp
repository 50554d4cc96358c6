// The module's answers to the host's messages: start-up with its banner and command group, the
// group's removal, and the resets of the per-document records when a drawing goes.
#include "host_fixture.h"
#include "shell/app_messages.h"
#include "shell/commands.h"
#include "shell/menu_loading.h"

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

namespace {

short shortVariable(const wchar_t* name) {
    resbuf value;
    value.restype = RTNONE;
    EXPECT_EQ(acedGetVar(name, &value), RTNORM) << name;
    return value.resval.rint;
}

void setShort(const wchar_t* name, short to) {
    resbuf value;
    value.restype = RTSHORT;
    value.resval.rint = to;
    ASSERT_EQ(acedSetVar(name, &value), RTNORM) << name;
}

} // namespace

// Each version takes its menu file and pull-down place; the second run unloads what the first
// loaded, and both leave the echo and file-dialog switches as they found them.
TEST_F(Shell, QelmenuTogglesTheMenuInTheFormOfTheHostsVersion) {
    struct Case {
        const wchar_t* version;
        const wchar_t* insert;
        short menuBar; // after the load, from 0
    };
    const Case cases[] = {
        {L"17.2s (LMS Tech)", L"P10=+QEL.POP11", 0},
        {L"18.2s (LMS Tech)", L"P12=+QEL.POP11", 1},
        {L"19.0s (LMS Tech)", L"P12=+QEL.POP11", 0},
        {L"24.199", L"P12=+QEL.POP11", 0},
    };
    qelhost::setSupportFolders({QEL_MENU_DIR});
    start();
    for (const Case& c : cases) {
        ASSERT_EQ(qelhost::setSystemVariable(L"ACADVER", c.version, true), RTNORM);
        setShort(L"MENUBAR", 0);
        setShort(L"CMDECHO", 1);
        setShort(L"FILEDIA", 1);
        command(L"QELMENU")->functionAddr()();
        EXPECT_TRUE(acedIsMenuGroupLoaded(L"QEL")) << c.version;
        EXPECT_EQ(qelhost::insertedMenus(), std::vector<std::wstring>{c.insert}) << c.version;
        EXPECT_EQ(shortVariable(L"MENUBAR"), c.menuBar) << c.version;
        EXPECT_EQ(shortVariable(L"CMDECHO"), 1);
        EXPECT_EQ(shortVariable(L"FILEDIA"), 1);

        setShort(L"MENUBAR", 0);
        command(L"QELMENU")->functionAddr()();
        EXPECT_FALSE(acedIsMenuGroupLoaded(L"QEL")) << c.version;
        EXPECT_TRUE(qelhost::insertedMenus().empty()) << c.version;
        EXPECT_EQ(shortVariable(L"MENUBAR"), 0) << "an unload leaves the menu bar alone";
        EXPECT_EQ(shortVariable(L"CMDECHO"), 1);
        EXPECT_EQ(shortVariable(L"FILEDIA"), 1);
    }
    ASSERT_EQ(qelhost::setSystemVariable(L"ACADVER", L"19.1", true), RTNORM);
    qelhost::setSupportFolders({});
}

TEST_F(Shell, TheHostVersionIsCutToTwoDecimals) {
    for (const auto& [text, version] : {std::pair{L"18.199s (LMS Tech)", 18.19},
                                        std::pair{L"19", 19.0}, std::pair{L"beta", 0.0}}) {
        ASSERT_EQ(qelhost::setSystemVariable(L"ACADVER", text, true), RTNORM);
        EXPECT_DOUBLE_EQ(QelHostVersion(), version) << text;
    }
    ASSERT_EQ(qelhost::setSystemVariable(L"ACADVER", L"19.1", true), RTNORM);
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
