#pragma once

namespace qel {
// True once QelInit was called with the right words.
bool initialised();
} // namespace qel
