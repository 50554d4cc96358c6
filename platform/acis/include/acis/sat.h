// Solids and regions as ACIS SAT text, the form a drawing file embeds them in.
#pragma once

#include <string>

#include "arx/acadstrc.h"

class AcDbEntity;

namespace acis {

// SAT text (version 700; '\n' after each line; ends with the "End-of-ACIS-data" line) of the
// body of an AcDb3dSolid or AcDbRegion. A body kept as raw text, and a solid unchanged since it
// was read from text, come back as that text. An empty
// body, another class of entity (eWrongObjectType) or a face the writer has no exact form for
// (eNotImplementedYet) fails with a message, and `sat` is left as it was.
Acad::ErrorStatus satFromEntity(const AcDbEntity* entity, std::string& sat, std::string& message);

// When a solid's body is built from its text: at once, or when something first asks for the body
// (a drawing of many solids opens without building any; the text is read through and checked
// either way). Regions are always built at once.
enum class BuildTime { kNow, kOnFirstUse };

// Gives an AcDb3dSolid or AcDbRegion (open for write) the body that sat describes. What the host
// cannot represent is kept as raw text (the entity shows as a proxy solid), message says why, and
// satFromEntity gives it back unchanged; a solid built later that turns out so becomes such a
// proxy then. A solid keeps the text as its stored form until it changes: satFromEntity gives it
// back byte for byte. On failure message says what is wrong and where (line of the SAT text),
// and the entity is unchanged.
Acad::ErrorStatus entityFromSat(const std::string& sat, AcDbEntity* entity, std::string& message,
                                BuildTime when = BuildTime::kNow);

} // namespace acis
