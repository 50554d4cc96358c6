// Annotations on import: the suppress list and its patterns, the texts stacked at their pitch
// with their tags, in both forms; the tag read back.
#include "fittings_support.h"

#include "records/annotate_record.h"
#include "records/annotation_names.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include "creators/helpers/group_tag.h"

namespace {

using namespace fittingstest;

TEST(AnnotationNames, PatternsMatchWithStarsQuestionMarksAndWithoutCase) {
    struct Case {
        const wchar_t* pattern;
        const wchar_t* name;
        bool matches;
    };
    const Case cases[] = {
        {L"TAG*", L"tag1", true},
        {L"??_ID", L"AB_id", true},
        {L"??_ID", L"ID", false},
        {L"??_ID", L"ABC_ID", false},
        {L"tag", L"TAG", true},
        {L"tag", L"tags", false},
        {L"*", L"", true},
        {L"", L"", true},
        {L"", L"a", false},
        {L"?", L"", false},
        {L"a*b*c", L"aXbYbZc", true},
        {L"a*b*c", L"aXbYbZcd", false},
        {L"*_id", L"pipe_x_ID", true},
        {L"a***", L"a", true},
        {L"*x*y", L"xxyxzy", true},
        {L"*x*y", L"xxyxz", false},
        {L"P?PE*CLASS", L"pipeClass", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(QelNameMatches(c.pattern, c.name), c.matches)
            << std::string(c.pattern, c.pattern + wcslen(c.pattern)) << " against "
            << std::string(c.name, c.name + wcslen(c.name));
}

TEST(AnnotationNames, TheListSplitsAtCommasTabsAndLineEnds) {
    EXPECT_EQ(QelSplitNameList(L"TAG*,??_ID\tline\nx,,"),
              (std::vector<std::wstring>{L"TAG*", L"??_ID", L"line", L"x"}));
    EXPECT_TRUE(QelSplitNameList(L"").empty());
    EXPECT_EQ(QelSplitNameList(L" a b "), std::vector<std::wstring>{L" a b "});
}

class SuppressList : public ::testing::Test {
protected:
    void SetUp() override { QelForgetAnnotationSuppressList(); }
    void TearDown() override { QelForgetAnnotationSuppressList(); }
    static void set(HKEY root, const wchar_t* text) {
        HKEY key = nullptr;
        DWORD disposition = 0;
        ASSERT_EQ(RegCreateKeyExW(root, QEL_SETTINGS_KEY, 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                                  &disposition),
                  ERROR_SUCCESS);
        RegSetValueExW(key, L"AnnotKeySuppress", 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                       DWORD((wcslen(text) + 1) * sizeof(wchar_t)));
        RegCloseKey(key);
    }
    qelintest::ScratchRegistry m_registry;
};

// The user's list comes first; the machine's serves when the user has none; it is read once.
TEST_F(SuppressList, TheUsersListThenTheMachinesReadOnce) {
    EXPECT_FALSE(QelAnnotationSuppressed(L"tag1")); // no list anywhere
    QelForgetAnnotationSuppressList();
    set(HKEY_LOCAL_MACHINE, L"ID");
    EXPECT_FALSE(QelAnnotationSuppressed(L"tag1"));
    EXPECT_TRUE(QelAnnotationSuppressed(L"id"));
    set(HKEY_CURRENT_USER, L"TAG*,??_ID");
    EXPECT_TRUE(QelAnnotationSuppressed(L"id")) << "the list of the load stays";
    QelForgetAnnotationSuppressList();
    EXPECT_TRUE(QelAnnotationSuppressed(L"tag1"));
    EXPECT_TRUE(QelAnnotationSuppressed(L"AB_id"));
    EXPECT_FALSE(QelAnnotationSuppressed(L"ID"));
}

class Annotations : public qelintest::ImportTest {
protected:
    void SetUp() override {
        ImportTest::SetUp();
        QelForgetAnnotationSuppressList();
    }
    void TearDown() override {
        QelForgetAnnotationSuppressList();
        ImportTest::TearDown();
    }
    static std::string annotation(const std::string& name, const std::string& cls,
                                  const std::string& type, const std::string& value) {
        return R"([")" + name + R"(", "object", {"class": ")" + cls +
               R"(", "params": [["value", ")" + type + R"(", )" + value + "]]}]";
    }
    static std::string withAnnotations(const std::string& params) {
        return R"({"class": "Cylinder", "params": [["annotations", "object", {"class": "Annotations", "params": [)" +
               params + "]}]]}";
    }
    // The texts in model space: position, text, height, the tag's name and type.
    struct Text {
        AcGePoint3d position;
        std::wstring text;
        double height;
        std::wstring name;
        int type;
    };
    static std::vector<Text> texts() {
        std::vector<Text> out;
        for (const AcDbObjectId& id : modelSpaceIds()) {
            Open<AcDbText> text(id);
            if (!text) continue;
            out.push_back({text->position(), text->textStringConst(), text->height(), L"", 0});
            ads_name name;
            acdbGetAdsName(name, id);
            CAnnotateRecord tag;
            EXPECT_TRUE(tag.Load(name));
            out.back().name = tag.name.GetString();
            out.back().type = tag.type;
        }
        return out;
    }
};

