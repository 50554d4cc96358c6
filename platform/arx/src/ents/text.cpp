#include <cmath>

#include "../db/rxdefine.h"
#include "../db/text.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbText, AcDbEntity, ACRX_T("TEXT"))

namespace {
AcGePoint3d ocsPosition(const AcDbText& t) {
    return entgeom::toOcs(t.normal(), t.position());
}
Acad::ErrorStatus setOcsPosition(AcDbText& t, const AcGePoint3d& p) {
    return t.setPosition(entgeom::fromOcs(t.normal(), p));
}
AcGePoint3d ocsAlignment(const AcDbText& t) {
    return entgeom::toOcs(t.normal(), t.alignmentPoint());
}
Acad::ErrorStatus setOcsAlignment(AcDbText& t, const AcGePoint3d& p) {
    return t.setAlignmentPoint(entgeom::fromOcs(t.normal(), p));
}
int horizontal(const AcDbText& t) {
    return t.horizontalMode();
}
// Values out of range are refused before they become an enumeration.
Acad::ErrorStatus setHorizontal(AcDbText& t, const int& mode) {
    if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit) return Acad::eInvalidInput;
    return t.setHorizontalMode(AcDb::TextHorzMode(mode));
}
int vertical(const AcDbText& t) {
    return t.verticalMode();
}
Acad::ErrorStatus setVertical(AcDbText& t, const int& mode) {
    if (mode < AcDb::kTextBase || mode > AcDb::kTextTop) return Acad::eInvalidInput;
    return t.setVerticalMode(AcDb::TextVertMode(mode));
}
void writeString(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofText(f.code, static_cast<const AcDbText&>(o).textStringConst()));
}
bool readString(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    return static_cast<AcDbText&>(o).setTextString(item.text.c_str()) == Acad::eOk;
}
constexpr unsigned kOmit = AcDbDxfField::kOmitDefault;
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbText")),
    dxf::value<AcDbText, &AcDbText::thickness, &AcDbText::setThickness>(39, kOmit),
    dxf::value<AcDbText, ocsPosition, setOcsPosition>(10, AcDbDxfField::kOcs),
    dxf::value<AcDbText, &AcDbText::height, &AcDbText::setHeight>(40),
    dxf::custom(1, writeString, readString),
    dxf::value<AcDbText, &AcDbText::rotation, &AcDbText::setRotation>(50,
                                                                      kOmit | AcDbDxfField::kAngle),
    dxf::value<AcDbText, &AcDbText::widthFactor, &AcDbText::setWidthFactor>(41),
    dxf::value<AcDbText, &AcDbText::oblique, &AcDbText::setOblique>(51,
                                                                    kOmit | AcDbDxfField::kAngle),
    dxf::value<AcDbText, horizontal, setHorizontal>(72, kOmit),
    dxf::value<AcDbText, ocsAlignment, setOcsAlignment>(11, AcDbDxfField::kOcs),
    dxf::value<AcDbText, &AcDbText::normal, &AcDbText::setNormal>(210, kOmit),
    dxf::marker(ACRX_T("AcDbText")),
    dxf::value<AcDbText, vertical, setVertical>(73, kOmit),
};
} // namespace
ACDB_DXF_KIND(AcDbText, "TEXT", kFields)

AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId /*style*/,
                   double height, double rotation)
    : text_(text ? text : L""), position_(position), alignment_(position), rotation_(rotation) {
    if (height > 0.0) height_ = height;
}

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
    return entgeom::setProperty(this, position_, position);
}

Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& point) {
    return entgeom::setProperty(this, alignment_, point);
}

ACHAR* AcDbText::textString() const {
    return acdbDupString(text_);
}

Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
    ACDB_WRITE_CHECK();
    if (text == nullptr) return Acad::eInvalidInput;
    text_ = text;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setHeight(double height) {
    return entgeom::setPositive(this, height_, height);
}

Acad::ErrorStatus AcDbText::setRotation(double rotation) {
    return entgeom::setProperty(this, rotation_, rotation);
}

Acad::ErrorStatus AcDbText::setWidthFactor(double factor) {
    return entgeom::setPositive(this, widthFactor_, factor);
}

Acad::ErrorStatus AcDbText::setOblique(double angle) {
    return entgeom::setProperty(this, oblique_, angle);
}

Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
    ACDB_WRITE_CHECK();
    if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit) return Acad::eInvalidInput;
    horizontalMode_ = mode;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
    ACDB_WRITE_CHECK();
    if (mode < AcDb::kTextBase || mode > AcDb::kTextTop) return Acad::eInvalidInput;
    verticalMode_ = mode;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbText::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbText::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    const AcGeVector3d along = x * std::cos(rotation_) + y * std::sin(rotation_);
    const AcGeVector3d up = normal_.crossProduct(along);
    const AcGeVector3d newAlong = xform * along, newUp = xform * up;
    if (newAlong.isZeroLength() || newUp.isZeroLength()) return Acad::eInvalidInput;
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    position_ = xform * position_;
    alignment_ = xform * alignment_;
    height_ *= newUp.length();
    widthFactor_ *= newAlong.length() / newUp.length();
    rotation_ =
        entgeom::angleInPlane(normal_, AcGePoint3d::kOrigin, AcGePoint3d::kOrigin + newAlong);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::getGeomExtents(AcDbExtents& extents) const {
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    const AcGeVector3d along = x * std::cos(rotation_) + y * std::sin(rotation_);
    const AcGeVector3d up = normal_.crossProduct(along);
    double width = double(text_.size()) * height_ * widthFactor_;
    AcGePoint3d anchor = horizontalMode_ == AcDb::kTextLeft && verticalMode_ == AcDb::kTextBase
                             ? position_
                             : alignment_;
    double shiftX = 0.0, shiftY = 0.0;
    switch (horizontalMode_) {
    case AcDb::kTextCenter:
    case AcDb::kTextMid:
        shiftX = -width / 2;
        break;
    case AcDb::kTextRight:
        shiftX = -width;
        break;
    case AcDb::kTextAlign:
    case AcDb::kTextFit:
        anchor = position_;
        width = position_.distanceTo(alignment_);
        break;
    default:
        break;
    }
    if (verticalMode_ == AcDb::kTextVertMid || horizontalMode_ == AcDb::kTextMid)
        shiftY = -height_ / 2;
    else if (verticalMode_ == AcDb::kTextTop)
        shiftY = -height_;
    extents = AcDbExtents();
    for (double u : {shiftX, shiftX + width})
        for (double v : {shiftY, shiftY + height_})
            extents.addPoint(anchor + along * u + up * v);
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}
