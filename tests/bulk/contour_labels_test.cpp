// The texts of contour labels: fractions of an inch reduced and carried, decimal inches that
// round up to a whole foot, trimmed decimals, and the unit codes of the file.
#include "bulk/contour_labels.h"

#include <gtest/gtest.h>

namespace {

TEST(ContourLabelText, FeetAndInchesReduceTheFractionAndCarry) {
    EXPECT_EQ(QelFeetInchesText(0.5, 2), L"0'-6\"");
    // 11.988 inches: the half rounds up to a whole inch, 12 inches to a foot.
    EXPECT_EQ(QelFeetInchesText(1.999, 2), L"2'-0\"");
    EXPECT_EQ(QelFeetInchesText(3.0 + 6.5 / 12.0, 2), L"3'-6 1/2\"");
    EXPECT_EQ(QelFeetInchesText(1.0 + 3.25 / 12.0, 4), L"1'-3 1/4\"");
    EXPECT_EQ(QelFeetInchesText(-2.5, 2), L"-2'-6\"");
}

TEST(ContourLabelText, DecimalInchesCarryAfterRounding) {
    EXPECT_EQ(QelFeetDecimalInchesText(0.5, 2), L"0:6.00");
    EXPECT_EQ(QelFeetDecimalInchesText(1.9999, 2), L"2:0.00");
    EXPECT_EQ(QelFeetDecimalInchesText(-1.25, 2), L"-1:3.00");
    // A negative value that rounds to nothing loses its sign.
    EXPECT_EQ(QelFeetDecimalInchesText(-0.004, 2), L"0:0.05");
}

TEST(ContourLabelText, TrimDropsAtMostFiveZeros) {
    EXPECT_EQ(QelTrimFixed(L"12.500000"), L"12.5");
    EXPECT_EQ(QelTrimFixed(L"12.000000"), L"12.0");
    EXPECT_EQ(QelTrimFixed(L"0.152400"), L"0.1524");
    EXPECT_EQ(QelTrimFixed(L"7.123456"), L"7.123456");
    EXPECT_EQ(QelTrimFixed(L"40"), L"40");
}

TEST(ContourLabelText, UnitsOfTheFileAndTheirSuffixes) {
    const std::pair<int, int> codes[] = {{2, 3},  {3, 2},  {4, 5},  {5, 4},   {10, 6},
                                         {12, 8}, {13, 7}, {14, 9}, {15, 15}, {16, 16},
                                         {0, 1},  {1, 1},  {6, 1},  {11, 1},  {-3, 1}};
    for (const auto& [file, label] : codes)
        EXPECT_EQ(QelContourLabelUnit(file), label) << "file unit " << file;

    const struct {
        double metres;
        int unit;
        const wchar_t* text;
    } labels[] = {
        {1.5, 1, L"1.5 m"},          {1.5, 2, L"1500.0 mm"},        {0.3048, 5, L"1.0 ft"},
        {0.1524, 15, L"0'-6\"arch"}, {0.1524, 16, L"0:6.00 ft:in"}, {2.0, 10, L"2.0 "},
    };
    for (const auto& label : labels) {
        std::wstring text;
        ASSERT_TRUE(QelContourLabelText(label.metres, label.unit, text)) << label.unit;
        EXPECT_EQ(text, label.text) << label.metres << " m in unit " << label.unit;
    }
}

} // namespace
