#include "encoder.h"

#include "errors.h"
#include "format.h"
#include "object_impl.h"
#include "param_impl.h"

#include <cstring>
#include <xxhash.h>

namespace qel {

namespace {
// Arrays at least this large are written from their own memory rather than copied.
constexpr std::size_t kExternalThreshold = 64 * 1024;
} // namespace

void Encoder::encode(const QelObject& root, const std::string& what) {
    m_buffer.clear();
    m_pieces.clear();
    m_size = 0;
    object(root, 0, what);
}

void Encoder::bytes(const void* data, std::size_t size) {
    if (size == 0) return;
    const std::size_t at = m_buffer.size();
    m_buffer.resize(at + size);
    std::memcpy(m_buffer.data() + at, data, size);
    if (!m_pieces.empty() && !m_pieces.back().data &&
        m_pieces.back().offset + m_pieces.back().size == at)
        m_pieces.back().size += size;
    else
        m_pieces.push_back({nullptr, at, size});
    m_size += size;
}

void Encoder::external(const void* data, std::size_t size) {
    if (size < kExternalThreshold) return bytes(data, size);
    m_pieces.push_back({static_cast<const unsigned char*>(data), 0, size});
    m_size += size;
}

void Encoder::pad() {
    static const unsigned char zeros[format::kAlign] = {};
    bytes(zeros, format::alignUp(m_size) - m_size);
}

void Encoder::text(const std::string& s) {
    bytes(s.data(), s.size());
    const unsigned char nul = 0;
    bytes(&nul, 1);
    pad();
}

std::size_t Encoder::reserve64() {
    const std::size_t at = m_buffer.size();
    u64(0);
    return at;
}

void Encoder::patch64(std::size_t at, std::uint64_t v) {
    std::memcpy(m_buffer.data() + at, &v, 8);
}

void Encoder::object(const QelObject& obj, unsigned depth, const std::string& what) {
    if (depth > format::kMaxDepth)
        fail("{}: objects nested deeper than {} (or an object that holds itself)", what,
             format::kMaxDepth);
    const QelObject::Impl& impl = *obj.GetImpl();
    if (impl.className.size() > format::kMaxNameLength)
        fail("{}: class name longer than {} bytes", what, format::kMaxNameLength);
    u32(static_cast<std::uint32_t>(impl.params.size()));
    u32(static_cast<std::uint32_t>(impl.className.size()));
    text(impl.className);
    for (const QelParam* p : impl.params)
        param(*p, depth, what);
}

void Encoder::param(const QelParam& p, unsigned depth, const std::string& what) {
    const QelParam::Impl& impl = *implOf(&p);
    if (impl.name.size() > format::kMaxNameLength)
        fail("{}: param name longer than {} bytes", what, format::kMaxNameLength);
    u32(static_cast<std::uint32_t>(impl.type));
    u32(static_cast<std::uint32_t>(impl.name.size()));
    text(impl.name);
    switch (impl.type) {
    case QelBoolType:
        u64(impl.scalar.b ? 1 : 0);
        return;
    case QelShortType:
        u64(static_cast<std::uint64_t>(static_cast<std::uint16_t>(impl.scalar.s)));
        return;
    case QelIntType:
        u64(static_cast<std::uint32_t>(impl.scalar.i));
        return;
    case QelUIntType:
        u64(impl.scalar.u);
        return;
    case QelFloatType: {
        std::uint32_t bits;
        std::memcpy(&bits, &impl.scalar.f, 4);
        u64(bits);
        return;
    }
    case QelDoubleType:
        bytes(&impl.scalar.d, 8);
        return;
    case QelStringType:
        u64(impl.text.size());
        text(impl.text);
        return;
    case QelObjectType: {
        if (!impl.object) {
            u64(0); // an object param without an object
            return;
        }
        const std::size_t at = reserve64();
        const std::uint64_t start = m_size;
        object(*impl.object, depth + 1, what);
        patch64(at, m_size - start);
        return;
    }
    default:
        break;
    }
    const std::size_t element = elementSize(impl.type);
    if (element == 0)
        fail("{}: param '{}' has an unknown type {}", what, impl.name, int(impl.type));
    u64(impl.count);
    external(impl.data, element * impl.count);
    pad();
}

std::uint64_t Encoder::checksum() const {
    XXH3_state_t* state = XXH3_createState();
    XXH3_64bits_reset(state);
    forEach([&](const unsigned char* data, std::size_t size) {
        XXH3_64bits_update(state, data, size);
    });
    const std::uint64_t sum = XXH3_64bits_digest(state);
    XXH3_freeState(state);
    return sum;
}

} // namespace qel
