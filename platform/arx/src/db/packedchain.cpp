#include "packedchain.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <vector>

#include "../ads/rbkind.h"
#include "text.h"

namespace {

// Writes into a buffer that the caller has made large enough (see room()).
struct Sink {
    unsigned char* at = nullptr;
    size_t size = 0;
    void put(const void* bytes, size_t n) {
        std::memcpy(at + size, bytes, n);
        size += n;
    }
    void byte(unsigned char b) { at[size++] = b; }
    void varint(Adesk::UInt64 v) {
        while (v >= 0x80) {
            byte(static_cast<unsigned char>((v & 0x7F) | 0x80));
            v >>= 7;
        }
        byte(static_cast<unsigned char>(v));
    }
    template <class T>
    void raw(const T& value) {
        put(&value, sizeof(T));
    }
};

size_t utf8Length(const ACHAR* text) {
    size_t n = 0;
    for (; *text; ++text) {
        const auto c = static_cast<char32_t>(*text);
        n += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    }
    return n;
}

void putUtf8(Sink& out, const ACHAR* text) {
    for (; *text; ++text) {
        const auto c = static_cast<char32_t>(*text);
        if (c < 0x80) {
            out.byte(static_cast<unsigned char>(c));
        } else if (c < 0x800) {
            out.byte(static_cast<unsigned char>(0xC0 | (c >> 6)));
            out.byte(static_cast<unsigned char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.byte(static_cast<unsigned char>(0xE0 | (c >> 12)));
            out.byte(static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F)));
            out.byte(static_cast<unsigned char>(0x80 | (c & 0x3F)));
        } else {
            out.byte(static_cast<unsigned char>(0xF0 | (c >> 18)));
            out.byte(static_cast<unsigned char>(0x80 | ((c >> 12) & 0x3F)));
            out.byte(static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F)));
            out.byte(static_cast<unsigned char>(0x80 | (c & 0x3F)));
        }
    }
}

Adesk::UInt64 getVarint(const unsigned char*& p) {
    Adesk::UInt64 v = 0;
    for (int shift = 0;; shift += 7) {
        const unsigned char b = *p++;
        v |= Adesk::UInt64(b & 0x7F) << shift;
        if (!(b & 0x80)) return v;
    }
}

Adesk::UInt64 zigzag(Adesk::Int64 v) {
    return (Adesk::UInt64(v) << 1) ^ Adesk::UInt64(v >> 63);
}
Adesk::Int64 unzigzag(Adesk::UInt64 v) {
    return Adesk::Int64(v >> 1) ^ -Adesk::Int64(v & 1);
}

template <class T>
T getRaw(const unsigned char*& p) {
    T value;
    std::memcpy(&value, p, sizeof(T));
    p += sizeof(T);
    return value;
}

bool isZero(const resbuf& rb, RbKind kind) {
    switch (kind) {
    case RbKind::kReal:
        return rb.resval.rreal == 0.0 && !std::signbit(rb.resval.rreal);
    case RbKind::kPoint:
        for (double c : rb.resval.rpoint)
            if (c != 0.0 || std::signbit(c)) return false;
        return true;
    case RbKind::kShort:
        return rb.resval.rint == 0;
    case RbKind::kLong:
        return rb.resval.rlong == 0;
    case RbKind::kInt64:
        return rb.resval.mnInt64 == 0;
    case RbKind::kString:
        return rb.resval.rstring == nullptr || rb.resval.rstring[0] == 0;
    case RbKind::kName:
        return rb.resval.rlname[0] == 0;
    case RbKind::kBinary:
        return rb.resval.rbinary.clen == 0;
    default:
        return true;
    }
}

void putValue(Sink& out, const resbuf& rb, RbKind kind) {
    switch (kind) {
    case RbKind::kReal:
        out.raw(rb.resval.rreal);
        break;
    case RbKind::kPoint:
        for (double c : rb.resval.rpoint)
            out.raw(c);
        break;
    case RbKind::kShort:
        out.varint(zigzag(rb.resval.rint));
        break;
    case RbKind::kLong:
        out.varint(zigzag(rb.resval.rlong));
        break;
    case RbKind::kInt64:
        out.varint(zigzag(rb.resval.mnInt64));
        break;
    case RbKind::kString:
        out.varint(utf8Length(rb.resval.rstring));
        putUtf8(out, rb.resval.rstring);
        break;
    case RbKind::kName:
        out.raw(rb.resval.rlname[0]);
        break;
    case RbKind::kBinary:
        out.varint(Adesk::UInt64(rb.resval.rbinary.clen));
        out.put(rb.resval.rbinary.buf, size_t(rb.resval.rbinary.clen));
        break;
    default:
        break;
    }
}

