#include <algorithm>
#include <limits>

#include "objectimpl.h"
#include "rxdefine.h"
#include "text.h"

ACRX_DEFINE_MEMBERS(AcDbEntity, AcDbObject, nullptr)
ACRX_DEFINE_MEMBERS(AcDbCurve, AcDbEntity, nullptr)

AcDbExtents::AcDbExtents() {
    constexpr double big = std::numeric_limits<double>::max();
    min_.set(big, big, big);
    max_.set(-big, -big, -big);
}

Acad::ErrorStatus AcDbExtents::set(const AcGePoint3d& min, const AcGePoint3d& max) {
    if (min.x > max.x || min.y > max.y || min.z > max.z) return Acad::eInvalidExtents;
    min_ = min;
    max_ = max;
    return Acad::eOk;
}

void AcDbExtents::addPoint(const AcGePoint3d& p) {
    min_.set(std::min(min_.x, p.x), std::min(min_.y, p.y), std::min(min_.z, p.z));
    max_.set(std::max(max_.x, p.x), std::max(max_.y, p.y), std::max(max_.z, p.z));
}

void AcDbExtents::addExt(const AcDbExtents& other) {
    if (other.isEmpty()) return;
    addPoint(other.min_);
    addPoint(other.max_);
}

void AcDbExtents::expandBy(const AcGeVector3d& v) {
    const AcGePoint3d movedMin = min_ + v, movedMax = max_ + v;
    addPoint(movedMin);
    addPoint(movedMax);
}

void AcDbExtents::transformBy(const AcGeMatrix3d& m) {
    if (isEmpty()) return;
    AcDbExtents box;
    for (int i = 0; i < 8; ++i)
        box.addPoint(m * AcGePoint3d(i & 1 ? max_.x : min_.x, i & 2 ? max_.y : min_.y,
                                     i & 4 ? max_.z : min_.z));
    *this = box;
}

ACHAR* AcDbEntity::layer() const {
    const auto* record = AcDbLayerTableRecord::cast(AcDbImpl::peek(layer_));
    return record ? acdbDupString(record->name()) : nullptr;
}

AcDbObjectId AcDbEntity::layerId() const {
    return layer_;
}

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* layerName, bool /*doSubents*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    AcDbDatabase* db = database() ? database() : acdbHostApplicationServices()->workingDatabase();
    if (db == nullptr) return Acad::eNoDatabase;
    const auto* table =
        static_cast<const AcDbSymbolTable*>(AcDbImpl::peek(AcDbImpl::of(db).layerTable));
    AcDbObjectId id;
    if (table == nullptr || table->getAt(layerName, id) != Acad::eOk) return Acad::eKeyNotFound;
    layer_ = acdbStubOf(id);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId layerId, bool /*doSubents*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (!AcDbLayerTableRecord::cast(AcDbImpl::peek(acdbStubOf(layerId))))
        return Acad::eWrongObjectType;
    if (database() && layerId.database() != database()) return Acad::eWrongDatabase;
    layer_ = acdbStubOf(layerId);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setColor(const AcCmColor& color, bool /*doSubents*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    color_ = color.entityColor();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setColorIndex(Adesk::UInt16 index, bool /*doSubents*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (index > 256) return Acad::eInvalidInput;
    color_.setColorIndex(Adesk::Int16(index));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setVisibility(AcDb::Visibility visibility, bool /*doSubents*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    visibility_ = visibility;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setPropertiesFrom(const AcDbEntity* other, bool /*doSubents*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (other == nullptr) return Acad::eNullEntityPointer;
    layer_ = other->layer_;
    color_ = other->color_;
    visibility_ = other->visibility_;
    return Acad::eOk;
}

void AcDbEntity::setDatabaseDefaults(AcDbDatabase* db) {
    if (db == nullptr)
        db = database() ? database() : acdbHostApplicationServices()->workingDatabase();
    if (db == nullptr || assertWriteEnabled() != Acad::eOk) return;
    layer_ = acdbStubOf(db->clayer());
    color_.setColorIndex(AcCmEntityColor::kACIbyLayer);
    visibility_ = AcDb::kVisible;
}

void AcDbEntity::copyPropertiesTo(AcDbEntity* piece) const {
    piece->layer_ = layer_;
    piece->color_ = color_;
    piece->visibility_ = visibility_;
}

Acad::ErrorStatus AcDbEntity::transformBy(const AcGeMatrix3d&) {
    return Acad::eNotApplicable;
}
Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents&) const {
    return Acad::eNotApplicable;
}
Acad::ErrorStatus AcDbEntity::explode(AcDbVoidPtrArray&) const {
    return Acad::eNotApplicable;
}
