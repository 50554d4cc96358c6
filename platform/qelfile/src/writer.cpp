#include "encoder.h"
#include "errors.h"
#include "format.h"
#include "init.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <unordered_map>
#include <vector>
#include <xxhash.h>

namespace {

constexpr std::size_t kBufferSize = 1 << 20;

std::string temporaryName(const std::string& path) {
    static std::atomic<unsigned> serial{0};
    return fmt::format("{}.qeltmp-{}-{}", path, ::getpid(), serial++);
}

void put32(std::vector<unsigned char>& out, std::uint32_t v) {
    const auto* p = reinterpret_cast<const unsigned char*>(&v);
    out.insert(out.end(), p, p + 4);
}
void put64(std::vector<unsigned char>& out, std::uint64_t v) {
    const auto* p = reinterpret_cast<const unsigned char*>(&v);
    out.insert(out.end(), p, p + 8);
}
void padTo8(std::vector<unsigned char>& out) {
    out.resize(qel::format::alignUp(out.size()), 0);
}

} // namespace

struct QelWriter::Impl {
    std::string path;
    std::string temp;
    int fd = -1;
    std::uint64_t offset = 0; // bytes handed to the file so far, buffer included
    std::vector<unsigned char> buffer;
    struct Entry {
        std::uint64_t offset, size, checksum;
    };
    std::vector<Entry> index;
    std::vector<std::pair<std::string, std::vector<std::uint32_t>>> classes;
    std::unordered_map<std::string, std::size_t> classSlot;
    qel::Encoder encoder;

    ~Impl() { discard(); }

    void open(const std::string& target);
    unsigned write(const QelObject& object);
    void close();
    void discard();

    void raw(const unsigned char* data, std::size_t size);
    void flush();
    void writeAll(const unsigned char* data, std::size_t size);
    [[noreturn]] void ioFailure(const char* doing);
};

void QelWriter::Impl::ioFailure(const char* doing) {
    const int err = errno;
    discard();
    qel::fail("Cannot {} '{}': {}", doing, path, std::strerror(err));
}

void QelWriter::Impl::open(const std::string& target) {
    path = target;
    temp = temporaryName(target);
    fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) {
        const int err = errno;
        qel::fail("Cannot create '{}': {}", path, std::strerror(err));
    }
    buffer.reserve(kBufferSize);
    // A header without the complete flag goes out at once, so that whatever a crash leaves
    // behind reads as incomplete. Close writes the real header over it.
    buffer.assign(qel::format::kHeaderSize, 0);
    std::memcpy(buffer.data(), qel::format::kMagic, sizeof qel::format::kMagic);
    std::memcpy(buffer.data() + qel::format::header::version, &qel::format::kVersion, 4);
    offset = qel::format::kHeaderSize;
    flush();
}

void QelWriter::Impl::writeAll(const unsigned char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            ioFailure("write");
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
}

void QelWriter::Impl::flush() {
    writeAll(buffer.data(), buffer.size());
    buffer.clear();
}

void QelWriter::Impl::raw(const unsigned char* data, std::size_t size) {
    if (buffer.size() + size > kBufferSize) {
        flush();
        if (size >= kBufferSize) {
            writeAll(data, size);
            offset += size;
            return;
        }
    }
    buffer.insert(buffer.end(), data, data + size);
    offset += size;
}

unsigned QelWriter::Impl::write(const QelObject& object) {
    const auto id = static_cast<std::uint32_t>(index.size());
    if (index.size() >= 0xFFFFFFFFu) qel::fail("'{}': too many objects for one file", path);
    encoder.encode(object, fmt::format("'{}': object {}", path, id));
    index.push_back({offset, encoder.size(), encoder.checksum()});
    encoder.forEach([&](const unsigned char* data, std::size_t size) { raw(data, size); });

    const std::string name = object.GetName();
    auto [slot, added] = classSlot.try_emplace(name, classes.size());
    if (added) classes.emplace_back(name, std::vector<std::uint32_t>{});
    classes[slot->second].second.push_back(id);
    return id;
}

void QelWriter::Impl::close() {
    using namespace qel::format;
    std::vector<unsigned char> tables;
    tables.reserve(index.size() * kIndexEntrySize);
    for (const Entry& e : index) {
        put64(tables, e.offset);
        put64(tables, e.size);
        put64(tables, e.checksum);
    }
    const std::uint64_t indexOffset = offset;
    const std::uint64_t directoryOffset = offset + tables.size();
    for (const auto& [name, ids] : classes) {
        put32(tables, static_cast<std::uint32_t>(name.size()));
        put32(tables, static_cast<std::uint32_t>(ids.size()));
        tables.insert(tables.end(), name.begin(), name.end());
        tables.push_back(0);
        padTo8(tables);
        for (std::uint32_t id : ids)
            put32(tables, id);
        padTo8(tables);
    }
    raw(tables.data(), tables.size());
    flush();

    unsigned char header[kHeaderSize] = {};
    auto store32 = [&](std::size_t at, std::uint32_t v) { std::memcpy(header + at, &v, 4); };
    auto store64 = [&](std::size_t at, std::uint64_t v) { std::memcpy(header + at, &v, 8); };
    std::memcpy(header, kMagic, sizeof kMagic);
    store32(header::version, kVersion);
    store32(header::flags, kFlagComplete);
    store32(header::objectCount, static_cast<std::uint32_t>(index.size()));
    store32(header::classCount, static_cast<std::uint32_t>(classes.size()));
    store64(header::indexOffset, indexOffset);
    store64(header::directoryOffset, directoryOffset);
    store64(header::fileSize, offset);
    store64(header::tableChecksum, XXH3_64bits(tables.data(), tables.size()));
    store64(header::headerChecksum, XXH3_64bits(header, header::headerChecksum));
    if (::pwrite(fd, header, kHeaderSize, 0) != static_cast<ssize_t>(kHeaderSize))
        ioFailure("write");
    if (::fsync(fd) != 0) ioFailure("write");
    if (::close(fd) != 0) {
        fd = -1;
        ioFailure("write");
    }
    fd = -1;
    if (::rename(temp.c_str(), path.c_str()) != 0) ioFailure("replace");
    temp.clear();
}

void QelWriter::Impl::discard() {
    if (fd >= 0) ::close(fd);
    fd = -1;
    if (!temp.empty()) ::unlink(temp.c_str());
    temp.clear();
}

QelWriter::QelWriter() : m_impl(nullptr) {}
QelWriter::QelWriter(const char* path) : m_impl(nullptr) {
    Open(path);
}
QelWriter::~QelWriter() {
    delete m_impl;
}

void QelWriter::Open(const char* path) {
    delete m_impl;
    m_impl = nullptr;
    if (!qel::initialised()) qel::fail("The QEL library was not initialised (QelInit)");
    if (!path || !*path) qel::fail("No QEL file name given");
    auto impl = std::make_unique<Impl>();
    impl->open(path);
    m_impl = impl.release();
}

unsigned QelWriter::WriteObject(const QelObject* object) {
    if (!m_impl) qel::fail("No QEL file is open for writing");
    if (!object) qel::fail("'{}': no object given to write", m_impl->path);
    return m_impl->write(*object);
}

void QelWriter::Close() {
    if (!m_impl) return;
    Impl* impl = m_impl;
    m_impl = nullptr;
    std::unique_ptr<Impl> owner(impl);
    impl->close();
}

bool QelWriter::IsOpen() const {
    return m_impl != nullptr;
}
