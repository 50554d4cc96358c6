#include "helpers.h"

#include <cstring>

TEST(Strings, WideFromNarrowCountsAsTheSystemDoes) {
    const char* name = "Z\xc3\xbcrich.qel"; // "Zürich.qel" in UTF-8, 11 bytes
    EXPECT_EQ(GetACP(), UINT(CP_UTF8));
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, name, -1, nullptr, 0), 11) << "with the terminator";
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, name, 3, nullptr, 0), 2) << "without it";
    wchar_t wide[16];
    ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, name, -1, wide, 16), 11);
    EXPECT_STREQ(wide, L"Z\u00fcrich.qel");
    wchar_t small[4];
    SetLastError(0);
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, name, -1, small, 4), 0);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INSUFFICIENT_BUFFER));
}

TEST(Strings, NarrowFromWideRoundTripsAndRefusesDefaultCharsForUtf8) {
    const wchar_t* path = L"C:\\Pl\u00e4ne\\\u6a21\u578b.qel";
    int size = WideCharToMultiByte(CP_ACP, 0, path, -1, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    ASSERT_EQ(WideCharToMultiByte(CP_ACP, 0, path, -1, narrow.data(), size, nullptr, nullptr),
              size);
    EXPECT_EQ(std::strlen(narrow.c_str()) + 1, std::size_t(size));
    EXPECT_EQ(win::fromUtf8(narrow.c_str()), path);
    BOOL used = FALSE;
    SetLastError(0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, path, -1, nullptr, 0, "?", &used), 0);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_PARAMETER));
}

TEST(Strings, InvalidInputIsReplacedOrRefusedOnRequest) {
    const char bad[] = "a\xff"
                       "b";
    wchar_t wide[8];
    ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, bad, -1, wide, 8), 4);
    EXPECT_EQ(wide[1], L'\ufffd');
    SetLastError(0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bad, -1, wide, 8), 0);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_NO_UNICODE_TRANSLATION));
    const wchar_t lone[] = {L'x', static_cast<wchar_t>(0xD800), 0};
    EXPECT_EQ(win::toUtf8(lone), "x\xef\xbf\xbd");
}

TEST(Strings, FormatGivesPercentSTheWideMeaning) {
    CString text;
    text.Format(L"%s (Build %d)", L"Version 6.1", 170);
    EXPECT_STREQ(text, L"Version 6.1 (Build 170)");
    text.Format(L"[%S] [%hs] [%ls] [%c] [%-4s] [%5.2f] [%I64d] [%%]", "narrow", "hs", L"ls",
                L'\u00fc', L"ab", 3.14159, 1LL << 40);
    EXPECT_STREQ(text, L"[narrow] [hs] [ls] [\u00fc] [ab  ] [ 3.14] [1099511627776] [%]");
    text.Format(L"%s\n(ERROR:<%s>", L"Bad", L"eInvalidInput");
    EXPECT_STREQ(text, L"Bad\n(ERROR:<eInvalidInput>");
    wchar_t buffer[1024];
    EXPECT_EQ(wsprintfW(buffer, L"%d of %s", 3, L"many"), 9);
    EXPECT_STREQ(buffer, L"3 of many");
}

TEST(Strings, CStringSearchesAndEditsLikeTheLibrary) {
    CString name = L"C:\\models\\Plant.QEL";
    EXPECT_EQ(name.ReverseFind(L'\\'), 9);
    EXPECT_STREQ(name.Mid(name.ReverseFind(L'\\') + 1), L"Plant.QEL");
    EXPECT_EQ(name.Right(4).CompareNoCase(L".qel"), 0);
    EXPECT_EQ(name.FindOneOf(L"<>?*|,=`"), -1);
    EXPECT_EQ(CString(L"a,b=c").FindOneOf(L"<>?*|,=`"), 1);
    EXPECT_STREQ(name.Left(2), L"C:");
    EXPECT_STREQ(name.Mid(3, 6), L"models");
    EXPECT_STREQ(name.Mid(40), L"");
    CString copy = name;
    EXPECT_EQ(copy.Replace(L"\\", L"/"), 2);
    EXPECT_STREQ(copy, L"C:/models/Plant.QEL");
    EXPECT_STREQ(name, L"C:\\models\\Plant.QEL") << "a copy is a value";
    CString padded = L"  x \t";
    EXPECT_STREQ(padded.Trim(), L"x");

    CString buffer;
    wcscpy(buffer.GetBuffer(20), L"written");
    buffer.ReleaseBuffer();
    EXPECT_EQ(buffer.GetLength(), 7);
    EXPECT_TRUE(CString(L"x") == L"x");
    EXPECT_STREQ(CString("narrow \xc3\xa4"), L"narrow \u00e4");
}
