// Pictures of the sample plant as the user gets them: imported by qelcad, then drawn. Where the
// tests look is worked out from the geometry alone (centroids, boxes), not from the renderer.
#include <view/picture.h>

#include <arx/arx.h>
#include <arx/brhost.h>
#include <arx/dbsol3d.h>
#include <dxf/drawing.h>

#include <cairo.h>
#include <gtest/gtest.h>

#include "../support/command.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <unistd.h>

namespace fs = std::filesystem;
using view::Rgb;
using view::Vec3;

namespace {

constexpr int kWidth = 320, kHeight = 240;

struct Image {
    int width = 0, height = 0;
    std::vector<Rgb> pixels;
    Rgb at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

Image readPng(const fs::path& path) {
    Image image;
    cairo_surface_t* s = cairo_image_surface_create_from_png(path.c_str());
    if (cairo_surface_status(s) == CAIRO_STATUS_SUCCESS) {
        cairo_surface_flush(s);
        image.width = cairo_image_surface_get_width(s);
        image.height = cairo_image_surface_get_height(s);
        const int stride = cairo_image_surface_get_stride(s);
        const unsigned char* data = cairo_image_surface_get_data(s);
        for (int y = 0; y < image.height; ++y)
            for (int x = 0; x < image.width; ++x) {
                const auto* p = reinterpret_cast<const std::uint32_t*>(data + y * stride) + x;
                image.pixels.push_back({static_cast<std::uint8_t>(*p >> 16),
                                        static_cast<std::uint8_t>(*p >> 8),
                                        static_cast<std::uint8_t>(*p)});
            }
    }
    cairo_surface_destroy(s);
    return image;
}

// Ink of a colour: the colour dimmed by some shade, to the rounding of 8-bit channels.
bool isInkOf(Rgb pixel, Rgb colour) {
    const double c[3] = {double(colour.r), double(colour.g), double(colour.b)};
    const double p[3] = {double(pixel.r), double(pixel.g), double(pixel.b)};
    const double cc = c[0] * c[0] + c[1] * c[1] + c[2] * c[2];
    if (cc == 0.0) return false;
    const double k = (p[0] * c[0] + p[1] * c[1] + p[2] * c[2]) / cc;
    if (k <= 0.0 || k > 1.0 + 1.0 / 255) return false;
    for (int i = 0; i < 3; ++i)
        if (std::abs(p[i] - k * c[i]) > 1.0) return false;
    return true;
}

// Share of the pixels around a point (5 by 5) that are ink of the colour: a centre line of one
// pixel drawn over a body leaves most of them.
double inkAround(const Image& image, view::Pixel at, Rgb colour) {
    int ink = 0, all = 0;
    for (int dy = -2; dy <= 2; ++dy)
        for (int dx = -2; dx <= 2; ++dx) {
            const int x = int(std::lround(at.x)) + dx, y = int(std::lround(at.y)) + dy;
            if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
            ++all;
            ink += isInkOf(image.at(x, y), colour);
        }
    return all ? double(ink) / all : 0.0;
}

struct Body {
    std::string layer;
    Rgb colour;
    Vec3 centroid;
    Vec3 corners[8];
    bool convex = true;
};

// A body is convex when no corner of its facets lies outside the plane of any facet.
bool convex(const std::vector<arxsolids::Triangle>& facets, double size) {
    const double tolerance = 1e-6 * size;
    for (const arxsolids::Triangle& f : facets)
        for (const arxsolids::Triangle& g : facets)
            for (const Vec3& p : g.corners) {
                const Vec3& o = f.corners[0];
                if ((p.x - o.x) * f.normal.x + (p.y - o.y) * f.normal.y + (p.z - o.z) * f.normal.z >
                    tolerance)
                    return false;
            }
    return true;
}

class Picture : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir = fs::temp_directory_path() / ("qelin-view-" + std::to_string(::getpid()));
        fs::remove_all(dir);
        fs::create_directories(dir);
        ::setenv("QELCAD_REGISTRY", (dir / "registry.json").c_str(), 1);
        const Outcome import = qelcad(std::string("import ") + QEL_SAMPLE_PLANT +
                                      " -o plant.dxf --units Millimeters --no-log");
        ASSERT_EQ(import.status, 0) << import.out;
        qelhost::registerSolidClasses();
    }
    static void TearDownTestSuite() {
        ::unsetenv("QELCAD_REGISTRY");
        fs::remove_all(dir);
    }
    static Outcome qelcad(const std::string& arguments) {
        return runCommand("cd " + dir.string() + " && " + QELCAD + " " + arguments +
                          " </dev/null 2>&1");
    }

