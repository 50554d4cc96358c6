// UTF-8, the text of files and result buffers on disk, from the wide text of the database.
#pragma once

#include <string>
#include <string_view>

std::string acdbToUtf8(std::wstring_view text);
// Appends the UTF-8 of text to out.
void acdbAppendUtf8(std::string& out, std::wstring_view text);
