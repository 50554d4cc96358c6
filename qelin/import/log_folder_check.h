// The checks of the log folder that the import dialog makes before it accepts its answers.
#pragma once

#include <win/win.h>

// The folder with a separator at its end.
CString QelWithTrailingSeparator(const CString& folder);
// True when the folder holds a character a path may not hold: any of "<>//?*|,=`", a double
// quote, or a colon anywhere but right after the drive letter. The host's own separator '/'
// separates here as '\' does, and passes.
bool QelHasInvalidPathChars(const CString& folder);
// True when the folder starts with no drive letter, or with one whose drive can be reached.
bool QelDriveAccessible(const CString& folder);
// Makes the folder and every missing parent, parents first. True when it exists afterwards.
bool QelCreateFolderTree(const CString& folder);
