#include "objectfile/param_read.h"

#include "foundation/error_report.h"
#include "foundation/string_ring.h"

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
