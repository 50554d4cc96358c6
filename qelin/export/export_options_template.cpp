// The export options dialog as its resource script lays it out: controls in tab order.
#include "export/export_options.h"

using win::ControlKind;

// Registered at the first dialog, so that the module's static library keeps it.
void QelRegisterExportOptionsTemplate() {
    static const win::DialogResource exportOptionsTemplate({
        CQelExportOptions::IDD,
        L"Export Options...",
        214,
        202,
        L"MS Sans Serif",
        8,
        {
            {ControlKind::GroupBox, IDC_STATIC, L"Export File Name", 5, 4, 205, 32},
            {ControlKind::Edit, 1019, L"", 10, 16, 177, 14, WS_TABSTOP, nullptr, L"file"},
            {ControlKind::PushButton, 1001, L"...", 191, 16, 17, 14, WS_TABSTOP, nullptr,
             L"browse"},
            {ControlKind::GroupBox, IDC_STATIC, L"Export Process Options", 5, 43, 205, 35},
            {ControlKind::RadioButton, 1005, L"Export Without Original Qel Reference File.", 10, 53,
             155, 10, WS_GROUP | WS_TABSTOP, nullptr, L"no-reference"},
            {ControlKind::RadioButton, 1006, L"Use Original Qel File as Reference.", 10, 63, 160,
             10, 0, nullptr, L"reference"},
            {ControlKind::GroupBox, IDC_STATIC, L"Export objects", 5, 84, 205, 42},
            {ControlKind::RadioButton, 1007, L"Export All Objects", 10, 94, 71, 10,
             WS_GROUP | WS_TABSTOP, nullptr, L"all"},
            {ControlKind::RadioButton, 1011, L"Export Visible Objects", 10, 104, 84, 10, 0, nullptr,
             L"visible"},
            {ControlKind::RadioButton, 1012, L"Export Selected Objects", 10, 114, 92, 10, 0,
             nullptr, L"selected"},
            {ControlKind::GroupBox, IDC_STATIC, L"Units preference", 5, 131, 205, 40},
            {ControlKind::Static, IDC_STATIC, L"Export Drawing Units", 10, 141, 75, 8},
            {ControlKind::ComboBox, 1039, L"", 10, 151, 135, 103, CBS_DROPDOWNLIST | WS_TABSTOP,
             nullptr, L"units"},
            {ControlKind::Static, IDC_STATIC, L"Scale Factor", 160, 141, 44, 8},
            {ControlKind::Edit, 1029, L"", 160, 151, 40, 14, WS_TABSTOP, nullptr, L"scale"},
            {ControlKind::PushButton, IDOK, L"OK", 117, 180, 42, 14, BS_DEFPUSHBUTTON | WS_TABSTOP},
            {ControlKind::PushButton, IDCANCEL, L"Cancel", 168, 180, 42, 14, WS_TABSTOP},
            {ControlKind::Static, 1040, L"", 5, 179, 108, 8, WS_DISABLED, nullptr, L"company"},
            {ControlKind::Static, 1041, L"Version 6.0", 5, 189, 108, 8, WS_DISABLED, nullptr,
             L"version"},
        },
    });
}
