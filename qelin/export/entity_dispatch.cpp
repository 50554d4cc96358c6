#include "export/entity_dispatch.h"

#include "export/appearance.h"
#include "export/complete_object.h"
#include "export/dispatch_meshes.h"
#include "export/dispatch_patches.h"
#include "export/entity_annotations.h"
#include "export/object_types.h"
#include "export/original_file.h"
#include "export/qel_out_object.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "objectfile/param_read.h"
#include "records/member_record.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <cstring>

namespace {

using H = QelExportHandling;

// The member record's group number, 0 without one.
unsigned groupNumberOf(const AcDbObjectId& id) {
    ads_name name;
    QelMemberRecord tag;
    if (acdbGetAdsName(name, id) != Acad::eOk || !tag.Load(name)) return 0;
    return QelExportGroupNumber(tag);
}

// The object of the entity's own tag, read from the file it names.
QelObject* readFromSource(QelOutObject& out, const AcDbObjectId& id) {
    ads_name name;
    QelMemberRecord tag;
    if (acdbGetAdsName(name, id) != Acad::eOk || !tag.Load(name)) return nullptr;
    if (!QelFileExists(tag.filePath) || tag.filePath == out.outputFile) return nullptr;
    if (!out.readerInitialised) {
        QelInit(0, 0, QelInitWords);
        out.readerInitialised = true;
    }
    if (tag.filePath != out.openReferenceFile) {
        if (out.reader.IsOpen()) out.reader.Close();
        // Taken as open only once it is: a file that fails is tried again, and fails alike.
        out.openReferenceFile.Empty();
        out.reader.Open(QelNarrowFromWide(tag.filePath));
        out.openReferenceFile = tag.filePath;
    }
    QelObject* object = out.reader.ReadObject(static_cast<unsigned>(tag.objectIndex));
    // Connection points number other objects of the old file.
    if (object) object->DeleteParam("connPtList");
    return object;
}

// Nothing was counted for the object, so nothing is taken back: the numbering stays in step.
bool unknownType() {
    acedAlert(L"Unknown object type!");
    QelLogAppend(L"\nError getting object properties, unknown type.");
    return false;
}

// Only what came from a source file leaves: contours and point sets aren't made anew.
bool referenceOnly(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id, int& skipped) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    if (!fromReference) {
        skipped = 1;
        object->UnRef();
        return true;
    }
    return writeAndRecord(out, writer, object, id);
}

} // namespace

void QelWriteCounted(QelWriter& writer, QelObject* object) {
    ++QelDocData().lastObjectRef;
    writer.WriteObject(object);
}

bool writeAndRecord(QelOutObject& out, QelWriter& writer, QelObject* object, AcDbObjectId id) {
    if (!QelObjectComplete(object, id)) {
        object->UnRef();
        return false;
    }
    QelWriteCounted(writer, object);
    object->UnRef();
    recordWritten(out, id);
    return true;
}

QelObject* openFileObject(QelOutObject& out, AcDbObjectId id, int type, bool& fromReference) {
    const QelObjectTypeRow* row = QelTypeRow(type);
    if (!row) return nullptr;
    const char* className = QelObjectTypeClass(*row);
    CString line;
    line.Format(L"\n Exporting Object # %d %s ", QelDocData().lastObjectRef + 1,
                QelWideFromNarrow(row->name));
    QelLogAppend(line);
    fromReference = false;
    if (out.processMethod == 1) {
        try {
            if (QelObject* object = readFromSource(out, id)) {
                if (!className || std::strcmp(object->GetName(), className) == 0) {
                    fromReference = true;
                    return object;
                }
                object->UnRef();
            }
        } catch (const QelException& e) {
            // A damaged source file fails every entity from it alike: one box says it, the log
            // has each object.
            const CString reason = QelWideFromNarrow(e.GetReason());
            QelLogAppend(L"\n " + reason);
            if (out.readFailuresTold.insert(reason.GetString()).second)
                AfxMessageBox(reason, MB_ICONEXCLAMATION);
        } catch (...) {
        }
    }
    return className ? QelObject::Create(className) : nullptr;
}

void recordWritten(QelOutObject& out, AcDbObjectId id) {
    const int written = QelDocData().lastObjectRef;
    if (groupNumberOf(id) == 0) out.objectList.Append(static_cast<unsigned>(written));
    if (TaggedEntityRec* tagged = out.findTagged(id))
        tagged->writtenRef = written;
    else if (UntaggedEntityRec* untagged = out.findUntagged(id))
        untagged->writtenRef = written;
}

bool dispatchEntity(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                    const AcGeMatrix3d& m) {
    const QelObjectTypeRow* row = QelTypeRow(type);
    if (!row) return unknownType();
    CDocData& doc = QelDocData();
    switch (row->handling) {
    case H::Nothing:
        return true;
    case H::NestedInsert:
        acutPrintf(L"\n skipping nested INSERTs");
        return true;
    case H::Contour:
        return referenceOnly(out, writer, type, id, doc.contoursSkipped);
    case H::PointSet:
        return dispatchPointSet(out, writer, type, id);
    case H::Mesh:
        return dispatchMesh(out, writer, type, id, m);
    case H::ArcPatch:
        return dispatchArcPatch(out, writer, type, id, m);
    case H::ExclusionVolume:
        return dispatchExclusionVolume(out, writer, type, id, m);
    case H::Patch:
        return QelDispatchPatch(out, writer, type, id);
    case H::Region:
        return QelDispatchRegion(out, writer, type, id);
    case H::Extrusion:
        return QelDispatchExtrusion(out, writer, type, id, m);
    case H::Box:
        return QelDispatchBox(out, writer, type, id);
    case H::PolylinePatch:
        return QelDispatchPolylinePatch(out, writer, type, id);
    case H::Solid2d:
        return QelDispatchSolid2d(out, writer, type, id);
    default:
        break;
    }
    if (!row->writer) return unknownType();
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return unknownType();
    writeAppearance(out, object, id);
    if (row->handling != H::GenericPlain) writeAnnotationsOfEntity(out, object, writer, id);
    if (row->handling == H::GenericCaps) writeCaps(out, object, writer, id);
    row->writer(m, object, writer, id);
    return writeAndRecord(out, writer, object, id);
}
