// The unit table and its conversions, exact to the bit where the table says so.
#include "foundation/document_units.h"
#include "foundation/units.h"
#include "shell/doc_data.h"
#include "support.h"

#include <arx/edhost.h>

#include <gtest/gtest.h>

TEST(Units, TheTableHasTenRowsAndAnEndRow) {
    EXPECT_STREQ(QelUnitTable[4].name, L"Feet   (English)");
    EXPECT_STREQ(QelUnitTable[5].name, L"Yards  (English)");
    EXPECT_STREQ(QelUnitTable[9].name, L"User defined");
    EXPECT_STREQ(QelUnitTable[10].name, L"");
}

TEST(Units, ConversionsAreTheTablesToTheBit) {
    double out = 0;
    ASSERT_TRUE(QelUnitsToDrawing(1.0, &out, 7, 1.0));
    EXPECT_EQ(out, 3.2808333333333333) << "the survey foot, not the English one";
    ASSERT_TRUE(QelUnitsToDrawing(1.0, &out, 4, 1.0));
    EXPECT_EQ(out, 3.2808398950131235);
    ASSERT_TRUE(QelUnitsToMetres(1.0, &out, 4, 1.0));
    EXPECT_EQ(out, 304.8 / 1000.0);
    ASSERT_TRUE(QelUnitsToMetres(3.0, &out, 8, 1.0));
    EXPECT_EQ(out, 3.0 * 36.0 / 39.37);
    ASSERT_TRUE(QelUnitsToDrawing(2.0, &out, 9, 2.5));
    EXPECT_EQ(out, 5.0);
    ASSERT_TRUE(QelUnitsToMetres(5.0, &out, 9, 2.5));
    EXPECT_EQ(out, 2.0);
    for (int i = 0; i <= 9; ++i) {
        ASSERT_TRUE(QelUnitsToDrawing(0.0, &out, i, 3.0));
        EXPECT_EQ(out, 0.0) << i;
    }
}

TEST(Units, RoundTripsMayDifferInTheLastBitsButNoMore) {
    for (int i = 0; i <= 8; ++i) {
        double drawing = 0, back = 0;
        QelUnitsToDrawing(12.345, &drawing, i, 1.0);
        QelUnitsToMetres(drawing, &back, i, 1.0);
        EXPECT_NEAR(back, 12.345, 12.345 * 1e-15) << QelUnitTable[std::size_t(i)].name;
    }
}

TEST(Units, ABadIndexSaysSoAndLeavesTheValueAsTheTableSays) {
    const std::size_t mark = win::Transcript::instance().size();
    double out = -1;
    EXPECT_FALSE(QelUnitsToDrawing(2.0, &out, 10, 1.0));
    EXPECT_EQ(out, -1.0) << "to drawing leaves the output alone";
    EXPECT_FALSE(QelUnitsToMetres(2.0, &out, 12, 1.0));
    EXPECT_EQ(out, 2.0) << "to metres writes the value unchanged";
    const auto boxes = qelintest::boxesSince(mark);
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0], L"Error converting units|0");
}

TEST(Units, InsertUnitCodes) {
    struct Case {
        int code;
        double expected;
    } cases[] = {
        {0, 2.0},
        {1, 2.0},
        {10, 2.0},
        {2, 2.0 * 1000.0},
        {4, 2.0 * 1000.0 / 25.4},
        {5, 2.0 * 1000.0 / 304.8},
        {16, 2.0 * 1000.0 / 304.8},
        {9, 2.0 * 39.37 / 36.0},
        {11, 2.0 / 1000.0},
        {12, 2.0 / 25.4 / 12.0 / 5280.0 * 1000.0},
        {13, 2.0 * 0.03937 / 12.0 / 5280.0 * 1000.0},
    };
    for (const Case& c : cases) {
        double out = 0;
        ASSERT_TRUE(QelConvertByInsertUnits(2.0, &out, c.code)) << c.code;
        EXPECT_EQ(out, c.expected) << c.code;
    }
    const std::size_t mark = win::Transcript::instance().size();
    double out = 0;
    EXPECT_FALSE(QelConvertByInsertUnits(2.0, &out, 17));
    EXPECT_EQ(qelintest::boxesSince(mark).size(), 1u);
}

TEST(Units, TheDocumentsUnitsAndScalesDecide) {
    qelhost::newDocument();
    CDocData& record = QelDocData();
    record.importUnitIndex = QelUserDefinedUnit;
    record.importScale = 2.5;
    record.exportUnitIndex = QelUserDefinedUnit;
    record.exportScale = 2.5;
    double out = 0.0;
    EXPECT_TRUE(QelMetresToDrawing(4.0, &out));
    EXPECT_EQ(out, 10.0) << "the import multiplies";
    EXPECT_TRUE(QelDrawingToMetres(10.0, &out));
    EXPECT_EQ(out, 4.0) << "the export divides";
    record.importUnitIndex = 7;
    EXPECT_TRUE(QelMetresToDrawing(1.0, &out));
    EXPECT_EQ(out, 3.2808333333333333);
    qelhost::closeDocument(acDocManagerPtr()->curDocument());
}
