#include "creators/helpers/format_double.h"

#include <cwchar>

const wchar_t* FormatDouble(double value, int /*digits*/, wchar_t* buffer) {
    std::swprintf(buffer, QelFormatDoubleSize, L"%lf", value);
    return buffer;
}

CString QelFormatDouble(double value) {
    wchar_t buffer[QelFormatDoubleSize];
    return CString(FormatDouble(value, 6, buffer));
}
