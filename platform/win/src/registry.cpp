// The registry calls over the file store. An open key is a handle to its path and the access it
// was opened with; the key's contents are always those of the file at the time of the call.
#include "registry_store.h"

#include <win/registry.h>

#include <cstring>
#include <cwchar>
#include <mutex>
#include <set>

namespace {

using win::reg::Key;
using win::reg::Store;
using win::reg::Tree;
using win::reg::Value;

struct OpenKey {
    std::wstring path;
    REGSAM access = 0;
};

std::mutex handlesMutex;
std::set<OpenKey*> handles;

// The path and access of a handle, predefined roots included; false for an unknown handle.
bool resolve(HKEY key, OpenKey& out) {
    if (key == HKEY_CURRENT_USER) {
        out = {L"HKEY_CURRENT_USER", KEY_ALL_ACCESS};
        return true;
    }
    if (key == HKEY_LOCAL_MACHINE) {
        out = {L"HKEY_LOCAL_MACHINE", KEY_ALL_ACCESS};
        return true;
    }
    std::lock_guard lock(handlesMutex);
    auto* open = reinterpret_cast<OpenKey*>(key);
    if (!handles.count(open)) return false;
    out = *open;
    return true;
}

// The names of a sub-key path; empty ones (doubled or trailing backslashes) are dropped. A path
// that starts with a backslash is not a valid name.
bool split(LPCWSTR subKey, std::vector<std::wstring>& names) {
    names.clear();
    if (subKey == nullptr) return true;
    if (subKey[0] == L'\\') return false;
    std::wstring name;
    for (const wchar_t* p = subKey;; ++p) {
        if (*p == L'\\' || *p == L'\0') {
            if (!name.empty()) names.push_back(name);
            name.clear();
            if (*p == L'\0') break;
        } else {
            name += *p;
        }
    }
    return true;
}

std::wstring below(std::wstring path, const std::vector<std::wstring>& names) {
    for (const std::wstring& name : names)
        path += L"\\" + name;
    return path;
}

HKEY newHandle(std::wstring path, REGSAM access) {
    auto* open = new OpenKey{std::move(path), access};
    std::lock_guard lock(handlesMutex);
    handles.insert(open);
    return reinterpret_cast<HKEY>(open);
}

std::wstring valueKey(LPCWSTR name) {
    return win::reg::fold(name ? name : L"");
}

} // namespace

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM desired, PHKEY result) {
    if (result == nullptr) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    OpenKey parent;
    if (!resolve(key, parent)) return ERROR_INVALID_HANDLE;
    std::vector<std::wstring> names;
    if (!split(subKey, names)) return ERROR_BAD_PATHNAME;
    std::wstring path = below(parent.path, names);
    std::wstring keyPath;
    const bool found = Store::instance().read([&](const Tree& tree) {
        auto it = tree.find(win::reg::fold(path));
        if (it == tree.end()) return false;
        keyPath = it->second.path;
        return true;
    });
    if (!found) return ERROR_FILE_NOT_FOUND;
    *result = newHandle(std::move(keyPath), desired);
    return ERROR_SUCCESS;
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM desired,
                        LPSECURITY_ATTRIBUTES, PHKEY result, LPDWORD disposition) {
    if (result == nullptr) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    OpenKey parent;
    if (!resolve(key, parent)) return ERROR_INVALID_HANDLE;
    std::vector<std::wstring> names;
    if (!split(subKey, names)) return ERROR_BAD_PATHNAME;
    if (names.empty()) {
        *result = newHandle(parent.path, desired);
        if (disposition) *disposition = REG_OPENED_EXISTING_KEY;
        return ERROR_SUCCESS;
    }
    if (!(parent.access & KEY_CREATE_SUB_KEY)) return ERROR_ACCESS_DENIED;
    std::wstring path;
    DWORD how = REG_OPENED_EXISTING_KEY;
    LONG status = Store::instance().update([&](Tree& tree, bool& changed) {
        changed = tree.try_emplace(win::reg::fold(parent.path), Key{parent.path, {}}).second;
        path = parent.path;
        for (const std::wstring& name : names) {
            std::wstring step = path + L"\\" + name; // spelled as the existing keys are
            auto [it, added] = tree.try_emplace(win::reg::fold(step), Key{step, {}});
            changed = changed || added;
            how = added ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
            path = it->second.path;
        }
        return LONG(ERROR_SUCCESS);
    });
    if (status != ERROR_SUCCESS) return status;
    *result = newHandle(path, desired);
    if (disposition) *disposition = how;
    return ERROR_SUCCESS;
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD cbData) {
    OpenKey open;
    if (!resolve(key, open)) return ERROR_INVALID_HANDLE;
    if (reserved != nullptr || (data != nullptr && cbData == nullptr))
        return ERROR_INVALID_PARAMETER;
    if (!(open.access & KEY_QUERY_VALUE)) return ERROR_ACCESS_DENIED;
    return Store::instance().read([&](const Tree& tree) -> LSTATUS {
        auto k = tree.find(win::reg::fold(open.path));
        if (k == tree.end()) return ERROR_FILE_NOT_FOUND; // the file was set aside meanwhile
        auto v = k->second.values.find(valueKey(valueName));
        if (v == k->second.values.end()) return ERROR_FILE_NOT_FOUND;
        const Value& value = v->second;
        if (type) *type = value.type;
        DWORD size = static_cast<DWORD>(value.data.size());
        if (data != nullptr && *cbData < size) {
            *cbData = size;
            return ERROR_MORE_DATA;
        }
        if (data != nullptr) std::memcpy(data, value.data.data(), size);
        if (cbData) *cbData = size;
        return ERROR_SUCCESS;
    });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD cbData) {
    OpenKey open;
    if (!resolve(key, open)) return ERROR_INVALID_HANDLE;
    if (reserved != 0 || (data == nullptr && cbData != 0)) return ERROR_INVALID_PARAMETER;
    if (!(open.access & KEY_SET_VALUE)) return ERROR_ACCESS_DENIED;
    return Store::instance().update([&](Tree& tree, bool& changed) {
        // The key may be gone if the file was set aside since it was opened: make it again.
        auto [k, added] = tree.try_emplace(win::reg::fold(open.path), Key{open.path, {}});
        Value value;
        value.name = valueName ? valueName : L"";
        value.type = type;
        value.data.assign(data, data + cbData);
        auto [v, fresh] = k->second.values.try_emplace(valueKey(valueName), value);
        if (!fresh) {
            v->second.type = value.type;
            v->second.data = value.data;
        }
        changed = true;
        return LONG(ERROR_SUCCESS);
    });
}

LSTATUS RegCloseKey(HKEY key) {
    if (key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE) return ERROR_SUCCESS;
    auto* open = reinterpret_cast<OpenKey*>(key);
    std::lock_guard lock(handlesMutex);
    if (!handles.erase(open)) return ERROR_INVALID_HANDLE;
    delete open;
    return ERROR_SUCCESS;
}
