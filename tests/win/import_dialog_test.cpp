// A dialog in the manner of the import options: tick boxes that switch other controls, a
// handler on leaving the file field, and an OK handler that asks Yes/No before it goes on.
#include "helpers.h"

#include <win/terminal.h>

#include <sstream>

using wintest::Scripted;
using wintest::TranscriptMark;

namespace {

class CTestImportDialog : public CDialog {
public:
    enum { IDD = 1901 };
    CTestImportDialog() : CDialog(IDD) {}
    CString m_fileName, m_logFolder;
    int scans = 0;
    int createLog = -1;
    std::wstring created;

    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        CheckDlgButton(1023, BST_CHECKED);
        CheckDlgButton(1025, BST_CHECKED);
        OnDefaultPath();
        return TRUE;
    }

    void OnOK() override {
        UpdateData(TRUE);
        createLog = IsDlgButtonChecked(1023);
        if (createLog && !IsDlgButtonChecked(1025) && !PathIsDirectoryW(m_logFolder)) {
            if (AfxMessageBox(L"Log file folder does not exist, would you like to create it?",
                              MB_YESNO) == IDNO)
                return;
            if (!CreateDirectoryW(m_logFolder, nullptr)) {
                AfxMessageBox(L"Error creating the log folder");
                return;
            }
            created = m_logFolder.GetString();
        }
        EndDialog(IDOK);
    }

protected:
    void DoDataExchange(CDataExchange* dx) override {
        DDX_Text(dx, 1000, m_fileName);
        DDV_MaxChars(dx, m_fileName, 235);
        DDX_Text(dx, 1014, m_logFolder);
    }
    void OnCreateLog() {
        BOOL on = IsDlgButtonChecked(1023) == BST_CHECKED;
        for (int id : {1025, 1014, 1010})
            GetDlgItem(id)->EnableWindow(on);
        if (on) OnDefaultPath();
    }
    void OnDefaultPath() {
        BOOL typed = IsDlgButtonChecked(1025) != BST_CHECKED;
        GetDlgItem(1014)->EnableWindow(typed);
        GetDlgItem(1010)->EnableWindow(typed);
    }
    void OnFileLeft() { ++scans; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CTestImportDialog, CDialog)
ON_BN_CLICKED(1023, &CTestImportDialog::OnCreateLog)
ON_BN_CLICKED(1025, &CTestImportDialog::OnDefaultPath)
ON_EN_KILLFOCUS(1000, &CTestImportDialog::OnFileLeft)
END_MESSAGE_MAP()

using win::ControlKind;
const win::DialogResource importTemplate({
    CTestImportDialog::IDD,
    L"Import Options...",
    223,
    218,
    L"MS Sans Serif",
    8,
    {
        {ControlKind::GroupBox, IDC_STATIC, L"Import File Name", 5, 5, 210, 30},
        {ControlKind::Edit, 1000, L"", 10, 15, 180, 14, WS_TABSTOP, nullptr, L"file"},
        {ControlKind::GroupBox, IDC_STATIC, L"Log Files", 5, 40, 210, 60},
        {ControlKind::CheckBox, 1023, L"Create Log File (.log)", 10, 50, 100, 10, 0, nullptr,
         L"log"},
        {ControlKind::CheckBox, 1025, L"Use Default File Path", 10, 62, 100, 10, 0, nullptr,
         L"default-path"},
        {ControlKind::Static, IDC_STATIC, L"Log File Location", 10, 74, 100, 8},
        {ControlKind::Edit, 1014, L"", 10, 84, 180, 14, 0, nullptr, L"log-folder"},
        {ControlKind::PushButton, 1010, L">>", 192, 84, 17, 14},
        {ControlKind::PushButton, IDOK, L"OK", 110, 200, 50, 14, BS_DEFPUSHBUTTON},
        {ControlKind::PushButton, IDCANCEL, L"Cancel", 165, 200, 50, 14},
    },
});

} // namespace

