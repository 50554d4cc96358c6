// LIST: what an entity carries besides its geometry, and wildcard names as prompts take them.
#include "editor_test.h"

#include "wildcard.h"

namespace editortest {
namespace {

using ListCommand = EditorTest;

TEST_F(ListCommand, ShowsExtendedDataRecordsAndGroup) {
    const AcDbObjectId id = add(new AcDbLine({0, 0, 0}, {3, 4, 0}));
    ASSERT_EQ(acdbRegApp(L"QELIN"), RTNORM);
    AcDbEntity* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, id, AcDb::kForWrite), Acad::eOk);
    resbuf* xdata = acutBuildList(1001, L"QELIN", 1000, L"tag-17", 1071, 42, 0);
    EXPECT_EQ(line->setXData(xdata), Acad::eOk);
    acutRelRb(xdata);
    ASSERT_EQ(line->createExtensionDictionary(), Acad::eOk);
    const AcDbObjectId dictionaryId = line->extensionDictionary();
    line->close();

    AcDbDictionary* dictionary = nullptr;
    ASSERT_EQ(acdbOpenObject(dictionary, dictionaryId, AcDb::kForWrite), Acad::eOk);
    auto* record = new AcDbXrecord;
    resbuf* data = acutBuildList(1, L"pipe", 40, 2.5, 0);
    record->setFromRbChain(*data);
    acutRelRb(data);
    AcDbObjectId recordId;
    ASSERT_EQ(dictionary->setAt(L"QEL_DATA", record, recordId), Acad::eOk);
    record->close();
    dictionary->close();

    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(db()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
    auto* group = new AcDbGroup(L"imported");
    AcDbObjectId groupId;
    ASSERT_EQ(groups->setAt(L"QEL_17", group, groupId), Acad::eOk);
    ASSERT_EQ(group->append(id), Acad::eOk);
    group->close();
    groups->close();

    ACHAR handle[17];
    id.handle().getIntoAsciiBuffer(handle);
    answers(std::wstring(handle) + L"\n");
    ASSERT_EQ(qelhost::runCommand(L"LIST"), RTNORM);
    const std::wstring out = printed();
    EXPECT_NE(out.find(L"LINE  Layer: \"0\"  Handle: " + std::wstring(handle)), std::wstring::npos)
        << out;
    EXPECT_NE(out.find(L"(11) 3.000000,4.000000,0.000000"), std::wstring::npos) << out;
    EXPECT_NE(out.find(L"Extended data:\n  (1001) \"QELIN\"\n  (1000) \"tag-17\"\n  (1071) 42"),
              std::wstring::npos)
        << out;
    EXPECT_NE(out.find(L"X-record \"QEL_DATA\":\n  (1) \"pipe\"\n  (40) 2.500000"),
              std::wstring::npos)
        << out;
    EXPECT_NE(out.find(L"Group: \"QEL_17\""), std::wstring::npos) << out;
}

TEST(Wildcards, PatternsOfTheHost) {
    struct Case {
        const wchar_t* text;
        const wchar_t* pattern;
        bool match;
    };
    const Case kCases[] = {
        {L"z_VelmoraTemp_Layer", L"z_velmora*", true},
        {L"Layer7", L"Layer#", true},
        {L"LayerX", L"Layer#", false},
        {L"A1", L"@#", true},
        {L"A-1", L"A.1", true},
        {L"AB1", L"A.1", false},
        {L"Pipe", L"Steel,Pi?e", true},
        {L"Pipe", L"~Pi*", false},
        {L"Steel", L"~Pi*", true},
        {L"B", L"[A-C]", true},
        {L"D", L"[~A-C]", true},
        {L"*", L"`*", true},
        {L"x*", L"`*", false},
        {L"", L"*", true},
        {L"abc", L"", false},
    };
    for (const Case& c : kCases)
        EXPECT_EQ(qelhost::wildcardMatch(c.text, c.pattern), c.match)
            << std::string(c.text, c.text + wcslen(c.text)) << " / "
            << std::string(c.pattern, c.pattern + wcslen(c.pattern));
}

} // namespace
} // namespace editortest
