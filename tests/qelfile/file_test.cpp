// Files: numbering, lookup by class, opening and closing, and what a failed write leaves.
#include "support.h"

#include <gtest/gtest.h>

#include <filesystem>

using qeltest::Ref;
namespace fs = std::filesystem;

namespace {

class Files : public ::testing::Test {
protected:
    void SetUp() override { qeltest::initLibrary(); }

    static Ref named(const char* cls, int tag) {
        Ref o(QelObject::Create(cls));
        o->AddOrReplaceParam(QelParam::Create("tag", tag));
        return o;
    }
    static int tagOf(QelObject* o) {
        int v = -1;
        o->GetParam("tag", 0)->GetValue(v);
        return v;
    }
    std::vector<std::string> leftovers() const {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(dir.path()))
            if (e.path().filename().string().find(".qeltmp-") != std::string::npos)
                names.push_back(e.path().filename().string());
        return names;
    }

    qeltest::ScratchDir dir;
};

std::string reasonOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const QelException& e) {
        return e.GetReason();
    }
    return "(no exception)";
}

} // namespace

TEST_F(Files, ObjectsAreNumberedInWritingOrderAndFoundByClass) {
    const std::string path = dir.file("plant.qel");
    {
        QelWriter writer;
        writer.Open(path.c_str());
        const char* classes[] = {"Cylinder", "Layer", "Cylinder", "Header", "Cylinder"};
        for (int i = 0; i < 5; ++i) EXPECT_EQ(writer.WriteObject(named(classes[i], i).get()), unsigned(i));
        writer.Close();
    }
    QelReader reader(path.c_str());
    EXPECT_EQ(reader.GetObjectCount(), 5u);
    for (unsigned id = 0; id < 5; ++id) EXPECT_EQ(tagOf(Ref(reader.ReadObject(id)).get()), int(id));
    EXPECT_EQ(reader.ReadObject(5u), nullptr);
    EXPECT_EQ(reader.ReadObject(0xFFFFFFFFu), nullptr);
    EXPECT_EQ(tagOf(Ref(reader.ReadObject("Header", 0)).get()), 3);
    EXPECT_EQ(tagOf(Ref(reader.ReadObject("Cylinder", 0)).get()), 0);
    EXPECT_EQ(tagOf(Ref(reader.ReadObject("Cylinder", 2)).get()), 4);
    EXPECT_EQ(reader.ReadObject("Cylinder", 3), nullptr);
    EXPECT_EQ(reader.ReadObject("cylinder", 0), nullptr) << "class names are exact in the library";
    EXPECT_EQ(reader.ReadObject("ModelSpace", 0), nullptr);
    // Each read hands out an object of its own.
    Ref a(reader.ReadObject(1u)), b(reader.ReadObject(1u));
    EXPECT_NE(a.get(), b.get());
}

TEST_F(Files, AnOpenedAndClosedWriterLeavesAnEmptyValidFile) {
    const std::string path = dir.file("empty.qel");
    {
        QelWriter writer(path.c_str());
        writer.Close();
    }
    QelReader reader(path.c_str());
    EXPECT_EQ(reader.GetObjectCount(), 0u);
    EXPECT_EQ(reader.ReadObject(0u), nullptr);
    EXPECT_EQ(reader.ReadObject("Header", 0), nullptr);
}

TEST_F(Files, InitialisingAgainIsHarmless) {
    for (int i = 0; i < 100; ++i) QelInit(0, 0, QelInitWords);
    QelWriter writer(dir.file("x.qel").c_str());
    writer.Close();
    QelReader reader(dir.file("x.qel").c_str());
    EXPECT_TRUE(reader.IsOpen());
}

