#include "arx_test.h"

namespace {

Adesk::UInt32 rgb(int r, int g, int b) {
    return Adesk::UInt32(r << 16 | g << 8 | b);
}

TEST(Color, IndexEntriesHaveTheirColours) {
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(1), rgb(255, 0, 0));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(5), rgb(0, 0, 255));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(7), rgb(255, 255, 255));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(8), rgb(128, 128, 128));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(11), rgb(255, 127, 127));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(20), rgb(255, 63, 0));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(21), rgb(255, 159, 127));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(30), rgb(255, 127, 0));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(90), rgb(0, 255, 0));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(150), rgb(0, 127, 255));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(12), rgb(165, 0, 0));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(19), rgb(38, 19, 19));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(250), rgb(51, 51, 51));
    EXPECT_EQ(AcCmEntityColor::lookUpRGB(255), rgb(255, 255, 255));
}

TEST(Color, NearestIndexOfAColour) {
    // White is entry 7 (255 holds it too; the lowest entry wins).
    EXPECT_EQ(AcCmEntityColor::lookUpACI(255, 255, 255), 7);
    EXPECT_EQ(AcCmEntityColor::lookUpACI(250, 3, 2), 1);
    // Nothing is black: the darkest red (38, 0, 0) is the first of the nearest.
    EXPECT_EQ(AcCmEntityColor::lookUpACI(0, 0, 0), 18);
    EXPECT_EQ(AcCmEntityColor::lookUpACI(129, 127, 130), 8);
    // Every entry comes back as itself or as an earlier entry of the same colour.
    for (int i = 1; i < 256; ++i) {
        const Adesk::UInt32 c = AcCmEntityColor::lookUpRGB(Adesk::UInt8(i));
        const int back = AcCmEntityColor::lookUpACI(c >> 16, (c >> 8) & 0xFF, c & 0xFF);
        EXPECT_LE(back, i);
        EXPECT_EQ(AcCmEntityColor::lookUpRGB(Adesk::UInt8(back)), c) << "entry " << i;
    }
}

TEST(Color, MethodsOfAColour) {
    AcCmColor c;
    EXPECT_TRUE(c.isByLayer());
    EXPECT_EQ(c.colorIndex(), 256);
    c.setColorIndex(0);
    EXPECT_TRUE(c.isByBlock());
    c.setColorIndex(3);
    EXPECT_EQ(c.colorMethod(), AcCmEntityColor::kByACI);
    EXPECT_EQ(c.green(), 255);
    c.setRGB(10, 20, 250);
    EXPECT_EQ(c.colorMethod(), 194);
    EXPECT_EQ(c.red(), 10);
    EXPECT_EQ(c.green(), 20);
    EXPECT_EQ(c.blue(), 250);
    // A true colour answers with its nearest entry.
    EXPECT_EQ(c.colorIndex(), AcCmEntityColor::lookUpACI(10, 20, 250));
    EXPECT_FALSE(c.setColorIndex(257));
    // An index entry as a true colour keeps its channels.
    AcCmEntityColor e;
    e.setColorIndex(1);
    AcCmColor t;
    t.setColor(e.trueColor());
    EXPECT_TRUE(t.isByColor());
    EXPECT_EQ(t.red(), 255);
}

TEST(Color, WindowsOrderOfTheRgbValue) {
    EXPECT_EQ(acedGetRGB(1), 0x0000FFu);
    EXPECT_EQ(acedGetRGB(5), 0xFF0000u);
    EXPECT_EQ(acedGetRGB(20), 0x003FFFu);
    EXPECT_EQ(acedGetRGB(300), 0u);
}

} // namespace
