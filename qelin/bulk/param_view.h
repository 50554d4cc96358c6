// Array params read in place: the pointer is the param's own storage, valid while the object
// lives. A param of another type counts as absent, so a file can never make a read take the
// wrong element size.
#pragma once

#include "objectfile/param_read.h"

#include <qel/qel.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <type_traits>

template <typename T>
struct QelArrayView {
    T* data = nullptr;
    unsigned count = 0;

    bool empty() const { return count == 0; }
    const T& operator[](unsigned i) const { return data[i]; }
};

// The index of the first real that is not finite (all exponent bits set), count if none. Blocks
// are tested by their bits without a branch per value, which the compiler can vectorise: a
// cloud's millions of coordinates pass at the speed of memory.
template <typename T>
unsigned QelFirstNotFinite(const T* data, unsigned count) {
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    constexpr Bits exponent = sizeof(T) == 4 ? Bits(0x7F800000u) : Bits(0x7FF0000000000000ull);
    constexpr unsigned kBlock = 256;
    for (unsigned begin = 0; begin < count; begin += kBlock) {
        const unsigned end = count - begin < kBlock ? count : begin + kBlock;
        unsigned bad = 0;
        for (unsigned i = begin; i < end; ++i)
            bad |= (std::bit_cast<Bits>(data[i]) & exponent) == exponent;
        if (bad)
            for (unsigned i = begin; i < end; ++i)
                if (!std::isfinite(data[i])) return i;
    }
    return count;
}

// False (and empty) when the param is absent, not of the array type given, or holds a real that
// is not a number.
template <typename T>
bool QelViewArray(QelObject* object, const char* name, QelParamType type, QelArrayView<T>& out) {
    QelParam* param = QelParamOf(object, name);
    if (!param || param->GetType() != type) return false;
    out = QelArrayView<T>();
    param->GetValue(out.data, out.count, false);
    if (!out.data) out.count = 0;
    // Reals are checked where they are read: one that is not a number fails the object, and
    // the array reads as empty.
    if constexpr (std::is_floating_point_v<T>)
        if (const unsigned i = QelFirstNotFinite(out.data, out.count); i < out.count) {
            const double bad = out.data[i];
            out = QelArrayView<T>();
            return QelRefuseValue(name, bad, "which is not a number");
        }
    return true;
}

// The first of two names that is present: the newer name, then the older one.
template <typename T>
bool QelViewArray(QelObject* object, const char* name, const char* olderName, QelParamType type,
                  QelArrayView<T>& out) {
    return QelViewArray(object, name, type, out) || QelViewArray(object, olderName, type, out);
}

// A float param (0.0 when absent or not a number); no conversion.
inline float QelFloatOrZero(QelObject* object, const char* name) {
    QelParam* param = QelParamOf(object, name);
    if (!param) return 0.0f;
    switch (param->GetType()) {
    case QelFloatType:
    case QelDoubleType:
    case QelIntType:
    case QelShortType:
    case QelUIntType: {
        float value = 0.0f;
        param->GetValue(value);
        return value;
    }
    default:
        return 0.0f;
    }
}
