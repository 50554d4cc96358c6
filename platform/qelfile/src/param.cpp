#include "errors.h"
#include "object_impl.h"
#include "param_impl.h"

#include <cstring>
#include <type_traits>

QelParam::Impl::~Impl() {
    if (object) object->UnRef();
}

QelParam::QelParam(Impl* impl) : m_impl(impl) {}
QelParam::~QelParam() = default;

using qel::typeName;

namespace {

template <typename T>
constexpr QelParamType scalarType() {
    if constexpr (std::is_same_v<T, bool>)
        return QelBoolType;
    else if constexpr (std::is_same_v<T, short>)
        return QelShortType;
    else if constexpr (std::is_same_v<T, int>)
        return QelIntType;
    else if constexpr (std::is_same_v<T, unsigned>)
        return QelUIntType;
    else if constexpr (std::is_same_v<T, float>)
        return QelFloatType;
    else
        return QelDoubleType;
}

template <typename T>
constexpr QelParamType arrayType() {
    if constexpr (std::is_same_v<T, unsigned char>)
        return QelByteArrayType;
    else if constexpr (std::is_same_v<T, short>)
        return QelShortArrayType;
    else if constexpr (std::is_same_v<T, int>)
        return QelIntArrayType;
    else if constexpr (std::is_same_v<T, unsigned>)
        return QelUIntArrayType;
    else if constexpr (std::is_same_v<T, float>)
        return QelFloatArrayType;
    else
        return QelDoubleArrayType;
}

template <typename T>
const char* cppName() {
    return typeName(scalarType<T>());
}

[[noreturn]] void mismatch(const QelParam::Impl& p, const char* wanted) {
    qel::fail("Param '{}' holds a {}, not a {}", p.name, typeName(p.type), wanted);
}

// Numeric scalars convert among themselves as C++ converts them.
template <typename T>
void readScalar(const QelParam::Impl& p, T& value) {
    switch (p.type) {
    case QelBoolType:
        value = static_cast<T>(p.scalar.b);
        return;
    case QelShortType:
        value = static_cast<T>(p.scalar.s);
        return;
    case QelIntType:
        value = static_cast<T>(p.scalar.i);
        return;
    case QelUIntType:
        value = static_cast<T>(p.scalar.u);
        return;
    case QelFloatType:
        value = static_cast<T>(p.scalar.f);
        return;
    case QelDoubleType:
        value = static_cast<T>(p.scalar.d);
        return;
    default:
        mismatch(p, cppName<T>());
    }
}

template <typename T>
void readArray(QelParam::Impl& p, T*& values, unsigned& count, bool copy) {
    if (p.type != arrayType<T>()) mismatch(p, typeName(arrayType<T>()));
    count = p.count;
    if (p.count == 0) {
        values = nullptr;
        return;
    }
    if (!copy) {
        values = static_cast<T*>(const_cast<void*>(p.data));
        return;
    }
    values = new T[p.count];
    std::memcpy(values, p.data, sizeof(T) * p.count);
}

QelParam::Impl* newImpl(const char* name, QelParamType type) {
    auto* impl = new QelParam::Impl;
    impl->name = name ? name : "";
    impl->type = type;
    return impl;
}

template <typename T>
QelParam* createScalar(const char* name, T value) {
    auto* impl = newImpl(name, scalarType<T>());
    if constexpr (std::is_same_v<T, bool>)
        impl->scalar.b = value;
    else if constexpr (std::is_same_v<T, short>)
        impl->scalar.s = value;
    else if constexpr (std::is_same_v<T, int>)
        impl->scalar.i = value;
    else if constexpr (std::is_same_v<T, unsigned>)
        impl->scalar.u = value;
    else if constexpr (std::is_same_v<T, float>)
        impl->scalar.f = value;
    else
        impl->scalar.d = value;
    return qel::makeParam(impl);
}

template <typename T>
QelParam* createArray(const char* name, const T* values, unsigned count) {
    auto* impl = newImpl(name, arrayType<T>());
    if (values && count) {
        impl->owned.reset(new unsigned char[sizeof(T) * count]);
        std::memcpy(impl->owned.get(), values, sizeof(T) * count);
        impl->data = impl->owned.get();
        impl->count = count;
    }
    return qel::makeParam(impl);
}

} // namespace

