// The -LAYER sequences of the module, and the question for the current layer.
#include "editor_test.h"

namespace editortest {
namespace {

class LayerCommand : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        addLayer(L"Pipes", false, true);
        addLayer(L"Steel");
    }
    bool layerState(const wchar_t* name, bool (AcDbLayerTableRecord::*test)() const) {
        AcDbLayerTableRecord* layer = openLayer(name);
        if (layer == nullptr) return false;
        const bool value = (layer->*test)();
        layer->close();
        return value;
    }
    std::wstring clayer() {
        resbuf value;
        value.restype = RTNONE;
        EXPECT_EQ(acedGetVar(L"CLAYER", &value), RTNORM);
        std::wstring name = value.resval.rstring;
        acutDelString(value.resval.rstring);
        return name;
    }
};

TEST_F(LayerCommand, ThawAndSetMakesAFrozenLayerCurrent) {
    // Setting a frozen layer current is refused; the thaw first makes it possible.
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_S", RTSTR, L"Pipes", RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_EQ(clayer(), L"0");
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_T", RTSTR, L"Pipes", RTSTR, L"_S", RTSTR,
                          L"Pipes", RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_EQ(clayer(), L"Pipes");
    EXPECT_FALSE(layerState(L"Pipes", &AcDbLayerTableRecord::isFrozen));
}

TEST_F(LayerCommand, TurningTheCurrentLayerOffNeedsTheYes) {
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_S", RTSTR, L"Steel", RTSTR, L"", RTNONE),
              RTNORM);
    // Without the answer, the empty string says no, and the command ends at the next one.
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_OFF", RTSTR, L"Steel", RTSTR, L"", RTSTR,
                          L"", RTNONE),
              RTNORM);
    EXPECT_FALSE(layerState(L"Steel", &AcDbLayerTableRecord::isOff));
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_OFF", RTSTR, L"Steel", RTSTR, L"_Y", RTSTR,
                          L"", RTNONE),
              RTNORM);
    EXPECT_TRUE(layerState(L"Steel", &AcDbLayerTableRecord::isOff));
    // A layer that isn't current goes off without a question.
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_OFF", RTSTR, L"0", RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_TRUE(layerState(L"0", &AcDbLayerTableRecord::isOff));
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_ON", RTSTR, L"*", RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_FALSE(layerState(L"0", &AcDbLayerTableRecord::isOff));
    EXPECT_FALSE(layerState(L"Steel", &AcDbLayerTableRecord::isOff));
}

TEST_F(LayerCommand, FreezeSparesTheCurrentLayer) {
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_F", RTSTR, L"0,Steel", RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_TRUE(layerState(L"Steel", &AcDbLayerTableRecord::isFrozen));
    EXPECT_FALSE(layerState(L"0", &AcDbLayerTableRecord::isFrozen));
    EXPECT_NE(printed().find(L"It is the CURRENT layer"), std::wstring::npos);
    ASSERT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_F", RTSTR, L"Nothing", RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_NE(printed().find(L"No matching layer(s) found"), std::wstring::npos);
}

TEST_F(LayerCommand, ABadOptionFailsAndAMissingEndCancels) {
    EXPECT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_Q", RTNONE), RTERROR);
    EXPECT_EQ(acedCommand(RTSTR, L"_-layer", RTSTR, L"_T", RTSTR, L"Pipes", RTNONE), RTCAN);
    // The work done before the cancel stays, as at the host's prompt.
    EXPECT_FALSE(layerState(L"Pipes", &AcDbLayerTableRecord::isFrozen));
}

} // namespace
} // namespace editortest
