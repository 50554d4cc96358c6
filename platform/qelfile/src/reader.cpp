#include "decoder.h"
#include "errors.h"
#include "format.h"
#include "init.h"
#include "mapping.h"

#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>
#include <xxhash.h>

namespace {

std::uint32_t load32(const unsigned char* p) {
    std::uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}
std::uint64_t load64(const unsigned char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}

struct IndexEntry {
    std::uint64_t offset;
    std::uint64_t size;
    std::uint64_t checksum;
};

} // namespace

struct QelReader::Impl {
    std::string path;
    std::shared_ptr<const qel::Mapping> mapping;
    const unsigned char* base = nullptr;
    std::uint32_t objectCount = 0;
    std::uint64_t indexOffset = 0;
    std::unordered_map<std::string, std::vector<std::uint32_t>> byClass;

    void open(const std::string& file);
    void readDirectory(std::uint64_t from, std::uint64_t to, std::uint32_t classCount);
    IndexEntry entry(unsigned id) const {
        const unsigned char* p = base + indexOffset + id * qel::format::kIndexEntrySize;
        return {load64(p), load64(p + 8), load64(p + 16)};
    }
    QelObject* read(unsigned id) const;
};

void QelReader::Impl::open(const std::string& file) {
    using namespace qel::format;
    path = file;
    auto map = qel::Mapping::open(file);
    const unsigned char* h = map->data();
    const std::size_t size = map->size();
    if (size < kHeaderSize || std::memcmp(h, kMagic, sizeof kMagic) != 0)
        qel::fail("'{}' is not a QEL object file", file);
    // An unfinished file has no header checksum yet, so its flag is looked at first.
    if (!(load32(h + header::flags) & kFlagComplete))
        qel::fail("'{}' is incomplete: the program writing it never finished the file", file);
    if (XXH3_64bits(h, header::headerChecksum) != load64(h + header::headerChecksum))
        qel::fail("'{}': the file header is damaged", file);
    const std::uint32_t version = load32(h + header::version);
    if (version != kVersion)
        qel::fail("'{}' has format version {}; this library reads version {}", file, version,
                  kVersion);
    const std::uint64_t statedSize = load64(h + header::fileSize);
    if (statedSize != size)
        qel::fail("'{}' is {} bytes long but was written with {} bytes: it has been truncated or "
                  "extended",
                  file, size, statedSize);
    const std::uint32_t count = load32(h + header::objectCount);
    const std::uint64_t index = load64(h + header::indexOffset);
    const std::uint64_t directory = load64(h + header::directoryOffset);
    if (index < kHeaderSize || index % kAlign != 0 || index > size ||
        std::uint64_t(count) * kIndexEntrySize > size - index ||
        directory != index + std::uint64_t(count) * kIndexEntrySize || directory > size)
        qel::fail("'{}': the object index lies outside the file", file);
    if (XXH3_64bits(h + index, size - index) != load64(h + header::tableChecksum))
        qel::fail("'{}': the object index or class directory is damaged", file);
    base = h;
    objectCount = count;
    indexOffset = index;
    readDirectory(directory, size, load32(h + header::classCount));
    mapping = std::move(map);
}

void QelReader::Impl::readDirectory(std::uint64_t at, std::uint64_t end, std::uint32_t classCount) {
    using namespace qel::format;
    for (std::uint32_t c = 0; c < classCount; ++c) {
        if (end - at < 8) qel::fail("'{}': class directory entry {} is cut short", path, c);
        const std::uint32_t nameLength = load32(base + at);
        const std::uint32_t count = load32(base + at + 4);
        at += 8;
        if (nameLength > kMaxNameLength || nameLength >= end - at || base[at + nameLength] != 0)
            qel::fail("'{}': class directory entry {} has a bad name", path, c);
        std::string name(reinterpret_cast<const char*>(base + at), nameLength);
        at = alignUp(at + nameLength + 1);
        if (at > end || std::uint64_t(count) * 4 > end - at)
            qel::fail("'{}': class directory entry {} ('{}') is cut short", path, c, name);
        auto& ids = byClass[name];
        ids.reserve(count);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t id = load32(base + at + 4 * i);
            if (id >= objectCount)
                qel::fail("'{}': class directory lists object {} of class '{}', but the file has "
                          "{} objects",
                          path, id, name, objectCount);
            ids.push_back(id);
        }
        at = alignUp(at + 4 * std::uint64_t(count));
    }
    if (at != end) qel::fail("'{}': {} stray bytes after the class directory", path, end - at);
}

QelObject* QelReader::Impl::read(unsigned id) const {
    using namespace qel::format;
    if (id >= objectCount) return nullptr;
    const IndexEntry e = entry(id);
    if (e.offset < kHeaderSize || e.offset % kAlign != 0 || e.offset > indexOffset ||
        e.size > indexOffset - e.offset || e.size < 16)
        qel::fail("'{}': object {}: its place in the file is out of range", path, id);
    const unsigned char* data = base + e.offset;
    if (XXH3_64bits(data, e.size) != e.checksum)
        qel::fail("'{}': object {} is damaged (checksum mismatch)", path, id);
    return qel::decodeObject(data, e.size, mapping, path, id);
}

QelReader::QelReader() : m_impl(nullptr) {}

QelReader::QelReader(const char* path) : m_impl(nullptr) {
    Open(path);
}

QelReader::~QelReader() {
    delete m_impl;
}

void QelReader::Open(const char* path) {
    Close();
    if (!qel::initialised()) qel::fail("The QEL library was not initialised (QelInit)");
    if (!path || !*path) qel::fail("No QEL file name given");
    auto impl = std::make_unique<Impl>();
    impl->open(path);
    m_impl = impl.release();
}

void QelReader::Close() {
    delete m_impl;
    m_impl = nullptr;
}

bool QelReader::IsOpen() const {
    return m_impl != nullptr;
}

QelObject* QelReader::ReadObject(unsigned id) {
    if (!m_impl) qel::fail("No QEL file is open for reading");
    return m_impl->read(id);
}

QelObject* QelReader::ReadObject(const char* className, unsigned index) {
    if (!m_impl) qel::fail("No QEL file is open for reading");
    if (!className) return nullptr;
    auto it = m_impl->byClass.find(className);
    if (it == m_impl->byClass.end() || index >= it->second.size()) return nullptr;
    return m_impl->read(it->second[index]);
}

unsigned QelReader::GetObjectCount() const {
    return m_impl ? m_impl->objectCount : 0;
}

std::uint64_t QelReader::GetObjectSize(unsigned id) const {
    if (!m_impl || id >= m_impl->objectCount) return 0;
    return m_impl->entry(id).size;
}
