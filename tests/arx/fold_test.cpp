// Tags that many entities share fold away when closed and come back when reached: whatever is
// asked of a folded extension dictionary or its record gets the answer the made objects give.
#include "arx_test.h"

namespace {

resbuf* tagChain() {
    return acutBuildList(1, L"Pointset", 70, 7, 40, 2.5, 0);
}

class FoldTest : public ArxTest {
protected:
    void SetUp() override {
        ArxTest::SetUp();
        resbuf* chain = tagChain();
        shared.setFromRbChain(*chain);
        acutRelRb(chain);
    }

    AcDbObjectId point() { return append(new AcDbPoint({1, 2, 3})); }

    // Tags the entity as the module does: its extension dictionary, the record under "MemberRec"
    // with data copied from the shared one (or its own chain), each object closed in turn.
    void tag(AcDbObjectId id, bool ownData = false) {
        Opened<AcDbEntity> entity(id, AcDb::kForWrite);
        ASSERT_EQ(entity->createExtensionDictionary(), Acad::eOk);
        AcDbDictionary* dictionary = nullptr;
        ASSERT_EQ(acdbOpenObject(dictionary, entity->extensionDictionary(), AcDb::kForWrite),
                  Acad::eOk);
        auto* record = new AcDbXrecord;
        AcDbObjectId recordId;
        ASSERT_EQ(dictionary->setAt(L"MemberRec", record, recordId), Acad::eOk);
        dictionary->close();
        if (ownData) {
            resbuf* chain = tagChain();
            EXPECT_EQ(record->setFromRbChain(*chain), Acad::eOk);
            acutRelRb(chain);
        } else {
            EXPECT_EQ(record->copyFrom(&shared), Acad::eOk);
        }
        record->close();
    }

    AcDbObjectId dictionaryOf(AcDbObjectId id) {
        Opened<AcDbEntity> entity(id);
        return entity->extensionDictionary();
    }

    AcDbObjectId recordOf(AcDbObjectId id) {
        Opened<AcDbDictionary> dictionary(dictionaryOf(id));
        AcDbObjectId record;
        if (dictionary.object) dictionary->getAt(L"memberrec", record);
        return record;
    }

    // The record's data as group codes and values, "" when it cannot be read.
    std::wstring tagText(AcDbObjectId id) {
        Opened<AcDbXrecord> record(recordOf(id));
        resbuf* chain = nullptr;
        if (!record.object || record->rbChain(&chain) != Acad::eOk) return L"";
        std::wstring text;
        for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
            text += std::to_wstring(rb->restype) + L"=";
            if (rb->restype == 1) text += rb->resval.rstring;
            if (rb->restype == 70) text += std::to_wstring(rb->resval.rint);
            if (rb->restype == 40) text += std::to_wstring(rb->resval.rreal);
            text += L";";
        }
        acutRelRb(chain);
        return text;
    }

    AcDbXrecord shared;
};

TEST_F(FoldTest, AFoldedTagAnswersAsTheMadeOneAndFoldsAgainWhenClosed) {
    const AcDbObjectId folded = point();
    tag(folded);
    const AcDbObjectId made = point();
    tag(made, true);
    const AcDbObjectId dictionary = dictionaryOf(folded);
    EXPECT_TRUE(acdbHostIsFolded(dictionary));
    EXPECT_FALSE(acdbHostIsFolded(dictionaryOf(made))); // data of its own
    // Handles as made: the dictionary right after its entity, the record after it.
    const Adesk::UInt64 handle = folded.handle();
    EXPECT_EQ(Adesk::UInt64(dictionary.handle()), handle + 1);
    AcDbObjectId byHandle;
    ASSERT_EQ(db->getAcDbObjectId(byHandle, false, AcDbHandle(handle + 2)), Acad::eOk);
    EXPECT_TRUE(acdbHostIsFolded(byHandle));
    // Asked without opening, it stays folded.
    EXPECT_EQ(dictionary.objectClass(), AcDbDictionary::desc());
    EXPECT_EQ(byHandle.objectClass(), AcDbXrecord::desc());
    EXPECT_TRUE(byHandle.isValid());
    AcDbEntity* notAnEntity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(notAnEntity, dictionary, AcDb::kForRead), Acad::eNotAnEntity);
    EXPECT_TRUE(acdbHostIsFolded(dictionary));

    EXPECT_EQ(tagText(folded), tagText(made));
    EXPECT_EQ(tagText(folded), L"1=Pointset;70=7;40=2.500000;");
    {
        Opened<AcDbDictionary> open(dictionary);
        ASSERT_EQ(open.status, Acad::eOk);
        EXPECT_FALSE(acdbHostIsFolded(dictionary));
        EXPECT_EQ(open->ownerId(), folded);
        EXPECT_EQ(open->numEntries(), 1u);
        Opened<AcDbXrecord> record(byHandle);
        ASSERT_EQ(record.status, Acad::eOk);
        EXPECT_EQ(record->ownerId(), dictionary);
        EXPECT_EQ(recordOf(folded), byHandle);
    }
    EXPECT_TRUE(acdbHostIsFolded(dictionary));
    EXPECT_TRUE(acdbHostIsFolded(byHandle));
    // Handles stay in step: the next object takes the one after the last tag.
    const AcDbObjectId next = point();
    EXPECT_EQ(Adesk::UInt64(next.handle()), Adesk::UInt64(made.handle()) + 3);
}

