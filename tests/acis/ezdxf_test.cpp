// SAT from the host reads in a third-party parser (ezdxf's ACIS reader). Skipped, with the
// reason, where python3 or ezdxf is missing.
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "acis_test.h"

namespace acistest {
namespace {

// Exit status of the checker on `sat`; 77 when it cannot run.
int checked(const std::string& sat, const std::string& args) {
    const auto file =
        std::filesystem::temp_directory_path() / ("qel-sat-" + std::to_string(::getpid()) + ".sat");
    std::ofstream(file, std::ios::binary) << sat;
    const std::string command = QEL_PYTHON3 " " QEL_SAT_CHECKER " " + file.string() + " " + args;
    const int status = std::system(command.c_str());
    std::filesystem::remove(file);
    if (status == -1 || !WIFEXITED(status) || WEXITSTATUS(status) == 127) return 77;
    return WEXITSTATUS(status);
}

TEST(SatThirdParty, EzdxfParsesWhatTheHostWrites) {
    if (std::system(QEL_PYTHON3 " -c 'import ezdxf.acis' >/dev/null 2>&1") != 0)
        GTEST_SKIP() << QEL_PYTHON3 << " with ezdxf is not installed";
    Solid box, tube, torus, inner, swept;
    ASSERT_OK(box.createBox(2, 3, 4));
    ASSERT_OK(tube.createFrustum(4, 1, 1, 1));
    ASSERT_OK(inner.createFrustum(5, 0.5, 0.5, 0.5));
    ASSERT_OK(tube.booleanOper(BoolOperType::kBoolSubtract, inner));
    ASSERT_OK(torus.createTorus(3, 1));
    ASSERT_OK(swept.extrudeAlongPath(
        circleRegion({0, 0, 0}, {0, 1, 0}, 0.2),
        SplineCurve{2, {{0, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {0, 0, 0, 1, 1, 1}, {}, false}, 0.0));
    Region plate = polygonRegion({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
    Region hole = circleRegion({2, 2, 0}, {0, 0, 1}, 1.0);
    ASSERT_OK(plate.booleanOper(BoolOperType::kBoolSubtract, hole));
    // The box is planar throughout: ezdxf also stitches it into a mesh of its 8 corners.
    EXPECT_EQ(checked(satOf(box), "6 8"), 0);
    EXPECT_EQ(checked(satOf(tube), "4"), 0);
    EXPECT_EQ(checked(satOf(torus), "1"), 0);
    EXPECT_EQ(checked(satOf(plate), "1"), 0);
    // A spline surface between two planar ends.
    EXPECT_EQ(checked(satOf(swept), "3"), 0);
    // The checker does catch a broken file.
    EXPECT_NE(checked(satOf(box), "7"), 0);
}

} // namespace
} // namespace acistest
