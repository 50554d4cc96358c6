// The settings of the plug-in: values under one registry key of the current user. Each routine
// opens and closes the key; each caller presets its own default and keeps it when a read fails.
#pragma once

#include <win/win.h>

// The one key of the plug-in, under HKEY_CURRENT_USER.
inline constexpr const wchar_t* QEL_SETTINGS_KEY =
    L"Software\\Tovi Technologies\\QelPlugins\\AutoCAD\\Qelin";

// True when the key opens for reading.
bool KeyExists(LPCWSTR key);
// A text value (REG_SZ, REG_EXPAND_SZ or REG_MULTI_SZ). A value of another type, or one not
// properly terminated, reads as empty text with the result true. False when the key does not
// open ("Unable to open key" in out) or the value can't be read ("Unable to query value").
bool ReadString(LPCWSTR key, LPCWSTR name, CString& out);
// A number (REG_DWORD). False only when the key does not open; a missing value, or one that is
// not a number, leaves out as the caller set it and gives true.
bool ReadNumber(LPCWSTR key, LPCWSTR name, DWORD& out);
bool WriteString(LPCWSTR key, LPCWSTR name, LPCWSTR text);
bool WriteNumber(LPCWSTR key, LPCWSTR name, DWORD number);
// With an empty name, creates the key; otherwise writes the value into an existing key.
bool CreateString(LPCWSTR key, LPCWSTR name, LPCWSTR text);
bool CreateNumber(LPCWSTR key, LPCWSTR name, DWORD number);
