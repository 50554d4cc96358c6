#include "commands.h"

#include "export/export_options.h"
#include "import/import_commands.h"
#include "records/annotation_command.h"
#include "records/block_explode.h"
#include "shell/menu_loading.h"
#include "shell/shell_constants.h"

#include <arx/aced.h>
#include <arx/rxregsvc.h>

namespace {

// The command stack as the system registry holds it, confirmed by its class.
AcEdCommandStack* commandStack() {
    AcRxObject* found = acrxSysRegistry()->at(ACRX_COMMAND_DOCK);
    if (!found || !found->isKindOf(AcEdCommandStack::desc())) return nullptr;
    return static_cast<AcEdCommandStack*>(found);
}

void QelOut() {
    CQelExportOptions options;
    options.DoModal();
}

} // namespace

const std::array<QelCommandRow, 6> QelCommandTable = {{
    {L"QELIN", QelInCommand},         // import dialog
    {L"QELOUT", QelOut},              // export dialog
    {L"QELXPLODE", QelXplodeCommand}, // imported block references replaced by their objects
    {L"QELINA", QelInaCommand},       // script form of the import
    {L"QELANN", QelAnnCommand},       // annotations restored or hidden
    {L"QELMENU", QelMenuCommand},     // menu loaded or unloaded
}};

void QelAddCommands() {
    for (const QelCommandRow& row : QelCommandTable)
        if (AcEdCommandStack* stack = commandStack())
            stack->addCommand(QEL_COMMAND_GROUP, row.name, row.name, ACRX_CMD_MODAL, row.function,
                              nullptr, -1, nullptr, nullptr);
}

void QelRemoveCommands() {
    if (AcEdCommandStack* stack = commandStack()) stack->removeGroup(QEL_COMMAND_GROUP);
}
