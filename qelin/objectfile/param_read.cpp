#include "objectfile/param_read.h"

#include "foundation/string_ring.h"

namespace {

QelParamReadWatcher g_watcher = nullptr;

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
