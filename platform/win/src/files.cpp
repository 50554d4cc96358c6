#include "paths.h"

#include <win/files.h>
#include <win/strings.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <map>
#include <mutex>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

struct OpenFile {
    int fd = -1;
    dev_t device = 0;
    ino_t inode = 0;
    DWORD access = 0;
    DWORD share = 0;
};

std::mutex filesMutex;
std::map<OpenFile*, bool>& openFiles() {
    static auto* files = new std::map<OpenFile*, bool>;
    return *files;
}

bool isDriveSpec(LPCWSTR path) {
    return path && ((path[0] >= L'A' && path[0] <= L'Z') || (path[0] >= L'a' && path[0] <= L'z')) &&
           path[1] == L':';
}

std::string driveRoot(wchar_t letter) {
    char upper = static_cast<char>(std::toupper(static_cast<int>(letter)));
    std::string variable = std::string("QELCAD_DRIVE_") + upper;
    if (const char* root = std::getenv(variable.c_str()); root && *root) return root;
    return upper == 'C' ? "/" : "";
}

// A sharing conflict between an open handle and a new one, both ways.
bool conflicts(const OpenFile& open, DWORD access, DWORD share) {
    bool newReads = access & GENERIC_READ, newWrites = access & GENERIC_WRITE;
    bool oldReads = open.access & GENERIC_READ, oldWrites = open.access & GENERIC_WRITE;
    return (newReads && !(open.share & FILE_SHARE_READ)) ||
           (newWrites && !(open.share & FILE_SHARE_WRITE)) ||
           (oldReads && !(share & FILE_SHARE_READ)) || (oldWrites && !(share & FILE_SHARE_WRITE));
}

OpenFile* fileOf(HANDLE handle) {
    auto* file = static_cast<OpenFile*>(handle);
    std::lock_guard lock(filesMutex);
    return openFiles().count(file) ? file : nullptr;
}

bool fail(DWORD error) {
    SetLastError(error);
    return false;
}

} // namespace

namespace win {

std::string hostPath(LPCWSTR path) {
    if (!path) return "";
    std::wstring rest = path;
    std::string root;
    if (isDriveSpec(path)) {
        root = driveRoot(path[0]);
        if (root.empty()) return "";
        rest = rest.substr(2);
    }
    for (wchar_t& c : rest)
        if (c == L'\\') c = L'/';
    std::string tail = toUtf8(rest);
    if (root.empty()) return tail;
    if (root.back() != '/') root += '/';
    while (!tail.empty() && tail.front() == '/')
        tail.erase(0, 1);
    return root + tail;
}

bool invalidWindowsName(LPCWSTR path) {
    if (!path) return true;
    const wchar_t* p = isDriveSpec(path) ? path + 2 : path;
    for (; *p; ++p)
        if (std::wcschr(L"<>\"|?*:", *p) || (*p > 0 && *p < 32)) return true;
    return false;
}

DWORD errorFromErrno(int error, const std::string& path) {
    switch (error) {
    case ENOENT: {
        fs::path parent = fs::path(path).parent_path();
        std::error_code ec;
        return parent.empty() || fs::is_directory(parent, ec) ? ERROR_FILE_NOT_FOUND
                                                              : ERROR_PATH_NOT_FOUND;
    }
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return ERROR_ACCESS_DENIED;
    case EEXIST:
        return ERROR_FILE_EXISTS;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case ENOSPC:
    case EDQUOT:
        return ERROR_DISK_FULL;
    case EIO:
        return ERROR_WRITE_FAULT;
    case ENAMETOOLONG:
        return ERROR_FILENAME_EXCED_RANGE;
    case EBADF:
        return ERROR_INVALID_HANDLE;
    case EBUSY:
    case ETXTBSY:
        return ERROR_SHARING_VIOLATION;
    default:
        return ERROR_INVALID_FUNCTION;
    }
}

} // namespace win

