#include "export_dialog.h"
#include "helpers.h"

#include <win/terminal.h>

#include <sstream>

using wintest::CTestExportDialog;
using wintest::Scripted;
using wintest::TranscriptMark;

namespace {

std::vector<std::string> dialogEvents(const TranscriptMark& mark) {
    std::vector<std::string> out;
    for (const win::Event& e : mark.events())
        if (e.kind == win::EventKind::Dialog || e.kind == win::EventKind::MessageBox)
            out.push_back(win::describe(e));
    return out;
}

} // namespace

TEST(Dialog, ScriptedAnswersFillTheControlsAndDataExchangeTheMembers) {
    Scripted script("dialog 1904\n"
                    "  file = C:\\out\\plant\n"
                    "  process = Export Without Original Qel Reference File.\n"
                    "  scope = visible\n"
                    "  units = User defined\n"
                    "  scale = 2.5\n"
                    "  press browse\n"
                    "  ok\n");
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.initialised, 1);
    EXPECT_EQ(dialog.browsed, 1) << "the message map ran the browse handler";
    EXPECT_FALSE(dialog.ownerEnabledWhileUp) << "a modal dialog disables its owner";
    EXPECT_TRUE(AfxGetMainWnd()->IsWindowEnabled()) << "and gives it back";
    EXPECT_STREQ(dialog.m_fileName, L"C:\\out\\plant.qel") << "OK handler's change was exchanged";
    EXPECT_EQ(dialog.m_processMethod, 0);
    EXPECT_EQ(dialog.m_scope, 1);
    EXPECT_DOUBLE_EQ(dialog.m_scale, 2.5);
    EXPECT_GT(dialog.relayed, 0) << "clicks pass the dialog's PreTranslateMessage";
    EXPECT_EQ(dialog.m_hWnd, nullptr) << "the window is gone after DoModal";
    EXPECT_EQ(dialog.m_units.m_hWnd, nullptr) << "so are the attached controls";
    EXPECT_FALSE(script.presenter->failed());
    EXPECT_EQ(script.presenter->pending(), 0u);
}

TEST(Dialog, AnUnansweredDialogIsAcceptedAsItOpened) {
    Scripted script;
    CTestExportDialog dialog;
    TranscriptMark mark;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_STREQ(dialog.m_fileName, L"C:\\cadExport.qel");
    EXPECT_EQ(dialog.m_processMethod, 1) << "CheckRadioButton(1005, 1006, 1006) in OnInitDialog";
    EXPECT_EQ(dialog.m_scope, 0);
    EXPECT_DOUBLE_EQ(dialog.m_scale, 1.0);
    auto events = dialogEvents(mark);
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0], "dialog 1904 opened");
    EXPECT_EQ(events[1], "dialog 1904 pressed: OK (1) (default)");
    EXPECT_EQ(events[2], "dialog 1904 closed result=1");
}

TEST(Dialog, AnswersForAnotherDialogWaitForIt) {
    Scripted script("dialog 77\n  file = x.qel\n");
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_STREQ(dialog.m_fileName, L"C:\\cadExport.qel");
    EXPECT_EQ(script.presenter->pending(), 1u);
}

TEST(Dialog, RefusedOkFailsInBatchWithTheHandlersMessage) {
    Scripted script("dialog\n  file =\n  ok\n");
    TranscriptMark mark;
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    ASSERT_EQ(script.presenter->failures().size(), 1u);
    EXPECT_EQ(script.presenter->failures()[0],
              L"Export Options...: Please enter a valid 'qel' filename.");
    std::vector<std::string> expected = {
        "dialog 1904 opened",
        "dialog 1904 set: Export File Name (1019) =  (script)",
        "dialog 1904 pressed: OK (1) (script)",
        "box: Please enter a valid 'qel' filename. | caption=qelcad type=0 answer=1 (default)",
        "dialog 1904 failed: Please enter a valid 'qel' filename. (script)",
        "dialog 1904 closed result=2",
    };
    EXPECT_EQ(dialogEvents(mark), expected);
}

TEST(Dialog, RefusedOkIsAskedAgainAtTheTerminal) {
    std::istringstream in("scale = 3\nfile = C:\\again.qel\nok\n");
    std::ostringstream out;
    auto terminal = std::make_shared<win::TerminalPresenter>(in, out);
    Scripted script("dialog\n  units = User defined\n  scale = 0\n", terminal);
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_FALSE(script.presenter->failed());
    EXPECT_DOUBLE_EQ(dialog.m_scale, 3.0);
    EXPECT_STREQ(dialog.m_fileName, L"C:\\again.qel");
    std::string shown = out.str();
    EXPECT_NE(shown.find("! Please enter a value greater than '0.000001'"), std::string::npos)
        << shown;
    EXPECT_NE(shown.find("-- Export Options... --"), std::string::npos) << shown;
}

