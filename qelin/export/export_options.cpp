#include "export/export_options.h"

#include "export/original_file.h"
#include "export/qel_out_object.h"
#include "export/run_export.h"
#include "foundation/document_units.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "foundation/units.h"
#include "records/member_record.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"
#include "shell/shell_constants.h"

#include <arx/aced.h>
#include <qel/qel.h>

#include <cwchar>

void QelRegisterExportOptionsTemplate();

namespace {

enum Control {
    kBrowse = 1001,
    kFile = 1019,
    kWithoutReference = 1005,
    kWithReference = 1006,
    kAll = 1007,
    kVisible = 1011,
    kSelected = 1012,
    kUnits = 1039,
    kScale = 1029,
    kCompany = 1040,
    kVersion = 1041,
};

// The scale each unit puts in the scale box: shortened values, which reach the export through
// the box's text. Row 9, the user's own, starts at 1.
constexpr double kUnitScales[] = {1.0,      1000.0,    100.0,     39.37007,  3.280839,
                                  1.093613, 39.369996, 3.2808333, 1.0936111, 1.0};

constexpr double kEnglishScale = 39.37007874015748;
constexpr int kEnglishInches = 3;
constexpr const wchar_t* kDefaultFile = L"C:\\cadExport.qel";
// What no file name can hold behind its last separator.
constexpr const wchar_t* kInvalidNameChars = L"<>//:\\?*|,=`";

bool endsWithSeparator(const CString& name) {
    const int length = name.GetLength();
    return length > 0 && (name[length - 1] == L'\\' || name[length - 1] == L'/');
}

// The part behind the last separator; the host's '/' separates as '\' does.
CString filePart(const CString& name) {
    const int cut = std::max(name.ReverseFind(L'\\'), name.ReverseFind(L'/'));
    return name.Mid(cut + 1);
}

} // namespace

BEGIN_MESSAGE_MAP(CQelExportOptions, CDialog)
ON_BN_CLICKED(kBrowse, &CQelExportOptions::OnBrowse)
ON_CBN_SELCHANGE(kUnits, &CQelExportOptions::OnUnitsChange)
END_MESSAGE_MAP()

CQelExportOptions::CQelExportOptions(CWnd* parent) : CDialog(IDD, parent) {
    QelRegisterExportOptionsTemplate();
}

void CQelExportOptions::DoDataExchange(CDataExchange* dx) {
    CDialog::DoDataExchange(dx);
    DDX_Control(dx, kUnits, m_units);
    DDX_Control(dx, kScale, m_scaleEdit);
    DDX_Radio(dx, kWithoutReference, m_processMethod);
    DDX_Radio(dx, kAll, m_scope);
    DDX_Text(dx, kScale, m_scale);
    DDX_Text(dx, kFile, m_fileName);
    DDV_MaxChars(dx, m_fileName, 255);
}

BOOL CQelExportOptions::OnInitDialog() {
    CDialog::OnInitDialog();
    CString version;
    version.Format(L"%s (Build %d)", QEL_VERSION, QEL_BUILD);
    SetDlgItemText(kVersion, version);
    SetDlgItemText(kCompany, QEL_COMPANY_LINE);
    CDocData& record = QelDocData();
    record.pointsSkipped = 0;

    DWORD method = 1;
    m_path = kDefaultFile;
    if (KeyExists(QEL_SETTINGS_KEY)) {
        ReadNumber(QEL_SETTINGS_KEY, L"ExportProcessMethod", method);
        if (!ReadString(QEL_SETTINGS_KEY, L"LastExportDir", m_path)) m_path = kDefaultFile;
    }
    m_fileName = m_path;
    UpdateData(FALSE);
    CheckRadioButton(kWithoutReference, kWithReference,
                     method == 0 ? kWithoutReference : kWithReference);

    for (const QelUnitRow& row : QelUnitTable)
        if (*row.name) m_units.AddString(row.name);

    const bool english = QelMeasureInit() == 0;
    if (record.exportOptionsValid != 1) {
        record.exportUnitIndex = english ? kEnglishInches : 0;
        record.exportScope = 0;
        record.exportScale = english ? kEnglishScale : 1.0;
        m_units.SetCurSel(record.exportUnitIndex);
        m_scale = record.exportScale;
        SetDlgItemText(kScale, english ? L"39.37007" : L"1");
    } else {
        const bool listed = record.exportUnitIndex >= 0 && record.exportUnitIndex <= 9;
        m_units.SetCurSel(listed ? record.exportUnitIndex : english ? kEnglishInches : 0);
        m_scale = record.exportScale;
        SetDlgItemText(kScale, m_scale > 0.0 ? QelScaleText(m_scale) : CString(L"1"));
    }
    m_scaleEdit.EnableWindow(record.exportUnitIndex == QelUserDefinedUnit);
    record.annotationNumber = 0;
    CheckRadioButton(kAll, kSelected,
                     record.exportScope == 1   ? kVisible
                     : record.exportScope == 2 ? kSelected
                                               : kAll);

    m_toolTip.Create(this);
    m_toolTip.AddTool(GetDlgItem(kBrowse), L"Browse for *.qel export file.");
    m_toolTip.AddTool(GetDlgItem(kFile), L"Qel export file name.");
    m_toolTip.Activate(TRUE);
    return TRUE;
}

void CQelExportOptions::OnUnitsChange() {
    UpdateData(TRUE);
    const int selection = m_units.GetCurSel();
    m_scale = selection >= 0 && selection <= QelUserDefinedUnit ? kUnitScales[selection] : 1.0;
    m_scaleEdit.EnableWindow(selection < 0 || selection >= QelUserDefinedUnit);
    UpdateData(FALSE);
}

