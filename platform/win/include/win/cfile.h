// CFile and CFileException. As in the library, the constructor that opens a file and the static
// operations throw a CFileException* (to be released with Delete()); Open reports through its
// optional exception argument instead.
#pragma once

#include <win/cwnd.h>
#include <win/files.h>

#include <ctime>

class CTime {
public:
    CTime() = default;
    explicit CTime(std::time_t time) : time_(time) {}
    std::time_t GetTime() const { return time_; }

private:
    std::time_t time_ = 0;
};

struct CFileStatus {
    CTime m_ctime, m_mtime, m_atime;
    ULONGLONG m_size = 0;
    BYTE m_attribute = 0; // FILE_ATTRIBUTE_* of the low byte: 0x10 for a directory
    TCHAR m_szFullName[MAX_PATH] = {};
};

class CFileException : public CException {
public:
    enum {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6,
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10,
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14,
    };

    CFileException(int cause = none, LONG osError = -1, LPCTSTR fileName = nullptr)
        : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;

    // The cause for a system error code.
    static int OsErrorToException(LONG osError);
    BOOL GetErrorMessage(LPWSTR buffer, UINT maxCount, UINT* helpContext = nullptr) const override;
};

[[noreturn]] void AfxThrowFileException(int cause, LONG osError = -1, LPCTSTR fileName = nullptr);

class CFile : public CObject {
public:
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000,
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    CFile() = default;
    CFile(LPCTSTR fileName, UINT openFlags); // throws CFileException*
    ~CFile() override;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    virtual BOOL Open(LPCTSTR fileName, UINT openFlags, CFileException* error = nullptr);
    virtual void Close();
    CString GetFilePath() const { return path_; }

    static BOOL GetStatus(LPCTSTR fileName, CFileStatus& status);
    static void Remove(LPCTSTR fileName);

    HANDLE m_hFile = INVALID_HANDLE_VALUE;

private:
    CString path_;
};
