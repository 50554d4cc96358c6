#include "units.h"

#include <win/win.h>

namespace {

void conversionError() {
    AfxMessageBox(L"Error converting units");
}

// The factors stand as they are: the import side keeps each as a double, the export side
// works from the exact inch, foot and yard, so the two are not reciprocal to the last bit.
constexpr double kIdentity(double v, double) {
    return v;
}

} // namespace

const std::array<QelUnitRow, 11> QelUnitTable = {{
    {L"Meters", kIdentity, kIdentity},
    {L"Millimeters", [](double v, double) { return v * 1000.0; },
     [](double v, double) { return v / 1000.0; }},
    {L"Centimeters", [](double v, double) { return v * 100.0; },
     [](double v, double) { return v / 100.0; }},
    {L"Inches (English)", [](double v, double) { return v * 39.37007874015748; },
     [](double v, double) { return v * 25.4 / 1000.0; }},
    {L"Feet   (English)", [](double v, double) { return v * 3.2808398950131235; },
     [](double v, double) { return v * 304.8 / 1000.0; }},
    {L"Yards  (English)", [](double v, double) { return v * 1.0936132983377078; },
     [](double v, double) { return v * 914.4 / 1000.0; }},
    {L"Inches (US Survey)", [](double v, double) { return v * 39.37; },
     [](double v, double) { return v / 39.37; }},
    {L"Feet   (US Survey)", [](double v, double) { return v * 3.2808333333333333; },
     [](double v, double) { return v * 12.0 / 39.37; }},
    {L"Yards  (US Survey)", [](double v, double) { return v * 1.093611111111111; },
     [](double v, double) { return v * 36.0 / 39.37; }},
    {L"User defined", [](double v, double scale) { return v * scale; },
     [](double v, double scale) { return v / scale; }},
    {L"", nullptr, nullptr},
}};

bool QelUnitsToDrawing(double value, double* out, int unitIndex, double importScale) {
    if (unitIndex < 0 || unitIndex > QelUserDefinedUnit) {
        conversionError();
        return false;
    }
    *out = QelUnitTable[static_cast<std::size_t>(unitIndex)].toDrawing(value, importScale);
    return true;
}

bool QelUnitsToMetres(double value, double* out, int unitIndex, double exportScale) {
    if (unitIndex < 0 || unitIndex > QelUserDefinedUnit) {
        conversionError();
        *out = value;
        return false;
    }
    *out = QelUnitTable[static_cast<std::size_t>(unitIndex)].toMetres(value, exportScale);
    return true;
}

namespace {

struct InsertUnitRow {
    int codes[4]; // the codes sharing the row; -1 fills
    double (*convert)(double metres);
};

// The host's insert-units numbering, as the contour importer sees it.
constexpr InsertUnitRow kInsertUnits[] = {
    {{0, 1, 10, -1}, [](double v) { return v; }},
    {{2, -1, -1, -1}, [](double v) { return v * 1000.0; }},
    {{3, -1, -1, -1}, [](double v) { return v * 100.0; }},
    {{4, -1, -1, -1}, [](double v) { return v * 1000.0 / 25.4; }},
    {{5, 14, 15, 16}, [](double v) { return v * 1000.0 / 304.8; }},
    {{6, -1, -1, -1}, [](double v) { return v * 1000.0 / 914.4; }},
    {{7, -1, -1, -1}, [](double v) { return v * 39.37; }},
    {{8, -1, -1, -1}, [](double v) { return v * 39.37 / 12.0; }},
    {{9, -1, -1, -1}, [](double v) { return v * 39.37 / 36.0; }},
    {{11, -1, -1, -1}, [](double v) { return v / 1000.0; }},
    {{12, -1, -1, -1}, [](double v) { return v / 25.4 / 12.0 / 5280.0 * 1000.0; }},
    {{13, -1, -1, -1}, [](double v) { return v * 0.03937 / 12.0 / 5280.0 * 1000.0; }},
};

} // namespace

bool QelConvertByInsertUnits(double metres, double* out, int code) {
    for (const InsertUnitRow& row : kInsertUnits)
        for (int c : row.codes)
            if (c == code && c >= 0) {
                *out = row.convert(metres);
                return true;
            }
    conversionError();
    return false;
}