    void SetUp() override {
        std::string message;
        db = dxf::openDrawing((dir / "plant.dxf").string(), message);
        ASSERT_NE(db, nullptr) << message;
    }

    // The solids of the drawing with the colour they are drawn in (as the scene resolves it).
    std::vector<Body> bodies() {
        std::vector<Body> all;
        AcDbBlockTable* blocks = nullptr;
        db->getBlockTable(blocks);
        AcDbBlockTableRecord* space = nullptr;
        blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForRead);
        blocks->close();
        AcDbBlockTableRecordIterator* it = nullptr;
        space->newIterator(it);
        for (; !it->done(); it->step()) {
            AcDbEntity* entity = nullptr;
            if (it->getEntity(entity) != Acad::eOk) continue;
            if (const auto* solid = AcDb3dSolid::cast(entity); solid && !solid->isNull()) {
                Body b;
                ACHAR* layer = entity->layer();
                b.layer = std::string(layer, layer + std::wcslen(layer));
                acutDelString(layer);
                b.colour = colourOf(*entity);
                arxsolids::MassProps props;
                solid->body().getMassProp(props);
                b.centroid = props.centroid;
                arxsolids::Extents e;
                solid->body().getGeomExtents(e);
                for (int i = 0; i < 8; ++i)
                    b.corners[i] = {i & 1 ? e.max.x : e.min.x, i & 2 ? e.max.y : e.min.y,
                                    i & 4 ? e.max.z : e.min.z};
                std::vector<arxsolids::Triangle> facets;
                arxsolids::triangulate(solid->body(), facets);
                const double size =
                    std::hypot(e.max.x - e.min.x, e.max.y - e.min.y, e.max.z - e.min.z);
                b.convex = convex(facets, size);
                all.push_back(b);
            }
            entity->close();
        }
        delete it;
        space->close();
        return all;
    }

    Rgb colourOf(const AcDbEntity& entity) {
        AcCmEntityColor c = entity.entityColor();
        if (c.isByLayer()) {
            AcDbLayerTableRecord* layer = nullptr;
            acdbOpenObject(layer, entity.layerId(), AcDb::kForRead);
            c = layer->color().entityColor();
            layer->close();
        }
        return {c.red(), c.green(), c.blue()};
    }

    // Solids whose projected centroid no other solid's box can cover: a convex solid must ink
    // its own centroid there.
    static std::vector<Body> unobstructed(const view::Camera& camera,
                                          const std::vector<Body>& all) {
        std::vector<Body> chosen;
        for (const Body& b : all) {
            if (!b.convex) continue;
            const view::Pixel c = camera.toPixel(b.centroid);
            bool covered = false;
            for (const Body& other : all) {
                if (&other == &b) continue;
                double x0 = 1e300, y0 = 1e300, x1 = -1e300, y1 = -1e300;
                for (const Vec3& corner : other.corners) {
                    const view::Pixel p = camera.toPixel(corner);
                    x0 = std::min(x0, p.x), x1 = std::max(x1, p.x);
                    y0 = std::min(y0, p.y), y1 = std::max(y1, p.y);
                }
                covered = covered || (c.x > x0 - 3 && c.x < x1 + 3 && c.y > y0 - 3 && c.y < y1 + 3);
            }
            if (!covered) chosen.push_back(b);
        }
        return chosen;
    }

    void setLayerOff(const std::string& name) {
        AcDbLayerTable* table = nullptr;
        db->getLayerTable(table);
        AcDbLayerTableRecord* layer = nullptr;
        const std::wstring wide(name.begin(), name.end());
        ASSERT_EQ(table->getAt(wide.c_str(), layer, AcDb::kForWrite), Acad::eOk);
        layer->setIsOff(true);
        layer->close();
        table->close();
    }

    static inline fs::path dir;
    std::unique_ptr<AcDbDatabase> db;
};

} // namespace

