#include "splinefit.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace splinefit {

int findSpan(int n, int degree, double u, const AcGeDoubleArray& knots) {
    if (u >= knots[n + 1]) return n;
    if (u <= knots[degree]) return degree;
    int low = degree, high = n + 1;
    int mid = (low + high) / 2;
    while (u < knots[mid] || u >= knots[mid + 1]) {
        if (u < knots[mid])
            high = mid;
        else
            low = mid;
        mid = (low + high) / 2;
    }
    return mid;
}

namespace {

// The degree + 1 basis functions that are not zero at u in its span (Cox and de Boor).
std::vector<double> basis(int span, double u, int degree, const AcGeDoubleArray& knots) {
    std::vector<double> n(size_t(degree) + 1), left(n.size()), right(n.size());
    n[0] = 1.0;
    for (int j = 1; j <= degree; ++j) {
        left[size_t(j)] = u - knots[span + 1 - j];
        right[size_t(j)] = knots[span + j] - u;
        double saved = 0.0;
        for (int r = 0; r < j; ++r) {
            const double temp = n[size_t(r)] / (right[size_t(r) + 1] + left[size_t(j - r)]);
            n[size_t(r)] = saved + right[size_t(r) + 1] * temp;
            saved = left[size_t(j - r)] * temp;
        }
        n[size_t(j)] = saved;
    }
    return n;
}

// Solves a x = b for three right-hand sides by elimination with partial pivoting.
bool solve(std::vector<std::vector<double>>& a, std::vector<AcGeVector3d>& b) {
    const size_t n = a.size();
    for (size_t col = 0; col < n; ++col) {
        size_t pivot = col;
        for (size_t r = col + 1; r < n; ++r)
            if (std::fabs(a[r][col]) > std::fabs(a[pivot][col])) pivot = r;
        if (std::fabs(a[pivot][col]) < 1e-14) return false;
        std::swap(a[pivot], a[col]);
        std::swap(b[pivot], b[col]);
        for (size_t r = col + 1; r < n; ++r) {
            const double f = a[r][col] / a[col][col];
            if (f == 0.0) continue;
            for (size_t c = col; c < n; ++c)
                a[r][c] -= f * a[col][c];
            b[r] -= b[col] * f;
        }
    }
    for (size_t i = n; i-- > 0;) {
        AcGeVector3d sum = b[i];
        for (size_t c = i + 1; c < n; ++c)
            sum -= b[c] * a[i][c];
        b[i] = sum / a[i][i];
    }
    return true;
}

} // namespace

AcGePoint3d pointAt(int degree, const AcGePoint3dArray& controls, const AcGeDoubleArray& knots,
                    const AcGeDoubleArray& weights, double u) {
    const int n = controls.length() - 1;
    const int span = findSpan(n, degree, u, knots);
    const std::vector<double> b = basis(span, u, degree, knots);
    AcGeVector3d sum;
    double w = 0.0;
    for (int j = 0; j <= degree; ++j) {
        const int i = span - degree + j;
        const double weight = weights.isEmpty() ? 1.0 : weights[i];
        sum += controls[i].asVector() * (b[size_t(j)] * weight);
        w += b[size_t(j)] * weight;
    }
    return AcGePoint3d::kOrigin + sum / w;
}

bool interpolate(const AcGePoint3dArray& points, int degree, const AcGeVector3d& startTangent,
                 const AcGeVector3d& endTangent, AcGePoint3dArray& controls,
                 AcGeDoubleArray& knots) {
    const int n = points.length() - 1;
    double total = 0.0;
    for (int k = 1; k <= n; ++k)
        total += points[k].distanceTo(points[k - 1]);
    if (n < 1 || total <= 0.0) return false;
    // Parameters by chord length; a repeated point shares its neighbour's parameter.
    std::vector<double> u(size_t(n) + 1, 0.0);
    for (int k = 1; k <= n; ++k)
        u[size_t(k)] = u[size_t(k) - 1] + points[k].distanceTo(points[k - 1]) / total;
    u[size_t(n)] = 1.0;
    const bool tangents = !startTangent.isZeroLength() && !endTangent.isZeroLength();
    const int count = n + 1 + (tangents ? 2 : 0);
    const int p = std::min(degree, count - 1);
    // Knots by averaging the parameters.
    knots.removeAll();
    for (int i = 0; i <= p; ++i)
        knots.append(0.0);
    const int inner = count - p - 1;
    for (int j = 1; j <= inner; ++j) {
        double sum = 0.0;
        for (int i = 0; i < p; ++i) {
            // With tangents the averages run over all parameters, end ones included.
            const int k = tangents ? j - 1 + i : j + i;
            sum += u[size_t(std::clamp(k, 0, n))];
        }
        knots.append(sum / p);
    }
    for (int i = 0; i <= p; ++i)
        knots.append(1.0);
    std::vector<std::vector<double>> a(size_t(count), std::vector<double>(size_t(count), 0.0));
    std::vector<AcGeVector3d> b(static_cast<size_t>(count));
    auto fitRow = [&](int row, double t, const AcGePoint3d& q) {
        const int span = findSpan(count - 1, p, t, knots);
        const std::vector<double> basisAt = basis(span, t, p, knots);
        for (int j = 0; j <= p; ++j)
            a[size_t(row)][size_t(span - p + j)] = basisAt[size_t(j)];
        b[size_t(row)] = q.asVector();
    };
    if (!tangents) {
        for (int k = 0; k <= n; ++k)
            fitRow(k, u[size_t(k)], points[k]);
    } else {
        // Ends and end derivatives: P1 - P0 and Pn+2 - Pn+1 follow the tangents.
        fitRow(0, 0.0, points[0]);
        a[1][0] = -1.0;
        a[1][1] = 1.0;
        b[1] = startTangent.normal() * (total * knots[p + 1] / p);
        for (int k = 1; k < n; ++k)
            fitRow(k + 1, u[size_t(k)], points[k]);
        a[size_t(count - 2)][size_t(count - 2)] = -1.0;
        a[size_t(count - 2)][size_t(count - 1)] = 1.0;
        b[size_t(count - 2)] = endTangent.normal() * (total * (1.0 - knots[count - 1]) / p);
        fitRow(count - 1, 1.0, points[n]);
    }
    if (!solve(a, b)) return false;
    controls.removeAll();
    for (const AcGeVector3d& v : b)
        controls.append(AcGePoint3d::kOrigin + v);
    return true;
}

} // namespace splinefit
