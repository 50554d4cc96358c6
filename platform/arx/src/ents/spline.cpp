#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbspline.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbSpline, AcDbCurve, ACRX_T("SPLINE"))

// The data arrive group by group from a drawing; the fields fill the arrays directly.
struct AcDbSplineDxf {
    static AcDbSpline& s(AcDbObject& o) { return static_cast<AcDbSpline&>(o); }
    static const AcDbSpline& s(const AcDbObject& o) { return static_cast<const AcDbSpline&>(o); }

    // 1 closed, 2 periodic, 4 rational, 8 planar.
    static int flags(const AcDbSpline& sp) {
        return (sp.closed_ ? 1 : 0) | (sp.periodic_ ? 2 : 0) | (sp.rational_ ? 4 : 0);
    }
    static bool setFlags(AcDbSpline& sp, const int& f) {
        sp.closed_ = f & 1;
        sp.periodic_ = f & 2;
        sp.rational_ = f & 4;
        return true;
    }
    static int degree(const AcDbSpline& sp) { return sp.degree_; }
    static bool setDegree(AcDbSpline& sp, const int& d) {
        sp.degree_ = d;
        return d >= 1 && d <= 25;
    }
    static int knotCount(const AcDbSpline& sp) { return sp.knots_.length(); }
    static int controlCount(const AcDbSpline& sp) { return sp.controlPoints_.length(); }
    static int fitCount(const AcDbSpline& sp) { return sp.fitPoints_.length(); }
    // Counts follow from the runs of values themselves.
    static bool acceptCount(AcDbSpline&, const int& n) { return n >= 0; }
    static double fitTolerance(const AcDbSpline& sp) { return sp.fitTolerance_; }
    static bool setFitTolerance(AcDbSpline& sp, const double& t) {
        sp.fitTolerance_ = t;
        return t >= 0.0;
    }
    static AcGeVector3d startTangent(const AcDbSpline& sp) { return sp.startTangent_; }
    static void setStartTangent(AcDbSpline& sp, const AcGeVector3d& v) { sp.startTangent_ = v; }
    static AcGeVector3d endTangent(const AcDbSpline& sp) { return sp.endTangent_; }
    static void setEndTangent(AcDbSpline& sp, const AcGeVector3d& v) { sp.endTangent_ = v; }

    static void writeKnots(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
        for (double k : s(o).knots_)
            out.push_back(AcDbDxfItem::ofReal(f.code, k));
    }
    static bool readKnot(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
        s(o).knots_.append(item.real());
        return true;
    }
    static void writeWeights(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
        if (!s(o).rational_) return;
        for (double w : s(o).weights_)
            out.push_back(AcDbDxfItem::ofReal(f.code, w));
    }
    static bool readWeight(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
        s(o).weights_.append(item.real());
        return item.real() > 0.0;
    }
    static void writeControl(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
        for (const AcGePoint3d& p : s(o).controlPoints_)
            out.push_back(AcDbDxfItem::ofPoint(f.code, p));
    }
    static bool readControl(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
        s(o).controlPoints_.append(item.point);
        return true;
    }
    static void writeFit(const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
        for (const AcGePoint3d& p : s(o).fitPoints_)
            out.push_back(AcDbDxfItem::ofPoint(f.code, p));
    }
    static bool readFit(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
        s(o).fitPoints_.append(item.point);
        return true;
    }
};

namespace {
using D = AcDbSplineDxf;
constexpr unsigned kOmit = AcDbDxfField::kOmitDefault;
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbSpline")),
    dxf::value<AcDbSpline, D::flags, D::setFlags>(70),
    dxf::value<AcDbSpline, D::degree, D::setDegree>(71),
    dxf::value<AcDbSpline, D::knotCount, D::acceptCount>(72),
    dxf::value<AcDbSpline, D::controlCount, D::acceptCount>(73),
    dxf::value<AcDbSpline, D::fitCount, D::acceptCount>(74),
    dxf::value<AcDbSpline, D::fitTolerance, D::setFitTolerance>(44, kOmit),
    dxf::value<AcDbSpline, D::startTangent, D::setStartTangent>(12, kOmit),
    dxf::value<AcDbSpline, D::endTangent, D::setEndTangent>(13, kOmit),
    dxf::custom(40, D::writeKnots, D::readKnot),
    dxf::custom(41, D::writeWeights, D::readWeight),
    dxf::custom(10, D::writeControl, D::readControl),
    dxf::custom(11, D::writeFit, D::readFit),
};
} // namespace
ACDB_DXF_KIND(AcDbSpline, "SPLINE", kFields)

AcDbSpline::AcDbSpline(const AcGePoint3dArray& fitPoints, const AcGeVector3d& startTangent,
                       const AcGeVector3d& endTangent, int order, double fitTolerance) {
    setFitData(fitPoints, order - 1, fitTolerance, startTangent, endTangent);
}

