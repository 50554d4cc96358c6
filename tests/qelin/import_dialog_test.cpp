// The import options dialog through the host's presenters: what it refuses and with which
// message, what it remembers, and what it leaves in the settings and the document's record.
#include "import/import_commands.h"
#include "import/import_options.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"
#include "support.h"

#include <arx/aced.h>
#include <arx/edhost.h>
#include <qel/qel_json.h>
#include <win/presenter.h>
#include <win/scripted.h>
#include <win/strings.h>

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// A model without a view: no hidden classes to offer.
const char* kPlainModel = R"({ "format": "qel-json-1", "objects": [
    { "class": "Header", "params": [["rootLocation", "uint", 1]] },
    { "class": "ModelSpace", "params": [["objectList", "uint[]", []], ["layerMgr", "uint", 2]] },
    { "class": "LayerMgr", "params": [["layerList", "uint[]", []]] } ] })";

class ImportDialog : public ::testing::Test {
protected:
    void SetUp() override {
        m_document = qelhost::newDocument();
        m_folder = fs::temp_directory_path() / ("qelin-dialog-" + std::to_string(::getpid()));
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
        QelInit(0, 0, QelInitWords);
        m_plant = (m_folder / "plant.qel").string();
        std::ifstream sample(QEL_SAMPLE_PLANT);
        std::ostringstream json;
        json << sample.rdbuf();
        qeljson::build(json.str(), "plant.json", m_plant);
        m_plain = (m_folder / "plain.qel").string();
        qeljson::build(kPlainModel, "plain", m_plain);
        m_mark = win::Transcript::instance().size();
        qelhost::setSystemVariable(L"MEASUREINIT", L"1", false);
    }
    void TearDown() override {
        win::setPresenter(nullptr);
        qelhost::closeDocument(m_document);
        fs::remove_all(m_folder);
    }

    // Runs QELIN with these answers; the presenter, to read its failures.
    std::shared_ptr<win::ScriptedPresenter> qelin(const std::string& answers) {
        auto presenter = std::make_shared<win::ScriptedPresenter>();
        std::string error;
        EXPECT_TRUE(presenter->parse(answers, error)) << error;
        win::setPresenter(presenter);
        m_mark = win::Transcript::instance().size();
        QelInCommand();
        return presenter;
    }
    // The message with which the dialog refused these answers; empty when it took them.
    std::wstring refusal(const std::string& answers) {
        auto presenter = qelin(answers);
        return presenter->failed() ? presenter->failures().front() : L"";
    }
    std::string fileAnswer(const std::string& path) const {
        return "dialog 1001\n  file = " + path + "\n";
    }
    std::vector<std::wstring> boxes() const { return qelintest::boxesSince(m_mark); }
    DWORD number(const wchar_t* name, DWORD start = 12345) const {
        DWORD value = start;
        ReadNumber(QEL_SETTINGS_KEY, name, value);
        return value;
    }
    CString text(const wchar_t* name) const {
        CString value;
        ReadString(QEL_SETTINGS_KEY, name, value);
        return value;
    }
    bool imported() const {
        return win::Transcript::instance().printed(m_mark).find(L"Total") != std::wstring::npos ||
               fs::exists(logFile());
    }
    // The log of this document's drawing in the log folder.
    fs::path logFile() const {
        resbuf name{};
        acedGetVar(L"DWGNAME", &name);
        fs::path file = fs::path(name.resval.rstring).replace_extension(".log");
        acutDelString(name.resval.rstring);
        return m_folder / "logs" / file;
    }
    std::string logAnswers() const {
        return "  default-path = off\n  log-folder = " + (m_folder / "logs").string() + "/\n";
    }

    qelintest::ScratchRegistry m_registry;
    AcApDocument* m_document = nullptr;
    fs::path m_folder;
    std::string m_plant, m_plain;
    std::size_t m_mark = 0;
};

} // namespace

