// For code not yet moved to the helper headers: everything the creators shared, by its new home.
#pragma once

#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "objectfile/param_read.h"