TEST_F(FoldTest, ErasingTheOwnerErasesItsFoldedTagAndUnerasingBringsItBack) {
    const AcDbObjectId id = point();
    tag(id);
    const AcDbObjectId dictionary = dictionaryOf(id);
    const AcDbObjectId record = recordOf(id);
    ASSERT_TRUE(acdbHostIsFolded(dictionary));
    {
        Opened<AcDbPoint> p(id, AcDb::kForWrite);
        ASSERT_EQ(p->erase(), Acad::eOk);
    }
    EXPECT_TRUE(dictionary.isErased());
    EXPECT_TRUE(record.isErased());
    AcDbDictionary* gone = nullptr;
    EXPECT_EQ(acdbOpenObject(gone, dictionary, AcDb::kForRead), Acad::eWasErased);
    AcDbPoint* p = nullptr;
    ASSERT_EQ(acdbOpenObject(p, id, AcDb::kForWrite, true), Acad::eOk);
    EXPECT_EQ(p->erase(false), Acad::eOk);
    p->close();
    EXPECT_FALSE(dictionary.isErased());
    EXPECT_FALSE(record.isErased());
    EXPECT_EQ(tagText(id), L"1=Pointset;70=7;40=2.500000;");
}

// Whatever the pair gains beyond its one shared record keeps it made.
TEST_F(FoldTest, APairThatGainedMoreStaysMade) {
    const AcDbObjectId twoEntries = point(), erasedRecord = point(), withXData = point();
    for (const AcDbObjectId& id : {twoEntries, erasedRecord, withXData})
        tag(id);
    {
        Opened<AcDbDictionary> dictionary(dictionaryOf(twoEntries), AcDb::kForWrite);
        auto* more = new AcDbXrecord;
        AcDbObjectId moreId;
        ASSERT_EQ(dictionary->setAt(L"Other", more, moreId), Acad::eOk);
        more->close();
    }
    EXPECT_FALSE(acdbHostIsFolded(dictionaryOf(twoEntries)));
    EXPECT_EQ(tagText(twoEntries), L"1=Pointset;70=7;40=2.500000;");
    {
        Opened<AcDbXrecord> record(recordOf(erasedRecord), AcDb::kForWrite);
        ASSERT_EQ(record->erase(), Acad::eOk);
    }
    EXPECT_FALSE(acdbHostIsFolded(dictionaryOf(erasedRecord)));
    EXPECT_TRUE(recordOf(erasedRecord).isNull());
    {
        Opened<AcDbXrecord> record(recordOf(withXData), AcDb::kForWrite);
        resbuf* xdata = acutBuildList(1001, L"ACAD", 1000, L"note", 0);
        EXPECT_EQ(record->setXData(xdata), Acad::eOk);
        acutRelRb(xdata);
    }
    EXPECT_FALSE(acdbHostIsFolded(recordOf(withXData)));
    Opened<AcDbXrecord> record(recordOf(withXData));
    resbuf* xdata = record->xData(L"ACAD");
    ASSERT_NE(xdata, nullptr);
    acutRelRb(xdata);
}

} // namespace
