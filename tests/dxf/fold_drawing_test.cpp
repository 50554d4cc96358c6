// A drawing whose entities' tags are folded saves as the one whose tags are made objects: the
// same file, byte for byte, and it reads back to the same file and the same tags.
#include <arx/acdb.h>
#include <arx/arx.h>
#include <arx/dbhost.h>

#include "../support/model_space.h"
#include "drawing_test.h"

#include <memory>

namespace {

resbuf* tagChain() {
    return acutBuildList(1, L"Pointset", 70, 7, 40, 0.1, 1000, L"a\tb", 0);
}

// Points with the module's tag in their extension dictionaries: with shared data (which folds)
// or a record of each one's own (which does not). The third point is erased with its tag, the
// fifth keeps a second entry in its dictionary.
std::unique_ptr<AcDbDatabase> taggedPoints(bool shared) {
    auto db = std::make_unique<AcDbDatabase>();
    AcDbXrecord data;
    resbuf* chain = tagChain();
    data.setFromRbChain(*chain);
    AcDbBlockTableRecord* space = nullptr;
    acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite);
    for (int i = 0; i < 6; ++i) {
        auto* point = new AcDbPoint(AcGePoint3d(i, 2.0 * i, 0.5));
        space->appendAcDbEntity(point);
        point->setColorIndex(Adesk::UInt16(i + 1));
        point->createExtensionDictionary();
        AcDbDictionary* dictionary = nullptr;
        acdbOpenObject(dictionary, point->extensionDictionary(), AcDb::kForWrite);
        auto* record = new AcDbXrecord;
        AcDbObjectId id;
        dictionary->setAt(L"MemberRec", record, id);
        if (i == 4) {
            auto* more = new AcDbXrecord;
            dictionary->setAt(L"Other", more, id);
            more->close();
        }
        dictionary->close();
        if (shared)
            record->copyFrom(&data);
        else
            record->setFromRbChain(*chain);
        record->close();
        if (i == 2) point->erase();
        point->close();
    }
    space->close();
    acutRelRb(chain);
    return db;
}

// The extension dictionary of a drawing's first point.
AcDbObjectId firstDictionary(AcDbDatabase& db) {
    AcDbEntity* point = nullptr;
    acdbOpenObject(point, modelSpaceIds(db).front(), AcDb::kForRead);
    const AcDbObjectId id = point->extensionDictionary();
    point->close();
    return id;
}

// The group codes of the first point's tag, as the module reads it.
std::string firstTag(AcDbDatabase& db) {
    AcDbDictionary* dictionary = nullptr;
    if (acdbOpenObject(dictionary, firstDictionary(db), AcDb::kForRead) != Acad::eOk) return "";
    std::string text;
    AcDbObject* record = nullptr;
    if (dictionary->getAt(L"MemberRec", record, AcDb::kForRead) == Acad::eOk) {
        resbuf* chain = nullptr;
        AcDbXrecord::cast(record)->rbChain(&chain);
        for (const resbuf* rb = chain; rb; rb = rb->rbnext)
            text += std::to_string(rb->restype) + ";";
        acutRelRb(chain);
        record->close();
    }
    dictionary->close();
    return text;
}

TEST(FoldedTags, SaveAsMadeTagsAndReadBackTheSame) {
    auto folded = taggedPoints(true);
    auto made = taggedPoints(false);
    const AcDbObjectId dictionary = firstDictionary(*folded);
    ASSERT_TRUE(acdbHostIsFolded(dictionary)) << "the shared tags should have folded";

    const std::string text = drawingText(*folded);
    EXPECT_EQ(text, drawingText(*made));
    EXPECT_EQ(textDifference(text, drawingText(*made)), "");
    // Saving reached every tag; they fold again, and a second save is the same.
    EXPECT_TRUE(acdbHostIsFolded(dictionary));
    EXPECT_EQ(drawingText(*folded), text);
    EXPECT_EQ(acdbHostOpenObjectCount(folded.get()), 0u);

    auto back = dxf::readDrawing(text, "folded");
    EXPECT_EQ(drawingText(*back), text);
    EXPECT_EQ(firstTag(*back), "1;70;40;1000;");
    EXPECT_EQ(firstTag(*folded), firstTag(*back));
}

} // namespace
