// Reading back what the export wrote: an object's params as numbers and text, for the export
// tests of every family.
#pragma once

#include <qel/qel.h>

#include <cmath>
#include <string>
#include <vector>

namespace qelintest {

// A real or an array of them; empty without the param.
inline std::vector<double> reals(QelObject* object, const char* name) {
    QelParam* param = object ? object->GetParam(name, 0) : nullptr;
    if (!param) return {};
    if (param->GetArraySize() == 0) {
        double value = 0;
        param->GetValue(value);
        return {value};
    }
    double* values = nullptr;
    unsigned count = 0;
    param->GetValue(values, count, false);
    return std::vector<double>(values, values + count);
}

// The first real; NaN without the param, so that no expected value matches it.
inline double real(QelObject* object, const char* name) {
    const std::vector<double> values = reals(object, name);
    return values.empty() ? std::nan("") : values[0];
}

// An array param of the file's own element type; empty without it.
template <class T>
std::vector<T> array(QelObject* object, const char* name) {
    QelParam* param = object ? object->GetParam(name, 0) : nullptr;
    if (!param) return {};
    T* values = nullptr;
    unsigned count = 0;
    param->GetValue(values, count, false);
    return std::vector<T>(values, values + count);
}

inline std::string text(QelObject* object, const char* name) {
    QelParam* param = object ? object->GetParam(name, 0) : nullptr;
    if (!param) return "<none>";
    const char* value = "";
    param->GetValue(value);
    return value;
}

} // namespace qelintest
