// The import run on its own: what it takes from the settings into the job and the record, what
// it resets, and the total at the end.
#include "host_fixture.h"
#include "import/run_import.h"

#include <qel/qel_json.h>
#include <win/strings.h>

using qelintest::HostTest;

namespace {

// A file of one layer that lists a Header, which makes nothing and counts no error.
const char* kModel = R"({ "format": "qel-json-1", "objects": [
    { "class": "Header", "params": [["rootLocation", "uint", 1]] },
    { "class": "ModelSpace", "params": [["objectList", "uint[]", [4]], ["layerMgr", "uint", 2]] },
    { "class": "LayerMgr", "params": [["layerList", "uint[]", [3]]] },
    { "class": "Layer", "params": [["name", "string", "Pipes"], ["objectList", "uint[]", [4]]] },
    { "class": "Header", "params": [] } ] })";

// The same layer listing a number the file doesn't have: one error.
const char* kBrokenModel = R"({ "format": "qel-json-1", "objects": [
    { "class": "Header", "params": [["rootLocation", "uint", 1]] },
    { "class": "ModelSpace", "params": [["objectList", "uint[]", [99]], ["layerMgr", "uint", 2]] },
    { "class": "LayerMgr", "params": [["layerList", "uint[]", [3]]] },
    { "class": "Layer", "params": [["name", "string", "Pipes"], ["objectList", "uint[]", [99]]] }
    ] })";

class ImportRun : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        QelInit(0, 0, QelInitWords);
        m_file = m_folder / "model.qel";
        qeljson::build(kModel, "model", m_file.string());
        ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", m_file.wstring().c_str()));
    }
    DWORD number(const wchar_t* name) const {
        DWORD value = 12345;
        ReadNumber(QEL_SETTINGS_KEY, name, value);
        return value;
    }
    std::filesystem::path m_file;
};

} // namespace

TEST_F(ImportRun, SettingsGoIntoTheJobAndTheRecordWithTheDriversDefaults) {
    CDocData& record = QelDocData();
    record.importOptionsValid = 1;
    record.importScale = -2.0;
    record.importContext = 2;
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"ImportAcisSolids", L"0"));
    ASSERT_TRUE(WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 9));
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"SurpressErrorMessages", L"0"));
    QelJob job;
    RunImport(job);
    EXPECT_EQ(job.fileName, CString(m_file.wstring().c_str()));
    EXPECT_EQ(job.lastOpenDir, job.fileName);
    EXPECT_EQ(job.asAcisSolids, 1) << "a stored 0 means solids";
    EXPECT_EQ(record.importUnitIndex, 4) << "no ImportDwgUnits: the driver's 4";
    EXPECT_EQ(record.createLog, 1);
    EXPECT_EQ(record.importScale, 1.0) << "a scale of zero or below becomes 1";
    EXPECT_EQ(record.importContext, 0);
    EXPECT_EQ(number(L"SurpressErrorMessages"), 0u) << "now a number";
    EXPECT_EQ(job.logFilePath, CString((m_folder.wstring() + L"/").c_str()) +
                                   CString(logPath().filename().wstring().c_str()));
    EXPECT_TRUE(boxes().empty()) << "no errors, no box at the end";
    const std::string log = logText(), total = "\n\n Total Errors Processing Objects: 0\n\n";
    ASSERT_GT(log.size(), total.size());
    EXPECT_EQ(log.substr(log.size() - total.size()), total);
}

TEST_F(ImportRun, OptionsNotAcceptedInThisDocumentResetScaleAndUnits) {
    QelDocData().importOptionsValid = 0;
    QelDocData().importScale = 3.0;
    QelJob job;
    RunImport(job);
    EXPECT_EQ(QelDocData().importScale, 1.0);
    EXPECT_EQ(number(L"ImportDwgUnits"), 7u);
    EXPECT_EQ(QelDocData().importUnitIndex, 7);
}

TEST_F(ImportRun, AMissingFileEndsTheRunWithTheOpenMessageOnly) {
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", L"/nowhere/model.qel"));
    ASSERT_TRUE(WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 9));
    QelJob job;
    RunImport(job);
    EXPECT_EQ(boxes(), std::vector<std::wstring>{L"ERROR: All or part of the path is invalid.|48"});
    EXPECT_EQ(number(L"ImportErrorCount"), 9u) << "nothing was reset";
    EXPECT_FALSE(std::filesystem::exists(logPath()));
}

TEST_F(ImportRun, ATotalOfErrorsEndsTheLogAndIsShownInAPlainBox) {
    qeljson::build(kBrokenModel, "broken", m_file.string());
    QelDocData().importOptionsValid = 1;
    answer("box no\n");
    QelJob job;
    RunImport(job);
    const std::wstring total = L"\n\n Total Errors Processing Objects: 1\n\n";
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0], L"\nUnable to read qel object.\n\nSuppress all non-critical error "
                        L"messages?|36");
    EXPECT_EQ(shown[1], total + L"|0") << "no icon";
    const std::string log = logText();
    ASSERT_GT(log.size(), total.size());
    EXPECT_EQ(log.substr(log.size() - total.size()), win::toUtf8(total));
}