const char* QelParam::GetName() const {
    return m_impl->name.c_str();
}
QelParamType QelParam::GetType() const {
    return m_impl->type;
}
unsigned QelParam::GetArraySize() const {
    return qel::isArray(m_impl->type) ? m_impl->count : 0;
}

void QelParam::GetValue(bool& value) const {
    readScalar(*m_impl, value);
}
void QelParam::GetValue(short& value) const {
    readScalar(*m_impl, value);
}
void QelParam::GetValue(int& value) const {
    readScalar(*m_impl, value);
}
void QelParam::GetValue(unsigned& value) const {
    readScalar(*m_impl, value);
}
void QelParam::GetValue(float& value) const {
    readScalar(*m_impl, value);
}
void QelParam::GetValue(double& value) const {
    readScalar(*m_impl, value);
}

void QelParam::GetValue(const char*& value) const {
    if (m_impl->type != QelStringType) mismatch(*m_impl, "string");
    value = m_impl->text.c_str();
}

void QelParam::GetValue(QelObject*& value) const {
    if (m_impl->type != QelObjectType) mismatch(*m_impl, "object");
    value = m_impl->object;
}

void QelParam::GetValue(double*& v, unsigned& n, bool copy) {
    readArray(*m_impl, v, n, copy);
}
void QelParam::GetValue(float*& v, unsigned& n, bool copy) {
    readArray(*m_impl, v, n, copy);
}
void QelParam::GetValue(short*& v, unsigned& n, bool copy) {
    readArray(*m_impl, v, n, copy);
}
void QelParam::GetValue(unsigned char*& v, unsigned& n, bool copy) {
    readArray(*m_impl, v, n, copy);
}
void QelParam::GetValue(int*& v, unsigned& n, bool copy) {
    readArray(*m_impl, v, n, copy);
}
void QelParam::GetValue(unsigned*& v, unsigned& n, bool copy) {
    readArray(*m_impl, v, n, copy);
}

QelParam* QelParam::Create(const char* name, const char* value) {
    auto* impl = newImpl(name, QelStringType);
    impl->text = value ? value : "";
    return qel::makeParam(impl);
}
QelParam* QelParam::Create(const char* name, double value) {
    return createScalar(name, value);
}
QelParam* QelParam::Create(const char* name, int value) {
    return createScalar(name, value);
}
QelParam* QelParam::Create(const char* name, unsigned value) {
    return createScalar(name, value);
}
QelParam* QelParam::Create(const char* name, short value) {
    return createScalar(name, value);
}
QelParam* QelParam::Create(const char* name, float value) {
    return createScalar(name, value);
}
QelParam* QelParam::Create(const char* name, bool value) {
    return createScalar(name, value);
}

QelParam* QelParam::Create(const char* name, QelObject* value) {
    auto* impl = newImpl(name, QelObjectType);
    if (value) value->AddRef();
    impl->object = value;
    return qel::makeParam(impl);
}

QelParam* QelParam::Create(const char* name, const double* v, unsigned n) {
    return createArray(name, v, n);
}
QelParam* QelParam::Create(const char* name, const float* v, unsigned n) {
    return createArray(name, v, n);
}
QelParam* QelParam::Create(const char* name, const int* v, unsigned n) {
    return createArray(name, v, n);
}
QelParam* QelParam::Create(const char* name, const unsigned* v, unsigned n) {
    return createArray(name, v, n);
}
QelParam* QelParam::Create(const char* name, const short* v, unsigned n) {
    return createArray(name, v, n);
}
QelParam* QelParam::Create(const char* name, const unsigned char* v, unsigned n) {
    return createArray(name, v, n);
}
