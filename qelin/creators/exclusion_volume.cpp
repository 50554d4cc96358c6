// ExclusionVolume: marks a region of the model with its box, centred on the pose, visible, on
// the layer that was current. Its listed objects reach the drawing through their layers.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "creators/object_sets.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/state_guards.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/aced.h>
#include <arx/dbsol3d.h>

namespace {

// The box placed and appended to model space; null after the message.
AcDb3dSolid* placedBox(QelObject* object, const double size[3]) {
    AcDb3dSolid* box =
        QelBuildSolid([&](AcDb3dSolid& s) { return s.createBox(size[0], size[1], size[2]); },
                      L"\nCaught arx exception error");
    if (!box) return nullptr;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    box->transformBy(translation);
    box->transformBy(rotation);
    ApplyImportTransform(box);
    // The box itself is not a hidden member of the volume.
    QelDocData().importContext = 0;
    ApplyColour(object, box);
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    if (!space) {
        delete box;
        acutPrintf(L"\n Error reading ExVol BlockTableRecord.");
        QelLogAppend(L"\n Error reading ExVol BlockTableRecord.");
        return nullptr;
    }
    const bool appended = space->appendAcDbEntity(box) == Acad::eOk;
    space->close();
    if (!appended) {
        delete box;
        QelReportError(L"Could not append exclusion volumne to ACAD Database.");
        acutPrintf(L"\n End process ExclusionVolume\n");
        return nullptr;
    }
    box->close();
    return box;
}

} // namespace

QelCreated CreateExclusionVolume(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                                 const CString* filePath) {
    const CString layer = QelGetStringVar(L"CLAYER");
    if (!object->GetParam("objectList", 0))
        QelLogAppend(L"\n      (No objects in ExclusionVolume 'objectList'.)\n");
    CDocData& doc = QelDocData();
    const CString path = QelRunFileName(L"\n  Error processing Exclusion Volume.");
    doc.importContext = 1;
    QelReader reader;
    QelOpenRunFile(reader, path);

    AcGeDoubleArray thickness;
    const bool hasBox = GetDoubleArrayParam(object, "thickness", thickness, true);
    QelSetCurrentLayer(layer);
    QelCreated result = QelCreated::Done;
    if (hasBox) {
        double size[3] = {0.0, 0.0, 0.0};
        for (int i = 0; i < 3 && i < thickness.length(); ++i)
            size[i] = thickness[i];
        const QelClassRow& row = QelClassOf(QelCode::ExclusionVolume);
        if (AcDb3dSolid* box = placedBox(object, size)) {
            QelMemberRecord record;
            record.memberType = row.code;
            record.length = size[0];
            record.width = size[1];
            QelFillRecordOrigin(record, objIndex, filePath, CString());
            QelTagEntity(box, record, row.xdata);
        } else {
            // A box the modeller refuses (a side not above its tolerance, or beyond its reach).
            CString text;
            text.Format(L"\nObject %u (ExclusionVolume): no box of thickness %g x %g x %g.",
                        objIndex, size[0], size[1], size[2]);
            QelReportError(text);
            result = QelCreated::Failed;
        }
    }
    doc.importContext = 0;
    QelSetCurrentLayer(layer);
    reader.Close();
    return result;
}
