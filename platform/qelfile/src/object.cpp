#include "object_impl.h"
#include "param_impl.h"

#include <algorithm>
#include <cstring>

QelObject::QelObject(Impl* impl) : m_impl(impl) {}

QelObject::~QelObject() = default;

QelObject::Impl::~Impl() {
    for (QelParam* param : params)
        qel::destroyParam(param);
}

namespace qel {
QelObject* makeObject(std::string className) {
    auto* impl = new QelObject::Impl;
    impl->className = std::move(className);
    return &impl->face;
}
} // namespace qel

QelObject* QelObject::Create(const char* className) {
    return qel::makeObject(className ? className : "");
}

const char* QelObject::GetName() const {
    return m_impl->className.c_str();
}

QelParam* QelObject::GetParam(const char* name, unsigned index) {
    if (!name) return nullptr;
    for (QelParam* param : m_impl->params)
        if (qel::implOf(param)->name == name && index-- == 0) return param;
    return nullptr;
}

QelParam* QelObject::GetParam(unsigned position) const {
    return position < m_impl->params.size() ? m_impl->params[position] : nullptr;
}

unsigned QelObject::GetParamCount() const {
    return static_cast<unsigned>(m_impl->params.size());
}

void QelObject::AddOrReplaceParam(QelParam* param) {
    if (!param) return;
    auto& params = m_impl->params;
    const std::string& name = qel::implOf(param)->name;
    auto same = std::find_if(params.begin(), params.end(),
                             [&](QelParam* p) { return qel::implOf(p)->name == name; });
    if (same == params.end()) {
        params.push_back(param);
    } else if (*same != param) {
        qel::destroyParam(*same);
        *same = param;
    }
}

void QelObject::DeleteParam(const char* name) {
    if (!name) return;
    auto& params = m_impl->params;
    auto it = std::find_if(params.begin(), params.end(),
                           [&](QelParam* p) { return qel::implOf(p)->name == name; });
    if (it == params.end()) return;
    qel::destroyParam(*it);
    params.erase(it);
}

void QelObject::AddRef() {
    ++m_impl->refs;
}

void QelObject::UnRef() {
    if (--m_impl->refs == 0) delete m_impl;
}
