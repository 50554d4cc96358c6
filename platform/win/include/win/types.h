// Base types of the Windows interface as the module sees them, built for a wide-character
// (UNICODE) program: every TCHAR is a wchar_t.
#pragma once

#include <cstddef>
#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using INT = int;
using LONG = std::int32_t; // 32 bits, as on Windows, also on a 64-bit host
using ULONG = std::uint32_t;
using BOOL = int;
using BOOLEAN = BYTE;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = ULONG_PTR;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = LONG;
using LSTATUS = LONG;
using ACCESS_MASK = DWORD;
using REGSAM = ACCESS_MASK;

using CHAR = char;
using WCHAR = wchar_t;
using TCHAR = wchar_t;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPTSTR = wchar_t*;
using LPCTSTR = const wchar_t*;
using PCWSTR = const wchar_t*;
using PWSTR = wchar_t*;

using PBYTE = BYTE*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PDWORD = DWORD*;
using LPLONG = LONG*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBOOL = BOOL*;

using HANDLE = void*;
struct HKEY__;
struct HWND__;
struct HCURSOR__;
struct HINSTANCE__;
using HKEY = HKEY__*;
using PHKEY = HKEY*;
using HWND = HWND__*;
using HCURSOR = HCURSOR__*;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef MAX_PATH
#define MAX_PATH 260
#endif
#ifndef _T
#define _T(x) L##x
#endif
#ifndef TEXT
#define TEXT(x) L##x
#endif
#ifndef _countof
#define _countof(a) (sizeof(a) / sizeof((a)[0]))
#endif

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))

constexpr WORD LOWORD(DWORD_PTR v) {
    return static_cast<WORD>(v & 0xffff);
}
constexpr WORD HIWORD(DWORD_PTR v) {
    return static_cast<WORD>((v >> 16) & 0xffff);
}
constexpr LONG MAKELONG(WORD low, WORD high) {
    return static_cast<LONG>(static_cast<DWORD>(low) | (static_cast<DWORD>(high) << 16));
}
constexpr WPARAM MAKEWPARAM(WORD low, WORD high) {
    return static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
constexpr LPARAM MAKELPARAM(WORD low, WORD high) {
    return static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}

struct RECT {
    LONG left = 0, top = 0, right = 0, bottom = 0;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;
struct POINT {
    LONG x = 0, y = 0;
};
