// The object file a drawing came from, as its tags name it, and the test of an object file's
// name.
#pragma once

#include <win/win.h>

class QelOutObject;

enum QelOriginalFile {
    QelNoEntities = 0,  // the drawing holds nothing, or its set has no length
    QelNoOriginal = 1,  // entities, none tagged with a source file (or the selection failed)
    QelHasOriginal = 2, // file holds the name
};

// The file named by the tag last in the order of the drawing's entities.
int findOriginalFile(QelOutObject& out, CString& file);

// True when the name ends in ".qel", the letters without regard to case.
bool CheckFileName(LPCWSTR name);

// True when something of that name exists on disk (a file or a folder).
bool QelFileExists(const CString& name);
// True when the name is a folder.
bool QelIsDirectory(const CString& name);
