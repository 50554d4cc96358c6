// The boundary-representation walk of solids and regions, in one include.
#pragma once

#include "arx/brent.h"
#include "arx/brgbl.h"
#include "arx/brtrav.h"
