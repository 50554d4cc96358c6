#include <cmath>
#include <cstring>

#include "arx_test.h"

namespace {

class RecordsTest : public ArxTest {
protected:
    AcDbObjectId point() { return append(new AcDbPoint({1, 2, 3})); }
};

TEST_F(RecordsTest, ExtensionDictionaryIsMadeOnce) {
    Opened<AcDbPoint> p(point(), AcDb::kForWrite);
    EXPECT_TRUE(p->extensionDictionary().isNull());
    ASSERT_EQ(p->createExtensionDictionary(), Acad::eOk);
    const AcDbObjectId dict = p->extensionDictionary();
    EXPECT_EQ(p->createExtensionDictionary(), Acad::eAlreadyInDb);
    EXPECT_EQ(p->extensionDictionary(), dict);
    Opened<AcDbDictionary> d(dict);
    EXPECT_EQ(d->ownerId(), p->objectId());
    EXPECT_EQ(d->numEntries(), 0u);
}

TEST_F(RecordsTest, ExtensionDictionaryNeedsWriteAndADatabase) {
    AcDbPoint loose;
    EXPECT_EQ(loose.createExtensionDictionary(), Acad::eNotInDatabase);
    Opened<AcDbPoint> p(point(), AcDb::kForRead);
    EXPECT_EQ(p->createExtensionDictionary(), Acad::eNotOpenForWrite);
}

TEST_F(RecordsTest, SetAtOverAKeyReplacesTheEntry) {
    AcDbDictionary* dict = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(dict, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId first, second, found;
    auto* a = new AcDbXrecord;
    ASSERT_EQ(dict->setAt(L"MyKey", a, first), Acad::eOk);
    a->close();
    auto* b = new AcDbXrecord;
    ASSERT_EQ(dict->setAt(L"MYKEY", b, second), Acad::eOk);
    b->close();
    EXPECT_EQ(dict->getAt(L"mykey", found), Acad::eOk);
    EXPECT_EQ(found, second);
    EXPECT_TRUE(first.isErased());
    EXPECT_EQ(dict->numEntries(), 2u); // ACAD_GROUP and MyKey
    EXPECT_EQ(dict->getAt(L"Other", found), Acad::eKeyNotFound);
    AcDbXrecord refused;
    EXPECT_EQ(dict->setAt(L"", &refused, found), Acad::eInvalidKey);
    ACHAR* key = nullptr;
    ASSERT_EQ(dict->nameAt(second, key), Acad::eOk);
    EXPECT_STREQ(key, L"MYKEY");
    acutDelString(key);
    // Entries in the order they were made.
    AcDbDictionaryIterator* it = dict->newIterator();
    EXPECT_STREQ(it->name(), L"ACAD_GROUP");
    it->next();
    EXPECT_EQ(it->objectId(), second);
    EXPECT_FALSE(it->next());
    delete it;
    EXPECT_EQ(dict->remove(L"mykey"), Acad::eOk);
    EXPECT_FALSE(dict->has(L"MyKey"));
    dict->close();
}

TEST_F(RecordsTest, LargeDictionariesFindKeysWithoutRegardToCase) {
    AcDbDictionary* dict = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(dict, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId ids[40];
    for (int i = 0; i < 40; ++i) {
        auto* x = new AcDbXrecord;
        dict->setAt((L"Key" + std::to_wstring(i)).c_str(), x, ids[i]);
        x->close();
    }
    AcDbObjectId found;
    ASSERT_EQ(dict->getAt(L"KEY37", found), Acad::eOk);
    EXPECT_EQ(found, ids[37]);
    EXPECT_EQ(dict->remove(L"key3"), Acad::eOk);
    ASSERT_EQ(dict->getAt(L"key39", found), Acad::eOk);
    EXPECT_EQ(found, ids[39]);
    EXPECT_FALSE(dict->has(L"key3"));
    dict->close();
}

// The 29 items of the module's member record: texts, ints, reals, handles as text.
resbuf* memberRecordChain() {
    resbuf* chain = acutBuildList(1, L"C:\\models\\plant.qel", 1, L"*A12", 90, 20, 90, 123456, 90,
                                  2, 90, 70000, 90, 0, 90, 0, 90, 0, 0);
    resbuf* tail = chain;
    while (tail->rbnext)
        tail = tail->rbnext;
    const double reals[] = {0.1, -2.5, 1e300, 0.0, 3.0, 4.0, 5.0, 6.0, 7.0, 0.3333333333333333};
    for (double r : reals)
        tail = tail->rbnext = acutBuildList(40, r, 0);
    tail = tail->rbnext = acutBuildList(1, L"0", 1, L"2A", 0);
    tail = tail->rbnext;
    const double more[] = {8.0, 9.0, 10.0, 11.0, 12.0, 0.0, -1.0, 1.0 / 3.0};
    for (double r : more)
        tail = tail->rbnext = acutBuildList(40, r, 0);
    return chain;
}

int length(const resbuf* chain) {
    int n = 0;
    for (; chain; chain = chain->rbnext)
        ++n;
    return n;
}

TEST_F(RecordsTest, XrecordKeepsItsChainExactly) {
    RbChain in(memberRecordChain());
    ASSERT_EQ(length(in.head), 29);
    AcDbObjectId recordId;
    {
        Opened<AcDbPoint> p(point(), AcDb::kForWrite);
        p->createExtensionDictionary();
        Opened<AcDbDictionary> dict(p->extensionDictionary(), AcDb::kForWrite);
        auto* record = new AcDbXrecord;
        ASSERT_EQ(dict->setAt(L"MemberRec", record, recordId), Acad::eOk);
        ASSERT_EQ(record->setFromRbChain(*in.head), Acad::eOk);
        record->close();
    }
    Opened<AcDbXrecord> record(recordId);
    resbuf* outRaw = nullptr;
    ASSERT_EQ(record->rbChain(&outRaw), Acad::eOk);
    RbChain out(outRaw);
    ASSERT_EQ(length(out.head), 29);
    for (const resbuf *a = in.head, *b = out.head; a && b; a = a->rbnext, b = b->rbnext) {
        ASSERT_EQ(a->restype, b->restype);
        if (a->restype == 1) {
            EXPECT_STREQ(a->resval.rstring, b->resval.rstring);
        } else if (a->restype == 90) {
            EXPECT_EQ(a->resval.rlong, b->resval.rlong);
        } else {
            EXPECT_EQ(std::memcmp(&a->resval.rreal, &b->resval.rreal, 8), 0);
        }
    }
}

// A tag copied onto many records shares its data: each copy reads the whole chain, and a record
// that gets new data, or goes with its database, leaves the others' data as it was.
TEST_F(RecordsTest, XrecordsCopiedFromOneKeepTheirDataApart) {
    RbChain in(memberRecordChain());
    AcDbXrecord tag;
    ASSERT_EQ(tag.setFromRbChain(*in.head), Acad::eOk);
    std::vector<AcDbObjectId> ids;
    for (int i = 0; i < 3; ++i) {
        Opened<AcDbPoint> p(point(), AcDb::kForWrite);
        p->createExtensionDictionary();
        Opened<AcDbDictionary> dict(p->extensionDictionary(), AcDb::kForWrite);
        auto* record = new AcDbXrecord;
        AcDbObjectId id;
        ASSERT_EQ(dict->setAt(L"MemberRec", record, id), Acad::eOk);
        ASSERT_EQ(record->copyFrom(&tag), Acad::eOk);
        record->close();
        ids.push_back(id);
    }
    {
        Opened<AcDbXrecord> first(ids[0], AcDb::kForWrite);
        RbChain other(acutBuildList(1, L"changed", 0));
        ASSERT_EQ(first->setFromRbChain(*other.head), Acad::eOk);
        Opened<AcDbXrecord> second(ids[1]);
        EXPECT_EQ(first->copyFrom(second.get()), Acad::eOk); // back to the tag, from a copy
        EXPECT_EQ(first->copyFrom(&tag), Acad::eOk);
        AcDbPoint notARecord;
        EXPECT_EQ(first->copyFrom(&notARecord), Acad::eWrongObjectType);
    }
    {
        RbChain other(acutBuildList(1, L"changed", 0));
        Opened<AcDbXrecord> third(ids[2], AcDb::kForWrite);
        ASSERT_EQ(third->setFromRbChain(*other.head), Acad::eOk);
    }
    tag.setFromRbChain(*RbChain(acutBuildList(90, 7, 0)).head);
    for (int i = 0; i < 2; ++i) {
        Opened<AcDbXrecord> record(ids[size_t(i)]);
        resbuf* raw = nullptr;
        ASSERT_EQ(record->rbChain(&raw), Acad::eOk);
        RbChain out(raw);
        ASSERT_EQ(length(out.head), 29) << i;
        EXPECT_STREQ(out.head->resval.rstring, L"C:\\models\\plant.qel");
        const resbuf* last = out.head;
        while (last->rbnext)
            last = last->rbnext;
        EXPECT_DOUBLE_EQ(last->resval.rreal, 1.0 / 3.0);
    }
    Opened<AcDbXrecord> third(ids[2]);
    resbuf* raw = nullptr;
    third->rbChain(&raw);
    RbChain changed(raw);
    ASSERT_EQ(length(changed.head), 1);
    EXPECT_STREQ(changed.head->resval.rstring, L"changed");
    Opened<AcDbXrecord> readOnly(ids[1]);
    EXPECT_EQ(readOnly->copyFrom(&tag), Acad::eNotOpenForWrite);
}

TEST_F(RecordsTest, XrecordRefusesHandlesAndKeepsItsData) {
    Opened<AcDbPoint> p(point(), AcDb::kForWrite);
    p->createExtensionDictionary();
    Opened<AcDbDictionary> dict(p->extensionDictionary(), AcDb::kForWrite);
    auto* record = new AcDbXrecord;
    AcDbObjectId id;
    dict->setAt(L"R", record, id);
    RbChain text(acutBuildList(1, L"kept", 0));
    ASSERT_EQ(record->setFromRbChain(*text.head), Acad::eOk);
    RbChain bad(acutBuildList(1, L"x", 5, L"2A", 0));
    EXPECT_EQ(record->setFromRbChain(*bad.head), Acad::eInvalidResBuf);
    resbuf* raw = nullptr;
    record->rbChain(&raw);
    RbChain kept(raw);
    ASSERT_NE(kept.head, nullptr);
    EXPECT_STREQ(kept.head->resval.rstring, L"kept");
    EXPECT_EQ(kept.head->rbnext, nullptr);
    record->close();
}

TEST_F(RecordsTest, ExtendedDataNeedsARegisteredApplication) {
    Opened<AcDbPoint> p(point(), AcDb::kForWrite);
    EXPECT_EQ(p->xData(L"Tovi_Technologies"), nullptr);
    RbChain chain(acutBuildList(1001, L"Tovi_Technologies", 1000, L"Cylinder", 0));
    EXPECT_EQ(p->setXData(chain.head), Acad::eRegappIdNotFound);
    EXPECT_EQ(acdbRegApp(L"Tovi_Technologies"), RTNORM);
    EXPECT_EQ(acdbRegApp(L"TOVI_TECHNOLOGIES"), RTERROR);
    ASSERT_EQ(p->setXData(chain.head), Acad::eOk);
    RbChain noApp(acutBuildList(1000, L"stray", 0));
    EXPECT_EQ(p->setXData(noApp.head), Acad::eInvalidResBuf);
}

TEST_F(RecordsTest, ExtendedDataAppendsAndKeepsOtherApplications) {
    acdbRegApp(L"Tovi_Technologies");
    acdbRegApp(L"Other");
    Opened<AcDbPoint> p(point(), AcDb::kForWrite);
    RbChain other(acutBuildList(1001, L"Other", 1070, 7, 1040, 2.5, 0));
    ASSERT_EQ(p->setXData(other.head), Acad::eOk);
    // The module's way: read, append a 1000 text, write back.
    for (const ACHAR* text : {L"Valve", L"Valve_Stem"}) {
        resbuf* chain = p->xData(L"tovi_technologies");
        if (chain == nullptr) chain = acutBuildList(1001, L"Tovi_Technologies", 0);
        resbuf* tail = chain;
        while (tail->rbnext)
            tail = tail->rbnext;
        tail->rbnext = acutBuildList(1000, text, 0);
        ASSERT_EQ(p->setXData(chain), Acad::eOk);
        acutRelRb(chain);
    }
    RbChain mine(p->xData(L"Tovi_Technologies"));
    ASSERT_EQ(length(mine.head), 3);
    EXPECT_STREQ(mine.head->rbnext->resval.rstring, L"Valve");
    EXPECT_STREQ(mine.head->rbnext->rbnext->resval.rstring, L"Valve_Stem");
    RbChain kept(p->xData(L"Other"));
    ASSERT_EQ(length(kept.head), 3);
    EXPECT_EQ(kept.head->rbnext->resval.rint, 7);
    RbChain all(p->xData());
    EXPECT_EQ(length(all.head), 6);
    // An application with no data after it loses its data.
    RbChain drop(acutBuildList(1001, L"Other", 0));
    ASSERT_EQ(p->setXData(drop.head), Acad::eOk);
    EXPECT_EQ(p->xData(L"Other"), nullptr);
    EXPECT_NE(RbChain(p->xData(L"Tovi_Technologies")).head, nullptr);
}

TEST(ResultBuffers, BuildListTakesValuesByType) {
    const ads_point p = {1, 2, 3};
    ads_name name = {42, 0};
    RbChain chain(acutBuildList(RTSTR, L"_spline", RT3DPOINT, p, RTPOINT, p, RTSHORT, 5, RTLONG, -7,
                                RTREAL, 2.5, RTENAME, name, RTLB, RTLE, 62, 3, 10, p, 0));
    const resbuf* rb = chain.head;
    ASSERT_NE(rb, nullptr);
    EXPECT_STREQ(rb->resval.rstring, L"_spline");
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rpoint[2], 3.0);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rpoint[2], 0.0); // a 2-D point
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rint, 5);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rlong, -7);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rreal, 2.5);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rlname[0], 42);
    rb = rb->rbnext->rbnext->rbnext;
    EXPECT_EQ(rb->restype, 62);
    EXPECT_EQ(rb->resval.rint, 3);
    EXPECT_EQ(rb->rbnext->resval.rpoint[1], 2.0);
    EXPECT_EQ(acutBuildList(12345, 1, 0), nullptr);
    resbuf* fresh = acutNewRb(RTSTR);
    EXPECT_EQ(fresh->resval.rstring, nullptr);
    fresh->resval.rstring = acutNewString(L"owned");
    EXPECT_EQ(acutRelRb(fresh), RTNORM);
}

} // namespace

