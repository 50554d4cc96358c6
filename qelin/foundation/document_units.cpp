#include "document_units.h"

#include "foundation/units.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <cwchar>

bool QelMetresToDrawing(double metres, double* out) {
    const CDocData& record = QelDocData();
    return QelUnitsToDrawing(metres, out, record.importUnitIndex, record.importScale);
}

bool QelDrawingToMetres(double value, double* out) {
    const CDocData& record = QelDocData();
    return QelUnitsToMetres(value, out, record.exportUnitIndex, record.exportScale);
}

short QelMeasureInit() {
    resbuf value{};
    if (acedGetVar(L"MEASUREINIT", &value) != RTNORM) return 1;
    return value.resval.rint;
}

CString QelScaleText(double scale) {
    wchar_t text[64];
    std::swprintf(text, 64, L"%.15g", scale);
    return text;
}
