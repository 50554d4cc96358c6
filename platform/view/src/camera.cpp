#include <view/camera.h>

#include <algorithm>
#include <cmath>

namespace view {

namespace {

struct NamedView {
    const char* name;
    ViewDirection direction; // toward the eye, picture's up
};

// Eye positions as the drawing's standard views have them; iso looks from the south-east, above.
const NamedView kViews[] = {
    {"iso", {{1, -1, 1}, {0, 0, 1}}},    {"top", {{0, 0, 1}, {0, 1, 0}}},
    {"front", {{0, -1, 0}, {0, 0, 1}}},  {"right", {{1, 0, 0}, {0, 0, 1}}},
    {"back", {{0, 1, 0}, {0, 0, 1}}},    {"left", {{-1, 0, 0}, {0, 0, 1}}},
    {"bottom", {{0, 0, -1}, {0, 1, 0}}},
};

// Share of the picture left free at each side.
constexpr double kMargin = 0.05;

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec3 unit(const Vec3& v) {
    const double length = std::sqrt(dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

} // namespace

std::optional<ViewDirection> namedView(const std::string& name) {
    for (const NamedView& v : kViews)
        if (name == v.name) return v.direction;
    return std::nullopt;
}

const std::vector<std::string>& viewNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const NamedView& v : kViews)
            all.push_back(v.name);
        return all;
    }();
    return names;
}

Camera::Camera(const ViewDirection& view) {
    toward_ = unit(view.toward);
    right_ = unit(cross(view.up, view.toward));
    up_ = cross(toward_, right_);
}

Vec3 Camera::toFrame(const Vec3& world) const {
    return {dot(world, right_), dot(world, up_), dot(world, toward_)};
}

void Camera::fit(double minX, double minY, double maxX, double maxY, int width, int height) {
    const double w = std::max(maxX - minX, 0.0), h = std::max(maxY - minY, 0.0);
    const double usableW = width * (1.0 - 2.0 * kMargin), usableH = height * (1.0 - 2.0 * kMargin);
    // A single point (or nothing) keeps a scale of one pixel per unit.
    if (w > 0.0 || h > 0.0)
        scale_ = std::min(w > 0.0 ? usableW / w : INFINITY, h > 0.0 ? usableH / h : INFINITY);
    originX_ = width / 2.0 - scale_ * (minX + maxX) / 2.0;
    originY_ = height / 2.0 + scale_ * (minY + maxY) / 2.0;
}

Pixel Camera::frameToPixel(double x, double y) const {
    return {originX_ + scale_ * x, originY_ - scale_ * y};
}

} // namespace view
