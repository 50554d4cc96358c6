// A host document of the test's own, with a registry file and a log folder of its own.
#pragma once

#include "shell/doc_data.h"
#include "shell/settings_store.h"
#include "support.h"

#include <arx/aced.h>
#include <arx/arx.h>
#include <arx/edhost.h>
#include <win/scripted.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace qelintest {

class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_document = qelhost::newDocument();
        m_folder =
            std::filesystem::temp_directory_path() / ("qelin-log-" + std::to_string(::getpid()));
        std::filesystem::create_directories(m_folder);
        ASSERT_TRUE(CreateString(QEL_SETTINGS_KEY, L"", L""));
        const std::wstring folder = m_folder.wstring() + L"/";
        ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LogFilePath", folder.c_str()));
        m_mark = win::Transcript::instance().size();
    }
    void TearDown() override {
        win::setPresenter(nullptr);
        qelhost::closeDocument(m_document);
        std::filesystem::remove_all(m_folder);
    }

    // Appended to model space and closed.
    static AcDbObjectId add(AcDbEntity* entity) {
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(acdbOpenObject(space, database()->modelSpaceId(), AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        space->close();
        return id;
    }
    static AcDbDatabase* database() { return acdbHostApplicationServices()->workingDatabase(); }

    // Answers for the message boxes to come, in order.
    void answer(const std::string& answers) {
        auto presenter = std::make_shared<win::ScriptedPresenter>();
        std::string error;
        ASSERT_TRUE(presenter->parse(answers, error)) << error;
        win::setPresenter(presenter);
    }

    // A line appended to model space and closed, as the creators leave their entities.
    AcDbLine* appendLine() {
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        AcDbBlockTable* table = nullptr;
        EXPECT_EQ(db->getBlockTable(table, AcDb::kForRead), Acad::eOk);
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(table->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite), Acad::eOk);
        table->close();
        auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
        EXPECT_EQ(space->appendAcDbEntity(line), Acad::eOk);
        line->close(); // an appended entity stays open for its creator
        space->close();
        return line;
    }

    std::vector<std::wstring> boxes() const { return boxesSince(m_mark); }
    std::vector<std::wstring> alerts() const {
        std::vector<std::wstring> out;
        for (const auto& e : win::Transcript::instance().events(m_mark))
            if (e.kind == win::EventKind::Alert) out.push_back(e.text);
        return out;
    }

    std::filesystem::path logPath() const {
        resbuf name{};
        acedGetVar(L"DWGNAME", &name);
        std::wstring file = name.resval.rstring;
        acutDelString(name.resval.rstring);
        return m_folder / (file.substr(0, file.rfind(L'.')) + L".log");
    }
    std::string logText() const {
        std::ifstream in(logPath());
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    ScratchRegistry m_registry;
    AcApDocument* m_document = nullptr;
    std::filesystem::path m_folder;
    std::size_t m_mark = 0;
};

} // namespace qelintest
