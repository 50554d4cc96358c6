#include "export/original_file.h"

#include "export/selection.h"
#include "records/member_record.h"

#include <cwchar>
#include <cwctype>

bool QelFileExists(const CString& name) {
    CFileStatus status;
    return !name.IsEmpty() && CFile::GetStatus(name, status) != FALSE;
}

bool QelIsDirectory(const CString& name) {
    CFileStatus status;
    return !name.IsEmpty() && CFile::GetStatus(name, status) && (status.m_attribute & 16) != 0;
}

bool CheckFileName(LPCWSTR name) {
    const std::size_t length = name ? std::wcslen(name) : 0;
    if (length < 4) return false;
    const wchar_t* end = name + length - 4;
    return end[0] == L'.' && std::towlower(end[1]) == L'q' && std::towlower(end[2]) == L'e' &&
           std::towlower(end[3]) == L'l';
}

int findOriginalFile(QelOutObject&, CString& file) {
    const QelSelection all(L"_X");
    if (!all.ok()) return QelNoOriginal;
    Adesk::Int32 length = 0;
    if (!all.length(length) || length == 0) return QelNoEntities;
    for (Adesk::Int32 i = length - 1; i >= 0; --i) {
        ads_name entity;
        QelMemberRecord record;
        if (!all.entity(i, entity) || !record.Load(entity)) continue;
        // The first tagged entity from the end decides, with its file or without one.
        if (record.filePath.IsEmpty()) return QelNoOriginal;
        file = record.filePath;
        return QelHasOriginal;
    }
    return QelNoOriginal;
}
