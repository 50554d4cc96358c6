// The import options dialog: the file, the import method, the options, the log folder and the
// units. Its OK handler checks and stores everything, closes the dialog and runs the import.
#pragma once

#include <win/win.h>

#include <initializer_list>

class COptions : public CDialog {
public:
    enum { IDD = 1001 };
    COptions(CWnd* parent = nullptr);

    BOOL OnInitDialog() override;
    BOOL PreTranslateMessage(MSG* msg) override;

    int importMethod = 0;           // 0 solids, 1 blocks
    CString logFolder;              // at most 255 characters
    double scaleFactor = 1.0;       // the scale box
    CString fileName;               // at most 235 characters
    int createLogFlag = 1;          // "Create Log File (.log)" at OK
    int unitIndex = 0;              // row of the unit table
    CString suppressText;           // "SurpressErrorMessages" as the OK handler stores it
    DWORD errorCountToWrite = 0;    // "ImportErrorCount" as the OK handler stores it
    unsigned char scriptRun = 0;    // started by QELINA
    wchar_t scriptAnswer[256] = {}; // the file name typed at QELINA's prompt

protected:
    void DoDataExchange(CDataExchange* dx) override;
    void OnOK() override;

    void OnBrowseLogFolder();
    void OnCreateLogTick();
    void OnDefaultPathTick();
    void OnUnitsChange();
    void OnBrowseFile();
    void OnFileLeft(); // the hidden-class scan

    DECLARE_MESSAGE_MAP()

private:
    void ScanHiddenClasses();
    void readSettings(CString& acisSolids, DWORD& checkBoxes);
    void enableControls(std::initializer_list<int> ids, BOOL enable);
    bool acceptFileName();
    bool acceptLogFolder();
    bool storeSettings(DWORD checkBoxes);
    void showScale(double scale);

    CToolTipCtrl m_toolTip;
    CString m_previousLogFolder;
};
