#include "records/import_annotations.h"

#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/string_ring.h"
#include "objectfile/param_read.h"
#include "records/annotate_record.h"
#include "records/annotation_names.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/dbdict.h>
#include <arx/dbents.h>

#include <string>

namespace {

// The two forms differ in how a double reads and in the pitch of the stack.
struct AnnotationForm {
    bool doublesInDrawingUnits;
    bool pitchPlusFixed; // height + 0.1, else height * 1.25
    const QelMemberRecord* record;
};

// "%lf" text of a double without its trailing zeros: the last five places are looked at, and a
// dot left at the end goes too.
std::wstring trimmedDouble(double value) {
    wchar_t buffer[QelFormatDoubleSize];
    std::wstring text = FormatDouble(value, 6, buffer);
    const std::size_t dot = text.rfind(L'.');
    if (dot == std::wstring::npos) return text;
    std::size_t looked = 0;
    while (looked < 5 && text.size() > dot + 1 && text.back() == L'0') {
        text.pop_back();
        ++looked;
    }
    if (text.size() == dot + 1) text.pop_back();
    return text;
}

// The value's text and its type for the record; false for a value that makes no text.
bool valueText(QelParam* value, const AnnotationForm& form, std::wstring& text, int& type) {
    switch (value->GetType()) {
    case QelIntType: {
        int number = 0;
        value->GetValue(number);
        text = std::to_wstring(number);
        type = QelIntType;
        return true;
    }
    case QelDoubleType: {
        double number = 0.0;
        value->GetValue(number);
        text = trimmedDouble(form.doublesInDrawingUnits ? QelToDrawing(number) : number);
        type = QelDoubleType;
        return true;
    }
    case QelStringType: {
        const char* narrow = nullptr;
        value->GetValue(narrow);
        text = QelWideFromNarrow(narrow ? narrow : "");
        type = QelStringType;
        return true;
    }
    case QelFloatArrayType:
        return false;
    default:
        acutPrintf(L"\n unknown (Annotation) parameter type encountered.\n");
        return false;
    }
}

// One text at (0, y, 0), placed like the object, in model space and the group, with its tag.
void addText(const std::wstring& name, const std::wstring& text, int type, double y, double height,
             const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation, AcDbGroup* group,
             const AnnotationForm& form) {
    auto* entity =
        new AcDbText(AcGePoint3d(0.0, y, 0.0), text.c_str(), AcDbObjectId::kNull, height, 0.0);
    entity->transformBy(translation);
    entity->transformBy(rotation);
    ApplyImportTransform(entity);
    if (AppendToModelSpace(entity) != Acad::eOk) return; // told, and the text deleted
    QelGroupAppend(group, entity->objectId());
    CAnnotateRecord tag(name.c_str(), type);
    tag.Store(entity);
    if (!form.record) return;
    ads_name last = {0, 0};
    AcDbObjectId lastId;
    AcDbEntity* lastEntity = nullptr;
    if (acdbEntLast(last) == RTNORM && acdbGetObjectId(lastId, last) == Acad::eOk &&
        acdbOpenAcDbEntity(lastEntity, lastId, AcDb::kForRead) == Acad::eOk) {
        lastEntity->close();
        QelMemberRecord copy = *form.record;
        copy.Store(lastEntity);
    }
}

bool importAnnotations(QelObject* object, const AcGeMatrix3d& translation,
                       const AcGeMatrix3d& rotation, AcDbGroup* group, const AnnotationForm& form) {
    QelParam* outer = QelParamOf(object, "annotations");
    if (!outer || outer->GetType() != QelObjectType) return false;
    QelObject* annotations = nullptr;
    outer->GetValue(annotations);
    if (!annotations) return false;
    const double height = QelToDrawing(0.25);
    const double pitch = form.pitchPlusFixed ? height + 0.1 : height + height * 0.25;
    double y = 0.0;
    const unsigned count = annotations->GetParamCount();
    for (unsigned i = 0; i < count; ++i) {
        QelParam* param = annotations->GetParam(i);
        const char* narrowName = param ? param->GetName() : nullptr;
        if (!narrowName || !*narrowName) continue;
        const std::wstring name = QelWideFromNarrow(narrowName);
        if (QelAnnotationSuppressed(name.c_str())) continue;
        if (param->GetType() != QelObjectType) continue;
        QelObject* annotation = nullptr;
        param->GetValue(annotation);
        QelParam* value = QelParamOf(annotation, "value");
        if (!value) continue;
        std::wstring text;
        int type = QelStringType;
        if (!valueText(value, form, text, type)) continue;
        addText(name, name + L": " + text, type, y, height, translation, rotation, group, form);
        y += pitch;
    }
    return true;
}

} // namespace

bool ImportAnnotations(QelObject* object, const AcGeMatrix3d& translation,
                       const AcGeMatrix3d& rotation, AcDbGroup* group) {
    return importAnnotations(object, translation, rotation, group, {false, false, nullptr});
}

bool ImportAnnotations(QelObject* object, const AcGeMatrix3d& translation,
                       const AcGeMatrix3d& rotation, AcDbGroup* group,
                       const QelMemberRecord& record) {
    return importAnnotations(object, translation, rotation, group, {true, true, &record});
}
