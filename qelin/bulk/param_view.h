// Array params read in place: the pointer is the param's own storage, valid while the object
// lives. A param of another type counts as absent, so a file can never make a read take the
// wrong element size.
#pragma once

#include "objectfile/param_read.h"

#include <qel/qel.h>

#include <cmath>
#include <type_traits>

template <typename T>
struct QelArrayView {
    T* data = nullptr;
    unsigned count = 0;

    bool empty() const { return count == 0; }
    const T& operator[](unsigned i) const { return data[i]; }
};

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
        for (unsigned i = 0; i < out.count; ++i)
            if (!std::isfinite(out.data[i])) {
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
