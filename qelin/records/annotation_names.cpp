#include "annotation_names.h"

#include "shell/settings_store.h"

#include <cwctype>
#include <optional>

namespace {

constexpr const wchar_t* kSuppressValue = L"AnnotKeySuppress";
constexpr DWORD kSuppressMaxChars = 255;

std::optional<std::vector<std::wstring>> g_suppressList;

bool sameLetter(wchar_t a, wchar_t b) {
    return std::towlower(a) == std::towlower(b);
}

// The setting from one root; false when the key or the value can't be read.
bool readSuppressSetting(HKEY root, std::wstring& out) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, QEL_SETTINGS_KEY, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    wchar_t buffer[kSuppressMaxChars + 1] = {};
    DWORD type = 0, size = sizeof buffer - sizeof(wchar_t);
    const bool read = RegQueryValueExW(key, kSuppressValue, nullptr, &type,
                                       reinterpret_cast<LPBYTE>(buffer), &size) == ERROR_SUCCESS &&
                      type == REG_SZ;
    RegCloseKey(key);
    if (read) out = buffer; // the buffer's last character stays 0
    return read;
}

const std::vector<std::wstring>& suppressList() {
    if (!g_suppressList) {
        std::wstring text;
        if (!readSuppressSetting(HKEY_CURRENT_USER, text) &&
            !readSuppressSetting(HKEY_LOCAL_MACHINE, text))
            text.clear();
        g_suppressList = QelSplitNameList(text.c_str());
    }
    return *g_suppressList;
}

} // namespace

bool QelNameMatches(const wchar_t* pattern, const wchar_t* name) {
    const wchar_t* star = nullptr; // the last star seen, and where the name stood then
    const wchar_t* resume = nullptr;
    while (*name) {
        if (*pattern == L'*') {
            star = pattern++;
            resume = name;
        } else if (*pattern && (*pattern == L'?' || sameLetter(*pattern, *name))) {
            ++pattern;
            ++name;
        } else if (star) {
            pattern = star + 1;
            name = ++resume;
        } else {
            return false;
        }
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == 0;
}

std::vector<std::wstring> QelSplitNameList(const wchar_t* list) {
    std::vector<std::wstring> items;
    std::wstring item;
    for (const wchar_t* c = list;; ++c) {
        if (*c == 0 || *c == L',' || *c == L'\t' || *c == L'\n') {
            if (!item.empty()) items.push_back(item);
            item.clear();
            if (*c == 0) break;
        } else {
            item += *c;
        }
    }
    return items;
}

bool QelAnnotationSuppressed(const wchar_t* name) {
    for (const std::wstring& pattern : suppressList())
        if (QelNameMatches(pattern.c_str(), name)) return true;
    return false;
}

void QelForgetAnnotationSuppressList() {
    g_suppressList.reset();
}
