// printf-style formatting of wide strings as the Windows libraries do it: in a wide format "%s"
// and "%c" take wide arguments, "%S", "%hs" and "%hc" narrow ones; "%I64d" is a 64-bit number.
#pragma once

#include <win/types.h>

#include <cstdarg>
#include <string>

namespace win {

std::wstring formatV(LPCWSTR format, va_list args);
std::wstring format(LPCWSTR format, ...);

} // namespace win

// Formats into a buffer of at most 1024 characters, terminator included (floating point is not
// supported, as with the system's own). Returns the number of characters written.
int wvsprintfW(LPWSTR buffer, LPCWSTR format, va_list args);
int wsprintfW(LPWSTR buffer, LPCWSTR format, ...);
