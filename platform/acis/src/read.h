// SAT records walked from the body down to points, into the kernel's boundary description.
#pragma once

#include <arxsolids/types.h>

#include <optional>
#include <vector>

#include "text.h"

namespace acis {

struct SatBody {
    std::vector<arxsolids::Brep> lumps; // one boundary per lump
    bool doubleSided = false;           // faces of a sheet (a region), not of a solid
    std::optional<arxsolids::Matrix> transform;
};

// The first body of the document. Throws SatError for broken structure (dangling or mistyped
// references, rings that do not close, a wrong body count) and Unrepresentable (geometry.h) for
// what the host has no form for.
SatBody readBody(const SatDocument& doc);

} // namespace acis
