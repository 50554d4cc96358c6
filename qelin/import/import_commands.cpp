#include "import_commands.h"

#include "import/import_options.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"

#include <arx/aced.h>

void QelInCommand() {
    COptions options;
    QelDocData().scriptMode = 0;
    options.DoModal();
}

void QelInaCommand() {
    COptions options;
    // The answer may hold blanks; what the prompt returns is not looked at.
    acedGetString(1, L"\nQEL file name to load:", options.scriptAnswer,
                  sizeof options.scriptAnswer / sizeof options.scriptAnswer[0]);
    QelDocData().scriptMode = 1;
    CString key;
    key.Format(L"%s", QEL_SETTINGS_KEY);
    // The dialog finds the file name where the answer is put.
    if (KeyExists(key) && !WriteString(key, L"LastOpenDir", options.scriptAnswer))
        CreateString(key, L"LastOpenDir", options.scriptAnswer);
    if (options.DoModal() != IDOK)
        acutPrintf(L"\n Import script file cancelled.");
    else
        acutPrintf(L"\n Importing file:%s", options.scriptAnswer);
}
