// Layer names: which the host may take as they are, and how the others are made legal, pass by
// pass, as the user then sees them in the drawing.
#include "import/layer_import.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The outputs of the passes, one after the other, until a pass says its output is final.
std::vector<std::wstring> passes(const std::wstring& name) {
    std::vector<std::wstring> outputs;
    CString input = name.c_str(), out;
    for (int guard = 0; guard < 10; ++guard) {
        const bool final = QelSanitiseLayerNamePass(input, out);
        outputs.push_back(out.str());
        if (final) break;
        input = out;
    }
    return outputs;
}

std::wstring sanitised(const std::wstring& name) {
    return QelSanitiseLayerName(CString(name.c_str())).str();
}

TEST(LayerNames, TheNameTest) {
    for (const wchar_t* good : {L"", L"Piping", L"0", L"A_B", L"a;b", L"Tab\there", L"Bell\a"})
        EXPECT_TRUE(QelIsValidLayerName(good)) << good;
    for (const wchar_t* bad : {L"A,B", L"A<B", L"A>B", L"A/B", L"A:B", L"A\\B", L"A?B", L"A*B",
                               L"A|B", L"A=B", L"A`B", L"A\"B"})
        EXPECT_FALSE(QelIsValidLayerName(bad)) << bad;
}

TEST(LayerNames, OnePassReplacesTheFirstBadCharacterOnly) {
    EXPECT_EQ(passes(L"A,B"), (std::vector<std::wstring>{L"A_B"}));
    EXPECT_EQ(passes(L"A,B=C"), (std::vector<std::wstring>{L"A_B=C", L"A_B_C"}));
    EXPECT_EQ(passes(L"A?B*"), (std::vector<std::wstring>{L"A_B*", L"A_B_"}));
    // A question mark that isn't first comes through escaped, and is replaced at its turn.
    EXPECT_EQ(passes(L"A*B?"), (std::vector<std::wstring>{L"A_B_?", L"A_B__"}));
}

TEST(LayerNames, ControlCharactersAreEscapedOnlyWhenSomethingElseIsWrong) {
    EXPECT_EQ(sanitised(L"A\tB,C"), L"A_tB_C");
    EXPECT_EQ(sanitised(L"\a\b\f\n\r\t\v,"), L"_a_b_f_n_r_t_v_");
    EXPECT_TRUE(QelIsValidLayerName(L"A\tB"));
}

TEST(LayerNames, QuotesAndBackslashesNeverSettleAlone) {
    EXPECT_EQ(sanitised(L"\""), L"Unknown");
    EXPECT_EQ(sanitised(L"\\"), L"Unknown");
    EXPECT_EQ(sanitised(L"*"), L"_");
    // Longer names settle once the quote is gone, one pass later.
    EXPECT_EQ(passes(L"Say \"hi\""), (std::vector<std::wstring>{L"Say _hi_", L"Say _hi_"}));
    EXPECT_EQ(sanitised(L"Say \"hi\""), L"Say _hi_");
    EXPECT_EQ(sanitised(L"A\\B"), L"A_B");
}

TEST(LayerNames, WholeNamesAsTheDrawingGetsThem) {
    EXPECT_EQ(sanitised(L"A,B"), L"A_B");
    EXPECT_EQ(sanitised(L"A,B=C"), L"A_B_C");
    EXPECT_EQ(sanitised(L"A?B*"), L"A_B_");
    EXPECT_EQ(sanitised(L"A*B?"), L"A_B__");
    EXPECT_EQ(sanitised(L"<<<>>>"), L"______");
    EXPECT_EQ(sanitised(L"Pipe/Rack:North"), L"Pipe_Rack_North");
}

} // namespace
