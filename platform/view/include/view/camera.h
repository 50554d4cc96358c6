// Where a point of the model lands in a picture: a named direction of view, and the scale and
// offset that fit the model into the picture.
#pragma once

#include <arxsolids/picture.h>

#include <optional>
#include <string>
#include <vector>

namespace view {

using arxsolids::Vec3;
using arxsolids::ViewDirection;

// The views by name: iso, top, front, right, back, left, bottom.
std::optional<ViewDirection> namedView(const std::string& name);
const std::vector<std::string>& viewNames();

struct Pixel {
    double x = 0.0, y = 0.0; // from the picture's top left corner, y down
};

class Camera {
public:
    // The picture's frame for the direction: x right, y up, z toward the eye.
    explicit Camera(const ViewDirection& view);

    // A point in the picture's frame.
    Vec3 toFrame(const Vec3& world) const;
    // Scales and moves the picture so that the frame's box (x and y) fills width by height
    // pixels, less a margin, keeping the proportions.
    void fit(double minX, double minY, double maxX, double maxY, int width, int height);
    Pixel frameToPixel(double x, double y) const;
    Pixel toPixel(const Vec3& world) const {
        const Vec3 f = toFrame(world);
        return frameToPixel(f.x, f.y);
    }
    // Pixels per model unit.
    double scale() const { return scale_; }

private:
    Vec3 right_, up_, toward_;
    double scale_ = 1.0, originX_ = 0.0, originY_ = 0.0;
};

} // namespace view
