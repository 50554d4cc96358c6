// The JSON form: the round trip through a file is exact, and bad JSON is named precisely.
#include "support.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <random>

using qeltest::Ref;

namespace {

class Json : public ::testing::Test {
protected:
    void SetUp() override { qeltest::initLibrary(); }

    std::string throughFile(const std::string& json) {
        const std::string path = dir.file("x.qel");
        qeljson::build(json, "x.json", path);
        return qeltest::dumpFile(path);
    }

    std::string errorOf(const std::string& json) {
        try {
            qeljson::build(json, "bad.json", dir.file("bad.qel"));
        } catch (const qeljson::JsonError& e) {
            EXPECT_FALSE(std::filesystem::exists(dir.file("bad.qel"))) << "nothing is written on error";
            return e.what();
        }
        return "(accepted)";
    }

    static std::string wrap(const std::string& params) {
        return R"({ "format": "qel-json-1", "objects": [ { "class": "Cylinder", "params": [ )" + params +
               " ] } ] }";
    }

    qeltest::ScratchDir dir;
};

} // namespace

TEST_F(Json, TheSampleRoundTripsToTheSameText) {
    const std::string sample = qeltest::sampleJson();
    EXPECT_EQ(throughFile(sample), sample);
}

TEST_F(Json, FloatsAndDoublesAreExact) {
    std::mt19937_64 random(42);
    std::string params;
    std::vector<double> doubles;
    std::vector<float> floats;
    for (int i = 0; i < 2000; ++i) {
        const double d = std::bit_cast<double>(random() & ~(0x7FFull << 52)) * std::ldexp(1.0, int(random() % 200) - 100);
        float f;
        do {
            f = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        } while (!std::isfinite(f));
        doubles.push_back(d);
        floats.push_back(f);
    }
    Ref o(QelObject::Create("Numbers"));
    o->AddOrReplaceParam(QelParam::Create("d", doubles.data(), unsigned(doubles.size())));
    o->AddOrReplaceParam(QelParam::Create("f", floats.data(), unsigned(floats.size())));
    const std::string json =
        "{ \"format\": \"qel-json-1\", \"objects\": [ " + qeljson::objectToJson(*o) + " ] }";
    const std::string path = dir.file("n.qel");
    qeljson::build(json, "n.json", path);
    QelReader reader(path.c_str());
    Ref back(reader.ReadObject(0u));
    double* d = nullptr;
    float* f = nullptr;
    unsigned n = 0;
    back->GetParam("d", 0)->GetValue(d, n, false);
    ASSERT_EQ(n, doubles.size());
    EXPECT_EQ(std::memcmp(d, doubles.data(), n * sizeof(double)), 0);
    back->GetParam("f", 0)->GetValue(f, n, false);
    ASSERT_EQ(n, floats.size());
    EXPECT_EQ(std::memcmp(f, floats.data(), n * sizeof(float)), 0);
}

TEST_F(Json, TextThatIsNotUtf8IsKeptByteForByte) {
    Ref o(QelObject::Create("Layer"));
    o->AddOrReplaceParam(QelParam::Create("name", "Rohrl\xE4ufe")); // a Latin-1 umlaut
    const std::string text = qeljson::objectToJson(*o);
    EXPECT_NE(text.find(R"({ "hex": "526f68726ce4756665" })"), std::string::npos) << text;
    Ref back(qeljson::objectFromJson(text, "t"));
    const char* name = nullptr;
    back->GetParam("name", 0)->GetValue(name);
    EXPECT_STREQ(name, "Rohrl\xE4ufe");
}

TEST_F(Json, FaultsNameTheObjectAndParam) {
    struct Case {
        std::string json;
        std::string expected;
    } cases[] = {
        {"not json", "bad.json: not valid JSON"},
        {R"({ "format": "other", "objects": [] })", "\"format\" must be \"qel-json-1\""},
        {R"({ "format": "qel-json-1" })", "\"objects\" must be a list"},
        {wrap(R"(["radius", "double", "wide"])"), "object 0 ('Cylinder'), param 0 ('radius'): expected a number"},
        {wrap(R"(["radius", "double", 1], ["n", "short", 40000])"), "param 1 ('n'): 40000 is out of range"},
        {wrap(R"(["u", "uint", -1])"), "param 0 ('u'): -1 is out of range"},
        {wrap(R"(["c", "byte[]", [1, 256]])"), "param 0 ('c'), element 1: 256 is out of range"},
        {wrap(R"(["x", "quaternion", 1])"), "param 0 ('x'): unknown type 'quaternion'"},
        {wrap(R"(["x", "double"])"), "param 0: a param must be [name, type, value]"},
        {wrap(R"(["a", "int", 1], ["a", "int", 2])"), "'Cylinder' has two params named 'a'"},
        {wrap(R"(["pose", "object", { "params": [] }])"), "param 0 ('pose'): an object needs a \"class\" name"},
        {wrap(R"(["b", "bool", 1])"), "param 0 ('b'): expected true or false"},
    };
    for (const Case& c : cases) {
        const std::string error = errorOf(c.json);
        EXPECT_NE(error.find(c.expected), std::string::npos) << "got: " << error;
    }
}

TEST_F(Json, SpecialNumbersHaveTheirOwnNames) {
    const std::string json = wrap(R"(["a", "double", "NaN"], ["b", "float", "-Infinity"], ["c", "double", -0.0])");
    const std::string out = throughFile(json);
    EXPECT_NE(out.find(R"(["a", "double", "NaN"])"), std::string::npos) << out;
    EXPECT_NE(out.find(R"(["b", "float", "-Infinity"])"), std::string::npos) << out;
    EXPECT_NE(out.find(R"(["c", "double", -0.0])"), std::string::npos) << out;
}
