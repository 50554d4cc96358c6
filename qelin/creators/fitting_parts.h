// For code not yet moved to the helper headers: the parts of fittings, now solid_parts.h.
#pragma once

#include "creators/helpers/solid_parts.h"
