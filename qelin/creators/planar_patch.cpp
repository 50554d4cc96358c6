// PlanarPatch: a flat polygon. With holes it becomes a region with the holes subtracted; without,
// or when its outline makes no region, a face through the host's face command.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/patches.h"
#include "creators/planar_outline.h"
#include "foundation/error_report.h"
#include "import/class_table.h"
#include "records/import_annotations.h"

#include <arx/aced.h>

namespace {

// The outline's region with the holes cut out, appended to model space; null after the message
// when the outline made no single region.
AcDbObjectId regionWithHoles(const QelPlanarOutline& outline) {
    AcDbPolyline polyline;
    QelFillPolyline(polyline, outline.vertices, outline.vertices.length());
    AcDbVoidPtrArray curves, regions;
    curves.append(&polyline);
    if (AcDbRegion::createFromCurves(curves, regions) != Acad::eOk || regions.length() != 1) {
        for (int i = 0; i < regions.length(); ++i)
            delete static_cast<AcDbRegion*>(regions[i]);
        acutPrintf(L"\n Error creating patch with hole(s); will import without holes.");
        return AcDbObjectId();
    }
    auto* region = static_cast<AcDbRegion*>(regions[0]);
    QelSubtractHoles(region, outline.holes);
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    AcDbObjectId id;
    if (!space || space->appendAcDbEntity(id, region) != Acad::eOk) {
        delete region;
        if (space) space->close();
        return AcDbObjectId();
    }
    space->close();
    region->close();
    return id;
}

// One face over all vertices through the host's command, as a script would draw it; the id of
// the entity it drew, null when it drew none.
AcDbObjectId faceOf(const AcGePoint2dArray& vertices) {
    resbuf* head = nullptr;
    resbuf* tail = nullptr;
    auto add = [&](int type) {
        resbuf* rb = acutNewRb(type);
        (head ? tail->rbnext : head) = rb;
        tail = rb;
        return rb;
    };
    auto answer = [&](const wchar_t* text) { add(RTSTR)->resval.rstring = acutNewString(text); };
    answer(L"_pface");
    for (int i = 0; i < vertices.length(); ++i) {
        resbuf* rb = add(RTPOINT);
        rb->resval.rpoint[0] = vertices[i].x;
        rb->resval.rpoint[1] = vertices[i].y;
        rb->resval.rpoint[2] = 0.0;
    }
    answer(L"");
    for (int i = 0; i < vertices.length(); ++i)
        add(RTSHORT)->resval.rint = short(i + 1);
    answer(L"");
    answer(L"");
    // A command that drew nothing leaves the entity before it last: that one is not the face.
    ads_name before = {0, 0};
    acdbEntLast(before);
    acedCmd(head);
    acutRelRb(head);
    ads_name last;
    AcDbObjectId id;
    if (acdbEntLast(last) != RTNORM || (last[0] == before[0] && last[1] == before[1])) {
        acutPrintf(L"\nError obtaining ent handle for Planer Patch.");
        return id;
    }
    acdbGetObjectId(id, last);
    return id;
}

} // namespace

QelCreated CreatePlanarPatch(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                             const CString* filePath) {
    QelPlanarOutline outline;
    if (!QelReadPlanarOutline(object, outline, L"\nError getting vertices for PlanarPatch."))
        return QelCreated::Failed;
    AcDbObjectId id;
    if (outline.hasHoles) id = regionWithHoles(outline);
    if (id.isNull()) id = faceOf(outline.vertices);
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    AcDbEntity* patch = nullptr;
    if (acdbOpenAcDbEntity(patch, id, AcDb::kForWrite) != Acad::eOk)
        return QelCreated::FailedReported;
    ApplyColour(object, patch);
    patch->transformBy(translation);
    patch->transformBy(rotation);
    ApplyImportTransform(patch);
    patch->close();
    const QelClassRow& row = QelClassOf(QelCode::PlanarPatch);
    QelMemberRecord record;
    record.memberType = row.code;
    record.partIndex = 0;
    QelGroupTagAnnotate(object, patch, row.groupName, row.groupKey, record, objIndex, filePath,
                        translation, rotation, row.xdata);
    return QelCreated::Done;
}
