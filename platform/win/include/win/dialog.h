// CDialog and dialog data exchange.
//
// DoModal makes the dialog from its template (win/resource.h), runs OnInitDialog and hands the
// dialog to the host's presenter, which acts as the user until EndDialog is called. The window is
// gone when DoModal returns; members filled by data exchange keep their values.
#pragma once

#include <win/cwnd.h>

#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7
#define IDTRYAGAIN 10
#define IDCONTINUE 11

class CDialog : public CWnd {
public:
    CDialog() = default;
    explicit CDialog(UINT templateId, CWnd* parent = nullptr);
    ~CDialog() override;

    // IDOK, IDCANCEL or what EndDialog was given; -1 if the template is missing.
    virtual INT_PTR DoModal();
    // Modeless: makes the window from the template and runs OnInitDialog.
    virtual BOOL Create(UINT templateId, CWnd* parent = nullptr);
    void EndDialog(int result);
    BOOL DestroyWindow() override;

    virtual BOOL OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();

    UINT m_nIDHelp = 0;
    CWnd* m_pParentWnd = nullptr;

    UINT templateId() const { return templateId_; }
    bool ended() const { return ended_; }
    int modalResult() const { return result_; }

protected:
    DECLARE_MESSAGE_MAP()

private:
    UINT templateId_ = 0;
    bool ended_ = false;
    int result_ = -1;
};

class CDataExchange {
public:
    CDataExchange(CWnd* dialog, BOOL saveAndValidate)
        : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dialog) {}
    BOOL m_bSaveAndValidate;
    CWnd* m_pDlgWnd;
    // The control that later validation refers to; its window.
    HWND PrepareCtrl(int id);
    HWND PrepareEditCtrl(int id);
    // Throws a CUserException: UpdateData returns FALSE and the dialog stays as it is.
    [[noreturn]] void Fail();
    HWND lastControl() const { return last_; }

private:
    HWND last_ = nullptr;
};

void DDX_Text(CDataExchange* dx, int id, CString& value);
void DDX_Text(CDataExchange* dx, int id, LPTSTR value, int maxLength);
void DDX_Text(CDataExchange* dx, int id, double& value);
// The index of the checked radio in the group that starts at `id`, -1 for none.
void DDX_Radio(CDataExchange* dx, int id, int& value);
// Attaches `control` to the dialog's control the first time.
void DDX_Control(CDataExchange* dx, int id, CWnd& control);
// Loading limits what the edit takes; saving refuses a longer text with the library's message.
void DDV_MaxChars(CDataExchange* dx, const CString& value, int count);
