#include <win/format.h>
#include <win/strings.h>

#include <cstring>
#include <cwchar>
#include <string_view>

namespace win {

namespace {

enum class Size { Default, Short, Long, LongLong, Wide, Size };

struct Spec {
    std::wstring flags;
    int width = -1;
    int precision = -1;
    Size size = Size::Default;
    wchar_t conversion = 0;
};

// Reads one conversion after its '%'; returns the position after it.
const wchar_t* readSpec(const wchar_t* p, Spec& spec, va_list& args) {
    while (*p && std::wcschr(L"-+ #0", *p))
        spec.flags += *p++;
    if (*p == L'*') {
        spec.width = va_arg(args, int);
        if (spec.width < 0) {
            spec.flags += L'-';
            spec.width = -spec.width;
        }
        ++p;
    } else {
        for (; *p >= L'0' && *p <= L'9'; ++p)
            spec.width = std::max(spec.width, 0) * 10 + (*p - L'0');
    }
    if (*p == L'.') {
        ++p;
        spec.precision = 0;
        if (*p == L'*') {
            spec.precision = va_arg(args, int);
            ++p;
        } else {
            for (; *p >= L'0' && *p <= L'9'; ++p)
                spec.precision = spec.precision * 10 + (*p - L'0');
        }
    }
    if (std::wcsncmp(p, L"I64", 3) == 0) {
        spec.size = Size::LongLong;
        p += 3;
    } else if (std::wcsncmp(p, L"I32", 3) == 0) {
        p += 3;
    } else if (*p == L'I') {
        spec.size = Size::Size;
        ++p;
    } else if (*p == L'h') {
        spec.size = Size::Short;
        ++p;
    } else if (*p == L'w') {
        spec.size = Size::Wide;
        ++p;
    } else if (*p == L'l') {
        ++p;
        spec.size = Size::Long;
        if (*p == L'l') {
            spec.size = Size::LongLong;
            ++p;
        }
    } else if (*p == L'z') {
        spec.size = Size::Size;
        ++p;
    }
    spec.conversion = *p ? *p++ : 0;
    return p;
}

std::wstring pad(std::wstring text, const Spec& spec) {
    if (spec.width > 0 && text.size() < std::size_t(spec.width)) {
        std::wstring fill(std::size_t(spec.width) - text.size(), L' ');
        text = spec.flags.find(L'-') != std::wstring::npos ? text + fill : fill + text;
    }
    return text;
}

// A number through the C library, with the size written out for it.
template <typename T>
std::wstring number(const Spec& spec, const wchar_t* length, T value) {
    std::wstring fmt = L"%" + spec.flags;
    if (spec.width >= 0) fmt += std::to_wstring(spec.width);
    if (spec.precision >= 0) fmt += L"." + std::to_wstring(spec.precision);
    fmt += length;
    fmt += spec.conversion;
    wchar_t buffer[512];
    int n = std::swprintf(buffer, 512, fmt.c_str(), value);
    return n < 0 ? std::wstring() : std::wstring(buffer, std::size_t(n));
}

std::wstring integer(const Spec& spec, va_list& args) {
    bool isSigned = spec.conversion == L'd' || spec.conversion == L'i';
    switch (spec.size) {
    case Size::LongLong:
        return isSigned ? number(spec, L"ll", va_arg(args, long long))
                        : number(spec, L"ll", va_arg(args, unsigned long long));
    case Size::Size:
        return isSigned ? number(spec, L"ll", static_cast<long long>(va_arg(args, std::ptrdiff_t)))
                        : number(spec, L"ll",
                                 static_cast<unsigned long long>(va_arg(args, std::size_t)));
    case Size::Long: // LONG is 32 bits on Windows
        return isSigned ? number(spec, L"", static_cast<int>(va_arg(args, long)))
                        : number(spec, L"", static_cast<unsigned>(va_arg(args, unsigned long)));
    case Size::Short:
        return isSigned ? number(spec, L"", static_cast<short>(va_arg(args, int)))
                        : number(spec, L"", static_cast<unsigned short>(va_arg(args, unsigned)));
    default:
        return isSigned ? number(spec, L"", va_arg(args, int))
                        : number(spec, L"", va_arg(args, unsigned));
    }
}

std::wstring text(const Spec& spec, va_list& args) {
    bool narrow = (spec.conversion == L'S' && spec.size != Size::Long && spec.size != Size::Wide) ||
                  (spec.conversion == L's' && spec.size == Size::Short);
    std::wstring value;
    if (narrow) {
        const char* s = va_arg(args, const char*);
        value = s ? fromUtf8(s) : L"(null)";
    } else {
        const wchar_t* s = va_arg(args, const wchar_t*);
        value = s ? s : L"(null)";
    }
    if (spec.precision >= 0 && value.size() > std::size_t(spec.precision))
        value.resize(std::size_t(spec.precision));
    return pad(value, spec);
}

std::wstring character(const Spec& spec, va_list& args) {
    int c = va_arg(args, int);
    bool narrow = (spec.conversion == L'C' && spec.size != Size::Long && spec.size != Size::Wide) ||
                  (spec.conversion == L'c' && spec.size == Size::Short);
    wchar_t w =
        narrow ? static_cast<wchar_t>(static_cast<unsigned char>(c)) : static_cast<wchar_t>(c);
    return pad(std::wstring(1, w), spec);
}

} // namespace

std::wstring formatV(LPCWSTR format, va_list args) {
    std::wstring out;
    if (!format) return out;
    va_list ap;
    va_copy(ap, args);
    for (const wchar_t* p = format; *p;) {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        ++p;
        if (*p == L'%') {
            out += *p++;
            continue;
        }
        Spec spec;
        p = readSpec(p, spec, ap);
        switch (spec.conversion) {
        case L'd':
        case L'i':
        case L'u':
        case L'x':
        case L'X':
        case L'o':
            out += integer(spec, ap);
            break;
        case L'f':
        case L'F':
        case L'e':
        case L'E':
        case L'g':
        case L'G':
        case L'a':
        case L'A':
            out += number(spec, L"", va_arg(ap, double));
            break;
        case L's':
        case L'S':
            out += text(spec, ap);
            break;
        case L'c':
        case L'C':
            out += character(spec, ap);
            break;
        case L'p':
            out += number(spec, L"", va_arg(ap, void*));
            break;
        default: // an unknown conversion is copied as it stands
            out += L'%';
            if (spec.conversion) out += spec.conversion;
            break;
        }
    }
    va_end(ap);
    return out;
}

std::wstring format(LPCWSTR fmt, ...) {
    va_list args;
    va_start(args, fmt);
    std::wstring out = formatV(fmt, args);
    va_end(args);
    return out;
}

} // namespace win

int wvsprintfW(LPWSTR buffer, LPCWSTR format, va_list args) {
    std::wstring out = win::formatV(format, args);
    if (out.size() > 1023) out.resize(1023);
    std::wmemcpy(buffer, out.c_str(), out.size() + 1);
    return static_cast<int>(out.size());
}

int wsprintfW(LPWSTR buffer, LPCWSTR format, ...) {
    va_list args;
    va_start(args, format);
    int n = wvsprintfW(buffer, format, args);
    va_end(args);
    return n;
}