TEST_F(Picture, EverySolidInksItsProjectedCentroidInItsColourInEveryView) {
    const std::vector<Body> all = bodies();
    std::set<std::array<double, 3>> checked; // the solids looked at, over all views
    for (const std::string& name : view::viewNames()) {
        view::PictureOptions o;
        o.view = name;
        o.width = kWidth;
        o.height = kHeight;
        const fs::path png = dir / (name + ".png");
        const view::PictureResult result = view::writePicture(*db, png.string(), o);
        ASSERT_TRUE(result.written) << name << ": " << result.message;
        const Image image = readPng(png);
        ASSERT_EQ(image.width, kWidth);
        ASSERT_EQ(image.height, kHeight);
        const view::Camera camera = view::fittedCamera(view::collectScene(*db, {{}, {0, 0, 0}}), o);
        const std::vector<Body> chosen = unobstructed(camera, all);
        for (const Body& b : chosen)
            checked.insert({b.centroid.x, b.centroid.y, b.centroid.z});
        for (const Body& b : chosen)
            EXPECT_GE(inkAround(image, camera.toPixel(b.centroid), b.colour), 0.5)
                << name << ": solid on " << b.layer << " at " << b.centroid.x << "," << b.centroid.y
                << "," << b.centroid.z;
        // The margin around the model is background.
        for (const view::Pixel corner : {view::Pixel{1, 1}, view::Pixel{kWidth - 2., kHeight - 2.}})
            EXPECT_EQ(image.at(int(corner.x), int(corner.y)), (Rgb{255, 255, 255})) << name;
    }
    // Side views stack the plant's solids one behind another; the others leave several free.
    EXPECT_GE(checked.size(), 3u);
}

TEST_F(Picture, AnOffLayerLeavesNoInk) {
    view::PictureOptions o;
    o.width = kWidth;
    o.height = kHeight;
    const view::Camera camera = view::fittedCamera(view::collectScene(*db, {{}, {0, 0, 0}}), o);
    const std::vector<Body> chosen = unobstructed(camera, bodies());
    ASSERT_FALSE(chosen.empty());
    const Body& gone = chosen.front();
    setLayerOff(gone.layer);
    const fs::path png = dir / "off.png";
    ASSERT_TRUE(view::writePicture(*db, png.string(), o).written);
    const Image image = readPng(png);
    for (const Body& b : bodies())
        if (b.layer == gone.layer) {
            // The picture is fitted anew without the layer: look where its solids would be now.
            const view::Camera now =
                view::fittedCamera(view::collectScene(*db, {{}, {0, 0, 0}}), o);
            EXPECT_EQ(inkAround(image, now.toPixel(b.centroid), b.colour), 0.0) << b.layer;
        }
}

TEST_F(Picture, TheCommandWritesShadedAndLinePicturesAndRefusesBadOptions) {
    const Outcome png = qelcad("view plant.dxf -o plant.png --size 160x120 --view top");
    ASSERT_EQ(png.status, 0) << png.out;
    EXPECT_EQ(readPng(dir / "plant.png").width, 160);
    const Outcome black = qelcad("view plant.dxf -o black.png --size 160x120 --background black");
    ASSERT_EQ(black.status, 0) << black.out;
    EXPECT_EQ(readPng(dir / "black.png").at(0, 0), (Rgb{0, 0, 0}));

    // The line picture: XML with a stroked path per visible edge (texts are filled glyphs).
    const Outcome svg = qelcad("view plant.dxf -o plant.svg --size 160x120");
    ASSERT_EQ(svg.status, 0) << svg.out;
    const Outcome parsed = runCommand(
        "python3 -c \"import xml.etree.ElementTree as E; r=E.parse('" +
        (dir / "plant.svg").string() +
        "').getroot(); print(sum(1 for e in r.iter() if e.tag.endswith('path') and 'fill:none' in "
        "e.get('style','') and 'L' in e.get('d','')))\"");
    ASSERT_EQ(parsed.status, 0) << parsed.out;
    EXPECT_GT(std::stoi(parsed.out), int(bodies().size()));

    for (const char* bad : {"--view sideways", "--size 0x10", "--size 100", "--background grey"}) {
        const Outcome refused = qelcad(std::string("view plant.dxf -o bad.png ") + bad);
        EXPECT_EQ(refused.status, 2) << bad;
        EXPECT_FALSE(fs::exists(dir / "bad.png")) << bad;
    }
    EXPECT_EQ(qelcad("view plant.dxf -o plant.jpg").status, 2);
}

