// The import driver: reads one object file into the current drawing, layer by layer, and hands
// each object to the dispatcher, the one way in to the creators of the file's classes.
#pragma once

#include "import/qel_job.h"

#include <qel/qel.h>
#include <win/win.h>

// Reads the file named by job.fileName into the drawing: the coordinate-system choice, the
// layers, every object once, the tidy-up. Failures are reported, logged and counted in
// "ImportErrorCount" of the settings; nothing is returned. The caller has made the log
// (job.logFilePath) and reads the error total afterwards.
void ReadQelFile(QelJob& job);

// Resets the UCS to world, finds the object's class (case-insensitively) and calls its creator.
// Unknown classes are printed and skipped; classes hidden by the document's settings are skipped
// silently; a failing creator is reported, logged and counted. Exceptions of the object-file
// library pass through to the caller. parent is passed on to the creator and is null here.
void DispatchObject(QelJob& job, QelObject* object, void* parent, unsigned char asAcisSolids,
                    unsigned reference, const CString* fileName);
