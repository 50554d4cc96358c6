// Rotation matrices (row by row, acting on column vectors) to and from axis and angle.
#include <qel/qel.h>

#include <cmath>

void rotation_to_affine(const double rotation[4], double m[9]) {
    double x = rotation[0], y = rotation[1], z = rotation[2];
    const double angle = rotation[3];
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0.0 || !std::isfinite(length)) {
        const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
        for (int i = 0; i < 9; ++i)
            m[i] = identity[i];
        return;
    }
    x /= length;
    y /= length;
    z /= length;
    const double c = std::cos(angle), s = std::sin(angle), t = 1.0 - c;
    m[0] = t * x * x + c;
    m[1] = t * x * y - s * z;
    m[2] = t * x * z + s * y;
    m[3] = t * x * y + s * z;
    m[4] = t * y * y + c;
    m[5] = t * y * z - s * x;
    m[6] = t * x * z - s * y;
    m[7] = t * y * z + s * x;
    m[8] = t * z * z + c;
}

void rotation_from_affine(double rotation[4], const double m[9]) {
    // Through the unit quaternion, which stays accurate near 0 and near a half turn.
    double w, x, y, z;
    const double trace = m[0] + m[4] + m[8];
    if (trace > 0.0) {
        const double s = 2.0 * std::sqrt(1.0 + trace);
        w = 0.25 * s;
        x = (m[7] - m[5]) / s;
        y = (m[2] - m[6]) / s;
        z = (m[3] - m[1]) / s;
    } else if (m[0] > m[4] && m[0] > m[8]) {
        const double s = 2.0 * std::sqrt(1.0 + m[0] - m[4] - m[8]);
        w = (m[7] - m[5]) / s;
        x = 0.25 * s;
        y = (m[1] + m[3]) / s;
        z = (m[2] + m[6]) / s;
    } else if (m[4] > m[8]) {
        const double s = 2.0 * std::sqrt(1.0 + m[4] - m[0] - m[8]);
        w = (m[2] - m[6]) / s;
        x = (m[1] + m[3]) / s;
        y = 0.25 * s;
        z = (m[5] + m[7]) / s;
    } else {
        const double s = 2.0 * std::sqrt(1.0 + m[8] - m[0] - m[4]);
        w = (m[3] - m[1]) / s;
        x = (m[2] + m[6]) / s;
        y = (m[5] + m[7]) / s;
        z = 0.25 * s;
    }
    if (w < 0.0) { // the same rotation, with the angle in [0, pi]
        w = -w;
        x = -x;
        y = -y;
        z = -z;
    }
    const double v = std::sqrt(x * x + y * y + z * z);
    if (v < 1e-15 || !std::isfinite(v)) {
        rotation[0] = 0.0;
        rotation[1] = 0.0;
        rotation[2] = 1.0;
        rotation[3] = 0.0;
        return;
    }
    rotation[0] = x / v;
    rotation[1] = y / v;
    rotation[2] = z / v;
    rotation[3] = 2.0 * std::atan2(v, w);
}
