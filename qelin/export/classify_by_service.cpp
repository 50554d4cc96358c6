// The third step: what the companion module makes of the entity, then the box tests of a solid,
// texts, and last the entity's name in the drawing.
#include "export/classify_steps.h"
#include "export/invoke_on_entity.h"
#include "export/recognise_solids.h"
#include "objectfile/type_codes.h"
#include "records/annotate_record.h"
#include "records/member_record.h"
#include "writers/box_reading.h"
#include "writers/solid_analysis.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/dbsol3d.h>

#include <cmath>

namespace {

using namespace QelClassify;

constexpr double kSmallestVolume = 0.001;
constexpr double kAreaMatch = 0.0001;
constexpr double kVolumeMatch = 0.001;
constexpr double kCubeRoot = 0.33333333333333;

bool isCube(const QelSolidMeasure& mass) {
    if (mass.volume <= kSmallestVolume) return false;
    const double side = std::pow(mass.volume, kCubeRoot);
    return std::fabs(6.0 * side * side - mass.area) < kAreaMatch;
}

bool isBox(const AcDb3dSolid& solid, const QelSolidMeasure& mass) {
    QelBoxReading box;
    QelReadBoxFromRegions(solid, box);
    const double a = box.lengths[0], b = box.lengths[1], c = box.lengths[2];
    return mass.volume > 0.0 && std::fabs(mass.volume - a * b * c) / mass.volume <= kVolumeMatch &&
           std::fabs(mass.area - (2 * a * b + 2 * b * c + 2 * a * c)) <= kAreaMatch;
}

// A solid no primitive fits leaves as a polyline extrusion, or failing that as a mesh.
int boxOrExtrusion(const AcDb3dSolid& solid) {
    QelSolidMeasure mass;
    if (QelMeasureSolid(solid, mass) && (isCube(mass) || isBox(solid, mass)))
        return QelCode::RectangularBox;
    return QelCode::PlanarPolylineExtrusion;
}

// A text is an annotation of some object, a contour's label, or a text of its own.
int text(const AcDbObjectId& id, const QelMemberRecord* tag) {
    ads_name name;
    CAnnotateRecord annotation;
    if (acdbGetAdsName(name, id) == Acad::eOk && annotation.Load(name)) return NoObject;
    if (tag && tag->memberType == QelCode::ContourObj) return NoObject;
    return QelCode::Text;
}

// Shapes of one kind of section are known by their name alone; anything else is told.
int byName(const AcDbObjectId& id) {
    ads_name name;
    resbuf* data = acdbGetAdsName(name, id) == Acad::eOk ? acdbEntGet(name) : nullptr;
    const resbuf* kind = data;
    while (kind && kind->restype != 0)
        kind = kind->rbnext;
    int code = NoObject;
    if (!kind || !kind->resval.rstring)
        acutPrintf(L"\n Error finding object type");
    else if (::wcscasecmp(kind->resval.rstring, L"KS_SHAPE") == 0)
        code = QelCode::KS_SHAPE;
    else
        acutPrintf(L"\n Obj name:%s", kind->resval.rstring);
    acutRelRb(data);
    return code;
}

} // namespace

int QelClassify::byService(const AcDbObjectId& id, const QelMemberRecord* tag) {
    switch (QelCompanionType(id)) {
    case 2:
        return QelCode::Sphere;
    case 3:
        return QelCode::Torus;
    default:
        break;
    }
    AcDbEntity* entity = nullptr;
    int code = GoOn;
    bool isText = false;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) == Acad::eOk) {
        if (const AcDb3dSolid* solid = AcDb3dSolid::cast(entity)) code = boxOrExtrusion(*solid);
        isText = AcDbText::cast(entity) != nullptr;
        entity->close();
    }
    if (code >= 0) return code;
    if (isText) return text(id, tag);
    return byName(id);
}
