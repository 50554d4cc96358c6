// Colours: by layer, by block, by index of the standard 256-entry colour index, or true colour.
#pragma once

#include "arx/adesk.h"

class AcCmEntityColor {
public:
    enum ColorMethod : Adesk::UInt8 {
        kByLayer = 0xC0,
        kByBlock = 0xC1,
        kByColor = 0xC2, // true colour, 194
        kByACI = 0xC3,
        kByPen = 0xC4,
        kForeground = 0xC5,
        kLayerOff = 0xC6,
        kLayerFrozen = 0xC7,
        kNone = 0xC8,
    };
    enum ACIcolorMethod : Adesk::Int16 {
        kACIbyBlock = 0,
        kACIRed = 1,
        kACIforeground = 7,
        kACIbyLayer = 256
    };

    AcCmEntityColor() = default;
    explicit AcCmEntityColor(ColorMethod method) { setColorMethod(method); }
    AcCmEntityColor(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
        setRGB(red, green, blue);
    }

    ColorMethod colorMethod() const { return static_cast<ColorMethod>(value_ >> 24); }
    void setColorMethod(ColorMethod method);
    // 0 is by block, 256 by layer, 1 to 255 an entry of the colour index. A true colour answers
    // with its nearest entry.
    Adesk::Int16 colorIndex() const;
    bool setColorIndex(Adesk::Int16 index);
    bool setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);
    // Channels of a true colour or of an index entry; 0 for the other methods.
    Adesk::UInt8 red() const;
    Adesk::UInt8 green() const;
    Adesk::UInt8 blue() const;
    // Method byte over 24 bits of red, green, blue; an index entry is turned into its true colour.
    Adesk::UInt32 trueColor() const;
    Adesk::UInt32 color() const { return value_; }
    void setColor(Adesk::UInt32 value) { value_ = value; }

    bool isByLayer() const { return colorMethod() == kByLayer; }
    bool isByBlock() const { return colorMethod() == kByBlock; }
    bool isByColor() const { return colorMethod() == kByColor; }
    bool isByACI() const { return colorMethod() == kByACI; }
    bool operator==(const AcCmEntityColor&) const = default;

    // The entry (1 to 255) of the colour index nearest to the colour; the lowest entry on ties.
    static Adesk::UInt8 lookUpACI(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);
    // 0x00RRGGBB of an entry of the colour index.
    static Adesk::UInt32 lookUpRGB(Adesk::UInt8 index);

private:
    Adesk::UInt32 value_ = Adesk::UInt32(kByLayer) << 24;
};

class AcCmColor {
public:
    AcCmColor() = default;
    AcCmColor(const AcCmEntityColor& color) : color_(color) {}

    AcCmEntityColor::ColorMethod colorMethod() const { return color_.colorMethod(); }
    void setColorMethod(AcCmEntityColor::ColorMethod method) { color_.setColorMethod(method); }
    Adesk::Int16 colorIndex() const { return color_.colorIndex(); }
    bool setColorIndex(Adesk::Int16 index) { return color_.setColorIndex(index); }
    bool setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
        return color_.setRGB(red, green, blue);
    }
    Adesk::UInt8 red() const { return color_.red(); }
    Adesk::UInt8 green() const { return color_.green(); }
    Adesk::UInt8 blue() const { return color_.blue(); }
    Adesk::UInt32 color() const { return color_.color(); }
    void setColor(Adesk::UInt32 value) { color_.setColor(value); }
    AcCmEntityColor entityColor() const { return color_; }
    bool isByLayer() const { return color_.isByLayer(); }
    bool isByBlock() const { return color_.isByBlock(); }
    bool isByColor() const { return color_.isByColor(); }
    bool isByACI() const { return color_.isByACI(); }
    bool operator==(const AcCmColor&) const = default;

private:
    AcCmEntityColor color_;
};

// The colour of an index entry as the Windows colour value: red in the low byte, then green,
// then blue. Indexes outside 0 to 255 give 0.
Adesk::UInt32 acedGetRGB(int colorIndex);
