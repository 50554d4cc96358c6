// The standard 256-entry colour index.
#include "aci_table.h"

#include <cmath>

namespace {

struct Rgb {
    Adesk::UInt8 r, g, b;
};

// Entries 10 to 249: 24 hues at 15-degree steps, each in five shades (255, 165, 127, 76, 38)
// of a full and a pale variant. The pale variant lifts every channel half-way to the shade.
Rgb hueEntry(int index) {
    static constexpr int kShades[5] = {255, 165, 127, 76, 38};
    const int hue = (index - 10) / 10;
    const int variant = (index - 10) % 10;
    const int shade = kShades[variant / 2];
    // Channel fractions of the pure hue, in quarters: rise, hold, fall over six sectors.
    auto channel = [hue](int offset) {
        const int h = (hue + offset + 24) % 24;
        int quarters = 0;
        if (h <= 4 || h >= 20)
            quarters = 4;
        else if (h < 8)
            quarters = 8 - h;
        else if (h > 16)
            quarters = h - 16;
        const int full = quarters == 4 ? 255 : quarters * 255 / 4;
        return full;
    };
    // Red peaks at hue 0, green at 8 (120 degrees), blue at 16.
    int rgb[3] = {channel(0), channel(-8), channel(-16)};
    for (int& c : rgb) {
        c = static_cast<int>(std::lround(shade * c / 255.0));
        if (variant % 2) c = (shade + c) / 2;
    }
    return {Adesk::UInt8(rgb[0]), Adesk::UInt8(rgb[1]), Adesk::UInt8(rgb[2])};
}

struct Table {
    Rgb entries[256];
    Table() {
        static constexpr Rgb kFirst[10] = {
            {0, 0, 0},   {255, 0, 0},   {255, 255, 0},   {0, 255, 0},     {0, 255, 255},
            {0, 0, 255}, {255, 0, 255}, {255, 255, 255}, {128, 128, 128}, {192, 192, 192}};
        static constexpr Rgb kGreys[6] = {{51, 51, 51},    {91, 91, 91},    {132, 132, 132},
                                          {173, 173, 173}, {214, 214, 214}, {255, 255, 255}};
        for (int i = 0; i < 10; ++i)
            entries[i] = kFirst[i];
        for (int i = 10; i < 250; ++i)
            entries[i] = hueEntry(i);
        for (int i = 250; i < 256; ++i)
            entries[i] = kGreys[i - 250];
    }
};

const Table& table() {
    static const Table t;
    return t;
}

} // namespace

Adesk::UInt32 aciToRgb(int index) {
    const Rgb c = table().entries[index & 0xFF];
    return (Adesk::UInt32(c.r) << 16) | (Adesk::UInt32(c.g) << 8) | c.b;
}

Adesk::UInt8 rgbToAci(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
    int best = 1;
    long bestDistance = -1;
    for (int i = 1; i < 256; ++i) {
        const Rgb c = table().entries[i];
        const long dr = c.r - red, dg = c.g - green, db = c.b - blue;
        const long d = dr * dr + dg * dg + db * db;
        if (bestDistance < 0 || d < bestDistance) {
            best = i;
            bestDistance = d;
        }
    }
    return Adesk::UInt8(best);
}
