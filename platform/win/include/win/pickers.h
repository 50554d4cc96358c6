// File and folder pickers: CFileDialog and SHBrowseForFolderW, answered by the presenter.
#pragma once

#include <win/dialog.h>

#define OFN_READONLY 0x00000001
#define OFN_OVERWRITEPROMPT 0x00000002
#define OFN_HIDEREADONLY 0x00000004
#define OFN_NOCHANGEDIR 0x00000008
#define OFN_PATHMUSTEXIST 0x00000800
#define OFN_FILEMUSTEXIST 0x00001000
#define OFN_EXPLORER 0x00080000
#define OFN_ENABLESIZING 0x00800000

struct OPENFILENAMEW {
    DWORD lStructSize = 0;
    HWND hwndOwner = nullptr;
    HINSTANCE hInstance = nullptr;
    LPCWSTR lpstrFilter = nullptr; // pairs of text and pattern, each ended by a terminator
    LPWSTR lpstrCustomFilter = nullptr;
    DWORD nMaxCustFilter = 0;
    DWORD nFilterIndex = 0;
    LPWSTR lpstrFile = nullptr;
    DWORD nMaxFile = 0;
    LPWSTR lpstrFileTitle = nullptr;
    DWORD nMaxFileTitle = 0;
    LPCWSTR lpstrInitialDir = nullptr;
    LPCWSTR lpstrTitle = nullptr;
    DWORD Flags = 0;
    WORD nFileOffset = 0;
    WORD nFileExtension = 0;
    LPCWSTR lpstrDefExt = nullptr;
    LPARAM lCustData = 0;
    void* lpfnHook = nullptr;
    LPCWSTR lpTemplateName = nullptr;
};

// The picker asks the presenter for a path until it gets one the flags accept: with
// OFN_FILEMUSTEXIST the file must exist, with OFN_PATHMUSTEXIST its folder, and with
// OFN_OVERWRITEPROMPT an existing file is replaced only on Yes. A name without extension gets
// the default one.
class CFileDialog : public CDialog {
public:
    CFileDialog(BOOL openFileDialog, LPCTSTR defExt = nullptr, LPCTSTR fileName = nullptr,
                DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCTSTR filter = nullptr,
                CWnd* parent = nullptr, DWORD size = 0, BOOL vistaStyle = TRUE);

    INT_PTR DoModal() override;
    CString GetPathName() const;
    CString GetFileName() const;
    CString GetFileExt() const;
    CString GetFileTitle() const;

    OPENFILENAMEW m_ofn;

private:
    BOOL open_;
    CString defExt_, filter_, filterText_;
    wchar_t file_[MAX_PATH] = {};
};

struct ITEMIDLIST;
using LPITEMIDLIST = ITEMIDLIST*;
using PIDLIST_ABSOLUTE = ITEMIDLIST*;
using PCIDLIST_ABSOLUTE = const ITEMIDLIST*;
using BFFCALLBACK = int (*)(HWND, UINT, LPARAM, LPARAM);

#define BIF_RETURNONLYFSDIRS 0x00000001
#define BIF_EDITBOX 0x00000010
#define BIF_NEWDIALOGSTYLE 0x00000040
#define BIF_USENEWUI (BIF_NEWDIALOGSTYLE | BIF_EDITBOX)

struct BROWSEINFOW {
    HWND hwndOwner = nullptr;
    PCIDLIST_ABSOLUTE pidlRoot = nullptr;
    LPWSTR pszDisplayName = nullptr; // MAX_PATH characters: the chosen folder's name
    LPCWSTR lpszTitle = nullptr;
    UINT ulFlags = 0;
    BFFCALLBACK lpfn = nullptr;
    LPARAM lParam = 0;
    int iImage = 0;
};
using LPBROWSEINFOW = BROWSEINFOW*;

// Null when cancelled; else an item list to read with SHGetPathFromIDListW and free with
// CoTaskMemFree.
PIDLIST_ABSOLUTE SHBrowseForFolderW(LPBROWSEINFOW info);
BOOL SHGetPathFromIDListW(PCIDLIST_ABSOLUTE item, LPWSTR path);
void CoTaskMemFree(void* memory);

inline constexpr auto& SHBrowseForFolder = SHBrowseForFolderW;
inline constexpr auto& SHGetPathFromIDList = SHGetPathFromIDListW;
