#pragma once

#include <qel/qel.h>

#include <string>
#include <vector>

struct QelObject::Impl {
    std::string className;
    std::vector<QelParam*> params;
    unsigned refs = 1;
};

namespace qel {
// An object with one reference, for the decoder.
QelObject* makeObject(std::string className);
} // namespace qel
