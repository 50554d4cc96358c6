// The kind an entity leaves as: by its tag, then by its class (and, for a solid, its geometry),
// then by what the companion module and the entity's name say.
#include "export/classify_steps.h"
#include "export/entity_dispatch.h"
#include "records/member_record.h"

namespace {

int classify(QelOutObject& out, const AcDbObjectId& id) {
    QelMemberRecord record;
    const bool tagged = record.Load(id);
    const QelMemberRecord* tag = tagged ? &record : nullptr;
    int code = QelClassify::byTag(out, id, tag);
    if (code == QelClassify::GoOn) code = QelClassify::byClass(id, tag);
    if (code == QelClassify::GoOn) code = QelClassify::byService(id, tag);
    return code;
}

} // namespace

bool classifyEntity(QelOutObject& out, int& type, AcDbObjectId id) {
    int code = QelClassify::Unread;
    // A damaged entity (or a host call that throws) leaves the answer to the tag.
    try {
        code = classify(out, id);
    } catch (...) {
        return false;
    }
    if (code == QelClassify::Unread) return false;
    type = code < 0 ? QelClassify::NoObject : code;
    return type >= 0;
}
