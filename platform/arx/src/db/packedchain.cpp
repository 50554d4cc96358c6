#include "packedchain.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "../ads/rbkind.h"
#include "text.h"

namespace {

void putVarint(std::string& out, Adesk::UInt64 v) {
    while (v >= 0x80) {
        out += char((v & 0x7F) | 0x80);
        v >>= 7;
    }
    out += char(v);
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
void putRaw(std::string& out, const T& value) {
    out.append(reinterpret_cast<const char*>(&value), sizeof(T));
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

void putValue(std::string& out, const resbuf& rb, RbKind kind) {
    switch (kind) {
    case RbKind::kReal:
        putRaw(out, rb.resval.rreal);
        break;
    case RbKind::kPoint:
        for (double c : rb.resval.rpoint)
            putRaw(out, c);
        break;
    case RbKind::kShort:
        putVarint(out, zigzag(rb.resval.rint));
        break;
    case RbKind::kLong:
        putVarint(out, zigzag(rb.resval.rlong));
        break;
    case RbKind::kInt64:
        putVarint(out, zigzag(rb.resval.mnInt64));
        break;
    case RbKind::kString: {
        const std::string utf8 = acdbToUtf8(rb.resval.rstring);
        putVarint(out, utf8.size());
        out += utf8;
        break;
    }
    case RbKind::kName:
        putRaw(out, rb.resval.rlname[0]);
        break;
    case RbKind::kBinary:
        putVarint(out, Adesk::UInt64(rb.resval.rbinary.clen));
        out.append(rb.resval.rbinary.buf, size_t(rb.resval.rbinary.clen));
        break;
    default:
        break;
    }
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
    std::string body;
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
        const RbKind kind = acutRbKind(rb->restype);
        if (kind == RbKind::kInvalid) return Acad::eInvalidResBuf;
        const bool zero = isZero(*rb, kind);
        putVarint(body, (Adesk::UInt64(Adesk::UInt16(rb->restype)) << 1) | (zero ? 1 : 0));
        if (!zero) putValue(body, *rb, kind);
    }
    if (body.empty()) {
        packed.reset();
        return Acad::eOk;
    }
    std::string block;
    putVarint(block, body.size());
    block += body;
    packed = std::make_unique_for_overwrite<unsigned char[]>(block.size());
    std::memcpy(packed.get(), block.data(), block.size());
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
