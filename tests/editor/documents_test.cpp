// Documents: several open, the current one, the iterator, and the reactors' calls.
#include "editor_test.h"

#include <arx/acdocman.h>

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

} // namespace
} // namespace editortest
