#include "annotate_record.h"

#include "records/xrecords.h"

#include <arx/aced.h>

bool CAnnotateRecord::Store(AcDbEntity* entity) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbObjectId id;
    ads_name ename = {0, 0};
    if (!db || db->getAcDbObjectId(id, false, entity->handle()) != Acad::eOk ||
        acdbGetAdsName(ename, id) != Acad::eOk)
        return false;
    resbuf* chain = acutBuildList(1, name.GetString(), 90, type, 0);
    XRecords records;
    const bool stored = records.Set(ename, QEL_ANNOTATE_RECORD_KEY, chain);
    acutRelRb(chain);
    return stored;
}

bool CAnnotateRecord::Load(ads_name entity) {
    XRecords records;
    resbuf* chain = records.Get(entity, QEL_ANNOTATE_RECORD_KEY);
    if (!chain) return false;
    bool whole = false;
    if (chain->restype == 1 && chain->resval.rstring) {
        name = chain->resval.rstring;
        const resbuf* second = chain->rbnext;
        if (second && second->restype == 90) {
            type = int(second->resval.rlong);
            whole = true;
        }
    }
    acutRelRb(chain);
    return whole;
}
