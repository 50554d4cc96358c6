// Conversions between the module's wide strings and narrow ones.
//
// The host's ANSI code page is UTF-8 (65001): CP_ACP and CP_UTF8 both convert between UTF-8 and
// wide strings, so narrow file names reach the system as it spells them. Invalid input is replaced
// by U+FFFD unless MB_ERR_INVALID_CHARS / WC_ERR_INVALID_CHARS ask for an error.
#pragma once

#include <win/errors.h>

#include <string>
#include <string_view>

#define CP_ACP 0
#define CP_OEMCP 1
#define CP_THREAD_ACP 3
#define CP_UTF8 65001

#define MB_PRECOMPOSED 0x00000001
#define MB_ERR_INVALID_CHARS 0x00000008
#define WC_ERR_INVALID_CHARS 0x00000080

// The code page of CP_ACP.
UINT GetACP();

// Counts: -1 means "up to and including the terminator". With an output size of 0 the result is
// the size needed. Errors (result 0): ERROR_INVALID_PARAMETER, ERROR_INSUFFICIENT_BUFFER,
// ERROR_NO_UNICODE_TRANSLATION, ERROR_INVALID_FLAGS is not used.
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR multiByte, int cbMultiByte,
                        LPWSTR wideChar, int cchWideChar);
// lpDefaultChar and lpUsedDefaultChar must be null for UTF-8, as the system requires.
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wideChar, int cchWideChar,
                        LPSTR multiByte, int cbMultiByte, LPCSTR defaultChar,
                        LPBOOL usedDefaultChar);

namespace win {

// UTF-8 from and to wide strings, for the host's own use (console, files on disk).
std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);

} // namespace win
