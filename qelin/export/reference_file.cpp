// The file last imported, as the structure objects of an export read it back.
#include "export/original_file.h"
#include "export/qel_out_object.h"
#include "export/structure_objects.h"
#include "foundation/string_ring.h"
#include "objectfile/param_read.h"
#include "shell/settings_store.h"

#include <type_traits>

namespace {

// Header, its root, the layer manager, then every Layer by its name; the first of a name counts.
void readReferenceLayers(QelOutObject& out) {
    out.referenceLayersRead = true;
    if (!QelUseReferenceFile(out)) return;
    try {
        QelInit(0, 0, QelInitWords);
        QelReader reader;
        reader.Open(QelNarrowFromWide(out.referenceFile));
        QelObjectRef header(reader.ReadObject("Header", 0));
        unsigned number = 0;
        if (!QelReadUnsigned(header.get(), "rootLocation", number)) return;
        QelObjectRef root(reader.ReadObject(number));
        if (!QelReadUnsigned(root.get(), "layerMgr", number)) return;
        QelObjectRef manager(reader.ReadObject(number));
        QelArray<unsigned> layers;
        QelReadUnsignedArray(manager.get(), "layerList", layers);
        for (unsigned i = 0; i < layers.GetCount(); ++i) {
            QelObjectRef layer(reader.ReadObject(layers[i]));
            CString name;
            if (QelReadString(layer.get(), "name", name))
                out.referenceLayers.emplace(QelLayerKey(name), layers[i]);
        }
    } catch (...) {
        // A damaged reference gives no layers: each is made anew.
    }
}

} // namespace

bool QelUseReferenceFile(QelOutObject& out) {
    out.referenceFile.Empty();
    if (!ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", out.referenceFile)) return false;
    return out.processMethod == 1 && QelFileExists(out.referenceFile);
}

namespace {

template <typename Key>
QelObject* readReference(QelOutObject& out, Key key) {
    if (!QelUseReferenceFile(out)) return nullptr;
    try {
        QelInit(0, 0, QelInitWords);
        QelReader reader;
        reader.Open(QelNarrowFromWide(out.referenceFile));
        if constexpr (std::is_same_v<Key, unsigned>)
            return reader.ReadObject(key);
        else
            return reader.ReadObject(key, 0);
    } catch (const QelException& e) {
        const CString reason = QelWideFromNarrow(e.GetReason());
        if (out.readFailuresTold.insert(reason.GetString()).second)
            AfxMessageBox(reason, MB_ICONEXCLAMATION);
    } catch (...) {
    }
    return nullptr;
}

} // namespace

QelObject* QelReadReferenceObject(QelOutObject& out, const char* className) {
    return readReference(out, className);
}

QelObject* QelReadReferenceObject(QelOutObject& out, unsigned number) {
    return readReference(out, number);
}

bool findReferenceLayer(QelOutObject& out, LPCWSTR name, unsigned& number) {
    if (out.processMethod == 0) return false;
    if (!out.referenceLayersRead) readReferenceLayers(out);
    const auto found = out.referenceLayers.find(QelLayerKey(name));
    if (found == out.referenceLayers.end()) return false;
    number = found->second;
    return true;
}
