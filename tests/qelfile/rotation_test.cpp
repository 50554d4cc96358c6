// The four-number rotation of the file against rotation matrices.
#include <qel/qel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

void expectMatrix(const double* m, const double* expected, double tol) {
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(m[i], expected[i], tol) << "element " << i;
}

} // namespace

TEST(Rotation, QuarterTurnAboutZIsTheTextbookMatrix) {
    const double r[4] = {0, 0, 1, 1.5707963267948966};
    double m[9];
    rotation_to_affine(r, m);
    const double expected[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};
    expectMatrix(m, expected, 1e-15);
}

TEST(Rotation, TheAxisIsOnlyADirection) {
    // Readers scale the axis with the unit conversion; the rotation must not change.
    const double unit[4] = {0, 1, 0, 0.7}, scaled[4] = {0, 1000, 0, 0.7};
    double a[9], b[9];
    rotation_to_affine(unit, a);
    rotation_to_affine(scaled, b);
    expectMatrix(b, a, 1e-15);
    const double zero[4] = {0, 0, 0, 1.0};
    rotation_to_affine(zero, a);
    const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    expectMatrix(a, identity, 0);
}

TEST(Rotation, MatrixToAxisAngleAndBackOverManyRotations) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(-1, 1), angle(0, 3.14159);
    for (int i = 0; i < 2000; ++i) {
        double axis[3] = {unit(random), unit(random), unit(random)};
        const double len = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
        const double r[4] = {axis[0] / len, axis[1] / len, axis[2] / len, angle(random)};
        double m[9], back[4], again[9];
        rotation_to_affine(r, m);
        rotation_from_affine(back, m);
        EXPECT_NEAR(back[3], r[3], 1e-9);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(back[k], r[k], 1e-7) << "rotation " << i;
        rotation_to_affine(back, again);
        expectMatrix(again, m, 1e-12);
    }
}

TEST(Rotation, HalfTurnsAndNoTurnAreStable) {
    const double halfX[9] = {1, 0, 0, 0, -1, 0, 0, 0, -1};
    double r[4];
    rotation_from_affine(r, halfX);
    EXPECT_NEAR(std::fabs(r[0]), 1.0, 1e-12);
    EXPECT_NEAR(r[3], M_PI, 1e-12);
    const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    rotation_from_affine(r, identity);
    EXPECT_EQ(r[0], 0.0);
    EXPECT_EQ(r[1], 0.0);
    EXPECT_EQ(r[2], 1.0);
    EXPECT_EQ(r[3], 0.0);
}
