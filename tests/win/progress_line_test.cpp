// The progress dialog's face at a terminal: the line's text, its redraws and wipes, and the key
// that cancels.
#include "helpers.h"

#include <win/controls.h>
#include <win/progress_line.h>

#include <sstream>

using wintest::Scripted;

namespace {

class CLineProgressDlg : public CDialog {
public:
    enum { IDD = 1911 };
    CProgressCtrl m_progress;
    int cancelled = 0;
    void OnCancel() override { ++cancelled; }

protected:
    void DoDataExchange(CDataExchange* dx) override { DDX_Control(dx, 1003, m_progress); }
};

const win::DialogResource lineTemplate({
    CLineProgressDlg::IDD,
    L"Import Progress",
    200,
    60,
    L"MS Sans Serif",
    8,
    {
        {win::ControlKind::Static, 1004, L"Processing object of type :", 5, 5, 100, 8},
        {win::ControlKind::Static, 1005, L"", 105, 5, 90, 8},
        {win::ControlKind::Progress, 1003, L"", 5, 20, 190, 10},
        {win::ControlKind::PushButton, IDCANCEL, L"Cancel", 75, 40, 50, 14},
    },
});

void pump(CDialog& dialog) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        if (!IsDialogMessageW(dialog.m_hWnd, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
}

// What the terminal shows last: the text after the last carriage return.
std::string lastLine(const std::string& screen) {
    return screen.substr(screen.rfind('\r') + 1);
}

TEST(ProgressLine, ShowsTextBarPercentageAndTimes) {
    EXPECT_EQ(win::progressLine(L"Cylinder", 25, 30, 80),
              "Cylinder [#####---------------] 25%  0:30 spent, 1:30 left");
    EXPECT_EQ(win::progressLine(L"Done", 100, 3725, 80),
              "Done [####################] 100%  1:02:05 spent");
    // Nothing done yet tells no time left; a narrow terminal cuts the text, never the numbers.
    EXPECT_EQ(win::progressLine(L"Reading", 0, 0, 80),
              "Reading [--------------------] 0%  0:00 spent");
    EXPECT_EQ(win::progressLine(L"A long status text", 50, 10, 57),
              "A lo... [##########----------] 50%  0:10 spent, 0:10 left");
}

TEST(ProgressLine, FollowsTheModelessDialogAndWipesItselfForAnythingElse) {
    Scripted script;
    std::ostringstream screen;
    auto presenter = std::make_shared<win::ProgressLinePresenter>(script.presenter, screen, 120);
    auto now = win::ProgressLinePresenter::Clock::time_point();
    presenter->setClock([&] { return now; });
    win::setPresenter(presenter);

    CLineProgressDlg dialog;
    ASSERT_TRUE(dialog.Create(CLineProgressDlg::IDD));
    dialog.m_progress.SetRange(0, 200);
    dialog.SetDlgItemText(1005, L"Valve");
    pump(dialog);
    EXPECT_EQ(lastLine(screen.str()), "Import Progress Processing object of type : Valve "
                                      "[--------------------] 0%  0:00 spent");
    dialog.m_progress.SetPos(50);
    now += std::chrono::milliseconds(50);
    pump(dialog);
    EXPECT_EQ(lastLine(screen.str()).find("25%"), std::string::npos)
        << "no redraw within a tenth of a second";
    now += std::chrono::seconds(10);
    pump(dialog);
    EXPECT_NE(lastLine(screen.str()).find("25%  0:10 spent, 0:30 left"), std::string::npos)
        << screen.str();

    // Printed text starts on a wiped line.
    win::Transcript::instance().print(L"\nError creating cone of valve.");
    EXPECT_TRUE(screen.str().ends_with("     \r")) << screen.str();

    dialog.DestroyWindow();
    now += std::chrono::seconds(1);
    pump(dialog);
    win::setPresenter(script.presenter);
}

TEST(ProgressLine, TheCancelKeyPressesTheDialogsCancel) {
    Scripted script;
    std::ostringstream screen;
    bool pressed = false;
    win::setPresenter(std::make_shared<win::ProgressLinePresenter>(script.presenter, screen, 80,
                                                                   [&] { return pressed; }));
    CLineProgressDlg dialog;
    ASSERT_TRUE(dialog.Create(CLineProgressDlg::IDD));
    pump(dialog);
    EXPECT_EQ(dialog.cancelled, 0);
    pressed = true;
    pump(dialog);
    pressed = false;
    pump(dialog);
    EXPECT_EQ(dialog.cancelled, 1);
    dialog.DestroyWindow();
    win::setPresenter(script.presenter);
}

} // namespace
