// The registry calls the module makes, for HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE.
//
// Both trees are kept in one file of the user (see registryFile below), re-read when another
// process has changed it. Each write takes a lock on the file, reads it afresh, changes the one
// value or key and replaces the file atomically, so two hosts writing at once lose nothing but
// the older of two writes to the same value.
#pragma once

#include <win/errors.h>

#include <string>

#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001u)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002u)))

#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_CREATE_SUB_KEY 0x0004
#define KEY_ENUMERATE_SUB_KEYS 0x0008
#define KEY_NOTIFY 0x0010
#define KEY_CREATE_LINK 0x0020
#define KEY_WOW64_64KEY 0x0100
#define KEY_WOW64_32KEY 0x0200
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_EXECUTE 0x20019
#define KEY_ALL_ACCESS 0xF003F

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_MULTI_SZ 7

#define REG_OPTION_NON_VOLATILE 0x00000000
#define REG_CREATED_NEW_KEY 0x00000001
#define REG_OPENED_EXISTING_KEY 0x00000002

struct SECURITY_ATTRIBUTES;
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

// Missing key: ERROR_FILE_NOT_FOUND. Access is checked on use: a query needs KEY_QUERY_VALUE, a
// set KEY_SET_VALUE (else ERROR_ACCESS_DENIED).
LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM desired, PHKEY result);
// Creates the key and every missing key on the way; disposition REG_CREATED_NEW_KEY or
// REG_OPENED_EXISTING_KEY.
LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR className, DWORD options,
                        REGSAM desired, LPSECURITY_ATTRIBUTES security, PHKEY result,
                        LPDWORD disposition);
// Data null: the size only. Buffer too small: ERROR_MORE_DATA with the size needed. Missing
// value: ERROR_FILE_NOT_FOUND. Data comes back exactly as it was set (no terminator is added).
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD cbData);
// Stores cbData bytes as given; strings are stored with the size the caller passes.
LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD cbData);
LSTATUS RegCloseKey(HKEY key);

inline constexpr auto& RegOpenKeyEx = RegOpenKeyExW;
inline constexpr auto& RegCreateKeyEx = RegCreateKeyExW;
inline constexpr auto& RegQueryValueEx = RegQueryValueExW;
inline constexpr auto& RegSetValueEx = RegSetValueExW;

namespace win {

// The registry file: $QELCAD_REGISTRY if set, else $XDG_CONFIG_HOME/qelcad/registry.json, else
// ~/.config/qelcad/registry.json. Read at each call, so a test may point it elsewhere.
std::string registryFile();

} // namespace win
