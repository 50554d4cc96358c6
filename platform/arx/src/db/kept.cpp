#include "arx/dbkept.h"

#include "../dxf/fieldtable.h"
#include "rxdefine.h"

ACRX_DEFINE_MEMBERS(AcDbKeptObject, AcDbObject, nullptr)
ACRX_DEFINE_MEMBERS(AcDbKeptEntity, AcDbEntity, nullptr)

const std::string* AcDbKeptObject::find(short code) const {
    for (const AcDbKeptGroup& g : groups_)
        if (g.first == code) return &g.second;
    return nullptr;
}

// A kept entity has the fields every entity shares and none of its own: the rest of its groups
// are kept as read.
ACDB_DXF_KIND(AcDbKeptEntity, "ACDBKEPTENTITY", {})
