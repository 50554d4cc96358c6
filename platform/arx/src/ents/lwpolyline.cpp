#include <cmath>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbpl.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, ACRX_T("LWPOLYLINE"))

namespace {
const AcDbPolyline& pl(const AcDbObject& o) {
    return static_cast<const AcDbPolyline&>(o);
}
AcDbPolyline& pl(AcDbObject& o) {
    return static_cast<AcDbPolyline&>(o);
}

void writeCount(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(f.code, pl(o).numVerts()));
}
// The count follows from the vertices themselves.
bool readCount(const AcDbDxfField&, AcDbObject&, const AcDbDxfItem& item) {
    return item.integer >= 0;
}
void writeFlags(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(f.code, pl(o).isClosed() ? 1 : 0));
}
bool readFlags(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    pl(o).setClosed(item.integer & 1);
    return true;
}
double constantWidth(const AcDbPolyline& p) {
    double w = 0.0;
    p.getConstantWidth(w);
    return w;
}
// Each vertex: 10 (x, y in the polyline's plane), 40 and 41 widths, 42 bulge when not zero.
void writeVertices(const AcDbDxfField&, const AcDbObject& o, AcDbDxfItems& out) {
    const AcDbPolyline& p = pl(o);
    for (unsigned i = 0; i < p.numVerts(); ++i) {
        AcGePoint2d pt;
        double bulge = 0.0, w0 = 0.0, w1 = 0.0;
        p.getPointAt(i, pt);
        p.getBulgeAt(i, bulge);
        p.getWidthsAt(i, w0, w1);
        out.push_back(AcDbDxfItem::ofPoint(10, {pt.x, pt.y, 0.0}));
        if (w0 != 0.0) out.push_back(AcDbDxfItem::ofReal(40, w0));
        if (w1 != 0.0) out.push_back(AcDbDxfItem::ofReal(41, w1));
        if (bulge != 0.0) out.push_back(AcDbDxfItem::ofReal(42, bulge));
    }
}
bool readVertices(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    AcDbPolyline& p = pl(o);
    if (item.code == 10)
        return p.addVertexAt(p.numVerts(), {item.point.x, item.point.y}, 0.0, 0.0, 0.0) ==
               Acad::eOk;
    if (p.numVerts() == 0) return false;
    const unsigned last = p.numVerts() - 1;
    double w0 = 0.0, w1 = 0.0;
    p.getWidthsAt(last, w0, w1);
    if (item.code == 40) return p.setWidthsAt(last, item.real(), w1) == Acad::eOk;
    if (item.code == 41) return p.setWidthsAt(last, w0, item.real()) == Acad::eOk;
    return p.setBulgeAt(last, item.real()) == Acad::eOk;
}
constexpr unsigned kOmit = AcDbDxfField::kOmitDefault;
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbPolyline")),
    dxf::custom(90, writeCount, readCount),
    dxf::custom(70, writeFlags, readFlags),
    dxf::value<AcDbPolyline, constantWidth, &AcDbPolyline::setConstantWidth>(43, kOmit),
    dxf::value<AcDbPolyline, &AcDbPolyline::elevation, &AcDbPolyline::setElevation>(38, kOmit),
    dxf::value<AcDbPolyline, &AcDbPolyline::thickness, &AcDbPolyline::setThickness>(39, kOmit),
    dxf::custom(10, writeVertices, readVertices, 40, 41, 42),
    dxf::value<AcDbPolyline, &AcDbPolyline::normal, &AcDbPolyline::setNormal>(210, kOmit),
};
} // namespace
ACDB_DXF_KIND(AcDbPolyline, "LWPOLYLINE", kFields)

