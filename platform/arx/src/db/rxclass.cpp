#include "arx/rxobject.h"

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
    for (const AcRxClass* c = this; c != nullptr; c = c->parent_)
        if (c == other) return true;
    return false;
}

AcRxClass* AcRxObject::desc() {
    static AcRxClass cls(ACRX_T("AcRxObject"), nullptr);
    return &cls;
}

AcRxClass* AcRxObject::isA() const {
    return desc();
}
