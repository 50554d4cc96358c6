// Reading back what the export wrote: an object's params as numbers and text, for the export
// tests of every family.
#pragma once

#include "objectfile/param_read.h"

#include <qel/qel.h>

#include <array>
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

// Where an object's pose puts it: the rotation as a matrix (rows) and the translation; the
// identity without a pose.
struct Placement {
    double r[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    double t[3] = {0, 0, 0};
    std::array<double, 3> apply(double x, double y, double z) const {
        return {r[0] * x + r[1] * y + r[2] * z + t[0], r[3] * x + r[4] * y + r[5] * z + t[1],
                r[6] * x + r[7] * y + r[8] * z + t[2]};
    }
};

inline Placement placementOf(QelObject* object) {
    Placement placement;
    QelParam* param = object ? object->GetParam("pose", 0) : nullptr;
    if (!param) return placement;
    QelObject* pose = nullptr;
    param->GetValue(pose);
    const std::vector<double> rotation = reals(pose, "rotation");
    if (rotation.size() == 4) rotation_to_affine(rotation.data(), placement.r);
    const std::vector<double> translation = reals(pose, "translation");
    for (std::size_t i = 0; i < translation.size() && i < 3; ++i)
        placement.t[i] = translation[i];
    return placement;
}

} // namespace qelintest
