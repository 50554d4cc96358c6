// What a window handle points at. Dialogs are made from their templates; the controls are their
// children in tab order.
#pragma once

#include <win/cwnd.h>
#include <win/resource.h>
#include <win/transcript.h>

#include <memory>
#include <string>
#include <vector>

enum class WindowRole { Frame, Dialog, Control, ToolTip };

struct HWND__ {
    WindowRole role = WindowRole::Control;
    win::ControlKind kind = win::ControlKind::Static;
    int id = 0;
    std::wstring text;
    DWORD style = 0;
    bool enabled = true;
    bool visible = true;
    HWND parent = nullptr;
    std::vector<HWND> children;
    const win::DialogTemplate* layout = nullptr; // dialogs: the template they came from
    bool modeless = false;
    std::size_t index = 0; // controls: index in the parent's template

    int check = BST_UNCHECKED;       // check boxes and radios
    std::vector<std::wstring> items; // combo and list boxes
    int selection = -1;
    int limit = 0x7FFFFFFE;                                       // edits
    int lower = 0, upper = 100, pos = 0, step = 10, percent = -1; // progress bars
    std::wstring tip; // the tool tip text, when one was added for the window
    int relayed = 0;  // tool tips: messages relayed to them

    CWnd* permanent = nullptr;       // the object attached to the window
    std::unique_ptr<CWnd> temporary; // handed out by FromHandle when nothing is attached
};

namespace win::detail {

HWND createWindow(WindowRole role, HWND parent, std::wstring text);
HWND createDialog(const DialogTemplate& layout, HWND parent, CWnd* owner);
bool valid(HWND window);
// The controls of a radio group that `window` belongs to, in template order.
std::vector<HWND> radioGroup(HWND window);
// What a user's click on a control does: the auto check or radio behaviour, then BN_CLICKED.
void click(HWND control);
// What a user's leaving an edit does: EN_KILLFOCUS to the dialog.
void leave(HWND control);
LRESULT controlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void notifyParent(HWND control, WORD code);
// Posts a click on the Cancel button of the newest modeless dialog; false if there is none.
bool pressModelessCancel(AnswerSource source);

} // namespace win::detail
