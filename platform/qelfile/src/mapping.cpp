#include "mapping.h"

#include "errors.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qel {

namespace {
struct Fd {
    int fd;
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
};
} // namespace

std::shared_ptr<Mapping> Mapping::open(const std::string& path) {
    Fd file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.fd < 0) fail("Cannot open '{}': {}", path, std::strerror(errno));
    struct stat st {};
    if (::fstat(file.fd, &st) != 0) fail("Cannot read '{}': {}", path, std::strerror(errno));
    if (!S_ISREG(st.st_mode)) fail("Cannot open '{}': not a regular file", path);
    const auto size = static_cast<std::size_t>(st.st_size);
    if (size == 0) return std::shared_ptr<Mapping>(new Mapping(nullptr, 0));
    void* p = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE, file.fd, 0);
    if (p == MAP_FAILED) fail("Cannot map '{}': {}", path, std::strerror(errno));
    return std::shared_ptr<Mapping>(new Mapping(static_cast<unsigned char*>(p), size));
}

Mapping::~Mapping() {
    if (m_data) ::munmap(m_data, m_size);
}

} // namespace qel
