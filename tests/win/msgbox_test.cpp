#include "helpers.h"

#include <win/terminal.h>

#include <sstream>

using wintest::Scripted;
using wintest::TranscriptMark;

TEST(MessageBox, ButtonSetsAndDefaultsAreThoseOfTheTypes) {
    EXPECT_EQ(win::buttonsOf(MB_OK), (std::vector<int>{IDOK}));
    EXPECT_EQ(win::buttonsOf(MB_YESNO | MB_ICONQUESTION), (std::vector<int>{IDYES, IDNO}));
    EXPECT_EQ(win::buttonsOf(MB_YESNOCANCEL), (std::vector<int>{IDYES, IDNO, IDCANCEL}));
    EXPECT_EQ(win::defaultButton(MB_YESNO), IDYES);
    EXPECT_EQ(win::defaultButton(MB_YESNO | MB_DEFBUTTON2), IDNO);
    EXPECT_EQ(win::defaultButton(MB_YESNOCANCEL | MB_DEFBUTTON3), IDCANCEL);
    EXPECT_EQ(win::defaultButton(MB_OK | MB_DEFBUTTON2), IDOK) << "no second button: the first";
    EXPECT_EQ(MB_ICONEXCLAMATION, 0x30);
    EXPECT_EQ(MB_YESNO | MB_ICONQUESTION, 0x24);
}

TEST(MessageBox, ScriptedAnswersGoInOrderAndUnansweredBoxesGetTheirDefault) {
    Scripted script("box no\nbox default\n");
    TranscriptMark mark;
    EXPECT_EQ(
        AfxMessageBox(L"Suppress all non-critical error messages?", MB_YESNO | MB_ICONQUESTION),
        IDNO);
    EXPECT_EQ(AfxMessageBox(L"Replace it?", MB_YESNO | MB_DEFBUTTON2), IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, L"Use Original Qel File as Reference.", L"QelIn",
                          MB_YESNOCANCEL | MB_ICONQUESTION),
              IDYES);
    std::vector<std::string> expected = {
        "box: Suppress all non-critical error messages? | caption=qelcad type=36 answer=7 (script)",
        "box: Replace it? | caption=qelcad type=260 answer=7 (script)",
        "box: Use Original Qel File as Reference. | caption=QelIn type=35 answer=6 (default)",
    };
    EXPECT_EQ(mark.lines(), expected);
}

TEST(MessageBox, AnAnswerTheBoxDoesNotOfferIsAFailure) {
    Scripted script("box yes\n");
    EXPECT_EQ(AfxMessageBox(L"Error writing to registry"), IDOK);
    ASSERT_EQ(script.presenter->failures().size(), 1u);
    EXPECT_EQ(script.presenter->failures()[0],
              L"message box \"Error writing to registry\" has no button Yes");
}

TEST(MessageBox, AnUnknownButtonSetIsRefused) {
    SetLastError(0);
    EXPECT_EQ(MessageBoxW(nullptr, L"x", nullptr, 9), 0);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_PARAMETER));
}

TEST(MessageBox, TheTerminalAsksUntilItGetsAButton) {
    std::istringstream in("maybe\nn\n\n");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    EXPECT_EQ(
        AfxMessageBox(L"Log file folder does not exist, would you like to create it?", MB_YESNO),
        IDNO);
    EXPECT_EQ(AfxMessageBox(L"Create it?", MB_YESNO | MB_DEFBUTTON2), IDNO) << "Enter: the default";
    EXPECT_EQ(AfxMessageBox(L"Done.", MB_OK), IDOK) << "end of input: the default";
    win::setPresenter(nullptr);
    std::string shown = out.str();
    EXPECT_NE(shown.find("[qelcad] Log file folder does not exist, would you like to create it?\n"
                         "Yes / No (Enter: Yes)? Please answer Yes / No.\n"),
              std::string::npos)
        << shown;
}

// Escape closes a box as it does on screen: by its Cancel button, or by OK when that is the only
// one; a box without either (Yes / No) is asked again rather than answered by its default.
TEST(MessageBox, EscapeAtTheTerminalIsCancelNeverTheDefault) {
    std::istringstream in("\x1b\n\x1b\nno\n\x1b\n");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    EXPECT_EQ(AfxMessageBox(L"Proceed?", MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(AfxMessageBox(L"Create it?", MB_YESNO), IDNO) << "asked again, then answered No";
    EXPECT_EQ(AfxMessageBox(L"Done.", MB_OK), IDOK);
    win::setPresenter(nullptr);
    EXPECT_EQ(out.str().find('\x1b'), std::string::npos) << "Escape is not echoed back";
}

TEST(MessageBox, AnswersFileErrorsNameTheLine) {
    win::ScriptedPresenter presenter;
    std::string error;
    EXPECT_FALSE(presenter.parse("box yes\nbox perhaps\n", error));
    EXPECT_EQ(error, "line 2: \"perhaps\" is not a message box button");
    EXPECT_FALSE(presenter.parse("file = x\n", error));
    EXPECT_EQ(error, "line 1: a control's answer outside a dialog section");
    EXPECT_FALSE(presenter.parse("dialog abc\n", error));
    EXPECT_EQ(error, "line 1: dialog id \"abc\" is not a number");
    EXPECT_EQ(presenter.pending(), 0u) << "a file with an error adds nothing";
}

TEST(MessageBox, PromptsAndCaptionsComeFromTheStringTable) {
    Scripted script;
    TranscriptMark mark;
    {
        win::StringResource strings{{1013, L"Import Progress"},
                                    {1014, L"Create Qel Log File failed."}};
        CString caption;
        EXPECT_TRUE(caption.LoadString(1013));
        EXPECT_STREQ(caption, L"Import Progress");
        EXPECT_EQ(AfxMessageBox(1014u, MB_OK | MB_ICONEXCLAMATION), IDOK);
    }
    CString gone;
    EXPECT_FALSE(gone.LoadString(1013)) << "the table goes with its module";
    auto boxes = mark.of(win::EventKind::MessageBox);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, L"Create Qel Log File failed.");
}
