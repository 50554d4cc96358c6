#include "import/read_qel_file.h"

#include "coords/coord_system_mgr.h"
#include "creators/object_sets.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/progress_dlg.h"
#include "foundation/state_guards.h"
#include "foundation/string_ring.h"
#include "foundation/units.h"
#include "import/layer_import.h"
#include "import/object_dispatch.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <memory>
#include <set>

namespace {

// The host's state, saved as the read starts and put back on every way out.
struct Guards {
    CAutoCADSettings settings;
    CAutoCADUCS ucs;
    CAutoCADLayer layer;

    void Save() {
        settings.Save();
        ucs.Save();
        layer.Save();
    }
    // After a cancel or a failure.
    void RestoreAfterStop() {
        ucs.Restore();
        layer.Restore();
        settings.Restore();
    }
};

void zoomExtents() {
    acedCommand(RTSTR, L"_zoom", RTSTR, L"_extents", RTNONE);
}

const wchar_t* unitName(int index) {
    return index >= 0 && index < int(QelUnitTable.size()) ? QelUnitTable[std::size_t(index)].name
                                                          : L"";
}

// One file read: the lists it walks and what it needs to stop at any point.
class FileRead {
public:
    FileRead(QelJob& job, QelReader& reader, Guards& guards)
        : m_job(job), m_reader(reader), m_guards(guards) {}

    // The walk of the layers and their objects. False when the read has ended early (cancel
    // or failure) and the tidy-up is not to run.
    bool WalkLayers(const QelArray<unsigned>& layerList, const QelArray<unsigned>* overrides,
                    CProgressDlg& progress) {
        QelLayerLoopState state;
        try {
            for (state.index = 0; state.index < layerList.GetCount(); ++state.index) {
                QelObjectRef layer(m_reader.ReadObject(layerList[state.index]));
                if (!layer) {
                    QelReportError(L"\nUnable to read qel layer object.");
                    QelCountError();
                    continue;
                }
                QelArray<unsigned> objects;
                const bool hasObjects = QelReadUnsignedArray(layer.get(), "objectList", objects);
                QelPrepareLayer(m_job, state, layer.get(), hasObjects, overrides);
                if (!WalkObjects(objects, progress)) return false;
            }
        } catch (const QelException& e) {
            const CString reason(QelWideFromNarrow(e.GetReason()));
            AfxMessageBox(reason, MB_ICONEXCLAMATION);
            Stop(L" Restoring cad settings\n");
            QelLogAppend(reason);
            return false;
        } catch (...) {
            AfxMessageBox(L"Caught unknown exception in Process Layers", MB_ICONEXCLAMATION);
            acutPrintf(L"\n ****** Caught unknown exception ******\n");
            Stop(L"\n Restoring cad settings\n");
            QelLogAppend(L"Caught unknown exception in Process Layers.");
            return false;
        }
        return true;
    }

private:
    bool WalkObjects(const QelArray<unsigned>& objects, CProgressDlg& progress) {
        CDocData& doc = QelDocData();
        for (unsigned i = 0; i < objects.GetCount(); ++i) {
            const unsigned reference = objects[i];
            CString line;
            line.Format(L"\n  Processing Qel ref # %u ", reference);
            CString damage;
            try {
                m_inHand.reset(m_reader.ReadObject(reference));
            } catch (const QelException& e) {
                // One damaged object costs that object alone: the others of the file still read.
                damage = QelWideFromNarrow(e.GetReason());
            }
            if (!damage.IsEmpty()) {
                QelLogWrite(line, m_job.logFilePath);
                QelReportError(CString(L"\n") + damage);
                QelCountError();
                continue;
            }
            if (!m_inHand) {
                // A number the file doesn't have: one error, and the walk goes on.
                QelLogWrite(line, m_job.logFilePath);
                QelReportError(L"\nUnable to read qel object.");
                QelCountError();
                continue;
            }
            const wchar_t* className = QelWideFromNarrow(m_inHand->GetName());
            progress.SetStatus(className);
            QelLogWrite(line + className, m_job.logFilePath);
            --doc.objectsLeft;
            if (m_seen.insert(reference).second) {
                DispatchObject(m_job, m_inHand.get(), nullptr, m_job.asAcisSolids, reference,
                               &m_job.fileName);
                progress.StepIt();
            }
            m_inHand.reset();
            if (progress.CheckCancelButton()) {
                zoomExtents();
                m_guards.ucs.Restore();
                m_guards.layer.Restore();
                m_guards.settings.Restore();
                QelLogWrite(L"\n User canceled, import stopped.\n", m_job.logFilePath);
                return false;
            }
        }
        return true;
    }

    // The end of a read that failed: the view, the host's state, the object in hand, the count.
    void Stop(const wchar_t* logText) {
        zoomExtents();
        QelLogWrite(logText, m_job.logFilePath);
        m_guards.RestoreAfterStop();
        m_inHand.reset();
        QelCountError();
    }