AcGePoint3d AcDbPolyline::toWorld(const AcGePoint2d& p) const {
    return entgeom::fromOcs(normal_, {p.x, p.y, elevation_});
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& point,
                                            double bulge, double startWidth, double endWidth) {
    ACDB_WRITE_CHECK();
    if (index > numVerts()) return Acad::eInvalidIndex;
    Vertex v{point, bulge, startWidth < 0.0 ? constantWidth_ : startWidth,
             endWidth < 0.0 ? constantWidth_ : endWidth};
    vertices_.insert(vertices_.begin() + index, v);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::removeVertexAt(unsigned int index) {
    ACDB_WRITE_CHECK();
    if (index >= numVerts()) return Acad::eInvalidIndex;
    vertices_.erase(vertices_.begin() + index);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& point) const {
    if (index >= numVerts()) return Acad::eInvalidIndex;
    point = toWorld(vertices_[index].point);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint2d& point) const {
    if (index >= numVerts()) return Acad::eInvalidIndex;
    point = vertices_[index].point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setPointAt(unsigned int index, const AcGePoint2d& point) {
    ACDB_WRITE_CHECK();
    if (index >= numVerts()) return Acad::eInvalidIndex;
    vertices_[index].point = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
    if (index >= numVerts()) return Acad::eInvalidIndex;
    bulge = vertices_[index].bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setBulgeAt(unsigned int index, double bulge) {
    ACDB_WRITE_CHECK();
    if (index >= numVerts()) return Acad::eInvalidIndex;
    vertices_[index].bulge = bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& startWidth,
                                            double& endWidth) const {
    if (index >= numVerts()) return Acad::eInvalidIndex;
    startWidth = vertices_[index].startWidth;
    endWidth = vertices_[index].endWidth;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setWidthsAt(unsigned int index, double startWidth,
                                            double endWidth) {
    ACDB_WRITE_CHECK();
    if (index >= numVerts()) return Acad::eInvalidIndex;
    if (startWidth < 0.0 || endWidth < 0.0) return Acad::eInvalidInput;
    vertices_[index].startWidth = startWidth;
    vertices_[index].endWidth = endWidth;
    return Acad::eOk;
}

// A constant width exists only while every segment has it.
Acad::ErrorStatus AcDbPolyline::getConstantWidth(double& width) const {
    for (const Vertex& v : vertices_)
        if (v.startWidth != constantWidth_ || v.endWidth != constantWidth_)
            return Acad::eNotApplicable;
    width = constantWidth_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setConstantWidth(double width) {
    ACDB_WRITE_CHECK();
    if (width < 0.0) return Acad::eInvalidInput;
    constantWidth_ = width;
    for (Vertex& v : vertices_)
        v.startWidth = v.endWidth = width;
    return Acad::eOk;
}

AcDbPolyline::SegType AcDbPolyline::segType(unsigned int index) const {
    const unsigned n = numVerts();
    if (n == 0 || index >= n) return kEmpty;
    if (n == 1) return kPoint;
    if (!closed_ && index == n - 1) return kEmpty;
    const Vertex& a = vertices_[index];
    const Vertex& b = vertices_[(index + 1) % n];
    if (a.point.isEqualTo(b.point)) return kCoincident;
    return a.bulge != 0.0 ? kArc : kLine;
}

Acad::ErrorStatus AcDbPolyline::getArcSegAt(unsigned int index, AcGeCircArc3d& arc) const {
    if (segType(index) != kArc) return Acad::eNotApplicable;
    const Vertex& a = vertices_[index];
    const AcGePoint2d p0 = a.point, p1 = vertices_[(index + 1) % numVerts()].point;
    const double theta = 4.0 * std::atan(a.bulge);
    const AcGeVector2d chord = p1 - p0;
    const double c = chord.length();
    const AcGeVector2d left(-chord.y / c, chord.x / c);
    const double h = c / (2.0 * std::tan(theta / 2.0));
    const AcGePoint2d mid(p0.x + chord.x / 2, p0.y + chord.y / 2);
    const AcGePoint3d center = toWorld(mid + left * h);
    const AcGePoint3d start = toWorld(p0);
    const double radius = c / (2.0 * std::fabs(std::sin(theta / 2.0)));
    arc.set(center, a.bulge > 0.0 ? normal_ : -normal_, start - center, radius, 0.0,
            std::fabs(theta));
    return Acad::eOk;
}

void AcDbPolyline::setClosed(bool closed) {
    if (assertWriteEnabled() == Acad::eOk) closed_ = closed;
}

Acad::ErrorStatus AcDbPolyline::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbPolyline::setElevation(double elevation) {
    return entgeom::setProperty(this, elevation_, elevation);
}

Acad::ErrorStatus AcDbPolyline::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbPolyline::getStartPoint(AcGePoint3d& p) const {
    if (vertices_.empty()) return Acad::eDegenerateGeometry;
    p = toWorld(vertices_.front().point);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getEndPoint(AcGePoint3d& p) const {
    if (vertices_.empty()) return Acad::eDegenerateGeometry;
    p = toWorld((closed_ ? vertices_.front() : vertices_.back()).point);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    double scale = 1.0;
    const bool uniform = entgeom::uniformScale(xform, scale);
    for (const Vertex& v : vertices_)
        if (v.bulge != 0.0 && !uniform) return Acad::eCannotScaleNonUniformly;
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(normal);
    double elevation = (toPlane * (xform * toWorld(AcGePoint2d::kOrigin))).z;
    for (Vertex& v : vertices_) {
        const AcGePoint3d p = toPlane * (xform * toWorld(v.point));
        v.point.set(p.x, p.y);
        if (uniform) {
            v.startWidth *= scale;
            v.endWidth *= scale;
        }
    }
    if (uniform) constantWidth_ *= scale;
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    elevation_ = elevation;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    if (vertices_.empty()) return Acad::eInvalidExtents;
    for (unsigned i = 0; i < numVerts(); ++i) {
        extents.addPoint(toWorld(vertices_[i].point));
        AcGeCircArc3d arc;
        if (getArcSegAt(i, arc) != Acad::eOk) continue;
        const AcGeVector3d x = arc.refVec() * arc.radius();
        const AcGeVector3d y = arc.normal().crossProduct(arc.refVec()) * arc.radius();
        entgeom::addArc(extents, arc.center(), x, y, arc.startAng(), arc.endAng());
    }
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::explode(AcDbVoidPtrArray& entities) const {
    for (unsigned i = 0; i < numVerts(); ++i) {
        const SegType type = segType(i);
        AcDbCurve* piece = nullptr;
        if (type == kLine) {
            auto* line = new AcDbLine(toWorld(vertices_[i].point),
                                      toWorld(vertices_[(i + 1) % numVerts()].point));
            line->setNormal(normal_);
            line->setThickness(thickness_);
            piece = line;
        } else if (type == kArc) {
            AcGeCircArc3d a;
            getArcSegAt(i, a);
            const double start = entgeom::angleInPlane(a.normal(), a.center(), a.startPoint());
            auto* arc = new AcDbArc(a.center(), a.normal(), a.radius(), start, start + a.endAng());
            arc->setThickness(thickness_);
            piece = arc;
        }
        if (piece == nullptr) continue;
        copyPropertiesTo(piece);
        entities.append(piece);
    }
    return Acad::eOk;
}
