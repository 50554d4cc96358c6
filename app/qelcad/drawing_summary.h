// What the working drawing holds, in a few lines: its layers with their state, its entities by
// kind and layer, and its named UCSs.
#pragma once

#include <iosfwd>

namespace qelcad {

void printDrawingSummary(std::ostream& out);

} // namespace qelcad
