#include "export/collect_entities.h"

#include "export/qel_out_object.h"
#include "export/selection.h"
#include "objectfile/type_codes.h"
#include "records/member_record.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

namespace {

constexpr const wchar_t* kPointMark = L"ToviQelPoint";

// The one point that stands for its point set carries the mark in its extended data.
bool hasPointMark(AcDbObject* object) {
    resbuf* data = object->xData(QEL_XDATA_APP);
    bool marked = false;
    for (resbuf* item = data; item && !marked; item = item->rbnext)
        marked = item->restype == 1000 && item->resval.rstring &&
                 CString(item->resval.rstring).CompareNoCase(kPointMark) == 0;
    acutRelRb(data);
    return marked;
}

// A point of a point set without the mark is one of many; only the marked one leaves.
bool unmarkedSetPoint(const AcDbObjectId& id, int type) {
    if (type != QelCode::Pointset) return false;
    AcDbPoint* point = nullptr;
    if (acdbOpenObject(point, id, AcDb::kForRead) != Acad::eOk) return false;
    const bool unmarked = !hasPointMark(point);
    point->close();
    return unmarked;
}

void sortEntity(QelOutObject& out, ads_name name) {
    AcDbObjectId id;
    QelMemberRecord tag;
    if (tag.Load(name)) {
        if (acdbGetObjectId(id, name) != Acad::eOk || unmarkedSetPoint(id, tag.memberType)) return;
        auto record = std::make_unique<TaggedEntityRec>();
        record->sourceObject = static_cast<unsigned>(tag.objectIndex);
        record->objectType = tag.memberType;
        record->entityId = id;
        record->groupNumber = QelExportGroupNumber(tag);
        out.addTagged(std::move(record));
    } else if (acdbGetObjectId(id, name) == Acad::eOk && id.isValid()) {
        auto record = std::make_unique<UntaggedEntityRec>();
        record->entityId = id;
        out.addUntagged(std::move(record));
    }
}

} // namespace

bool QelEntityHidden(const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead, true) != Acad::eOk) return true;
    const bool erased = entity->isErased();
    const AcDbObjectId layerId = entity->layerId();
    entity->close();
    if (erased) return true;
    AcDbLayerTableRecord* layer = nullptr;
    if (acdbOpenObject(layer, layerId, AcDb::kForRead) != Acad::eOk) return false;
    const bool hidden = layer->isOff() || layer->isFrozen();
    layer->close();
    return hidden;
}

bool collectEntities(QelOutObject& out, bool reportFailure) {
    out.clearEntities();
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    const int scope = QelDocData().exportScope;
    if (scope != 0 && scope != 1 && scope != 2) return true;

    const QelSelection set(scope == 2 ? nullptr : L"_X");
    Adesk::Int32 length = 0;
    if (scope == 2) {
        if (set.status() == RTCAN) return false;
        if (!set.ok()) {
            acutPrintf(L"\n Nothing selected.");
            return false;
        }
        if (!set.length(length)) {
            acutPrintf(L"\n Invalid selected set.");
            return false;
        }
    } else if (!set.ok()) {
        if (reportFailure) acutPrintf(L"\n Error getting objects from AutoCADs database!");
        return true;
    } else {
        set.length(length);
    }
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        if (!set.entity(i, name)) continue;
        AcDbObjectId id;
        if (scope == 1 && acdbGetObjectId(id, name) == Acad::eOk && QelEntityHidden(id)) continue;
        sortEntity(out, name);
    }
    return true;
}
