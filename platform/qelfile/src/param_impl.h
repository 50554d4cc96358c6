#pragma once

#include <qel/qel.h>

#include "mapping.h"

#include <cstdint>
#include <memory>
#include <string>

// The param's public face lives inside its Impl, so that one allocation makes a param.
struct QelParam::Impl {
    QelParam face{this};
    std::string name;
    QelParamType type = QelUnknownType;
    union {
        bool b;
        short s;
        int i;
        unsigned u;
        float f;
        double d;
    } scalar{};
    std::string text;            // QelStringType
    QelObject* object = nullptr; // QelObjectType; one reference held by the param
    // Arrays: data points either at owned storage or into a mapped file kept alive by mapping.
    const void* data = nullptr;
    std::uint32_t count = 0;
    std::unique_ptr<unsigned char[]> owned;
    std::shared_ptr<const qel::Mapping> mapping;

    ~Impl();
};

struct QelAccess {
    static QelParam* makeParam(QelParam::Impl* impl) { return &impl->face; }
    static QelParam::Impl* impl(const QelParam* p) { return p->m_impl; }
    static void destroy(QelParam* p) { delete p->m_impl; }
};

namespace qel {

// Element size of an array type, 0 for anything else.
std::size_t elementSize(QelParamType type);
bool isArray(QelParamType type);
// "double[]", "int", ... as the JSON form and the messages name them; "unknown" otherwise.
const char* typeName(QelParamType type);

inline QelParam* makeParam(QelParam::Impl* impl) {
    return QelAccess::makeParam(impl);
}
inline QelParam::Impl* implOf(const QelParam* param) {
    return QelAccess::impl(param);
}
inline void destroyParam(QelParam* param) {
    QelAccess::destroy(param);
}

} // namespace qel
