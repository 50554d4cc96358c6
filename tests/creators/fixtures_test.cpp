// One test per fixture of tests/fixtures/creators: the object file NAME.json is imported into a
// fresh drawing and the drawing's summary must match NAME.expect line by line (format in the
// folder's README.md).
#include "drawing_summary.h"
#include "import_fixture.h"

#include "objectfile/catalogue.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

#include <fstream>
#include <set>
#include <sstream>
#include <strings.h>

namespace {

const char* const kFixtureNames[] = {
#include "creator_fixtures.inc"
};

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// "\n" in an expected message stands for a line break.
std::wstring unescape(const std::string& text) {
    std::wstring out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
            out += L'\n';
            ++i;
        } else {
            out += wchar_t(static_cast<unsigned char>(text[i]));
        }
    }
    return out;
}

struct Expectation {
    bool blocks = false;
    int units = 0;
    bool layerColourOverride = false;
    bool points = false;
    std::vector<std::string> says;
    std::vector<std::string> lines;
};

Expectation readExpectation(const std::filesystem::path& path) {
    Expectation out;
    std::istringstream in(readFile(path));
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (line == "option blocks")
            out.blocks = true;
        else if (line.rfind("option units ", 0) == 0)
            out.units = std::stoi(line.substr(13));
        else if (line == "option layer-colour-override")
            out.layerColourOverride = true;
        else if (line == "option points")
            out.points = true;
        else if (line.rfind("says ", 0) == 0)
            out.says.push_back(line.substr(5));
        else
            out.lines.push_back(line);
    }
    return out;
}

// The params the import asked for that the catalogue doesn't list for the object's class (its
// name in any case, as the dispatcher takes it), as "Class.param".
std::set<std::string> g_unlisted;

void noteUnlisted(QelObject& object, const char* name) {
    for (const QelClassSpec& cls : QelCatalogue())
        if (::strcasecmp(cls.name, object.GetName()) == 0 && QelFindParam(cls, name)) return;
    g_unlisted.insert(std::string(object.GetName()) + "." + name);
}

class CreatorFixture : public qelintest::ImportTest,
                       public ::testing::WithParamInterface<std::string> {
protected:
    void TearDown() override {
        QelWatchParamReads(nullptr);
        ImportTest::TearDown();
    }
};

TEST_P(CreatorFixture, ImportsAsExpected) {
    const std::filesystem::path folder = QEL_CREATOR_FIXTURE_DIR;
    const Expectation expected = readExpectation(folder / (GetParam() + ".expect"));
    CDocData& doc = QelDocData();
    doc.importUnitIndex = expected.units;
    doc.useLayerColourOverride = expected.layerColourOverride ? 1 : 0;
    doc.importPoints = expected.points ? 1 : 0;
    const std::wstring file = build(readFile(folder / (GetParam() + ".json")));
    QelJob job;
    job.asAcisSolids = expected.blocks ? 0 : 1;
    job.fileName = file.c_str();
    job.lastOpenDir = job.fileName;
    job.logFilePath = QelLogFilePath();
    QelLogCreate();
    // Groups and exclusion volumes open the run's file again by this name, as after the dialog.
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", file.c_str()));
    WriteNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", 0);
    g_unlisted.clear();
    QelWatchParamReads(noteUnlisted);
    ReadQelFile(job);
    QelWatchParamReads(nullptr);
    // Every name a reader asks for is one the catalogue has for that class.
    EXPECT_TRUE(g_unlisted.empty()) << "read but not in the catalogue: " << *g_unlisted.begin();

    const std::vector<std::string> actual = creatorstest::SummariseDrawing();
    std::string all;
    for (const std::string& line : actual)
        all += "  " + line + "\n";
    EXPECT_EQ(actual.size(), expected.lines.size()) << "the drawing holds:\n" << all;
    for (std::size_t i = 0; i < actual.size() && i < expected.lines.size(); ++i) {
        std::string why;
        EXPECT_TRUE(creatorstest::LineMatches(expected.lines[i], actual[i], why))
            << "line " << i + 1 << ": " << why << "\n expected: " << expected.lines[i]
            << "\n actual:   " << actual[i];
    }
    std::wstring shown = printed() + unescape(logText());
    for (const std::wstring& box : boxes())
        shown += box;
    for (const std::string& message : expected.says)
        EXPECT_NE(shown.find(unescape(message)), std::wstring::npos) << "not shown: " << message;
}

std::vector<std::string> fixtureNames() {
    return {std::begin(kFixtureNames), std::end(kFixtureNames)};
}

INSTANTIATE_TEST_SUITE_P(Fixtures, CreatorFixture, ::testing::ValuesIn(fixtureNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             std::string name = info.param;
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return name;
                         });

} // namespace
