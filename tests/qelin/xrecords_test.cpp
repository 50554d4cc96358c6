// X-records and extended data on entities of a real drawing.
#include "host_fixture.h"
#include "records/xrecords.h"

#include <arx/aced.h>

using qelintest::HostTest;

namespace {

class Records : public HostTest {
protected:
    // A line appended to model space; its entity name.
    void addLine(ads_name name) {
        ASSERT_EQ(acdbGetAdsName(name, appendLine()->objectId()), Acad::eOk);
    }

    static std::vector<std::wstring> texts(resbuf* chain) {
        std::vector<std::wstring> out;
        for (resbuf* rb = chain; rb; rb = rb->rbnext)
            if (rb->restype == 1 || rb->restype == 1000 || rb->restype == 1001)
                out.push_back(rb->resval.rstring);
        return out;
    }
};

} // namespace

TEST_F(Records, SetTwiceLeavesOneRecordWithTheSecondChain) {
    ads_name line;
    addLine(line);
    XRecords records;
    resbuf* first = acutBuildList(1, L"first", 0);
    resbuf* second = acutBuildList(1, L"second", 70, 3, 0);
    EXPECT_TRUE(records.Set(line, L"MemberRec", first));
    EXPECT_TRUE(records.Set(line, L"MemberRec", second));
    acutRelRb(first);
    acutRelRb(second);
    resbuf* back = records.Get(line, L"MemberRec");
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(texts(back), (std::vector<std::wstring>{L"second"}));
    ASSERT_NE(back->rbnext, nullptr);
    EXPECT_EQ(back->rbnext->restype, 70);
    EXPECT_EQ(back->rbnext->resval.rint, 3);
    acutRelRb(back);
    EXPECT_EQ(records.Get(line, L"AnnotateRecord"), nullptr);
}

TEST_F(Records, GetWithoutADictionaryIsQuietlyNothing) {
    ads_name line;
    addLine(line);
    XRecords records;
    EXPECT_EQ(records.Get(line, L"MemberRec"), nullptr);
    EXPECT_TRUE(alerts().empty());
    EXPECT_TRUE(boxes().empty());
    EXPECT_FALSE(records.Set(line, L"MemberRec", nullptr));
    EXPECT_EQ(win::Transcript::instance().printed(m_mark), L"\n Invalid resbuf list detected");
}

TEST_F(Records, ExtendedDataGrowsByOneTextPerCallUnderTheApplication) {
    ads_name line;
    addLine(line);
    AcDbObjectId id;
    ASSERT_EQ(acdbGetObjectId(id, line), Acad::eOk);
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    entity->close(); // the creators tag an entity they have closed; only its handle is used
    AddXData(entity, L"Cylinder_0");
    AddXData(entity, L"Pipe P-101");
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    resbuf* data = entity->xData(QEL_XDATA_APP);
    entity->close();
    EXPECT_EQ(texts(data),
              (std::vector<std::wstring>{L"Tovi_Technologies", L"Cylinder_0", L"Pipe P-101"}));
    acutRelRb(data);
    AcDbRegAppTable* apps = nullptr;
    ASSERT_EQ(
        acdbHostApplicationServices()->workingDatabase()->getRegAppTable(apps, AcDb::kForRead),
        Acad::eOk);
    EXPECT_TRUE(apps->has(QEL_XDATA_APP));
    apps->close();
}
