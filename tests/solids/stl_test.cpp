// STL output: the facets of a cylinder read back, and the refusal of negative coordinates.
#include "checks.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <unistd.h>

namespace solidstest {
namespace {

namespace fs = std::filesystem;

struct StlText {
    int facetLines = 0, endfacetLines = 0;
    std::vector<std::array<Vec3, 3>> triangles;
    std::vector<std::string> vertexKeys; // the printed text of each vertex, as a reader merges them
};

StlText readStl(const fs::path& path) {
    StlText out;
    std::ifstream in(path);
    std::string line;
    std::array<Vec3, 3> triangle;
    int corner = 0;
    while (std::getline(in, line)) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (word == "facet") ++out.facetLines;
        if (word == "endfacet") ++out.endfacetLines;
        if (word != "vertex") continue;
        Vec3& v = triangle[corner];
        words >> v.x >> v.y >> v.z;
        out.vertexKeys.push_back(line.substr(line.find("vertex") + 6));
        if (++corner == 3) {
            out.triangles.push_back(triangle);
            corner = 0;
        }
    }
    return out;
}

class StlOut : public ::testing::Test {
protected:
    fs::path path = fs::temp_directory_path() /
                    ("arxsolids-" + std::to_string(::getpid()) + "-" +
                     ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".stl");
    void TearDown() override { fs::remove(path); }
};

TEST_F(StlOut, CylinderFacetsCloseAroundItsVolume) {
    const double r = 0.5, h = 2.0;
    Solid s;
    ASSERT_OK(s.createFrustum(h, r, r, r));
    ASSERT_OK(s.transformBy(Matrix::translation({r, r, h / 2}))); // all coordinates >= 0
    ASSERT_OK(s.stlOut(path.string(), true));
    const StlText stl = readStl(path);
    ASSERT_GT(stl.triangles.size(), 20u);
    EXPECT_EQ(static_cast<int>(stl.triangles.size()), stl.facetLines);
    EXPECT_EQ(stl.facetLines, stl.endfacetLines);
    EXPECT_EQ(3 * stl.triangles.size(), stl.vertexKeys.size());

    // Every corner lies on the cylinder; every edge, by the printed text of its ends, is shared
    // by exactly two facets running it opposite ways: a closed, consistently oriented mesh.
    std::map<std::pair<std::string, std::string>, int> runs;
    double volume = 0.0;
    for (std::size_t t = 0; t < stl.triangles.size(); ++t) {
        const auto& tri = stl.triangles[t];
        for (int k = 0; k < 3; ++k) {
            const Vec3& p = tri[k];
            const double rho = std::hypot(p.x - r, p.y - r);
            const bool onCap = std::abs(p.z) < 1e-9 || std::abs(p.z - h) < 1e-9;
            EXPECT_TRUE(onCap ? rho <= r * (1 + 1e-9) : std::abs(rho - r) <= 1e-9 * r)
                << "corner off the cylinder: " << p.x << " " << p.y << " " << p.z;
            ++runs[{stl.vertexKeys[3 * t + k], stl.vertexKeys[3 * t + (k + 1) % 3]}];
        }
        const Vec3 &a = tri[0], &b = tri[1], &c = tri[2];
        volume += (a.x * (b.y * c.z - b.z * c.y) - a.y * (b.x * c.z - b.z * c.x) +
                   a.z * (b.x * c.y - b.y * c.x)) /
                  6.0;
    }
    for (const auto& [edge, count] : runs) {
        EXPECT_EQ(1, count);
        EXPECT_EQ(1, runs.count({edge.second, edge.first}));
    }
    // Facets are chords of the circles: the volume falls short by a few times the deflection
    // (a thousandth of the diagonal) over the radius.
    const double exact = kPi * r * r * h, deflection = 1e-3 * std::sqrt(8 * r * r + h * h);
    EXPECT_LT(volume, exact);
    EXPECT_GT(volume, exact * (1 - 4 * deflection / r));
}

TEST_F(StlOut, BinaryHoldsTheSameFacets) {
    Solid s;
    ASSERT_OK(s.createBox(1, 2, 3));
    ASSERT_OK(s.transformBy(Matrix::translation({0.5, 1, 1.5})));
    ASSERT_OK(s.stlOut(path.string(), true));
    const std::size_t facets = readStl(path).triangles.size();
    EXPECT_EQ(12u, facets);
    ASSERT_OK(s.stlOut(path.string(), false));
    EXPECT_EQ(84 + 50 * facets, fs::file_size(path));
}

TEST_F(StlOut, RefusesNegativeCoordinatesAndWritesNothing) {
    Solid s;
    ASSERT_OK(s.createFrustum(2.0, 0.5, 0.5, 0.5)); // centred: reaches below zero
    EXPECT_STATUS(Status::eNegativeCoordinates, s.stlOut(path.string(), true));
    EXPECT_FALSE(fs::exists(path));
    // Moved by minus its minimum point, as the exporter does, it is accepted.
    Extents e;
    ASSERT_OK(s.getGeomExtents(e));
    ASSERT_OK(s.transformBy(Matrix::translation({-e.min.x, -e.min.y, -e.min.z})));
    EXPECT_STATUS(Status::eOk, s.stlOut(path.string(), true));

    EXPECT_STATUS(Status::eFileAccessErr, s.stlOut("/nonexistent-dir/x.stl", true));
    EXPECT_STATUS(Status::eNotApplicable, Solid{}.stlOut(path.string(), true));
}

} // namespace
} // namespace solidstest