TEST(Dialog, AnAnswerThatCannotBeGivenIsAskedAgainAtTheTerminal) {
    std::istringstream in("units = User defined\nscale = 2\nok\n");
    std::ostringstream out;
    Scripted script("dialog\n  scale = 2\n", std::make_shared<win::TerminalPresenter>(in, out));
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_DOUBLE_EQ(dialog.m_scale, 2.0);
    EXPECT_EQ(out.str().rfind("! Scale Factor (1029) is disabled\n-- Export Options... --\n", 0),
              0u)
        << out.str();
}

TEST(Dialog, DisabledControlsAndUnknownNamesCannotBeSet) {
    {
        Scripted script("dialog\n  scale = 2\n");
        CTestExportDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        ASSERT_EQ(script.presenter->failures().size(), 1u);
        EXPECT_EQ(script.presenter->failures()[0],
                  L"Export Options...: Scale Factor (1029) is disabled");
    }
    {
        Scripted script("dialog\n  colour = red\n");
        CTestExportDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        ASSERT_EQ(script.presenter->failures().size(), 1u);
        EXPECT_EQ(script.presenter->failures()[0], L"Export Options...: no control \"colour\"");
    }
    {
        Scripted script("dialog\n  units = Furlongs\n");
        CTestExportDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        EXPECT_EQ(script.presenter->failures().at(0),
                  L"Export Options...: Export Drawing Units (1039): no item \"Furlongs\"");
    }
}

TEST(Dialog, MaxCharsLimitsTypingAndRefusesLongerTextOnSave) {
    {
        Scripted script("dialog\n  file = " + std::string(41, 'a') + "\n");
        CTestExportDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        EXPECT_EQ(script.presenter->failures().at(0),
                  L"Export Options...: Export File Name (1019) takes at most 40 characters");
    }
    {
        // Text put in by code passes the limit; data exchange then refuses it.
        Scripted script;
        TranscriptMark mark;
        CTestExportDialog dialog;
        dialog.m_fileName = CString(L'b', 45);
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        auto boxes = mark.of(win::EventKind::MessageBox);
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0].text, L"Please enter no more than 40 characters.");
        EXPECT_EQ(boxes[0].type, UINT(MB_ICONEXCLAMATION));
    }
}

TEST(Dialog, ANumberFieldRefusesText) {
    Scripted script("dialog\n  units = User defined\n  scale = 2.5x\n");
    TranscriptMark mark;
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(script.presenter->failures().at(0), L"Export Options...: Please enter a number.");
}

TEST(Dialog, TheTerminalShowsLabelsValuesStatesAndTips) {
    std::istringstream in("units = Millimeters\n?\nnonsense\nok\n");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    win::setPresenter(nullptr);
    EXPECT_DOUBLE_EQ(dialog.m_scale, 1000.0);
    std::string shown = out.str();
    for (const char* expected : {
             "  1019  Export File Name: [C:\\cadExport.qel]  [file]\n",
             "  1001  <Browse>  [browse]  - Browse for *.qel export file.\n",
             "  Export Process Options:\n",
             "  1006  (*) Use Original Qel File as Reference.\n",
             "  1039  Export Drawing Units: Millimeters  {Meters | Millimeters | User defined}  "
             "[units]\n",
             "  1029  Scale Factor: [1000]  [scale]  (disabled)\n",
             "  1041  Version 6.1 (Build 170)  (disabled)\n",
             "! no button \"nonsense\"\n",
         })
        EXPECT_NE(shown.find(expected), std::string::npos) << expected << "\nin:\n" << shown;
}

TEST(Dialog, EndOfInputAtTheTerminalCancels) {
    std::istringstream in("");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    win::setPresenter(nullptr);
}

TEST(Dialog, EscapeAtTheTerminalCancelsAndTheNextLinesAreLeft) {
    std::istringstream in("\x1b\nnext\n");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    win::setPresenter(nullptr);
    EXPECT_EQ(out.str().find("no button"), std::string::npos) << out.str();
    std::string rest;
    EXPECT_TRUE(std::getline(in, rest));
    EXPECT_EQ(rest, "next");
}

TEST(Dialog, OptionsOfTheCommandLineAnswerTheNextDialog) {
    std::wstring error;
    auto answer = win::ScriptedPresenter::dialogFromOptions({L"file=C:\\out\\from-options.qel",
                                                             L"units = Millimeters",
                                                             L"scope=Export Selected Objects"},
                                                            error);
    ASSERT_TRUE(answer) << win::toUtf8(error);
    Scripted script;
    script.presenter->add(*answer);
    CTestExportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_STREQ(dialog.m_fileName, L"C:\\out\\from-options.qel");
    EXPECT_DOUBLE_EQ(dialog.m_scale, 1000.0);
    EXPECT_EQ(dialog.m_scope, 2);

    EXPECT_FALSE(win::ScriptedPresenter::dialogFromOptions({L"file=x", L"--units"}, error));
    EXPECT_EQ(error, L"\"--units\": expected NAME = VALUE, press NAME, ok, cancel or end NAME");
}
