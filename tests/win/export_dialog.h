// A dialog written as the module writes its own: a template, data exchange, a message map, a
// combo box that switches an edit on, and an OK handler that validates and may stay open.
#pragma once

#include <win/win.h>

namespace wintest {

class CTestExportDialog : public CDialog {
public:
    enum { IDD = 1904 };
    CTestExportDialog() : CDialog(IDD) {}

    CComboBox m_units;
    CEdit m_scaleEdit;
    CToolTipCtrl m_tips;
    int m_processMethod = -1;
    int m_scope = -1;
    double m_scale = 1.0;
    CString m_fileName = L"C:\\cadExport.qel";
    int browsed = 0;
    BOOL ownerEnabledWhileUp = TRUE;
    int initialised = 0;

    BOOL OnInitDialog() override;
    void OnOK() override;
    BOOL PreTranslateMessage(MSG* msg) override;
    int relayed = 0;

protected:
    void DoDataExchange(CDataExchange* dx) override;
    void OnBrowse();
    void OnUnitsChange();
    DECLARE_MESSAGE_MAP()
};

} // namespace wintest
