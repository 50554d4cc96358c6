#include "export/dispatch_patches.h"

#include "export/appearance.h"
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

bool dropped(QelObject* object) {
    object->UnRef();
    return false;
}

// The entity's appearance and annotations on an object made for it.
void dress(QelOutObject& out, QelWriter& writer, QelObject* object, AcDbObjectId id) {
    writeAppearance(out, object, id);
    writeAnnotationsOfEntity(out, object, writer, id);
}

// The companion's face list of the solid, the object dressed when it came; null, told with
// failureText, when it didn't.
resbuf* dressedWithFaces(QelOutObject& out, QelWriter& writer, QelObject* object, AcDbObjectId id,
                         const wchar_t* failureText) {
    resbuf* faces = QelAskCompanion(L"getPolyPlanerExtru", id, failureText);
    if (faces) dress(out, writer, object, id);
    return faces;
}

// A planar patch from the face list, or from the one the writer asks for when it is null.
bool writePatch(QelOutObject& out, QelWriter& writer, QelObject* object, AcDbObjectId id,
                const resbuf* faces) {
    dress(out, writer, object, id);
    if (!QelWritePlanarPatchFrom(object, id, faces)) return dropped(object);
    return writeAndRecord(out, writer, object, id);
}

// Several objects for one entity: the last one is its own, the rest ride along with it, and
// outside a group each goes under model space.
void recordSeveral(QelOutObject& out, AcDbObjectId id, const std::vector<int>& written) {
    if (written.empty()) return;
    QelMemberRecord tag;
    const bool grouped = tag.Load(id) && QelExportGroupNumber(tag) != 0;
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
    return writePatch(out, writer, object, id, nullptr);
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
    const bool written = writePatch(out, writer, object, id, faces);
    acutRelRb(faces);
    return written;
}

bool QelDispatchExtrusion(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                          const AcGeMatrix3d& m) {
    bool fromReference = false;
    QelObject* object = openFileObject(out, id, type, fromReference);
    if (!object) return true;
    resbuf* faces = dressedWithFaces(out, writer, object, id, L"\n Error (skipping extrusion)");
    if (faces && QelWritePlanarPolylineExtrusion(object, id, faces)) {
        acutRelRb(faces);
        return writeAndRecord(out, writer, object, id);
    }
    tell(L"\n Get PlanarPolyExtru geometry failed!\n", L"\n Get PlanarPolyExtru geometry failed!");
    object->UnRef();
    // No extrusion: the solid as a mesh, else its faces each a patch of its own.
    QelObject* mesh = QelObject::Create("TriMesh");
    dress(out, writer, mesh, id);
    if (writeGenericMesh(mesh, writer, id, m)) {
        if (faces) acutRelRb(faces);
        return writeAndRecord(out, writer, mesh, id);
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
    if (resbuf* faces = dressedWithFaces(out, writer, object, id, L"\n Error (skipping box)")) {
        QelWriteRectangularBox(object, id, faces);
        acutRelRb(faces);
    } else {
        // The box still leaves, without its sizes.
        tell(L"\n Get getRectBoxObject geometry failed!\n",
             L"\n Get getRectBoxObject geometry failed!");
    }
    return writeAndRecord(out, writer, object, id);
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
