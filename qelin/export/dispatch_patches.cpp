#include "export/dispatch_patches.h"

#include "export/appearance.h"
#include "export/complete_object.h"
#include "export/entity_annotations.h"
#include "export/entity_dispatch.h"
#include "export/generic_mesh.h"
#include "export/object_types.h"
#include "export/qel_out_object.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "records/member_record.h"
#include "shell/doc_data.h"
#include "writers/face_list.h"
#include "writers/patch_writers.h"

#include <arx/aced.h>

namespace {

// Said on the command line and in the log alike.
void tell(const wchar_t* printed, const wchar_t* logged) {
    acutPrintf(L"%s", printed);
    QelLogAppend(logged);
}

// The one object of the entity, written and entered.
bool writeOne(QelOutObject& out, QelWriter& writer, QelObject* object, AcDbObjectId id) {
    if (!QelObjectComplete(object, id)) {
        object->UnRef();
        return false;
    }
    QelWriteCounted(writer, object);
    object->UnRef();
    recordWritten(out, id);
    return true;
}

bool dropped(QelObject* object) {
    object->UnRef();
    return false;
}

// Several objects for one entity: the last one is its own, the rest ride along with it, and
// outside a group each goes under model space.
void recordSeveral(QelOutObject& out, AcDbObjectId id, const std::vector<int>& written) {
    if (written.empty()) return;
    ads_name name;
    QelMemberRecord tag;
    const bool grouped =
        acdbGetAdsName(name, id) == Acad::eOk && tag.Load(name) && QelExportGroupNumber(tag) != 0;
    UntaggedEntityRec* untagged = out.findUntagged(id);
    if (written.size() > 1 && untagged)
        for (int number : written)
            untagged->extraRefs.Append(number);
    if (!grouped)
        for (int number : written)
            out.objectList.Append(static_cast<unsigned>(number));
    const int last = QelDocData().lastObjectRef;
    if (TaggedEntityRec* tagged = out.findTagged(id))
        tagged->writtenRef = last;
    else if (untagged)
        untagged->writtenRef = last;
}

// The log's line of an object made by its writer under another class.
void logMadeAs(int type, const wchar_t* className) {
    CString line;
    line.Format(L"\n Exporting Object # %d %s  %s", QelDocData().lastObjectRef + 1,
                QelWideFromNarrow(QelTypeRow(type)->name), className);
    QelLogAppend(line);
}

} // namespace

bool QelDispatchPatch(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    writeAppearance(out, object, id);
    writeAnnotationsOfEntity(out, object, writer, id);
    if (!QelWritePlanarPatchFrom(object, id, nullptr)) return dropped(object);
    return writeOne(out, writer, object, id);
}

bool QelDispatchRegion(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    resbuf* faces = QelAskCompanion(L"getPolyPlanerExtru", id, L"\n Error (skipping extrusion)");
    if (!faces) {
        tell(L"\n Get PlanarPatch geometry failed!\n", L"\n Get PlanarPatch geometry failed!");
        return dropped(object);
    }
    writeAppearance(out, object, id);
    writeAnnotationsOfEntity(out, object, writer, id);
    const bool written = QelWritePlanarPatchFrom(object, id, faces);
    acutRelRb(faces);
    if (!written) return dropped(object);
    return writeOne(out, writer, object, id);
}

bool QelDispatchExtrusion(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                          const AcGeMatrix3d& m) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    resbuf* faces = QelAskCompanion(L"getPolyPlanerExtru", id, L"\n Error (skipping extrusion)");
    if (faces) {
        writeAppearance(out, object, id);
        writeAnnotationsOfEntity(out, object, writer, id);
        if (QelWritePlanarPolylineExtrusion(object, id, faces)) {
            acutRelRb(faces);
            return writeOne(out, writer, object, id);
        }
    }
    tell(L"\n Get PlanarPolyExtru geometry failed!\n", L"\n Get PlanarPolyExtru geometry failed!");
    object->UnRef();
    // No extrusion: the solid as a mesh, else its faces each a patch of its own.
    QelObject* mesh = QelObject::Create("TriMesh");
    writeAppearance(out, mesh, id);
    writeAnnotationsOfEntity(out, mesh, writer, id);
    if (writeGenericMesh(mesh, writer, id, m)) {
        if (faces) acutRelRb(faces);
        return writeOne(out, writer, mesh, id);
    }
    mesh->UnRef();
    const std::vector<int> written =
        faces ? QelWriteFacesAsPatches(faces, writer) : std::vector<int>();
    if (faces) acutRelRb(faces);
    recordSeveral(out, id, written);
    return !written.empty();
}

bool QelDispatchBox(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    resbuf* faces = QelAskCompanion(L"getPolyPlanerExtru", id, L"\n Error (skipping box)");
    if (faces) {
        writeAppearance(out, object, id);
        writeAnnotationsOfEntity(out, object, writer, id);
        QelWriteRectangularBox(object, id, faces);
        acutRelRb(faces);
    } else {
        // The box still leaves, without its sizes.
        tell(L"\n Get getRectBoxObject geometry failed!\n",
             L"\n Get getRectBoxObject geometry failed!");
    }
    return writeOne(out, writer, object, id);
}

bool QelDispatchPolylinePatch(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id) {
    logMadeAs(type, L"PlanarPatch");
    recordSeveral(out, id, QelWritePolylinePatches(out, writer, id));
    return true;
}

bool QelDispatchSolid2d(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id) {
    logMadeAs(type, L"PlanarPolylineExtrusion");
    if (!QelWriteSolid2d(out, writer, id)) return false;
    recordWritten(out, id);
    return true;
}
