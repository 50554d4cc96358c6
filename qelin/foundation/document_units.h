// Conversions by the units that the current document's import and export were set to.
#pragma once

#include <win/win.h>

// Metres of the file to drawing units by importUnitIndex (and importScale for "User defined").
// False, with "Error converting units", for an index past the table; out is then left alone.
bool QelMetresToDrawing(double metres, double* out);
// Drawing units to metres by exportUnitIndex (and exportScale). False, with the same message,
// for an index past the table; out then gets the value unchanged.
bool QelDrawingToMetres(double value, double* out);

// The host's MEASUREINIT: 0 for an imperial drawing; 1 when it can't be read.
short QelMeasureInit();
// A scale as the dialogs' scale boxes show it: up to 15 significant digits.
CString QelScaleText(double scale);
