// Solids, regions and surfaces of the host, beside the rest of its interface.
#pragma once

#include "arx/arx.h"
#include "arx/dbregion.h"
#include "arx/dbsol3d.h"
#include "arx/dbsurf.h"
