// System variables: types, ranges, read-only ones, where each is kept, and the guard pattern
// of the module (a string buffer that acedGetVar retypes, given back to acedSetVar).
#include "editor_test.h"

namespace editortest {
namespace {

using SystemVariables = EditorTest;

resbuf fresh() {
    resbuf rb;
    rb.rbnext = nullptr;
    rb.restype = RTNONE;
    return rb;
}

TEST_F(SystemVariables, EachHasItsType) {
    const std::pair<const wchar_t*, int> kTypes[] = {
        {L"CLAYER", RTSTR},      {L"CMDDIA", RTSHORT},    {L"CMDECHO", RTSHORT},
        {L"OSMODE", RTSHORT},    {L"UCSFOLLOW", RTSHORT}, {L"UCSICON", RTSHORT},
        {L"FILEDIA", RTSHORT},   {L"MENUBAR", RTSHORT},   {L"ACADVER", RTSTR},
        {L"DWGNAME", RTSTR},     {L"DWGPREFIX", RTSTR},   {L"MEASUREINIT", RTSHORT},
        {L"INSUNITS", RTSHORT},  {L"UCSORG", RT3DPOINT},  {L"UCSXDIR", RT3DPOINT},
        {L"UCSYDIR", RT3DPOINT},
    };
    for (const auto& [name, type] : kTypes) {
        resbuf rb = fresh();
        ASSERT_EQ(acedGetVar(name, &rb), RTNORM) << name;
        EXPECT_EQ(rb.restype, type) << name;
        if (rb.restype == RTSTR) acutDelString(rb.resval.rstring);
    }
    resbuf rb = fresh();
    EXPECT_EQ(acedGetVar(L"NOSUCHVAR", &rb), RTERROR);
}

TEST_F(SystemVariables, TheDrawingsOwnStateShows) {
    resbuf rb = fresh();
    ASSERT_EQ(acedGetVar(L"DWGNAME", &rb), RTNORM);
    EXPECT_STREQ(rb.resval.rstring, L"Drawing1.dwg");
    acutDelString(rb.resval.rstring);
    ASSERT_EQ(acedGetVar(L"DWGPREFIX", &rb), RTNORM);
    const std::wstring prefix = rb.resval.rstring;
    acutDelString(rb.resval.rstring);
    EXPECT_EQ(prefix.back(), L'/');
    ASSERT_EQ(acedGetVar(L"UCSXDIR", &rb), RTNORM);
    EXPECT_EQ(rb.resval.rpoint[0], 1.0);
    ASSERT_EQ(acedGetVar(L"ACADVER", &rb), RTNORM);
    EXPECT_GE(std::wcstod(rb.resval.rstring, nullptr), 15.0);
    acutDelString(rb.resval.rstring);
}

TEST_F(SystemVariables, ValuesOutsideTheRangeOrOfTheWrongTypeAreRefused) {
    resbuf value = fresh();
    value.restype = RTSHORT;
    value.resval.rint = 2;
    EXPECT_EQ(acedSetVar(L"CMDECHO", &value), RTERROR);
    value.resval.rint = 0;
    EXPECT_EQ(acedSetVar(L"CMDECHO", &value), RTNORM);
    value.resval.rint = 2;
    EXPECT_EQ(acedSetVar(L"UCSICON", &value), RTNORM);
    value.restype = RTREAL;
    value.resval.rreal = 1.0;
    EXPECT_EQ(acedSetVar(L"OSMODE", &value), RTERROR);
    value.restype = RTSTR;
    value.resval.rstring = const_cast<ACHAR*>(L"NoSuchLayer");
    EXPECT_EQ(acedSetVar(L"CLAYER", &value), RTERROR);
    value.resval.rstring = const_cast<ACHAR*>(L"20.0");
    EXPECT_EQ(acedSetVar(L"ACADVER", &value), RTREJ);
    EXPECT_EQ(acedSetVar(L"DWGPREFIX", &value), RTREJ);
    // The host itself may set ACADVER, so that every version branch can be tested.
    EXPECT_EQ(qelhost::setSystemVariable(L"ACADVER", L"17.2", true), RTNORM);
    resbuf rb = fresh();
    ASSERT_EQ(acedGetVar(L"ACADVER", &rb), RTNORM);
    EXPECT_STREQ(rb.resval.rstring, L"17.2");
    acutDelString(rb.resval.rstring);
}

TEST_F(SystemVariables, SaveAndRestoreThroughStringBuffers) {
    addLayer(L"Work");
    const wchar_t* names[] = {L"CLAYER", L"CMDDIA",    L"CMDECHO",
                              L"OSMODE", L"UCSFOLLOW", L"UCSICON"};
    resbuf* saved[6];
    for (int i = 0; i < 6; ++i) {
        saved[i] = acutNewRb(RTSTR);
        ASSERT_EQ(acedGetVar(names[i], saved[i]), RTNORM);
    }
    resbuf value = fresh();
    value.restype = RTSHORT;
    value.resval.rint = 0;
    for (const wchar_t* name : {L"CMDDIA", L"CMDECHO", L"OSMODE", L"UCSFOLLOW"})
        ASSERT_EQ(acedSetVar(name, &value), RTNORM);
    value.restype = RTSTR;
    value.resval.rstring = const_cast<ACHAR*>(L"Work");
    ASSERT_EQ(acedSetVar(L"CLAYER", &value), RTNORM);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(acedSetVar(names[i], saved[i]), RTNORM) << names[i];
        acutRelRb(saved[i]);
    }
    resbuf rb = fresh();
    ASSERT_EQ(acedGetVar(L"CLAYER", &rb), RTNORM);
    EXPECT_STREQ(rb.resval.rstring, L"0");
    acutDelString(rb.resval.rstring);
    ASSERT_EQ(acedGetVar(L"OSMODE", &rb), RTNORM);
    EXPECT_NE(rb.resval.rint, 0);
}

TEST_F(SystemVariables, DrawingValuesBelongToTheirDocument) {
    resbuf value = fresh();
    value.restype = RTSHORT;
    value.resval.rint = 0;
    ASSERT_EQ(acedSetVar(L"UCSICON", &value), RTNORM);
    ASSERT_EQ(acedSetVar(L"FILEDIA", &value), RTNORM);
    qelhost::newDocument();
    resbuf rb = fresh();
    ASSERT_EQ(acedGetVar(L"UCSICON", &rb), RTNORM);
    EXPECT_EQ(rb.resval.rint, 3) << "a new drawing has its own UCSICON";
    ASSERT_EQ(acedGetVar(L"FILEDIA", &rb), RTNORM);
    EXPECT_EQ(rb.resval.rint, 0) << "FILEDIA is the session's";
    ASSERT_EQ(acedGetVar(L"DWGNAME", &rb), RTNORM);
    EXPECT_STREQ(rb.resval.rstring, L"Drawing2.dwg");
    acutDelString(rb.resval.rstring);
}

TEST_F(SystemVariables, SetvarAtTheCommandLine) {
    answers(L"OSMODE 33\n");
    EXPECT_EQ(qelhost::runCommand(L"SETVAR"), RTNORM);
    resbuf rb = fresh();
    ASSERT_EQ(acedGetVar(L"OSMODE", &rb), RTNORM);
    EXPECT_EQ(rb.resval.rint, 33);
    answers(L"OSMODE abc\n");
    EXPECT_EQ(qelhost::runCommand(L"SETVAR"), RTERROR);
    answers(L"DWGNAME\n");
    EXPECT_EQ(qelhost::runCommand(L"SETVAR"), RTNORM);
    EXPECT_NE(printed().find(L"DWGNAME = \"Drawing1.dwg\" (read only)"), std::wstring::npos);
}

} // namespace
} // namespace editortest
