#include "export_dialog.h"

namespace wintest {

using win::ControlKind;

static const win::DialogResource exportTemplate({
    CTestExportDialog::IDD,
    L"Export Options...",
    214,
    202,
    L"MS Sans Serif",
    8,
    {
        {ControlKind::GroupBox, IDC_STATIC, L"Export File Name", 5, 4, 205, 32},
        {ControlKind::Edit, 1019, L"", 10, 16, 177, 14, WS_TABSTOP, nullptr, L"file"},
        {ControlKind::PushButton, 1001, L"...", 191, 16, 17, 14, WS_TABSTOP, L"Browse", L"browse"},
        {ControlKind::GroupBox, IDC_STATIC, L"Export Process Options", 5, 43, 205, 35},
        {ControlKind::RadioButton, 1005, L"Export Without Original Qel Reference File.", 10, 53,
         155, 10, WS_GROUP, nullptr, L"process"},
        {ControlKind::RadioButton, 1006, L"Use Original Qel File as Reference.", 10, 63, 160, 10},
        {ControlKind::GroupBox, IDC_STATIC, L"Export objects", 5, 84, 205, 42},
        {ControlKind::RadioButton, 1007, L"Export All Objects", 10, 94, 71, 10, WS_GROUP, nullptr,
         L"scope"},
        {ControlKind::RadioButton, 1011, L"Export Visible Objects", 10, 104, 84, 10, 0, nullptr,
         L"visible"},
        {ControlKind::RadioButton, 1012, L"Export Selected Objects", 10, 114, 92, 10},
        {ControlKind::Static, IDC_STATIC, L"Export Drawing Units", 10, 141, 75, 8, WS_GROUP},
        {ControlKind::ComboBox, 1039, L"", 10, 151, 135, 103, CBS_DROPDOWNLIST, nullptr, L"units"},
        {ControlKind::Static, IDC_STATIC, L"Scale Factor", 160, 141, 44, 8},
        {ControlKind::Edit, 1029, L"", 160, 151, 40, 14, 0, nullptr, L"scale"},
        {ControlKind::PushButton, IDOK, L"OK", 117, 180, 42, 14, BS_DEFPUSHBUTTON},
        {ControlKind::PushButton, IDCANCEL, L"Cancel", 168, 180, 42, 14},
        {ControlKind::Static, 1041, L"Version 6.0", 5, 189, 108, 8, WS_DISABLED},
    },
});

static const wchar_t* const kUnits[] = {L"Meters", L"Millimeters", L"User defined"};
static const double kScales[] = {1.0, 1000.0, 1.0};

BEGIN_MESSAGE_MAP(CTestExportDialog, CDialog)
ON_BN_CLICKED(1001, &CTestExportDialog::OnBrowse)
ON_CBN_SELCHANGE(1039, &CTestExportDialog::OnUnitsChange)
END_MESSAGE_MAP()

void CTestExportDialog::DoDataExchange(CDataExchange* dx) {
    CDialog::DoDataExchange(dx);
    DDX_Control(dx, 1039, m_units);
    DDX_Control(dx, 1029, m_scaleEdit);
    DDX_Radio(dx, 1005, m_processMethod);
    DDX_Radio(dx, 1007, m_scope);
    DDX_Text(dx, 1029, m_scale);
    DDX_Text(dx, 1019, m_fileName);
    DDV_MaxChars(dx, m_fileName, 40);
}

BOOL CTestExportDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    ++initialised;
    SetDlgItemText(1041, L"Version 6.1 (Build 170)");
    CheckRadioButton(1005, 1006, 1006);
    CheckRadioButton(1007, 1012, 1007);
    for (const wchar_t* name : kUnits)
        m_units.AddString(name);
    m_units.SetCurSel(0);
    GetDlgItem(1029)->EnableWindow(FALSE);
    m_tips.Create(this);
    m_tips.AddTool(GetDlgItem(1001), L"Browse for *.qel export file.");
    return TRUE;
}

BOOL CTestExportDialog::PreTranslateMessage(MSG* msg) {
    ++relayed;
    m_tips.RelayEvent(msg);
    return CDialog::PreTranslateMessage(msg);
}

void CTestExportDialog::OnBrowse() {
    ++browsed;
    ownerEnabledWhileUp = AfxGetMainWnd()->IsWindowEnabled();
}

void CTestExportDialog::OnUnitsChange() {
    UpdateData(TRUE);
    int index = m_units.GetCurSel();
    m_scale = kScales[index];
    m_scaleEdit.EnableWindow(index == 2);
    UpdateData(FALSE);
}

void CTestExportDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    if (m_fileName.IsEmpty()) {
        AfxMessageBox(L"Please enter a valid 'qel' filename.");
        return;
    }
    if (m_scale <= 0.00001) {
        AfxMessageBox(L"Please enter a value greater than '0.000001'", MB_ICONEXCLAMATION);
        return;
    }
    if (m_fileName.Right(4).CompareNoCase(L".qel") != 0) SetDlgItemText(1019, m_fileName + L".qel");
    CDialog::OnOK();
}

} // namespace wintest
