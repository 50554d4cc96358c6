#include "export/complete_object.h"

#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "objectfile/catalogue.h"

#include <arx/aced.h>

#include <cstring>
#include <string>

namespace {

// Classes that need one of two params, either form will do.
constexpr struct {
    const char* className;
    const char* one;
    const char* other;
} kOneOf[] = {
    {"BSplineCurve3d", "fitPoints", "poles"},
    {"Pointset", "points", "pointList"},
};

// The path to the first required param missing ("radius0", "pose.translation"); empty when
// nothing is missing.
std::string firstMissing(QelObject& object) {
    const QelClassSpec* cls = QelFindClass(object.GetName());
    if (!cls) return {};
    for (const QelParamDef& def : cls->params)
        if (def.status == QelParamStatus::Required && !object.GetParam(def.name, 0))
            return def.name;
    for (const auto& rule : kOneOf)
        if (std::strcmp(rule.className, object.GetName()) == 0 && !object.GetParam(rule.one, 0) &&
            !object.GetParam(rule.other, 0))
            return rule.one;
    for (unsigned i = 0; i < object.GetParamCount(); ++i) {
        QelParam* param = object.GetParam(i);
        if (!param || param->GetType() != QelObjectType) continue;
        QelObject* child = nullptr;
        param->GetValue(child);
        if (!child) continue;
        const std::string missing = firstMissing(*child);
        if (!missing.empty()) return std::string(param->GetName()) + "." + missing;
    }
    return {};
}

CString handleOf(const AcDbObjectId& id) {
    ACHAR text[20] = L"?";
    if (!id.isNull()) id.handle().getIntoAsciiBuffer(text, 20);
    return text;
}

} // namespace

bool QelObjectComplete(QelObject* object, const AcDbObjectId& id) {
    const std::string missing = object ? firstMissing(*object) : std::string();
    if (missing.empty()) return true;
    CString text;
    text.Format(L"\n Error exporting entity %s: the %s has no \"%s\"; it is left out.",
                handleOf(id).GetString(), QelWideFromNarrow(object->GetName()),
                QelWideFromNarrow(missing.c_str()));
    acutPrintf(L"%s", text.GetString());
    QelLogAppend(text);
    QelCountError();
    return false;
}
