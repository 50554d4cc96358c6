#include "export/run_export.h"

#include "export/collect_entities.h"
#include "export/entity_dispatch.h"
#include "export/object_types.h"
#include "export/original_file.h"
#include "export/qel_out_object.h"
#include "export/structure_objects.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/progress_dlg.h"
#include "foundation/state_guards.h"
#include "foundation/string_ring.h"
#include "import/layer_import.h"
#include "records/member_record.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"

#include <arx/aced.h>

namespace {

constexpr DWORD kUnread = 0xffffffffu;

struct Guards {
    CAutoCADSettings settings;
    CAutoCADUCS ucs;
    CAutoCADLayer layer;
};

// Codes that leave through another entity of their object: centre lines, the semi-elliptic cap.
bool partOfAnother(int type) {
    return type == QelCode::CenterLine || type == QelCode::SemiEllipticCap ||
           type == QelCode::BottomCenterLine;
}

void arrowCursor() {
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
}

// One run of either process method: what differs between the two is asked of withReference.
class ExportRun {
public:
    ExportRun(QelOutObject& out, bool withReference) : m_out(out), m_withReference(withReference) {}

    void run() {
        CDocData& doc = QelDocData();
        if (m_withReference) {
            CString file;
            if (findOriginalFile(m_out, file) == QelNoOriginal) m_out.processMethod = 0;
            doc.lastObjectRef = -1;
        }
        m_guards.settings.Save();
        m_guards.ucs.Save();
        m_guards.layer.Save();
        if (!collectEntities(m_out, !m_withReference)) return arrowCursor();
        try {
            QelInit(0, 0, QelInitWords);
            QelWriter writer(QelNarrowFromWide(m_out.referenceFile));
            doc.lastObjectRef = -1;
            writeFile(writer);
        } catch (const QelException& e) {
            // The empty file the dialog made stays.
            AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
        }
        if (!m_withReference) reportErrorTotal();
        reportRefusals();
        arrowCursor();
    }

private:
    void writeFile(QelWriter& writer) {
        const int total =
            static_cast<int>(m_out.untaggedEntities.size() + m_out.taggedEntities.size());
        m_progress.Create();
        m_progress.SetStep(1);
        m_progress.SetRange(0, total > 0 ? total : 100);
        m_progress.SetHeading(L"Writing Velmora objects to qel file...");

        const AcGeMatrix3d identity;
        for (const auto& record : m_out.untaggedEntities)
            if (!writeUntagged(*record, writer, identity)) break;
        for (const auto& record : m_out.taggedEntities)
            if (!writeTagged(*record, writer, identity)) break;
        if (total == 0) stepBy(70);

        const int groups = QelDocData().maxGroupNumber;
        for (int number = 1; number <= groups; ++number) {
            auto group = std::make_unique<GroupExportRec>();
            group->groupNumber = number;
            m_out.groupRecs.push_back(std::move(group));
            writeGroup(m_out, writer, static_cast<unsigned>(number));
        }

        if (!m_withReference) QelLogAppend(L"\n\n Adding Layers... ");
        writeLayers(m_out, writer);
        if (total == 0) stepBy(30);
        m_guards.ucs.Restore();
        writeViews(m_out, writer);
        writeModelSpace(writer);
        m_out.clearEntities();
        writeHeader(m_out, writer);

        if (!m_withReference) QelLogAppend(L"\n Restore layer settings.");
        m_guards.layer.Restore();
        QelEraseLayerContents(QelTempLayer);
        QelPurgeTemporaryLayers();
        writer.Close();
        m_guards.settings.Restore();
        m_progress.DestroyWindow();
    }

    void stepBy(int steps) {
        for (int i = 0; i < steps; ++i)
            m_progress.StepIt();
    }

    // One progress step and a look at Cancel: true to go on.
    bool goOn() {
        m_progress.StepIt();
        if (!m_progress.CheckCancelButton()) return true;
        acedCommand(RTSTR, L"_zoom", RTSTR, L"_extents", RTNONE);
        return false;
    }

    void dispatch(int& objectType, int type, AcDbObjectId id, QelWriter& writer,
                  const AcGeMatrix3d& m) {
        if (const QelObjectTypeRow* row = QelTypeRow(type))
            m_progress.SetStatus(QelWideFromNarrow(row->name));
        objectType = type;
        if (!dispatchEntity(m_out, writer, type, id, m)) m_guards.ucs.Restore();
    }

