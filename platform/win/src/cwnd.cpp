#include "window_impl.h"

#include <win/controls.h>
#include <win/dialog.h>
#include <win/msgbox.h>

#include <cwchar>

BOOL CException::GetErrorMessage(LPWSTR buffer, UINT maxCount, UINT* helpContext) const {
    if (helpContext) *helpContext = 0;
    if (buffer && maxCount > 0) buffer[0] = L'\0';
    return FALSE;
}

void AfxThrowUserException() {
    throw new CUserException;
}

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, AfxSig_end, nullptr}};
    static const AFX_MSGMAP map = {nullptr, &entries[0]};
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void*, void*) {
    for (const AFX_MSGMAP* map = GetMessageMap(); map;
         map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* e = map->lpEntries; e->nSig != AfxSig_end; ++e) {
            if (e->nMessage == WM_COMMAND && e->nCode == static_cast<UINT>(code) && id >= e->nID &&
                id <= e->nLastID) {
                (this->*(e->pfn))();
                return TRUE;
            }
        }
    }
    return FALSE;
}

CWnd::~CWnd() {
    if (temporary_ || !win::detail::valid(m_hWnd)) return;
    if (m_hWnd->permanent == this) m_hWnd->permanent = nullptr;
    // A dialog that is still up goes with its object; a control stays with its dialog.
    if (m_hWnd->role == WindowRole::Dialog) ::DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
}

namespace {

// A control handed out by GetDlgItem is an object of its own class, so that code may cast it to
// CButton*, CComboBox* ... as it does with the library.
std::unique_ptr<CWnd> objectFor(HWND window) {
    if (window->role != WindowRole::Control) return std::make_unique<CWnd>();
    switch (window->kind) {
    case win::ControlKind::Edit:
        return std::make_unique<CEdit>();
    case win::ControlKind::PushButton:
    case win::ControlKind::CheckBox:
    case win::ControlKind::RadioButton:
    case win::ControlKind::GroupBox:
        return std::make_unique<CButton>();
    case win::ControlKind::ComboBox:
        return std::make_unique<CComboBox>();
    case win::ControlKind::ListBox:
        return std::make_unique<CListBox>();
    case win::ControlKind::Progress:
        return std::make_unique<CProgressCtrl>();
    case win::ControlKind::Static:
        return std::make_unique<CStatic>();
    }
    return std::make_unique<CWnd>();
}

} // namespace

CWnd* CWnd::FromHandle(HWND window) {
    if (!win::detail::valid(window)) return nullptr;
    if (window->permanent) return window->permanent;
    if (!window->temporary) {
        window->temporary = objectFor(window);
        window->temporary->m_hWnd = window;
        window->temporary->markTemporary();
    }
    return window->temporary.get();
}

BOOL CWnd::Attach(HWND window) {
    if (!win::detail::valid(window) || m_hWnd || window->permanent) return FALSE;
    m_hWnd = window;
    window->permanent = this;
    return TRUE;
}

HWND CWnd::Detach() {
    HWND window = m_hWnd;
    if (win::detail::valid(window) && window->permanent == this) window->permanent = nullptr;
    m_hWnd = nullptr;
    return window;
}

void CWnd::SetWindowText(LPCTSTR text) {
    ::SetWindowTextW(m_hWnd, text);
}

void CWnd::GetWindowText(CString& text) const {
    int length = ::GetWindowTextLengthW(m_hWnd);
    ::GetWindowTextW(m_hWnd, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer();
}

int CWnd::GetWindowText(LPTSTR buffer, int maxCount) const {
    return ::GetWindowTextW(m_hWnd, buffer, maxCount);
}

int CWnd::GetWindowTextLength() const {
    return ::GetWindowTextLengthW(m_hWnd);
}
BOOL CWnd::EnableWindow(BOOL enable) {
    return ::EnableWindow(m_hWnd, enable);
}
BOOL CWnd::IsWindowEnabled() const {
    return ::IsWindowEnabled(m_hWnd);
}
BOOL CWnd::ShowWindow(int command) {
    return ::ShowWindow(m_hWnd, command);
}
BOOL CWnd::IsWindowVisible() const {
    return ::IsWindowVisible(m_hWnd);
}
CWnd* CWnd::GetParent() const {
    return FromHandle(::GetParent(m_hWnd));
}
int CWnd::GetDlgCtrlID() const {
    return ::GetDlgCtrlID(m_hWnd);
}
CWnd* CWnd::GetDlgItem(int id) const {
    return FromHandle(::GetDlgItem(m_hWnd, id));
}
void CWnd::SetDlgItemText(int id, LPCTSTR text) {
    ::SetDlgItemTextW(m_hWnd, id, text);
}

int CWnd::GetDlgItemText(int id, CString& text) const {
    text.Empty();
    if (CWnd* item = GetDlgItem(id)) item->GetWindowText(text);
    return text.GetLength();
}

void CWnd::CheckDlgButton(int id, UINT check) {
    ::CheckDlgButton(m_hWnd, id, check);
}
UINT CWnd::IsDlgButtonChecked(int id) const {
    return ::IsDlgButtonChecked(m_hWnd, id);
}
void CWnd::CheckRadioButton(int first, int last, int check) {
    ::CheckRadioButton(m_hWnd, first, last, check);
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::SendMessageW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::PostMessageW(m_hWnd, message, wParam, lParam);
}

int CWnd::MessageBox(LPCTSTR text, LPCTSTR caption, UINT type) {
    return ::MessageBoxW(m_hWnd, text, caption, type);
}

BOOL CWnd::UpdateData(BOOL saveAndValidate) {
    CDataExchange dx(this, saveAndValidate);
    try {
        DoDataExchange(&dx);
    } catch (CUserException* e) {
        e->Delete(); // the user has been told already
        return FALSE;
    }
    return TRUE;
}

void CWnd::DoDataExchange(CDataExchange*) {}

BOOL CWnd::DestroyWindow() {
    if (!win::detail::valid(m_hWnd)) return FALSE;
    return ::DestroyWindow(m_hWnd);
}

BOOL CWnd::PreTranslateMessage(MSG*) {
    return FALSE;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND && OnCommand(wParam, lParam)) return 0;
    return Default(message, wParam, lParam);
}

LRESULT CWnd::Default(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!win::detail::valid(m_hWnd)) return 0;
    return win::detail::controlProc(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM) {
    return OnCmdMsg(LOWORD(wParam), HIWORD(wParam), nullptr, nullptr);
}

CWnd* CWnd::GetSafeOwner(CWnd* parent, HWND* top) {
    HWND owner = parent ? parent->m_hWnd : nullptr;
    while (win::detail::valid(owner) && owner->parent)
        owner = owner->parent;
    if (!win::detail::valid(owner)) owner = win::mainWindow();
    if (top) *top = owner;
    return FromHandle(owner);
}

CWnd* AfxGetMainWnd() {
    return CWnd::FromHandle(win::mainWindow());
}
