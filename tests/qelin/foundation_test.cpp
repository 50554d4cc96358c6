// Foundations the creators and writers stand on: strings at the library's seam, growing
// arrays, the parallelogram test and the current UCS as a pose.
#include "foundation/geometry_helpers.h"
#include "foundation/growing_array.h"
#include "foundation/string_ring.h"

#include <arx/arx.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

TEST(StringRing, ConvertsBothWaysAndReusesTheRingInOrder) {
    EXPECT_STREQ(QelWideFromNarrow("Rohrbrücke"), L"Rohrbrücke");
    EXPECT_STREQ(QelNarrowFromWide(L"Rohrbrücke"), "Rohrbrücke");
    EXPECT_STREQ(QelWideFromNarrow(nullptr), L"");
    // Results stay valid until the ring comes round: two results side by side differ.
    const wchar_t* a = QelWideFromNarrow("first");
    const wchar_t* b = QelWideFromNarrow("second");
    EXPECT_STREQ(a, L"first");
    EXPECT_STREQ(b, L"second");
    EXPECT_EQ(b - a, 8) << "\"first\" and its terminator take 6, rounded up to 8";
    // Pieces of 1000 characters: eight fit in the 8192 of the ring, the ninth starts it again.
    const std::string long1000(999, 'x');
    std::vector<const wchar_t*> wraps;
    const wchar_t* previous = QelWideFromNarrow(long1000.c_str());
    for (int i = 0; i < 20; ++i) {
        const wchar_t* p = QelWideFromNarrow(long1000.c_str());
        EXPECT_EQ(std::wcslen(p), 999u);
        if (p < previous)
            wraps.push_back(p);
        else
            EXPECT_EQ(p - previous, 1000);
        previous = p;
    }
    ASSERT_GE(wraps.size(), 2u);
    EXPECT_EQ(wraps[0], wraps[1]) << "each wrap goes back to the start of the ring";
}

TEST(GrowingArray, GrowsByTheLargerOfGrowByAndTheCappedCount) {
    QelArray<unsigned> a;
    EXPECT_EQ(a.GetGrowBy(), 8u);
    std::vector<unsigned> capacities;
    for (unsigned i = 0; i < 100; ++i) {
        a.Append(i);
        if (capacities.empty() || capacities.back() != a.GetCapacity())
            capacities.push_back(a.GetCapacity());
    }
    EXPECT_EQ(capacities, (std::vector<unsigned>{8, 16, 32, 64, 128}));
    for (unsigned i = 0; i < 100; ++i)
        ASSERT_EQ(a[i], i);

    QelArray<double> big;
    for (unsigned i = 0; i < 40000; ++i)
        big.Append(i);
    EXPECT_EQ(big.GetCapacity() - 32768u, 16384u) << "past 16384 elements the step stays at 16384";
    QelArray<unsigned char> bytes;
    for (unsigned i = 0; i < 140000; ++i)
        bytes.Append(static_cast<unsigned char>(i));
    EXPECT_EQ(bytes.GetCapacity(), 131072u + 65536u) << "bytes step up to 65536";
}

TEST(GrowingArray, InsertShiftsTheTailAndCopiesOwnTheirElements) {
    QelArray<int> a;
    for (int v : {1, 2, 4})
        a.Append(v);
    a.InsertAt(2, 3);
    a.InsertAt(0, 0);
    a.InsertAt(99, 5);
    ASSERT_EQ(a.GetCount(), 6u);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(a[unsigned(i)], i);
    QelArray<int> copy = a;
    copy[0] = 100;
    EXPECT_EQ(a[0], 0);
    EXPECT_NE(copy.GetData(), a.GetData());
}

TEST(Parallelogram, OppositeEdgesParallelAndNoneZero) {
    const double square[12] = {0, 0, 0, 2, 0, 0, 2, 1, 0, 0, 1, 0};
    EXPECT_TRUE(QelIsParallelogram(square, 4));
    const double sheared[12] = {0, 0, 0, 2, 0, 0, 3, 1, 5, 1, 1, 5};
    EXPECT_TRUE(QelIsParallelogram(sheared, 4));
    const double trapezoid[12] = {0, 0, 0, 4, 0, 0, 3, 1, 0, 1, 1, 0};
    EXPECT_FALSE(QelIsParallelogram(trapezoid, 4));
    const double collapsed[12] = {0, 0, 0, 0, 0, 0, 2, 1, 0, 2, 1, 0};
    EXPECT_FALSE(QelIsParallelogram(collapsed, 4));
    EXPECT_FALSE(QelIsParallelogram(square, 3));
}

TEST(CurrentUcsPose, TheUcsOfTheWorkingDatabaseAsTranslationAndRotation) {
    AcDbDatabase db;
    AcDbDatabase* before = acdbHostApplicationServices()->workingDatabase();
    acdbHostApplicationServices()->setWorkingDatabase(&db);
    // A UCS turned a quarter about Z and moved.
    ASSERT_EQ(db.setUcs(AcGePoint3d(5, 6, 7), AcGeVector3d(0, 1, 0), AcGeVector3d(-1, 0, 0)),
              Acad::eOk);
    double t[3], r[4];
    ASSERT_TRUE(QelCurrentUcsPose(t, r));
    EXPECT_EQ(t[0], 5.0);
    EXPECT_EQ(t[1], 6.0);
    EXPECT_EQ(t[2], 7.0);
    EXPECT_NEAR(r[0], 0.0, 1e-12);
    EXPECT_NEAR(r[1], 0.0, 1e-12);
    EXPECT_NEAR(r[2], 1.0, 1e-12);
    EXPECT_NEAR(r[3], M_PI / 2, 1e-12);
    acdbHostApplicationServices()->setWorkingDatabase(before);
}
