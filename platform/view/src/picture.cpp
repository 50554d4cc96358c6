#include <view/picture.h>

#include <arx/arx.h>

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <unistd.h>

namespace view {

namespace {

namespace fs = std::filesystem;

// Flat shading: light from over the viewer's left shoulder, and some light everywhere so that a
// face turned away still shows its colour.
constexpr double kAmbient = 0.35;
const Vec3 kLight{-0.4, 0.5, 0.77}; // in the picture's frame, unit length
// Smallest text, in pixels, so that a small label stays a mark rather than vanishing.
constexpr double kMinTextPixels = 6.0;
// Advance of a character of the sans-serif face, in text heights (an average over letters).
constexpr double kTextAdvance = 0.6;
constexpr double kLineWidth = 1.0;
constexpr double kDotRadius = 1.5;

Rgb backgroundOf(const PictureOptions& o) {
    return o.blackBackground ? Rgb{0, 0, 0} : Rgb{255, 255, 255};
}

void setColour(cairo_t* cr, Rgb c, double shade = 1.0) {
    cairo_set_source_rgb(cr, c.r / 255.0 * shade, c.g / 255.0 * shade, c.b / 255.0 * shade);
}

std::string lowerExtension(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
    return extension;
}

struct SurfaceCloser {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
struct ContextCloser {
    void operator()(cairo_t* c) const { cairo_destroy(c); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceCloser>;
using Context = std::unique_ptr<cairo_t, ContextCloser>;

void strokePolyline(cairo_t* cr, const Camera& camera, const std::vector<Vec3>& points) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Pixel p = camera.toPixel(points[i]);
        if (i == 0)
            cairo_move_to(cr, p.x, p.y);
        else
            cairo_line_to(cr, p.x, p.y);
    }
    cairo_stroke(cr);
}

// Curves, points and texts: drawn over the bodies in both kinds of picture.
void drawMarks(cairo_t* cr, const Camera& camera, const Scene& scene) {
    cairo_set_line_width(cr, kLineWidth);
    for (const Polyline& line : scene.lines) {
        setColour(cr, line.colour);
        strokePolyline(cr, camera, line.points);
    }
    for (const Dot& dot : scene.dots) {
        const Pixel p = camera.toPixel(dot.at);
        setColour(cr, dot.colour);
        cairo_arc(cr, p.x, p.y, kDotRadius, 0.0, 2 * M_PI);
        cairo_fill(cr);
    }
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    for (const Label& label : scene.labels) {
        const Pixel p = camera.toPixel(label.at);
        setColour(cr, label.colour);
        cairo_set_font_size(cr, std::max(kMinTextPixels, label.height * camera.scale()));
        cairo_move_to(cr, p.x, p.y);
        cairo_show_text(cr, label.text.c_str());
    }
}

// Painter's algorithm: the farthest triangles first, each one flat in its colour, darker as it
// turns from the light.
void drawShaded(cairo_t* cr, const Camera& camera, const Scene& scene) {
    struct Placed {
        double depth;
        const Shaded* shaded;
    };
    std::vector<Placed> order;
    order.reserve(scene.triangles.size());
    for (const Shaded& s : scene.triangles) {
        double depth = 0.0;
        for (const Vec3& corner : s.triangle.corners)
            depth += camera.toFrame(corner).z;
        order.push_back({depth, &s});
    }
    std::sort(order.begin(), order.end(),
              [](const Placed& a, const Placed& b) { return a.depth < b.depth; });
    // Neighbouring triangles of one face must not show seams of the background between them.
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    for (const Placed& placed : order) {
        const arxsolids::Triangle& t = placed.shaded->triangle;
        const Vec3 n = camera.toFrame(t.normal);
        // Regions and faces show both sides alike.
        const double lit = std::abs(n.x * kLight.x + n.y * kLight.y + n.z * kLight.z);
        setColour(cr, placed.shaded->colour, kAmbient + (1.0 - kAmbient) * lit);
        for (int i = 0; i < 3; ++i) {
            const Pixel p = camera.toPixel(t.corners[i]);
            if (i == 0)
                cairo_move_to(cr, p.x, p.y);
            else
                cairo_line_to(cr, p.x, p.y);
        }
        cairo_close_path(cr);
        cairo_fill_preserve(cr);
        cairo_set_line_width(cr, 0.5);
        cairo_stroke(cr);
    }
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_DEFAULT);
}

// The edges of the bodies that the eye sees, as lines in each body's colour family: hidden-line
// pictures are drawn in the foreground colour.
bool drawEdges(cairo_t* cr, const Camera& camera, const Scene& scene, const ViewDirection& view,
               Rgb ink, std::string& message) {
    std::vector<const arxsolids::Solid*> solids;
    std::vector<const arxsolids::Region*> regions;
    for (const arxsolids::Solid& s : scene.solids)
        solids.push_back(&s);
    for (const arxsolids::Region& r : scene.regions)
        regions.push_back(&r);
    if (solids.empty() && regions.empty()) return true;
    std::vector<std::vector<Vec3>> edges;
    const arxsolids::Status status = arxsolids::visibleEdges(solids, regions, view, edges);
    if (status != arxsolids::Status::eOk) {
        message =
            std::string("the hidden lines could not be removed: ") + arxsolids::statusName(status);
        return false;
    }
    setColour(cr, ink);
    cairo_set_line_width(cr, kLineWidth);
    for (const std::vector<Vec3>& edge : edges) {
        for (std::size_t i = 0; i < edge.size(); ++i) {
            const Pixel p = camera.frameToPixel(edge[i].x, edge[i].y);
            if (i == 0)
                cairo_move_to(cr, p.x, p.y);
            else
                cairo_line_to(cr, p.x, p.y);
        }
        cairo_stroke(cr);
    }
    return true;
}

// A file beside the target that becomes the target only when complete.
std::string temporaryBeside(const std::string& path) {
    return path + ".tmp" + std::to_string(::getpid());
}

bool putInPlace(const std::string& temporary, const std::string& path, std::string& message) {
    std::error_code ec;
    fs::rename(temporary, path, ec);
    if (!ec) return true;
    fs::remove(temporary, ec);
    message = "cannot write " + path;
    return false;
}

} // namespace

bool isPictureName(const std::string& path) {
    const std::string extension = lowerExtension(path);
    return extension == ".png" || extension == ".svg";
}

Camera fittedCamera(const Scene& scene, const PictureOptions& o) {
    Camera camera(namedView(o.view).value_or(*namedView("iso")));
    constexpr double kHuge = std::numeric_limits<double>::max();
    double minX = kHuge, minY = kHuge, maxX = -kHuge, maxY = -kHuge;
    auto take = [&](const Vec3& p) {
        const Vec3 f = camera.toFrame(p);
        minX = std::min(minX, f.x), maxX = std::max(maxX, f.x);
        minY = std::min(minY, f.y), maxY = std::max(maxY, f.y);
    };
    for (const Shaded& s : scene.triangles)
        for (const Vec3& corner : s.triangle.corners)
            take(corner);
    for (const Polyline& line : scene.lines)
        for (const Vec3& p : line.points)
            take(p);
    for (const Dot& dot : scene.dots)
        take(dot.at);
    // A text reaches right and up from where it stands, by about its height per character.
    for (const Label& label : scene.labels) {
        take(label.at);
        const Vec3 f = camera.toFrame(label.at);
        const double length = kTextAdvance * label.height * double(label.text.size());
        minX = std::min(minX, f.x), maxX = std::max(maxX, f.x + length);
        minY = std::min(minY, f.y), maxY = std::max(maxY, f.y + label.height);
    }
    if (minX > maxX) minX = maxX = minY = maxY = 0.0;
    camera.fit(minX, minY, maxX, maxY, o.width, o.height);
    return camera;
}

PictureResult writePicture(AcDbDatabase& db, const std::string& path, const PictureOptions& o) {
    PictureResult result;
    const std::optional<ViewDirection> direction = namedView(o.view);
    if (!direction) {
        result.message = "unknown view " + o.view;
        return result;
    }
    if (!isPictureName(path)) {
        result.message = path + ": pictures are written as .png or .svg";
        return result;
    }
    if (o.width <= 0 || o.height <= 0) {
        result.message = "the picture needs a size above zero";
        return result;
    }
    const Rgb background = backgroundOf(o);
    const Rgb foreground = o.blackBackground ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
    const Scene scene = collectScene(db, {o.layers, foreground});
    const Camera camera = fittedCamera(scene, o);
    const bool vector = lowerExtension(path) == ".svg";
    const std::string temporary = temporaryBeside(path);
    Surface surface(vector ? cairo_svg_surface_create(temporary.c_str(), o.width, o.height)
                           : cairo_image_surface_create(CAIRO_FORMAT_RGB24, o.width, o.height));
    Context cr(cairo_create(surface.get()));
    setColour(cr.get(), background);
    cairo_paint(cr.get());
    if (vector) {
        if (!drawEdges(cr.get(), camera, scene, *direction, foreground, result.message)) {
            cr.reset();
            surface.reset();
            std::error_code ec;
            fs::remove(temporary, ec);
            return result;
        }
    } else {
        drawShaded(cr.get(), camera, scene);
    }
    drawMarks(cr.get(), camera, scene);
    cr.reset();
    cairo_status_t status = CAIRO_STATUS_SUCCESS;
    if (vector) {
        cairo_surface_finish(surface.get());
        status = cairo_surface_status(surface.get());
    } else {
        status = cairo_surface_write_to_png(surface.get(), temporary.c_str());
    }
    surface.reset();
    if (status != CAIRO_STATUS_SUCCESS) {
        std::error_code ec;
        fs::remove(temporary, ec);
        result.message = "cannot write " + path + ": " + cairo_status_to_string(status);
        return result;
    }
    if (!putInPlace(temporary, path, result.message)) return result;
    result.written = true;
    result.entities = scene.entities;
    result.message = scene.empty() ? "nothing visible to draw: the picture is empty"
                                   : std::to_string(scene.entities) + " entities drawn";
    if (scene.skipped > 0)
        result.message += ", " + std::to_string(scene.skipped) + " of kinds without a picture";
    return result;
}

} // namespace view
