#include "objectfile/param_read.h"

#include "foundation/error_report.h"
#include "foundation/string_ring.h"
#include "foundation/units.h"
#include "shell/doc_data.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

QelParamReadWatcher g_watcher = nullptr;
QelReadingObject* g_reading = nullptr;

// With a type, a param of another type counts as absent; without, a mistyped param is left to
// the library, which refuses to read it (the structure of the file: its walk ends there).
QelParam* find(QelObject* object, const char* name, int type = 0) {
    QelParam* param = QelParamOf(object, name);
    if (param && type && param->GetType() != type) return nullptr;
    return param;
}

template <typename T>
unsigned appendArray(QelParam* param, QelArray<T>& out) {
    T* values = nullptr;
    unsigned count = 0;
    param->GetValue(values, count, false);
    for (unsigned i = 0; i < count; ++i)
        out.Append(values[i]);
    return count;
}

template <typename T>
bool readArray(QelObject* object, const char* name, QelArray<T>& out) {
    QelParam* param = find(object, name);
    if (!param) return false;
    appendArray(param, out);
    return true;
}

} // namespace

QelParam* QelParamOf(QelObject* object, const char* name) {
    if (!object) return nullptr;
    if (g_watcher) g_watcher(*object, name);
    return object->GetParam(name, 0);
}

void QelWatchParamReads(QelParamReadWatcher watcher) {
    g_watcher = watcher;
}

QelReadingObject::QelReadingObject(const char* className, unsigned reference)
    : m_className(className), m_reference(reference), m_outer(g_reading) {
    g_reading = this;
}

QelReadingObject::~QelReadingObject() {
    g_reading = m_outer;
}

bool QelRefuseValue(const char* name, double value, const char* why) {
    char shown[32];
    std::snprintf(shown, sizeof shown, "%g", value);
    CString text;
    if (g_reading) {
        g_reading->m_refused = true;
        text.Format(L"\nObject %u (%hs): param \"%hs\" holds %hs, %hs: the object fails.",
                    g_reading->m_reference, g_reading->m_className, name, shown, why);
    } else {
        text.Format(L"\nParam \"%hs\" holds %hs, %hs.", name, shown, why);
    }
    QelReportError(text);
    return false;
}

bool QelFiniteValues(const char* name, const double* values, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        if (!std::isfinite(values[i]))
            return QelRefuseValue(name, values[i], "which is not a number");
    return true;
}

bool QelIsNumberType(QelParamType type) {
    switch (type) {
    case QelBoolType:
    case QelShortType:
    case QelIntType:
    case QelUIntType:
    case QelFloatType:
    case QelDoubleType:
        return true;
    default:
        return false;
    }
}

bool QelReadString(QelObject* object, const char* name, CString& out) {
    QelParam* param = find(object, name);
    if (!param) return false;
    const char* text = nullptr;
    param->GetValue(text);
    out = QelWideFromNarrow(text ? text : "");
    return true;
}

bool QelReadUnsigned(QelObject* object, const char* name, unsigned& out) {
    QelParam* param = find(object, name);
    if (!param) return false;
    param->GetValue(out);
    return true;
}

bool QelReadInt(QelObject* object, const char* name, int& out) {
    QelParam* param = find(object, name, QelIntType);
    if (!param) return false;
    param->GetValue(out);
    return true;
}

bool QelReadShort(QelObject* object, const char* name, short& out) {
    QelParam* param = find(object, name);
    if (!param) return false;
    param->GetValue(out);
    return true;
}

bool QelReadBool(QelObject* object, const char* name, bool& out) {
    QelParam* param = find(object, name, QelBoolType);
    if (!param) return false;
    param->GetValue(out);
    return true;
}

bool QelReadDouble3(QelObject* object, const char* name, double out[3]) {
    QelParam* param = find(object, name, QelDoubleArrayType);
    if (!param) return false;
    double* values = nullptr;
    unsigned count = 0;
    param->GetValue(values, count, false);
    if (!QelFiniteValues(name, values, count < 3 ? count : 3)) return false;
    for (unsigned i = 0; i < count && i < 3; ++i)
        out[i] = values[i];
    return true;
}

