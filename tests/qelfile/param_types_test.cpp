// Every param type through a file and back, with the values at the edges of each type.
#include "support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

using qeltest::Ref;

namespace {

class ParamTypes : public ::testing::Test {
protected:
    void SetUp() override { qeltest::initLibrary(); }

    // Writes the object alone and reads it back.
    Ref roundTrip(QelObject* o) {
        const std::string path = dir.file("one.qel");
        {
            QelWriter writer(path.c_str());
            EXPECT_EQ(writer.WriteObject(o), 0u);
            writer.Close();
        }
        QelReader reader(path.c_str());
        return Ref(reader.ReadObject(0u));
    }

    template <typename T>
    std::vector<T> arrayOf(QelObject& o, const char* name) {
        T* values = nullptr;
        unsigned n = 0;
        o.GetParam(name, 0)->GetValue(values, n, false);
        if (n) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(values) % alignof(T), 0u) << name;
        }
        return std::vector<T>(values, values + n);
    }

    qeltest::ScratchDir dir;
};

} // namespace

TEST_F(ParamTypes, ScalarsKeepEveryValueAndType) {
    using lim = std::numeric_limits<double>;
    Ref o(QelObject::Create("Scalars"));
    o->AddOrReplaceParam(QelParam::Create("t", true));
    o->AddOrReplaceParam(QelParam::Create("f", false));
    o->AddOrReplaceParam(QelParam::Create("sMin", short(-32768)));
    o->AddOrReplaceParam(QelParam::Create("sMax", short(32767)));
    o->AddOrReplaceParam(QelParam::Create("iMin", std::numeric_limits<int>::min()));
    o->AddOrReplaceParam(QelParam::Create("uMax", 4294967295u));
    o->AddOrReplaceParam(QelParam::Create("fl", 0.1f));
    o->AddOrReplaceParam(QelParam::Create("third", 1.0 / 3.0));
    o->AddOrReplaceParam(QelParam::Create("tiny", lim::denorm_min()));
    o->AddOrReplaceParam(QelParam::Create("negZero", -0.0));
    o->AddOrReplaceParam(QelParam::Create("inf", lim::infinity()));
    o->AddOrReplaceParam(QelParam::Create("nan", lim::quiet_NaN()));
    o->AddOrReplaceParam(QelParam::Create("text", "Ä \"quoted\"\ttab"));
    o->AddOrReplaceParam(QelParam::Create("empty", ""));

    Ref back = roundTrip(o.get());
    ASSERT_EQ(back->GetParamCount(), o->GetParamCount());
    for (unsigned i = 0; i < o->GetParamCount(); ++i) {
        EXPECT_STREQ(back->GetParam(i)->GetName(), o->GetParam(i)->GetName());
        EXPECT_EQ(back->GetParam(i)->GetType(), o->GetParam(i)->GetType()) << o->GetParam(i)->GetName();
    }
    bool b;
    back->GetParam("t", 0)->GetValue(b);
    EXPECT_TRUE(b);
    back->GetParam("f", 0)->GetValue(b);
    EXPECT_FALSE(b);
    short s;
    back->GetParam("sMin", 0)->GetValue(s);
    EXPECT_EQ(s, -32768);
    back->GetParam("sMax", 0)->GetValue(s);
    EXPECT_EQ(s, 32767);
    int i;
    back->GetParam("iMin", 0)->GetValue(i);
    EXPECT_EQ(i, std::numeric_limits<int>::min());
    unsigned u;
    back->GetParam("uMax", 0)->GetValue(u);
    EXPECT_EQ(u, 4294967295u);
    float fl;
    back->GetParam("fl", 0)->GetValue(fl);
    EXPECT_EQ(fl, 0.1f);
    double d;
    back->GetParam("third", 0)->GetValue(d);
    EXPECT_EQ(d, 1.0 / 3.0);
    back->GetParam("tiny", 0)->GetValue(d);
    EXPECT_EQ(d, lim::denorm_min());
    back->GetParam("negZero", 0)->GetValue(d);
    EXPECT_TRUE(d == 0.0 && std::signbit(d));
    back->GetParam("inf", 0)->GetValue(d);
    EXPECT_EQ(d, lim::infinity());
    back->GetParam("nan", 0)->GetValue(d);
    EXPECT_TRUE(std::isnan(d));
    const char* text = nullptr;
    back->GetParam("text", 0)->GetValue(text);
    EXPECT_STREQ(text, "Ä \"quoted\"\ttab");
    back->GetParam("empty", 0)->GetValue(text);
    EXPECT_STREQ(text, "");
}

