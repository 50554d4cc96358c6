// The pointer checks of the Windows interface. Without a way to probe memory safely, a pointer
// counts as bad here when it is null; that is the case the module's checks guard against.
#pragma once

#include <win/types.h>

BOOL IsBadReadPtr(const void* pointer, UINT_PTR size);
BOOL IsBadWritePtr(void* pointer, UINT_PTR size);
BOOL IsBadStringPtrW(LPCWSTR text, UINT_PTR maxChars);
