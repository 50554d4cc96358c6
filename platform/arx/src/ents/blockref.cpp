#include <cmath>
#include <memory>

#include "../db/objectimpl.h"
#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbblkref.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbBlockReference, AcDbEntity, ACRX_T("INSERT"))

namespace {
const AcDbBlockTableRecord* blockOf(const AcDbBlockReference& ref) {
    return AcDbBlockTableRecord::cast(AcDbImpl::peek(acdbStubOf(ref.blockTableRecord())));
}
void writeName(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const AcDbBlockTableRecord* block = blockOf(static_cast<const AcDbBlockReference&>(o));
    out.push_back(AcDbDxfItem::ofText(f.code, block ? block->name() : L""));
}
bool readName(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    const auto* table =
        db ? AcDbSymbolTable::cast(AcDbImpl::peek(acdbStubOf(db->blockTableId()))) : nullptr;
    AcDbObjectId id;
    if (table == nullptr || table->getAt(item.text.c_str(), id) != Acad::eOk) return false;
    return static_cast<AcDbBlockReference&>(o).setBlockTableRecord(id) == Acad::eOk;
}
AcGePoint3d ocsPosition(const AcDbBlockReference& r) {
    return entgeom::toOcs(r.normal(), r.position());
}
Acad::ErrorStatus setOcsPosition(AcDbBlockReference& r, const AcGePoint3d& p) {
    return r.setPosition(entgeom::fromOcs(r.normal(), p));
}
// Scale factors of 1 are left out, as the drawing format does.
template <unsigned I>
void writeScale(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    const double s = static_cast<const AcDbBlockReference&>(o).scaleFactors()[I];
    if (s != 1.0) out.push_back(AcDbDxfItem::ofReal(f.code, s));
}
template <unsigned I>
bool readScale(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    auto& ref = static_cast<AcDbBlockReference&>(o);
    AcGeScale3d s = ref.scaleFactors();
    (I == 0 ? s.sx : I == 1 ? s.sy : s.sz) = item.real();
    return ref.setScaleFactors(s) == Acad::eOk;
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbBlockReference")),
    dxf::custom(2, writeName, readName),
    dxf::value<AcDbBlockReference, ocsPosition, setOcsPosition>(10, AcDbDxfField::kOcs),
    dxf::custom(41, writeScale<0>, readScale<0>),
    dxf::custom(42, writeScale<1>, readScale<1>),
    dxf::custom(43, writeScale<2>, readScale<2>),
    dxf::value<AcDbBlockReference, &AcDbBlockReference::rotation, &AcDbBlockReference::setRotation>(
        50, AcDbDxfField::kOmitDefault | AcDbDxfField::kAngle),
    dxf::value<AcDbBlockReference, &AcDbBlockReference::normal, &AcDbBlockReference::setNormal>(
        210, AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDbBlockReference, "INSERT", kFields)

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId id) {
    ACDB_WRITE_CHECK();
    if (!AcDbBlockTableRecord::cast(AcDbImpl::peek(acdbStubOf(id)))) return Acad::eWrongObjectType;
    block_ = id;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
    return entgeom::setProperty(this, position_, position);
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
    ACDB_WRITE_CHECK();
    if (scale.sx == 0.0 || scale.sy == 0.0 || scale.sz == 0.0) return Acad::eInvalidInput;
    scale_ = scale;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::setRotation(double rotation) {
    return entgeom::setProperty(this, rotation_, rotation);
}

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    const AcDbBlockTableRecord* block = blockOf(*this);
    const AcGePoint3d base = block ? block->origin() : AcGePoint3d::kOrigin;
    AcGeMatrix3d scale;
    scale.entry[0][0] = scale_.sx;
    scale.entry[1][1] = scale_.sy;
    scale.entry[2][2] = scale_.sz;
    AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal_);
    return AcGeMatrix3d::translation(position_.asVector()) * plane *
           AcGeMatrix3d::rotation(rotation_, AcGeVector3d::kZAxis) * scale *
           AcGeMatrix3d::translation(-base.asVector());
}

Acad::ErrorStatus AcDbBlockReference::setBlockTransform(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    const AcDbBlockTableRecord* block = blockOf(*this);
    const AcGePoint3d base = block ? block->origin() : AcGePoint3d::kOrigin;
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    xform.getCoordSystem(origin, x, y, z);
    AcGeTol tol;
    tol.setEqualVector(1e-9);
    if (x.isZeroLength() || y.isZeroLength() || z.isZeroLength() || !x.isPerpendicularTo(y, tol) ||
        !y.isPerpendicularTo(z, tol) || !z.isPerpendicularTo(x, tol))
        return Acad::eCannotScaleNonUniformly;
    const AcGeVector3d normal = x.crossProduct(y).normal();
    const double sz = z.dotProduct(normal);
    position_ = xform * base;
    normal_ = normal;
    scale_ = AcGeScale3d(x.length(), y.length(), sz);
    rotation_ = entgeom::angleInPlane(normal, AcGePoint3d::kOrigin, AcGePoint3d::kOrigin + x);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::transformBy(const AcGeMatrix3d& xform) {
    return setBlockTransform(xform * blockTransform());
}

namespace {
// Copies of a block's live entities, each placed by the transformation.
Acad::ErrorStatus placedCopies(const AcDbBlockTableRecord* block, const AcGeMatrix3d& xform,
                               std::vector<std::unique_ptr<AcDbEntity>>& copies) {
    if (block == nullptr) return Acad::eInvalidInput;
    AcDbBlockTableRecordIterator* it = nullptr;
    block->newIterator(it);
    std::unique_ptr<AcDbBlockTableRecordIterator> owner(it);
    for (; !it->done(); it->step()) {
        AcDbObjectId id;
        it->getEntityId(id);
        const auto* entity = AcDbEntity::cast(AcDbImpl::peek(acdbStubOf(id)));
        if (entity == nullptr) continue;
        std::unique_ptr<AcDbEntity> copy(AcDbEntity::cast(entity->clone()));
        if (copy == nullptr) continue;
        if (Acad::ErrorStatus es = copy->transformBy(xform); es != Acad::eOk) return es;
        copies.push_back(std::move(copy));
    }
    return Acad::eOk;
}
} // namespace

Acad::ErrorStatus AcDbBlockReference::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    std::vector<std::unique_ptr<AcDbEntity>> copies;
    if (Acad::ErrorStatus es = placedCopies(blockOf(*this), blockTransform(), copies);
        es != Acad::eOk)
        return es;
    for (const auto& copy : copies) {
        AcDbExtents part;
        if (copy->getGeomExtents(part) == Acad::eOk) extents.addExt(part);
    }
    return extents.isEmpty() ? Acad::eInvalidExtents : Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::explode(AcDbVoidPtrArray& entities) const {
    std::vector<std::unique_ptr<AcDbEntity>> copies;
    if (Acad::ErrorStatus es = placedCopies(blockOf(*this), blockTransform(), copies);
        es != Acad::eOk)
        return es;
    for (auto& copy : copies) {
        // Pieces by block, or on layer "0", take the reference's colour and layer.
        if (copy->entityColor().isByBlock()) copy->setColor(color());
        const auto* layer = AcDbLayerTableRecord::cast(AcDbImpl::peek(acdbStubOf(copy->layerId())));
        if (layer == nullptr || layer->name() == L"0") copy->setLayer(layerId());
        entities.append(copy.release());
    }
    return Acad::eOk;
}
