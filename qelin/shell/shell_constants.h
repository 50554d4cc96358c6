// What the shell says about itself: the command group, the version and build, and the lines of
// the banner and of the dialogs. Stated once, here.
#pragma once

#include <win/win.h>

inline const wchar_t* QEL_COMMAND_GROUP = L"QELIN_ARX_COMMANDS";
inline const wchar_t* QEL_VERSION = L"Version 6.1";
inline constexpr int QEL_BUILD = 170;
// QELINA and QELMENU are left out on purpose: they are not announced.
inline const wchar_t* QEL_COMMAND_LISTING = L"QELIN, QELOUT, QELXPLODE, QELANN";
inline const wchar_t* QEL_COMPANY_LINE = L"Tovi Technologies";
inline const wchar_t* QEL_BANNER_LINE = L"  QEL object files into and out of 3-D plant drawings.";
// The companion module that answers the export's questions about solids.
inline const wchar_t* QEL_COMPANION_MODULE = L"ToviQelOut.dll";
