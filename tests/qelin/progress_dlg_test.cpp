// The progress dialog as the import drives it: the title's percentage, a Cancel that leaves the
// dialog up for the worker, and the owner disabled only while it stands.
#include "foundation/progress_dlg.h"

#include <win/scripted.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

// The user, played from answers for the test's lifetime.
class Answers {
public:
    explicit Answers(const std::string& text)
        : m_presenter(std::make_shared<win::ScriptedPresenter>()) {
        std::string error;
        EXPECT_TRUE(m_presenter->parse(text, error)) << error;
        win::setPresenter(m_presenter);
    }
    ~Answers() { win::setPresenter(nullptr); }

private:
    std::shared_ptr<win::ScriptedPresenter> m_presenter;
};

CString titleOf(const CWnd& w) {
    CString text;
    w.GetWindowText(text);
    return text;
}

} // namespace

TEST(ProgressDialog, TitleShowsTheIntegerPercentWrappingPastTheTop) {
    Answers user("");
    CProgressDlg dialog;
    ASSERT_TRUE(dialog.Create());
    EXPECT_EQ(titleOf(dialog), CString(L"Import Progress"));
    dialog.SetRange(0, 8);
    dialog.SetStep(1);
    EXPECT_EQ(dialog.StepIt(), 0);
    EXPECT_EQ(titleOf(dialog), CString(L"Progress [12%]")) << "1 of 8 is 12.5, cut to 12";
    dialog.SetPos(8);
    EXPECT_EQ(titleOf(dialog), CString(L"Progress [100%]"));
    dialog.StepIt();
    EXPECT_EQ(titleOf(dialog), CString(L"Progress [12%]")) << "9 of 8 is 112, taken modulo 100";
    dialog.SetStatus(L"Cylinder");
    CString status;
    dialog.GetDlgItemText(1005, status);
    EXPECT_EQ(status, CString(L"Cylinder"));
}

TEST(ProgressDialog, TheTitleCountsInFullPastTheBarsSixteenBits) {
    Answers user("");
    CProgressDlg dialog;
    ASSERT_TRUE(dialog.Create());
    dialog.SetRange(0, 70000);
    dialog.SetStep(1);
    EXPECT_EQ(dialog.SetPos(34999), 0);
    EXPECT_EQ(dialog.StepIt(), 34999);
    EXPECT_EQ(titleOf(dialog), CString(L"Progress [50%]"));
    dialog.SetRange(5, 5);
    dialog.StepIt();
    EXPECT_EQ(titleOf(dialog), CString(L"Progress [0%]")) << "an empty range divides by nothing";
}

TEST(ProgressDialog, CancelSetsTheFlagAndLeavesTheDialogUp) {
    Answers user("progress cancel 2\n");
    CProgressDlg dialog;
    ASSERT_TRUE(dialog.Create());
    dialog.SetRange(0, 100);
    EXPECT_FALSE(dialog.CheckCancelButton());
    EXPECT_TRUE(dialog.CheckCancelButton()) << "the second pump pressed Cancel";
    EXPECT_TRUE(IsWindow(dialog.m_hWnd));
    EXPECT_TRUE(dialog.CheckCancelButton()) << "the flag stays until the worker ends";
    dialog.DestroyWindow();
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST(ProgressDialog, ACaptionOfTheCallersOwn) {
    Answers user("");
    const win::StringResource strings({{4711, L"Export Progress"}});
    CProgressDlg dialog(4711);
    ASSERT_TRUE(dialog.Create());
    EXPECT_EQ(titleOf(dialog), CString(L"Export Progress"));
}
