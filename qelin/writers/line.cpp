// Line3d: its two ends as the entity list gives them.
#include "writers/curve_writers.h"
#include "writers/pose.h"

#include <arx/aced.h>

#include <cerrno>

bool QelWriteLine3d(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    ads_name name;
    resbuf* list = nullptr;
    if (acdbGetAdsName(name, id) == Acad::eOk) list = acdbEntGet(name);
    if (!list) {
        acutPrintf(L"Unable to retrieve entity (%d)\n", errno);
        return false;
    }
    for (const resbuf* item = list; item; item = item->rbnext) {
        const char* param = item->restype == 10   ? "startPoint"
                            : item->restype == 11 ? "endPoint"
                                                  : nullptr;
        if (!param) continue;
        double metres[3];
        QelPointOut(
            AcGePoint3d(item->resval.rpoint[0], item->resval.rpoint[1], item->resval.rpoint[2]),
            metres);
        target->AddOrReplaceParam(QelParam::Create(param, metres, 3));
    }
    acutRelRb(list);
    return true;
}
