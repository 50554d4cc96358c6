// The import options dialog as its resource script lays it out: controls in tab order.
#include "import/import_options.h"

using win::ControlKind;

// Registered at the first dialog, so that the module's static library keeps it.
void QelRegisterImportOptionsTemplate() {
    static const win::DialogResource importOptionsTemplate({
        COptions::IDD,
        L"Import Options...",
        223,
        218,
        L"MS Sans Serif",
        8,
        {
            {ControlKind::GroupBox, IDC_STATIC, L"Import File Name", 5, 3, 213, 30},
            {ControlKind::Edit, 1000, L"", 10, 14, 175, 13, WS_TABSTOP, nullptr, L"file"},
            {ControlKind::PushButton, 1030, L"...", 190, 14, 22, 13, WS_TABSTOP, nullptr,
             L"browse"},
            {ControlKind::GroupBox, IDC_STATIC, L"Import Acis Solids/Blocks", 5, 36, 213, 62},
            {ControlKind::RadioButton, 1011, L"Import Objects as Acis Solids", 10, 46, 150, 10,
             WS_GROUP | WS_TABSTOP, nullptr, L"solids"},
            {ControlKind::RadioButton, 1012, L"Import Objects as Blocks", 10, 57, 150, 10, 0,
             nullptr, L"blocks"},
            {ControlKind::CheckBox, 1034, L"Import PointSets", 10, 68, 100, 10,
             WS_GROUP | WS_TABSTOP, nullptr, L"points"},
            {ControlKind::CheckBox, 1036, L"Use layer color override", 110, 68, 105, 10, WS_TABSTOP,
             nullptr, L"layer-colour-override"},
            {ControlKind::CheckBox, 1035, L"Suppress hidden classes", 10, 80, 120, 10,
             WS_TABSTOP | WS_DISABLED, nullptr, L"suppress-hidden"},
            {ControlKind::GroupBox, IDC_STATIC, L"Log Files", 5, 101, 213, 50},
            {ControlKind::CheckBox, 1023, L"Create Log File (.log)", 10, 111, 100, 10, WS_TABSTOP,
             nullptr, L"log"},
            {ControlKind::CheckBox, 1025, L"Use Default File Path", 110, 111, 100, 10, WS_TABSTOP,
             nullptr, L"default-path"},
            {ControlKind::Static, IDC_STATIC, L"Log File Location", 10, 123, 100, 8},
            {ControlKind::Edit, 1014, L"", 10, 133, 175, 13, WS_TABSTOP, nullptr, L"log-folder"},
            {ControlKind::PushButton, 1010, L">>", 190, 133, 22, 13, WS_TABSTOP, nullptr,
             L"browse-log"},
            {ControlKind::GroupBox, IDC_STATIC, L"Units preference", 5, 154, 213, 40},
            {ControlKind::Static, IDC_STATIC, L"Import Drawing Units", 10, 164, 100, 8},
            {ControlKind::ComboBox, 1009, L"", 10, 174, 100, 80, CBS_DROPDOWNLIST | WS_TABSTOP,
             nullptr, L"units"},
            {ControlKind::Static, IDC_STATIC, L"Scale Factor", 120, 164, 90, 8},
            {ControlKind::Edit, 1024, L"", 120, 174, 90, 13, WS_TABSTOP, nullptr, L"scale"},
            {ControlKind::Static, 1040, L"", 5, 198, 100, 8, 0, nullptr, L"company"},
            {ControlKind::Static, 1041, L"", 5, 207, 100, 8, 0, nullptr, L"version"},
            {ControlKind::PushButton, IDOK, L"OK", 112, 199, 50, 14, BS_DEFPUSHBUTTON | WS_TABSTOP},
            {ControlKind::PushButton, IDCANCEL, L"Cancel", 168, 199, 50, 14, WS_TABSTOP},
        },
    });
}
