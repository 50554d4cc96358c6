// Documents: several open, the current one, the iterator, and the reactors' calls.
#include "editor_test.h"

#include <arx/acdocman.h>
#include <arx/dbents.h>
#include <arx/edhost.h>

#include <filesystem>
#include <unistd.h>

namespace editortest {
namespace {

using Documents = EditorTest;

struct Recorder : AcApDocManagerReactor {
    std::vector<std::wstring> seen;
    void documentCreated(AcApDocument* doc) override { seen.push_back(L"created " + title(doc)); }
    void documentToBeDestroyed(AcApDocument* doc) override {
        // The document is still whole: its database and its variables answer.
        seen.push_back(L"destroyed " + title(doc) +
                       (doc->database() != nullptr ? L" with database" : L""));
    }
    static std::wstring title(AcApDocument* doc) { return doc->docTitle(); }
};

TEST_F(Documents, SeveralOpenTheNewestCurrentAndTheIteratorSeesAll) {
    AcApDocument* first = curDoc();
    AcApDocument* second = qelhost::newDocument();
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 2);
    EXPECT_EQ(curDoc(), second);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), second->database());
    EXPECT_NE(first->database(), second->database());
    std::vector<AcApDocument*> walked;
    AcApDocumentIterator* it = acDocManagerPtr()->newAcApDocumentIterator();
    for (; !it->done(); it->step())
        walked.push_back(it->document());
    delete it;
    EXPECT_EQ(walked, (std::vector<AcApDocument*>{first, second}));
    EXPECT_TRUE(qelhost::setCurrentDocument(first));
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), first->database());
    EXPECT_EQ(acDocManagerPtr()->document(second->database()), second);
}

TEST_F(Documents, ReactorsHearCreationAndDestructionUntilRemoved) {
    Recorder recorder;
    acDocManagerPtr()->addReactor(&recorder);
    AcApDocument* second = qelhost::newDocument();
    AcApDocument* first = nullptr;
    for (AcApDocumentIterator* it = acDocManagerPtr()->newAcApDocumentIterator();; it->step())
        if (it->document() != second) {
            first = it->document();
            delete it;
            break;
        }
    EXPECT_TRUE(qelhost::closeDocument(second));
    EXPECT_EQ(curDoc(), first);
    EXPECT_FALSE(qelhost::closeDocument(second));
    acDocManagerPtr()->removeReactor(&recorder);
    qelhost::newDocument();
    EXPECT_EQ(recorder.seen, (std::vector<std::wstring>{L"created Drawing2.dwg",
                                                        L"destroyed Drawing2.dwg with database"}));
}

TEST_F(Documents, ClosingAllAtTheProcesssEndTellsEveryoneAsAnyClosing) {
    Recorder recorder;
    acDocManagerPtr()->addReactor(&recorder);
    qelhost::newDocument();
    qelhost::closeAllDocuments(true);
    acDocManagerPtr()->removeReactor(&recorder);
    EXPECT_EQ(curDoc(), nullptr);
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 0);
    EXPECT_EQ(recorder.seen, (std::vector<std::wstring>{L"created Drawing2.dwg",
                                                        L"destroyed Drawing2.dwg with database",
                                                        L"destroyed Drawing1.dwg with database"}));
    EXPECT_EQ(qelhost::runCommand(L"NEW"), RTNORM);
}

TEST_F(Documents, CommandsNeedAnOpenDrawing) {
    qelhost::closeAllDocuments();
    EXPECT_EQ(curDoc(), nullptr);
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTNONE), RTERROR);
    resbuf rb;
    rb.restype = RTNONE;
    EXPECT_EQ(acedGetVar(L"CLAYER", &rb), RTERROR);
    EXPECT_EQ(qelhost::runCommand(L"LIST"), RTERROR);
    EXPECT_EQ(qelhost::runCommand(L"NEW"), RTNORM);
    EXPECT_NE(curDoc(), nullptr);
}

// CLOSE and QUIT offer a changed drawing to be saved: Cancel keeps it open, No lets it go as it
// is, Yes saves it first; an unchanged drawing, or one just saved, goes without a question.
TEST_F(Documents, ClosingAChangedDrawingOffersToSaveIt) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("close-" + std::to_string(::getpid()) + ".dxf");
    answers(L"X\n");
    EXPECT_EQ(qelhost::runCommand(L"CLOSE"), RTNORM); // new and untouched: no question
    EXPECT_EQ(printed().find(L"Save changes"), std::wstring::npos);
    EXPECT_EQ(curDoc(), nullptr);

    qelhost::newDocument();
    add(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
    answers(L"C\n");
    EXPECT_EQ(qelhost::runCommand(L"QUIT"), RTCAN);
    EXPECT_FALSE(qelhost::quitRequested());
    answers(L"C\n");
    EXPECT_EQ(qelhost::runCommand(L"CLOSE"), RTCAN);
    EXPECT_NE(printed().find(L"Save changes to Drawing"), std::wstring::npos) << printed();
    ASSERT_NE(curDoc(), nullptr);
    answers(L"Y\n" + file.wstring() + L"\n");
    EXPECT_EQ(qelhost::runCommand(L"CLOSE"), RTNORM);
    EXPECT_EQ(curDoc(), nullptr);

    // Saved and then changed: No closes without writing the change.
    std::string error;
    ASSERT_NE(qelhost::openDocument(file, error), nullptr) << error;
    EXPECT_EQ(entityCount(), 1);
    answers(L"X\n");
    EXPECT_EQ(qelhost::runCommand(L"CLOSE"), RTNORM);
    ASSERT_NE(qelhost::openDocument(file, error), nullptr) << error;
    add(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(2, 0, 0)));
    answers(L"N\n");
    EXPECT_EQ(qelhost::runCommand(L"CLOSE"), RTNORM);
    ASSERT_NE(qelhost::openDocument(file, error), nullptr) << error;
    EXPECT_EQ(entityCount(), 1);
    std::filesystem::remove(file);
}

} // namespace
} // namespace editortest
