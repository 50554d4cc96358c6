// Helpers shared by the object-file tests: a scratch folder, files built from the JSON form,
// and references that release themselves.
#pragma once

#include <qel/qel.h>
#include <qel/qel_json.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace qeltest {

struct Unref {
    void operator()(QelObject* o) const {
        if (o) o->UnRef();
    }
};
using Ref = std::unique_ptr<QelObject, Unref>;

inline void initLibrary() { QelInit(0, 0, QelInitWords); }

// A folder of its own for each test, removed afterwards.
class ScratchDir {
public:
    ScratchDir() {
        static int serial = 0;
        m_path = std::filesystem::temp_directory_path() /
                 ("qeltest-" + std::to_string(::getpid()) + "-" + std::to_string(serial++));
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~ScratchDir() { std::filesystem::remove_all(m_path); }
    std::string file(const std::string& name) const { return (m_path / name).string(); }
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

inline std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

inline std::string sampleJson() { return readText(std::string(QEL_SOURCE_DIR) + "/samples/plant.json"); }

inline std::string dumpFile(const std::string& path) {
    QelReader reader(path.c_str());
    std::ostringstream out;
    qeljson::dump(reader, out);
    return out.str();
}

} // namespace qeltest
