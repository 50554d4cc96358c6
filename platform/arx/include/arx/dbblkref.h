// Block references: a block's entities placed by position, scale, rotation and normal.
#pragma once

#include "arx/dbents.h"

class AcGeScale3d {
public:
    AcGeScale3d() = default;
    explicit AcGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
    AcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
    double operator[](unsigned i) const { return i == 0 ? sx : i == 1 ? sy : sz; }
    bool operator==(const AcGeScale3d&) const = default;
    double sx = 1.0, sy = 1.0, sz = 1.0;
};

class AcDbBlockReference : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockReference);
    ACDB_CLONE(AcDbBlockReference)
    AcDbBlockReference() = default;
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRecord)
        : position_(position), block_(blockTableRecord) {}

    AcDbObjectId blockTableRecord() const { return block_; }
    Acad::ErrorStatus setBlockTableRecord(AcDbObjectId id);
    AcGePoint3d position() const { return position_; }
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGeScale3d scaleFactors() const { return scale_; }
    // eInvalidInput for a zero factor.
    Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
    double rotation() const { return rotation_; }
    Acad::ErrorStatus setRotation(double rotation);
    AcGeVector3d normal() const { return normal_; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // Block coordinates (relative to the block's origin) to world.
    AcGeMatrix3d blockTransform() const;
    Acad::ErrorStatus setBlockTransform(const AcGeMatrix3d& xform);

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // The block's entities placed by the block transform.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // Copies of the block's entities placed by the block transform.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

private:
    AcGePoint3d position_;
    AcDbObjectId block_;
    AcGeScale3d scale_;
    double rotation_ = 0.0;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
};
