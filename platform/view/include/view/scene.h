// What a picture shows of a drawing: the visible entities of model space as coloured triangles,
// polylines, dots and texts, and the bodies whose hidden edges a line picture removes.
#pragma once

#include <arxsolids/picture.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

class AcDbDatabase;

namespace view {

using arxsolids::Vec3;

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
    bool operator==(const Rgb&) const = default;
};

struct Shaded {
    arxsolids::Triangle triangle;
    Rgb colour;
};

struct Polyline {
    std::vector<Vec3> points;
    Rgb colour;
};

struct Dot {
    Vec3 at;
    Rgb colour;
};

struct Label {
    Vec3 at;
    double height = 0.0;
    std::string text; // UTF-8
    Rgb colour;
};

struct Scene {
    std::vector<Shaded> triangles;
    std::vector<Polyline> lines;
    std::vector<Dot> dots;
    std::vector<Label> labels;
    std::vector<arxsolids::Solid> solids;
    std::vector<arxsolids::Region> regions;
    int entities = 0; // the entities drawn
    int skipped = 0;  // visible entities of kinds without a picture (kept objects, ...)

    bool empty() const { return entities == 0; }
};

struct SceneChoice {
    std::vector<std::wstring> layers; // only these layers (any case); all when empty
    Rgb foreground;                   // what colour 7 (and by-block at the top) draws in
};

// The entities of model space that are visible: not invisible, not on an off or frozen layer,
// on a chosen layer. Colours by layer are resolved; block references are drawn by their pieces.
Scene collectScene(AcDbDatabase& db, const SceneChoice& choice);

} // namespace view
