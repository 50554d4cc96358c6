#include <cwchar>

#include "arx_test.h"

namespace {

TEST_F(ArxTest, DefaultDrawingHasItsTablesAndLayouts) {
    AcDbBlockTable* blocks = nullptr;
    ASSERT_EQ(db->getBlockTable(blocks), Acad::eOk);
    EXPECT_TRUE(blocks->has(ACDB_MODEL_SPACE));
    EXPECT_TRUE(blocks->has(L"*paper_space"));
    AcDbObjectId model;
    EXPECT_EQ(blocks->getAt(L"*MODEL_SPACE", model), Acad::eOk);
    EXPECT_EQ(model, db->currentSpaceId());
    blocks->close();

    Opened<AcDbLayerTableRecord> zero(db->clayer());
    ASSERT_EQ(zero.status, Acad::eOk);
    const ACHAR* name = nullptr;
    zero->getName(name);
    EXPECT_STREQ(name, L"0");
    EXPECT_EQ(zero->color().colorIndex(), 7);
    EXPECT_EQ(db->layerZero(), db->clayer());

    Opened<AcDbDictionary> named(db->namedObjectsDictionaryId());
    AcDbObjectId groups;
    EXPECT_EQ(named->getAt(L"ACAD_GROUP", groups), Acad::eOk);
    EXPECT_EQ(groups, db->groupDictionaryId());
}

TEST(Handle, TextBothWays) {
    ACHAR buffer[20];
    AcDbHandle h(L"1a2B");
    EXPECT_EQ(Adesk::UInt64(h), 0x1A2Bu);
    h.getIntoAsciiBuffer(buffer);
    EXPECT_STREQ(buffer, L"1A2B");
    AcDbHandle none;
    ASSERT_TRUE(none.getIntoAsciiBuffer(buffer, 20));
    EXPECT_STREQ(buffer, L"0");
    h = L"FFFFFFFFFFFFFFFF";
    h.getIntoAsciiBuffer(buffer);
    EXPECT_STREQ(buffer, L"FFFFFFFFFFFFFFFF");
    EXPECT_FALSE(AcDbHandle(0x123).getIntoAsciiBuffer(buffer, 3));
    // Text that is no hexadecimal number gives the null handle.
    EXPECT_TRUE(AcDbHandle(L"12G").isNull());
    EXPECT_TRUE(AcDbHandle(L"").isNull());
    EXPECT_TRUE(AcDbHandle(L"11112222333344445").isNull());
}

TEST_F(ArxTest, HandlesFindTheirObjects) {
    const AcDbObjectId a = append(new AcDbPoint({1, 2, 3}));
    const AcDbObjectId b = append(new AcDbPoint({4, 5, 6}));
    EXPECT_EQ(Adesk::UInt64(b.handle()), Adesk::UInt64(a.handle()) + 1);
    EXPECT_GT(Adesk::UInt64(db->handseed()), Adesk::UInt64(b.handle()));
    AcDbObjectId found;
    ASSERT_EQ(db->getAcDbObjectId(found, false, a.handle()), Acad::eOk);
    EXPECT_EQ(found, a);
    EXPECT_EQ(db->getAcDbObjectId(found, false, AcDbHandle(0xFFFFFF)), Acad::eUnknownHandle);
    EXPECT_EQ(db->getAcDbObjectId(found, false, AcDbHandle()), Acad::eNullHandle);
    EXPECT_EQ(a.database(), db.get());
    EXPECT_EQ(a.objectClass(), AcDbPoint::desc());
}

TEST_F(ArxTest, ReadersPlaceObjectsAtTheirHandles) {
    auto* x = new AcDbXrecord;
    ASSERT_EQ(acdbHostAddObject(db.get(), x, db->namedObjectsDictionaryId(), AcDbHandle(0x400)),
              Acad::eOk);
    EXPECT_EQ(Adesk::UInt64(x->handle()), 0x400u);
    EXPECT_EQ(x->ownerId(), db->namedObjectsDictionaryId());
    EXPECT_GT(Adesk::UInt64(db->handseed()), 0x400u);
    x->close();
    AcDbXrecord taken;
    EXPECT_EQ(acdbHostAddObject(db.get(), &taken, AcDbObjectId::kNull, AcDbHandle(0x400)),
              Acad::eHandleInUse);
    // New objects go on after the highest handle.
    const AcDbObjectId next = append(new AcDbPoint);
    EXPECT_EQ(Adesk::UInt64(next.handle()), 0x401u);
}

TEST_F(ArxTest, OpenAndCloseRules) {
    const AcDbObjectId id = append(new AcDbLine({0, 0, 0}, {1, 0, 0}));
    AcDbEntity* writer = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(writer, id, AcDb::kForWrite), Acad::eOk);
    AcDbEntity* other = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(other, id, AcDb::kForWrite), Acad::eWasOpenForWrite);
    EXPECT_EQ(acdbOpenAcDbEntity(other, id, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(acdbHostOpenObjectCount(db.get()), 1u);
    EXPECT_EQ(acdbHostOpenObjects(db.get()).first(), id);
    ASSERT_EQ(writer->downgradeOpen(), Acad::eOk);
    EXPECT_FALSE(writer->isWriteEnabled());
    EXPECT_EQ(static_cast<AcDbLine*>(writer)->setStartPoint({5, 5, 5}), Acad::eNotOpenForWrite);

    // Many readers; none may write while another reads.
    AcDbEntity* reader = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(reader, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(acdbOpenAcDbEntity(other, id, AcDb::kForWrite), Acad::eWasOpenForRead);
    EXPECT_EQ(reader->upgradeOpen(), Acad::eHadMultipleReaders);
    reader->close();
    ASSERT_EQ(writer->upgradeOpen(), Acad::eOk);
    EXPECT_EQ(writer->upgradeOpen(), Acad::eWasOpenForWrite);
    writer->close();
    EXPECT_EQ(writer->close(), Acad::eNotOpenForRead);

    // Opening as the wrong class leaves nothing open.
    AcDbCircle* circle = nullptr;
    EXPECT_EQ(acdbOpenObject(circle, id), Acad::eNotThatKindOfClass);
    EXPECT_EQ(circle, nullptr);
    AcDbEntity* notEntity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(notEntity, db->layerZero(), AcDb::kForRead), Acad::eNotAnEntity);
    EXPECT_EQ(acdbOpenAcDbEntity(notEntity, AcDbObjectId::kNull, AcDb::kForRead),
              Acad::eNullObjectId);
}

TEST_F(ArxTest, ErasedObjectsOpenOnlyWhenAsked) {
    const AcDbObjectId id = append(new AcDbPoint);
    {
        Opened<AcDbPoint> point(id, AcDb::kForWrite);
        ASSERT_EQ(point->erase(), Acad::eOk);
        EXPECT_EQ(point->erase(), Acad::eWasErased);
    }
    EXPECT_TRUE(id.isErased());
    EXPECT_TRUE(id.isValid());
    AcDbObject* object = nullptr;
    EXPECT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForRead), Acad::eWasErased);
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite, true), Acad::eOk);
    EXPECT_EQ(object->erase(false), Acad::eOk);
    EXPECT_EQ(object->erase(false), Acad::eWasNotErased);
    object->close();
    EXPECT_FALSE(id.isErased());
}

