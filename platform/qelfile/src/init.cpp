#include <qel/qel.h>

#include "init.h"

// The words identify the caller's build of the interface; they never change.
const std::uint32_t QelInitWords[2] = {0x51454C31u, 0x00010000u};

namespace {
bool g_initialised = false;
}

void QelInit(unsigned, unsigned, const std::uint32_t* words) {
    if (words && words[0] == QelInitWords[0] && words[1] == QelInitWords[1]) g_initialised = true;
}

namespace qel {
bool initialised() {
    return g_initialised;
}
} // namespace qel
