// The drawing's named UCSs as a CoordSysMgr, the ModelSpaceView with the layers' overrides, and
// the Header that leads a reader to model space.
#include "export/collect_entities.h"
#include "export/entity_dispatch.h"
#include "export/qel_out_object.h"
#include "export/selection.h"
#include "export/structure_objects.h"
#include "foundation/geometry_helpers.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "shell/doc_data.h"
#include "shell/shell_constants.h"

#include <arx/aced.h>

namespace {

constexpr int kByLayer = 256;

AcDbDatabase* workingDatabase() {
    return acdbHostApplicationServices()->workingDatabase();
}

// A Transformation of the frame; the translation stays in drawing units.
QelObject* frameTransformation(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                               const AcGeVector3d& yAxis, bool* identity = nullptr) {
    double translation[3], rotation[4];
    QelPoseFromFrame(origin, xAxis, yAxis, translation, rotation);
    if (identity)
        *identity = rotation[0] == 0.0 && rotation[1] == 0.0 && rotation[2] == 1.0 &&
                    rotation[3] == 0.0 && translation[0] == 0.0 && translation[1] == 0.0 &&
                    translation[2] == 0.0;
    QelObject* transformation = QelObject::Create("Transformation");
    transformation->AddOrReplaceParam(QelParam::Create("rotation", rotation, 4));
    transformation->AddOrReplaceParam(QelParam::Create("translation", translation, 3));
    return transformation;
}

// The CoordSysMgr of the named UCSs; false when the drawing has none.
bool writeCoordSysMgr(QelOutObject& out, QelWriter& writer) {
    AcDbUCSTable* table = nullptr;
    AcDbUCSTableIterator* it = nullptr;
    if (!workingDatabase() || workingDatabase()->getUCSTable(table, AcDb::kForRead) != Acad::eOk)
        return false;
    if (table->newIterator(it) != Acad::eOk || !it) {
        table->close();
        return false;
    }
    QelObject* manager = QelReadReferenceObject(out, "CoordSysMgr");
    if (!manager) manager = QelObject::Create("CoordSysMgr");
    QelObject* list = QelObject::Create("CoordSysList");
    manager->AddOrReplaceParam(QelParam::Create("coordSysList", list));
    QelObject* kept = nullptr;
    manager->GetParam("coordSysList", 0)->GetValue(kept);
    list->UnRef();
    int handled = 0;
    for (; !it->done(); it->step()) {
        AcDbUCSTableRecord* record = nullptr;
        if (it->getRecord(record, AcDb::kForRead) != Acad::eOk) {
            acutPrintf(L"\n Error getting ucs list.");
            continue;
        }
        const ACHAR* name = nullptr;
        record->getName(name);
        QelObject* system = frameTransformation(record->origin(), record->xAxis(), record->yAxis());
        kept->AddOrReplaceParam(QelParam::Create(QelNarrowFromWide(name ? name : L""), system));
        system->UnRef();
        record->close();
        ++handled;
    }
    delete it;
    table->close();
    out.coordSysMgrWritten = handled > 0 ? 1 : 0;
    if (handled > 0) {
        QelWriteCounted(writer, manager);
        out.coordSysMgrRef = static_cast<unsigned>(QelDocData().lastObjectRef);
    }
    manager->UnRef();
    return true;
}

// The view of the reference file with its viewpoint object written before it, or null.
QelObject* referenceView(QelOutObject& out, QelWriter& writer) {
    QelObject* view = QelReadReferenceObject(out, "ModelSpaceView");
    if (!view) return nullptr;
    unsigned number = 0;
    QelParam* viewpoint = view->GetParam("viewpointMgr", 0);
    if (viewpoint && viewpoint->GetType() == QelUIntType) {
        viewpoint->GetValue(number);
        if (QelObject* carried = QelReadReferenceObject(out, number)) {
            QelWriteCounted(writer, carried);
            carried->UnRef();
            view->AddOrReplaceParam(QelParam::Create(
                "viewpointMgr", static_cast<unsigned>(QelDocData().lastObjectRef)));
        }
    }
    return view;
}

unsigned overrideOf(QelOutObject& out, const AcDbLayerTableRecord* record, LPCWSTR name) {
    const bool hidden = record->isOff() || record->isFrozen();
    const bool layerColour = layerUsesLayerColour(out, name);
    return hidden ? (layerColour ? 11u : 9u) : (layerColour ? 2u : 0u);
}

} // namespace