TEST_F(Picture, NothingVisibleGivesAnEmptyPictureAndSaysSo) {
    const Outcome run = qelcad("view plant.dxf -o empty.png --size 64x48 --layers NoSuchLayer");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("nothing visible"), std::string::npos) << run.out;
    const Image image = readPng(dir / "empty.png");
    ASSERT_EQ(image.width, 64);
    EXPECT_TRUE(std::all_of(image.pixels.begin(), image.pixels.end(), [](Rgb p) {
        return p == Rgb{255, 255, 255};
    }));
}

TEST_F(Picture, ADamagedDrawingGivesTheReadersMessageAndNoPicture) {
    std::ifstream in(dir / "plant.dxf", std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::ofstream(dir / "damaged.dxf", std::ios::binary) << text.substr(0, text.size() / 2);
    const Outcome info = qelcad("info damaged.dxf");
    const Outcome run = qelcad("view damaged.dxf -o damaged.png");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, info.out);
    EXPECT_FALSE(fs::exists(dir / "damaged.png"));
}

// Each view looks from where its name says: the world's axes land right, up and toward the eye
// as a draughtsman expects (iso from the south-east, above).
TEST(Views, LookFromWhereTheirNamesSay) {
    struct Expected {
        const char* name;
        Vec3 right, up, toward;
    };
    const double s2 = std::sqrt(0.5), s3 = std::sqrt(1.0 / 3), s6 = std::sqrt(1.0 / 6);
    const Expected table[] = {
        {"top", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {"bottom", {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
        {"front", {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
        {"back", {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
        {"right", {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
        {"left", {0, -1, 0}, {0, 0, 1}, {-1, 0, 0}},
        {"iso", {s2, s2, 0}, {-s6, s6, 2 * s6}, {s3, -s3, s3}},
    };
    ASSERT_EQ(view::viewNames().size(), std::size(table));
    for (const Expected& e : table) {
        const view::Camera camera(*view::namedView(e.name));
        const Vec3 axes[3] = {camera.toFrame({1, 0, 0}), camera.toFrame({0, 1, 0}),
                              camera.toFrame({0, 0, 1})};
        // Component i of each axis's image: the frame's direction i in world terms.
        auto row = [&](int i) {
            auto pick = [i](const Vec3& v) { return i == 0 ? v.x : i == 1 ? v.y : v.z; };
            return Vec3{pick(axes[0]), pick(axes[1]), pick(axes[2])};
        };
        const Vec3 want[3] = {e.right, e.up, e.toward};
        for (int i = 0; i < 3; ++i) {
            const Vec3 got = row(i);
            EXPECT_NEAR(got.x, want[i].x, 1e-12) << e.name << " axis " << i;
            EXPECT_NEAR(got.y, want[i].y, 1e-12) << e.name << " axis " << i;
            EXPECT_NEAR(got.z, want[i].z, 1e-12) << e.name << " axis " << i;
        }
    }
    // Fitting keeps the picture upright: a point higher in the frame is higher in the picture.
    view::Camera top(*view::namedView("top"));
    top.fit(0, 0, 10, 10, 100, 100);
    EXPECT_LT(top.toPixel({5, 9, 0}).y, top.toPixel({5, 1, 0}).y);
    EXPECT_LT(top.toPixel({1, 5, 0}).x, top.toPixel({9, 5, 0}).x);
}

// VIEW at the command line draws the current drawing as the sub-command does, and a name that is
// not a picture is told, not drawn.
TEST_F(Picture, TheViewCommandDrawsTheCurrentDrawing) {
    std::ofstream(dir / "view.scr") << "VIEW\n"
                                    << (dir / "typed.png").string() << "\nTop\n"
                                    << "VIEW\n"
                                    << (dir / "typed.bmp").string() << "\n\n";
    const Outcome run = qelcad("run plant.dxf --no-autoload --script view.scr");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("typed.png: "), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("No picture: "), std::string::npos) << run.out;
    EXPECT_EQ(readPng(dir / "typed.png").width, 800);
    EXPECT_FALSE(fs::exists(dir / "typed.bmp"));
}