    bool writeUntagged(UntaggedEntityRec& record, QelWriter& writer, const AcGeMatrix3d& m) {
        if (!goOn()) return false;
        int type = record.objectType;
        if (!classifyEntity(m_out, type, record.entityId)) return true;
        if (m_withReference && type == QelCode::Pointset) return true;
        if (!m_withReference && type == QelCode::BlockRef) {
            if (const QelObjectTypeRow* row = QelTypeRow(type))
                m_progress.SetStatus(QelWideFromNarrow(row->name));
            acutPrintf(L"\n Skipping block INSERT (please explode all blocks to be exported)");
            return true;
        }
        dispatch(record.objectType, type, record.entityId, writer, m);
        return true;
    }

    bool writeTagged(TaggedEntityRec& record, QelWriter& writer, const AcGeMatrix3d& m) {
        if (!goOn()) return false;
        int type = record.objectType;
        if (classifyEntity(m_out, type, record.entityId)) {
            if (m_withReference && (partOfAnother(type) || type == -1)) return true;
            dispatch(record.objectType, type, record.entityId, writer, m);
            return true;
        }
        // The tag still names the object when the geometry no longer tells it.
        ads_name name;
        QelMemberRecord tag;
        if (type == -1 || acdbGetAdsName(name, record.entityId) != Acad::eOk || !tag.Load(name) ||
            partOfAnother(tag.memberType) || tag.memberType == QelCode::Pointset)
            return true;
        dispatch(record.objectType, tag.memberType, record.entityId, writer, m);
        return true;
    }

    void writeModelSpace(QelWriter& writer) {
        CDocData& doc = QelDocData();
        QelObject* space = QelReadReferenceObject(m_out, "ModelSpace");
        if (!space) {
            space = QelObject::Create("ModelSpace");
            space->AddOrReplaceParam(QelParam::Create("name", QelNarrowFromWide(m_out.outputFile)));
        }
        const QelArray<unsigned> objects = m_out.objectList;
        space->AddOrReplaceParam(
            QelParam::Create("objectList", objects.GetData(), objects.GetCount()));
        space->AddOrReplaceParam(QelParam::Create("layerMgr", m_out.layerMgrRef));
        const unsigned view = static_cast<unsigned>(doc.lastObjectRef);
        space->AddOrReplaceParam(QelParam::Create("modelSpaceViewList", &view, 1));
        QelWriteCounted(writer, space);
        space->UnRef();
    }

    void reportErrorTotal() {
        DWORD count = 0;
        ReadNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", count);
        CString total;
        total.Format(L"\n\n Total Errors Exporting Objects: %u\n\n", static_cast<unsigned>(count));
        QelLogAppend(total);
        if (count > 0) AfxMessageBox(total);
    }

    void reportRefusals() {
        const CDocData& doc = QelDocData();
        auto refuse = [this](const wchar_t* text) {
            AfxMessageBox(text);
            if (!m_withReference) QelLogAppend(text);
        };
        if (doc.pointsSkipped == 1)
            refuse(L"There were some points in this export that may have\nbeen part of a point "
                   L"cloud.\nThis operation is not supported and the points were not exported.");
        if (doc.contoursSkipped == 1)
            refuse(L"You have tried to export contours in this export.\nThis operation is not "
                   L"supported and the contours were not exported.\nTo export contours you must "
                   L"use the original qel file as a reference.");
    }

    QelOutObject& m_out;
    const bool m_withReference;
    Guards m_guards;
    CProgressDlg m_progress;
};

} // namespace

void exportWithoutReference(QelOutObject& out) {
    ExportRun(out, false).run();
}

void exportWithReference(QelOutObject& out) {
    ExportRun(out, true).run();
}

void runExport(QelOutObject& out) {
    if (!KeyExists(QEL_SETTINGS_KEY) ||
        !ReadString(QEL_SETTINGS_KEY, L"LastExportDir", out.referenceFile)) {
        acedAlert(L"Error reading qel file!");
        return;
    }
    out.outputFile = out.referenceFile;
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    if (out.referenceFile.IsEmpty()) {
        AfxMessageBox(L"Unable to create file.\nPlease verify the correct file name was given.");
        return arrowCursor();
    }
    DWORD method = kUnread;
    ReadNumber(QEL_SETTINGS_KEY, L"ExportProcessMethod", method);
    if (method == kUnread) {
        const int answer =
            AfxMessageBox(L"Use Original Qel File as Reference.", MB_YESNOCANCEL | MB_ICONQUESTION);
        if (answer == IDCANCEL) return arrowCursor();
        method = answer == IDYES ? 1 : 0;
    }
    out.processMethod = static_cast<int>(method);
    if (method == 0)
        exportWithoutReference(out);
    else if (method == 1)
        exportWithReference(out);
    else
        AfxMessageBox(L"Error determining export process option.");
    arrowCursor();
}
