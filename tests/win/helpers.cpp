#include "helpers.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace wintest {

TempRegistry::TempRegistry() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qelwin-XXXXXX").string();
    dir_ = mkdtemp(pattern.data());
    setenv("QELCAD_REGISTRY", file().c_str(), 1);
}

TempRegistry::~TempRegistry() {
    unsetenv("QELCAD_REGISTRY");
    std::error_code ec;
    std::filesystem::remove_all(dir_, ec);
}

Scripted::Scripted(const std::string& answers, std::shared_ptr<win::Presenter> fallback)
    : presenter(std::make_shared<win::ScriptedPresenter>(std::move(fallback))) {
    std::string error;
    EXPECT_TRUE(presenter->parse(answers, error)) << error;
    win::setPresenter(presenter);
}

Scripted::~Scripted() {
    win::setPresenter(nullptr);
}

std::vector<std::string> TranscriptMark::lines() const {
    std::vector<std::string> out;
    for (const win::Event& e : events())
        out.push_back(win::describe(e));
    return out;
}

std::vector<win::Event> TranscriptMark::of(win::EventKind kind) const {
    std::vector<win::Event> out;
    for (const win::Event& e : events())
        if (e.kind == kind) out.push_back(e);
    return out;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

} // namespace wintest