HANDLE CreateFileW(LPCWSTR name, DWORD access, DWORD shareMode, SECURITY_ATTRIBUTES*,
                   DWORD disposition, DWORD, HANDLE) {
    if (!name || !*name || disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    std::string path = win::hostPath(name);
    if (path.empty()) {
        SetLastError(ERROR_PATH_NOT_FOUND); // a drive this host doesn't have
        return INVALID_HANDLE_VALUE;
    }
    if (win::invalidWindowsName(name)) {
        SetLastError(ERROR_INVALID_NAME);
        return INVALID_HANDLE_VALUE;
    }
    struct stat st {};
    bool exists = ::stat(path.c_str(), &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    std::lock_guard lock(filesMutex);
    if (exists)
        for (auto& [open, unused] : openFiles())
            if (open->device == st.st_dev && open->inode == st.st_ino &&
                conflicts(*open, access, shareMode)) {
                SetLastError(ERROR_SHARING_VIOLATION);
                return INVALID_HANDLE_VALUE;
            }
    bool reads = access & GENERIC_READ, writes = access & GENERIC_WRITE;
    int flags = O_CLOEXEC | (reads && writes ? O_RDWR : writes ? O_WRONLY : O_RDONLY);
    switch (disposition) {
    case CREATE_NEW:
        flags |= O_CREAT | O_EXCL;
        break;
    case CREATE_ALWAYS:
        flags |= O_CREAT | O_TRUNC;
        break;
    case OPEN_ALWAYS:
        flags |= O_CREAT;
        break;
    case TRUNCATE_EXISTING:
        flags |= O_TRUNC;
        break;
    default:
        break;
    }
    int fd = ::open(path.c_str(), flags, 0644);
    if (fd < 0) {
        SetLastError(win::errorFromErrno(errno, path));
        return INVALID_HANDLE_VALUE;
    }
    ::fstat(fd, &st);
    auto* file = new OpenFile{fd, st.st_dev, st.st_ino, access, shareMode};
    openFiles()[file] = true;
    bool existed = exists && (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS);
    SetLastError(existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return file;
}

BOOL CloseHandle(HANDLE handle) {
    OpenFile* file = fileOf(handle);
    if (!file) return fail(ERROR_INVALID_HANDLE);
    std::lock_guard lock(filesMutex);
    openFiles().erase(file);
    ::close(file->fd);
    delete file;
    return TRUE;
}

BOOL DeleteFileW(LPCWSTR name) {
    std::string path = win::hostPath(name);
    struct stat st {};
    if (path.empty()) return fail(ERROR_PATH_NOT_FOUND);
    if (::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return fail(ERROR_ACCESS_DENIED);
    if (::unlink(path.c_str()) != 0) return fail(win::errorFromErrno(errno, path));
    return TRUE;
}

BOOL CreateDirectoryW(LPCWSTR name, SECURITY_ATTRIBUTES*) {
    std::string path = win::hostPath(name);
    if (path.empty()) return fail(ERROR_PATH_NOT_FOUND);
    if (win::invalidWindowsName(name)) return fail(ERROR_INVALID_NAME);
    if (::mkdir(path.c_str(), 0755) != 0)
        return fail(errno == EEXIST   ? ERROR_ALREADY_EXISTS
                    : errno == ENOENT ? ERROR_PATH_NOT_FOUND
                                      : win::errorFromErrno(errno, path));
    return TRUE;
}

DWORD GetFileAttributesW(LPCWSTR name) {
    std::string path = win::hostPath(name);
    struct stat st {};
    if (path.empty() || ::stat(path.c_str(), &st) != 0) {
        SetLastError(path.empty() ? ERROR_PATH_NOT_FOUND : win::errorFromErrno(errno, path));
        return INVALID_FILE_ATTRIBUTES;
    }
    if (S_ISDIR(st.st_mode)) return FILE_ATTRIBUTE_DIRECTORY;
    DWORD attributes = FILE_ATTRIBUTE_ARCHIVE;
    if (::access(path.c_str(), W_OK) != 0) attributes |= FILE_ATTRIBUTE_READONLY;
    return attributes;
}

BOOL PathIsDirectoryW(LPCWSTR path) {
    DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)
               ? FILE_ATTRIBUTE_DIRECTORY
               : FALSE;
}

BOOL PathFileExistsW(LPCWSTR path) {
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

LPWSTR PathFindFileNameW(LPCWSTR path) {
    if (!path) return nullptr;
    const wchar_t* name = path;
    for (const wchar_t* p = path; *p; ++p)
        if ((*p == L'\\' || *p == L'/' || *p == L':') && p[1] && p[1] != L'\\' && p[1] != L'/')
            name = p + 1;
    return const_cast<LPWSTR>(name);
}

DWORD GetTempPathW(DWORD bufferLength, LPWSTR buffer) {
    const char* dir = std::getenv("TMPDIR");
    std::wstring path = win::fromUtf8(dir && *dir ? dir : "/tmp");
    if (path.back() != L'/') path += L'/';
    if (!buffer || bufferLength < path.size() + 1) return static_cast<DWORD>(path.size() + 1);
    std::wmemcpy(buffer, path.c_str(), path.size() + 1);
    return static_cast<DWORD>(path.size());
}

wchar_t* _wtempnam(const wchar_t* dir, const wchar_t* prefix) {
    std::wstring folder;
    if (dir && PathIsDirectoryW(dir)) {
        folder = dir;
    } else {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        folder = temp;
    }
    if (folder.back() != L'/' && folder.back() != L'\\') folder += L'/';
    static std::mt19937 random(std::random_device{}());
    for (int attempt = 0; attempt < 1000; ++attempt) {
        std::wstring name = folder + (prefix ? prefix : L"") + std::to_wstring(random() % 1000000);
        if (!PathFileExistsW(name.c_str())) {
            auto* out = static_cast<wchar_t*>(std::malloc((name.size() + 1) * sizeof(wchar_t)));
            if (out) std::wmemcpy(out, name.c_str(), name.size() + 1);
            return out;
        }
    }
    return nullptr;
}

FILE* _wfopen(const wchar_t* name, const wchar_t* mode) {
    if (!name || !mode) {
        errno = EINVAL;
        return nullptr;
    }
    std::string narrowMode;
    for (const wchar_t* m = mode; *m && *m != L','; ++m)
        if (*m != L't' && *m != L' ') narrowMode += static_cast<char>(*m);
    std::string path = win::hostPath(name);
    if (path.empty() || win::invalidWindowsName(name)) {
        errno = ENOENT;
        return nullptr;
    }
    return std::fopen(path.c_str(), narrowMode.c_str());
}

int _wremove(const wchar_t* name) {
    std::string path = win::hostPath(name);
    return path.empty() ? -1 : std::remove(path.c_str());
}

int _chdrive(int drive) {
    if (drive < 1 || drive > 26) return -1;
    std::string root = driveRoot(static_cast<wchar_t>(L'A' + drive - 1));
    std::error_code ec;
    if (root.empty() || !fs::is_directory(root, ec)) {
        errno = EACCES;
        return -1;
    }
    return 0;
}
