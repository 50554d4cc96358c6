// Cursors: the standard shapes, of which the host keeps the current one.
#pragma once

#include <win/types.h>

#define MAKEINTRESOURCEW(i) (reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(i))))
#define IDC_ARROW MAKEINTRESOURCEW(32512)
#define IDC_IBEAM MAKEINTRESOURCEW(32513)
#define IDC_WAIT MAKEINTRESOURCEW(32514)
#define IDC_CROSS MAKEINTRESOURCEW(32515)
#define IDC_APPSTARTING MAKEINTRESOURCEW(32650)

// A standard cursor with no module (null instance); null for anything else.
HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR name);
// Returns the cursor shown before.
HCURSOR SetCursor(HCURSOR cursor);
HCURSOR GetCursor();

inline constexpr auto& LoadCursor = LoadCursorW;

namespace win {

// The standard id (32512, 32514, ...) of a cursor LoadCursorW gave; 0 for none.
int cursorId(HCURSOR cursor);

} // namespace win
