// The number format of block names and dimension texts.
#pragma once

#include <win/win.h>

// Large enough for any double in the fixed form.
inline constexpr int QelFormatDoubleSize = 352;
// "%lf": six decimals whatever digits says. Writes into buffer and returns it.
const wchar_t* FormatDouble(double value, int digits, wchar_t* buffer);
// The same as a string.
CString QelFormatDouble(double value);
