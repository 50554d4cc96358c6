#include "import/layer_import.h"

#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/state_guards.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/dbdatabase.h>
#include <arx/dbsymtb.h>

#include <cwchar>
#include <utility>

namespace {

bool hasInvalidChar(const CString& name) {
    return name.FindOneOf(QelInvalidLayerChars) >= 0;
}

// What a character becomes in a sanitising pass when it isn't the one being replaced.
const wchar_t* escapeOf(wchar_t c) {
    switch (c) {
    case L'"':
    case L'\\':
        return L"_";
    case 7:
        return L"_a";
    case 8:
        return L"_b";
    case 12:
        return L"_f";
    case 10:
        return L"_n";
    case 13:
        return L"_r";
    case 9:
        return L"_t";
    case 11:
        return L"_v";
    case L'?':
        return L"_?";
    default:
        return nullptr;
    }
}

AcDbDatabase* workingDatabase() {
    return acdbHostApplicationServices()->workingDatabase();
}

bool isTemporaryLayer(const wchar_t* name) {
    for (const wchar_t* temporary : {QelDefaultLayer, QelExclusionVolumeLayer, QelTempLayer})
        if (::wcscasecmp(name, temporary) == 0) return true;
    return false;
}

} // namespace

bool QelIsValidLayerName(LPCWSTR name) {
    const CString text(name);
    return !hasInvalidChar(text) && text.Find(L'"') < 0;
}

bool QelSanitiseLayerNamePass(LPCWSTR name, CString& out) {
    const CString input(name);
    const int first = input.FindOneOf(QelInvalidLayerChars);
    CString output;
    for (int i = 0; i < input.GetLength(); ++i) {
        const wchar_t c = input[i];
        if (i == first)
            output += L'_';
        else if (const wchar_t* escape = escapeOf(c))
            output += escape;
        else
            output += c;
    }
    out = output;
    if (hasInvalidChar(output)) return false;
    if (input.Find(L'"') >= 0 || input.Find(L'\\') >= 0) return false;
    return true;
}

CString QelSanitiseLayerName(const CString& original) {
    CString name = original, out;
    bool final = QelSanitiseLayerNamePass(name, out);
    const int n = out.GetLength();
    if (n <= 0) return L"Unknown";
    for (int k = 0; !final; ++k) {
        std::swap(name, out);
        final = QelSanitiseLayerNamePass(name, out);
        if (k >= n - 1) return L"Unknown";
    }
    return out;
}

bool QelCreateLayer(LPCWSTR name, unsigned char red, unsigned char green, unsigned char blue) {
    AcDbDatabase* db = workingDatabase();
    if (!db) return false;
    AcDbLayerTable* table = nullptr;
    if (db->getLayerTable(table, AcDb::kForWrite) != Acad::eOk) return false;
    if (table->has(name)) {
        table->close();
        return false;
    }
    auto* record = new AcDbLayerTableRecord;
    if (record->setName(name) != Acad::eOk) {
        wchar_t copy[1000];
        std::wcsncpy(copy, name, 999);
        copy[999] = L'\0';
        if (record->setName(copy) != Acad::eOk) {
            delete record;
            table->close();
            return false;
        }
    }
    AcCmColor colour;
    colour.setRGB(red, green, blue);
    record->setColor(colour);
    const bool added = table->add(record) == Acad::eOk;
    if (!added) {
        QelReportError(L"Error Creating the layer");
        delete record;
    } else {
        record->close();
    }
    table->close();
    return added;
}

void QelEnsureTemporaryLayers() {
    for (const wchar_t* name : {QelExclusionVolumeLayer, QelDefaultLayer})
        if (QelLayerExists(name) || QelCreateLayer(name, 255, 255, 255)) QelLayerOff(name);
}

void QelPurgeTemporaryLayers() {
    AcDbDatabase* db = workingDatabase();
    if (!db) return;
    AcDbLayerTable* table = nullptr;
    if (db->getLayerTable(table, AcDb::kForRead) != Acad::eOk) return;
    AcDbLayerTableIterator* it = nullptr;
    if (table->newIterator(it, true, true) != Acad::eOk || !it) {
        table->close();
        return;
    }
    AcDbObjectIdArray ids;
    for (; !it->done(); it->step(true, true)) {
        AcDbLayerTableRecord* record = nullptr;
        if (it->getRecord(record, AcDb::kForRead) != Acad::eOk) continue;
        const ACHAR* recordName = nullptr;
        record->getName(recordName);
        if (recordName && isTemporaryLayer(recordName)) ids.append(record->objectId());
        record->close();
    }
    delete it;
    table->close();
    if (db->purge(ids) != Acad::eOk) {
        acutPrintf(L"\n Purge operation failed on temp. layers.");
        return;
    }
    for (int i = 0; i < ids.length(); ++i) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, ids[i], AcDb::kForWrite, true) != Acad::eOk) continue;
        object->erase();
        object->close();
    }
}

void QelPrepareLayer(QelJob& job, QelLayerLoopState& state, QelObject* layer, bool hasObjectList,
                     const QelArray<unsigned>* overrides) {
    QelSetCurrentLayer(L"0");
    if (state.pendingFreeze == 1) {
        QelFreezeLayer(state.name);
        state.pendingFreeze = 0;
    }
    CDocData& doc = QelDocData();
    doc.layerColourFlag = 0;

    if (!QelReadString(layer, "name", state.name)) {
        QelReportError(L"\nError reading layer name.");
        state.name = QelDefaultLayer;
    }
    if (!QelIsValidLayerName(state.name)) {
        job.badLayerNames = 1;
        QelLogAppend(L"\n Invalid Layer name in qel file: ");
        QelLogAppend(state.name);
        state.name = QelSanitiseLayerName(state.name);
        QelLogWrite(CString(L"\n Changing layer name to: ") + state.name, job.logFilePath);
    }

    if (!QelLayerExists(state.name)) {
        unsigned char red = 255, green = 255, blue = 255;
        if (!QelReadColour(layer, red, green, blue)) {
            red = green = blue = 255;
            QelTrace(L" Setting object colour to default");
        }
        const bool first = QelCreateLayer(state.name, red, green, blue);
        if (!first && !QelCreateLayer(state.name, red, green, blue)) {
            QelLogAppend(L"\n ERROR creating layer: ");
            QelLogAppend(state.name);
            QelCountError();
        }
        if (first) QelLogAppend(CString(L"\n\n Creating new layer: [") + state.name + L"]");
    } else {
        QelLogAppend(CString(L"\n New layer: [") + state.name + L"] Already exists.");
    }

    const bool current = QelSetCurrentLayer(state.name);
    if (!current) {
        QelLogAppend(L"\n Error setting to current layer.");
        QelLogAppend(L"\n All objects on this layer will be placed on the");
        QelLogAppend(L"\n previously set current layer.\n");
    } else {
        QelLogAppend(L"\n Setting to current layer");
    }

    if (overrides && state.index < overrides->GetCount()) {
        const unsigned word = (*overrides)[state.index];
        if (word & 1u) {
            if (current)
                QelCurrentLayerOff(state.name);
            else
                QelLayerOff(state.name);
            state.pendingFreeze = 1;
        }
        if (doc.useLayerColourOverride == 1) doc.layerColourFlag = (word & 2u) ? 1 : 0;
    }
    if (!hasObjectList) QelLogAppend(L"\n No objects in this layer.");
}