TEST_F(ParamTypes, ArraysOfEveryTypeReadInPlace) {
    const unsigned char bytes[] = {0, 127, 255};
    const short shorts[] = {-32768, 0, 32767};
    const int ints[] = {std::numeric_limits<int>::min(), -1, 7};
    const unsigned uints[] = {0, 1, 4294967295u};
    const float floats[] = {1.5f, -0.0f, std::numeric_limits<float>::max()};
    const double doubles[] = {0.1, -2.5e-300, 6.2831854820251465};
    Ref o(QelObject::Create("Arrays"));
    o->AddOrReplaceParam(QelParam::Create("b", bytes, 3));
    o->AddOrReplaceParam(QelParam::Create("s", shorts, 3));
    o->AddOrReplaceParam(QelParam::Create("i", ints, 3));
    o->AddOrReplaceParam(QelParam::Create("u", uints, 3));
    o->AddOrReplaceParam(QelParam::Create("f", floats, 3));
    o->AddOrReplaceParam(QelParam::Create("d", doubles, 3));

    Ref back = roundTrip(o.get());
    const QelParamType expected[] = {QelByteArrayType,  QelShortArrayType, QelIntArrayType,
                                     QelUIntArrayType, QelFloatArrayType, QelDoubleArrayType};
    for (unsigned k = 0; k < 6; ++k) {
        EXPECT_EQ(back->GetParam(k)->GetType(), expected[k]);
        EXPECT_EQ(back->GetParam(k)->GetArraySize(), 3u);
    }
    EXPECT_EQ(arrayOf<unsigned char>(*back, "b"), std::vector<unsigned char>(bytes, bytes + 3));
    EXPECT_EQ(arrayOf<short>(*back, "s"), std::vector<short>(shorts, shorts + 3));
    EXPECT_EQ(arrayOf<int>(*back, "i"), std::vector<int>(ints, ints + 3));
    EXPECT_EQ(arrayOf<unsigned>(*back, "u"), std::vector<unsigned>(uints, uints + 3));
    EXPECT_EQ(arrayOf<float>(*back, "f"), std::vector<float>(floats, floats + 3));
    EXPECT_EQ(arrayOf<double>(*back, "d"), std::vector<double>(doubles, doubles + 3));
}

TEST_F(ParamTypes, EmptyArraysArePresentWithCountZero) {
    Ref o(QelObject::Create("Empty"));
    o->AddOrReplaceParam(QelParam::Create("list", static_cast<const unsigned*>(nullptr), 0));
    o->AddOrReplaceParam(QelParam::Create("values", static_cast<const double*>(nullptr), 0));
    Ref back = roundTrip(o.get());
    QelParam* list = back->GetParam("list", 0);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->GetType(), QelUIntArrayType);
    unsigned* p = reinterpret_cast<unsigned*>(&list); // any non-null value, to see it cleared
    unsigned n = 99;
    list->GetValue(p, n, false);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(p, nullptr);
    EXPECT_EQ(back->GetParam("values", 0)->GetArraySize(), 0u);
}

TEST_F(ParamTypes, LargeArraysOutliveTheReaderAndStayPrivate) {
    std::vector<float> points(3 * 100000);
    std::iota(points.begin(), points.end(), 0.0f);
    Ref o(QelObject::Create("Pointset"));
    o->AddOrReplaceParam(QelParam::Create("points", points.data(), unsigned(points.size())));
    const std::string path = dir.file("big.qel");
    {
        QelWriter writer(path.c_str());
        writer.WriteObject(o.get());
        writer.Close();
    }
    Ref back;
    {
        QelReader reader(path.c_str());
        back.reset(reader.ReadObject(0u));
    } // reader closed: the object keeps the file mapped
    float* values = nullptr;
    unsigned n = 0;
    back->GetParam("points", 0)->GetValue(values, n, false);
    ASSERT_EQ(n, points.size());
    EXPECT_EQ(values[299999], 299999.0f);
    values[0] = -1.0f; // writing in place must not reach the file
    back.reset();
    QelReader again(path.c_str());
    Ref fresh(again.ReadObject(0u));
    fresh->GetParam("points", 0)->GetValue(values, n, false);
    EXPECT_EQ(values[0], 0.0f);
}

TEST_F(ParamTypes, NestedObjectsAndEmptyObjectParamsSurvive) {
    Ref o(QelObject::Create("Cylinder"));
    Ref pose(QelObject::Create("Transformation"));
    Ref inner(QelObject::Create("Deeper"));
    inner->AddOrReplaceParam(QelParam::Create("level", 2));
    pose->AddOrReplaceParam(QelParam::Create("inner", inner.get()));
    o->AddOrReplaceParam(QelParam::Create("pose", pose.get()));
    o->AddOrReplaceParam(QelParam::Create("cap0", static_cast<QelObject*>(nullptr)));
    Ref back = roundTrip(o.get());
    QelObject* p = nullptr;
    back->GetParam("pose", 0)->GetValue(p);
    ASSERT_NE(p, nullptr);
    QelObject* d = nullptr;
    p->GetParam("inner", 0)->GetValue(d);
    ASSERT_NE(d, nullptr);
    int level = 0;
    d->GetParam("level", 0)->GetValue(level);
    EXPECT_EQ(level, 2);
    QelObject* cap = reinterpret_cast<QelObject*>(&level);
    back->GetParam("cap0", 0)->GetValue(cap);
    EXPECT_EQ(cap, nullptr);
}

TEST_F(ParamTypes, AnObjectThatHoldsItselfIsRefusedOnWrite) {
    QelObject* loop = QelObject::Create("Loop");
    loop->AddOrReplaceParam(QelParam::Create("self", loop));
    {
        QelWriter writer(dir.file("loop.qel").c_str());
        try {
            writer.WriteObject(loop);
            FAIL() << "a cycle must be refused";
        } catch (const QelException& e) {
            EXPECT_NE(std::string(e.GetReason()).find("nested deeper"), std::string::npos) << e.GetReason();
        }
        // The writer stays usable after the refusal.
        Ref fine(QelObject::Create("Fine"));
        EXPECT_EQ(writer.WriteObject(fine.get()), 0u);
        writer.Close();
    }
    loop->DeleteParam("self"); // breaks the cycle so that the object can die
    loop->UnRef();
    QelReader reader(dir.file("loop.qel").c_str());
    EXPECT_EQ(reader.GetObjectCount(), 1u);
}