TEST_F(Files, FailedOpensNameTheFileAndLeaveAHarmlessReader) {
    const std::string missing = dir.file("nowhere.qel");
    EXPECT_NE(reasonOf([&] { QelReader r(missing.c_str()); }).find(missing), std::string::npos);
    QelReader reader;
    EXPECT_THROW(reader.Open(missing.c_str()), QelException);
    EXPECT_FALSE(reader.IsOpen());
    EXPECT_THROW(reader.ReadObject(0u), QelException);
    reader.Close(); // and the destructor after it

    qeltest::writeText(dir.file("text.qel"), "this is not an object file at all, just some words");
    EXPECT_NE(reasonOf([&] { QelReader r(dir.file("text.qel").c_str()); }).find("not a QEL object file"),
              std::string::npos);
    qeltest::writeText(dir.file("zero.qel"), "");
    EXPECT_NE(reasonOf([&] { QelReader r(dir.file("zero.qel").c_str()); }).find("not a QEL object file"),
              std::string::npos);
    EXPECT_NE(reasonOf([&] { QelReader r(dir.path().c_str()); }).find("not a regular file"), std::string::npos);
}

TEST_F(Files, AWriterIntoAMissingFolderSaysSo) {
    const std::string path = dir.file("no/such/folder/out.qel");
    const std::string reason = reasonOf([&] { QelWriter w(path.c_str()); });
    EXPECT_NE(reason.find(path), std::string::npos) << reason;
    EXPECT_NE(reason.find("No such file or directory"), std::string::npos) << reason;
}

TEST_F(Files, AWriteThatNeverClosesLeavesTheOldFileAndNoDebris) {
    const std::string path = dir.file("model.qel");
    {
        QelWriter first(path.c_str());
        first.WriteObject(named("Header", 1).get());
        first.Close();
    }
    {
        QelWriter second(path.c_str());
        second.WriteObject(named("Cylinder", 2).get());
        second.WriteObject(named("Cylinder", 3).get());
        EXPECT_EQ(leftovers().size(), 1u) << "the new content goes to a temporary file first";
    } // destroyed without Close
    EXPECT_TRUE(leftovers().empty());
    QelReader reader(path.c_str());
    ASSERT_EQ(reader.GetObjectCount(), 1u);
    EXPECT_EQ(tagOf(Ref(reader.ReadObject("Header", 0)).get()), 1);
}

TEST_F(Files, AFileWhoseWriterNeverFinishedReadsAsIncomplete) {
    QelWriter writer(dir.file("model.qel").c_str());
    writer.WriteObject(named("Cylinder", 1).get());
    const auto temp = leftovers();
    ASSERT_EQ(temp.size(), 1u);
    // What a crash would leave behind: the temporary file as it stands.
    fs::copy_file(dir.path() / temp[0], dir.path() / "crashed.qel");
    const std::string reason = reasonOf([&] { QelReader r(dir.file("crashed.qel").c_str()); });
    EXPECT_NE(reason.find("incomplete"), std::string::npos) << reason;
    EXPECT_NE(reason.find("crashed.qel"), std::string::npos) << reason;
}

TEST_F(Files, AFileCanBeRewrittenFromItselfWhileItIsRead) {
    // An export merges over the objects of the file it came from, which may be the same path.
    const std::string path = dir.file("model.qel");
    {
        QelWriter w(path.c_str());
        for (int i = 0; i < 3; ++i) w.WriteObject(named("Cylinder", i).get());
        w.Close();
    }
    QelReader source(path.c_str());
    QelWriter target(path.c_str());
    for (unsigned id = 3; id-- > 0;) {
        Ref o(source.ReadObject(id));
        o->AddOrReplaceParam(QelParam::Create("tag", tagOf(o.get()) + 10));
        target.WriteObject(o.get());
    }
    target.Close();
    EXPECT_EQ(tagOf(Ref(source.ReadObject(0u)).get()), 0) << "the open reader still sees the old file";
    source.Close();
    QelReader result(path.c_str());
    ASSERT_EQ(result.GetObjectCount(), 3u);
    EXPECT_EQ(tagOf(Ref(result.ReadObject(0u)).get()), 12);
    EXPECT_EQ(tagOf(Ref(result.ReadObject(2u)).get()), 10);
}

TEST_F(Files, WritingWithoutAnOpenFileThrows) {
    QelWriter writer;
    EXPECT_FALSE(writer.IsOpen());
    EXPECT_THROW(writer.WriteObject(named("X", 0).get()), QelException);
    writer.Close(); // nothing to finish
    QelWriter open(dir.file("a.qel").c_str());
    EXPECT_THROW(open.WriteObject(nullptr), QelException);
}
