#include <win/strings.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool validCodePoint(char32_t c) {
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

// Decodes one UTF-8 sequence from [p, end); returns its length and sets ok on a valid one.
std::size_t decode(const unsigned char* p, const unsigned char* end, char32_t& out, bool& ok) {
    ok = false;
    unsigned char b = p[0];
    std::size_t len = b < 0x80         ? 1
                      : (b >> 5) == 6  ? 2
                      : (b >> 4) == 14 ? 3
                      : (b >> 3) == 30 ? 4
                                       : 0;
    if (len == 0) return 1;
    if (static_cast<std::size_t>(end - p) < len) return 1;
    char32_t c = len == 1 ? b : b & (0x7F >> len);
    for (std::size_t i = 1; i < len; ++i) {
        if ((p[i] & 0xC0) != 0x80) return i;
        c = (c << 6) | (p[i] & 0x3F);
    }
    static constexpr char32_t kMin[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kMin[len] || !validCodePoint(c)) return len;
    out = c;
    ok = true;
    return len;
}

void encode(char32_t c, std::string& out) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool decodeAll(std::string_view in, std::wstring& out) {
    bool clean = true;
    auto p = reinterpret_cast<const unsigned char*>(in.data());
    auto end = p + in.size();
    while (p < end) {
        char32_t c = kReplacement;
        bool ok = false;
        p += decode(p, end, c, ok);
        if (!ok) {
            clean = false;
            c = kReplacement;
        }
        out += static_cast<wchar_t>(c);
    }
    return clean;
}

bool encodeAll(std::wstring_view in, std::string& out) {
    bool clean = true;
    for (wchar_t w : in) {
        auto c = static_cast<char32_t>(w);
        if (!validCodePoint(c)) {
            clean = false;
            c = kReplacement;
        }
        encode(c, out);
    }
    return clean;
}

// The conversion's result as the system hands it over: the size needed, or the copy.
template <typename Char>
int deliver(const std::basic_string<Char>& out, Char* dest, int capacity) {
    if (capacity == 0) return static_cast<int>(out.size());
    if (out.size() > std::size_t(capacity)) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::copy(out.begin(), out.end(), dest);
    return static_cast<int>(out.size());
}

bool knownCodePage(UINT codePage) {
    return codePage == CP_ACP || codePage == CP_OEMCP || codePage == CP_THREAD_ACP ||
           codePage == CP_UTF8;
}

} // namespace

UINT GetACP() {
    return CP_UTF8;
}

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR multiByte, int cbMultiByte,
                        LPWSTR wideChar, int cchWideChar) {
    if (!knownCodePage(codePage) || multiByte == nullptr || cbMultiByte == 0 || cchWideChar < 0 ||
        (wideChar == nullptr && cchWideChar != 0) ||
        (flags & ~static_cast<DWORD>(MB_ERR_INVALID_CHARS | MB_PRECOMPOSED)) != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::size_t length = cbMultiByte < 0 ? std::strlen(multiByte) + 1 : std::size_t(cbMultiByte);
    std::wstring out;
    if (!decodeAll(std::string_view(multiByte, length), out) && (flags & MB_ERR_INVALID_CHARS)) {
        SetLastError(ERROR_NO_UNICODE_TRANSLATION);
        return 0;
    }
    return deliver(out, wideChar, cchWideChar);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wideChar, int cchWideChar,
                        LPSTR multiByte, int cbMultiByte, LPCSTR defaultChar,
                        LPBOOL usedDefaultChar) {
    if (!knownCodePage(codePage) || wideChar == nullptr || cchWideChar == 0 || cbMultiByte < 0 ||
        (multiByte == nullptr && cbMultiByte != 0) || defaultChar != nullptr ||
        usedDefaultChar != nullptr || (flags & ~static_cast<DWORD>(WC_ERR_INVALID_CHARS)) != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::size_t length = cchWideChar < 0 ? std::wcslen(wideChar) + 1 : std::size_t(cchWideChar);
    std::string out;
    if (!encodeAll(std::wstring_view(wideChar, length), out) && (flags & WC_ERR_INVALID_CHARS)) {
        SetLastError(ERROR_NO_UNICODE_TRANSLATION);
        return 0;
    }
    return deliver(out, multiByte, cbMultiByte);
}

namespace win {

std::string toUtf8(std::wstring_view text) {
    std::string out;
    encodeAll(text, out);
    return out;
}

std::wstring fromUtf8(std::string_view text) {
    std::wstring out;
    decodeAll(text, out);
    return out;
}

} // namespace win
