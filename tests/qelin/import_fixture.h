// An import into a host document of the test's own: object files built from their readable
// form, the driver run on them, and what the drawing, the log and the transcript hold after.
#pragma once

#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "host_fixture.h"
#include "import/read_qel_file.h"

#include <arx/acdb.h>
#include <arx/dbdatabase.h>
#include <arx/dbsymtb.h>
#include <qel/qel_json.h>

#include <optional>
#include <string>
#include <vector>

namespace qelintest {

// A file's layer: its "name" param as JSON ("" for none), its "objectList" ("" for none) and
// its colour ("" for no appearance).
struct LayerSpec {
    std::string name;
    std::string objects;
    std::string colour;
};

// The objects of a file in writing order: the given objects from 0, then the layers, the
// layer manager, the coordinate systems, the view, the model space and the header.
struct FileLayout {
    std::vector<std::string> objects;
    std::vector<LayerSpec> layers;
    std::string overrides;    // JSON of "layerOverrides", "" for none
    std::string currCoordSys; // JSON of the view's "currCoordSys" Transformation, "" for none
    std::string coordSystems; // params of "coordSysList", "" for no CoordSysMgr
    std::string defCoordSys;  // JSON of "defCoordSys", "" for none
    bool view = true;
    bool header = true;
    bool modelObjectList = true;