TEST_F(ImportDialog, ScaleFactorsAreRefusedBelowTheLimitAndAboveTenThousand) {
    const struct {
        const char* scale;
        const wchar_t* refusal; // null: accepted
    } cases[] = {
        {"0.000005", L"Please enter a value greater than '0.000001'"},
        {"0.00002", nullptr},
        {"10000", nullptr},
        {"10000.25", L"Please enter a value no greater than '10000'"},
    };
    fs::create_directories(m_folder / "logs");
    for (const auto& c : cases) {
        const std::wstring refused = refusal(fileAnswer(m_plain) + logAnswers() +
                                             "  units = User defined\n  scale = " + c.scale + "\n");
        if (c.refusal) {
            EXPECT_EQ(refused, L"Import Options...: " + std::wstring(c.refusal)) << c.scale;
        } else {
            EXPECT_EQ(refused, L"") << c.scale;
            EXPECT_EQ(QelDocData().importScale, std::stod(c.scale));
            EXPECT_EQ(number(L"ImportDwgUnits"), 9u);
        }
    }
    const auto shown = boxes();
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.back(), L"Please enter a value no greater than '10000'|0");
}

TEST_F(ImportDialog, FileNamesEmptyMissingAndWithoutTheirExtension) {
    EXPECT_EQ(refusal("dialog 1001\n  file = \n"),
              L"Import Options...: Please enter a valid 'qel' filename.");
    EXPECT_EQ(refusal(fileAnswer((m_folder / "nothing").string())),
              L"Import Options...: Filename does not exist.");
    fs::create_directories(m_folder / "logs");
    EXPECT_EQ(refusal(fileAnswer((m_folder / "plain").string()) + logAnswers()), L"")
        << "plain + .qel exists";
    EXPECT_EQ(text(L"LastOpenDir"), CString(m_plain.c_str()));
}

TEST_F(ImportDialog, UnitsPutTheirFactorInTheScaleBoxAndOnlyUserDefinedOpensIt) {
    EXPECT_EQ(refusal(fileAnswer(m_plain) + "  units = Feet   (US Survey)\n  scale = 2\n"),
              L"Import Options...: Scale Factor (1024) is disabled");
    fs::create_directories(m_folder / "logs");
    EXPECT_EQ(refusal(fileAnswer(m_plain) + logAnswers() + "  units = Feet   (US Survey)\n"), L"");
    EXPECT_EQ(QelDocData().importScale, 3.280833333) << "the factor as the box shows it";
    EXPECT_EQ(number(L"ImportDwgUnits"), 7u);
}

TEST_F(ImportDialog, LogFoldersWithBadCharactersOrRefusedCreationStayInTheDialog) {
    EXPECT_EQ(refusal(fileAnswer(m_plain) + "  default-path = off\n  log-folder = /tmp/a|b\n"),
              L"Import Options...: The path for the log file has invalid chars.");
    EXPECT_NE(refusal(fileAnswer(m_plain) + logAnswers() + "  ok\nbox no\n"), L"");
    EXPECT_FALSE(fs::exists(m_folder / "logs")) << "No: nothing made, the dialog stays";
    EXPECT_EQ(refusal(fileAnswer(m_plain) + logAnswers() + "  ok\nbox yes\n"), L"");
    EXPECT_TRUE(fs::is_directory(m_folder / "logs"));
    EXPECT_TRUE(fs::exists(logFile())) << "the import's log went there";
    EXPECT_FALSE(fs::exists(m_folder / "logs" / "~0000001.tmp")) << "the probe is gone";
}

TEST_F(ImportDialog, TicksAreRememberedExceptSuppressHiddenClasses) {
    fs::create_directories(m_folder / "logs");
    ASSERT_EQ(refusal(fileAnswer(m_plant) + logAnswers() +
                      "  points = on\n  layer-colour-override = on\n  suppress-hidden = on\n"),
              L"");
    EXPECT_EQ(number(L"CheckBoxesState"), 1u | 2u) << "bit 4 is never written";
    EXPECT_EQ(QelDocData().suppressHiddenClasses, 1);
    ASSERT_EQ(QelDocData().hiddenClasses.GetCount(), 1u) << "Pointset isn't in the table";
    EXPECT_EQ(QelDocData().hiddenClasses[0], 36u);

    // Bit 4 set by hand ticks the box at start; the next OK clears it.
    WriteNumber(QEL_SETTINGS_KEY, L"CheckBoxesState", 1u | 4u);
    ASSERT_EQ(refusal(fileAnswer(m_plant) + logAnswers()), L"");
    EXPECT_EQ(QelDocData().importPoints, 1);
    EXPECT_EQ(QelDocData().suppressHiddenClasses, 1);
    EXPECT_EQ(number(L"CheckBoxesState"), 1u);
}

TEST_F(ImportDialog, AFileWithoutHiddenClassesKeepsTheirBoxDisabled) {
    EXPECT_EQ(refusal(fileAnswer(m_plain) + "  suppress-hidden = on\n"),
              L"Import Options...: Suppress hidden classes (1035) is disabled");
}

