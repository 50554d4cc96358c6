// QELMENU: the module's menu loaded when it isn't and unloaded when it is, in the form the
// host's version takes.
#pragma once

inline const wchar_t* QEL_MENU_GROUP = L"QEL";
inline const wchar_t* QEL_MENU_FILE_OLD = L"VelmoraQEL.mns";
inline const wchar_t* QEL_MENU_FILE_NEW = L"VelmoraQEL.CUIX";
inline const wchar_t* QEL_MENU_INSERT_OLD = L"P10=+QEL.POP11";
inline const wchar_t* QEL_MENU_INSERT_NEW = L"P12=+QEL.POP11";

// The host's version from "ACADVER", cut to two decimals; 0 when it can't be read.
double QelHostVersion();

// The command.
void QelMenuCommand();
