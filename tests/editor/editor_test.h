// The host as each test finds it: one new drawing, no modules, an empty transcript, and the
// answers to prompts given by the test.
#pragma once

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/arx.h>
#include <arx/dbhost.h>
#include <arx/edhost.h>
#include <win/transcript.h>

#include <gtest/gtest.h>

#include <string>

namespace editortest {

// A handle as a selection answer.
inline std::wstring handleOf(AcDbObjectId id) {
    ACHAR text[17];
    id.handle().getIntoAsciiBuffer(text);
    return L"#" + std::wstring(text);
}

class EditorTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The user's answers to the prompts that come, as a script gives them.
    void answers(const std::wstring& script);
    // Runs one command with the answers of a script; its status.
    int command(const wchar_t* name, const std::wstring& script) {
        answers(script);
        return qelhost::runCommand(name);
    }
    std::wstring printed() const { return win::Transcript::instance().printed(); }
    AcDbDatabase* db() const { return acdbHostApplicationServices()->workingDatabase(); }
    // The UCS as origin and axes, in the world.
    void expectUcs(const AcGePoint3d& origin, const AcGeVector3d& x, const AcGeVector3d& y) const;
    // Adds a layer with the given state.
    void addLayer(const wchar_t* name, bool off = false, bool frozen = false);
    // An entity of model space, appended and closed; its id.
    AcDbObjectId add(AcDbEntity* entity, const wchar_t* layer = nullptr);
    // Number of model-space entities not erased.
    int entityCount() const;
    // A layer's state.
    AcDbLayerTableRecord* openLayer(const wchar_t* name) const;
};

} // namespace editortest
