// Windows by handle: text, state, control messages and the message queue, for the dialogs and
// controls the module makes. Windows exist only inside the process; nothing is drawn.
#pragma once

#include <win/errors.h>
#include <win/resource.h>

#define WM_NULL 0x0000
#define WM_SETTEXT 0x000C
#define WM_GETTEXT 0x000D
#define WM_GETTEXTLENGTH 0x000E
#define WM_CLOSE 0x0010
#define WM_KEYDOWN 0x0100
#define WM_INITDIALOG 0x0110
#define WM_COMMAND 0x0111
#define WM_MOUSEMOVE 0x0200
#define WM_LBUTTONDOWN 0x0201
#define WM_LBUTTONUP 0x0202
#define WM_USER 0x0400

#define BN_CLICKED 0
#define EN_SETFOCUS 0x0100
#define EN_KILLFOCUS 0x0200
#define EN_CHANGE 0x0300
#define CBN_SELCHANGE 1
#define LBN_SELCHANGE 1

#define BM_GETCHECK 0x00F0
#define BM_SETCHECK 0x00F1
#define BM_CLICK 0x00F5
#define BST_UNCHECKED 0x0000
#define BST_CHECKED 0x0001

#define EM_LIMITTEXT 0x00C5
#define EM_SETLIMITTEXT EM_LIMITTEXT
#define EM_GETLIMITTEXT 0x00D5

#define CB_ERR (-1)
#define CB_ADDSTRING 0x0143
#define CB_GETCOUNT 0x0146
#define CB_GETCURSEL 0x0147
#define CB_GETLBTEXT 0x0148
#define CB_GETLBTEXTLEN 0x0149
#define CB_RESETCONTENT 0x014B
#define CB_SETCURSEL 0x014E

#define LB_ERR (-1)
#define LB_ADDSTRING 0x0180
#define LB_RESETCONTENT 0x0184
#define LB_SETCURSEL 0x0186
#define LB_GETCURSEL 0x0188
#define LB_GETTEXT 0x0189
#define LB_GETTEXTLEN 0x018A
#define LB_GETCOUNT 0x018B

#define PBM_SETRANGE (WM_USER + 1)
#define PBM_SETPOS (WM_USER + 2)
#define PBM_DELTAPOS (WM_USER + 3)
#define PBM_SETSTEP (WM_USER + 4)
#define PBM_STEPIT (WM_USER + 5)
#define PBM_SETRANGE32 (WM_USER + 6)
#define PBM_GETRANGE (WM_USER + 7)
#define PBM_GETPOS (WM_USER + 8)

#define TTM_ACTIVATE (WM_USER + 1)
#define TTM_RELAYEVENT (WM_USER + 7)

#define SW_HIDE 0
#define SW_SHOW 5

#define PM_NOREMOVE 0x0000
#define PM_REMOVE 0x0001

struct MSG {
    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    DWORD time = 0;
    POINT pt;
};
using LPMSG = MSG*;

BOOL IsWindow(HWND window);
BOOL DestroyWindow(HWND window);
HWND GetParent(HWND window);
BOOL SetWindowTextW(HWND window, LPCWSTR text);
int GetWindowTextW(HWND window, LPWSTR buffer, int maxCount);
int GetWindowTextLengthW(HWND window);
// Returns nonzero if the window was disabled before.
BOOL EnableWindow(HWND window, BOOL enable);
BOOL IsWindowEnabled(HWND window);
BOOL ShowWindow(HWND window, int command);
BOOL IsWindowVisible(HWND window);

HWND GetDlgItem(HWND dialog, int id);
int GetDlgCtrlID(HWND window);
BOOL SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);
UINT GetDlgItemTextW(HWND dialog, int id, LPWSTR buffer, int maxCount);
BOOL CheckDlgButton(HWND dialog, int id, UINT check);
UINT IsDlgButtonChecked(HWND dialog, int id);
// Checks `check` and clears every other button whose id lies from first to last.
BOOL CheckRadioButton(HWND dialog, int first, int last, int check);

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// With an empty queue the presenter is given a chance to post input first (Presenter::idle).
BOOL PeekMessageW(LPMSG msg, HWND window, UINT filterMin, UINT filterMax, UINT remove);
BOOL TranslateMessage(const MSG* msg);
LRESULT DispatchMessageW(const MSG* msg);
// Dispatches a message meant for the dialog or one of its controls; false for any other.
BOOL IsDialogMessageW(HWND dialog, LPMSG msg);

inline constexpr auto& SetWindowText = SetWindowTextW;
inline constexpr auto& GetWindowText = GetWindowTextW;
inline constexpr auto& SetDlgItemText = SetDlgItemTextW;
inline constexpr auto& SendMessage = SendMessageW;
inline constexpr auto& PostMessage = PostMessageW;
inline constexpr auto& PeekMessage = PeekMessageW;
inline constexpr auto& DispatchMessage = DispatchMessageW;
inline constexpr auto& IsDialogMessage = IsDialogMessageW;

namespace win {

// The host's main window: the owner of dialogs that name no parent.
HWND mainWindow();

} // namespace win