void CQelExportOptions::OnBrowse() {
    UpdateData(TRUE);
    m_path = m_fileName.IsEmpty() ? CString(L"C:\\*.qel") : m_fileName;
    if (!m_fileName.IsEmpty() && !QelFileExists(m_fileName) && !CheckFileName(m_fileName)) {
        if (endsWithSeparator(m_fileName))
            SetDlgItemText(kFile, m_fileName + L"*.qel");
        else if (QelIsDirectory(m_fileName))
            SetDlgItemText(kFile, m_fileName + L"\\*.qel");
        else
            SetDlgItemText(kFile, m_fileName + L".qel");
        UpdateData(TRUE);
        m_path = m_fileName;
    }
    CString folder = m_path;
    if (!QelIsDirectory(folder))
        folder = m_path.Left(m_path.GetLength() - filePart(m_path).GetLength());
    CFileDialog picker(FALSE, L"qel", m_path, 0x800004, L"Qel Data Files (*.qel)|*.qel||", this);
    picker.m_ofn.lpstrInitialDir = folder;
    if (picker.DoModal() != IDOK) return;
    m_fileName = picker.GetPathName();
    UpdateData(FALSE);
    m_path = picker.GetPathName();
    if (KeyExists(QEL_SETTINGS_KEY)) {
        if (!WriteString(QEL_SETTINGS_KEY, L"LastExportDir", m_path))
            AfxMessageBox(L"Error writing to registry");
    } else {
        CreateString(QEL_SETTINGS_KEY, L"", L"");
        CreateString(QEL_SETTINGS_KEY, L"LastExportDir", m_path);
    }
}

// Steps of OK that check the name: each refusal keeps the dialog open.
bool CQelExportOptions::acceptFileName() {
    if (m_fileName.IsEmpty()) {
        AfxMessageBox(L"Please enter a valid 'qel' filename.");
        return false;
    }
    if (filePart(m_fileName).FindOneOf(kInvalidNameChars) >= 0 || endsWithSeparator(m_fileName)) {
        AfxMessageBox(L"Filename has invalid characters.");
        return false;
    }
    if (QelIsDirectory(m_fileName)) {
        AfxMessageBox(L"Please enter a valid 'qel' filename.");
        return false;
    }
    if (!CheckFileName(m_fileName)) {
        SetDlgItemText(kFile, m_fileName + L".qel");
        UpdateData(TRUE);
    }
    QelOutObject scratch;
    CString original;
    CDocData& record = QelDocData();
    switch (findOriginalFile(scratch, original)) {
    case QelNoOriginal:
        original = L" ";
        record.hasOriginalFile = 0;
        break;
    case QelHasOriginal:
        record.hasOriginalFile = 1;
        break;
    default:
        break;
    }
    if (m_fileName.CompareNoCase(original) == 0) {
        AfxMessageBox(L"You cannot export to the original qel file!\nPlease select a different "
                      L"file for export.");
        return false;
    }
    if (QelFileExists(m_fileName)) {
        CString question;
        question.Format(L"%s already exist.\nDo you want to replace it?", m_fileName.GetString());
        if (AfxMessageBox(question, MB_YESNO | MB_ICONQUESTION) != IDYES) return false;
    }
    return true;
}

// The file exists, empty, before the export runs: what stops the export leaves it so.
bool CQelExportOptions::makeEmptyFile() {
    if (!QelOpenFile(m_fileName, GENERIC_READ | GENERIC_WRITE)) return false;
    try {
        QelInit(0, 0, QelInitWords);
        QelWriter writer;
        writer.Open(QelNarrowFromWide(m_fileName));
        writer.Close();
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
        return false;
    }
    return true;
}

void CQelExportOptions::resetExportState() {
    CDocData& record = QelDocData();
    record.logFileName = QelLogFilePath();
    QelLogWrite(L"\n\n\nExporting from AutoCAD to QEL file.\n", record.logFileName);
    record.exportScale = m_scale;
    record.meshAnnotationsPending = 0;
    record.contoursSkipped = 0;
    record.exportUnitIndex = m_units.GetCurSel();
    record.exportOptionsValid = 1;
    record.blockScanDone = 0;
    m_errorCount = 0;
    m_suppress.Empty();
    record.exportScope = m_scope;
    QelComputeMaxGroupNumber();
}

bool CQelExportOptions::storeSettings() {
    const DWORD method = static_cast<DWORD>(m_processMethod);
    if (!KeyExists(QEL_SETTINGS_KEY)) {
        CreateString(QEL_SETTINGS_KEY, L"", L"");
        CreateString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", m_suppress);
        CreateNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", static_cast<DWORD>(m_errorCount));
        CreateNumber(QEL_SETTINGS_KEY, L"ExportProcessMethod", method);
        CreateString(QEL_SETTINGS_KEY, L"LastExportDir", m_fileName);
        return true;
    }
    auto refuse = [](const wchar_t* message) {
        AfxMessageBox(message);
        return false;
    };
    if (!WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", static_cast<DWORD>(m_errorCount)))
        return refuse(L"Error reseting error count in registry");
    if (!WriteString(QEL_SETTINGS_KEY, L"LastExportDir", m_fileName))
        return refuse(L"Error writing to registry");
    if (!WriteString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", m_suppress) ||
        !WriteNumber(QEL_SETTINGS_KEY, L"ExportProcessMethod", method))
        return refuse(L"Error writting to registry");
    return true;
}

void CQelExportOptions::OnOK() {
    if (!UpdateData(TRUE)) return;
    if (!acceptFileName()) return;
    if (!makeEmptyFile()) return;
    resetExportState();
    if (!storeSettings()) return;
    CDialog::OnOK();
    QelOutObject out;
    runExport(out);
}
