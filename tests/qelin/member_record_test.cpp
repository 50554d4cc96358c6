// The tag of imported entities through the host: store, load, the 16-bit items, the highest
// group number of a drawing.
#include "host_fixture.h"
#include "records/member_record.h"
#include "records/xrecords.h"

#include <arx/aced.h>

using qelintest::HostTest;

namespace {

class MemberRecords : public HostTest {
protected:
    void tagged(const QelMemberRecord& record, ads_name name) {
        AcDbLine* line = appendLine();
        QelMemberRecord copy = record;
        EXPECT_TRUE(copy.Store(line));
        ASSERT_EQ(acdbGetAdsName(name, line->objectId()), Acad::eOk);
    }
};

QelMemberRecord everyFieldSet() {
    QelMemberRecord r;
    r.filePath = L"C:\\models\\plant one.qel";
    r.groupName = L"*A12";
    r.memberType = 27;
    r.objectIndex = 70000;
    r.context = 2;
    r.groupSerial = 31;
    r.partIndex = 3;
    r.miterCount = 4;
    r.majorRadius = 1.5;
    r.minorRadius = 0.25;
    r.length = 2.0;
    r.width = 3.0;
    r.depth = 4.0;
    r.radius0 = 0.5;
    r.radius1 = 0.75;
    r.flangeThickness = 0.012;
    r.webThickness = 0.008;
    r.centroid = 0.3333333333333333;
    r.handle0 = AcDbHandle(0x2A);
    r.handwheelThickness = 0.02;
    r.handwheelOffset = 0.4;
    r.handwheelRadius = 0.15;
    r.stemThickness = 0.03;
    r.stemLength = 0.35;
    r.direction[0] = 0.1;
    r.direction[1] = -0.7071067811865476;
    r.direction[2] = 1.0 / 3.0;
    return r;
}

} // namespace

TEST_F(MemberRecords, TheChainHas29ItemsOfTheirGroupCodes) {
    resbuf* chain = QelMemberRecordChain(everyFieldSet());
    std::vector<short> codes;
    for (resbuf* rb = chain; rb; rb = rb->rbnext)
        codes.push_back(rb->restype);
    acutRelRb(chain);
    const std::vector<short> expected = {1,  1,  90, 90, 90, 90, 90, 90, 90, 40, 40, 40, 40, 40, 40,
                                         40, 40, 40, 40, 1,  1,  40, 40, 40, 40, 40, 40, 40, 40};
    EXPECT_EQ(codes, expected);
}

TEST_F(MemberRecords, StoreThenLoadGivesEveryFieldBackNullHandlesAsZero) {
    ads_name name;
    tagged(everyFieldSet(), name);
    QelMemberRecord back;
    ASSERT_TRUE(back.Load(name));
    const QelMemberRecord want = everyFieldSet();
    EXPECT_EQ(back.filePath, want.filePath);
    EXPECT_EQ(back.groupName, want.groupName);
    EXPECT_EQ(back.memberType, 27);
    EXPECT_EQ(back.objectIndex, 70000) << "plain ints keep all 32 bits";
    EXPECT_EQ(back.context, 2);
    EXPECT_EQ(back.groupSerial, 31);
    EXPECT_EQ(back.partIndex, 3);
    EXPECT_EQ(back.miterCount, 4);
    EXPECT_EQ(back.centroid, want.centroid);
    EXPECT_EQ(back.handle0, AcDbHandle(0x2A));
    EXPECT_TRUE(back.handle1.isNull());
    EXPECT_EQ(back.GetHandle1(name), CString(L"0"));
    EXPECT_EQ(back.GetHandle0(name), CString(L"2A"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(back.direction[i], want.direction[i]) << "a reducer's direction, bit for bit";
    double l, w, d, r1, r0;
    int c, part;
    EXPECT_TRUE(back.GetDimensions(name, l, w, d, r1, r0, c, part));
    EXPECT_EQ(std::vector<double>({l, w, d, r1, r0}),
              std::vector<double>({2.0, 3.0, 4.0, 0.75, 0.5}));
    int found = -1;
    EXPECT_EQ(back.GetDimension(name, &QelMemberRecord::webThickness, &found), 0.008);
    EXPECT_EQ(found, 1);
}

TEST_F(MemberRecords, GroupSerialAndMiterCountComeBackFromTheirLow16Bits) {
    QelMemberRecord record;
    record.groupSerial = 40000;
    record.miterCount = 65536 + 5;
    record.objectIndex = 40000;
    ads_name name;
    tagged(record, name);
    QelMemberRecord back;
    ASSERT_TRUE(back.Load(name));
    EXPECT_EQ(back.groupSerial, 40000 - 65536) << "a serial above 32767 comes back negative";
    EXPECT_EQ(back.miterCount, 5);
    EXPECT_EQ(back.objectIndex, 40000);
}

TEST_F(MemberRecords, UntaggedAndShortChainsLoadFalse) {
    AcDbLine* line = appendLine();
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, line->objectId()), Acad::eOk);
    QelMemberRecord none;
    EXPECT_FALSE(none.Load(name));
    EXPECT_EQ(none.GetObjectIndex(name), 0);
    int found = -1;
    EXPECT_EQ(none.GetDimension(name, &QelMemberRecord::length, &found), 0.0);
    EXPECT_EQ(found, 0);
    EXPECT_TRUE(alerts().empty()) << "being untagged is a normal case: nothing is said";

    resbuf* shortChain = acutBuildList(1, L"a.qel", 1, L"*A1", 90, 7, 90, 12, 0);
    XRecords().Set(name, QEL_MEMBER_RECORD_KEY, shortChain);
    acutRelRb(shortChain);
    QelMemberRecord partial;
    EXPECT_FALSE(partial.Load(name));
    EXPECT_EQ(partial.filePath, CString(L"a.qel")) << "what was read stays";
    EXPECT_EQ(partial.objectIndex, 12);
    EXPECT_EQ(partial.GetObjectIndex(name), 0) << "the getter wants the whole tag";
}

TEST_F(MemberRecords, StoringAgainReplacesTheTag) {
    AcDbLine* line = appendLine();
    QelMemberRecord first;
    first.objectIndex = 1;
    EXPECT_TRUE(first.Store(line));
    QelMemberRecord second;
    second.objectIndex = 2;
    EXPECT_TRUE(second.Store(line));
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, line->objectId()), Acad::eOk);
    EXPECT_EQ(QelMemberRecord().GetObjectIndex(name), 2);
}

TEST_F(MemberRecords, TheHighestGroupSerialOfTheDrawingGoesToTheRecord) {
    QelDocData().maxGroupNumber = 99;
    EXPECT_EQ(QelComputeMaxGroupNumber(), 0) << "an empty drawing";
    EXPECT_EQ(QelDocData().maxGroupNumber, 0);
    ads_name name;
    for (int serial : {4, 17, 9}) {
        QelMemberRecord record;
        record.context = 2;
        record.groupSerial = serial;
        tagged(record, name);
    }
    appendLine(); // untagged entities count as 0
    EXPECT_EQ(QelComputeMaxGroupNumber(), 17);
    EXPECT_EQ(QelDocData().maxGroupNumber, 17);
}
