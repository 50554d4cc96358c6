#include "entity.h"

namespace toviqelout {

EntityByHandle::EntityByHandle(const resbuf* args) {
    if (args == nullptr || args->restype != RTSTR || args->resval.rstring == nullptr) return;
    ads_name name;
    AcDbObjectId id;
    if (acdbHandEnt(args->resval.rstring, name) != RTNORM) return;
    if (acdbGetObjectId(id, name) != Acad::eOk) return;
    if (acdbOpenAcDbEntity(entity_, id, AcDb::kForRead) != Acad::eOk) entity_ = nullptr;
}

EntityByHandle::~EntityByHandle() {
    if (entity_ != nullptr) entity_->close();
}

} // namespace toviqelout
