// What the file calls share: names Windows refuses, and system errors from errno.
#pragma once

#include <win/files.h>

#include <string>

namespace win {

// True if a Windows file system would refuse the name.
bool invalidWindowsName(LPCWSTR path);
// The system error for an errno of a call on `path`.
DWORD errorFromErrno(int error, const std::string& path);

} // namespace win
