// Drawings read, written and read again: every field, handle and record kept.
#include <arx/acdb.h>
#include <arx/dbkept.h>

#include "module_drawing.h"

namespace {

AcDbObjectId idOfHandle(AcDbDatabase& db, const ACHAR* handle) {
    AcDbObjectId id;
    db.getAcDbObjectId(id, false, AcDbHandle(handle));
    return id;
}

std::string handleText(AcDbObjectId id) {
    ACHAR buffer[20];
    id.handle().getIntoAsciiBuffer(buffer);
    std::string text;
    for (const ACHAR* c = buffer; *c; ++c)
        text += char(*c);
    return text;
}

resbuf* xrecordData(AcDbObjectId entityId, const ACHAR* key) {
    AcDbObject* entity = nullptr;
    acdbOpenAcDbObject(entity, entityId, AcDb::kForRead);
    const AcDbObjectId dictId = entity->extensionDictionary();
    entity->close();
    AcDbDictionary* dict = nullptr;
    if (acdbOpenObject(dict, dictId, AcDb::kForRead) != Acad::eOk) return nullptr;
    AcDbObject* record = nullptr;
    const Acad::ErrorStatus es = dict->getAt(key, record, AcDb::kForRead);
    dict->close();
    if (es != Acad::eOk) return nullptr;
    resbuf* chain = nullptr;
    static_cast<AcDbXrecord*>(record)->rbChain(&chain);
    record->close();
    return chain;
}

TEST(DrawingRoundTrip, EzdxfDrawingKeepsHandlesLayersGroupsAndRecords) {
    const std::string original = fixtureText("ezdxf-every-kind.dxf");
    auto db = dxf::readDrawing(original, "every-kind");
    // The line with its extension dictionary, X-record and extended data, by its handle.
    const AcDbObjectId line = idOfHandle(*db, ACRX_T("91"));
    AcDbEntity* e = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(e, line, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(AcDbLine::cast(e));
    ACHAR* layer = e->layer();
    EXPECT_EQ(std::wstring(layer), L"L_ON");
    acutDelString(layer);
    resbuf* xdata = e->xData(ACRX_T("MYAPP"));
    e->close();
    ASSERT_NE(xdata, nullptr);
    ASSERT_NE(xdata->rbnext, nullptr);
    EXPECT_EQ(std::wstring(xdata->rbnext->resval.rstring), L"hello xdata");
    EXPECT_EQ(xdata->rbnext->rbnext->resval.rreal, 3.25);
    acutRelRb(xdata);
    resbuf* data = xrecordData(line, ACRX_T("MY_XREC"));
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->restype, 1);
    EXPECT_EQ(data->rbnext->resval.rreal, 1.5);
    EXPECT_EQ(data->rbnext->rbnext->resval.rlong, 42);
    acutRelRb(data);
    // The group and its member.
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(db->getGroupDictionary(groups), Acad::eOk);
    AcDbObject* object = nullptr;
    ASSERT_EQ(groups->getAt(ACRX_T("NAMED_GROUP"), object, AcDb::kForRead), Acad::eOk);
    groups->close();
    auto* group = AcDbGroup::cast(object);
    ASSERT_NE(group, nullptr);
    AcDbObjectIdArray members;
    group->allEntityIds(members);
    const AcDbObjectId groupId = group->objectId();
    group->close();
    ASSERT_EQ(members.length(), 1);
    EXPECT_EQ(members[0], line);
    ASSERT_EQ(acdbOpenAcDbEntity(e, line, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(e->hasPersistentReactor(groupId));
    e->close();
    // Layer states and the current UCS of the header.
    AcDbLayerTable* layers = nullptr;
    db->getLayerTable(layers);
    AcDbLayerTableRecord* off = nullptr;
    AcDbLayerTableRecord* frozen = nullptr;
    ASSERT_EQ(layers->getAt(ACRX_T("L_OFF"), off, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(layers->getAt(ACRX_T("L_FROZEN"), frozen, AcDb::kForRead), Acad::eOk);
    layers->close();
    EXPECT_TRUE(off->isOff());
    EXPECT_TRUE(frozen->isFrozen());
    off->close();
    frozen->close();
    EXPECT_EQ(db->ucsorg(), AcGePoint3d(1, 2, 0));
    EXPECT_EQ(acdbHostOpenObjectCount(db.get()), 0u);
}

TEST(DrawingRoundTrip, WritingWhatWasReadGivesTheSameTextAgain) {
    auto first = dxf::readDrawing(fixtureText("ezdxf-every-kind.dxf"), "every-kind");
    const std::string once = drawingText(*first);
    auto second = dxf::readDrawing(once, "once");
    EXPECT_EQ(textDifference(drawingText(*second), once), "");
}

TEST(DrawingRoundTrip, RecordsOfOtherProgramsComeBackUnchanged) {
    const std::string original = fixtureText("ezdxf-every-kind.dxf");
    auto db = dxf::readDrawing(original, "every-kind");
    const std::string written = drawingText(*db);
    // MESH, a visual style and a material: kinds the host does not model; 3DSOLID and REGION
    // keep their model text as read.
    for (const std::string type : {"MESH", "VISUALSTYLE", "MATERIAL", "3DSOLID", "REGION"}) {
        const size_t at = original.find("\n  0\n" + type + "\n  5\n");
        ASSERT_NE(at, std::string::npos) << type;
        const size_t handleAt = at + 11 + type.size();
        const std::string handle =
            original.substr(handleAt, original.find('\n', handleAt) - handleAt);
        EXPECT_EQ(recordWithHandle(written, handle), recordWithHandle(original, handle)) << type;
    }
}

class DrawingOfHostEntities : public ArxTest {};

// Every kind the host makes, with the data the module leaves on entities, survives a save and
// an open: the second save equals the first in every group of every record.
TEST_F(DrawingOfHostEntities, EveryKindKeepsEveryFieldAndHandle) {
    const std::vector<AcDbObjectId> ids = buildModuleDrawing(*db);

    const std::string once = drawingText(*db);
    auto back = dxf::readDrawing(once, "once");
    const std::string twice = drawingText(*back);
    EXPECT_EQ(textDifference(twice, once, 1e-15), "");
    // What was read once reads back exactly.
    EXPECT_EQ(textDifference(drawingText(*dxf::readDrawing(twice, "twice")), twice), "");
    EXPECT_EQ(back->ucsorg(), AcGePoint3d(1, 2, 3));
    EXPECT_EQ(back->ucsxdir(), AcGeVector3d(0, 1, 0));
    for (const AcDbObjectId& id : ids) {
        AcDbObjectId same;
        ASSERT_EQ(back->getAcDbObjectId(same, false, id.handle()), Acad::eOk);
        AcDbObject* a = nullptr;
        AcDbObject* b = nullptr;
        acdbOpenAcDbObject(a, id, AcDb::kForRead);
        acdbOpenAcDbObject(b, same, AcDb::kForRead);
        EXPECT_EQ(a->isA(), b->isA()) << a->isA()->name();
        a->close();
        b->close();
    }
    // The entity in the second database, by its handle.
    AcDbObjectId lineBack;
    back->getAcDbObjectId(lineBack, false, ids[0].handle());
    resbuf* data = xrecordData(lineBack, ACRX_T("MemberRec"));
    ASSERT_NE(data, nullptr);
    int n = 0;
    for (resbuf* rb = data; rb; rb = rb->rbnext)
        ++n;
    EXPECT_EQ(n, 8);
    EXPECT_EQ(data->rbnext->rbnext->rbnext->resval.rlong, -40000);
    EXPECT_EQ(data->rbnext->rbnext->rbnext->rbnext->rbnext->resval.rreal, 1e-300);
    acutRelRb(data);
    EXPECT_EQ(acdbHostOpenObjectCount(back.get()), 0u);
}

// Erased objects take what they own with them, and no record points at one: the entity with
// the module's X-record erased, then the group of two others (whose reactors still name it). The
// drawing reads back, and a second save equals the first.
TEST_F(DrawingOfHostEntities, ErasedObjectsLeaveNoPointersBehind) {
    const std::vector<AcDbObjectId> ids = buildModuleDrawing(*db);
    AcDbEntity* tagged = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(tagged, ids[0], AcDb::kForWrite), Acad::eOk);
    const AcDbObjectId dictionary = tagged->extensionDictionary();
    ASSERT_EQ(tagged->erase(), Acad::eOk);
    tagged->close();
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(db->getGroupDictionary(groups, AcDb::kForRead), Acad::eOk);
    std::unique_ptr<AcDbDictionaryIterator> it(groups->newIterator());
    const AcDbObjectId group = it->objectId();
    groups->close();
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, group, AcDb::kForWrite), Acad::eOk);
    ASSERT_EQ(object->erase(), Acad::eOk);
    object->close();

    const std::string once = drawingText(*db);
    EXPECT_EQ(recordWithHandle(once, handleText(dictionary)), "");
    EXPECT_EQ(once.find("\n330\n" + handleText(group) + "\n"), std::string::npos);
    std::unique_ptr<AcDbDatabase> back;
    ASSERT_NO_THROW(back = dxf::readDrawing(once, "once"));
    EXPECT_EQ(textDifference(drawingText(*back), once, 1e-15), "");
}

// An anonymous group whose members are all erased goes with them, dictionary entry and all; one
// member left keeps it.
TEST_F(DrawingOfHostEntities, AnAnonymousGroupLeftWithoutMembersIsNotWritten) {
    const std::vector<AcDbObjectId> ids = buildModuleDrawing(*db);
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(db->getGroupDictionary(groups, AcDb::kForRead), Acad::eOk);
    std::unique_ptr<AcDbDictionaryIterator> it(groups->newIterator());
    const std::string group = handleText(it->objectId());
    groups->close();
    for (const AcDbObjectId& member : {ids[1], ids[2]}) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(entity, member, AcDb::kForWrite), Acad::eOk);
        ASSERT_EQ(entity->erase(), Acad::eOk);
        entity->close();
        const std::string text = drawingText(*db);
        const bool kept = member == ids[1];
        EXPECT_EQ(recordWithHandle(text, group).empty(), !kept);
        EXPECT_EQ(text.find("\n350\n" + group + "\n") == std::string::npos, !kept);
        std::unique_ptr<AcDbDatabase> back;
        ASSERT_NO_THROW(back = dxf::readDrawing(text, "saved"));
    }
}

} // namespace

