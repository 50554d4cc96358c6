#include "arx/cm.h"

#include "aci_table.h"

void AcCmEntityColor::setColorMethod(ColorMethod method) {
    value_ = (Adesk::UInt32(method) << 24) | (value_ & 0xFFFFFF);
}

Adesk::Int16 AcCmEntityColor::colorIndex() const {
    switch (colorMethod()) {
    case kByLayer:
        return kACIbyLayer;
    case kByBlock:
        return kACIbyBlock;
    case kByACI:
        return Adesk::Int16(value_ & 0xFF);
    case kByColor:
        return rgbToAci(red(), green(), blue());
    case kForeground:
        return kACIforeground;
    default:
        return kACIforeground;
    }
}

bool AcCmEntityColor::setColorIndex(Adesk::Int16 index) {
    if (index < 0 || index > 256) return false;
    if (index == kACIbyLayer)
        value_ = Adesk::UInt32(kByLayer) << 24;
    else if (index == kACIbyBlock)
        value_ = Adesk::UInt32(kByBlock) << 24;
    else
        value_ = (Adesk::UInt32(kByACI) << 24) | Adesk::UInt32(index);
    return true;
}

bool AcCmEntityColor::setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
    value_ = (Adesk::UInt32(kByColor) << 24) | (Adesk::UInt32(red) << 16) |
             (Adesk::UInt32(green) << 8) | blue;
    return true;
}

Adesk::UInt32 AcCmEntityColor::trueColor() const {
    if (isByACI()) return (Adesk::UInt32(kByColor) << 24) | aciToRgb(int(value_ & 0xFF));
    return value_;
}

Adesk::UInt8 AcCmEntityColor::red() const {
    return (isByColor() || isByACI()) ? Adesk::UInt8(trueColor() >> 16) : 0;
}

Adesk::UInt8 AcCmEntityColor::green() const {
    return (isByColor() || isByACI()) ? Adesk::UInt8(trueColor() >> 8) : 0;
}

Adesk::UInt8 AcCmEntityColor::blue() const {
    return (isByColor() || isByACI()) ? Adesk::UInt8(trueColor()) : 0;
}

Adesk::UInt8 AcCmEntityColor::lookUpACI(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
    return rgbToAci(red, green, blue);
}

Adesk::UInt32 AcCmEntityColor::lookUpRGB(Adesk::UInt8 index) {
    return aciToRgb(index);
}

Adesk::UInt32 acedGetRGB(int colorIndex) {
    if (colorIndex < 0 || colorIndex > 255) return 0;
    const Adesk::UInt32 rgb = aciToRgb(colorIndex);
    return ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16);
}
