// A body's boundary written out as SAT records.
#pragma once

#include <arxsolids/types.h>

#include <string>

namespace acis {

// SAT text of a boundary: faces joined through their edges become one lump each. A region's
// faces are written double-sided. Throws Unrepresentable (geometry.h) for a face or edge with
// no exact form.
std::string writeSat(const arxsolids::Brep& brep, bool region);

} // namespace acis