// An entity's extension dictionary and the records in it go and come back with the entity; an
// entry that another object owns is only referred to and stays.
TEST_F(ArxTest, ErasingAnObjectErasesWhatItOwns) {
    const AcDbObjectId id = append(new AcDbPoint);
    const AcDbObjectId other = append(new AcDbPoint);
    AcDbObjectId dictionaryId, recordId;
    {
        Opened<AcDbPoint> point(id, AcDb::kForWrite);
        ASSERT_EQ(point->createExtensionDictionary(), Acad::eOk);
        dictionaryId = point->extensionDictionary();
    }
    {
        Opened<AcDbDictionary> dictionary(dictionaryId, AcDb::kForWrite);
        auto* record = new AcDbXrecord;
        ASSERT_EQ(dictionary->setAt(L"MemberRec", record, recordId), Acad::eOk);
        record->close();
    }
    {
        Opened<AcDbPoint> point(id, AcDb::kForWrite);
        ASSERT_EQ(point->erase(), Acad::eOk);
    }
    EXPECT_TRUE(dictionaryId.isErased());
    EXPECT_TRUE(recordId.isErased());
    EXPECT_FALSE(other.isErased());

    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite, true), Acad::eOk);
    EXPECT_EQ(object->erase(false), Acad::eOk);
    object->close();
    EXPECT_FALSE(dictionaryId.isErased());
    EXPECT_FALSE(recordId.isErased());
}

