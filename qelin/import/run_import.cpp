#include "run_import.h"

#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/read_qel_file.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"

#include <cwchar>

namespace {

constexpr DWORD kFirstRunUnits = 5;    // "ImportDwgUnits" when the key is first made
constexpr DWORD kDriverUnits = 4;      // ... when the key has no such value
constexpr DWORD kInvalidatedUnits = 7; // written when the dialog's options aren't valid

// "LastOpenDir" into the job; the file name travels from the dialog through the store.
void loadFileName(QelJob& job) {
    job.lastOpenDir.Empty();
    if (KeyExists(QEL_SETTINGS_KEY) &&
        !ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", job.lastOpenDir)) {
        job.lastOpenDir.Empty();
        if (!WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", job.lastOpenDir))
            QelLogAppend(L"\n Error writting last opened dir to registry.");
    }
    job.fileName = job.lastOpenDir;
}

void checkScaleAndContext(CDocData& record) {
    if (record.importScale <= 0.0) record.importScale = 1.0;
    record.importContext = 0;
}

CString logFolderFromSettings() {
    CString folder;
    if (!ReadString(QEL_SETTINGS_KEY, L"LogFilePath", folder) || folder == CString(L"default"))
        folder = QelGetStringVar(L"DWGPREFIX");
    return folder;
}

// A run that finds the key: false when a write failed and the run ends.
bool settingsOfLaterRun(QelJob& job, CDocData& record) {
    if (!WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", job.fileName)) {
        AfxMessageBox(L"Error saving import file name to registry");
        CreateString(QEL_SETTINGS_KEY, L"LastOpenDir", job.fileName);
    }
    CString method;
    if (!ReadString(QEL_SETTINGS_KEY, L"ImportAcisSolids", method)) method = L"1";
    job.asAcisSolids = std::wcstol(method, nullptr, 10) == 0 ? 1 : 0;
    if (!WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 0)) {
        AfxMessageBox(L"Error resetting error count in registry");
        return false;
    }
    if (!WriteNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", 0)) {
        AfxMessageBox(L"Error writting to registry");
        return false;
    }
    CString name;
    QelLogFileName(name);
    job.logFilePath = logFolderFromSettings() + name;
    DWORD units = kDriverUnits, createLog = 1;
    ReadNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", units);
    ReadNumber(QEL_SETTINGS_KEY, L"CreateLog", createLog);
    record.importUnitIndex = static_cast<int>(units);
    record.createLog = static_cast<int>(createLog);
    checkScaleAndContext(record);
    return true;
}

// The first run for this user: the key is made with the defaults.
void settingsOfFirstRun(QelJob& job, CDocData& record) {
    QelCreateFirstRunSettings(job.fileName);
    record.importUnitIndex = static_cast<int>(kFirstRunUnits);
    CString name;
    QelLogFileName(name);
    job.logFilePath = QelGetStringVar(L"DWGPREFIX") + name;
    CreateString(QEL_SETTINGS_KEY, L"LogFilePath", L"default");
    CreateNumber(QEL_SETTINGS_KEY, L"CreateLog", 1);
    record.createLog = 1;
    checkScaleAndContext(record);
    // Nothing was read back from the store: blocks, the plain start.
    job.asAcisSolids = 0;
}

} // namespace

bool QelCreateFirstRunSettings(LPCWSTR fileName) {
    return CreateString(QEL_SETTINGS_KEY, L"", L"") &&
           CreateString(QEL_SETTINGS_KEY, L"LastOpenDir", fileName) &&
           CreateNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", kFirstRunUnits) &&
           CreateString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", L"") &&
           CreateNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 0) &&
           CreateString(QEL_SETTINGS_KEY, L"ImportAcisSolids", L"0");
}

void RunImport(QelJob& job) {
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    CDocData& record = QelDocData();
    loadFileName(job);
    if (record.importOptionsValid != 1) {
        record.importScale = 1.0;
        if (!WriteNumber(QEL_SETTINGS_KEY, L"ImportDwgUnits", kInvalidatedUnits))
            QelLogAppend(L"\n Error resetting import units in registry\n");
    }
    // A missing file has had its message; the host puts its own cursor back.
    if (!QelOpenFile(job.fileName, GENERIC_READ)) return;

    if (KeyExists(QEL_SETTINGS_KEY)) {
        if (!settingsOfLaterRun(job, record)) return;
    } else {
        settingsOfFirstRun(job, record);
    }

    QelLogCreate();
    ReadQelFile(job);

    unsigned count = 0;
    QelGetErrorCount(count);
    CString total;
    total.Format(L"\n\n Total Errors Processing Objects: %u\n\n", count);
    QelLogWrite(total, job.logFilePath);
    if (count != 0) AfxMessageBox(total, MB_OK);
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
}
