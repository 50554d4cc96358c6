// The MFC control classes: thin objects over a control's window, attached by DDX_Control or
// handed out by GetDlgItem. Each call is the control message the library would send.
#pragma once

#include <win/cwnd.h>

class CButton : public CWnd {
public:
    int GetCheck() const { return static_cast<int>(::SendMessageW(m_hWnd, BM_GETCHECK, 0, 0)); }
    void SetCheck(int check) { ::SendMessageW(m_hWnd, BM_SETCHECK, static_cast<WPARAM>(check), 0); }
};

class CEdit : public CWnd {
public:
    void SetLimitText(UINT max) { ::SendMessageW(m_hWnd, EM_LIMITTEXT, max, 0); }
    void LimitText(int max = 0) {
        ::SendMessageW(m_hWnd, EM_LIMITTEXT, static_cast<WPARAM>(max), 0);
    }
    UINT GetLimitText() const {
        return static_cast<UINT>(::SendMessageW(m_hWnd, EM_GETLIMITTEXT, 0, 0));
    }
};

class CStatic : public CWnd {};

class CComboBox : public CWnd {
public:
    int AddString(LPCTSTR text) { return send(CB_ADDSTRING, 0, text); }
    void ResetContent() { send(CB_RESETCONTENT, 0, nullptr); }
    int GetCount() const { return send(CB_GETCOUNT, 0, nullptr); }
    int GetCurSel() const { return send(CB_GETCURSEL, 0, nullptr); }
    int SetCurSel(int index) { return send(CB_SETCURSEL, static_cast<WPARAM>(index), nullptr); }
    int GetLBTextLen(int index) const {
        return send(CB_GETLBTEXTLEN, static_cast<WPARAM>(index), nullptr);
    }
    int GetLBText(int index, LPTSTR text) const {
        return send(CB_GETLBTEXT, static_cast<WPARAM>(index), text);
    }
    void GetLBText(int index, CString& text) const;

private:
    int send(UINT message, WPARAM wParam, LPCWSTR text) const {
        return static_cast<int>(
            ::SendMessageW(m_hWnd, message, wParam, reinterpret_cast<LPARAM>(text)));
    }
};

class CListBox : public CWnd {
public:
    int AddString(LPCTSTR text) { return send(LB_ADDSTRING, 0, text); }
    void ResetContent() { send(LB_RESETCONTENT, 0, nullptr); }
    int GetCount() const { return send(LB_GETCOUNT, 0, nullptr); }
    int GetCurSel() const { return send(LB_GETCURSEL, 0, nullptr); }
    int SetCurSel(int index) { return send(LB_SETCURSEL, static_cast<WPARAM>(index), nullptr); }
    int GetTextLen(int index) const {
        return send(LB_GETTEXTLEN, static_cast<WPARAM>(index), nullptr);
    }
    void GetText(int index, CString& text) const;

private:
    int send(UINT message, WPARAM wParam, LPCWSTR text) const {
        return static_cast<int>(
            ::SendMessageW(m_hWnd, message, wParam, reinterpret_cast<LPARAM>(text)));
    }
};

class CProgressCtrl : public CWnd {
public:
    // 16-bit bounds, as the control's own message carries them.
    void SetRange(short lower, short upper) {
        ::SendMessageW(m_hWnd, PBM_SETRANGE, 0,
                       MAKELPARAM(static_cast<WORD>(lower), static_cast<WORD>(upper)));
    }
    void SetRange32(int lower, int upper) {
        ::SendMessageW(m_hWnd, PBM_SETRANGE32, static_cast<WPARAM>(lower),
                       static_cast<LPARAM>(upper));
    }
    int SetPos(int pos) {
        return static_cast<int>(::SendMessageW(m_hWnd, PBM_SETPOS, static_cast<WPARAM>(pos), 0));
    }
    int GetPos() const { return static_cast<int>(::SendMessageW(m_hWnd, PBM_GETPOS, 0, 0)); }
    int OffsetPos(int delta) {
        return static_cast<int>(
            ::SendMessageW(m_hWnd, PBM_DELTAPOS, static_cast<WPARAM>(delta), 0));
    }
    int SetStep(int step) {
        return static_cast<int>(::SendMessageW(m_hWnd, PBM_SETSTEP, static_cast<WPARAM>(step), 0));
    }
    int StepIt() { return static_cast<int>(::SendMessageW(m_hWnd, PBM_STEPIT, 0, 0)); }
};

// Tool tips: the text of each tool is kept on the tool's window, where presenters show it.
class CToolTipCtrl : public CWnd {
public:
    ~CToolTipCtrl() override;
    BOOL Create(CWnd* parent, DWORD style = 0);
    BOOL AddTool(CWnd* tool, LPCTSTR text, LPCRECT rect = nullptr, UINT_PTR id = 0);
    void Activate(BOOL activate);
    void RelayEvent(MSG* msg);
    int SetMaxTipWidth(int width);
    BOOL IsActive() const { return active_; }

private:
    BOOL active_ = TRUE;
    int maxWidth_ = -1;
};
