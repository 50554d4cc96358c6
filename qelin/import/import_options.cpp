#include "import_options.h"

#include "foundation/document_units.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "foundation/units.h"
#include "import/hidden_class_text.h"
#include "import/log_folder_check.h"
#include "import/qel_job.h"
#include "import/run_import.h"
#include "records/member_record.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"
#include "shell/shell_constants.h"

#include <arx/aced.h>
#include <qel/qel.h>

#include <cwchar>

void QelRegisterImportOptionsTemplate();

namespace {

enum Control {
    kFile = 1000,
    kBrowseFile = 1030,
    kSolids = 1011,
    kBlocks = 1012,
    kPoints = 1034,
    kLayerColour = 1036,
    kSuppressHidden = 1035,
    kCreateLog = 1023,
    kDefaultPath = 1025,
    kLogFolder = 1014,
    kBrowseLog = 1010,
    kUnits = 1009,
    kScale = 1024,
    kCompany = 1040,
    kVersion = 1041,
};

// Bits of "CheckBoxesState": read for all four, written for three. "Suppress hidden classes"
// is not remembered, by design.
struct CheckBoxBit {
    int control;
    DWORD bit;
    bool written;
};
constexpr CheckBoxBit kCheckBoxBits[] = {
    {kPoints, 1, true},
    {kLayerColour, 2, true},
    {kSuppressHidden, 4, false},
    {kDefaultPath, 8, true},
};

// The scale that each unit of the combo box puts in the scale box; the user's own is row 9.
constexpr double kUnitScales[] = {1.0,         1000.0, 100.0,       39.37007874, 3.280839895,
                                  1.093613298, 39.37,  3.280833333, 1.093611111};

constexpr double kEnglishScale = 39.37007;
constexpr int kEnglishInches = 3;

// Opens and closes the file for reading, quietly.
bool readable(const CString& path) {
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    CloseHandle(file);
    return true;
}

// Opens and closes a reader on the file: the library's own message if it can't read it.
bool fileReads(const CString& path) {
    try {
        QelInit(0, 0, QelInitWords);
        QelReader reader;
        reader.Open(QelNarrowFromWide(path));
        reader.Close();
        return true;
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
    } catch (...) {
        AfxMessageBox(L"Caught unknown exception opening qel file.");
    }
    return false;
}

} // namespace

BEGIN_MESSAGE_MAP(COptions, CDialog)
ON_BN_CLICKED(kBrowseLog, &COptions::OnBrowseLogFolder)
ON_BN_CLICKED(kCreateLog, &COptions::OnCreateLogTick)
ON_BN_CLICKED(kDefaultPath, &COptions::OnDefaultPathTick)
ON_CBN_SELCHANGE(kUnits, &COptions::OnUnitsChange)
ON_BN_CLICKED(kBrowseFile, &COptions::OnBrowseFile)
ON_EN_KILLFOCUS(kFile, &COptions::OnFileLeft)
END_MESSAGE_MAP()

COptions::COptions(CWnd* parent) : CDialog(IDD, parent) {
    QelRegisterImportOptionsTemplate();
}

void COptions::DoDataExchange(CDataExchange* dx) {
    CDialog::DoDataExchange(dx);
    DDX_Text(dx, kFile, fileName);
    DDV_MaxChars(dx, fileName, 235);
    DDX_Radio(dx, kSolids, importMethod);
    DDX_Text(dx, kLogFolder, logFolder);
    DDV_MaxChars(dx, logFolder, 255);
    DDX_Text(dx, kScale, scaleFactor);
}

BOOL COptions::PreTranslateMessage(MSG* msg) {
    if (m_toolTip.GetSafeHwnd()) m_toolTip.RelayEvent(msg);
    return CDialog::PreTranslateMessage(msg);
}

void COptions::enableControls(std::initializer_list<int> ids, BOOL enable) {
    for (int id : ids)
        GetDlgItem(id)->EnableWindow(enable);
}

void COptions::showScale(double scale) {
    SetDlgItemText(kScale, QelScaleText(scale));
}

