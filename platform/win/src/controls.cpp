#include "window_impl.h"

#include <win/controls.h>

void CComboBox::GetLBText(int index, CString& text) const {
    int length = GetLBTextLen(index);
    if (length < 0) {
        text.Empty();
        return;
    }
    GetLBText(index, text.GetBuffer(length));
    text.ReleaseBuffer();
}

void CListBox::GetText(int index, CString& text) const {
    int length = GetTextLen(index);
    if (length < 0) {
        text.Empty();
        return;
    }
    send(LB_GETTEXT, static_cast<WPARAM>(index), text.GetBuffer(length));
    text.ReleaseBuffer();
}

CToolTipCtrl::~CToolTipCtrl() {
    if (win::detail::valid(m_hWnd)) ::DestroyWindow(m_hWnd);
}

BOOL CToolTipCtrl::Create(CWnd* parent, DWORD) {
    if (m_hWnd || !parent || !win::detail::valid(parent->m_hWnd)) return FALSE;
    // A child of the dialog that is not one of its controls: it goes when the dialog goes.
    HWND tip = win::detail::createWindow(WindowRole::ToolTip, parent->m_hWnd, L"");
    parent->m_hWnd->children.push_back(tip);
    tip->id = 0;
    tip->visible = false;
    return Attach(tip);
}

BOOL CToolTipCtrl::AddTool(CWnd* tool, LPCTSTR text, LPCRECT, UINT_PTR) {
    if (!win::detail::valid(m_hWnd) || !tool || !win::detail::valid(tool->m_hWnd)) return FALSE;
    tool->m_hWnd->tip = text ? text : L"";
    return TRUE;
}

void CToolTipCtrl::Activate(BOOL activate) {
    active_ = activate;
}

void CToolTipCtrl::RelayEvent(MSG* msg) {
    ::SendMessageW(m_hWnd, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(msg));
}

int CToolTipCtrl::SetMaxTipWidth(int width) {
    int old = maxWidth_;
    maxWidth_ = width;
    return old;
}
