// Which annotation names an import leaves out: the setting "AnnotKeySuppress", a list of
// wildcard patterns separated by comma, tab or newline.
#pragma once

#include <win/win.h>

#include <string>
#include <vector>

// "*" matches any run, "?" any one character, letters match without regard to case; a trailing
// run of stars matches the end.
bool QelNameMatches(const wchar_t* pattern, const wchar_t* name);

// The patterns of a list as the setting holds it; empty items are dropped.
std::vector<std::wstring> QelSplitNameList(const wchar_t* list);

// True when a pattern of the suppress list matches the name. The list is read once per load of
// the module, at the first question: the current user's settings first, then the machine's,
// empty when neither has it.
bool QelAnnotationSuppressed(const wchar_t* name);
// Forgets the list read, so that the next question reads the setting again (module load).
void QelForgetAnnotationSuppressList();
