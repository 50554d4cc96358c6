// Modules: shared objects loaded by file name from the module folder, their entry point and
// locks; the system registry with the class dictionary and the command stack.
#include "host.h"

#include "arx/accmd.h"
#include "arx/rxregsvc.h"

#include <arx/arx.h>
#include <win/transcript.h>

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>

AcRxClass* AcRxDictionary::desc() {
    static AcRxClass cls(L"AcRxDictionary", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcRxDictionary::isA() const {
    return desc();
}
AcRxClass* AcRxDynamicLinker::desc() {
    static AcRxClass cls(L"AcRxDynamicLinker", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcRxDynamicLinker::isA() const {
    return desc();
}

namespace qelhost {

namespace {

using EntryPoint = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);
using ApiVersion = int (*)();

struct Module {
    std::string file;  // as found on disk
    std::wstring name; // as the caller gave it
    void* handle = nullptr;
    EntryPoint entry = nullptr;
    bool locked = true;
    bool mdiAware = false;
};

struct Modules {
    std::vector<std::unique_ptr<Module>> loaded;
    std::filesystem::path folder = ".";
};

Modules& modules() {
    static Modules instance;
    return instance;
}

void say(const std::wstring& text) {
    win::Transcript::instance().print(text);
}

// The file for a module name: a path as given, else the name in the module folder, matched
// exactly or, failing that, without regard to case.
std::optional<std::filesystem::path> findModule(const std::wstring& name) {
    namespace fs = std::filesystem;
    const fs::path given(narrow(name));
    std::error_code ec;
    if (given.has_parent_path()) {
        if (fs::is_regular_file(given, ec)) return given;
        return std::nullopt;
    }
    const fs::path exact = modules().folder / given;
    if (fs::is_regular_file(exact, ec)) return exact;
    const std::wstring wanted = upper(name);
    for (const auto& entry : fs::directory_iterator(modules().folder, ec))
        if (entry.is_regular_file(ec) && upper(widen(entry.path().filename().string())) == wanted)
            return entry.path();
    return std::nullopt;
}

Module* findLoaded(const std::wstring& name) {
    const std::wstring wanted = upper(std::filesystem::path(narrow(name)).filename().wstring());
    for (const auto& m : modules().loaded)
        if (upper(std::filesystem::path(m->file).filename().wstring()) == wanted) return m.get();
    return nullptr;
}

Module* byAppId(void* appId) {
    for (const auto& m : modules().loaded)
        if (m->handle == appId) return m.get();
    return nullptr;
}

class DynamicLinker : public AcRxDynamicLinker {
public:
    bool loadModule(const ACHAR* fileName, bool printit, bool) override {
        if (fileName == nullptr) return false;
        if (findLoaded(fileName)) return true;
        auto fail = [&](const std::wstring& why) {
            if (printit) say(L"\nUnable to load " + std::wstring(fileName) + L": " + why + L"\n");
            return false;
        };
        std::optional<std::filesystem::path> path = findModule(fileName);
        if (!path) return fail(L"file not found in " + modules().folder.wstring());
        void* handle = dlopen(path->c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) return fail(widen(dlerror()));
        auto entry = reinterpret_cast<EntryPoint>(dlsym(handle, "acrxEntryPoint"));
        auto version = reinterpret_cast<ApiVersion>(dlsym(handle, "acrxGetApiVersion"));
        if (entry == nullptr || (version != nullptr && version() != ACRX_API_VERSION)) {
            dlclose(handle);
            return fail(entry == nullptr ? L"no entry point acrxEntryPoint"
                                         : L"built for another version of the interface");
        }
        auto module = std::make_unique<Module>();
        module->file = path->string();
        module->name = fileName;
        module->handle = handle;
        module->entry = entry;
        Module* m = module.get();
        modules().loaded.push_back(std::move(module));
        if (entry(AcRx::kInitAppMsg, handle) != AcRx::kRetOK) {
            std::erase_if(modules().loaded, [m](const auto& p) { return p.get() == m; });
            dlclose(handle);
            return fail(L"the module refused to start");
        }
        runLoadDwgFor(handle);
        return true;
    }

    bool unloadModule(const ACHAR* fileName, bool printit) override {
        Module* m = fileName ? findLoaded(fileName) : nullptr;
        if (m == nullptr || m->locked) {
            if (printit)
                say(L"\nUnable to unload " + std::wstring(fileName ? fileName : L"") +
                    (m ? L": the module is locked.\n" : L": not loaded.\n"));
            return false;
        }
        unload(m);
        return true;
    }

    bool unlockApplication(void* appId) const override { return setLock(appId, false); }
    bool lockApplication(void* appId) const override { return setLock(appId, true); }
    bool isApplicationLocked(const ACHAR* fileName) const override {
        Module* m = fileName ? findLoaded(fileName) : nullptr;
        return m != nullptr && m->locked;
    }
    bool registerAppMDIAware(void* appId) const override { return setMdi(appId, true); }
    bool registerAppNotMDIAware(void* appId) const override { return setMdi(appId, false); }

    static void unload(Module* m) {
        m->entry(AcRx::kUnloadAppMsg, m->handle);
        void* handle = m->handle;
        std::erase_if(modules().loaded, [m](const auto& p) { return p.get() == m; });
        dlclose(handle);
    }

private:
    static bool setLock(void* appId, bool locked) {
        Module* m = byAppId(appId);
        if (m) m->locked = locked;
        return m != nullptr;
    }
    static bool setMdi(void* appId, bool aware) {
        Module* m = byAppId(appId);
        if (m) m->mdiAware = aware;
        return m != nullptr;
    }
};

DynamicLinker linker;

// The class dictionary holds, per class, an object that gives the class back.
class ClassEntry : public AcRxObject {
public:
    explicit ClassEntry(AcRxClass* cls) : cls_(cls) {}
    AcRxClass* isA() const override { return cls_; }

private:
    AcRxClass* cls_;
};

class NamedDictionary : public AcRxDictionary {
public:
    AcRxObject* at(const ACHAR* key) const override {
        auto it = key ? entries_.find(key) : entries_.end();
        return it == entries_.end() ? nullptr : it->second;
    }
    bool has(const ACHAR* key) const override { return at(key) != nullptr; }
    Adesk::UInt32 numEntries() const override { return Adesk::UInt32(entries_.size()); }
    void put(const std::wstring& key, AcRxObject* value) { entries_[key] = value; }

private:
    std::map<std::wstring, AcRxObject*> entries_;
};

NamedDictionary& classDictionary() {
    static NamedDictionary dictionary;
    static bool filled = false;
    if (!filled) {
        filled = true;
        static AcRxClass* (*const kClasses[])() = {
            AcRxObject::desc,
            AcDbObject::desc,
            AcDbEntity::desc,
            AcDbCurve::desc,
            AcDbLine::desc,
            AcDbCircle::desc,
            AcDbArc::desc,
            AcDbPoint::desc,
            AcDbText::desc,
            AcDbFace::desc,
            AcDbSolid::desc,
            AcDbTrace::desc,
            AcDbEllipse::desc,
            AcDbSpline::desc,
            AcDbPolyline::desc,
            AcDb2dPolyline::desc,
            AcDb3dPolyline::desc,
            AcDbPolyFaceMesh::desc,
            AcDbPolygonMesh::desc,
            AcDbBlockReference::desc,
            AcDbDictionary::desc,
            AcDbXrecord::desc,
            AcDbGroup::desc,
            AcDbSymbolTable::desc,
            AcDbSymbolTableRecord::desc,
            AcDbLayerTableRecord::desc,
            AcDbBlockTableRecord::desc,
            AcDbUCSTableRecord::desc,
            AcDbRegAppTableRecord::desc,
            AcEdCommandStack::desc,
            AcApDocument::desc,
            AcApDocManager::desc,
            AcRxDictionary::desc,
        };
        for (auto desc : kClasses) {
            AcRxClass* cls = desc();
            dictionary.put(cls->name(), new ClassEntry(cls));
        }
    }
    return dictionary;
}

} // namespace

void sendToModules(int message) {
    std::vector<Module*> now;
    for (const auto& m : modules().loaded)
        now.push_back(m.get());
    for (Module* m : now)
        m->entry(AcRx::AppMsgCode(message), m->handle);
}

void runLoadDwgFor(void* appId) {
    Module* m = byAppId(appId);
    if (m == nullptr || currentDocument() == nullptr) return;
    m->entry(AcRx::kLoadDwgMsg, appId);
}

void setModuleFolder(const std::filesystem::path& folder) {
    modules().folder = folder;
}

std::filesystem::path moduleFolder() {
    return modules().folder;
}

std::vector<std::string> loadedModules() {
    std::vector<std::string> out;
    for (const auto& m : modules().loaded)
        out.push_back(m->file);
    return out;
}

void unloadAllModules() {
    while (!modules().loaded.empty())
        DynamicLinker::unload(modules().loaded.back().get());
}

void resetModules() {
    unloadAllModules();
}

} // namespace qelhost

AcRxDynamicLinker* acrxDynamicLinker = &qelhost::linker;

AcRxDictionary* acrxClassDictionary() {
    return &qelhost::classDictionary();
}

AcRxDictionary* acrxSysRegistry() {
    static qelhost::NamedDictionary registry;
    if (registry.numEntries() == 0) {
        registry.put(L"ClassDictionary", acrxClassDictionary());
        registry.put(ACRX_COMMAND_DOCK, acedRegCmds());
    }
    return &registry;
}
