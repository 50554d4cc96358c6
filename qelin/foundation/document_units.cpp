#include "document_units.h"

#include "foundation/units.h"
#include "shell/doc_data.h"

bool QelMetresToDrawing(double metres, double* out) {
    const CDocData& record = QelDocData();
    return QelUnitsToDrawing(metres, out, record.importUnitIndex, record.importScale);
}

bool QelDrawingToMetres(double value, double* out) {
    const CDocData& record = QelDocData();
    return QelUnitsToMetres(value, out, record.exportUnitIndex, record.exportScale);
}