bool QelReadColour(QelObject* object, unsigned char& red, unsigned char& green,
                   unsigned char& blue) {
    QelParam* appearance = find(object, "appearance", QelObjectType);
    if (!appearance) return false;
    QelObject* nested = nullptr;
    appearance->GetValue(nested);
    QelParam* colour = find(nested, "diffuseColor", QelByteArrayType);
    if (!colour) return false;
    unsigned char* bytes = nullptr;
    unsigned count = 0;
    colour->GetValue(bytes, count, false);
    if (count < 3) return false;
    red = bytes[0];
    green = bytes[1];
    blue = bytes[2];
    return true;
}

bool QelReadUnsignedArray(QelObject* object, const char* name, QelArray<unsigned>& out) {
    QelParam* param = find(object, name);
    return param && appendArray(param, out) > 0;
}

bool QelReadIntArray(QelObject* object, const char* name, QelArray<int>& out) {
    return readArray(object, name, out);
}

bool QelReadShortArray(QelObject* object, const char* name, QelArray<short>& out) {
    return readArray(object, name, out);
}

bool QelReadByteArray(QelObject* object, const char* name, QelArray<unsigned char>& out) {
    return readArray(object, name, out);
}

namespace {

// The values of a double array param, or false for an absent param, one of another type or one
// with a value that is not a finite number (told).
bool doubleArray(QelObject* object, const char* name, double*& values, unsigned& count) {
    QelParam* param = QelParamOf(object, name);
    if (!param || param->GetType() != QelDoubleArrayType) return false;
    values = nullptr;
    count = 0;
    param->GetValue(values, count, false);
    return QelFiniteValues(name, values, count);
}

double maybeConverted(double value, bool convert) {
    return convert ? QelToDrawing(value) : value;
}

// The farthest a length or coordinate may reach, in drawing units: beyond it a double's spacing
// exceeds a tenth of a unit, so that a part of some units can no longer be told from a point
// and the modeller's bodies there cannot be written.
constexpr double kFarthest = 1e15;

// A length read as it comes to the drawing: a finite number within reach (told otherwise).
bool withinReach(const char* name, double value) {
    if (!QelFiniteValues(name, &value, 1)) return false;
    if (std::fabs(value) > kFarthest)
        return QelRefuseValue(name, value, "which lies beyond the drawing's reach");
    return true;
}

// A number param as a double, in drawing units when converted; false for an absent param, one
// that holds no number, or a value that is not finite before or after the units (told).
bool readNumber(QelObject* object, const char* name, double& value, bool convert) {
    QelParam* param = QelParamOf(object, name);
    if (!param || !QelIsNumberType(param->GetType())) return false;
    double read = 0.0;
    param->GetValue(read);
    if (!QelFiniteValues(name, &read, 1)) return false;
    read = maybeConverted(read, convert);
    if (convert && !withinReach(name, read)) return false;
    value = read;
    return true;
}

// Values that become lengths in the drawing must be within reach there.
bool convertedWithinReach(const char* name, const double* values, unsigned count, bool convert) {
    if (!convert) return true;
    for (unsigned i = 0; i < count; ++i)
        if (!withinReach(name, maybeConverted(values[i], true))) return false;
    return true;
}

// A double array whose first `checked` values become lengths in the drawing: read as
// doubleArray does, and refused (told) when one of those lies beyond reach once converted.
bool lengthArray(QelObject* object, const char* name, double*& values, unsigned& count,
                 bool convert, unsigned checked = ~0u) {
    return doubleArray(object, name, values, count) &&
           convertedWithinReach(name, values, std::min(count, checked), convert);
}

// n points from 3n doubles; with dropClosing, a last point within 1e-5 of the first in each of
// x, y and z (as the file has them) is left out.
bool readPoints(QelObject* object, const char* name, AcGePoint3dArray& points, bool convert,
                bool dropClosing) {
    double* read = nullptr;
    unsigned count = 0;
    if (!lengthArray(object, name, read, count, convert)) return false;
    unsigned used = count - count % 3;
    if (dropClosing && used >= 6) {
        const double* last = read + used - 3;
        if (std::fabs(last[0] - read[0]) <= 1e-5 && std::fabs(last[1] - read[1]) <= 1e-5 &&
            std::fabs(last[2] - read[2]) <= 1e-5)
            used -= 3;
    }
    for (unsigned i = 0; i < used; i += 3)
        points.append(AcGePoint3d(maybeConverted(read[i], convert),
                                  maybeConverted(read[i + 1], convert),
                                  maybeConverted(read[i + 2], convert)));
    return true;
}

QelObject* nestedObject(QelObject* object, const char* name) {
    QelParam* param = QelParamOf(object, name);
    if (!param || param->GetType() != QelObjectType) return nullptr;
    QelObject* nested = nullptr;
    param->GetValue(nested);
    return nested;
}

double namedDimension(QelObject* object, const char* name, const wchar_t* message) {
    double value = 0.0;
    if (GetDoubleParam(object, name, value, true)) return value;
    QelReportError(message);
    return 0.0;
}

} // namespace

