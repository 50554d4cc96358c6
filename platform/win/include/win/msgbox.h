// Message boxes: MessageBoxW, CWnd::MessageBox and AfxMessageBox, answered by the presenter.
#pragma once

#include <win/dialog.h>

#include <string>
#include <vector>

#define MB_OK 0x00000000L
#define MB_OKCANCEL 0x00000001L
#define MB_ABORTRETRYIGNORE 0x00000002L
#define MB_YESNOCANCEL 0x00000003L
#define MB_YESNO 0x00000004L
#define MB_RETRYCANCEL 0x00000005L
#define MB_CANCELTRYCONTINUE 0x00000006L
#define MB_TYPEMASK 0x0000000FL

#define MB_ICONHAND 0x00000010L
#define MB_ICONQUESTION 0x00000020L
#define MB_ICONEXCLAMATION 0x00000030L
#define MB_ICONASTERISK 0x00000040L
#define MB_ICONERROR MB_ICONHAND
#define MB_ICONSTOP MB_ICONHAND
#define MB_ICONWARNING MB_ICONEXCLAMATION
#define MB_ICONINFORMATION MB_ICONASTERISK
#define MB_ICONMASK 0x000000F0L

#define MB_DEFBUTTON1 0x00000000L
#define MB_DEFBUTTON2 0x00000100L
#define MB_DEFBUTTON3 0x00000200L
#define MB_DEFMASK 0x00000F00L

#define MB_APPLMODAL 0x00000000L
#define MB_SYSTEMMODAL 0x00001000L
#define MB_TASKMODAL 0x00002000L
#define MB_SETFOREGROUND 0x00010000L
#define MB_TOPMOST 0x00040000L

// The answer (IDOK, IDYES, ...); 0 with ERROR_INVALID_PARAMETER for an unknown button set.
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
inline constexpr auto& MessageBox = MessageBoxW;
// The caption is the application's name (win::setApplicationName).
int AfxMessageBox(LPCTSTR text, UINT type = MB_OK, UINT helpId = 0);
// The text is the string of that id in the module's string table.
int AfxMessageBox(UINT promptId, UINT type = MB_OK, UINT helpId = static_cast<UINT>(-1));

namespace win {

// The buttons a box of this type shows, in order, and the one Enter would press.
std::vector<int> buttonsOf(UINT type);
int defaultButton(UINT type);
// "OK", "Cancel", "Yes", ... and back (case ignored); 0 for an unknown name.
const wchar_t* buttonName(int id);
int buttonFromName(std::wstring_view name);

void setApplicationName(std::wstring name);
const std::wstring& applicationName();

} // namespace win
