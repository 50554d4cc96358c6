#include "wildcard.h"

#include <cwctype>
#include <vector>

namespace qelhost {

namespace {

bool sameChar(wchar_t a, wchar_t b) {
    return std::towupper(a) == std::towupper(b);
}

// One character class "[...]" starting at pattern[i] == '['; moves i past it. False for an
// unclosed class, which then matches nothing.
bool matchClass(std::wstring_view pattern, std::size_t& i, wchar_t c, bool& ok) {
    std::size_t j = i + 1;
    bool negate = false;
    if (j < pattern.size() && pattern[j] == L'~') negate = true, ++j;
    bool found = false;
    bool first = true;
    for (; j < pattern.size() && (first || pattern[j] != L']'); ++j, first = false) {
        wchar_t low = pattern[j];
        if (low == L'`' && j + 1 < pattern.size()) low = pattern[++j];
        wchar_t high = low;
        if (j + 2 < pattern.size() && pattern[j + 1] == L'-' && pattern[j + 2] != L']') {
            high = pattern[j + 2];
            j += 2;
        }
        const wchar_t u = wchar_t(std::towupper(c));
        if ((c >= low && c <= high) ||
            (u >= wchar_t(std::towupper(low)) && u <= wchar_t(std::towupper(high))))
            found = true;
    }
    if (j >= pattern.size()) return false;
    i = j + 1;
    ok = found != negate;
    return true;
}

bool matchOne(std::wstring_view text, std::wstring_view pattern) {
    std::size_t t = 0, p = 0;
    std::size_t starP = std::wstring_view::npos, starT = 0;
    while (t < text.size()) {
        bool advanced = false;
        if (p < pattern.size()) {
            const wchar_t pc = pattern[p];
            const wchar_t c = text[t];
            if (pc == L'*') {
                starP = p++;
                starT = t;
                continue;
            }
            bool ok = false;
            std::size_t next = p + 1;
            switch (pc) {
            case L'?':
                ok = true;
                break;
            case L'#':
                ok = std::iswdigit(c);
                break;
            case L'@':
                ok = std::iswalpha(c);
                break;
            case L'.':
                ok = !std::iswalnum(c);
                break;
            case L'[':
                next = p;
                if (!matchClass(pattern, next, c, ok)) return false;
                break;
            case L'`':
                ok = p + 1 < pattern.size() && sameChar(pattern[p + 1], c);
                next = p + 2;
                break;
            default:
                ok = sameChar(pc, c);
                break;
            }
            if (ok) {
                p = next;
                ++t;
                advanced = true;
            }
        }
        if (!advanced) {
            if (starP == std::wstring_view::npos) return false;
            p = starP + 1;
            t = ++starT;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*')
        ++p;
    return p == pattern.size();
}

} // namespace

bool wildcardMatch(std::wstring_view text, std::wstring_view pattern) {
    bool negate = false;
    if (!pattern.empty() && pattern.front() == L'~') {
        negate = true;
        pattern.remove_prefix(1);
    }
    // Split on commas that are not escaped or inside a class.
    std::size_t start = 0;
    bool inClass = false;
    bool matched = false;
    for (std::size_t i = 0; i <= pattern.size(); ++i) {
        if (i < pattern.size()) {
            if (pattern[i] == L'`') {
                ++i;
                continue;
            }
            if (pattern[i] == L'[')
                inClass = true;
            else if (pattern[i] == L']')
                inClass = false;
            if (pattern[i] != L',' || inClass) continue;
        }
        if (matchOne(text, pattern.substr(start, i - start))) matched = true;
        start = i + 1;
    }
    return matched != negate;
}

} // namespace qelhost
