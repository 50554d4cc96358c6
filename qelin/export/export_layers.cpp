// One Layer per drawing layer with the numbers of its objects, and the LayerMgr that lists them.
#include "export/appearance.h"
#include "export/entity_dispatch.h"
#include "export/qel_out_object.h"
#include "export/selection.h"
#include "export/structure_objects.h"
#include "foundation/state_guards.h"
#include "foundation/string_ring.h"
#include "import/layer_import.h"
#include "objectfile/type_codes.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <unordered_map>
#include <vector>

namespace {

constexpr int kLastLayerIndex = 65534;
constexpr const wchar_t* kDefaultName = L"Default";

// Codes whose entities give no object of their own: centre lines and the semi-elliptic cap.
bool listedElsewhere(int type) {
    return type == QelCode::CenterLine || type == QelCode::SemiEllipticCap ||
           type == QelCode::BottomCenterLine || type == QelCode::NoCode;
}

AcDbDatabase* workingDatabase() {
    return acdbHostApplicationServices()->workingDatabase();
}

void addColour(QelObject* object, const unsigned char rgb[3]) {
    QelObject* appearance = QelObject::Create("Appearance");
    appearance->AddOrReplaceParam(QelParam::Create("ambientColor", rgb, 3));
    appearance->AddOrReplaceParam(QelParam::Create("diffuseColor", rgb, 3));
    object->AddOrReplaceParam(QelParam::Create("appearance", appearance));
    appearance->UnRef();
}

void layerColour(const AcDbLayerTableRecord* record, unsigned char rgb[3]) {
    QelColourBytes(record->color(), rgb);
}

void setObjectList(QelObject* object, const std::vector<unsigned>& numbers) {
    object->AddOrReplaceParam(
        QelParam::Create("objectList", numbers.data(), static_cast<unsigned>(numbers.size())));
}

// The numbers an entity of the layer stands for; nothing when it is grouped or gave no object.
void appendWritten(QelOutObject& out, const AcDbObjectId& id, std::vector<unsigned>& numbers,
                   bool& hasObjects) {
    if (const TaggedEntityRec* tagged = out.findTagged(id)) {
        if (tagged->writtenRef == -1 || listedElsewhere(tagged->objectType) ||
            tagged->groupNumber != 0)
            return;
        hasObjects = true;
        numbers.push_back(static_cast<unsigned>(tagged->writtenRef));
    } else if (const UntaggedEntityRec* untagged = out.findUntagged(id)) {
        if (untagged->writtenRef == -1 || listedElsewhere(untagged->objectType)) return;
        hasObjects = true;
        numbers.push_back(static_cast<unsigned>(untagged->writtenRef));
        for (unsigned i = 0; i < untagged->extraRefs.GetCount(); ++i)
            numbers.push_back(static_cast<unsigned>(untagged->extraRefs[i]));
    }
}

// The faces of a mesh inserted as a block: looked up once per export, under the first layer
// that has an entity without an object.
void scanBlockFaces(QelOutObject& out, std::vector<unsigned>& numbers, bool& hasObjects) {
    AcDbBlockTable* blocks = nullptr;
    if (!workingDatabase() || workingDatabase()->getBlockTable(blocks, AcDb::kForRead) != Acad::eOk)
        return;
    AcDbBlockTableIterator* it = nullptr;
    if (blocks->newIterator(it) != Acad::eOk || !it) {
        blocks->close();
        return;
    }
    for (; !it->done(); it->step()) {
        AcDbBlockTableRecord* block = nullptr;
        if (it->getRecord(block, AcDb::kForRead) != Acad::eOk) continue;
        AcDbBlockTableRecordIterator* entities = nullptr;
        if (block->newIterator(entities) == Acad::eOk && entities) {
            for (; !entities->done(); entities->step()) {
                AcDbEntity* entity = nullptr;
                if (entities->getEntity(entity, AcDb::kForRead) != Acad::eOk) continue;
                const bool face = AcDbFace::cast(entity) != nullptr;
                const AcDbObjectId id = entity->objectId();
                entity->close();
                if (face) appendWritten(out, id, numbers, hasObjects);
            }
            delete entities;
        }
        block->close();
    }
    delete it;
    blocks->close();
}

// The groups listed under each layer, by the layer's name.
void gatherGroupsByLayer(QelOutObject& out) {
    out.groupsByLayer.clear();
    for (const auto& group : out.groupRecs) {
        AcDbLayerTableRecord* layer = nullptr;
        if (group->groupRef < 0 ||
            acdbOpenObject(layer, group->layerId, AcDb::kForRead) != Acad::eOk)
            continue;
        const ACHAR* name = nullptr;
        layer->getName(name);
        out.groupsByLayer[QelLayerKey(name)].push_back(static_cast<unsigned>(group->groupRef));
        layer->close();
    }
}

class LayerWriter {
public:
    LayerWriter(QelOutObject& out, QelWriter& writer) : m_out(out), m_writer(writer) {}

    // One Layer, from the reference file when it has one of the name.
    void write(LPCWSTR name, AcDbLayerTableRecord* record) {
        unsigned number = 0;
        QelObject* layer = nullptr;
        if (findReferenceLayer(m_out, name, number)) layer = QelReadReferenceObject(m_out, number);
        if (!layer) layer = QelObject::Create("Layer");
        buildLayerObject(m_out, layer, m_writer, name, record);
        writeCounted(layer);
        layer->UnRef();
    }

