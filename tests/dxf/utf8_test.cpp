// Text between the file (UTF-8) and the database (wide characters): plain and accented names,
// and bytes that are no UTF-8, which come through rather than being lost.
#include "../../platform/dxf/src/drawing/utf8.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8, TextOfEveryWidthGoesBothWays) {
    const std::wstring wide[] = {
        L"",           L"Pipe-100",         L"Rohrbr\u00fccke",
        L"\u2300 273", L"\U0001F527 valve", L"mixed \u00e9\u4e2d\U00010348 end"};
    const std::string narrow[] = {"",
                                  "Pipe-100",
                                  "Rohrbr\xc3\xbc"
                                  "cke",
                                  "\xe2\x8c\x80 273",
                                  "\xf0\x9f\x94\xa7 valve",
                                  "mixed \xc3\xa9\xe4\xb8\xad\xf0\x90\x8d\x88 end"};
    for (size_t i = 0; i < std::size(wide); ++i) {
        EXPECT_EQ(dxf::toUtf8(wide[i]), narrow[i]) << i;
        EXPECT_EQ(dxf::fromUtf8(narrow[i]), wide[i]) << i;
    }
}

TEST(Utf8, BytesThatAreNoUtf8ComeThroughOneEach) {
    // A Latin-1 byte, a lead byte at the end, a lead byte before a plain letter.
    EXPECT_EQ(dxf::fromUtf8("Stra\xdf"
                            "e"),
              std::wstring(L"Stra\u00df"
                           L"e"));
    EXPECT_EQ(dxf::fromUtf8("end\xe2"), std::wstring(L"end\u00e2"));
    EXPECT_EQ(dxf::fromUtf8("\xc3x"), std::wstring(L"\u00c3x"));
}

} // namespace
