// Errors a run survives: logged, offered once to be suppressed for the rest of the run, counted
// in the settings store for the final report. Errors that stop a dialog use plain message boxes.
#pragma once

#include <arx/arx.h>
#include <win/win.h>

#include <cstdarg>

// Logs the text and, unless the user asked for silence, shows it with the question
// "Suppress all non-critical error messages?"; Yes silences the rest of the run.
void QelReportError(LPCWSTR text);
// The same without the log line, for callers that log their own.
void QelReportErrorNoLog(LPCWSTR text);
// True once the user answered Yes to the suppress question in this run ("SurpressErrorMessages"
// is 1); other message boxes of a run test it too.
bool QelErrorsSuppressed();
// Adds one to "ImportErrorCount" of the settings store. Always true.
bool QelCountError();
bool QelGetErrorCount(unsigned& count);
// How many times this process called QelCountError: whether a step counted an error of its own,
// without reading the settings store around every step.
unsigned QelErrorsCountedHere();

// Alerts with the status text: "%s\n(ERROR:<%s>" of the text and the status, or the text alone.
void QelAlertStatus(Acad::ErrorStatus status, LPCWSTR text);
void QelAlertStatusFormat(Acad::ErrorStatus status, LPCWSTR format, ...);
// "ARX ERROR: %s", for the annotation command.
void QelAlert(LPCWSTR format, ...);

// Opens and closes the file to see that it can be: with GENERIC_READ an existing file for
// reading; with any other access the file is made anew, empty. On failure one message box
// tells why, and the result is false.
bool QelOpenFile(LPCWSTR path, DWORD access);
