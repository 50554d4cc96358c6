#include "creators/helpers/placement.h"

#include "foundation/state_guards.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

#include <cstring>
#include <unordered_map>

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
    // Asked for every object: the matrix is worked out again only when the settings change.
    static double keyed[7] = {};
    static AcGeMatrix3d kept;
    static bool known = false;
    const double key[7] = {doc.selectedTranslation[0], doc.selectedTranslation[1],
                           doc.selectedTranslation[2], doc.selectedRotation[0],
                           doc.selectedRotation[1],    doc.selectedRotation[2],
                           doc.selectedRotation[3]};
    if (known && std::memcmp(key, keyed, sizeof key) == 0) return kept;
    const AcGePoint3d from(key[0], key[1], key[2]);
    const AcGeMatrix3d move = AcGeMatrix3d::alignCoordSys(
        from, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
        AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis);
    const AcGeMatrix3d turn =
        rotationAbout(-key[6], AcGeVector3d(key[3], key[4], key[5]), AcGePoint3d::kOrigin);
    kept = turn * move;
    std::memcpy(keyed, key, sizeof key);
    known = true;
    return kept;
}

void ApplyImportTransform(AcDbEntity* entity) {
    // The usual import places nothing: no transform to apply then.
    const AcGeMatrix3d m = QelImportTransform();
    for (unsigned i = 0; i < 4; ++i)
        for (unsigned j = 0; j < 4; ++j)
            if (m(i, j) != (i == j ? 1.0 : 0.0)) {
                entity->transformBy(m);
                return;
            }
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
    // A model has few colours and many objects: each colour's nearest index is looked up once.
    static std::unordered_map<unsigned, Adesk::UInt8> nearest;
    const unsigned rgb = unsigned(red) << 16 | unsigned(green) << 8 | blue;
    auto it = nearest.find(rgb);
    if (it == nearest.end())
        it = nearest.emplace(rgb, AcCmEntityColor::lookUpACI(red, green, blue)).first;
    entity->setColorIndex(it->second, true);
}

void ResetUcs() {
    QelUcsWorld();
}
