// The import's log: plain text beside the drawing (or in the folder of "LogFilePath"), named
// after the drawing with ".log". Each write opens, appends and closes, so the file is whole at
// any moment. No time stamps, no levels: each call writes its text and nothing else.
#pragma once

#include <win/win.h>

// A text system variable of the host ("DWGPREFIX", "DWGNAME"); empty if it has none.
CString QelGetStringVar(const wchar_t* name);
// The drawing's name with its extension replaced by ".log". Always true.
bool QelLogFileName(CString& name);
// The whole path: the log folder of the settings (or the drawing's folder) joined to the name.
CString QelLogFilePath();
// With logging on, makes the log anew and empty; says "Create Qel Log File failed." if it can't.
void QelLogCreate();
// Appends to the log at path: 0, or -1 when logging is off or nothing could be written.
int QelLogWrite(LPCWSTR text, LPCWSTR path);
// Appends to the log whose path the settings give: 0 or -1.
int QelLogAppend(LPCWSTR text);
