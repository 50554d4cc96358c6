#pragma once

#include "arx/adesk.h"

// 0x00RRGGBB of an entry of the colour index.
Adesk::UInt32 aciToRgb(int index);
// The nearest entry from 1 to 255, the lowest on ties.
Adesk::UInt8 rgbToAci(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);