// Three values of the three kinds: three texts stacked upward at 1.25 text heights, each with
// its name and type; they join the group, and the pose carries them.
TEST_F(Annotations, TextsStackUpwardAtTheirPitchWithTheirTags) {
    ObjectPtr object =
        objectFrom(withAnnotations(annotation("TagNo", "StrAnnotation", "string", R"("P-101")") +
                                   ", " + annotation("Count", "IntAnnotation", "int", "-42") +
                                   ", " + annotation("Weight", "DblAnnotation", "double", "12.5")));
    CString name;
    AcDbGroup* group = QelMakeObjectGroup(L"CylinderGroup", L"CYLINDER_GROUP", name);
    const AcGeMatrix3d translation = AcGeMatrix3d::translation(AcGeVector3d(5, 6, 7));
    EXPECT_TRUE(ImportAnnotations(object.get(), translation, AcGeMatrix3d::kIdentity, group));
    QelCloseGroup(group);

    const double h = 0.25;
    const std::vector<Text> made = texts();
    ASSERT_EQ(made.size(), 3u);
    const wchar_t* strings[] = {L"TagNo: P-101", L"Count: -42", L"Weight: 12.5"};
    const wchar_t* names[] = {L"TagNo", L"Count", L"Weight"};
    const int types[] = {12, 6, 11};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(made[i].text, strings[i]);
        EXPECT_EQ(made[i].name, names[i]);
        EXPECT_EQ(made[i].type, types[i]);
        EXPECT_NEAR(made[i].height, h, 1e-12);
        expectNear(made[i].position, AcGePoint3d(5, 6 + i * 1.25 * h, 7), 1e-9, "position");
    }
    const std::vector<AcDbObjectId> ids = modelSpaceIds();
    EXPECT_EQ(groupMembersOf(ids[0]), ids);
}

// What makes no text: a name the suppress list holds, a param that holds no object, an object
// without "value", a float array (silently) and a value of another kind (with a word). None of
// them takes a place in the stack.
TEST_F(Annotations, SkippedValuesTakeNoPlace) {
    ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"AnnotKeySuppress", L"TAG*,??_ID"));
    ObjectPtr object = objectFrom(withAnnotations(
        annotation("tag1", "StrAnnotation", "string", R"("x")") + ", " +
        annotation("AB_id", "IntAnnotation", "int", "1") + ", " + R"(["loose", "int", 3], )" +
        R"(["empty", "object", {"class": "IntAnnotation", "params": []}], )" +
        annotation("floats", "DblAnnotation", "float[]", "[1.0, 2.0]") + ", " +
        annotation("flag", "IntAnnotation", "bool", "true") + ", " +
        annotation("ID", "IntAnnotation", "int", "7")));
    EXPECT_TRUE(
        ImportAnnotations(object.get(), AcGeMatrix3d::kIdentity, AcGeMatrix3d::kIdentity, nullptr));
    const std::vector<Text> made = texts();
    ASSERT_EQ(made.size(), 1u);
    EXPECT_EQ(made[0].text, L"ID: 7");
    expectNear(made[0].position, AcGePoint3d(0, 0, 0), 1e-12, "position");
    const std::wstring said = printed();
    EXPECT_EQ(said.find(L"unknown (Annotation) parameter type encountered."),
              said.rfind(L"unknown (Annotation) parameter type encountered."))
        << "once, for the bool only";
    EXPECT_NE(said.find(L"\n unknown (Annotation) parameter type encountered.\n"),
              std::wstring::npos);

    ObjectPtr bare = objectFrom(R"({"class": "Cylinder", "params": [["annotations", "int", 1]]})");
    EXPECT_FALSE(
        ImportAnnotations(bare.get(), AcGeMatrix3d::kIdentity, AcGeMatrix3d::kIdentity, nullptr));
}

