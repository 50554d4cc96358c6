// A dialog in the manner of the coordinate system choice: a list box filled at start, and its
// own handlers for OK and Cancel in the message map, ahead of the base class's.
#include "helpers.h"

#include <win/terminal.h>

#include <sstream>

using wintest::Scripted;

namespace {

class CTestChoiceDialog : public CDialog {
public:
    enum { IDD = 1905 };
    CTestChoiceDialog() : CDialog(IDD) {}
    std::vector<std::wstring> names{L"<None>", L"<Default>", L"North (current)", L"Pump house"};
    int selected = 2;
    CString chosen;
    bool baseOkRan = false;

    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        for (const std::wstring& name : names)
            m_list.AddString(name.c_str());
        m_list.SetCurSel(selected);
        return TRUE;
    }
    void OnOK() override { baseOkRan = true; } // must not be reached: the map has its own

protected:
    CListBox m_list;
    void DoDataExchange(CDataExchange* dx) override { DDX_Control(dx, 1027, m_list); }
    void OnChoose() {
        selected = m_list.GetCurSel();
        m_list.GetText(selected, chosen);
        EndDialog(1);
    }
    void OnGiveUp() { EndDialog(2); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CTestChoiceDialog, CDialog)
ON_BN_CLICKED(IDOK, &CTestChoiceDialog::OnChoose)
ON_BN_CLICKED(IDCANCEL, &CTestChoiceDialog::OnGiveUp)
END_MESSAGE_MAP()

const win::DialogResource choiceTemplate({
    CTestChoiceDialog::IDD,
    L"Select World Coordinate System",
    186,
    85,
    L"MS Sans Serif",
    8,
    {
        {win::ControlKind::Static, IDC_STATIC, L"Selected coordinate system will be mapped to WCS.",
         5, 5, 174, 8},
        {win::ControlKind::ListBox, 1027, L"", 5, 15, 117, 64, 0, L"System", L"system"},
        {win::ControlKind::PushButton, IDOK, L"OK", 130, 15, 50, 14, BS_DEFPUSHBUTTON},
        {win::ControlKind::PushButton, IDCANCEL, L"Cancel", 130, 35, 50, 14},
    },
});

} // namespace

TEST(ListDialog, TheOwnMessageMapAnswersOkAndCancelBeforeTheBase) {
    {
        Scripted script("dialog 1905\n  system = pump house\n");
        CTestChoiceDialog dialog;
        EXPECT_EQ(dialog.DoModal(), 1);
        EXPECT_EQ(dialog.selected, 3);
        EXPECT_STREQ(dialog.chosen, L"Pump house");
        EXPECT_FALSE(dialog.baseOkRan);
    }
    {
        Scripted script("dialog 1905\n  system = #0\n  cancel\n");
        CTestChoiceDialog dialog;
        EXPECT_EQ(dialog.DoModal(), 2);
        EXPECT_EQ(dialog.selected, 2) << "cancelled: nothing taken from the list";
    }
    {
        Scripted script; // unanswered: the selection the dialog started with
        CTestChoiceDialog dialog;
        EXPECT_EQ(dialog.DoModal(), 1);
        EXPECT_STREQ(dialog.chosen, L"North (current)");
    }
}

TEST(ListDialog, TheTerminalListsTheItemsAndTakesOneByName) {
    std::istringstream in("system = <Default>\nok\n");
    std::ostringstream out;
    win::setPresenter(std::make_shared<win::TerminalPresenter>(in, out));
    CTestChoiceDialog dialog;
    EXPECT_EQ(dialog.DoModal(), 1);
    win::setPresenter(nullptr);
    EXPECT_STREQ(dialog.chosen, L"<Default>");
    EXPECT_NE(out.str().find("  1027  System: North (current)  {<None> | <Default> | North "
                             "(current) | Pump house}  [system]\n"),
              std::string::npos)
        << out.str();
}
