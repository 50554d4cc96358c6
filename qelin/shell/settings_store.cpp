#include "settings_store.h"

#include <cwchar>

namespace {

// Opens the key, runs use(key) and closes it again; false when the key does not open.
template <typename Use>
bool withKey(LPCWSTR key, REGSAM access, Use use) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, key, 0, access, &handle) != ERROR_SUCCESS) return false;
    const bool ok = use(handle);
    RegCloseKey(handle);
    return ok;
}

bool setValue(HKEY handle, LPCWSTR name, LPCWSTR text) {
    const DWORD bytes = static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t));
    return RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), bytes) ==
           ERROR_SUCCESS;
}

bool setValue(HKEY handle, LPCWSTR name, DWORD number) {
    return RegSetValueExW(handle, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                          sizeof number) == ERROR_SUCCESS;
}

template <typename Value>
bool create(LPCWSTR key, LPCWSTR name, Value value) {
    if (!name || !*name) {
        HKEY handle = nullptr;
        DWORD disposition = 0;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, key, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                            nullptr, &handle, &disposition) != ERROR_SUCCESS)
            return false;
        RegCloseKey(handle);
        return true;
    }
    return withKey(key, KEY_WRITE, [&](HKEY h) { return setValue(h, name, value); });
}

} // namespace

bool KeyExists(LPCWSTR key) {
    return withKey(key, KEY_READ, [](HKEY) { return true; });
}

bool ReadString(LPCWSTR key, LPCWSTR name, CString& out) {
    bool queried = false;
    const bool opened = withKey(key, KEY_READ, [&](HKEY h) {
        BYTE buffer[1000];
        DWORD type = 0, size = sizeof buffer;
        if (RegQueryValueExW(h, name, nullptr, &type, buffer, &size) != ERROR_SUCCESS) return true;
        queried = true;
        const bool text = type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
        const auto* chars = reinterpret_cast<const wchar_t*>(buffer);
        const std::size_t count = size / sizeof(wchar_t);
        if (!text || size % sizeof(wchar_t) != 0 || count == 0 || chars[count - 1] != L'\0')
            out = L"";
        else
            out = chars;
        return true;
    });
    if (!opened)
        out = L"Unable to open key";
    else if (!queried)
        out = L"Unable to query value";
    return opened && queried;
}

bool ReadNumber(LPCWSTR key, LPCWSTR name, DWORD& out) {
    return withKey(key, KEY_READ, [&](HKEY h) {
        DWORD value = 0, type = 0, size = sizeof value;
        if (RegQueryValueExW(h, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) ==
                ERROR_SUCCESS &&
            type == REG_DWORD && size == sizeof value)
            out = value;
        return true;
    });
}

bool WriteString(LPCWSTR key, LPCWSTR name, LPCWSTR text) {
    return withKey(key, KEY_SET_VALUE, [&](HKEY h) { return setValue(h, name, text); });
}

bool WriteNumber(LPCWSTR key, LPCWSTR name, DWORD number) {
    return withKey(key, KEY_SET_VALUE, [&](HKEY h) { return setValue(h, name, number); });
}

bool CreateString(LPCWSTR key, LPCWSTR name, LPCWSTR text) {
    return create(key, name, text);
}
bool CreateNumber(LPCWSTR key, LPCWSTR name, DWORD number) {
    return create(key, name, number);
}
