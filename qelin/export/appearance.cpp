#include "export/appearance.h"

#include <arx/aced.h>

namespace {

constexpr Adesk::UInt16 kByLayerIndex = 256;
constexpr Adesk::Int16 kWhiteIndex = 7;

// The entity's colour, its layer's when it goes by layer, white when the layer won't open.
AcCmColor shownColour(const AcDbEntity& entity) {
    if (entity.colorIndex() != kByLayerIndex) return entity.color();
    AcDbLayerTableRecord* layer = nullptr;
    if (acdbOpenObject(layer, entity.layerId(), AcDb::kForRead) == Acad::eOk) {
        const AcCmColor colour = layer->color();
        layer->close();
        return colour;
    }
    AcCmColor white;
    white.setColorIndex(kWhiteIndex);
    return white;
}

} // namespace

void QelColourBytes(const AcCmColor& colour, unsigned char rgb[3]) {
    if (colour.colorMethod() == AcCmEntityColor::kByColor) {
        rgb[0] = colour.red();
        rgb[1] = colour.green();
        rgb[2] = colour.blue();
        return;
    }
    const Adesk::UInt32 windows = acedGetRGB(colour.colorIndex());
    rgb[0] = static_cast<unsigned char>(windows & 0xff);
    rgb[1] = static_cast<unsigned char>((windows >> 8) & 0xff);
    rgb[2] = static_cast<unsigned char>((windows >> 16) & 0xff);
}

void writeAppearance(QelOutObject&, QelObject* object, const AcDbObjectId& id) {
    if (!object) return;
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
    unsigned char rgb[3];
    QelColourBytes(shownColour(*entity), rgb);
    entity->close();
    if (QelParam* held = object->GetParam("appearance", 0);
        held && held->GetType() == QelObjectType) {
        QelObject* appearance = nullptr;
        held->GetValue(appearance);
        if (appearance) {
            appearance->AddOrReplaceParam(QelParam::Create("diffuseColor", rgb, 3));
            return;
        }
    }
    QelObject* appearance = QelObject::Create("Appearance");
    appearance->AddOrReplaceParam(QelParam::Create("ambientColor", rgb, 3));
    appearance->AddOrReplaceParam(QelParam::Create("diffuseColor", rgb, 3));
    object->AddOrReplaceParam(QelParam::Create("appearance", appearance));
    appearance->UnRef();
}
