#include <cmath>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbelipse.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbEllipse, AcDbCurve, ACRX_T("ELLIPSE"))

namespace {
constexpr double kTwoPi = 6.28318530717958647692;
// Axes and normal come in one group each; together they are checked by set().
double wrapToPi(double a) {
    return std::remainder(a, kTwoPi);
}
} // namespace

struct AcDbEllipseDxf {
    static AcGeVector3d major(const AcDbEllipse& e) { return e.major_; }
    static void setMajor(AcDbEllipse& e, const AcGeVector3d& v) { e.major_ = v; }
    static AcGeVector3d normal(const AcDbEllipse& e) { return e.normal_; }
    static bool setNormal(AcDbEllipse& e, const AcGeVector3d& v) {
        if (!entgeom::validNormal(v)) return false;
        e.normal_ = v.normal();
        return true;
    }
};

namespace {
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbEllipse")),
    dxf::value<AcDbEllipse, &AcDbEllipse::center, &AcDbEllipse::setCenter>(10),
    dxf::value<AcDbEllipse, AcDbEllipseDxf::major, AcDbEllipseDxf::setMajor>(11),
    dxf::value<AcDbEllipse, AcDbEllipseDxf::normal, AcDbEllipseDxf::setNormal>(210),
    dxf::value<AcDbEllipse, &AcDbEllipse::radiusRatio, &AcDbEllipse::setRadiusRatio>(40),
    dxf::value<AcDbEllipse, &AcDbEllipse::startParam, &AcDbEllipse::setStartParam>(41),
    dxf::value<AcDbEllipse, &AcDbEllipse::endParam, &AcDbEllipse::setEndParam>(42),
};
} // namespace
ACDB_DXF_KIND(AcDbEllipse, "ELLIPSE", kFields)

AcDbEllipse::AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                         const AcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                         double endAngle) {
    set(center, unitNormal, majorAxis, radiusRatio, startAngle, endAngle);
}

Acad::ErrorStatus AcDbEllipse::set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                                   const AcGeVector3d& majorAxis, double radiusRatio,
                                   double startAngle, double endAngle) {
    ACDB_WRITE_CHECK();
    AcGeTol tol;
    tol.setEqualVector(1e-6);
    if (!entgeom::validNormal(unitNormal) || majorAxis.isZeroLength() ||
        !unitNormal.isPerpendicularTo(majorAxis, tol) || !(radiusRatio > 0.0) ||
        radiusRatio > 1.0 + 1e-6)
        return Acad::eInvalidInput;
    center_ = center;
    normal_ = unitNormal.normal();
    major_ = majorAxis;
    ratio_ = radiusRatio;
    startAngle_ = startAngle;
    endAngle_ = endAngle;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::setCenter(const AcGePoint3d& center) {
    return entgeom::setProperty(this, center_, center);
}

AcGeVector3d AcDbEllipse::minorAxis() const {
    return normal_.crossProduct(major_) * ratio_;
}

Acad::ErrorStatus AcDbEllipse::setRadiusRatio(double ratio) {
    ACDB_WRITE_CHECK();
    if (!(ratio > 0.0) || ratio > 1.0 + 1e-6) return Acad::eInvalidInput;
    ratio_ = ratio;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::setStartAngle(double angle) {
    return entgeom::setProperty(this, startAngle_, angle);
}

Acad::ErrorStatus AcDbEllipse::setEndAngle(double angle) {
    return entgeom::setProperty(this, endAngle_, angle);
}

Acad::ErrorStatus AcDbEllipse::setStartParam(double param) {
    return setStartAngle(angleAtParam(param));
}
Acad::ErrorStatus AcDbEllipse::setEndParam(double param) {
    return setEndAngle(angleAtParam(param));
}

// Angle and parameter lie in one quadrant; the difference between them stays below a quarter
// turn, so whole turns carry over.
double AcDbEllipse::paramAtAngle(double angle) const {
    // On the axes angle and parameter are equal: kept exact, so that files read back the same.
    if (std::remainder(angle, M_PI / 2) == 0.0) return angle;
    return angle + wrapToPi(std::atan2(std::sin(angle), ratio_ * std::cos(angle)) - angle);
}

double AcDbEllipse::angleAtParam(double param) const {
    if (std::remainder(param, M_PI / 2) == 0.0) return param;
    return param + wrapToPi(std::atan2(ratio_ * std::sin(param), std::cos(param)) - param);
}

AcGePoint3d AcDbEllipse::pointAtParam(double param) const {
    return center_ + major_ * std::cos(param) + minorAxis() * std::sin(param);
}

bool AcDbEllipse::isClosed() const {
    return std::fabs(std::fabs(endAngle_ - startAngle_) - kTwoPi) < 1e-9;
}

Acad::ErrorStatus AcDbEllipse::getStartPoint(AcGePoint3d& p) const {
    p = pointAtParam(startParam());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::getEndPoint(AcGePoint3d& p) const {
    p = pointAtParam(endParam());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    double scale = 1.0;
    if (!entgeom::uniformScale(xform, scale)) return Acad::eCannotScaleNonUniformly;
    // The normal from the unit axes of the plane: the ellipse's own axes may be long enough for
    // their cross product to overflow.
    normal_ = entgeom::transformNormal(xform, normal_);
    center_ = xform * center_;
    major_ = xform * major_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    const double start = startParam();
    const double span = isClosed() ? kTwoPi : entgeom::sweep(start, endParam());
    entgeom::addArc(extents, center_, major_, minorAxis(), start, start + span);
    return Acad::eOk;
}
