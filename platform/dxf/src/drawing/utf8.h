// The text of a drawing file (UTF-8) and the text of the database (wide characters).
#pragma once

#include <string>
#include <string_view>

namespace dxf {

std::string toUtf8(std::wstring_view text);
// Bytes that are no UTF-8 come through one character each, so nothing read is lost.
std::wstring fromUtf8(std::string_view text);

} // namespace dxf
