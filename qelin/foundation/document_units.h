// Conversions by the units that the current document's import and export were set to.
#pragma once

// Metres of the file to drawing units by importUnitIndex (and importScale for "User defined").
// False, with "Error converting units", for an index past the table; out is then left alone.
bool QelMetresToDrawing(double metres, double* out);
// Drawing units to metres by exportUnitIndex (and exportScale). False, with the same message,
// for an index past the table; out then gets the value unchanged.
bool QelDrawingToMetres(double value, double* out);