double QelToDrawing(double metres) {
    const CDocData& doc = QelDocData();
    double out = metres;
    QelUnitsToDrawing(metres, &out, doc.importUnitIndex, doc.importScale);
    return out;
}

bool GetDoubleParam(QelObject* object, const char* name, double& value, bool convert) {
    return readNumber(object, name, value, convert);
}

bool GetFloatParam(QelObject* object, const char* name, float& value, bool convert) {
    double read = 0.0;
    if (!readNumber(object, name, read, convert)) return false;
    const float narrow = float(read);
    const double widened = narrow;
    if (!QelFiniteValues(name, &widened, 1)) return false;
    value = narrow;
    return true;
}

bool GetPointParam(QelObject* object, const char* name, AcGePoint3d& point, bool convert) {
    double* values = nullptr;
    unsigned count = 0;
    if (!lengthArray(object, name, values, count, convert, 3)) return false;
    double xyz[3] = {0.0, 0.0, 0.0};
    for (unsigned i = 0; i < count && i < 3; ++i)
        xyz[i] = maybeConverted(values[i], convert);
    point.set(xyz[0], xyz[1], xyz[2]);
    return true;
}

bool GetDoubleArrayParam(QelObject* object, const char* name, AcGeDoubleArray& values,
                         bool convert) {
    double* read = nullptr;
    unsigned count = 0;
    if (!lengthArray(object, name, read, count, convert)) return false;
    for (unsigned i = 0; i < count; ++i)
        values.append(maybeConverted(read[i], convert));
    return true;
}

bool GetPoint3dArrayParam(QelObject* object, const char* name, AcGePoint3dArray& points,
                          bool convert) {
    return readPoints(object, name, points, convert, false);
}

bool GetFitPointArrayParam(QelObject* object, const char* name, AcGePoint3dArray& points,
                           bool convert) {
    // A closed list repeats its first point at the end: the curve closes itself.
    return readPoints(object, name, points, convert, convert);
}

bool GetPoint2dArrayParam(QelObject* object, const char* name, AcGePoint2dArray& points,
                          bool convert) {
    double* read = nullptr;
    unsigned count = 0;
    if (!lengthArray(object, name, read, count, convert)) return false;
    for (unsigned i = 0; i + 2 <= count; i += 2)
        points.append(
            AcGePoint2d(maybeConverted(read[i], convert), maybeConverted(read[i + 1], convert)));
    return true;
}

bool GetPoseTranslation(QelObject* object, const char* name, AcGePoint3d& point) {
    return GetPointParam(nestedObject(object, name), "translation", point, true);
}

bool GetPoseRotation(QelObject* object, const char* name, double quad[4]) {
    double* values = nullptr;
    unsigned count = 0;
    if (!lengthArray(nestedObject(object, name), "rotation", values, count, true, 3)) return false;
    for (unsigned i = 0; i < count && i < 4; ++i)
        quad[i] = i < 3 ? QelToDrawing(values[i]) : values[i];
    return true;
}

bool GetSubObjectDouble(QelObject* object, const char* name, const char* subName, double& value) {
    return GetDoubleParam(nestedObject(object, name), subName, value, true);
}

double GetWidth(QelObject* object) {
    return namedDimension(object, "width", L"\nError getting width of object.");
}
double GetDepth(QelObject* object) {
    return namedDimension(object, "depth", L"\nError getting depth of object.");
}
double GetFlangeThickness(QelObject* object) {
    return namedDimension(object, "flangeThickness", L"\nError getting flangeThickness of object.");
}
double GetWebThickness(QelObject* object) {
    return namedDimension(object, "webThickness", L"\nError getting webThickness of object.");
}
double GetLength(QelObject* object) {
    return namedDimension(object, "length", L"\nError getting Length of object.");
}

bool QelRequireLength(QelObject* object, const char* name, double& value, const wchar_t* message) {
    if (GetDoubleParam(object, name, value, true)) return true;
    QelReportError(message);
    return false;
}

bool QelRequireValue(QelObject* object, const char* name, double& value, const wchar_t* message) {
    if (GetDoubleParam(object, name, value, false)) return true;
    QelReportError(message);
    return false;
}
