#include "window_impl.h"

#include <win/dialog.h>
#include <win/format.h>
#include <win/msgbox.h>
#include <win/presenter.h>
#include <win/transcript.h>

#include <cwchar>

namespace {

std::wstring captionOf(HWND dialog) {
    return win::detail::valid(dialog) ? dialog->text : L"";
}

std::vector<HWND>& modeless() {
    static auto* dialogs = new std::vector<HWND>;
    return *dialogs;
}

} // namespace

std::vector<HWND> win::modelessDialogs() {
    std::erase_if(modeless(), [](HWND w) { return !detail::valid(w) || !w->modeless; });
    return modeless();
}

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_COMMAND(IDOK, &CDialog::OnOK)
ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

CDialog::CDialog(UINT templateId, CWnd* parent) : m_pParentWnd(parent), templateId_(templateId) {}

CDialog::~CDialog() = default;

INT_PTR CDialog::DoModal() {
    auto& transcript = win::Transcript::instance();
    const win::DialogTemplate* layout = win::findDialogTemplate(templateId_);
    if (!layout) {
        transcript.host(win::format(L"dialog template %u is not registered", templateId_));
        return -1;
    }
    HWND owner = nullptr;
    CWnd::GetSafeOwner(m_pParentWnd, &owner);
    BOOL ownerWasDisabled = ::EnableWindow(owner, FALSE);
    ended_ = false;
    result_ = -1;
    m_hWnd = win::detail::createDialog(*layout, owner, this);
    transcript.dialog(L"opened", static_cast<int>(templateId_), captionOf(m_hWnd), L"");
    OnInitDialog();
    if (!ended_) {
        win::DialogDriver driver(*this);
        win::presenter().runModal(driver);
        if (!ended_) EndDialog(IDCANCEL); // a presenter that gave up
    }
    transcript.dialog(L"closed", static_cast<int>(templateId_), captionOf(m_hWnd), L"", result_);
    ::DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
    if (!ownerWasDisabled) ::EnableWindow(owner, TRUE);
    return result_;
}

BOOL CDialog::Create(UINT templateId, CWnd* parent) {
    const win::DialogTemplate* layout = win::findDialogTemplate(templateId);
    if (!layout || m_hWnd) return FALSE;
    templateId_ = templateId;
    m_pParentWnd = parent;
    ended_ = false;
    HWND owner = nullptr;
    CWnd::GetSafeOwner(parent, &owner);
    m_hWnd = win::detail::createDialog(*layout, owner, this);
    m_hWnd->modeless = true;
    modeless().push_back(m_hWnd);
    win::Transcript::instance().dialog(L"created", static_cast<int>(templateId), captionOf(m_hWnd),
                                       L"");
    OnInitDialog();
    return TRUE;
}

BOOL CDialog::DestroyWindow() {
    if (!win::detail::valid(m_hWnd)) return FALSE;
    if (m_hWnd->modeless)
        win::Transcript::instance().dialog(L"destroyed", static_cast<int>(templateId_),
                                           captionOf(m_hWnd), L"");
    return CWnd::DestroyWindow();
}

void CDialog::EndDialog(int result) {
    ended_ = true;
    result_ = result;
    if (win::detail::valid(m_hWnd)) ::ShowWindow(m_hWnd, SW_HIDE);
}

BOOL CDialog::OnInitDialog() {
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}

HWND CDataExchange::PrepareCtrl(int id) {
    HWND control = ::GetDlgItem(m_pDlgWnd ? m_pDlgWnd->m_hWnd : nullptr, id);
    if (!control) {
        win::Transcript::instance().host(win::format(L"data exchange: no control %d", id));
        Fail();
    }
    last_ = control;
    return control;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
    return PrepareCtrl(id);
}

void CDataExchange::Fail() {
    AfxThrowUserException();
}

namespace {

void failWith(CDataExchange* dx, const std::wstring& message) {
    AfxMessageBox(message.c_str(), MB_ICONEXCLAMATION);
    dx->Fail();
}

std::wstring textOf(HWND control) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(control)), L'\0');
    ::GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1);
    return text;
}

const wchar_t* skipBlanks(const wchar_t* p) {
    while (*p == L' ' || *p == L'\t')
        ++p;
    return p;
}

// As the library parses a number: a zero result counts only when the text starts with '0'.
bool parseReal(const std::wstring& text, double& value) {
    const wchar_t* p = skipBlanks(text.c_str());
    wchar_t first = *p;
    wchar_t* end = nullptr;
    value = std::wcstod(p, &end);
    if (value == 0.0 && first != L'0') return false;
    return *skipBlanks(end) == L'\0';
}

void exchangeReal(CDataExchange* dx, int id, double& value, int digits) {
    HWND control = dx->PrepareEditCtrl(id);
    if (!dx->m_bSaveAndValidate) {
        ::SetWindowTextW(control, win::format(L"%.*g", digits, value).c_str());
        return;
    }
    double parsed = 0;
    if (!parseReal(textOf(control), parsed)) failWith(dx, L"Please enter a number.");
    value = parsed;
}

} // namespace

void DDX_Text(CDataExchange* dx, int id, CString& value) {
    HWND control = dx->PrepareEditCtrl(id);
    if (dx->m_bSaveAndValidate)
        value = textOf(control);
    else
        ::SetWindowTextW(control, value);
}

void DDX_Text(CDataExchange* dx, int id, LPTSTR value, int maxLength) {
    HWND control = dx->PrepareEditCtrl(id);
    if (dx->m_bSaveAndValidate) {
        ::GetWindowTextW(control, value, maxLength);
    } else {
        ::SendMessageW(control, EM_LIMITTEXT, static_cast<WPARAM>(maxLength - 1), 0);
        ::SetWindowTextW(control, value);
    }
}

void DDX_Text(CDataExchange* dx, int id, double& value) {
    exchangeReal(dx, id, value, 15);
}
void DDX_Radio(CDataExchange* dx, int id, int& value) {
    HWND first = dx->PrepareCtrl(id);
    std::vector<HWND> group = win::detail::radioGroup(first);
    if (dx->m_bSaveAndValidate) value = -1;
    for (std::size_t i = 0; i < group.size(); ++i) {
        if (dx->m_bSaveAndValidate) {
            if (::SendMessageW(group[i], BM_GETCHECK, 0, 0) == BST_CHECKED)
                value = static_cast<int>(i);
        } else {
            ::SendMessageW(group[i], BM_SETCHECK,
                           static_cast<int>(i) == value ? BST_CHECKED : BST_UNCHECKED, 0);
        }
    }
}

void DDX_Control(CDataExchange* dx, int id, CWnd& control) {
    if (control.m_hWnd) return;
    control.Attach(dx->PrepareCtrl(id));
}

void DDV_MaxChars(CDataExchange* dx, const CString& value, int count) {
    if (!dx->m_bSaveAndValidate) {
        // The edit exchanged last is the one the limit is for.
        ::SendMessageW(dx->lastControl(), EM_LIMITTEXT, static_cast<WPARAM>(count), 0);
        return;
    }
    if (value.GetLength() > count)
        failWith(dx, win::format(L"Please enter no more than %d characters.", count));
}
