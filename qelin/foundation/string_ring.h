// Strings across the seam to the object-file library, which speaks narrow text in the ANSI code
// page. Results lie in a static ring of 8192 characters and stay valid until the ring comes round
// again: use them at once, never keep them.
#pragma once

const wchar_t* QelWideFromNarrow(const char* text);
const char* QelNarrowFromWide(const wchar_t* text);
