// The editor's side of the host interface in one include: commands and input, documents,
// modules and the command stack. Modules include it beside <arx/arx.h>.
#pragma once

#include "arx/accmd.h"
#include "arx/acdocman.h"
#include "arx/aced.h"
#include "arx/rxregsvc.h"
