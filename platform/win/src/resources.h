// The registered string table, for CString::LoadString.
#pragma once

#include <win/resource.h>

namespace win {

const std::wstring* findString(UINT id);

} // namespace win
