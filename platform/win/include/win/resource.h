// Dialog templates and strings of a module: what the resource script of a Windows module holds.
//
// A module declares each dialog once, as a table of its controls in tab order, and registers it
// with a static DialogResource beside the dialog class. CDialog finds its template by id; the
// presenters read labels, kinds and order from it.
#pragma once

#include <win/types.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#define IDC_STATIC (-1)

// Window and control styles the templates use.
#define WS_TABSTOP 0x00010000L
#define WS_GROUP 0x00020000L
#define WS_DISABLED 0x08000000L
#define BS_DEFPUSHBUTTON 0x00000001L
#define CBS_DROPDOWN 0x0002L
#define CBS_DROPDOWNLIST 0x0003L
#define ES_PASSWORD 0x0020L

namespace win {

enum class ControlKind {
    Static,
    GroupBox,
    Edit,
    PushButton,
    CheckBox,
    RadioButton,
    ComboBox,
    ListBox,
    Progress
};

const char* kindName(ControlKind kind);

struct ControlTemplate {
    ControlKind kind = ControlKind::Static;
    int id = IDC_STATIC;
    const wchar_t* text = L"";
    short x = 0, y = 0, cx = 0, cy = 0; // dialog units
    DWORD style = 0;
    // What a presenter calls the control. Without it: the control's own text for buttons, check
    // boxes and radios; for other controls the text of the static or group box before it.
    const wchar_t* label = nullptr;
    // A short name for answers ("file = x.qel"); the id and the label work as well.
    const wchar_t* key = nullptr;
};

struct DialogTemplate {
    UINT id = 0;
    const wchar_t* caption = L"";
    short cx = 0, cy = 0;
    const wchar_t* font = L"MS Sans Serif";
    WORD pointSize = 8;
    std::vector<ControlTemplate> controls; // tab order
};

// The label a presenter shows for control `index` of a template (see ControlTemplate::label).
std::wstring labelOf(const DialogTemplate& dialog, std::size_t index);

// Registers a dialog template for as long as the object lives; a later registration of the same
// id hides an earlier one until it goes.
class DialogResource {
public:
    explicit DialogResource(DialogTemplate dialog);
    ~DialogResource();
    DialogResource(const DialogResource&) = delete;
    DialogResource& operator=(const DialogResource&) = delete;
    const DialogTemplate& dialog() const { return dialog_; }

private:
    DialogTemplate dialog_;
};

// Registers entries of the string table (CString::LoadString) for as long as the object lives.
class StringResource {
public:
    StringResource(std::initializer_list<std::pair<UINT, const wchar_t*>> strings);
    ~StringResource();
    StringResource(const StringResource&) = delete;
    StringResource& operator=(const StringResource&) = delete;

private:
    std::vector<std::pair<UINT, std::wstring>> strings_;
};

const DialogTemplate* findDialogTemplate(UINT id);

} // namespace win
