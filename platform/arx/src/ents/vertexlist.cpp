// Vertices of polylines and meshes, and the list their owners keep them in.
#include "../db/objectimpl.h"
#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbmesh.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbVertex, AcDbEntity, ACRX_T("VERTEX"))
ACRX_DEFINE_MEMBERS(AcDb2dVertex, AcDbVertex, ACRX_T("VERTEX"))
ACRX_DEFINE_MEMBERS(AcDb3dPolylineVertex, AcDbVertex, ACRX_T("VERTEX"))

namespace {
int type2d(const AcDb2dVertex& v) {
    // Flag bits of the drawing format: 8 curve-fit, 16 spline fit, 32... control.
    switch (v.vertexType()) {
    case AcDb::k2dCurveFitVertex:
        return 1;
    case AcDb::k2dSplineFitVertex:
        return 8;
    case AcDb::k2dSplineCtlVertex:
        return 16;
    default:
        return 0;
    }
}
Acad::ErrorStatus setType2d(AcDb2dVertex& v, const int& flags) {
    return v.setVertexType(flags & 16  ? AcDb::k2dSplineCtlVertex
                           : flags & 8 ? AcDb::k2dSplineFitVertex
                           : flags & 1 ? AcDb::k2dCurveFitVertex
                                       : AcDb::k2dVertex);
}
constexpr unsigned kOmit = AcDbDxfField::kOmitDefault;
const AcDbDxfField k2dVertexFields[] = {
    dxf::marker(ACRX_T("AcDbVertex")),
    dxf::marker(ACRX_T("AcDb2dVertex")),
    dxf::value<AcDb2dVertex, &AcDb2dVertex::position, &AcDb2dVertex::setPosition>(10),
    dxf::value<AcDb2dVertex, &AcDb2dVertex::startWidth, &AcDb2dVertex::setStartWidth>(40, kOmit),
    dxf::value<AcDb2dVertex, &AcDb2dVertex::endWidth, &AcDb2dVertex::setEndWidth>(41, kOmit),
    dxf::value<AcDb2dVertex, &AcDb2dVertex::bulge, &AcDb2dVertex::setBulge>(42, kOmit),
    dxf::value<AcDb2dVertex, type2d, setType2d>(70),
};
int type3d(const AcDb3dPolylineVertex& v) {
    return 32 | (v.vertexType() == AcDb::k3dControlVertex ? 16 : 0) |
           (v.vertexType() == AcDb::k3dFitVertex ? 8 : 0);
}
Acad::ErrorStatus setType3d(AcDb3dPolylineVertex& v, const int& flags) {
    return v.setVertexType(flags & 16  ? AcDb::k3dControlVertex
                           : flags & 8 ? AcDb::k3dFitVertex
                                       : AcDb::k3dSimpleVertex);
}
const AcDbDxfField k3dVertexFields[] = {
    dxf::marker(ACRX_T("AcDbVertex")),
    dxf::marker(ACRX_T("AcDb3dPolylineVertex")),
    dxf::value<AcDb3dPolylineVertex, &AcDbPositionVertex::position,
               &AcDbPositionVertex::setPosition>(10),
    dxf::value<AcDb3dPolylineVertex, type3d, setType3d>(70),
};
} // namespace
ACDB_DXF_KIND(AcDb2dVertex, "VERTEX", k2dVertexFields)
ACDB_DXF_KIND(AcDb3dPolylineVertex, "VERTEX", k3dVertexFields)

