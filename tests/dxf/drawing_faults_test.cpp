// Damaged and hostile drawings are refused with the line of the fault; saving is all or nothing.
#include <filesystem>

#include <arx/acdb.h>
#include <arx/dbents.h>

#include "drawing_test.h"

namespace fs = std::filesystem;

namespace {

// The fixture with one piece of text replaced (the first occurrence after `after`).
std::string damaged(const std::string& after, const std::string& from, const std::string& to) {
    std::string text = fixtureText("ezdxf-every-kind.dxf");
    const size_t start = text.find(after);
    const size_t at = text.find(from, start == std::string::npos ? 0 : start);
    EXPECT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
    return text;
}

size_t lineOf(const std::string& text, const std::string& piece) {
    const size_t at = text.find(piece);
    return size_t(std::count(text.begin(), text.begin() + std::ptrdiff_t(at), '\n')) + 1;
}

struct Fault {
    const char* name;
    std::string text;
    const char* says;
};

TEST(DrawingFaults, EachIsRefusedWithItsLineAndReason) {
    const std::string whole = fixtureText("ezdxf-every-kind.dxf");
    const std::vector<Fault> faults = {
        {"truncated after a group code", whole.substr(0, whole.find("\n  0\nLINE\n") + 5),
         "group code 0 has no value line"},
        {"truncated between two pairs", whole.substr(0, whole.find("\n  0\nLINE\n") + 1),
         "section BLOCKS is not closed"},
        {"code not a number", damaged("AcDbLine", " 10\n", "1x0\n"),
         "group code '1x0' is not a number"},
        {"dangling group member", damaged("AcDbGroup", "340\n91\n", "340\nFFFF0\n"),
         "refers to handle FFFF0"},
        {"handle twice", damaged("\n  0\nCIRCLE\n", "  5\n98\n", "  5\n91\n"), "used twice"},
        {"count below zero", damaged("AcDbPolyline", " 90\n", " 90\n-"), "group 90"},
        {"polyline without its end", damaged("\n  0\nSEQEND\n", "\n  0\nSEQEND\n", "\n  0\nLINE\n"),
         "no SEQEND"},
        {"extended data of no application",
         damaged("1001\nMYAPP", "1001\nMYAPP", "1001\nNOSUCHAPP"), "APPID"},
        {"no header", whole.substr(whole.find("  0\nSECTION\n  2\nCLASSES")), "HEADER"},
        {"old version", damaged("$ACADVER", "AC1024", "AC1009"), "AC1009"},
        {"dictionary entry that is an entity", damaged("ACAD_LAYOUT", "350\nD\n", "350\n91\n"),
         "belongs elsewhere"},
        {"block reference without its block", damaged("AcDbBlockReference", "  2\nMYBLOCK\n", ""),
         "names no block"},
        {"point without y", damaged("AcDbCircle", " 20\n", " 70\n"),
         "CIRCLE: group 10 has no y coordinate"},
        {"table record of an unknown type",
         damaged("  2\nLAYER\n", "\n  0\nLAYER\n", "\n  0\nnan\n"),
         "a record of type 'nan' cannot stand in the AcDbLayerTable"},
    };
    for (const Fault& f : faults) {
        try {
            dxf::readDrawing(f.text, "bad.dxf");
            ADD_FAILURE() << f.name << ": read without complaint";
        } catch (const dxf::DxfError& e) {
            EXPECT_NE(std::string(e.what()).find("bad.dxf"), std::string::npos) << f.name;
            EXPECT_NE(std::string(e.what()).find(f.says), std::string::npos)
                << f.name << ": " << e.what();
        }
    }
}

TEST(DrawingFaults, TheLineNamedIsTheLineOfTheFault) {
    const std::string text = damaged("AcDbGroup", "340\n91\n", "340\nFFFF0\n");
    try {
        dxf::readDrawing(text, "bad.dxf");
        FAIL() << "read without complaint";
    } catch (const dxf::DxfError& e) {
        EXPECT_EQ(e.line(), lineOf(text, "340\nFFFF0\n"));
    }
}

class DrawingFiles : public ::testing::Test {
protected:
    void SetUp() override {
        folder = fs::temp_directory_path() /
                 ("qel-dxf-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }
    fs::path folder;
};

TEST_F(DrawingFiles, SaveThenOpenGivesTheDrawingBack) {
    auto db = dxf::readDrawing(fixtureText("ezdxf-every-kind.dxf"), "every-kind");
    std::string message;
    const fs::path path = folder / "saved.dxf";
    ASSERT_TRUE(dxf::saveDrawing(*db, path.string(), message)) << message;
    auto back = dxf::openDrawing(path.string(), message);
    ASSERT_NE(back, nullptr) << message;
    EXPECT_EQ(textDifference(drawingText(*back), drawingText(*db)), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1)
        << "no temporary file is left";
}

TEST_F(DrawingFiles, AFailedSaveLeavesTheOldFileAndNoTemporary) {
    auto db = dxf::readDrawing(fixtureText("ezdxf-every-kind.dxf"), "every-kind");
    // A folder where the file should go: the new text cannot take its place.
    const fs::path blocked = folder / "blocked.dxf";
    fs::create_directories(blocked / "inside");
    std::string message;
    EXPECT_FALSE(dxf::saveDrawing(*db, blocked.string(), message));
    EXPECT_NE(message.find("old file is unchanged"), std::string::npos) << message;
    EXPECT_TRUE(fs::is_directory(blocked / "inside"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
    // A folder that does not exist.
    EXPECT_FALSE(dxf::saveDrawing(*db, (folder / "no" / "such.dxf").string(), message));
    EXPECT_NE(message.find("the folder " + (folder / "no").string() + " does not exist"),
              std::string::npos)
        << message;
    EXPECT_EQ(message.find(".saving-"), std::string::npos) << message;
}

// An entity of a class that has no form in a file.
class Unwritable : public AcDbEntity {
public:
    static AcRxClass* desc() {
        static AcRxClass cls(L"Unwritable", AcDbEntity::desc());
        return &cls;
    }
    AcRxClass* isA() const override { return desc(); }
};

// Saves a drawing, adds the entity, and expects the next save to fail with the reason in its
// message, leaving the saved file as it was and no temporary beside it.
void expectRefusedSaveKeepsTheOldFile(const fs::path& folder, AcDbEntity* entity,
                                      const std::string& reason) {
    AcDbDatabase db;
    acdbHostApplicationServices()->setWorkingDatabase(&db);
    const fs::path path = folder / "kept.dxf";
    std::string message;
    ASSERT_TRUE(dxf::saveDrawing(db, path.string(), message)) << message;
    const std::string before = drawingText(db);
    AcDbBlockTableRecord* space = nullptr;
    acdbOpenObject(space, db.modelSpaceId(), AcDb::kForWrite);
    space->appendAcDbEntity(entity);
    entity->close();
    space->close();
    EXPECT_FALSE(dxf::saveDrawing(db, path.string(), message));
    EXPECT_NE(message.find(reason), std::string::npos) << message;
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_TRUE(text.str() == before) << "the old file changed";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

TEST_F(DrawingFiles, ASaveThatCannotWriteEverythingLeavesTheOldFile) {
    expectRefusedSaveKeepsTheOldFile(folder, new Unwritable, "Unwritable");
}

// A value that is not a number would be written as text that no reader takes back, this one
// included: the save stops instead and the old file stays.
TEST_F(DrawingFiles, ASaveOfAValueThatIsNotANumberLeavesTheOldFile) {
    expectRefusedSaveKeepsTheOldFile(
        folder, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(std::nan(""), 0, 0)),
        "not a finite number");
}

TEST_F(DrawingFiles, OpeningAMissingOrDamagedFileSaysWhy) {
    std::string message;
    EXPECT_EQ(dxf::openDrawing((folder / "none.dxf").string(), message), nullptr);
    EXPECT_NE(message.find("cannot be read"), std::string::npos) << message;
    const fs::path bad = folder / "bad.dxf";
    std::ofstream(bad) << "  0\nSECTION\n  2\nHEADER\n";
    EXPECT_EQ(dxf::openDrawing(bad.string(), message), nullptr);
    EXPECT_NE(message.find("bad.dxf"), std::string::npos) << message;
}

} // namespace
