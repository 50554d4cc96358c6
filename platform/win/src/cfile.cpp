#include "paths.h"

#include <win/cfile.h>
#include <win/format.h>
#include <win/strings.h>

#include <cwchar>

#include <sys/stat.h>
#include <unistd.h>

namespace {

struct CauseOf {
    LONG osError;
    int cause;
};

// The library's mapping of system errors to causes, for the errors this host reports.
constexpr CauseOf kCauses[] = {
    {ERROR_FILE_NOT_FOUND, CFileException::fileNotFound},
    {ERROR_PATH_NOT_FOUND, CFileException::badPath},
    {ERROR_TOO_MANY_OPEN_FILES, CFileException::tooManyOpenFiles},
    {ERROR_ACCESS_DENIED, CFileException::accessDenied},
    {ERROR_INVALID_HANDLE, CFileException::invalidFile},
    {ERROR_INVALID_DRIVE, CFileException::badPath},
    {ERROR_WRITE_FAULT, CFileException::hardIO},
    {ERROR_READ_FAULT, CFileException::hardIO},
    {ERROR_SHARING_VIOLATION, CFileException::sharingViolation},
    {ERROR_LOCK_VIOLATION, CFileException::lockViolation},
    {ERROR_HANDLE_EOF, CFileException::endOfFile},
    {ERROR_HANDLE_DISK_FULL, CFileException::diskFull},
    {ERROR_DISK_FULL, CFileException::diskFull},
    {ERROR_FILE_EXISTS, CFileException::accessDenied},
    {ERROR_INVALID_NAME, CFileException::badPath},
    {ERROR_FILENAME_EXCED_RANGE, CFileException::badPath},
    {ERROR_DIR_NOT_EMPTY, CFileException::removeCurrentDir},
    {ERROR_BAD_PATHNAME, CFileException::badPath},
};

struct CauseText {
    int cause;
    const wchar_t* text;
};

constexpr CauseText kTexts[] = {
    {CFileException::none, L"No error occurred."},
    {CFileException::genericException, L"An unexpected error occurred while accessing %s."},
    {CFileException::fileNotFound, L"%s was not found."},
    {CFileException::badPath, L"%s contains an incorrect path."},
    {CFileException::tooManyOpenFiles,
     L"%s could not be opened because there are too many open files."},
    {CFileException::accessDenied, L"Access to %s was denied."},
    {CFileException::invalidFile, L"An incorrect file handle was associated with %s."},
    {CFileException::removeCurrentDir,
     L"%s could not be removed because it is the current directory."},
    {CFileException::directoryFull, L"%s could not be created because the directory is full."},
    {CFileException::badSeek, L"Seek failed on %s."},
    {CFileException::hardIO, L"A hardware I/O error was reported while accessing %s."},
    {CFileException::sharingViolation, L"A sharing violation occurred while accessing %s."},
    {CFileException::lockViolation, L"A locking violation occurred while accessing %s."},
    {CFileException::diskFull, L"Disk full while accessing %s."},
    {CFileException::endOfFile, L"An attempt was made to access %s past its end."},
};

} // namespace

int CFileException::OsErrorToException(LONG osError) {
    if (osError == ERROR_SUCCESS) return none;
    for (const CauseOf& c : kCauses)
        if (c.osError == osError) return c.cause;
    return genericException;
}

BOOL CFileException::GetErrorMessage(LPWSTR buffer, UINT maxCount, UINT* helpContext) const {
    if (helpContext) *helpContext = 0;
    if (!buffer || maxCount == 0) return FALSE;
    for (const CauseText& t : kTexts)
        if (t.cause == m_cause) {
            std::wstring text = win::format(
                t.text, m_strFileName.IsEmpty() ? L"an unnamed file" : m_strFileName.GetString());
            std::size_t n = std::min<std::size_t>(text.size(), maxCount - 1);
            std::wmemcpy(buffer, text.c_str(), n);
            buffer[n] = L'\0';
            return TRUE;
        }
    buffer[0] = L'\0';
    return FALSE;
}

void AfxThrowFileException(int cause, LONG osError, LPCTSTR fileName) {
    throw new CFileException(cause, osError, fileName);
}

CFile::CFile(LPCTSTR fileName, UINT openFlags) {
    CFileException error;
    if (!Open(fileName, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CFile::~CFile() {
    if (m_hFile != INVALID_HANDLE_VALUE) ::CloseHandle(m_hFile);
}

BOOL CFile::Open(LPCTSTR fileName, UINT openFlags, CFileException* error) {
    DWORD access = (openFlags & 3) == modeWrite       ? GENERIC_WRITE
                   : (openFlags & 3) == modeReadWrite ? GENERIC_READ | GENERIC_WRITE
                                                      : GENERIC_READ;
    DWORD share = 0; // compatibility mode is exclusive
    switch (openFlags & 0x70) {
    case shareDenyWrite:
        share = FILE_SHARE_READ;
        break;
    case shareDenyRead:
        share = FILE_SHARE_WRITE;
        break;
    case shareDenyNone:
        share = FILE_SHARE_READ | FILE_SHARE_WRITE;
        break;
    default:
        break;
    }
    DWORD disposition = !(openFlags & modeCreate)      ? OPEN_EXISTING
                        : (openFlags & modeNoTruncate) ? OPEN_ALWAYS
                                                       : CREATE_ALWAYS;
    HANDLE handle = ::CreateFileW(fileName, access, share, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        if (error) {
            error->m_lOsError = static_cast<LONG>(::GetLastError());
            error->m_cause = CFileException::OsErrorToException(error->m_lOsError);
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    m_hFile = handle;
    path_ = fileName;
    return TRUE;
}

void CFile::Close() {
    if (m_hFile != INVALID_HANDLE_VALUE && !::CloseHandle(m_hFile)) {
        m_hFile = INVALID_HANDLE_VALUE;
        AfxThrowFileException(CFileException::invalidFile, static_cast<LONG>(::GetLastError()),
                              path_);
    }
    m_hFile = INVALID_HANDLE_VALUE;
}

BOOL CFile::GetStatus(LPCTSTR fileName, CFileStatus& status) {
    std::string path = win::hostPath(fileName);
    struct stat st {};
    if (path.empty() || win::invalidWindowsName(fileName) || ::stat(path.c_str(), &st) != 0) {
        status = CFileStatus{};
        return FALSE;
    }
    status.m_ctime = CTime(st.st_ctime);
    status.m_mtime = CTime(st.st_mtime);
    status.m_atime = CTime(st.st_atime);
    status.m_size = S_ISDIR(st.st_mode) ? 0 : static_cast<ULONGLONG>(st.st_size);
    status.m_attribute = static_cast<BYTE>(GetFileAttributesW(fileName) & 0xFF);
    std::wcsncpy(status.m_szFullName, fileName, MAX_PATH - 1);
    status.m_szFullName[MAX_PATH - 1] = L'\0';
    return TRUE;
}

void CFile::Remove(LPCTSTR fileName) {
    if (!::DeleteFileW(fileName))
        AfxThrowFileException(
            CFileException::OsErrorToException(static_cast<LONG>(::GetLastError())),
            static_cast<LONG>(::GetLastError()), fileName);
}
