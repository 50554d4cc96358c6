#include "decoder.h"

#include "errors.h"
#include "format.h"
#include "object_impl.h"
#include "param_impl.h"

#include <cstring>
#include <memory>
#include <vector>

namespace qel {

namespace {

struct ObjectRef {
    QelObject* p;
    ~ObjectRef() {
        if (p) p->UnRef();
    }
    QelObject* release() {
        QelObject* r = p;
        p = nullptr;
        return r;
    }
};

class Decoder {
public:
    Decoder(const unsigned char* data, const std::shared_ptr<const Mapping>& mapping,
            const std::string& path, unsigned id)
        : m_data(data), m_mapping(mapping), m_path(path), m_id(id) {}

    QelObject* object(std::size_t end, unsigned depth);
    std::size_t position() const { return m_pos; }

private:
    template <typename... Args>
    [[noreturn]] void bad(fmt::format_string<Args...> text, Args&&... args) {
        std::string context;
        for (const Frame& f : m_frames)
            context += f.name ? fmt::format("param {} ('{}'): ", f.index, *f.name)
                              : fmt::format("param {}: ", f.index);
        fail("'{}': object {}: {}{}", m_path, m_id, context,
             fmt::format(text, std::forward<Args>(args)...));
    }

    void need(std::size_t n, std::size_t end, const char* what) {
        if (n > end - m_pos) bad("{} runs past the end of the object (offset {})", what, m_pos);
    }
    std::uint32_t u32(std::size_t end, const char* what) {
        need(4, end, what);
        std::uint32_t v;
        std::memcpy(&v, m_data + m_pos, 4);
        m_pos += 4;
        return v;
    }
    std::uint64_t u64(std::size_t end, const char* what) {
        need(8, end, what);
        std::uint64_t v;
        std::memcpy(&v, m_data + m_pos, 8);
        m_pos += 8;
        return v;
    }
    // A text of `length` bytes followed by a NUL, padded to the alignment.
    std::string text(std::uint64_t length, std::size_t end, const char* what) {
        if (length >= end - m_pos)
            bad("{} of {} bytes runs past the end of the object", what, length);
        const char* s = reinterpret_cast<const char*>(m_data + m_pos);
        if (s[length] != '\0') bad("{} is not terminated", what);
        std::string result(s, length);
        skipPad(m_pos + length + 1, end, what);
        return result;
    }
    void skipPad(std::size_t to, std::size_t end, const char* what) {
        const std::size_t aligned = format::alignUp(to);
        if (aligned > end) bad("{} runs past the end of the object", what);
        m_pos = aligned;
    }

    void value(QelParam::Impl& p, std::size_t end, unsigned depth);

    const unsigned char* m_data;
    std::size_t m_pos = 0;
    const std::shared_ptr<const Mapping>& m_mapping;
    const std::string& m_path;
    unsigned m_id;
    // Where the decoder stands, for messages: the param being read at each nesting level.
    struct Frame {
        std::uint32_t index;
        const std::string* name;
    };
    std::vector<Frame> m_frames;
};

QelObject* Decoder::object(std::size_t end, unsigned depth) {
    if (depth > format::kMaxDepth) bad("objects nested deeper than {}", format::kMaxDepth);
    const std::uint32_t count = u32(end, "param count");
    const std::uint32_t nameLength = u32(end, "class name length");
    if (nameLength > format::kMaxNameLength) bad("class name length {} is too long", nameLength);
    ObjectRef result{makeObject(text(nameLength, end, "class name"))};
    // Each param takes at least 24 bytes, so a count beyond that is damage, not a large object.
    if (count > (end - m_pos) / 24) bad("param count {} is more than the object can hold", count);
    auto& params = result.p->GetImpl()->params;
    params.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::unique_ptr<QelParam::Impl> p(new QelParam::Impl);
        m_frames.push_back({i, nullptr});
        p->type = static_cast<QelParamType>(u32(end, "param type"));
        const std::uint32_t length = u32(end, "param name length");
        if (length > format::kMaxNameLength) bad("name length {} is too long", length);
        p->name = text(length, end, "param name");
        m_frames.back().name = &p->name;
        value(*p, end, depth);
        m_frames.pop_back();
        params.push_back(makeParam(p.release()));
    }
    return result.release();
}

void Decoder::value(QelParam::Impl& p, std::size_t end, unsigned depth) {
    switch (p.type) {
    case QelBoolType: {
        const std::uint64_t v = u64(end, "value");
        if (v > 1) bad("bool value {} is neither 0 nor 1", v);
        p.scalar.b = v != 0;
        return;
    }
    case QelShortType: {
        const std::uint64_t v = u64(end, "value");
        if (v > 0xFFFF) bad("short value has bits set beyond 16");
        p.scalar.s = static_cast<short>(static_cast<std::uint16_t>(v));
        return;
    }
    case QelIntType:
    case QelUIntType:
    case QelFloatType: {
        const std::uint64_t v = u64(end, "value");
        if (v > 0xFFFFFFFFu) bad("32-bit value has bits set beyond 32");
        const auto bits = static_cast<std::uint32_t>(v);
        std::memcpy(&p.scalar, &bits, 4);
        return;
    }
    case QelDoubleType: {
        const std::uint64_t v = u64(end, "value");
        std::memcpy(&p.scalar.d, &v, 8);
        return;
    }
    case QelStringType:
        p.text = text(u64(end, "string length"), end, "string");
        return;
    case QelObjectType: {
        const std::uint64_t length = u64(end, "nested object length");
        if (length == 0) return;
        if (length > end - m_pos || length % format::kAlign != 0)
            bad("nested object length {} does not fit the object", length);
        const std::size_t nestedEnd = m_pos + length;
        p.object = object(nestedEnd, depth + 1);
        if (m_pos != nestedEnd)
            bad("nested object ends {} bytes before its stated length", nestedEnd - m_pos);
        return;
    }
    default:
        break;
    }
    const std::size_t element = elementSize(p.type);
    if (element == 0) bad("unknown param type {}", static_cast<int>(p.type));
    const std::uint64_t count = u64(end, "array count");
    if (count > 0xFFFFFFFFu || count > (end - m_pos) / element)
        bad("array of {} elements runs past the end of the object", count);
    p.count = static_cast<std::uint32_t>(count);
    p.data = count ? m_data + m_pos : nullptr;
    if (count) p.mapping = m_mapping;
    skipPad(m_pos + element * count, end, "array");
}

} // namespace

QelObject* decodeObject(const unsigned char* data, std::size_t size,
                        const std::shared_ptr<const Mapping>& mapping, const std::string& path,
                        unsigned id) {
    Decoder decoder(data, mapping, path, id);
    ObjectRef result{decoder.object(size, 0)};
    if (decoder.position() != size)
        fail("'{}': object {}: {} bytes after the end of the object", path, id,
             size - decoder.position());
    return result.release();
}

} // namespace qel
