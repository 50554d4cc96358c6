#pragma once

#include <qel/qel.h>

#include <string>
#include <vector>

// The object's public face lives inside its Impl, so that one allocation makes an object.
struct QelObject::Impl {
    QelObject face{this};
    std::string className;
    std::vector<QelParam*> params;
    unsigned refs = 1;

    ~Impl();
};

namespace qel {
// An object with one reference, for the decoder.
QelObject* makeObject(std::string className);
} // namespace qel
