#include "text.h"

#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <mutex>
#include <unordered_set>

std::string acdbToUtf8(std::wstring_view text) {
    std::string out;
    acdbAppendUtf8(out, text);
    return out;
}

void acdbAppendUtf8(std::string& out, std::wstring_view text) {
    for (wchar_t wc : text) {
        const auto c = static_cast<char32_t>(wc);
        if (c < 0x80) {
            out += char(c);
        } else if (c < 0x800) {
            out += char(0xC0 | (c >> 6));
            out += char(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += char(0xE0 | (c >> 12));
            out += char(0x80 | ((c >> 6) & 0x3F));
            out += char(0x80 | (c & 0x3F));
        } else {
            out += char(0xF0 | (c >> 18));
            out += char(0x80 | ((c >> 12) & 0x3F));
            out += char(0x80 | ((c >> 6) & 0x3F));
            out += char(0x80 | (c & 0x3F));
        }
    }
}

std::wstring acdbFromUtf8(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        int extra = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t c = extra == 0 ? lead : lead & (0x3F >> extra);
        ++i;
        for (; extra > 0 && i < text.size(); --extra, ++i)
            c = (c << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
        out += static_cast<wchar_t>(c);
    }
    return out;
}

std::wstring acdbUpper(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out)
        c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return out;
}

bool acdbEqualNoCase(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        const wchar_t x = a[i], y = b[i];
        if (x == y) continue;
        // Plain letters compare without the locale.
        if (x < 128 && y < 128) {
            if ((x | 0x20) != (y | 0x20) || (x | 0x20) < L'a' || (x | 0x20) > L'z') return false;
            continue;
        }
        if (std::towupper(static_cast<wint_t>(a[i])) != std::towupper(static_cast<wint_t>(b[i])))
            return false;
    }
    return true;
}

const std::wstring* acdbInternKey(std::wstring_view text) {
    // Records repeat their keys ("MemberRec" on every tagged entity): each thread remembers the
    // last one it asked for, and keys once interned stay, so that needs no lock.
    thread_local const std::wstring* last = nullptr;
    if (last != nullptr && *last == text) return last;
    static std::mutex guard;
    static std::unordered_set<std::wstring> keys;
    std::lock_guard lock(guard);
    last = &*keys.emplace(text).first;
    return last;
}

ACHAR* acdbDupString(std::wstring_view text) {
    auto* copy = static_cast<ACHAR*>(std::malloc((text.size() + 1) * sizeof(ACHAR)));
    if (copy == nullptr) return nullptr;
    std::memcpy(copy, text.data(), text.size() * sizeof(ACHAR));
    copy[text.size()] = 0;
    return copy;
}
