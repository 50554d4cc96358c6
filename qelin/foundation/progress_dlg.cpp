#include "progress_dlg.h"

namespace {

constexpr UINT kCaptionString = 1013;
constexpr int kBar = 1003, kStatus = 1005, kHeading = 1037;

const win::DialogResource progressTemplate({
    CProgressDlg::IDD,
    L"",
    186,
    70,
    L"MS Sans Serif",
    8,
    {
        {win::ControlKind::Static, IDC_STATIC, L"Processing object of type :", 7, 20, 100, 8},
        {win::ControlKind::Static, kHeading, L"", 7, 7, 172, 8},
        {win::ControlKind::Static, kStatus, L"", 107, 20, 72, 8},
        {win::ControlKind::Progress, kBar, L"", 7, 33, 172, 10},
        {win::ControlKind::PushButton, IDCANCEL, L"Cancel", 68, 50, 50, 14},
    },
});

const win::StringResource progressStrings({{kCaptionString, L"Import Progress"}});

} // namespace

CProgressDlg::CProgressDlg(UINT captionId) : m_nCaptionID(captionId ? captionId : kCaptionString) {}

CProgressDlg::~CProgressDlg() {
    if (m_hWnd) DestroyWindow();
}

BOOL CProgressDlg::Create(CWnd* parent) {
    m_pParentWnd = CWnd::GetSafeOwner(parent);
    if (m_pParentWnd && m_pParentWnd->IsWindowEnabled()) {
        m_pParentWnd->EnableWindow(FALSE);
        m_bParentDisabled = TRUE;
    }
    if (!CDialog::Create(IDD, parent)) {
        ReEnableParent();
        return FALSE;
    }
    return TRUE;
}

void CProgressDlg::ReEnableParent() {
    if (m_bParentDisabled && m_pParentWnd) m_pParentWnd->EnableWindow(TRUE);
    m_bParentDisabled = FALSE;
}

BOOL CProgressDlg::DestroyWindow() {
    ReEnableParent();
    return CDialog::DestroyWindow();
}

void CProgressDlg::DoDataExchange(CDataExchange* dx) {
    CDialog::DoDataExchange(dx);
    DDX_Control(dx, kBar, m_Progress);
}

BOOL CProgressDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    m_Progress.SetRange(static_cast<short>(m_nLower), static_cast<short>(m_nUpper));
    m_Progress.SetStep(m_nStep);
    m_Progress.SetPos(m_nLower);
    CString caption;
    caption.LoadString(m_nCaptionID);
    SetWindowText(caption);
    return TRUE;
}

void CProgressDlg::OnCancel() {
    m_bCancel = TRUE;
}

void CProgressDlg::SetRange(int lower, int upper) {
    m_nLower = lower;
    m_nUpper = upper;
    // The bar's own bounds are 16 bits; the percentage in the title is computed here in full.
    m_Progress.SetRange(static_cast<short>(lower), static_cast<short>(upper));
}

int CProgressDlg::SetStep(int step) {
    m_nStep = step;
    return m_Progress.SetStep(step);
}

int CProgressDlg::SetPos(int pos) {
    PumpMessages();
    m_Progress.SetPos(pos);
    const int old = m_nPos;
    m_nPos = pos;
    UpdatePercent(pos);
    return old;
}

int CProgressDlg::StepIt() {
    PumpMessages();
    m_Progress.StepIt();
    const int old = m_nPos;
    m_nPos = old + m_nStep;
    UpdatePercent(m_nPos);
    return old;
}

void CProgressDlg::SetStatus(LPCTSTR text) {
    SetDlgItemText(kStatus, text);
}
void CProgressDlg::SetHeading(LPCTSTR text) {
    SetDlgItemText(kHeading, text);
}

BOOL CProgressDlg::CheckCancelButton() {
    PumpMessages();
    return m_bCancel;
}

void CProgressDlg::PumpMessages() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        if (!IsDialogMessageW(m_hWnd, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
}

// "Progress [n%]": an integer percentage of the range; anything but 100 wraps modulo 100. A
// range of no width, which callers don't set, shows 0 rather than dividing by it.
void CProgressDlg::UpdatePercent(int pos) {
    const long long width = static_cast<long long>(m_nUpper) - m_nLower;
    int percent = width == 0 ? 0 : static_cast<int>((pos - m_nLower) * 100LL / width);
    if (percent != 100) percent %= 100;
    CString title;
    title.Format(L"%s [%d%%]", L"Progress", percent);
    SetWindowText(title);
}
