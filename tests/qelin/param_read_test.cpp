// The wrappers of the reading idiom on objects made in memory: absent, wrongly typed and empty
// params, and the arrays copied into the plug-in's own.
#include "objectfile/param_read.h"

#include <qel/qel_json.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

QelObjectRef make(const std::string& params) {
    return QelObjectRef(
        qeljson::objectFromJson(R"({"class": "Thing", "params": [)" + params + "]}", "t"));
}

TEST(ParamRead, AbsentAndWronglyTypedParamsLeaveTheOutputAlone) {
    const QelObjectRef o =
        make(R"(["count", "uint", 7], ["flag", "int", 1], ["order", "bool", true],
                          ["name", "string", "Pipe A"], ["point", "float[]", [1, 2, 3]])");
    unsigned u = 99;
    int i = 99;
    bool b = false;
    double p[3] = {-1, -1, -1};
    CString s = L"kept";
    EXPECT_FALSE(QelReadUnsigned(o.get(), "missing", u));
    EXPECT_FALSE(QelReadUnsigned(nullptr, "count", u));
    EXPECT_EQ(u, 99u);
    EXPECT_TRUE(QelReadUnsigned(o.get(), "count", u));
    EXPECT_EQ(u, 7u);
    EXPECT_FALSE(QelReadInt(o.get(), "order", i)); // a bool is no int here
    EXPECT_TRUE(QelReadInt(o.get(), "flag", i));
    EXPECT_EQ(i, 1);
    EXPECT_FALSE(QelReadBool(o.get(), "flag", b));
    EXPECT_TRUE(QelReadBool(o.get(), "order", b));
    EXPECT_TRUE(b);
    EXPECT_FALSE(QelReadDouble3(o.get(), "point", p)); // floats are not doubles
    EXPECT_EQ(p[0], -1.0);
    EXPECT_FALSE(QelReadString(o.get(), "missing", s));
    EXPECT_EQ(s, CString(L"kept"));
    EXPECT_TRUE(QelReadString(o.get(), "name", s));
    EXPECT_EQ(s, CString(L"Pipe A"));
}

TEST(ParamRead, ArraysAppendAndOnlyTheUnsignedOneMustHoldSomething) {
    const QelObjectRef o = make(R"(["refs", "uint[]", [4, 5, 6]], ["none", "uint[]", []],
                          ["ints", "int[]", []], ["shorts", "short[]", [-3, 3]],
                          ["bytes", "byte[]", [1, 2, 3, 4]], ["point", "double[]", [1, 2]])");
    QelArray<unsigned> refs;
    refs.Append(1);
    EXPECT_TRUE(QelReadUnsignedArray(o.get(), "refs", refs));
    ASSERT_EQ(refs.GetCount(), 4u);
    EXPECT_EQ(refs[3], 6u);
    EXPECT_FALSE(QelReadUnsignedArray(o.get(), "none", refs));
    QelArray<int> ints;
    EXPECT_TRUE(QelReadIntArray(o.get(), "ints", ints));
    EXPECT_EQ(ints.GetCount(), 0u);
    QelArray<short> shorts;
    EXPECT_TRUE(QelReadShortArray(o.get(), "shorts", shorts));
    EXPECT_EQ(shorts[0], -3);
    QelArray<unsigned char> bytes;
    EXPECT_TRUE(QelReadByteArray(o.get(), "bytes", bytes));
    EXPECT_EQ(bytes.GetCount(), 4u);
    EXPECT_FALSE(QelReadByteArray(o.get(), "missing", bytes));
    // A short double array fills what it has.
    double p[3] = {0, 0, 9};
    EXPECT_TRUE(QelReadDouble3(o.get(), "point", p));
    EXPECT_EQ(p[1], 2.0);
    EXPECT_EQ(p[2], 9.0);
}

TEST(ParamRead, ColourOfTheNestedAppearance) {
    unsigned char r = 0, g = 0, b = 0;
    EXPECT_TRUE(QelReadColour(make(R"(["appearance", "object", {"class": "Appearance",
        "params": [["diffuseColor", "byte[]", [10, 20, 30]]]}])")
                                  .get(),
                              r, g, b));
    EXPECT_EQ(r + g + b, 60);
    // Not an object, not bytes, too few bytes, no colour: false and nothing changed.
    for (
        const char* params :
        {R"(["appearance", "int", 1])",
         R"(["appearance", "object", {"class": "Appearance", "params": [["diffuseColor", "int[]", [1, 2, 3]]]}])",
         R"(["appearance", "object", {"class": "Appearance", "params": [["diffuseColor", "byte[]", [1, 2]]]}])",
         R"(["appearance", "object", {"class": "Appearance", "params": []}])"}) {
        EXPECT_FALSE(QelReadColour(make(params).get(), r, g, b)) << params;
        EXPECT_EQ(r, 10);
    }
}

} // namespace
