// Shared set-up of the Windows subset's tests: a registry file of the test's own, a presenter,
// and reading the transcript.
#pragma once

#include <win/scripted.h>
#include <win/win.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace wintest {

// A fresh folder for the test, with the registry file pointed into it.
class TempRegistry {
public:
    TempRegistry();
    ~TempRegistry();
    const std::filesystem::path& dir() const { return dir_; }
    std::filesystem::path file() const { return dir_ / "registry.json"; }

private:
    std::filesystem::path dir_;
};

// Installs a scripted presenter (batch unless a fallback is given) for the life of the object.
struct Scripted {
    explicit Scripted(const std::string& answers = "",
                      std::shared_ptr<win::Presenter> fallback = nullptr);
    ~Scripted();
    std::shared_ptr<win::ScriptedPresenter> presenter;
};

// The events recorded since the object was made.
class TranscriptMark {
public:
    TranscriptMark() : from_(win::Transcript::instance().size()) {}
    std::vector<win::Event> events() const { return win::Transcript::instance().events(from_); }
    std::size_t from() const { return from_; }
    // One line per event, as the transcript file has them.
    std::vector<std::string> lines() const;
    std::vector<win::Event> of(win::EventKind kind) const;

private:
    std::size_t from_;
};

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& text);

} // namespace wintest
