// QELANN at the host's prompts: what is selected, the answer to the keyword prompt (Enter
// hides, Escape and a word that is no keyword restore), and which texts change: those of the
// groups of tagged entities only.
#include "fittings_support.h"

#include "records/annotation_command.h"

#include <arx/edhost.h>

namespace {

using namespace fittingstest;
using qelintest::FileLayout;

// Two objects with annotations: a flange (disk, centre line, one text) and a tee (run, centre
// line, branch, centre line, two texts), and a plain line of the user's.
class AnnotationCommand : public qelintest::ImportTest {
protected:
    void SetUp() override {
        ImportTest::SetUp();
        auto text = [](const char* name, const char* value) {
            return R"([")" + std::string(name) +
                   R"(", "object", {"class": "StrAnnotation", "params": [["value", "string", ")" +
                   value + R"("]]}])";
        };
        FileLayout layout;
        layout.objects = {
            R"({"class": "Flange", "params": [["radius", "double", 0.3], ["height", "double", 0.05], ["annotations", "object", {"class": "A", "params": [)" +
                text("Rating", "150") + "]}]]}",
            R"({"class": "Tee", "params": [["radius", "double", 0.1], ["height", "double", 0.4], ["branchradius", "double", 0.08], ["branchheight", "double", 0.3], ["annotations", "object", {"class": "A", "params": [)" +
                text("Line", "L-7") + ", " + text("Size", "100") + "]}]]}"};
        layout.layers = {{R"("Piping")", "[0, 1]", ""}};
        answer("");
        run(layout);
        appendLine();
        const std::vector<AcDbObjectId> ids = modelSpaceIds();
        ASSERT_EQ(ids.size(), 10u);
        m_disk = ids[0];
        m_teeBranch = ids[5];
        m_teeText = ids[8];
        m_line = ids[9];
    }
    // QELANN with the answers at its prompts, as a script gives them.
    void qelann(const std::wstring& answers) {
        qelhost::setInput(std::make_shared<qelhost::ScriptInput>(answers));
        m_said = win::Transcript::instance().size();
        QelAnnCommand();
    }
    std::wstring said() const { return win::Transcript::instance().printed(m_said); }
    static std::wstring handle(AcDbObjectId id) {
        ACHAR text[17];
        Open<AcDbEntity>(id)->handle().getIntoAsciiBuffer(text);
        return text;
    }
    // Visibility of every text in model space, in order: "v" shown, "h" hidden.
    static std::string texts() {
        std::string out;
        for (const AcDbObjectId& id : modelSpaceIds())
            if (Open<AcDbText> text{id}) out += text->visibility() == AcDb::kVisible ? "v" : "h";
        return out;
    }
    AcDbObjectId m_disk, m_teeBranch, m_teeText, m_line;
    std::size_t m_said = 0;
};

// One member of a group stands for the whole group; Enter hides, "R" restores.
TEST_F(AnnotationCommand, OneMemberHandlesItsWholeGroup) {
    EXPECT_EQ(texts(), "vvv");
    qelann(handle(m_teeBranch) + L"\n\n\n");
    EXPECT_EQ(texts(), "vhh");
    qelann(handle(m_disk) + L"\n\nHide\n");
    EXPECT_EQ(texts(), "hhh");
    qelann(handle(m_teeBranch) + L"\n\nr\n");
    EXPECT_EQ(texts(), "hvv");
    for (const AcDbObjectId& id : modelSpaceIds())
        if (!Open<AcDbText>(id)) {
            EXPECT_EQ(Open<AcDbEntity>(id)->visibility(), AcDb::kVisible);
        }
}

// Escape at the keyword prompt, or a word that is no keyword, is told, and the command goes on
// with its flag's default: it restores.
TEST_F(AnnotationCommand, AfterCancelOrErrorTheCommandRestores) {
    qelann(L"ALL\n\n\n");
    EXPECT_EQ(texts(), "hhh");
    qelann(L"ALL\n\n\x1b\n");
    EXPECT_EQ(texts(), "vvv");
    EXPECT_NE(said().find(L"\n User canceled"), std::wstring::npos) << said();
    qelann(L"ALL\n\n\n");
    qelann(L"ALL\n\nMaybe\n");
    EXPECT_EQ(texts(), "vvv");
    EXPECT_NE(said().find(L"\n Error in acedGetKword function"), std::wstring::npos) << said();
}

// Nothing happens for a selection of untagged entities (a text itself carries no member
// record); Escape at the selection ends silently, an empty one says so.
TEST_F(AnnotationCommand, UntaggedSelectionsAndEmptyOnes) {
    qelann(handle(m_line) + L" " + handle(m_teeText) + L"\n\n\n");
    EXPECT_EQ(texts(), "vvv");
    qelann(L"\x1b\n");
    EXPECT_EQ(said().find(L"Nothing selected"), std::wstring::npos);
    EXPECT_EQ(said().find(L"Restore or Hide"), std::wstring::npos);
    qelann(L"\n");
    EXPECT_NE(said().find(L"\n Nothing selected."), std::wstring::npos) << said();
    EXPECT_EQ(said().find(L"Restore or Hide"), std::wstring::npos);
}

} // namespace
