// Selection sets by filter and at the prompt, and ERASE with a set.
#include "editor_test.h"

namespace editortest {
namespace {

class Selection : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        addLayer(L"z_Temp_1");
        addLayer(L"z_Temp_2");
        addLayer(L"Keep");
        a = add(new AcDbPoint({0, 0, 0}), L"z_Temp_1");
        b = add(new AcDbLine({0, 0, 0}, {1, 1, 1}), L"z_Temp_2");
        c = add(new AcDbPoint({5, 5, 5}), L"Keep");
    }
    resbuf* filter(const wchar_t* kind, const wchar_t* layer) {
        return acutBuildList(RTDXF0, kind, 8, layer, 0);
    }
    std::vector<AcDbObjectId> members(const ads_name ss) {
        Adesk::Int32 n = 0;
        EXPECT_EQ(acedSSLength(ss, &n), RTNORM);
        std::vector<AcDbObjectId> ids;
        for (Adesk::Int32 i = 0; i < n; ++i) {
            ads_name name;
            AcDbObjectId id;
            EXPECT_EQ(acedSSName(ss, i, name), RTNORM);
            EXPECT_EQ(acdbGetObjectId(id, name), Acad::eOk);
            ids.push_back(id);
        }
        return ids;
    }
    AcDbObjectId a, b, c;
};

TEST_F(Selection, FiltersOnKindAndLayerWithWildcards) {
    ads_name ss;
    resbuf* f = filter(L"*", L"z_temp_#");
    ASSERT_EQ(acedSSGet(L"_X", nullptr, nullptr, f, ss), RTNORM);
    EXPECT_EQ(members(ss), (std::vector<AcDbObjectId>{a, b}));
    EXPECT_EQ(acedSSFree(ss), RTNORM);
    acutRelRb(f);

    f = filter(L"POINT", L"*");
    ASSERT_EQ(acedSSGet(L"_X", nullptr, nullptr, f, ss), RTNORM);
    EXPECT_EQ(members(ss), (std::vector<AcDbObjectId>{a, c}));
    acedSSFree(ss);
    acutRelRb(f);

    f = filter(L"LINE,POINT", L"~Keep");
    ASSERT_EQ(acedSSGet(L"_X", nullptr, nullptr, f, ss), RTNORM);
    EXPECT_EQ(members(ss), (std::vector<AcDbObjectId>{a, b}));
    acedSSFree(ss);
    acutRelRb(f);
}

TEST_F(Selection, NothingFoundIsAnErrorAndFreedSetsAreGone) {
    ads_name ss;
    resbuf* f = filter(L"*", L"NoSuchLayer");
    EXPECT_EQ(acedSSGet(L"_X", nullptr, nullptr, f, ss), RTERROR);
    acutRelRb(f);
    ASSERT_EQ(acedSSGet(L"_X", nullptr, nullptr, nullptr, ss), RTNORM);
    Adesk::Int32 n = 0;
    EXPECT_EQ(acedSSLength(ss, &n), RTNORM);
    EXPECT_EQ(n, 3);
    ads_name name;
    EXPECT_EQ(acedSSName(ss, 3, name), RTERROR);
    EXPECT_EQ(acedSSFree(ss), RTNORM);
    EXPECT_EQ(acedSSLength(ss, &n), RTERROR);
    EXPECT_EQ(acedSSFree(ss), RTERROR);
    // Filters on other groups are not taken.
    resbuf* colour = acutBuildList(62, 1, 0);
    EXPECT_EQ(acedSSGet(L"_X", nullptr, nullptr, colour, ss), RTERROR);
    acutRelRb(colour);
}

TEST_F(Selection, EraseTakesTheSetAndTheEmptyAnswer) {
    ads_name ss;
    resbuf* f = filter(L"*", L"z_Temp_1");
    ASSERT_EQ(acedSSGet(L"_X", nullptr, nullptr, f, ss), RTNORM);
    acutRelRb(f);
    EXPECT_EQ(acedCommand(RTSTR, L"_erase", RTPICKS, ss, RTSTR, L"", RTNONE), RTNORM);
    acedSSFree(ss);
    EXPECT_EQ(entityCount(), 2);
    // The erased entity is no longer found by filters.
    f = filter(L"*", L"z_Temp_*");
    ASSERT_EQ(acedSSGet(L"_X", nullptr, nullptr, f, ss), RTNORM);
    EXPECT_EQ(members(ss), (std::vector<AcDbObjectId>{b}));
    acedSSFree(ss);
    acutRelRb(f);
}

TEST_F(Selection, TheUserSelectsAtThePromptOrCancels) {
    ACHAR handle[17];
    c.handle().getIntoAsciiBuffer(handle);
    answers(std::wstring(handle) + L" L\n\n");
    ads_name ss;
    ASSERT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, ss), RTNORM);
    EXPECT_EQ(members(ss), (std::vector<AcDbObjectId>{c}));
    acedSSFree(ss);
    answers(L"\n");
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, ss), RTERROR);
    answers(L"ALL\n\x1b\n");
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, ss), RTCAN);
}

} // namespace
} // namespace editortest