TEST_F(ArxTest, NewEntityBelongsToItsCreatorUntilAppended) {
    auto* line = new AcDbLine({0, 0, 0}, {1, 1, 0});
    EXPECT_TRUE(line->isNewObject());
    EXPECT_TRUE(line->isWriteEnabled());
    EXPECT_EQ(line->close(), Acad::eOk); // nothing to close yet: still the creator's
    EXPECT_TRUE(line->objectId().isNull());

    AcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(acdbOpenObject(space, db->currentSpaceId(), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(space->appendAcDbEntity(line), Acad::eNotOpenForWrite);
    ASSERT_EQ(space->upgradeOpen(), Acad::eOk);
    ASSERT_EQ(space->appendAcDbEntity(line), Acad::eOk);
    EXPECT_EQ(space->appendAcDbEntity(line), Acad::eAlreadyInDb);
    space->close();
    // Appended, it is open for write in the database until its creator closes it.
    EXPECT_EQ(acdbHostOpenObjectCount(db.get()), 1u);
    EXPECT_EQ(line->ownerId(), db->currentSpaceId());
    EXPECT_EQ(line->layerId(), db->clayer());
    line->close();
    EXPECT_EQ(acdbHostOpenObjectCount(db.get()), 0u);
}

TEST_F(ArxTest, EntitiesOnLockedLayersDoNotOpenForWrite) {
    AcDbLayerTable* layers = nullptr;
    ASSERT_EQ(db->getLayerTable(layers, AcDb::kForWrite), Acad::eOk);
    auto* locked = new AcDbLayerTableRecord;
    ASSERT_EQ(locked->setName(L"Locked"), Acad::eOk);
    locked->setIsLocked(true);
    AcDbObjectId lockedId;
    ASSERT_EQ(layers->add(lockedId, locked), Acad::eOk);
    locked->close();
    auto* again = new AcDbLayerTableRecord;
    again->setName(L"LOCKED");
    EXPECT_EQ(layers->add(again), Acad::eDuplicateRecordName);
    delete again;
    layers->close();

    auto* point = new AcDbPoint;
    ASSERT_EQ(point->setLayer(L"locked"), Acad::eOk);
    EXPECT_EQ(point->setLayer(L"nowhere"), Acad::eKeyNotFound);
    const AcDbObjectId id = append(point);
    AcDbEntity* e = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(e, id, AcDb::kForWrite), Acad::eOnLockedLayer);
    ASSERT_EQ(acdbOpenAcDbEntity(e, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(e->upgradeOpen(), Acad::eOnLockedLayer);
    ACHAR* layer = e->layer();
    EXPECT_STREQ(layer, L"Locked");
    acutDelString(layer);
    e->close();
}

TEST_F(ArxTest, SymbolTableNamesAndIteration) {
    auto* record = new AcDbLayerTableRecord;
    EXPECT_EQ(record->setName(L"a<b"), Acad::eInvalidSymbolTableName);
    EXPECT_EQ(record->setName(L""), Acad::eInvalidSymbolTableName);
    delete record;

    AcDbUCSTable* ucss = nullptr;
    ASSERT_EQ(db->getUCSTable(ucss, AcDb::kForWrite), Acad::eOk);
    auto* ucs = new AcDbUCSTableRecord;
    ucs->setName(L"Site");
    ucs->setOrigin({10, 20, 0});
    ucs->setXAxis(AcGeVector3d::kYAxis);
    ucs->setYAxis(-AcGeVector3d::kXAxis);
    ASSERT_EQ(ucss->add(ucs), Acad::eOk);
    ucs->close();
    AcDbLayerTableRecord wrong;
    wrong.setName(L"Wrong");
    EXPECT_EQ(ucss->add(&wrong), Acad::eWrongObjectType);
    AcDbUCSTableIterator* it = nullptr;
    ucss->newIterator(it);
    int count = 0;
    for (; !it->done(); it->step()) {
        AcDbUCSTableRecord* r = nullptr;
        ASSERT_EQ(it->getRecord(r), Acad::eOk);
        expectNear(r->yAxis(), {-1, 0, 0});
        r->close();
        ++count;
    }
    delete it;
    ucss->close();
    EXPECT_EQ(count, 1);
}

// Lookups by name follow every change of the table: a new record, a rename (also one that only
// changes case), an erased record whose name is taken again, and the first one brought back.
TEST_F(ArxTest, SymbolTableLookupsFollowAddRenameEraseAndUnerase) {
    AcDbLayerTable* layers = nullptr;
    ASSERT_EQ(db->getLayerTable(layers, AcDb::kForWrite), Acad::eOk);
    auto add = [&](const wchar_t* name) {
        auto* layer = new AcDbLayerTableRecord;
        EXPECT_EQ(layer->setName(name), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(layers->add(id, layer), Acad::eOk);
        layer->close();
        return id;
    };
    auto found = [&](const wchar_t* name, bool erasedToo = false) {
        AcDbObjectId id;
        return layers->getAt(name, id, erasedToo) == Acad::eOk ? id : AcDbObjectId::kNull;
    };
    const AcDbObjectId pipes = add(L"Pipes");
    const AcDbObjectId steel = add(L"Steel");
    EXPECT_EQ(found(L"PIPES"), pipes);
    EXPECT_EQ(found(L"steel"), steel);
    EXPECT_TRUE(layers->has(pipes));

    {
        Opened<AcDbLayerTableRecord> layer(pipes, AcDb::kForWrite);
        EXPECT_EQ(layer->setName(L"STEEL"), Acad::eDuplicateRecordName);
        ASSERT_EQ(layer->setName(L"Piping"), Acad::eOk);
    }
    EXPECT_TRUE(found(L"Pipes").isNull());
    EXPECT_EQ(found(L"piping"), pipes);
    {
        Opened<AcDbLayerTableRecord> layer(pipes, AcDb::kForWrite);
        ASSERT_EQ(layer->setName(L"PIPING"), Acad::eOk);
    }
    EXPECT_EQ(found(L"Piping"), pipes);
    AcDbLayerTableRecord unnamed;
    EXPECT_EQ(layers->add(&unnamed), Acad::eInvalidSymbolTableName);

    {
        Opened<AcDbLayerTableRecord> layer(steel, AcDb::kForWrite);
        ASSERT_EQ(layer->erase(), Acad::eOk);
    }
    EXPECT_TRUE(found(L"Steel").isNull());
    EXPECT_FALSE(layers->has(steel));
    EXPECT_EQ(found(L"Steel", true), steel);
    const AcDbObjectId newSteel = add(L"STEEL");
    EXPECT_EQ(found(L"Steel"), newSteel);
    // Asked for erased records too, the older one comes first, as the table lists it.
    EXPECT_EQ(found(L"Steel", true), steel);

    {
        Opened<AcDbLayerTableRecord> layer(newSteel, AcDb::kForWrite);
        ASSERT_EQ(layer->erase(), Acad::eOk);
    }
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, steel, AcDb::kForWrite, true), Acad::eOk);
    ASSERT_EQ(object->erase(false), Acad::eOk);
    object->close();
    EXPECT_EQ(found(L"steel"), steel);
    EXPECT_TRUE(layers->has(steel));
    EXPECT_FALSE(layers->has(newSteel));
    // The erased one renamed leaves the name to the live one and is found by its new name.
    ASSERT_EQ(acdbOpenAcDbObject(object, newSteel, AcDb::kForWrite, true), Acad::eOk);
    ASSERT_EQ(AcDbLayerTableRecord::cast(object)->setName(L"Old steel"), Acad::eOk);
    object->close();
    EXPECT_EQ(found(L"Steel", true), steel);
    EXPECT_EQ(found(L"OLD STEEL", true), newSteel);
    layers->close();
}

TEST_F(ArxTest, PurgeKeepsWhatIsUsed) {
    AcDbLayerTable* layers = nullptr;
    ASSERT_EQ(db->getLayerTable(layers, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId used, unused;
    for (const ACHAR* name : {L"Used", L"Unused"}) {
        auto* layer = new AcDbLayerTableRecord;
        layer->setName(name);
        layers->add(name[0] == L'U' && name[1] == L's' ? used : unused, layer);
        layer->close();
    }
    layers->close();
    auto* line = new AcDbLine;
    line->setLayer(used);
    append(line);
    AcDbObjectIdArray ids = {used, unused, db->layerZero()};
    ASSERT_EQ(db->purge(ids), Acad::eOk);
    ASSERT_EQ(ids.length(), 1);
    EXPECT_EQ(ids[0], unused);
}

TEST(Status, TextNamesTheCode) {
    EXPECT_STREQ(acadErrorStatusText(Acad::eOk), L"eOk");
    EXPECT_STREQ(acadErrorStatusText(Acad::eAlreadyInDb), L"eAlreadyInDb");
    EXPECT_STREQ(acadErrorStatusText(Acad::eInvalidMeshVertexIndex), L"eInvalidMeshVertexIndex");
    EXPECT_STREQ(acadErrorStatusText(Acad::ErrorStatus(9999)), L"Unknown error status");
    EXPECT_EQ(Acad::eAlreadyInDb, 26);
    EXPECT_EQ(Acad::eInvalidMeshVertexIndex, 56);
}

} // namespace
