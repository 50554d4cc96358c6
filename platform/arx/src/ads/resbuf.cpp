#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "arx/adsdef.h"
#include "rbkind.h"

resbuf* acutNewRb(int type) {
    auto* rb = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
    if (rb != nullptr) rb->restype = static_cast<short>(type);
    return rb;
}

int acutRelRb(resbuf* chain) {
    while (chain != nullptr) {
        resbuf* next = chain->rbnext;
        const RbKind kind = acutRbKind(chain->restype);
        if (kind == RbKind::kString) std::free(chain->resval.rstring);
        if (kind == RbKind::kBinary) std::free(chain->resval.rbinary.buf);
        std::free(chain);
        chain = next;
    }
    return RTNORM;
}

ACHAR* acutNewString(const ACHAR* text) {
    if (text == nullptr) return nullptr;
    const size_t n = std::wcslen(text);
    auto* copy = static_cast<ACHAR*>(std::malloc((n + 1) * sizeof(ACHAR)));
    if (copy != nullptr) std::memcpy(copy, text, (n + 1) * sizeof(ACHAR));
    return copy;
}

void acutDelString(ACHAR*& text) {
    std::free(text);
    text = nullptr;
}

resbuf* acutBuildList(int type, ...) {
    va_list args;
    va_start(args, type);
    resbuf* head = nullptr;
    resbuf* tail = nullptr;
    bool failed = false;
    for (; type != 0; type = va_arg(args, int)) {
        const RbKind kind = acutRbKind(type);
        resbuf* rb = kind == RbKind::kInvalid ? nullptr : acutNewRb(type);
        if (rb == nullptr) {
            failed = true;
            break;
        }
        (head == nullptr ? head : tail->rbnext) = rb;
        tail = rb;
        switch (kind) {
        case RbKind::kReal:
            rb->resval.rreal = va_arg(args, double);
            break;
        case RbKind::kPoint: {
            const double* p = va_arg(args, const double*);
            rb->resval.rpoint[0] = p[0];
            rb->resval.rpoint[1] = p[1];
            rb->resval.rpoint[2] = type == RTPOINT ? 0.0 : p[2];
            break;
        }
        case RbKind::kShort:
            rb->resval.rint = static_cast<short>(va_arg(args, int));
            break;
        case RbKind::kLong:
            rb->resval.rlong = va_arg(args, Adesk::Int32);
            break;
        case RbKind::kInt64:
            rb->resval.mnInt64 = va_arg(args, Adesk::Int64);
            break;
        case RbKind::kString:
            rb->resval.rstring = acutNewString(va_arg(args, const ACHAR*));
            break;
        case RbKind::kName: {
            const Adesk::IntPtr* name = va_arg(args, const Adesk::IntPtr*);
            rb->resval.rlname[0] = name[0];
            rb->resval.rlname[1] = name[1];
            break;
        }
        case RbKind::kBinary: {
            const ads_binary* chunk = va_arg(args, const ads_binary*);
            rb->resval.rbinary.clen = chunk->clen;
            rb->resval.rbinary.buf = static_cast<char*>(std::malloc(size_t(chunk->clen)));
            if (chunk->clen > 0)
                std::memcpy(rb->resval.rbinary.buf, chunk->buf, size_t(chunk->clen));
            break;
        }
        case RbKind::kNone:
        case RbKind::kInvalid:
            break;
        }
    }
    va_end(args);
    if (failed) {
        acutRelRb(head);
        return nullptr;
    }
    return head;
}
