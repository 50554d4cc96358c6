// 3DSOLID and REGION in drawing files and in acdbEntGet: the common entity part and the
// modeller's format version. The model text itself (groups 1 and 3) is the business of the
// drawing reader and writer, which turn it into the body through the SAT codec.
#include "arx/dbregion.h"
#include "arx/dbsol3d.h"
#include "arx/dxfkind.h"

namespace {

void writeMarker(const AcDbDxfField& field, const AcDbObject&, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofText(100, field.marker));
}

// Files of this release always say 1; another number is a format we don't read.
void writeVersion(const AcDbDxfField&, const AcDbObject&, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(70, 1));
}
bool readVersion(const AcDbDxfField&, AcDbObject&, const AcDbDxfItem& item) {
    return item.integer == 1;
}

const AcDbDxfField kSolidFields[] = {
    {100, L"AcDbModelerGeometry", 0, writeMarker, nullptr},
    {70, nullptr, 0, writeVersion, readVersion},
    {100, L"AcDb3dSolid", 0, writeMarker, nullptr},
};
const AcDbDxfField kRegionFields[] = {
    {100, L"AcDbModelerGeometry", 0, writeMarker, nullptr},
    {70, nullptr, 0, writeVersion, readVersion},
};

const AcDbDxfKind kSolidKind{L"3DSOLID", &AcDb3dSolid::desc,
                             []() -> AcDbObject* { return new AcDb3dSolid; }, kSolidFields};
const AcDbDxfKind kRegionKind{L"REGION", &AcDbRegion::desc,
                              []() -> AcDbObject* { return new AcDbRegion; }, kRegionFields};

[[maybe_unused]] const bool kAdded = acdbDxfAddKind(&kSolidKind) && acdbDxfAddKind(&kRegionKind);

} // namespace
