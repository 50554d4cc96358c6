// The structure check walks a file as the importer does and names every broken reference.
#include "support.h"
#include "validate.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

class Validate : public ::testing::Test {
protected:
    void SetUp() override { qeltest::initLibrary(); }

    std::vector<qeltool::Finding> check(const std::string& json) {
        const std::string path = dir.file("v.qel");
        qeljson::build(json, "v.json", path);
        QelReader reader(path.c_str());
        return qeltool::validate(reader);
    }

    // The sample with one text replaced, which must be there.
    static std::string sampleWith(const std::string& from, const std::string& to) {
        std::string s = qeltest::sampleJson();
        const auto at = s.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return s.replace(at, from.size(), to);
    }

    static std::string texts(const std::vector<qeltool::Finding>& findings) {
        std::string all;
        for (const auto& f : findings) all += std::to_string(f.object) + ": " + f.text + "\n";
        return all;
    }

    qeltest::ScratchDir dir;
};

} // namespace

TEST_F(Validate, TheSampleIsWhole) { EXPECT_EQ(texts(check(qeltest::sampleJson())), ""); }

TEST_F(Validate, BrokenReferencesAreNamedWithTheirObject) {
    // Layer "Piping" is object 20; its list gets a number beyond the file.
    const auto findings = check(sampleWith(R"(["objectList", "uint[]", [0, 1, 2, 3, 4, 5, 6, 19]])",
                                           R"(["objectList", "uint[]", [0, 1, 2, 3, 4, 5, 6, 19, 500]])"));
    ASSERT_EQ(findings.size(), 1u) << texts(findings);
    EXPECT_EQ(findings[0].object, 20);
    EXPECT_EQ(findings[0].text, "Layer \"objectList\"[8] = 500 is out of range (the file has 28 objects)");
}

TEST_F(Validate, ReferencesMustLeadToTheRightClass) {
    const auto findings = check(sampleWith(R"(["layerMgr", "uint", 23])", R"(["layerMgr", "uint", 22])"));
    ASSERT_EQ(findings.size(), 1u) << texts(findings);
    EXPECT_EQ(findings[0].text, "ModelSpace \"layerMgr\" = 22 is a Layer, not a LayerMgr");
}

TEST_F(Validate, AMissingHeaderOrListIsReported) {
    auto findings = check(sampleWith(R"("class": "Header")", R"("class": "Trailer")"));
    EXPECT_EQ(texts(findings), "-1: the file has no Header object\n");
    findings = check(sampleWith(R"(["layerMgr", "uint", 23],)", ""));
    EXPECT_EQ(texts(findings), "26: ModelSpace lacks the required \"layerMgr\"\n");
    findings = check(sampleWith(R"(["rootLocation", "uint", 26])", R"(["rootLocation", "string", "26"])"));
    EXPECT_NE(texts(findings).find("should hold reference numbers (uint or uint[]), not a string"),
              std::string::npos)
        << texts(findings);
}