namespace {

// Values that the packed form of a chain has to carry without loss.
TEST_F(RecordsTest, XrecordKeepsEveryKindOfValue) {
    const std::wstring longText(300, L'x');
    const ads_point where = {1.5, -2.25, 1e-300};
    ads_name self;
    const AcDbObjectId pointId = point();
    acdbGetAdsName(self, pointId);
    ads_binary chunk = {4, const_cast<char*>("\x01\x00\xFF\x7F")};
    RbChain in(acutBuildList(1, L"Gr\u00FC\u00DFe \u6C34 \U0001F600", 2, longText.c_str(), 3, L"",
                             10, where, 40, -0.0, 70, -32768, 90, -2147483647 - 1, 160,
                             Adesk::Int64(1) << 40, 290, 1, 310, &chunk, 330, self, 0));
    AcDbXrecord record;
    ASSERT_EQ(record.setFromRbChain(*in.head), Acad::eOk);
    resbuf* raw = nullptr;
    ASSERT_EQ(record.rbChain(&raw), Acad::eOk);
    RbChain out(raw);
    const resbuf* rb = out.head;
    EXPECT_STREQ(rb->resval.rstring, L"Gr\u00FC\u00DFe \u6C34 \U0001F600");
    rb = rb->rbnext;
    EXPECT_EQ(std::wstring(rb->resval.rstring), longText);
    rb = rb->rbnext;
    ASSERT_NE(rb->resval.rstring, nullptr); // an empty text comes back as a text
    EXPECT_STREQ(rb->resval.rstring, L"");
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rpoint[0], 1.5);
    EXPECT_EQ(rb->resval.rpoint[2], 1e-300);
    rb = rb->rbnext;
    EXPECT_TRUE(std::signbit(rb->resval.rreal)); // minus zero stays minus zero
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rint, -32768);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rlong, -2147483647 - 1);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.mnInt64, Adesk::Int64(1) << 40);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rint, 1);
    rb = rb->rbnext;
    ASSERT_EQ(rb->resval.rbinary.clen, 4);
    EXPECT_EQ(std::memcmp(rb->resval.rbinary.buf, "\x01\x00\xFF\x7F", 4), 0);
    rb = rb->rbnext;
    EXPECT_TRUE(ads_name_equal(rb->resval.rlname, self));
    EXPECT_EQ(rb->rbnext, nullptr);
}

