#include "export/entity_annotations.h"

#include "export/group_members.h"
#include "foundation/string_ring.h"
#include "objectfile/type_codes.h"
#include "records/annotate_record.h"
#include "records/member_record.h"

#include <arx/dbents.h>
#include <arx/dbsol3d.h>

#include <cwchar>
#include <string>

namespace {

// The text of a text entity; false for anything else.
bool textOf(const AcDbObjectId& id, std::wstring& text) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const AcDbText* textEntity = AcDbText::cast(entity);
    if (textEntity) text = textEntity->textStringConst();
    entity->close();
    return textEntity != nullptr;
}

// A new object of the class holding one param "value".
QelObject* annotation(const char* className, QelParam* value) {
    QelObject* object = QelObject::Create(className);
    object->AddOrReplaceParam(value);
    return object;
}

void addObjectParam(QelObject* parent, const char* name, QelObject* child) {
    parent->AddOrReplaceParam(QelParam::Create(name, child));
    child->UnRef();
}

} // namespace

bool QelAddTextAnnotation(QelObject* target, const AcDbObjectId& textId, bool& made) {
    std::wstring text;
    if (!target || !textOf(textId, text)) return false;
    const std::size_t colon = text.find(L':');
    if (colon == std::wstring::npos) return false;
    std::wstring name = text.substr(0, colon);
    std::wstring value = text.substr(colon + 1);
    // The import writes "name: value": the blank after the colon is not the value's.
    if (!value.empty() && value.front() == L' ') value.erase(0, 1);

    ads_name entity;
    CAnnotateRecord record; // a text without a record keeps the string kind
    if (acdbGetAdsName(entity, textId) == Acad::eOk && record.Load(entity)) name = record.name;

    QelObject* item = nullptr;
    switch (record.type) {
    case QelIntType:
        item = annotation(
            "IntAnnotation",
            QelParam::Create("value", static_cast<int>(std::wcstol(value.c_str(), nullptr, 10))));
        break;
    case QelDoubleType:
        // Read as a whole number, as the annotations of this kind have always been: the fraction
        // is lost on purpose.
        item = annotation("DblAnnotation",
                          QelParam::Create("value", static_cast<double>(
                                                        std::wcstol(value.c_str(), nullptr, 10))));
        break;
    case QelStringType:
        item = annotation("StrAnnotation",
                          QelParam::Create("value", QelNarrowFromWide(value.c_str())));
        break;
    default:
        return false;
    }
    if (!made) {
        addObjectParam(target, "annotations", QelObject::Create("Annotations"));
        made = true;
    }
    QelObject* annotations = nullptr;
    target->GetParam("annotations", 0)->GetValue(annotations);
    addObjectParam(annotations, QelNarrowFromWide(name.c_str()), item);
    return true;
}

void writeAnnotationsOfEntity(QelOutObject&, QelObject* object, QelWriter&,
                              const AcDbObjectId& id) {
    AcDbObjectIdArray members;
    const int count = groupMembers(id, members);
    bool made = false;
    for (int i = 0; i < count; ++i)
        QelAddTextAnnotation(object, members[i], made);
}

void writeCaps(QelOutObject&, QelObject* object, QelWriter&, const AcDbObjectId& id) {
    if (!object) return;
    AcDbObjectIdArray members;
    if (groupMembers(id, members) == 0) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
        const bool solid = AcDb3dSolid::cast(entity) != nullptr;
        entity->close();
        if (!solid) return;
        addObjectParam(object, "cap0", QelObject::Create("FlatCap"));
        addObjectParam(object, "cap1", QelObject::Create("FlatCap"));
        return;
    }
    for (int i = 0; i < members.length(); ++i) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, members[i], AcDb::kForRead) != Acad::eOk) continue;
        const bool solid = AcDb3dSolid::cast(entity) != nullptr;
        const bool circle = AcDbCircle::cast(entity) != nullptr;
        entity->close();
        QelMemberRecord tag;
        if ((!solid && !circle) || !tag.Load(members[i])) continue;
        const char* cap = nullptr;
        if (solid && tag.memberType == QelCode::HemisphericCap) cap = "HemisphericCap";
        if (solid && tag.memberType == QelCode::SemiEllipticCap) cap = "SemiEllipticCap";
        if (circle && tag.memberType == QelCode::FlatCap) cap = "FlatCap";
        if (cap)
            addObjectParam(object, tag.partIndex != 0 ? "cap1" : "cap0", QelObject::Create(cap));
    }
}
