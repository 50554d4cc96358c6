// The registry as the module uses it during a run: a number read and written back for each
// counted error, and reads of a flag. The reference is the least an atomic update of a file of the
// same size costs: write a temporary file and rename it over the old one.
#include <win/registry.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

const wchar_t* const kKey = L"Software\\Tovi Technologies\\QelPlugins\\AutoCAD\\Qelin";

struct Folder {
    Folder() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "qelwin-bench-XXXXXX").string();
        path = mkdtemp(pattern.data());
        setenv("QELCAD_REGISTRY", (path / "registry.json").c_str(), 1);
    }
    ~Folder() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
};

HKEY openKey() {
    HKEY key = nullptr;
    DWORD disposition = 0;
    RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                    &disposition);
    DWORD zero = 0;
    RegSetValueExW(key, L"SurpressErrorMessages", 0, REG_DWORD, reinterpret_cast<BYTE*>(&zero), 4);
    return key;
}

void BM_ReferenceAtomicReplace(benchmark::State& state) {
    Folder folder;
    RegCloseKey(openKey());
    std::string text(std::filesystem::file_size(folder.path / "registry.json"), 'x');
    auto file = folder.path / "reference.json", temp = folder.path / "reference.json.tmp";
    for (auto _ : state) {
        std::ofstream(temp, std::ios::binary) << text;
        std::filesystem::rename(temp, file);
    }
}
BENCHMARK(BM_ReferenceAtomicReplace);

void BM_CountError(benchmark::State& state) {
    Folder folder;
    HKEY key = openKey();
    for (auto _ : state) {
        DWORD count = 0, size = sizeof count;
        RegQueryValueExW(key, L"ImportErrorCount", nullptr, nullptr,
                         reinterpret_cast<BYTE*>(&count), &size);
        ++count;
        RegSetValueExW(key, L"ImportErrorCount", 0, REG_DWORD, reinterpret_cast<BYTE*>(&count),
                       sizeof count);
    }
    RegCloseKey(key);
}
BENCHMARK(BM_CountError);

void BM_ReadSuppressFlag(benchmark::State& state) {
    Folder folder;
    HKEY key = openKey();
    for (auto _ : state) {
        DWORD flag = 0, size = sizeof flag;
        benchmark::DoNotOptimize(RegQueryValueExW(key, L"SurpressErrorMessages", nullptr, nullptr,
                                                  reinterpret_cast<BYTE*>(&flag), &size));
    }
    RegCloseKey(key);
}
BENCHMARK(BM_ReadSuppressFlag);

} // namespace
