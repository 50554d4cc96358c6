// Prompts and printing: acedGetString, acedInitGet / acedGetKword, acutPrintf, acedAlert.
#include "editor_test.h"

namespace editortest {
namespace {

using UserInput = EditorTest;

TEST_F(UserInput, KeywordsAbbreviateAndEnterEscapeAndErrorsAnswerTheirCodes) {
    ACHAR answer[32];
    answers(L"h\n\n\x1b\n");
    acedInitGet(0, L"Restore Hide");
    EXPECT_EQ(acedGetKword(L"Restore or Hide: ", answer, 32), RTNORM);
    EXPECT_STREQ(answer, L"Hide");
    acedInitGet(0, L"Restore Hide");
    EXPECT_EQ(acedGetKword(L"Restore or Hide: ", answer, 32), RTNONE);
    acedInitGet(0, L"Restore Hide");
    EXPECT_EQ(acedGetKword(L"Restore or Hide: ", answer, 32), RTCAN);
    // A word that is no keyword is asked again; when the input has nothing more, an error.
    answers(L"Maybe");
    acedInitGet(0, L"Restore Hide");
    EXPECT_EQ(acedGetKword(L"Restore or Hide: ", answer, 32), RTERROR);
    answers(L"Maybe _R");
    acedInitGet(0, L"Restore Hide");
    EXPECT_EQ(acedGetKword(L"Restore or Hide: ", answer, 32), RTNORM);
    EXPECT_STREQ(answer, L"Restore");
    EXPECT_NE(printed().find(L"Invalid option keyword."), std::wstring::npos);
}

TEST_F(UserInput, StringsWithOrWithoutBlanks) {
    ACHAR answer[64];
    answers(L"C:\\models\\plant one.qel\nfirst second\n");
    EXPECT_EQ(acedGetString(1, L"\nQEL file name to load:", answer, 64), RTNORM);
    EXPECT_STREQ(answer, L"C:\\models\\plant one.qel");
    EXPECT_EQ(acedGetString(0, L"Word: ", answer, 64), RTNORM);
    EXPECT_STREQ(answer, L"first");
    EXPECT_EQ(acedGetString(0, L"Word: ", answer, 4), RTINPUTTRUNCATED);
    EXPECT_STREQ(answer, L"sec");
    EXPECT_EQ(acedGetString(0, L"Word: ", answer, 64), RTCAN) << "the input has ended";
    // The prompts and answers are in the transcript, as the user saw them.
    EXPECT_NE(printed().find(L"QEL file name to load:C:\\models\\plant one.qel\n"),
              std::wstring::npos);
}

TEST_F(UserInput, PrintfTakesWideStringsAndAlertsAreEvents) {
    acutPrintf(L"Loading %s (Build %d)...\n", L"Version 6.1", 170);
    acutPrintf(L"%hs|%5.2f|%c|%%\n", "narrow", 3.14159, L'x');
    EXPECT_EQ(printed(), L"Loading Version 6.1 (Build 170)...\nnarrow| 3.14|x|%\n");
    acedAlert(L"Could not get dwg on load");
    const auto events = win::Transcript::instance().events();
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events.back().kind, win::EventKind::Alert);
    EXPECT_EQ(events.back().text, L"Could not get dwg on load");
}

TEST_F(UserInput, ScriptsCancelWithEscapeAndCountLines) {
    qelhost::ScriptInput script(L"one two\n\nthree\n^C\n");
    EXPECT_EQ(script.ask(L"", false), L"one");
    EXPECT_EQ(script.line(), 1);
    EXPECT_EQ(script.ask(L"", false), L"two");
    EXPECT_EQ(script.ask(L"", false), L"") << "an empty line is an Enter";
    EXPECT_EQ(script.ask(L"", false), L"three");
    EXPECT_EQ(script.line(), 4);
    EXPECT_EQ(script.ask(L"", false), std::nullopt);
    EXPECT_TRUE(script.ended());
}

} // namespace
} // namespace editortest
