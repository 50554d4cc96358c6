#include "helpers.h"

#include <win/controls.h>

using wintest::Scripted;
using wintest::TranscriptMark;

namespace {

class CTestProgressDlg : public CDialog {
public:
    enum { IDD = 1908 };
    CProgressCtrl m_progress;
    int cancelled = 0;
    void OnCancel() override { ++cancelled; } // the worker decides when to close

protected:
    void DoDataExchange(CDataExchange* dx) override { DDX_Control(dx, 1003, m_progress); }
};

const win::DialogResource progressTemplate({
    CTestProgressDlg::IDD,
    L"",
    200,
    60,
    L"MS Sans Serif",
    8,
    {
        {win::ControlKind::Progress, 1003, L"", 5, 5, 190, 10},
        {win::ControlKind::Static, 1005, L"", 5, 20, 190, 8},
        {win::ControlKind::PushButton, IDCANCEL, L"Cancel", 75, 40, 50, 14},
    },
});

// The module's pump: everything waiting goes to the dialog first.
void pump(CDialog& dialog) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        if (!IsDialogMessageW(dialog.m_hWnd, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
}

} // namespace

TEST(Transcript, KeepsEverythingInTheOrderItHappened) {
    Scripted script("box no\n");
    TranscriptMark mark;
    auto& t = win::Transcript::instance();
    t.print(L"\nQELIN loaded.");
    t.alert(L"ARX ERROR: bad");
    AfxMessageBox(L"Replace?", MB_YESNO);
    t.print(L"\n Import script file cancelled.");
    std::vector<std::string> expected = {
        "print: \\nQELIN loaded.",
        "alert: ARX ERROR: bad",
        "box: Replace? | caption=qelcad type=4 answer=7 (script)",
        "print: \\n Import script file cancelled.",
    };
    EXPECT_EQ(mark.lines(), expected);
    EXPECT_EQ(t.printed(mark.from()), L"\nQELIN loaded.\n Import script file cancelled.");
}

TEST(Transcript, IsMirroredToAFileAndToListeners) {
    wintest::TempRegistry dir;
    auto path = dir.dir() / "transcript.txt";
    auto& t = win::Transcript::instance();
    ASSERT_TRUE(t.setFile(path.string()));
    std::vector<std::string> heard;
    int listener = t.addListener([&](const win::Event& e) { heard.push_back(win::describe(e)); });
    t.print(L"a\tb\n");
    t.host(L"Zürich");
    t.removeListener(listener);
    t.print(L"after");
    ASSERT_TRUE(t.setFile(""));
    EXPECT_EQ(wintest::readFile(path), "print: a\\tb\\n\nhost: Zürich\nprint: after\n");
    EXPECT_EQ(heard, (std::vector<std::string>{"print: a\\tb\\n", "host: Zürich"}));
}

TEST(Transcript, AModelessProgressDialogReportsPercentagesAndItsCancel) {
    Scripted script("progress cancel 2\n");
    TranscriptMark mark;
    CTestProgressDlg dialog;
    HWND owner = nullptr;
    CWnd::GetSafeOwner(nullptr, &owner);
    ASSERT_TRUE(dialog.Create(CTestProgressDlg::IDD));
    dialog.m_progress.SetRange(0, 8);
    dialog.m_progress.SetStep(1);
    for (int i = 0; i < 4; ++i) {
        pump(dialog);
        dialog.m_progress.StepIt();
    }
    EXPECT_EQ(dialog.cancelled, 1) << "the second pump pressed Cancel";
    EXPECT_TRUE(IsWindow(dialog.m_hWnd)) << "Cancel doesn't close the dialog";
    dialog.m_progress.SetPos(8);
    dialog.m_progress.StepIt();
    dialog.m_progress.SetRange(0, static_cast<short>(40000));
    EXPECT_EQ(dialog.m_progress.SendMessage(PBM_GETRANGE, FALSE, 0), 40000)
        << "bounds are unsigned 16-bit values";
    dialog.DestroyWindow();
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    std::vector<std::string> expected = {
        "dialog 1908 created",
        "progress 1003: 0% (0 of 0..8)", // a new range reports where it starts
        "progress 1003: 12% (1 of 0..8)",
        "dialog 1908 pressed: Cancel (2) (script)",
        "progress 1003: 25% (2 of 0..8)",
        "progress 1003: 37% (3 of 0..8)",
        "progress 1003: 50% (4 of 0..8)",
        "progress 1003: 100% (8 of 0..8)",
        "progress 1003: 0% (0 of 0..8)", // a step past the end starts over
        "progress 1003: 0% (0 of 0..40000)",
        "dialog 1908 destroyed",
    };
    EXPECT_EQ(mark.lines(), expected);
}

TEST(Transcript, ACancelRequestedFromOutsidePressesCancelAtTheNextPump) {
    Scripted script;
    CTestProgressDlg dialog;
    ASSERT_TRUE(dialog.Create(CTestProgressDlg::IDD));
    pump(dialog);
    EXPECT_EQ(dialog.cancelled, 0);
    win::requestCancel(); // what the terminal's Ctrl-C handler does
    pump(dialog);
    EXPECT_EQ(dialog.cancelled, 1);
    pump(dialog);
    EXPECT_EQ(dialog.cancelled, 1) << "one request, one press";
    dialog.DestroyWindow();
}
