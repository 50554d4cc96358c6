// Documents: the open drawings, the current one, their iterator and the manager's reactors.
#include "host.h"

#include <win/transcript.h>

#include <algorithm>
#include <filesystem>

AcRxClass* AcApDocument::desc() {
    static AcRxClass cls(L"AcApDocument", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcApDocumentIterator::desc() {
    static AcRxClass cls(L"AcApDocumentIterator", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcApDocManagerReactor::desc() {
    static AcRxClass cls(L"AcApDocManagerReactor", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcApDocManager::desc() {
    static AcRxClass cls(L"AcApDocManager", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcApDocument::isA() const {
    return desc();
}
AcRxClass* AcApDocumentIterator::isA() const {
    return desc();
}
AcRxClass* AcApDocManagerReactor::isA() const {
    return desc();
}
AcRxClass* AcApDocManager::isA() const {
    return desc();
}

namespace qelhost {

namespace {

std::wstring currentFolder() {
    std::error_code ec;
    std::wstring folder = std::filesystem::current_path(ec).wstring();
    if (folder.empty() || folder.back() != L'/') folder += L'/';
    return folder;
}

class DocManager : public AcApDocManager {
public:
    AcApDocument* curDocument() const override { return current_; }
    AcApDocument* mdiActiveDocument() const override { return current_; }
    AcApDocument* document(const AcDbDatabase* database) const override {
        for (const auto& doc : docs_)
            if (doc->database() == database) return doc.get();
        return nullptr;
    }
    int documentCount() const override { return int(docs_.size()); }
    AcApDocumentIterator* newAcApDocumentIterator() override;
    void addReactor(AcApDocManagerReactor* reactor) override {
        if (std::find(reactors_.begin(), reactors_.end(), reactor) == reactors_.end())
            reactors_.push_back(reactor);
    }
    void removeReactor(AcApDocManagerReactor* reactor) override { std::erase(reactors_, reactor); }

    // Reactors may remove themselves while told: tell a copy of the list.
    template <typename F>
    void tell(F&& f) {
        const std::vector<AcApDocManagerReactor*> reactors = reactors_;
        for (AcApDocManagerReactor* reactor : reactors)
            if (std::find(reactors_.begin(), reactors_.end(), reactor) != reactors_.end())
                f(reactor);
    }

    std::vector<std::unique_ptr<Document>> docs_;
    Document* current_ = nullptr;
    std::vector<AcApDocManagerReactor*> reactors_;
    int drawingsMade_ = 0;
};

DocManager& manager() {
    static DocManager instance;
    return instance;
}

// Walks a copy of the list, so that closing documents while iterating is safe.
class DocIterator : public AcApDocumentIterator {
public:
    explicit DocIterator(std::vector<Document*> docs) : docs_(std::move(docs)) {}
    bool done() const override { return index_ >= docs_.size(); }
    void step() override { ++index_; }
    AcApDocument* document() override { return done() ? nullptr : docs_[index_]; }

private:
    std::vector<Document*> docs_;
    std::size_t index_ = 0;
};

AcApDocumentIterator* DocManager::newAcApDocumentIterator() {
    return new DocIterator(documents());
}

void makeCurrent(Document* doc) {
    DocManager& m = manager();
    if (doc != nullptr) m.tell([doc](AcApDocManagerReactor* r) { r->documentToBeActivated(doc); });
    m.current_ = doc;
    acdbHostApplicationServices()->setWorkingDatabase(doc ? doc->database() : nullptr);
    if (doc != nullptr) m.tell([doc](AcApDocManagerReactor* r) { r->documentBecameCurrent(doc); });
}

} // namespace

Document::Document(std::wstring name)
    : prefix(currentFolder()), name_(std::move(name)), path_(name_),
      database_(std::make_unique<AcDbDatabase>()) {}

Document* currentDocument() {
    return manager().current_;
}

std::vector<Document*> documents() {
    std::vector<Document*> out;
    for (const auto& doc : manager().docs_)
        out.push_back(doc.get());
    return out;
}

AcApDocument* newDocument() {
    DocManager& m = manager();
    auto doc =
        std::make_unique<Document>(L"Drawing" + std::to_wstring(++m.drawingsMade_) + L".dwg");
    Document* made = doc.get();
    m.docs_.push_back(std::move(doc));
    makeCurrent(made);
    m.tell([made](AcApDocManagerReactor* r) { r->documentCreated(made); });
    sendToModules(3 /* kLoadDwgMsg */);
    return made;
}

bool closeDocument(AcApDocument* document) {
    DocManager& m = manager();
    auto it = std::find_if(m.docs_.begin(), m.docs_.end(),
                           [document](const auto& d) { return d.get() == document; });
    if (it == m.docs_.end()) return false;
    Document* doc = it->get();
    Document* previous = m.current_;
    // The modules see the drawing that goes as the current one.
    if (previous != doc) makeCurrent(doc);
    sendToModules(4 /* kUnloadDwgMsg */);
    m.tell([doc](AcApDocManagerReactor* r) { r->documentToBeDestroyed(doc); });
    clearSelections();
    std::unique_ptr<Document> gone = std::move(*it);
    m.docs_.erase(it);
    makeCurrent(previous != doc ? previous : (m.docs_.empty() ? nullptr : m.docs_.back().get()));
    return true;
}

void closeAllDocuments() {
    while (!manager().docs_.empty())
        closeDocument(manager().docs_.back().get());
}

bool setCurrentDocument(AcApDocument* document) {
    for (Document* doc : documents())
        if (doc == document) {
            makeCurrent(doc);
            return true;
        }
    return false;
}

void resetDocuments() {
    closeAllDocuments();
    manager().reactors_.clear();
    manager().drawingsMade_ = 0;
}

} // namespace qelhost

AcApDocManager* acDocManagerPtr() {
    return &qelhost::manager();
}