// In millimetres: the height is 250 drawing units. The plain form shows a double as the file
// has it and steps by 1.25 heights; the form for group members converts it, steps by the
// height plus 0.1 and tags each text with the member record too. Trailing zeros go, but the
// trim looks at five places only.
TEST_F(Annotations, TheTwoFormsInDrawingUnits) {
    QelDocData().importUnitIndex = 1;
    const std::string values = annotation("a", "DblAnnotation", "double", "1.5") + ", " +
                               annotation("b", "DblAnnotation", "double", "2.0") + ", " +
                               annotation("c", "DblAnnotation", "double", "0.1234567");
    ObjectPtr object = objectFrom(withAnnotations(values));
    ImportAnnotations(object.get(), AcGeMatrix3d::kIdentity, AcGeMatrix3d::kIdentity, nullptr);
    std::vector<Text> plain = texts();
    ASSERT_EQ(plain.size(), 3u);
    EXPECT_EQ(plain[0].text, L"a: 1.5");
    EXPECT_EQ(plain[1].text, L"b: 2.0");
    EXPECT_EQ(plain[2].text, L"c: 0.123457");
    EXPECT_NEAR(plain[0].height, 250.0, 1e-9);
    EXPECT_NEAR(plain[2].position.y, 2 * 312.5, 1e-9);

    qelhost::closeDocument(m_document);
    m_document = qelhost::newDocument();
    QelDocData().importUnitIndex = 1;
    QelMemberRecord record;
    record.memberType = 30;
    record.objectIndex = 12;
    record.groupSerial = 3;
    record.context = 2;
    ImportAnnotations(object.get(), AcGeMatrix3d::kIdentity, AcGeMatrix3d::kIdentity, nullptr,
                      record);
    std::vector<Text> members = texts();
    ASSERT_EQ(members.size(), 3u);
    EXPECT_EQ(members[0].text, L"a: 1500.0");
    EXPECT_EQ(members[1].text, L"b: 2000.0");
    EXPECT_EQ(members[2].text, L"c: 123.4567");
    EXPECT_NEAR(members[2].position.y, 2 * 250.1, 1e-9);
    for (const AcDbObjectId& id : modelSpaceIds()) {
        const QelMemberRecord stored = recordOf(id);
        EXPECT_EQ(stored.memberType, 30);
        EXPECT_EQ(stored.objectIndex, 12);
        EXPECT_EQ(stored.groupSerial, 3);
    }
}

// The tag alone: stored and read back; a chain that ends early is refused.
TEST_F(Annotations, TheTagReadsBackAndAShortChainFails) {
    AcDbLine* line = appendLine();
    CAnnotateRecord tag(L"Class", 11);
    ASSERT_TRUE(tag.Store(line));
    ads_name name;
    acdbGetAdsName(name, line->objectId());
    CAnnotateRecord back;
    ASSERT_TRUE(back.Load(name));
    EXPECT_EQ(std::wstring(back.name.GetString()), L"Class");
    EXPECT_EQ(back.type, 11);

    resbuf* shortChain = acutBuildList(1, L"Only", 0);
    XRecords().Set(name, QEL_ANNOTATE_RECORD_KEY, shortChain);
    acutRelRb(shortChain);
    CAnnotateRecord partial;
    EXPECT_FALSE(partial.Load(name));
    EXPECT_EQ(std::wstring(partial.name.GetString()), L"Only");
    EXPECT_EQ(partial.type, 12);
}

} // namespace