// Step by step from the settings; a missing key is the first run.
void COptions::readSettings(CString& acisSolids, DWORD& checkBoxes) {
    DWORD units = 0, createLog = 1;
    if (KeyExists(QEL_SETTINGS_KEY)) {
        CString path;
        if (!ReadString(QEL_SETTINGS_KEY, L"LogFilePath", path)) path = L"default";
        if (path == CString(L"default")) {
            CheckDlgButton(kDefaultPath, BST_CHECKED);
            if (!WriteString(QEL_SETTINGS_KEY, L"LogFilePath", L"default"))
                AfxMessageBox(L"Error writing log file path to registry");
        }
        if (!ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", fileName)) {
            fileName.Empty();
            if (!WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", L""))
                QelLogAppend(L"\n Error writting last opened dir to registry.");
        }
        if (!fileName.IsEmpty()) UpdateData(FALSE);
        if (!ReadString(QEL_SETTINGS_KEY, L"ImportAcisSolids", acisSolids)) acisSolids = L"0";
        ReadNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", units);
        ReadNumber(QEL_SETTINGS_KEY, L"CreateLog", createLog);
        ReadNumber(QEL_SETTINGS_KEY, L"CheckBoxesState", checkBoxes);
    } else {
        acisSolids = L"0";
        fileName.Empty();
        CheckDlgButton(kDefaultPath, BST_CHECKED);
    }
    unitIndex = static_cast<int>(units);
    CheckDlgButton(kCreateLog, createLog ? BST_CHECKED : BST_UNCHECKED);
}

BOOL COptions::OnInitDialog() {
    CDialog::OnInitDialog();
    CString version;
    version.Format(L"%s (Build %d)", QEL_VERSION, QEL_BUILD);
    SetDlgItemText(kVersion, version);
    SetDlgItemText(kCompany, QEL_COMPANY_LINE);
    CDocData& record = QelDocData();
    scriptRun = record.scriptMode != 0;

    CString acisSolids = L"0";
    DWORD checkBoxes = 0;
    readSettings(acisSolids, checkBoxes);

    m_previousLogFolder = QelGetStringVar(L"DWGPREFIX");
    SetDlgItemText(kLogFolder, m_previousLogFolder);

    auto* units = static_cast<CComboBox*>(GetDlgItem(kUnits));
    for (const QelUnitRow& row : QelUnitTable)
        if (*row.name) units->AddString(row.name);
    units->SetCurSel(unitIndex);

    if (record.importOptionsValid == 1) {
        showScale(record.importScale);
        scaleFactor = record.importScale;
    } else {
        const bool english = QelMeasureInit() == 0;
        unitIndex = english ? kEnglishInches : 0;
        units->SetCurSel(unitIndex);
        if (!WriteNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", static_cast<DWORD>(unitIndex)))
            QelLogAppend(L"\n Error resetting import units in registry\n");
        record.importScale = english ? kEnglishScale : 1.0;
        scaleFactor = record.importScale;
        SetDlgItemText(kScale, english ? L"39.37007" : L"1");
    }
    enableControls({kScale}, unitIndex == QelUserDefinedUnit);

    CheckRadioButton(kSolids, kBlocks,
                     std::wcstol(acisSolids, nullptr, 10) == 0 ? kSolids : kBlocks);
    const BOOL logging = IsDlgButtonChecked(kCreateLog) == BST_CHECKED;
    enableControls({kDefaultPath, kLogFolder, kBrowseLog}, logging);

    if (scriptRun) enableControls({kFile, kBrowseFile}, !readable(fileName));

    if (checkBoxes != 0 && checkBoxes <= 15)
        for (const CheckBoxBit& row : kCheckBoxBits)
            if (checkBoxes & row.bit) CheckDlgButton(row.control, BST_CHECKED);

    if (logging) {
        const BOOL typed = IsDlgButtonChecked(kDefaultPath) != BST_CHECKED;
        enableControls({kDefaultPath}, TRUE);
        enableControls({kLogFolder, kBrowseLog}, typed);
    }

    if (!scriptRun) ScanHiddenClasses();
    QelComputeMaxGroupNumber();

    m_toolTip.Create(this);
    m_toolTip.AddTool(GetDlgItem(kSolids), L"Import objects as Acis Solids");
    m_toolTip.AddTool(GetDlgItem(kBlocks), L"Import objects as blocks for smaller file size");
    m_toolTip.AddTool(GetDlgItem(kBrowseFile), L"Browse for *.qel file to import");
    m_toolTip.AddTool(GetDlgItem(IDOK), L"Import objects in selected file");
    m_toolTip.Activate(TRUE);
    return TRUE;
}

void COptions::OnFileLeft() {
    ScanHiddenClasses();
}

void COptions::ScanHiddenClasses() {
    if (!UpdateData(TRUE) || fileName.IsEmpty()) return;
    CWnd* suppress = GetDlgItem(kSuppressHidden);
    if (!readable(fileName)) {
        CheckDlgButton(kSuppressHidden, BST_UNCHECKED);
        suppress->EnableWindow(FALSE);
        return;
    }
    QelObject* view = nullptr;
    try {
        QelInit(0, 0, QelInitWords);
        QelReader reader;
        reader.Open(QelNarrowFromWide(fileName));
        view = reader.ReadObject("ModelSpaceView", 0);
        QelParam* hidden = view ? view->GetParam("hiddenClasses", 0) : nullptr;
        if (hidden && hidden->GetType() == QelStringType) {
            suppress->EnableWindow(TRUE);
            const char* text = nullptr;
            hidden->GetValue(text);
            QelParseHiddenClasses(text, QelDocData().hiddenClasses);
        } else {
            suppress->EnableWindow(FALSE);
            CheckDlgButton(kSuppressHidden, BST_UNCHECKED);
        }
        reader.Close();
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
    } catch (...) {
        AfxMessageBox(L"Caught unknown exception opening qel file.");
    }
    if (view) view->UnRef();
}

void COptions::OnBrowseFile() {
    UpdateData(TRUE);
    CString start = fileName.IsEmpty() ? CString(L"C:\\*.qel") : fileName;
    if (!readable(start) && PathIsDirectoryW(start))
        start = QelWithTrailingSeparator(start) + L"*.qel";
    CString folder = start;
    if (!PathIsDirectoryW(folder))
        folder =
            start.Left(start.GetLength() - static_cast<int>(std::wcslen(PathFindFileNameW(start))));
    CFileDialog picker(TRUE, L"qel", start, 0x801005, L"Qel Data Files (*.qel)|*.qel||", this);
    picker.m_ofn.lpstrInitialDir = folder;
    if (picker.DoModal() != IDOK) return;
    const CString chosen = picker.GetPathName();
    if (!QelOpenFile(chosen, GENERIC_READ)) return;
    fileName = chosen;
    UpdateData(FALSE);
    ScanHiddenClasses();
    bool stored = false;
    if (KeyExists(QEL_SETTINGS_KEY))
        stored = WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", fileName);
    else
        stored = QelCreateFirstRunSettings(fileName);
    if (!stored) AfxMessageBox(L"Error writing to registry");
}

void COptions::OnBrowseLogFolder() {
    wchar_t name[MAX_PATH] = {};
    BROWSEINFOW info;
    info.hwndOwner = GetSafeHwnd();
    info.pszDisplayName = name;
    info.lpszTitle = L"Select New Log File Folder";
    PIDLIST_ABSOLUTE chosen = SHBrowseForFolderW(&info);
    if (!chosen) return;
    wchar_t path[MAX_PATH] = {};
    SHGetPathFromIDListW(chosen, path);
    CoTaskMemFree(chosen);
    SetDlgItemText(kLogFolder, QelWithTrailingSeparator(path));
}

void COptions::OnCreateLogTick() {
    enableControls({kDefaultPath, kLogFolder, kBrowseLog},
                   IsDlgButtonChecked(kCreateLog) == BST_CHECKED);
}

void COptions::OnDefaultPathTick() {
    if (IsDlgButtonChecked(kDefaultPath) == BST_CHECKED) {
        GetDlgItemText(kLogFolder, m_previousLogFolder);
        SetDlgItemText(kLogFolder, QelGetStringVar(L"DWGPREFIX"));
        enableControls({kLogFolder, kBrowseLog}, FALSE);
    } else {
        enableControls({kLogFolder, kBrowseLog}, TRUE);
        SetDlgItemText(kLogFolder, m_previousLogFolder);
    }
}

void COptions::OnUnitsChange() {
    const int selection = static_cast<CComboBox*>(GetDlgItem(kUnits))->GetCurSel();
    if (selection == QelUserDefinedUnit) {
        enableControls({kScale}, TRUE);
        return;
    }
    const bool known = selection >= 0 && selection < QelUserDefinedUnit;
    showScale(known ? kUnitScales[selection] : 1.0);
    enableControls({kScale}, FALSE);
}

bool COptions::acceptFileName() {
    if (fileName.IsEmpty()) {
        AfxMessageBox(L"Please enter a valid 'qel' filename.");
        return false;
    }
    if (readable(fileName)) return true;
    const CString longer = fileName + L".qel";
    CFileStatus status;
    if (!CFile::GetStatus(longer, status)) {
        AfxMessageBox(L"Filename does not exist.");
        return false;
    }
    fileName = longer;
    SetDlgItemText(kFile, fileName);
    return true;
}

bool COptions::acceptLogFolder() {
    if (logFolder.IsEmpty()) {
        if (IsDlgButtonChecked(kDefaultPath) != BST_CHECKED) {
            AfxMessageBox(L"Please select Log file location, or use the default\npath to store log "
                          L"file with the AutoCAD drawing.");
            return false;
        }
        logFolder = L"default";
        return true;
    }
    logFolder = QelWithTrailingSeparator(logFolder);
    if (QelHasInvalidPathChars(logFolder)) {
        AfxMessageBox(L"The path for the log file has invalid chars.");
        return false;
    }
    if (!QelDriveAccessible(logFolder)) {
        AfxMessageBox(L"The specified drive for the LOG file is not accessible.");
        return false;
    }
    if (!PathIsDirectoryW(logFolder)) {
        if (AfxMessageBox(L"Log file folder does not exist, would you like to create it?",
                          MB_YESNO) != IDYES)
            return false;
        QelCreateFolderTree(logFolder);
    }
    const CString probe = logFolder + L"~0000001.tmp";
    if (!QelOpenFile(probe, GENERIC_READ | GENERIC_WRITE)) return false;
    DeleteFileW(probe);
    return true;
}

// Every value of the dialog into the settings; with no key yet, the key is made first.
bool COptions::storeSettings(DWORD checkBoxes) {
    const CString method = importMethod == 1 ? L"1" : L"0";
    if (!KeyExists(QEL_SETTINGS_KEY)) {
        CreateString(QEL_SETTINGS_KEY, L"", L"");
        CreateString(QEL_SETTINGS_KEY, L"LogFilePath", logFolder);
        CreateString(QEL_SETTINGS_KEY, L"LastOpenDir", fileName);
        CreateString(QEL_SETTINGS_KEY, L"ImportAcisSolids", method);
        CreateNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", errorCountToWrite);
        CreateString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", suppressText);
        CreateNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", static_cast<DWORD>(unitIndex));
        CreateNumber(QEL_SETTINGS_KEY, L"CreateLog", static_cast<DWORD>(createLogFlag));
        CreateNumber(QEL_SETTINGS_KEY, L"CheckBoxesState", checkBoxes);
        return true;
    }
    auto refuse = [](const wchar_t* message) {
        AfxMessageBox(message);
        return false;
    };
    if (!WriteString(QEL_SETTINGS_KEY, L"LogFilePath", logFolder))
        return refuse(L"Error writing log file path to registry");
    if (!WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", fileName)) {
        AfxMessageBox(L"Error saving import file name to registry");
        CreateString(QEL_SETTINGS_KEY, L"LastOpenDir", fileName);
        return false;
    }
    if (!WriteString(QEL_SETTINGS_KEY, L"ImportAcisSolids", method))
        return refuse(L"Error writing import method to registry");
    if (!WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", errorCountToWrite))
        return refuse(L"Error reseting error count in registry");
    if (!WriteString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", suppressText) ||
        !WriteNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", static_cast<DWORD>(unitIndex)) ||
        !WriteNumber(QEL_SETTINGS_KEY, L"CreateLog", static_cast<DWORD>(createLogFlag)) ||
        !WriteNumber(QEL_SETTINGS_KEY, L"CheckBoxesState", checkBoxes))
        return refuse(L"Error writting to registry");
    return true;
}

void COptions::OnOK() {
    if (!UpdateData(TRUE)) return;
    if (!acceptFileName()) return;

    CDocData& record = QelDocData();
    record.importPoints = IsDlgButtonChecked(kPoints) == BST_CHECKED;
    record.useLayerColourOverride = IsDlgButtonChecked(kLayerColour) == BST_CHECKED;
    record.suppressHiddenClasses = IsDlgButtonChecked(kSuppressHidden) == BST_CHECKED;
    DWORD checkBoxes = 0;
    for (const CheckBoxBit& row : kCheckBoxBits)
        if (row.written && IsDlgButtonChecked(row.control) == BST_CHECKED) checkBoxes |= row.bit;

    if (!fileReads(fileName)) return;

    if (!(scaleFactor > 0.00001)) {
        AfxMessageBox(L"Please enter a value greater than '0.000001'", MB_ICONEXCLAMATION);
        return;
    }
    if (scaleFactor > 10000.0) {
        AfxMessageBox(L"Please enter a value no greater than '10000'");
        return;
    }
    record.importScale = scaleFactor;
    record.importOptionsValid = 1;
    record.importContext = 0;

    errorCountToWrite = 0;
    suppressText = L"0";
    unitIndex = static_cast<CComboBox*>(GetDlgItem(kUnits))->GetCurSel();

    if (IsDlgButtonChecked(kCreateLog) == BST_CHECKED) {
        createLogFlag = 1;
        if (!acceptLogFolder()) return;
    } else {
        createLogFlag = 0;
    }
    if (!storeSettings(checkBoxes)) return;

    EndDialog(IDOK);
    QelJob job;
    RunImport(job);
}
