#include "string_ring.h"

#include <win/win.h>

#include <cstddef>

namespace {

constexpr std::size_t kRingSize = 8192;

// Hands out the next piece of `length` characters (with terminator), rounded up to a multiple
// of 4; wraps to the start when the piece would pass the end.
template <typename Char>
Char* nextPiece(Char (&ring)[kRingSize], std::size_t& next, std::size_t length) {
    const std::size_t piece = (length + 3) & ~std::size_t(3);
    if (piece > kRingSize) return nullptr;
    if (next + piece > kRingSize) next = 0;
    Char* at = ring + next;
    next += piece;
    return at;
}

wchar_t g_wide[kRingSize];
std::size_t g_wideNext = 0;
char g_narrow[kRingSize];
std::size_t g_narrowNext = 0;

} // namespace

const wchar_t* QelWideFromNarrow(const char* text) {
    if (!text) text = "";
    const int needed = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    wchar_t* out = needed > 0 ? nextPiece(g_wide, g_wideNext, std::size_t(needed)) : nullptr;
    if (!out) return L""; // longer than the whole ring: paths and names never are
    MultiByteToWideChar(CP_ACP, 0, text, -1, out, needed);
    return out;
}

const char* QelNarrowFromWide(const wchar_t* text) {
    if (!text) text = L"";
    const int needed = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    char* out = needed > 0 ? nextPiece(g_narrow, g_narrowNext, std::size_t(needed)) : nullptr;
    if (!out) return "";
    WideCharToMultiByte(CP_ACP, 0, text, -1, out, needed, nullptr, nullptr);
    return out;
}