namespace {

// A block reference with attributes: they stay with it, as read, and their handles stay taken.
TEST(DrawingRoundTrip, AttributesOfABlockReferenceStayWithIt) {
    std::string text = fixtureText("ezdxf-every-kind.dxf");
    const size_t insert = text.find("\n  0\nINSERT\n  5\n");
    ASSERT_NE(insert, std::string::npos);
    const size_t handleAt = insert + 16;
    const std::string handle = text.substr(handleAt, text.find('\n', handleAt) - handleAt);
    const size_t marker = text.find("AcDbBlockReference\n", insert) + 19;
    text.insert(marker, " 66\n1\n");
    const std::string attributes = "  0\nATTRIB\n  5\nFFF0\n330\n" + handle +
                                   "\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n0.0\n 20\n0.0\n"
                                   " 30\n0.0\n 40\n1.0\n  1\nDN 50\n100\nAcDbAttribute\n  2\nSIZE\n"
                                   " 70\n0\n  0\nSEQEND\n  5\nFFF1\n330\n" +
                                   handle + "\n100\nAcDbEntity\n  8\n0\n";
    text.insert(text.find("\n  0\n", marker) + 1, attributes);
    auto db = dxf::readDrawing(text, "attributes");
    const std::string written = drawingText(*db);
    const std::string reference = recordWithHandle(written, handle);
    EXPECT_NE(reference.find(" 66\n1\n"), std::string::npos) << reference;
    EXPECT_NE(written.find(attributes), std::string::npos);
    EXPECT_GT(Adesk::UInt64(db->handseed()), 0xFFF1u);
    EXPECT_EQ(textDifference(drawingText(*dxf::readDrawing(written, "written")), written), "");
}

} // namespace