// Most bytes an item can take: header, and the longest value of its kind.
size_t room(const resbuf& rb, RbKind kind) {
    if (kind == RbKind::kString && rb.resval.rstring)
        return 24 + 4 * std::wcslen(rb.resval.rstring);
    if (kind == RbKind::kBinary) return 24 + size_t(rb.resval.rbinary.clen);
    return 40;
}

// The items of a chain, into a buffer that grows as needed; false when an item holds no value
// a block can keep.
bool putItems(std::vector<unsigned char>& buffer, Sink& out, const resbuf* chain) {
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
        const RbKind kind = acutRbKind(rb->restype);
        if (kind == RbKind::kInvalid) return false;
        if (const size_t need = out.size + room(*rb, kind); need > buffer.size()) {
            buffer.resize(2 * need);
            out.at = buffer.data();
        }
        const bool zero = isZero(*rb, kind);
        out.varint((Adesk::UInt64(Adesk::UInt16(rb->restype)) << 1) | (zero ? 1 : 0));
        if (!zero) putValue(out, *rb, kind);
    }
    return true;
}

void getValue(const unsigned char*& p, resbuf& rb, RbKind kind) {
    switch (kind) {
    case RbKind::kReal:
        rb.resval.rreal = getRaw<double>(p);
        break;
    case RbKind::kPoint:
        for (double& c : rb.resval.rpoint)
            c = getRaw<double>(p);
        break;
    case RbKind::kShort:
        rb.resval.rint = short(unzigzag(getVarint(p)));
        break;
    case RbKind::kLong:
        rb.resval.rlong = Adesk::Int32(unzigzag(getVarint(p)));
        break;
    case RbKind::kInt64:
        rb.resval.mnInt64 = unzigzag(getVarint(p));
        break;
    case RbKind::kString: {
        const size_t n = getVarint(p);
        rb.resval.rstring = acdbDupString(acdbFromUtf8({reinterpret_cast<const char*>(p), n}));
        p += n;
        break;
    }
    case RbKind::kName:
        rb.resval.rlname[0] = getRaw<Adesk::IntPtr>(p);
        break;
    case RbKind::kBinary: {
        const size_t n = getVarint(p);
        rb.resval.rbinary.clen = short(n);
        rb.resval.rbinary.buf = static_cast<char*>(std::malloc(n ? n : 1));
        std::memcpy(rb.resval.rbinary.buf, p, n);
        p += n;
        break;
    }
    default:
        break;
    }
}

} // namespace

Acad::ErrorStatus acdbPackChain(const resbuf* chain, PackedChain& packed) {
    thread_local std::vector<unsigned char> buffer(1024);
    Sink body{buffer.data(), 0};
    if (!putItems(buffer, body, chain)) return Acad::eInvalidResBuf;
    if (body.size == 0) {
        packed.reset();
        return Acad::eOk;
    }
    unsigned char header[10];
    Sink size{header, 0};
    size.varint(body.size);
    packed = std::make_unique_for_overwrite<unsigned char[]>(size.size + body.size);
    std::memcpy(packed.get(), header, size.size);
    std::memcpy(packed.get() + size.size, buffer.data(), body.size);
    return Acad::eOk;
}

resbuf* acdbUnpackChain(const unsigned char* packed) {
    if (packed == nullptr) return nullptr;
    const unsigned char* p = packed;
    const size_t size = getVarint(p);
    const unsigned char* end = p + size;
    resbuf* head = nullptr;
    resbuf** link = &head;
    while (p < end) {
        const Adesk::UInt64 header = getVarint(p);
        resbuf* rb = acutNewRb(short(Adesk::UInt16(header >> 1)));
        const RbKind kind = acutRbKind(rb->restype);
        if (!(header & 1))
            getValue(p, *rb, kind);
        else if (kind == RbKind::kString)
            rb->resval.rstring = acdbDupString(L"");
        *link = rb;
        link = &rb->rbnext;
    }
    return head;
}
