// CObject, CCmdTarget with message maps, and CWnd: the MFC window classes the dialogs build on.
#pragma once

#include <win/cstring.h>
#include <win/window.h>

class CCmdTarget;
class CDataExchange;

class CObject {
public:
    virtual ~CObject() = default;
};

// Exceptions of the library are thrown as pointers and released with Delete().
class CException : public CObject {
public:
    virtual void Delete() { delete this; }
    virtual BOOL GetErrorMessage(LPWSTR buffer, UINT maxCount, UINT* helpContext = nullptr) const;
};

// Thrown by CDataExchange::Fail after the user has been told what is wrong.
class CUserException : public CException {};
[[noreturn]] void AfxThrowUserException();

using AFX_PMSG = void (CCmdTarget::*)();

struct AFX_MSGMAP_ENTRY {
    UINT nMessage;
    UINT nCode;
    UINT nID;
    UINT nLastID;
    UINT_PTR nSig;
    AFX_PMSG pfn;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)();
    const AFX_MSGMAP_ENTRY* lpEntries;
};

#define AfxSig_end 0
#define AfxSigCmd_v 12

#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* GetThisMessageMap();                                                  \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const {                                            \
        return GetThisMessageMap();                                                                \
    }                                                                                              \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using TheBaseClass = baseClass;                                                            \
        static const AFX_MSGMAP_ENTRY _messageEntries[] = {

#define END_MESSAGE_MAP()                                                                          \
    { 0, 0, 0, 0, AfxSig_end, nullptr }                                                            \
    }                                                                                              \
    ;                                                                                              \
    static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, &_messageEntries[0]};  \
    return &messageMap;                                                                            \
    }

#define ON_COMMAND(id, memberFxn)                                                                  \
    {WM_COMMAND, 0, (WORD)(id), (WORD)(id), AfxSigCmd_v, static_cast<AFX_PMSG>(memberFxn)},
#define ON_CONTROL(code, id, memberFxn)                                                            \
    {WM_COMMAND, (WORD)(code), (WORD)(id),                                                         \
     (WORD)(id), AfxSigCmd_v,  static_cast<AFX_PMSG>(memberFxn)},
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_EN_KILLFOCUS(id, memberFxn) ON_CONTROL(EN_KILLFOCUS, id, memberFxn)
#define ON_EN_CHANGE(id, memberFxn) ON_CONTROL(EN_CHANGE, id, memberFxn)
#define ON_CBN_SELCHANGE(id, memberFxn) ON_CONTROL(CBN_SELCHANGE, id, memberFxn)
#define ON_LBN_SELCHANGE(id, memberFxn) ON_CONTROL(LBN_SELCHANGE, id, memberFxn)

class CCmdTarget : public CObject {
public:
    // Runs the handler of the message map (own class first, then the bases) for a command.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo);

protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

class CWnd : public CCmdTarget {
public:
    CWnd() = default;
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    HWND m_hWnd = nullptr;

    operator HWND() const { return m_hWnd; }
    HWND GetSafeHwnd() const { return m_hWnd; }
    // The object attached to a window, or one kept by the window for as long as it lives.
    static CWnd* FromHandle(HWND window);
    BOOL Attach(HWND window);
    HWND Detach();

    void SetWindowText(LPCTSTR text);
    void GetWindowText(CString& text) const;
    int GetWindowText(LPTSTR buffer, int maxCount) const;
    int GetWindowTextLength() const;
    BOOL EnableWindow(BOOL enable = TRUE);
    BOOL IsWindowEnabled() const;
    BOOL ShowWindow(int command);
    BOOL IsWindowVisible() const;
    CWnd* GetParent() const;
    int GetDlgCtrlID() const;

    CWnd* GetDlgItem(int id) const;
    void SetDlgItemText(int id, LPCTSTR text);
    int GetDlgItemText(int id, CString& text) const;
    void CheckDlgButton(int id, UINT check);
    UINT IsDlgButtonChecked(int id) const;
    void CheckRadioButton(int first, int last, int check);

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = 0);

    BOOL UpdateData(BOOL saveAndValidate = TRUE);
    virtual void DoDataExchange(CDataExchange* dx);
    virtual BOOL DestroyWindow();
    virtual BOOL PreTranslateMessage(MSG* msg);
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);

    // The window that owns dialogs: the parent's top window if given, else the host's main one.
    static CWnd* GetSafeOwner(CWnd* parent = nullptr, HWND* top = nullptr);

    bool isTemporary() const { return temporary_; }
    void markTemporary() { temporary_ = true; }

private:
    bool temporary_ = false;
};

CWnd* AfxGetMainWnd();