bool layerUsesLayerColour(QelOutObject&, LPCWSTR name) {
    const int scope = QelDocData().exportScope;
    if (scope != 0 && scope != 1 && scope != 2) return true;
    const QelSelection set(L"_X", name);
    Adesk::Int32 length = 0;
    if (!set.length(length) || length == 0) return false;
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name entity;
        AcDbObjectId id;
        if (!set.entity(i, entity) || acdbGetObjectId(id, entity) != Acad::eOk) continue;
        if (scope == 1 && QelEntityHidden(id)) continue;
        AcDbEntity* object = nullptr;
        if (acdbOpenAcDbEntity(object, id, AcDb::kForRead) != Acad::eOk) continue;
        const int index = object->colorIndex();
        object->close();
        if (index != kByLayer) return false;
    }
    return true;
}

void layerOverrideFlags(QelOutObject& out, QelArray<unsigned>& flags) {
    AcDbLayerTable* table = nullptr;
    if (!workingDatabase() || workingDatabase()->getLayerTable(table, AcDb::kForRead) != Acad::eOk)
        return;
    AcDbLayerTableRecord* record = nullptr;
    if (table->getAt(L"Default", record, AcDb::kForRead) == Acad::eOk) {
        flags.Append(overrideOf(out, record, L"Default"));
        record->close();
    }
    AcDbLayerTableIterator* it = nullptr;
    if (table->newIterator(it, true, true) == Acad::eOk && it) {
        for (; !it->done() && flags.GetCount() <= 65534; it->step(true, true)) {
            if (it->getRecord(record, AcDb::kForRead) != Acad::eOk) continue;
            const ACHAR* recordName = nullptr;
            record->getName(recordName);
            const CString name(recordName ? recordName : L"");
            const bool skipped = name.CompareNoCase(L"Default") == 0 ||
                                 (name.CompareNoCase(L"0") == 0 && !QelLayerHasEntities(name));
            if (!skipped) flags.Append(overrideOf(out, record, name));
            record->close();
        }
        delete it;
    }
    table->close();
}

bool writeViews(QelOutObject& out, QelWriter& writer) {
    if (!writeCoordSysMgr(out, writer)) return false;
    QelObject* view = referenceView(out, writer);
    const bool fresh = view == nullptr;
    if (fresh) {
        view = QelObject::Create("ModelSpaceView");
        view->AddOrReplaceParam(
            QelParam::Create("name", QelNarrowFromWide(out.outputFile + L" view")));
    }
    if (out.coordSysMgrWritten)
        view->AddOrReplaceParam(QelParam::Create("coordSysMgr", out.coordSysMgrRef));
    if (AcDbDatabase* db = workingDatabase()) {
        bool identity = true;
        QelObject* current =
            frameTransformation(db->ucsorg(), db->ucsxdir(), db->ucsydir(), &identity);
        if (!identity) view->AddOrReplaceParam(QelParam::Create("currCoordSys", current));
        current->UnRef();
    }
    if (fresh) {
        const double up[3] = {0.0, 0.0, 1.0};
        view->AddOrReplaceParam(QelParam::Create("upVec", up, 3));
        view->AddOrReplaceParam(QelParam::Create("upVecUse", 1));
    }
    QelArray<unsigned> flags;
    layerOverrideFlags(out, flags);
    if (flags.GetCount() > 0)
        view->AddOrReplaceParam(
            QelParam::Create("layerOverrides", flags.GetData(), flags.GetCount()));
    QelWriteCounted(writer, view);
    view->UnRef();
    return true;
}

void writeHeader(QelOutObject&, QelWriter& writer) {
    QelObject* header = QelObject::Create("Header");
    header->AddOrReplaceParam(
        QelParam::Create("rootLocation", static_cast<unsigned>(QelDocData().lastObjectRef)));
    header->AddOrReplaceParam(QelParam::Create("version", 1u));
    CString application;
    application.Format(L"Qel %s (Build %d) for AutoCAD", QEL_VERSION, QEL_BUILD);
    const CString release = QelGetStringVar(L"ACADVER");
    if (!release.IsEmpty()) application += L"(" + release + L")";
    header->AddOrReplaceParam(QelParam::Create("application", QelNarrowFromWide(application)));
    header->AddOrReplaceParam(
        QelParam::Create("source", QelNarrowFromWide(QelGetStringVar(L"DWGNAME"))));
    writer.WriteObject(header);
    header->UnRef();
}
