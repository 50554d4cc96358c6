// Files whose checksums are right but whose contents lie: lengths, counts and nesting that
// point outside the object are refused with a reason, never followed.
#include "support.h"

#include "format.h"

#include <gtest/gtest.h>

#include <cstring>
#include <xxhash.h>

using qeltest::Ref;

namespace {

std::uint64_t load64(const std::string& b, std::size_t at) {
    std::uint64_t v;
    std::memcpy(&v, b.data() + at, 8);
    return v;
}
void store32(std::string& b, std::size_t at, std::uint32_t v) { std::memcpy(b.data() + at, &v, 4); }
void store64(std::string& b, std::size_t at, std::uint64_t v) { std::memcpy(b.data() + at, &v, 8); }

class Hostile : public ::testing::Test {
protected:
    void SetUp() override {
        qeltest::initLibrary();
        // One object: class "Obj", a string param "s" and a double array "d".
        Ref o(QelObject::Create("Obj"));
        o->AddOrReplaceParam(QelParam::Create("s", "text"));
        const double d[2] = {1, 2};
        o->AddOrReplaceParam(QelParam::Create("d", d, 2));
        const std::string path = dir.file("good.qel");
        QelWriter w(path.c_str());
        w.WriteObject(o.get());
        w.Close();
        bytes = qeltest::readText(path);
    }

    // Where object 0 starts, from the index.
    std::size_t objectStart() const {
        return load64(bytes, load64(bytes, qel::format::header::indexOffset));
    }

    // Recomputes every checksum so that only the decoder's own checks stand in the way.
    std::string reseal(std::string b) const {
        namespace h = qel::format::header;
        const std::uint64_t index = load64(b, h::indexOffset);
        const std::uint64_t offset = load64(b, index), size = load64(b, index + 8);
        if (offset <= b.size() && size <= b.size() - offset)
            store64(b, index + 16, XXH3_64bits(b.data() + offset, size));
        store64(b, h::tableChecksum, XXH3_64bits(b.data() + index, b.size() - index));
        store64(b, h::headerChecksum, XXH3_64bits(b.data(), h::headerChecksum));
        return b;
    }

    std::string reasonReading(const std::string& b) {
        const std::string path = dir.file("hostile.qel");
        qeltest::writeText(path, reseal(b));
        try {
            QelReader reader(path.c_str());
            Ref o(reader.ReadObject(0u));
        } catch (const QelException& e) {
            return e.GetReason();
        }
        return "(read without complaint)";
    }

    qeltest::ScratchDir dir;
    std::string bytes;
};

// Layout of the test object, from its start: param count and class name length at 0, "Obj\0"
// padded at 8; param "s": type and name length at 16, "s\0" padded at 24, string length at 32,
// "text\0" padded at 40; param "d": type at 48, name length, "d\0" padded at 56, count at 64.
constexpr std::size_t kParamCount = 0, kStringLength = 32, kSecondType = 48, kArrayCount = 64;

} // namespace

TEST_F(Hostile, ResealedGoodFileStillReads) {
    EXPECT_EQ(reasonReading(bytes), "(read without complaint)");
}

TEST_F(Hostile, LyingCountsAndLengthsAreRefused) {
    const std::size_t at = objectStart();
    struct Case {
        const char* what;
        std::size_t offset;
        std::uint64_t value;
        bool wide;
        const char* expected;
    } cases[] = {
        {"param count", kParamCount, 0xFFFFFFFFu, false, "param count"},
        {"string length", kStringLength, 1ull << 40, true, "param 0 ('s'): string"},
        {"array count", kArrayCount, 0xFFFFFFFFull, true, "param 1 ('d'): array"},
        {"array count past 32 bits", kArrayCount, 1ull << 33, true, "param 1 ('d'): array"},
        {"type", kSecondType, 99, false, "unknown param type 99"},
    };
    for (const Case& c : cases) {
        std::string b = bytes;
        if (c.wide) store64(b, at + c.offset, c.value);
        else store32(b, at + c.offset, static_cast<std::uint32_t>(c.value));
        const std::string reason = reasonReading(b);
        EXPECT_NE(reason.find(c.expected), std::string::npos) << c.what << ": " << reason;
        EXPECT_NE(reason.find("object 0"), std::string::npos) << c.what << ": " << reason;
    }
}

TEST_F(Hostile, IndexPointingOutsideTheObjectsIsRefused) {
    std::string b = bytes;
    const std::uint64_t index = load64(b, qel::format::header::indexOffset);
    store64(b, index, index); // the object "starts" at the index itself
    EXPECT_NE(reasonReading(b).find("out of range"), std::string::npos);
    b = bytes;
    store64(b, index + 8, 1ull << 50); // and is larger than the file
    EXPECT_NE(reasonReading(b).find("out of range"), std::string::npos);
}

TEST_F(Hostile, DeepNestingIsRefusedWithoutExhaustingTheStack) {
    // A chain of objects nested 200 deep, built by hand in the stored form.
    std::string body;
    auto u32 = [&](std::string& s, std::uint32_t v) { s.append(reinterpret_cast<const char*>(&v), 4); };
    auto u64 = [&](std::string& s, std::uint64_t v) { s.append(reinterpret_cast<const char*>(&v), 8); };
    std::string inner;
    u32(inner, 0);
    u32(inner, 1);
    inner.append("X\0\0\0\0\0\0\0", 8);
    for (int level = 0; level < 200; ++level) {
        std::string outer;
        u32(outer, 1);
        u32(outer, 1);
        outer.append("X\0\0\0\0\0\0\0", 8);
        u32(outer, QelObjectType);
        u32(outer, 1);
        outer.append("c\0\0\0\0\0\0\0", 8);
        u64(outer, inner.size());
        outer += inner;
        inner.swap(outer);
    }
    std::string b = bytes;
    const std::size_t at = objectStart();
    const std::uint64_t index = load64(b, qel::format::header::indexOffset);
    // Put the chain where the object was and move the tables behind it.
    std::string tables = b.substr(index);
    b.resize(at);
    b += inner;
    const std::uint64_t newIndex = b.size();
    b += tables;
    store64(b, newIndex, at);
    store64(b, newIndex + 8, inner.size());
    store64(b, qel::format::header::indexOffset, newIndex);
    store64(b, qel::format::header::directoryOffset, newIndex + 24);
    store64(b, qel::format::header::fileSize, b.size());
    const std::string reason = reasonReading(b);
    EXPECT_NE(reason.find("nested deeper"), std::string::npos) << reason;
}
