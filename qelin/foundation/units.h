// Metres of the object file to drawing units and back, by the ten rows of the unit table that
// the two options dialogs show, and by the host's insert-units codes for the contour importer.
#pragma once

#include <array>

struct QelUnitRow {
    const wchar_t* name; // as the combo boxes and the log show it
    double (*toDrawing)(double metres, double importScale);
    double (*toMetres)(double drawing, double exportScale);
};

// The ten rows, then the end row of an empty name. Row 9 is "User defined".
extern const std::array<QelUnitRow, 11> QelUnitTable;
inline constexpr int QelUserDefinedUnit = 9;

// Converts by the row at index; false, with the message box "Error converting units", for an
// index past 9. To drawing leaves out alone then; to metres writes the value unchanged.
bool QelUnitsToDrawing(double value, double* out, int unitIndex, double importScale);
bool QelUnitsToMetres(double value, double* out, int unitIndex, double exportScale);

// Metres to the unit of an insert-units code 0 to 16; false and the same message past 16.
bool QelConvertByInsertUnits(double metres, double* out, int code);
