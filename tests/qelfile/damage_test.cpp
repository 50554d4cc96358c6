// Damaged files: every cut and every flipped bit is found, reported with a reason, and never
// read as good data.
#include "support.h"

#include <gtest/gtest.h>

#include <fstream>

using qeltest::Ref;

namespace {

class Damage : public ::testing::Test {
protected:
    void SetUp() override {
        qeltest::initLibrary();
        original = dir.file("plant.qel");
        qeltool_build(qeltest::sampleJson(), original);
        bytes = qeltest::readText(original);
        QelReader reader(original.c_str());
        for (unsigned id = 0; id < reader.GetObjectCount(); ++id)
            objects.push_back(qeljson::objectToJson(*Ref(reader.ReadObject(id))));
    }

    static void qeltool_build(const std::string& json, const std::string& path) {
        qeljson::build(json, "plant.json", path);
    }

    // Reads everything the damaged file offers. Returns the number of faults met; any object
    // read without a fault must equal the original.
    int readAll(const std::string& path) {
        int faults = 0;
        try {
            QelReader reader(path.c_str());
            EXPECT_EQ(reader.GetObjectCount(), objects.size());
            for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
                try {
                    Ref o(reader.ReadObject(id));
                    EXPECT_EQ(qeljson::objectToJson(*o), objects[id]) << "object " << id << " read wrong";
                } catch (const QelException& e) {
                    ++faults;
                    expectReason(e, path);
                }
            }
        } catch (const QelException& e) {
            ++faults;
            expectReason(e, path);
        }
        return faults;
    }

    static void expectReason(const QelException& e, const std::string& path) {
        EXPECT_NE(std::string(e.GetReason()).find(path), std::string::npos) << e.GetReason();
    }

    qeltest::ScratchDir dir;
    std::string original;
    std::string bytes;
    std::vector<std::string> objects;
};

} // namespace

TEST_F(Damage, EveryTruncationIsRefusedOnOpen) {
    const std::string cut = dir.file("cut.qel");
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        qeltest::writeText(cut, bytes.substr(0, length));
        try {
            QelReader reader(cut.c_str());
            ADD_FAILURE() << "a file cut to " << length << " bytes opened";
        } catch (const QelException& e) {
            expectReason(e, cut);
        }
    }
}

TEST_F(Damage, EveryFlippedBitIsFoundAndNothingWrongIsRead) {
    const std::string flipped = dir.file("flipped.qel");
    for (std::size_t offset = 0; offset < bytes.size(); ++offset) {
        std::string copy = bytes;
        copy[offset] = static_cast<char>(copy[offset] ^ (1 << (offset % 8)));
        qeltest::writeText(flipped, copy);
        EXPECT_GT(readAll(flipped), 0) << "a flipped bit at offset " << offset << " went unnoticed";
    }
}

TEST_F(Damage, MessagesSayWhereTheDamageIs) {
    // Damage inside the last object's bytes is reported for that object alone.
    const unsigned last = static_cast<unsigned>(objects.size() - 1);
    // The last object is the Header; its class name is stored in its first bytes.
    const std::size_t at = bytes.find("Header");
    ASSERT_NE(at, std::string::npos);
    std::string copy = bytes;
    copy[at] = 'h';
    const std::string path = dir.file("header-damaged.qel");
    qeltest::writeText(path, copy);
    QelReader damaged(path.c_str());
    EXPECT_NO_THROW(Ref(damaged.ReadObject(0u)));
    try {
        Ref(damaged.ReadObject(last));
        FAIL() << "the damaged object was read";
    } catch (const QelException& e) {
        EXPECT_NE(std::string(e.GetReason()).find("object " + std::to_string(last)), std::string::npos)
            << e.GetReason();
        EXPECT_NE(std::string(e.GetReason()).find("checksum"), std::string::npos) << e.GetReason();
    }
}