TEST(ImportDialog, TicksSwitchTheControlsTheyGovern) {
    Scripted script("dialog\n  log-folder = /x\n");
    CTestImportDialog first;
    EXPECT_EQ(first.DoModal(), IDCANCEL) << "the folder is off while the default path is ticked";
    EXPECT_EQ(script.presenter->failures().at(0),
              L"Import Options...: Log File Location (1014) is disabled");

    Scripted off("dialog\n  default-path = off\n  log = off\n  log-folder = /x\n");
    CTestImportDialog second;
    EXPECT_EQ(second.DoModal(), IDCANCEL) << "no log: no folder either";
    EXPECT_EQ(off.presenter->failures().at(0),
              L"Import Options...: Log File Location (1014) is disabled");

    wintest::TempRegistry temp;
    std::string folder = (temp.dir() / "logs").string();
    Scripted on("dialog\n  default-path = off\n  log = off\n  log = on\n  log-folder = " + folder +
                "\n");
    CTestImportDialog third;
    EXPECT_EQ(third.DoModal(), IDOK) << "the log back on, the folder takes text again";
    EXPECT_EQ(third.created, win::fromUtf8(folder)) << "the unanswered box got its default, Yes";
}

TEST(ImportDialog, YesOrNoInTheOkHandlerDecidesWhetherTheDialogEnds) {
    wintest::TempRegistry temp;
    std::string folder = (temp.dir() / "logs").string();
    {
        Scripted script("dialog\n  file = plant.qel\n  default-path = off\n  log-folder = " +
                        folder + "\n  ok\nbox no\n");
        TranscriptMark mark;
        CTestImportDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        EXPECT_EQ(dialog.scans, 1) << "leaving the file field ran its handler";
        EXPECT_FALSE(std::filesystem::exists(folder));
        EXPECT_EQ(
            script.presenter->failures().at(0),
            L"Import Options...: Log file folder does not exist, would you like to create it?");
    }
    {
        Scripted script("dialog\n  file = plant.qel\n  default-path = off\n  log-folder = " +
                        folder + "\n  ok\nbox yes\n");
        CTestImportDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_EQ(dialog.created, win::fromUtf8(folder));
        EXPECT_TRUE(std::filesystem::is_directory(folder));
        EXPECT_EQ(dialog.createLog, BST_CHECKED);
    }
}

TEST(ImportDialog, APersonAtTheTerminalGetsTheSameDialog) {
    wintest::TempRegistry temp;
    std::string folder = (temp.dir() / "typed").string();
    std::istringstream in("log-folder = x\ndefault-path = off\nlog-folder = " + folder +
                          "\nok\nno\nok\ny\n");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    CTestImportDialog dialog;
    EXPECT_EQ(dialog.DoModal(), IDOK);
    win::setPresenter(nullptr);
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    std::string shown = out.str();
    EXPECT_NE(shown.find("! Log File Location (1014) is disabled\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("  1025  [ ] Use Default File Path  [default-path]\n"), std::string::npos)
        << shown;
}

TEST(ImportDialog, ControlsFromGetDlgItemAreOfTheirOwnClass) {
    Scripted script;
    struct Probe : CTestImportDialog {
        BOOL OnInitDialog() override {
            CTestImportDialog::OnInitDialog();
            auto* log = static_cast<CButton*>(GetDlgItem(1023));
            checkedAtStart = log->GetCheck();
            log->SetCheck(BST_UNCHECKED);
            static_cast<CEdit*>(GetDlgItem(1000))->SetLimitText(12);
            limit = static_cast<CEdit*>(GetDlgItem(1000))->GetLimitText();
            EndDialog(IDCANCEL);
            return TRUE;
        }
        int checkedAtStart = -1;
        UINT limit = 0;
    } probe;
    EXPECT_EQ(probe.DoModal(), IDCANCEL);
    EXPECT_EQ(probe.checkedAtStart, BST_CHECKED);
    EXPECT_EQ(probe.createLog, -1) << "ended in OnInitDialog, OK never ran";
    EXPECT_EQ(probe.limit, 12u);
}

TEST(ImportDialog, ACharacterBufferMemberIsLimitedToItsSize) {
    struct BufferDialog : CTestImportDialog {
        wchar_t m_answer[12] = L"start";
        void DoDataExchange(CDataExchange* dx) override { DDX_Text(dx, 1000, m_answer, 12); }
        void OnOK() override { CDialog::OnOK(); }
    };
    {
        Scripted script("dialog\n  file = twelve chars\n");
        BufferDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        EXPECT_EQ(script.presenter->failures().at(0),
                  L"Import Options...: Import File Name (1000) takes at most 11 characters");
        EXPECT_STREQ(dialog.m_answer, L"start");
    }
    {
        Scripted script("dialog\n  file = plant.qel\n");
        BufferDialog dialog;
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_STREQ(dialog.m_answer, L"plant.qel");
    }
}
