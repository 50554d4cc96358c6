#include "curves.h"

#include <arx/arx.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace view {

namespace {

using arxsolids::Vec3;

// Segments of a full turn: a chord error under 0.2% of the radius.
constexpr int kSegmentsPerTurn = 72;
// Points of each span of a spline between two knots.
constexpr int kPointsPerSpan = 12;

Vec3 vec(const AcGePoint3d& p) {
    return {p.x, p.y, p.z};
}

int segmentsFor(double sweep) {
    return std::max(2,
                    static_cast<int>(std::ceil(kSegmentsPerTurn * std::abs(sweep) / (2 * M_PI))));
}

// An arc about the normal from the X axis of the normal's arbitrary-axis system.
std::vector<Vec3> arcPoints(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                            double start, double end) {
    const AcGeVector3d z = normal.normal();
    const AcGeVector3d x = z.perpVector().normal();
    const AcGeVector3d y = z.crossProduct(x);
    while (end <= start)
        end += 2 * M_PI;
    const int n = segmentsFor(end - start);
    std::vector<Vec3> points;
    for (int i = 0; i <= n; ++i) {
        const double a = start + (end - start) * i / n;
        points.push_back(vec(center + x * (radius * std::cos(a)) + y * (radius * std::sin(a))));
    }
    return points;
}

// A point of the (possibly rational) B-spline by de Boor's rule, in homogeneous coordinates.
Vec3 deBoor(int degree, const AcGePoint3dArray& poles, const AcGeDoubleArray& knots,
            const AcGeDoubleArray& weights, int span, double t) {
    std::vector<std::array<double, 4>> d(degree + 1);
    for (int j = 0; j <= degree; ++j) {
        const int k = span - degree + j;
        const double w = weights.length() == poles.length() ? weights[k] : 1.0;
        d[j] = {poles[k].x * w, poles[k].y * w, poles[k].z * w, w};
    }
    for (int r = 1; r <= degree; ++r)
        for (int j = degree; j >= r; --j) {
            const int i = span - degree + j;
            const double denominator = knots[i + degree + 1 - r] - knots[i];
            const double alpha = denominator > 0.0 ? (t - knots[i]) / denominator : 0.0;
            for (int c = 0; c < 4; ++c)
                d[j][c] = (1.0 - alpha) * d[j - 1][c] + alpha * d[j][c];
        }
    const double w = d[degree][3] != 0.0 ? d[degree][3] : 1.0;
    return {d[degree][0] / w, d[degree][1] / w, d[degree][2] / w};
}

std::vector<Vec3> splinePoints(const AcDbSpline& spline) {
    int degree = 0;
    bool rational = false, closed = false, periodic = false;
    AcGePoint3dArray poles;
    AcGeDoubleArray knots, weights;
    double poleTol = 0.0, knotTol = 0.0;
    std::vector<Vec3> points;
    if (spline.getNurbsData(degree, rational, closed, periodic, poles, knots, weights, poleTol,
                            knotTol) != Acad::eOk ||
        degree < 1 || poles.length() <= degree || knots.length() != poles.length() + degree + 1)
        return points;
    for (int span = degree; span < poles.length(); ++span) {
        const double a = knots[span], b = knots[span + 1];
        if (b <= a) continue;
        for (int i = points.empty() ? 0 : 1; i <= kPointsPerSpan; ++i)
            points.push_back(
                deBoor(degree, poles, knots, weights, span, a + (b - a) * i / kPointsPerSpan));
    }
    return points;
}

} // namespace

std::vector<Vec3> curvePoints(const AcDbEntity& entity) {
    if (const auto* line = AcDbLine::cast(&entity))
        return {vec(line->startPoint()), vec(line->endPoint())};
    if (const auto* circle = AcDbCircle::cast(&entity))
        return arcPoints(circle->center(), circle->normal(), circle->radius(), 0.0, 2 * M_PI);
    if (const auto* arc = AcDbArc::cast(&entity))
        return arcPoints(arc->center(), arc->normal(), arc->radius(), arc->startAngle(),
                         arc->endAngle());
    if (const auto* ellipse = AcDbEllipse::cast(&entity)) {
        double start = ellipse->startParam(), end = ellipse->endParam();
        while (end <= start)
            end += 2 * M_PI;
        const int n = segmentsFor(end - start);
        std::vector<Vec3> points;
        for (int i = 0; i <= n; ++i)
            points.push_back(vec(ellipse->pointAtParam(start + (end - start) * i / n)));
        return points;
    }
    if (const auto* spline = AcDbSpline::cast(&entity)) return splinePoints(*spline);
    return {};
}

} // namespace view
