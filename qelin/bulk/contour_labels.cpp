#include "bulk/contour_labels.h"

#include "foundation/units.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cwchar>

namespace {

std::wstring format(const wchar_t* pattern, ...) {
    wchar_t buffer[512];
    va_list args;
    va_start(args, pattern);
    std::vswprintf(buffer, sizeof buffer / sizeof buffer[0], pattern, args);
    va_end(args);
    return buffer;
}

const wchar_t* suffixOf(int code) {
    static const wchar_t* const kSuffixes[] = {L" m",  L" m",  L" mm",   L" cm",   L" In",
                                               L" ft", L" yd", L" InUS", L" ftUS", L" ydUS",
                                               L" ",   L" km", L" ml",   L" mlUS", L" arch"};
    return code >= 0 && code < 15 ? kSuffixes[code] : L"";
}

} // namespace

int QelContourLabelUnit(int fileUnit) {
    switch (fileUnit) {
    case 2:
        return 3;
    case 3:
        return 2;
    case 4:
        return 5;
    case 5:
        return 4;
    case 10:
        return 6;
    case 12:
        return 8;
    case 13:
        return 7;
    case 14:
        return 9;
    case 15:
        return 15;
    case 16:
        return 16;
    default:
        return 1;
    }
}

std::wstring QelTrimFixed(const std::wstring& text) {
    const std::size_t dot = text.rfind(L'.');
    if (dot == std::wstring::npos) return text;
    std::size_t end = text.size();
    for (int looked = 0; looked < 5 && end > dot + 1 && text[end - 1] == L'0'; ++looked)
        --end;
    if (end == dot + 1) --end; // every decimal gone: the dot goes too
    return text.substr(0, end);
}

std::wstring QelFeetInchesText(double x, int d) {
    std::wstring out = x < 0.0 ? L"-" : L"";
    double feet = std::floor(std::fabs(x));
    const double inches = (std::fabs(x) - feet) * 12.0;
    int whole = int(std::trunc(inches));
    int num = int(std::trunc((inches - whole) * d + 0.5));
    while (num > 1 && num % 2 == 0) {
        num /= 2;
        d /= 2;
    }
    if (num == 1 && d == 1) {
        ++whole;
        num = 0;
    }
    if (whole > 11) {
        whole -= 12;
        feet += 1.0;
    }
    out += format(L"%.0f'", feet);
    out += num >= 1 ? format(L"-%d %d/%d\"", whole, num, d) : format(L"-%d\"", whole);
    return out;
}

std::wstring QelFeetDecimalInchesText(double x, int digits) {
    const double smallest = 5.0 / std::pow(10.0, digits + 1);
    std::wstring out = x < 0.0 && std::fabs(x) >= smallest ? L"-" : L"";
    double feet = std::floor(std::fabs(x));
    const double inches = (std::fabs(x) - feet) * 12.0;
    const std::wstring first = format(L"%.0f:%.*f", feet, digits, inches);
    // Read back: rounding may have made 12 inches, which go into the feet.
    double readFeet = 0.0;
    int whole = 0;
    wchar_t decimals[64] = {};
    if (std::swscanf(first.c_str(), L"%lf:%d.%63ls", &readFeet, &whole, decimals) < 3)
        return out + first;
    if (whole > 11) {
        whole -= 12;
        readFeet += 1.0;
    }
    return out + format(L"%.0f:%d.%ls", readFeet, whole, decimals);
}

bool QelContourLabelText(double metres, int code, std::wstring& text) {
    double value = metres;
    if (!QelConvertByInsertUnits(metres, &value, code)) return false;
    if (code == 15)
        text = QelFeetInchesText(value, 2) + L"arch";
    else if (code == 16)
        text = QelFeetDecimalInchesText(value, 2) + L" ft:in";
    else
        text = QelTrimFixed(format(L"%f", value)) + suffixOf(code);
    return true;
}
