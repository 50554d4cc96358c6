// The creators of objects that stand for sets of others: GeometricGroup, whose members go
// through the dispatcher again so that groups nest, and ExclusionVolume, which draws its box.
// Both reach the file of the run again by its name in the settings.
#pragma once

#include "creators/creator.h"

QEL_CREATOR(CreateGeometricGroup);
QEL_CREATOR(CreateExclusionVolume);

// Forgets the bad group members reported so far, at the start of a file read.
void QelResetGroupWalk();

// ---- The file of the run, opened again.

// "LastOpenDir" of the settings; after failureText is reported, empty.
CString QelRunFileName(const wchar_t* failureText);
// Opens the reader on the file. A failure shows its reason (or "Caught unknown exception opening
// qel file.") in a message box and leaves the reader closed: every ReadObject then fails.
void QelOpenRunFile(QelReader& reader, const CString& path);
