#include <qel/qel.h>

#include <cstdlib>
#include <cstring>

namespace {
char* duplicate(const char* text) {
    if (!text) text = "";
    const std::size_t n = std::strlen(text) + 1;
    char* copy = static_cast<char*>(std::malloc(n));
    if (copy) std::memcpy(copy, text, n);
    return copy;
}
} // namespace

QelException::QelException(const char* reason) : m_reason(duplicate(reason)) {}
QelException::QelException(const QelException& other) : m_reason(duplicate(other.m_reason)) {}

QelException& QelException::operator=(const QelException& other) {
    if (this != &other) {
        char* copy = duplicate(other.m_reason);
        std::free(m_reason);
        m_reason = copy;
    }
    return *this;
}

QelException::~QelException() {
    std::free(m_reason);
}

const char* QelException::GetReason() const {
    return m_reason ? m_reason : "out of memory";
}
