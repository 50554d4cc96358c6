#include "app_messages.h"

#include "foundation/error_report.h"
#include "shell/commands.h"
#include "shell/doc_data.h"
#include "shell/shell_constants.h"

#include <arx/aced.h>
#include <arx/rxregsvc.h>

namespace {

bool haveWorkingDatabase() {
    return acdbHostApplicationServices()->workingDatabase() != nullptr;
}

void startUp(void* appId) {
    // The per-document table listens for closing documents from the start.
    QelDocDataManager();
    auto* classes = static_cast<AcRxDictionary*>(acrxSysRegistry()->at(L"ClassDictionary"));
    if (!classes || !classes->has(L"AcBrEntity"))
        acrxDynamicLinker->loadModule(L"acbr17.dbx", true, false);
    // Nothing in the companion is called from here: it only has to be in memory for the export.
    if (!acrxDynamicLinker->loadModule(QEL_COMPANION_MODULE, true, false))
        QelReportError(L"ERROR: Loading ToviQelOut.dll.\nThis may cause errors if you call "
                       L"QelOut.\n");
    acrxDynamicLinker->unlockApplication(appId);
    acrxDynamicLinker->registerAppMDIAware(appId);
    acutPrintf(L"Loading Velmora QEL Plugin %s (Build %d)...\n", QEL_VERSION, QEL_BUILD);
    acutPrintf(L"%s\n", QEL_BANNER_LINE);
    QelAddCommands();
    acutPrintf(L"  Commands added: %s\n", QEL_COMMAND_LISTING);
    acutPrintf(L"  If you do not see ribbon tab QEL, run QELMENU command twice to update it.\n");
}

void drawingLoaded() {
    if (!haveWorkingDatabase()) acedAlert(L"Could not get dwg on load");
}

// Every document is marked, while the import's scale and the two valid flags fall back on the
// current document only.
void drawingUnloaded() {
    if (!haveWorkingDatabase()) {
        acedAlert(L"Could not get dwg on unload");
        return;
    }
    AcApDocManager* manager = acDocManagerPtr();
    AcApDocumentIterator* documents = manager->newAcApDocumentIterator();
    for (; !documents->done(); documents->step()) {
        QelDocDataManager().docData(documents->document()).firstLoad = 1;
        CDocData& current = QelDocDataManager().docData(manager->curDocument());
        current.importScale = 1.0;
        current.importOptionsValid = 0;
        current.exportOptionsValid = 0;
    }
    delete documents;
}

} // namespace

AcRx::AppRetCode QelAppMessage(AcRx::AppMsgCode msg, void* appId) {
    switch (msg) {
    case AcRx::kInitAppMsg:
        startUp(appId);
        break;
    case AcRx::kUnloadAppMsg:
        QelRemoveCommands();
        break;
    case AcRx::kLoadDwgMsg:
        drawingLoaded();
        break;
    case AcRx::kUnloadDwgMsg:
        drawingUnloaded();
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
}
