// BSplineCurve3d: the points the spline was fitted through; the curve is fitted again on import.
#include "writers/curve_writers.h"
#include "writers/pose.h"

#include <arx/aced.h>
#include <arx/dbspline.h>

#include <cmath>
#include <vector>

namespace {

constexpr double kSameEnd = 1e-5;

// Fit points, or false with the user told why not.
bool fitPointsOf(AcDbEntity* entity, AcGePoint3dArray& fit) {
    auto* spline = AcDbSpline::cast(entity);
    if (!spline) {
        acutPrintf(L"Error Not a AcDbSpline(BSplineCurve)");
        return false;
    }
    if (!spline->hasFitData()) {
        acutPrintf(L"\nError::Cannot export BSplineCurve3d without fit points");
        return false;
    }
    int degree = 0;
    double tolerance = 0.0;
    bool tangents = false;
    AcGeVector3d startTangent, endTangent;
    if (spline->getFitData(fit, degree, tolerance, tangents, startTangent, endTangent) !=
        Acad::eOk) {
        acutPrintf(L"\nError get fit points for Spline.");
        return false;
    }
    return true;
}

} // namespace

bool QelWriteBSplineCurve3d(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                            const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    AcGePoint3dArray fit;
    const bool ok = fitPointsOf(entity, fit);
    entity->close();
    if (!ok) return false;
    std::vector<double> points;
    for (const AcGePoint3d& point : fit) {
        double metres[3];
        QelPointOut(point, metres);
        points.insert(points.end(), metres, metres + 3);
    }
    // Closed when the ends meet in plan; the height is not looked at.
    const bool periodic = !fit.isEmpty() && std::fabs(fit.first().x - fit.last().x) < kSameEnd &&
                          std::fabs(fit.first().y - fit.last().y) < kSameEnd;
    target->AddOrReplaceParam(QelParam::Create("order", 4));
    target->AddOrReplaceParam(QelParam::Create("periodic", periodic));
    target->AddOrReplaceParam(QelParam::Create("rational", false));
    target->AddOrReplaceParam(
        QelParam::Create("fitPoints", points.data(), static_cast<unsigned>(points.size())));
    return true;
}
