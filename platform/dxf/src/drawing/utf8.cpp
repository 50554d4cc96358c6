#include "utf8.h"

#include <arx/acutf8.h>

#include <algorithm>

namespace dxf {

namespace {

// Most texts of a drawing are plain ASCII, which converts character for character.
template <class Char>
bool isAscii(std::basic_string_view<Char> text) {
    return std::all_of(text.begin(), text.end(),
                       [](Char c) { return static_cast<char32_t>(c) < 0x80; });
}

} // namespace

std::string toUtf8(std::wstring_view text) {
    if (isAscii(text)) return std::string(text.begin(), text.end());
    std::string out;
    out.reserve(text.size());
    acdbAppendUtf8(out, text);
    return out;
}

std::wstring fromUtf8(std::string_view text) {
    if (isAscii(text)) return std::wstring(text.begin(), text.end());
    std::wstring out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        const auto b = static_cast<unsigned char>(text[i]);
        const int more = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
        char32_t c = more == 3 ? b & 0x07 : more == 2 ? b & 0x0F : more == 1 ? b & 0x1F : b;
        bool ok = b < 0x80 || (more > 0 && i + size_t(more) < text.size() + 1);
        for (int k = 1; ok && k <= more; ++k) {
            if (i + size_t(k) >= text.size()) {
                ok = false;
                break;
            }
            const auto n = static_cast<unsigned char>(text[i + size_t(k)]);
            ok = (n & 0xC0) == 0x80;
            c = (c << 6) | (n & 0x3F);
        }
        if (ok) {
            out += wchar_t(c);
            i += size_t(more) + 1;
        } else {
            out += wchar_t(b);
            ++i;
        }
    }
    return out;
}

} // namespace dxf