TEST_F(RecordsTest, ExtendedDataHasALimit) {
    acdbRegApp(L"Big");
    Opened<AcDbPoint> p(point(), AcDb::kForWrite);
    const std::wstring chunk(250, L'y');
    resbuf* chain = acutBuildList(1001, L"Big", 0);
    resbuf* tail = chain;
    for (int i = 0; i < 70; ++i)
        tail = tail->rbnext = acutBuildList(1000, chunk.c_str(), 0);
    EXPECT_EQ(p->setXData(chain), Acad::eXdataSizeExceeded);
    EXPECT_EQ(p->xData(L"Big"), nullptr);
    acutRelRb(chain);
}

TEST_F(RecordsTest, ErasedEntriesLeaveDictionaries) {
    AcDbDictionary* dict = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(dict, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    auto* x = new AcDbXrecord;
    dict->setAt(L"Gone", x, id);
    x->erase();
    x->close();
    EXPECT_FALSE(dict->has(L"Gone"));
    EXPECT_FALSE(dict->has(id));
    EXPECT_EQ(dict->numEntries(), 1u);
    AcDbDictionaryIterator* it = dict->newIterator();
    EXPECT_STREQ(it->name(), L"ACAD_GROUP");
    EXPECT_FALSE(it->next());
    delete it;
    dict->close();
}

TEST_F(RecordsTest, CopiesCarryExtendedDataButNoIdentity) {
    acdbRegApp(L"App");
    const AcDbObjectId id = point();
    Opened<AcDbPoint> p(id, AcDb::kForWrite);
    RbChain data(acutBuildList(1001, L"App", 1000, L"kept", 0));
    p->setXData(data.head);
    p->createExtensionDictionary();
    std::unique_ptr<AcDbPoint> copy(static_cast<AcDbPoint*>(p->clone()));
    EXPECT_TRUE(copy->isNewObject());
    EXPECT_TRUE(copy->extensionDictionary().isNull());
    EXPECT_TRUE(copy->ownerId().isNull());
    expectNear(copy->position(), {1, 2, 3});
    RbChain copied(copy->xData(L"App"));
    ASSERT_NE(copied.head, nullptr);
    EXPECT_STREQ(copied.head->rbnext->resval.rstring, L"kept");
}

} // namespace
