// The progress dialog of a long run: modeless, it pumps the host's messages whenever the worker
// calls it so that Cancel works, and the worker polls the cancel flag. Cancel never closes it:
// the worker decides.
#pragma once

#include <win/win.h>

class CProgressDlg : public CDialog {
public:
    enum { IDD = 1008 };

    // captionId 0 takes the string 1013, "Import Progress".
    explicit CProgressDlg(UINT captionId = 0);
    ~CProgressDlg() override;

    BOOL Create(CWnd* parent = nullptr);
    void SetRange(int lower, int upper);
    int SetStep(int step);
    // Both pump messages first and return the old position.
    int SetPos(int pos);
    int StepIt();
    void SetStatus(LPCTSTR text);
    void SetHeading(LPCTSTR text);
    // Pumps messages; true once the user pressed Cancel.
    BOOL CheckCancelButton();
    BOOL DestroyWindow() override;

protected:
    void DoDataExchange(CDataExchange* dx) override;
    BOOL OnInitDialog() override;
    void OnCancel() override;

private:
    void PumpMessages();
    void UpdatePercent(int pos);
    void ReEnableParent();

    CProgressCtrl m_Progress;
    UINT m_nCaptionID;
    int m_nLower = 0;
    int m_nUpper = 100;
    int m_nStep = 1;
    int m_nPos = 0; // in full: the bar's own position is cut to 16 bits
    BOOL m_bCancel = FALSE;
    CWnd* m_pParentWnd = nullptr;
    BOOL m_bParentDisabled = FALSE;
};
