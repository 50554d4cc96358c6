#include "log_folder_check.h"

#include <cwctype>

namespace {

bool isSeparator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

} // namespace

CString QelWithTrailingSeparator(const CString& folder) {
    if (!folder.IsEmpty() && isSeparator(folder[folder.GetLength() - 1])) return folder;
    return folder + L"\\";
}

bool QelHasInvalidPathChars(const CString& folder) {
    static const CString invalid = L"<>//?*|,=`\"";
    for (int i = 0; i < folder.GetLength(); ++i) {
        const wchar_t c = folder[i];
        if (c == L'/') continue;
        if (invalid.Find(c) >= 0) return true;
        if (c == L':' && i != 1) return true;
    }
    return false;
}

bool QelDriveAccessible(const CString& folder) {
    if (folder.GetLength() < 2 || folder[1] != L':' || !std::iswalpha(folder[0])) return true;
    // The host has no current drive to go back to: changing to it is the whole test.
    return _chdrive(static_cast<int>(std::towupper(folder[0]) - L'A' + 1)) == 0;
}

bool QelCreateFolderTree(const CString& folder) {
    CString path = folder;
    while (!path.IsEmpty() && isSeparator(path[path.GetLength() - 1]))
        path = path.Left(path.GetLength() - 1);
    if (path.IsEmpty() || PathIsDirectoryW(path)) return true;
    int cut = -1;
    for (int i = path.GetLength() - 1; i > 0 && cut < 0; --i)
        if (isSeparator(path[i])) cut = i;
    if (cut > 0 && !QelCreateFolderTree(path.Left(cut))) return false;
    return CreateDirectoryW(path, nullptr) || PathIsDirectoryW(path);
}