    std::string json() const {
        std::string out = R"({"format": "qel-json-1", "objects": [)";
        auto add = [&out](const std::string& object) {
            if (out.back() != '[') out += ",\n";
            out += object;
        };
        for (const std::string& o : objects)
            add(o);
        const std::size_t firstLayer = objects.size();
        for (const LayerSpec& layer : layers) {
            std::string params;
            auto param = [&params](const std::string& p) {
                params += (params.empty() ? "" : ", ") + p;
            };
            if (!layer.name.empty()) param(R"(["name", "string", )" + layer.name + "]");
            if (!layer.objects.empty()) param(R"(["objectList", "uint[]", )" + layer.objects + "]");
            if (!layer.colour.empty())
                param(
                    R"(["appearance", "object", {"class": "Appearance", "params": [["diffuseColor", "byte[]", )" +
                    layer.colour + "]]}]");
            add(R"({"class": "Layer", "params": [)" + params + "]}");
        }
        std::string layerRefs;
        for (std::size_t i = 0; i < layers.size(); ++i)
            layerRefs += (i ? ", " : "") + std::to_string(firstLayer + i);
        std::size_t next = firstLayer + layers.size();
        const std::size_t layerMgr = next++;
        add(R"({"class": "LayerMgr", "params": [["layerList", "uint[]", [)" + layerRefs + "]]]}");
        if (!coordSystems.empty()) {
            add(R"({"class": "CoordSysMgr", "params": [["coordSysList", "object", {"class": "CoordSysList", "params": [)" +
                coordSystems + "]}]]}");
            ++next;
        }
        if (view) {
            std::string params = R"(["name", "string", "View"])";
            if (!currCoordSys.empty())
                params += R"(, ["currCoordSys", "object", )" + currCoordSys + "]";
            if (!overrides.empty())
                params += R"(, ["layerOverrides", "uint[]", )" + overrides + "]";
            add(R"({"class": "ModelSpaceView", "params": [)" + params + "]}");
            ++next;
        }
        std::string modelRefs;
        for (std::size_t i = 0; i < objects.size(); ++i)
            modelRefs += (i ? ", " : "") + std::to_string(i);
        std::string msParams = R"(["layerMgr", "uint", )" + std::to_string(layerMgr) + "]";
        if (modelObjectList) msParams += R"(, ["objectList", "uint[]", [)" + modelRefs + "]]";
        if (!defCoordSys.empty()) msParams += R"(, ["defCoordSys", "object", )" + defCoordSys + "]";
        const std::size_t modelSpace = next++;
        add(R"({"class": "ModelSpace", "params": [)" + msParams + "]}");
        if (header)
            add(R"({"class": "Header", "params": [["rootLocation", "uint", )" +
                std::to_string(modelSpace) + "]]}");
        return out + "]}";
    }
};

// A Transformation in JSON.
inline std::string transformation(const std::string& translation, const std::string& rotation) {
    std::string params = R"(["translation", "double[]", )" + translation + "]";
    if (!rotation.empty()) params += R"(, ["rotation", "double[]", )" + rotation + "]";
    return R"({"class": "Transformation", "params": [)" + params + "]}";
}

// An object of a class with no params.
inline std::string object(const std::string& className) {
    return R"({"class": ")" + className + R"(", "params": []})";
}

struct LayerState {
    bool off = false;
    bool frozen = false;
    unsigned red = 0, green = 0, blue = 0;
};

class ImportTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        QelInit(0, 0, QelInitWords);
        QelDocData().createLog = 1;
        ASSERT_TRUE(WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 0));
    }

    std::wstring build(const std::string& json, const std::string& name = "in.qel") {
        const std::filesystem::path path = m_folder / name;
        qeljson::build(json, "fixture", path.string());
        return path.wstring();
    }

    // The driver on the file, with a job as the import run makes it.
    void run(const std::wstring& file) {
        QelJob job;
        job.fileName = file.c_str();
        job.lastOpenDir = job.fileName;
        job.logFilePath = QelLogFilePath();
        QelLogCreate();
        // Each run starts with the error boxes allowed again.
        WriteNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", 0);
        ReadQelFile(job);
        m_badLayerNames = job.badLayerNames;
    }
    void run(const FileLayout& layout) { run(build(layout.json())); }

    static std::optional<LayerState> layer(const wchar_t* name) {
        AcDbLayerTable* table = nullptr;
        if (acdbHostApplicationServices()->workingDatabase()->getLayerTable(table) != Acad::eOk)
            return std::nullopt;
        AcDbLayerTableRecord* record = nullptr;
        const bool found = table->getAt(name, record, AcDb::kForRead) == Acad::eOk;
        table->close();
        if (!found) return std::nullopt;
        LayerState state{record->isOff(), record->isFrozen(), record->color().red(),
                         record->color().green(), record->color().blue()};
        record->close();
        return state;
    }
    // The names of a symbol table of the working database, in order.
    template <typename Table>
    static std::vector<std::wstring> recordNames() {
        std::vector<std::wstring> names;
        Table* table = nullptr;
        acdbHostApplicationServices()->workingDatabase()->getSymbolTable(table, AcDb::kForRead);
        typename Table::Iterator* it = nullptr;
        table->newIterator(it);
        for (; !it->done(); it->step()) {
            AcDbSymbolTableRecord* record = nullptr;
            it->getRecord(record);
            names.push_back(record->name());
            record->close();
        }
        delete it;
        table->close();
        return names;
    }
    static std::vector<std::wstring> ucsNames() { return recordNames<AcDbUCSTable>(); }
    static std::wstring currentLayer() {
        resbuf rb{};
        acedGetVar(L"CLAYER", &rb);
        std::wstring name = rb.resval.rstring;
        acutDelString(rb.resval.rstring);
        return name;
    }
    static unsigned errorCount() {
        unsigned count = 0;
        QelGetErrorCount(count);
        return count;
    }
    std::wstring printed() const { return win::Transcript::instance().printed(m_mark); }
    // Dialogs of that template opened since the mark.
    int dialogsOpened(int id) const {
        int n = 0;
        for (const auto& e : win::Transcript::instance().events(m_mark))
            if (e.kind == win::EventKind::Dialog && e.what == L"opened" && e.id == id) ++n;
        return n;
    }

    int m_badLayerNames = 0;
};

// A file of the objects, all on one layer (its name as JSON text).
inline FileLayout oneLayer(const std::vector<std::string>& objects,
                           const std::string& layer = R"("Plant")") {
    FileLayout layout;
    layout.objects = objects;
    std::string refs;
    for (std::size_t i = 0; i < objects.size(); ++i)
        refs += (i ? ", " : "") + std::to_string(i);
    layout.layers = {{layer, "[" + refs + "]", ""}};
    return layout;
}

} // namespace qelintest
