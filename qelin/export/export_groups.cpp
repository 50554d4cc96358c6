// One GeometricGroup per group number whose members left as objects.
#include "export/entity_annotations.h"
#include "export/entity_dispatch.h"
#include "export/group_members.h"
#include "export/qel_out_object.h"
#include "export/structure_objects.h"
#include "shell/doc_data.h"

#include <vector>

namespace {

// The layer of the group's last member: "0" when the member doesn't open.
CString layerOfMember(const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (!id.isValid() || acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return L"0";
    ACHAR* name = entity->layer();
    const CString layer(name ? name : L"");
    acutDelString(name);
    entity->close();
    return layer;
}

} // namespace

void writeGroupAnnotations(QelOutObject& out, QelObject* object, const unsigned& groupNumber) {
    bool made = false; // the first text makes the "annotations"
    for (const auto& record : out.taggedEntities)
        if (record->groupNumber == groupNumber && record->writtenRef == -1)
            QelAddTextAnnotation(object, record->entityId, made);
}

void writeGroup(QelOutObject& out, QelWriter& writer, const unsigned& groupNumber) {
    GroupExportRec& group = *out.groupRecs.back();
    std::vector<unsigned> members;
    AcDbObjectId last;
    bool hasText = false;
    for (const auto& record : out.taggedEntities) {
        if (record->groupNumber != groupNumber) continue;
        if (record->writtenRef >= 0) {
            members.push_back(static_cast<unsigned>(record->writtenRef));
            last = record->entityId;
        } else if (record->writtenRef == -1 && QelIsText(record->entityId)) {
            hasText = true;
        }
    }
    // A group of texts alone, or whose members are all gone, leaves nothing: no number is used.
    if (members.empty()) return;
    QelObject* object = QelObject::Create("GeometricGroup");
    if (hasText) writeGroupAnnotations(out, object, groupNumber);
    object->AddOrReplaceParam(
        QelParam::Create("objectList", members.data(), static_cast<unsigned>(members.size())));
    QelWriteCounted(writer, object);
    object->UnRef();
    const unsigned number = static_cast<unsigned>(QelDocData().lastObjectRef);
    out.objectList.Append(number);

    const CString layer = layerOfMember(last);
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbLayerTable* table = nullptr;
    if (layer.IsEmpty() || !db || db->getLayerTable(table, AcDb::kForRead) != Acad::eOk) return;
    AcDbObjectId layerId;
    if (table->getAt(layer, layerId) == Acad::eOk) {
        group.groupRef = static_cast<int>(number);
        group.layerId = layerId;
        group.groupNumber = static_cast<int>(groupNumber);
    }
    table->close();
}
