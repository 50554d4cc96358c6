// The guards of the host's state: what they save and put back, and when they do it alone.
#include "foundation/state_guards.h"
#include "import_fixture.h"

#include <arx/aced.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using qelintest::ImportTest;

std::vector<std::wstring> g_traces;
void collect(const wchar_t* text) {
    g_traces.push_back(text);
}

class GuardTest : public ImportTest {
protected:
    void SetUp() override {
        ImportTest::SetUp();
        g_traces.clear();
        QelSetTraceSink(collect);
    }
    void TearDown() override {
        QelSetTraceSink(nullptr);
        ImportTest::TearDown();
    }
    static int shortVar(const wchar_t* name) {
        resbuf rb{};
        acedGetVar(name, &rb);
        return rb.resval.rint;
    }
    static std::vector<double> pointVar(const wchar_t* name) {
        resbuf rb{};
        acedGetVar(name, &rb);
        return {rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]};
    }
    static void makeLayer(const wchar_t* name) {
        acedCommand(RTSTR, L"_-layer", RTSTR, L"_M", RTSTR, name, RTSTR, L"", RTNONE);
    }
};

TEST_F(GuardTest, SettingsAreQuietedAndPutBack) {
    qelhost::setSystemVariable(L"CMDECHO", L"1", false);
    qelhost::setSystemVariable(L"OSMODE", L"35", false);
    qelhost::setSystemVariable(L"UCSICON", L"1", false);
    {
        CAutoCADSettings settings;
        settings.Save();
        EXPECT_EQ(shortVar(L"CMDECHO"), 0);
        EXPECT_EQ(shortVar(L"OSMODE"), 0);
        EXPECT_EQ(shortVar(L"UCSICON"), 2);
        settings.Restore();
        EXPECT_EQ(shortVar(L"OSMODE"), 35);
        // A second restore does the work again.
        qelhost::setSystemVariable(L"OSMODE", L"3", false);
        settings.Restore();
        EXPECT_EQ(shortVar(L"OSMODE"), 35);
    }
    EXPECT_TRUE(g_traces.empty()); // restored by hand: the destructor stays quiet
}

TEST_F(GuardTest, LeavingTheScopeArmedRestoresWithATrace) {
    makeLayer(L"Work");
    ASSERT_TRUE(QelSetCurrentLayer(L"Work"));
    qelhost::setSystemVariable(L"CMDECHO", L"1", false);
    {
        CAutoCADSettings settings;
        settings.Save();
        CAutoCADUCS ucs;
        ucs.Save();
        CAutoCADLayer layer;
        layer.Save();
        ASSERT_TRUE(QelSetCurrentLayer(L"0"));
        const ads_point origin = {5.0, 6.0, 7.0};
        QelUcsOrigin(origin);
    }
    EXPECT_EQ(currentLayer(), L"Work");
    EXPECT_EQ(shortVar(L"CMDECHO"), 1);
    EXPECT_EQ(pointVar(L"UCSORG"), (std::vector<double>{0.0, 0.0, 0.0}));
    EXPECT_EQ(g_traces,
              (std::vector<std::wstring>{
                  L"CAutoCADLayer::**** AutoCAD Layer restored automatically ****",
                  L"CAutoCADUCS::****** AutoCAD UCS restored automatically ******",
                  L"CAutoCADSettings::**** AutoCAD Settings restored automatically ****"}));
}

TEST_F(GuardTest, TheUcsComesBackAsItWas) {
    const ads_point origin = {1.0, 2.0, 3.0}, xPoint = {1.0, 3.0, 3.0}, yPoint = {0.0, 2.0, 3.0};
    ASSERT_EQ(QelUcs3Points(origin, xPoint, yPoint), RTNORM);
    CAutoCADUCS ucs;
    ucs.Save();
    QelUcsWorld();
    ucs.Restore();
    EXPECT_EQ(pointVar(L"UCSORG"), (std::vector<double>{1.0, 2.0, 3.0}));
    const auto x = pointVar(L"UCSXDIR");
    EXPECT_NEAR(x[1], 1.0, 1e-12);
    // A point of the UCS in the world and back.
    const ads_point local = {1.0, 0.0, 0.0};
    ads_point world, back;
    QelUcsToWorld(local, world);
    EXPECT_NEAR(world[0], 1.0, 1e-12);
    EXPECT_NEAR(world[1], 3.0, 1e-12);
    QelWorldToUcs(world, back);
    EXPECT_NEAR(back[0], 1.0, 1e-12);
    EXPECT_TRUE(g_traces.empty());
}

TEST_F(GuardTest, LayerSequences) {
    EXPECT_FALSE(QelLayerExists(L"Steel"));
    EXPECT_FALSE(QelSetCurrentLayer(L"Steel"));   // no command for a layer that isn't there
    EXPECT_TRUE(QelEraseLayerContents(L"Steel")); // nothing to do
    makeLayer(L"Steel");
    EXPECT_TRUE(QelLayerExists(L"Steel"));
    ASSERT_TRUE(QelSetCurrentLayer(L"Steel"));
    const ads_point p = {1.0, 1.0, 0.0};
    acedCommand(RTSTR, L"_point", RT3DPOINT, p, RTNONE);
    EXPECT_TRUE(QelEraseLayerContents(L"Steel"));
    EXPECT_FALSE(QelEraseLayerContents(L"Steel")); // now nothing is selected
    QelCurrentLayerOff(L"Steel");
    EXPECT_TRUE(layer(L"Steel")->off);
    ASSERT_TRUE(QelSetCurrentLayer(L"0"));
    QelFreezeLayer(L"Steel");
    EXPECT_TRUE(layer(L"Steel")->frozen);
    EXPECT_FALSE(layer(L"0")->frozen) << "only the layer named";
    // Make current thaws it again.
    EXPECT_TRUE(QelSetCurrentLayer(L"Steel"));
    EXPECT_EQ(currentLayer(), L"Steel");
    EXPECT_FALSE(layer(L"Steel")->frozen);
}

} // namespace
