#include "registry_store.h"

#include <win/registry.h>
#include <win/strings.h>
#include <win/transcript.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using nlohmann::json;

namespace win {

std::string registryFile() {
    if (const char* path = std::getenv("QELCAD_REGISTRY"); path && *path) return path;
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config)
        return std::string(config) + "/qelcad/registry.json";
    const char* home = std::getenv("HOME");
    return std::string(home && *home ? home : ".") + "/.config/qelcad/registry.json";
}

} // namespace win

namespace win::reg {

namespace {

constexpr const char* kFormat = "qelcad-registry-1";

struct TypeName {
    DWORD type;
    const char* name;
};
constexpr TypeName kTypeNames[] = {
    {REG_NONE, "REG_NONE"},     {REG_SZ, "REG_SZ"},       {REG_EXPAND_SZ, "REG_EXPAND_SZ"},
    {REG_BINARY, "REG_BINARY"}, {REG_DWORD, "REG_DWORD"}, {REG_MULTI_SZ, "REG_MULTI_SZ"},
};

json typeToJson(DWORD type) {
    for (const auto& t : kTypeNames)
        if (t.type == type) return t.name;
    return type;
}

bool typeFromJson(const json& j, DWORD& type) {
    if (j.is_number_unsigned()) {
        type = j.get<DWORD>();
        return true;
    }
    if (!j.is_string()) return false;
    for (const auto& t : kTypeNames)
        if (j.get<std::string>() == t.name) {
            type = t.type;
            return true;
        }
    return false;
}

bool isStringType(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::string toHex(const std::vector<BYTE>& data) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (BYTE b : data) {
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

bool fromHex(const std::string& text, std::vector<BYTE>& data) {
    if (text.size() % 2) return false;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        auto digit = [](char c) {
            return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
        };
        int hi = digit(text[i]), lo = digit(text[i + 1]);
        if (hi < 0 || lo < 0) return false;
        data.push_back(static_cast<BYTE>(hi * 16 + lo));
    }
    return true;
}

// Strings are shown as text when their bytes are whole wide characters that round-trip through
// UTF-8: "string" when they end in the one terminator, "text" with every unit otherwise.
json valueToJson(const Value& v) {
    json j;
    j["type"] = typeToJson(v.type);
    if (isStringType(v.type) && v.data.size() % sizeof(wchar_t) == 0) {
        std::wstring units(v.data.size() / sizeof(wchar_t), L'\0');
        std::memcpy(units.data(), v.data.data(), v.data.size());
        if (fromUtf8(toUtf8(units)) == units) {
            if (!units.empty() && units.back() == L'\0' && units.find(L'\0') == units.size() - 1)
                j["string"] = toUtf8(units.substr(0, units.size() - 1));
            else
                j["text"] = toUtf8(units);
            return j;
        }
    }
    if (v.type == REG_DWORD && v.data.size() == sizeof(DWORD)) {
        DWORD number;
        std::memcpy(&number, v.data.data(), sizeof number);
        j["dword"] = number;
        return j;
    }
    j["hex"] = toHex(v.data);
    return j;
}

bool valueFromJson(const json& j, Value& v, std::string& error) {
    if (!j.is_object() || !j.contains("type") || !typeFromJson(j["type"], v.type)) {
        error = "no valid \"type\"";
        return false;
    }
    auto units = [&v](std::wstring text) {
        v.data.resize(text.size() * sizeof(wchar_t));
        std::memcpy(v.data.data(), text.data(), v.data.size());
    };
    if (j.contains("string") && j["string"].is_string()) {
        units(fromUtf8(j["string"].get<std::string>()) + L'\0');
    } else if (j.contains("text") && j["text"].is_string()) {
        units(fromUtf8(j["text"].get<std::string>()));
    } else if (j.contains("dword") && j["dword"].is_number_unsigned() &&
               j["dword"].get<std::uint64_t>() <= 0xffffffffu) {
        DWORD number = j["dword"].get<DWORD>();
        v.data.resize(sizeof number);
        std::memcpy(v.data.data(), &number, sizeof number);
    } else if (!(j.contains("hex") && j["hex"].is_string() &&
                 fromHex(j["hex"].get<std::string>(), v.data))) {
        error = "no valid data (\"string\", \"text\", \"dword\" or \"hex\")";
        return false;
    }
    return true;
}

const wchar_t* const kRoots[] = {L"HKEY_CURRENT_USER", L"HKEY_LOCAL_MACHINE"};

void addRoots(Tree& tree) {
    for (const wchar_t* root : kRoots)
        tree.try_emplace(fold(root), Key{root, {}});
}

struct Stat {
    long long mtimeNs = -1, size = -1, inode = -1;
};

Stat statOf(const std::string& file) {
    struct stat st {};
    if (::stat(file.c_str(), &st) != 0) return {};
    return {static_cast<long long>(st.st_mtim.tv_sec) * 1000000000LL + st.st_mtim.tv_nsec,
            static_cast<long long>(st.st_size), static_cast<long long>(st.st_ino)};
}

// Holds the lock file of the registry for the life of the object.
class FileLock {
public:
    explicit FileLock(const std::string& file) {
        std::error_code ec;
        fs::create_directories(fs::path(file).parent_path(), ec);
        fd_ = ::open((file + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (fd_ >= 0) ::flock(fd_, LOCK_EX);
    }
    ~FileLock() {
        if (fd_ >= 0) ::close(fd_); // closing releases the lock
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int fd_ = -1;
};

enum class ReadResult { Missing, Ok, Corrupt };

ReadResult readFile(const std::string& file, Tree& tree, std::string& error) {
    std::ifstream in(file, std::ios::binary);
    if (!in) return ReadResult::Missing;
    std::stringstream text;
    text << in.rdbuf();
    return parse(text.str(), tree, error) ? ReadResult::Ok : ReadResult::Corrupt;
}

bool writeFile(const std::string& file, const Tree& tree) {
    std::error_code ec;
    fs::create_directories(fs::path(file).parent_path(), ec);
    std::string temp = file + ".tmp." + std::to_string(::getpid());
    std::string text = serialise(tree);
    int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    // No fsync: the module writes a value per counted error, and a rename over the old file is
    // already all or nothing for every process that reads it.
    bool ok = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ok = ::close(fd) == 0 && ok;
    if (ok && ::rename(temp.c_str(), file.c_str()) == 0) return true;
    ::unlink(temp.c_str());
    return false;
}

} // namespace

std::wstring fold(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out)
        if (c < 128) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return out;
}

std::string serialise(const Tree& tree) {
    json keys = json::object();
    for (const auto& [folded, key] : tree) {
        json values = json::object();
        for (const auto& [vf, value] : key.values)
            values[toUtf8(value.name)] = valueToJson(value);
        keys[toUtf8(key.path)] = values;
    }
    json root = {{"format", kFormat}, {"keys", keys}};
    return root.dump(1) + "\n";
}

bool parse(const std::string& text, Tree& tree, std::string& error) {
    json root = json::parse(text, nullptr, false);
    if (root.is_discarded()) {
        error = "not JSON";
        return false;
    }
    if (!root.is_object() || root.value("format", std::string()) != kFormat) {
        error = std::string("no \"format\": \"") + kFormat + "\"";
        return false;
    }
    if (!root.contains("keys") || !root["keys"].is_object()) {
        error = "no \"keys\" object";
        return false;
    }
    tree.clear();
    for (const auto& [path, values] : root["keys"].items()) {
        std::wstring wpath = fromUtf8(path);
        std::wstring rootName = wpath.substr(0, wpath.find(L'\\'));
        bool knownRoot = false;
        for (const wchar_t* r : kRoots)
            knownRoot = knownRoot || fold(rootName) == fold(r);
        if (!knownRoot || !values.is_object()) {
            error = "key \"" + path + "\": " + (knownRoot ? "not an object" : "unknown root");
            return false;
        }
        Key& key = tree[fold(wpath)];
        key.path = wpath;
        for (const auto& [name, item] : values.items()) {
            Value value;
            value.name = fromUtf8(name);
            std::string why;
            if (!valueFromJson(item, value, why)) {
                error = "key \"" + path + "\", value \"" + name + "\": " + why;
                return false;
            }
            key.values[fold(value.name)] = std::move(value);
        }
    }
    addRoots(tree);
    return true;
}

Store& Store::instance() {
    static Store* store = new Store; // used by static destructors of modules as well
    return *store;
}

bool Store::setAside(const std::string& file, const std::string& reason) {
    std::string backup = file + ".corrupt";
    for (int n = 1; fs::exists(backup); ++n)
        backup = file + ".corrupt." + std::to_string(n);
    bool moved = ::rename(file.c_str(), backup.c_str()) == 0;
    std::string message =
        "registry file " + file + " is not readable (" + reason + "); " +
        (moved ? "it was kept as " + backup + " and the registry starts empty"
               : "it could not be moved aside, so the registry is read as empty and not written");
    std::fprintf(stderr, "qelcad: %s\n", message.c_str());
    Transcript::instance().host(fromUtf8(message));
    return moved;
}

Tree Store::load(const std::string& file, bool underLock) {
    Tree tree;
    std::string error;
    if (readFile(file, tree, error) == ReadResult::Corrupt) {
        // Look again under the lock: another host may have replaced the file meanwhile.
        std::optional<FileLock> lock;
        if (!underLock) lock.emplace(file);
        if (readFile(file, tree, error) == ReadResult::Corrupt) {
            stillCorrupt_ = !setAside(file, error);
            tree.clear();
        }
    } else {
        stillCorrupt_ = false;
    }
    addRoots(tree);
    return tree;
}

void Store::refresh(const std::string& file) {
    Stat now = statOf(file);
    if (seen_.file == file && seen_.mtimeNs == now.mtimeNs && seen_.size == now.size &&
        seen_.inode == now.inode)
        return;
    tree_ = load(file, false);
    Stat after = statOf(file);
    seen_ = {file, after.mtimeNs, after.size, after.inode};
}

void Store::refresh() {
    refresh(registryFile());
}

LONG Store::update(const std::function<LONG(Tree&, bool&)>& change) {
    std::lock_guard guard(mutex_);
    std::string file = registryFile();
    FileLock lock(file);
    Tree tree = load(file, true);
    if (stillCorrupt_) return ERROR_REGISTRY_CORRUPT; // never write over what we couldn't read
    bool changed = false;
    LONG result = change(tree, changed);
    if (result != ERROR_SUCCESS || !changed) return result;
    if (!writeFile(file, tree)) return ERROR_CANTWRITE;
    tree_ = std::move(tree);
    Stat after = statOf(file);
    seen_ = {file, after.mtimeNs, after.size, after.inode};
    return ERROR_SUCCESS;
}

} // namespace win::reg
