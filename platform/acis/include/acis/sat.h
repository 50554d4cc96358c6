// Solids and regions as ACIS SAT text, the form a drawing file embeds them in.
#pragma once

#include <string>

#include "arx/acadstrc.h"

class AcDbEntity;

namespace acis {

// SAT text (version 700; '\n' after each line; ends with the "End-of-ACIS-data" line) of the
// body of an AcDb3dSolid or AcDbRegion. A body kept as raw text comes back unchanged. An empty
// body, another class of entity (eWrongObjectType) or a face the writer has no exact form for
// (eNotImplementedYet) fails with a message, and `sat` is left as it was.
Acad::ErrorStatus satFromEntity(const AcDbEntity* entity, std::string& sat, std::string& message);

// Gives an AcDb3dSolid or AcDbRegion (open for write) the body that sat describes. What the host
// cannot represent is kept as raw text (the entity shows as a proxy solid), message says why, and
// satFromEntity gives it back unchanged. On failure message says what is wrong and where (line of
// the SAT text), and the entity is unchanged.
Acad::ErrorStatus entityFromSat(const std::string& sat, AcDbEntity* entity, std::string& message);

} // namespace acis
