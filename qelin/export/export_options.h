// The export options dialog: the file, the process option, the scope and the units. Its OK
// handler checks everything, makes the empty file, resets the export's state, stores the
// settings, closes the dialog and runs the export.
#pragma once

#include <win/win.h>

class CQelExportOptions : public CDialog {
public:
    enum { IDD = 1004 };
    CQelExportOptions(CWnd* parent = nullptr);

    BOOL OnInitDialog() override;

protected:
    void DoDataExchange(CDataExchange* dx) override;
    void OnOK() override;

    void OnBrowse();
    void OnUnitsChange();

    DECLARE_MESSAGE_MAP()

private:
    bool acceptFileName();
    bool makeEmptyFile();
    void resetExportState();
    bool storeSettings();

    CToolTipCtrl m_toolTip;
    CString m_path;
    CString m_suppress;
    int m_errorCount = 0;
    CComboBox m_units;
    CEdit m_scaleEdit;
    int m_processMethod = -1;
    int m_scope = -1;
    double m_scale = 0.0;
    CString m_fileName;
};
