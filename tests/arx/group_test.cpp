#include "arx_test.h"

namespace {

class GroupTest : public ArxTest {
protected:
    // The module's recipe: a group in the group dictionary under a key, then made anonymous.
    AcDbObjectId anonymousGroup(const ACHAR* key, const AcDbObjectIdArray& members) {
        auto* group = new AcDbGroup(L"PointGroup", true);
        AcDbDictionary* groups = nullptr;
        EXPECT_EQ(db->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(groups->setAt(key, group, id), Acad::eOk);
        groups->close();
        EXPECT_EQ(group->setAnonymous(), Acad::eOk);
        EXPECT_EQ(group->append(members), Acad::eOk);
        group->close();
        return id;
    }

    // The first group among an entity's persistent reactors.
    AcDbObjectId groupOf(AcDbObjectId entityId) {
        Opened<AcDbEntity> e(entityId);
        for (void* r : *e->reactors()) {
            if (!acdbIsPersistentReactor(r)) continue;
            const AcDbObjectId id = acdbPersistentReactorObjectId(r);
            if (id.objectClass() == AcDbGroup::desc()) return id;
        }
        return AcDbObjectId::kNull;
    }
};

TEST_F(GroupTest, AnonymousGroupsGetGeneratedNames) {
    const AcDbObjectId a = anonymousGroup(L"POINT_GROUP", {append(new AcDbPoint)});
    const AcDbObjectId b = anonymousGroup(L"POINT_GROUP", {append(new AcDbPoint)});
    Opened<AcDbGroup> first(a), second(b);
    EXPECT_STREQ(first->name(), L"*A1");
    EXPECT_STREQ(second->name(), L"*A2");
    EXPECT_TRUE(first->isAnonymous());
    EXPECT_TRUE(first->isSelectable());
    EXPECT_STREQ(first->description(), L"PointGroup");
    // One key for two classes: each group was renamed before the next setAt, so both live.
    EXPECT_FALSE(a.isErased());
    EXPECT_FALSE(b.isErased());
    Opened<AcDbDictionary> groups(db->groupDictionaryId());
    EXPECT_TRUE(groups->has(L"*a1"));
    EXPECT_FALSE(groups->has(L"POINT_GROUP"));
}

TEST_F(GroupTest, MembersKnowTheirGroupThroughReactors) {
    const AcDbObjectId p1 = append(new AcDbPoint({1, 0, 0}));
    const AcDbObjectId p2 = append(new AcDbPoint({2, 0, 0}));
    const AcDbObjectId alone = append(new AcDbPoint({3, 0, 0}));
    const AcDbObjectId g = anonymousGroup(L"LINE_GROUP", {p1, p2});
    EXPECT_EQ(groupOf(p1), g);
    EXPECT_EQ(groupOf(p2), g);
    EXPECT_TRUE(groupOf(alone).isNull());
    Opened<AcDbGroup> group(g);
    AcDbObjectIdArray ids;
    EXPECT_EQ(group->allEntityIds(ids), 2u);
    EXPECT_EQ(ids[0], p1);
    EXPECT_EQ(ids[1], p2);
}

TEST_F(GroupTest, ErasedMembersDropOutAndComeBack) {
    const AcDbObjectId p1 = append(new AcDbPoint), p2 = append(new AcDbPoint);
    const AcDbObjectId g = anonymousGroup(L"K", {p1, p2});
    ads_name n;
    acdbGetAdsName(n, p1);
    ASSERT_EQ(acdbEntDel(n), RTNORM);
    {
        Opened<AcDbGroup> group(g);
        EXPECT_EQ(group->numEntities(), 1u);
    }
    ASSERT_EQ(acdbEntDel(n), RTNORM);
    Opened<AcDbGroup> group(g);
    EXPECT_EQ(group->numEntities(), 2u);
}

TEST_F(GroupTest, AppendAndRemoveRules) {
    const AcDbObjectId p = append(new AcDbPoint);
    AcDbGroup loose;
    EXPECT_EQ(loose.append(p), Acad::eNotInDatabase);
    const AcDbObjectId g = anonymousGroup(L"K", {p});
    Opened<AcDbGroup> group(g, AcDb::kForWrite);
    EXPECT_EQ(group->append(p), Acad::eAlreadyInGroup);
    EXPECT_EQ(group->append(db->layerZero()), Acad::eNotAnEntity);
    EXPECT_EQ(group->append(AcDbObjectId::kNull), Acad::eNullObjectId);
    AcDbDatabase other;
    AcDbObjectId foreign;
    {
        AcDbBlockTableRecord* space = nullptr;
        acdbOpenObject(space, other.currentSpaceId(), AcDb::kForWrite);
        auto* point = new AcDbPoint;
        space->appendAcDbEntity(foreign, point);
        point->close();
        space->close();
    }
    EXPECT_EQ(group->append(foreign), Acad::eWrongDatabase);
    ASSERT_EQ(group->remove(p), Acad::eOk);
    EXPECT_EQ(group->remove(p), Acad::eNotInGroup);
    EXPECT_EQ(group->numEntities(), 0u);
    EXPECT_TRUE(groupOf(p).isNull());
}

} // namespace
