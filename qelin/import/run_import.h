// The outer level of an import: settings into the job and the document's record, the log, the
// driver, and the total of errors at the end.
#pragma once

#include "import/qel_job.h"

#include <win/win.h>

// Runs the import of job.fileName as the settings store names it ("LastOpenDir", where the
// dialog has just put it). Every outcome is shown or logged.
void RunImport(QelJob& job);

// The key of a first run, made with its values in order: the empty default value,
// "LastOpenDir" = fileName, "ImportDwgUnits" 5, "SurpressErrorMessages" empty, "ImportErrorCount"
// 0, "ImportAcisSolids" "0". False when the key can't be made.
bool QelCreateFirstRunSettings(LPCWSTR fileName);
