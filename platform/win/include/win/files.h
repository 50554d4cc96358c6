// Files as the module opens them: CreateFileW with access, share mode and disposition, file
// attributes, directories, temporary names and wide-path fopen.
//
// Paths may be written the Windows way. Backslashes are separators, and a drive letter stands
// for a folder of this host: X: is $QELCAD_DRIVE_X when set, and C: is / otherwise. Names that
// Windows refuses (< > " | ? * or a colon past the drive) are refused here too. Share modes hold
// between the handles of this process.
#pragma once

#include <win/errors.h>

#include <cstdio>
#include <string>

#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u

#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define FILE_SHARE_DELETE 0x00000004

#define CREATE_NEW 1
#define CREATE_ALWAYS 2
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define TRUNCATE_EXISTING 5

#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFu

struct SECURITY_ATTRIBUTES;

// INVALID_HANDLE_VALUE on failure, with GetLastError set (ERROR_FILE_NOT_FOUND,
// ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_FILE_EXISTS,
// ERROR_INVALID_NAME, ...). CREATE_ALWAYS and OPEN_ALWAYS on an existing file succeed with
// ERROR_ALREADY_EXISTS.
HANDLE CreateFileW(LPCWSTR name, DWORD access, DWORD shareMode, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE templateFile);
BOOL CloseHandle(HANDLE handle);
BOOL DeleteFileW(LPCWSTR name);
BOOL CreateDirectoryW(LPCWSTR name, SECURITY_ATTRIBUTES* security);
DWORD GetFileAttributesW(LPCWSTR name);
// FILE_ATTRIBUTE_DIRECTORY for a directory, else FALSE.
BOOL PathIsDirectoryW(LPCWSTR path);
BOOL PathFileExistsW(LPCWSTR path);
// The file name part: what follows the last separator (a trailing separator belongs to the name).
LPWSTR PathFindFileNameW(LPCWSTR path);
// The temporary folder with its trailing separator; the length, or the size needed with the
// terminator when the buffer is too small.
DWORD GetTempPathW(DWORD bufferLength, LPWSTR buffer);
// A name in `dir` (or the temporary folder) that starts with `prefix` and names no file yet;
// the caller frees it with free().
wchar_t* _wtempnam(const wchar_t* dir, const wchar_t* prefix);
// fopen with a wide name and mode; "t" is the default text mode, ",ccs=..." is ignored.
FILE* _wfopen(const wchar_t* name, const wchar_t* mode);
int _wremove(const wchar_t* name);
// 0 if the drive (1 is A:) stands for a folder of this host, else -1.
int _chdrive(int drive);

inline constexpr auto& CreateFile = CreateFileW;
inline constexpr auto& DeleteFile = DeleteFileW;
inline constexpr auto& CreateDirectory = CreateDirectoryW;
inline constexpr auto& GetFileAttributes = GetFileAttributesW;
inline constexpr auto& PathIsDirectory = PathIsDirectoryW;
inline constexpr auto& PathFileExists = PathFileExistsW;
inline constexpr auto& PathFindFileName = PathFindFileNameW;
inline constexpr auto& GetTempPath = GetTempPathW;

namespace win {

// The host's path (UTF-8) for a path as the module writes it; empty if the drive is unknown.
std::string hostPath(LPCWSTR path);

} // namespace win
