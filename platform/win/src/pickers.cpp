#include <win/files.h>
#include <win/msgbox.h>
#include <win/pickers.h>
#include <win/presenter.h>
#include <win/transcript.h>

#include <cstdlib>
#include <cwchar>

namespace {

std::wstring folderOf(const std::wstring& path) {
    auto cut = path.find_last_of(L"\\/");
    return cut == std::wstring::npos ? L"" : path.substr(0, cut + 1);
}

// Why the picker can't take this path, or nothing.
std::wstring refusal(const std::wstring& path, DWORD flags, bool open, int& boxType) {
    boxType = MB_OK | MB_ICONEXCLAMATION;
    std::wstring folder = folderOf(path);
    if ((flags & (OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST)) && !folder.empty() &&
        !PathIsDirectoryW(folder.c_str()))
        return path + L"\nPath does not exist.\nCheck the path and try again.";
    if (PathIsDirectoryW(path.c_str())) return path + L"\nis a folder.";
    if (open && (flags & OFN_FILEMUSTEXIST) && !PathFileExistsW(path.c_str()))
        return path + L"\nFile not found.\nCheck the file name and try again.";
    if (!open && (flags & OFN_OVERWRITEPROMPT) && PathFileExistsW(path.c_str())) {
        boxType = MB_YESNO | MB_ICONEXCLAMATION;
        return std::wstring(PathFindFileNameW(path.c_str())) +
               L" already exists.\nDo you want to replace it?";
    }
    return L"";
}

} // namespace

CFileDialog::CFileDialog(BOOL openFileDialog, LPCTSTR defExt, LPCTSTR fileName, DWORD flags,
                         LPCTSTR filter, CWnd* parent, DWORD size, BOOL)
    : open_(openFileDialog), defExt_(defExt), filter_(filter) {
    m_pParentWnd = parent;
    m_ofn.lStructSize = size ? size : sizeof(OPENFILENAMEW);
    m_ofn.Flags = flags | OFN_EXPLORER;
    if (fileName) std::wcsncpy(file_, fileName, MAX_PATH - 1);
    m_ofn.lpstrFile = file_;
    m_ofn.nMaxFile = MAX_PATH;
    m_ofn.lpstrDefExt = defExt_.IsEmpty() ? nullptr : defExt_.GetString();
    // The filter's '|' become terminators, as the system wants them.
    filterText_ = filter_;
    filterText_.Replace(L'|', L'\0');
    m_ofn.lpstrFilter = filter_.IsEmpty() ? nullptr : filterText_.GetString();
}

INT_PTR CFileDialog::DoModal() {
    win::FileRequest request;
    request.open = open_;
    request.title = m_ofn.lpstrTitle ? m_ofn.lpstrTitle : L"";
    request.defaultExt = m_ofn.lpstrDefExt ? m_ofn.lpstrDefExt : L"";
    request.fileName = m_ofn.lpstrFile ? m_ofn.lpstrFile : L"";
    request.filter = filter_.GetString();
    request.initialDir = m_ofn.lpstrInitialDir ? m_ofn.lpstrInitialDir : L"";
    request.flags = m_ofn.Flags;
    auto& transcript = win::Transcript::instance();
    const wchar_t* what = open_ ? L"open file" : L"save file";
    for (;;) {
        win::AnswerSource source = win::AnswerSource::Default;
        std::optional<std::wstring> chosen = win::presenter().chooseFile(request, source);
        if (!chosen || chosen->empty()) {
            transcript.dialog(what, 0, request.title, L"cancelled", IDCANCEL, source);
            return IDCANCEL;
        }
        std::wstring path = *chosen;
        std::wstring name = PathFindFileNameW(path.c_str());
        if (!request.defaultExt.empty() && name.find(L'.') == std::wstring::npos)
            path += L"." + request.defaultExt;
        transcript.dialog(what, 0, request.title, path, IDOK, source);
        int boxType = 0;
        std::wstring problem = refusal(path, m_ofn.Flags, open_, boxType);
        if (!problem.empty() &&
            MessageBoxW(m_ofn.hwndOwner, problem.c_str(), request.title.c_str(), boxType) != IDYES)
            continue;
        std::wcsncpy(m_ofn.lpstrFile, path.c_str(), m_ofn.nMaxFile - 1);
        m_ofn.lpstrFile[m_ofn.nMaxFile - 1] = L'\0';
        return IDOK;
    }
}

CString CFileDialog::GetPathName() const {
    return CString(m_ofn.lpstrFile);
}

CString CFileDialog::GetFileName() const {
    return CString(PathFindFileNameW(m_ofn.lpstrFile));
}

CString CFileDialog::GetFileExt() const {
    CString name = GetFileName();
    int dot = name.ReverseFind(L'.');
    return dot < 0 ? CString() : name.Mid(dot + 1);
}

CString CFileDialog::GetFileTitle() const {
    CString name = GetFileName();
    int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

struct ITEMIDLIST {
    wchar_t path[MAX_PATH];
};

PIDLIST_ABSOLUTE SHBrowseForFolderW(LPBROWSEINFOW info) {
    win::FolderRequest request;
    request.title = info && info->lpszTitle ? info->lpszTitle : L"";
    auto& transcript = win::Transcript::instance();
    for (;;) {
        win::AnswerSource source = win::AnswerSource::Default;
        std::optional<std::wstring> chosen = win::presenter().chooseFolder(request, source);
        if (!chosen || chosen->empty()) {
            transcript.dialog(L"folder", 0, request.title, L"cancelled", IDCANCEL, source);
            return nullptr;
        }
        transcript.dialog(L"folder", 0, request.title, *chosen, IDOK, source);
        if (!PathIsDirectoryW(chosen->c_str())) {
            std::wstring problem = *chosen + L"\nThe folder does not exist.";
            MessageBoxW(info ? info->hwndOwner : nullptr, problem.c_str(), request.title.c_str(),
                        MB_OK | MB_ICONEXCLAMATION);
            continue;
        }
        auto* item = static_cast<ITEMIDLIST*>(std::calloc(1, sizeof(ITEMIDLIST)));
        std::wcsncpy(item->path, chosen->c_str(), MAX_PATH - 1);
        if (info && info->pszDisplayName) {
            std::wstring folder = *chosen;
            while (folder.size() > 1 && (folder.back() == L'\\' || folder.back() == L'/'))
                folder.pop_back();
            std::wcsncpy(info->pszDisplayName, PathFindFileNameW(folder.c_str()), MAX_PATH - 1);
            info->pszDisplayName[MAX_PATH - 1] = L'\0';
        }
        return item;
    }
}

BOOL SHGetPathFromIDListW(PCIDLIST_ABSOLUTE item, LPWSTR path) {
    if (!item || !path) return FALSE;
    std::wcscpy(path, item->path);
    return TRUE;
}

void CoTaskMemFree(void* memory) {
    std::free(memory);
}
