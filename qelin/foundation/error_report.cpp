#include "error_report.h"

#include "foundation/log_file.h"
#include "shell/settings_store.h"

#include <arx/aced.h>

#include <cwchar>

namespace {

constexpr std::size_t kTextBuffer = 1000;

unsigned g_countedHere = 0;

void offerSuppression(const wchar_t* text) {
    if (QelErrorsSuppressed()) return;
    CString question(text);
    question += L"\n\nSuppress all non-critical error messages?";
    if (AfxMessageBox(question, MB_YESNO | MB_ICONQUESTION) == IDYES)
        WriteNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", 1);
}

// The text as the reporters keep it: at most the length of their buffer.
CString bounded(LPCWSTR text) {
    const std::size_t n = text ? std::wcslen(text) : 0;
    return CString(text ? text : L"", static_cast<int>(n < kTextBuffer ? n : kTextBuffer - 1));
}

// A format expanded into a buffer of the reporters' size.
CString expanded(LPCWSTR format, va_list args) {
    wchar_t text[kTextBuffer];
    wvsprintfW(text, format, args);
    return CString(text);
}

} // namespace

bool QelErrorsSuppressed() {
    DWORD suppressed = 0;
    ReadNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", suppressed);
    return suppressed == 1;
}

void QelReportError(LPCWSTR text) {
    const CString kept = bounded(text);
    QelLogAppend(kept);
    offerSuppression(kept);
}

void QelReportErrorNoLog(LPCWSTR text) {
    offerSuppression(bounded(text));
}

bool QelCountError() {
    ++g_countedHere;
    DWORD count = 0;
    ReadNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", count);
    WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", count + 1);
    return true;
}

unsigned QelErrorsCountedHere() {
    return g_countedHere;
}

bool QelGetErrorCount(unsigned& count) {
    DWORD stored = 0;
    ReadNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", stored);
    count = stored;
    return true;
}

void QelAlertStatus(Acad::ErrorStatus status, LPCWSTR text) {
    const ACHAR* statusText = acadErrorStatusText(status);
    if (!text) {
        acedAlert(statusText);
        return;
    }
    CString message;
    message.Format(L"%s\n(ERROR:<%s>", text, statusText);
    acedAlert(message);
}

void QelAlertStatusFormat(Acad::ErrorStatus status, LPCWSTR format, ...) {
    va_list args;
    va_start(args, format);
    const CString text = expanded(format, args);
    va_end(args);
    QelAlertStatus(status, text);
}

void QelAlert(LPCWSTR format, ...) {
    va_list args;
    va_start(args, format);
    const CString text = expanded(format, args);
    va_end(args);
    CString message;
    message.Format(L"ARX ERROR: %s", text.GetString());
    acedAlert(message);
}

namespace {

struct CauseMessage {
    int cause;
    const wchar_t* text;
};

// Tested in this order; every matching row speaks.
constexpr CauseMessage kCauses[] = {
    {CFileException::sharingViolation, L"ERROR: sharingViolation encountered."},
    {CFileException::diskFull, L"ERROR: The disk is full"},
    {CFileException::hardIO, L"ERROR: There was a hardware error"},
    {CFileException::invalidFile, L"ERROR: There was an attempt to use an invalid file handle."},
    {CFileException::accessDenied, L"ERROR: The file could not be accessed."},
    {CFileException::tooManyOpenFiles, L"ERROR: The permitted number of open files was exceeded."},
    {CFileException::badPath, L"ERROR: All or part of the path is invalid."},
    {CFileException::fileNotFound, L"ERROR: The file could not be located."},
    {CFileException::genericException, L"ERROR: An unspecified error occurred."},
};

} // namespace

bool QelOpenFile(LPCWSTR path, DWORD access) {
    const bool reading = access == GENERIC_READ;
    HANDLE file = reading ? CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr)
                          : CreateFileW(path, GENERIC_READ | GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
        return true;
    }
    // The file class says why, through its exception.
    try {
        CFile probe(path, reading ? 0 : CFile::modeCreate | CFile::modeWrite);
    } catch (CFileException* e) {
        for (const CauseMessage& row : kCauses)
            if (e->m_cause == row.cause) AfxMessageBox(row.text, MB_ICONEXCLAMATION);
        e->Delete();
    }
    return false;
}
