#include "log_file.h"

#include "foundation/error_report.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"

#include <arx/aced.h>

#include <cstdio>
#include <string>

CString QelGetStringVar(const wchar_t* name) {
    resbuf value{};
    value.restype = RTSTR;
    CString text;
    if (acedGetVar(name, &value) == RTNORM && value.restype == RTSTR && value.resval.rstring) {
        text = value.resval.rstring;
        acutDelString(value.resval.rstring);
    }
    return text;
}

namespace {

bool loggingOn() {
    return QelDocData().createLog == 1;
}

// The log and the error reporter call each other when the log can't be written; a report made
// from inside a failing log write goes no further than its message box.
int g_logDepth = 0;

struct LogDepth {
    LogDepth() { ++g_logDepth; }
    ~LogDepth() { --g_logDepth; }
};

bool appendTo(LPCWSTR path, LPCWSTR text) {
    std::FILE* file = _wfopen(path, L"a+");
    if (!file) return false;
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(bytes > 0 ? bytes : 1), '\0');
    if (bytes > 0) WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), bytes, nullptr, nullptr);
    std::fputs(utf8.c_str(), file);
    return std::fclose(file) == 0;
}

} // namespace

bool QelLogFileName(CString& name) {
    name = QelGetStringVar(L"DWGNAME");
    const int dot = name.ReverseFind(L'.');
    if (dot >= 0) name = name.Left(dot);
    name += L".log";
    return true;
}

CString QelLogFilePath() {
    CString name;
    QelLogFileName(name);
    CString folder;
    if (!ReadString(QEL_SETTINGS_KEY, L"LogFilePath", folder) || folder == CString(L"default"))
        folder = QelGetStringVar(L"DWGPREFIX");
    return folder + name;
}

void QelLogCreate() {
    if (!loggingOn()) return;
    if (!QelOpenFile(QelLogFilePath(), GENERIC_READ | GENERIC_WRITE))
        AfxMessageBox(L"Create Qel Log File failed.");
}

int QelLogWrite(LPCWSTR text, LPCWSTR path) {
    if (!loggingOn()) return -1;
    if (appendTo(path, text)) return 0;
    LogDepth depth;
    if (g_logDepth == 1 && QelLogAppend(text) != 0)
        QelReportError(L"\nError writing to qel log file, (file pointer == NULL).");
    return -1;
}

int QelLogAppend(LPCWSTR text) {
    if (!loggingOn()) return -1;
    if (appendTo(QelLogFilePath(), text)) return 0;
    LogDepth depth;
    if (g_logDepth == 1) QelReportError(L"Error opening qel log file");
    return -1;
}
