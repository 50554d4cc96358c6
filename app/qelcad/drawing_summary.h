// What the working drawing holds, in a few lines: its layers with their state, its entities by
// kind and layer, and its named UCSs; and what an object file holds.
#pragma once

#include <iosfwd>
#include <string>

namespace qelcad {

void printDrawingSummary(std::ostream& out);
// The object file's objects, counted by class in the order the classes first appear.
void printObjectFileSummary(std::ostream& out, const std::string& path);

} // namespace qelcad
