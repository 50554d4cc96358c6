// The fixture of the end-to-end tests: a folder and a settings store of its own per test, the
// sample plant model in it, and qelcad run there.
#pragma once

#include "shell/settings_store.h"

#include <win/strings.h>

#include <gtest/gtest.h>

#include "../support/command.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

class QelcadEndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("qelin-e2e-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir / "logs");
        registry = (dir / "registry.json").string();
        ::setenv("QELCAD_REGISTRY", registry.c_str(), 1);
        plant = (dir / "plant.qel").string();
        fs::copy_file(QEL_SAMPLE_PLANT, plant);
    }
    void TearDown() override {
        ::unsetenv("QELCAD_REGISTRY");
        fs::remove_all(dir);
    }
    std::string write(const std::string& name, const std::string& text) {
        std::ofstream(dir / name) << text;
        return (dir / name).string();
    }
    static std::string read(const fs::path& path) {
        std::ifstream in(path);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    // qelcad on build/bin, where the module lies, in the test's folder, with the given input;
    // stdout and stderr.
    Outcome qelcad(const std::string& arguments, const std::string& input = "") {
        const std::string command = "cd " + dir.string() + " && " + QELCAD + " " + arguments +
                                    " < " + write("stdin.txt", input) + " 2>&1";
        return runCommand(command);
    }
    DWORD number(const wchar_t* name) {
        DWORD value = 12345;
        ReadNumber(QEL_SETTINGS_KEY, name, value);
        return value;
    }
    std::wstring text(const wchar_t* name) {
        CString value;
        return ReadString(QEL_SETTINGS_KEY, name, value) ? std::wstring(value.GetString())
                                                         : L"<unreadable>";
    }
    static bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    fs::path dir;
    std::string registry, plant;
};
