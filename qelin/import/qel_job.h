// One run of the plug-in: built on the stack of the command that starts it, filled from the
// settings and handed down to the driver, the dispatcher and the creators.
#pragma once

#include <win/win.h>

struct QelJob {
    // 1 for solids, 0 for blocks: the logical not of the stored "ImportAcisSolids", so that
    // the stored 0 means solids and 1 blocks.
    unsigned char asAcisSolids = 1;
    // Set when any layer name had to be changed; cleared at the start of the file read.
    unsigned char badLayerNames = 0;
    // Written by the dispatcher: the row of the current object in its class table.
    unsigned typeIndex = 0;
    // Whole path of this run's log file.
    CString logFilePath;
    // The value read from "LastOpenDir".
    CString lastOpenDir;
    // The file to import; a copy of lastOpenDir.
    CString fileName;
};
