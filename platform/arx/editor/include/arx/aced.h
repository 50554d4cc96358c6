// The editor's C interface: commands, system variables, selection sets, user input, printing,
// coordinate transforms, functions served by modules, menus and the status-bar progress meter.
// Every call answers one of the status codes of adsdef.h (RTNORM on success).
#pragma once

#include "arx/adsdef.h"

// Runs host commands from pairs of result type and value, ended by RTNONE (or 0). Values:
// RTSTR const ACHAR*, RTPOINT and RT3DPOINT an ads_point, RTENAME and RTPICKS an ads_name,
// RTSHORT and RTLONG int, RTREAL and RTANG double. An empty string is the Enter that ends a
// prompt. Points are in the current UCS. RTNORM when every command given has ended, RTCAN when
// the tokens ran out with a command still asking, RTERROR for an unknown command or input that
// a command refused.
int acedCommand(int rtype, ...);
// The same from a result-buffer list.
int acedCmd(const resbuf* rbp);

// System variables. acedGetVar overwrites the buffer's type and value (a string it held is
// freed); the caller frees a string it gets with the buffer. RTERROR for an unknown name, a
// value of the wrong type, or a value the variable refuses; RTREJ for a read-only variable.
int acedGetVar(const ACHAR* sym, resbuf* result);
int acedSetVar(const ACHAR* sym, const resbuf* value);

// Transforms a point (or, with disp nonzero, a displacement) between coordinate systems given
// as RTSHORT buffers: 0 the world, 1 the current UCS. RTERROR for any other system.
int acedTrans(const ads_point pt, const resbuf* from, const resbuf* to, int disp, ads_point result);

// Selection sets. With mode "_X" (or "X") every entity of the drawing that passes the filter;
// filters test group 0 (the kind, e.g. "LINE") and group 8 (the layer), values being wildcard
// patterns. Without a mode the user selects at the prompt. RTNORM with a set of at least one
// entity, RTERROR when nothing was selected, RTCAN when the user cancelled.
int acedSSGet(const ACHAR* str, const void* pt1, const void* pt2, const resbuf* filter,
              ads_name ss);
int acedSSLength(const ads_name ss, Adesk::Int32* len);
int acedSSName(const ads_name ss, Adesk::Int32 i, ads_name entres);
int acedSSFree(const ads_name ss);

// User input. acedGetString with cronly nonzero takes a whole line (blanks included), else one
// word. acedInitGet's keywords (blank separated) apply to the next acedGetKword only: its answer
// is the keyword that the input abbreviates (case ignored); RTNONE for Enter, RTCAN for Escape,
// RTERROR for a word that is no keyword.
constexpr int RSG_NONULL = 1;
int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result);
int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result, size_t bufLen);
int acedInitGet(int val, const ACHAR* kwl);
int acedGetKword(const ACHAR* prompt, ACHAR* result);
int acedGetKword(const ACHAR* prompt, ACHAR* result, size_t bufLen);

// Printing on the command line, printf style (%s takes a wide string); alerts. Both reach the
// transcript.
int acutPrintf(const ACHAR* format, ...);
int acedAlert(const ACHAR* text);

// Functions that modules serve to others: acedDefun names one with a code, acedRegFunc gives
// the code its function. acedInvoke calls one by name: args starts with the name as RTSTR, the
// function sees the rest through acedGetArgs and answers with acedRetList (or the other
// acedRet* calls). RTERROR for an unknown name or a function that failed.
int acedDefun(const ACHAR* sname, short funcno);
int acedUndef(const ACHAR* sname, short funcno);
int acedRegFunc(int (*fhdl)(), int fcode);
int acedInvoke(const resbuf* args, resbuf** result);
resbuf* acedGetArgs();
int acedRetList(const resbuf* rbuf);
int acedRetStr(const ACHAR* s);
int acedRetInt(int ival);
int acedRetReal(ads_real rval);
int acedRetNil();
int acedRetVoid();

// Menus: a menu command such as "P12=+QEL.POP11" inserts a pull-down of a loaded group.
int acedMenuCmd(const ACHAR* str);
bool acedIsMenuGroupLoaded(const ACHAR* pszGroupName);

// The status-bar progress meter: a label and a range, positions within it, and the end.
int acedSetStatusBarProgressMeter(const ACHAR* pszLabel, int nMinPos, int nMaxPos);
int acedSetStatusBarProgressMeterPos(int nPos);
void acedRestoreStatusBar();
