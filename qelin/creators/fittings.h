// The creators of the piping fittings: Valve, Flange and Tee. Each makes its solids in one
// anonymous group, a member record with its part index on every solid.
#pragma once

#include "creators/creator.h"

QEL_CREATOR(CreateValve);
QEL_CREATOR(CreateFlange);
QEL_CREATOR(CreateTee);