    QelJob& m_job;
    QelReader& m_reader;
    Guards& m_guards;
    QelObjectRef m_inHand;
    std::set<unsigned> m_seen;
};

} // namespace

void ReadQelFile(QelJob& job) {
    auto log = [&job](const CString& text) { QelLogWrite(text, job.logFilePath); };
    CDocData& doc = QelDocData();
    QelResetGroupWalk();

    job.badLayerNames = 0;
    acutPrintf(L"\n Reading Qel file... %s\n", job.fileName.GetString());
    log(CString(L"\nReading Qel file... : ") + job.fileName);
    log(CString(L"\n Import units set to : ") + unitName(doc.importUnitIndex));

    QelReader reader;
    try {
        reader.Open(QelNarrowFromWide(job.fileName));
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
    } catch (...) {
        AfxMessageBox(L"Caught unknown exception opening qel file.", MB_ICONEXCLAMATION);
    }
    // A reader that didn't open has nothing to give: every object is absent.
    auto readByName = [&reader](const char* className) {
        return QelObjectRef(reader.IsOpen() ? reader.ReadObject(className, 0) : nullptr);
    };

    Guards guards;
    guards.Save();

    try {
        CCoordSystemMgr chooser;
        double translation[3] = {0.0, 0.0, 0.0}, rotation[4] = {0.0, 0.0, 1.0, 0.0};
        const int choice = chooser.selectCoordinateSystem(reader.IsOpen() ? &reader : nullptr,
                                                          translation, rotation);
        if (choice == 2) {
            acutPrintf(L"\n User cancelled, import stopped.");
            guards.RestoreAfterStop();
            log(L"\n User cancelled, import stopped.\n");
            return;
        }
        if (choice == 0) {
            std::fill_n(doc.selectedTranslation, 3, 0.0);
            const double identity[4] = {0.0, 0.0, 1.0, 0.0};
            std::copy_n(identity, 4, doc.selectedRotation);
        }

        QelObjectRef header = readByName("Header");
        if (!header) return QelReportError(L"\nUnable to read qel file Header.");
        unsigned rootLocation = 0;
        if (!QelReadUnsigned(header.get(), "rootLocation", rootLocation))
            return QelReportError(L"\nError reading root object.");
        QelObjectRef modelSpace(reader.ReadObject(rootLocation));
        if (!modelSpace) return QelReportError(L"\nUnable to read qel root object.");

        QelArray<unsigned> modelObjects;
        if (!QelReadUnsignedArray(modelSpace.get(), "objectList", modelObjects))
            QelLogAppend(L"\nNo objects in ModelSpace 'objectList'.");
        doc.modelObjectCount = int(modelObjects.GetCount());

        unsigned layerMgrLocation = 0;
        if (!QelReadUnsigned(modelSpace.get(), "layerMgr", layerMgrLocation))
            return QelReportError(L"\nError reading layer manager object");
        QelObjectRef layerMgr(reader.ReadObject(layerMgrLocation));
        if (!layerMgr || !layerMgr->GetParam("layerList", 0))
            return QelReportError(L"\nError reading layer manager Layer List.");
        QelArray<unsigned> layerList; // an empty list walks no layer, the tidy-up runs all the same
        QelReadUnsignedArray(layerMgr.get(), "layerList", layerList);

        QelObjectRef view = readByName("ModelSpaceView");
        QelArray<unsigned> overrides;
        const bool hasOverrides =
            view && QelReadUnsignedArray(view.get(), "layerOverrides", overrides);

        CProgressDlg progress;
        progress.Create();
        // The bar needs a range of at least one, even for a model space that lists nothing.
        progress.SetRange(0, doc.modelObjectCount > 0 ? doc.modelObjectCount : 1);
        progress.SetStep(1);
        progress.SetHeading(L"Reading Velmora object file....");
        doc.objectsLeft = doc.modelObjectCount;

        QelEnsureTemporaryLayers();

        FileRead read(job, reader, guards);
        if (!read.WalkLayers(layerList, hasOverrides ? &overrides : nullptr, progress)) return;

        overrides.RemoveAll();
        zoomExtents();
        log(L"\n Removing temporary  layers");
        for (const wchar_t* name : {QelExclusionVolumeLayer, QelDefaultLayer, QelTempLayer})
            QelEraseLayerContents(name);
        QelPurgeTemporaryLayers();

        log(L"\n Restoring cad settings");
        guards.layer.Restore();
        guards.ucs.Restore();
        CCoordSystemMgr restorer;
        restorer.restoreViewCoordinateSystem(reader.IsOpen() ? &reader : nullptr);
        guards.settings.Restore();
        reader.Close();
        progress.DestroyWindow();

        if (job.badLayerNames)
            AfxMessageBox(L"Some layer names in the qel file have invalid characters\nThe invalid "
                          L"characters were replaced with '_'\n\nRefer to Log file for layer names "
                          L"that were changed.",
                          MB_ICONINFORMATION);
    } catch (const QelException& e) {
        // A damaged structure object before the walk: told, counted, the guards restore.
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
        QelCountError();
    }
}
