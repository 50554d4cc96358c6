// The walk of nested geometric groups ends on any file: a chain deeper than the walk takes is
// cut with one counted error, and what lies above the cut is still made.
#include "drawing_summary.h"
#include "import_fixture.h"
#include "shell/settings_store.h"

namespace {

using qelintest::FileLayout;

class GroupWalk : public qelintest::ImportTest {};

TEST_F(GroupWalk, AChainOfGroupsDeeperThanTheWalkIsCutWithOneError) {
    constexpr int kChain = 70;
    FileLayout layout;
    // Group i lists a line and group i + 1; the last group lists a line only.
    for (int i = 0; i < kChain; ++i) {
        const std::string next = i + 1 < kChain ? ", " + std::to_string(i + 1) : "";
        layout.objects.push_back(
            R"({"class": "GeometricGroup", "params": [["objectList", "uint[]", [)" +
            std::to_string(kChain) + next + "]]]}");
    }
    layout.objects.push_back(
        R"({"class": "Line3d", "params": [["startPoint", "double[]", [0, 0, 0]], ["endPoint", "double[]", [1, 0, 0]]]})");
    layout.layers = {{R"("Groups")", "[0]", ""}};
    const std::wstring file = build(layout.json());
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", file.c_str()));
    run(file);

    EXPECT_EQ(errorCount(), 1u);
    std::wstring shown;
    for (const std::wstring& box : boxes())
        shown += box;
    EXPECT_NE(shown.find(L"\nGeometricGroup 64 lies deeper than 64 groups: skipped."),
              std::wstring::npos)
        << ::testing::PrintToString(shown);
    // One line for each group that was walked, each with its group's serial.
    const int lines = creatorstest::CountModelSpace(
        *acdbHostApplicationServices()->workingDatabase(),
        [](AcDbEntity& entity) { return AcDbLine::cast(&entity) != nullptr; });
    EXPECT_EQ(lines, 64);
}

} // namespace