AcDbSpline::AcDbSpline(const AcGePoint3dArray& fitPoints, int order, double fitTolerance)
    : AcDbSpline(fitPoints, AcGeVector3d(), AcGeVector3d(), order, fitTolerance) {}

AcDbSpline::AcDbSpline(int degree, bool rational, bool closed, bool periodic,
                       const AcGePoint3dArray& controlPoints, const AcGeDoubleArray& knots,
                       const AcGeDoubleArray& weights, double controlPtTol, double knotTol) {
    setNurbsData(degree, rational, closed, periodic, controlPoints, knots, weights, controlPtTol,
                 knotTol);
}

Acad::ErrorStatus AcDbSpline::setNurbsData(int degree, bool rational, bool closed, bool periodic,
                                           const AcGePoint3dArray& controlPoints,
                                           const AcGeDoubleArray& knots,
                                           const AcGeDoubleArray& weights, double, double) {
    ACDB_WRITE_CHECK();
    if (degree < 1 || degree > 25 || controlPoints.length() < degree + 1 ||
        knots.length() != controlPoints.length() + degree + 1)
        return Acad::eInvalidInput;
    for (int i = 1; i < knots.length(); ++i)
        if (knots[i] < knots[i - 1]) return Acad::eInvalidInput;
    if (rational) {
        if (weights.length() != controlPoints.length()) return Acad::eInvalidInput;
        for (double w : weights)
            if (!(w > 0.0)) return Acad::eInvalidInput;
    }
    degree_ = degree;
    rational_ = rational;
    closed_ = closed;
    periodic_ = periodic;
    controlPoints_ = controlPoints;
    knots_ = knots;
    weights_ = rational ? weights : AcGeDoubleArray();
    fitPoints_.removeAll();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getNurbsData(int& degree, bool& rational, bool& closed,
                                           bool& periodic, AcGePoint3dArray& controlPoints,
                                           AcGeDoubleArray& knots, AcGeDoubleArray& weights,
                                           double& controlPtTol, double& knotTol) const {
    degree = degree_;
    rational = rational_;
    closed = closed_;
    periodic = periodic_;
    controlPoints = controlPoints_;
    knots = knots_;
    weights = weights_;
    controlPtTol = knotTol = 0.0;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::setFitData(const AcGePoint3dArray& fitPoints, int degree,
                                         double fitTolerance, const AcGeVector3d& startTangent,
                                         const AcGeVector3d& endTangent) {
    ACDB_WRITE_CHECK();
    if (fitPoints.length() < 2 || degree < 1 || degree > 25 || fitTolerance < 0.0)
        return Acad::eInvalidInput;
    fitPoints_ = fitPoints;
    degree_ = degree;
    fitTolerance_ = fitTolerance;
    startTangent_ = startTangent;
    endTangent_ = endTangent;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getFitData(AcGePoint3dArray& fitPoints, int& degree,
                                         double& fitTolerance, bool& tangentsExist,
                                         AcGeVector3d& startTangent,
                                         AcGeVector3d& endTangent) const {
    if (!hasFitData()) return Acad::eNotApplicable;
    fitPoints = fitPoints_;
    degree = degree_;
    fitTolerance = fitTolerance_;
    tangentsExist = !startTangent_.isZeroLength() || !endTangent_.isZeroLength();
    startTangent = startTangent_;
    endTangent = endTangent_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getControlPointAt(int index, AcGePoint3d& point) const {
    if (index < 0 || index >= controlPoints_.length()) return Acad::eInvalidIndex;
    point = controlPoints_[index];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getFitPointAt(int index, AcGePoint3d& point) const {
    if (index < 0 || index >= fitPoints_.length()) return Acad::eInvalidIndex;
    point = fitPoints_[index];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getStartPoint(AcGePoint3d& p) const {
    const AcGePoint3dArray& points = hasFitData() ? fitPoints_ : controlPoints_;
    if (points.isEmpty()) return Acad::eDegenerateGeometry;
    p = points.first();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getEndPoint(AcGePoint3d& p) const {
    const AcGePoint3dArray& points = hasFitData() ? fitPoints_ : controlPoints_;
    if (points.isEmpty()) return Acad::eDegenerateGeometry;
    p = closed_ ? points.first() : points.last();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    for (AcGePoint3d& p : controlPoints_)
        p = xform * p;
    for (AcGePoint3d& p : fitPoints_)
        p = xform * p;
    startTangent_ = xform * startTangent_;
    endTangent_ = xform * endTangent_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    for (const AcGePoint3d& p : controlPoints_.isEmpty() ? fitPoints_ : controlPoints_)
        extents.addPoint(p);
    return extents.isEmpty() ? Acad::eInvalidExtents : Acad::eOk;
}
