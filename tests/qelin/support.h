// Helpers of the module's tests: a registry file of the test's own, and what the user was shown.
#pragma once

#include <win/win.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace qelintest {

// Points the registry at a fresh file for the test's lifetime.
class ScratchRegistry {
public:
    ScratchRegistry() {
        static int serial = 0;
        m_path =
            std::filesystem::temp_directory_path() /
            ("qelin-reg-" + std::to_string(::getpid()) + "-" + std::to_string(serial++) + ".json");
        std::filesystem::remove(m_path);
        ::setenv("QELCAD_REGISTRY", m_path.c_str(), 1);
    }
    ~ScratchRegistry() {
        std::filesystem::remove(m_path);
        ::unsetenv("QELCAD_REGISTRY");
    }

private:
    std::filesystem::path m_path;
};

// Message boxes shown since the mark, as "text|type".
inline std::vector<std::wstring> boxesSince(std::size_t mark) {
    std::vector<std::wstring> boxes;
    for (const auto& e : win::Transcript::instance().events(mark))
        if (e.kind == win::EventKind::MessageBox)
            boxes.push_back(e.text + L"|" + std::to_wstring(e.type));
    return boxes;
}

} // namespace qelintest
