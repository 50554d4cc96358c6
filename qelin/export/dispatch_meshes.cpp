#include "export/dispatch_meshes.h"

#include "export/appearance.h"
#include "export/entity_annotations.h"
#include "export/entity_dispatch.h"
#include "export/exclusion_volume_export.h"
#include "export/object_types.h"
#include "export/qel_out_object.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "shell/doc_data.h"
#include "writers/mesh_writers.h"

bool dispatchMesh(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                  const AcGeMatrix3d& m) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    // A mesh from the reference keeps its geometry: the drawing holds it split, or smoothed.
    if (!fromReference) {
        CDocData& doc = QelDocData();
        if (doc.meshAnnotationsPending) {
            writeAnnotationsOfEntity(out, object, writer, id);
            doc.meshAnnotationsPending = 0;
        }
        writeAppearance(out, object, id);
        QelWriteTriMesh(m, object, writer, id);
    }
    return writeAndRecord(out, writer, object, id);
}

bool dispatchArcPatch(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                      const AcGeMatrix3d& m) {
    const QelObjectTypeRow* row = QelTypeRow(type);
    CString line;
    line.Format(L"\n Exporting Object # %d %s TriMesh", QelDocData().lastObjectRef + 1,
                QelWideFromNarrow(row ? row->name : ""));
    QelLogAppend(line);
    QelObject* object = QelObject::Create("TriMesh");
    writeAppearance(out, object, id);
    writeAnnotationsOfEntity(out, object, writer, id);
    QelWriteArcPatch(m, object, writer, id);
    return writeAndRecord(out, writer, object, id);
}

bool dispatchPointSet(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id) {
    if (out.processMethod != 1) {
        QelDocData().pointsSkipped = 1;
        return true;
    }
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    if (!fromReference) {
        object->UnRef();
        return true;
    }
    return writeAndRecord(out, writer, object, id);
}

bool dispatchExclusionVolume(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                             const AcGeMatrix3d& m) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    writeAppearance(out, object, id);
    writeAnnotationsOfEntity(out, object, writer, id);
    if (!writeExclusionVolume(m, object, writer, id, fromReference, out))
        QelWriteCounted(writer, object);
    object->UnRef();
    recordWritten(out, id);
    return true;
}
