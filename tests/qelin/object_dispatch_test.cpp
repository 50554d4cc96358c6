// The dispatcher on single objects: the lookup, unknown classes, and a creator that fails.
#include "import/object_dispatch.h"
#include "import_fixture.h"
#include "objectfile/param_read.h"

namespace {

using qelintest::ImportTest;

QelCreated failing(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    return QelCreated::Failed;
}
int g_reached = 0;
QelCreated reached(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    ++g_reached;
    return QelCreated::Done;
}
QelCreated failedAndTold(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    return QelCreated::FailedReported;
}

// Refuses a value, as a creator whose param is out of range does; the second also counts an
// error of its own.
QelCreated refusing(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    QelRefuseValue("radius", -1.0, "must be positive");
    return QelCreated::Done;
}
QelCreated refusingAndCounting(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    QelRefuseValue("radius", -1.0, "must be positive");
    QelCountError();
    return QelCreated::Done;
}

class DispatchTest : public ImportTest {
protected:
    void dispatch(const char* className) {
        QelObjectRef object(QelObject::Create(className));
        DispatchObject(m_job, object.get(), nullptr, 1, 7, &m_job.fileName);
    }
    QelJob m_job;
};

TEST_F(DispatchTest, ClassesAreFoundWithoutRegardToCase) {
    answer("");
    const QelCreatorSwap elbow(reached, "Elbow");
    const QelCreatorSwap bend(reached, "ReducingElbow");
    g_reached = 0;
    dispatch("ELBOW");
    dispatch("Elbow");
    EXPECT_EQ(m_job.typeIndex, 14u);
    EXPECT_EQ(g_reached, 2) << "both spellings reach the class's creator";
    dispatch("reducingelbow");
    EXPECT_EQ(m_job.typeIndex, 29u);
    dispatch("PipeBranch");
    EXPECT_EQ(m_job.typeIndex, 30u);
    EXPECT_EQ(printed().find(L"PipeBranch"), std::wstring::npos);
    // An unknown class leaves the index of the object before, and shows the name's bytes as
    // wide characters: "Ab" is one character.
    m_mark = win::Transcript::instance().size();
    dispatch("AbCd");
    EXPECT_EQ(m_job.typeIndex, 30u);
    const std::wstring skipped = std::wstring(L"\n Skipping unrecognized object: ") +
                                 wchar_t(0x6241) + wchar_t(0x6443) + L"\n";
    EXPECT_NE(printed().find(skipped), std::wstring::npos) << printed();
    EXPECT_EQ(errorCount(), 0u);
}

TEST_F(DispatchTest, AFailingCreatorIsReportedCountedAndLogged) {
    const QelCreatorSwap told(failedAndTold, "Sphere");
    answer("");
    dispatch("Sphere");
    EXPECT_TRUE(boxes().empty()) << "a failure the creator has told is not told again";
    EXPECT_EQ(errorCount(), 0u);

    const QelCreatorSwap swap(failing, "Sphere");
    QelDocData().createLog = 1;
    m_job.logFilePath = QelLogFilePath();
    QelLogCreate();
    answer("box no\n");
    dispatch("Sphere");
    dispatch("Sphere");
    // The first box offers silence, the user declines; the second asks again.
    EXPECT_EQ(boxes(), (std::vector<std::wstring>(
                           2, L"\nReturned Error Processing Object!\n\nSuppress all non-critical "
                              L"error messages?|36")));
    EXPECT_EQ(errorCount(), 2u);
    EXPECT_EQ(logText(), "\n      Returned Error Processing Object!\n"
                         "\n      Returned Error Processing Object!\n");
}

TEST_F(DispatchTest, ARefusedValueIsCountedOnceWhoeverCountsIt) {
    answer("");
    ASSERT_TRUE(WriteNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", 1)); // no boxes
    {
        const QelCreatorSwap swap(refusing, "Sphere");
        dispatch("Sphere");
        EXPECT_EQ(errorCount(), 1u) << "the dispatcher counts what the creator did not";
    }
    const QelCreatorSwap swap(refusingAndCounting, "Sphere");
    dispatch("Sphere");
    dispatch("Sphere");
    EXPECT_EQ(errorCount(), 3u) << "a creator that counted its refusal is not counted again";
}

} // namespace
