#include "creators/last_entity.h"

#include <arx/aced.h>

bool QelLastEntity(ads_name name) {
    ads_name last = {0, 0};
    if (acdbEntLast(last) != RTNORM) return false;
    name[0] = last[0];
    name[1] = last[1];
    return true;
}

bool QelLastEntityHandle(AcDbHandle& handle) {
    ads_name last;
    if (!QelLastEntity(last)) return false;
    resbuf* chain = acdbEntGet(last);
    bool found = false;
    for (resbuf* rb = chain; rb && !found; rb = rb->rbnext)
        if (rb->restype == 5) {
            handle = AcDbHandle(rb->resval.rstring);
            found = true;
        }
    acutRelRb(chain);
    return found;
}

void QelEraseEntity(const ads_name name, const wchar_t* failed) {
    if (acdbEntDel(name) != RTNORM) acutPrintf(L"%s", failed);
}

void QelEraseLastEntity() {
    ads_name last;
    if (!QelLastEntity(last))
        acutPrintf(L"Error obtaining ent handle.");
    else
        QelEraseEntity(last, L"Error removing Redundant entity");
}
