// Documents: the open drawings, the current one, their iterator and the manager's reactors.
#include "host.h"

#include <arx/dbhost.h>
#include <dxf/drawing.h>

#include "db/rxdefine.h"

#include <win/transcript.h>

#include <algorithm>
#include <filesystem>
#include <vector>

ACRX_DEFINE_MEMBERS(AcApDocument, AcRxObject, nullptr)
ACRX_DEFINE_MEMBERS(AcApDocumentIterator, AcRxObject, nullptr)
ACRX_DEFINE_MEMBERS(AcApDocManagerReactor, AcRxObject, nullptr)
ACRX_DEFINE_MEMBERS(AcApDocManager, AcRxObject, nullptr)

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
    manager().current_ = doc;
    acdbHostApplicationServices()->setWorkingDatabase(doc ? doc->database() : nullptr);
}

} // namespace

Document::Document(std::wstring name)
    : prefix(currentFolder()), title(std::move(name)), path(title),
      database_(std::make_unique<AcDbDatabase>()) {
    savedWrites = acdbHostWriteCloseCount(database_.get());
}

Document::Document(const std::filesystem::path& file, std::unique_ptr<AcDbDatabase> database)
    : database_(std::move(database)) {
    setFile(file);
    savedWrites = acdbHostWriteCloseCount(database_.get());
}

bool Document::changed() const {
    return acdbHostWriteCloseCount(database_.get()) != savedWrites;
}

void Document::setFile(const std::filesystem::path& file) {
    const std::filesystem::path absolute = std::filesystem::absolute(file);
    prefix = absolute.parent_path().wstring() + L"/";
    title = absolute.filename().wstring();
    path = absolute.wstring();
    hasFile = true;
}

Document* currentDocument() {
    return manager().current_;
}

std::vector<Document*> documents() {
    std::vector<Document*> out;
    for (const auto& doc : manager().docs_)
        out.push_back(doc.get());
    return out;
}

namespace {
// A new or opened drawing joins the open ones and becomes current; reactors and modules hear of
// it.
AcApDocument* adopt(std::unique_ptr<Document> doc) {
    DocManager& m = manager();
    Document* made = doc.get();
    m.docs_.push_back(std::move(doc));
    makeCurrent(made);
    m.tell([made](AcApDocManagerReactor* r) { r->documentCreated(made); });
    sendToModules(3 /* kLoadDwgMsg */);
    return made;
}
} // namespace

AcApDocument* newDocument() {
    const int number = ++manager().drawingsMade_;
    return adopt(std::make_unique<Document>(L"Drawing" + std::to_wstring(number) + L".dwg"));
}

AcApDocument* openDocument(const std::filesystem::path& path, std::string& message) {
    std::unique_ptr<AcDbDatabase> database = dxf::openDrawing(path.string(), message);
    if (database == nullptr) return nullptr;
    return adopt(std::make_unique<Document>(path, std::move(database)));
}

bool saveDocument(AcApDocument* document, const std::filesystem::path& path, std::string& message) {
    auto* doc = static_cast<Document*>(document);
    if (doc == nullptr || doc->database() == nullptr) {
        message = "no drawing to save";
        return false;
    }
    if (!dxf::saveDrawing(*doc->database(), path.string(), message)) return false;
    doc->setFile(path);
    doc->savedWrites = acdbHostWriteCloseCount(doc->database());
    return true;
}

bool hasFile(const AcApDocument* document) {
    return document != nullptr && static_cast<const Document*>(document)->hasFile;
}

namespace {

// Under the leak checker a drawing is freed at the process's end as at any close: that close is
// what it checks, and it cannot follow the kernel's arrays (each keeps its pointer one element
// before its block), so it would take a drawing left in place for leaked memory.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kLeaveAtExit = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(leak_sanitizer)
constexpr bool kLeaveAtExit = false;
#else
constexpr bool kLeaveAtExit = true;
#endif
#else
constexpr bool kLeaveAtExit = true;
#endif

bool closeDocument(AcApDocument* document, bool atExit) {
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
    if (atExit && kLeaveAtExit) {
        // Held (never deleted) where the process's end finds them still reachable.
        static auto* const kept = new std::vector<std::unique_ptr<Document>>;
        kept->push_back(std::move(gone));
    }
    return true;
}

} // namespace

bool closeDocument(AcApDocument* document) {
    return closeDocument(document, false);
}

void closeAllDocuments(bool atExit) {
    while (!manager().docs_.empty())
        closeDocument(manager().docs_.back().get(), atExit);
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
