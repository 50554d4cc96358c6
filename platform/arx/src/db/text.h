// Text helpers of the database: UTF-8 storage, case-blind names, interned keys.
#pragma once

#include <string>
#include <string_view>

#include "arx/acutf8.h"
#include "arx/adesk.h"

std::wstring acdbFromUtf8(std::string_view text);
std::wstring acdbUpper(std::wstring_view text);
bool acdbEqualNoCase(std::wstring_view a, std::wstring_view b);
// One shared copy per distinct text, alive as long as the process.
const std::wstring* acdbInternKey(std::wstring_view text);
// A malloc'd copy, as result-buffer strings are.
ACHAR* acdbDupString(std::wstring_view text);
