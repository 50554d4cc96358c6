// Objects and params in memory: lookup, replacement, deletion and who owns what.
#include "support.h"

#include <gtest/gtest.h>

#include <cstring>

using qeltest::Ref;

namespace {

std::string nameAt(QelObject& o, unsigned position) { return o.GetParam(position)->GetName(); }

double doubleOf(QelParam* p) {
    double v = 0;
    p->GetValue(v);
    return v;
}

} // namespace

TEST(ObjectModel, ParamsKeepTheirOrderAndReplaceInPlace) {
    Ref o(QelObject::Create("Cylinder"));
    EXPECT_STREQ(o->GetName(), "Cylinder");
    o->AddOrReplaceParam(QelParam::Create("radius", 0.5));
    o->AddOrReplaceParam(QelParam::Create("height", 2.0));
    o->AddOrReplaceParam(QelParam::Create("name", "pipe"));
    o->AddOrReplaceParam(QelParam::Create("radius", 0.75));

    ASSERT_EQ(o->GetParamCount(), 3u);
    EXPECT_EQ(nameAt(*o, 0), "radius");
    EXPECT_EQ(nameAt(*o, 1), "height");
    EXPECT_EQ(nameAt(*o, 2), "name");
    EXPECT_DOUBLE_EQ(doubleOf(o->GetParam("radius", 0)), 0.75);
    // A replacement may change the type.
    o->AddOrReplaceParam(QelParam::Create("height", 3));
    EXPECT_EQ(o->GetParam("height", 0)->GetType(), QelIntType);
    EXPECT_EQ(o->GetParamCount(), 3u);
}

TEST(ObjectModel, LookupOfAbsentParamsChangesNothing) {
    Ref o(QelObject::Create("Sphere"));
    o->AddOrReplaceParam(QelParam::Create("radius", 1.0));
    EXPECT_EQ(o->GetParam("Radius", 0), nullptr) << "names are matched exactly";
    EXPECT_EQ(o->GetParam("radius", 1), nullptr) << "there is only one 'radius'";
    EXPECT_EQ(o->GetParam(1u), nullptr);
    EXPECT_EQ(o->GetParam(static_cast<const char*>(nullptr), 0), nullptr);
    o->DeleteParam("missing");
    o->AddOrReplaceParam(nullptr);
    EXPECT_EQ(o->GetParamCount(), 1u);
}

TEST(ObjectModel, DeleteRemovesOnlyThatParam) {
    Ref o(QelObject::Create("Torus"));
    o->AddOrReplaceParam(QelParam::Create("majorRadius", 2.0));
    o->AddOrReplaceParam(QelParam::Create("minorRadius", 0.5));
    o->AddOrReplaceParam(QelParam::Create("tag", "T-1"));
    o->DeleteParam("minorRadius");
    ASSERT_EQ(o->GetParamCount(), 2u);
    EXPECT_EQ(nameAt(*o, 0), "majorRadius");
    EXPECT_EQ(nameAt(*o, 1), "tag");
    EXPECT_EQ(o->GetParam("minorRadius", 0), nullptr);
}

TEST(ObjectModel, NestedObjectLivesAsLongAsItsParent) {
    Ref parent(QelObject::Create("Cylinder"));
    {
        QelObject* pose = QelObject::Create("Transformation");
        const double t[3] = {1, 2, 3};
        pose->AddOrReplaceParam(QelParam::Create("translation", t, 3));
        parent->AddOrReplaceParam(QelParam::Create("pose", pose));
        pose->UnRef(); // the caller's own reference; the param keeps its own
    }
    QelObject* borrowed = nullptr;
    parent->GetParam("pose", 0)->GetValue(borrowed);
    ASSERT_NE(borrowed, nullptr);
    EXPECT_STREQ(borrowed->GetName(), "Transformation");
    double* t = nullptr;
    unsigned n = 0;
    borrowed->GetParam("translation", 0)->GetValue(t, n, false);
    ASSERT_EQ(n, 3u);
    EXPECT_EQ(t[2], 3.0);
}

TEST(ObjectModel, OneChildMayServeTwoParents) {
    QelObject* colour = QelObject::Create("Appearance");
    const unsigned char rgb[3] = {1, 2, 3};
    colour->AddOrReplaceParam(QelParam::Create("diffuseColor", rgb, 3));
    Ref a(QelObject::Create("Cone"));
    Ref b(QelObject::Create("Cone"));
    a->AddOrReplaceParam(QelParam::Create("appearance", colour));
    b->AddOrReplaceParam(QelParam::Create("appearance", colour));
    colour->UnRef();
    a.reset();
    QelObject* still = nullptr;
    b->GetParam("appearance", 0)->GetValue(still);
    EXPECT_EQ(still, colour);
    EXPECT_EQ(still->GetParam("diffuseColor", 0)->GetArraySize(), 3u);
}

TEST(ObjectModel, ExtraReferencesKeepAnObjectAlive) {
    QelObject* o = QelObject::Create("Line3d");
    o->AddRef();
    o->UnRef();
    o->AddOrReplaceParam(QelParam::Create("ok", true)); // still alive after one UnRef
    EXPECT_EQ(o->GetParamCount(), 1u);
    o->UnRef();
}

TEST(ObjectModel, CreatedArraysAreCopies) {
    double values[3] = {1, 2, 3};
    QelParam* p = QelParam::Create("v", values, 3);
    values[0] = 99;
    Ref o(QelObject::Create("X"));
    o->AddOrReplaceParam(p);
    double* read = nullptr;
    unsigned n = 0;
    p->GetValue(read, n, false);
    EXPECT_EQ(read[0], 1.0);
    double* copy = nullptr;
    p->GetValue(copy, n, true);
    ASSERT_NE(copy, read);
    copy[1] = -1;
    EXPECT_EQ(read[1], 2.0);
    delete[] copy;
}

TEST(ObjectModel, WrongTypedReadsThrowNamingTheParam) {
    Ref o(QelObject::Create("Layer"));
    o->AddOrReplaceParam(QelParam::Create("name", "Piping"));
    o->AddOrReplaceParam(QelParam::Create("height", 2.5));
    double d = 0;
    try {
        o->GetParam("name", 0)->GetValue(d);
        FAIL() << "a string read as a double must throw";
    } catch (const QelException& e) {
        EXPECT_NE(std::strstr(e.GetReason(), "'name'"), nullptr) << e.GetReason();
        EXPECT_NE(std::strstr(e.GetReason(), "string"), nullptr) << e.GetReason();
    }
    QelObject* child = nullptr;
    EXPECT_THROW(o->GetParam("height", 0)->GetValue(child), QelException);
    double* arr = nullptr;
    unsigned n = 0;
    EXPECT_THROW(o->GetParam("height", 0)->GetValue(arr, n, false), QelException);
    // Numbers convert among themselves as C++ converts them.
    int i = 0;
    o->GetParam("height", 0)->GetValue(i);
    EXPECT_EQ(i, 2);
}

TEST(ObjectModel, ExceptionsCopyTheirReason) {
    QelException a("first");
    QelException b = a;
    QelException c("other");
    c = a;
    EXPECT_STREQ(b.GetReason(), "first");
    EXPECT_STREQ(c.GetReason(), "first");
    EXPECT_NE(b.GetReason(), a.GetReason());
}