    void writeSynthesisedDefault() {
        QelObject* layer = QelObject::Create("Layer");
        layer->AddOrReplaceParam(QelParam::Create("name", "Default"));
        layer->AddOrReplaceParam(QelParam::Create("layerProperties", 0u));
        setObjectList(layer, {});
        const unsigned char white[3] = {255, 255, 255};
        addColour(layer, white);
        writeCounted(layer);
        layer->UnRef();
    }

    std::vector<unsigned> numbers; // of the Layers written

private:
    void writeCounted(QelObject* layer) {
        try {
            ++QelDocData().lastObjectRef;
            m_writer.WriteObject(layer);
        } catch (const QelException& e) {
            AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
        }
        numbers.push_back(static_cast<unsigned>(QelDocData().lastObjectRef));
    }

    QelOutObject& m_out;
    QelWriter& m_writer;
};

} // namespace

bool buildLayerObject(QelOutObject& out, QelObject* layer, QelWriter&, LPCWSTR name,
                      AcDbLayerTableRecord* record) {
    layer->AddOrReplaceParam(QelParam::Create("name", QelNarrowFromWide(name)));
    layer->AddOrReplaceParam(QelParam::Create("layerProperties", 0u));
    if (!record) {
        acutPrintf(L"\n Error setting layer color");
        return false;
    }
    unsigned char rgb[3];
    layerColour(record, rgb);
    addColour(layer, rgb);

    const QelSelection set(L"_X", name);
    Adesk::Int32 length = 0;
    if (!set.length(length)) {
        setObjectList(layer, {});
        return true;
    }
    CDocData& doc = QelDocData();
    bool hasObjects = false;
    std::vector<unsigned> numbers;
    for (Adesk::Int32 i = length - 1; i >= 0; --i) {
        ads_name entity;
        AcDbObjectId id;
        if (!set.entity(i, entity) || acdbGetObjectId(id, entity) != Acad::eOk) continue;
        const bool known = out.findTagged(id) || out.findUntagged(id);
        if (known) {
            appendWritten(out, id, numbers, hasObjects);
        } else if (doc.blockScanDone == 0) {
            doc.blockScanDone = 1;
            scanBlockFaces(out, numbers, hasObjects);
        }
    }
    if (doc.exportScope == 1 && record->isOff()) hasObjects = false;
    if (const auto groups = out.groupsByLayer.find(QelLayerKey(name));
        groups != out.groupsByLayer.end()) {
        numbers.insert(numbers.end(), groups->second.begin(), groups->second.end());
        hasObjects = true;
    }
    setObjectList(layer, hasObjects ? numbers : std::vector<unsigned>{});
    return true;
}

bool writeLayers(QelOutObject& out, QelWriter& writer) {
    for (const wchar_t* name : {QelExclusionVolumeLayer, QelDefaultLayer, QelTempLayer})
        if (QelLayerExists(name)) QelEraseLayerContents(name);
    QelPurgeTemporaryLayers();

    AcDbLayerTable* table = nullptr;
    AcDbLayerTableIterator* it = nullptr;
    if (!workingDatabase() || workingDatabase()->getLayerTable(table, AcDb::kForRead) != Acad::eOk)
        return false;
    if (table->newIterator(it, true, true) != Acad::eOk || !it) {
        table->close();
        return false;
    }
    gatherGroupsByLayer(out);
    LayerWriter layers(out, writer);
    int counter = -1;
    // "Default" leads, coloured by the table's first record.
    AcDbLayerTableRecord* first = nullptr;
    if (table->has(kDefaultName) && it->getRecord(first, AcDb::kForRead) == Acad::eOk) {
        counter = 0;
        layers.write(kDefaultName, first);
        first->close();
    }
    bool keep = true;
    for (it->start(); !it->done(); it->step(true, true)) {
        AcDbLayerTableRecord* record = nullptr;
        if (it->getRecord(record, AcDb::kForRead) != Acad::eOk) {
            acutPrintf(L"\n Error getting layer list.");
            continue;
        }
        const ACHAR* recordName = nullptr;
        record->getName(recordName);
        const CString name(recordName ? recordName : L"");
        if (name.CompareNoCase(L"0") == 0 && !QelLayerHasEntities(name)) keep = false;
        if (name.CompareNoCase(kDefaultName) == 0 || !keep) {
            keep = true;
            record->close();
            continue;
        }
        if (counter >= kLastLayerIndex) {
            record->close();
            AfxMessageBox(L"You have exceeded the maximum number of export layers.");
            break;
        }
        ++counter;
        layers.write(name, record);
        record->close();
    }
    delete it;
    table->close();
    if (counter == -1) {
        counter = 0;
        layers.writeSynthesisedDefault();
    }

    // A reference without a LayerMgr gets a new one: the number taken must hold an object.
    QelObject* manager = QelReadReferenceObject(out, "LayerMgr");
    if (!manager) manager = QelObject::Create("LayerMgr");
    manager->AddOrReplaceParam(QelParam::Create("layerList", layers.numbers.data(),
                                                static_cast<unsigned>(layers.numbers.size())));
    try {
        QelWriteCounted(writer, manager);
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
    }
    out.layerMgrRef = static_cast<unsigned>(QelDocData().lastObjectRef);
    manager->UnRef();
    return true;
}