TEST_F(ImportDialog, TheFirstRunMakesTheKeyAndEnglishMeasureStartsInInches) {
    qelhost::setSystemVariable(L"MEASUREINIT", L"0", false);
    ASSERT_FALSE(KeyExists(QEL_SETTINGS_KEY));
    ASSERT_EQ(refusal("dialog 1001\n  file = " + m_plain + "\n  log = off\n"), L"");
    EXPECT_EQ(number(L"ImportDwgUnits"), 3u);
    EXPECT_EQ(QelDocData().importScale, 39.37007);
    EXPECT_EQ(text(L"LastOpenDir"), CString(m_plain.c_str()));
    EXPECT_EQ(text(L"ImportAcisSolids"), CString(L"0"));
    EXPECT_EQ(number(L"CreateLog"), 0u);
    EXPECT_EQ(number(L"CheckBoxesState"), 8u) << "the default path was ticked";
    EXPECT_EQ(number(L"ImportErrorCount"), 0u);
}

TEST_F(ImportDialog, ToolTipsSitOnTheirControls) {
    struct TipReader : win::Presenter {
        std::map<int, std::wstring> tips;
        int messageBox(const win::MessageBoxRequest&, win::AnswerSource&) override { return IDOK; }
        void runModal(win::DialogDriver& dialog) override {
            for (const win::ControlState& c : dialog.controls())
                if (!c.tip.empty()) tips[c.id] = c.tip;
            dialog.press(IDCANCEL, win::AnswerSource::Script);
        }
        std::optional<std::wstring> chooseFile(const win::FileRequest&,
                                               win::AnswerSource&) override {
            return std::nullopt;
        }
        std::optional<std::wstring> chooseFolder(const win::FolderRequest&,
                                                 win::AnswerSource&) override {
            return std::nullopt;
        }
    };
    auto reader = std::make_shared<TipReader>();
    win::setPresenter(reader);
    QelInCommand();
    EXPECT_EQ(reader->tips, (std::map<int, std::wstring>{
                                {1, L"Import objects in selected file"},
                                {1011, L"Import objects as Acis Solids"},
                                {1012, L"Import objects as blocks for smaller file size"},
                                {1030, L"Browse for *.qel file to import"},
                            }));
}

TEST_F(ImportDialog, ABrowsedFileIsScannedAndRememberedAtOnce) {
    ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    fs::create_directories(m_folder / "logs");
    EXPECT_EQ(refusal("dialog 1001\n  press browse\n  suppress-hidden = on\n" + logAnswers() +
                      "  ok\nfile " + m_plant + "\n"),
              L"")
        << "the scan of the chosen file enables the box";
    EXPECT_EQ(text(L"LastOpenDir"), CString(m_plant.c_str()));
    EXPECT_EQ(QelDocData().suppressHiddenClasses, 1);

    EXPECT_EQ(refusal("dialog 1001\n  press browse\n" + logAnswers() + "  ok\nfile cancel\n"), L"")
        << "the dialog opens with the remembered file and a cancelled browse keeps it";
    EXPECT_EQ(text(L"LastOpenDir"), CString(m_plant.c_str()));
}

TEST_F(ImportDialog, TheScriptFormLocksTheFileAndSkipsTheScan) {
    ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
    auto qelina = [&](const std::string& answers) {
        auto presenter = std::make_shared<win::ScriptedPresenter>();
        std::string error;
        EXPECT_TRUE(presenter->parse(answers, error)) << error;
        win::setPresenter(presenter);
        qelhost::setInput(std::make_shared<qelhost::ScriptInput>(win::fromUtf8(m_plant)));
        QelInaCommand();
        return presenter->failed() ? presenter->failures().front() : L"";
    };
    EXPECT_EQ(qelina("dialog 1001\n  file = " + m_plain + "\n"),
              L"Import Options...: Import File Name (1000) is disabled");
    EXPECT_EQ(text(L"LastOpenDir"), CString(m_plant.c_str())) << "the answer at the prompt";
    EXPECT_EQ(qelina("dialog 1001\n  suppress-hidden = on\n"),
              L"Import Options...: Suppress hidden classes (1035) is disabled")
        << "the file has hidden classes, but the scan doesn't run";
    EXPECT_EQ(QelDocData().scriptMode, 1);
}