Acad::ErrorStatus AcDb2dVertex::setPosition(const AcGePoint3d& position) {
    return entgeom::setProperty(this, position_, position);
}
Acad::ErrorStatus AcDb2dVertex::setBulge(double bulge) {
    return entgeom::setProperty(this, bulge_, bulge);
}
Acad::ErrorStatus AcDb2dVertex::setStartWidth(double width) {
    ACDB_WRITE_CHECK();
    if (width < 0.0) return Acad::eInvalidInput;
    startWidth_ = width;
    return Acad::eOk;
}
Acad::ErrorStatus AcDb2dVertex::setEndWidth(double width) {
    ACDB_WRITE_CHECK();
    if (width < 0.0) return Acad::eInvalidInput;
    endWidth_ = width;
    return Acad::eOk;
}
Acad::ErrorStatus AcDb2dVertex::setVertexType(AcDb::Vertex2dType type) {
    return entgeom::setProperty(this, type_, type);
}
Acad::ErrorStatus AcDb2dVertex::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    position_ = xform * position_;
    return Acad::eOk;
}
Acad::ErrorStatus AcDb2dVertex::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    extents.addPoint(position_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPositionVertex::setPosition(const AcGePoint3d& position) {
    return entgeom::setProperty(this, position_, position);
}
Acad::ErrorStatus AcDbPositionVertex::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    position_ = xform * position_;
    return Acad::eOk;
}
Acad::ErrorStatus AcDbPositionVertex::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    extents.addPoint(position_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolylineVertex::setVertexType(AcDb::Vertex3dType type) {
    return entgeom::setProperty(this, type_, type);
}

AcDbVertexList::AcDbVertexList(const AcDbVertexList& other) {
    for (int i = 0; i < other.length(); ++i)
        if (const AcDbVertex* v = other.at(i); v && !other.isErasedAt(i))
            pending_.push_back(static_cast<AcDbVertex*>(v->clone()));
}

AcDbVertexList::~AcDbVertexList() {
    for (AcDbVertex* v : pending_)
        delete v;
}

Acad::ErrorStatus AcDbVertexList::append(AcDbEntity* owner, AcDbVertex* vertex, AcDbObjectId& id) {
    id = AcDbObjectId::kNull;
    if (!owner->isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (vertex == nullptr) return Acad::eNullObjectPointer;
    AcDbStub* ownerStub = AcDbImpl::stub(owner);
    // A vertex a drawing reader made resident under its own handle joins its owner's list.
    if (AcDbImpl::stub(vertex) != nullptr) {
        if (ownerStub == nullptr || AcDbImpl::owner(vertex) != ownerStub) return Acad::eAlreadyInDb;
        AcDbImpl::setLayer(vertex, AcDbImpl::layer(owner));
        resident_.push_back(AcDbImpl::stub(vertex));
        id = vertex->objectId();
        return Acad::eOk;
    }
    if (ownerStub == nullptr) {
        pending_.push_back(vertex);
        return Acad::eOk;
    }
    AcDbImpl::setLayer(vertex, AcDbImpl::layer(owner));
    if (Acad::ErrorStatus es = AcDbImpl::add(owner->database(), vertex, ownerStub); es != Acad::eOk)
        return es;
    resident_.push_back(AcDbImpl::stub(vertex));
    id = vertex->objectId();
    return Acad::eOk;
}

void AcDbVertexList::addToDatabase(AcDbEntity* owner) {
    for (AcDbVertex* v : pending_) {
        AcDbImpl::setLayer(v, AcDbImpl::layer(owner));
        AcDbImpl::add(owner->database(), v, AcDbImpl::stub(owner));
        v->close();
        resident_.push_back(AcDbImpl::stub(v));
    }
    pending_.clear();
}

int AcDbVertexList::length() const {
    return int(resident_.empty() ? pending_.size() : resident_.size());
}

AcDbVertex* AcDbVertexList::at(int index) const {
    if (index < 0 || index >= length()) return nullptr;
    if (resident_.empty()) return pending_[size_t(index)];
    return static_cast<AcDbVertex*>(AcDbImpl::peek(resident_[size_t(index)]));
}

AcDbObjectId AcDbVertexList::idAt(int index) const {
    if (resident_.empty() || index < 0 || index >= length()) return AcDbObjectId::kNull;
    return resident_[size_t(index)];
}

bool AcDbVertexList::isErasedAt(int index) const {
    return !resident_.empty() && index >= 0 && index < length() &&
           AcDbImpl::erased(resident_[size_t(index)]);
}

void AcDbObjectIterator::start(bool atEnd) {
    index_ = atEnd ? list_->length() - 1 : 0;
    while (!done() && list_->isErasedAt(index_))
        index_ += atEnd ? -1 : 1;
}

void AcDbObjectIterator::step(bool backwards, bool skipErasedObjects) {
    do {
        index_ += backwards ? -1 : 1;
    } while (skipErasedObjects && !done() && list_->isErasedAt(index_));
}

void AcDbVertexList::transformPositions(const AcGeMatrix3d& xform) {
    for (int i = 0; i < length(); ++i)
        if (auto* v = dynamic_cast<AcDbPositionVertex*>(at(i))) v->position_ = xform * v->position_;
}

void AcDbVertexList::addPositions(AcDbExtents& extents) const {
    for (const AcGePoint3d& p : positions())
        extents.addPoint(p);
}

AcGePoint3dArray AcDbVertexList::positions() const {
    AcGePoint3dArray points;
    for (int i = 0; i < length(); ++i)
        if (const auto* v = dynamic_cast<const AcDbPositionVertex*>(at(i)); v && !isErasedAt(i))
            points.append(v->position());
    return points;
}
