#include "creators/helpers/placement.h"

#include "foundation/state_guards.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

namespace {

// A rotation about an axis through center; a zero axis turns nothing.
AcGeMatrix3d rotationAbout(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
    if (axis.isZeroLength()) return AcGeMatrix3d::kIdentity;
    return AcGeMatrix3d::rotation(angle, axis.normal(), center);
}

} // namespace

void PoseMatrices(QelObject* object, AcGeMatrix3d& translation, AcGeMatrix3d& rotation,
                  AcGePoint3d& origin) {
    origin = AcGePoint3d::kOrigin;
    double quad[4] = {0.0, 0.0, 0.0, 0.0};
    GetPoseTranslation(object, "pose", origin);
    GetPoseRotation(object, "pose", quad);
    translation.setToTranslation(origin.asVector());
    rotation = rotationAbout(quad[3], AcGeVector3d(quad[0], quad[1], quad[2]), origin);
}

void PoseMatrices(QelObject* object, AcGeMatrix3d& translation, AcGeMatrix3d& rotation) {
    AcGePoint3d origin;
    PoseMatrices(object, translation, rotation, origin);
}

AcGeMatrix3d QelImportTransform() {
    const CDocData& doc = QelDocData();
    const AcGePoint3d from(doc.selectedTranslation[0], doc.selectedTranslation[1],
                           doc.selectedTranslation[2]);
    const AcGeMatrix3d move = AcGeMatrix3d::alignCoordSys(
        from, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis);
    const AcGeMatrix3d turn = rotationAbout(
        -doc.selectedRotation[3],
        AcGeVector3d(doc.selectedRotation[0], doc.selectedRotation[1], doc.selectedRotation[2]),
        AcGePoint3d::kOrigin);
    return turn * move;
}

void ApplyImportTransform(AcDbEntity* entity) {
    entity->transformBy(QelImportTransform());
}

void ApplyColour(QelObject* object, AcDbEntity* entity) {
    const CDocData& doc = QelDocData();
    if (doc.layerColourFlag == 1 && doc.useLayerColourOverride == 1) {
        entity->setColorIndex(256, true);
        return;
    }
    unsigned char red = 255, green = 255, blue = 255;
    if (!QelReadColour(object, red, green, blue)) red = green = blue = 255;
    if (doc.importContext == 1) entity->setVisibility(AcDb::kInvisible, false);
    entity->setColorIndex(AcCmEntityColor::lookUpACI(red, green, blue), true);
}

void ResetUcs() {
    QelUcsWorld();
}
